#pragma once

#include "KivFramework/BaseCommand.h"

namespace KivFramework {

class IDesktopFrame;

/// A command that also needs the desktop frame (main window, progress
/// indicator), taken from the application object in `OnCreate`.
class DesktopCommand : public BaseCommand
{
public:
    DesktopCommand();
    DesktopCommand(const DesktopCommand& other);
    DesktopCommand& operator=(const DesktopCommand& other);
    ~DesktopCommand() override;

    void OnCreate(void* hook) override;

protected:
    /// The host's desktop frame; null before `OnCreate` or in a host without one.
    IDesktopFrame* m_pDesktopFrame = nullptr;
};

} // namespace KivFramework
