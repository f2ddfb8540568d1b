#pragma once

#include "KivFramework/BaseCommand.h"

/// Opens the manual entry of a seven-parameter model.
class Set7ParamsCommand : public KivFramework::BaseCommand
{
public:
    Set7ParamsCommand() = default;
    Set7ParamsCommand(const Set7ParamsCommand&) = default;
    Set7ParamsCommand& operator=(const Set7ParamsCommand&) = default;
    ~Set7ParamsCommand() override = default;

    /// Always true: the command never greys itself out.
    bool IsEnable() override;
    void OnClick() override;
};
