#pragma once

#include <proj.h>

namespace KivGeometry {

/// Runs a PROJ object over arrays of points in fixed-size batches, without
/// allocating, and writes back only the points that converted: a failed point
/// keeps its input values.
class ProjPointBatch
{
public:
    /// Reads x, y, z (z may be null: heights 0) and writes the results to
    /// outX, outY, outZ, which may be the input arrays themselves or the same
    /// arrays in another order (outZ null exactly when inZ is). `success` (may
    /// be null) receives 1 or 0 per point. A null `pj` fails every point.
    /// Returns true when every point converted.
    static bool transform(PJ* pj, PJ_DIRECTION direction, int count,
                          const double* inX, const double* inY, const double* inZ,
                          double* outX, double* outY, double* outZ, int* success);

    /// In place.
    static bool transform(PJ* pj, PJ_DIRECTION direction, int count, double* x, double* y, double* z, int* success)
    {
        return transform(pj, direction, count, x, y, z, x, y, z, success);
    }
};

} // namespace KivGeometry
