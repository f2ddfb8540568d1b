#pragma once

#include "KivFramework/DesktopCommand.h"

/// Opens the dataset reprojection.
class DataProjTransCommand : public KivFramework::DesktopCommand
{
public:
    DataProjTransCommand() = default;
    DataProjTransCommand(const DataProjTransCommand&) = default;
    DataProjTransCommand& operator=(const DataProjTransCommand&) = default;
    ~DataProjTransCommand() override = default;

    /// Always true: the command never greys itself out.
    bool IsEnable() override;
    void OnClick() override;
};
