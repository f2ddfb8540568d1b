// "coordstransform transform": reading, writing and error reporting, with the
// converted numbers checked against PROJ pipelines computed here.

#include "CliRun.h"

#include "models/ModelStore.h"

#include "KivGeometry/SpatialReferenceFactory.h"

#include "support/TestData.h"
#include "support/TestRegistry.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

#include <proj.h>

#include <cmath>

namespace {

/// Runs a PROJ pipeline on (x, y, z) in GIS order.
bool projPipeline(const char* definition, double& x, double& y, double& z)
{
    PJ_CONTEXT* ctx = proj_context_create();
    PJ* op = proj_create(ctx, definition);
    bool ok = false;
    if (op) {
        const PJ_COORD c = proj_trans(op, PJ_FWD, proj_coord(x, y, z, 0));
        ok = c.xyzt.x != HUGE_VAL;
        x = c.xyzt.x;
        y = c.xyzt.y;
        z = c.xyzt.z;
        proj_destroy(op);
    }
    proj_context_destroy(ctx);
    return ok;
}

const char* const kGeoToZone117 =
    "+proj=pipeline +step +proj=unitconvert +xy_in=deg +xy_out=rad "
    "+step +proj=tmerc +lat_0=0 +lon_0=117 +k=1 +x_0=500000 +y_0=0 +ellps=krass";
const char* const kZone117ToWgs84 =
    "+proj=pipeline +step +inv +proj=tmerc +lat_0=0 +lon_0=117 +k=1 +x_0=500000 +y_0=0 +ellps=krass "
    "+step +proj=cart +ellps=krass "
    "+step +proj=helmert +x=15.8 +y=-154.4 +z=-82.3 +rx=0.52 +ry=-1.31 +rz=2.17 +s=3.5 "
    "+convention=coordinate_frame "
    "+step +inv +proj=cart +ellps=WGS84 +step +proj=unitconvert +xy_in=rad +xy_out=deg";
const QString kSeven = QStringLiteral("15.8,-154.4,-82.3,0.52,-1.31,2.17,3.5e-6");

QList<double> valuesOf(const QString& line)
{
    QList<double> values;
    for (const QString& piece : line.split(QRegularExpression(QStringLiteral("[ ,\\t]+")), Qt::SkipEmptyParts))
        values << piece.toDouble();
    return values;
}

} // namespace

class TestTransformCommand : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }
    void readsAnglesAndKeepsLineLayout_data();
    void readsAnglesAndKeepsLineLayout();
    void sevenParametersFileToFile();
    void reportsBadLinesAndGoesOn_data();
    void reportsBadLinesAndGoesOn();
    void storedModels();
    void systemsFromFilesAndZoneNumbers();
    void refusesBadInvocations_data();
    void refusesBadInvocations();
    void realProgram();
};

void TestTransformCommand::readsAnglesAndKeepsLineLayout_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<double>("lat");
    QTest::addColumn<double>("lon");
    QTest::addColumn<QString>("expectedLayout"); // the output with digits replaced by 9

    const double lat = 39 + 30 / 60.0 + 44.4444 / 3600.0;
    const double lon = 116 + 14 / 60.0 + 4.4444 / 3600.0;
    QTest::newRow("canonical text") << QByteArray("39°30′44.4444″ 116°14′4.4444″") << lat << lon
                                    << "9999999.999999 999999.999999";
    QTest::newRow("masks, tab, height") << QByteArray("39°30′44.444400″\t116°14′04.444400″\t12.5") << lat << lon
                                        << "9999999.999999\t999999.999999\t99.999999";
    QTest::newRow("colons, comma") << QByteArray("39:30:44.4444,116:14:04.4444") << lat << lon
                                   << "9999999.999999,999999.999999";
    QTest::newRow("comma and blanks, CRLF") << QByteArray("  39.5123456 ,  116.2345678 , -3\r") << 39.5123456
                                            << 116.2345678 << "9999999.999999,999999.999999,-9.999999";
    QTest::newRow("U+309C and quotes") << QByteArray("39゜30'44.4444\" 116゜14'04.4444\"") << lat << lon
                                       << "9999999.999999 999999.999999";
    QTest::newRow("minutes only, plus sign") << QByteArray("39:30.5 +116.25") << 39 + 30.5 / 60 << 116.25
                                             << "9999999.999999 999999.999999";
}

