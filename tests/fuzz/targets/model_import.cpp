// The "KEY=value" files the manual entry dialogs import parameters from.
#include "FuzzInput.h"
#include "models/ModelImportFile.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString path = KivFuzz::WriteInput(data, size, QStringLiteral("params.txt"));
    for (const auto& pair : ModelImportFile::Read(path))
        pair.second.toDouble();
    return 0;
}
