#include "plugin/Set4ParamsCommand.h"

#include "models/Set4ParamsDlg.h"
#include "plugin/CommandDialog.h"

bool Set4ParamsCommand::IsEnable()
{
    return true;
}

void Set4ParamsCommand::OnClick()
{
    // Opens even without a host (the dialog then has no parent).
    RunCommandDialog<Set4ParamsDlg>(m_pApplication);
}
