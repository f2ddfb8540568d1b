// "coordstransform transform" and "convert": reading, writing and reporting
// bad lines, the converted numbers checked against PROJ computed here. That
// convert writes the file dialog's bytes is shown by the file dialog's tests.

#include "CliRun.h"

#include "models/ModelStore.h"
#include "textfiles/FileFormatDirectory.h"

#include "KivGeometry/SpatialReferenceFactory.h"

#include "support/RouteReference.h"
#include "support/TestData.h"
#include "support/TestRegistry.h"

#include <QFile>
#include <QRegularExpression>
#include <QTest>

#include <cmath>

namespace {

const QString kGeoToZone117 = RouteReference::pipeline({RouteReference::toRad(), RouteReference::tmerc(117)});
const QString kZone117ToWgs84 = RouteReference::pipeline(
    {RouteReference::inv(RouteReference::tmerc(117)), RouteReference::helmert(), RouteReference::toDeg()});
const QString kSeven = QStringLiteral("15.8,-154.4,-82.3,0.52,-1.31,2.17,3.5e-6");

QList<double> valuesOf(const QString& line)
{
    QList<double> values;
    for (const QString& piece : line.split(QRegularExpression(QStringLiteral("[ ,\\t]+")), Qt::SkipEmptyParts))
        values << piece.toDouble();
    return values;
}

QString scratch(const QString& name)
{
    return KivTest::scratchDir() + QLatin1Char('/') + name;
}

} // namespace

class TestPointCommands : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }
    void readsAnglesAndKeepsLineLayout_data();
    void readsAnglesAndKeepsLineLayout();
    void sevenParametersFileToFile();
    void reportsBadLinesAndGoesOn_data();
    void reportsBadLinesAndGoesOn();
    void storedModelsAndSystemFiles();
    void convertCountsSkippedLinesAndFailedPoints_data();
    void convertCountsSkippedLinesAndFailedPoints();
};

void TestPointCommands::readsAnglesAndKeepsLineLayout_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<double>("lat");
    QTest::addColumn<double>("lon");
    QTest::addColumn<QString>("expectedLayout"); // the output with digits replaced by 9

    const double lat = 39 + 30 / 60.0 + 44.4444 / 3600.0;
    const double lon = 116 + 14 / 60.0 + 4.4444 / 3600.0;
    QTest::newRow("masks, tab, height") << QByteArray("39°30′44.444400″\t116°14′04.444400″\t12.5") << lat << lon
                                        << "9999999.999999\t999999.999999\t99.999999";
    QTest::newRow("colons, comma") << QByteArray("39:30:44.4444,116:14:04.4444") << lat << lon
                                   << "9999999.999999,999999.999999";
    QTest::newRow("comma and blanks, CRLF") << QByteArray("  39.5123456 ,  116.2345678 , -3\r") << 39.5123456
                                            << 116.2345678 << "9999999.999999,999999.999999,-9.999999";
}

void TestPointCommands::readsAnglesAndKeepsLineLayout()
{
    QFETCH(QByteArray, line);
    QFETCH(double, lat);
    QFETCH(double, lon);
    QFETCH(QString, expectedLayout);

    // Blank lines are passed over.
    const CliRun run({"transform", "--from", "EPSG:4214", "--to", "EPSG:2436"}, "\n" + line + "\n\n");
    QVERIFY2(run.status == 0 && run.err.isEmpty() && run.outLines().size() == 1, qPrintable(run.err));
    const QString out = run.outLines().first();
    QCOMPARE(QString(out).replace(QRegularExpression(QStringLiteral("[0-9]")), QStringLiteral("9")), expectedLayout);
    double x = lon, y = lat, z = 0;
    QVERIFY(KivTest::projTransform(kGeoToZone117, x, y, z));
    const QList<double> v = valuesOf(out);
    QVERIFY2(std::fabs(v[0] - y) < 1e-6 && std::fabs(v[1] - x) < 1e-6, qPrintable(out));
}

void TestPointCommands::sevenParametersFileToFile()
{
    const QString in = scratch(QStringLiteral("in.txt")), out = scratch(QStringLiteral("out.txt"));
    const QStringList points{"4376543.211 432109.876 85.4", "3512345.5 388000.25 0", "4012000 611000.75 -12"};
    // A byte-order mark and no final line feed.
    QVERIFY(KivTest::writeFile(in, "\xEF\xBB\xBF" + points.join('\n').toUtf8()));
    const QStringList args{"transform", "--from", "EPSG:2436", "--to", "EPSG:4326", "--params7", kSeven, in};
    const CliRun run(args + QStringList{out});
    QVERIFY(run.status == 0 && run.out.isEmpty());
    const QStringList lines = QString::fromUtf8(KivTest::readFile(out)).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), points.size());
    for (int i = 0; i < points.size(); ++i) {
        const QList<double> p = valuesOf(points[i]), v = valuesOf(lines[i]);
        double x = p[1], y = p[0], z = p[2];
        QVERIFY(KivTest::projTransform(kZone117ToWgs84, x, y, z));
        QVERIFY2(v.size() == 3 && std::fabs(v[0] - y) < 1e-9 && std::fabs(v[1] - x) < 1e-9 && std::fabs(v[2] - z) < 1e-3,
                 qPrintable(lines[i]));
        // Degrees get 9 decimals, heights 6.
        QVERIFY(QRegularExpression(QStringLiteral("^-?\\d+\\.\\d{9} -?\\d+\\.\\d{9} -?\\d+\\.\\d{6}$")).match(lines[i]).hasMatch());
    }
    const CliRun rounded(args + QStringList{"--precision", "3"});
    QVERIFY(QRegularExpression(QStringLiteral("^\\d+\\.\\d{3} \\d+\\.\\d{3} \\d+\\.\\d{3}$")).match(rounded.outLines().value(0)).hasMatch());
}

