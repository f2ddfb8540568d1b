#include "AlgoRun.h"
#include "RasterReprojector.h"
#include "RouteSettings.h"

#include "support/DatasetFixtures.h"
#include "support/RouteReference.h"
#include "support/TestRegistry.h"

#include "KivGeometry/SpatialReferenceFactory.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <gdal_priv.h>
#include <ogr_spatialref.h>
#include <ogrsf_frmts.h>

#include <cmath>
#include <array>
#include <memory>

#include <sys/stat.h>

using namespace RouteReference;

namespace {

QString wktOf(const char* code)
{
    return KivGeometry::SpatialReferenceFactory::CreateSpatialReference(QString::fromLatin1(code))->ExportToWkt();
}

stCoordsTransformInfo record(const char* from, const char* to, bool seven, const QList<double>& params)
{
    stCoordsTransformInfo info;
    info.strSrcWkt = wktOf(from);
    info.strDstWkt = wktOf(to);
    info.bUse7Params = seven;
    (seven ? info.model7 : info.model4).Params = params;
    return info;
}

OGRSpatialReference srsOf(const char* code)
{
    OGRSpatialReference srs;
    srs.SetFromUserInput(code);
    srs.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    return srs;
}

QByteArray digest(const QString& path)
{
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    return QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256);
}

/// Value of source pixel (col, row) of the shared fixture raster.
int pattern(int col, int row) { return (row + col) % 251 + 1; }

/// A Byte raster of 120 x 120 pixels of 50 m (`scale` times as many, as
/// many times smaller), in `code`, with its origin at (east, north).
void writeRaster(const QString& path, const char* driverName, const char* code, double east, double north,
                 int scale = 1)
{
    QVERIFY(DatasetFixtures::writeRaster(path, QString::fromLatin1(code), 120 * scale, east, north, 50.0 / scale,
                                         driverName));
}

/// A shapefile with one feature of each listed geometry, attributes "NAME"
/// (in `encoding`) and "ID".
void writeShapefile(const QString& path, const char* code, OGRwkbGeometryType type,
                    const std::vector<std::string>& wkts, const char* encoding = "UTF-8")
{
    GDALAllRegister();
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName("ESRI Shapefile");
    std::unique_ptr<GDALDataset> ds(driver->Create(path.toUtf8().constData(), 0, 0, 0, GDT_Unknown, nullptr));
    QVERIFY(ds);
    OGRSpatialReference srs = srsOf(code);
    const QByteArray option = QByteArray("ENCODING=") + encoding;
    const char* options[] = {option.constData(), nullptr};
    OGRLayer* layer = ds->CreateLayer("data", &srs, type, const_cast<char**>(options));
    QVERIFY(layer);
    OGRFieldDefn name("NAME", OFTString);
    layer->CreateField(&name);
    OGRFieldDefn id("ID", OFTInteger);
    layer->CreateField(&id);
    int n = 0;
    for (const std::string& wkt : wkts) {
        OGRFeature feature(layer->GetLayerDefn());
        OGRGeometry* geometry = nullptr;
        QCOMPARE(OGRGeometryFactory::createFromWkt(wkt.c_str(), nullptr, &geometry), OGRERR_NONE);
        feature.SetGeometryDirectly(geometry);
        feature.SetField("NAME", "测试点");
        feature.SetField("ID", ++n);
        QCOMPARE(layer->CreateFeature(&feature), OGRERR_NONE);
    }
}

using Vertex = std::array<double, 3>;

