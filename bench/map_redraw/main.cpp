// How long the map view takes to draw a 10000 x 10000 GeoTIFF and a
// 100,000-feature shapefile at full extent, zoomed in and zoomed out, and how
// the process's memory behaves over 50 pans. The reference in the same run is
// GDAL reading the same raster window into a buffer of the same size (the
// least any drawing must do), and OGR reading every feature of the shapefile
// once.
//
//     bench_map_redraw [--keep DIR] [--size 10000] [--features 100000]
//                      [--width 1024 --height 768] [--no-overviews]

#include "KivCarto/Map.h"
#include "LayerSource.h"
#include "MapRenderer.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QTemporaryDir>

#include <cpl_conv.h>
#include <gdal.h>
#include <ogr_api.h>
#include <ogr_srs_api.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <random>
#include <string>
#include <vector>

using Clock = std::chrono::steady_clock;

namespace {

constexpr double kTargetMs = 300.0;

double msSince(Clock::time_point t0)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - t0).count();
}

long statusKb(const char* key)
{
    std::ifstream in("/proc/self/status");
    std::string line;
    const std::string prefix = std::string(key) + ":";
    while (std::getline(in, line)) {
        if (line.compare(0, prefix.size(), prefix) == 0)
            return std::stol(line.substr(prefix.size()));
    }
    return -1;
}

// The raster: one byte band of smooth ripples, tiled, in UTM zone 50N with
// 1 m cells, with the usual power-of-two overviews unless told not to.
bool makeRaster(const QString& path, int size, bool overviews)
{
    GDALDriverH driver = GDALGetDriverByName("GTiff");
    const char* options[] = {"TILED=YES", "BLOCKXSIZE=256", "BLOCKYSIZE=256", nullptr};
    GDALDatasetH ds = GDALCreate(driver, path.toUtf8().constData(), size, size, 1, GDT_Byte,
                                 const_cast<char**>(options));
    if (!ds)
        return false;
    double gt[6] = {400000, 1, 0, 4100000, 0, -1};
    GDALSetGeoTransform(ds, gt);
    OGRSpatialReferenceH srs = OSRNewSpatialReference(nullptr);
    OSRImportFromEPSG(srs, 32650);
    GDALSetSpatialRef(ds, srs);
    OSRDestroySpatialReference(srs);
    GDALRasterBandH band = GDALGetRasterBand(ds, 1);
    std::vector<unsigned char> row(size);
    bool ok = true;
    for (int y = 0; y < size && ok; ++y) {
        for (int x = 0; x < size; ++x)
            row[x] = static_cast<unsigned char>(128 + 60 * std::sin(x / 300.0) + 60 * std::cos(y / 170.0));
        ok = GDALRasterIO(band, GF_Write, 0, y, size, 1, row.data(), size, 1, GDT_Byte, 0, 0) == CE_None;
    }
    if (ok && overviews) {
        int levels[] = {2, 4, 8, 16, 32, 64};
        ok = GDALBuildOverviews(ds, "AVERAGE", 6, levels, 0, nullptr, nullptr, nullptr) == CE_None;
    }
    GDALClose(ds);
    return ok;
}

// The shapefile: octagons of 20 to 300 m scattered over the raster's 10 km.
bool makeShapefile(const QString& path, int count, double extent)
{
    GDALDriverH driver = GDALGetDriverByName("ESRI Shapefile");
    GDALDatasetH ds = GDALCreate(driver, path.toUtf8().constData(), 0, 0, 0, GDT_Unknown, nullptr);
    if (!ds)
        return false;
    OGRSpatialReferenceH srs = OSRNewSpatialReference(nullptr);
    OSRImportFromEPSG(srs, 32650);
    OGRLayerH layer = GDALDatasetCreateLayer(ds, "parcels", srs, wkbPolygon, nullptr);
    OSRDestroySpatialReference(srs);
    std::mt19937 random(42);
    std::uniform_real_distribution<double> where(0, extent);
    std::uniform_real_distribution<double> radius(10, 150);
    bool ok = layer != nullptr;
    for (int i = 0; i < count && ok; ++i) {
        const double cx = 400000 + where(random);
        const double cy = 4100000 - where(random);
        const double r = radius(random);
        OGRGeometryH ring = OGR_G_CreateGeometry(wkbLinearRing);
        for (int k = 0; k <= 8; ++k) {
            const double a = (k % 8) * M_PI / 4;
            OGR_G_AddPoint_2D(ring, cx + r * std::cos(a), cy + r * std::sin(a));
        }
        OGRGeometryH polygon = OGR_G_CreateGeometry(wkbPolygon);
        OGR_G_AddGeometryDirectly(polygon, ring);
        OGRFeatureH feature = OGR_F_Create(OGR_L_GetLayerDefn(layer));
        OGR_F_SetGeometryDirectly(feature, polygon);
        ok = OGR_L_CreateFeature(layer, feature) == OGRERR_NONE;
        OGR_F_Destroy(feature);
    }
    GDALClose(ds);
    return ok;
}

