#include "models/Calculate7ParamsDlg.h"

Calculate7ParamsDlg::Calculate7ParamsDlg(QWidget* parent) : QDialog(parent)
{
    setWindowTitle(tr("Seven-parameter Calculation"));
}

Calculate7ParamsDlg::~Calculate7ParamsDlg() = default;
