#pragma once

#include "plugin/ReprojectionCommand.h"

/// Reprojects a batch of datasets into a folder: the batch reprojection
/// dialog, then the batch algorithm.
class BatchProjTransCommand : public ReprojectionCommand
{
public:
    BatchProjTransCommand();

protected:
    bool RunDialog(ReprojectionRequest* request, QWidget** warningParent) override;
};
