#pragma once

#include <QDialog>

/// Placeholder until the dialog is built: an empty dialog with its title.
class Calculate4ParamsDlg : public QDialog
{
    Q_OBJECT
public:
    explicit Calculate4ParamsDlg(QWidget* parent = nullptr);
    ~Calculate4ParamsDlg() override;
};
