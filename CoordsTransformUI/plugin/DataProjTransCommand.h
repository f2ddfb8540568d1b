#pragma once

#include "plugin/ReprojectionCommand.h"

/// Reprojects one dataset: the dataset reprojection dialog, then the raster
/// or the vector algorithm by the input's suffix.
class DataProjTransCommand : public ReprojectionCommand
{
public:
    DataProjTransCommand();

protected:
    bool RunDialog(ReprojectionRequest* request, QWidget** warningParent) override;
};
