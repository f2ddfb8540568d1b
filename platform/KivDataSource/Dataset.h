#pragma once

#include "KivGeometry/SpatialReference.h"
#include "KivUtility/CRef.h"
#include "KivUtility/_ptr_t.h"

#include <QString>

namespace KivDataSource {

/// What a dataset file holds, as `Dataset::GetKind()` reports it.
enum DatasetKind {
    DK_Unknown = 0,
    DK_Raster = 1,    ///< a raster (GeoTIFF, ERDAS IMG, ENVI, ...)
    DK_Vector = 2,    ///< one vector layer (a shapefile, or one layer of a container)
    DK_Container = 4  ///< several layers in one file or folder: GeoPackage, FileGDB, personal geodatabase
};

/// A dataset found at a path. It keeps no file open: it is a description of
/// what the file holds, so it may live as long as any dialog wants.
class Dataset : public KivUtility::CRef
{
public:
    Dataset(DatasetKind kind, const QString& name, const QString& path,
            const KivUtility::_ptr_t<KivGeometry::SpatialReference>& spatialReference);
    ~Dataset() override;

    /// One of `DatasetKind`.
    int GetKind() const { return m_kind; }
    /// The file's base name, or the layer's name for a member of a container.
    QString GetName() const { return m_name; }
    /// The path that was opened (a container's members share its path).
    QString GetPath() const { return m_path; }
    /// Null when the dataset carries no spatial reference.
    KivUtility::_ptr_t<KivGeometry::SpatialReference> GetSpatialReference() const { return m_spatialReference; }

private:
    DatasetKind m_kind;
    QString m_name;
    QString m_path;
    KivUtility::_ptr_t<KivGeometry::SpatialReference> m_spatialReference;
};

} // namespace KivDataSource
