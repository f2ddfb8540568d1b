#pragma once

#include "KivGeometry/SpatialReference.h"
#include "KivUtility/_ptr_t.h"

#include <QList>
#include <QString>

#include <memory>
#include <string>

class CoordinateConversionPrivate;

/// The one route by which points are converted between two coordinate
/// systems, shared by the point conversion dialog, the file conversion dialog
/// and the command-line tool, so that the same point gives the same digits
/// everywhere. docs/geodesy.md describes the conventions.
///
/// Points are in the surveying order: `north` is the latitude (degrees) or the
/// northing X (metres), `east` the longitude (degrees) or the easting Y
/// (metres), `h` the height in metres.
///
/// Modes:
/// - SevenParameters (the systems lie on different geographic bases): a
///   projected source is unprojected to its own geographic system, the point
///   is shifted with the seven-parameter model between the two ellipsoids
///   (`CoordinateTransformation_7Param::ConvertBLHToBLH`), and a projected
///   target is projected from its geographic system. Needs exactly seven
///   model values (DX, DY, DZ, ω, κ, γ, m); the height changes.
/// - FourParameters (the systems share one geographic base): geographic to
///   geographic leaves the point as it is; geographic to projected and
///   projected to geographic go through PROJ; projected to projected first
///   re-projects the point when the two central meridians differ (compared as
///   whole degrees), then applies the four-parameter model (DX, DY, T, K), or
///   nothing when no model is set. The height passes through unchanged.
/// - Direct: PROJ's own best operation between the two systems, heights
///   included (used by the command-line tool when no model is given).
///
/// With the code-number flag, a projected source's Y values carry their zone
/// number in front (Y >= 1,000,000), which is removed before converting.
class CoordinateConversion
{
public:
    enum Mode { SevenParameters, FourParameters, Direct };

    CoordinateConversion(const KivUtility::_ptr_t<KivGeometry::SpatialReference>& source,
                         const KivUtility::_ptr_t<KivGeometry::SpatialReference>& target);
    ~CoordinateConversion();
    CoordinateConversion(const CoordinateConversion&) = delete;
    CoordinateConversion& operator=(const CoordinateConversion&) = delete;

    /// The mode the point and file dialogs use for this pair: FourParameters
    /// when the two systems share a geographic base by
    /// `ConversionSetup::SameDatum`, else SevenParameters.
    static Mode DialogMode(const KivGeometry::SpatialReference* source,
                           const KivGeometry::SpatialReference* target);

    /// Starts as `DialogMode(source, target)`.
    Mode GetMode() const;
    void SetMode(Mode mode);
    /// The model values in stored order; 7 for SevenParameters, 4 for
    /// FourParameters (other counts: see `IsReady`). In FourParameters mode a
    /// list of fewer than four values means no model (the plane step is
    /// skipped) and only the first four values of a longer list are used.
    void SetParams(const QList<double>& params);
    void SetCodeNumber(bool hasCodeNumber);

    /// False when a point cannot be converted at all: a system is missing, or
    /// in SevenParameters mode the model does not hold exactly seven values.
    bool IsReady() const;

    /// Converts one point in place; false (point unchanged) when it fails.
    bool Convert(double& north, double& east, double& h) const;
    /// Converts `count` points in place; `success` (may be null) receives 1 or
    /// 0 per point. Returns the number converted. `h` may be null (heights 0,
    /// not returned). Batches are much faster than single points: each stage
    /// runs once over the whole batch. `unshifted` (may be null) receives the
    /// number of converted points that got no datum shift where the route
    /// asks PROJ to change datum (see
    /// `KivGeometry::CoordinateTransformation::Transform`).
    int Convert(int count, double* north, double* east, double* h, int* success, int* unshifted = nullptr) const;

    /// The route of the SevenParameters and FourParameters modes as one PROJ
    /// pipeline in GIS order (x = east, y = north, z = height), zone numbers
    /// left out, so that PROJ can run it backwards. Empty when the route is
    /// not ready, in Direct mode, or when PROJ cannot write a step.
    std::string Pipeline() const;

    /// The one warning every surface gives, once a run, when `count` of its
    /// `what` (points, features, sample points of a raster's extent) got no
    /// datum shift between the systems named `source` and `target`.
    static QString NoDatumShiftWarning(qint64 count, const QString& what, const QString& source,
                                       const QString& target);

private:
    std::unique_ptr<CoordinateConversionPrivate> d;
};
