#include "models/ControlPointReportDlg.h"

#include "ui_ControlPointReportDlg.h"

#include "models/ResidualLayer.h"

#include "KivCarto/Map.h"
#include "KivFramework/IApplication.h"
#include "KivUI/EnvironmentSetting.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QFontDatabase>
#include <QMessageBox>

ControlPointReportDlg::ControlPointReportDlg(const ControlPointReport& report, QWidget* parent,
                                             KivFramework::IApplication* application)
    : QDialog(parent), ui(new Ui::ControlPointReportDlg), m_report(report), m_application(application)
{
    ui->setupUi(this);
    ui->plainTextEdit_Report->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    ui->plainTextEdit_Report->setTabStopDistance(90);
    ui->plainTextEdit_Report->setPlainText(m_report.Text());
    connect(ui->pushButton_SavePdf, &QPushButton::clicked, this, &ControlPointReportDlg::slot_SavePdf);
    ui->pushButton_ShowOnMap->setEnabled(m_application && m_application->GetCurrentMap()
                                         && m_report.Quality().IsValid() && m_report.Quality().HasPositions());
    connect(ui->pushButton_ShowOnMap, &QPushButton::clicked, this, &ControlPointReportDlg::slot_ShowOnMap);
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

void ControlPointReportDlg::slot_ShowOnMap()
{
    const KivUtility::_ptr_t<KivCarto::Map> map = m_application ? m_application->GetCurrentMap() : nullptr;
    if (!map)
        return;
    // In GDAL's memory, so that no file is left behind.
    const QString path = ResidualLayer::MemoryPath();
    const double factor = ResidualLayer::Exaggeration(m_report.Quality());
    QString error;
    if (!ResidualLayer::Write(m_report.Quality(), factor, path, &error)) {
        QMessageBox::warning(this, tr("Warning"), error);
        return;
    }
    map->AddLayer(new KivCarto::Layer(ResidualLayer::Name(factor), path));
    map->Refresh(0, true);
}
