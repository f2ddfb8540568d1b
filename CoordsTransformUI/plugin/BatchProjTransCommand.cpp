#include "plugin/BatchProjTransCommand.h"

#include "reprojection/BatchProjTransDlg.h"
#include "plugin/CommandDialog.h"

bool BatchProjTransCommand::IsEnable()
{
    return true;
}

void BatchProjTransCommand::OnClick()
{
    // Opens even without a host (the dialog then has no parent).
    RunCommandDialog<BatchProjTransDlg>(m_pApplication);
}
