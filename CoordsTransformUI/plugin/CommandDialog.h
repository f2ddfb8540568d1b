#pragma once

#include "plugin/DialogParent.h"

/// Runs a command's dialog modally, parented to the host's contents view, and
/// destroys it on return. Nothing thrown inside may reach the host's event
/// loop, so it stops here.
template <class Dialog>
void RunCommandDialog(KivFramework::IApplication* application) noexcept
{
    try {
        Dialog dialog(DialogParent(application));
        dialog.exec();
    } catch (...) {
    }
}