void collect(const OGRGeometry* g, std::vector<Vertex>& out)
{
    switch (wkbFlatten(g->getGeometryType())) {
    case wkbPoint: {
        const OGRPoint* p = g->toPoint();
        out.push_back({p->getX(), p->getY(), p->getZ()});
        break;
    }
    case wkbLineString: {
        const OGRLineString* l = g->toLineString();
        for (int i = 0; i < l->getNumPoints(); ++i)
            out.push_back({l->getX(i), l->getY(i), l->getZ(i)});
        break;
    }
    case wkbPolygon: {
        const OGRPolygon* p = g->toPolygon();
        for (const OGRLinearRing* ring : *p)
            collect(ring, out);
        break;
    }
    default:
        if (OGR_GT_IsSubClassOf(g->getGeometryType(), wkbGeometryCollection))
            for (const OGRGeometry* part : *g->toGeometryCollection())
                collect(part, out);
        break;
    }
}

/// Every vertex of the first layer of `path`, in feature order.
std::vector<Vertex> vertices(const QString& path, OGRwkbGeometryType* type = nullptr)
{
    std::vector<Vertex> points;
    std::unique_ptr<GDALDataset> ds(GDALDataset::Open(path.toUtf8().constData(), GDAL_OF_VECTOR));
    if (!ds)
        return points;
    OGRLayer* layer = ds->GetLayer(0);
    if (type)
        *type = layer->GetGeomType();
    for (auto& feature : *layer)
        if (const OGRGeometry* g = feature->GetGeometryRef())
            collect(g, points);
    return points;
}

QStringList filesIn(const QString& folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

} // namespace

class TestReprojection : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { GDALAllRegister(); }
    void unknownAlgorithmGivesNull();
    void shapefileVerticesFollowTheRoute_data();
    void shapefileVerticesFollowTheRoute();
    void attributesAndEncodingKept();
    void containerGivesOneOutputPerLayer();
    void rasterCornersAndPixels_data();
    void rasterCornersAndPixels();
    void nearestKernelMatchesGdals_data();
    void nearestKernelMatchesGdals();
    void stoppingLeavesNothing_data();
    void stoppingLeavesNothing();
    void refusedOutputs_data();
    void refusedOutputs();
    void batchGoesOnPastBadInputs();
    void unconvertiblePointsAreReported();
};

void TestReprojection::unknownAlgorithmGivesNull()
{
    std::unique_ptr<KivAlgo::Algorithm> none(KivAlgo::AlgoFactory::Instance()->CreateAlgorithm(
        QStringLiteral("CoordsTransformAlgo"), QStringLiteral("NoSuchAlgo")));
    QVERIFY(!none);
}

void TestReprojection::shapefileVerticesFollowTheRoute_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::addColumn<bool>("seven");
    QTest::addColumn<bool>("code");
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("wkt");
    QTest::addColumn<QString>("reference");  // PROJ pipeline, x = east
    QTest::addColumn<double>("tolerance");

    const QString sevenRoute = pipeline({inv(tmerc(117)), helmert(), toDeg()});
    const QString fourRoute = pipeline({inv(tmerc(114)), tmerc(117), affine(four())});
    const QString zoneRoute = pipeline({QStringLiteral("+proj=affine +xoff=-39000000"), inv(tmerc(117)), toDeg()});
    QTest::newRow("seven, points") << "EPSG:2436" << "EPSG:4326" << true << false << int(wkbPoint)
                                   << "POINT (500000 3400000)" << sevenRoute << 1e-9;
    QTest::newRow("seven, 3D lines") << "EPSG:2436" << "EPSG:4326" << true << false << int(wkbLineString25D)
                                     << "LINESTRING Z (400000 3300000 10, 450000 3350000 20, 600000 4000000 30)"
                                     << sevenRoute << 1e-9;
    QTest::newRow("seven, polygon with hole")
        << "EPSG:2436" << "EPSG:4326" << true << false << int(wkbPolygon)
        << "POLYGON ((400000 3300000, 400000 3400000, 500000 3400000, 500000 3300000, 400000 3300000), "
           "(420000 3320000, 480000 3320000, 480000 3380000, 420000 3380000, 420000 3320000))"
        << sevenRoute << 1e-9;
    QTest::newRow("four across zones, multipoints")
        << "EPSG:2435" << "EPSG:2436" << false << false << int(wkbMultiPoint)
        << "MULTIPOINT ((548000.5 3375708), (510000 3300000))" << fourRoute << 1e-3;
    QTest::newRow("four across zones, 3D polygon")
        << "EPSG:2435" << "EPSG:2436" << false << false << int(wkbPolygon25D)
        << "POLYGON Z ((500000 3300000 5, 500000 3400000 6, 600000 3400000 7, 500000 3300000 5))" << fourRoute
        << 1e-3;
    QTest::newRow("zone numbers, lines") << "EPSG:2436" << "EPSG:4214" << false << true << int(wkbLineString)
                                         << "LINESTRING (39450000 3300000, 39550000 3500000)" << zoneRoute << 1e-9;
}

