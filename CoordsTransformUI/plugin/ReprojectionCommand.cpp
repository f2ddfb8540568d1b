#include "plugin/ReprojectionCommand.h"

#include "reprojection/ReprojectionJob.h"

#include "KivAlgo/Algorithm.h"

#include <QCoreApplication>

#include <boost/bind/bind.hpp>

using namespace boost::placeholders;

bool ReprojectionCommand::IsEnable()
{
    return true;
}

QString ReprojectionCommand::Text(const char* source) const
{
    return QCoreApplication::translate(m_kind->context, source);
}

void ReprojectionCommand::OnClick()
{
    try {
        ReprojectionRequest request;
        QWidget* warningParent = nullptr;
        if (!RunDialog(&request, &warningParent))
            return;
        request.displayName = Text(m_kind->displayName);
        ReprojectionJob::Start(request, warningParent,
                               Text("The algorithm library fails to load!"),
                               [this](KivAlgo::Algorithm* run) {
                                   run->SigProgressUpdated().connect(
                                       boost::bind(&ReprojectionCommand::OnProgressUpdated, this, _1, _2, _3));
                                   run->SigExecuteCompleted().connect(
                                       boost::bind(&ReprojectionCommand::OnExecuteCompleted, this, _1));
                                   run->SigExecuteCanceled().connect(
                                       boost::bind(&ReprojectionCommand::OnExecuteCanceled, this, _1));
                               });
    } catch (...) {
    }
}

int ReprojectionCommand::OnProgressUpdated(double percent, const QString& text, void*)
{
    return ReprojectionJob::ShowProgress(m_pDesktopFrame, percent, text);
}

void ReprojectionCommand::OnExecuteCompleted(void* algorithm)
{
    ReprojectionJob::Complete(algorithm, m_pDesktopFrame, m_pApplication, Text(m_kind->completeText),
                              m_kind->listThenOutput,
                              [this](int code, const QString& message) { OnExecuteErrored(code, message); });
}

void ReprojectionCommand::OnExecuteErrored(int, const QString& message)
{
    ReprojectionJob::ReportError(m_pDesktopFrame, Text(m_kind->errorTitle),
                                 message.isEmpty() ? Text("Reproject Fail!") : message, Text(m_kind->failedText));
}

void ReprojectionCommand::OnExecuteCanceled(void* algorithm)
{
    ReprojectionJob::Cancelled(algorithm, m_pDesktopFrame, m_kind->endBeforeReset);
}
