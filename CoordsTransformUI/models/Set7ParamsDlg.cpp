#include "models/Set7ParamsDlg.h"

#include "models/ControlPointCalculation.h"
#include "models/ModelEntry.h"
#include "models/ModelEntryForm.h"
#include "ui_Set7ParamsDlg.h"

#include "KivAdapterUI/SpatialReferenceSelectorDlg.h"
#include "KivGeometry/GeographicCoordinateSystem.h"
#include "KivGeometry/ProjectedCoordinateSystem.h"

#include <QMessageBox>

using SpatialReferencePtr = KivUtility::_ptr_t<KivGeometry::SpatialReference>;

Set7ParamsDlg::Set7ParamsDlg(QWidget* parent) : QDialog(parent), ui(new Ui::Set7ParamsDlg)
{
    ui->setupUi(this);
    m_form.reset(new ModelEntryForm(this, ModelStore::Params7, ui->lineEdit_src, ui->lineEdit_des, ui->lineEdit_Name,
                                    {{ui->lineEdit_DX, "DX(m)"}, {ui->lineEdit_DY, "DY(m)"},
                                     {ui->lineEdit_DZ, "DZ(m)"}, {ui->lineEdit_W, "ω(″)"},
                                     {ui->lineEdit_K, "κ(″)"}, {ui->lineEdit_R, "γ(″)"}, {ui->lineEdit_M, "m"}}));

    connect(ui->pushButton_src, SIGNAL(clicked()), this, SLOT(OnBtnClickedSrcSpatialRef()));
    connect(ui->pushButton_dst, SIGNAL(clicked()), this, SLOT(OnBtnClickedDesSpatialRef()));
    connect(ui->lineEdit_src, SIGNAL(textChanged(QString)), this, SLOT(slot_SpatialRefTextChanged(QString)));
    connect(ui->lineEdit_des, SIGNAL(textChanged(QString)), this, SLOT(slot_SpatialRefTextChanged(QString)));
    connect(ui->pushButton_Import, SIGNAL(clicked()), this, SLOT(slot_Import()));
    connect(ui->pushButton_OK, SIGNAL(clicked()), this, SLOT(OnBtnClickedOk()));
    connect(ui->pushButton_Cancel, SIGNAL(clicked()), this, SLOT(reject()));
}

Set7ParamsDlg::~Set7ParamsDlg() = default;

void Set7ParamsDlg::SetSpatialReferences(const SpatialReferencePtr& source, const SpatialReferencePtr& target)
{
    if (source)
        takeReference(source, m_srcRef, ui->lineEdit_src);
    if (target)
        takeReference(target, m_desRef, ui->lineEdit_des);
}

void Set7ParamsDlg::takeReference(const SpatialReferencePtr& ref, SpatialReferencePtr& kept, QLineEdit* edit)
{
    kept = ref;
    edit->setText(ModelEntry::SevenParameterSideName(ref.get()));
}

void Set7ParamsDlg::chooseReference(SpatialReferencePtr& kept, QLineEdit* edit)
{
    KivAdapterUI::SpatialReferenceSelectorDlg selector(this);
    if (selector.exec() != QDialog::Accepted)
        return;
    const SpatialReferencePtr ref = selector.GetCoordinateSystem();
    if (ref)
        takeReference(ref, kept, edit);
}

void Set7ParamsDlg::OnBtnClickedSrcSpatialRef()
{
    try {
        chooseReference(m_srcRef, ui->lineEdit_src);
    } catch (...) {
    }
}

void Set7ParamsDlg::OnBtnClickedDesSpatialRef()
{
    try {
        chooseReference(m_desRef, ui->lineEdit_des);
    } catch (...) {
    }
}

void Set7ParamsDlg::slot_SpatialRefTextChanged(QString)
{
    m_form->ProposeName();
}

void Set7ParamsDlg::slot_Import()
{
    try {
        m_form->Import();
    } catch (...) {
    }
}

void Set7ParamsDlg::OnBtnClickedOk()
{
    try {
        if (!m_form->Check())
            return;
        // Only systems chosen in the picker (or handed over) can be compared;
        // names typed by hand are taken as they are.
        if (ControlPointCalculation::SharesGeographicSystem(m_srcRef.get(), m_desRef.get())) {
            QMessageBox::warning(this, tr("Error"), tr("The Source Spheroid must be different with target Spheroid!"));
            return;
        }
        m_form->Save(tr(" 7 parameters  is saved successfully !"));
    } catch (...) {
    }
}
