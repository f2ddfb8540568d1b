#include "support/TestData.h"
#include "support/TestRegistry.h"
#include "textfiles/CoordsFileWriter.h"

#include <QDir>
#include <QTest>
#include <QTextCodec>

namespace {

std::vector<CoordsPoint> samplePoints()
{
    return {{39.5, -0.0000004, 1234.56789049, QString::fromUtf8("点甲"), {QString::fromUtf8("北门"), "x"}},
            {3000000.1234565, 38500000.5, 0.0, "B", {"o1", "o2"}}};
}

// The encoding rule looks at the first dot of the whole path, so the files
// go below a folder whose path has none.
QString dotlessDir()
{
    const QString dir = QDir::tempPath() + QStringLiteral("/kivtest_writer_%1").arg(QCoreApplication::applicationPid());
    QDir().mkpath(dir + QStringLiteral("/a.b"));
    return dir;
}

} // namespace

class TestCoordsFileWriter : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }
    void cleanup()
    {
        QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
        QDir(dotlessDir()).removeRecursively();
    }

    void writesFieldsInFormatOrder_data();
    void writesFieldsInFormatOrder();
};

void TestCoordsFileWriter::writesFieldsInFormatOrder_data()
{
    QTest::addColumn<QString>("record");
    QTest::addColumn<bool>("title");
    QTest::addColumn<QString>("relative");  // below a folder without dots
    QTest::addColumn<QByteArray>("codec");
    QTest::addColumn<QString>("expected");
    const QString plain = QStringLiteral("f.xml PointID Latitude Longitude NoTitle \",\"");
    const QString plainText = QString::fromUtf8("点甲,39.500000,-0.000000\nB,3000000.123457,38500000.500000\n");
    QTest::newRow("all kinds, others in order")
        << "f.xml other Longitude PointID altitude other Latitude NoTitle \";\"" << false << "out.txt"
        << QByteArray("UTF-8")
        << QString::fromUtf8("北门;-0.000000;点甲;1234.567890;x;39.500000\n"
                             "o1;38500000.500000;B;0.000000;o2;3000000.123457\n");
    QTest::newRow("title line first, tab") << "f.xml PointID Latitude Longitude Title \"T\"" << true << "out.txt"
                                           << QByteArray("UTF-8")
                                           << QString::fromUtf8("the title\n点甲\t39.500000\t-0.000000\n"
                                                                "B\t3000000.123457\t38500000.500000\n");
    QTest::newRow("csv") << plain << false << "points.csv" << QByteArray("GB18030") << plainText;
    QTest::newRow("CSV in capitals") << plain << false << "POINTS.CSV" << QByteArray("GB18030") << plainText;
    QTest::newRow("dotted folder") << plain << false << "a.b/points.csv" << QByteArray("UTF-8") << plainText;
    QTest::newRow("two suffixes") << plain << false << "points.csv.txt" << QByteArray("UTF-8") << plainText;
}

void TestCoordsFileWriter::writesFieldsInFormatOrder()
{
    QFETCH(QString, record);
    QFETCH(bool, title);
    QFETCH(QString, relative);
    QFETCH(QByteArray, codec);
    QFETCH(QString, expected);
    QVERIFY(!dotlessDir().contains(QLatin1Char('.')));
    const QString path = dotlessDir() + QLatin1Char('/') + relative;
    QVERIFY(CoordsFileWriter::Write(path, record, title, QStringLiteral("the title"), samplePoints()));
    QCOMPARE(KivTest::readFile(path), QTextCodec::codecForName(codec)->fromUnicode(expected));
    QCOMPARE(QTextCodec::codecForLocale()->name(), QByteArray("UTF-8"));
}

KIV_TEST_CLASS(TestCoordsFileWriter)
#include "tst_CoordsFileWriter.moc"
