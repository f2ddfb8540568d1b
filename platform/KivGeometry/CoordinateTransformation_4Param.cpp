#include "KivGeometry/CoordinateTransformation_4Param.h"

#include <cmath>

namespace KivGeometry {

void CoordinateTransformation_4Param::SetCT4Param(double dx, double dy, double t, double k)
{
    constexpr double kDegToRad = 3.14159265358979323846 / 180.0;
    m_dx = dx;
    m_dy = dy;
    m_cosT = std::cos(t * kDegToRad);
    m_sinT = std::sin(t * kDegToRad);
    m_k = k;
}

void CoordinateTransformation_4Param::ConvertXYToXY(double x, double y, double& x2, double& y2) const
{
    x2 = m_dx + m_k * (x * m_cosT - y * m_sinT);
    y2 = m_dy + m_k * (x * m_sinT + y * m_cosT);
}

} // namespace KivGeometry
