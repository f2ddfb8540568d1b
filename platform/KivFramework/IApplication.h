#pragma once

#include "KivFramework/CommandInfo.h"
#include "KivUtility/_ptr_t.h"

namespace KivCarto {
class IPmdContents;
class Map;
}
namespace KivUI {
class ICommand;
}

namespace KivFramework {

class IDesktopFrame;

/// The host application object. The host passes a pointer to it, as
/// `void*`, to every command's `OnCreate`.
class IApplication
{
public:
    virtual ~IApplication() = default;

    /// The map contents view (layer panel); may be null.
    virtual KivCarto::IPmdContents* GetMapContents() = 0;
    /// The map being shown; may be null.
    virtual KivUtility::_ptr_t<KivCarto::Map> GetCurrentMap() = 0;
    /// The desktop frame; may be null (a host without a main window).
    virtual IDesktopFrame* GetDesktopFrame() = 0;
    /// The configuration entry of a command this host created, or an empty
    /// entry for a command it does not know.
    virtual CommandInfo GetCommandInfo(const KivUI::ICommand* command) const = 0;
};

} // namespace KivFramework
