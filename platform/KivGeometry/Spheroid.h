#pragma once

#include "KivUtility/CRef.h"

#include <QString>

namespace KivGeometry {

/// An ellipsoid of revolution, a plain value: copy it freely (copies do not
/// share the reference count) or hold it in a `_ptr_t` when it must be shared.
///
/// A sphere has an inverse flattening of 0, as in WKT.
class Spheroid : public KivUtility::CRef
{
public:
    Spheroid();
    /// From the semi-major axis (metres) and the inverse flattening.
    Spheroid(const QString& name, double semiMajorAxis, double inverseFlattening);

    QString GetName() const { return m_name; }
    double GetSemiMajorAxis() const { return m_a; }
    /// b = a (1 - f); equal to a for a sphere.
    double GetSemiMinorAxis() const;
    double GetInverseFlattening() const { return m_invf; }
    /// f = 1 / inverse flattening, 0 for a sphere.
    double GetFlattening() const;
    /// First eccentricity squared, e² = f (2 - f).
    double GetEccentricitySquared() const;

    /// Same axes and flattening (names are ignored), to 1e-9 relative.
    bool IsSameShape(const Spheroid& other) const;

private:
    QString m_name;
    double m_a = 0.0;
    double m_invf = 0.0;
};

} // namespace KivGeometry
