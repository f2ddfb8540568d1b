// kivdesk's plug-in manifest, which users and installers edit by hand.
#include "FuzzInput.h"
#include "PluginManifest.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString path = KivFuzz::WriteInput(data, size, QStringLiteral("plugins.xml"));
    PluginManifest manifest;
    if (manifest.load(path)) {
        for (const PluginManifestEntry& entry : manifest.plugins())
            (void)entry.commands.size();
    } else {
        manifest.error();
    }
    return 0;
}
