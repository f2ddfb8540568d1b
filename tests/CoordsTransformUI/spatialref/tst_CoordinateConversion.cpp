// The shared conversion route, checked against PROJ pipelines written out in
// full here: each reference spells the geodesy (projection, geocentric
// conversion, coordinate-frame Helmert, plane similarity) independently of
// the route and of the geometry library.

#include "spatialref/CoordinateConversion.h"

#include "KivGeometry/SpatialReferenceFactory.h"

#include "support/TestData.h"
#include "support/TestRegistry.h"

#include <QTest>

#include <proj.h>

#include <cmath>
#include <limits>

using KivGeometry::SpatialReferenceFactory;

namespace {

/// A PROJ operation in GIS order: x = easting/longitude, y = northing/latitude.
/// `definition` is a pipeline, or "SRC -> DST" for PROJ's own operation.
class ProjReference
{
public:
    explicit ProjReference(const QString& definition)
    {
        m_ctx = proj_context_create();
        const int arrow = definition.indexOf(QLatin1String(" -> "));
        if (arrow < 0) {
            m_op = proj_create(m_ctx, definition.toUtf8().constData());
        } else {
            PJ* raw = proj_create_crs_to_crs(m_ctx, definition.left(arrow).toUtf8().constData(),
                                             definition.mid(arrow + 4).toUtf8().constData(), nullptr);
            if (raw) {
                m_op = proj_normalize_for_visualization(m_ctx, raw);
                proj_destroy(raw);
            }
        }
    }
    ~ProjReference()
    {
        proj_destroy(m_op);
        proj_context_destroy(m_ctx);
    }
    bool isValid() const { return m_op != nullptr; }
    bool transform(double& x, double& y, double& z) const
    {
        PJ_COORD c = proj_coord(x, y, z, 0);
        c = proj_trans(m_op, PJ_FWD, c);
        if (c.xyzt.x == HUGE_VAL)
            return false;
        x = c.xyzt.x;
        y = c.xyzt.y;
        z = c.xyzt.z;
        return true;
    }

private:
    PJ_CONTEXT* m_ctx = nullptr;
    PJ* m_op = nullptr;
};

// Beijing 1954 3-degree zones on Krasovsky, and the model used throughout:
// rotations large enough that a sign or axis mix-up shows by metres.
const QString kTmerc117 = QStringLiteral("+proj=tmerc +lat_0=0 +lon_0=117 +k=1 +x_0=500000 +y_0=0 +ellps=krass");
const QString kTmerc120 = QStringLiteral("+proj=tmerc +lat_0=0 +lon_0=120 +k=1 +x_0=500000 +y_0=0 +ellps=krass");
const QList<double> kSeven{15.8, -154.4, -82.3, 0.52, -1.31, 2.17, 3.5e-6};
const QString kHelmert = QStringLiteral("+proj=helmert +x=15.8 +y=-154.4 +z=-82.3 +rx=0.52 +ry=-1.31 +rz=2.17 "
                                        "+s=3.5 +convention=coordinate_frame");
const QList<double> kFour{-35.2, 120.7, 0.0125, 1.0000123};

QString pipeline(const QStringList& steps)
{
    return QStringLiteral("+proj=pipeline +step ") + steps.join(QStringLiteral(" +step "));
}

const QString kDegToRad = QStringLiteral("+proj=unitconvert +xy_in=deg +xy_out=rad");
const QString kRadToDeg = QStringLiteral("+proj=unitconvert +xy_in=rad +xy_out=deg");

/// The plane similarity in PROJ's terms: x = east (Y), y = north (X), so
/// E2 = DY + K(sinT N + cosT E) and N2 = DX + K(cosT N - sinT E).
QString affine(const QList<double>& p)
{
    const double t = p[2] * M_PI / 180.0;
    const double k = p[3];
    return QStringLiteral("+proj=affine +xoff=%1 +yoff=%2 +s11=%3 +s12=%4 +s21=%5 +s22=%6")
        .arg(p[1], 0, 'g', 17).arg(p[0], 0, 'g', 17)
        .arg(k * std::cos(t), 0, 'g', 17).arg(k * std::sin(t), 0, 'g', 17)
        .arg(-k * std::sin(t), 0, 'g', 17).arg(k * std::cos(t), 0, 'g', 17);
}

KivUtility::_ptr_t<KivGeometry::SpatialReference> sr(const QString& text)
{
    return SpatialReferenceFactory::CreateSpatialReference(text);
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
    void dialogMode_data();
    void dialogMode();
    void notReady_data();
    void notReady();
    void batchEqualsSinglePointsAndIsolatesFailures();
};

void TestCoordinateConversion::matchesProj_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("target");
    QTest::addColumn<int>("mode");           // -1: the dialogs' mode for the pair
    QTest::addColumn<QList<double>>("params");
    QTest::addColumn<bool>("code");
    QTest::addColumn<double>("north");
    QTest::addColumn<double>("east");
    QTest::addColumn<double>("h");
    QTest::addColumn<double>("refEast");     // PROJ input, when it differs (zone number removed)
    QTest::addColumn<QString>("reference");
    QTest::addColumn<bool>("heightChanges");
    QTest::addColumn<double>("tolerance");   // in the target's units

