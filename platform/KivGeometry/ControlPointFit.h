#pragma once

#include <Eigen/Core>

namespace KivGeometry {

/// Least-squares models from control points (docs/geodesy.md). Both work on
/// coordinates centred on their means, so that the metre-sized adjustments of
/// points millions of metres from the origin keep their precision, and refuse
/// (null) too few points and singular or ill-conditioned geometry rather than
/// returning numbers that mean nothing.
class ControlPointFit
{
public:
    /// DX, DY, T (degrees), K in a `malloc`ed array, or null.
    static double* fourParameters(const double* srcX, const double* srcY, const double* dstX, const double* dstY,
                                  int count, double* residuals);
    /// DX, DY, DZ, ω, κ, γ (arc-seconds), m in a `malloc`ed array, or null.
    static double* sevenParameters(const double* srcX, const double* srcY, const double* srcZ, const double* dstX,
                                   const double* dstY, const double* dstZ, int count, double* planeResiduals,
                                   double* heightResiduals);
    /// Unit vectors east, north and up at a geocentric position (normal of the
    /// GRS 80 ellipsoid), the frame in which residuals are split.
    static void localFrame(const Eigen::Vector3d& p, Eigen::Vector3d& east, Eigen::Vector3d& north,
                           Eigen::Vector3d& up);
};

} // namespace KivGeometry
