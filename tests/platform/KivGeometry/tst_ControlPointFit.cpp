#include "support/ProjReference.h"
#include "support/TestData.h"
#include "support/TestRegistry.h"

#include "KivGeometry/CoordFuncLibrary.h"

#include <QTest>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <vector>

using KivGeometry::CoordFuncLibrary;

namespace {

struct Freed
{
    void operator()(double* p) const { std::free(p); }
};
using Result = std::unique_ptr<double, Freed>;

// Source X, Y, Z and target X, Y, Z of each control point.
using GeocentricPoints = std::array<std::vector<double>, 6>;

// Geocentric control points on Krasovsky around Wuhan, and their images under
// PROJ's coordinate-frame Helmert with `p` (DX, DY, DZ m; ω, κ, γ ″; m).
GeocentricPoints helmertPoints(const QVector<double>& p, int count)
{
    GeocentricPoints g;
    const KivTest::ProjReference cart(QStringLiteral("+proj=cart +ellps=krass"));
    const KivTest::ProjReference helmert(
        QStringLiteral("+proj=helmert +x=%1 +y=%2 +z=%3 +rx=%4 +ry=%5 +rz=%6 +s=%7 +convention=coordinate_frame")
            .arg(p[0], 0, 'g', 17).arg(p[1], 0, 'g', 17).arg(p[2], 0, 'g', 17).arg(p[3], 0, 'g', 17)
            .arg(p[4], 0, 'g', 17).arg(p[5], 0, 'g', 17).arg(p[6] * 1e6, 0, 'g', 17));
    for (int i = 0; i < count; ++i) {
        double x = proj_torad(113.5 + 0.37 * (i % 4)), y = proj_torad(30.1 + 0.29 * (i / 4) + 0.05 * i),
               z = 20.0 + 35.0 * i;
        cart.transform(x, y, z);
        g[0].push_back(x), g[1].push_back(y), g[2].push_back(z);
        helmert.transform(x, y, z);
        g[3].push_back(x), g[4].push_back(y), g[5].push_back(z);
    }
    return g;
}

Result calc7(GeocentricPoints& g, std::vector<double>& plane, std::vector<double>& height)
{
    plane.assign(g[0].size(), -1);
    height.assign(g[0].size(), -1);
    return Result(CoordFuncLibrary::Calculate7Params(g[0].data(), g[1].data(), g[2].data(), g[3].data(), g[4].data(),
                                                     g[5].data(), int(g[0].size()), plane.data(), height.data()));
}

int largest(const std::vector<double>& v)
{
    return int(std::max_element(v.begin(), v.end(), [](double a, double b) { return std::fabs(a) < std::fabs(b); })
               - v.begin());
}

} // namespace

// The four-parameter values and residuals are checked where the calculation
// dialog shows them.
class TestControlPointFit : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }
    void sevenParameters_data();
    void sevenParameters();
    void singularInputGivesNull();
};

void TestControlPointFit::sevenParameters_data()
{
    QTest::addColumn<QVector<double>>("model"); // DX, DY, DZ m; ω, κ, γ ″; m
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("move"); // one target moved by 0.5 m
    QTest::newRow("three points") << QVector<double>{-12.3, -130.9, -83.5, 1.2, -2.8, 4.5, 3.2e-6} << 3 << "";
    QTest::newRow("moved up") << QVector<double>{15.8, -154.4, -82.3, -0.35, 0.72, -1.9, -5.1e-6} << 8 << "up";
    QTest::newRow("large rotations, moved east") << QVector<double>{100, 200, -300, 30, -45, 60, 12e-6} << 8 << "east";
}

void TestControlPointFit::sevenParameters()
{
    QFETCH(QVector<double>, model);
    QFETCH(int, count);
    QFETCH(QString, move);
    GeocentricPoints g = helmertPoints(model, count);
    std::vector<double> plane, height;
    Result r = calc7(g, plane, height);
    QVERIFY(r);
    for (int i = 0; i < 7; ++i) {
        const double tolerance = i < 3 ? 1e-3 : i < 6 ? 1e-5 : 1e-10;
        QVERIFY2(std::fabs(r.get()[i] - model[i]) < tolerance, qPrintable(QString::number(r.get()[i], 'g', 12)));
    }
    for (int i = 0; i < count; ++i)
        QVERIFY(plane[size_t(i)] >= 0 && plane[size_t(i)] < 1e-6 && std::fabs(height[size_t(i)]) < 1e-6);
    if (move.isEmpty())
        return;

    const size_t moved = 5;
    const double lon = std::atan2(g[4][moved], g[3][moved]);
    const double lat = std::atan2(g[5][moved], std::hypot(g[3][moved], g[4][moved])); // near enough for a direction
    const bool up = move == QLatin1String("up");
    const double step[3] = {up ? std::cos(lat) * std::cos(lon) : -std::sin(lon),
                            up ? std::cos(lat) * std::sin(lon) : std::cos(lon), up ? std::sin(lat) : 0.0};
    for (size_t k = 0; k < 3; ++k)
        g[3 + k][moved] += 0.5 * step[k];
    QVERIFY(calc7(g, plane, height));
    const std::vector<double>& flagged = up ? height : plane;
    QCOMPARE(largest(flagged), int(moved));
    QVERIFY2(flagged[moved] > 0.3 && flagged[moved] <= 0.5, // up: observed above the model
             qPrintable(QString::number(flagged[moved])));
}

void TestControlPointFit::singularInputGivesNull()
{
    double sx[3] = {3400000.0, 3400000.0, 3400000.0}, sy[3] = {500000.0, 500000.0, 500000.0};
    double dx[3] = {3400010.0, 3400020.0, 3400030.0}, dy[3] = {500010.0, 500020.0, 500030.0}, res[3];
    QVERIFY(!CoordFuncLibrary::Calculate4Params(sx, sy, dx, dy, 3, res)); // identical sources
    QVERIFY(!CoordFuncLibrary::Calculate4Params(dx, dy, dx, dy, 1, res)); // too few
    QVERIFY(!CoordFuncLibrary::Calculate4Params(dx, dy, sx, sy, 2, res)); // identical targets: no scale
    double nan[2] = {std::nan(""), 3401000.0};
    QVERIFY(!CoordFuncLibrary::Calculate4Params(nan, dy, dx, dy, 2, res));

    const QVector<double> shift{1, 2, 3, 0, 0, 0, 0};
    std::vector<double> plane, height;
    GeocentricPoints two = helmertPoints(shift, 2);
    QVERIFY(!calc7(two, plane, height));
    GeocentricPoints same = helmertPoints(shift, 3);
    for (std::vector<double>& v : same)
        std::fill(v.begin(), v.end(), v.front());
    QVERIFY(!calc7(same, plane, height));
    // Collinear points leave the rotation about their line open.
    GeocentricPoints line = helmertPoints(shift, 4);
    const double direction[3] = {1000.0, 2000.0, -500.0};
    for (size_t i = 1; i < 4; ++i) {
        for (size_t k = 0; k < 3; ++k) {
            line[k][i] = line[k][0] + direction[k] * i;
            line[3 + k][i] = line[k][i] + 1.0 + k;
        }
    }
    QVERIFY(!calc7(line, plane, height));
}

KIV_TEST_CLASS(TestControlPointFit)
#include "tst_ControlPointFit.moc"
