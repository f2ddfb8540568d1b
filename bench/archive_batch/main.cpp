// Archive-scale batches: `coordstransform reproject --list --log --folder`
// over many small inputs (half 16 x 16 GeoTIFFs, half one-point shapefiles),
// run input by input as the scheduler recipes run it, against the same
// inputs in one plain `--folder` batch (the algorithm library's batch, which
// plans once and converts vector inputs two at a time) measured in the same
// run. Prints both times, the overhead per input and both peak memories. See
// bench/README.md.

#include "ChildRun.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <gdal_priv.h>
#include <ogr_spatialref.h>
#include <ogrsf_frmts.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

void writeRaster(GDALDriver* driver, const std::string& path, const OGRSpatialReference& srs, int i)
{
    std::unique_ptr<GDALDataset> ds(driver->Create(path.c_str(), 16, 16, 1, GDT_Byte, nullptr));
    double gt[6] = {430000.0 + 10 * (i % 1000), 10, 0, 4380000.0 - 10 * (i / 1000), 0, -10};
    ds->SetGeoTransform(gt);
    ds->SetSpatialRef(&srs);
    std::vector<GByte> pixels(256, GByte(i % 250 + 1));
    if (ds->GetRasterBand(1)->RasterIO(GF_Write, 0, 0, 16, 16, pixels.data(), 16, 16, GDT_Byte, 0, 0) != CE_None)
        std::fprintf(stderr, "cannot write %s\n", path.c_str());
}

void writePoint(GDALDriver* driver, const std::string& path, OGRSpatialReference& srs, int i)
{
    std::unique_ptr<GDALDataset> ds(driver->Create(path.c_str(), 0, 0, 0, GDT_Unknown, nullptr));
    OGRLayer* layer = ds->CreateLayer("p", &srs, wkbPoint, nullptr);
    OGRFeature feature(layer->GetLayerDefn());
    OGRPoint point(430000.0 + i, 4380000.0 - i);
    feature.SetGeometry(&point);
    if (layer->CreateFeature(&feature) != OGRERR_NONE)
        std::fprintf(stderr, "cannot write %s\n", path.c_str());
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    int inputs = 10000;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--inputs") == 0 && i + 1 < argc) {
            inputs = std::atoi(argv[++i]);
        } else {
            std::fprintf(stderr, "usage: %s [--inputs N]\n", argv[0]);
            return 2;
        }
    }
    const std::string program =
        (QCoreApplication::applicationDirPath() + QStringLiteral("/coordstransform")).toStdString();
    QTemporaryDir dir;
    const QDir root(dir.path());
    root.mkpath(QStringLiteral("in"));
    root.mkpath(QStringLiteral("archive"));
    root.mkpath(QStringLiteral("batch"));

    GDALAllRegister();
    GDALDriver* tiff = GetGDALDriverManager()->GetDriverByName("GTiff");
    GDALDriver* shp = GetGDALDriverManager()->GetDriverByName("ESRI Shapefile");
    OGRSpatialReference srs;
    srs.importFromEPSG(2436);
    QFile list(root.filePath(QStringLiteral("list.txt")));
    list.open(QIODevice::WriteOnly);
    std::vector<std::string> batchCommand = {program, "reproject", "--from", "EPSG:2436", "--to", "EPSG:4214",
                                             "--folder", root.filePath(QStringLiteral("batch")).toStdString()};
    for (int i = 0; i < inputs; ++i) {
        const bool raster = i % 2 == 0;
        const std::string path =
            root.filePath(QStringLiteral("in/s%1.%2").arg(i, 6, 10, QLatin1Char('0')).arg(raster ? "tif" : "shp"))
                .toStdString();
        if (raster)
            writeRaster(tiff, path, srs, i);
        else
            writePoint(shp, path, srs, i);
        list.write((path + "\n").c_str());
        batchCommand.push_back(path);
    }
    list.close();

    const ChildRun archive = ChildRun::run(
        {program, "reproject", "--from", "EPSG:2436", "--to", "EPSG:4214", "--list",
         root.filePath(QStringLiteral("list.txt")).toStdString(), "--log",
         root.filePath(QStringLiteral("run.jsonl")).toStdString(), "--skip-existing", "--folder",
         root.filePath(QStringLiteral("archive")).toStdString()});
    const ChildRun batch = ChildRun::run(batchCommand);
    const ChildRun resumed = ChildRun::run(
        {program, "reproject", "--from", "EPSG:2436", "--to", "EPSG:4214", "--list",
         root.filePath(QStringLiteral("list.txt")).toStdString(), "--skip-existing", "--folder",
         root.filePath(QStringLiteral("archive")).toStdString()});

    std::printf("%d inputs (half 16 x 16 GeoTIFFs, half one-point shapefiles), EPSG:2436 -> EPSG:4214\n", inputs);
    std::printf("reproject --list --log, input by input  %8.2f s  peak %7.1f MB  status %d\n", archive.seconds,
                archive.peakMegabytes, archive.status);
    std::printf("reproject --folder, one batch           %8.2f s  peak %7.1f MB  status %d\n", batch.seconds,
                batch.peakMegabytes, batch.status);
    std::printf("the same list again, every input skipped %7.2f s  peak %7.1f MB  status %d\n", resumed.seconds,
                resumed.peakMegabytes, resumed.status);
    std::printf("ratio input by input / batch: %.3f; overhead per input: %.2f ms; skipping: %.2f ms per input\n",
                archive.seconds / batch.seconds, 1000.0 * (archive.seconds - batch.seconds) / inputs,
                1000.0 * resumed.seconds / inputs);
    return 0;
}
