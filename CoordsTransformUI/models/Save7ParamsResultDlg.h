#pragma once

#include <QDialog>
#include <QString>

#include <memory>

namespace Ui {
class Save7ParamsResultDlg;
}

/// Stores a computed seven-parameter model under a name; the source and target
/// names come from the calculation, the proposed model name can be edited.
class Save7ParamsResultDlg : public QDialog
{
    Q_OBJECT
public:
    /// `result7` holds DX, DY, DZ, w, k, r, m; the dialog keeps its own copy.
    Save7ParamsResultDlg(const double* result7, QString sourceName, QString targetName, QString proposedName,
                         QWidget* parent = nullptr);
    ~Save7ParamsResultDlg() override;

private slots:
    void OnBtnClickedOk();

private:
    std::unique_ptr<Ui::Save7ParamsResultDlg> ui;
    double m_result[7] = {0, 0, 0, 0, 0, 0, 0};
    QString m_sourceName;
    QString m_targetName;
};
