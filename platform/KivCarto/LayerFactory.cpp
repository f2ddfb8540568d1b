#include "KivCarto/LayerFactory.h"

#include "KivDataSource/DatasetFactory.h"

namespace KivCarto {

KivUtility::_ptr_t<Layer> LayerFactory::CreateDefaultLayer(const QString& path)
{
    const auto dataset = KivDataSource::DatasetFactory::Instance()->OpenDataset(path, 0, QString());
    if (!dataset)
        return nullptr;
    return new Layer(dataset->GetName(), path);
}

} // namespace KivCarto
