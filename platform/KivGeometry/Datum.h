#pragma once

#include "KivGeometry/Spheroid.h"
#include "KivUtility/CRef.h"

#include <QString>

namespace KivGeometry {

/// A geodetic datum as reported by a geographic coordinate system: its name
/// and its ellipsoid.
class Datum : public KivUtility::CRef
{
public:
    Datum() = default;
    Datum(const QString& name, const Spheroid& spheroid);

    /// The datum name in the form the system holds it ("D_Beijing_1954" after
    /// MorphToESRI, "Beijing_1954" in WKT1 from the EPSG database).
    QString GetName() const { return m_name; }
    Spheroid GetSpheroid() const { return m_spheroid; }

private:
    QString m_name;
    Spheroid m_spheroid;
};

} // namespace KivGeometry
