#include "support/ProjReference.h"
#include "support/TestData.h"
#include "support/TestRegistry.h"

#include "KivGeometry/CoordFuncLibrary.h"
#include "KivGeometry/CoordinateTransformation_7Param.h"

#include <QTest>

#include <array>
#include <limits>
#include <utility>

using KivGeometry::CoordFuncLibrary;
using KivGeometry::CoordinateTransformation_7Param;
using KivGeometry::Spheroid;

// Angle texts, and Gauss-Krüger and geocentric conversions against PROJ; the
// seven-parameter conversion is checked through the conversion route.
class TestCoordFuncLibrary : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }
    void angleTexts_data();
    void angleTexts();
    void gaussKrugerMatchesProjBothWays_data();
    void gaussKrugerMatchesProjBothWays();
    void geocentricMatchesProjAndRoundTrips_data();
    void geocentricMatchesProjAndRoundTrips();
    void badSetupsFailAndLeavePoints();
};

static double dms(double d, double m, double s)
{
    return d + m / 60.0 + s / 3600.0;
}

void TestCoordFuncLibrary::angleTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("degrees"); // NaN: refused
    QTest::addColumn<bool>("canonical"); // the text the value is written as
    const double v = dms(32, 15, 30.5), refused = std::numeric_limits<double>::quiet_NaN();
    QTest::newRow("zero") << "0°0′0.000000″" << 0.0 << true;
    QTest::newRow("tiny negative is unsigned zero") << "0°0′0.000000″" << -1e-12 << true;
    QTest::newRow("negative") << "-32°15′30.500000″" << -v << true;
    QTest::newRow("negative below one degree") << "-0°30′0.000000″" << -0.5 << true;
    QTest::newRow("carry into minutes") << "10°5′0.000000″" << dms(10, 4, 59.9999996) << true;
    QTest::newRow("carry into degrees") << "11°0′0.000000″" << dms(10, 59, 59.9999996) << true;
    QTest::newRow("carry negative") << "-30°0′0.000000″" << -dms(29, 59, 59.9999997) << true;
    QTest::newRow("half a micro-second rounds up") << "1°2′3.000001″" << dms(1, 2, 3.0000006) << true;
    QTest::newRow("not a number") << "" << refused << true;
    QTest::newRow("longitude mask") << "117°05′07.250000″" << dms(117, 5, 7.25) << false;
    QTest::newRow("mask partly typed") << "32°1 ′  .      ″" << dms(32, 1, 0) << false;
    QTest::newRow("mask seconds partly typed") << "32°15′3 .5     ″" << dms(32, 15, 3.5) << false;
    QTest::newRow("dd:mm:ss.s") << "32:15:30.5" << v << false;
    QTest::newRow("dd:mm.m mask") << "117:07.50000000" << dms(117, 7.5, 0) << false;
    QTest::newRow("decimal with blanks") << "  -117.25\t" << -117.25 << false;
    QTest::newRow("U+309C and quotes") << "32゜15'30.5\"" << v << false;
    QTest::newRow("minutes without sign") << "32°15" << 32.25 << false;
    QTest::newRow("plus sign") << "+32°15′30.5″" << v << false;
    QTest::newRow("untyped mask") << "°′.″" << refused << false;
    QTest::newRow("minutes 60") << "32°60′0″" << refused << false;
    QTest::newRow("seconds 60") << "32°15′60.000000″" << refused << false;
    QTest::newRow("exponent") << "1e5" << refused << false;
    QTest::newRow("comma decimal") << "3,5" << refused << false;
    QTest::newRow("fraction before minutes") << "32.5°15′" << refused << false;
    QTest::newRow("hemisphere letter") << "32°15′30″N" << refused << false;
    QTest::newRow("signs out of order") << "32′15°" << refused << false;
}

void TestCoordFuncLibrary::angleTexts()
{
    QFETCH(QString, text);
    QFETCH(double, degrees);
    QFETCH(bool, canonical);
    if (canonical)
        QCOMPARE(CoordFuncLibrary::ConvertDegToDegMinSec(degrees), text);
    bool ok = std::isnan(degrees);
    const double value = CoordFuncLibrary::ConvertDegMinSecToDeg(text, &ok);
    QCOMPARE(ok, !std::isnan(degrees));
    // Written texts read back to within half their last digit.
    const double tolerance = canonical ? 0.5e-6 / 3600.0 + 1e-15 : 1e-12;
    QVERIFY2(std::fabs(value - (ok ? degrees : 0.0)) <= tolerance, qPrintable(QString::number(value, 'g', 17)));
}

static const Spheroid kKrasovsky(QStringLiteral("Krasovsky_1940"), 6378245.0, 298.3);

void TestCoordFuncLibrary::gaussKrugerMatchesProjBothWays_data()
{
    QTest::addColumn<QString>("geographic");
    QTest::addColumn<QString>("projected"); // zoned systems carry the zone in their false easting
    QTest::addColumn<double>("centralMeridian");
    QTest::addColumn<int>("zone");
    QTest::addColumn<double>("lat");
    QTest::addColumn<double>("lon");
    QTest::newRow("Beijing 1954 CM 114E") << "EPSG:4214" << "EPSG:2435" << 114.0 << 0 << 30.5 << 114.8;
    QTest::newRow("Beijing 1954 zone 38") << "EPSG:4214" << "EPSG:2414" << 114.0 << 38 << 35.1 << 112.9;
    QTest::newRow("Beijing 1954 6-degree zone 20") << "EPSG:4214" << "EPSG:21420" << 117.0 << 20 << 40.0 << 119.5;
    QTest::newRow("CGCS2000 CM 102E") << "EPSG:4490" << "EPSG:4543" << 102.0 << 0 << 25.0 << 101.2;
    QTest::newRow("CGCS2000 zone 39") << "EPSG:4490" << "EPSG:4527" << 117.0 << 39 << 31.2 << 117.6;
}

