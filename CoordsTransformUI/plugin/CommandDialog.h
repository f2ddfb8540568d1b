#pragma once

#include "plugin/DialogParent.h"

#include <type_traits>

/// Runs a command's dialog modally, parented to the host's contents view, and
/// destroys it on return. Nothing thrown inside may reach the host's event
/// loop, so it stops here.
template <class Dialog>
void RunCommandDialog(KivFramework::IApplication* application) noexcept
{
    try {
        // A dialog that can use the host (its map) is given it.
        if constexpr (std::is_constructible_v<Dialog, QWidget*, KivFramework::IApplication*>) {
            Dialog dialog(DialogParent(application), application);
            dialog.exec();
        } else {
            Dialog dialog(DialogParent(application));
            dialog.exec();
        }
    } catch (...) {
    }
}
