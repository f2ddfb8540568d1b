#include "models/ResidualLayer.h"

#include "io/OutputFile.h"

#include <gdal.h>
#include <ogr_api.h>
#include <ogr_srs_api.h>

#include <QAtomicInt>
#include <QIODevice>

#include <algorithm>
#include <cmath>

namespace {

constexpr double kPi = 3.14159265358979323846;
// Degrees to metres on a sphere: enough to size a drawing.
constexpr double kMetresPerDegree = 6371000.0 * kPi / 180.0;

struct Closer
{
    GDALDatasetH dataset;
    ~Closer()
    {
        if (dataset)
            GDALClose(dataset);
    }
};

// Metres of the map's unit east and north at a point.
void metresPerUnit(const ControlPointQuality& quality, double latitude, double& east, double& north)
{
    east = north = 1;
    if (quality.PositionsGeographic()) {
        north = kMetresPerDegree;
        east = kMetresPerDegree * std::max(0.01, std::cos(latitude * kPi / 180.0));
    }
}

} // namespace

double ResidualLayer::Exaggeration(const ControlPointQuality& quality)
{
    const auto& points = quality.Points();
    if (points.isEmpty())
        return 1;
    double minX = points.first().mapX, maxX = minX, minY = points.first().mapY, maxY = minY, largest = 0;
    for (const ControlPointQuality::Point& p : points) {
        minX = std::min(minX, p.mapX), maxX = std::max(maxX, p.mapX);
        minY = std::min(minY, p.mapY), maxY = std::max(maxY, p.mapY);
        largest = std::max(largest, p.plane);
    }
    double east, north;
    metresPerUnit(quality, (minY + maxY) / 2, east, north);
    const double extent = std::hypot((maxX - minX) * east, (maxY - minY) * north);
    if (!(largest > 0) || !(extent > 0))
        return 1;
    const double wanted = extent / 10 / largest;
    const double decade = std::pow(10.0, std::floor(std::log10(wanted)));
    const double step = wanted >= 5 * decade ? 5 : wanted >= 2 * decade ? 2 : 1;
    return std::max(1.0, step * decade);
}

QString ResidualLayer::Name(double factor)
{
    return tr("Control-point residuals (vectors x %1)").arg(factor, 0, 'g', 12);
}

QString ResidualLayer::MemoryPath()
{
    static QAtomicInt counter;
    return QStringLiteral("/vsimem/coordstransform/residuals-%1.gpkg").arg(counter.fetchAndAddRelaxed(1) + 1);
}

bool ResidualLayer::Write(const ControlPointQuality& quality, double factor, const QString& path, QString* error)
{
    const auto fail = [&](const QString& why) {
        if (error)
            *error = tr("Cannot write the residual layer \"%1\": %2").arg(path, why);
        VSIUnlink(path.toUtf8().constData());
        return false;
    };
    if (!quality.HasPositions())
        return fail(tr("the points' positions are unknown."));
    GDALAllRegister();
    GDALDriverH driver = GDALGetDriverByName("GPKG");
    if (!driver)
        return fail(tr("GDAL has no GeoPackage driver."));
    CPLErrorReset();
    Closer out{GDALCreate(driver, path.toUtf8().constData(), 0, 0, 0, GDT_Unknown, nullptr)};
    if (!out.dataset)
        return fail(QString::fromUtf8(CPLGetLastErrorMsg()));
    OGRSpatialReferenceH srs = nullptr;
    if (!quality.PositionWkt().isEmpty()) {
        srs = OSRNewSpatialReference(nullptr);
        const QByteArray wkt = quality.PositionWkt().toUtf8();
        if (OSRSetFromUserInput(srs, wkt.constData()) != OGRERR_NONE) {
            OSRDestroySpatialReference(srs);
            srs = nullptr;
        } else {
            OSRSetAxisMappingStrategy(srs, OAMS_TRADITIONAL_GIS_ORDER);
        }
    }
    OGRLayerH points = GDALDatasetCreateLayer(out.dataset, "control_points", srs, wkbPoint, nullptr);
    OGRLayerH vectors = GDALDatasetCreateLayer(out.dataset, "residual_vectors", srs, wkbLineString, nullptr);
    if (srs)
        OSRDestroySpatialReference(srs);
    if (!points || !vectors)
        return fail(QString::fromUtf8(CPLGetLastErrorMsg()));
    // A file opened in a GIS later says by how much its vectors are drawn longer.
    GDALSetMetadataItem(static_cast<GDALMajorObjectH>(vectors), "DESCRIPTION", Name(factor).toUtf8().constData(), nullptr);
    for (OGRLayerH layer : {points, vectors}) {
        const std::pair<const char*, OGRFieldType> fields[] = {
            {"id", OFTString}, {"flagged", OFTInteger}, {"plane_m", OFTReal}, {"height_m", OFTReal}};
        for (const auto& field : fields) {
            OGRFieldDefnH defn = OGR_Fld_Create(field.first, field.second);
            const OGRErr err = OGR_L_CreateField(layer, defn, TRUE);
            OGR_Fld_Destroy(defn);
            if (err != OGRERR_NONE)
                return fail(QString::fromUtf8(CPLGetLastErrorMsg()));
        }
    }
    bool written = GDALDatasetStartTransaction(out.dataset, FALSE) == OGRERR_NONE;
    for (const ControlPointQuality::Point& p : quality.Points()) {
        double east, north;
        metresPerUnit(quality, p.mapY, east, north);
        for (OGRLayerH layer : {points, vectors}) {
            OGRFeatureH feature = OGR_F_Create(OGR_L_GetLayerDefn(layer));
            OGR_F_SetFieldString(feature, 0, p.id.toUtf8().constData());
            OGR_F_SetFieldInteger(feature, 1, p.flagged ? 1 : 0);
            OGR_F_SetFieldDouble(feature, 2, p.plane);
            OGR_F_SetFieldDouble(feature, 3, p.height);
            OGRGeometryH geometry = OGR_G_CreateGeometry(layer == points ? wkbPoint : wkbLineString);
            OGR_G_AddPoint_2D(geometry, p.mapX, p.mapY);
            if (layer == vectors)
                OGR_G_AddPoint_2D(geometry, p.mapX + p.vEast * factor / east, p.mapY + p.vNorth * factor / north);
            OGR_F_SetGeometryDirectly(feature, geometry);
            written = written && OGR_L_CreateFeature(layer, feature) == OGRERR_NONE;
            OGR_F_Destroy(feature);
        }
    }
    written = written && GDALDatasetCommitTransaction(out.dataset) == OGRERR_NONE;
    GDALDatasetH dataset = out.dataset;
    out.dataset = nullptr;
    CPLErrorReset();
    GDALClose(dataset);
    written = written && CPLGetLastErrorType() < CE_Failure;
    if (!written)
        return fail(QString::fromUtf8(CPLGetLastErrorMsg()));
    return true;
}

bool ResidualLayer::WriteFile(const ControlPointQuality& quality, double factor, const QString& path, QString* error)
{
    const QString memory = MemoryPath();
    if (!Write(quality, factor, memory, error)) {
        error->replace(memory, path);
        return false;
    }
    const QByteArray name = memory.toUtf8();
    vsi_l_offset size = 0;
    const char* bytes = reinterpret_cast<const char*>(VSIGetMemFileBuffer(name.constData(), &size, FALSE));
    OutputFile file(path);
    bool written = bytes && file.Open(error);
    if (written && file.Device()->write(bytes, qint64(size)) != qint64(size)) {
        *error = file.WriteError();
        written = false;
    }
    written = written && file.Commit(error);
    VSIUnlink(name.constData());
    return written;
}
