#include "models/ControlPointQuality.h"

#include "KivGeometry/ControlPointFit.h"

#include <Eigen/Dense>
#include <boost/math/distributions/students_t.hpp>

#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kArcSecondsPerRadian = 648000.0 / kPi;
// As in ControlPointFit: a system whose smallest singular value is below this
// share of its largest does not fix the model.
constexpr double kConditionLimit = 1e-6;
// A residual standard deviation below 0.1 mm is taken as 0.1 mm, so that
// exact (computed) data give small w instead of dividing by nothing.
constexpr double kSigmaFloor = 1e-4;
// An observation with a smaller redundancy number is fixed by the model and
// cannot be tested.
constexpr double kMinRedundancy = 1e-3;
constexpr int kMaxRobustIterations = 50;
constexpr int kMaxSubsets = 2000;

double median(std::vector<double> values)
{
    if (values.empty())
        return 0;
    const size_t mid = values.size() / 2;
    std::nth_element(values.begin(), values.begin() + mid, values.end());
    double m = values[mid];
    if (values.size() % 2 == 0)
        m = (m + *std::max_element(values.begin(), values.begin() + mid)) / 2;
    return m;
}

// IGG III: full weight up to k0, down to nothing at k1, nothing beyond.
double iggWeight(double u, double k0, double k1)
{
    if (u <= k0)
        return 1;
    if (u >= k1)
        return 0;
    const double t = (k1 - u) / (k1 - k0);
    return k0 / u * t * t;
}

} // namespace

/// The linear model shared by every fit of one analysis: observations in
/// each target point's north/east (four) or east/north/up (seven) frame,
/// unknowns a shift on centred coordinates and the scaled linear terms.
class ControlPointQualityEngine
{
public:
    using Model = ControlPointQuality::Model;

    struct Fit
    {
        bool ok = false;
        Eigen::VectorXd q, v, r;
        Eigen::MatrixXd Q;
    };

    Model model;
    int n = 0, per = 0, u = 0;
    Eigen::MatrixXd A;
    Eigen::VectorXd l;
    std::vector<int> group;  // 0 plane, 1 height
    Eigen::Vector3d ms = Eigen::Vector3d::Zero(), md = Eigen::Vector3d::Zero();
    double spread = 0;

    bool build(Model m, const QVector<QVector<double>>& c, QVector<ControlPointQuality::Point>& points)
    {
        model = m;
        n = c.first().size();
        const bool four = m == ControlPointQuality::FourParameters;
        per = four ? 2 : 3;
        u = four ? 4 : 7;
        const int half = four ? 2 : 3;
        for (int i = 0; i < n; ++i) {
            for (int k = 0; k < half; ++k) {
                ms(k) += c[k][i] / n;
                md(k) += c[half + k][i] / n;
            }
        }
        for (int i = 0; i < n; ++i) {
            for (int k = 0; k < half; ++k)
                spread += (c[k][i] - ms(k)) * (c[k][i] - ms(k));
        }
        spread = std::sqrt(spread / n);
        if (!(spread > 1e-9 * std::max(1.0, ms.norm())))
            return false;

        A.setZero(n * per, u);
        l.setZero(n * per);
        group.assign(size_t(n * per), 0);
        Eigen::Vector3d e0, n0, up0;
        KivGeometry::ControlPointFit::localFrame(md, e0, n0, up0);
        for (int i = 0; i < n; ++i) {
            if (four) {
                const double x = (c[0][i] - ms(0)) / spread, y = (c[1][i] - ms(1)) / spread;
                A.row(2 * i) << 1, 0, x, -y;
                A.row(2 * i + 1) << 0, 1, y, x;
                l(2 * i) = c[2][i] - md(0);
                l(2 * i + 1) = c[3][i] - md(1);
                points[i].north = l(2 * i);
                points[i].east = l(2 * i + 1);
                continue;
            }
            const Eigen::Vector3d s = (Eigen::Vector3d(c[0][i], c[1][i], c[2][i]) - ms) / spread;
            const Eigen::Vector3d t(c[3][i], c[4][i], c[5][i]);
            Eigen::Matrix<double, 3, 7> g;
            g << 1, 0, 0, s.x(), 0, -s.z(), s.y(),
                 0, 1, 0, s.y(), s.z(), 0, -s.x(),
                 0, 0, 1, s.z(), -s.y(), s.x(), 0;
            Eigen::Vector3d east, north, up;
            KivGeometry::ControlPointFit::localFrame(t, east, north, up);
            Eigen::Matrix3d R;
            R.row(0) = east;
            R.row(1) = north;
            R.row(2) = up;
            A.block(3 * i, 0, 3, 7) = R * g;
            l.segment<3>(3 * i) = R * (t - md);
            group[size_t(3 * i + 2)] = 1;
            points[i].east = (t - md).dot(e0);
            points[i].north = (t - md).dot(n0);
        }
        return true;
    }

