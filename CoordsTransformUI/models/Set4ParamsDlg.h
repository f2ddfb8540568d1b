#pragma once

#include <QDialog>

/// Placeholder until the dialog is built: an empty dialog with its title.
class Set4ParamsDlg : public QDialog
{
    Q_OBJECT
public:
    explicit Set4ParamsDlg(QWidget* parent = nullptr);
    ~Set4ParamsDlg() override;
};
