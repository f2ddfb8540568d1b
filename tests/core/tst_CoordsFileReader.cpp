#include "support/TestData.h"
#include "support/TestRegistry.h"
#include "textfiles/CoordsFileReader.h"

#include <QTest>
#include <QTextCodec>

namespace {

const QString kFull = QStringLiteral("f.xml PointID Latitude Longitude altitude NoTitle \",\"");

QByteArray gbk(const QString& text)
{
    return QTextCodec::codecForName("GBK")->fromUnicode(text);
}

QString summary(const CoordsFileReader& r, int result)
{
    QStringList parts{QString::number(result), QString::number(r.Points().size()), QString::number(r.SkippedLines()),
                      QString::number(r.StopLine())};
    if (!r.Points().empty()) {
        const CoordsPoint& p = r.Points().front();
        parts << p.id << QStringLiteral("%1 %2 %3").arg(p.north).arg(p.east).arg(p.h) << p.others.join(QLatin1Char('/'));
    }
    return parts.join(QLatin1Char('|'));
}

} // namespace

class TestCoordsFileReader : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }

    void readsAsTheFormatSays_data();
    void readsAsTheFormatSays();
};

void TestCoordsFileReader::readsAsTheFormatSays_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("record");
    // result | points | skipped | stop line | first id | north east h | others
    QTest::addColumn<QString>("expected");

    const QString chinese = QString::fromUtf8("点1,39.5,116.25,50,北门,甲\n点2,39.6,116.3,51,南门,乙\n");
    const QString others = QStringLiteral("f.xml PointID Latitude Longitude altitude other other NoTitle \",\"");
    const QString first = QString::fromUtf8("0|2|0|0|点1|39.5 116.25 50|北门/甲");
    auto fmt = [](const char* fields) { return QStringLiteral("f.xml %1 NoTitle \",\"").arg(QLatin1String(fields)); };
    QTest::newRow("GBK names and other columns") << gbk(chinese) << others << first;
    QTest::newRow("UTF-8 names and other columns") << chinese.toUtf8() << others << first;
    QTest::newRow("UTF-8 with a byte order mark") << QByteArray("\xef\xbb\xbf") + chinese.toUtf8() << others << first;
    QTest::newRow("Chinese field names and title word")
        << QByteArray("id,lat,lon,h\nP,1,2,3\n") << QString::fromUtf8("f.xml 点号 纬度 经度 高度 有标题 \",\"")
        << "0|1|0|0|P|1 2 3|";
    QTest::newRow("columns in another order")
        << QByteArray("o1;P;100.5;20.25\n") << QStringLiteral("f.xml other PointID Longitude Latitude NoTitle \";\"")
        << "0|1|0|0|P|20.25 100.5 0|o1";
    QTest::newRow("tab written as T") << QByteArray("P\t1\t2\t3\n") << QString(kFull).replace(",\"", "T\"")
                                      << "0|1|0|0|P|1 2 3|";
    QTest::newRow("blanks written as S, runs of blanks") << QByteArray("P   1  2 3\n")
                                                         << QString(kFull).replace(",\"", "S\"") << "0|1|0|0|P|1 2 3|";
    QTest::newRow("CRLF line ends") << QByteArray("P,1,2,3\r\nQ,4,5,6\r\n") << kFull << "0|2|0|0|P|1 2 3|";
    QTest::newRow("no heights") << QByteArray("P,1,2\n") << fmt("PointID Latitude Longitude") << "0|1|0|0|P|1 2 0|";
    QTest::newRow("a height that is not a number reads 0") << QByteArray("P,1,2,x\n") << kFull << "0|1|0|0|P|1 2 0|";
    QTest::newRow("non-numeric coordinates are skipped")
        << QByteArray("A,north,2,3\nB,1,2,3\nC,1,nan,3\nD,1,east,3\n") << kFull << "0|1|3|0|B|1 2 3|";
    QTest::newRow("nothing numeric at all") << QByteArray("A,x,y,z\nB,u,v,w\n") << kFull << "1|0|2|0";
    QTest::newRow("a missing column stops everything") << QByteArray("A,1,2,3\nB,1,2\nC,1,2,3\n") << kFull << "1|0|0|2";
    QTest::newRow("an extra column stops everything") << QByteArray("A,1,2,3,4\n") << kFull << "1|0|0|1";
    QTest::newRow("a blank line stops everything") << QByteArray("A,1,2,3\n\nB,1,2,3\n") << kFull << "1|0|0|2";
    QTest::newRow("empty file") << QByteArray() << kFull << "1|0|0|0";
    QTest::newRow("empty format") << QByteArray("A,1,2,3\n") << QString() << "1|0|0|0";
    QTest::newRow("format lost its blank separator")
        << QByteArray("A 1 2 3\n") << QString(kFull).replace(",\"", " \"") << "1|0|0|1";
    QTest::newRow("format without a latitude") << QByteArray("A,1\n") << fmt("PointID Longitude") << "1|0|1|0";
    QByteArray binary;
    for (int i = 0; i < 70000; ++i)
        binary.append(char((i * 7919) % 256));
    QTest::newRow("binary file") << binary << kFull << "1|0|0|1";
    QTest::newRow("very long line") << QByteArray("A,1,2,3\n") + QByteArray(4 << 20, '7') + "\n" << kFull << "1|0|0|2";
}

void TestCoordsFileReader::readsAsTheFormatSays()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, record);
    QFETCH(QString, expected);
    const QString path = KivTest::scratchDir() + QStringLiteral("/in.txt");
    QVERIFY(KivTest::writeFile(path, content));
    CoordsFileReader reader;
    const int result = reader.Read(path, record);
    QCOMPARE(summary(reader, result), expected);
    QCOMPARE(KivTest::readFile(path), content);
}

KIV_TEST_CLASS(TestCoordsFileReader)
#include "tst_CoordsFileReader.moc"
