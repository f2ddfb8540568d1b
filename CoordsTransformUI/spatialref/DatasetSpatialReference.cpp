#include "spatialref/DatasetSpatialReference.h"

#include "KivGeometry/SpatialReferenceFactory.h"

#ifdef KIV_HAS_DATASOURCE
#include "KivDataSource/Dataset.h"
#include "KivDataSource/DatasetFactory.h"
#include "KivDataSource/MultiDataset.h"
#else
#include <cpl_conv.h>
#include <cpl_error.h>
#include <gdal_priv.h>
#include <ogr_spatialref.h>
#include <ogrsf_frmts.h>
#endif

using SpatialReferencePtr = KivUtility::_ptr_t<KivGeometry::SpatialReference>;

#ifdef KIV_HAS_DATASOURCE

namespace {

SpatialReferencePtr referenceOf(const KivUtility::_ptr_t<KivDataSource::Dataset>& dataset, int depth)
{
    if (!dataset || depth > 4)
        return nullptr;
    if (auto system = dataset->GetSpatialReference())
        return system;
    if (dataset->GetKind() != KivDataSource::DK_Container)
        return nullptr;
    auto* container = dynamic_cast<KivDataSource::MultiDataset*>(dataset.get());
    for (int i = 0; container && i < container->GetDatasetCount(); ++i)
        if (auto system = referenceOf(container->GetDataset(i), depth + 1))
            return system;
    return nullptr;
}

} // namespace

SpatialReferencePtr DatasetSpatialReference::Read(const QString& path, bool* opened)
{
    *opened = false;
    try {
        const auto dataset = KivDataSource::DatasetFactory::Instance()->OpenDataset(path, 0, QString());
        if (!dataset)
            return nullptr;
        *opened = true;
        return referenceOf(dataset, 0);
    } catch (...) {
        return nullptr;
    }
}

#else

namespace {

SpatialReferencePtr fromOgr(const OGRSpatialReference* srs)
{
    if (!srs || srs->IsEmpty())
        return nullptr;
    // A system the file names by its registry code is taken whole from the
    // registry; any other travels as WKT2, which loses nothing.
    const char* authority = srs->GetAuthorityName(nullptr);
    const char* code = srs->GetAuthorityCode(nullptr);
    if (authority && code && EQUAL(authority, "EPSG")) {
        if (auto system = KivGeometry::SpatialReferenceFactory::CreateSpatialReference(QString("EPSG:") + code))
            return system;
    }
    char* wkt = nullptr;
    const char* const options[] = {"FORMAT=WKT2_2019", nullptr};
    if (srs->exportToWkt(&wkt, options) != OGRERR_NONE || !wkt) {
        CPLFree(wkt);
        return nullptr;
    }
    const QString text = QString::fromUtf8(wkt);
    CPLFree(wkt);
    return KivGeometry::SpatialReferenceFactory::CreateSpatialReference(text);
}

struct QuietErrors
{
    QuietErrors() { CPLPushErrorHandler(CPLQuietErrorHandler); }
    ~QuietErrors() { CPLPopErrorHandler(); }
};

} // namespace

SpatialReferencePtr DatasetSpatialReference::Read(const QString& path, bool* opened)
{
    *opened = false;
    try {
        QuietErrors quiet;
        GDALAllRegister();
        const QByteArray name = path.toUtf8();
        GDALDataset* dataset = GDALDataset::Open(name.constData(), GDAL_OF_RASTER | GDAL_OF_VECTOR | GDAL_OF_READONLY);
        if (!dataset)
            return nullptr;
        *opened = true;
        SpatialReferencePtr system = fromOgr(dataset->GetSpatialRef());
        for (int i = 0; !system && i < dataset->GetLayerCount(); ++i)
            if (OGRLayer* layer = dataset->GetLayer(i))
                system = fromOgr(layer->GetSpatialRef());
        GDALClose(dataset);
        return system;
    } catch (...) {
        return nullptr;
    }
}

#endif
