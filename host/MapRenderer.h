#pragma once

#include "KivCarto/Map.h"
#include "KivUtility/_ptr_t.h"

#include <QColor>
#include <QImage>
#include <QRectF>
#include <QSize>
#include <QString>

#include <memory>
#include <utility>
#include <vector>

class LayerSource;

/// Draws a map's visible layers, first layer at the bottom, into an image of a
/// given size showing a given extent of the map's coordinate system (that of
/// its first layer). It keeps each layer's opened data, and forgets a layer
/// once it leaves the map. Extents are QRectF with x = minimum X and
/// y = minimum Y.
class MapRenderer
{
public:
    MapRenderer();
    ~MapRenderer();

    /// A transparent image with the map drawn on it.
    QImage render(const KivCarto::Map& map, const QRectF& extent, const QSize& size);
    void render(const KivCarto::Map& map, const QRectF& extent, QImage& image);

    /// Opens what the layers need and settles the map's system. Problems
    /// (unreadable files, missing transformations) are in `problems()`.
    void sync(const KivCarto::Map& map);
    /// The map's system as WKT, empty when its first layer has none.
    QString mapWkt() const { return m_mapWkt; }

    bool layerExtent(const KivCarto::Map& map, int index, QRectF* extent);
    /// The union of the visible layers' extents.
    bool fullExtent(const KivCarto::Map& map, QRectF* extent);

    /// The colour a vector layer is drawn in.
    QColor layerColor(const KivCarto::Layer* layer);
    LayerSource* source(const KivCarto::Layer* layer);

    /// The problems met since the last call.
    QStringList takeProblems() { return std::exchange(m_problems, {}); }

private:
    struct Entry
    {
        KivUtility::_ptr_t<KivCarto::Layer> layer;
        QString path;
        std::unique_ptr<LayerSource> source;  ///< null when the file cannot be read
        QString system;                       ///< the map system it was set up for
    };
    Entry* entryFor(const KivCarto::Layer* layer);

    std::vector<std::unique_ptr<Entry>> m_entries;
    QString m_mapWkt;
    QStringList m_problems;
    int m_colorsGiven = 0;
};
