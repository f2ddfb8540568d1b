#pragma once

#include <QString>

#include <boost/signals2/signal.hpp>

namespace KivFramework {

/// The host's progress indicator (a bar, a text and a Cancel button in the
/// main window's status bar).
class IProgressIndicator
{
public:
    virtual ~IProgressIndicator() = default;

    /// Shows the indicator with `percent` (0 to 100) and `text`.
    virtual void ShowProgress(double percent, const QString& text) = 0;
    /// Ends the current task: the indicator hides after a moment, keeping the
    /// last text readable.
    virtual void End() = 0;
    /// Back to 0 % with no text.
    virtual void Reset() = 0;

    /// Raised when the user presses the indicator's Cancel button.
    boost::signals2::signal<void()> CancelRequested;
};

} // namespace KivFramework
