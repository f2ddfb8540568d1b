#pragma once

#include "ReprojectionAlgorithm.h"

/// Reprojects the vector data `strInputFile` to the shapefile `strOutputFile`;
/// a container (GeoPackage, geodatabase) gives one shapefile per layer in
/// `strOutputFolder`.
class ShapeDataCoordTransformAlgo : public ReprojectionAlgorithm
{
protected:
    bool Reproject(stCoordsTransformInfo& info) override;
};
