#include "plugin/PointCoordsTransCommand.h"

#include "spatialref/PointCoordsTransformDlg.h"
#include "plugin/CommandDialog.h"

bool PointCoordsTransCommand::IsEnable()
{
    return true;
}

void PointCoordsTransCommand::OnClick()
{
    if (!m_pApplication)
        return;
    RunCommandDialog<PointCoordsTransformDlg>(m_pApplication);
}
