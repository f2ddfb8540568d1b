#pragma once

#include "RouteSettings.h"

#include <gdal_alg.h>

#include <atomic>

/// A GDAL transformer (pixel/line of the source raster to and from pixel/line
/// of the target raster) over `RouteTransformation`, the warper's view of the
/// conversion route. It can be serialised, so the warper clones it for each
/// of its threads.
namespace RouteWarpTransformer {

/// A new transformer; the target geotransform starts as the identity (target
/// coordinates instead of pixels), as `GDALSuggestedWarpOutput2` wants.
/// Null when the route is unusable. Free with `GDALDestroyTransformer`.
void* Create(const RouteSettings& settings, const double sourceGeoTransform[6], double zonePrefix);
void SetTargetGeoTransform(void* transformer, const double targetGeoTransform[6]);
/// Once `*stop` is true every point fails, so a warp under way runs out at
/// once (its kernel cannot be stopped otherwise). The flag must outlive the
/// transformer and its clones, which share it: this process only.
void SetStopFlag(void* transformer, const std::atomic<bool>* stop);

/// The `GDALTransformerFunc`.
int Transform(void* transformer, int dstToSrc, int count, double* x, double* y, double* z, int* success);

} // namespace RouteWarpTransformer
