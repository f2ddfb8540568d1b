#pragma once

#include <QDialog>

/// Placeholder until the dialog is built: an empty dialog with its title.
class BatchProjTransDlg : public QDialog
{
    Q_OBJECT
public:
    explicit BatchProjTransDlg(QWidget* parent = nullptr);
    ~BatchProjTransDlg() override;
};
