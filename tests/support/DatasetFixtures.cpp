#include "DatasetFixtures.h"

#include <QFileInfo>

#include <gdal_priv.h>
#include <ogrsf_frmts.h>

#include <memory>

namespace DatasetFixtures {

namespace {

struct Closer
{
    void operator()(GDALDataset* d) const { GDALClose(d); }
};
using DatasetPtr = std::unique_ptr<GDALDataset, Closer>;

bool reference(const QString& crs, OGRSpatialReference* srs)
{
    srs->SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    return srs->SetFromUserInput(crs.toUtf8().constData()) == OGRERR_NONE;
}

bool addPointLayer(GDALDataset* ds, const char* name, const QString& crs, const std::vector<double>& xy)
{
    OGRSpatialReference srs;
    if (!crs.isEmpty() && !reference(crs, &srs))
        return false;
    // Shapefiles take their encoding as an option; GeoPackages are UTF-8.
    const bool shapefile = EQUAL(ds->GetDriverName(), "ESRI Shapefile");
    char** options = shapefile ? CSLSetNameValue(nullptr, "ENCODING", "UTF-8") : nullptr;
    OGRLayer* layer = ds->CreateLayer(name, crs.isEmpty() ? nullptr : &srs, wkbPoint, options);
    CSLDestroy(options);
    if (!layer)
        return false;
    OGRFieldDefn id("id", OFTInteger);
    OGRFieldDefn label("name", OFTString);
    layer->CreateField(&id);
    layer->CreateField(&label);
    for (size_t i = 0; i + 1 < xy.size(); i += 2) {
        OGRFeature feature(layer->GetLayerDefn());
        feature.SetField("id", int(i / 2));
        feature.SetField("name", "点");
        OGRPoint point(xy[i], xy[i + 1]);
        feature.SetGeometry(&point);
        if (layer->CreateFeature(&feature) != OGRERR_NONE)
            return false;
    }
    return true;
}

} // namespace

bool writeRaster(const QString& path, const QString& crs, int size, double originX, double originY, double pixel,
                 const char* driverName)
{
    GDALAllRegister();
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName(driverName);
    if (!driver)
        return false;
    DatasetPtr ds(driver->Create(path.toUtf8().constData(), size, size, 1, GDT_Byte, nullptr));
    if (!ds)
        return false;
    double transform[6] = {originX, pixel, 0, originY, 0, -pixel};
    ds->SetGeoTransform(transform);
    if (!crs.isEmpty()) {
        OGRSpatialReference srs;
        if (!reference(crs, &srs) || ds->SetSpatialRef(&srs) != CE_None)
            return false;
    }
    std::vector<GByte> pixels(size_t(size) * size);
    for (int r = 0; r < size; ++r)
        for (int c = 0; c < size; ++c)
            pixels[size_t(r) * size + c] = GByte((r + c) % 251 + 1);
    return ds->GetRasterBand(1)->RasterIO(GF_Write, 0, 0, size, size, pixels.data(), size, size, GDT_Byte, 0, 0) == CE_None;
}

bool writePoints(const QString& path, const QString& crs, const std::vector<double>& xy)
{
    GDALAllRegister();
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName("ESRI Shapefile");
    DatasetPtr ds(driver ? driver->Create(path.toUtf8().constData(), 0, 0, 0, GDT_Unknown, nullptr) : nullptr);
    return ds && addPointLayer(ds.get(), QFileInfo(path).completeBaseName().toUtf8().constData(), crs, xy);
}

bool writeGeoPackage(const QString& path, const QStringList& layers)
{
    GDALAllRegister();
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName("GPKG");
    DatasetPtr ds(driver ? driver->Create(path.toUtf8().constData(), 0, 0, 0, GDT_Unknown, nullptr) : nullptr);
    if (!ds)
        return false;
    for (const QString& layer : layers) {
        const QString name = layer.section(QLatin1Char('='), 0, 0), crs = layer.section(QLatin1Char('='), 1);
        if (!addPointLayer(ds.get(), name.toUtf8().constData(), crs, {116.4, 39.9, 117.0, 40.0}))
            return false;
    }
    return true;
}

std::vector<double> readPoints(const QString& path)
{
    GDALAllRegister();
    std::vector<double> xy;
    DatasetPtr ds(static_cast<GDALDataset*>(GDALOpenEx(path.toUtf8().constData(), GDAL_OF_VECTOR, nullptr, nullptr, nullptr)));
    OGRLayer* layer = ds ? ds->GetLayer(0) : nullptr;
    if (!layer)
        return xy;
    for (auto& feature : *layer) {
        if (const OGRGeometry* g = feature->GetGeometryRef()) {
            if (wkbFlatten(g->getGeometryType()) == wkbPoint) {
                xy.push_back(g->toPoint()->getX());
                xy.push_back(g->toPoint()->getY());
            }
        }
    }
    return xy;
}

} // namespace DatasetFixtures
