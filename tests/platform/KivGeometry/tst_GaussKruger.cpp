#include "ProjReference.h"
#include "support/TestData.h"
#include "support/TestRegistry.h"

#include "KivGeometry/CoordFuncLibrary.h"

#include <QTest>

using KivGeometry::CoordFuncLibrary;
using KivGeometry::Spheroid;

// Plane coordinates checked against PROJ's answer for the catalogued system of
// the same zone (the zoned systems carry the zone number in their false
// easting, which checks the prefix rule as well).
class TestGaussKruger : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }
    void matchesProjBothWays_data();
    void matchesProjBothWays();
    void zoneNumbers_data();
    void zoneNumbers();
    void badSpheroidFailsAndLeavesPoints();
};

static Spheroid krasovsky() { return Spheroid(QStringLiteral("Krasovsky_1940"), 6378245.0, 298.3); }
static Spheroid cgcs2000() { return Spheroid(QStringLiteral("CGCS2000"), 6378137.0, 298.257222101); }

void TestGaussKruger::matchesProjBothWays_data()
{
    QTest::addColumn<QString>("geographic");
    QTest::addColumn<QString>("projected");
    QTest::addColumn<bool>("isKrasovsky");
    QTest::addColumn<double>("centralMeridian");
    QTest::addColumn<int>("zone");
    QTest::addColumn<double>("lat");
    QTest::addColumn<double>("lon");
    QTest::newRow("Beijing 1954 CM 114E") << "EPSG:4214" << "EPSG:2435" << true << 114.0 << 0 << 30.5 << 114.8;
    QTest::newRow("Beijing 1954 CM 117E west of CM") << "EPSG:4214" << "EPSG:2436" << true << 117.0 << 0 << 22.2 << 115.6;
    QTest::newRow("Beijing 1954 zone 38") << "EPSG:4214" << "EPSG:2414" << true << 114.0 << 38 << 35.1 << 112.9;
    QTest::newRow("Beijing 1954 6-degree zone 20") << "EPSG:4214" << "EPSG:21420" << true << 117.0 << 20 << 40.0 << 119.5;
    QTest::newRow("CGCS2000 CM 102E") << "EPSG:4490" << "EPSG:4543" << false << 102.0 << 0 << 25.0 << 101.2;
    QTest::newRow("CGCS2000 zone 39") << "EPSG:4490" << "EPSG:4527" << false << 117.0 << 39 << 31.2 << 117.6;
    QTest::newRow("CGCS2000 CM 120E far north") << "EPSG:4490" << "EPSG:4549" << false << 120.0 << 0 << 48.5 << 121.4;
}

void TestGaussKruger::matchesProjBothWays()
{
    QFETCH(QString, geographic);
    QFETCH(QString, projected);
    QFETCH(bool, isKrasovsky);
    QFETCH(double, centralMeridian);
    QFETCH(int, zone);
    QFETCH(double, lat);
    QFETCH(double, lon);
    const Spheroid spheroid = isKrasovsky ? krasovsky() : cgcs2000();

    ProjReference::Context c;
    ProjReference::Object op(c.ctx, ProjReference::operation(c.ctx, geographic.toStdString(), projected.toStdString()));
    QVERIFY(op);
    double east = lon, north = lat, z = 0;
    QVERIFY(op.trans(east, north, z));

    // Forward, zone number put in front when asked for.
    double b = lat, l = lon;
    QVERIFY(CoordFuncLibrary::ConvertBLToXY(spheroid, centralMeridian, &b, &l, 1, zone));
    QVERIFY2(std::fabs(b - north) < 1e-3, qPrintable(QString::number(b - north)));
    QVERIFY2(std::fabs(l - east) < 1e-3, qPrintable(QString::number(l - east)));

    // Inverse from PROJ's plane coordinates, with the zone number in Y.
    double x = north, y = east;
    QVERIFY(CoordFuncLibrary::ConvertXYToBL(spheroid, centralMeridian, &x, &y, 1, zone > 0));
    QVERIFY2(std::fabs(x - lat) < 1e-9, qPrintable(QString::number(x - lat)));
    QVERIFY2(std::fabs(y - lon) < 1e-9, qPrintable(QString::number(y - lon)));

    // The same without the zone number, removed by hand.
    x = north;
    y = east - zone * 1e6;
    QVERIFY(CoordFuncLibrary::ConvertXYToBL(spheroid, centralMeridian, &x, &y, 1, false));
    QVERIFY(std::fabs(x - lat) < 1e-9 && std::fabs(y - lon) < 1e-9);
    // A Y without zone number is left alone when the flag is set.
    x = north;
    y = east - zone * 1e6;
    QVERIFY(CoordFuncLibrary::ConvertXYToBL(spheroid, centralMeridian, &x, &y, 1, true));
    QVERIFY(std::fabs(x - lat) < 1e-9 && std::fabs(y - lon) < 1e-9);
}

void TestGaussKruger::zoneNumbers_data()
{
    QTest::addColumn<double>("y");
    QTest::addColumn<int>("zone");
    QTest::addColumn<double>("easting");
    QTest::newRow("3-degree zone 38") << 38500123.25 << 38 << 500123.25;
    QTest::newRow("6-degree zone 20") << 20276543.5 << 20 << 276543.5;
    QTest::newRow("zone 1") << 1000000.0 << 1 << 0.0;
    QTest::newRow("no zone") << 999999.999 << 0 << 999999.999;
    QTest::newRow("negative") << -12.0 << 0 << -12.0;
}

void TestGaussKruger::zoneNumbers()
{
    QFETCH(double, y);
    QFETCH(int, zone);
    QFETCH(double, easting);
    QCOMPARE(CoordFuncLibrary::ZoneNumberOf(y), zone);
    QCOMPARE(CoordFuncLibrary::RemoveZoneNumber(y), easting);
}

void TestGaussKruger::badSpheroidFailsAndLeavesPoints()
{
    double x[2] = {3400000.0, 3500000.0};
    double y[2] = {500000.0, 510000.0};
    QVERIFY(!CoordFuncLibrary::ConvertXYToBL(Spheroid(), 117.0, x, y, 2, false));
    QCOMPARE(x[0], 3400000.0);
    QCOMPARE(y[1], 510000.0);
    QVERIFY(!CoordFuncLibrary::ConvertBLToXY(krasovsky(), std::nan(""), x, y, 2));
    QCOMPARE(x[1], 3500000.0);
}

KIV_TEST_CLASS(TestGaussKruger)
#include "tst_GaussKruger.moc"