void TestReprojection::shapefileVerticesFollowTheRoute()
{
    QFETCH(QString, from);
    QFETCH(QString, to);
    QFETCH(bool, seven);
    QFETCH(bool, code);
    QFETCH(int, type);
    QFETCH(QString, wkt);
    QFETCH(QString, reference);
    QFETCH(double, tolerance);

    QTemporaryDir dir(QDir::tempPath() + QStringLiteral("/a b.点-XXXXXX"));
    const QString input = dir.filePath(QStringLiteral("in.shp"));
    const QString output = dir.filePath(QStringLiteral("out.shp"));
    writeShapefile(input, from.toLatin1().constData(), OGRwkbGeometryType(type), {wkt.toStdString()});
    stCoordsTransformInfo info = record(from.toLatin1().constData(), to.toLatin1().constData(), seven,
                                        seven ? RouteReference::seven() : RouteReference::four());
    info.bCode = code;
    info.strInputFile = input;
    info.strOutputFile = output;
    const AlgoRun run = AlgoRun::run(QStringLiteral("ShapeDataCoordTransformAlgo"), info);
    QCOMPARE(run.completed, 1);
    QVERIFY2(run.code == 0, qPrintable(run.message));
    QCOMPARE(run.info.lstOutputFiles, QStringList{output});

    const std::vector<Vertex> in = vertices(input);
    OGRwkbGeometryType outType;
    const std::vector<Vertex> out = vertices(output, &outType);
    QCOMPARE(out.size(), in.size());
    QCOMPARE(OGR_GT_HasZ(outType), OGR_GT_HasZ(OGRwkbGeometryType(type)));
    for (size_t i = 0; i < in.size(); ++i) {
        double x = in[i][0], y = in[i][1], z = in[i][2];
        QVERIFY(KivTest::projTransform(reference, x, y, z));
        QVERIFY2(std::fabs(out[i][0] - x) <= tolerance && std::fabs(out[i][1] - y) <= tolerance,
                 qPrintable(QStringLiteral("vertex %1: %2 %3, PROJ %4 %5")
                                .arg(i).arg(out[i][0], 0, 'f', 10).arg(out[i][1], 0, 'f', 10)
                                .arg(x, 0, 'f', 10).arg(y, 0, 'f', 10)));
    }
    // The target system is written beside the data.
    std::unique_ptr<GDALDataset> ds(GDALDataset::Open(output.toUtf8().constData(), GDAL_OF_VECTOR));
    OGRSpatialReference target = srsOf(to.toLatin1().constData());
    QVERIFY(ds->GetLayer(0)->GetSpatialRef());
    QVERIFY(ds->GetLayer(0)->GetSpatialRef()->IsSame(&target));
    QCOMPARE(filesIn(dir.path()).filter(QStringLiteral("kivtmp")), QStringList());
}

