#pragma once

#include "LayerSource.h"

#include <QPolygonF>
#include <QVector>

#include <gdal.h>

#include <memory>
#include <vector>

class OGRGeometry;
class OGRCoordinateTransformation;

/// A vector layer: every layer of an OGR dataset, its points, lines and
/// polygons drawn in the layer's colour. The features are read once, turned
/// into the map's system and kept (up to `maxCachedVertices()`); a bigger
/// dataset is read again on every draw, only where the view is. Features
/// outside the view are skipped; one smaller than a pixel is drawn as a dot,
/// a polygon a few pixels across as its box.
class VectorLayerSource : public LayerSource
{
public:
    /// 8,000,000 vertices, about 128 MB, unless changed.
    static qint64 maxCachedVertices();
    /// Applies to layers set up afterwards; tests lower it to reach the
    /// uncached path with small files.
    static void setMaxCachedVertices(qint64 vertices);

    /// Takes ownership of `dataset`.
    VectorLayerSource(const QString& path, GDALDatasetH dataset);
    ~VectorLayerSource() override;

    bool setMapSystem(const QString& wkt, QString* error) override;
    bool extent(QRectF* extent) const override;
    void draw(QPainter& painter, const View& view) override;

    /// Whether the features are held in memory (false: read on each draw).
    bool isCached() const { return m_cached; }
    int cachedFeatureCount() const { return static_cast<int>(m_store.features.size()); }

private:
    enum class Kind : unsigned char { Point, Line, Polygon };
    struct Feature
    {
        Kind kind;
        QRectF bounds;
        int firstPart;  ///< into m_parts
        int partCount;
    };
    struct Part
    {
        int first;  ///< into m_points
        int count;
    };
    struct Store
    {
        std::vector<Feature> features;
        std::vector<Part> parts;
        std::vector<QPointF> points;
        qint64 vertices() const { return static_cast<qint64>(points.size()); }
        void clear();
    };

    void addGeometry(Store& store, const OGRGeometry* geometry, OGRCoordinateTransformation* transform);
    bool readAll(Store& store, const QRectF* window, qint64 limit);
    void drawStore(QPainter& painter, const View& view, const Store& store);

    GDALDatasetH m_dataset;
    QString m_mapWkt;
    std::vector<std::unique_ptr<OGRCoordinateTransformation>> m_transforms;  ///< per OGR layer; null: none
    std::vector<std::unique_ptr<OGRCoordinateTransformation>> m_inverse;
    bool m_cached = false;
    Store m_store;
    QRectF m_extent;
    bool m_hasExtent = false;
    Store m_window;  ///< what an uncached draw read
    // Reused between draws.
    QVector<QPointF> m_screen;
    QVector<QRect> m_dots;    ///< points and tiny polygons, in the fill colour
    QVector<QRect> m_specks;  ///< features smaller than a pixel, in the outline colour
};
