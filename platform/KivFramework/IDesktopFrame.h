#pragma once

class QWidget;

namespace KivFramework {

class IProgressIndicator;

/// The host's desktop frame: its main window and the progress indicator.
class IDesktopFrame
{
public:
    virtual ~IDesktopFrame() = default;

    virtual QWidget* GetMainWindow() = 0;
    /// May be null in a host without one.
    virtual IProgressIndicator* GetProgressIndicator() = 0;
};

} // namespace KivFramework
