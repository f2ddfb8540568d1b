#pragma once

#include "RouteSettings.h"

#include "reprojection/RasterOptions.h"

#include <QString>

#include <functional>

class GDALDataset;

/// Reprojects one raster with GDAL's warper in this process.
///
/// The output grid is the one GDAL suggests for the route
/// (`GDALSuggestedWarpOutput2`), resampling is nearest neighbour (pixel
/// values are never blended, so classified rasters stay valid) unless the
/// options say otherwise, pixels
/// outside the source get the source's nodata value (0 when it has none,
/// recorded as the output's nodata), every core warps, and memory stays
/// within the warp memory limit whatever the raster's size, since the warper
/// works through the output in chunks.
class RasterReprojector
{
public:
    /// Called with the fraction done (0 to 1); false stops the run.
    using Progress = std::function<bool(double)>;

    RasterReprojector(const RouteSettings& route, const QString& format);

    /// Warp memory in bytes (default 64 MB).
    void SetMemoryLimit(double bytes) { m_memoryLimit = bytes; }
    /// Whether the nearest-neighbour chunks it handles are resampled by
    /// `NearestChunkWarper` (default) or by GDAL's own kernel; the pixels are
    /// the same, the first is faster.
    void SetOwnNearestKernel(bool own) { m_ownNearest = own; }
    /// Resampling, pixel size and creation options (default: none given).
    void SetOptions(const RasterOptions& options) { m_options = options; }

    /// Writes `output` from `input`. Empty on success; otherwise the reason,
    /// and nothing is left at `output` (an old file there stays as it was).
    /// `*stopped` becomes true when `progress` stopped the run.
    QString Run(const QString& input, const QString& output, const Progress& progress, bool* stopped);

    /// Of the last run: points sampled over the input's extent, and how many
    /// of them the route converted without a datum shift.
    int ExtentSamples() const { return m_samples; }
    int UnshiftedSamples() const { return m_unshifted; }

private:
    void sampleExtent(GDALDataset* source, const double* geoTransform);
    QString resizeGrid(double* geoTransform, int* width, int* height) const;

    RouteSettings m_route;
    QString m_format;
    double m_memoryLimit = 64.0 * 1024 * 1024;
    RasterOptions m_options;
    bool m_ownNearest = true;
    int m_samples = 0;
    int m_unshifted = 0;
};
