#pragma once

#include <QColor>
#include <QPointF>
#include <QRectF>
#include <QSize>
#include <QString>

#include <memory>

class QPainter;
class OGRSpatialReference;

/// The data behind one map layer, read straight from its file with GDAL/OGR
/// and drawn in the map's coordinate system. Map extents are QRectF with
/// x = minimum X, y = minimum Y (Y grows upwards, unlike on screen).
class LayerSource
{
public:
    /// How a map extent lies on an image of a given size.
    struct View
    {
        View(const QRectF& extent, const QSize& size);
        QPointF toScreen(double x, double y) const { return {(x - minX) / resX, (maxY - y) / resY}; }
        QPointF toMap(double px, double py) const { return {minX + px * resX, maxY - py * resY}; }

        QRectF extent;
        QSize size;
        double minX, maxY, resX, resY;
    };

    /// GDAL's block cache size unless GDAL_CACHEMAX says otherwise.
    static constexpr long long kBlockCacheBytes = 96LL << 20;

    virtual ~LayerSource();

    /// The smallest extent holding both; unlike QRectF::united it keeps
    /// extents without area (a point, a straight line).
    static QRectF united(const QRectF& a, const QRectF& b);

    /// Opens `path` as a raster or a vector dataset; null with `error` set
    /// when GDAL cannot read it.
    static std::unique_ptr<LayerSource> open(const QString& path, QString* error);

    QString path() const { return m_path; }
    /// The dataset's own system as WKT; empty when it has none.
    QString nativeWkt() const { return m_nativeWkt; }

    /// Sets the system to draw in (empty: draw in the native coordinates).
    /// Returns false with `error` set when no transformation exists.
    virtual bool setMapSystem(const QString& wkt, QString* error) = 0;
    /// The data's extent in the map's system; false when unknown or empty.
    virtual bool extent(QRectF* extent) const = 0;
    /// Draws the part of the data inside `view` on `painter`, whose device
    /// has `view.size`.
    virtual void draw(QPainter& painter, const View& view) = 0;

    void setColor(const QColor& color) { m_color = color; }
    QColor color() const { return m_color; }

protected:
    explicit LayerSource(const QString& path);

    QString m_path;
    QString m_nativeWkt;
    QColor m_color = QColor(60, 120, 200);
};
