#include "models/Calculate4ParamsDlg.h"

Calculate4ParamsDlg::Calculate4ParamsDlg(QWidget* parent) : QDialog(parent)
{
    setWindowTitle(tr("Four-parameter Calculation"));
}

Calculate4ParamsDlg::~Calculate4ParamsDlg() = default;
