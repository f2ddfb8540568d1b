#include "ProjReference.h"
#include "support/TestData.h"
#include "support/TestRegistry.h"

#include "KivGeometry/CoordFuncLibrary.h"
#include "KivGeometry/CoordinateTransformation_7Param.h"

#include <QTest>

#include <cstdlib>
#include <memory>
#include <vector>

using KivGeometry::CoordFuncLibrary;
using KivGeometry::CoordinateTransformation_7Param;
using KivGeometry::Spheroid;

namespace {

struct Freed
{
    void operator()(double* p) const { std::free(p); }
};
using Result = std::unique_ptr<double, Freed>;

constexpr double kPi = 3.14159265358979323846;

// Geocentric control points on Krasovsky around Wuhan, and their images under
// a coordinate-frame Helmert computed by PROJ.
struct GeocentricPoints
{
    std::vector<double> sx, sy, sz, dx, dy, dz;
};

GeocentricPoints helmertPoints(const double p[7], int count)
{
    GeocentricPoints g;
    ProjReference::Context c;
    auto n = [](double v) { return QByteArray::number(v, 'g', 17).toStdString(); };
    ProjReference::Object cart(c.ctx, proj_create(c.ctx, "+proj=cart +ellps=krass"));
    const std::string def = "+proj=helmert +x=" + n(p[0]) + " +y=" + n(p[1]) + " +z=" + n(p[2]) + " +rx=" + n(p[3]) +
                            " +ry=" + n(p[4]) + " +rz=" + n(p[5]) + " +s=" + n(p[6] * 1e6) +
                            " +convention=coordinate_frame";
    ProjReference::Object helmert(c.ctx, proj_create(c.ctx, def.c_str()));
    for (int i = 0; i < count; ++i) {
        double x = proj_torad(113.5 + 0.37 * (i % 4)), y = proj_torad(30.1 + 0.29 * (i / 4) + 0.05 * i),
               z = 20.0 + 35.0 * i;
        cart.trans(x, y, z);
        g.sx.push_back(x);
        g.sy.push_back(y);
        g.sz.push_back(z);
        helmert.trans(x, y, z);
        g.dx.push_back(x);
        g.dy.push_back(y);
        g.dz.push_back(z);
    }
    return g;
}

Result calc7(GeocentricPoints& g, std::vector<double>& plane, std::vector<double>& height)
{
    const int n = int(g.sx.size());
    plane.assign(size_t(n), -1);
    height.assign(size_t(n), -1);
    return Result(CoordFuncLibrary::Calculate7Params(g.sx.data(), g.sy.data(), g.sz.data(), g.dx.data(), g.dy.data(),
                                                     g.dz.data(), n, plane.data(), height.data()));
}

} // namespace

class TestControlPointFit : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }
    void fourParametersRecoverModel_data();
    void fourParametersRecoverModel();
    void fourParametersRefuseDegenerateInput();
    void sevenParametersRecoverModel_data();
    void sevenParametersRecoverModel();
    void sevenParametersInvertTheShift();
    void sevenParametersFlagMovedPoint_data();
    void sevenParametersFlagMovedPoint();
    void sevenParametersRefuseDegenerateInput();
};

void TestControlPointFit::fourParametersRecoverModel_data()
{
    QTest::addColumn<QVector<double>>("model"); // DX, DY, T (degrees), K
    QTest::addColumn<int>("count");
    QTest::newRow("two points") << QVector<double>{100.123, -250.5, 0.0123, 1.0000035} << 2;
    QTest::newRow("six points") << QVector<double>{-3512.25, 812.75, -1.25, 0.9999871} << 6;
    QTest::newRow("half turn") << QVector<double>{0, 0, 180.0, 1.0} << 4;
}

