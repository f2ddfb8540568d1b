#include "KivGeometry/CoordFuncLibrary.h"

#include "AngleText.h"
#include "ControlPointFit.h"
#include "ProjDefinitions.h"
#include "ProjObjectPool.h"
#include "ProjPointBatch.h"

#include <climits>
#include <cmath>
#include <vector>

namespace KivGeometry {

namespace {

constexpr double kZoneFactor = 1000000.0;

// Geodetic degrees <-> geocentric metres on one ellipsoid.
std::shared_ptr<ProjObjectPool::Entry> geocentric(const Spheroid& spheroid)
{
    const std::string ellps =
        ProjDefinitions::ellipsoidFromInverseFlattening(spheroid.GetSemiMajorAxis(), spheroid.GetInverseFlattening());
    if (ellps.empty())
        return nullptr;
    return ProjObjectPool::definition("+proj=pipeline +step +proj=unitconvert +xy_in=deg +xy_out=rad"
                                      " +step +proj=cart" + ellps);
}

// Geodetic degrees <-> Gauss-Krüger easting, northing: PROJ's transverse
// Mercator (exact algorithm) with scale 1 and false easting 500 km.
std::shared_ptr<ProjObjectPool::Entry> gaussKruger(const Spheroid& spheroid, double centralMeridian)
{
    const std::string ellps =
        ProjDefinitions::ellipsoidFromInverseFlattening(spheroid.GetSemiMajorAxis(), spheroid.GetInverseFlattening());
    if (ellps.empty() || !std::isfinite(centralMeridian))
        return nullptr;
    return ProjObjectPool::definition("+proj=pipeline +step +proj=unitconvert +xy_in=deg +xy_out=rad"
                                      " +step +proj=tmerc +lat_0=0 +lon_0=" + ProjDefinitions::number(centralMeridian) +
                                      " +k=1 +x_0=500000 +y_0=0" + ellps);
}

bool run(const std::shared_ptr<ProjObjectPool::Entry>& entry, PJ_DIRECTION direction, int count,
         const double* inX, const double* inY, const double* inZ, double* outX, double* outY, double* outZ,
         int* success = nullptr)
{
    if (count <= 0)
        return true;
    try {
        ProjObjectPool::Lease lease(entry);
        return ProjPointBatch::transform(lease.get(), direction, count, inX, inY, inZ, outX, outY, outZ, success);
    } catch (...) {
        return false;
    }
}

} // namespace

QString CoordFuncLibrary::ConvertDegToDegMinSec(double degrees)
{
    return AngleText::format(degrees);
}

double CoordFuncLibrary::ConvertDegMinSecToDeg(const QString& text, bool* ok)
{
    return AngleText::parse(text, ok);
}

bool CoordFuncLibrary::ConvertBLHToXYZ(const Spheroid& spheroid, double* b, double* l, double* h, int count)
{
    if (count <= 0)
        return true;
    if (!b || !l || !h)
        return false;
    // PROJ takes longitude first; X lands in b, Y in l, Z in h.
    return run(geocentric(spheroid), PJ_FWD, count, l, b, h, b, l, h);
}

bool CoordFuncLibrary::ConvertXYZToBLH(const Spheroid& spheroid, double* x, double* y, double* z, int count)
{
    if (count <= 0)
        return true;
    if (!x || !y || !z)
        return false;
    // Longitude comes out first: it lands in y, the latitude in x.
    return run(geocentric(spheroid), PJ_INV, count, x, y, z, y, x, z);
}

bool CoordFuncLibrary::ConvertXYToBL(const Spheroid& spheroid, double centralMeridian, double* x, double* y,
                                     int count, bool hasZoneNumber)
{
    if (count <= 0)
        return true;
    if (!x || !y)
        return false;
    try {
        std::vector<double> east;
        const double* eastIn = y;
        if (hasZoneNumber) {
            east.assign(y, y + count);
            for (double& e : east)
                e = RemoveZoneNumber(e);
            eastIn = east.data();
        }
        // Easting, northing in; longitude lands in y, latitude in x.
        return run(gaussKruger(spheroid, centralMeridian), PJ_INV, count, eastIn, x, nullptr, y, x, nullptr);
    } catch (...) {
        return false;
    }
}

bool CoordFuncLibrary::ConvertBLToXY(const Spheroid& spheroid, double centralMeridian, double* b, double* l,
                                     int count, int zoneNumber)
{
    if (count <= 0)
        return true;
    if (!b || !l)
        return false;
    try {
        std::vector<int> success(zoneNumber > 0 ? size_t(count) : 0);
        // Longitude, latitude in; easting lands in l (Y), northing in b (X).
        const bool all = run(gaussKruger(spheroid, centralMeridian), PJ_FWD, count, l, b, nullptr, l, b, nullptr,
                             zoneNumber > 0 ? success.data() : nullptr);
        if (zoneNumber > 0) {
            for (int i = 0; i < count; ++i) {
                if (success[size_t(i)])
                    l[i] += zoneNumber * kZoneFactor;
            }
        }
        return all;
    } catch (...) {
        return false;
    }
}

int CoordFuncLibrary::ZoneNumberOf(double y)
{
    if (!std::isfinite(y) || y < kZoneFactor || y / kZoneFactor >= double(INT_MAX))
        return 0;
    return int(std::floor(y / kZoneFactor));
}

double CoordFuncLibrary::RemoveZoneNumber(double y)
{
    return y - ZoneNumberOf(y) * kZoneFactor;
}

double* CoordFuncLibrary::Calculate4Params(double* srcX, double* srcY, double* dstX, double* dstY, int count,
                                           double* residuals)
{
    try {
        return ControlPointFit::fourParameters(srcX, srcY, dstX, dstY, count, residuals);
    } catch (...) {
        return nullptr;
    }
}

double* CoordFuncLibrary::Calculate7Params(double* srcX, double* srcY, double* srcZ, double* dstX, double* dstY,
                                           double* dstZ, int count, double* planeResiduals, double* heightResiduals)
{
    try {
        return ControlPointFit::sevenParameters(srcX, srcY, srcZ, dstX, dstY, dstZ, count, planeResiduals,
                                                heightResiduals);
    } catch (...) {
        return nullptr;
    }
}

} // namespace KivGeometry
