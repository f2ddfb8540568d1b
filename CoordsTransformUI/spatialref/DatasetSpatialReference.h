#pragma once

#include "KivGeometry/SpatialReference.h"
#include "KivUtility/_ptr_t.h"

#include <QString>

/// The spatial reference of a dataset file (raster, vector or a container of
/// them), as the spatial reference dialog imports it.
///
/// It goes through the host's data-source library when that is built
/// (KIV_HAS_DATASOURCE); until then it reads the file with GDAL directly, the
/// way the data-source library does. This is the one place to change when
/// the data-source library lands.
class DatasetSpatialReference
{
public:
    /// `*opened` tells whether the file opened as a dataset at all; the result
    /// is null when it did not or when the data carries no system. A
    /// container answers with the first of its datasets that has one.
    static KivUtility::_ptr_t<KivGeometry::SpatialReference> Read(const QString& path, bool* opened);
};
