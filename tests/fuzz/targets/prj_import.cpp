// Projection files as the spatial reference dialog imports them: the first
// line only, read as UTF-8, taken by a projected system and exported again
// whole or through its geographic system (the dialog's own steps).
#include "KivGeometry/GeographicCoordinateSystem.h"
#include "KivGeometry/ProjectedCoordinateSystem.h"

#include <QBuffer>

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char*>(data), int(size));
    QBuffer buffer(&bytes);
    if (!buffer.open(QIODevice::ReadOnly | QIODevice::Text))
        return 0;
    const QString line = QString::fromUtf8(buffer.readLine());
    if (line.isEmpty())
        return 0;
    KivGeometry::ProjectedCoordinateSystem system;
    system.ImportFromWkt(line);
    if (line.contains(QLatin1String("PROJECTION"))) {
        system.GetName();
        system.ExportToPrettyWkt();
    } else if (const auto geographic = system.GetGeographicCoordinateSystem()) {
        geographic->GetName();
        geographic->ExportToPrettyWkt();
    }
    return 0;
}
