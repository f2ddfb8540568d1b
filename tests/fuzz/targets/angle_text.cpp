// Angle texts typed or pasted by the user, degrees/minutes/seconds to degrees.
#include "KivGeometry/CoordFuncLibrary.h"

#include <cmath>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const auto* chars = reinterpret_cast<const char*>(data);
    bool ok = false;
    const double degrees = KivGeometry::CoordFuncLibrary::ConvertDegMinSecToDeg(QString::fromUtf8(chars, int(size)), &ok);
    // Legacy callers hand over local 8-bit text; a different decoding of the
    // same bytes must be just as harmless.
    KivGeometry::CoordFuncLibrary::ConvertDegMinSecToDeg(QString::fromLatin1(chars, int(size)));
    if (ok && std::isfinite(degrees))
        KivGeometry::CoordFuncLibrary::ConvertDegMinSecToDeg(KivGeometry::CoordFuncLibrary::ConvertDegToDegMinSec(degrees));
    return 0;
}
