#include "reprojection/ReprojectionAlgorithmChoice.h"

#include "KivDataSource/Dataset.h"

namespace {
const QString kRaster = QStringLiteral("ImgProjectTransAlgo");
const QString kVector = QStringLiteral("ShapeDataCoordTransformAlgo");
}

QString ReprojectionAlgorithmChoice::BySuffix(const QString& inputFile)
{
    const int dot = inputFile.lastIndexOf(QLatin1Char('.'));
    const QString suffix = dot >= 0 ? inputFile.mid(dot + 1).toLower() : QString();
    if (suffix == QLatin1String("tif") || suffix == QLatin1String("tiff") || suffix == QLatin1String("img"))
        return kRaster;
    return kVector;
}

QString ReprojectionAlgorithmChoice::ByKind(int datasetKind)
{
    return datasetKind == KivDataSource::DK_Raster ? kRaster : kVector;
}
