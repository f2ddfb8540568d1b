#include "reprojection/BatchProjTransDlg.h"

BatchProjTransDlg::BatchProjTransDlg(QWidget* parent) : QDialog(parent)
{
    setWindowTitle(tr("Batch Project"));
}

BatchProjTransDlg::~BatchProjTransDlg() = default;
