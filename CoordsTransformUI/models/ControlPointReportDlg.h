#pragma once

#include "models/ControlPointReport.h"

#include <QDialog>

#include <memory>

namespace KivFramework {
class IApplication;
}
namespace Ui {
class ControlPointReportDlg;
}

/// Shows the quality report of the last calculation, saves it as PDF and, in
/// a host with a map, adds its points and residual vectors as a layer.
class ControlPointReportDlg : public QDialog
{
    Q_OBJECT
public:
    ControlPointReportDlg(const ControlPointReport& report, QWidget* parent = nullptr,
                          KivFramework::IApplication* application = nullptr);
    ~ControlPointReportDlg() override;

private slots:
    void slot_SavePdf();
    void slot_ShowOnMap();

private:
    std::unique_ptr<Ui::ControlPointReportDlg> ui;
    ControlPointReport m_report;
    KivFramework::IApplication* m_application;
};
