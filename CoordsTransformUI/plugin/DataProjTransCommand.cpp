#include "plugin/DataProjTransCommand.h"

#include "reprojection/DataProjTransDlg.h"
#include "plugin/CommandDialog.h"

bool DataProjTransCommand::IsEnable()
{
    return true;
}

void DataProjTransCommand::OnClick()
{
    if (!m_pApplication || !m_pDesktopFrame)
        return;
    RunCommandDialog<DataProjTransDlg>(m_pApplication);
}
