#include "KivCarto/Map.h"

namespace KivCarto {

Map::Map(const QString& name) : m_name(name) {}

Map::~Map() = default;

KivUtility::_ptr_t<Layer> Map::GetLayer(int index) const
{
    if (index < 0 || index >= GetLayerCount())
        return nullptr;
    return m_layers[static_cast<size_t>(index)];
}

void Map::AddLayer(const KivUtility::_ptr_t<Layer>& layer)
{
    if (layer)
        m_layers.push_back(layer);
}

bool Map::RemoveLayer(int index)
{
    if (index < 0 || index >= GetLayerCount())
        return false;
    m_layers.erase(m_layers.begin() + index);
    return true;
}

void Map::ClearLayers()
{
    m_layers.clear();
}

void Map::Refresh(int flags, bool updateContents)
{
    Refreshed(flags, updateContents);
}

} // namespace KivCarto