void TestReprojection::attributesAndEncodingKept()
{
    QTemporaryDir dir;
    const QString input = dir.filePath(QStringLiteral("gbk.shp"));
    const QString output = dir.filePath(QStringLiteral("gbk_out.shp"));
    writeShapefile(input, "EPSG:2436", wkbPoint, {"POINT (500000 3400000)", "POINT (510000 3410000)"}, "CP936");
    stCoordsTransformInfo info = record("EPSG:2436", "EPSG:4326", true, RouteReference::seven());
    info.strInputFile = input;
    info.strOutputFile = output;
    const AlgoRun run = AlgoRun::run(QStringLiteral("ShapeDataCoordTransformAlgo"), info);
    QVERIFY2(run.code == 0, qPrintable(run.message));
    QCOMPARE(digest(dir.filePath(QStringLiteral("gbk_out.cpg"))), digest(dir.filePath(QStringLiteral("gbk.cpg"))));
    // The stored bytes are those of the input: same code page, same text.
    QCOMPARE(digest(dir.filePath(QStringLiteral("gbk_out.dbf"))).size(), 32);
    std::unique_ptr<GDALDataset> ds(GDALDataset::Open(output.toUtf8().constData(), GDAL_OF_VECTOR));
    OGRLayer* layer = ds->GetLayer(0);
    QCOMPARE(layer->GetFeatureCount(), GIntBig(2));
    int id = 0;
    for (auto& feature : *layer) {
        QCOMPARE(QString::fromUtf8(feature->GetFieldAsString("NAME")), QStringLiteral("测试点"));
        QCOMPARE(feature->GetFieldAsInteger("ID"), ++id);
    }
}

void TestReprojection::containerGivesOneOutputPerLayer()
{
    QTemporaryDir dir;
    const QString input = dir.filePath(QStringLiteral("two.gpkg"));
    QVERIFY(DatasetFixtures::writeGeoPackage(input, {"roads=EPSG:2436", "wells=EPSG:2436"}));
    const QString folder = dir.filePath(QStringLiteral("out"));
    QVERIFY(QDir().mkpath(folder));
    stCoordsTransformInfo info = record("EPSG:2436", "EPSG:4326", true, RouteReference::seven());
    info.strInputFile = input;
    info.strOutputFolder = folder;
    const AlgoRun run = AlgoRun::run(QStringLiteral("ShapeDataCoordTransformAlgo"), info);
    QVERIFY2(run.code == 0, qPrintable(run.message));
    QCOMPARE(run.info.lstOutputFiles,
             QStringList({QDir(folder).filePath(QStringLiteral("roads.shp")), QDir(folder).filePath(QStringLiteral("wells.shp"))}));
    for (const QString& path : run.info.lstOutputFiles)
        QCOMPARE(vertices(path).size(), size_t(2));
}

void TestReprojection::rasterCornersAndPixels_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("file");
    QTest::newRow("GeoTIFF") << "GTiff" << "out.tif";
    QTest::newRow("ENVI") << "ENVI" << "out.dat";
}

