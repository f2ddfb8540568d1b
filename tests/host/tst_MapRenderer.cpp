#include "LayerSource.h"
#include "MapFixtures.h"
#include "MapRenderer.h"
#include "VectorLayerSource.h"
#include "support/ProjReference.h"
#include "support/TestRegistry.h"

#include "KivCarto/Map.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QScopeGuard>
#include <QTest>

using MapFixtures::Raster;

Q_DECLARE_METATYPE(Raster)

namespace {

// Files go into a folder whose name has a dot, a blank and Chinese characters.
const QString kDirTemplate = QDir::tempPath() + QStringLiteral("/kiv map.图层-XXXXXX");

KivUtility::_ptr_t<KivCarto::Layer> addLayer(KivCarto::Map& map, const QString& path)
{
    KivUtility::_ptr_t<KivCarto::Layer> layer(new KivCarto::Layer(QFileInfo(path).completeBaseName(), path));
    map.AddLayer(layer);
    return layer;
}

std::vector<double> ramp(int n)
{
    std::vector<double> v(n);
    for (int i = 0; i < n; ++i)
        v[i] = i;
    return v;
}

// The raster fixtures' 4 x 4 cells of 10 m shown 10 screen pixels each.
const QRectF kRasterExtent(500000, 4000000, 40, 40);
QPoint cellCentre(int col, int row)
{
    return QPoint(col * 10 + 5, row * 10 + 5);
}

QString describe(QRgb c)
{
    return QStringLiteral("rgba(%1,%2,%3,%4)").arg(qRed(c)).arg(qGreen(c)).arg(qBlue(c)).arg(qAlpha(c));
}

} // namespace

class TestMapRenderer : public QObject
{
    Q_OBJECT
private slots:
    void rasterCellsGetTheirColours_data();
    void rasterCellsGetTheirColours();
    void vectorsLandWhereTheirCoordinatesSay_data();
    void vectorsLandWhereTheirCoordinatesSay();
    void featuresOutsideTheViewAreSkipped();
    void layerInAnotherSystemLandsWhereProjSays_data();
    void layerInAnotherSystemLandsWhereProjSays();
    void firstLayerSetsTheMapSystem();
    void unreadableFilesAreNamed_data();
    void unreadableFilesAreNamed();
    void zoomedFarInAndOut();
};

void TestMapRenderer::rasterCellsGetTheirColours_data()
{
    QTest::addColumn<Raster>("raster");
    QTest::addColumn<QPoint>("cell");
    QTest::addColumn<QColor>("expected");

    // Grey: stretched between the 2nd and 98th percentile of 0..15, that is
    // 0 and 14, so 15 is clipped to white.
    Raster grey;
    grey.bands = {ramp(16)};
    QTest::newRow("grey lowest") << grey << QPoint(0, 0) << QColor(0, 0, 0);
    QTest::newRow("grey middle") << grey << QPoint(3, 1) << QColor(127, 127, 127);  // 7 * 255 / 14
    QTest::newRow("grey clipped") << grey << QPoint(3, 3) << QColor(255, 255, 255);

    Raster wide = grey;
    wide.type = GDT_Float32;
    for (double& v : wide.bands[0])
        v = v * 1000.0 - 5000.0;
    QTest::newRow("float grey") << wide << QPoint(3, 1) << QColor(127, 127, 127);

    Raster palette;
    palette.bands = {std::vector<double>(16, 1)};
    palette.bands[0][0] = 0;
    palette.bands[0][6] = 2;
    palette.bands[0][15] = 3;
    palette.palette = {QColor(255, 0, 0), QColor(0, 128, 0), QColor(0, 0, 255), QColor(9, 9, 9)};
    palette.hasNodata = true;
    palette.nodata = 3;
    QTest::newRow("palette 0") << palette << QPoint(0, 0) << QColor(255, 0, 0);
    QTest::newRow("palette 1") << palette << QPoint(1, 0) << QColor(0, 128, 0);
    QTest::newRow("palette 2") << palette << QPoint(2, 1) << QColor(0, 0, 255);
    QTest::newRow("palette nodata") << palette << QPoint(3, 3) << QColor(0, 0, 0, 0);

    // Rows stored from the south: drawn through a warp in its own system.
    Raster southUp = palette;
    southUp.southUp = true;
    QTest::newRow("south-up first row at the bottom") << southUp << QPoint(0, 3) << QColor(255, 0, 0);
    QTest::newRow("south-up") << southUp << QPoint(2, 2) << QColor(0, 0, 255);
    QTest::newRow("south-up nodata") << southUp << QPoint(3, 0) << QColor(0, 0, 0, 0);

    Raster rgb;
    rgb.bands = {std::vector<double>(16, 10), std::vector<double>(16, 20), std::vector<double>(16, 30)};
    rgb.bands[0][9] = 250;
    rgb.bands[2][9] = 0;
    QTest::newRow("rgb") << rgb << QPoint(0, 0) << QColor(10, 20, 30);
    QTest::newRow("rgb other cell") << rgb << QPoint(1, 2) << QColor(250, 20, 0);

    Raster nodata = grey;
    nodata.hasNodata = true;
    nodata.nodata = 5;
    QTest::newRow("nodata transparent") << nodata << QPoint(1, 1) << QColor(0, 0, 0, 0);
    Raster rgbNodata = rgb;
    rgbNodata.hasNodata = true;
    rgbNodata.nodata = 10;
    QTest::newRow("rgb nodata transparent") << rgbNodata << QPoint(0, 0) << QColor(0, 0, 0, 0);
}

