#include "KivDataSource/Dataset.h"

namespace KivDataSource {

Dataset::Dataset(DatasetKind kind, const QString& name, const QString& path,
                 const KivUtility::_ptr_t<KivGeometry::SpatialReference>& spatialReference)
    : m_kind(kind), m_name(name), m_path(path), m_spatialReference(spatialReference)
{
}

Dataset::~Dataset() = default;

} // namespace KivDataSource
