#pragma once

#include "RouteSettings.h"

#include <ogr_spatialref.h>

#include <memory>

struct PJconsts;
struct pj_ctx;

class CoordinateConversion;

/// The conversion route (`CoordinateConversion`) as GDAL sees a coordinate
/// transformation, so that OGR's geometry transforms and the warper use the
/// same mathematics as the point and file dialogs. Points are in GDAL's
/// order, x = easting or longitude, y = northing or latitude; heights may be
/// null (taken as 0).
///
/// The inverse (`GetInverse`, needed by the warper, which asks for the source
/// point of every target point) runs the route's PROJ pipeline backwards
/// (`CoordinateConversion::Pipeline`), so both directions are the same route;
/// where PROJ cannot write the route as a pipeline it is solved by Newton's
/// method on the forward route, starting from PROJ's own operation. With zone
/// numbers, the inverse puts `SetZonePrefix` in front of the eastings it
/// returns.
///
/// Not thread-safe; `Clone` gives an independent copy for another thread.
class RouteTransformation : public OGRCoordinateTransformation
{
public:
    explicit RouteTransformation(const RouteSettings& settings, bool inverse = false);
    ~RouteTransformation() override;

    /// GDAL's object for a system given as WKT, in GIS axis order. Parsing
    /// asks PROJ's database (milliseconds); every route of a batch has the
    /// same two texts, so each is parsed once per process and copied.
    static void ImportWkt(OGRSpatialReference& srs, const QString& wkt);

    /// False when either system or the route is unusable.
    bool IsValid() const;
    const RouteSettings& Settings() const { return m_settings; }
    bool IsInverse() const { return m_inverse; }

    /// The zone number times 1,000,000 (e.g. 39,000,000) for the eastings the
    /// inverse returns when the source carries zone numbers.
    void SetZonePrefix(double prefix) { m_zonePrefix = prefix; }
    double ZonePrefix() const { return m_zonePrefix; }

    /// Points the forward route converted without a datum shift so far.
    long long UnshiftedPoints() const { return m_unshifted; }

    OGRSpatialReference* GetSourceCS() override;
    OGRSpatialReference* GetTargetCS() override;
    int Transform(int count, double* x, double* y, double* z, double* t, int* success) override;
    OGRCoordinateTransformation* Clone() const override;
    OGRCoordinateTransformation* GetInverse() const override;

private:
    int forward(int count, double* x, double* y, double* z, int* success);
    int inverse(int count, double* x, double* y, double* z, int* success);
    int solveInverse(int count, double* x, double* y, int* ok);

    RouteSettings m_settings;
    bool m_inverse;
    double m_zonePrefix = 0.0;
    long long m_unshifted = 0;
    bool m_sourceGeographic = false;
    bool m_targetGeographic = false;
    OGRSpatialReference m_sourceSrs;
    OGRSpatialReference m_targetSrs;
    std::unique_ptr<CoordinateConversion> m_route;    ///< source to target, as the dialogs go
    std::unique_ptr<CoordinateConversion> m_guess;    ///< target to source, PROJ's operation
    // The inverse's own PROJ objects, so that each clone runs on its thread
    // without locks.
    pj_ctx* m_context = nullptr;
    PJconsts* m_pipeline = nullptr;
};
