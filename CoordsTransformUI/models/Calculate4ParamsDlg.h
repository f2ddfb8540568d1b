#pragma once

#include <QDialog>

#include <memory>

class ControlPointSession;
namespace KivFramework {
class IApplication;
}

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
    /// `application`: the host whose map the quality report can add its
    /// residual layer to (none: the report offers no map).
    explicit Calculate4ParamsDlg(QWidget* parent = nullptr, KivFramework::IApplication* application = nullptr);
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
    void slot_QualityReport();

private:
    std::unique_ptr<Ui::Calculate4ParamsDlg> ui;
    std::unique_ptr<ControlPointSession> m_session;
};