void TestReprojection::rasterCornersAndPixels()
{
    QFETCH(QString, format);
    QFETCH(QString, file);
    QTemporaryDir dir;
    const QString input = dir.filePath(QStringLiteral("in.tif"));
    const QString output = dir.filePath(file);
    writeRaster(input, "GTiff", "EPSG:2436", 480000, 3420000);
    stCoordsTransformInfo info = record("EPSG:2436", "EPSG:4326", true, RouteReference::seven());
    info.strInputFile = input;
    info.strOutputFile = output;
    info.strRasterFormat = format;
    const AlgoRun run = AlgoRun::run(QStringLiteral("ImgProjectTransAlgo"), info);
    QVERIFY2(run.code == 0, qPrintable(run.message));
    QCOMPARE(run.info.lstOutputFiles, QStringList{output});

    std::unique_ptr<GDALDataset> ds(GDALDataset::Open(output.toUtf8().constData(), GDAL_OF_RASTER));
    QVERIFY(ds);
    QCOMPARE(QString::fromLatin1(ds->GetDriver()->GetDescription()), format);
    OGRSpatialReference wgs84 = srsOf("EPSG:4326");
    QVERIFY(ds->GetSpatialRef() && ds->GetSpatialRef()->IsSame(&wgs84));
    double gt[6];
    QCOMPARE(ds->GetGeoTransform(gt), CE_None);
    const int width = ds->GetRasterXSize(), height = ds->GetRasterYSize();

    // Corners: each source corner lies inside the output, and the output's
    // edges are within a pixel of the outermost corners.
    const QString forward = pipeline({inv(tmerc(117)), helmert(), toDeg()});
    double minX = 1e9, maxX = -1e9, minY = 1e9, maxY = -1e9;
    for (int corner = 0; corner < 4; ++corner) {
        double x = 480000 + (corner & 1) * 6000.0, y = 3420000 - (corner >> 1) * 6000.0, z = 0;
        QVERIFY(KivTest::projTransform(forward, x, y, z));
        minX = std::min(minX, x); maxX = std::max(maxX, x);
        minY = std::min(minY, y); maxY = std::max(maxY, y);
    }
    QVERIFY(std::fabs(gt[0] - minX) < std::fabs(gt[1]));
    QVERIFY(std::fabs(gt[0] + width * gt[1] - maxX) < std::fabs(gt[1]));
    QVERIFY(std::fabs(gt[3] - maxY) < std::fabs(gt[5]));
    QVERIFY(std::fabs(gt[3] + height * gt[5] - minY) < std::fabs(gt[5]));

    // Pixels: each output pixel holds the source pixel its centre falls in
    // (checked away from source pixel edges, where rounding may go either way).
    GDALRasterBand* band = ds->GetRasterBand(1);
    std::vector<GByte> pixels(size_t(width) * height);
    QCOMPARE(band->RasterIO(GF_Read, 0, 0, width, height, pixels.data(), width, height, GDT_Byte, 0, 0), CE_None);
    int hasNodata = 0;
    QCOMPARE(band->GetNoDataValue(&hasNodata), 0.0);
    QVERIFY(hasNodata);
    const QString backward = pipeline(
        {toRad(), QStringLiteral("+proj=cart +ellps=WGS84"),
         QStringLiteral("+inv +proj=helmert +x=15.8 +y=-154.4 +z=-82.3 +rx=0.52 +ry=-1.31 +rz=2.17 +s=3.5 "
                        "+convention=coordinate_frame"),
         QStringLiteral("+inv +proj=cart +ellps=krass"), tmerc(117)});
    int checked = 0, outside = 0;
    for (int r = 0; r < height; r += 3) {
        for (int c = 0; c < width; c += 3) {
            double x = gt[0] + (c + 0.5) * gt[1], y = gt[3] + (r + 0.5) * gt[5], z = 0;
            QVERIFY(KivTest::projTransform(backward, x, y, z));
            const double col = (x - 480000) / 50.0, row = (3420000 - y) / 50.0;
            const GByte value = pixels[size_t(r) * width + c];
            if (col < 0.01 || row < 0.01 || col > 119.99 || row > 119.99) {
                if (col < -0.01 || row < -0.01 || col > 120.01 || row > 120.01) {
                    QCOMPARE(int(value), 0);
                    ++outside;
                }
                continue;
            }
            const double fc = col - std::floor(col), fr = row - std::floor(row);
            if (fc < 0.01 || fc > 0.99 || fr < 0.01 || fr > 0.99)
                continue;
            QCOMPARE(int(value), pattern(int(col), int(row)));
            ++checked;
        }
    }
    QVERIFY(checked > 500);
}

