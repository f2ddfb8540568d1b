#include "models/ModelEntryDialogs.h"

#include "models/Set4ParamsDlg.h"
#include "models/Set7ParamsDlg.h"

bool ModelEntryDialogs::Run(QWidget* parent, bool fourParameters,
                            const KivUtility::_ptr_t<KivGeometry::SpatialReference>& source,
                            const KivUtility::_ptr_t<KivGeometry::SpatialReference>& target)
{
    if (fourParameters) {
        Set4ParamsDlg dlg(parent);
        return dlg.exec() == QDialog::Accepted;
    }
    Set7ParamsDlg dlg(parent);
    dlg.SetSpatialReferences(source, target);
    return dlg.exec() == QDialog::Accepted;
}
