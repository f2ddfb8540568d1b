#include "models/Set7ParamsDlg.h"

#include "models/ModelStore.h"
#include "ui_Set7ParamsDlg.h"

#include "KivAdapterUI/SpatialReferenceSelectorDlg.h"
#include "KivGeometry/GeographicCoordinateSystem.h"
#include "KivGeometry/ProjectedCoordinateSystem.h"
#include "KivUI/EnvironmentSetting.h"

#include <QFile>
#include <QFileDialog>
#include <QMessageBox>
#include <QTextCodec>
#include <QTextStream>

using SpatialReferencePtr = KivUtility::_ptr_t<KivGeometry::SpatialReference>;

Set7ParamsDlg::Set7ParamsDlg(QWidget* parent) : QDialog(parent), ui(new Ui::Set7ParamsDlg)
{
    ui->setupUi(this);

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
    // A seven-parameter model acts between geographic bases: a projected
    // system is shown by the name of its geographic system.
    QString name = ref->GetName();
    if (ref->GetType() == KivGeometry::SRT_Projected) {
        const KivGeometry::ProjectedCoordinateSystem projected(*ref);
        if (const auto geographic = projected.GetGeographicCoordinateSystem())
            name = geographic->GetName();
    }
    kept = ref;
    edit->setText(name);
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
    ui->lineEdit_Name->setText(ui->lineEdit_src->text() + QStringLiteral("-to-") + ui->lineEdit_des->text());
}

void Set7ParamsDlg::slot_Import()
{
    try {
        const QString path = QFileDialog::getOpenFileName(this, tr("Open Text File"),
                                                          KivUI::EnvironmentSetting::Instance()->GetCurrentWorkDir(),
                                                          tr("Text Files (*.txt);;CSV Files(*.csv)"));
        if (path.isEmpty())
            return;
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
            return;

        // The keys are held as UTF-8 bytes and go through the local 8-bit
        // codec; an exported result block uses the same texts.
        const QString keys[7] = {QStringLiteral("DX(m)"),         QStringLiteral("DY(m)"),
                                 QStringLiteral("DZ(m)"),         QString::fromLocal8Bit("ω(″)"),
                                 QString::fromLocal8Bit("κ(″)"), QString::fromLocal8Bit("γ(″)"),
                                 QStringLiteral("m")};
        QLineEdit* const fields[7] = {ui->lineEdit_DX, ui->lineEdit_DY, ui->lineEdit_DZ, ui->lineEdit_W,
                                      ui->lineEdit_K,  ui->lineEdit_R,  ui->lineEdit_M};
        QTextStream in(&file);
        in.setCodec(QTextCodec::codecForName("GB18030"));
        while (!in.atEnd()) {
            const QStringList parts = in.readLine().split(QLatin1Char('='), Qt::KeepEmptyParts);
            if (parts.size() != 2)
                continue;
            for (int i = 0; i < 7; ++i) {
                if (parts.at(0) == keys[i]) {
                    fields[i]->setText(parts.at(1));
                    break;
                }
            }
        }
    } catch (...) {
    }
}

void Set7ParamsDlg::OnBtnClickedOk()
{
    try {
        const QString source = ui->lineEdit_src->text();
        const QString target = ui->lineEdit_des->text();
        const QString name = ui->lineEdit_Name->text();
        if (source.isEmpty()) {
            QMessageBox::warning(this, tr("Error"), tr("Please input source spatialreference name! "));
            return;
        }
        if (target.isEmpty()) {
            QMessageBox::warning(this, tr("Error"), tr("Please input target spatialreference name! "));
            return;
        }
        if (name.isEmpty()) {
            QMessageBox::warning(this, tr("Error"), tr("Please input transform model name! "));
            return;
        }
        const QLineEdit* fields[7] = {ui->lineEdit_DX, ui->lineEdit_DY, ui->lineEdit_DZ, ui->lineEdit_W,
                                      ui->lineEdit_K,  ui->lineEdit_R,  ui->lineEdit_M};
        for (const QLineEdit* field : fields) {
            if (field->text().isEmpty()) {
                QMessageBox::warning(this, tr("Error"), tr("Please input valid parameter ! "));
                return;
            }
        }
        // Only systems chosen in the picker (or handed over) can be compared;
        // names typed by hand are taken as they are.
        if (m_srcRef && m_desRef && m_srcRef->IsSameGeoCS(m_desRef)) {
            QMessageBox::warning(this, tr("Error"), tr("The Source Spheroid must be different with target Spheroid!"));
            return;
        }

        TransformModel model;
        model.SrcSpaRef = source;
        model.TransName = name;
        // Hand-entered models carry their own name as target name; the chosen
        // target is not stored.
        model.DesSpaRef = name;
        for (const QLineEdit* field : fields)
            model.Params << field->text().toDouble();

        switch (ModelStore::Add(ModelStore::Params7, model)) {
        case ModelStore::Written:
            QMessageBox::information(this, tr("Information"), tr(" 7 parameters  is saved successfully !"));
            accept();
            break;
        case ModelStore::NameTaken:
            QMessageBox::warning(this, tr("Error"), tr("The TransModelName has been taken,Please input another one! "));
            break;
        case ModelStore::CannotOpen:
            QMessageBox::information(this, tr("Information"), tr("save result failed!"));
            break;
        default:
            // Malformed or container-less store, failed write: the dialog
            // stays open with nothing saved.
            break;
        }
    } catch (...) {
    }
}
