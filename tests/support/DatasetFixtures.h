#pragma once
// Small real datasets made in a test's own folder with GDAL/OGR.

#include <QString>
#include <QStringList>

#include <vector>

namespace DatasetFixtures {

/// A GeoTIFF (or any raster format GDAL writes) of `size` x `size` one-byte
/// pixels (value = (row + column) % 251 + 1), its top-left corner at
/// (originX, originY) with `pixel` units per pixel, in `crs` ("EPSG:2436"; an
/// empty text: no system at all). True when written.
bool writeRaster(const QString& path, const QString& crs, int size = 16, double originX = 432000,
                 double originY = 4377000, double pixel = 10, const char* driver = "GTiff");

/// A shapefile of points at `xy` pairs (x = easting or longitude), with an
/// integer attribute "id" and a text attribute "name" (UTF-8), in `crs`
/// (empty: no system).
bool writePoints(const QString& path, const QString& crs, const std::vector<double>& xy);

/// A GeoPackage with one point layer per entry of `layers`, each
/// "name=CRS" ("roads=EPSG:4214").
bool writeGeoPackage(const QString& path, const QStringList& layers);

/// The point coordinates (x, y pairs) of a vector file's first layer.
std::vector<double> readPoints(const QString& path);

} // namespace DatasetFixtures
