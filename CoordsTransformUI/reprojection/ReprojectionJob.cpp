#include "reprojection/ReprojectionJob.h"

#include "reprojection/ReprojectionRunner.h"

#include "KivAlgo/Algorithm.h"
#include "KivCarto/LayerFactory.h"
#include "KivCarto/Map.h"
#include "KivFramework/IApplication.h"
#include "KivFramework/IDesktopFrame.h"
#include "KivFramework/IProgressIndicator.h"

#include <QMessageBox>
#include <QWidget>

#include <boost/any.hpp>

#include <memory>

namespace {

KivFramework::IProgressIndicator* indicatorOf(KivFramework::IDesktopFrame* frame)
{
    return frame ? frame->GetProgressIndicator() : nullptr;
}

} // namespace

void ReprojectionJob::Start(const ReprojectionRequest& request, QWidget* warningParent, const QString& missingText,
                            const std::function<void(KivAlgo::Algorithm*)>& connect)
{
    if (ReprojectionRunner::Start(request, connect) == ReprojectionRunner::NotLoaded)
        QMessageBox::warning(warningParent, warningParent ? warningParent->windowTitle() : QString(), missingText,
                             QMessageBox::Ok);
}

int ReprojectionJob::ShowProgress(KivFramework::IDesktopFrame* frame, double percent, const QString& text)
{
    KivFramework::IProgressIndicator* indicator = indicatorOf(frame);
    if (indicator && percent < 100.0)
        indicator->ShowProgress(percent, text);
    return 1;
}

void ReprojectionJob::Complete(void* pointer, KivFramework::IDesktopFrame* frame,
                               KivFramework::IApplication* application, const QString& completeText,
                               bool withOutputFile, const std::function<void(int, const QString&)>& errored)
{
    const std::unique_ptr<KivAlgo::Algorithm> algorithm(static_cast<KivAlgo::Algorithm*>(pointer));
    if (!algorithm)
        return;
    int code = 0;
    QString message;
    algorithm->GetError(code, message);
    if (code != 0) {
        if (code != KivAlgo::kStoppedByHandler)
            errored(code, message);
        return;
    }
    if (KivFramework::IProgressIndicator* indicator = indicatorOf(frame)) {
        indicator->ShowProgress(100.0, completeText);
        indicator->End();
    }
    const stCoordsTransformInfo info = boost::any_cast<stCoordsTransformInfo>(algorithm->GetParameters());
    AddResultLayers(application, info.lstOutputFiles);
    if (withOutputFile && !info.strOutputFile.isEmpty())
        AddResultLayers(application, {info.strOutputFile});
}

void ReprojectionJob::ReportError(KivFramework::IDesktopFrame* frame, const QString& title, const QString& message,
                                  const QString& failedText)
{
    QMessageBox::warning(frame ? frame->GetMainWindow() : nullptr, title, message, QMessageBox::Ok);
    if (KivFramework::IProgressIndicator* indicator = indicatorOf(frame)) {
        indicator->ShowProgress(0.0, failedText);
        indicator->End();
    }
}

void ReprojectionJob::Cancelled(void* algorithm, KivFramework::IDesktopFrame* frame, bool endFirst)
{
    if (KivFramework::IProgressIndicator* indicator = indicatorOf(frame)) {
        if (endFirst)
            indicator->End();
        indicator->Reset();
        if (!endFirst)
            indicator->End();
    }
    delete static_cast<KivAlgo::Algorithm*>(algorithm);
}

void ReprojectionJob::AddResultLayers(KivFramework::IApplication* application, const QStringList& paths)
{
    if (!application)
        return;
    const KivUtility::_ptr_t<KivCarto::Map> map = application->GetCurrentMap();
    if (!map)
        return;
    for (const QString& path : paths) {
        const KivUtility::_ptr_t<KivCarto::Layer> layer = KivCarto::LayerFactory::CreateDefaultLayer(path);
        if (!layer)
            continue;
        map->AddLayer(layer);
        map->Refresh(0, true);
    }
}
