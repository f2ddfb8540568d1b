#include "VectorLayerSource.h"

#include <QCoreApplication>
#include <QPainter>
#include <QPainterPath>

#include <ogr_geometry.h>
#include <ogr_spatialref.h>
#include <ogrsf_frmts.h>

#include <algorithm>
#include <cmath>

namespace {

// Closed on every side, unlike QRectF::intersects, which misses points and
// horizontal or vertical lines (rectangles without area).
bool touches(const QRectF& a, const QRectF& b)
{
    return a.left() <= b.right() && a.right() >= b.left() && a.top() <= b.bottom() && a.bottom() >= b.top();
}

std::unique_ptr<OGRSpatialReference> systemFrom(const QString& wkt)
{
    if (wkt.isEmpty())
        return nullptr;
    auto srs = std::make_unique<OGRSpatialReference>();
    if (srs->importFromWkt(wkt.toUtf8().constData()) != OGRERR_NONE)
        return nullptr;
    srs->SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    return srs;
}

qint64 g_maxCachedVertices = 8'000'000;

} // namespace

qint64 VectorLayerSource::maxCachedVertices()
{
    return g_maxCachedVertices;
}

void VectorLayerSource::setMaxCachedVertices(qint64 vertices)
{
    g_maxCachedVertices = vertices;
}

void VectorLayerSource::Store::clear()
{
    // clear() keeps the capacity, so reading again does not reallocate.
    features.clear();
    parts.clear();
    points.clear();
}

VectorLayerSource::VectorLayerSource(const QString& path, GDALDatasetH dataset)
    : LayerSource(path), m_dataset(dataset)
{
    auto* ds = GDALDataset::FromHandle(m_dataset);
    for (int i = 0; i < ds->GetLayerCount(); ++i) {
        if (const OGRSpatialReference* srs = ds->GetLayer(i)->GetSpatialRef()) {
            char* wkt = nullptr;
            if (srs->exportToWkt(&wkt) == OGRERR_NONE)
                m_nativeWkt = QString::fromUtf8(wkt);
            CPLFree(wkt);
            break;
        }
    }
    // Nothing is read until the map's system is known.
}

VectorLayerSource::~VectorLayerSource()
{
    m_transforms.clear();
    m_inverse.clear();
    GDALClose(m_dataset);
}

bool VectorLayerSource::setMapSystem(const QString& wkt, QString* error)
{
    m_mapWkt = wkt;
    m_transforms.clear();
    m_inverse.clear();
    bool ok = true;
    auto* ds = GDALDataset::FromHandle(m_dataset);
    const auto target = systemFrom(wkt);
    for (int i = 0; i < ds->GetLayerCount(); ++i) {
        OGRCoordinateTransformation* forward = nullptr;
        OGRCoordinateTransformation* inverse = nullptr;
        const OGRSpatialReference* own = ds->GetLayer(i)->GetSpatialRef();
        if (own && target && !own->IsSame(target.get())) {
            OGRSpatialReference source(*own);
            source.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
            forward = OGRCreateCoordinateTransformation(&source, target.get());
            inverse = OGRCreateCoordinateTransformation(target.get(), &source);
            if (!forward || !inverse) {
                ok = false;
                if (error)
                    *error = QCoreApplication::translate("VectorLayerSource",
                                                     "%1 cannot be drawn in the map's coordinate system: %2")
                                 .arg(m_path, QString::fromUtf8(CPLGetLastErrorMsg()));
                delete forward;
                delete inverse;
                forward = inverse = nullptr;
            }
        }
        m_transforms.emplace_back(forward);
        m_inverse.emplace_back(inverse);
    }

    m_store.clear();
    m_cached = readAll(m_store, nullptr, g_maxCachedVertices);
    m_extent = QRectF();
    m_hasExtent = false;
    if (m_cached) {
        bool first = true;
        double x0 = 0, y0 = 0, x1 = 0, y1 = 0;
        for (const Feature& f : m_store.features) {
            if (first) {
                x0 = f.bounds.left(); y0 = f.bounds.top(); x1 = f.bounds.right(); y1 = f.bounds.bottom();
                first = false;
            } else {
                x0 = std::min(x0, f.bounds.left()); y0 = std::min(y0, f.bounds.top());
                x1 = std::max(x1, f.bounds.right()); y1 = std::max(y1, f.bounds.bottom());
            }
        }
        m_hasExtent = !first;
        if (m_hasExtent)
            m_extent = QRectF(QPointF(x0, y0), QPointF(x1, y1));
    } else {
        // Too big to hold: give the memory back and take the extent from the
        // layers' own headers.
        m_store = Store();
        for (int i = 0; i < ds->GetLayerCount(); ++i) {
            OGREnvelope env;
            if (ds->GetLayer(i)->GetExtent(&env, TRUE) != OGRERR_NONE)
                continue;
            double x0 = env.MinX, y0 = env.MinY, x1 = env.MaxX, y1 = env.MaxY;
            if (m_transforms[i]
                && !m_transforms[i]->TransformBounds(env.MinX, env.MinY, env.MaxX, env.MaxY, &x0, &y0, &x1, &y1, 21))
                continue;
            const QRectF r(QPointF(x0, y0), QPointF(x1, y1));
            m_extent = m_hasExtent ? united(m_extent, r) : r;
            m_hasExtent = true;
        }
    }
    return ok;
}

