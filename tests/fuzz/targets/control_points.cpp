// Control-point files of the four- and seven-parameter calculation dialogs.
// The first byte picks the kind and whether the name ends in ".csv".
#include "FuzzInput.h"
#include "models/ControlPointFile.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    const uint8_t flags = data[0];
    const auto kind = (flags & 1) ? ControlPointFile::SevenParameters : ControlPointFile::FourParameters;
    const QString name = (flags & 2) ? QStringLiteral("points.CSV") : QStringLiteral("points.txt");
    const QString path = KivFuzz::WriteInput(data + 1, size - 1, name);
    ControlPointFile file(kind);
    // The dialogs pass their first header text; a translated one may be anything.
    file.Read(path, (flags & 4) ? QStringLiteral("\u9009\u4e2d") : QStringLiteral("Checked"));
    for (const ControlPointFile::Point& point : file.Points())
        for (const QString& cell : point.cells)
            cell.toDouble();
    file.ReferencePair();
    return 0;
}
