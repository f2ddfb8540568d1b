#pragma once

#include "KivFramework/DesktopCommand.h"

/// Opens the batch reprojection.
class BatchProjTransCommand : public KivFramework::DesktopCommand
{
public:
    BatchProjTransCommand() = default;
    BatchProjTransCommand(const BatchProjTransCommand&) = default;
    BatchProjTransCommand& operator=(const BatchProjTransCommand&) = default;
    ~BatchProjTransCommand() override = default;

    /// Always true: the command never greys itself out.
    bool IsEnable() override;
    void OnClick() override;
};
