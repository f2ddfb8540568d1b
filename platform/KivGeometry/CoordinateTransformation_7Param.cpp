#include "KivGeometry/CoordinateTransformation_7Param.h"

#include "ProjDefinitions.h"
#include "ProjObjectPool.h"
#include "ProjPointBatch.h"

#include <cmath>
#include <string>

namespace KivGeometry {

class CoordinateTransformation_7ParamPrivate
{
public:
    double params[7] = {0, 0, 0, 0, 0, 0, 0};
    bool hasParams = false;
    std::string sourceEllipsoid;
    std::string targetEllipsoid;
    // Built on first use after a change; the pool shares it between objects
    // with the same parameters and ellipsoids.
    mutable std::shared_ptr<ProjObjectPool::Entry> pipeline;
    mutable bool pipelineBuilt = false;

    void changed()
    {
        pipeline.reset();
        pipelineBuilt = false;
    }

    ProjObjectPool::Lease lease() const
    {
        if (!pipelineBuilt) {
            pipelineBuilt = true;
            pipeline.reset();
            bool finite = true;
            for (double p : params)
                finite = finite && std::isfinite(p);
            if (hasParams && finite && !sourceEllipsoid.empty() && !targetEllipsoid.empty()) {
                using ProjDefinitions::number;
                // Geodetic -> geocentric, Bursa-Wolf in the coordinate-frame
                // convention with PROJ's small-angle matrix (no +exact),
                // rotations in arc-seconds and scale in ppm, -> geodetic.
                const std::string def =
                    "+proj=pipeline"
                    " +step +proj=unitconvert +xy_in=deg +xy_out=rad"
                    " +step +proj=cart" + sourceEllipsoid +
                    " +step +proj=helmert +x=" + number(params[0]) + " +y=" + number(params[1]) +
                    " +z=" + number(params[2]) + " +rx=" + number(params[3]) + " +ry=" + number(params[4]) +
                    " +rz=" + number(params[5]) + " +s=" + number(params[6] * 1e6) +
                    " +convention=coordinate_frame"
                    " +step +inv +proj=cart" + targetEllipsoid +
                    " +step +proj=unitconvert +xy_in=rad +xy_out=deg";
                pipeline = ProjObjectPool::definition(def);
            }
        }
        return ProjObjectPool::Lease(pipeline);
    }
};

CoordinateTransformation_7Param::CoordinateTransformation_7Param()
    : d(std::make_unique<CoordinateTransformation_7ParamPrivate>())
{
}

CoordinateTransformation_7Param::~CoordinateTransformation_7Param() = default;

void CoordinateTransformation_7Param::SetCT7Param(double dx, double dy, double dz, double w, double k, double r, double m)
{
    const double p[7] = {dx, dy, dz, w, k, r, m};
    std::copy(p, p + 7, d->params);
    d->hasParams = true;
    d->changed();
}

namespace {
// Callers pass 1 / inverse flattening; a sphere's inverse flattening is 0.
double flattening(double f)
{
    return std::isinf(f) && f > 0 ? 0.0 : f;
}
} // namespace

void CoordinateTransformation_7Param::SetSourceSpheroid(double a, double /*b*/, double f)
{
    f = flattening(f);
    d->sourceEllipsoid = ProjDefinitions::ellipsoidFromFlattening(a, f);
    d->changed();
}

void CoordinateTransformation_7Param::SetTargetSpheroid(double a, double /*b*/, double f)
{
    f = flattening(f);
    d->targetEllipsoid = ProjDefinitions::ellipsoidFromFlattening(a, f);
    d->changed();
}

bool CoordinateTransformation_7Param::ConvertBLHToBLH(double B, double L, double H, double& B2, double& L2,
                                                      double& H2) const
{
    try {
        ProjObjectPool::Lease lease = d->lease();
        if (!lease)
            return false;
        const PJ_COORD out = proj_trans(lease.get(), PJ_FWD, proj_coord(L, B, H, 0));
        proj_errno_reset(lease.get());
        if (!std::isfinite(out.xyz.x) || !std::isfinite(out.xyz.y) || !std::isfinite(out.xyz.z))
            return false;
        L2 = out.xyz.x;
        B2 = out.xyz.y;
        H2 = out.xyz.z;
        return true;
    } catch (...) {
        return false;
    }
}

bool CoordinateTransformation_7Param::ConvertBLHToBLH(int count, double* b, double* l, double* h, int* success) const
{
    if (count <= 0)
        return true;
    try {
        ProjObjectPool::Lease lease = d->lease();
        // PROJ works in longitude, latitude order.
        return ProjPointBatch::transform(lease.get(), PJ_FWD, count, l, b, h, success);
    } catch (...) {
        return ProjPointBatch::transform(nullptr, PJ_FWD, count, l, b, h, success);
    }
}

std::string CoordinateTransformation_7Param::InvertibleDefinition() const
{
    const double* p = d->params;
    bool finite = true;
    for (int i = 0; i < 7; ++i)
        finite = finite && std::isfinite(p[i]);
    if (!d->hasParams || !finite || d->sourceEllipsoid.empty() || d->targetEllipsoid.empty())
        return std::string();
    using ProjDefinitions::number;
    // docs/geodesy.md §6: (1 + m) times the coordinate-frame small-angle matrix.
    constexpr double kSecondToRad = 3.14159265358979323846 / 648000.0;
    const double w = p[3] * kSecondToRad, k = p[4] * kSecondToRad, g = p[5] * kSecondToRad, s = 1.0 + p[6];
    const double m[9] = {s, s * g, -s * k, -s * g, s, s * w, s * k, -s * w, s};
    static const char* const names[9] = {"s11", "s12", "s13", "s21", "s22", "s23", "s31", "s32", "s33"};
    std::string affine = " +step +proj=affine +xoff=" + number(p[0]) + " +yoff=" + number(p[1]) +
                         " +zoff=" + number(p[2]);
    for (int i = 0; i < 9; ++i)
        affine += std::string(" +") + names[i] + "=" + number(m[i]);
    return "+proj=pipeline"
           " +step +proj=unitconvert +xy_in=deg +xy_out=rad"
           " +step +proj=cart" + d->sourceEllipsoid + affine +
           " +step +inv +proj=cart" + d->targetEllipsoid +
           " +step +proj=unitconvert +xy_in=rad +xy_out=deg";
}

} // namespace KivGeometry
