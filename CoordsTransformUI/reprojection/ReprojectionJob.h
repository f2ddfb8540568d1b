#pragma once

#include <QString>
#include <QStringList>

class QWidget;

namespace KivAlgo {
class Algorithm;
}
namespace KivFramework {
class IApplication;
class IDesktopFrame;
class IProgressIndicator;
}

/// What the two reprojection commands do alike around a running algorithm.
class ReprojectionJob
{
public:
    /// The library every reprojection algorithm comes from.
    static QString LibraryName() { return QStringLiteral("CoordsTransformAlgo"); }

    /// "ImgProjectTransAlgo" when the text after the path's last "." is
    /// tif, tiff or img in any case, else "ShapeDataCoordTransformAlgo" (also
    /// for a path without a dot, or whose only dot is in a folder name).
    static QString AlgorithmFor(const QString& inputFile);

    /// The frame's progress indicator, or null.
    static KivFramework::IProgressIndicator* Indicator(KivFramework::IDesktopFrame* frame);

    /// Adds a default layer for each path that gives one to the current map,
    /// refreshing the map after each; paths without a layer are skipped.
    static void AddResultLayers(KivFramework::IApplication* application, const QStringList& paths);
};
