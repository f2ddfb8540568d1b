// Temporary placeholder until the picker lands.
#include "KivAdapterUI/SpatialReferenceSelectorDlg.h"

namespace KivAdapterUI {
class SpatialReferenceSelectorDlgPrivate {};
SpatialReferenceSelectorDlg::SpatialReferenceSelectorDlg(QWidget* parent) : QDialog(parent) {}
SpatialReferenceSelectorDlg::~SpatialReferenceSelectorDlg() = default;
KivUtility::_ptr_t<KivGeometry::SpatialReference> SpatialReferenceSelectorDlg::GetCoordinateSystem() const { return nullptr; }
bool SpatialReferenceSelectorDlg::SelectCode(const QString&) { return false; }
}
