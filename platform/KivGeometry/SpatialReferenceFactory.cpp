#include "KivGeometry/SpatialReferenceFactory.h"

#include "KivGeometry/GeographicCoordinateSystem.h"
#include "KivGeometry/ProjectedCoordinateSystem.h"
#include "QuietGdalErrors.h"
#include "SpatialReferencePrivate.h"

#include <cpl_string.h>

#include <cstdlib>
#include <map>
#include <mutex>
#include <string>
#include <unordered_map>

namespace KivGeometry {

namespace {

// The object of the subclass that matches the system, holding a copy of it.
KivUtility::_ptr_t<SpatialReference> adopt(const OGRSpatialReference& srs)
{
    SpatialReference holder;
    holder.d_func()->assign(&srs);
    if (!holder.IsValid())
        return nullptr;
    return holder.Clone();
}

} // namespace

KivUtility::_ptr_t<SpatialReference> SpatialReferenceFactory::CreateSpatialReference(const QString& text)
{
    try {
        QString input = text.trimmed();
        if (input.startsWith(QChar(0xFEFF)))
            input = input.mid(1).trimmed();
        if (input.isEmpty())
            return nullptr;
        // Parsing WKT that names EPSG parts asks PROJ's database every time,
        // some milliseconds; a batch makes the same systems from the same
        // texts over and over, so each text is parsed once per process.
        static std::mutex mutex;
        static std::unordered_map<std::string, KivUtility::_ptr_t<SpatialReference>> parsed;
        const QByteArray utf8 = input.toUtf8();
        const std::string key(utf8.constData(), size_t(utf8.size()));
        {
            std::lock_guard<std::mutex> lock(mutex);
            const auto found = parsed.find(key);
            if (found != parsed.end())
                return found->second->Clone();
        }
        QuietGdalErrors quiet;
        OGRSpatialReference srs;
        // Text only: a string that happens to name a file or a URL is not read.
        const char* const options[] = {"ALLOW_NETWORK_ACCESS=NO", "ALLOW_FILE_ACCESS=NO", nullptr};
        if (srs.SetFromUserInput(utf8.constData(), options) != OGRERR_NONE || srs.IsEmpty())
            return nullptr;
        auto result = adopt(srs);
        if (result) {
            std::lock_guard<std::mutex> lock(mutex);
            if (parsed.size() >= 256)
                parsed.clear();
            parsed.emplace(key, result->Clone());
        }
        return result;
    } catch (...) {
        return nullptr;
    }
}

KivUtility::_ptr_t<SpatialReference> SpatialReferenceFactory::CreateFromDataset(const OGRSpatialReference* srs)
{
    try {
        if (!srs || srs->IsEmpty())
            return nullptr;
        QuietGdalErrors quiet;
        // Some formats (ERDAS IMG) add a null TOWGS84 to a datum EPSG knows;
        // GDAL drops it on reading GeoTIFF, and so does this.
        OGRSpatialReference stripped(*srs);
        stripped.StripTOWGS84IfKnownDatumAndAllowed();
        const char* authority = stripped.GetAuthorityName(nullptr);
        const char* code = stripped.GetAuthorityCode(nullptr);
        if (authority && code && EQUAL(authority, "EPSG")) {
            // The code's definition comes from PROJ's database; a batch of
            // datasets mostly shares a few codes, so each is looked up once.
            static std::mutex mutex;
            static std::map<int, OGRSpatialReference> byCodes;
            const int number = std::atoi(code);
            OGRSpatialReference byCode;
            bool known = false;
            {
                std::lock_guard<std::mutex> lock(mutex);
                const auto found = byCodes.find(number);
                if (found != byCodes.end()) {
                    byCode = found->second;
                    known = true;
                }
            }
            if (!known && byCode.importFromEPSG(number) == OGRERR_NONE) {
                known = true;
                std::lock_guard<std::mutex> lock(mutex);
                if (byCodes.size() >= 64)
                    byCodes.clear();
                byCodes.emplace(number, byCode);
            }
            const char* const sameOptions[] = {"IGNORE_DATA_AXIS_TO_SRS_AXIS_MAPPING=YES", nullptr};
            if (known && byCode.IsSame(&stripped, sameOptions))
                return adopt(byCode);
        } else if (!authority) {
            // A file that does not name its code (ERDAS IMG, ENVI) takes the
            // identity of the EPSG system it fully matches, if there is one.
            auto system = adopt(stripped);
            if (system)
                system->Normalize();
            return system;
        }
        return adopt(*srs);
    } catch (...) {
        return nullptr;
    }
}

} // namespace KivGeometry
