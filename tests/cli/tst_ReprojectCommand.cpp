// "coordstransform reproject": its options, refusals and endings; what the
// algorithms write is checked with the algorithms.

#include "CliRun.h"
#include "ReprojectCommand.h"

#include "support/DatasetFixtures.h"
#include "support/TestRegistry.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <gdal_priv.h>

#include <memory>


namespace {

const QString kSeven = QStringLiteral("15.8,-154.4,-82.3,0.52,-1.31,2.17,3.5e-6");

/// A Beijing 1954 zone 39 raster of 6 km square, `size` pixels a side.
void writeRaster(const QString& path, int size)
{
    QVERIFY(DatasetFixtures::writeRaster(path, QStringLiteral("EPSG:2436"), size, 480000, 3420000, 6000.0 / size));
}

void writePoints(const QString& path, const std::vector<double>& eastNorth)
{
    QVERIFY(DatasetFixtures::writePoints(path, QStringLiteral("EPSG:2436"), eastNorth));
}

} // namespace

class TestReprojectCommand : public QObject
{
    Q_OBJECT
private slots:
    void rasterFormats_data();
    void rasterFormats();
    void rasterOptions_data();
    void rasterOptions();
    void usageErrors_data();
    void usageErrors();
    void vectorIntoAFolder();
    void damagedInputIsAReadingFault_data();
    void damagedInputIsAReadingFault();
    void noDatumShiftIsReported();
    void stopLeavesNothing();
};

void TestReprojectCommand::rasterFormats_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("driver");
    QTest::newRow("tif by suffix") << "o.tif" << "" << "GTiff";
    QTest::newRow("img by suffix") << "o.img" << "" << "HFA";
    QTest::newRow("ENVI asked for") << "o.dat" << "ENVI" << "ENVI";
    // "out/": a batch into that folder; a named format gives the output its suffix.
    QTest::newRow("batch, tif by suffix") << "out/in.tif" << "" << "GTiff";
    QTest::newRow("batch, ENVI asked for") << "out/in" << "ENVI" << "ENVI";
    QTest::newRow("batch, HFA asked for") << "out/in.img" << "HFA" << "HFA";
}

void TestReprojectCommand::rasterFormats()
{
    QFETCH(QString, file);
    QFETCH(QString, format);
    QFETCH(QString, driver);
    QTemporaryDir dir;
    const QString input = dir.filePath(QStringLiteral("in.tif"));
    writeRaster(input, 64);
    QStringList args = {QStringLiteral("reproject"), QStringLiteral("--to"), QStringLiteral("EPSG:4326"),
                        QStringLiteral("--params7"), kSeven};
    if (!format.isEmpty())
        args << QStringLiteral("--format") << format;
    if (file.startsWith(QLatin1String("out/")) && QDir(dir.path()).mkdir(QStringLiteral("out")))
        args << QStringLiteral("--folder") << dir.filePath(QStringLiteral("out")) << input;
    else
        args << input << dir.filePath(file);
    const CliRun run(args);
    QVERIFY2(run.status == 0, qPrintable(run.err));
    std::unique_ptr<GDALDataset> ds(GDALDataset::Open(dir.filePath(file).toUtf8().constData(), GDAL_OF_RASTER));
    QVERIFY(ds);
    QCOMPARE(QString::fromLatin1(ds->GetDriver()->GetDescription()), driver);
}

void TestReprojectCommand::rasterOptions_data()
{
    // An empty item names what the output's metadata must hold, "": nothing
    // beyond reading back; a refused run names its message instead.
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("item");
    QTest::addColumn<QString>("expected");
    for (const char* method : {"near", "bilinear", "cubic", "cubicspline", "lanczos", "average", "mode"})
        QTest::newRow(method) << QStringList{QStringLiteral("--resampling"), QString::fromLatin1(method)} << 0 << ""
                              << "";
    QTest::newRow("resolution") << QStringList{QStringLiteral("--resolution"), QStringLiteral("0.0001,0.0002")} << 0
                                << "pixel size" << "0.0001,0.0002";
    QTest::newRow("creation option") << QStringList{QStringLiteral("--co"), QStringLiteral("COMPRESS=DEFLATE")} << 0
                                     << "COMPRESSION" << "DEFLATE";
    QTest::newRow("COG") << QStringList{QStringLiteral("--format"), QStringLiteral("COG"), QStringLiteral("--co"),
                                        QStringLiteral("COMPRESS=DEFLATE")}
                         << 0 << "LAYOUT" << "COG";
    QTest::newRow("unknown method") << QStringList{QStringLiteral("--resampling"), QStringLiteral("nearest")} << 2
                                    << "" << "--resampling takes";
    QTest::newRow("zero resolution") << QStringList{QStringLiteral("--resolution"), QStringLiteral("0,1")} << 2 << ""
                                     << "--resolution takes";
    QTest::newRow("one resolution") << QStringList{QStringLiteral("--resolution"), QStringLiteral("1")} << 2 << ""
                                    << "--resolution takes";
    QTest::newRow("option without value") << QStringList{QStringLiteral("--co"), QStringLiteral("COMPRESS")} << 2 << ""
                                          << "--co takes KEY=VALUE";
    QTest::newRow("value the format refuses") << QStringList{QStringLiteral("--co"), QStringLiteral("COMPRESS=FOO")}
                                              << 2 << "" << "FOO";
}

