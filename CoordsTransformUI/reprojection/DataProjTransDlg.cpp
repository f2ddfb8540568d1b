#include "reprojection/DataProjTransDlg.h"

DataProjTransDlg::DataProjTransDlg(QWidget* parent) : QDialog(parent)
{
    setWindowTitle(tr("Data Coordinate Conversion"));
}

DataProjTransDlg::~DataProjTransDlg() = default;
