#include "plugin/FileDataProjTransCommand.h"

#include "textfiles/FileDataProjTransDlg.h"
#include "plugin/CommandDialog.h"

bool FileDataProjTransCommand::IsEnable()
{
    return true;
}

void FileDataProjTransCommand::OnClick()
{
    if (!m_pApplication)
        return;
    RunCommandDialog<FileDataProjTransDlg>(m_pApplication);
}