void TestTransformCommand::readsAnglesAndKeepsLineLayout()
{
    QFETCH(QByteArray, line);
    QFETCH(double, lat);
    QFETCH(double, lon);
    QFETCH(QString, expectedLayout);

    const CliRun run({"transform", "--from", "EPSG:4214", "--to", "EPSG:2436"}, "\n" + line + "\n\n");
    QCOMPARE(run.status, 0);
    QVERIFY2(run.err.isEmpty(), qPrintable(run.err));
    QCOMPARE(run.outLines().size(), 1);
    const QString out = run.outLines().first();
    QString layout = out;
    layout.replace(QRegularExpression(QStringLiteral("[0-9]")), QStringLiteral("9"));
    QCOMPARE(layout, expectedLayout);

    double x = lon, y = lat, z = 0;
    QVERIFY(projPipeline(kGeoToZone117, x, y, z));
    const QList<double> v = valuesOf(out);
    QVERIFY(std::fabs(v[0] - y) < 1e-6);
    QVERIFY(std::fabs(v[1] - x) < 1e-6);
}

void TestTransformCommand::sevenParametersFileToFile()
{
    const QString in = KivTest::scratchDir() + QStringLiteral("/in.txt");
    const QString out = KivTest::scratchDir() + QStringLiteral("/out.txt");
    struct Point { double n, e, h; };
    const QList<Point> points{{4376543.211, 432109.876, 85.4}, {3512345.5, 388000.25, 0}, {4012000, 611000.75, -12}};
    QByteArray text;
    for (const Point& p : points)
        text += QByteArray::number(p.n, 'f', 3) + ' ' + QByteArray::number(p.e, 'f', 3) + ' '
                + QByteArray::number(p.h, 'f', 3) + '\n';
    // A byte-order mark and no final line feed.
    QVERIFY(KivTest::writeFile(in, "\xEF\xBB\xBF" + text.left(text.size() - 1)));

    const CliRun run({"transform", "--from", "EPSG:2436", "--to", "EPSG:4326", "--params7", kSeven, in, out});
    QCOMPARE(run.status, 0);
    QVERIFY(run.out.isEmpty());
    const QStringList lines = QString::fromUtf8(KivTest::readFile(out)).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), points.size());
    for (int i = 0; i < points.size(); ++i) {
        double x = points[i].e, y = points[i].n, z = points[i].h;
        QVERIFY(projPipeline(kZone117ToWgs84, x, y, z));
        const QList<double> v = valuesOf(lines[i]);
        QCOMPARE(v.size(), 3);
        QVERIFY2(std::fabs(v[0] - y) < 1e-9, qPrintable(lines[i]));
        QVERIFY2(std::fabs(v[1] - x) < 1e-9, qPrintable(lines[i]));
        QVERIFY2(std::fabs(v[2] - z) < 1e-3, qPrintable(lines[i]));
        // Degrees get 9 decimals, heights 6.
        QVERIFY(QRegularExpression(QStringLiteral("^-?\\d+\\.\\d{9} -?\\d+\\.\\d{9} -?\\d+\\.\\d{6}$"))
                    .match(lines[i]).hasMatch());
    }

    const CliRun rounded({"transform", "--from", "EPSG:2436", "--to", "EPSG:4326", "--params7", kSeven,
                          "--precision", "3", in});
    QCOMPARE(rounded.status, 0);
    QVERIFY(QRegularExpression(QStringLiteral("^\\d+\\.\\d{3} \\d+\\.\\d{3} \\d+\\.\\d{3}$"))
                .match(rounded.outLines().first()).hasMatch());
}

