#pragma once

#include <QDialog>

/// Placeholder until the dialog is built: an empty dialog with its title.
class FileDataProjTransDlg : public QDialog
{
    Q_OBJECT
public:
    explicit FileDataProjTransDlg(QWidget* parent = nullptr);
    ~FileDataProjTransDlg() override;
};