    // Weighted least squares with one weight per observation (0 leaves it out).
    Fit solve(const Eigen::VectorXd& p) const
    {
        Fit f;
        const Eigen::VectorXd sp = p.cwiseSqrt();
        const Eigen::MatrixXd Aw = sp.asDiagonal() * A;
        Eigen::JacobiSVD<Eigen::MatrixXd> svd(Aw, Eigen::ComputeThinU | Eigen::ComputeThinV);
        const Eigen::VectorXd sv = svd.singularValues();
        if (!(sv(0) > 0) || sv(u - 1) < kConditionLimit * sv(0))
            return f;
        f.q = svd.solve(sp.asDiagonal() * l);
        const Eigen::MatrixXd V = svd.matrixV();
        f.Q = V * sv.cwiseInverse().cwiseAbs2().asDiagonal() * V.transpose();
        f.v = l - A * f.q;
        f.r.resize(A.rows());
        for (int i = 0; i < A.rows(); ++i)
            f.r(i) = std::clamp(1.0 - p(i) * A.row(i).dot(f.Q * A.row(i).transpose()), 0.0, 1.0);
        f.ok = f.q.allFinite() && f.v.allFinite();
        return f;
    }

    // The library's parameters from the unknowns, and their Jacobian.
    QVector<double> parameters(const Eigen::VectorXd& q, Eigen::MatrixXd* J) const
    {
        const double s = spread;
        if (model == ControlPointQuality::FourParameters) {
            const double a = q(2) / s, b = q(3) / s, k2 = a * a + b * b, k = std::sqrt(k2);
            const double deg = 180.0 / kPi;
            if (J) {
                J->setZero(4, 4);
                *J << 1, 0, -ms.x() / s, ms.y() / s,
                      0, 1, -ms.y() / s, -ms.x() / s,
                      0, 0, -b / k2 / s * deg, a / k2 / s * deg,
                      0, 0, a / k / s, b / k / s;
            }
            return {md.x() + q(0) - (a * ms.x() - b * ms.y()), md.y() + q(1) - (b * ms.x() + a * ms.y()),
                    std::atan2(b, a) * deg, k};
        }
        const double mu = q(3) / s;
        const Eigen::Vector3d w = q.segment<3>(4) / s;
        const Eigen::Vector3d wm(w.z() * ms.y() - w.y() * ms.z(), -w.z() * ms.x() + w.x() * ms.z(),
                                 w.y() * ms.x() - w.x() * ms.y());
        const Eigen::Vector3d t = md + q.head<3>() - mu * ms - wm;
        if (J) {
            J->setZero(7, 7);
            J->block<3, 3>(0, 0).setIdentity();
            J->block<3, 1>(0, 3) = -ms / s;
            J->block<3, 1>(0, 4) = -Eigen::Vector3d(0, ms.z(), -ms.y()) / s;
            J->block<3, 1>(0, 5) = -Eigen::Vector3d(-ms.z(), 0, ms.x()) / s;
            J->block<3, 1>(0, 6) = -Eigen::Vector3d(ms.y(), -ms.x(), 0) / s;
            for (int k = 0; k < 3; ++k) {
                (*J)(3 + k, 4 + k) = kArcSecondsPerRadian / (mu * s);
                (*J)(3 + k, 3) = -w(k) * kArcSecondsPerRadian / (mu * mu * s);
            }
            (*J)(6, 3) = 1 / s;
        }
        return {t.x(), t.y(), t.z(), w.x() / mu * kArcSecondsPerRadian, w.y() / mu * kArcSecondsPerRadian,
                w.z() / mu * kArcSecondsPerRadian, mu - 1};
    }

    Eigen::VectorXd weights(const std::vector<bool>& active) const
    {
        Eigen::VectorXd p(n * per);
        for (int i = 0; i < n * per; ++i)
            p(i) = active[size_t(i / per)] ? 1 : 0;
        return p;
    }

