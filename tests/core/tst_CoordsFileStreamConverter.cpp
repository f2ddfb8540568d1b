// Reading a coordinate file as its format says; the streaming conversion
// gives the same result, stop line, counts, kept points and bytes for any
// number of workers and any chunk size. Plus the quick number reading and
// writing against Qt's own, on the values where a shortcut could differ.

#include "spatialref/CoordinateConversion.h"
#include "textfiles/CoordsFileStreamConverter.h"
#include "textfiles/CoordsLineFormatter.h"
#include "textfiles/CoordsLineParser.h"

#include "KivGeometry/SpatialReferenceFactory.h"

#include "support/TestData.h"
#include "support/TestRegistry.h"

#include <QBuffer>
#include <QTest>
#include <QTextCodec>

#include <cmath>
#include <cstring>
#include <memory>

namespace {

const QString kGeneral = QStringLiteral("General.xml PointID Latitude Longitude altitude NoTitle \",\"");
const QString kTitled = QStringLiteral("t.xml PointID other Latitude Longitude altitude other Title \",\"");

QByteArray gbk(const QString& text)
{
    return QTextCodec::codecForName("GBK")->fromUnicode(text);
}

/// What a run gave: result, stop line, counts, the kept points; then the bytes.
QString summary(const CoordsFileStreamConverter& s, int result)
{
    // A stopped run's counts depend on how far the chunks before the stop got.
    if (result != 0)
        return QStringLiteral("%1|stop %2").arg(result).arg(s.StopLine());
    QStringList parts{QString::number(result), QString::number(s.PointsRead()), QString::number(s.SkippedLines()),
                      QString::number(s.BadHeights()), QString::number(s.FailedPoints())};
    for (size_t i = 0; i < s.KeptPoints().Size(); ++i) {
        const CoordsPoint p = s.KeptPoints().At(i);
        parts << p.id + QStringLiteral(" %1 %2 %3 ").arg(p.north, 0, 'g', 12).arg(p.east, 0, 'g', 12).arg(p.h)
                     + p.others.join(QLatin1Char('/')) + (s.KeptPoints().Converted(i) ? "" : "!");
    }
    return parts.join(QLatin1Char('|'));
}

} // namespace

class TestCoordsFileStreamConverter : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }

    void readsAsTheFormatSays_data();
    void readsAsTheFormatSays();
    void sameForAnyChunking_data();
    void sameForAnyChunking();
    void numbersAsQtReadsThem_data();
    void numbersAsQtReadsThem();
    void numbersAsQtWritesThem_data();
    void numbersAsQtWritesThem();
};

void TestCoordsFileStreamConverter::readsAsTheFormatSays_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("record");
    // result | points | skipped | bad heights | failed | first point: id north east h others; or result | stop line
    QTest::addColumn<QString>("expected");

    const QString kFull = QStringLiteral("f.xml PointID Latitude Longitude altitude NoTitle \",\"");
    const QString chinese = QString::fromUtf8("点1,39.5,116.25,50,北门,甲\n");
    const QString others = QStringLiteral("f.xml PointID Latitude Longitude altitude other other NoTitle \",\"");
    const QString first = QString::fromUtf8("0|1|0|0|0|点1 39.5 116.25 50 北门/甲");
    auto fmt = [](const char* fields) { return QStringLiteral("f.xml %1 NoTitle \",\"").arg(QLatin1String(fields)); };
    QTest::newRow("GBK names and other columns") << gbk(chinese) << others << first;
    QTest::newRow("UTF-8 names and other columns") << chinese.toUtf8() << others << first;
    QTest::newRow("Chinese field names and title word")
        << QByteArray("id,lat,lon,h\nP,1,2,3\n") << QString::fromUtf8("f.xml 点号 纬度 经度 高度 有标题 \",\"")
        << "0|1|0|0|0|P 1 2 3 ";
    QTest::newRow("columns in another order")
        << QByteArray("o1;P;100.5;20.25\n") << QStringLiteral("f.xml other PointID Longitude Latitude NoTitle \";\"")
        << "0|1|0|0|0|P 20.25 100.5 0 o1";
    QTest::newRow("tab written as T") << QByteArray("P\t1\t2\t3\n") << QString(kFull).replace(",\"", "T\"")
                                      << "0|1|0|0|0|P 1 2 3 ";
    QTest::newRow("blanks written as S, runs of blanks")
        << QByteArray("P   1  2 3\n") << QString(kFull).replace(",\"", "S\"") << "0|1|0|0|0|P 1 2 3 ";
    QTest::newRow("no heights") << QByteArray("P,1,2\n") << fmt("PointID Latitude Longitude") << "0|1|0|0|0|P 1 2 0 ";
    QTest::newRow("a height that is not a number reads 0") << QByteArray("P,1,2,x\n") << kFull << "0|1|0|1|0|P 1 2 0 ";
    QTest::newRow("non-numeric coordinates are skipped")
        << QByteArray("A,north,2,3\nB,1,2,3\nC,1,nan,3\nD,1,east,3\n") << kFull << "0|1|3|0|0|B 1 2 3 ";
    QTest::newRow("an extra column stops everything") << QByteArray("A,1,2,3,4\n") << kFull << "1|stop 1";
    QTest::newRow("format lost its blank separator")
        << QByteArray("A 1 2 3\n") << QString(kFull).replace(",\"", " \"") << "1|stop 1";
    QTest::newRow("format without a latitude") << QByteArray("A,1\n") << fmt("PointID Longitude") << "1|stop 0";
}

