#include "plugin/CoordsTransformUIPlugin.h"

#include "plugin/BatchProjTransCommand.h"
#include "plugin/Calculate4ParamsCommand.h"
#include "plugin/Calculate7ParamsCommand.h"
#include "plugin/DataProjTransCommand.h"
#include "plugin/FileDataProjTransCommand.h"
#include "plugin/PointCoordsTransCommand.h"
#include "plugin/Set4ParamsCommand.h"
#include "plugin/Set7ParamsCommand.h"

#include <new>

namespace {

template <class Command>
KivUI::ICommand* make()
{
    return new (std::nothrow) Command;
}

struct FactoryEntry
{
    const char* name;
    KivUI::ICommand* (*create)();
};

// The names are the ones host configurations already carry; they are
// irregular (BatchProjectTrans for BatchProjTransCommand, the calculation
// commands named after the parameter count) and must stay exactly so.
const FactoryEntry kFactory[] = {
    {"CoordsTransform_7params", &make<Calculate7ParamsCommand>},
    {"CoordsTransform_FileDataProjTransCommand", &make<FileDataProjTransCommand>},
    {"CoordsTransform_PointCoordsTransCommand", &make<PointCoordsTransCommand>},
    {"CoordsTransform_DataProjTransCommand", &make<DataProjTransCommand>},
    {"CoordsTransform_4params", &make<Calculate4ParamsCommand>},
    {"CoordsTransform_Set7params", &make<Set7ParamsCommand>},
    {"CoordsTransform_Set4params", &make<Set4ParamsCommand>},
    {"CoordsTransform_BatchProjectTrans", &make<BatchProjTransCommand>},
};

} // namespace

CoordsTransformUIPlugin::CoordsTransformUIPlugin() = default;

CoordsTransformUIPlugin::~CoordsTransformUIPlugin() = default;

KivUtility::_ptr_t<KivUI::ICommand> CoordsTransformUIPlugin::CreateCommand(const QString& name, const QString& /*extra*/)
{
    for (const FactoryEntry& entry : kFactory) {
        if (name.compare(QLatin1String(entry.name), Qt::CaseInsensitive) != 0)
            continue;
        KivUI::ICommand* command = entry.create();
        if (!command)
            return nullptr;
        // Hold a working reference while the result takes its own, so the
        // result ends up with the only one.
        command->AddRef();
        KivUtility::_ptr_t<KivUI::ICommand> result(command);
        command->Release();
        return result;
    }
    return nullptr;
}
