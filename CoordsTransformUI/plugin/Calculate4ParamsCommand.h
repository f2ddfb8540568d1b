#pragma once

#include "KivFramework/BaseCommand.h"

/// Opens the four-parameter calculation from control points.
class Calculate4ParamsCommand : public KivFramework::BaseCommand
{
public:
    Calculate4ParamsCommand() = default;
    Calculate4ParamsCommand(const Calculate4ParamsCommand&) = default;
    Calculate4ParamsCommand& operator=(const Calculate4ParamsCommand&) = default;
    ~Calculate4ParamsCommand() override = default;

    /// Always true: the command never greys itself out.
    bool IsEnable() override;
    void OnClick() override;
};