void TestCoordsFileStreamConverter::readsAsTheFormatSays()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, record);
    QFETCH(QString, expected);
    const QString path = KivTest::scratchDir() + QStringLiteral("/in.txt");
    QVERIFY(KivTest::writeFile(path, content));
    CoordsFileStreamConverter stream;
    stream.SetKeptPoints(1);
    QVERIFY(stream.Open(path));
    QCOMPARE(summary(stream, stream.Run(record, {nullptr}, nullptr, QString())), expected);
}

void TestCoordsFileStreamConverter::sameForAnyChunking_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("record");
    QTest::addColumn<QString>("output"); // decides the encoding
    QTest::addColumn<int>("result");

    // Beijing 1954 to its 3-degree zone at 114E: a latitude beyond the pole fails.
    QByteArray mixed;
    for (int i = 0; i < 40; ++i) {
        mixed += QStringLiteral("P%1,%2,%3,%4\n").arg(i).arg(30 + i * 0.01, 0, 'f', 6).arg(114.5).arg(i).toLatin1();
        if (i % 7 == 3)
            mixed += "S" + QByteArray::number(i) + ",x,114,1\n";   // skipped
        if (i % 11 == 5)
            mixed += "F" + QByteArray::number(i) + ",95,114,1\n";  // fails
        if (i % 13 == 6)
            mixed += "H" + QByteArray::number(i) + ",31,114,abc\n"; // bad height
    }
    const QString chinese = QString::fromUtf8("标题 行\n点1,北门,39.5,114.25,50,甲\n点2,南门,x,114.3,51,乙\n点3,东门,39.7,114.35,52,丙");
    QTest::newRow("skipped, failed, bad heights") << mixed << kGeneral << "out.txt" << 0;
    QTest::newRow("the same as GB18030") << mixed << kGeneral << "out.csv" << 0;
    QTest::newRow("GBK title and other columns, no last line feed") << gbk(chinese) << kTitled << "out.txt" << 0;
    QTest::newRow("GBK title and other columns to GB18030") << gbk(chinese) << kTitled << "o.csv" << 0;
    QTest::newRow("UTF-8 title and other columns") << chinese.toUtf8() << kTitled << "out.txt" << 0;
    QTest::newRow("UTF-8 with a byte order mark")
        << QByteArray("\xef\xbb\xbf") + chinese.toUtf8() << kTitled << "out.txt" << 0;
    QTest::newRow("ASCII first, GBK far below")
        << mixed + mixed + gbk(QString::fromUtf8("点9,39.5,114.25,50\n")) << kGeneral << "out.txt" << 0;
    QTest::newRow("CRLF line ends") << QByteArray(mixed).replace("\n", "\r\n") << kGeneral << "out.txt" << 0;
    QTest::newRow("a missing column near the end") << mixed + "Z,1,2\n" + mixed << kGeneral << "out.txt" << 1;
    QTest::newRow("a blank line near the end") << mixed + "\n" + "A,30,114,1\n" << kGeneral << "out.txt" << 1;
    QTest::newRow("nothing numeric at all") << QByteArray("A,x,y,z\nB,u,v,w\n") << kGeneral << "out.txt" << 1;
    QTest::newRow("only a title") << QByteArray("title only") << kTitled << "out.txt" << 1;
    QTest::newRow("empty file") << QByteArray() << kGeneral << "out.txt" << 1;
    QTest::newRow("empty format") << mixed << QString() << "out.txt" << 1;
    QByteArray binary;
    for (int i = 0; i < 70000; ++i)
        binary.append(char((i * 7919) % 256));
    QTest::newRow("binary file") << binary << kGeneral << "out.txt" << 1;
    QTest::newRow("a line longer than a read block")
        << mixed + "A,1,2," + QByteArray(3 << 20, '7') + "\n" << kGeneral << "out.txt" << 0;
}

