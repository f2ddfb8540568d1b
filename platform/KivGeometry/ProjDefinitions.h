#pragma once

#include <QByteArray>

#include <cmath>
#include <string>

namespace KivGeometry {

/// Pieces of PROJ strings. Numbers are written with 17 significant digits
/// and a point, whatever the process locale, so PROJ reads back the very same
/// doubles.
namespace ProjDefinitions {

inline std::string number(double v)
{
    return QByteArray::number(v, 'g', 17).toStdString();
}

/// "+a=... +rf=..." (or "+f=0" for a sphere) from the semi-major axis and the
/// inverse flattening; empty when the values describe no ellipsoid.
inline std::string ellipsoidFromInverseFlattening(double a, double invf)
{
    if (!std::isfinite(a) || !std::isfinite(invf) || a <= 0 || invf < 0 || (invf > 0 && invf <= 1))
        return std::string();
    return " +a=" + number(a) + (invf == 0 ? std::string(" +f=0") : " +rf=" + number(invf));
}

/// The same from the flattening f (0 for a sphere).
inline std::string ellipsoidFromFlattening(double a, double f)
{
    if (!std::isfinite(a) || !std::isfinite(f) || a <= 0 || f < 0 || f >= 1)
        return std::string();
    return " +a=" + number(a) + " +f=" + number(f);
}

} // namespace ProjDefinitions

} // namespace KivGeometry