void TestCoordFuncLibrary::gaussKrugerMatchesProjBothWays()
{
    QFETCH(QString, geographic);
    QFETCH(QString, projected);
    QFETCH(double, centralMeridian);
    QFETCH(int, zone);
    QFETCH(double, lat);
    QFETCH(double, lon);
    const Spheroid spheroid = geographic == QLatin1String("EPSG:4214")
                                  ? kKrasovsky
                                  : Spheroid(QStringLiteral("CGCS2000"), 6378137.0, 298.257222101);
    double east = lon, north = lat, z = 0;
    QVERIFY(KivTest::projTransform(geographic + " -> " + projected, east, north, z));

    double x = lat, y = lon;
    QVERIFY(CoordFuncLibrary::ConvertBLToXY(spheroid, centralMeridian, &x, &y, 1, zone));
    QVERIFY2(std::fabs(x - north) < 1e-3 && std::fabs(y - east) < 1e-3, qPrintable(QString::number(y - east)));

    // Back with the zone number in Y, and without it whatever the flag says.
    const double plain = east - zone * 1e6;
    QVERIFY(CoordFuncLibrary::ZoneNumberOf(east) == zone && CoordFuncLibrary::RemoveZoneNumber(east) == plain);
    for (const auto& in : {std::make_pair(east, zone > 0), std::make_pair(plain, false), std::make_pair(plain, true)}) {
        x = north;
        y = in.first;
        QVERIFY(CoordFuncLibrary::ConvertXYToBL(spheroid, centralMeridian, &x, &y, 1, in.second));
        QVERIFY2(std::fabs(x - lat) < 1e-9 && std::fabs(y - lon) < 1e-9, qPrintable(QString::number(y - lon)));
    }
}

void TestCoordFuncLibrary::geocentricMatchesProjAndRoundTrips_data()
{
    QTest::addColumn<double>("a");
    QTest::addColumn<double>("invf");
    QTest::addColumn<QString>("ellps");
    QTest::newRow("Krasovsky") << 6378245.0 << 298.3 << "+ellps=krass";
    QTest::newRow("CGCS2000") << 6378137.0 << 298.257222101 << "+a=6378137 +rf=298.257222101";
    QTest::newRow("sphere") << 6371000.0 << 0.0 << "+R=6371000";
}

void TestCoordFuncLibrary::geocentricMatchesProjAndRoundTrips()
{
    QFETCH(double, a);
    QFETCH(double, invf);
    QFETCH(QString, ellps);
    const Spheroid spheroid(QStringLiteral("test"), a, invf);
    const std::array<double, 5> lat{0.0, 30.5, -45.25, 89.9, 22.123456789}, lon{0.0, 114.8, -70.5, 179.9, 101.0},
        h{0.0, 52.3, -20.0, 4000.0, 1234.567};
    std::array<double, 5> b = lat, l = lon, z = h;
    QVERIFY(CoordFuncLibrary::ConvertBLHToXYZ(spheroid, b.data(), l.data(), z.data(), 5));
    const KivTest::ProjReference cart("+proj=cart " + ellps);
    for (int i = 0; i < 5; ++i) {
        double x = proj_torad(lon[i]), y = proj_torad(lat[i]), hz = h[i];
        QVERIFY(cart.transform(x, y, hz));
        QVERIFY2(std::fabs(b[i] - x) < 1e-4 && std::fabs(l[i] - y) < 1e-4 && std::fabs(z[i] - hz) < 1e-4,
                 qPrintable(QString::number(i)));
    }
    QVERIFY(CoordFuncLibrary::ConvertXYZToBLH(spheroid, b.data(), l.data(), z.data(), 5));
    for (int i = 0; i < 5; ++i)
        QVERIFY2(std::fabs(b[i] - lat[i]) < 1e-9 && std::fabs(l[i] - lon[i]) < 1e-9 && std::fabs(z[i] - h[i]) < 1e-3,
                 qPrintable(QString::number(i)));
}

void TestCoordFuncLibrary::badSetupsFailAndLeavePoints()
{
    double x[2] = {3400000.0, 3500000.0}, y[2] = {500000.0, 510000.0};
    QVERIFY(!CoordFuncLibrary::ConvertXYToBL(Spheroid(), 117.0, x, y, 2, false));
    QVERIFY(!CoordFuncLibrary::ConvertBLToXY(kKrasovsky, std::nan(""), x, y, 2));
    QVERIFY(x[0] == 3400000.0 && y[1] == 510000.0);

    CoordinateTransformation_7Param ct;
    double B2 = 7, L2 = 8, H2 = 9;
    QVERIFY(!ct.ConvertBLHToBLH(30, 114, 0, B2, L2, H2)); // nothing set
    ct.SetCT7Param(1, 2, 3, 0, 0, 0, 0);
    ct.SetSourceSpheroid(6378245.0, 0, 1.0 / 298.3);
    ct.SetTargetSpheroid(-1, 0, 0.5); // not an ellipsoid
    QVERIFY(!ct.ConvertBLHToBLH(30, 114, 0, B2, L2, H2));
    QVERIFY(B2 == 7.0 && H2 == 9.0);
    double b[2] = {30, 31}, l[2] = {114, 115}, h[2] = {1, 2};
    int success[2] = {1, 1};
    QVERIFY(!ct.ConvertBLHToBLH(2, b, l, h, success));
    QVERIFY(success[0] == 0 && b[1] == 31.0);
}

KIV_TEST_CLASS(TestCoordFuncLibrary)
#include "tst_CoordFuncLibrary.moc"
