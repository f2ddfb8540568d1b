#pragma once

#include <QDialog>

/// Placeholder until the dialog is built: an empty dialog with its title.
class DataProjTransDlg : public QDialog
{
    Q_OBJECT
public:
    explicit DataProjTransDlg(QWidget* parent = nullptr);
    ~DataProjTransDlg() override;
};
