#pragma once

#include "KivUtility/CRef.h"

#include <QString>

namespace KivUI {

/// A host command: an entry of the host's menus and toolbars.
///
/// The host creates commands through a plug-in module, hands itself to each
/// one through `OnCreate` (an opaque pointer to its application object, a
/// `KivFramework::IApplication`), shows it with the caption, tooltip and icon
/// of its own configuration, asks `IsEnable`/`IsChecked` to paint it and calls
/// `OnClick` when the user picks it.
///
/// The virtual functions are declared in the order of the interface's slots.
class ICommand : public virtual KivUtility::CRef
{
public:
    ~ICommand() override = default;

    virtual QString GetName() const = 0;
    virtual QString GetCaption() const = 0;
    virtual QString GetToolTip() const = 0;
    virtual QString GetTypeName() const = 0;
    virtual bool IsEnable() = 0;
    virtual bool IsChecked() = 0;
    virtual void OnCreate(void* hook) = 0;
    virtual void OnClick() = 0;
};

} // namespace KivUI
