#pragma once

#include "RouteSettings.h"

#include <QString>

#include <functional>

/// Reprojects one vector layer into a shapefile through OGR: every geometry
/// type, 2D and 3D, every attribute in the source's encoding (its .cpg is
/// kept), the target system written as the .prj. Geometries are gathered in
/// chunks and their coordinates go through the conversion route in one batch
/// per chunk.
class VectorReprojector
{
public:
    /// Called with the fraction done (0 to 1); false stops the run.
    using Progress = std::function<bool(double)>;

    /// `format`: the GDAL driver of the output, "ESRI Shapefile" (also when
    /// empty) or "GPKG".
    explicit VectorReprojector(const RouteSettings& route, const QString& format = QString());

    /// Writes layer `layer` (0-based) of `input` to the shapefile `output`.
    /// Empty on success, else the reason, and nothing is left at `output`.
    /// `*skipped` receives the number of features whose points could not be
    /// converted (left out of the output).
    QString Run(const QString& input, int layer, const QString& output, const Progress& progress, bool* stopped,
                long long* skipped);

    /// Points of the last run that got no datum shift.
    long long UnshiftedPoints() const { return m_unshifted; }

    /// The layers of a vector dataset (empty when it cannot be opened).
    static QStringList LayerNames(const QString& input);

private:
    RouteSettings m_route;
    QString m_format;
    long long m_unshifted = 0;
};
