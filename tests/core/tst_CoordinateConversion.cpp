// The shared conversion route, checked against PROJ pipelines spelled out
// independently of the route and of the geometry library.

#include "spatialref/CoordinateConversion.h"

#include "KivGeometry/SpatialReferenceFactory.h"

#include "support/RouteReference.h"
#include "support/TestData.h"
#include "support/TestRegistry.h"

#include <QTest>

#include <cmath>
#include <limits>

using namespace RouteReference;

namespace {

KivUtility::_ptr_t<KivGeometry::SpatialReference> sr(const QString& text)
{
    return text.isEmpty() ? nullptr : KivGeometry::SpatialReferenceFactory::CreateSpatialReference(text);
}

} // namespace

Q_DECLARE_METATYPE(QList<double>)

class TestCoordinateConversion : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }
    void matchesProj_data();
    void matchesProj();
    void modeAndReadiness_data();
    void modeAndReadiness();
    void batchEqualsSinglePointsAndIsolatesFailures();
};

void TestCoordinateConversion::matchesProj_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("target");
    QTest::addColumn<int>("mode");  // -1: the dialogs' mode for the pair
    QTest::addColumn<QList<double>>("params");
    QTest::addColumn<bool>("code");  // a zone number before the easting; PROJ gets it without
    QTest::addColumn<double>("north");
    QTest::addColumn<double>("east");
    QTest::addColumn<double>("h");
    QTest::addColumn<QString>("reference");

    const int dialog = -1, direct = CoordinateConversion::Direct;
    // Beijing 1954 zones at 117E and 120E (the latter also with its zone number
    // in the false easting), its geographic system, WGS 84 and UTM 50N.
    const QString bj117("EPSG:2436"), bj120("EPSG:2437"), bjZone39("EPSG:2415"), bjGeo("EPSG:4214"),
        wgs("EPSG:4326"), utm("EPSG:32650");
    const QList<double> none, model4 = four(), model7 = seven();
    const QString from117 = inv(tmerc(117));

    QTest::newRow("geographic -> projected") << bjGeo << bj117 << dialog << none << false << 39.5123456789
                                             << 116.2345678901 << 50.0 << pipeline({toRad(), tmerc(117)});
    QTest::newRow("projected -> geographic") << bj117 << bjGeo << dialog << none << false << 4376543.211 << 432109.876
                                             << 50.0 << pipeline({from117, toDeg()});
    QTest::newRow("projected -> geographic, zone number") << bj117 << bjGeo << dialog << none << true << 4376543.211
                                                          << 39432109.876 << 0.0 << pipeline({from117, toDeg()});
    QTest::newRow("geographic -> geographic is unchanged") << bjGeo << bjGeo << dialog << model4 << false << 39.5
                                                           << 116.25 << 12.5 << "+proj=noop";
    QTest::newRow("same zone, four parameters") << bj117 << bjZone39 << dialog << model4 << false << 4376543.211
                                                << 432109.876 << 7.0 << affine(model4);
    QTest::newRow("same zone, no model") << bj117 << bjZone39 << dialog << none << false << 4376543.211 << 432109.876
                                         << 7.0 << "+proj=noop";
    QTest::newRow("across zones, zone number, four parameters")
        << bj117 << bj120 << dialog << model4 << true << 4376543.211 << 39632109.876 << 7.0
        << pipeline({from117, tmerc(120), affine(model4)});
    QTest::newRow("7: projected -> geographic, zone number") << bj117 << wgs << dialog << model7 << true << 4376543.211
                                                             << 39432109.876 << 85.4
                                                             << pipeline({from117, helmert(), toDeg()});
    QTest::newRow("7: geographic -> geographic") << bjGeo << wgs << dialog << model7 << false << 39.5123456789
                                                 << 116.2345678901 << 0.0 << pipeline({toRad(), helmert(), toDeg()});
    QTest::newRow("7: geographic -> projected") << bjGeo << utm << dialog << model7 << false << 31.0987654321
                                                << 118.7654321098 << 1200.0 << pipeline({toRad(), helmert(), utm50()});
    QTest::newRow("7: projected -> projected") << bj117 << utm << dialog << model7 << false << 3376543.211 << 532109.876
                                               << -20.0 << pipeline({from117, helmert(), utm50()});
    QTest::newRow("7: WGS 84 projected -> Beijing 1954 projected")
        << utm << bj117 << dialog << model7 << false << 4376543.211 << 332109.876 << 40.0
        << pipeline({inv(utm50()), helmert("WGS84", "krass"), tmerc(117)});
    QTest::newRow("7 forced on one datum") << bj117 << bj120 << int(CoordinateConversion::SevenParameters) << model7
                                           << false << 4376543.211 << 632109.876 << 10.0
                                           << pipeline({from117, helmert("krass", "krass"), tmerc(120)});
    QTest::newRow("direct: Beijing 1954 -> CGCS2000 zone") << bj117 << "EPSG:4548" << direct << none << false
                                                           << 4376543.211 << 432109.876 << 0.0
                                                           << "EPSG:2436 -> EPSG:4548";
    QTest::newRow("direct: zone number") << bj117 << bjGeo << direct << none << true << 4376543.211 << 39432109.876
                                         << 0.0 << "EPSG:2436 -> EPSG:4214";
}

