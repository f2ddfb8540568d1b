#pragma once

#include "KivUI/CMDPluginModule.h"

/// The plug-in's module object: creates the eight coordinate transformation
/// commands by name. It holds no state.
class CoordsTransformUIPlugin : public KivUI::CMDPluginModule
{
public:
    CoordsTransformUIPlugin();
    ~CoordsTransformUIPlugin() override;

    /// A new command for one of the eight names (compared ignoring case), or
    /// null. `extra` is accepted and ignored.
    KivUtility::_ptr_t<KivUI::ICommand> CreateCommand(const QString& name, const QString& extra) override;
};
