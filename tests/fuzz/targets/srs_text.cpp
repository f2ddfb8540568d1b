// Spatial-reference text of any flavour: WKT, codes, PROJ strings, PROJJSON.
#include "KivGeometry/SpatialReference.h"
#include "KivGeometry/SpatialReferenceFactory.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), int(size));
    const auto system = KivGeometry::SpatialReferenceFactory::CreateSpatialReference(text);
    if (system) {
        system->GetType();
        system->GetName();
        system->ExportToPrettyWkt();
    }
    return 0;
}
