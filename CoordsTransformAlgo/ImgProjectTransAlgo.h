#pragma once

#include "ReprojectionAlgorithm.h"

/// Reprojects the raster `strInputFile` to `strOutputFile` in the format
/// `strRasterFormat` ("GTiff", "HFA" or "ENVI").
class ImgProjectTransAlgo : public ReprojectionAlgorithm
{
protected:
    bool Reproject(stCoordsTransformInfo& info) override;
};