void TestMapRenderer::rasterCellsGetTheirColours()
{
    QFETCH(Raster, raster);
    QFETCH(QPoint, cell);
    QFETCH(QColor, expected);
    QTemporaryDir dir(kDirTemplate);
    const QString path = dir.filePath(QStringLiteral("r.tif"));
    QVERIFY(MapFixtures::writeRaster(path, raster));

    KivUtility::_ptr_t<KivCarto::Map> map(new KivCarto::Map);
    addLayer(*map, path);
    MapRenderer renderer;
    const QImage image = renderer.render(*map, kRasterExtent, QSize(40, 40));
    QVERIFY(renderer.takeProblems().isEmpty());
    const QRgb got = image.pixel(cellCentre(cell.x(), cell.y()));
    const QRgb want = expected.rgba();
    const bool close = std::abs(qRed(got) - qRed(want)) <= 1 && std::abs(qGreen(got) - qGreen(want)) <= 1
        && std::abs(qBlue(got) - qBlue(want)) <= 1 && qAlpha(got) == qAlpha(want);
    QVERIFY2(close, qPrintable(describe(got) + QStringLiteral(" instead of ") + describe(want)));
    // The whole cell has it, up to its edges.
    QCOMPARE(image.pixel(cell.x() * 10, cell.y() * 10), got);
    QCOMPARE(image.pixel(cell.x() * 10 + 9, cell.y() * 10 + 9), got);
}

void TestMapRenderer::vectorsLandWhereTheirCoordinatesSay_data()
{
    QTest::addColumn<bool>("cached");
    QTest::newRow("held in memory") << true;
    QTest::newRow("read for each view") << false;
}

