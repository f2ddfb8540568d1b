#pragma once

#include <QList>
#include <QString>
#include <QStringList>

/// What one input of a reprojection gives: one output for a raster or a
/// single vector layer, one shapefile per layer for a container. The
/// algorithms run the plan; the command line reads it beforehand to skip
/// inputs already done and to refuse two inputs that would write one output.
class ReprojectionPlan
{
public:
    struct Item
    {
        QString input;
        int layer = -1;      ///< vector: the layer; raster: -1
        QString output;
        QString format;      ///< the GDAL driver that writes the output
    };

    /// The vector formats a job can write: "ESRI Shapefile" (the default, as
    /// the dialogs write) and "GPKG".
    static QStringList VectorFormats();
    /// The vector format a job's record asks for: its `strExtra2`, which the
    /// dialogs leave empty (a shapefile).
    static QString VectorFormatOf(const QString& extra2);
    /// The format a raster output is written in: `requested` (empty:
    /// GTiff), or with `fromSuffix` the one the output's suffix names (.img:
    /// HFA; .tif, .tiff: GTiff unless a COG was asked for).
    static QString RasterFormat(const QString& output, const QString& requested, bool fromSuffix);
    /// `output` names the single output (empty: a file named after the input
    /// in `folder`). A raster's format is `rasterFormat`, or with
    /// `formatFromSuffix` the one its output's suffix names (.img: HFA; .tif,
    /// .tiff: GTiff); without it, a raster named after its input takes the
    /// format's suffix (GDAL's for the driver; none for ENVI) unless its own
    /// is one of the format's. Empty with `*error` set when the input cannot be read.
    /// Vector outputs named after their input or layer are written in
    /// `vectorFormat` (empty: a shapefile).
    static QList<Item> Plan(const QString& input, const QString& output, const QString& folder,
                            const QString& rasterFormat, bool formatFromSuffix, QString* error,
                            const QString& vectorFormat = QString());
};
