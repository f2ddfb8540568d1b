#pragma once

#include <QDialog>

#include <memory>

class QLineEdit;

namespace Ui {
class Save4ParamsResultDlg;
}

/// Stores a computed four-parameter model under a name: the user gives the
/// source and target reference names (free text or chosen from the picker) and
/// the model name, which follows the two as "<source>-to-<target>" until typed.
class Save4ParamsResultDlg : public QDialog
{
    Q_OBJECT
public:
    /// `result4` holds DX, DY, T, K; the dialog keeps its own copy.
    Save4ParamsResultDlg(const double* result4, QWidget* parent = nullptr);
    ~Save4ParamsResultDlg() override;

private slots:
    void OnBnClickedBtnSrcSpatialRef();
    void OnBnClickedBtnDesSpatialRef();
    void OnBnClickedOK();
    void OnBnClickedCancel();
    void OnLineEditTextChanged(QString text);

private:
    /// Puts the name of a reference chosen in the picker into `edit`.
    void chooseReferenceName(QLineEdit* edit);

    std::unique_ptr<Ui::Save4ParamsResultDlg> ui;
    double m_result[4] = {0, 0, 0, 0};
};
