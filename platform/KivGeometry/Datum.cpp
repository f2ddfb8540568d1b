#include "KivGeometry/Datum.h"

namespace KivGeometry {

Datum::Datum(const QString& name, const Spheroid& spheroid) : m_name(name), m_spheroid(spheroid) {}

} // namespace KivGeometry
