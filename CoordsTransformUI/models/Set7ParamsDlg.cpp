#include "models/Set7ParamsDlg.h"

Set7ParamsDlg::Set7ParamsDlg(QWidget* parent) : QDialog(parent)
{
    setWindowTitle(tr("Set 7 Params"));
}

Set7ParamsDlg::~Set7ParamsDlg() = default;
