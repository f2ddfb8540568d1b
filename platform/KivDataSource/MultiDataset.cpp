#include "KivDataSource/MultiDataset.h"

namespace KivDataSource {

MultiDataset::MultiDataset(const QString& name, const QString& path,
                           const QList<KivUtility::_ptr_t<Dataset>>& members)
    : Dataset(DK_Container, name, path,
              members.isEmpty() ? KivUtility::_ptr_t<KivGeometry::SpatialReference>()
                                : members.first()->GetSpatialReference()),
      m_members(members)
{
}

MultiDataset::~MultiDataset() = default;

KivUtility::_ptr_t<Dataset> MultiDataset::GetDataset(int index) const
{
    if (index < 0 || index >= m_members.size())
        return nullptr;
    return m_members.at(index);
}

} // namespace KivDataSource
