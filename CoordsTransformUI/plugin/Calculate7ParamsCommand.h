#pragma once

#include "KivFramework/BaseCommand.h"

/// Opens the seven-parameter calculation from control points.
class Calculate7ParamsCommand : public KivFramework::BaseCommand
{
public:
    Calculate7ParamsCommand() = default;
    Calculate7ParamsCommand(const Calculate7ParamsCommand&) = default;
    Calculate7ParamsCommand& operator=(const Calculate7ParamsCommand&) = default;
    ~Calculate7ParamsCommand() override = default;

    /// Always true: the command never greys itself out.
    bool IsEnable() override;
    void OnClick() override;
};