    const int dialog = -1;
    const double none = std::numeric_limits<double>::quiet_NaN();
    const double mm = 1e-3, deg = 1e-9;
    const QString bj117 = QStringLiteral("EPSG:2436");
    const QString bj120 = QStringLiteral("EPSG:2437");
    const QString bjZone39 = QStringLiteral("EPSG:2415"); // CM 117E, zone number in the false easting
    const QString bjGeo = QStringLiteral("EPSG:4214");
    const QString wgs = QStringLiteral("EPSG:4326");
    const QString utm50 = QStringLiteral("EPSG:32650");
    const QString utm50Proj = QStringLiteral("+proj=utm +zone=50 +ellps=WGS84");

    // Same datum.
    QTest::newRow("geographic -> projected") << bjGeo << bj117 << dialog << QList<double>() << false
        << 39.5123456789 << 116.2345678901 << 50.0 << none
        << pipeline({kDegToRad, kTmerc117}) << false << mm;
    QTest::newRow("projected -> geographic") << bj117 << bjGeo << dialog << QList<double>() << false
        << 4376543.211 << 432109.876 << 50.0 << none
        << pipeline({QStringLiteral("+inv ") + kTmerc117, kRadToDeg}) << false << deg;
    QTest::newRow("projected -> geographic, zone number") << bj117 << bjGeo << dialog << QList<double>() << true
        << 4376543.211 << 39432109.876 << 0.0 << 432109.876
        << pipeline({QStringLiteral("+inv ") + kTmerc117, kRadToDeg}) << false << deg;
    QTest::newRow("geographic -> geographic is unchanged") << bjGeo << bjGeo << dialog << kFour << false
        << 39.5 << 116.25 << 12.5 << none << QStringLiteral("+proj=noop") << false << 0.0;
    QTest::newRow("same zone, four parameters") << bj117 << bjZone39 << dialog << kFour << false
        << 4376543.211 << 432109.876 << 7.0 << none << affine(kFour) << false << mm;
    QTest::newRow("same zone, no model") << bj117 << bjZone39 << dialog << QList<double>() << false
        << 4376543.211 << 432109.876 << 7.0 << none << QStringLiteral("+proj=noop") << false << 0.0;
    QTest::newRow("across zones, four parameters") << bj117 << bj120 << dialog << kFour << false
        << 4376543.211 << 632109.876 << 7.0 << none
        << pipeline({QStringLiteral("+inv ") + kTmerc117, kTmerc120, affine(kFour)}) << false << mm;
    QTest::newRow("across zones, no model") << bj117 << bj120 << dialog << QList<double>() << false
        << 4376543.211 << 632109.876 << 7.0 << none
        << pipeline({QStringLiteral("+inv ") + kTmerc117, kTmerc120}) << false << mm;
    QTest::newRow("across zones, zone number, four parameters") << bj117 << bj120 << dialog << kFour << true
        << 4376543.211 << 39632109.876 << 7.0 << 632109.876
        << pipeline({QStringLiteral("+inv ") + kTmerc117, kTmerc120, affine(kFour)}) << false << mm;

