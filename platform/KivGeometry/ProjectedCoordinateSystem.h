#pragma once

#include "KivGeometry/GeographicCoordinateSystem.h"
#include "KivGeometry/Projection.h"
#include "KivGeometry/SpatialReference.h"

namespace KivGeometry {

/// A projected coordinate system (easting, northing).
class ProjectedCoordinateSystem : public SpatialReference
{
public:
    ProjectedCoordinateSystem() = default;
    ProjectedCoordinateSystem(const SpatialReference& other) : SpatialReference(other) {}

    /// The geographic base of the held system; for a geographic system, a copy
    /// of itself. Null when nothing is held.
    KivUtility::_ptr_t<GeographicCoordinateSystem> GetGeographicCoordinateSystem() const;
    /// The projection method and its parameters (see `Projection` for the
    /// index table). Null when the held system is not projected.
    KivUtility::_ptr_t<Projection> GetProjection() const;
    /// Metres per linear unit of the system (1 for metres).
    double GetLinearUnits() const;
};

} // namespace KivGeometry
