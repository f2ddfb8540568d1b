#include "LayerPanel.h"

#include <QAction>
#include <QFileInfo>

#include <vector>

LayerPanel::LayerPanel(QWidget* parent)
    : QListWidget(parent),
      m_moveUp(new QAction(tr("Move Up"), this)),
      m_moveDown(new QAction(tr("Move Down"), this)),
      m_remove(new QAction(tr("Remove"), this)),
      m_zoomTo(new QAction(tr("Zoom to Layer"), this))
{
    setObjectName(QStringLiteral("layerPanel"));
    setWindowTitle(tr("Layers"));
    m_moveUp->setObjectName(QStringLiteral("actionLayerUp"));
    m_moveDown->setObjectName(QStringLiteral("actionLayerDown"));
    m_remove->setObjectName(QStringLiteral("actionLayerRemove"));
    m_zoomTo->setObjectName(QStringLiteral("actionZoomToLayer"));
    m_moveUp->setToolTip(tr("Draw the selected layer above the one over it"));
    m_moveDown->setToolTip(tr("Draw the selected layer below the one under it"));
    m_remove->setToolTip(tr("Take the selected layer out of the map"));
    m_zoomTo->setToolTip(tr("Show the whole of the selected layer"));
    // Short captions for the panel's own toolbar.
    m_moveUp->setIconText(tr("Up"));
    m_moveDown->setIconText(tr("Down"));
    m_remove->setShortcut(QKeySequence::Delete);
    m_remove->setShortcutContext(Qt::WidgetShortcut);
    addActions({m_zoomTo, m_moveUp, m_moveDown, m_remove});
    setContextMenuPolicy(Qt::ActionsContextMenu);

    connect(m_moveUp, &QAction::triggered, this, [this] { moveSelected(1); });
    connect(m_moveDown, &QAction::triggered, this, [this] { moveSelected(-1); });
    connect(m_remove, &QAction::triggered, this, &LayerPanel::removeSelected);
    connect(m_zoomTo, &QAction::triggered, this, [this] {
        if (selectedLayer() >= 0)
            emit zoomToLayerRequested(selectedLayer());
    });
    connect(this, &QListWidget::itemDoubleClicked, m_zoomTo, &QAction::trigger);
    connect(this, &QListWidget::currentRowChanged, this, &LayerPanel::updateActions);
    connect(this, &QListWidget::itemChanged, this, [this](QListWidgetItem* item) {
        if (!m_map)
            return;
        const int index = item->data(Qt::UserRole).toInt();
        if (auto layer = m_map->GetLayer(index)) {
            const bool visible = item->checkState() == Qt::Checked;
            if (layer->IsVisible() != visible) {
                layer->SetVisible(visible);
                emit layerVisibilityChanged();
            }
        }
    });
    updateActions();
}

void LayerPanel::setMap(const KivUtility::_ptr_t<KivCarto::Map>& map)
{
    m_map = map;
    RefreshContents();
}

void LayerPanel::RefreshContents()
{
    const QSignalBlocker block(this);
    const int selected = selectedLayer();
    clear();
    if (m_map) {
        for (int i = m_map->GetLayerCount() - 1; i >= 0; --i) {
            auto layer = m_map->GetLayer(i);
            auto* item = new QListWidgetItem(layer->GetName(), this);
            const QString path = layer->GetSourcePath();
            item->setToolTip(path.startsWith(QLatin1String("/vsi")) ? path : QFileInfo(path).absoluteFilePath());
            item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
            item->setCheckState(layer->IsVisible() ? Qt::Checked : Qt::Unchecked);
            item->setData(Qt::UserRole, i);
        }
        if (selected >= 0 && count() > 0)
            selectLayer(std::min(selected, count() - 1));
    }
    updateActions();
}

int LayerPanel::selectedLayer() const
{
    const QListWidgetItem* item = currentItem();
    return item ? item->data(Qt::UserRole).toInt() : -1;
}

void LayerPanel::selectLayer(int index)
{
    const int row = count() - 1 - index;
    if (row >= 0 && row < count())
        setCurrentRow(row);
    updateActions();
}

void LayerPanel::updateActions()
{
    const int index = selectedLayer();
    const int layers = m_map ? m_map->GetLayerCount() : 0;
    m_moveUp->setEnabled(index >= 0 && index + 1 < layers);
    m_moveDown->setEnabled(index > 0);
    m_remove->setEnabled(index >= 0);
    m_zoomTo->setEnabled(index >= 0);
}

void LayerPanel::moveSelected(int step)
{
    const int from = selectedLayer();
    const int to = from + step;
    if (!m_map || from < 0 || to < 0 || to >= m_map->GetLayerCount())
        return;
    // The map has no move operation: take the layers out and put them back
    // in the new order.
    std::vector<KivUtility::_ptr_t<KivCarto::Layer>> layers;
    for (int i = 0; i < m_map->GetLayerCount(); ++i)
        layers.push_back(m_map->GetLayer(i));
    std::swap(layers[from], layers[to]);
    m_map->ClearLayers();
    for (const auto& layer : layers)
        m_map->AddLayer(layer);
    RefreshContents();
    selectLayer(to);
    emit layersRearranged();
}

void LayerPanel::removeSelected()
{
    const int index = selectedLayer();
    if (!m_map || !m_map->RemoveLayer(index))
        return;
    RefreshContents();
    if (count() > 0)
        selectLayer(std::min(index, m_map->GetLayerCount() - 1));
    emit layersRearranged();
}