void TestTransformCommand::reportsBadLinesAndGoesOn_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<int>("good");
    QTest::addColumn<QList<int>>("badLines");

    QTest::newRow("geographic source")
        << "EPSG:4214"
        << QByteArray("39.5 116.2\nabc 116\n39.6 116.3\n1 2 3 4\n39.5\n95 116\n39°3x′ 116\n39.7 116.4")
        << 3 << QList<int>{2, 4, 5, 6, 7};
    QTest::newRow("projected source takes no angles")
        << "EPSG:2436"
        << QByteArray("4376543.2 432109.9\n4376543.2 39°\n4376543.2,,432109.9,1e400\n\t\n4376543.2 nan\n"
                      "+4376543.2 .5e6\n4376543.2m 432109.9\n+-1 2\n")
        << 2 << QList<int>{2, 3, 5, 7, 8};
    QTest::newRow("only bad lines") << "EPSG:4214" << QByteArray("x y\n") << 0 << QList<int>{1};
}

void TestTransformCommand::reportsBadLinesAndGoesOn()
{
    QFETCH(QString, from);
    QFETCH(QByteArray, input);
    QFETCH(int, good);
    QFETCH(QList<int>, badLines);
    const QString to = from == QLatin1String("EPSG:4214") ? QStringLiteral("EPSG:2436") : QStringLiteral("EPSG:4214");
    const CliRun run({"transform", "--from", from, "--to", to}, input);
    QCOMPARE(run.status, 1);
    QCOMPARE(run.outLines().size(), good);
    const QStringList messages = run.err.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(messages.size(), badLines.size());
    for (int i = 0; i < badLines.size(); ++i)
        QVERIFY2(messages[i].contains(QStringLiteral("line %1: ").arg(badLines[i])), qPrintable(messages[i]));
}

void TestTransformCommand::storedModels()
{
    const QString name7 = QStringLiteral("北京54 → WGS84 \"test\"");
    QCOMPARE(ModelStore::Add(ModelStore::Params7, {name7, QStringLiteral("Beijing 1954"), QStringLiteral("WGS 84"),
                                                   {15.8, -154.4, -82.3, 0.52, -1.31, 2.17, 3.5e-6}}),
             ModelStore::Written);
    QCOMPARE(ModelStore::Add(ModelStore::Params4, {QStringLiteral("local grid"), QStringLiteral("a"),
                                                   QStringLiteral("b"), {-35.2, 120.7, 0.0125, 1.0000123}}),
             ModelStore::Written);
    const QByteArray input("4376543.211 432109.876 85.4\n3512345.5 388000.25\n");
    const QStringList common{"transform", "--from", "EPSG:2436", "--to", "EPSG:4326"};

    const CliRun byModel(common + QStringList{"--model", name7}, input);
    const CliRun byValues(common + QStringList{"--params7", kSeven}, input);
    QCOMPARE(byModel.status, 0);
    QCOMPARE(byModel.out, byValues.out);
    QCOMPARE(byModel.outLines().size(), 2);

    const QStringList zones{"transform", "--from", "EPSG:2436", "--to", "EPSG:2437"};
    const CliRun byModel4(zones + QStringList{"--model", "local grid"}, input);
    const CliRun byValues4(zones + QStringList{"--params4", "-35.2,120.7,0.0125,1.0000123"}, input);
    QCOMPARE(byModel4.status, 0);
    QCOMPARE(byModel4.out, byValues4.out);
    QVERIFY(byModel4.out != CliRun(zones, input).out);

    const CliRun unknown(common + QStringList{"--model", "Local grid"}, input);
    QCOMPARE(unknown.status, 2);
    QVERIFY(unknown.out.isEmpty());
    QVERIFY(unknown.err.contains(QStringLiteral("\"Local grid\"")));
    QVERIFY(unknown.err.contains(QStringLiteral("\"%1\"").arg(name7)));
    QVERIFY(unknown.err.contains(QStringLiteral("\"local grid\"")));
}

void TestTransformCommand::systemsFromFilesAndZoneNumbers()
{
    const auto zone = KivGeometry::SpatialReferenceFactory::CreateSpatialReference(QStringLiteral("EPSG:2436"));
    QVERIFY(zone);
    const QString prj = KivTest::scratchDir() + QStringLiteral("/zone 117.prj");
    QVERIFY(KivTest::writeFile(prj, zone->ExportToPrettyWkt().toUtf8()));

    const CliRun byCode({"transform", "--from", "EPSG:2436", "--to", "EPSG:4214"}, "4376543.211 432109.876\n");
    const CliRun byFile({"transform", "--from", prj, "--to", "EPSG:4214"}, "4376543.211 432109.876\n");
    const CliRun withZone({"transform", "--from", "EPSG:2436", "--to", "EPSG:4214", "--code"},
                          "4376543.211 39432109.876\n");
    QCOMPARE(byCode.status, 0);
    QCOMPARE(byFile.status, 0);
    QCOMPARE(withZone.status, 0);
    QCOMPARE(byFile.out, byCode.out);
    QCOMPARE(withZone.out, byCode.out);
}

