#include "LayerSource.h"

#include "RasterLayerSource.h"
#include "VectorLayerSource.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <cpl_conv.h>
#include <cpl_error.h>
#include <gdal.h>

#include <algorithm>

LayerSource::View::View(const QRectF& e, const QSize& s)
    : extent(e), size(s), minX(e.left()), maxY(e.bottom()),
      resX(s.width() > 0 ? e.width() / s.width() : 1.0), resY(s.height() > 0 ? e.height() / s.height() : 1.0)
{
}

QRectF LayerSource::united(const QRectF& a, const QRectF& b)
{
    return QRectF(QPointF(std::min(a.left(), b.left()), std::min(a.top(), b.top())),
                  QPointF(std::max(a.right(), b.right()), std::max(a.bottom(), b.bottom())));
}

LayerSource::LayerSource(const QString& path) : m_path(path) {}

LayerSource::~LayerSource() = default;

std::unique_ptr<LayerSource> LayerSource::open(const QString& path, QString* error)
{
    static const bool registered = [] {
        GDALAllRegister();
        // A viewer reads each window once: a modest block cache keeps memory
        // flat while panning over large rasters (GDAL's default is a share of
        // the machine's memory). The user's own setting wins.
        if (!CPLGetConfigOption("GDAL_CACHEMAX", nullptr))
            GDALSetCacheMax64(kBlockCacheBytes);
        return true;
    }();
    Q_UNUSED(registered);

    auto fail = [&](const QString& why) {
        if (error)
            *error = why;
        return nullptr;
    };
    // GDAL's virtual paths (/vsimem/ layers a plug-in made in memory) exist
    // only for GDAL.
    VSIStatBufL stat;
    if (!QFileInfo::exists(path) && VSIStatL(path.toUtf8().constData(), &stat) != 0)
        return fail(QCoreApplication::translate("LayerSource", "%1 does not exist.").arg(path));
    CPLErrorReset();
    // The reason goes into the message, not to the console.
    CPLPushErrorHandler(CPLQuietErrorHandler);
    GDALDatasetH ds = GDALOpenEx(path.toUtf8().constData(), GDAL_OF_RASTER | GDAL_OF_VECTOR | GDAL_OF_READONLY
                                 | GDAL_OF_VERBOSE_ERROR, nullptr, nullptr, nullptr);
    CPLPopErrorHandler();
    if (!ds) {
        const QString why = QString::fromUtf8(CPLGetLastErrorMsg());
        if (why.isEmpty())
            return fail(QCoreApplication::translate("LayerSource", "GDAL cannot open %1.").arg(path));
        return fail(QCoreApplication::translate("LayerSource", "GDAL cannot open %1: %2").arg(path, why));
    }
    if (GDALGetRasterCount(ds) > 0)
        return std::make_unique<RasterLayerSource>(path, ds);
    if (GDALDatasetGetLayerCount(ds) > 0)
        return std::make_unique<VectorLayerSource>(path, ds);
    GDALClose(ds);
    return fail(
        QCoreApplication::translate("LayerSource", "%1 holds neither raster bands nor vector layers.").arg(path));
}