void TestMapRenderer::vectorsLandWhereTheirCoordinatesSay()
{
    QFETCH(bool, cached);
    const qint64 limit = VectorLayerSource::maxCachedVertices();
    // Smaller than any of the files below when not cached.
    VectorLayerSource::setMaxCachedVertices(cached ? limit : 1);
    auto restore = qScopeGuard([limit] { VectorLayerSource::setMaxCachedVertices(limit); });
    QTemporaryDir dir(kDirTemplate);
    const QString polygons = dir.filePath(QStringLiteral("polygons.shp"));
    const QString lines = dir.filePath(QStringLiteral("lines.shp"));
    const QString points = dir.filePath(QStringLiteral("points.shp"));
    // A square with a square hole, a horizontal line, two points.
    QVERIFY(MapFixtures::writeShape(polygons, 32650, wkbPolygon,
                                    {QStringLiteral("POLYGON((100 100,500 100,500 500,100 500,100 100),"
                                                    "(200 200,300 200,300 300,200 300,200 200))")}));
    QVERIFY(MapFixtures::writeShape(lines, 32650, wkbLineString, {QStringLiteral("LINESTRING(600 700,900 700)")}));
    QVERIFY(MapFixtures::writeShape(points, 32650, wkbPoint,
                                    {QStringLiteral("POINT(800 200)"), QStringLiteral("POINT(50 950)")}));
    KivUtility::_ptr_t<KivCarto::Map> map(new KivCarto::Map);
    auto polygonLayer = addLayer(*map, polygons);
    auto lineLayer = addLayer(*map, lines);
    auto pointLayer = addLayer(*map, points);

    MapRenderer renderer;
    renderer.sync(*map);
    QCOMPARE(static_cast<VectorLayerSource*>(renderer.source(polygonLayer.get()))->isCached(), cached);
    // 10 m a pixel; map (x, y) is pixel (x / 10, (1000 - y) / 10).
    const QImage image = renderer.render(*map, QRectF(0, 0, 1000, 1000), QSize(100, 100));
    const QRgb fill = renderer.layerColor(polygonLayer.get()).rgba();
    QCOMPARE(image.pixel(15, 85), fill);             // inside the square (150, 150)
    QCOMPARE(image.pixel(40, 60), fill);             // (400, 400)
    QCOMPARE(qAlpha(image.pixel(25, 75)), 0);        // in the hole (250, 250)
    QCOMPARE(qAlpha(image.pixel(60, 60)), 0);        // outside (600, 400)
    QCOMPARE(image.pixel(75, 30), renderer.layerColor(lineLayer.get()).rgba());  // (750, 700)
    QCOMPARE(qAlpha(image.pixel(75, 25)), 0);
    const QRgb dot = renderer.layerColor(pointLayer.get()).rgba();
    QCOMPARE(image.pixel(80, 80), dot);              // (800, 200)
    QCOMPARE(image.pixel(5, 5), dot);                // (50, 950)
    QCOMPARE(qAlpha(image.pixel(80, 70)), 0);
    QVERIFY(renderer.layerColor(polygonLayer.get()) != renderer.layerColor(pointLayer.get()));

    QRectF all;
    QVERIFY(renderer.fullExtent(*map, &all));
    QCOMPARE(all, QRectF(QPointF(50, 100), QPointF(900, 950)));
    QRectF line;
    QVERIFY(renderer.layerExtent(*map, 1, &line));  // no area, still an extent
    QCOMPARE(line, QRectF(600, 700, 300, 0));
}

void TestMapRenderer::featuresOutsideTheViewAreSkipped()
{
    QTemporaryDir dir(kDirTemplate);
    const QString polygons = dir.filePath(QStringLiteral("far.shp"));
    QVERIFY(MapFixtures::writeShape(polygons, 32650, wkbPolygon,
                                    {QStringLiteral("POLYGON((0 0,10 0,10 10,0 10,0 0))"),
                                     QStringLiteral("POLYGON((1e6 1e6,2e6 1e6,2e6 2e6,1e6 2e6,1e6 1e6))")}));
    KivUtility::_ptr_t<KivCarto::Map> map(new KivCarto::Map);
    auto layer = addLayer(*map, polygons);
    MapRenderer renderer;
    // A view inside the big square only: all of it filled, nothing else.
    QImage image = renderer.render(*map, QRectF(1.5e6, 1.5e6, 100, 100), QSize(50, 50));
    QCOMPARE(image.pixel(0, 0), renderer.layerColor(layer.get()).rgba());
    QCOMPARE(image.pixel(49, 49), renderer.layerColor(layer.get()).rgba());
    // Hidden layers draw nothing.
    layer->SetVisible(false);
    image = renderer.render(*map, QRectF(1.5e6, 1.5e6, 100, 100), QSize(50, 50));
    QCOMPARE(qAlpha(image.pixel(0, 0)), 0);
}

