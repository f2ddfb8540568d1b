// "coordstransform crs": what a script reads about a system, from every kind
// of input, and the refusals.

#include "CliRun.h"

#include "support/DatasetFixtures.h"
#include "support/TestData.h"
#include "support/TestRegistry.h"

#include "KivGeometry/SpatialReferenceFactory.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

namespace {

QString esriOf(const char* code)
{
    auto system = KivGeometry::SpatialReferenceFactory::CreateSpatialReference(code);
    system->MorphToESRI();
    return system->ExportToWkt();
}

} // namespace

class TestCrsCommand : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }
    void inputs_data();
    void inputs();
    void refusals_data();
    void refusals();
};

void TestCrsCommand::inputs_data()
{
    QTest::addColumn<QString>("input");    // "file:NAME=CONTENT", "tif:NAME=CODE" or the argument itself
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("expected"); // the whole output

    const QString gk = esriOf("EPSG:2415");
    QTest::newRow("code, name") << "EPSG:2415" << "name" << "Beijing 1954 / 3-degree Gauss-Kruger zone 39\n";
    QTest::newRow("code, esri") << "EPSG:2415" << "esri" << gk + "\n";
    QTest::newRow("prj file, kind") << "file:zone39.prj=" + gk << "kind" << "projected\n";
    QTest::newRow("wkt file, name") << "file:xian.wkt=" + esriOf("EPSG:4610") << "name" << "Xian 1980\n";
    QTest::newRow("WKT text, kind") << esriOf("EPSG:4490") << "kind" << "geographic\n";
    QTest::newRow("GeoTIFF, code") << "tif:zone39.tif=EPSG:2415" << "code" << "EPSG:2415\n";
    // A composed system keeps its own name and converts as its registry equal.
    QTest::newRow("composed text, proj")
        << "PROJCS[\"GK 117\",GEOGCS[\"GCS_Beijing_1954\",DATUM[\"D_Beijing_1954\",SPHEROID[\"Krasovsky_1940\","
           "6378245.0,298.3]],PRIMEM[\"Greenwich\",0.0,0,0],UNIT[\"Degree\",0.0174532925199433]],PROJECTION["
           "\"Gauss_Kruger\"],PARAMETER[\"Central_Meridian\",117],PARAMETER[\"False_Easting\",39500000],"
           "PARAMETER[\"False_Northing\",0.0],PARAMETER[\"Latitude_Of_Origin\",0.0],PARAMETER[\"Scale_Factor\",1.0],"
           "UNIT[\"Meter\",1.0]]"
        << "proj"
        << KivGeometry::SpatialReferenceFactory::CreateSpatialReference("EPSG:2415")->ExportToProj4() + "\n";
}

void TestCrsCommand::inputs()
{
    QFETCH(QString, input);
    QFETCH(QString, field);
    QFETCH(QString, expected);
    QTemporaryDir dir;
    QString argument = input;
    if (input.startsWith("file:") || input.startsWith("tif:")) {
        const QString file = input.section(':', 1);
        argument = dir.filePath(file.section('=', 0, 0));
        const QString content = file.section('=', 1);
        if (input.startsWith("file:"))
            QVERIFY(KivTest::writeFile(argument, content.toUtf8()));
        else
            QVERIFY(DatasetFixtures::writeRaster(argument, content, 2));
    }
    const CliRun run({"crs", argument, "--field", field});
    QCOMPARE(run.err, QString());
    QCOMPARE(run.status, int(CliOk));
    QCOMPARE(run.out, expected);

    // The full listing holds every field, the pretty WKT over several lines.
    const CliRun all({"crs", argument});
    QCOMPARE(all.status, int(CliOk));
    QVERIFY(all.out.contains(field == "pretty" || field == "esri" ? field + ":\n" + expected : field + ": " + expected));
    QVERIFY(all.out.contains(QRegularExpression("\npretty:\n(PROJCS|GEOGCS)\\[[^\n]*\n    [A-Z]")));
    QVERIFY(all.out.contains(QRegularExpression("\nesri:\n(PROJCS|GEOGCS)\\[[^\n]*\\]\n$")));

    const CliRun json({"crs", argument, "--json"});
    QCOMPARE(json.status, int(CliOk));
    const QJsonObject object = QJsonDocument::fromJson(json.out.toUtf8()).object();
    QCOMPARE(object.size(), 7);
    QCOMPARE(object.value(field).toString() + "\n", expected);
}

void TestCrsCommand::refusals_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("err");
    QTest::newRow("no input") << QStringList{"crs"} << "INPUT is missing";
    QTest::newRow("two inputs") << QStringList{"crs", "EPSG:4326", "EPSG:4214"} << "only one INPUT";
    QTest::newRow("unknown code") << QStringList{"crs", "EPSG:999999"} << "unknown coordinate system";
    QTest::newRow("bad field") << QStringList{"crs", "EPSG:4326", "--field", "colour"} << "--field takes";
    QTest::newRow("missing prj") << QStringList{"crs", "nowhere/none.prj"} << "cannot read";
    QTest::newRow("dataset without system") << QStringList{"crs", "tif:plain.tif"} << "has no coordinate system";
    QTest::newRow("text file without system") << QStringList{"crs", "file:notes.txt"} << "does not hold";
}

void TestCrsCommand::refusals()
{
    QFETCH(QStringList, args);
    QFETCH(QString, err);
    QTemporaryDir dir;
    for (QString& a : args) {
        if (a.startsWith("tif:")) {
            a = dir.filePath(a.mid(4));
            QVERIFY(DatasetFixtures::writeRaster(a, QString(), 2));
        } else if (a.startsWith("file:")) {
            a = dir.filePath(a.mid(5));
            QVERIFY(KivTest::writeFile(a, "just words\n"));
        }
    }
    const CliRun run(args);
    QCOMPARE(run.status, int(CliUsageError));
    QVERIFY2(run.err.contains(err), qPrintable(run.err));
    QVERIFY(run.out.isEmpty());
}

KIV_TEST_CLASS(TestCrsCommand)
#include "tst_CrsCommand.moc"
