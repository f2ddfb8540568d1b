#pragma once

#include "KivGeometry/SpatialReference.h"
#include "KivUtility/_ptr_t.h"

#include <QString>

class OGRSpatialReference;

namespace KivGeometry {

/// Makes spatial references from text.
class SpatialReferenceFactory
{
public:
    /// Accepts WKT of any flavour (WKT1, ESRI WKT, WKT2; blanks, tabs and line
    /// breaks anywhere between tokens), authority codes ("EPSG:4214",
    /// "ESRI:102100", "epsg:2435"), PROJ strings ("+proj=tmerc ...") and
    /// PROJJSON. The object is a `GeographicCoordinateSystem` for a geographic
    /// system, a `ProjectedCoordinateSystem` for a projected one and a plain
    /// `SpatialReference` otherwise. Null when the text describes no system.
    static KivUtility::_ptr_t<SpatialReference> CreateSpatialReference(const QString& text);

    /// The system a dataset holds, as GDAL read it, without a trip through
    /// text (which would keep the identifier of the whole system only). A
    /// system that is an EPSG system (named by its code, or, in formats that
    /// store no code, found fully equivalent to one) gets the code's own
    /// definition, so its datum, spheroid, prime meridian and units carry
    /// their EPSG identifiers exactly as `CreateSpatialReference` of the code
    /// gives them. Null for a null or empty system.
    static KivUtility::_ptr_t<SpatialReference> CreateFromDataset(const OGRSpatialReference* srs);
};

} // namespace KivGeometry
