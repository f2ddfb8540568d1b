#include "models/ControlPointQuality.h"

#include "support/TestRegistry.h"

#include "KivGeometry/CoordFuncLibrary.h"

#include <QTest>

#include <cmath>
#include <cstdlib>

using Quality = ControlPointQuality;
using Columns = QVector<QVector<double>>;

namespace {

// Target = similarity of the source (K, T degrees, shift), plus `errors`
// (point, coordinate 0 = X / 1 = Y, metres).
Columns similarity(const QVector<QPointF>& src, double k, double tDeg, double dx, double dy,
                   const QVector<QVector<double>>& errors = {})
{
    Columns c(4);
    const double t = tDeg * M_PI / 180;
    for (const QPointF& p : src) {
        c[0] << p.x();
        c[1] << p.y();
        c[2] << dx + k * (p.x() * std::cos(t) - p.y() * std::sin(t));
        c[3] << dy + k * (p.x() * std::sin(t) + p.y() * std::cos(t));
    }
    for (const QVector<double>& e : errors)
        c[2 + int(e[1])][int(e[0])] += e[2];
    return c;
}

bool allFinite(const Quality& q)
{
    QVector<double> all = q.Parameters() + q.StandardDeviations() + q.RobustParameters();
    for (const Quality::Point& p : q.Points())
        all << p.plane << p.height << p.checkPlane << p.checkHeight << p.wPlane << p.wHeight << p.robustWeight;
    for (double v : all) {
        if (!std::isfinite(v))
            return false;
    }
    return std::isfinite(q.Sigma0());
}

} // namespace

class tst_ControlPointQuality : public QObject
{
    Q_OBJECT
private slots:
    // A 100 m square, identity, 4 cm on the X of (100, 100). By symmetry every
    // observation has redundancy 1/2 and the blunder's residual is 2 cm, so
    // vᵀv = δ²/2 over 4 degrees of freedom: sigma0 = δ / (2√2); the scale's
    // standard deviation is sigma0 / √Σ(x² + y²) = 1e-4, the shift's
    // sigma0 √(1/4 + |mean|² / Σ(x² + y²)) = 0.01 m.
    void squareByHand()
    {
        const Columns c = similarity({{0, 0}, {100, 0}, {0, 100}, {100, 100}}, 1, 0, 0, 0, {{3, 0, 0.04}});
        const Quality q = Quality::Analyse(Quality::FourParameters, c, {"1", "2", "3", "4"});
        QVERIFY(q.IsValid());
        QCOMPARE(q.DegreesOfFreedom(), 4);
        QVERIFY(std::abs(q.Sigma0() - 0.04 / (2 * std::sqrt(2.0))) < 1e-12);
        QVERIFY(std::abs(q.StandardDeviations()[3] - 1e-4) < 1e-12);
        QVERIFY(std::abs(q.StandardDeviations()[0] - 0.01) < 1e-10);
        QVERIFY(std::abs(q.StandardDeviations()[2] - 1e-4 / q.Parameters()[3] * 180 / M_PI) < 1e-12);
        QVERIFY(std::abs(q.Points()[3].plane - 0.02) < 1e-12);
        // Against the other three (an exact square corner) it misses by δ.
        QVERIFY(std::abs(q.Points()[3].checkPlane - 0.04) < 1e-12);
        QCOMPARE(q.FlaggedIds(), QStringList{"4"});
        QVERIFY(q.Points()[3].flaggedInHeight == false);
        QVERIFY(allFinite(q));
    }

