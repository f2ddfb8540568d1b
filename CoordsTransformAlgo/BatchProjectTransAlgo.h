#pragma once

#include "ReprojectionAlgorithm.h"

/// Reprojects every `lstInputFiles` entry into `strOutputFolder` under its
/// own name (vector data as shapefiles, one per layer of a container). Vector
/// files run side by side on all cores; rasters one after another, each
/// warped on all cores. A file that fails does not stop the others: the
/// outputs written are listed in `lstOutputFiles`, the failures in the error
/// message, one line each.
class BatchProjectTransAlgo : public ReprojectionAlgorithm
{
protected:
    bool Reproject(stCoordsTransformInfo& info) override;
};