    // a_i Q a_iᵀ of observation i: how much of the model's own uncertainty
    // a left-out observation's check residual carries.
    double leverage(const Fit& f, int i) const { return A.row(i).dot(f.Q * A.row(i).transpose()); }

    // Starting weights for the robust fit from the minimal subset of points
    // whose exact model leaves the smallest median residual in each group (a
    // least-median fit): two wrong points bend the plain fit so much that a
    // good point can look worse than they do, a subset without them does not.
    // Every subset is tried up to kMaxSubsets, beyond that a fixed sample.
    Eigen::VectorXd subsetStart(int size, double k0, double k1) const
    {
        std::vector<std::vector<int>> subsets;
        std::vector<int> pick(static_cast<size_t>(size));
        for (int k = 0; k < size; ++k)
            pick[size_t(k)] = k;
        double combinations = 1;
        for (int k = 0; k < size; ++k)
            combinations = combinations * (n - k) / (k + 1);
        if (combinations <= kMaxSubsets) {
            for (;;) {
                subsets.push_back(pick);
                int k = size - 1;
                while (k >= 0 && pick[size_t(k)] == n - size + k)
                    --k;
                if (k < 0)
                    break;
                ++pick[size_t(k)];
                for (int j = k + 1; j < size; ++j)
                    pick[size_t(j)] = pick[size_t(j - 1)] + 1;
            }
        } else {
            std::mt19937 rng(20261125);
            while (int(subsets.size()) < kMaxSubsets) {
                std::vector<int> all(static_cast<size_t>(n));
                for (int i = 0; i < n; ++i)
                    all[size_t(i)] = i;
                std::shuffle(all.begin(), all.end(), rng);
                subsets.emplace_back(all.begin(), all.begin() + size);
            }
        }
        double best = std::numeric_limits<double>::infinity();
        double sigma[2] = {kSigmaFloor, kSigmaFloor};
        Eigen::VectorXd bestV;
        for (const std::vector<int>& subset : subsets) {
            std::vector<bool> active(size_t(n), false);
            for (int i : subset)
                active[size_t(i)] = true;
            const Fit f = solve(weights(active));
            if (!f.ok)
                continue;
            double score = 0, m[2] = {kSigmaFloor, kSigmaFloor};
            for (int g = 0; g < 2; ++g) {
                std::vector<double> abs;
                for (int i = 0; i < n * per; ++i) {
                    if (group[size_t(i)] == g)
                        abs.push_back(std::abs(f.v(i)));
                }
                if (abs.empty())
                    continue;
                m[g] = std::max(median(abs), kSigmaFloor);
                score += std::log(m[g]);
            }
            if (score < best) {
                best = score;
                bestV = f.v;
                // Rousseeuw's small-sample factor for a least-median scale.
                for (int g = 0; g < 2; ++g)
                    sigma[g] = 1.4826 * (1 + 5.0 / std::max(1, n * per - u)) * m[g];
            }
        }
        Eigen::VectorXd p = Eigen::VectorXd::Ones(n * per);
        if (bestV.size() == 0)
            return p;
        for (int point = 0; point < n; ++point) {
            double worst = 0;
            for (int i = point * per; i < (point + 1) * per; ++i)
                worst = std::max(worst, std::abs(bestV(i)) / sigma[group[size_t(i)]]);
            p.segment(point * per, per).setConstant(iggWeight(worst, k0, k1));
        }
        return p;
    }

    // Split a point's residual block into north, east, up.
    void components(const Eigen::VectorXd& v, int i, double& north, double& east, double& up) const
    {
        if (per == 2) {
            north = v(2 * i), east = v(2 * i + 1), up = 0;
        } else {
            east = v(3 * i), north = v(3 * i + 1), up = v(3 * i + 2);
        }
    }
};

QStringList ControlPointQuality::FlaggedIds() const
{
    QStringList ids;
    for (const Point& p : m_points) {
        if (p.flagged)
            ids << p.id;
    }
    return ids;
}

void ControlPointQuality::SetPositions(const QVector<double>& x, const QVector<double>& y, const QString& wkt,
                                       bool geographic)
{
    m_hasPositions = !m_points.isEmpty() && x.size() == m_points.size() && y.size() == m_points.size();
    if (!m_hasPositions)
        return;
    for (int i = 0; i < m_points.size(); ++i) {
        m_points[i].mapX = x.at(i);
        m_points[i].mapY = y.at(i);
    }
    m_positionWkt = wkt;
    m_positionsGeographic = geographic;
}

