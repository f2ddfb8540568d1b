#pragma once

#include "KivFramework/BaseCommand.h"

/// Opens the point coordinate conversion.
class PointCoordsTransCommand : public KivFramework::BaseCommand
{
public:
    PointCoordsTransCommand() = default;
    PointCoordsTransCommand(const PointCoordsTransCommand&) = default;
    PointCoordsTransCommand& operator=(const PointCoordsTransCommand&) = default;
    ~PointCoordsTransCommand() override = default;

    /// Always true: the command never greys itself out.
    bool IsEnable() override;
    void OnClick() override;
};