void TestControlPointFit::fourParametersRecoverModel()
{
    QFETCH(QVector<double>, model);
    QFETCH(int, count);
    const double t = model[2] * kPi / 180.0;
    std::vector<double> sx, sy, dx, dy;
    for (int i = 0; i < count; ++i) {
        const double x = 3400000.0 + 1234.5 * i + 77.0 * (i % 3), y = 500000.0 - 987.25 * i + 300.0 * (i % 2);
        sx.push_back(x);
        sy.push_back(y);
        dx.push_back(model[0] + model[3] * (x * std::cos(t) - y * std::sin(t)));
        dy.push_back(model[1] + model[3] * (x * std::sin(t) + y * std::cos(t)));
    }
    std::vector<double> residuals(size_t(count), -1);
    Result r(CoordFuncLibrary::Calculate4Params(sx.data(), sy.data(), dx.data(), dy.data(), count, residuals.data()));
    QVERIFY(r);
    QVERIFY2(std::fabs(r.get()[0] - model[0]) < 1e-4, qPrintable(QString::number(r.get()[0], 'f', 9)));
    QVERIFY2(std::fabs(r.get()[1] - model[1]) < 1e-4, qPrintable(QString::number(r.get()[1], 'f', 9)));
    QVERIFY2(std::fabs(std::remainder(r.get()[2] - model[2], 360.0)) < 1e-10, qPrintable(QString::number(r.get()[2], 'g', 17)));
    QVERIFY(std::fabs(r.get()[3] - model[3]) < 1e-12);
    for (double v : residuals)
        QVERIFY(v >= 0 && v < 1e-5);

    // Moving one target by 0.5 m gives that point the largest residual.
    dy[1] += 0.5;
    Result moved(CoordFuncLibrary::Calculate4Params(sx.data(), sy.data(), dx.data(), dy.data(), count, residuals.data()));
    QVERIFY(moved);
    if (count > 2) {
        const auto largest = std::max_element(residuals.begin(), residuals.end()) - residuals.begin();
        QCOMPARE(int(largest), 1);
        QVERIFY2(residuals[1] > 0.2 && residuals[1] <= 0.5, qPrintable(QString::number(residuals[1])));
    }
}

void TestControlPointFit::fourParametersRefuseDegenerateInput()
{
    double sx[3] = {3400000.0, 3400000.0, 3400000.0}, sy[3] = {500000.0, 500000.0, 500000.0};
    double dx[3] = {3400010.0, 3400020.0, 3400030.0}, dy[3] = {500010.0, 500020.0, 500030.0};
    double res[3];
    QVERIFY(!CoordFuncLibrary::Calculate4Params(sx, sy, dx, dy, 3, res)); // identical sources
    QVERIFY(!CoordFuncLibrary::Calculate4Params(sx, sy, dx, dy, 1, res)); // too few
    double sx2[2] = {3400000.0, 3401000.0}, sy2[2] = {500000.0, 501000.0};
    double dx2[2] = {3400000.0, 3400000.0}, dy2[2] = {500000.0, 500000.0};
    QVERIFY(!CoordFuncLibrary::Calculate4Params(sx2, sy2, dx2, dy2, 2, res)); // identical targets: no scale
    double nan2[2] = {std::nan(""), 3401000.0};
    QVERIFY(!CoordFuncLibrary::Calculate4Params(nan2, sy2, sx2, sy2, 2, res));
}

void TestControlPointFit::sevenParametersRecoverModel_data()
{
    QTest::addColumn<QVector<double>>("model"); // DX, DY, DZ, ω, κ, γ (″), m
    QTest::addColumn<int>("count");
    QTest::newRow("three points") << QVector<double>{-12.3, -130.9, -83.5, 1.2, -2.8, 4.5, 3.2e-6} << 3;
    QTest::newRow("eight points") << QVector<double>{15.8, -154.4, -82.3, -0.35, 0.72, -1.9, -5.1e-6} << 8;
    QTest::newRow("large rotations") << QVector<double>{100, 200, -300, 30, -45, 60, 12e-6} << 5;
}

void TestControlPointFit::sevenParametersRecoverModel()
{
    QFETCH(QVector<double>, model);
    QFETCH(int, count);
    GeocentricPoints g = helmertPoints(model.constData(), count);
    std::vector<double> plane, height;
    Result r = calc7(g, plane, height);
    QVERIFY(r);
    for (int i = 0; i < 3; ++i)
        QVERIFY2(std::fabs(r.get()[i] - model[i]) < 1e-3, qPrintable(QString::number(r.get()[i], 'f', 9)));
    for (int i = 3; i < 6; ++i)
        QVERIFY2(std::fabs(r.get()[i] - model[i]) < 1e-5, qPrintable(QString::number(r.get()[i], 'f', 9)));
    QVERIFY2(std::fabs(r.get()[6] - model[6]) < 1e-10, qPrintable(QString::number(r.get()[6], 'g', 9)));
    for (int i = 0; i < count; ++i)
        QVERIFY(plane[size_t(i)] >= 0 && plane[size_t(i)] < 1e-6 && std::fabs(height[size_t(i)]) < 1e-6);
}

