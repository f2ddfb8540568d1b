#pragma once

#include <QDialog>

/// Placeholder until the dialog is built: an empty dialog with its title.
class PointCoordsTransformDlg : public QDialog
{
    Q_OBJECT
public:
    explicit PointCoordsTransformDlg(QWidget* parent = nullptr);
    ~PointCoordsTransformDlg() override;
};
