#pragma once

// Small datasets written with GDAL/OGR for the map drawing tests.

#include <QColor>
#include <QString>
#include <QStringList>

#include <cpl_conv.h>
#include <gdal.h>
#include <ogr_api.h>
#include <ogr_srs_api.h>

#include <vector>

namespace MapFixtures {

struct Raster
{
    int epsg = 32650;
    double originX = 500000;  ///< upper left corner
    double originY = 4000040;
    double cell = 10;
    int width = 4;
    int height = 4;
    GDALDataType type = GDT_Byte;
    std::vector<std::vector<double>> bands;  ///< row-major values per band
    bool hasNodata = false;
    double nodata = 0;
    std::vector<QColor> palette;  ///< makes band 1 a palette band
    bool southUp = false;         ///< rows run northwards from the lower edge
};

inline QString wktOf(int epsg)
{
    OGRSpatialReferenceH srs = OSRNewSpatialReference(nullptr);
    OSRImportFromEPSG(srs, epsg);
    char* wkt = nullptr;
    OSRExportToWkt(srs, &wkt);
    const QString result = QString::fromUtf8(wkt);
    CPLFree(wkt);
    OSRDestroySpatialReference(srs);
    return result;
}

inline bool writeRaster(const QString& path, const Raster& r)
{
    GDALAllRegister();
    GDALDriverH driver = GDALGetDriverByName("GTiff");
    GDALDatasetH ds = GDALCreate(driver, path.toUtf8().constData(), r.width, r.height,
                                 static_cast<int>(r.bands.size()), r.type, nullptr);
    if (!ds)
        return false;
    double gt[6] = {r.originX, r.cell, 0, r.originY, 0, -r.cell};
    if (r.southUp) {
        gt[3] = r.originY - r.height * r.cell;
        gt[5] = r.cell;
    }
    GDALSetGeoTransform(ds, gt);
    GDALSetProjection(ds, wktOf(r.epsg).toUtf8().constData());
    bool ok = true;
    for (size_t b = 0; b < r.bands.size(); ++b) {
        GDALRasterBandH band = GDALGetRasterBand(ds, static_cast<int>(b) + 1);
        std::vector<double> values = r.bands[b];
        ok = ok && GDALRasterIO(band, GF_Write, 0, 0, r.width, r.height, values.data(), r.width, r.height,
                                GDT_Float64, 0, 0) == CE_None;
        if (r.hasNodata)
            GDALSetRasterNoDataValue(band, r.nodata);
        if (b == 0 && !r.palette.empty()) {
            GDALColorTableH table = GDALCreateColorTable(GPI_RGB);
            for (size_t i = 0; i < r.palette.size(); ++i) {
                const QColor& c = r.palette[i];
                const GDALColorEntry e{static_cast<short>(c.red()), static_cast<short>(c.green()),
                                       static_cast<short>(c.blue()), static_cast<short>(c.alpha())};
                GDALSetColorEntry(table, static_cast<int>(i), &e);
            }
            GDALSetRasterColorTable(band, table);
            GDALSetRasterColorInterpretation(band, GCI_PaletteIndex);
            GDALDestroyColorTable(table);
        }
    }
    GDALClose(ds);
    return ok;
}

/// A shapefile of one geometry type with the given WKT geometries.
inline bool writeShape(const QString& path, int epsg, OGRwkbGeometryType type, const QStringList& wkts)
{
    GDALAllRegister();
    GDALDriverH driver = GDALGetDriverByName("ESRI Shapefile");
    GDALDatasetH ds = GDALCreate(driver, path.toUtf8().constData(), 0, 0, 0, GDT_Unknown, nullptr);
    if (!ds)
        return false;
    OGRSpatialReferenceH srs = OSRNewSpatialReference(nullptr);
    OSRImportFromEPSG(srs, epsg);
    OGRLayerH layer = GDALDatasetCreateLayer(ds, "data", srs, type, nullptr);
    OSRDestroySpatialReference(srs);
    bool ok = layer != nullptr;
    for (const QString& wkt : wkts) {
        if (!ok)
            break;
        OGRFeatureH feature = OGR_F_Create(OGR_L_GetLayerDefn(layer));
        OGRGeometryH geometry = nullptr;
        QByteArray text = wkt.toUtf8();
        char* cursor = text.data();
        ok = OGR_G_CreateFromWkt(&cursor, nullptr, &geometry) == OGRERR_NONE;
        if (ok) {
            OGR_F_SetGeometryDirectly(feature, geometry);
            ok = OGR_L_CreateFeature(layer, feature) == OGRERR_NONE;
        }
        OGR_F_Destroy(feature);
    }
    GDALClose(ds);
    return ok;
}

} // namespace MapFixtures
