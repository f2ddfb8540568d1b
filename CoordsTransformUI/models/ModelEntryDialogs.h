#pragma once

#include "KivGeometry/SpatialReference.h"
#include "KivUtility/_ptr_t.h"

class QWidget;

/// The "Import" button of the dialogs that offer stored models: the
/// seven-parameter entry dialog between two geographic bases (handed both
/// systems), the four-parameter one within one base.
class ModelEntryDialogs
{
public:
    /// Runs the fitting entry dialog modally over `parent`; true when it was
    /// accepted, so that the caller reads the store again.
    static bool Run(QWidget* parent, bool fourParameters,
                    const KivUtility::_ptr_t<KivGeometry::SpatialReference>& source,
                    const KivUtility::_ptr_t<KivGeometry::SpatialReference>& target);
};