void TestReprojectCommand::rasterOptions()
{
    QFETCH(QStringList, options);
    QFETCH(int, status);
    QFETCH(QString, item);
    QFETCH(QString, expected);
    QTemporaryDir dir;
    const QString input = dir.filePath(QStringLiteral("in.tif"));
    const QString output = dir.filePath(QStringLiteral("out.tif"));
    writeRaster(input, 64);
    const CliRun run(QStringList{QStringLiteral("reproject"), QStringLiteral("--to"), QStringLiteral("EPSG:4326"),
                                 QStringLiteral("--params7"), kSeven}
                     + options + QStringList{input, output});
    QVERIFY2(run.status == status, qPrintable(run.err));
    // Nothing temporary stays, and a refused run writes nothing.
    QStringList files = {QStringLiteral("in.tif")};
    if (status == 0)
        files << QStringLiteral("out.tif");
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), files);
    if (status != 0) {
        QVERIFY2(run.err.contains(expected), qPrintable(run.err));
        return;
    }
    std::unique_ptr<GDALDataset> ds(GDALDataset::Open(output.toUtf8().constData(), GDAL_OF_RASTER));
    QVERIFY(ds);
    // Every method gives data, not the no-data value, inside the raster.
    GByte centre = 0;
    QCOMPARE(ds->GetRasterBand(1)->RasterIO(GF_Read, ds->GetRasterXSize() / 2, ds->GetRasterYSize() / 2, 1, 1,
                                            &centre, 1, 1, GDT_Byte, 0, 0),
             CE_None);
    QVERIFY(centre != 0);
    if (item == QLatin1String("pixel size")) {
        double gt[6];
        QCOMPARE(ds->GetGeoTransform(gt), CE_None);
        QCOMPARE(QStringLiteral("%1,%2").arg(gt[1]).arg(-gt[5]), expected);
    } else if (!item.isEmpty()) {
        QCOMPARE(QString::fromUtf8(ds->GetMetadataItem(item.toUtf8().constData(), "IMAGE_STRUCTURE")), expected);
    }
}

void TestReprojectCommand::usageErrors_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("message");
    QTest::newRow("no target") << QStringList{QStringLiteral("@in"), QStringLiteral("@out")} << "--to is needed";
    QTest::newRow("different bases, no model")
        << QStringList{QStringLiteral("--to"), QStringLiteral("EPSG:4326"), QStringLiteral("@in"), QStringLiteral("@out")}
        << "different geographic bases";
    QTest::newRow("bad format") << QStringList{QStringLiteral("--to"), QStringLiteral("EPSG:4214"), QStringLiteral("--format"),
                                               QStringLiteral("PNG"), QStringLiteral("@in"), QStringLiteral("@out")}
                                << "--format";
    QTest::newRow("output is input") << QStringList{QStringLiteral("--to"), QStringLiteral("EPSG:4214"), QStringLiteral("@in"),
                                                    QStringLiteral("@in")}
                                     << "is the input";
}

void TestReprojectCommand::usageErrors()
{
    QFETCH(QStringList, args);
    QFETCH(QString, message);
    QTemporaryDir dir;
    const QString input = dir.filePath(QStringLiteral("in.tif"));
    writeRaster(input, 16);
    for (QString& arg : args) {
        if (arg == QLatin1String("@in"))
            arg = input;
        else if (arg == QLatin1String("@out"))
            arg = dir.filePath(QStringLiteral("out.tif"));
    }
    const CliRun run(QStringList{QStringLiteral("reproject")} + args);
    QVERIFY(run.status != 0);
    QVERIFY2(run.err.contains(message), qPrintable(run.err));
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList{QStringLiteral("in.tif")});
}

void TestReprojectCommand::vectorIntoAFolder()
{
    // A vector layer written into a folder takes its own name there; what
    // outputs are refused is checked with the algorithms.
    QTemporaryDir dir;
    const QString input = dir.filePath(QStringLiteral("in.shp")), folder = dir.filePath(QStringLiteral("folder"));
    writePoints(input, {412345.678, 3301234.5, 500000, 3400000});
    QVERIFY(QDir().mkpath(folder));
    const CliRun run({QStringLiteral("reproject"), QStringLiteral("--to"), QStringLiteral("EPSG:4326"),
                      QStringLiteral("--params7"), kSeven, input, folder});
    QVERIFY2(run.status == 0, qPrintable(run.err));
    QCOMPARE(run.outLines(), QStringList{QDir(folder).filePath(QStringLiteral("in.shp"))});
}

