#pragma once

#include "KivUtility/CRef.h"
#include "KivUtility/_ptr_t.h"

#include <QString>

#include <memory>

namespace KivGeometry {

class SpatialReferencePrivate;

/// Kinds reported by `SpatialReference::GetType()`. Dialogs test only 0 and 10.
enum SpatialReferenceType {
    SRT_Unknown = -1,
    SRT_Geographic = 0,   ///< geographic 2D or 3D (longitude, latitude)
    SRT_Projected = 10,   ///< projected (easting, northing)
    SRT_Geocentric = 20,  ///< geocentric X, Y, Z
    SRT_Vertical = 30,
    SRT_Compound = 40,
    SRT_Engineering = 50
};

/// A coordinate reference system.
///
/// Any object of this family can hold any kind of system: the subclasses only
/// add accessors, and those accessors work on whatever the object holds (a
/// `GeographicCoordinateSystem` that imported a PROJCS still reports the
/// PROJCS through `GetName` and `ExportToPrettyWkt`, and its datum through
/// `GetDatum`). `SpatialReferenceFactory` returns an object of the subclass
/// matching the kind, so `dynamic_cast` tells a geographic from a projected
/// system as well as `GetType` does.
///
/// Axis order is always the traditional GIS order, x = easting or longitude,
/// y = northing or latitude, whatever the authority defines.
///
/// Objects are not thread-safe; use one per thread (they are cheap to copy).
class SpatialReference : public KivUtility::CRef
{
public:
    SpatialReference();
    SpatialReference(const SpatialReference& other);
    SpatialReference& operator=(const SpatialReference& other);
    ~SpatialReference() override;

    /// True when the object holds a system.
    bool IsValid() const;

    /// The system's name ("Beijing 1954 / 3-degree Gauss-Kruger CM 117E", or
    /// "GCS_WGS_1984" after MorphToESRI); empty when nothing is held.
    virtual QString GetName() const;
    /// One of `SpatialReferenceType`.
    virtual int GetType() const;

    /// Replaces the held system with the one described by `wkt` (WKT1, ESRI
    /// WKT or WKT2, with any blanks, tabs and line breaks). Returns false and
    /// leaves the object empty when the text is not a system.
    virtual bool ImportFromWkt(const QString& wkt);
    /// WKT1 on one line, with AUTHORITY nodes where the system is known to an
    /// authority. Empty when nothing is held.
    virtual QString ExportToWkt() const;
    /// WKT1 indented over several lines.
    virtual QString ExportToPrettyWkt() const;
    /// The PROJ string of the system, for diagnostics and the CLI.
    virtual QString ExportToProj4() const;
    /// "EPSG:4214" and the like when the system carries an authority code,
    /// otherwise empty.
    virtual QString GetAuthorityCode() const;

    /// Rewrites names and WKT in ESRI form ("GCS_WGS_1984", "D_WGS_1984",
    /// "Krasovsky_1940"). Idempotent.
    virtual bool MorphToESRI();
    /// Brings the system to a canonical form before comparisons: ESRI names are
    /// turned back into their authority form and a system that matches an
    /// EPSG entry exactly takes that entry's identity.
    virtual bool Normalize();

    /// Same system: same kind, datum, ellipsoid, prime meridian, units and, for
    /// projected systems, the same method and parameters. Names are ignored.
    virtual bool IsSame(const SpatialReference* other) const;
    bool IsSame(const KivUtility::_ptr_t<SpatialReference>& other) const { return IsSame(other.get()); }
    /// Same geographic base: same datum and ellipsoid (and prime meridian),
    /// e.g. two Gauss-Krüger zones of Beijing 1954. Names are ignored.
    virtual bool IsSameGeoCS(const SpatialReference* other) const;
    bool IsSameGeoCS(const KivUtility::_ptr_t<SpatialReference>& other) const { return IsSameGeoCS(other.get()); }

    /// A new object holding a copy of this system, of the subclass matching its
    /// kind.
    KivUtility::_ptr_t<SpatialReference> Clone() const;

    /// Internal state, for the implementation of the geometry library.
    SpatialReferencePrivate* d_func() const { return d.get(); }

protected:
    std::unique_ptr<SpatialReferencePrivate> d;
};

} // namespace KivGeometry