void TestCoordsFileStreamConverter::sameForAnyChunking()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, record);
    QFETCH(QString, output);
    QFETCH(int, result);
    const QString in = KivTest::scratchDir() + QStringLiteral("/in.txt");
    const QString out = KivTest::scratchDir() + QLatin1Char('/') + output;
    QVERIFY(KivTest::writeFile(in, content));
    const auto source = KivGeometry::SpatialReferenceFactory::CreateSpatialReference(QStringLiteral("EPSG:4214"));
    const auto target = KivGeometry::SpatialReferenceFactory::CreateSpatialReference(QStringLiteral("EPSG:2435"));

    std::vector<std::unique_ptr<CoordinateConversion>> owned;
    std::vector<const CoordinateConversion*> conversions;
    QString reference;
    for (int threads : {1, 2, 3}) {
        while (int(owned.size()) < threads) {
            owned.emplace_back(new CoordinateConversion(source, target));
            conversions.push_back(owned.back().get());
        }
        for (int chunk : {16384, 1, 2, 3}) {
            CoordsFileStreamConverter stream;
            stream.SetChunkLines(chunk);
            stream.SetKeptPoints(10);
            QVERIFY(stream.Open(in));
            QBuffer buffer;
            buffer.open(QIODevice::WriteOnly);
            const int got = stream.Run(record, conversions, &buffer, out);
            const QString streamed = summary(stream, got) + (got == 0 ? QString::fromLatin1(buffer.data().toHex()) : "");
            if (reference.isEmpty()) {
                QCOMPARE(got, result);
                reference = streamed;
            }
            const QByteArray where = QByteArray::number(threads) + " thread(s), chunks of " + QByteArray::number(chunk);
            QVERIFY2(streamed == reference, where.constData());
            QCOMPARE(QTextCodec::codecForLocale()->name(), QByteArray("UTF-8"));
        }
    }
    QCOMPARE(KivTest::readFile(in), content);
}

void TestCoordsFileStreamConverter::numbersAsQtReadsThem_data()
{
    QTest::addColumn<QString>("text");
    for (const char* t : {"39.904211", "-116.407394", "4376543.211", "0", "0.0", "-0.0", "00.5", "007", "5.", ".5",
                          "+1.5", "1e5", "1E-3", " 1.5", "1.5 ", "1,5", "0x10", "inf", "nan", "-", "",
                          "123456789012345678901234", "1234567890.12345678901234", "0.1000000000000000055511151231257827",
                          "9007199254740993", "2.2250738585072011e-308", "1.7976931348623157e308", "1e400"})
        QTest::newRow(t) << QString::fromLatin1(t);
}

void TestCoordsFileStreamConverter::numbersAsQtReadsThem()
{
    QFETCH(QString, text);
    bool okQt = false, ok = false;
    const double qt = QStringRef(&text).toDouble(&okQt);
    const double ours = CoordsLineParser::ToDouble(QStringRef(&text), &ok);
    QCOMPARE(ok, okQt);
    if (okQt)
        QVERIFY2(std::memcmp(&qt, &ours, sizeof qt) == 0 || (std::isnan(qt) && std::isnan(ours)), qPrintable(text));
}

void TestCoordsFileStreamConverter::numbersAsQtWritesThem_data()
{
    QTest::addColumn<double>("value");
    // Exact halves at the 7th decimal (odd multiples of 1/128), values that
    // print as zero, huge values and ordinary coordinates.
    for (double v : {0.0078125, -0.0078125, 1.0078125, 39.9921875, 116.0390625, 0.5, 2.25, 0.0, -0.0, 4e-7, -4e-7,
                     5e-7, -5e-7, 1e-6, -1e-6, 39.904211, -116.407394, 4376543.2115, 1e15, -1e15, 123456789012345.6,
                     1e20, 1e300, 0.1, 2.675e-3})
        QTest::newRow(qPrintable(QString::number(v, 'g', 17))) << v;
}

void TestCoordsFileStreamConverter::numbersAsQtWritesThem()
{
    QFETCH(double, value);
    QString ours;
    CoordsLineFormatter::AppendFixed6(ours, value);
    QCOMPARE(ours, QString::number(value, 'f', 6));
}

KIV_TEST_CLASS(TestCoordsFileStreamConverter)
#include "tst_CoordsFileStreamConverter.moc"
