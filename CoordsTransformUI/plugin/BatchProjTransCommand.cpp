#include "plugin/BatchProjTransCommand.h"

#include "plugin/DialogParent.h"
#include "reprojection/BatchProjTransDlg.h"
#include "reprojection/ReprojectionJob.h"

#include "KivAlgo/Algorithm.h"

#include <boost/bind/bind.hpp>

using namespace boost::placeholders;

bool BatchProjTransCommand::IsEnable()
{
    return true;
}

void BatchProjTransCommand::OnClick()
{
    // Opens even without a host (the dialog then has no parent).
    try {
        QWidget* parent = DialogParent(m_pApplication);
        BatchProjTransDlg dialog(parent);
        if (dialog.exec() != QDialog::Accepted)
            return;
        ReprojectionJob::Start(*dialog.GetParams(), QStringLiteral("BatchProjectTransAlgo"), tr("BatchReproject"),
                               parent, tr("The algorithm library fails to load!"),
                               [this](KivAlgo::Algorithm* algorithm) {
                                   algorithm->SigProgressUpdated().connect(
                                       boost::bind(&BatchProjTransCommand::OnProgressUpdated, this, _1, _2, _3));
                                   algorithm->SigExecuteCompleted().connect(
                                       boost::bind(&BatchProjTransCommand::OnExecuteCompleted, this, _1));
                                   algorithm->SigExecuteCanceled().connect(
                                       boost::bind(&BatchProjTransCommand::OnExecuteCanceled, this, _1));
                               });
    } catch (...) {
    }
}

int BatchProjTransCommand::OnProgressUpdated(double percent, const QString& text, void*)
{
    return ReprojectionJob::ShowProgress(m_pDesktopFrame, percent, text);
}

void BatchProjTransCommand::OnExecuteCompleted(void* algorithm)
{
    ReprojectionJob::Complete(algorithm, m_pDesktopFrame, m_pApplication,
                              tr("Batch spatial reference system transformation process complete!"), false,
                              [this](int code, const QString& message) { OnExecuteErrored(code, message); });
}

void BatchProjTransCommand::OnExecuteErrored(int, const QString& message)
{
    ReprojectionJob::ReportError(m_pDesktopFrame, tr("BatchTransformation"),
                                 message.isEmpty() ? tr("Reproject Fail!") : message,
                                 tr("Batch spatial reference system transformation process failed!"));
}

void BatchProjTransCommand::OnExecuteCanceled(void* algorithm)
{
    // Ended first, then reset: the batch job has always done it in this order.
    ReprojectionJob::Cancelled(algorithm, m_pDesktopFrame, true);
}
