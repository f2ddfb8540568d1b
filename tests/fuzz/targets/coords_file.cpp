// Coordinate text files (GBK, GB18030 or UTF-8) read through a format
// record. The input's first line is the record, the rest is the file.
#include "FuzzInput.h"
#include "textfiles/CoordsFileStreamConverter.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString record = KivFuzz::TakeFirstLine(data, size);
    const QString path = KivFuzz::WriteInput(data, size, QStringLiteral("points.txt"));
    CoordsFileStreamConverter stream;
    stream.SetKeptPoints(1000);
    qint64 calls = 0;
    if (stream.Open(path))
        stream.Run(record, {nullptr}, nullptr, QString(), [&calls](qint64, qint64) { ++calls; });
    for (size_t i = 0; i < stream.KeptPoints().Size(); ++i)
        (void)stream.KeptPoints().At(i).id.size();
    return 0;
}
