#include "plugin/DataProjTransCommand.h"

#include "plugin/DialogParent.h"
#include "reprojection/DataProjTransDlg.h"
#include "reprojection/ReprojectionJob.h"

#include "KivAlgo/Algorithm.h"
#include "KivFramework/IApplication.h"
#include "KivFramework/IDesktopFrame.h"

#include <boost/bind/bind.hpp>

using namespace boost::placeholders;

bool DataProjTransCommand::IsEnable()
{
    return true;
}

void DataProjTransCommand::OnClick()
{
    if (!m_pApplication || !m_pDesktopFrame)
        return;
    try {
        DataProjTransDlg dialog(DialogParent(m_pApplication), m_pApplication->GetCurrentMap());
        if (dialog.exec() != QDialog::Accepted)
            return;
        const stCoordsTransformInfo& info = *dialog.GetParams();
        ReprojectionJob::Start(info, ReprojectionJob::AlgorithmFor(info.strInputFile), tr("Reproject"),
                               m_pDesktopFrame->GetMainWindow(), tr("The algorithm library fails to load!"),
                               [this](KivAlgo::Algorithm* algorithm) {
                                   algorithm->SigProgressUpdated().connect(
                                       boost::bind(&DataProjTransCommand::OnProgressUpdated, this, _1, _2, _3));
                                   algorithm->SigExecuteCompleted().connect(
                                       boost::bind(&DataProjTransCommand::OnExecuteCompleted, this, _1));
                                   algorithm->SigExecuteCanceled().connect(
                                       boost::bind(&DataProjTransCommand::OnExecuteCanceled, this, _1));
                               });
    } catch (...) {
    }
}

int DataProjTransCommand::OnProgressUpdated(double percent, const QString& text, void*)
{
    return ReprojectionJob::ShowProgress(m_pDesktopFrame, percent, text);
}

void DataProjTransCommand::OnExecuteCompleted(void* algorithm)
{
    ReprojectionJob::Complete(algorithm, m_pDesktopFrame, m_pApplication,
                              tr("Data spatial reference system transformation process complete!"), true,
                              [this](int code, const QString& message) { OnExecuteErrored(code, message); });
}

void DataProjTransCommand::OnExecuteErrored(int, const QString& message)
{
    ReprojectionJob::ReportError(m_pDesktopFrame, tr("Coordinate transformation"),
                                 message.isEmpty() ? tr("Reproject Fail!") : message,
                                 tr("Data spatial reference system transformation process failed!"));
}

void DataProjTransCommand::OnExecuteCanceled(void* algorithm)
{
    ReprojectionJob::Cancelled(algorithm, m_pDesktopFrame, false);
}
