#include "plugin/Set7ParamsCommand.h"

#include "models/Set7ParamsDlg.h"
#include "plugin/CommandDialog.h"

bool Set7ParamsCommand::IsEnable()
{
    return true;
}

void Set7ParamsCommand::OnClick()
{
    // Opens even without a host (the dialog then has no parent).
    RunCommandDialog<Set7ParamsDlg>(m_pApplication);
}