void TestMapRenderer::layerInAnotherSystemLandsWhereProjSays_data()
{
    QTest::addColumn<bool>("raster");
    QTest::newRow("vector") << false;
    QTest::newRow("raster") << true;
}

void TestMapRenderer::layerInAnotherSystemLandsWhereProjSays()
{
    QFETCH(bool, raster);
    QTemporaryDir dir(kDirTemplate);
    // The map is in UTM zone 50N, set by its first layer.
    const QString base = dir.filePath(QStringLiteral("base.shp"));
    QVERIFY(MapFixtures::writeShape(base, 32650, wkbPoint, {QStringLiteral("POINT(400000 3300000)")}));
    KivUtility::_ptr_t<KivCarto::Map> map(new KivCarto::Map);
    addLayer(*map, base);

    const double lon = 118.123;
    const double lat = 30.456;
    KivUtility::_ptr_t<KivCarto::Layer> other;
    if (raster) {
        // 9 x 9 cells of 0.001 degree in WGS 84, the middle one blue.
        Raster r;
        r.epsg = 4326;
        r.width = r.height = 9;
        r.cell = 0.001;
        r.originX = lon - 0.0045;
        r.originY = lat + 0.0045;
        r.bands = {std::vector<double>(81, 200), std::vector<double>(81, 0), std::vector<double>(81, 0)};
        r.bands[0][40] = 0;
        r.bands[2][40] = 255;
        QVERIFY(MapFixtures::writeRaster(dir.filePath(QStringLiteral("geo.tif")), r));
        other = addLayer(*map, dir.filePath(QStringLiteral("geo.tif")));
    } else {
        QVERIFY(MapFixtures::writeShape(dir.filePath(QStringLiteral("geo.shp")), 4326, wkbPoint,
                                        {QStringLiteral("POINT(%1 %2)").arg(lon).arg(lat)}));
        other = addLayer(*map, dir.filePath(QStringLiteral("geo.shp")));
    }

    double x = lon, y = lat, z = 0;
    QVERIFY(KivTest::projTransform(QStringLiteral("EPSG:4326 -> EPSG:32650"), x, y, z));
    MapRenderer renderer;
    // 1 m a pixel around where PROJ puts the point.
    const QImage image = renderer.render(*map, QRectF(x - 50, y - 50, 101, 101), QSize(101, 101));
    QVERIFY2(renderer.takeProblems().isEmpty(), "no problems expected");
    const QRgb centre = image.pixel(50, 50);
    if (raster) {
        QCOMPARE(centre, qRgb(0, 0, 255));
        // The warp grid has the source's resolution, so the cell may shift
        // by up to half its size (about 50 m); its middle stays in place.
        const QImage wide = renderer.render(*map, QRectF(x - 2000, y - 2000, 4000, 4000), QSize(400, 400));
        QCOMPARE(wide.pixel(200, 200), qRgb(0, 0, 255));
        QCOMPARE(wide.pixel(200 - 30, 200), qRgb(200, 0, 0));
        // Outside the warped raster stays transparent.
        QCOMPARE(qAlpha(wide.pixel(5, 5)), 0);
        QRectF e;
        QVERIFY(renderer.layerExtent(*map, 1, &e));
        QVERIFY(e.contains(QPointF(x, y)));
        QVERIFY(e.width() < 1000 && e.height() < 1100);
    } else {
        QCOMPARE(centre, renderer.layerColor(other.get()).rgba());
        QRectF e;
        QVERIFY(renderer.layerExtent(*map, 1, &e));
        QVERIFY(std::abs(e.left() - x) < 1e-6 && std::abs(e.top() - y) < 1e-6);
    }
}