ControlPointQuality ControlPointQuality::Analyse(Model model, const QVector<QVector<double>>& coordinates,
                                                const QStringList& ids, const double* plain,
                                                const QVector<bool>& heightMissing, double k0, double k1)
{
    ControlPointQuality q;
    q.m_model = model;
    q.m_k0 = k0;
    q.m_k1 = k1;
    const bool four = model == FourParameters;
    const int minimum = four ? 2 : 3;
    const int columns = four ? 4 : 6;
    const int n = coordinates.size() == columns ? coordinates.first().size() : 0;
    for (const QVector<double>& column : coordinates) {
        for (double value : column) {
            if (column.size() != n || !std::isfinite(value)) {
                q.m_notes << tr("The control points are incomplete or hold a value that is not a number.");
                return q;
            }
        }
    }
    if (n < minimum) {
        q.m_notes << tr("Too few points: %1 given, the model needs at least %2.").arg(n).arg(minimum);
        return q;
    }
    q.m_points.resize(n);
    for (int i = 0; i < n; ++i) {
        q.m_points[i].id = i < ids.size() ? ids.at(i) : QString::number(i + 1);
        q.m_points[i].heightMissing = !four && heightMissing.value(i);
        if (q.m_points[i].heightMissing)
            q.m_notes << tr("Point %1: its height is missing on one side, so its height residual and height "
                            "test mean nothing.")
                             .arg(q.m_points[i].id);
    }

    ControlPointQualityEngine e;
    if (!e.build(model, coordinates, q.m_points)) {
        q.m_notes << tr("The source points coincide: they fix no model.");
        return q;
    }
    const int obs = n * e.per;
    q.m_observations = obs;
    const std::vector<bool> all(size_t(n), true);
    const auto fit = e.solve(e.weights(all));
    if (!fit.ok) {
        q.m_notes << tr("The points do not fix the model (identical or collinear points).");
        return q;
    }
    q.m_valid = true;
    Eigen::MatrixXd J;
    q.m_parameters = e.parameters(fit.q, &J);
    if (plain) {
        for (int k = 0; k < e.u; ++k)
            q.m_parameters[k] = plain[k];
    }
    for (int i = 0; i < n; ++i) {
        Point& p = q.m_points[i];
        e.components(fit.v, i, p.vNorth, p.vEast, p.vUp);
        p.plane = std::hypot(p.vNorth, p.vEast);
        p.height = p.vUp;
    }

    // Precision of the fit.
    const int dof = obs - e.u;
    if (dof > 0) {
        q.m_hasSigma0 = true;
        q.m_sigma0 = std::sqrt(fit.v.squaredNorm() / dof);
        const Eigen::MatrixXd C = q.m_sigma0 * q.m_sigma0 * J * fit.Q * J.transpose();
        for (int i = 0; i < e.u; ++i)
            q.m_stdDev << std::sqrt(std::max(0.0, C(i, i)));
        for (int i = 0; i < e.u; ++i) {
            for (int j = 0; j < e.u; ++j) {
                const double d = q.m_stdDev[i] * q.m_stdDev[j];
                q.m_correlation << (i == j ? 1.0 : d > 0 ? std::clamp(C(i, j) / d, -1.0, 1.0) : 0.0);
            }
        }
    } else {
        q.m_notes << tr("No redundancy: %1 points fix the %2 parameters exactly, so sigma0, the standard "
                        "deviations and the w-test are unavailable.")
                         .arg(n)
                         .arg(e.u);
    }

    // Check residuals: each point against the model of all the others.
    if (n - 1 < minimum) {
        q.m_notes << tr("Check residuals need at least %1 points.").arg(minimum + 1);
    } else {
        for (int i = 0; i < n; ++i) {
            std::vector<bool> others = all;
            others[size_t(i)] = false;
            const auto without = e.solve(e.weights(others));
            Point& p = q.m_points[i];
            if (!without.ok) {
                q.m_notes << tr("Point %1: no check residual, the other points do not fix the model.").arg(p.id);
                continue;
            }
            double north, east, up;
            e.components(without.v, i, north, east, up);
            p.checkAvailable = true;
            p.checkPlane = std::hypot(north, east);
            p.checkHeight = up;
        }
    }

    // Robust fit: IGG III weights from standardised residuals, iterated from
    // the weights `p`; an empty vector when a weighted fit fails.
    const auto robust = [&](Eigen::VectorXd p, bool medianFirst, int* iterations) {
        double sigma[2] = {kSigmaFloor, kSigmaFloor};
        for (int it = 1; it <= kMaxRobustIterations; ++it) {
            const auto rf = e.solve(p);
            if (!rf.ok)
                return Eigen::VectorXd();
            *iterations = it;
            // The scale of each group: from the median of the plain fit's
            // standardised residuals when starting from it (several wrong
            // points do not inflate it), otherwise from the weighted fit,
            // Σ p v² / Σ p r (a median re-taken on reweighted residuals
            // shrinks and drags good points down).
            for (int g = 0; g < 2; ++g) {
                double vv = 0, rr = 0;
                std::vector<double> scaled;
                for (int i = 0; i < obs; ++i) {
                    if (e.group[size_t(i)] == g) {
                        vv += p(i) * rf.v(i) * rf.v(i);
                        rr += p(i) * rf.r(i);
                        scaled.push_back(std::abs(rf.v(i)) / std::sqrt(std::max(rf.r(i), kMinRedundancy)));
                    }
                }
                const double s = it == 1 && medianFirst ? 1.4826 * median(scaled) : rr > 0.5 ? std::sqrt(vv / rr) : 0;
                sigma[g] = std::max(s, kSigmaFloor);
            }
            // One weight per point, from its worst component: a wrong point
            // number spoils every coordinate of the point.
            Eigen::VectorXd next(obs);
            for (int point = 0; point < n; ++point) {
                double u = 0;
                for (int i = point * e.per; i < (point + 1) * e.per; ++i) {
                    if (rf.r(i) > kMinRedundancy)
                        u = std::max(u, std::abs(rf.v(i)) / (sigma[e.group[size_t(i)]] * std::sqrt(rf.r(i))));
                }
                next.segment(point * e.per, e.per).setConstant(iggWeight(u, k0, k1));
            }
            const double change = (next - p).cwiseAbs().maxCoeff();
            p = next;
            if (change < 1e-6)
                break;
        }
        return e.solve(p).ok ? p : Eigen::VectorXd();
    };
    const bool robustPossible = n >= minimum + 2;
    if (!robustPossible)
        q.m_notes << tr("The robust fit needs at least %1 points.").arg(minimum + 2);
    // The reported robust fit starts from the plain one without the named
    // points (from the plain one when none is named).
    const auto finishRobust = [&] {
        if (!robustPossible)
            return;
        Eigen::VectorXd start = Eigen::VectorXd::Ones(obs);
        bool named = false;
        for (int i = 0; i < n; ++i) {
            if (q.m_points[i].flagged) {
                start.segment(i * e.per, e.per).setZero();
                named = true;
            }
        }
        Eigen::VectorXd p = robust(start, !named, &q.m_robustIterations);
        if (p.size() == 0 && named)
            p = robust(Eigen::VectorXd::Ones(obs), true, &q.m_robustIterations);
        if (p.size() == 0) {
            q.m_notes << tr("The robust fit failed: the points it keeps do not fix the model.");
            return;
        }
        q.m_hasRobust = true;
        q.m_robust = e.parameters(e.solve(p).q, nullptr);
        for (int i = 0; i < n; ++i)
            q.m_points[i].robustWeight = p.segment(i * e.per, e.per).minCoeff();
    };

    // Data snooping. Every observation is tested with w = v / (s √r), s the
    // residual standard deviation of its group without it (or, for a point
    // left out, its check residual against the others' model); the point of
    // the largest |w| above the critical value is named, left out, and the
    // rest tested again. The points the robust fit rejected are left out
    // first, so that two wrong points cannot hide each other; each of them is
    // named only if its own test says so.
    struct Pass
    {
        bool ok = false;
        Eigen::VectorXd w;
        double critical[2] = {0, 0};
        double alpha = 0;
    };
    const auto test = [&](const std::vector<bool>& active) {
        Pass pass;
        const auto f = e.solve(e.weights(active));
        if (!f.ok)
            return pass;
        double R[2] = {0, 0}, omega[2] = {0, 0};
        bool used[2] = {false, false};
        for (int i = 0; i < obs; ++i) {
            if (!active[size_t(i / e.per)])
                continue;
            const int g = e.group[size_t(i)];
            used[g] = true;
            R[g] += f.r(i);
            omega[g] += f.v(i) * f.v(i);
        }
        for (int g = 0; g < 2; ++g) {
            if (used[g] && R[g] < 2 - 1e-9)
                return pass;
        }
        pass.alpha = FamilyAlpha / obs;
        pass.w = Eigen::VectorXd::Zero(obs);
        for (int g = 0; g < 2; ++g) {
            if (used[g])
                pass.critical[g] = boost::math::quantile(boost::math::students_t(R[g] - 1), 1 - pass.alpha / 2);
        }
        for (int i = 0; i < obs; ++i) {
            const int g = e.group[size_t(i)];
            double s2, factor;
            if (active[size_t(i / e.per)]) {
                if (f.r(i) <= kMinRedundancy)
                    continue;
                s2 = (omega[g] - f.v(i) * f.v(i) / f.r(i)) / (R[g] - 1);
                factor = f.r(i);
            } else {
                s2 = omega[g] / R[g];
                factor = 1 + e.leverage(f, i);
            }
            pass.w(i) = f.v(i) / (std::max(std::sqrt(std::max(s2, 0.0)), kSigmaFloor) * std::sqrt(factor));
        }
        pass.ok = true;
        return pass;
    };
    // The largest |w| / critical value of a point.
    const auto worstOf = [&](const Pass& pass, int point, int* row) {
        double worst = 0;
        for (int k = 0; k < e.per; ++k) {
            const int i = point * e.per + k;
            const double ratio = std::abs(pass.w(i)) / pass.critical[e.group[size_t(i)]];
            if (ratio > worst) {
                worst = ratio;
                *row = i;
            }
        }
        return worst;
    };
    const auto name = [&](const Pass& pass, int point, int row) {
        Point& bad = q.m_points[point];
        bad.flagged = true;
        bad.flaggedW = pass.w(row);
        bad.flaggedInHeight = e.group[size_t(row)] == 1;
    };

    const Pass first = test(all);
    if (!first.ok) {
        q.m_notes << tr("The w-test needs a redundancy of at least 2 in plane and in height; these points do not "
                        "give it.");
        finishRobust();
        return q;
    }
    q.m_hasSnooping = true;
    q.m_observationAlpha = first.alpha;
    q.m_criticalPlane = first.critical[0];
    q.m_criticalHeight = first.critical[1];
    for (int i = 0; i < obs; ++i) {
        Point& p = q.m_points[i / e.per];
        p.wAvailable = true;
        if (e.group[size_t(i)] == 1)
            p.wHeight = first.w(i);
        else if (std::abs(first.w(i)) > std::abs(p.wPlane))
            p.wPlane = first.w(i);
    }

    std::vector<bool> active = all;
    // Suspects: the points a robust fit started from the least-median subset
    // rejects (two wrong points bend the plain fit so much that a good point
    // can look worse than they do, the subset's model is free of them).
    std::vector<int> suspects;
    if (robustPossible) {
        int iterations = 0;
        const Eigen::VectorXd screen = robust(e.subsetStart(minimum, k0, k1), false, &iterations);
        for (int i = 0; i < n && screen.size() > 0; ++i) {
            if (screen.segment(i * e.per, e.per).maxCoeff() == 0)
                suspects.push_back(i);
        }
    }
    while (!suspects.empty()) {
        std::vector<bool> clean = all;
        for (int s : suspects)
            clean[size_t(s)] = false;
        const Pass pass = test(clean);
        if (!pass.ok)
            break;
        std::vector<int> kept;
        for (int s : suspects) {
            int row = 0;
            if (worstOf(pass, s, &row) > 1)
                kept.push_back(s);
        }
        if (kept.size() == suspects.size()) {
            for (int s : suspects) {
                int row = 0;
                worstOf(pass, s, &row);
                name(pass, s, row);
            }
            active = clean;
            break;
        }
        suspects = kept;
    }
    for (;;) {
        const Pass pass = test(active);
        if (!pass.ok)
            break;
        int worst = -1, worstRow = 0;
        double worstRatio = 1;
        for (int i = 0; i < n; ++i) {
            int row = 0;
            const double ratio = active[size_t(i)] ? worstOf(pass, i, &row) : 0;
            if (ratio > worstRatio) {
                worstRatio = ratio;
                worst = i;
                worstRow = row;
            }
        }
        if (worst < 0)
            break;
        name(pass, worst, worstRow);
        active[size_t(worst)] = false;
    }
    finishRobust();
    return q;
}
