#pragma once

#include <QDialog>

/// Placeholder until the dialog is built: an empty dialog with its title.
class Calculate7ParamsDlg : public QDialog
{
    Q_OBJECT
public:
    explicit Calculate7ParamsDlg(QWidget* parent = nullptr);
    ~Calculate7ParamsDlg() override;
};