void TestMapRenderer::firstLayerSetsTheMapSystem()
{
    QTemporaryDir dir(kDirTemplate);
    QVERIFY(MapFixtures::writeShape(dir.filePath(QStringLiteral("utm.shp")), 32650, wkbPoint,
                                    {QStringLiteral("POINT(500000 4000000)")}));
    QVERIFY(MapFixtures::writeShape(dir.filePath(QStringLiteral("geo.shp")), 4326, wkbPoint,
                                    {QStringLiteral("POINT(117 36)")}));
    KivUtility::_ptr_t<KivCarto::Map> map(new KivCarto::Map);
    addLayer(*map, dir.filePath(QStringLiteral("utm.shp")));
    addLayer(*map, dir.filePath(QStringLiteral("geo.shp")));
    MapRenderer renderer;
    renderer.sync(*map);
    QVERIFY(renderer.mapWkt().contains(QStringLiteral("UTM zone 50N")));
    QRectF e;
    QVERIFY(renderer.layerExtent(*map, 1, &e));
    QVERIFY(e.left() > 400000);

    // Once the first layer is gone the other one's system is the map's, and
    // its extent is in degrees again.
    map->RemoveLayer(0);
    QVERIFY(renderer.layerExtent(*map, 0, &e));
    QCOMPARE(e.left(), 117.0);
    QCOMPARE(e.top(), 36.0);
}

void TestMapRenderer::unreadableFilesAreNamed_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("not a dataset") << QByteArray("this is no raster\n");
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("missing") << QByteArray();
}

void TestMapRenderer::unreadableFilesAreNamed()
{
    QFETCH(QByteArray, content);
    QTemporaryDir dir(kDirTemplate);
    const QString path = dir.filePath(QStringLiteral("broken.tif"));
    if (!content.isNull()) {
        QFile f(path);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(content);
    }
    QString error;
    QVERIFY(!LayerSource::open(path, &error));
    QVERIFY2(error.contains(path), qPrintable(error));

    // A map holding it draws the rest and reports it once.
    KivUtility::_ptr_t<KivCarto::Map> map(new KivCarto::Map);
    addLayer(*map, path);
    MapRenderer renderer;
    renderer.render(*map, QRectF(0, 0, 10, 10), QSize(10, 10));
    renderer.render(*map, QRectF(0, 0, 10, 10), QSize(10, 10));
    const QStringList problems = renderer.takeProblems();
    QCOMPARE(problems.size(), 1);
    QVERIFY(problems.first().contains(path));
}

void TestMapRenderer::zoomedFarInAndOut()
{
    // Half a cell over many pixels, and the whole raster in a few pixels,
    // both still show the right values.
    QTemporaryDir dir(kDirTemplate);
    Raster r;
    r.bands = {std::vector<double>(16, 0), std::vector<double>(16, 0), std::vector<double>(16, 0)};
    r.bands[0][0] = 255;  // top left cell red
    const QString path = dir.filePath(QStringLiteral("r.tif"));
    QVERIFY(MapFixtures::writeRaster(path, r));
    KivUtility::_ptr_t<KivCarto::Map> map(new KivCarto::Map);
    addLayer(*map, path);
    MapRenderer renderer;
    QImage in = renderer.render(*map, QRectF(500002, 4000032, 5, 5), QSize(500, 500));
    QCOMPARE(in.pixel(0, 0), qRgb(255, 0, 0));
    QCOMPARE(in.pixel(499, 499), qRgb(255, 0, 0));
    // Cell edge at x = 500010: pixel 400 of 500 is just past it.
    in = renderer.render(*map, QRectF(500005, 4000030, 10, 10), QSize(100, 100));
    QCOMPARE(in.pixel(49, 5), qRgb(255, 0, 0));
    QCOMPARE(in.pixel(51, 5), qRgb(0, 0, 0));
    const QImage out = renderer.render(*map, QRectF(499000, 3999000, 2000, 2000), QSize(200, 200));
    QCOMPARE(out.pixel(100, 96), qRgb(255, 0, 0));
    QCOMPARE(qAlpha(out.pixel(10, 10)), 0);
}

KIV_TEST_CLASS(TestMapRenderer)
#include "tst_MapRenderer.moc"