void TestReprojection::nearestKernelMatchesGdals_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("bands");
    QTest::addColumn<double>("memory");  // warp memory in bytes: small ones cut many chunks
    QTest::addColumn<int>("size");       // long rows: approximated points land just outside the source
    QTest::addColumn<double>("nodata");  // of the source, NaN: none
    const double none = std::nan("");
    QTest::newRow("Byte, 3 bands") << int(GDT_Byte) << 3 << 64.0 * 1024 * 1024 << 2000 << none;
    QTest::newRow("Int16, many chunks") << int(GDT_Int16) << 1 << 100000.0 << 301 << none;
    QTest::newRow("UInt16, nodata") << int(GDT_UInt16) << 1 << 64.0 * 1024 * 1024 << 301 << 13.0;
    QTest::newRow("Byte, 2 bands, nodata") << int(GDT_Byte) << 2 << 64.0 * 1024 * 1024 << 301 << 26.0;
    QTest::newRow("Float32") << int(GDT_Float32) << 1 << 64.0 * 1024 * 1024 << 301 << none;
    QTest::newRow("Float64, 2 bands, many chunks") << int(GDT_Float64) << 2 << 200000.0 << 301 << none;
}

void TestReprojection::nearestKernelMatchesGdals()
{
    QFETCH(int, type);
    QFETCH(int, bands);
    QFETCH(double, memory);
    QFETCH(int, size);
    QFETCH(double, nodata);
    const auto dataType = GDALDataType(type);
    QTemporaryDir dir;
    const QString input = dir.filePath(QStringLiteral("in.tif"));
    const int side = size;
    {
        std::unique_ptr<GDALDataset> ds(GetGDALDriverManager()->GetDriverByName("GTiff")->Create(
            input.toUtf8().constData(), side, side, bands, dataType, nullptr));
        QVERIFY(ds);
        double gt[6] = {480000, 6000.0 / size, 0, 3420000, 0, -6000.0 / size};
        ds->SetGeoTransform(gt);
        OGRSpatialReference srs = srsOf("EPSG:2436");
        ds->SetSpatialRef(&srs);
        std::vector<double> values(size_t(side) * side);
        for (int b = 1; b <= bands; ++b) {
            for (size_t i = 0; i < values.size(); ++i)
                values[i] = double((i * 7 + size_t(b) * 13) % 251) + 0.25 * b;
            if (!std::isnan(nodata))
                ds->GetRasterBand(b)->SetNoDataValue(nodata);
            QCOMPARE(ds->GetRasterBand(b)->RasterIO(GF_Write, 0, 0, side, side, values.data(), side, side,
                                                   GDT_Float64, 0, 0),
                     CE_None);
        }
    }
    const RouteSettings route = RouteSettings::FromRecord(record("EPSG:2436", "EPSG:4326", true, RouteReference::seven()));
    std::vector<QByteArray> pixels;
    for (const bool own : {true, false}) {
        const QString output = dir.filePath(own ? QStringLiteral("own.tif") : QStringLiteral("gdal.tif"));
        RasterReprojector reprojector(route, QStringLiteral("GTiff"));
        reprojector.SetMemoryLimit(memory);
        reprojector.SetOwnNearestKernel(own);
        bool stopped = true;
        QCOMPARE(reprojector.Run(input, output, {}, &stopped), QString());
        QVERIFY(!stopped);
        std::unique_ptr<GDALDataset> ds(GDALDataset::Open(output.toUtf8().constData(), GDAL_OF_RASTER));
        QVERIFY(ds);
        QCOMPARE(ds->GetRasterBand(1)->GetRasterDataType(), dataType);
        const int width = ds->GetRasterXSize(), height = ds->GetRasterYSize();
        QByteArray all(width * height * bands * GDALGetDataTypeSizeBytes(dataType), '\0');
        QCOMPARE(ds->RasterIO(GF_Read, 0, 0, width, height, all.data(), width, height, dataType, bands, nullptr, 0, 0,
                              0, nullptr),
                 CE_None);
        pixels.push_back(all);
    }
    QVERIFY(pixels[0] == pixels[1]);
}

