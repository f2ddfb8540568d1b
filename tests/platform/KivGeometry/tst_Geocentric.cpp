#include "ProjReference.h"
#include "support/TestData.h"
#include "support/TestRegistry.h"

#include "KivGeometry/CoordFuncLibrary.h"
#include "KivGeometry/CoordinateTransformation_7Param.h"

#include <QTest>

using KivGeometry::CoordFuncLibrary;
using KivGeometry::CoordinateTransformation_7Param;
using KivGeometry::Spheroid;

class TestGeocentric : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }
    void blhToXyzMatchesProjAndRoundTrips_data();
    void blhToXyzMatchesProjAndRoundTrips();
    void sevenParametersMatchProjHelmert_data();
    void sevenParametersMatchProjHelmert();
    void sevenParametersNotSetFail();
};

void TestGeocentric::blhToXyzMatchesProjAndRoundTrips_data()
{
    QTest::addColumn<double>("a");
    QTest::addColumn<double>("invf");
    QTest::addColumn<QString>("ellps");
    QTest::newRow("Krasovsky") << 6378245.0 << 298.3 << "+ellps=krass";
    QTest::newRow("CGCS2000") << 6378137.0 << 298.257222101 << "+a=6378137 +rf=298.257222101";
    QTest::newRow("WGS 84") << 6378137.0 << 298.257223563 << "+ellps=WGS84";
    QTest::newRow("sphere") << 6371000.0 << 0.0 << "+R=6371000";
}

void TestGeocentric::blhToXyzMatchesProjAndRoundTrips()
{
    QFETCH(double, a);
    QFETCH(double, invf);
    QFETCH(QString, ellps);
    const Spheroid spheroid(QStringLiteral("test"), a, invf);
    const double lat[] = {0.0, 30.5, -45.25, 89.9, 22.123456789};
    const double lon[] = {0.0, 114.8, -70.5, 179.9, 101.0};
    const double h[] = {0.0, 52.3, -20.0, 4000.0, 1234.567};
    const int n = 5;
    double b[n], l[n], z[n];
    std::copy(lat, lat + n, b);
    std::copy(lon, lon + n, l);
    std::copy(h, h + n, z);
    QVERIFY(CoordFuncLibrary::ConvertBLHToXYZ(spheroid, b, l, z, n));

    ProjReference::Context c;
    const std::string def = "+proj=cart " + ellps.toStdString();
    ProjReference::Object cart(c.ctx, proj_create(c.ctx, def.c_str()));
    QVERIFY(cart);
    for (int i = 0; i < n; ++i) {
        double x = proj_torad(lon[i]), y = proj_torad(lat[i]), hz = h[i];
        QVERIFY(cart.trans(x, y, hz));
        QVERIFY2(std::fabs(b[i] - x) < 1e-4 && std::fabs(l[i] - y) < 1e-4 && std::fabs(z[i] - hz) < 1e-4,
                 qPrintable(QString::number(i)));
    }

    QVERIFY(CoordFuncLibrary::ConvertXYZToBLH(spheroid, b, l, z, n));
    for (int i = 0; i < n; ++i) {
        QVERIFY2(std::fabs(b[i] - lat[i]) < 1e-9, qPrintable(QString::number(i)));
        QVERIFY2(std::fabs(l[i] - lon[i]) < 1e-9, qPrintable(QString::number(i)));
        QVERIFY2(std::fabs(z[i] - h[i]) < 1e-3, qPrintable(QString::number(i)));
    }
}

void TestGeocentric::sevenParametersMatchProjHelmert_data()
{
    QTest::addColumn<QVector<double>>("p");
    QTest::newRow("shift only") << QVector<double>{15.8, -154.4, -82.3, 0, 0, 0, 0};
    QTest::newRow("full model") << QVector<double>{-12.3, -130.9, -83.5, 1.2, -2.8, 4.5, 3.2e-6};
    QTest::newRow("large rotations") << QVector<double>{100, 200, -300, 30, -45, 60, -12e-6};
}

