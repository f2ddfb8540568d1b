#include "support/TestRegistry.h"
#include "textfiles/CoordsFileWriter.h"
#include "textfiles/CoordsLineFormatter.h"

#include <QTest>

class TestCoordsFileWriter : public QObject
{
    Q_OBJECT
private slots:
    void linesInFormatOrder_data();
    void linesInFormatOrder();
    void encodingFollowsTheFirstDot_data();
    void encodingFollowsTheFirstDot();
};

void TestCoordsFileWriter::linesInFormatOrder_data()
{
    QTest::addColumn<QString>("record");
    QTest::addColumn<QString>("expected");
    QTest::newRow("all kinds, others in order")
        << "f.xml other Longitude PointID altitude other Latitude NoTitle \";\""
        << QString::fromUtf8("北门;-0.000000;点甲;1234.567890;x;39.500000\no1;38500000.500000;B;0.000000;o2;3000000.123457\n");
    QTest::newRow("tab") << "f.xml PointID Latitude Longitude Title \"T\""
                         << QString::fromUtf8("点甲\t39.500000\t-0.000000\nB\t3000000.123457\t38500000.500000\n");
}

void TestCoordsFileWriter::linesInFormatOrder()
{
    QFETCH(QString, record);
    QFETCH(QString, expected);
    const CoordsPoint points[] = {{39.5, -0.0000004, 1234.56789049, QString::fromUtf8("点甲"), {QString::fromUtf8("北门"), "x"}},
                                  {3000000.1234565, 38500000.5, 0.0, "B", {"o1", "o2"}}};
    const CoordsLineFormatter formatter(record);
    QString text;
    for (const CoordsPoint& p : points)
        formatter.Append(text, p);
    QCOMPARE(text, expected);
}

void TestCoordsFileWriter::encodingFollowsTheFirstDot_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("gb18030");
    QTest::newRow("csv") << "/tmp/points.csv" << true;
    QTest::newRow("CSV in capitals") << "/tmp/POINTS.CSV" << true;
    QTest::newRow("dotted folder") << "/tmp/a.b/points.csv" << false;
    QTest::newRow("two suffixes") << "/tmp/points.csv.txt" << false;
    QTest::newRow("txt") << "/tmp/points.txt" << false;
}

void TestCoordsFileWriter::encodingFollowsTheFirstDot()
{
    QFETCH(QString, path);
    QFETCH(bool, gb18030);
    QCOMPARE(CoordsFileWriter::UsesGB18030(path), gb18030);
}

KIV_TEST_CLASS(TestCoordsFileWriter)
#include "tst_CoordsFileWriter.moc"
