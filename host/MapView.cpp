#include "MapView.h"

#include <QPainter>

MapView::MapView(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("mapView"));
    setMinimumSize(320, 240);
    setAutoFillBackground(true);
    QPalette p = palette();
    p.setColor(QPalette::Window, Qt::white);
    setPalette(p);
}

void MapView::setMap(const KivUtility::_ptr_t<KivCarto::Map>& map)
{
    m_map = map;
    update();
}

void MapView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setPen(QColor(120, 120, 120));
    const int layers = m_map ? m_map->GetLayerCount() : 0;
    const QString text = layers == 0
        ? tr("No layers yet. The Coordinate Transformation menu converts points, coordinate files\n"
             "and datasets, and computes and stores transformation models.")
        : tr("%n layer(s) in the map", nullptr, layers);
    painter.drawText(rect().adjusted(20, 20, -20, -20), Qt::AlignCenter | Qt::TextWordWrap, text);
}
