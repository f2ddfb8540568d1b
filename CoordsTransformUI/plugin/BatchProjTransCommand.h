#pragma once

#include "KivFramework/DesktopCommand.h"

#include <QCoreApplication>
#include <QString>

/// Opens the batch reprojection and, when it is accepted, runs the
/// reprojection through the host's algorithm library: progress on the host's
/// indicator, the results added to the current map. The command must outlive
/// the job, since the algorithm's handlers are bound to it.
class BatchProjTransCommand : public KivFramework::DesktopCommand
{
    Q_DECLARE_TR_FUNCTIONS(BatchProjTransCommand)

public:
    BatchProjTransCommand() = default;
    BatchProjTransCommand(const BatchProjTransCommand&) = default;
    BatchProjTransCommand& operator=(const BatchProjTransCommand&) = default;
    ~BatchProjTransCommand() override = default;

    /// Always true: the command never greys itself out.
    bool IsEnable() override;
    void OnClick() override;

private:
    int OnProgressUpdated(double percent, const QString& text, void* algorithm);
    void OnExecuteCompleted(void* algorithm);
    void OnExecuteCanceled(void* algorithm);
    void OnExecuteErrored(int code, const QString& message);
};