void TestControlPointFit::sevenParametersInvertTheShift()
{
    // Points shifted by CoordinateTransformation_7Param and brought to
    // geocentric coordinates give back the parameters it was set with.
    const double p[7] = {-24.5, -120.1, -90.8, 0.8, -1.7, 2.3, 1.9e-6};
    CoordinateTransformation_7Param ct;
    ct.SetCT7Param(p[0], p[1], p[2], p[3], p[4], p[5], p[6]);
    ct.SetSourceSpheroid(6378245.0, 0, 1.0 / 298.3);
    ct.SetTargetSpheroid(6378137.0, 0, 1.0 / 298.257222101);
    const int n = 6;
    double sb[n], sl[n], sh[n], db[n], dl[n], dh[n];
    for (int i = 0; i < n; ++i) {
        sb[i] = db[i] = 35.0 + 0.4 * i;
        sl[i] = dl[i] = 110.0 + 0.7 * (i % 3);
        sh[i] = dh[i] = 100.0 * i;
    }
    QVERIFY(ct.ConvertBLHToBLH(n, db, dl, dh));
    QVERIFY(CoordFuncLibrary::ConvertBLHToXYZ(Spheroid(QString(), 6378245.0, 298.3), sb, sl, sh, n));
    QVERIFY(CoordFuncLibrary::ConvertBLHToXYZ(Spheroid(QString(), 6378137.0, 298.257222101), db, dl, dh, n));
    double plane[n], height[n];
    Result r(CoordFuncLibrary::Calculate7Params(sb, sl, sh, db, dl, dh, n, plane, height));
    QVERIFY(r);
    for (int i = 0; i < 7; ++i) {
        const double tolerance = i < 3 ? 1e-3 : i < 6 ? 1e-5 : 1e-10;
        QVERIFY2(std::fabs(r.get()[i] - p[i]) < tolerance, qPrintable(QString::number(i)));
    }
}

void TestControlPointFit::sevenParametersFlagMovedPoint_data()
{
    QTest::addColumn<bool>("vertical");
    QTest::newRow("moved up") << true;
    QTest::newRow("moved east") << false;
}

void TestControlPointFit::sevenParametersFlagMovedPoint()
{
    QFETCH(bool, vertical);
    const double p[7] = {15.8, -154.4, -82.3, -0.35, 0.72, -1.9, -5.1e-6};
    GeocentricPoints g = helmertPoints(p, 8);
    const int moved = 5;
    const double lon = std::atan2(g.dy[moved], g.dx[moved]);
    const double lat = std::atan2(g.dz[moved], std::hypot(g.dx[moved], g.dy[moved])); // near enough for a direction
    if (vertical) {
        g.dx[moved] += 0.5 * std::cos(lat) * std::cos(lon);
        g.dy[moved] += 0.5 * std::cos(lat) * std::sin(lon);
        g.dz[moved] += 0.5 * std::sin(lat);
    } else {
        g.dx[moved] += -0.5 * std::sin(lon);
        g.dy[moved] += 0.5 * std::cos(lon);
    }
    std::vector<double> plane, height;
    Result r = calc7(g, plane, height);
    QVERIFY(r);
    const std::vector<double>& flagged = vertical ? height : plane;
    std::vector<double> magnitude;
    for (double v : flagged)
        magnitude.push_back(std::fabs(v));
    QCOMPARE(int(std::max_element(magnitude.begin(), magnitude.end()) - magnitude.begin()), moved);
    QVERIFY2(magnitude[moved] > 0.3 && magnitude[moved] <= 0.5, qPrintable(QString::number(magnitude[moved])));
    if (vertical)
        QVERIFY(height[moved] > 0); // observed above the model
}

void TestControlPointFit::sevenParametersRefuseDegenerateInput()
{
    const double p[7] = {1, 2, 3, 0, 0, 0, 0};
    std::vector<double> plane, height;
    GeocentricPoints two = helmertPoints(p, 2);
    QVERIFY(!calc7(two, plane, height));

    GeocentricPoints same = helmertPoints(p, 3);
    for (auto* v : {&same.sx, &same.sy, &same.sz, &same.dx, &same.dy, &same.dz})
        std::fill(v->begin(), v->end(), v->front());
    QVERIFY(!calc7(same, plane, height));

    // Collinear points leave the rotation about their line open.
    GeocentricPoints line = helmertPoints(p, 4);
    for (size_t i = 1; i < 4; ++i) {
        line.sx[i] = line.sx[0] + 1000.0 * i;
        line.sy[i] = line.sy[0] + 2000.0 * i;
        line.sz[i] = line.sz[0] - 500.0 * i;
        line.dx[i] = line.sx[i] + 1;
        line.dy[i] = line.sy[i] + 2;
        line.dz[i] = line.sz[i] + 3;
    }
    QVERIFY(!calc7(line, plane, height));
}

KIV_TEST_CLASS(TestControlPointFit)
#include "tst_ControlPointFit.moc"
