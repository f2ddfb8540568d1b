// Vector reprojection speed and memory: `coordstransform reproject` against
// `ogr2ogr -ct` with the same seven-parameter route as a PROJ pipeline, on
// three shapefiles (points, lines, polygons) holding 1,000,000 vertices in
// all. Prints both times and peak memories, the ratio and the largest vertex
// difference. See bench/README.md.

#include "ChildRun.h"

#include <QCoreApplication>
#include <QDir>
#include <QString>
#include <QTemporaryDir>

#include <gdal_priv.h>
#include <ogr_spatialref.h>
#include <ogrsf_frmts.h>

#include <cmath>
#include <cstdio>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

const char kSeven[] = "15.8,-154.4,-82.3,0.52,-1.31,2.17,3.5e-6";
// GDAL hands -ct operations coordinates in the systems' authority axis order
// (northing first for EPSG:2436, latitude first for EPSG:4326), hence the
// axis swaps at both ends.
const char kPipeline[] =
    "+proj=pipeline +step +proj=axisswap +order=2,1 +step +inv +proj=tmerc +lat_0=0 +lon_0=117 +k=1 +x_0=500000 +y_0=0 +ellps=krass "
    "+step +proj=cart +ellps=krass +step +proj=helmert +x=15.8 +y=-154.4 +z=-82.3 +rx=0.52 +ry=-1.31 "
    "+rz=2.17 +s=3.5 +convention=coordinate_frame +step +inv +proj=cart +ellps=WGS84 "
    "+step +proj=unitconvert +xy_in=rad +xy_out=deg +step +proj=axisswap +order=2,1";

/// `vertices` vertices in features of `perFeature` vertices each.
void writeInput(const std::string& path, OGRwkbGeometryType type, long vertices, int perFeature)
{
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName("ESRI Shapefile");
    std::unique_ptr<GDALDataset> ds(driver->Create(path.c_str(), 0, 0, 0, GDT_Unknown, nullptr));
    OGRSpatialReference srs;
    srs.importFromEPSG(2436);
    OGRLayer* layer = ds->CreateLayer("data", &srs, type, nullptr);
    OGRFieldDefn name("NAME", OFTString);
    layer->CreateField(&name);
    std::mt19937 random(42);
    std::uniform_real_distribution<double> east(400000, 600000), north(2300000, 5400000), step(-50, 50);
    for (long done = 0; done < vertices; done += perFeature) {
        OGRFeature feature(layer->GetLayerDefn());
        feature.SetField("NAME", "feature");
        const double x0 = east(random), y0 = north(random);
        if (type == wkbPoint) {
            OGRPoint point(x0, y0);
            feature.SetGeometry(&point);
        } else if (type == wkbLineString) {
            OGRLineString line;
            double x = x0, y = y0;
            for (int i = 0; i < perFeature; ++i, x += step(random), y += step(random))
                line.addPoint(x, y);
            feature.SetGeometry(&line);
        } else {
            OGRLinearRing ring;
            for (int i = 0; i < perFeature - 1; ++i) {
                const double angle = -2 * M_PI * i / (perFeature - 1);
                ring.addPoint(x0 + 500 * std::cos(angle), y0 + 500 * std::sin(angle));
            }
            ring.closeRings();
            OGRPolygon polygon;
            polygon.addRing(&ring);
            feature.SetGeometry(&polygon);
        }
        if (layer->CreateFeature(&feature) != OGRERR_NONE)
            std::exit(3);
    }
}

void collect(const OGRGeometry* g, std::vector<double>& xy)
{
    switch (wkbFlatten(g->getGeometryType())) {
    case wkbPoint:
        xy.push_back(g->toPoint()->getX());
        xy.push_back(g->toPoint()->getY());
        break;
    case wkbLineString:
        for (const OGRPoint& p : *g->toLineString()) {
            xy.push_back(p.getX());
            xy.push_back(p.getY());
        }
        break;
    case wkbPolygon:
        for (const OGRLinearRing* ring : *g->toPolygon())
            collect(ring, xy);
        break;
    default:
        if (OGR_GT_IsSubClassOf(g->getGeometryType(), wkbGeometryCollection))
            for (const OGRGeometry* part : *g->toGeometryCollection())
                collect(part, xy);
    }
}

