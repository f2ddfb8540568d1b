#pragma once

#include "KivCarto/IPmdContents.h"
#include "KivCarto/Map.h"
#include "KivUtility/_ptr_t.h"

#include <QListWidget>

/// The host's layer panel: lists the current map's layers, top layer first.
/// It is the map contents view that commands parent their dialogs to.
class LayerPanel : public QListWidget, public KivCarto::IPmdContents
{
    Q_OBJECT
public:
    explicit LayerPanel(QWidget* parent = nullptr);

    void setMap(const KivUtility::_ptr_t<KivCarto::Map>& map);
    void RefreshContents() override;

signals:
    /// A layer's visibility box was toggled.
    void layerVisibilityChanged();

private:
    KivUtility::_ptr_t<KivCarto::Map> m_map;
};
