// The streaming conversion of the command line against the dialog's way
// (whole-file reader, converter, writer): same result, same stop line and
// counts, same bytes, for any number of workers and any chunk size. Plus the
// quick number reading and writing against Qt's own, on the values where a
// shortcut could differ.

#include "spatialref/CoordinateConversion.h"
#include "textfiles/CoordsFileConverter.h"
#include "textfiles/CoordsFileReader.h"
#include "textfiles/CoordsFileStreamConverter.h"
#include "textfiles/CoordsFileWriter.h"
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

/// What a run gave: result, stop line, skipped, bad heights, and the bytes.
struct Outcome
{
    int result = 0;
    qint64 stopLine = 0, skipped = 0, badHeights = 0, failed = 0;
    QByteArray bytes;

    QString summary() const
    {
        return QStringLiteral("%1|stop %2|skipped %3|heights %4|failed %5")
            .arg(result)
            .arg(stopLine)
            .arg(skipped)
            .arg(badHeights)
            .arg(failed);
    }
};

} // namespace

class TestCoordsFileStreamConverter : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }

    void sameAsTheDialog_data();
    void sameAsTheDialog();
    void numbersAsQtReadsThem_data();
    void numbersAsQtReadsThem();
    void numbersAsQtWritesThem_data();
    void numbersAsQtWritesThem();
};

void TestCoordsFileStreamConverter::sameAsTheDialog_data()
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

void TestCoordsFileStreamConverter::sameAsTheDialog()
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

    // The dialog's way.
    Outcome dialog;
    {
        CoordsFileReader reader;
        dialog.result = reader.Read(in, record);
        dialog.stopLine = reader.StopLine();
        if (dialog.result == CoordsFileReader::Success) {
            dialog.skipped = reader.SkippedLines();
            dialog.badHeights = reader.BadHeights();
            CoordinateConversion conversion(source, target);
            std::vector<CoordsPoint> results;
            std::vector<int> rows;
            QVERIFY(CoordsFileConverter::Run(conversion, reader.Points(), &results, &rows));
            dialog.failed = qint64(reader.Points().size() - results.size());
            QVERIFY(CoordsFileWriter::Write(out, record, reader.HasTitle(), reader.TitleLine(), results));
            dialog.bytes = KivTest::readFile(out);
        }
    }
    QCOMPARE(dialog.result, result);

    std::vector<std::unique_ptr<CoordinateConversion>> owned;
    std::vector<const CoordinateConversion*> conversions;
    for (int threads : {1, 2, 3}) {
        while (int(owned.size()) < threads) {
            owned.emplace_back(new CoordinateConversion(source, target));
            conversions.push_back(owned.back().get());
        }
        for (int chunk : {1, 2, 3, 16384}) {
            CoordsFileStreamConverter stream;
            stream.SetChunkLines(chunk);
            QVERIFY(stream.Open(in));
            QBuffer buffer;
            buffer.open(QIODevice::WriteOnly);
            Outcome streamed;
            streamed.result = stream.Run(record, conversions, &buffer, out);
            streamed.stopLine = stream.StopLine();
            if (streamed.result == CoordsFileStreamConverter::Success) {
                streamed.skipped = stream.SkippedLines();
                streamed.badHeights = stream.BadHeights();
                streamed.failed = stream.FailedPoints();
                streamed.bytes = buffer.data();
            }
            const QByteArray where = QByteArray::number(threads) + " thread(s), chunks of " + QByteArray::number(chunk);
            QVERIFY2(streamed.summary() == dialog.summary(),
                     where + ": " + streamed.summary().toUtf8() + " against " + dialog.summary().toUtf8());
            QVERIFY2(streamed.bytes == dialog.bytes, where.constData());
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