bool VectorLayerSource::extent(QRectF* extent) const
{
    if (!m_hasExtent)
        return false;
    *extent = m_extent;
    return true;
}

void VectorLayerSource::addGeometry(Store& store, const OGRGeometry* geometry, OGRCoordinateTransformation* transform)
{
    if (!geometry || geometry->IsEmpty())
        return;
    const OGRwkbGeometryType type = wkbFlatten(geometry->getGeometryType());
    if (type == wkbGeometryCollection || type == wkbMultiPoint || type == wkbMultiLineString
        || type == wkbMultiPolygon || type == wkbMultiCurve || type == wkbMultiSurface) {
        // Each member becomes a feature of its own: its own bounds for
        // skipping and for the dot test.
        for (const OGRGeometry* member : *geometry->toGeometryCollection())
            addGeometry(store, member, transform);
        return;
    }
    if (OGR_GT_IsNonLinear(type)) {
        std::unique_ptr<OGRGeometry> linear(geometry->getLinearGeometry());
        if (linear && !OGR_GT_IsNonLinear(wkbFlatten(linear->getGeometryType())))
            addGeometry(store, linear.get(), transform);
        return;
    }

    Feature feature{Kind::Point, QRectF(), static_cast<int>(store.parts.size()), 0};
    std::vector<const OGRSimpleCurve*> rings;
    if (type == wkbPoint) {
        feature.kind = Kind::Point;
    } else if (type == wkbLineString || type == wkbLinearRing) {
        feature.kind = Kind::Line;
        rings.push_back(geometry->toSimpleCurve());
    } else if (type == wkbPolygon || type == wkbTriangle) {
        feature.kind = Kind::Polygon;
        for (const OGRLinearRing* ring : *geometry->toPolygon())
            rings.push_back(ring);
    } else {
        return;  // surfaces and the like: nothing sensible to draw
    }

    static thread_local std::vector<double> xs, ys;
    static thread_local std::vector<int> success;
    auto addPart = [&](int count, auto fetch) {
        xs.resize(count);
        ys.resize(count);
        for (int i = 0; i < count; ++i)
            fetch(i, xs[i], ys[i]);
        success.assign(count, TRUE);
        if (transform && !transform->Transform(count, xs.data(), ys.data(), nullptr, success.data())) {
            // Keep what did transform; a point outside the target system's
            // domain is dropped rather than drawn somewhere wrong.
        }
        Part part{static_cast<int>(store.points.size()), 0};
        for (int i = 0; i < count; ++i) {
            if (success[i] && std::isfinite(xs[i]) && std::isfinite(ys[i])) {
                store.points.emplace_back(xs[i], ys[i]);
                ++part.count;
            }
        }
        if (part.count > 0) {
            store.parts.push_back(part);
            ++feature.partCount;
        }
    };
    if (feature.kind == Kind::Point) {
        const OGRPoint* p = geometry->toPoint();
        addPart(1, [p](int, double& x, double& y) { x = p->getX(); y = p->getY(); });
    } else {
        for (const OGRSimpleCurve* curve : rings)
            addPart(curve->getNumPoints(), [curve](int i, double& x, double& y) {
                x = curve->getX(i);
                y = curve->getY(i);
            });
    }
    if (feature.partCount == 0)
        return;
    const Part& firstPart = store.parts[feature.firstPart];
    double x0 = store.points[firstPart.first].x(), x1 = x0;
    double y0 = store.points[firstPart.first].y(), y1 = y0;
    for (size_t i = firstPart.first; i < store.points.size(); ++i) {
        const QPointF& p = store.points[i];
        x0 = std::min(x0, p.x()); x1 = std::max(x1, p.x());
        y0 = std::min(y0, p.y()); y1 = std::max(y1, p.y());
    }
    feature.bounds = QRectF(QPointF(x0, y0), QPointF(x1, y1));
    store.features.push_back(feature);
}

