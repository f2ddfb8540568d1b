#include "ProjReference.h"
#include "support/TestData.h"
#include "support/TestRegistry.h"

#include "KivGeometry/CoordinateTransformation.h"
#include "KivGeometry/ProjectedCoordinateSystem.h"
#include "KivGeometry/SpatialReferenceFactory.h"

#include <QTest>

#include <thread>
#include <vector>

using namespace KivGeometry;
using KivUtility::_ptr_t;

class TestCoordinateTransformation : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }
    void matchesProjTrans_data();
    void matchesProjTrans();
    void failedPointsStayUnchanged();
    void missingSystemsGiveInvalidTransformation();
    void projectedToItsGeographicBase();
    void sharedPairAcrossThreads();
};

void TestCoordinateTransformation::matchesProjTrans_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");
    QTest::addColumn<double>("z");
    QTest::newRow("Beijing 1954 to its 3-degree zone") << "EPSG:4214" << "EPSG:2435" << 114.8 << 30.5 << 0.0;
    QTest::newRow("zone back to geographic") << "EPSG:2435" << "EPSG:4214" << 548000.5 << 3375708.0 << 0.0;
    QTest::newRow("zone to zone") << "EPSG:2435" << "EPSG:2436" << 548000.5 << 3375708.0 << 0.0;
    QTest::newRow("WGS 84 to Web Mercator") << "EPSG:4326" << "EPSG:3857" << 116.4 << 39.9 << 0.0;
    QTest::newRow("CGCS2000 to its zone") << "EPSG:4490" << "EPSG:4547" << 113.2 << 23.1 << 0.0;
    QTest::newRow("Beijing 1954 to WGS 84") << "EPSG:4214" << "EPSG:4326" << 114.5 << 30.5 << 0.0;
    QTest::newRow("geographic to geocentric") << "EPSG:4326" << "EPSG:4978" << 114.5 << 30.5 << 120.0;
    QTest::newRow("feet") << "EPSG:4269" << "EPSG:2229" << -118.2 << 34.05 << 0.0;
    QTest::newRow("TOWGS84 clause applies")
        << "GEOGCS[\"Beijing 1954\",DATUM[\"Beijing_1954\",SPHEROID[\"Krassowsky 1940\",6378245,298.3],TOWGS84[15.8,-154.4,-82.3,0,0,0,0]],PRIMEM[\"Greenwich\",0],UNIT[\"degree\",0.0174532925199433]]"
        << "EPSG:4326" << 114.5 << 30.5 << 10.0;
}

void TestCoordinateTransformation::matchesProjTrans()
{
    QFETCH(QString, from);
    QFETCH(QString, to);
    QFETCH(double, x);
    QFETCH(double, y);
    QFETCH(double, z);
    ProjReference::Context c;
    ProjReference::Object op(c.ctx, ProjReference::operation(c.ctx, from.toStdString(), to.toStdString()));
    QVERIFY(op);
    double ex = x, ey = y, ez = z;
    QVERIFY(op.trans(ex, ey, ez));

    CoordinateTransformation ct(SpatialReferenceFactory::CreateSpatialReference(from),
                                SpatialReferenceFactory::CreateSpatialReference(to));
    QVERIFY(ct.IsValid());
    double tx = x, ty = y, tz = z;
    QVERIFY(ct.Transform(1, &tx, &ty, &tz));
    const double tolerance = std::fabs(ex) > 360 ? 1e-6 : 1e-11;
    QVERIFY2(std::fabs(tx - ex) < tolerance && std::fabs(ty - ey) < tolerance,
             qPrintable(QStringLiteral("%1 %2 / %3 %4").arg(tx, 0, 'f', 9).arg(ty, 0, 'f', 9).arg(ex, 0, 'f', 9).arg(ey, 0, 'f', 9)));
    QVERIFY(std::fabs(tz - ez) < 1e-6);
    if (from.startsWith(QLatin1String("GEOGCS")))
        QVERIFY(std::fabs(tx - x) > 1e-5); // the clause's shift, not a ballpark
    if (z != 0)
        return;
    // Without heights.
    tx = x;
    ty = y;
    QVERIFY(ct.Transform(1, &tx, &ty, nullptr));
    QVERIFY(std::fabs(tx - ex) < tolerance && std::fabs(ty - ey) < tolerance);
}

