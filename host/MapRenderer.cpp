#include "MapRenderer.h"

#include "LayerSource.h"

#include <QPainter>

#include <algorithm>

namespace {

// Distinct, readable on white and on imagery.
const QColor kColors[] = {QColor(220, 60, 40), QColor(40, 130, 210), QColor(40, 160, 70), QColor(230, 150, 20),
                          QColor(150, 70, 190), QColor(20, 170, 170), QColor(200, 60, 140), QColor(120, 110, 40)};

// Marks an entry whose system was never set.
const QString kUnset = QStringLiteral("\x01unset");

} // namespace

MapRenderer::MapRenderer() = default;
MapRenderer::~MapRenderer() = default;

MapRenderer::Entry* MapRenderer::entryFor(const KivCarto::Layer* layer)
{
    for (auto& e : m_entries) {
        if (e->layer.get() == layer)
            return e.get();
    }
    return nullptr;
}

void MapRenderer::sync(const KivCarto::Map& map)
{
    // Forget layers that left the map, with their open files and caches.
    m_entries.erase(std::remove_if(m_entries.begin(), m_entries.end(),
                                   [&map](const std::unique_ptr<Entry>& e) {
                                       for (int i = 0; i < map.GetLayerCount(); ++i) {
                                           if (map.GetLayer(i).get() == e->layer.get())
                                               return false;
                                       }
                                       return true;
                                   }),
                    m_entries.end());
    for (int i = 0; i < map.GetLayerCount(); ++i) {
        auto layer = map.GetLayer(i);
        if (entryFor(layer.get()))
            continue;
        auto entry = std::make_unique<Entry>();
        entry->layer = layer;
        entry->path = layer->GetSourcePath();
        entry->system = kUnset;
        QString error;
        entry->source = LayerSource::open(entry->path, &error);
        if (entry->source) {
            entry->source->setColor(kColors[m_colorsGiven++ % (sizeof(kColors) / sizeof(kColors[0]))]);
        } else {
            m_problems << error;
        }
        m_entries.push_back(std::move(entry));
    }

    m_mapWkt.clear();
    if (map.GetLayerCount() > 0) {
        if (Entry* bottom = entryFor(map.GetLayer(0).get()); bottom && bottom->source)
            m_mapWkt = bottom->source->nativeWkt();
    }
    for (auto& e : m_entries) {
        if (!e->source || e->system == m_mapWkt)
            continue;
        QString error;
        if (!e->source->setMapSystem(m_mapWkt, &error))
            m_problems << error;
        e->system = m_mapWkt;
    }
}

QImage MapRenderer::render(const KivCarto::Map& map, const QRectF& extent, const QSize& size)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    render(map, extent, image);
    return image;
}

void MapRenderer::render(const KivCarto::Map& map, const QRectF& extent, QImage& image)
{
    image.fill(Qt::transparent);
    sync(map);
    if (extent.width() <= 0 || extent.height() <= 0 || image.isNull())
        return;
    const LayerSource::View view(extent, image.size());
    QPainter painter(&image);
    for (int i = 0; i < map.GetLayerCount(); ++i) {
        auto layer = map.GetLayer(i);
        if (!layer->IsVisible())
            continue;
        Entry* e = entryFor(layer.get());
        if (e && e->source) {
            painter.save();
            e->source->draw(painter, view);
            painter.restore();
        }
    }
}

bool MapRenderer::layerExtent(const KivCarto::Map& map, int index, QRectF* extent)
{
    sync(map);
    auto layer = map.GetLayer(index);
    Entry* e = layer ? entryFor(layer.get()) : nullptr;
    return e && e->source && e->source->extent(extent);
}

bool MapRenderer::fullExtent(const KivCarto::Map& map, QRectF* extent)
{
    sync(map);
    bool any = false;
    for (int i = 0; i < map.GetLayerCount(); ++i) {
        QRectF r;
        if (!map.GetLayer(i)->IsVisible() || !layerExtent(map, i, &r))
            continue;
        *extent = any ? LayerSource::united(*extent, r) : r;
        any = true;
    }
    return any;
}

QColor MapRenderer::layerColor(const KivCarto::Layer* layer)
{
    LayerSource* s = source(layer);
    return s ? s->color() : QColor();
}

LayerSource* MapRenderer::source(const KivCarto::Layer* layer)
{
    Entry* e = entryFor(layer);
    return e ? e->source.get() : nullptr;
}
