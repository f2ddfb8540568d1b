#pragma once

#include "models/TransformModel.h"

#include "KivGeometry/SpatialReference.h"
#include "KivUtility/_ptr_t.h"

#include <QDialog>
#include <QList>

#include <memory>

class QLabel;
class QLineEdit;
class QRadioButton;
class QRegExpValidator;

namespace Ui {
class PointCoordsTransformDlg;
}

/// Converts one point typed by the user from an original to a target
/// coordinate system. Between different geographic bases a stored
/// seven-parameter model is applied; on one base a stored four-parameter
/// model acts on projected coordinates. The conversion itself goes through
/// `CoordinateConversion`, the route the file dialog and the command-line
/// tool use, so the same point gives the same digits everywhere.
class PointCoordsTransformDlg : public QDialog
{
    Q_OBJECT
public:
    explicit PointCoordsTransformDlg(QWidget* parent = nullptr);
    ~PointCoordsTransformDlg() override;

private slots:
    void slot_Original();
    void slot_Target();
    void slot_ComboBox7Parameter(int index);
    void slot_7Parameter();
    void slot_Transform();
    void slot_bCode();
    void OnRadioToggledTargDec(bool checked);
    void OnRadioToggledSrcDec(bool checked);
    void slot_SrcMeter(bool checked);
    void slot_DesMeter(bool checked);

private:
    /// The widgets and state of one side (original or target), so that both
    /// sides share one implementation.
    struct Side
    {
        QLineEdit* name;
        QLineEdit* b;
        QLineEdit* l;
        QLineEdit* h;
        QLabel* labelB;
        QLabel* labelL;
        QRadioButton* degree;
        QRadioButton* dms;
        QRadioButton* meter;
        KivUtility::_ptr_t<KivGeometry::SpatialReference>* system;
        bool* decimal;
    };
    Side source();
    Side target();

    void chooseSystem(const Side& side, const Side& other);
    void toggleDecimal(const Side& side, bool checked);
    void meter(const Side& side, bool checked);
    /// Puts the stored models of the current mode into the combo.
    void fillModelCombo();
    void loadModels();
    /// Result text of a converted angle or plane coordinate.
    QString format(double value) const;
    bool isGeographic(const KivUtility::_ptr_t<KivGeometry::SpatialReference>& system) const;
    bool isProjected(const KivUtility::_ptr_t<KivGeometry::SpatialReference>& system) const;

    std::unique_ptr<Ui::PointCoordsTransformDlg> ui;
    KivUtility::_ptr_t<KivGeometry::SpatialReference> m_srcRef;
    KivUtility::_ptr_t<KivGeometry::SpatialReference> m_desRef;
    bool m_b4Param = false;
    bool m_bSrcDec = false;
    bool m_bDesDec = false;
    bool m_bCode = false;
    QList<double> m_7Params;
    QList<double> m_4Params;
    QList<TransformModel> m_models7;
    QList<TransformModel> m_models4;
    QRegExpValidator* m_validator = nullptr;
};
