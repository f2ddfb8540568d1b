#include "plugin/Calculate4ParamsCommand.h"

#include "models/Calculate4ParamsDlg.h"
#include "plugin/CommandDialog.h"

bool Calculate4ParamsCommand::IsEnable()
{
    return true;
}

void Calculate4ParamsCommand::OnClick()
{
    // Opens even without a host (the dialog then has no parent).
    RunCommandDialog<Calculate4ParamsDlg>(m_pApplication);
}
