#include "MapView.h"

#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <ogr_spatialref.h>

#include <algorithm>
#include <cmath>

namespace {

// Room around a zoomed-to extent, so that its edges stay visible.
constexpr double kMargin = 1.05;

} // namespace

MapView::MapView(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("mapView"));
    setMinimumSize(320, 240);
    setAutoFillBackground(true);
    setMouseTracking(true);
    QPalette p = palette();
    p.setColor(QPalette::Window, Qt::white);
    setPalette(p);
}

MapView::~MapView() = default;

void MapView::setMap(const KivUtility::_ptr_t<KivCarto::Map>& map)
{
    m_map = map;
    m_resolution = 0;
    mapChanged();
}

void MapView::invalidate()
{
    m_dirty = true;
    update();
}

void MapView::mapChanged()
{
    if (!m_map || m_map->GetLayerCount() == 0) {
        m_resolution = 0;
        if (m_map)
            m_renderer.sync(*m_map);  // lets go of the removed layers' files
        invalidate();
        return;
    }
    m_renderer.sync(*m_map);
    reportProblems();
    if (m_resolution <= 0 || m_renderer.mapWkt() != m_shownWkt)
        zoomToAll();
    invalidate();
}

void MapView::reportProblems()
{
    const QStringList problems = m_renderer.takeProblems();
    if (!problems.isEmpty())
        emit problemsFound(problems);
}

QRectF MapView::extent() const
{
    if (m_resolution <= 0)
        return QRectF();
    const double w = width() * m_resolution;
    const double h = height() * m_resolution;
    return QRectF(m_center.x() - w / 2, m_center.y() - h / 2, w, h);
}

void MapView::setExtent(const QRectF& e)
{
    const double w = std::abs(e.width());
    const double h = std::abs(e.height());
    double res = std::max(w / std::max(1, width()), h / std::max(1, height())) * kMargin;
    if (!(res > 0) || !std::isfinite(res)) {
        // A single point: keep the scale if there is one.
        res = m_resolution > 0 ? m_resolution : 1.0;
    }
    m_center = e.center();
    m_resolution = res;
    m_shownWkt = m_renderer.mapWkt();
    invalidate();
}

bool MapView::zoomToLayer(int index)
{
    QRectF e;
    if (!m_map || !m_renderer.layerExtent(*m_map, index, &e))
        return false;
    setExtent(e);
    return true;
}

bool MapView::zoomToAll()
{
    QRectF e;
    if (!m_map || !m_renderer.fullExtent(*m_map, &e))
        return false;
    setExtent(e);
    return true;
}

void MapView::zoomAt(const QPointF& pixel, double factor)
{
    if (m_resolution <= 0 || !(factor > 0))
        return;
    const QPointF anchor = toMap(pixel);
    m_resolution /= factor;
    // The anchor stays under the same pixel.
    m_center.setX(anchor.x() - (pixel.x() - width() / 2.0) * m_resolution);
    m_center.setY(anchor.y() + (pixel.y() - height() / 2.0) * m_resolution);
    invalidate();
}

void MapView::panBy(const QPoint& offset)
{
    if (m_resolution <= 0)
        return;
    m_center.rx() -= offset.x() * m_resolution;
    m_center.ry() += offset.y() * m_resolution;
    invalidate();
}

QPointF MapView::toMap(const QPointF& pixel) const
{
    return {m_center.x() + (pixel.x() - width() / 2.0) * m_resolution,
            m_center.y() - (pixel.y() - height() / 2.0) * m_resolution};
}

bool MapView::toLonLat(const QPointF& point, double* lon, double* lat)
{
    const QString wkt = m_renderer.mapWkt();
    if (wkt.isEmpty())
        return false;
    if (wkt != m_geographicFor) {
        m_geographicFor = wkt;
        m_toGeographic.reset();
        OGRSpatialReference map;
        if (map.importFromWkt(wkt.toUtf8().constData()) == OGRERR_NONE) {
            map.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
            std::unique_ptr<OGRSpatialReference> geographic(map.CloneGeogCS());
            if (geographic) {
                geographic->SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
                m_toGeographic.reset(OGRCreateCoordinateTransformation(&map, geographic.get()));
            }
        }
    }
    if (!m_toGeographic)
        return false;
    double x = point.x();
    double y = point.y();
    if (!m_toGeographic->Transform(1, &x, &y) || !std::isfinite(x) || !std::isfinite(y))
        return false;
    *lon = x;
    *lat = y;
    return true;
}

void MapView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    if (!m_map || m_map->GetLayerCount() == 0) {
        painter.setPen(QColor(120, 120, 120));
        painter.drawText(rect().adjusted(20, 20, -20, -20), Qt::AlignCenter | Qt::TextWordWrap,
                         tr("No layers yet. File > Add Data shows rasters and vectors; the Coordinate "
                            "Transformation menu converts points, coordinate files and datasets, and computes "
                            "and stores transformation models."));
        return;
    }
    if (m_dragging && !m_image.isNull()) {
        painter.drawImage(m_dragOffset, m_image);
        return;
    }
    if (m_dirty || m_image.size() != size()) {
        if (m_image.size() != size())
            m_image = QImage(size(), QImage::Format_ARGB32_Premultiplied);
        m_renderer.render(*m_map, extent(), m_image);
        m_dirty = false;
        // Not from inside the paint event: whoever listens may open windows.
        QMetaObject::invokeMethod(this, &MapView::reportProblems, Qt::QueuedConnection);
    }
    painter.drawImage(0, 0, m_image);
}

void MapView::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    m_dirty = true;
}

void MapView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && m_resolution > 0) {
        m_dragging = true;
        m_dragStart = event->pos();
        m_dragOffset = QPoint();
        setCursor(Qt::ClosedHandCursor);
    }
}

void MapView::mouseMoveEvent(QMouseEvent* event)
{
    if (m_dragging) {
        m_dragOffset = event->pos() - m_dragStart;
        update();
    }
    if (m_resolution > 0)
        emit cursorMoved(toMap(event->pos()));
}

void MapView::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || !m_dragging)
        return;
    m_dragging = false;
    unsetCursor();
    const QPoint offset = event->pos() - m_dragStart;
    m_dragOffset = QPoint();
    if (!offset.isNull())
        panBy(offset);
    else
        update();
}

void MapView::wheelEvent(QWheelEvent* event)
{
    const int steps = event->angleDelta().y();
    if (steps == 0 || m_resolution <= 0)
        return;
    zoomAt(event->position(), std::pow(1.25, steps / 120.0));
    event->accept();
}
