#include "plugin/BatchProjTransCommand.h"

#include "plugin/DialogParent.h"
#include "reprojection/BatchProjTransDlg.h"
#include "reprojection/ReprojectionJob.h"

#include "KivAlgo/AlgoFactory.h"
#include "KivFramework/IApplication.h"
#include "KivFramework/IDesktopFrame.h"
#include "KivFramework/IProgressIndicator.h"

#include <QMessageBox>
#include <QWidget>

#include <boost/bind/bind.hpp>

#include <memory>

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
        const boost::any parameters(*dialog.GetParams());
        KivAlgo::AlgoFactory* factory = KivAlgo::AlgoFactory::Instance();
        KivAlgo::Algorithm* algorithm =
            factory->CreateAlgorithm(ReprojectionJob::LibraryName(), QStringLiteral("BatchProjectTransAlgo"));
        if (!algorithm) {
            QMessageBox::warning(parent, parent ? parent->windowTitle() : QString(),
                                 tr("The algorithm library fails to load!"), QMessageBox::Ok);
            return;
        }
        algorithm->SetParameters(parameters);
        algorithm->SetDisplayName(tr("BatchReproject"));
        algorithm->SigProgressUpdated().connect(boost::bind(&BatchProjTransCommand::OnProgressUpdated, this, _1, _2, _3));
        algorithm->SigExecuteCompleted().connect(boost::bind(&BatchProjTransCommand::OnExecuteCompleted, this, _1));
        algorithm->SigExecuteCanceled().connect(boost::bind(&BatchProjTransCommand::OnExecuteCanceled, this, _1));
        // From here the handlers own the algorithm; one that never starts is ours to delete.
        if (!factory->Run(algorithm))
            delete algorithm;
    } catch (...) {
    }
}

int BatchProjTransCommand::OnProgressUpdated(double percent, const QString& text, void*)
{
    KivFramework::IProgressIndicator* indicator = ReprojectionJob::Indicator(m_pDesktopFrame);
    if (indicator && percent < 100.0)
        indicator->ShowProgress(percent, text);
    return 1;
}

void BatchProjTransCommand::OnExecuteCompleted(void* pointer)
{
    // Deleted exactly once, whichever way this handler ends.
    std::unique_ptr<KivAlgo::Algorithm> algorithm(static_cast<KivAlgo::Algorithm*>(pointer));
    int code = 0;
    QString message;
    if (algorithm)
        algorithm->GetError(code, message);
    if (code != 0) {
        if (code != KivAlgo::kStoppedByHandler)
            OnExecuteErrored(code, message);
        return;
    }
    if (KivFramework::IProgressIndicator* indicator = ReprojectionJob::Indicator(m_pDesktopFrame)) {
        indicator->ShowProgress(100.0, tr("Batch spatial reference system transformation process complete!"));
        indicator->End();
    }
    if (!algorithm)
        return;
    // A record of another type is a broken algorithm library: bad_any_cast goes up.
    const stCoordsTransformInfo info = boost::any_cast<stCoordsTransformInfo>(algorithm->GetParameters());
    ReprojectionJob::AddResultLayers(m_pApplication, info.lstOutputFiles);
}

void BatchProjTransCommand::OnExecuteErrored(int, const QString& message)
{
    QWidget* window = m_pDesktopFrame ? m_pDesktopFrame->GetMainWindow() : nullptr;
    QMessageBox::warning(window, tr("BatchTransformation"), message.isEmpty() ? tr("Reproject Fail!") : message,
                         QMessageBox::Ok);
    if (KivFramework::IProgressIndicator* indicator = ReprojectionJob::Indicator(m_pDesktopFrame)) {
        indicator->ShowProgress(0.0, tr("Batch spatial reference system transformation process failed!"));
        indicator->End();
    }
}

void BatchProjTransCommand::OnExecuteCanceled(void* pointer)
{
    // Ended first, then reset: the batch job has always done it in this order.
    if (KivFramework::IProgressIndicator* indicator = ReprojectionJob::Indicator(m_pDesktopFrame)) {
        indicator->End();
        indicator->Reset();
    }
    delete static_cast<KivAlgo::Algorithm*>(pointer);
}
