// The model store file: hand-edited XML of any shape, read by every dialog
// and rewritten by the save and entry dialogs.
#include "FuzzInput.h"
#include "models/ModelStore.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString path = KivFuzz::WriteInput(data, size, QStringLiteral("coordtransform.xml"));
    ModelStore::Read(ModelStore::Params4, path);
    const ModelStore::Reading seven = ModelStore::Read(ModelStore::Params7, path);
    TransformModel found;
    ModelStore::Find(ModelStore::Params7, seven.models.isEmpty() ? QStringLiteral("x") : seven.models.first().TransName,
                     &found, path);
    // The writer parses the store before rewriting it; replacing the first
    // model exercises removal from whatever tree the file holds.
    const QString name = seven.models.isEmpty() ? QStringLiteral("fuzz") : seven.models.first().TransName;
    ModelStore::Add(ModelStore::Params7, TransformModel{name, QStringLiteral("a"), QStringLiteral("b"), {1, 2, 3, 4, 5, 6, 7}},
                    [] { return true; }, path);
    ModelStore::List(ModelStore::Params7, path);
    return 0;
}