void TestCoordinateConversion::matchesProj()
{
    QFETCH(QString, source);
    QFETCH(QString, target);
    QFETCH(int, mode);
    QFETCH(QList<double>, params);
    QFETCH(bool, code);
    QFETCH(double, north);
    QFETCH(double, east);
    QFETCH(double, h);
    QFETCH(QString, reference);
    const auto from = sr(source), to = sr(target);
    QVERIFY(from && to);
    CoordinateConversion conversion(from, to);
    if (mode >= 0)
        conversion.SetMode(CoordinateConversion::Mode(mode));
    conversion.SetParams(params);
    conversion.SetCodeNumber(code);
    QVERIFY(conversion.IsReady());

    double x = code ? std::fmod(east, 1e6) : east, y = north, z = h;
    QVERIFY2(KivTest::projTransform(reference, x, y, z), qPrintable(reference));
    double n = north, e = east, hh = h;
    QVERIFY(conversion.Convert(n, e, hh));
    const double tolerance = to->GetType() == KivGeometry::SRT_Geographic ? 1e-9 : 1e-3;
    QVERIFY2(std::fabs(n - y) <= tolerance && std::fabs(e - x) <= tolerance,
             qPrintable(QStringLiteral("%1 %2, PROJ %3 %4").arg(n, 0, 'f', 10).arg(e, 0, 'f', 10).arg(y, 0, 'f', 10)
                            .arg(x, 0, 'f', 10)));
    // Heights change only through the spatial similarity.
    if (reference.contains(QLatin1String("helmert")))
        QVERIFY2(std::fabs(hh - z) <= 1e-3, qPrintable(QStringLiteral("h %1, PROJ %2").arg(hh).arg(z)));
    else if (mode != CoordinateConversion::Direct)
        QCOMPARE(hh, h);

    // The route as one pipeline (the warper runs it backwards): the same
    // point forward, and back to the input.
    const QString route = QString::fromStdString(conversion.Pipeline());
    QCOMPARE(route.isEmpty(), mode == CoordinateConversion::Direct);
    if (route.isEmpty())
        return;
    const KivTest::ProjReference pipe(route);
    const double x0 = code ? std::fmod(east, 1e6) : east;
    double px = x0, py = north, pz = h;
    QVERIFY2(pipe.transform(px, py, pz) && std::fabs(px - x) <= tolerance && std::fabs(py - y) <= tolerance,
             qPrintable(route));
    QVERIFY(pipe.transform(px, py, pz, PJ_INV));
    const double back = from->GetType() == KivGeometry::SRT_Geographic ? 1e-9 : 1e-3;
    QVERIFY2(std::fabs(px - x0) <= back && std::fabs(py - north) <= back,
             qPrintable(QStringLiteral("back: %1 %2").arg(py, 0, 'f', 12).arg(px, 0, 'f', 12)));
}

