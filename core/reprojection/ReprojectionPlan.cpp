#include "reprojection/ReprojectionPlan.h"

#include "KivDataSource/DatasetFactory.h"
#include "KivDataSource/MultiDataset.h"

#include <gdal.h>

#include <QDir>
#include <QFileInfo>

QStringList ReprojectionPlan::VectorFormats()
{
    return {QStringLiteral("ESRI Shapefile"), QStringLiteral("GPKG")};
}

QString ReprojectionPlan::VectorFormatOf(const QString& extra2)
{
    return extra2 == QLatin1String("GPKG") ? extra2 : QStringLiteral("ESRI Shapefile");
}

QString ReprojectionPlan::RasterFormat(const QString& output, const QString& requested, bool fromSuffix)
{
    const QString format = requested.isEmpty() ? QStringLiteral("GTiff") : requested;
    if (!fromSuffix)
        return format;
    const QString suffix = QFileInfo(output).suffix().toLower();
    if (suffix == QLatin1String("img"))
        return QStringLiteral("HFA");
    if ((suffix == QLatin1String("tif") || suffix == QLatin1String("tiff"))
        && format != QLatin1String("COG")) // a COG is a GeoTIFF too
        return QStringLiteral("GTiff");
    return format;
}

namespace {

/// ".img" for HFA, the input's ".tif" for a GeoTIFF, none for ENVI: what
/// GDAL's driver says its files end in, keeping `own` when it is one of them.
QString SuffixOf(const QString& format, const QString& own)
{
    GDALDriverH driver = GDALGetDriverByName(format.toUtf8().constData());
    const char* list = driver ? GDALGetMetadataItem(driver, GDAL_DMD_EXTENSIONS, nullptr) : nullptr;
    const QStringList suffixes = QString::fromUtf8(list ? list : "").split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (suffixes.isEmpty())
        return QString();
    return QLatin1Char('.') + (suffixes.contains(own.toLower()) ? own : suffixes.first());
}

} // namespace

QList<ReprojectionPlan::Item> ReprojectionPlan::Plan(const QString& input, const QString& output, const QString& folder,
                                                     const QString& rasterFormat, bool formatFromSuffix, QString* error,
                                                     const QString& vectorFormat)
{
    const QString vector = VectorFormatOf(vectorFormat);
    const QString vectorSuffix = vector == QLatin1String("GPKG") ? QStringLiteral(".gpkg") : QStringLiteral(".shp");
    QList<Item> items;
    const auto dataset = KivDataSource::DatasetFactory::Instance()->OpenDataset(input, 0, QString());
    if (!dataset) {
        *error = QStringLiteral("Cannot open \"%1\".").arg(input);
        return items;
    }
    const QFileInfo info(input);
    const QString outFolder = folder.isEmpty() ? QFileInfo(output).absolutePath() : folder;
    switch (dataset->GetKind()) {
    case KivDataSource::DK_Raster: {
        Item item;
        item.input = input;
        item.output = output.isEmpty() ? QDir(outFolder).filePath(info.fileName()) : output;
        item.format = RasterFormat(item.output, rasterFormat, formatFromSuffix);
        if (output.isEmpty() && !formatFromSuffix)
            item.output = QDir(outFolder).filePath(info.completeBaseName() + SuffixOf(item.format, info.suffix()));
        items << item;
        break;
    }
    case KivDataSource::DK_Vector: {
        Item item;
        item.input = input;
        item.layer = 0;
        item.format = vector;
        item.output = output.isEmpty() ? QDir(outFolder).filePath(info.completeBaseName() + vectorSuffix) : output;
        items << item;
        break;
    }
    case KivDataSource::DK_Container: {
        const auto multi = dataset.dynamicCast<KivDataSource::MultiDataset>();
        for (int i = 0; multi && i < multi->GetDatasetCount(); ++i) {
            Item item;
            item.input = input;
            item.layer = i;
            item.format = vector;
            item.output = QDir(outFolder).filePath(multi->GetDataset(i)->GetName() + vectorSuffix);
            items << item;
        }
        break;
    }
    default:
        break;
    }
    if (items.isEmpty())
        *error = QStringLiteral("\"%1\" holds no raster or vector data.").arg(input);
    return items;
}

