#include "models/ControlPointReportDlg.h"

#include "ui_ControlPointReportDlg.h"

#include "KivUI/EnvironmentSetting.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QFontDatabase>
#include <QMessageBox>

ControlPointReportDlg::ControlPointReportDlg(const ControlPointReport& report, QWidget* parent)
    : QDialog(parent), ui(new Ui::ControlPointReportDlg), m_report(report)
{
    ui->setupUi(this);
    ui->plainTextEdit_Report->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    ui->plainTextEdit_Report->setTabStopDistance(90);
    ui->plainTextEdit_Report->setPlainText(m_report.Text());
    connect(ui->pushButton_SavePdf, &QPushButton::clicked, this, &ControlPointReportDlg::slot_SavePdf);
    connect(ui->pushButton_Close, &QPushButton::clicked, this, &QDialog::accept);
}

ControlPointReportDlg::~ControlPointReportDlg() = default;

void ControlPointReportDlg::slot_SavePdf()
{
    KivUI::EnvironmentSetting* settings = KivUI::EnvironmentSetting::Instance();
    const QString path = QFileDialog::getSaveFileName(this, tr("Save as PDF"), settings->GetCurrentWorkDir(),
                                                tr("PDF Files (*.pdf)"));
    if (path.isEmpty())
        return;
    settings->SetCurrentWorkDir(QFileInfo(path).absolutePath());
    QString error;
    if (!m_report.WritePdf(path, &error)) {
        QMessageBox::warning(this, tr("Warning"), error);
        return;
    }
    QMessageBox::information(this, tr("Information"), tr("The report was saved as \"%1\".").arg(path));
}