struct Timing
{
    double first = 0;
    double median = 0;
    double worst = 0;
};

Timing timeRenders(MapRenderer& renderer, const KivCarto::Map& map, const QRectF& extent, QImage& image,
                   int repeat)
{
    std::vector<double> ms;
    for (int i = 0; i < repeat; ++i) {
        const auto t0 = Clock::now();
        renderer.render(map, extent, image);
        ms.push_back(msSince(t0));
    }
    Timing t;
    t.first = ms.front();
    t.worst = *std::max_element(ms.begin(), ms.end());
    std::sort(ms.begin(), ms.end());
    t.median = ms[ms.size() / 2];
    return t;
}

// GDAL alone: the raster window of `extent` read into a width x height buffer.
double referenceRead(const QString& path, const QRectF& extent, const QSize& size)
{
    GDALDatasetH ds = GDALOpen(path.toUtf8().constData(), GA_ReadOnly);
    double gt[6];
    GDALGetGeoTransform(ds, gt);
    const int w = GDALGetRasterXSize(ds);
    const int h = GDALGetRasterYSize(ds);
    const int x0 = std::clamp(static_cast<int>((extent.left() - gt[0]) / gt[1]), 0, w - 1);
    const int x1 = std::clamp(static_cast<int>((extent.right() - gt[0]) / gt[1]), x0 + 1, w);
    const int y0 = std::clamp(static_cast<int>((extent.bottom() - gt[3]) / gt[5]), 0, h - 1);
    const int y1 = std::clamp(static_cast<int>((extent.top() - gt[3]) / gt[5]), y0 + 1, h);
    const int bw = std::min(size.width(), x1 - x0 > 0 ? size.width() : 1);
    const int bh = std::min(size.height(), y1 - y0 > 0 ? size.height() : 1);
    std::vector<float> buffer(static_cast<size_t>(bw) * bh);
    const auto t0 = Clock::now();
    const bool ok = GDALRasterIO(GDALGetRasterBand(ds, 1), GF_Read, x0, y0, x1 - x0, y1 - y0, buffer.data(), bw, bh,
                                 GDT_Float32, 0, 0) == CE_None;
    const double ms = ok ? msSince(t0) : -1;
    GDALClose(ds);
    return ms;
}

double referenceScan(const QString& path)
{
    const auto t0 = Clock::now();
    GDALDatasetH ds = GDALOpenEx(path.toUtf8().constData(), GDAL_OF_VECTOR, nullptr, nullptr, nullptr);
    OGRLayerH layer = GDALDatasetGetLayer(ds, 0);
    long points = 0;
    while (OGRFeatureH f = OGR_L_GetNextFeature(layer)) {
        if (OGRGeometryH g = OGR_F_GetGeometryRef(f))
            points += OGR_G_GetPointCount(OGR_G_GetGeometryRef(g, 0));
        OGR_F_Destroy(f);
    }
    GDALClose(ds);
    const double ms = msSince(t0);
    return points > 0 ? ms : -1;
}

} // namespace

