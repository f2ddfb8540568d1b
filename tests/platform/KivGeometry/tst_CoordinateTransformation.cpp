#include "support/ProjReference.h"
#include "support/TestData.h"
#include "support/TestRegistry.h"

#include "KivGeometry/CoordinateTransformation.h"
#include "KivGeometry/SpatialReferenceFactory.h"

#include <QTest>

#include <thread>
#include <vector>

using namespace KivGeometry;
using KivUtility::_ptr_t;

static _ptr_t<SpatialReference> create(const QString& text)
{
    return SpatialReferenceFactory::CreateSpatialReference(text);
}

class TestCoordinateTransformation : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }
    void matchesProjTrans_data();
    void matchesProjTrans();
    void failuresLeavePointsAlone();
    void sharedPairAcrossThreads();
};

void TestCoordinateTransformation::matchesProjTrans_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");
    QTest::addColumn<double>("z");
    QTest::newRow("Beijing 1954 to its zone") << "EPSG:4214" << "EPSG:2435" << 114.8 << 30.5 << 0.0;
    QTest::newRow("zone to zone") << "EPSG:2435" << "EPSG:2436" << 548000.5 << 3375708.0 << 0.0;
    QTest::newRow("CGCS2000 to its zone") << "EPSG:4490" << "EPSG:4547" << 113.2 << 23.1 << 0.0;
    QTest::newRow("Beijing 1954 to WGS 84") << "EPSG:4214" << "EPSG:4326" << 114.5 << 30.5 << 0.0;
    QTest::newRow("geographic to geocentric") << "EPSG:4326" << "EPSG:4978" << 114.5 << 30.5 << 120.0;
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
    double ex = x, ey = y, ez = z;
    QVERIFY(KivTest::projTransform(from + " -> " + to, ex, ey, ez));

    CoordinateTransformation ct(create(from), create(to));
    QVERIFY(ct.IsValid());
    const double tolerance = std::fabs(ex) > 360 ? 1e-6 : 1e-11;
    for (double* h : {&z, static_cast<double*>(nullptr)}) {
        double tx = x, ty = y, tz = z;
        QVERIFY(ct.Transform(1, &tx, &ty, h ? &tz : nullptr));
        QVERIFY2(std::fabs(tx - ex) < tolerance && std::fabs(ty - ey) < tolerance,
                 qPrintable(QStringLiteral("%1 %2 / %3 %4").arg(tx, 0, 'f', 9).arg(ty, 0, 'f', 9).arg(ex, 0, 'f', 9).arg(ey, 0, 'f', 9)));
        QVERIFY(std::fabs(tz - (h ? ez : z)) < 1e-6);
        if (z != 0)
            break; // a height matters to the answer
    }
    if (from.startsWith(QLatin1String("GEOGCS")))
        QVERIFY(std::fabs(ex - x) > 1e-5); // the clause's shift, not a ballpark
}

void TestCoordinateTransformation::failuresLeavePointsAlone()
{
    CoordinateTransformation ct(create(QStringLiteral("EPSG:4326")), create(QStringLiteral("EPSG:3857")));
    double x[3] = {10.0, 20.0, std::nan("")}, y[3] = {45.0, 91.0, 10.0};
    int success[3] = {-1, -1, -1};
    QVERIFY(!ct.Transform(3, x, y, nullptr, success));
    QVERIFY(success[0] == 1 && success[1] == 0 && success[2] == 0);
    QVERIFY(x[0] > 1e6 && x[1] == 20.0 && y[1] == 91.0 && y[2] == 10.0);

    // Missing or empty systems, and a pair PROJ has no operation for.
    const _ptr_t<SpatialReference> wgs = create(QStringLiteral("EPSG:4326"));
    for (const auto& pair : {std::make_pair(wgs, _ptr_t<SpatialReference>()),
                             std::make_pair(_ptr_t<SpatialReference>(new SpatialReference), wgs),
                             std::make_pair(create(QStringLiteral("EPSG:4978")), create(QStringLiteral("EPSG:5714")))}) {
        CoordinateTransformation invalid(pair.first, pair.second);
        QVERIFY(!invalid.IsValid());
        double px = 1, py = 2;
        int ok = 1;
        QVERIFY(!invalid.Transform(1, &px, &py, nullptr, &ok));
        QVERIFY(ok == 0 && px == 1.0);
    }
}

void TestCoordinateTransformation::sharedPairAcrossThreads()
{
    // Each thread makes its own system objects, as documented; the cached operation is shared.
    const QString from = create(QStringLiteral("EPSG:4214"))->ExportToWkt(), to = create(QStringLiteral("EPSG:2436"))->ExportToWkt();
    std::vector<double> lon(2000), lat(2000);
    for (size_t i = 0; i < lon.size(); ++i)
        lon[i] = 115.0 + i * 1e-3, lat[i] = 30.0 + i * 5e-4;
    const auto run = [&] {
        std::vector<double> x = lon, y = lat;
        CoordinateTransformation(create(from), create(to)).Transform(int(x.size()), x.data(), y.data(), nullptr);
        return std::make_pair(x, y);
    };
    const auto expected = run();
    QVERIFY(expected.first != lon);
    std::vector<int> mismatches(4, -1);
    std::vector<std::thread> threads;
    for (size_t t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            int bad = 0;
            for (int round = 0; round < 20; ++round)
                bad += int(run() != expected);
            mismatches[t] = bad;
        });
    }
    for (auto& th : threads)
        th.join();
    QCOMPARE(mismatches, std::vector<int>(4, 0));
}

KIV_TEST_CLASS(TestCoordinateTransformation)
#include "tst_CoordinateTransformation.moc"