void TestPointCommands::reportsBadLinesAndGoesOn_data()
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
}

void TestPointCommands::reportsBadLinesAndGoesOn()
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

void TestPointCommands::storedModelsAndSystemFiles()
{
    const QString name7 = QStringLiteral("北京54 → WGS84 \"test\"");
    QCOMPARE(ModelStore::Add(ModelStore::Params7, {name7, "Beijing 1954", "WGS 84", {15.8, -154.4, -82.3, 0.52, -1.31, 2.17, 3.5e-6}}),
             ModelStore::Written);
    QCOMPARE(ModelStore::Add(ModelStore::Params4, {"local grid", "a", "b", {-35.2, 120.7, 0.0125, 1.0000123}}), ModelStore::Written);
    const QByteArray input("4376543.211 432109.876 85.4\n3512345.5 388000.25\n");
    const QStringList toWgs{"transform", "--from", "EPSG:2436", "--to", "EPSG:4326"};
    const CliRun byModel(toWgs + QStringList{"--model", name7}, input);
    QVERIFY(byModel.status == 0 && byModel.outLines().size() == 2);
    QCOMPARE(byModel.out, CliRun(toWgs + QStringList{"--params7", kSeven}, input).out);

    const QStringList zones{"transform", "--from", "EPSG:2436", "--to", "EPSG:2437"};
    const CliRun byModel4(zones + QStringList{"--model", "local grid"}, input);
    QCOMPARE(byModel4.status, 0);
    QCOMPARE(byModel4.out, CliRun(zones + QStringList{"--params4", "-35.2,120.7,0.0125,1.0000123"}, input).out);
    QVERIFY(byModel4.out != CliRun(zones, input).out);

    // An unknown name is refused with the names there are.
    const CliRun unknown(toWgs + QStringList{"--model", "Local grid"}, input);
    QVERIFY(unknown.status == 2 && unknown.out.isEmpty());
    for (const QString& name : {QStringLiteral("Local grid"), name7, QStringLiteral("local grid")})
        QVERIFY2(unknown.err.contains('"' + name + '"'), qPrintable(unknown.err));

    // A system from a .prj file, and Y with its zone number under --code.
    const QString prj = scratch(QStringLiteral("zone 117.prj"));
    QVERIFY(KivTest::writeFile(prj, KivGeometry::SpatialReferenceFactory::CreateSpatialReference(QStringLiteral("EPSG:2436"))
                                        ->ExportToPrettyWkt().toUtf8()));
    const CliRun byCode({"transform", "--from", "EPSG:2436", "--to", "EPSG:4214"}, "4376543.211 432109.876\n");
    QVERIFY(byCode.status == 0 && byCode.outLines().size() == 1);
    QCOMPARE(CliRun({"transform", "--from", prj, "--to", "EPSG:4214"}, "4376543.211 432109.876\n").out, byCode.out);
    QCOMPARE(CliRun({"transform", "--from", "EPSG:2436", "--to", "EPSG:4214", "--code"}, "4376543.211 39432109.876\n").out,
             byCode.out);
}

void TestPointCommands::convertCountsSkippedLinesAndFailedPoints_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QStringList>("written");
    QTest::addColumn<QStringList>("messages");
    // A latitude beyond the pole cannot be converted.
    QTest::newRow("a line skipped") << QByteArray("A,39.9,116.4,1\nB,x,116.4,1\n") << QStringList{"A"}
                                    << QStringList{"1 line(s) skipped"};
    QTest::newRow("a point failed") << QByteArray("C,95,116.4,1\nD,40,117,1\n") << QStringList{"D"}
                                    << QStringList{"1 point(s) could not be converted", "\"C\""};
    QTest::newRow("both") << QByteArray("A,39.9,116.4,1\nB,x,116.4,1\nC,95,116.4,1\nD,40,117,1\n") << QStringList{"A", "D"}
                          << QStringList{"1 line(s) skipped", "1 point(s) could not be converted", "\"C\""};
    // "": a format given by its file, and every line converted.
    QTest::newRow("format file") << QByteArray("A,30,120,5\nB,31,121,6\n") << QStringList{"A", "B"} << QStringList{""};
}

void TestPointCommands::convertCountsSkippedLinesAndFailedPoints()
{
    QFETCH(QByteArray, content);
    QFETCH(QStringList, written);
    QFETCH(QStringList, messages);
    const QString in = scratch(QStringLiteral("mixed.txt")), out = scratch(QStringLiteral("mixed_out.txt"));
    KivTest::writeFile(in, content);
    const bool clean = messages == QStringList{""};
    const QString format = clean ? FileFormatDirectory::Path() + QStringLiteral("/General.xml") : QStringLiteral("General");
    const CliRun r({"convert", "--format", format, "--from", "EPSG:4214", "--to", "EPSG:2435", in, out});
    QCOMPARE(r.status, int(clean ? CliOk : CliDataErrors));
    for (const QString& message : messages)
        QVERIFY2(r.err.contains(message), qPrintable(r.err));
    QStringList ids;
    for (const QString& l : QString::fromUtf8(KivTest::readFile(out)).split('\n', Qt::SkipEmptyParts))
        ids << l.section(',', 0, 0);
    QCOMPARE(ids, written);
}

KIV_TEST_CLASS(TestPointCommands)
#include "tst_PointCommands.moc"
