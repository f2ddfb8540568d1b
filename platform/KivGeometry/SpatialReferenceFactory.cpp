#include "KivGeometry/SpatialReferenceFactory.h"

#include "KivGeometry/GeographicCoordinateSystem.h"
#include "KivGeometry/ProjectedCoordinateSystem.h"
#include "QuietGdalErrors.h"
#include "SpatialReferencePrivate.h"

namespace KivGeometry {

KivUtility::_ptr_t<SpatialReference> SpatialReferenceFactory::CreateSpatialReference(const QString& text)
{
    try {
        QString input = text.trimmed();
        if (input.startsWith(QChar(0xFEFF)))
            input = input.mid(1).trimmed();
        if (input.isEmpty())
            return nullptr;
        QuietGdalErrors quiet;
        OGRSpatialReference srs;
        // Text only: a string that happens to name a file or a URL is not read.
        const char* const options[] = {"ALLOW_NETWORK_ACCESS=NO", "ALLOW_FILE_ACCESS=NO", nullptr};
        const QByteArray utf8 = input.toUtf8();
        if (srs.SetFromUserInput(utf8.constData(), options) != OGRERR_NONE || srs.IsEmpty())
            return nullptr;
        SpatialReference holder;
        holder.d_func()->assign(&srs);
        if (!holder.IsValid())
            return nullptr;
        return holder.Clone();
    } catch (...) {
        return nullptr;
    }
}

} // namespace KivGeometry
