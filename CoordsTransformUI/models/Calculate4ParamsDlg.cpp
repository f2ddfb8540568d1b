#include "models/Calculate4ParamsDlg.h"

#include "models/ControlPointCalculation.h"
#include "models/ControlPointSession.h"
#include "models/ControlPointTable.h"
#include "models/Save4ParamsResultDlg.h"
#include "ui_Calculate4ParamsDlg.h"

#include <QDoubleValidator>
#include <QMessageBox>
#include <QRegExpValidator>

Calculate4ParamsDlg::Calculate4ParamsDlg(QWidget* parent, KivFramework::IApplication* application)
    : QDialog(parent), ui(new Ui::Calculate4ParamsDlg)
{
    ui->setupUi(this);
    setWindowFlags(windowFlags() & ~(Qt::WindowContextHelpButtonHint | Qt::WindowMinimizeButtonHint
                                     | Qt::WindowMaximizeButtonHint));
    setFixedSize(size());
    m_session.reset(new ControlPointSession(
        this, ControlPointFile::FourParameters,
        {ui->tableWidget, ui->label_Result, ui->pushButton_editPoint,
         {ui->pushButton_addPoint, ui->pushButton_remove, ui->pushButton_run, ui->pushButton_save},
         {ui->lineEdit_X0, ui->lineEdit_Y0, ui->lineEdit_X1, ui->lineEdit_Y1}}));
    m_session->SetApplication(application);

    auto* validator = new QRegExpValidator(QRegExp(QStringLiteral("100|(-?[0-9]*[\\.][0-9]*)"), Qt::CaseSensitive), this);
    for (QLineEdit* edit : {ui->lineEdit_X0, ui->lineEdit_Y0, ui->lineEdit_X1, ui->lineEdit_Y1})
        edit->setValidator(validator);

    connect(ui->pushButton_addPoint, SIGNAL(clicked()), this, SLOT(OnBnClickedBtnAddPoint()));
    connect(ui->pushButton_remove, SIGNAL(clicked()), this, SLOT(OnBnClickedBtnRemove()));
    connect(ui->pushButton_run, SIGNAL(clicked()), this, SLOT(OnBnClickedBtnCalculate()));
    connect(ui->pushButton_editPoint, SIGNAL(clicked()), this, SLOT(OnBnClickedBtnEdit()));
    connect(ui->pushButton_save, SIGNAL(clicked()), this, SLOT(OnBnClickedBtnSaveResult()));
    connect(ui->pushButton_cancel, SIGNAL(clicked()), this, SLOT(OnBnClickedBtnCancel()));
    connect(ui->tableWidget, SIGNAL(currentCellChanged(int, int, int, int)), this,
            SLOT(OnTabWidgetCurrentCellChanged(int, int, int, int)));
    connect(ui->lineEdit_X0, SIGNAL(textChanged(const QString&)), this, SLOT(OnLineEdit_X0_EditChanged(const QString&)));
    connect(ui->lineEdit_Y0, SIGNAL(textChanged(const QString&)), this, SLOT(OnLineEdit_Y0_EditChanged(const QString&)));
    connect(ui->lineEdit_X1, SIGNAL(textChanged(const QString&)), this, SLOT(OnLineEdit_X1_EditChanged(const QString&)));
    connect(ui->lineEdit_Y1, SIGNAL(textChanged(const QString&)), this, SLOT(OnLineEdit_Y1_EditChanged(const QString&)));
    connect(ui->pushButton_Export, SIGNAL(clicked()), this, SLOT(slot_Export()));
    connect(ui->pushButton_Import, SIGNAL(clicked()), this, SLOT(slot_Import()));
    connect(ui->pushButton_QualityReport, &QPushButton::clicked, this, &Calculate4ParamsDlg::slot_QualityReport);
}

Calculate4ParamsDlg::~Calculate4ParamsDlg() = default;

void Calculate4ParamsDlg::OnBnClickedBtnAddPoint()
{
    QDoubleValidator number;
    QStringList cells;
    for (QLineEdit* edit : {ui->lineEdit_X0, ui->lineEdit_Y0, ui->lineEdit_X1, ui->lineEdit_Y1}) {
        QString text = edit->text();
        int pos = 0;
        if (number.validate(text, pos) != QValidator::Acceptable) {
            QMessageBox::warning(this, tr("Error"), tr("Input data is incorrect, please re-enter!"));
            return;
        }
        cells << edit->text();
    }
    m_session->AddPoint(cells);
}

void Calculate4ParamsDlg::OnBnClickedBtnRemove()
{
    m_session->Remove();
}

void Calculate4ParamsDlg::OnBnClickedBtnCalculate()
{
    if (m_session->Table().CheckedCount() < ControlPointCalculation::MinimumPoints4) {
        QMessageBox::warning(this, tr("Error"), tr("Need 2 GCPs at least!"));
        return;
    }
    ControlPointCalculation calculation;
    const ControlPointCalculation::Status status = calculation.Calculate4(m_session->Table().CheckedPoints(4));
    m_session->ShowRun(calculation, status == ControlPointCalculation::Succeeded);
}

void Calculate4ParamsDlg::OnBnClickedBtnEdit()
{
    m_session->ToggleEdit();
}

void Calculate4ParamsDlg::OnBnClickedBtnSaveResult()
{
    m_session->Save([this](const double* result) { return Save4ParamsResultDlg(result, this).exec(); });
}

void Calculate4ParamsDlg::OnBnClickedBtnCancel()
{
    reject();
}

void Calculate4ParamsDlg::OnTabWidgetCurrentCellChanged(int currentRow, int, int previousRow, int)
{
    m_session->CurrentRowChanged(currentRow, previousRow);
}

void Calculate4ParamsDlg::OnLineEdit_X0_EditChanged(const QString& str)
{
    m_session->WriteBack(1, str);
}

void Calculate4ParamsDlg::OnLineEdit_Y0_EditChanged(const QString& str)
{
    m_session->WriteBack(2, str);
}

void Calculate4ParamsDlg::OnLineEdit_X1_EditChanged(const QString& str)
{
    m_session->WriteBack(3, str);
}

void Calculate4ParamsDlg::OnLineEdit_Y1_EditChanged(const QString& str)
{
    m_session->WriteBack(4, str);
}

void Calculate4ParamsDlg::slot_Export()
{
    m_session->Export(QString());
}

void Calculate4ParamsDlg::slot_Import()
{
    m_session->Import(nullptr);
}

void Calculate4ParamsDlg::slot_QualityReport()
{
    m_session->ShowQualityReport(QString(), QString());
}
