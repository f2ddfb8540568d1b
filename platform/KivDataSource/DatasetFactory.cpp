#include "KivDataSource/DatasetFactory.h"

#include "KivDataSource/MultiDataset.h"
#include "KivGeometry/QuietGdalErrors.h"
#include "KivGeometry/SpatialReferenceFactory.h"

#include <QFileInfo>
#include <QHash>
#include <QStringList>

#include <gdal_priv.h>
#include <ogr_spatialref.h>
#include <ogrsf_frmts.h>

#include <memory>
#include <mutex>

namespace KivDataSource {

namespace {

using SpatialReferencePtr = KivUtility::_ptr_t<KivGeometry::SpatialReference>;

SpatialReferencePtr fromOgr(const OGRSpatialReference* srs)
{
    return KivGeometry::SpatialReferenceFactory::CreateFromDataset(srs);
}

/// Formats whose files are made to hold several layers: even with one layer
/// such a file is a container, so that the dialogs write one output per layer.
bool isContainerDriver(const GDALDriver* driver)
{
    if (!driver)
        return false;
    const QString name = QString::fromLatin1(driver->GetDescription());
    static const QStringList containers = {QStringLiteral("GPKG"), QStringLiteral("OpenFileGDB"),
                                           QStringLiteral("FileGDB"), QStringLiteral("PGeo"),
                                           QStringLiteral("SQLite")};
    return containers.contains(name);
}

struct Cache
{
    std::mutex mutex;
    int users = 0;
    QHash<QString, KivUtility::_ptr_t<Dataset>> descriptions;
};

Cache& cache()
{
    static Cache c;
    return c;
}

KivUtility::_ptr_t<Dataset> open(const QString& path, int mode, const QString& options);

} // namespace

DatasetFactory::RunCache::RunCache()
{
    const std::lock_guard<std::mutex> lock(cache().mutex);
    ++cache().users;
}

DatasetFactory::RunCache::~RunCache()
{
    const std::lock_guard<std::mutex> lock(cache().mutex);
    if (--cache().users == 0)
        cache().descriptions.clear();
}

DatasetFactory* DatasetFactory::Instance()
{
    static DatasetFactory factory;
    return &factory;
}

KivUtility::_ptr_t<Dataset> DatasetFactory::OpenDataset(const QString& path, int mode, const QString& options) const
{
    if (mode != 0 || !options.isEmpty())
        return open(path, mode, options);
    Cache& c = cache();
    {
        const std::lock_guard<std::mutex> lock(c.mutex);
        if (c.users == 0)
            return open(path, mode, options);
        const auto found = c.descriptions.constFind(path);
        if (found != c.descriptions.constEnd())
            return found.value();
    }
    // Opened outside the lock: two threads may both open a path, harmlessly.
    KivUtility::_ptr_t<Dataset> dataset = open(path, mode, options);
    const std::lock_guard<std::mutex> lock(c.mutex);
    if (c.users > 0 && dataset)
        c.descriptions.insert(path, dataset);
    return dataset;
}

namespace {

KivUtility::_ptr_t<Dataset> open(const QString& path, int mode, const QString& options)
{
    try {
        static std::once_flag registered;
        std::call_once(registered, [] { GDALAllRegister(); });
        if (path.isEmpty())
            return nullptr;
        const KivGeometry::QuietGdalErrors quiet;

        QList<QByteArray> optionStore;
        std::vector<const char*> openOptions;
        for (const QString& option : options.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
            optionStore << option.trimmed().toUtf8();
            openOptions.push_back(optionStore.last().constData());
        }
        openOptions.push_back(nullptr);

        const unsigned flags = GDAL_OF_RASTER | GDAL_OF_VECTOR | (mode == 1 ? GDAL_OF_UPDATE : GDAL_OF_READONLY);
        const QByteArray encoded = path.toUtf8();
        std::unique_ptr<GDALDataset> dataset(GDALDataset::Open(encoded.constData(), flags, nullptr,
                                                               openOptions.data(), nullptr));
        if (!dataset)
            return nullptr;

        const QString name = QFileInfo(path).completeBaseName();
        const int layerCount = dataset->GetLayerCount();
        if (layerCount == 0) {
            if (dataset->GetRasterCount() == 0)
                return nullptr;
            return new Dataset(DK_Raster, name, path, fromOgr(dataset->GetSpatialRef()));
        }
        if (layerCount == 1 && !isContainerDriver(dataset->GetDriver())) {
            OGRLayer* layer = dataset->GetLayer(0);
            return new Dataset(DK_Vector, name, path, fromOgr(layer->GetSpatialRef()));
        }
        QList<KivUtility::_ptr_t<Dataset>> members;
        for (int i = 0; i < layerCount; ++i) {
            OGRLayer* layer = dataset->GetLayer(i);
            members << KivUtility::_ptr_t<Dataset>(new Dataset(
                DK_Vector, QString::fromUtf8(layer->GetName()), path, fromOgr(layer->GetSpatialRef())));
        }
        return new MultiDataset(name, path, members);
    } catch (...) {
        return nullptr;
    }
}

} // namespace

} // namespace KivDataSource
