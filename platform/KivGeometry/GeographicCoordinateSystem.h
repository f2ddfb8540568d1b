#pragma once

#include "KivGeometry/Datum.h"
#include "KivGeometry/SpatialReference.h"

namespace KivGeometry {

/// A geographic coordinate system (longitude, latitude in degrees).
class GeographicCoordinateSystem : public SpatialReference
{
public:
    GeographicCoordinateSystem() = default;
    GeographicCoordinateSystem(const SpatialReference& other) : SpatialReference(other) {}

    /// The datum of the held system (of its geographic base when it holds a
    /// projected system): its name and its ellipsoid. Null when nothing is held.
    KivUtility::_ptr_t<Datum> GetDatum() const;
};

} // namespace KivGeometry
