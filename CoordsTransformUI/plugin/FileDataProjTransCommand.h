#pragma once

#include "KivFramework/BaseCommand.h"

/// Opens the coordinate text file conversion.
class FileDataProjTransCommand : public KivFramework::BaseCommand
{
public:
    FileDataProjTransCommand() = default;
    FileDataProjTransCommand(const FileDataProjTransCommand&) = default;
    FileDataProjTransCommand& operator=(const FileDataProjTransCommand&) = default;
    ~FileDataProjTransCommand() override = default;

    /// Always true: the command never greys itself out.
    bool IsEnable() override;
    void OnClick() override;
};
