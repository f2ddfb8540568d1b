#include "LayerPanel.h"

#include <QFileInfo>

LayerPanel::LayerPanel(QWidget* parent) : QListWidget(parent)
{
    setObjectName(QStringLiteral("layerPanel"));
    setWindowTitle(tr("Layers"));
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
}

void LayerPanel::setMap(const KivUtility::_ptr_t<KivCarto::Map>& map)
{
    m_map = map;
    RefreshContents();
}

void LayerPanel::RefreshContents()
{
    const QSignalBlocker block(this);
    clear();
    if (!m_map)
        return;
    for (int i = m_map->GetLayerCount() - 1; i >= 0; --i) {
        auto layer = m_map->GetLayer(i);
        auto* item = new QListWidgetItem(layer->GetName(), this);
        item->setToolTip(QFileInfo(layer->GetSourcePath()).absoluteFilePath());
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        item->setCheckState(layer->IsVisible() ? Qt::Checked : Qt::Unchecked);
        item->setData(Qt::UserRole, i);
    }
}
