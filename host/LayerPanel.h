#pragma once

#include "KivCarto/IPmdContents.h"
#include "KivCarto/Map.h"
#include "KivUtility/_ptr_t.h"

#include <QListWidget>

class QAction;

/// The host's layer panel: lists the current map's layers, top layer first,
/// with a box that shows or hides each one; its actions move the selected
/// layer up or down, remove it or zoom to it. It is the map contents view
/// that commands parent their dialogs to.
class LayerPanel : public QListWidget, public KivCarto::IPmdContents
{
    Q_OBJECT
public:
    explicit LayerPanel(QWidget* parent = nullptr);

    void setMap(const KivUtility::_ptr_t<KivCarto::Map>& map);
    void RefreshContents() override;

    /// The map index of the selected layer, -1 when none is.
    int selectedLayer() const;
    /// Selects the row of the layer at map index `index`.
    void selectLayer(int index);

    QAction* moveUpAction() const { return m_moveUp; }
    QAction* moveDownAction() const { return m_moveDown; }
    QAction* removeAction() const { return m_remove; }
    QAction* zoomToLayerAction() const { return m_zoomTo; }

signals:
    /// A layer's visibility box was toggled.
    void layerVisibilityChanged();
    /// Layers were moved or removed through the panel.
    void layersRearranged();
    void zoomToLayerRequested(int index);

private:
    void moveSelected(int step);
    void removeSelected();
    void updateActions();

    KivUtility::_ptr_t<KivCarto::Map> m_map;
    QAction* m_moveUp;
    QAction* m_moveDown;
    QAction* m_remove;
    QAction* m_zoomTo;
};