void TestReprojectCommand::damagedInputIsAReadingFault_data()
{
    QTest::addColumn<QString>("name"); // the file cut to half its size
    QTest::newRow("raster") << "cut.tif";
    QTest::newRow("vector") << "cut.shp";
}

void TestReprojectCommand::damagedInputIsAReadingFault()
{
    QFETCH(QString, name);
    QTemporaryDir dir;
    const QString input = dir.filePath(name);
    if (name.endsWith(QLatin1String(".tif"))) {
        writeRaster(input, 256);
    } else {
        std::vector<double> points;
        for (int i = 0; i < 2000; ++i)
            points.insert(points.end(), {412345.678 + i, 3301234.5 + i});
        writePoints(input, points);
    }
    QFile file(input);
    QVERIFY(file.open(QIODevice::ReadWrite) && file.resize(file.size() / 2));
    file.close();
    const QStringList before = QDir(dir.path()).entryList(QDir::Files | QDir::Hidden);
    const QString output = dir.filePath(QStringLiteral("o") + name.mid(3));
    const CliRun run({QStringLiteral("reproject"), QStringLiteral("--to"), QStringLiteral("EPSG:4326"),
                      QStringLiteral("--params7"), kSeven, input, output});
    QCOMPARE(run.status, 1);
    QVERIFY2(run.err.contains(QStringLiteral("Reading \"%1\" failed: ").arg(input)), qPrintable(run.err));
    QVERIFY2(!run.err.contains(QLatin1String("Writing")), qPrintable(run.err));
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), before);
}

void TestReprojectCommand::noDatumShiftIsReported()
{
    // A four-parameter model keeps PROJ's own operation between Beijing 1954
    // and WGS 84, which has no transformation for these points.
    QTemporaryDir dir;
    const QString input = dir.filePath(QStringLiteral("line.shp"));
    writePoints(input, {412345.678, 3301234.5, 500000, 3400000, 587654.321, 4012345.25});
    const QString output = dir.filePath(QStringLiteral("o.shp"));
    const CliRun run({QStringLiteral("reproject"), QStringLiteral("--to"), QStringLiteral("EPSG:4326"),
                      QStringLiteral("--params4"), QStringLiteral("0,0,0,1"), input, output});
    QVERIFY2(run.status == 0, qPrintable(run.err));
    QCOMPARE(run.outLines(), QStringList{output});
    QVERIFY2(run.err.contains(QLatin1String("warning: ") + output + QLatin1String(": 3 point(s) converted without any datum shift")),
             qPrintable(run.err));

    const CliRun json({QStringLiteral("reproject"), QStringLiteral("--to"), QStringLiteral("EPSG:4326"),
                       QStringLiteral("--params4"), QStringLiteral("0,0,0,1"), QStringLiteral("--json"), input, output});
    QCOMPARE(json.status, 0);
    const QJsonObject result = QJsonDocument::fromJson(json.out.toUtf8()).object();
    QCOMPARE(result.value(QStringLiteral("outputs")).toArray(), QJsonArray{output});
    QCOMPARE(result.value(QStringLiteral("status")).toInt(-1), 0);
    QCOMPARE(result.value(QStringLiteral("errors")).toArray().size(), 0);
    const QString warning = result.value(QStringLiteral("warnings")).toArray().first().toString();
    QVERIFY2(warning.contains(QLatin1String("3 point(s) converted without any datum shift")), qPrintable(json.out));
}

void TestReprojectCommand::stopLeavesNothing()
{
    QTemporaryDir dir;
    const QString input = dir.filePath(QStringLiteral("big.tif"));
    writeRaster(input, 4000);
    const QString folder = dir.filePath(QStringLiteral("out"));
    QVERIFY(QDir().mkpath(folder));
    QTimer::singleShot(100, [] { ReprojectCommand::requestStop(); });
    const CliRun run({QStringLiteral("reproject"), QStringLiteral("--to"), QStringLiteral("EPSG:4326"),
                      QStringLiteral("--params7"), kSeven, input, QDir(folder).filePath(QStringLiteral("big.tif"))});
    QCOMPARE(run.status, 130);
    QCOMPARE(QDir(folder).entryList(QDir::Files | QDir::Hidden), QStringList());
}

KIV_TEST_CLASS(TestReprojectCommand)
#include "tst_ReprojectCommand.moc"
