#pragma once

#include <QStringList>

class QWidget;

/// Lets a script reach the dialogs that other dialogs open (for the pictures
/// of the user guide): each name is a button of the dialog in front, or an
/// action of the main window, and is clicked in turn once the event loop runs.
class ScriptedClicks
{
public:
    /// Time between two clicks, in milliseconds.
    static constexpr int kStepMs = 400;

    /// Clicks `names` one by one, the first `firstDelayMs` after the call.
    static void schedule(QWidget* window, const QStringList& names, int firstDelayMs);

    /// Clicks the button or action `name` of the dialog in front (or of
    /// `window` when none is), or with "#N" the N-th entry of the open menu;
    /// false when there is none of that name.
    static bool click(QWidget* window, const QString& name);
};