std::vector<double> vertices(const std::string& path)
{
    std::vector<double> xy;
    std::unique_ptr<GDALDataset> ds(GDALDataset::Open(path.c_str(), GDAL_OF_VECTOR));
    if (!ds)
        return xy;
    for (auto& feature : *ds->GetLayer(0))
        if (const OGRGeometry* g = feature->GetGeometryRef())
            collect(g, xy);
    return xy;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    long total = 1000000;
    QString keep;
    const QStringList args = app.arguments();
    for (int i = 1; i < args.size(); ++i) {
        if (args[i] == QLatin1String("--vertices") && i + 1 < args.size())
            total = args[++i].toLong();
        else if (args[i] == QLatin1String("--keep") && i + 1 < args.size())
            keep = args[++i];
        else {
            std::fprintf(stderr, "usage: %s [--vertices N] [--keep DIR]\n", argv[0]);
            return 2;
        }
    }
    GDALAllRegister();
    const std::string program = (QCoreApplication::applicationDirPath() + QStringLiteral("/coordstransform")).toStdString();
    QTemporaryDir temporary;
    const QString folder = keep.isEmpty() ? temporary.path() : keep;
    const QString oursFolder = QDir(folder).filePath(QStringLiteral("ours"));
    const QString theirsFolder = QDir(folder).filePath(QStringLiteral("theirs"));
    QDir().mkpath(oursFolder);
    QDir().mkpath(theirsFolder);
    const auto path = [](const QString& dir, const char* name) { return QDir(dir).filePath(QString::fromLatin1(name)).toStdString(); };

    const char* names[] = {"points.shp", "lines.shp", "polygons.shp"};
    writeInput(path(folder, names[0]), wkbPoint, total / 3, 1);
    writeInput(path(folder, names[1]), wkbLineString, total / 3, 100);
    writeInput(path(folder, names[2]), wkbPolygon, total - 2 * (total / 3), 101);

    // Ours: one run for the three files (they go side by side); and one run
    // per file, as ogr2ogr is run.
    const ChildRun batch = ChildRun::run({program, "reproject", "--to", "EPSG:4326", "--params7", kSeven,
                                          path(folder, names[0]), path(folder, names[1]), path(folder, names[2]),
                                          "--folder", oursFolder.toStdString()});
    if (batch.status != 0)
        return 3;
    double oursSequential = 0.0, oursPeak = 0.0, theirsSeconds = 0.0, theirsPeak = 0.0;
    for (const char* name : names) {
        const ChildRun one = ChildRun::run({program, "reproject", "--to", "EPSG:4326", "--params7", kSeven,
                                            path(folder, name), path(oursFolder, name)});
        const ChildRun theirs = ChildRun::run({"ogr2ogr", "-overwrite", "-t_srs", "EPSG:4326", "-ct", kPipeline,
                                               path(theirsFolder, name), path(folder, name)});
        if (one.status != 0 || theirs.status != 0)
            return 3;
        oursSequential += one.seconds;
        oursPeak = std::max(oursPeak, one.peakMegabytes);
        theirsSeconds += theirs.seconds;
        theirsPeak = std::max(theirsPeak, theirs.peakMegabytes);
    }

    double worst = 0.0;
    long long compared = 0;
    for (const char* name : names) {
        const std::vector<double> a = vertices(path(oursFolder, name));
        const std::vector<double> b = vertices(path(theirsFolder, name));
        if (a.size() != b.size()) {
            std::fprintf(stderr, "%s: %zu vertices against %zu\n", name, a.size() / 2, b.size() / 2);
            return 3;
        }
        for (size_t i = 0; i + 1 < a.size(); i += 2) {
            const double dx = (a[i] - b[i]) * 111320.0 * std::cos(a[i + 1] * M_PI / 180.0);
            const double dy = (a[i + 1] - b[i + 1]) * 110574.0;
            worst = std::max(worst, std::hypot(dx, dy));
        }
        compared += (long long)(a.size() / 2);
    }
    const double ratio = batch.seconds / theirsSeconds;
    std::printf("%lld vertices (points, lines, polygons), EPSG:2436 -> EPSG:4326, seven parameters\n", compared);
    std::printf("coordstransform reproject --folder (3 files) %7.2f s  peak %7.1f MB\n", batch.seconds, batch.peakMegabytes);
    std::printf("coordstransform reproject, file by file      %7.2f s  peak %7.1f MB\n", oursSequential, oursPeak);
    std::printf("ogr2ogr -ct, file by file                    %7.2f s  peak %7.1f MB\n", theirsSeconds, theirsPeak);
    std::printf("ratio coordstransform / ogr2ogr: %.3f (batch), %.3f (file by file)\n", ratio,
                oursSequential / theirsSeconds);
    std::printf("largest vertex difference: %.3g mm\n", worst * 1000.0);
    return ratio <= 1.0 && worst <= 1e-3 ? 0 : 1;
}
