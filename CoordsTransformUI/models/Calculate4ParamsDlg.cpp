#include "models/Calculate4ParamsDlg.h"

#include "models/ControlPointCalculation.h"
#include "models/ControlPointTable.h"
#include "models/ControlPointTransfer.h"
#include "models/Save4ParamsResultDlg.h"
#include "ui_Calculate4ParamsDlg.h"

#include <QDoubleValidator>
#include <QMessageBox>
#include <QRegExpValidator>

#include <cstdlib>

namespace {
// Table columns after the check column: four coordinates, then the residual.
const int kFirstCoordinate = 1;
const int kCoordinates = 4;
const int kResidualColumn = 5;
} // namespace

Calculate4ParamsDlg::Calculate4ParamsDlg(QWidget* parent)
    : QDialog(parent), ui(new Ui::Calculate4ParamsDlg)
{
    ui->setupUi(this);
    setWindowFlags(windowFlags() & ~(Qt::WindowContextHelpButtonHint | Qt::WindowMinimizeButtonHint
                                     | Qt::WindowMaximizeButtonHint));
    setFixedSize(size());
    m_table.reset(new ControlPointTable(ui->tableWidget));
    // Holds nothing of use until the first computation.
    m_pResult = static_cast<double*>(std::calloc(4, sizeof(double)));

    auto* validator = new QRegExpValidator(QRegExp(QStringLiteral("100|(-?[0-9]*[\\.][0-9]*)"), Qt::CaseSensitive), this);
    for (QLineEdit* edit : InputEdits())
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
}

Calculate4ParamsDlg::~Calculate4ParamsDlg()
{
    std::free(m_pResult);
}

QList<QLineEdit*> Calculate4ParamsDlg::InputEdits() const
{
    return {ui->lineEdit_X0, ui->lineEdit_Y0, ui->lineEdit_X1, ui->lineEdit_Y1};
}

void Calculate4ParamsDlg::OnBnClickedBtnAddPoint()
{
    QDoubleValidator number;
    QStringList cells;
    for (QLineEdit* edit : InputEdits()) {
        QString text = edit->text();
        int pos = 0;
        if (number.validate(text, pos) != QValidator::Acceptable) {
            QMessageBox::warning(this, tr("Error"), tr("Input data is incorrect, please re-enter!"));
            return;
        }
        cells << edit->text();
    }
    cells << QString();
    m_table->AddPoint(cells);
    for (QLineEdit* edit : InputEdits())
        edit->clear();
}

void Calculate4ParamsDlg::OnBnClickedBtnRemove()
{
    m_table->RemoveSelected();
}

void Calculate4ParamsDlg::OnBnClickedBtnCalculate()
{
    if (m_table->CheckedCount() < ControlPointCalculation::MinimumPoints4) {
        QMessageBox::warning(this, tr("Error"), tr("Need 2 GCPs at least!"));
        return;
    }
    const QList<QStringList> points = m_table->CheckedPoints(kCoordinates);

    std::free(m_pResult);
    m_pResult = nullptr;
    ControlPointCalculation calculation;
    if (calculation.Calculate4(points) != ControlPointCalculation::Succeeded) {
        ui->label_Result->setText(tr("Calculate Error!"));
        m_bHasResult = false;
        return;
    }
    ui->label_Result->setText(calculation.ResultText());
    m_table->FillResiduals(kResidualColumn, {calculation.PlaneResiduals()});
    m_pResult = calculation.TakeResult();
    m_bHasResult = true;
}

void Calculate4ParamsDlg::OnBnClickedBtnEdit()
{
    const QList<QPushButton*> others{ui->pushButton_addPoint, ui->pushButton_remove, ui->pushButton_run,
                                     ui->pushButton_save};
    if (!m_bEditing) {
        ui->pushButton_editPoint->setText(tr("Stop Edit"));
        for (QPushButton* button : others)
            button->setEnabled(false);
        m_bEditing = true;
        m_nEditRow = ui->tableWidget->currentRow();
        ShowEditedRow();
        return;
    }
    ui->pushButton_editPoint->setText(tr("Edit"));
    for (QPushButton* button : others)
        button->setEnabled(true);
    m_bEditing = false;
    for (QLineEdit* edit : InputEdits())
        edit->clear();
}

void Calculate4ParamsDlg::ShowEditedRow()
{
    const bool filled = m_table->IsFilledRow(m_nEditRow);
    const QStringList texts = filled ? m_table->RowTexts(m_nEditRow, kFirstCoordinate, kCoordinates) : QStringList();
    m_bShowingRow = true;
    const QList<QLineEdit*> edits = InputEdits();
    for (int i = 0; i < edits.size(); ++i)
        edits.at(i)->setText(texts.value(i));
    m_bShowingRow = false;
}

void Calculate4ParamsDlg::WriteBack(int column, const QString& text)
{
    if (m_bEditing && !m_bShowingRow)
        m_table->SetCellText(m_nEditRow, column, text);
}

void Calculate4ParamsDlg::OnBnClickedBtnSaveResult()
{
    if (!m_bHasResult) {
        QMessageBox::information(this, tr("Information"), tr("Please run calculation first and get a correct result !"));
        return;
    }
    Save4ParamsResultDlg dlg(m_pResult, this);
    if (dlg.exec() == QDialog::Accepted)
        QMessageBox::information(this, tr("Information"), tr("save result success!"));
}

void Calculate4ParamsDlg::OnBnClickedBtnCancel()
{
    reject();
}

void Calculate4ParamsDlg::OnTabWidgetCurrentCellChanged(int currentRow, int, int previousRow, int)
{
    if (!m_bEditing || currentRow == previousRow)
        return;
    m_nEditRow = currentRow;
    ShowEditedRow();
}

void Calculate4ParamsDlg::OnLineEdit_X0_EditChanged(const QString& str)
{
    WriteBack(1, str);
}

void Calculate4ParamsDlg::OnLineEdit_Y0_EditChanged(const QString& str)
{
    WriteBack(2, str);
}

void Calculate4ParamsDlg::OnLineEdit_X1_EditChanged(const QString& str)
{
    WriteBack(3, str);
}

void Calculate4ParamsDlg::OnLineEdit_Y1_EditChanged(const QString& str)
{
    WriteBack(4, str);
}

void Calculate4ParamsDlg::slot_Export()
{
    ControlPointTransfer(this, m_table.get(), ControlPointFile::FourParameters).Export(QString(), ui->label_Result->text());
}

void Calculate4ParamsDlg::slot_Import()
{
    ControlPointTransfer(this, m_table.get(), ControlPointFile::FourParameters).Import();
}
