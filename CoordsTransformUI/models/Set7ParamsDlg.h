#pragma once

#include "KivGeometry/SpatialReference.h"
#include "KivUtility/_ptr_t.h"

#include <QDialog>

#include <memory>

class ModelEntryForm;
class QLineEdit;

namespace Ui {
class Set7ParamsDlg;
}

/// Manual entry of a seven-parameter model (DX, DY, DZ, w, k, r, m) between
/// two systems of different geographic bases, added to the model store under a
/// new name. A taken name is refused, never replaced.
class Set7ParamsDlg : public QDialog
{
    Q_OBJECT
public:
    explicit Set7ParamsDlg(QWidget* parent = nullptr);
    ~Set7ParamsDlg() override;

    /// Hands the dialog the systems a caller already has, as if the user had
    /// chosen them: each non-null one is kept and its name (its geographic
    /// system's name for a projected one) goes into the field. A null one
    /// leaves its side as it is.
    void SetSpatialReferences(const KivUtility::_ptr_t<KivGeometry::SpatialReference>& source,
                              const KivUtility::_ptr_t<KivGeometry::SpatialReference>& target);

private slots:
    void OnBtnClickedSrcSpatialRef();
    void OnBtnClickedDesSpatialRef();
    void slot_SpatialRefTextChanged(QString text);
    void slot_Import();
    void OnBtnClickedOk();

private:
    /// Keeps `ref` in `kept` and shows its name in `edit`.
    void takeReference(const KivUtility::_ptr_t<KivGeometry::SpatialReference>& ref,
                       KivUtility::_ptr_t<KivGeometry::SpatialReference>& kept, QLineEdit* edit);
    void chooseReference(KivUtility::_ptr_t<KivGeometry::SpatialReference>& kept, QLineEdit* edit);

    std::unique_ptr<Ui::Set7ParamsDlg> ui;
    std::unique_ptr<ModelEntryForm> m_form;
    KivUtility::_ptr_t<KivGeometry::SpatialReference> m_srcRef;
    KivUtility::_ptr_t<KivGeometry::SpatialReference> m_desRef;
};