void TestTransformCommand::refusesBadInvocations_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("mentions");

    const QString missingPrj = QStringLiteral("/nonexistent/folder/zone.prj");
    const QString missingInput = QStringLiteral("/nonexistent/folder/points.txt");
    QTest::newRow("unknown system") << QStringList{"transform", "--from", "EPSG:999999", "--to", "EPSG:4326"}
                                    << "\"EPSG:999999\"";
    QTest::newRow("unreadable .prj") << QStringList{"transform", "--from", "EPSG:4214", "--to", missingPrj}
                                     << QStringLiteral("\"%1\"").arg(missingPrj);
    QTest::newRow("unreadable input") << QStringList{"transform", "--from", "EPSG:4214", "--to", "EPSG:2436", missingInput}
                                      << QStringLiteral("\"%1\"").arg(missingInput);
    QTest::newRow("unwritable output")
        << QStringList{"transform", "--from", "EPSG:4214", "--to", "EPSG:2436", "-", "/nonexistent/folder/out.txt"}
        << "\"/nonexistent/folder/out.txt\"";
    QTest::newRow("six values for seven") << QStringList{"transform", "--from", "EPSG:2436", "--to", "EPSG:4326",
                                                         "--params7", "1,2,3,4,5,6"} << "--params7";
    QTest::newRow("not numbers for four") << QStringList{"transform", "--from", "EPSG:2436", "--to", "EPSG:2437",
                                                         "--params4", "1,2,x,4"} << "--params4";
    QTest::newRow("two models") << QStringList{"transform", "--from", "EPSG:2436", "--to", "EPSG:2437",
                                               "--params4", "1,2,3,4", "--model", "m"} << "only one";
    QTest::newRow("no target") << QStringList{"transform", "--from", "EPSG:2436"} << "--to";
    QTest::newRow("bad precision") << QStringList{"transform", "--from", "EPSG:2436", "--to", "EPSG:4214",
                                                  "--precision", "-1"} << "--precision";
    QTest::newRow("three files") << QStringList{"transform", "--from", "EPSG:2436", "--to", "EPSG:4214", "a", "b", "c"}
                                 << "\"c\"";
}

void TestTransformCommand::refusesBadInvocations()
{
    QFETCH(QStringList, args);
    QFETCH(QString, mentions);
    const CliRun run(args, "4376543.211 432109.876\n");
    QCOMPARE(run.status, 2);
    QVERIFY(run.out.isEmpty());
    QVERIFY2(run.err.contains(mentions), qPrintable(run.err));
}

void TestTransformCommand::realProgram()
{
    const QString program = QDir::cleanPath(QCoreApplication::applicationDirPath()
                                            + QStringLiteral("/../../../bin/coordstransform"));
    QVERIFY2(QFile::exists(program), qPrintable(program));
    QProcess process;
    process.start(program, {"transform", "--from", "EPSG:4214", "--to", "EPSG:2436"});
    QVERIFY(process.waitForStarted());
    process.write("39.5 116.2\nbad line\n39°30′0.000000″ 116°12′0.000000″\n");
    process.closeWriteChannel();
    QVERIFY(process.waitForFinished(30000));
    QCOMPARE(process.exitCode(), 1);
    const QList<QByteArray> lines = process.readAllStandardOutput().split('\n');
    QCOMPARE(lines.size(), 3); // two lines and the empty piece after the last line feed
    QCOMPARE(lines[0], lines[1]);
    QVERIFY(process.readAllStandardError().contains("line 2: "));

    process.start(program, {"nonsense"});
    QVERIFY(process.waitForFinished(30000));
    QCOMPARE(process.exitCode(), 2);
}

KIV_TEST_CLASS(TestTransformCommand)
#include "tst_TransformCommand.moc"
