#include "ControlPointFit.h"

#include <Eigen/Dense>

#include <cmath>
#include <cstdlib>

namespace KivGeometry {

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kArcSecondsPerRadian = 648000.0 / kPi;
// Smallest/largest singular value below which the geometry does not fix the
// model (identical or collinear points, up to ~1e-6 of their spread).
constexpr double kConditionLimit = 1e-6;
// First eccentricity squared of GRS 80, for the local frame of a residual.
// The frame's tilt differs between ellipsoids by far less than a residual's
// last printed digit.
constexpr double kFrameE2 = 0.00669438002290;

bool allFinite(const double* v, int n)
{
    for (int i = 0; i < n; ++i) {
        if (!std::isfinite(v[i]))
            return false;
    }
    return true;
}

double* result(const double* values, int n)
{
    for (int i = 0; i < n; ++i) {
        if (!std::isfinite(values[i]))
            return nullptr;
    }
    auto* out = static_cast<double*>(std::malloc(sizeof(double) * size_t(n)));
    if (out) {
        for (int i = 0; i < n; ++i)
            out[i] = values[i];
    }
    return out;
}

} // namespace

void ControlPointFit::localFrame(const Eigen::Vector3d& p, Eigen::Vector3d& east, Eigen::Vector3d& north, Eigen::Vector3d& up)
{
    const double lambda = std::atan2(p.y(), p.x());
    const double r = std::hypot(p.x(), p.y());
    // Geodetic latitude by a few fixed-point steps (exact enough for a frame).
    double phi = std::atan2(p.z(), r * (1 - kFrameE2));
    for (int i = 0; i < 4; ++i) {
        const double s = std::sin(phi);
        const double n = 1.0 / std::sqrt(1 - kFrameE2 * s * s);
        phi = std::atan2(p.z() + kFrameE2 * n * s * 6378137.0, r);
    }
    const double sl = std::sin(lambda), cl = std::cos(lambda), sp = std::sin(phi), cp = std::cos(phi);
    east = Eigen::Vector3d(-sl, cl, 0);
    north = Eigen::Vector3d(-sp * cl, -sp * sl, cp);
    up = Eigen::Vector3d(cp * cl, cp * sl, sp);
}

double* ControlPointFit::fourParameters(const double* srcX, const double* srcY, const double* dstX, const double* dstY,
                                        int count, double* residuals)
{
    if (count < 2 || !srcX || !srcY || !dstX || !dstY)
        return nullptr;
    if (!allFinite(srcX, count) || !allFinite(srcY, count) || !allFinite(dstX, count) || !allFinite(dstY, count))
        return nullptr;
    const int n = count;
    Eigen::Vector2d ms(0, 0), md(0, 0);
    for (int i = 0; i < n; ++i) {
        ms += Eigen::Vector2d(srcX[i], srcY[i]);
        md += Eigen::Vector2d(dstX[i], dstY[i]);
    }
    ms /= n;
    md /= n;

    // X2 - mX2 = a (X - mX) - b (Y - mY), Y2 - mY2 = b (X - mX) + a (Y - mY)
    // with a = K cos T, b = K sin T.
    Eigen::MatrixXd A(2 * n, 2);
    Eigen::VectorXd rhs(2 * n);
    double spread = 0;
    for (int i = 0; i < n; ++i) {
        const double x = srcX[i] - ms.x(), y = srcY[i] - ms.y();
        A(2 * i, 0) = x;
        A(2 * i, 1) = -y;
        A(2 * i + 1, 0) = y;
        A(2 * i + 1, 1) = x;
        rhs(2 * i) = dstX[i] - md.x();
        rhs(2 * i + 1) = dstY[i] - md.y();
        spread += x * x + y * y;
    }
    spread = std::sqrt(spread / n);
    // Source points that all coincide fix no rotation or scale.
    if (!(spread > 1e-9 * std::max(1.0, ms.norm())))
        return nullptr;
    A /= spread;
    rhs /= spread;
    const Eigen::Vector2d ab = A.colPivHouseholderQr().solve(rhs);
    const double a = ab(0), b = ab(1);
    const double k = std::hypot(a, b);
    // Targets that all coincide give no scale.
    if (!(k > 1e-12))
        return nullptr;
    const double dx = md.x() - (a * ms.x() - b * ms.y());
    const double dy = md.y() - (b * ms.x() + a * ms.y());
    const double values[4] = {dx, dy, std::atan2(b, a) * 180.0 / kPi, k};
    double* out = result(values, 4);
    if (out && residuals) {
        for (int i = 0; i < n; ++i) {
            const double x = srcX[i] - ms.x(), y = srcY[i] - ms.y();
            const double ex = dstX[i] - md.x() - (a * x - b * y);
            const double ey = dstY[i] - md.y() - (b * x + a * y);
            residuals[i] = std::hypot(ex, ey);
        }
    }
    return out;
}

