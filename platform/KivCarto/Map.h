#pragma once

#include "KivCarto/Layer.h"
#include "KivUtility/CRef.h"
#include "KivUtility/_ptr_t.h"

#include <QString>

#include <boost/signals2/signal.hpp>

#include <vector>

namespace KivCarto {

/// A map: an ordered list of layers, drawn from the first to the last.
class Map : public KivUtility::CRef
{
public:
    explicit Map(const QString& name = QString());
    ~Map() override;

    QString GetName() const { return m_name; }

    int GetLayerCount() const { return static_cast<int>(m_layers.size()); }
    /// Null outside 0 .. count-1.
    KivUtility::_ptr_t<Layer> GetLayer(int index) const;
    /// Appends a layer on top of the others; a null layer is ignored.
    void AddLayer(const KivUtility::_ptr_t<Layer>& layer);
    /// Removes the layer at `index`; false outside the list.
    bool RemoveLayer(int index);
    void ClearLayers();

    /// Asks every view of the map to redraw. `flags` is reserved (0 redraws
    /// everything); `updateContents` also refreshes the layer panel.
    void Refresh(int flags, bool updateContents);

    /// Raised by `Refresh` with its two arguments.
    boost::signals2::signal<void(int, bool)> Refreshed;

private:
    QString m_name;
    std::vector<KivUtility::_ptr_t<Layer>> m_layers;
};

} // namespace KivCarto