void TestCoordinateTransformation::failedPointsStayUnchanged()
{
    CoordinateTransformation ct(SpatialReferenceFactory::CreateSpatialReference(QStringLiteral("EPSG:4326")),
                                SpatialReferenceFactory::CreateSpatialReference(QStringLiteral("EPSG:3857")));
    double x[3] = {10.0, 20.0, std::nan("")};
    double y[3] = {45.0, 91.0, 10.0};
    int success[3] = {-1, -1, -1};
    QVERIFY(!ct.Transform(3, x, y, nullptr, success));
    QCOMPARE(success[0], 1);
    QCOMPARE(success[1], 0);
    QCOMPARE(success[2], 0);
    QVERIFY(x[0] > 1e6);
    QCOMPARE(x[1], 20.0);
    QCOMPARE(y[1], 91.0);
    QCOMPARE(y[2], 10.0);
}

void TestCoordinateTransformation::missingSystemsGiveInvalidTransformation()
{
    _ptr_t<SpatialReference> wgs = SpatialReferenceFactory::CreateSpatialReference(QStringLiteral("EPSG:4326"));
    for (const auto& pair : {std::make_pair(wgs, _ptr_t<SpatialReference>()),
                             std::make_pair(_ptr_t<SpatialReference>(new SpatialReference), wgs)}) {
        CoordinateTransformation ct(pair.first, pair.second);
        QVERIFY(!ct.IsValid());
        double x = 1, y = 2;
        int success = 1;
        QVERIFY(!ct.Transform(1, &x, &y, nullptr, &success));
        QCOMPARE(success, 0);
        QCOMPARE(x, 1.0);
    }
    // PROJ has no operation from a geocentric to a vertical system.
    CoordinateTransformation none(SpatialReferenceFactory::CreateSpatialReference(QStringLiteral("EPSG:4978")),
                                  SpatialReferenceFactory::CreateSpatialReference(QStringLiteral("EPSG:5714")));
    QVERIFY(!none.IsValid());
}

void TestCoordinateTransformation::projectedToItsGeographicBase()
{
    // The point dialog's route: a projected system to its own base.
    auto pcs = SpatialReferenceFactory::CreateSpatialReference(QStringLiteral("EPSG:2414")).dynamicCast<ProjectedCoordinateSystem>();
    pcs->MorphToESRI();
    double east = 38548000.5, north = 3375708.0;
    QVERIFY(CoordinateTransformation(pcs, pcs->GetGeographicCoordinateSystem()).Transform(1, &east, &north, nullptr));
    ProjReference::Context c;
    ProjReference::Object op(c.ctx, ProjReference::operation(c.ctx, "EPSG:2414", "EPSG:4214"));
    double ex = 38548000.5, ey = 3375708.0, ez = 0;
    QVERIFY(op.trans(ex, ey, ez));
    QVERIFY(std::fabs(east - ex) < 1e-11 && std::fabs(north - ey) < 1e-11);
}

void TestCoordinateTransformation::sharedPairAcrossThreads()
{
    _ptr_t<SpatialReference> from = SpatialReferenceFactory::CreateSpatialReference(QStringLiteral("EPSG:4214"));
    _ptr_t<SpatialReference> to = SpatialReferenceFactory::CreateSpatialReference(QStringLiteral("EPSG:2436"));
    const int n = 2000;
    std::vector<double> refX(n), refY(n);
    for (int i = 0; i < n; ++i) {
        refX[size_t(i)] = 115.0 + i * 1e-3;
        refY[size_t(i)] = 30.0 + i * 5e-4;
    }
    std::vector<double> expectX = refX, expectY = refY;
    QVERIFY(CoordinateTransformation(from, to).Transform(n, expectX.data(), expectY.data(), nullptr));

    // Each thread has its own system objects, as documented; the cached
    // operation is shared.
    const QString wktFrom = from->ExportToWkt(), wktTo = to->ExportToWkt();
    std::vector<int> mismatches(4, -1);
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            auto f = SpatialReferenceFactory::CreateSpatialReference(wktFrom);
            auto g = SpatialReferenceFactory::CreateSpatialReference(wktTo);
            int bad = 0;
            for (int round = 0; round < 20; ++round) {
                std::vector<double> x = refX, y = refY;
                CoordinateTransformation(f, g).Transform(n, x.data(), y.data(), nullptr);
                for (int i = 0; i < n; ++i)
                    bad += (x[size_t(i)] != expectX[size_t(i)] || y[size_t(i)] != expectY[size_t(i)]);
            }
            mismatches[size_t(t)] = bad;
        });
    }
    for (auto& th : threads)
        th.join();
    for (int bad : mismatches)
        QCOMPARE(bad, 0);
}

KIV_TEST_CLASS(TestCoordinateTransformation)
#include "tst_CoordinateTransformation.moc"
