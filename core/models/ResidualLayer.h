#pragma once

#include "models/ControlPointQuality.h"

#include <QCoreApplication>
#include <QString>

/// The control points of a quality analysis and their plane residual vectors
/// as a vector dataset a map can show: a point layer (id, flag, plane and
/// height residual) and a line layer from each point along its residual,
/// drawn `factor` times longer. Needs the points' positions
/// (`ControlPointQuality::SetPositions`).
class ResidualLayer
{
    Q_DECLARE_TR_FUNCTIONS(ResidualLayer)
public:
    /// A factor of 1, 2 or 5 times a power of ten that draws the largest
    /// residual at about a tenth of the points' extent; 1 when nothing shows.
    static double Exaggeration(const ControlPointQuality& quality);
    /// The layer's name on a map, stating the factor.
    static QString Name(double factor);
    /// A unique path in GDAL's in-memory file system: nothing reaches the disk,
    /// and it lives until the process ends.
    static QString MemoryPath();
    /// Writes a GeoPackage at `path` (a new file or a /vsimem/ path); false
    /// with a message naming the file in `error`.
    static bool Write(const ControlPointQuality& quality, double factor, const QString& path, QString* error);
    /// The same GeoPackage as a user's file: made in memory, then written
    /// whole through `OutputFile`, so a failure keeps the old file.
    static bool WriteFile(const ControlPointQuality& quality, double factor, const QString& path, QString* error);
};
