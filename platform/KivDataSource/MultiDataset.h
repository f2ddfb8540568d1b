#pragma once

#include "KivDataSource/Dataset.h"

#include <QList>

namespace KivDataSource {

/// A container of layers (kind `DK_Container`); every layer is a member of
/// kind `DK_Vector` whose name is the layer name. The container's own spatial
/// reference is that of its first member.
class MultiDataset : public Dataset
{
public:
    MultiDataset(const QString& name, const QString& path,
                 const QList<KivUtility::_ptr_t<Dataset>>& members);
    ~MultiDataset() override;

    int GetDatasetCount() const { return m_members.size(); }
    /// Member `index` (from 0), or null when there is no such member.
    KivUtility::_ptr_t<Dataset> GetDataset(int index) const;

private:
    QList<KivUtility::_ptr_t<Dataset>> m_members;
};

} // namespace KivDataSource
