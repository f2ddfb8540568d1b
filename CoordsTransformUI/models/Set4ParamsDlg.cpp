#include "models/Set4ParamsDlg.h"

Set4ParamsDlg::Set4ParamsDlg(QWidget* parent) : QDialog(parent)
{
    setWindowTitle(tr("Set 4 Params"));
}

Set4ParamsDlg::~Set4ParamsDlg() = default;
