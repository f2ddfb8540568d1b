#pragma once

#include <QList>
#include <QString>

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
        QString format;      ///< raster format
    };
    /// `output` names the single output (empty: a file named after the input
    /// in `folder`). A raster's format is `rasterFormat`, or with
    /// `formatFromSuffix` the one its output's suffix names (.img: HFA; .tif,
    /// .tiff: GTiff). Empty with `*error` set when the input cannot be read.
    static QList<Item> Plan(const QString& input, const QString& output, const QString& folder,
                            const QString& rasterFormat, bool formatFromSuffix, QString* error);
};
