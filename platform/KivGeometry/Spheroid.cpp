#include "KivGeometry/Spheroid.h"

#include <cmath>

namespace KivGeometry {

Spheroid::Spheroid() = default;

Spheroid::Spheroid(const QString& name, double semiMajorAxis, double inverseFlattening)
    : m_name(name), m_a(semiMajorAxis), m_invf(inverseFlattening)
{
}

double Spheroid::GetFlattening() const
{
    return m_invf == 0.0 ? 0.0 : 1.0 / m_invf;
}

double Spheroid::GetSemiMinorAxis() const
{
    return m_a * (1.0 - GetFlattening());
}

double Spheroid::GetEccentricitySquared() const
{
    const double f = GetFlattening();
    return f * (2.0 - f);
}

bool Spheroid::IsSameShape(const Spheroid& other) const
{
    auto close = [](double a, double b) { return std::fabs(a - b) <= 1e-9 * std::max(std::fabs(a), std::fabs(b)); };
    return close(m_a, other.m_a) && close(GetFlattening(), other.GetFlattening());
}

} // namespace KivGeometry
