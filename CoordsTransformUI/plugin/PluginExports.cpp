// Entry points of the plug-in library, exported under undecorated names.

#include "plugin/CoordsTransformExports.h"
#include "plugin/CoordsTransformUIPlugin.h"
#include "reprojection/BatchProjTransDlg.h"
#include "reprojection/DataProjTransDlg.h"

#include <new>

#define COORDSTRANSFORM_EXPORT extern "C" __attribute__((visibility("default")))

COORDSTRANSFORM_EXPORT KivUI::CMDPluginModule* GetPluginModule()
{
    return new (std::nothrow) CoordsTransformUIPlugin;
}

// Nothing thrown while a dialog is built may leave the library.
COORDSTRANSFORM_EXPORT QDialog* GetDataPrjTransDialog()
{
    try {
        return new DataProjTransDlg(nullptr);
    } catch (...) {
        return nullptr;
    }
}

COORDSTRANSFORM_EXPORT stCoordsTransformInfo* GetPrjTransParams(QDialog* dialog)
{
    auto* own = dynamic_cast<DataProjTransDlg*>(dialog);
    return own ? own->GetParams() : nullptr;
}

COORDSTRANSFORM_EXPORT QDialog* GetBatchDataPrjTransDialog()
{
    try {
        return new BatchProjTransDlg(nullptr);
    } catch (...) {
        return nullptr;
    }
}

COORDSTRANSFORM_EXPORT stCoordsTransformInfo* GetBatchPrjTransParams(QDialog* dialog)
{
    auto* own = dynamic_cast<BatchProjTransDlg*>(dialog);
    return own ? own->GetParams() : nullptr;
}
