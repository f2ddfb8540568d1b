#pragma once

#include "KivCarto/Map.h"
#include "KivUtility/_ptr_t.h"
#include "MapRenderer.h"

#include <QImage>
#include <QWidget>

#include <memory>

class OGRCoordinateTransformation;

/// The central map area: draws the current map through a `MapRenderer`,
/// pans when dragged and zooms with the wheel around the cursor. While the
/// mouse drags, the last picture is moved instead of drawn again.
class MapView : public QWidget
{
    Q_OBJECT
public:
    explicit MapView(QWidget* parent = nullptr);
    ~MapView() override;

    void setMap(const KivUtility::_ptr_t<KivCarto::Map>& map);
    /// To be called when the map's layers changed: redraws, and shows the
    /// whole map when there was nothing to see before or its system changed.
    void mapChanged();

    /// The shown part of the map, in the map's system (x = minimum X,
    /// y = minimum Y); null before anything was shown.
    QRectF extent() const;
    /// Shows `extent` whole, centred, with square pixels.
    void setExtent(const QRectF& extent);
    /// False when the layer has no known extent.
    bool zoomToLayer(int index);
    bool zoomToAll();
    /// Zooms by `factor` (> 1 closer) keeping the map point under `pixel` in place.
    void zoomAt(const QPointF& pixel, double factor);
    /// Moves the map by a screen offset, as a drag does.
    void panBy(const QPoint& offset);

    QPointF toMap(const QPointF& pixel) const;
    /// Longitude and latitude of a map point in the map system's own
    /// geographic system; false when the map has no system.
    bool toLonLat(const QPointF& point, double* lon, double* lat);
    MapRenderer& renderer() { return m_renderer; }

signals:
    /// The map coordinates under the mouse.
    void cursorMoved(const QPointF& point);
    /// Layers that could not be read or drawn.
    void problemsFound(const QStringList& problems);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void invalidate();
    void reportProblems();

    KivUtility::_ptr_t<KivCarto::Map> m_map;
    MapRenderer m_renderer;
    QPointF m_center;
    double m_resolution = 0;  ///< map units per pixel; 0 before anything was shown
    QString m_shownWkt;       ///< the system m_center is in
    QImage m_image;
    bool m_dirty = true;
    bool m_dragging = false;
    QPoint m_dragStart;
    QPoint m_dragOffset;
    std::unique_ptr<OGRCoordinateTransformation> m_toGeographic;
    QString m_geographicFor;
};
