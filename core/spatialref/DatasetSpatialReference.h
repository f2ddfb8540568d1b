#pragma once

#include "KivGeometry/SpatialReference.h"
#include "KivUtility/_ptr_t.h"

#include <QString>

/// The spatial reference of a dataset file (raster, vector layer or a
/// container of layers) as the spatial reference dialog and the command line
/// import it, through the host's data-source library.
class DatasetSpatialReference
{
public:
    /// `*opened` tells whether the file opened as a dataset at all; the result
    /// is null when it did not or when the data carries no system. A
    /// container answers with the first of its members that has one.
    static KivUtility::_ptr_t<KivGeometry::SpatialReference> Read(const QString& path, bool* opened);
};
