#include "textfiles/FileDataProjTransDlg.h"

FileDataProjTransDlg::FileDataProjTransDlg(QWidget* parent) : QDialog(parent)
{
    setWindowTitle(tr("File Coordinate Conversion"));
}

FileDataProjTransDlg::~FileDataProjTransDlg() = default;
