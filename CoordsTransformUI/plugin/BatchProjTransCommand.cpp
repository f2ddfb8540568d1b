#include "plugin/BatchProjTransCommand.h"

#include "plugin/DialogParent.h"
#include "reprojection/BatchProjTransDlg.h"

#include <QCoreApplication>

namespace {

const ReprojectionCommand::Kind& kind()
{
    static const ReprojectionCommand::Kind k = {
        "BatchProjTransCommand",
        QT_TRANSLATE_NOOP("BatchProjTransCommand", "BatchReproject"),
        QT_TRANSLATE_NOOP("BatchProjTransCommand", "Batch spatial reference system transformation process complete!"),
        QT_TRANSLATE_NOOP("BatchProjTransCommand", "Batch spatial reference system transformation process failed!"),
        QT_TRANSLATE_NOOP("BatchProjTransCommand", "BatchTransformation"),
        false,
        // Ended first, then reset: the batch job has always done it in this order.
        true};
    return k;
}

} // namespace

BatchProjTransCommand::BatchProjTransCommand() : ReprojectionCommand(kind()) {}

bool BatchProjTransCommand::RunDialog(ReprojectionRequest* request, QWidget** warningParent)
{
    // Opens even without a host (the dialog then has no parent).
    QWidget* parent = DialogParent(m_pApplication);
    BatchProjTransDlg dialog(parent);
    if (dialog.exec() != QDialog::Accepted)
        return false;
    request->info = *dialog.GetParams();
    request->choice = ReprojectionRequest::Batch;
    *warningParent = parent;
    return true;
}
