#include "plugin/DataProjTransCommand.h"

#include "plugin/DialogParent.h"
#include "reprojection/DataProjTransDlg.h"
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
        const boost::any parameters(*dialog.GetParams());
        const QString name = ReprojectionJob::AlgorithmFor(dialog.GetParams()->strInputFile);
        KivAlgo::AlgoFactory* factory = KivAlgo::AlgoFactory::Instance();
        KivAlgo::Algorithm* algorithm = factory->CreateAlgorithm(ReprojectionJob::LibraryName(), name);
        if (!algorithm) {
            QWidget* window = m_pDesktopFrame->GetMainWindow();
            QMessageBox::warning(window, window ? window->windowTitle() : QString(),
                                 tr("The algorithm library fails to load!"), QMessageBox::Ok);
            return;
        }
        algorithm->SetParameters(parameters);
        algorithm->SetDisplayName(tr("Reproject"));
        algorithm->SigProgressUpdated().connect(boost::bind(&DataProjTransCommand::OnProgressUpdated, this, _1, _2, _3));
        algorithm->SigExecuteCompleted().connect(boost::bind(&DataProjTransCommand::OnExecuteCompleted, this, _1));
        algorithm->SigExecuteCanceled().connect(boost::bind(&DataProjTransCommand::OnExecuteCanceled, this, _1));
        // From here the handlers own the algorithm; one that never starts is ours to delete.
        if (!factory->Run(algorithm))
            delete algorithm;
    } catch (...) {
    }
}

int DataProjTransCommand::OnProgressUpdated(double percent, const QString& text, void*)
{
    KivFramework::IProgressIndicator* indicator = ReprojectionJob::Indicator(m_pDesktopFrame);
    if (indicator && percent < 100.0)
        indicator->ShowProgress(percent, text);
    return 1;
}

void DataProjTransCommand::OnExecuteCompleted(void* pointer)
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
        indicator->ShowProgress(100.0, tr("Data spatial reference system transformation process complete!"));
        indicator->End();
    }
    if (!algorithm)
        return;
    // A record of another type is a broken algorithm library: bad_any_cast goes up.
    const stCoordsTransformInfo info = boost::any_cast<stCoordsTransformInfo>(algorithm->GetParameters());
    ReprojectionJob::AddResultLayers(m_pApplication, info.lstOutputFiles);
    if (!info.strOutputFile.isEmpty())
        ReprojectionJob::AddResultLayers(m_pApplication, {info.strOutputFile});
}

void DataProjTransCommand::OnExecuteErrored(int, const QString& message)
{
    QWidget* window = m_pDesktopFrame ? m_pDesktopFrame->GetMainWindow() : nullptr;
    QMessageBox::warning(window, tr("Coordinate transformation"), message.isEmpty() ? tr("Reproject Fail!") : message,
                         QMessageBox::Ok);
    if (KivFramework::IProgressIndicator* indicator = ReprojectionJob::Indicator(m_pDesktopFrame)) {
        indicator->ShowProgress(0.0, tr("Data spatial reference system transformation process failed!"));
        indicator->End();
    }
}

void DataProjTransCommand::OnExecuteCanceled(void* pointer)
{
    if (KivFramework::IProgressIndicator* indicator = ReprojectionJob::Indicator(m_pDesktopFrame)) {
        indicator->Reset();
        indicator->End();
    }
    delete static_cast<KivAlgo::Algorithm*>(pointer);
}
