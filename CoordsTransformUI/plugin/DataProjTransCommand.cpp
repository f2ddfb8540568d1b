#include "plugin/DataProjTransCommand.h"

#include "plugin/DialogParent.h"
#include "reprojection/DataProjTransDlg.h"

#include "KivFramework/IApplication.h"
#include "KivFramework/IDesktopFrame.h"

#include <QCoreApplication>

namespace {

const ReprojectionCommand::Kind& kind()
{
    static const ReprojectionCommand::Kind k = {
        "DataProjTransCommand",
        QT_TRANSLATE_NOOP("DataProjTransCommand", "Reproject"),
        QT_TRANSLATE_NOOP("DataProjTransCommand", "Data spatial reference system transformation process complete!"),
        QT_TRANSLATE_NOOP("DataProjTransCommand", "Data spatial reference system transformation process failed!"),
        QT_TRANSLATE_NOOP("DataProjTransCommand", "Coordinate transformation"),
        true,
        false};
    return k;
}

} // namespace

DataProjTransCommand::DataProjTransCommand() : ReprojectionCommand(kind()) {}

bool DataProjTransCommand::RunDialog(ReprojectionRequest* request, QWidget** warningParent)
{
    if (!m_pApplication || !m_pDesktopFrame)
        return false;
    DataProjTransDlg dialog(DialogParent(m_pApplication), m_pApplication->GetCurrentMap());
    if (dialog.exec() != QDialog::Accepted)
        return false;
    request->info = *dialog.GetParams();
    request->choice = ReprojectionRequest::BySuffix;
    *warningParent = m_pDesktopFrame->GetMainWindow();
    return true;
}