    // Plain parameters are the library's; the robust ones are the model
    // without the blunders, which get weight 0 and are the only ones named.
    void blunderFourAndSeven_data()
    {
        QTest::addColumn<bool>("seven");
        QTest::addColumn<int>("coordinate");
        QTest::addColumn<int>("second");  // another wrong point, or -1
        QTest::newRow("four, X") << false << 0 << -1;
        QTest::newRow("four, Y") << false << 1 << -1;
        QTest::newRow("four, two") << false << 1 << 2;
        QTest::newRow("seven, east") << true << 0 << -1;
        QTest::newRow("seven, up") << true << 2 << -1;
        QTest::newRow("seven, two") << true << 0 << 7;
    }
    void blunderFourAndSeven()
    {
        QFETCH(bool, seven);
        QFETCH(int, coordinate);
        QFETCH(int, second);
        QVector<QPointF> grid;
        for (int i = 0; i < 9; ++i)
            grid << QPointF(3400000 + 9000.0 * (i % 3) + 700 * (i % 2), 38500000 + 8000.0 * (i / 3) + 300 * i);
        Columns c;
        QVector<double> exact;
        if (!seven) {
            c = similarity(grid, 1.000012, 0.0021, -215.3, 88.7, {{5, double(coordinate), 0.3}});
            if (second >= 0)
                c[2 + coordinate][second] -= 0.25;
            exact = {-215.3, 88.7, 0.0021, 1.000012};
        } else {
            // Geocentric points near 30°N 114°E; target = 7-parameter model.
            c = Columns(6);
            const double mu = 1 + 3.2e-6, rho = 180 * 3600 / M_PI;
            const double w = 1.2 / rho, k = -2.8 / rho, g = 4.5 / rho;
            for (int i = 0; i < grid.size(); ++i) {
                const double b = (30 + (grid[i].x() - 3400000) / 111000) * M_PI / 180,
                             l = (114 + (grid[i].y() - 38500000) / 96000) * M_PI / 180, h = 40.0 + 7 * i;
                const double N = 6378245 / std::sqrt(1 - 0.006693421622966 * std::pow(std::sin(b), 2));
                const double X = (N + h) * std::cos(b) * std::cos(l), Y = (N + h) * std::cos(b) * std::sin(l),
                             Z = (N * (1 - 0.006693421622966) + h) * std::sin(b);
                c[0] << X, c[1] << Y, c[2] << Z;
                c[3] << -12.3 + mu * (X + g * Y - k * Z);
                c[4] << -130.9 + mu * (-g * X + Y + w * Z);
                c[5] << -83.5 + mu * (k * X - w * Y + Z);
            }
            exact = {-12.3, -130.9, -83.5, 1.2, -2.8, 4.5, 3.2e-6};
            // 0.3 m (-0.25 m at the second) along the point's east or up.
            for (int p : {5, second}) {
                if (p < 0)
                    continue;
                const double b = std::atan2(c[5][p], std::hypot(c[3][p], c[4][p])), l = std::atan2(c[4][p], c[3][p]);
                const double dir[2][3] = {{-std::sin(l), std::cos(l), 0},
                                          {std::cos(b) * std::cos(l), std::cos(b) * std::sin(l), std::sin(b)}};
                for (int a = 0; a < 3; ++a)
                    c[3 + a][p] += (p == 5 ? 0.3 : -0.25) * dir[coordinate == 2][a];
            }
        }
        QVector<double*> col;
        for (QVector<double>& v : c)
            col << v.data();
        QVector<double> r1(9), r2(9);
        double* plain = seven ? KivGeometry::CoordFuncLibrary::Calculate7Params(col[0], col[1], col[2], col[3], col[4],
                                                                               col[5], 9, r1.data(), r2.data())
                              : KivGeometry::CoordFuncLibrary::Calculate4Params(col[0], col[1], col[2], col[3], 9,
                                                                               r1.data());
        QVERIFY(plain);
        QStringList ids;
        for (int i = 0; i < 9; ++i)
            ids << QString::number(101 + i);
        const Quality q = Quality::Analyse(seven ? Quality::SevenParameters : Quality::FourParameters, c, ids, plain);
        for (int i = 0; i < q.ParameterCount(); ++i)
            QCOMPARE(q.Parameters()[i], plain[i]);
        std::free(plain);
        QStringList named{"106"};
        if (second >= 0)
            named.insert(second > 5 ? 1 : 0, ids[second]);
        QCOMPARE(q.FlaggedIds(), named);
        QCOMPARE(q.Points()[5].flaggedInHeight, coordinate == 2);
        QVERIFY(q.HasRobust());
        const double tolerance[7] = {1e-4, 1e-4, 1e-4, 1e-6, 1e-6, 1e-6, 1e-10};
        for (int i = 0; i < q.ParameterCount(); ++i)
            QVERIFY2(std::abs(q.RobustParameters()[i] - exact[i]) < (seven ? tolerance[i] : i < 2 ? 1e-4 : 1e-10),
                     qPrintable(QString::number(q.RobustParameters()[i] - exact[i])));
        for (int i = 0; i < 9; ++i)
            QCOMPARE(q.Points()[i].robustWeight, i == 5 || i == second ? 0.0 : 1.0);
        QVERIFY(allFinite(q));
    }

    // Bad input: a line that says why, nothing that is not a number.
    void badInput_data()
    {
        QTest::addColumn<bool>("seven");
        QTest::addColumn<Columns>("columns");
        QTest::addColumn<bool>("valid");
        QTest::addColumn<QString>("note");
        const Columns two = similarity({{0, 0}, {100, 0}}, 1, 0, 0, 0);
        QTest::newRow("two points") << false << two << true << "No redundancy";
        QTest::newRow("one point") << false << similarity({{0, 0}}, 1, 0, 0, 0) << false << "Too few points";
        QTest::newRow("identical") << false << similarity({{5, 5}, {5, 5}, {5, 5}}, 1, 0, 0, 0) << false
                                   << "coincide";
        QTest::newRow("NaN") << false << similarity({{0, 0}, {1, NAN}}, 1, 0, 0, 0) << false << "not a number";
        Columns line(6);
        for (int i = 0; i < 4; ++i) {
            for (int k = 0; k < 6; ++k)
                line[k] << 1000.0 * i + (k >= 3 ? 5 : 0);
        }
        QTest::newRow("collinear seven") << true << line << false << "collinear";
        QTest::newRow("three points") << false << similarity({{0, 0}, {100, 0}, {0, 100}}, 1, 0, 0, 0) << true
                                      << "robust fit needs at least 4";
    }
    void badInput()
    {
        QFETCH(bool, seven);
        QFETCH(Columns, columns);
        QFETCH(bool, valid);
        QFETCH(QString, note);
        const Quality q = Quality::Analyse(seven ? Quality::SevenParameters : Quality::FourParameters, columns, {});
        QCOMPARE(q.IsValid(), valid);
        QVERIFY2(q.Notes().join('\n').contains(note), qPrintable(q.Notes().join('\n')));
        QVERIFY(allFinite(q));
    }

    void missingHeightIsNamed()
    {
        Columns c(6);
        for (int i = 0; i < 5; ++i) {
            const double v[6] = {-2.2e6 + 900 * i, 5.0e6 + 300 * (i % 2), 3.2e6 + 700 * (i % 3)};
            for (int k = 0; k < 3; ++k) {
                c[k] << v[k];
                c[3 + k] << v[k] + 10;
            }
        }
        const Quality q = Quality::Analyse(Quality::SevenParameters, c, {}, nullptr, {false, false, true});
        QVERIFY(q.Notes().join('\n').contains("Point 3: its height is missing"));
    }
};

KIV_TEST_CLASS(tst_ControlPointQuality)
#include "tst_ControlPointQuality.moc"