int main(int argc, char** argv)
{
    QGuiApplication app(argc, argv);  // fonts and image formats for QPainter
    QCommandLineParser parser;
    QCommandLineOption keep(QStringLiteral("keep"), QStringLiteral("Make the files in <dir> and keep them."),
                            QStringLiteral("dir"));
    QCommandLineOption sizeOption(QStringLiteral("size"), QStringLiteral("Raster side in pixels."),
                                  QStringLiteral("n"), QStringLiteral("10000"));
    QCommandLineOption featuresOption(QStringLiteral("features"), QStringLiteral("Shapefile features."),
                                      QStringLiteral("n"), QStringLiteral("100000"));
    QCommandLineOption widthOption(QStringLiteral("width"), QStringLiteral("Image width."), QStringLiteral("px"),
                                   QStringLiteral("1024"));
    QCommandLineOption heightOption(QStringLiteral("height"), QStringLiteral("Image height."), QStringLiteral("px"),
                                    QStringLiteral("768"));
    QCommandLineOption noOverviews(QStringLiteral("no-overviews"), QStringLiteral("Raster without overviews."));
    parser.addOptions({keep, sizeOption, featuresOption, widthOption, heightOption, noOverviews});
    parser.addHelpOption();
    parser.process(app);

    GDALAllRegister();
    QTemporaryDir temp;
    const QString dir = parser.isSet(keep) ? parser.value(keep) : temp.path();
    QDir().mkpath(dir);
    const int side = parser.value(sizeOption).toInt();
    const int features = parser.value(featuresOption).toInt();
    const QSize size(parser.value(widthOption).toInt(), parser.value(heightOption).toInt());
    const bool overviews = !parser.isSet(noOverviews);
    const QString raster = dir + QStringLiteral("/big%1.tif").arg(overviews ? "" : "-noovr");
    const QString shape = dir + QStringLiteral("/parcels.shp");

    auto t0 = Clock::now();
    if (!QFileInfo::exists(raster) && !makeRaster(raster, side, overviews)) {
        std::fprintf(stderr, "cannot write %s\n", qPrintable(raster));
        return 2;
    }
    if (!QFileInfo::exists(shape) && !makeShapefile(shape, features, side)) {
        std::fprintf(stderr, "cannot write %s\n", qPrintable(shape));
        return 2;
    }
    std::printf("data ready in %.1f s (%s)\n", msSince(t0) / 1000.0, qPrintable(dir));
    std::printf("image %d x %d, raster %d x %d %s overviews, %d polygons\n\n", size.width(), size.height(), side,
                side, overviews ? "with" : "without", features);

    const QRectF full(400000, 4100000 - side, side, side);
    const QRectF in(full.center().x() - side / 40.0, full.center().y() - side / 40.0, side / 20.0, side / 20.0);
    const QRectF third(full.center().x() - side / 6.0, full.center().y() - side / 6.0, side / 3.0, side / 3.0);
    const QRectF out(full.left() - side, full.top() - side, side * 3.0, side * 3.0);
    struct Case
    {
        const char* name;
        QRectF extent;
    };
    const Case cases[] = {
        {"full extent", full}, {"zoomed in (1/3)", third}, {"zoomed in (1/20)", in}, {"zoomed out (3x)", out}};
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    bool met = true;

    for (const QString& path : {raster, shape}) {
        const bool isRaster = path == raster;
        KivUtility::_ptr_t<KivCarto::Map> map(new KivCarto::Map);
        map->AddLayer(KivUtility::_ptr_t<KivCarto::Layer>(new KivCarto::Layer(QFileInfo(path).baseName(), path)));
        MapRenderer renderer;
        t0 = Clock::now();
        renderer.sync(*map);
        const double openMs = msSince(t0);
        std::printf("%s: opened%s in %.0f ms\n", isRaster ? "GeoTIFF" : "shapefile",
                    isRaster ? "" : " and cached", openMs);
        const double reference = isRaster ? -1 : referenceScan(path);
        if (!isRaster)
            std::printf("  reference: OGR reads every feature once   %8.1f ms\n", reference);
        for (const Case& c : cases) {
            const Timing t = timeRenders(renderer, *map, c.extent, image, 7);
            const double ref = isRaster ? referenceRead(path, c.extent.intersected(full), size) : reference;
            std::printf("  %-18s first %7.1f ms  median %7.1f ms  worst %7.1f ms   ratio to reference %.2f\n",
                        c.name, t.first, t.median, t.worst, ref > 0 ? t.median / ref : 0.0);
            met = met && t.worst < kTargetMs;
        }

        // 50 pans, a quarter of the view each, zoomed in, snaking over the data.
        const long before = statusKb("VmRSS");
        long low = before, high = before;
        QRectF view(full.left(), full.top() + full.height() - in.height(), in.width(), in.height());
        double worstPan = 0;
        for (int i = 0; i < 50; ++i) {
            const double step = view.width() / 4;
            view.translate((i / 10) % 2 == 0 ? step : -step, 0);
            if (i % 10 == 9)
                view.translate(0, -view.height());
            const auto p0 = Clock::now();
            renderer.render(*map, view, image);
            worstPan = std::max(worstPan, msSince(p0));
            const long rss = statusKb("VmRSS");
            low = std::min(low, rss);
            high = std::max(high, rss);
            if (i == 9)
                std::printf("  RSS after 10 pans %ld MB\n", rss / 1024);
        }
        std::printf("  50 pans: worst %.1f ms; RSS before %ld MB, lowest %ld MB, highest %ld MB, after %ld MB; "
                    "peak RSS so far %ld MB\n\n",
                    worstPan, before / 1024, low / 1024, high / 1024, statusKb("VmRSS") / 1024,
                    statusKb("VmHWM") / 1024);
        met = met && worstPan < kTargetMs;
    }
    std::printf("target: every redraw under %.0f ms: %s\n", kTargetMs, met ? "met" : "NOT MET");
    return met ? 0 : 1;
}
