// Entry points of the plug-in library, exported under undecorated names.

#include "plugin/CoordsTransformUIPlugin.h"

#include <new>

#define COORDSTRANSFORM_EXPORT extern "C" __attribute__((visibility("default")))

COORDSTRANSFORM_EXPORT KivUI::CMDPluginModule* GetPluginModule()
{
    return new (std::nothrow) CoordsTransformUIPlugin;
}