double* ControlPointFit::sevenParameters(const double* srcX, const double* srcY, const double* srcZ,
                                         const double* dstX, const double* dstY, const double* dstZ, int count,
                                         double* planeResiduals, double* heightResiduals)
{
    if (count < 3 || !srcX || !srcY || !srcZ || !dstX || !dstY || !dstZ)
        return nullptr;
    if (!allFinite(srcX, count) || !allFinite(srcY, count) || !allFinite(srcZ, count) || !allFinite(dstX, count)
        || !allFinite(dstY, count) || !allFinite(dstZ, count))
        return nullptr;
    const int n = count;
    Eigen::Vector3d ms(0, 0, 0), md(0, 0, 0);
    for (int i = 0; i < n; ++i) {
        ms += Eigen::Vector3d(srcX[i], srcY[i], srcZ[i]);
        md += Eigen::Vector3d(dstX[i], dstY[i], dstZ[i]);
    }
    ms /= n;
    md /= n;

    // Coordinate-frame model X2 = T + μ (I + Ω) X with
    //   Ω = [[0, γ, -κ], [-γ, 0, ω], [κ, -ω, 0]].
    // On centred coordinates it is linear in μ and w = μ (ω, κ, γ), so the
    // solution is exact, not linearised: the rotations are w / μ.
    Eigen::MatrixXd A(3 * n, 4);
    Eigen::VectorXd rhs(3 * n);
    double spread = 0;
    for (int i = 0; i < n; ++i) {
        const Eigen::Vector3d c = Eigen::Vector3d(srcX[i], srcY[i], srcZ[i]) - ms;
        const Eigen::Vector3d e = Eigen::Vector3d(dstX[i], dstY[i], dstZ[i]) - md;
        A.row(3 * i) << c.x(), 0, -c.z(), c.y();
        A.row(3 * i + 1) << c.y(), c.z(), 0, -c.x();
        A.row(3 * i + 2) << c.z(), -c.y(), c.x(), 0;
        rhs.segment<3>(3 * i) = e;
        spread += c.squaredNorm();
    }
    spread = std::sqrt(spread / n);
    if (!(spread > 1e-9 * std::max(1.0, ms.norm())))
        return nullptr;
    A /= spread;
    rhs /= spread;
    Eigen::JacobiSVD<Eigen::MatrixXd> svd(A, Eigen::ComputeThinU | Eigen::ComputeThinV);
    const Eigen::Vector4d sv = svd.singularValues();
    if (!(sv(0) > 0) || sv(3) < kConditionLimit * sv(0))
        return nullptr;
    const Eigen::Vector4d solution = svd.solve(rhs);
    const double mu = solution(0);
    if (!(mu > 0))
        return nullptr;
    const Eigen::Vector3d r = solution.tail<3>() / mu;
    Eigen::Matrix3d M;
    M << 1, r.z(), -r.y(), -r.z(), 1, r.x(), r.y(), -r.x(), 1;
    M *= mu;
    const Eigen::Vector3d t = md - M * ms;
    const double values[7] = {t.x(), t.y(), t.z(), r.x() * kArcSecondsPerRadian, r.y() * kArcSecondsPerRadian,
                              r.z() * kArcSecondsPerRadian, mu - 1.0};
    double* out = result(values, 7);
    if (out) {
        for (int i = 0; i < n; ++i) {
            const Eigen::Vector3d c = Eigen::Vector3d(srcX[i], srcY[i], srcZ[i]) - ms;
            const Eigen::Vector3d target(dstX[i], dstY[i], dstZ[i]);
            // Observed minus computed, split in the target point's local frame.
            const Eigen::Vector3d v = (target - md) - M * c;
            Eigen::Vector3d east, north, up;
            localFrame(target, east, north, up);
            if (planeResiduals)
                planeResiduals[i] = std::hypot(v.dot(east), v.dot(north));
            if (heightResiduals)
                heightResiduals[i] = v.dot(up);
        }
    }
    return out;
}

} // namespace KivGeometry
