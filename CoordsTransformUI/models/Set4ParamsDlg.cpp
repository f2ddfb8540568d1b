#include "models/Set4ParamsDlg.h"

#include "models/ModelEntryForm.h"
#include "ui_Set4ParamsDlg.h"

#include "KivAdapterUI/SpatialReferenceSelectorDlg.h"
#include "KivGeometry/SpatialReference.h"

#include <QMessageBox>

Set4ParamsDlg::Set4ParamsDlg(QWidget* parent) : QDialog(parent), ui(new Ui::Set4ParamsDlg)
{
    ui->setupUi(this);
    m_form.reset(new ModelEntryForm(this, ModelStore::Params4, ui->lineEdit_src, ui->lineEdit_des, ui->lineEdit_Name,
                                    {{ui->lineEdit_DX, "DX(m)"}, {ui->lineEdit_DY, "DY(m)"},
                                     {ui->lineEdit_T, "T(゜)"}, {ui->lineEdit_K, "K"}}));

    connect(ui->pushButton_src, SIGNAL(clicked()), this, SLOT(OnBtnClickedSrcSpatialRef()));
    connect(ui->pushButton_dst, SIGNAL(clicked()), this, SLOT(OnBtnClickedDesSpatialRef()));
    connect(ui->lineEdit_src, SIGNAL(textChanged(QString)), this, SLOT(slot_SpatialRefTextChanged(QString)));
    connect(ui->lineEdit_des, SIGNAL(textChanged(QString)), this, SLOT(slot_SpatialRefTextChanged(QString)));
    connect(ui->pushButton_Import, SIGNAL(clicked()), this, SLOT(slot_Import()));
    connect(ui->pushButton_OK, SIGNAL(clicked()), this, SLOT(OnBtnClickedOk()));
    connect(ui->pushButton_Cancel, SIGNAL(clicked()), this, SLOT(reject()));
}

Set4ParamsDlg::~Set4ParamsDlg() = default;

void Set4ParamsDlg::chooseReference(QLineEdit* edit)
{
    KivAdapterUI::SpatialReferenceSelectorDlg selector(this);
    if (selector.exec() != QDialog::Accepted)
        return;
    const KivUtility::_ptr_t<KivGeometry::SpatialReference> ref = selector.GetCoordinateSystem();
    if (!ref)
        return;
    // A plane similarity only makes sense between projected coordinates.
    if (ref->GetType() != KivGeometry::SRT_Projected) {
        QMessageBox::warning(this, tr("Information"), tr("Please select a  Projected Coordinate System! "));
        return;
    }
    edit->setText(ref->GetName());
}

void Set4ParamsDlg::OnBtnClickedSrcSpatialRef()
{
    try {
        chooseReference(ui->lineEdit_src);
    } catch (...) {
    }
}

void Set4ParamsDlg::OnBtnClickedDesSpatialRef()
{
    try {
        chooseReference(ui->lineEdit_des);
    } catch (...) {
    }
}

void Set4ParamsDlg::slot_SpatialRefTextChanged(QString)
{
    m_form->ProposeName();
}

void Set4ParamsDlg::slot_Import()
{
    try {
        m_form->Import();
    } catch (...) {
    }
}

void Set4ParamsDlg::OnBtnClickedOk()
{
    try {
        if (m_form->Check())
            m_form->Save(tr(" 4 parameters  is saved successfully !"));
    } catch (...) {
    }
}
