#include "models/Save4ParamsResultDlg.h"

#include "models/ModelEntry.h"
#include "models/ModelWriter.h"
#include "ui_Save4ParamsResultDlg.h"

#include "KivAdapterUI/SpatialReferenceSelectorDlg.h"

#include <QLineEdit>

#include <algorithm>

Save4ParamsResultDlg::Save4ParamsResultDlg(const double* result4, QWidget* parent)
    : QDialog(parent), ui(new Ui::Save4ParamsResultDlg)
{
    ui->setupUi(this);
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint
                   | Qt::WindowCloseButtonHint | Qt::MSWindowsFixedSizeDialogHint);
    setFixedSize(size());
    if (result4)
        std::copy(result4, result4 + 4, m_result);

    connect(ui->pushButton_src, SIGNAL(clicked()), this, SLOT(OnBnClickedBtnSrcSpatialRef()));
    connect(ui->pushButton_dst, SIGNAL(clicked()), this, SLOT(OnBnClickedBtnDesSpatialRef()));
    connect(ui->pushButton_Ok, SIGNAL(clicked()), this, SLOT(OnBnClickedOK()));
    connect(ui->pushButton_Cancel, SIGNAL(clicked()), this, SLOT(OnBnClickedCancel()));
    connect(ui->lineEdit_src, SIGNAL(textChanged(QString)), this, SLOT(OnLineEditTextChanged(QString)));
    connect(ui->lineEdit_des, SIGNAL(textChanged(QString)), this, SLOT(OnLineEditTextChanged(QString)));
}

Save4ParamsResultDlg::~Save4ParamsResultDlg() = default;

void Save4ParamsResultDlg::chooseReferenceName(QLineEdit* edit)
{
    KivAdapterUI::SpatialReferenceSelectorDlg selector(this);
    if (selector.exec() != QDialog::Accepted)
        return;
    const KivUtility::_ptr_t<KivGeometry::SpatialReference> ref = selector.GetCoordinateSystem();
    if (ref)
        edit->setText(ref->GetName());
}

void Save4ParamsResultDlg::OnBnClickedBtnSrcSpatialRef()
{
    try {
        chooseReferenceName(ui->lineEdit_src);
    } catch (...) {
    }
}

void Save4ParamsResultDlg::OnBnClickedBtnDesSpatialRef()
{
    try {
        chooseReferenceName(ui->lineEdit_des);
    } catch (...) {
    }
}

void Save4ParamsResultDlg::OnLineEditTextChanged(QString)
{
    ui->lineEdit_Name->setText(ModelEntry::ProposedName(ui->lineEdit_src->text(), ui->lineEdit_des->text()));
}

void Save4ParamsResultDlg::OnBnClickedOK()
{
    try {
        // Four-parameter results are saved in silence when the store cannot
        // be read; warnings about empty fields have no title.
        const ModelWriter writer(this, ModelStore::Params4, ModelWriter::AskToReplace, false, QString());
        const QString source = ui->lineEdit_src->text();
        const QString target = ui->lineEdit_des->text();
        const QString name = ui->lineEdit_Name->text();
        if (!writer.RequireNames(source, target, name))
            return;
        const TransformModel model{name, source, target, {m_result[0], m_result[1], m_result[2], m_result[3]}};
        if (writer.Write(model))
            accept();
    } catch (...) {
    }
}

void Save4ParamsResultDlg::OnBnClickedCancel()
{
    reject();
}
