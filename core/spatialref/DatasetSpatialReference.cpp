#include "spatialref/DatasetSpatialReference.h"

#include "KivDataSource/Dataset.h"
#include "KivDataSource/DatasetFactory.h"
#include "KivDataSource/MultiDataset.h"

using SpatialReferencePtr = KivUtility::_ptr_t<KivGeometry::SpatialReference>;

namespace {

SpatialReferencePtr referenceOf(const KivUtility::_ptr_t<KivDataSource::Dataset>& dataset)
{
    if (!dataset)
        return nullptr;
    if (auto system = dataset->GetSpatialReference())
        return system;
    // Members of a container are layers, never containers themselves.
    if (dataset->GetKind() != KivDataSource::DK_Container)
        return nullptr;
    auto* container = dynamic_cast<KivDataSource::MultiDataset*>(dataset.get());
    for (int i = 0; container && i < container->GetDatasetCount(); ++i) {
        const auto member = container->GetDataset(i);
        if (auto system = member ? member->GetSpatialReference() : nullptr)
            return system;
    }
    return nullptr;
}

} // namespace

SpatialReferencePtr DatasetSpatialReference::Read(const QString& path, bool* opened)
{
    *opened = false;
    try {
        // Open mode 0: read-only, no open options.
        const auto dataset = KivDataSource::DatasetFactory::Instance()->OpenDataset(path, 0, QString());
        if (!dataset)
            return nullptr;
        *opened = true;
        return referenceOf(dataset);
    } catch (...) {
        return nullptr;
    }
}