    // Beijing 1954 <-> WGS 84 with seven parameters, every pairing of ends.
    const QString shift = QStringList{QStringLiteral("+proj=cart +ellps=krass"), kHelmert,
                                      QStringLiteral("+inv +proj=cart +ellps=WGS84")}
                              .join(QStringLiteral(" +step "));
    QTest::newRow("7: projected -> geographic") << bj117 << wgs << dialog << kSeven << false
        << 4376543.211 << 432109.876 << 85.4 << none
        << pipeline({QStringLiteral("+inv ") + kTmerc117, shift, kRadToDeg}) << true << deg;
    QTest::newRow("7: projected -> geographic, zone number") << bj117 << wgs << dialog << kSeven << true
        << 4376543.211 << 39432109.876 << 85.4 << 432109.876
        << pipeline({QStringLiteral("+inv ") + kTmerc117, shift, kRadToDeg}) << true << deg;
    QTest::newRow("7: geographic -> geographic") << bjGeo << wgs << dialog << kSeven << false
        << 39.5123456789 << 116.2345678901 << 0.0 << none
        << pipeline({kDegToRad, shift, kRadToDeg}) << true << deg;
    QTest::newRow("7: geographic -> projected") << bjGeo << utm50 << dialog << kSeven << false
        << 31.0987654321 << 118.7654321098 << 1200.0 << none
        << pipeline({kDegToRad, shift, utm50Proj}) << true << mm;
    QTest::newRow("7: projected -> projected") << bj117 << utm50 << dialog << kSeven << false
        << 3376543.211 << 532109.876 << -20.0 << none
        << pipeline({QStringLiteral("+inv ") + kTmerc117, shift, utm50Proj}) << true << mm;
    QTest::newRow("7: WGS 84 projected -> Beijing 1954 projected") << utm50 << bj117 << dialog << kSeven << false
        << 4376543.211 << 332109.876 << 40.0 << none
        << pipeline({QStringLiteral("+inv ") + utm50Proj, QStringLiteral("+proj=cart +ellps=WGS84"), kHelmert,
                     QStringLiteral("+inv +proj=cart +ellps=krass"), kTmerc117}) << true << mm;
    QTest::newRow("7 forced on one datum") << bj117 << bj120 << int(CoordinateConversion::SevenParameters)
        << kSeven << false << 4376543.211 << 632109.876 << 10.0 << none
        << pipeline({QStringLiteral("+inv ") + kTmerc117, QStringLiteral("+proj=cart +ellps=krass"), kHelmert,
                     QStringLiteral("+inv +proj=cart +ellps=krass"), kTmerc120}) << true << mm;

    // PROJ's own operation.
    QTest::newRow("direct: Beijing 1954 -> CGCS2000 zone") << bj117 << QStringLiteral("EPSG:4548")
        << int(CoordinateConversion::Direct) << QList<double>() << false
        << 4376543.211 << 432109.876 << 0.0 << none << QStringLiteral("EPSG:2436 -> EPSG:4548") << false << mm;
    QTest::newRow("direct: zone number") << bj117 << bjGeo
        << int(CoordinateConversion::Direct) << QList<double>() << true
        << 4376543.211 << 39432109.876 << 0.0 << 432109.876
        << QStringLiteral("EPSG:2436 -> EPSG:4214") << false << deg;
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
    QFETCH(double, refEast);
    QFETCH(QString, reference);
    QFETCH(bool, heightChanges);
    QFETCH(double, tolerance);

    const auto from = sr(source);
    const auto to = sr(target);
    QVERIFY(from && to);
    CoordinateConversion conversion(from, to);
    if (mode >= 0)
        conversion.SetMode(CoordinateConversion::Mode(mode));
    conversion.SetParams(params);
    conversion.SetCodeNumber(code);
    QVERIFY(conversion.IsReady());

    ProjReference proj(reference);
    QVERIFY2(proj.isValid(), qPrintable(reference));
    double x = std::isnan(refEast) ? east : refEast, y = north, z = h;
    QVERIFY(proj.transform(x, y, z));

    double n = north, e = east, hh = h;
    QVERIFY(conversion.Convert(n, e, hh));
    QVERIFY2(std::fabs(n - y) <= tolerance, qPrintable(QStringLiteral("north %1, PROJ %2").arg(n, 0, 'f', 10).arg(y, 0, 'f', 10)));
    QVERIFY2(std::fabs(e - x) <= tolerance, qPrintable(QStringLiteral("east %1, PROJ %2").arg(e, 0, 'f', 10).arg(x, 0, 'f', 10)));
    if (heightChanges)
        QVERIFY2(std::fabs(hh - z) <= 1e-3, qPrintable(QStringLiteral("h %1, PROJ %2").arg(hh, 0, 'f', 6).arg(z, 0, 'f', 6)));
    else if (mode != CoordinateConversion::Direct)
        QCOMPARE(hh, h);
}

