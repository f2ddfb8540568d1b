#include "plugin/Calculate7ParamsCommand.h"

#include "models/Calculate7ParamsDlg.h"
#include "plugin/CommandDialog.h"

bool Calculate7ParamsCommand::IsEnable()
{
    return true;
}

void Calculate7ParamsCommand::OnClick()
{
    // Opens even without a host (the dialog then has no parent).
    RunCommandDialog<Calculate7ParamsDlg>(m_pApplication);
}