void TestReprojection::stoppingLeavesNothing_data()
{
    QTest::addColumn<QString>("algorithm");
    QTest::addColumn<bool>("cancel");
    QTest::addColumn<bool>("existing");
    QTest::newRow("raster, progress answer 0") << "ImgProjectTransAlgo" << false << false;
    QTest::newRow("raster, cancel") << "ImgProjectTransAlgo" << true << false;
    QTest::newRow("raster, cancel over an old output") << "ImgProjectTransAlgo" << true << true;
    QTest::newRow("vector, progress answer 0") << "ShapeDataCoordTransformAlgo" << false << false;
    QTest::newRow("vector, cancel") << "ShapeDataCoordTransformAlgo" << true << false;
    QTest::newRow("batch, cancel") << "BatchProjectTransAlgo" << true << false;
}

void TestReprojection::stoppingLeavesNothing()
{
    QFETCH(QString, algorithm);
    QFETCH(bool, cancel);
    QFETCH(bool, existing);
    QTemporaryDir dir;
    const bool raster = algorithm != QLatin1String("ShapeDataCoordTransformAlgo");
    const QString input = dir.filePath(raster ? QStringLiteral("in.tif") : QStringLiteral("in.shp"));
    const QString folder = dir.filePath(QStringLiteral("out"));
    QVERIFY(QDir().mkpath(folder));
    const QString output = QDir(folder).filePath(raster ? QStringLiteral("in.tif") : QStringLiteral("in.shp"));
    // Large enough that the work is still going when the stop arrives.
    if (raster) {
        writeRaster(input, "GTiff", "EPSG:2436", 480000, 3420000, 40);
    } else {
        std::vector<std::string> wkts;
        for (int i = 0; i < 300000; ++i)
            wkts.push_back("POINT (" + std::to_string(450000 + i) + " 3400000)");
        writeShapefile(input, "EPSG:2436", wkbPoint, wkts);
    }
    if (existing) {
        QFile old(output);
        QVERIFY(old.open(QIODevice::WriteOnly));
        old.write("old output");
    }
    const QStringList before = filesIn(folder);
    stCoordsTransformInfo info = record("EPSG:2436", "EPSG:4326", true, RouteReference::seven());
    info.strInputFile = input;
    info.strOutputFile = output;
    info.lstInputFiles = QStringList{input};
    info.strOutputFolder = folder;
    const AlgoRun run = AlgoRun::run(algorithm, info, cancel ? 1 : 0, cancel);
    QVERIFY(run.millisecondsToEnd < 1000);
    if (cancel) {
        QCOMPARE(run.canceled, 1);
        QCOMPARE(run.completed, 0);
    } else {
        QCOMPARE(run.completed, 1);
        QCOMPARE(run.code, -1010);
    }
    QCOMPARE(filesIn(folder).join(QLatin1Char(' ')), before.join(QLatin1Char(' ')));
    if (existing)
        QCOMPARE(digest(output), QCryptographicHash::hash("old output", QCryptographicHash::Sha256));
}

void TestReprojection::refusedOutputs_data()
{
    QTest::addColumn<QString>("output");  // relative to the test folder; "@input" is the input
    QTest::addColumn<QString>("named");   // what the message must name
    QTest::newRow("output is the input") << "@input" << "in.tif";
    QTest::newRow("output is the input by another spelling") << "./sub/../in.tif" << "in.tif";
    QTest::newRow("missing folder") << "nowhere/out.tif" << "nowhere";
    QTest::newRow("folder that is a file") << "in.tif/out.tif" << "in.tif";
    QTest::newRow("folder nothing can write") << "/proc/kiv-out.tif" << "/proc/kiv-out.tif";
    QTest::newRow("input through a link") << "link" << "is the input";
    QTest::newRow("named pipe") << "fifo" << "/fifo\" is a named pipe";
    QTest::newRow("device") << "/dev/full" << "\"/dev/full\" is a device";
    QTest::newRow("folder") << "sub" << "/sub\" is a folder, not a file";
}

