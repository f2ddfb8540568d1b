#pragma once

#include <QDialog>

#include <memory>

class ControlPointTable;
class QLineEdit;

namespace Ui {
class Calculate4ParamsDlg;
}

/// Computes a four-parameter plane model (DX, DY, T, K) from control points
/// that the user types in or imports, shows each used point's residual and
/// hands the result to the save dialog.
class Calculate4ParamsDlg : public QDialog
{
    Q_OBJECT
public:
    explicit Calculate4ParamsDlg(QWidget* parent = nullptr);
    ~Calculate4ParamsDlg() override;

private slots:
    void OnBnClickedBtnAddPoint();
    void OnBnClickedBtnRemove();
    void OnBnClickedBtnCalculate();
    void OnBnClickedBtnEdit();
    void OnBnClickedBtnSaveResult();
    void OnBnClickedBtnCancel();
    void OnTabWidgetCurrentCellChanged(int currentRow, int currentColumn, int previousRow, int previousColumn);
    void OnLineEdit_X0_EditChanged(const QString& str);
    void OnLineEdit_Y0_EditChanged(const QString& str);
    void OnLineEdit_X1_EditChanged(const QString& str);
    void OnLineEdit_Y1_EditChanged(const QString& str);
    void slot_Export();
    void slot_Import();

private:
    QList<QLineEdit*> InputEdits() const;
    /// Shows the coordinates of the edited row in the line edits (empty for
    /// a row without a point) without writing them back.
    void ShowEditedRow();
    /// Edit mode: a line edit's text goes straight into its column.
    void WriteBack(int column, const QString& text);

    std::unique_ptr<Ui::Calculate4ParamsDlg> ui;
    std::unique_ptr<ControlPointTable> m_table;
    bool m_bEditing = false;
    bool m_bShowingRow = false;
    int m_nEditRow = -1;
    bool m_bHasResult = false;
    /// The last array from the library (DX, DY, T, K), released with free.
    double* m_pResult = nullptr;
};
