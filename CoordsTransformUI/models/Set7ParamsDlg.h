#pragma once

#include <QDialog>

/// Placeholder until the dialog is built: an empty dialog with its title.
class Set7ParamsDlg : public QDialog
{
    Q_OBJECT
public:
    explicit Set7ParamsDlg(QWidget* parent = nullptr);
    ~Set7ParamsDlg() override;
};
