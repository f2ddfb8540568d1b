#include "KivGeometry/ProjectedCoordinateSystem.h"

#include "QuietGdalErrors.h"
#include "SpatialReferencePrivate.h"

namespace KivGeometry {

namespace {

// WKT1 parameter names read for each index of Projection's table, in order
// of preference: methods name the same quantity differently.
const char* const* parameterNames(int index)
{
    static const char* const falseEasting[] = {SRS_PP_FALSE_EASTING, nullptr};
    static const char* const centralMeridian[] = {SRS_PP_CENTRAL_MERIDIAN, SRS_PP_LONGITUDE_OF_CENTER,
                                                  SRS_PP_LONGITUDE_OF_ORIGIN, nullptr};
    static const char* const falseNorthing[] = {SRS_PP_FALSE_NORTHING, nullptr};
    static const char* const scaleFactor[] = {SRS_PP_SCALE_FACTOR, nullptr};
    static const char* const latitudeOfOrigin[] = {SRS_PP_LATITUDE_OF_ORIGIN, SRS_PP_LATITUDE_OF_CENTER, nullptr};
    static const char* const standardParallel1[] = {SRS_PP_STANDARD_PARALLEL_1, nullptr};
    static const char* const standardParallel2[] = {SRS_PP_STANDARD_PARALLEL_2, nullptr};
    static const char* const azimuth[] = {SRS_PP_AZIMUTH, nullptr};
    static const char* const* const table[Projection::ParameterCount] = {
        falseEasting, centralMeridian, falseNorthing, scaleFactor,
        latitudeOfOrigin, standardParallel1, standardParallel2, azimuth};
    return table[index];
}

} // namespace

KivUtility::_ptr_t<GeographicCoordinateSystem> ProjectedCoordinateSystem::GetGeographicCoordinateSystem() const
{
    auto base = d->geographic();
    if (!base)
        return nullptr;
    auto* g = new GeographicCoordinateSystem();
    // A copy of the kept base carries its computed identity along, so building
    // a transformation to it again is cheap.
    *g->d_func() = *base;
    return g;
}

KivUtility::_ptr_t<Projection> ProjectedCoordinateSystem::GetProjection() const
{
    if (!d->isValid() || d->kind() != SRT_Projected)
        return nullptr;
    QuietGdalErrors quiet;
    double values[Projection::ParameterCount] = {0, 0, 0, 1, 0, 0, 0, 0};
    for (int i = 0; i < Projection::ParameterCount; ++i) {
        for (const char* const* name = parameterNames(i); *name; ++name) {
            OGRErr err = OGRERR_NONE;
            const double v = d->srs().GetNormProjParm(*name, values[i], &err);
            if (err == OGRERR_NONE) {
                values[i] = v;
                break;
            }
        }
    }
    return new Projection(d->nodeValue("PROJECTION"), values);
}

double ProjectedCoordinateSystem::GetLinearUnits() const
{
    if (!d->isValid())
        return 1.0;
    QuietGdalErrors quiet;
    const double units = d->srs().GetLinearUnits(nullptr);
    return units > 0 ? units : 1.0;
}

} // namespace KivGeometry