void TestGeocentric::sevenParametersMatchProjHelmert()
{
    QFETCH(QVector<double>, p);
    CoordinateTransformation_7Param ct;
    ct.SetCT7Param(p[0], p[1], p[2], p[3], p[4], p[5], p[6]);
    ct.SetSourceSpheroid(6378245.0, 6356863.019, 1.0 / 298.3);
    ct.SetTargetSpheroid(6378137.0, 6356752.314, 1.0 / 298.257223563);

    // PROJ's helmert in the position-vector form: the same model with the
    // rotations' signs changed.
    ProjReference::Context c;
    auto n = [](double v) { return QByteArray::number(v, 'g', 17).toStdString(); };
    const std::string def = "+proj=pipeline +step +proj=unitconvert +xy_in=deg +xy_out=rad"
                            " +step +proj=cart +ellps=krass +step +proj=helmert +x=" + n(p[0]) + " +y=" + n(p[1]) +
                            " +z=" + n(p[2]) + " +rx=" + n(-p[3]) + " +ry=" + n(-p[4]) + " +rz=" + n(-p[5]) +
                            " +s=" + n(p[6] * 1e6) + " +convention=position_vector"
                            " +step +inv +proj=cart +ellps=WGS84 +step +proj=unitconvert +xy_in=rad +xy_out=deg";
    ProjReference::Object helmert(c.ctx, proj_create(c.ctx, def.c_str()));
    QVERIFY(helmert);

    const double lat[] = {30.5, 39.9, 22.3, 45.75};
    const double lon[] = {114.8, 116.4, 113.9, 126.6};
    const double h[] = {20.0, 55.5, 0.0, 180.0};
    double b[4], l[4], z[4];
    for (int i = 0; i < 4; ++i) {
        double x = lon[i], y = lat[i], hz = h[i];
        QVERIFY(helmert.trans(x, y, hz));
        double B2 = 0, L2 = 0, H2 = 0;
        QVERIFY(ct.ConvertBLHToBLH(lat[i], lon[i], h[i], B2, L2, H2));
        QVERIFY2(std::fabs(B2 - y) < 1e-9 && std::fabs(L2 - x) < 1e-9, qPrintable(QString::number(i)));
        QVERIFY2(std::fabs(H2 - hz) < 1e-3, qPrintable(QString::number(H2 - hz)));
        b[i] = lat[i];
        l[i] = lon[i];
        z[i] = h[i];
    }
    // The batch form gives the same digits.
    int success[4] = {0, 0, 0, 0};
    QVERIFY(ct.ConvertBLHToBLH(4, b, l, z, success));
    for (int i = 0; i < 4; ++i) {
        double B2 = 0, L2 = 0, H2 = 0;
        ct.ConvertBLHToBLH(lat[i], lon[i], h[i], B2, L2, H2);
        QCOMPARE(success[i], 1);
        QCOMPARE(b[i], B2);
        QCOMPARE(l[i], L2);
        QCOMPARE(z[i], H2);
    }
}

void TestGeocentric::sevenParametersNotSetFail()
{
    CoordinateTransformation_7Param ct;
    double B2 = 7, L2 = 8, H2 = 9;
    QVERIFY(!ct.ConvertBLHToBLH(30, 114, 0, B2, L2, H2));
    ct.SetCT7Param(1, 2, 3, 0, 0, 0, 0);
    ct.SetSourceSpheroid(6378245.0, 0, 1.0 / 298.3);
    QVERIFY(!ct.ConvertBLHToBLH(30, 114, 0, B2, L2, H2));
    ct.SetTargetSpheroid(-1, 0, 0.5); // not an ellipsoid
    QVERIFY(!ct.ConvertBLHToBLH(30, 114, 0, B2, L2, H2));
    QCOMPARE(B2, 7.0);
    QCOMPARE(H2, 9.0);
    double b[2] = {30, 31}, l[2] = {114, 115}, h[2] = {1, 2};
    int success[2] = {1, 1};
    QVERIFY(!ct.ConvertBLHToBLH(2, b, l, h, success));
    QCOMPARE(success[0], 0);
    QCOMPARE(b[1], 31.0);
    // Once the target is right, the same object converts.
    ct.SetTargetSpheroid(6378137.0, 0, 1.0 / 298.257223563);
    QVERIFY(ct.ConvertBLHToBLH(30, 114, 0, B2, L2, H2));
    QVERIFY(std::fabs(B2 - 30) < 0.01 && std::fabs(L2 - 114) < 0.01);
}

KIV_TEST_CLASS(TestGeocentric)
#include "tst_Geocentric.moc"
