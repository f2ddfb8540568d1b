#pragma once

#include <QDialog>

#include <memory>

class ModelEntryForm;
class QLineEdit;

namespace Ui {
class Set4ParamsDlg;
}

/// Manual entry of a four-parameter model (DX, DY, T, K) between two projected
/// systems, added to the model store under a new name. A taken name is refused,
/// never replaced.
class Set4ParamsDlg : public QDialog
{
    Q_OBJECT
public:
    explicit Set4ParamsDlg(QWidget* parent = nullptr);
    ~Set4ParamsDlg() override;

private slots:
    void OnBtnClickedSrcSpatialRef();
    void OnBtnClickedDesSpatialRef();
    void slot_SpatialRefTextChanged(QString text);
    void slot_Import();
    void OnBtnClickedOk();

private:
    /// Opens the picker; a projected system's name goes into `edit`, any other
    /// choice is refused with a warning.
    void chooseReference(QLineEdit* edit);

    std::unique_ptr<Ui::Set4ParamsDlg> ui;
    std::unique_ptr<ModelEntryForm> m_form;
};
