// What the tool says about data it cannot trust: a store it cannot read or
// whose numbers are not numbers, zone numbers of another zone, lines it skips,
// heights that are not numbers, and conversions that apply no datum shift.

#include "CliRun.h"

#include "models/ModelStore.h"
#include "support/TestData.h"
#include "support/TestRegistry.h"

#include <QFile>
#include <QTest>

class TestCliDiagnostics : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void messages_data();
    void messages();
};

namespace {

const char kGoodStore[] =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<root>\n<Params4/>\n<Params7>\n"
    "<GeoTransformsModel SrcSpaRef=\"a\" TransName=\"good\" DesSpaRef=\"b\" DX=\"-12.5\" DY=\"-130.3\" DZ=\"-80.1\" "
    "w=\"0.5\" k=\"-1.2\" r=\"2\" m=\"0.000004\"/>\n"
    "<GeoTransformsModel SrcSpaRef=\"a\" TransName=\"bad\" DesSpaRef=\"b\" DX=\"abc\" DY=\"0\" DZ=\"0\" "
    "w=\"0\" k=\"0\" r=\"0\" m=\"nan\"/>\n"
    "</Params7>\n</root>\n";

} // namespace

void TestCliDiagnostics::init()
{
    KivTest::resetData();
}

void TestCliDiagnostics::messages_data()
{
    QTest::addColumn<QByteArray>("store"); // "-": no store file at all
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QByteArray>("input"); // standard input, and the content of in.txt
    QTest::addColumn<int>("status");
    QTest::addColumn<QStringList>("err");  // each contained in the messages; none: no message
    QTest::addColumn<int>("errLines");     // lines of messages; -1: any
    const QString in = KivTest::scratchDir() + QStringLiteral("/in.txt");
    const QString out = KivTest::scratchDir() + QStringLiteral("/out.txt");
    const QByteArray good(kGoodStore), point("4376543.211 432109.876\n");
    const QStringList tr{"transform", "--from", "EPSG:2436", "--to", "EPSG:4326"};
    const QStringList cv{"convert", "--format", "General", "--from", "EPSG:4214", "--to", "EPSG:2436", in, out};

    QTest::newRow("models: no store") << QByteArray("-") << QStringList{"models"} << point << 1
                                      << QStringList{"cannot open", "coordtransform.xml"} << 1;
    QTest::newRow("models: not XML") << QByteArray("<root><Params7>") << QStringList{"models"} << point << 1
                                     << QStringList{"not well-formed XML at line 1"} << 1;
    QTest::newRow("models: numbers that are not numbers")
        << good << QStringList{"models"} << point << 1
        << QStringList{"model \"bad\": DX=\"abc\"", "model \"bad\": m=\"nan\""} << 2;
    QTest::newRow("transform: unusable model") << good << tr + QStringList{"--model", "bad"} << point << 2
                                               << QStringList{"DX=\"abc\"", "cannot be used"} << 1;
    QTest::newRow("transform: usable model beside it") << good << tr + QStringList{"--model", "good"} << point << 0
                                                       << QStringList{} << 0;
    QTest::newRow("transform: model from an unreadable store")
        << QByteArray("<root>") << tr + QStringList{"--model", "good"} << point << 2
        << QStringList{"model store cannot be read"} << 1;

    // EPSG:2436 is the 3-degree zone 39 (117E); zone 38 is 114E.
    const QStringList code{"transform", "--from", "EPSG:2436", "--to", "EPSG:4214", "--code"};
    QTest::newRow("--code: Y of another zone")
        << good << code << QByteArray("4376543.211 39432109.876\n4376543.211 38432109.876\n4376543.211 432109.876\n") << 1
        << QStringList{"line 2: zone number 38", "3-degree zone 39"} << 1;

    // PROJ has no datum transformation from Xian 1980 to WGS 84; one warning a run.
    QTest::newRow("ballpark only") << good << QStringList{"transform", "--from", "EPSG:4610", "--to", "EPSG:4326"}
                                   << QByteArray("30 117\n31 118\n") << 0
                                   << QStringList{"2 point(s) converted without any datum shift", "--model"} << 1;
    QTest::newRow("same datum, no warning") << good << QStringList{"transform", "--from", "EPSG:2436", "--to", "EPSG:4214"}
                                            << point << 0 << QStringList{} << 0;
    // Beijing 1954 to WGS 84: PROJ's transformations cover the Tarim basin
    // (40N 80E), not Beijing, where it falls back to a ballpark conversion.
    const QStringList bj54{"transform", "--from", "EPSG:4214", "--to", "EPSG:4326"};
    QTest::newRow("real datum transformation, no warning") << good << bj54 << QByteArray("40 80\n") << 0
                                                           << QStringList{} << 0;
    QTest::newRow("outside every transformation's area")
        << good << bj54 << QByteArray("40 80\n39.9 116.4 50\n41 81\n30 117\n") << 0
        << QStringList{"2 point(s) converted without any datum shift", "\"Beijing 1954\" to \"WGS 84\""} << 1;
    QTest::newRow("convert: outside every transformation's area")
        << good << QStringList{"convert", "--format", "General", "--from", "EPSG:4214", "--to", "EPSG:4326", in, out}
        << QByteArray("A,40,80,5\nB,39.9,116.4,50\n") << 0
        << QStringList{"1 point(s) converted without any datum shift"} << 1;
    QTest::newRow("transform: height not a number") << good << tr.mid(0, 3) + QStringList{"--to", "EPSG:4214"}
                                                    << QByteArray("4376543.211 432109.876 abc\n") << 1
                                                    << QStringList{"line 1: not a number: \"abc\""} << 1;

    QByteArray skipped("A,30,117,5\n");
    for (int i = 0; i < 25; ++i)
        skipped += "B,x,117,5\n";
    QTest::newRow("convert: skipped lines by number") << good << cv << skipped << 1
                                                      << QStringList{"25 line(s) skipped", "line 2, 3, 4,", ", 21 and 5 more"}
                                                      << 1;
    QTest::newRow("convert: heights that are not numbers")
        << good << cv << QByteArray("A,30,117,5\nB,30,117,abc\nC,30,117,6\n") << 1
        << QStringList{"1 height(s) are not numbers", "line 2"} << 1;
    QTest::newRow("convert: --code with another zone")
        << good << QStringList{"convert", "--format", "General", "--from", "EPSG:2436", "--to", "EPSG:4214", "--code", in, out}
        << QByteArray("K1,4376543.211,39432109.876,1\nK2,4376543.211,38432109.876,1\n") << 1
        << QStringList{"1 point(s) carry a zone number", "point \"K2\""} << 1;
}

void TestCliDiagnostics::messages()
{
    QFETCH(QByteArray, store);
    QFETCH(QStringList, args);
    QFETCH(QByteArray, input);
    QFETCH(int, status);
    QFETCH(QStringList, err);
    QFETCH(int, errLines);
    if (store == "-")
        QVERIFY(QFile::remove(ModelStore::ReaderPath()));
    else
        QVERIFY(KivTest::writeFile(ModelStore::ReaderPath(), store));
    QVERIFY(KivTest::writeFile(KivTest::scratchDir() + QStringLiteral("/in.txt"), input));

    const CliRun run(args, input);
    QVERIFY2(run.status == status, qPrintable(run.err));
    for (const QString& message : err)
        QVERIFY2(run.err.contains(message), qPrintable(run.err));
    if (errLines >= 0)
        QVERIFY2(run.err.count(QLatin1Char('\n')) == errLines, qPrintable(run.err));
    // Diagnostics never change what is written: the store stays as it was.
    if (store != "-")
        QCOMPARE(KivTest::readFile(ModelStore::ReaderPath()), store);
}

KIV_TEST_CLASS(TestCliDiagnostics)
#include "tst_CliDiagnostics.moc"
