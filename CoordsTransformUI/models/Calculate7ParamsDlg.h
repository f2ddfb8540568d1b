#pragma once

#include "KivGeometry/SpatialReference.h"
#include "KivUtility/_ptr_t.h"

#include <QDialog>

#include <memory>

class ControlPointSession;
namespace KivFramework {
class IApplication;
}
class QComboBox;
class QLabel;
class QLineEdit;

namespace Ui {
class Calculate7ParamsDlg;
}

/// Computes a seven-parameter model (DX, DY, DZ, ω, κ, γ, m) between the
/// ellipsoids of two chosen systems from control points given as plane or
/// geodetic coordinates, shows each used point's plane and height residuals
/// and hands the result to the save dialog.
class Calculate7ParamsDlg : public QDialog
{
    Q_OBJECT
public:
    /// `application`: the host whose map the quality report can add its
    /// residual layer to (none: the report offers no map).
    explicit Calculate7ParamsDlg(QWidget* parent = nullptr, KivFramework::IApplication* application = nullptr);
    ~Calculate7ParamsDlg() override;

private slots:
    void OnComboxCurrentIndexChanged_src(int index);
    void OnComboxCurrentIndexChanged_des(int index);
    void OnBtnClickedAdd();
    void OnBtnClickedEdit();
    void OnBtnClickedRemove();
    void OnBtnClickedRun();
    void OnBtnClickedSave();
    void OnBtnClickedCancel();
    void OnComboxCurrentIndexChanged_SrcCoordStyle(int index);
    void OnComboxCurrentIndexChanged_DesCoordStyle(int index);
    void OnRadiobtnToggled_SrcXYH(bool checked);
    void OnRadiobtnToggled_DesXYH(bool checked);
    void OnTabWidgetCurrentCellChanged(int currentRow, int currentColumn, int previousRow, int previousColumn);
    void OnLineEditTextChanged_SrcB(QString str);
    void OnLineEditTextChanged_SrcL(QString str);
    void OnLineEditTextChanged_SrcH(QString str);
    void OnLineEditTextChanged_DesX(QString str);
    void OnLineEditTextChanged_DesY(QString str);
    void OnLineEditTextChanged_DesH(QString str);
    void slot_LineSrcBChanged(QString text);
    void slot_LineSrcLChanged(QString text);
    void slot_LineDesXChanged(QString text);
    void slot_LineDesLChanged(QString text);
    void slot_Export();
    void slot_Import();
    void slot_QualityReport();

private:
    using RefPtr = KivUtility::_ptr_t<KivGeometry::SpatialReference>;

    /// Lets the user pick a system for one side; true when one was chosen.
    bool ChooseReference(QComboBox* combo, RefPtr& reference, bool source);
    void ApplyCoordStyle(int index, QLineEdit* latitude, QLineEdit* longitude);
    void SetPlaneMode(bool plane, QLineEdit* latitude, QLineEdit* longitude, QLabel* latLabel, QLabel* lonLabel);
    /// Refuses a latitude of 90 or more (`limit` 90) or a longitude of 180 or
    /// more (`limit` 180) typed on a geographic side.
    void CheckRange(QLineEdit* edit, const RefPtr& reference, const QString& text, int limit);
    /// A geographic side's angle as the table keeps it.
    static QString TableAngle(const QString& text);
    QString PairText() const;
    /// The name the save dialog records: a projected system's geographic one.

    std::unique_ptr<Ui::Calculate7ParamsDlg> ui;
    std::unique_ptr<ControlPointSession> m_session;
    RefPtr m_pSrcSpatialRef;
    RefPtr m_pDesSpatialRef;
};