void TestReprojection::refusedOutputs()
{
    QFETCH(QString, output);
    QFETCH(QString, named);
    QTemporaryDir dir;
    QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("sub")));
    const QString input = dir.filePath(QStringLiteral("in.tif"));
    writeRaster(input, "GTiff", "EPSG:2436", 480000, 3420000);
    const QByteArray original = digest(input);
    QVERIFY(QFile::link(input, dir.filePath(QStringLiteral("link"))));
    QCOMPARE(mkfifo(QFile::encodeName(dir.filePath(QStringLiteral("fifo"))).constData(), 0600), 0);
    stCoordsTransformInfo info = record("EPSG:2436", "EPSG:4326", true, RouteReference::seven());
    info.strInputFile = input;
    info.strOutputFile = output == QLatin1String("@input") ? input
                         : output.startsWith(QLatin1Char('/')) ? output : dir.filePath(output);
    const AlgoRun run = AlgoRun::run(QStringLiteral("ImgProjectTransAlgo"), info);
    QCOMPARE(run.completed, 1);
    QVERIFY(run.code != 0);
    QVERIFY2(run.message.contains(named), qPrintable(run.message));
    QVERIFY(run.info.lstOutputFiles.isEmpty());
    QCOMPARE(digest(input), original);
    QCOMPARE(filesIn(dir.path()), (QStringList{QStringLiteral("in.tif"), QStringLiteral("link")}));
    QVERIFY(QFileInfo(dir.filePath(QStringLiteral("link"))).isSymLink());
}

void TestReprojection::batchGoesOnPastBadInputs()
{
    QTemporaryDir dir;
    const QString raster = dir.filePath(QStringLiteral("r.tif"));
    const QString vector = dir.filePath(QStringLiteral("v.shp"));
    const QString broken = dir.filePath(QStringLiteral("broken.tif"));
    writeRaster(raster, "GTiff", "EPSG:2436", 480000, 3420000);
    writeShapefile(vector, "EPSG:2436", wkbPoint, {"POINT (500000 3400000)"});
    QFile bad(broken);
    QVERIFY(bad.open(QIODevice::WriteOnly));
    bad.write("not a raster");
    bad.close();
    const QString folder = dir.filePath(QStringLiteral("out"));
    QVERIFY(QDir().mkpath(folder));
    stCoordsTransformInfo info = record("EPSG:2436", "EPSG:4326", true, RouteReference::seven());
    // The raster's own folder as output: that one is refused, the rest go on.
    info.lstInputFiles = QStringList{raster, broken, vector};
    info.strOutputFolder = folder;
    const AlgoRun run = AlgoRun::run(QStringLiteral("BatchProjectTransAlgo"), info);
    QCOMPARE(run.completed, 1);
    QVERIFY(run.code != 0);
    QVERIFY2(run.message.contains(broken), qPrintable(run.message));
    QVERIFY(!run.message.contains(raster));
    QCOMPARE(run.info.lstOutputFiles,
             QStringList({QDir(folder).filePath(QStringLiteral("r.tif")), QDir(folder).filePath(QStringLiteral("v.shp"))}));
    QCOMPARE(vertices(run.info.lstOutputFiles[1]).size(), size_t(1));
}

void TestReprojection::unconvertiblePointsAreReported()
{
    QTemporaryDir dir;
    const QString input = dir.filePath(QStringLiteral("geo.shp"));
    const QString output = dir.filePath(QStringLiteral("plane.shp"));
    writeShapefile(input, "EPSG:4214", wkbPoint, {"POINT (117.2 31.5)", "POINT (117.2 95)", "POINT (116.9 30.1)"});
    stCoordsTransformInfo info = record("EPSG:4214", "EPSG:2436", false, {});
    info.strInputFile = input;
    info.strOutputFile = output;
    const AlgoRun run = AlgoRun::run(QStringLiteral("ShapeDataCoordTransformAlgo"), info);
    QCOMPARE(run.completed, 1);
    QCOMPARE(run.code, 0);
    QVERIFY2(run.message.contains(QStringLiteral("1 features")), qPrintable(run.message));
    QCOMPARE(vertices(output).size(), size_t(2));
}

KIV_TEST_CLASS(TestReprojection)
#include "tst_Reprojection.moc"