bool VectorLayerSource::readAll(Store& store, const QRectF* window, qint64 limit)
{
    auto* ds = GDALDataset::FromHandle(m_dataset);
    for (int i = 0; i < ds->GetLayerCount(); ++i) {
        OGRLayer* layer = ds->GetLayer(i);
        if (window) {
            double x0 = window->left(), y0 = window->top(), x1 = window->right(), y1 = window->bottom();
            if (m_inverse[i]
                && !m_inverse[i]->TransformBounds(window->left(), window->top(), window->right(), window->bottom(),
                                                  &x0, &y0, &x1, &y1, 21)) {
                layer->SetSpatialFilter(nullptr);
            } else {
                layer->SetSpatialFilterRect(x0, y0, x1, y1);
            }
        } else {
            layer->SetSpatialFilter(nullptr);
        }
        layer->ResetReading();
        while (OGRFeature* feature = layer->GetNextFeature()) {
            addGeometry(store, feature->GetGeometryRef(), m_transforms[i].get());
            OGRFeature::DestroyFeature(feature);
            if (limit > 0 && store.vertices() > limit)
                return false;
        }
        layer->SetSpatialFilter(nullptr);
    }
    return true;
}

void VectorLayerSource::draw(QPainter& painter, const View& view)
{
    if (m_cached) {
        drawStore(painter, view, m_store);
    } else {
        m_window.clear();
        readAll(m_window, &view.extent, 0);
        drawStore(painter, view, m_window);
    }
}

void VectorLayerSource::drawStore(QPainter& painter, const View& view, const Store& store)
{
    const QColor fill = color();
    const QColor outline = color().darker(160);
    // Cosmetic pens take the raster engine's fast path; a wide pen is
    // stroked into a polygon first, which costs more than the fill.
    QPen linePen(fill, 2.0);
    linePen.setCosmetic(true);
    QPen outlinePen(outline, 1.0);
    outlinePen.setCosmetic(true);
    painter.setRenderHint(QPainter::Antialiasing, false);
    m_dots.clear();
    m_specks.clear();
    // Pen and brush change only between lines and polygons: every change
    // makes the paint engine set up its state again.
    Kind state = Kind::Point;

    auto screenPart = [&](const Part& part) {
        // Screen points, without runs that fall into the same pixel.
        m_screen.clear();
        for (int i = 0; i < part.count; ++i) {
            const QPointF& p = store.points[part.first + i];
            const QPointF s = view.toScreen(p.x(), p.y());
            if (!m_screen.isEmpty() && i + 1 < part.count && std::abs(s.x() - m_screen.last().x()) < 0.5
                && std::abs(s.y() - m_screen.last().y()) < 0.5)
                continue;
            m_screen.append(s);
        }
    };

    for (const Feature& f : store.features) {
        if (!touches(f.bounds, view.extent))
            continue;
        if (f.kind == Kind::Point) {
            for (int k = 0; k < f.partCount; ++k) {
                const QPointF& p = store.points[store.parts[f.firstPart + k].first];
                const QPointF s = view.toScreen(p.x(), p.y());
                m_dots.append(QRect(static_cast<int>(std::floor(s.x())) - 3, static_cast<int>(std::floor(s.y())) - 3, 7, 7));
            }
            continue;
        }
        const double w = f.bounds.width() / view.resX;
        const double h = f.bounds.height() / view.resY;
        if (w < 1 && h < 1) {
            const QPointF s = view.toScreen(f.bounds.center().x(), f.bounds.center().y());
            m_specks.append(QRect(static_cast<int>(std::floor(s.x())), static_cast<int>(std::floor(s.y())), 1, 1));
            continue;
        }
        if (f.kind == Kind::Polygon && w < 3 && h < 3) {
            // A few pixels across: its box looks the same and costs far less.
            const QPointF s = view.toScreen(f.bounds.left(), f.bounds.bottom());
            m_dots.append(QRect(static_cast<int>(std::floor(s.x())), static_cast<int>(std::floor(s.y())),
                                 static_cast<int>(std::ceil(w)), static_cast<int>(std::ceil(h))));
            continue;
        }
        if (f.kind == Kind::Line) {
            if (state != Kind::Line) {
                painter.setPen(linePen);
                painter.setBrush(Qt::NoBrush);
                state = Kind::Line;
            }
            for (int k = 0; k < f.partCount; ++k) {
                screenPart(store.parts[f.firstPart + k]);
                painter.drawPolyline(m_screen.constData(), m_screen.size());
            }
        } else {
            if (state != Kind::Polygon) {
                painter.setPen(outlinePen);
                painter.setBrush(fill);
                state = Kind::Polygon;
            }
            if (f.partCount == 1) {
                screenPart(store.parts[f.firstPart]);
                painter.drawPolygon(m_screen.constData(), m_screen.size());
            } else {
                // Rings after the first are holes.
                QPainterPath path;
                path.setFillRule(Qt::OddEvenFill);
                for (int k = 0; k < f.partCount; ++k) {
                    screenPart(store.parts[f.firstPart + k]);
                    path.addPolygon(QPolygonF(m_screen));
                    path.closeSubpath();
                }
                painter.drawPath(path);
            }
        }
    }
    for (const QRect& dot : m_dots)
        painter.fillRect(dot, fill);
    for (const QRect& speck : m_specks)
        painter.fillRect(speck, outline);
}
