#pragma once

#include "KivFramework/BaseCommand.h"

/// Opens the manual entry of a four-parameter model.
class Set4ParamsCommand : public KivFramework::BaseCommand
{
public:
    Set4ParamsCommand() = default;
    Set4ParamsCommand(const Set4ParamsCommand&) = default;
    Set4ParamsCommand& operator=(const Set4ParamsCommand&) = default;
    ~Set4ParamsCommand() override = default;

    /// Always true: the command never greys itself out.
    bool IsEnable() override;
    void OnClick() override;
};
