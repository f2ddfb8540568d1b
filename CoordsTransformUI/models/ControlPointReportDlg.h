#pragma once

#include "models/ControlPointReport.h"

#include <QDialog>

#include <memory>

namespace Ui {
class ControlPointReportDlg;
}

/// Shows the quality report of the last calculation and saves it as PDF.
class ControlPointReportDlg : public QDialog
{
    Q_OBJECT
public:
    ControlPointReportDlg(const ControlPointReport& report, QWidget* parent = nullptr);
    ~ControlPointReportDlg() override;

private slots:
    void slot_SavePdf();

private:
    std::unique_ptr<Ui::ControlPointReportDlg> ui;
    ControlPointReport m_report;
};
