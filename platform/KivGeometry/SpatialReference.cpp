#include "KivGeometry/SpatialReference.h"

#include "KivGeometry/GeographicCoordinateSystem.h"
#include "KivGeometry/ProjectedCoordinateSystem.h"
#include "QuietGdalErrors.h"
#include "SpatialReferencePrivate.h"

#include <cpl_conv.h>

namespace KivGeometry {

SpatialReference::SpatialReference() : d(std::make_unique<SpatialReferencePrivate>()) {}

SpatialReference::SpatialReference(const SpatialReference& other)
    : KivUtility::CRef(), d(std::make_unique<SpatialReferencePrivate>(*other.d))
{
}

SpatialReference& SpatialReference::operator=(const SpatialReference& other)
{
    if (this != &other)
        *d = *other.d;
    return *this;
}

SpatialReference::~SpatialReference() = default;

bool SpatialReference::IsValid() const
{
    return d->isValid();
}

QString SpatialReference::GetName() const
{
    if (!d->isValid())
        return QString();
    // The name as the held WKT has it, so that it follows the ESRI form.
    QString name = d->nodeValue(nullptr);
    if (name.isEmpty()) {
        QuietGdalErrors quiet;
        name = QString::fromUtf8(d->srs().GetName());
    }
    return name;
}

int SpatialReference::GetType() const
{
    return d->kind();
}

bool SpatialReference::ImportFromWkt(const QString& wkt)
{
    QuietGdalErrors quiet;
    d->clear();
    QString text = wkt.trimmed();
    if (text.startsWith(QChar(0xFEFF)))
        text = text.mid(1).trimmed();
    if (text.isEmpty())
        return false;
    const QByteArray utf8 = text.toUtf8();
    OGRSpatialReference srs;
    if (srs.importFromWkt(utf8.constData()) != OGRERR_NONE || srs.IsEmpty())
        return false;
    d->assign(&srs);
    return d->isValid();
}

QString SpatialReference::ExportToWkt() const
{
    return QString::fromStdString(d->wkt1(false));
}

QString SpatialReference::ExportToPrettyWkt() const
{
    return QString::fromStdString(d->wkt1(true));
}

QString SpatialReference::ExportToProj4() const
{
    if (!d->isValid())
        return QString();
    QuietGdalErrors quiet;
    char* text = nullptr;
    QString result;
    if (d->srs().exportToProj4(&text) == OGRERR_NONE && text)
        result = QString::fromUtf8(text).trimmed();
    CPLFree(text);
    return result;
}

QString SpatialReference::GetAuthorityCode() const
{
    if (!d->isValid())
        return QString();
    QuietGdalErrors quiet;
    const char* name = d->srs().GetAuthorityName(nullptr);
    const char* code = d->srs().GetAuthorityCode(nullptr);
    if (!name || !code || !*name || !*code)
        return QString();
    return QString::fromUtf8(name) + QLatin1Char(':') + QString::fromUtf8(code);
}

bool SpatialReference::MorphToESRI()
{
    if (!d->isValid())
        return false;
    d->setEsri(true);
    return true;
}

bool SpatialReference::Normalize()
{
    if (!d->isValid())
        return false;
    d->setEsri(false);
    QuietGdalErrors quiet;
    if (d->srs().GetAuthorityCode(nullptr))
        return true;
    // Take the identity of a catalogued system only when PROJ is sure of the
    // match and the two are the same system for our own comparison too.
    int count = 0;
    int* confidence = nullptr;
    OGRSpatialReferenceH* matches = d->srs().FindMatches(nullptr, &count, &confidence);
    for (int i = 0; i < count; ++i) {
        auto* candidate = OGRSpatialReference::FromHandle(matches[i]);
        const char* authority = candidate->GetAuthorityName(nullptr);
        if (confidence[i] < 100 || !authority || !EQUAL(authority, "EPSG"))
            continue;
        SpatialReferencePrivate c;
        c.assign(candidate);
        if (c.sameSystem(*d)) {
            d->assign(candidate);
            break;
        }
    }
    OSRFreeSRSArray(matches);
    CPLFree(confidence);
    return true;
}

bool SpatialReference::IsSame(const SpatialReference* other) const
{
    if (!other)
        return false;
    try {
        return d->sameSystem(*other->d);
    } catch (...) {
        return false;
    }
}

bool SpatialReference::IsSameGeoCS(const SpatialReference* other) const
{
    if (!other || !d->isValid() || !other->d->isValid())
        return false;
    try {
        return d->sameGeographicBase(*other->d);
    } catch (...) {
        return false;
    }
}

KivUtility::_ptr_t<SpatialReference> SpatialReference::Clone() const
{
    switch (GetType()) {
    case SRT_Geographic:
        return new GeographicCoordinateSystem(*this);
    case SRT_Projected:
        return new ProjectedCoordinateSystem(*this);
    default:
        return new SpatialReference(*this);
    }
}

} // namespace KivGeometry