void TestCoordinateConversion::modeAndReadiness_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QList<double>>("params");
    QTest::addColumn<int>("mode");  // the dialogs' mode for the pair; -1 none
    QTest::addColumn<bool>("ready");
    const int four = CoordinateConversion::FourParameters, seven = CoordinateConversion::SevenParameters;
    const QList<double> model7 = RouteReference::seven();
    QTest::newRow("two zones of one datum") << "EPSG:2436" << "EPSG:2437" << QList<double>() << four << true;
    QTest::newRow("zone and its geographic system") << "EPSG:2436" << "EPSG:4214" << QList<double>() << four << true;
    QTest::newRow("Beijing 1954 and Xian 1980 zones") << "EPSG:2436" << "EPSG:2384" << model7 << seven << true;
    QTest::newRow("seven parameters, six values") << "EPSG:2436" << "EPSG:4326" << model7.mid(0, 6) << seven << false;
    QTest::newRow("seven parameters, eight values") << "EPSG:2436" << "EPSG:4326" << model7 + QList<double>{1.0}
                                                    << seven << false;
    QTest::newRow("seven parameters, none") << "EPSG:4214" << "EPSG:4326" << QList<double>() << seven << false;
    QTest::newRow("missing source") << "" << "EPSG:4326" << model7 << -1 << false;
    QTest::newRow("missing target") << "EPSG:2436" << "" << RouteReference::four() << -1 << false;
}

void TestCoordinateConversion::modeAndReadiness()
{
    QFETCH(QString, source);
    QFETCH(QString, target);
    QFETCH(QList<double>, params);
    QFETCH(int, mode);
    QFETCH(bool, ready);
    CoordinateConversion conversion(sr(source), sr(target));
    if (mode >= 0)
        QCOMPARE(int(conversion.GetMode()), mode);
    conversion.SetParams(params);
    QCOMPARE(conversion.IsReady(), ready);
    // Not ready: nothing is converted, nothing changed.
    double n = 4376543.211, e = 432109.876, h = 5.0;
    QCOMPARE(conversion.Convert(n, e, h), ready);
    QVERIFY(ready || QList<double>({n, e, h}) == QList<double>({4376543.211, 432109.876, 5.0}));
    int ok[2] = {7, 7};
    double ns[2] = {4376543.211, 2}, es[2] = {432109.876, 4};
    QCOMPARE(conversion.Convert(ready ? 1 : 2, ns, es, nullptr, ok), int(ready));
    QCOMPARE(QList<int>({ok[0], ok[1]}), QList<int>({int(ready), ready ? 7 : 0}));
    QVERIFY(ready || ns[1] == 2.0);
}

void TestCoordinateConversion::batchEqualsSinglePointsAndIsolatesFailures()
{
    struct Pair { const char* source; const char* target; QList<double> params; };
    const QList<Pair> pairs{{"EPSG:4214", "EPSG:2436", {}},        // through PROJ
                            {"EPSG:4214", "EPSG:4326", seven()},   // seven parameters
                            {"EPSG:2436", "EPSG:2437", four()}};   // re-zone and plane model
    for (const Pair& pair : pairs) {
        const auto from = sr(QString::fromLatin1(pair.source));
        CoordinateConversion conversion(from, sr(QString::fromLatin1(pair.target)));
        conversion.SetParams(pair.params);
        const bool geographic = from->GetType() == KivGeometry::SRT_Geographic;
        const int count = 41, bad = 17;
        std::vector<double> north(count), east(count), h(count);
        for (int i = 0; i < count; ++i) {
            north[i] = geographic ? 30.0 + i * 0.25 : 3300000.0 + i * 25000.0;
            east[i] = geographic ? 115.6 + i * 0.06 : 380000.0 + i * 6000.0;
            h[i] = i * 10.0;
        }
        north[bad] = std::numeric_limits<double>::quiet_NaN();
        std::vector<double> bn = north, be = east, bh = h;
        std::vector<int> ok(count, -1);
        QCOMPARE(conversion.Convert(count, bn.data(), be.data(), bh.data(), ok.data()), count - 1);
        for (int i = 0; i < count; ++i) {
            // The same digits whichever way a point goes through the route; a
            // failed point is left as it was.
            double n = north[i], e = east[i], hh = h[i];
            QCOMPARE(conversion.Convert(n, e, hh), i != bad);
            QCOMPARE(ok[i], int(i != bad));
            const auto digits = [](double a, double b, double c) {
                return QStringLiteral("%1 %2 %3").arg(a, 0, 'g', 17).arg(b, 0, 'g', 17).arg(c, 0, 'g', 17);
            };
            QCOMPARE(digits(bn[i], be[i], bh[i]), i == bad ? digits(north[i], east[i], h[i]) : digits(n, e, hh));
        }
    }
}

KIV_TEST_CLASS(TestCoordinateConversion)
#include "tst_CoordinateConversion.moc"
