// Text-file format files and the one-line record text made from them.
#include "FuzzInput.h"
#include "textfiles/FileFormatDirectory.h"
#include "textfiles/TextFileFormat.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString path = KivFuzz::WriteInput(data, size, QStringLiteral("format.xml"));
    QString record;
    if (FileFormatDirectory::LoadRecord(path, &record)) {
        const TextFileFormat format = TextFileFormat::FromRecord(record);
        for (const QString& field : format.fields)
            TextFileFormat::KindOf(field);
    }
    // The record itself also arrives from the command line as text.
    TextFileFormat::FromRecord(QString::fromUtf8(reinterpret_cast<const char*>(data), int(size)));
    FileFormatDirectory::IsValidName(QString::fromUtf8(reinterpret_cast<const char*>(data), int(size)));
    return 0;
}
