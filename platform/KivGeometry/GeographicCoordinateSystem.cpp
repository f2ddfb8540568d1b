#include "KivGeometry/GeographicCoordinateSystem.h"

#include "QuietGdalErrors.h"
#include "SpatialReferencePrivate.h"

namespace KivGeometry {

KivUtility::_ptr_t<Datum> GeographicCoordinateSystem::GetDatum() const
{
    if (!d->isValid())
        return nullptr;
    const QString datum = d->nodeValue("DATUM");
    if (datum.isEmpty())
        return nullptr;
    QuietGdalErrors quiet;
    OGRErr err = OGRERR_NONE;
    const double a = d->srs().GetSemiMajor(&err);
    if (err != OGRERR_NONE)
        return nullptr;
    // OGR reports 0 for a sphere, as WKT does.
    const double invf = d->srs().GetInvFlattening(&err);
    return new Datum(datum, Spheroid(d->nodeValue("SPHEROID"), a, invf));
}

} // namespace KivGeometry
