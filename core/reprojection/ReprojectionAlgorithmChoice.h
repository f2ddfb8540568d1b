#pragma once

#include <QString>

/// Which algorithm of the reprojection library runs a job. Two rules, named,
/// so that each surface says which it applies:
/// - `BySuffix`, the reprojection dialogs' rule: the text after the input
///   path's last "." decides, so a raster with another suffix goes to the
///   vector algorithm (which then fails to read it);
/// - `ByKind`, the command line's rule: what the opened dataset holds.
class ReprojectionAlgorithmChoice
{
public:
    /// The algorithm library, loaded by name through the platform.
    static QString Library() { return QStringLiteral("CoordsTransformAlgo"); }
    /// The algorithm of a job with several inputs into a folder.
    static QString Batch() { return QStringLiteral("BatchProjectTransAlgo"); }

    /// "ImgProjectTransAlgo" when the text after the path's last "." is tif,
    /// tiff or img in any case, else "ShapeDataCoordTransformAlgo" (also for a
    /// path without a dot, or whose only dot is in a folder name).
    static QString BySuffix(const QString& inputFile);
    /// "ImgProjectTransAlgo" for a raster, "ShapeDataCoordTransformAlgo" for
    /// vector data (`KivDataSource::DatasetKind`).
    static QString ByKind(int datasetKind);
};