void TestCoordinateConversion::dialogMode_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("target");
    QTest::addColumn<int>("mode");
    QTest::newRow("two zones of one datum") << "EPSG:2436" << "EPSG:2437" << int(CoordinateConversion::FourParameters);
    QTest::newRow("zone and its geographic system") << "EPSG:2436" << "EPSG:4214" << int(CoordinateConversion::FourParameters);
    QTest::newRow("Beijing 1954 and WGS 84") << "EPSG:2436" << "EPSG:4326" << int(CoordinateConversion::SevenParameters);
    QTest::newRow("Beijing 1954 and Xian 1980 zones") << "EPSG:2436" << "EPSG:2384" << int(CoordinateConversion::SevenParameters);
}

void TestCoordinateConversion::dialogMode()
{
    QFETCH(QString, source);
    QFETCH(QString, target);
    QFETCH(int, mode);
    const auto from = sr(source);
    const auto to = sr(target);
    QVERIFY(from && to);
    QCOMPARE(int(CoordinateConversion::DialogMode(from.get(), to.get())), mode);
    QCOMPARE(int(CoordinateConversion(from, to).GetMode()), mode);
}

void TestCoordinateConversion::notReady_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QList<double>>("params");
    QTest::newRow("seven parameters, six values") << "EPSG:2436" << "EPSG:4326" << kSeven.mid(0, 6);
    QTest::newRow("seven parameters, eight values") << "EPSG:2436" << "EPSG:4326" << (kSeven + QList<double>{1.0});
    QTest::newRow("seven parameters, none") << "EPSG:4214" << "EPSG:4326" << QList<double>();
    QTest::newRow("missing source") << "" << "EPSG:4326" << kSeven;
    QTest::newRow("missing target") << "EPSG:2436" << "" << kFour;
}

void TestCoordinateConversion::notReady()
{
    QFETCH(QString, source);
    QFETCH(QString, target);
    QFETCH(QList<double>, params);
    CoordinateConversion conversion(source.isEmpty() ? nullptr : sr(source),
                                    target.isEmpty() ? nullptr : sr(target));
    conversion.SetParams(params);
    QVERIFY(!conversion.IsReady());
    double n = 4376543.211, e = 432109.876, h = 5.0;
    QVERIFY(!conversion.Convert(n, e, h));
    QCOMPARE(n, 4376543.211);
    QCOMPARE(e, 432109.876);
    QCOMPARE(h, 5.0);
    int ok[2] = {7, 7};
    double ns[2] = {1, 2}, es[2] = {3, 4};
    QCOMPARE(conversion.Convert(2, ns, es, nullptr, ok), 0);
    QCOMPARE(ok[0], 0);
    QCOMPARE(ok[1], 0);
    QCOMPARE(ns[1], 2.0);
}

void TestCoordinateConversion::batchEqualsSinglePointsAndIsolatesFailures()
{
    struct Pair { const char* source; const char* target; QList<double> params; };
    const QList<Pair> pairs{{"EPSG:4214", "EPSG:2436", {}},           // through PROJ
                            {"EPSG:4214", "EPSG:4326", kSeven},       // seven parameters
                            {"EPSG:2436", "EPSG:2437", kFour}};       // re-zone and plane model
    for (const Pair& pair : pairs) {
        const auto from = sr(QString::fromLatin1(pair.source));
        const auto to = sr(QString::fromLatin1(pair.target));
        CoordinateConversion conversion(from, to);
        conversion.SetParams(pair.params);
        QVERIFY(conversion.IsReady());
        const bool geographic = from->GetType() == KivGeometry::SRT_Geographic;
        const int count = 41;
        const int bad = 17;
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
            double n = north[i], e = east[i], hh = h[i];
            const bool single = conversion.Convert(n, e, hh);
            QCOMPARE(ok[i], i == bad ? 0 : 1);
            QCOMPARE(single, i != bad);
            if (i == bad) {
                QVERIFY(std::isnan(bn[i]));
                QCOMPARE(be[i], east[i]);
                QCOMPARE(bh[i], h[i]);
                continue;
            }
            // The same digits whichever way a point goes through the route.
            QCOMPARE(bn[i], n);
            QCOMPARE(be[i], e);
            QCOMPARE(bh[i], hh);
        }
    }
}

KIV_TEST_CLASS(TestCoordinateConversion)
#include "tst_CoordinateConversion.moc"
