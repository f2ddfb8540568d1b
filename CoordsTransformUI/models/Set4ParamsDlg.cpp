#include "models/Set4ParamsDlg.h"

#include "models/ModelStore.h"
#include "ui_Set4ParamsDlg.h"

#include "KivAdapterUI/SpatialReferenceSelectorDlg.h"
#include "KivGeometry/SpatialReference.h"
#include "KivUI/EnvironmentSetting.h"

#include <QFile>
#include <QFileDialog>
#include <QMessageBox>
#include <QTextCodec>
#include <QTextStream>

Set4ParamsDlg::Set4ParamsDlg(QWidget* parent) : QDialog(parent), ui(new Ui::Set4ParamsDlg)
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
    ui->lineEdit_Name->setText(ui->lineEdit_src->text() + QStringLiteral("-to-") + ui->lineEdit_des->text());
}

void Set4ParamsDlg::slot_Import()
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
        const QString keyT = QString::fromLocal8Bit("T(゜)");
        QTextStream in(&file);
        in.setCodec(QTextCodec::codecForName("GB18030"));
        while (!in.atEnd()) {
            const QStringList parts = in.readLine().split(QLatin1Char('='), Qt::KeepEmptyParts);
            if (parts.size() != 2)
                continue;
            const QString& key = parts.at(0);
            const QString& value = parts.at(1);
            if (key == QLatin1String("DX(m)"))
                ui->lineEdit_DX->setText(value);
            else if (key == QLatin1String("DY(m)"))
                ui->lineEdit_DY->setText(value);
            else if (key == keyT)
                ui->lineEdit_T->setText(value);
            else if (key == QLatin1String("K"))
                ui->lineEdit_K->setText(value);
        }
    } catch (...) {
    }
}

void Set4ParamsDlg::OnBtnClickedOk()
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
        const QLineEdit* fields[4] = {ui->lineEdit_DX, ui->lineEdit_DY, ui->lineEdit_T, ui->lineEdit_K};
        for (const QLineEdit* field : fields) {
            if (field->text().isEmpty()) {
                QMessageBox::warning(this, tr("Error"), tr("Please input valid parameter ! "));
                return;
            }
        }

        TransformModel model;
        model.SrcSpaRef = source;
        model.TransName = name;
        // Hand-entered models carry their own name as target name; the chosen
        // target is not stored.
        model.DesSpaRef = name;
        for (const QLineEdit* field : fields)
            model.Params << field->text().toDouble();

        switch (ModelStore::Add(ModelStore::Params4, model)) {
        case ModelStore::Written:
            QMessageBox::information(this, tr("Information"), tr(" 4 parameters  is saved successfully !"));
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
