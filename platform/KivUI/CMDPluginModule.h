#pragma once

#include "KivUI/ICommand.h"
#include "KivUtility/CRef.h"
#include "KivUtility/_ptr_t.h"

#include <QString>

namespace KivUI {

/// The module object of a command plug-in. A plug-in library exports
/// `extern "C" KivUI::CMDPluginModule* GetPluginModule()`, which returns a new
/// module; the host keeps it through its reference count and asks it for
/// commands by the names in its configuration.
class CMDPluginModule : public KivUtility::CRef
{
public:
    ~CMDPluginModule() override = default;

    /// A new command for `name`, or null when the module has none of that
    /// name. `extra` is free for the module to interpret.
    virtual KivUtility::_ptr_t<ICommand> CreateCommand(const QString& name, const QString& extra) = 0;
};

/// Signature of the exported entry point of a command plug-in.
using GetPluginModuleFunction = CMDPluginModule* (*)();

} // namespace KivUI
