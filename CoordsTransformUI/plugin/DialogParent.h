#pragma once

class QWidget;

namespace KivFramework {
class IApplication;
}

/// The widget that parents a command's dialog: the host's map contents view,
/// cross-cast to a widget. Null when there is no host, no contents view, or
/// the view is not a widget (the dialog then opens without a parent).
QWidget* DialogParent(KivFramework::IApplication* application);
