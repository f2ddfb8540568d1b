#include "models/ControlPointSession.h"

#include "models/ControlPointCalculation.h"
#include "models/ControlPointReportDlg.h"
#include "models/ControlPointTable.h"

#include "KivUI/EnvironmentSetting.h"

#include <QCoreApplication>
#include <QDialog>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTableWidget>
#include <QTextCodec>

#include <cstdlib>

ControlPointSession::ControlPointSession(QDialog* dialog, ControlPointFile::Kind kind, const Widgets& widgets)
    : m_dialog(dialog), m_kind(kind), m_widgets(widgets), m_table(new ControlPointTable(widgets.table))
{
    const int values = kind == ControlPointFile::FourParameters ? 4 : 7;
    m_pResult = static_cast<double*>(std::calloc(values, sizeof(double)));
}

ControlPointSession::~ControlPointSession()
{
    std::free(m_pResult);
}

QString ControlPointSession::Tr(const char* text) const
{
    return QCoreApplication::translate(m_dialog->metaObject()->className(), text);
}

void ControlPointSession::ClearInputs()
{
    for (QLineEdit* edit : m_widgets.inputs)
        edit->clear();
}

void ControlPointSession::AddPoint(const QStringList& coordinates)
{
    QStringList cells = coordinates;
    for (int i = 0; i < ControlPointFile(m_kind).ResidualCount(); ++i)
        cells << QString();
    m_table->AddPoint(cells);
    ClearInputs();
}

void ControlPointSession::Remove()
{
    m_table->RemoveSelected();
}

void ControlPointSession::ToggleEdit()
{
    m_bEditing = !m_bEditing;
    m_widgets.edit->setText(m_bEditing ? Tr("Stop Edit") : Tr("Edit"));
    for (QPushButton* button : m_widgets.lockedWhileEditing)
        button->setEnabled(!m_bEditing);
    if (!m_bEditing) {
        ClearInputs();
        return;
    }
    m_nEditRow = m_widgets.table->currentRow();
    ShowEditedRow();
}

void ControlPointSession::ShowEditedRow()
{
    const int count = m_widgets.inputs.size();
    const QStringList texts = m_table->IsFilledRow(m_nEditRow) ? m_table->RowTexts(m_nEditRow, 1, count) : QStringList();
    m_bShowingRow = true;
    for (int i = 0; i < count; ++i)
        m_widgets.inputs.at(i)->setText(texts.value(i));
    m_bShowingRow = false;
}

void ControlPointSession::CurrentRowChanged(int currentRow, int previousRow)
{
    if (!m_bEditing || currentRow == previousRow)
        return;
    m_nEditRow = currentRow;
    ShowEditedRow();
}

void ControlPointSession::WriteBack(int column, const QString& text)
{
    if (m_bEditing && !m_bShowingRow)
        m_table->SetCellText(m_nEditRow, column, text);
}

void ControlPointSession::ShowRun(ControlPointCalculation& calculation, bool succeeded)
{
    std::free(m_pResult);
    m_pResult = nullptr;
    m_bHasResult = succeeded;
    if (!succeeded) {
        m_widgets.result->setText(Tr("Calculate Error!"));
        return;
    }
    m_widgets.result->setText(calculation.ResultText());
    QList<QVector<double>> residuals{calculation.PlaneResiduals()};
    if (m_kind == ControlPointFile::SevenParameters)
        residuals << calculation.HeightResiduals();
    m_table->FillResiduals(1 + m_widgets.inputs.size(), residuals);
    QStringList ids;
    for (const QStringList& row : m_table->CheckedRows())
        ids << row.value(0);
    m_quality.reset(new ControlPointQuality(calculation.Quality(ids)));
    m_pResult = calculation.TakeResult();
}

void ControlPointSession::Save(const std::function<int(const double*)>& saveDialog) const
{
    if (!m_bHasResult) {
        QMessageBox::information(m_dialog, Tr("Information"), Tr("Please run calculation first and get a correct result !"));
        return;
    }
    if (saveDialog(m_pResult) == QDialog::Accepted)
        QMessageBox::information(m_dialog, Tr("Information"), Tr("save result success!"));
}

void ControlPointSession::ShowQualityReport(const QString& source, const QString& target) const
{
    if (!m_bHasResult || !m_quality) {
        QMessageBox::information(m_dialog, Tr("Information"), Tr("Please run calculation first and get a correct result !"));
        return;
    }
    ControlPointReportDlg(ControlPointReport(*m_quality, source, target), m_dialog, m_application).exec();
}

QString ControlPointSession::AskFile(bool save) const
{
    KivUI::EnvironmentSetting* settings = KivUI::EnvironmentSetting::Instance();
    const QString caption = Tr("Open Text File");
    const QString filter = Tr("Text Files (*.txt);;CSV Files(*.csv)");
    const QString path = save
        ? QFileDialog::getSaveFileName(m_dialog, caption, settings->GetCurrentWorkDir(), filter)
        : QFileDialog::getOpenFileName(m_dialog, caption, settings->GetCurrentWorkDir(), filter);
    if (!path.isEmpty())
        settings->SetCurrentWorkDir(QFileInfo(path).absolutePath());
    return path;
}

void ControlPointSession::Export(const QString& pair) const
{
    const QString path = AskFile(true);
    if (path.isEmpty())
        return;

    bool opened = false;
    const bool written = ControlPointFile(m_kind).Write(path, pair, m_widgets.result->text(), m_table->HeaderTexts(),
                                                        m_table->CheckedRows(), &opened);
    if (!opened)
        return;
    if (ControlPointFile::IsCommaSeparated(path))
        QTextCodec::setCodecForLocale(QTextCodec::codecForName("GB18030"));
    if (written)
        QMessageBox::information(m_dialog, Tr("Information"), Tr("Export success!"));
    else
        QMessageBox::warning(m_dialog, Tr("Warning"), Tr("Export failed!"));
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
}

void ControlPointSession::Import(QString* pair) const
{
    const QString path = AskFile(false);
    if (path.isEmpty())
        return;

    ControlPointFile file(m_kind);
    if (!file.Read(path, m_table->HeaderTexts().value(0)))
        return;
    if (pair && !file.ReferencePair().isEmpty())
        *pair = file.ReferencePair();
    for (const ControlPointFile::Point& point : file.Points())
        m_table->AddPoint(point.cells);
    if (file.Points().isEmpty())
        QMessageBox::information(m_dialog, Tr("Information"), Tr("This File is not Vaild!"));
}
