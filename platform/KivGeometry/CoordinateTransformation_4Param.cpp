#include "KivGeometry/CoordinateTransformation_4Param.h"

#include "ProjDefinitions.h"

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

std::string CoordinateTransformation_4Param::ProjDefinition() const
{
    using ProjDefinitions::number;
    // E2 = DY + K (sinT N + cosT E), N2 = DX + K (cosT N - sinT E).
    return "+proj=affine +xoff=" + number(m_dy) + " +yoff=" + number(m_dx) + " +s11=" + number(m_k * m_cosT) +
           " +s12=" + number(m_k * m_sinT) + " +s21=" + number(-m_k * m_sinT) + " +s22=" + number(m_k * m_cosT);
}

} // namespace KivGeometry
