#pragma once

namespace KivCarto {

/// The host's map contents view (its layer panel). The host's panel widget
/// implements this interface beside `QWidget`, so a plug-in that receives it
/// can cross-cast it with `dynamic_cast<QWidget*>` to parent its dialogs.
class IPmdContents
{
public:
    virtual ~IPmdContents() = default;

    /// Re-reads the current map's layers into the view.
    virtual void RefreshContents() = 0;
};

} // namespace KivCarto
