#include "RasterLayerSource.h"

#include <QImage>
#include <QCoreApplication>
#include <QPainter>

#include <gdal_alg.h>
#include <gdalwarper.h>
#include <ogr_spatialref.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

bool sameSystem(const QString& a, const QString& b)
{
    if (a.isEmpty() || b.isEmpty() || a == b)
        return true;
    OGRSpatialReference ra, rb;
    if (ra.importFromWkt(a.toUtf8().constData()) != OGRERR_NONE
        || rb.importFromWkt(b.toUtf8().constData()) != OGRERR_NONE)
        return true;
    return ra.IsSame(&rb);
}

// The largest image read for the grey stretch: enough for stable
// percentiles, small enough to come from an overview.
constexpr int kStatisticsSize = 512;

} // namespace

RasterLayerSource::RasterLayerSource(const QString& path, GDALDatasetH dataset)
    : LayerSource(path), m_dataset(dataset)
{
    if (const char* wkt = GDALGetProjectionRef(m_dataset))
        m_nativeWkt = QString::fromUtf8(wkt);

    const int count = GDALGetRasterCount(m_dataset);
    GDALRasterBandH first = GDALGetRasterBand(m_dataset, 1);
    if (count >= 3) {
        m_mode = Mode::Rgb;
        // Honour the declared colour roles when the file has them.
        int red = 1, green = 2, blue = 3;
        for (int i = 1; i <= count; ++i) {
            switch (GDALGetRasterColorInterpretation(GDALGetRasterBand(m_dataset, i))) {
            case GCI_RedBand: red = i; break;
            case GCI_GreenBand: green = i; break;
            case GCI_BlueBand: blue = i; break;
            default: break;
            }
        }
        m_bands = {{red, green, blue}};
    } else if (GDALColorTableH table = GDALGetRasterColorTable(first);
               table && GDALGetRasterColorInterpretation(first) == GCI_PaletteIndex) {
        m_mode = Mode::Palette;
        const int entries = GDALGetColorEntryCount(table);
        m_palette.resize(entries);
        for (int i = 0; i < entries; ++i) {
            const GDALColorEntry* e = GDALGetColorEntry(table, i);
            m_palette[i] = qRgba(e->c1, e->c2, e->c3, e->c4);
        }
    }
    computeStretch();
    setMapSystem(QString(), nullptr);
}

RasterLayerSource::~RasterLayerSource()
{
    if (m_warped)
        GDALClose(m_warped);
    GDALClose(m_dataset);
}

void RasterLayerSource::computeStretch()
{
    if (m_mode == Mode::Palette)
        return;
    const int w = std::min(kStatisticsSize, GDALGetRasterXSize(m_dataset));
    const int h = std::min(kStatisticsSize, GDALGetRasterYSize(m_dataset));
    std::vector<float> values(static_cast<size_t>(w) * h);
    std::vector<unsigned char> mask(values.size());
    const int used = m_mode == Mode::Rgb ? 3 : 1;
    for (int k = 0; k < used; ++k) {
        GDALRasterBandH band = GDALGetRasterBand(m_dataset, m_bands[k]);
        // Eight-bit colour bands are shown as they are.
        if (m_mode == Mode::Rgb && GDALGetRasterDataType(band) == GDT_Byte) {
            m_low[k] = 0;
            m_high[k] = 255;
            continue;
        }
        GDALRasterIOExtraArg extra;
        INIT_RASTERIO_EXTRA_ARG(extra);
        if (GDALRasterIOEx(band, GF_Read, 0, 0, GDALGetRasterXSize(m_dataset), GDALGetRasterYSize(m_dataset),
                           values.data(), w, h, GDT_Float32, 0, 0, &extra) != CE_None)
            continue;
        GDALRasterBandH maskBand = GDALGetMaskBand(band);
        const bool allValid = GDALGetMaskFlags(band) & GMF_ALL_VALID;
        if (!allValid
            && GDALRasterIOEx(maskBand, GF_Read, 0, 0, GDALGetRasterXSize(m_dataset), GDALGetRasterYSize(m_dataset),
                              mask.data(), w, h, GDT_Byte, 0, 0, &extra) != CE_None)
            std::fill(mask.begin(), mask.end(), 255);
        std::vector<float> valid;
        valid.reserve(values.size());
        for (size_t i = 0; i < values.size(); ++i) {
            if ((allValid || mask[i] != 0) && std::isfinite(values[i]))
                valid.push_back(values[i]);
        }
        if (valid.empty())
            continue;
        auto at = [&valid](double fraction) {
            auto nth = valid.begin() + static_cast<std::ptrdiff_t>(fraction * (valid.size() - 1));
            std::nth_element(valid.begin(), nth, valid.end());
            return static_cast<double>(*nth);
        };
        double low = at(0.02);
        double high = at(0.98);
        if (high <= low) {
            // A nearly constant band: fall back to its full range.
            low = *std::min_element(valid.begin(), valid.end());
            high = *std::max_element(valid.begin(), valid.end());
        }
        m_low[k] = low;
        m_high[k] = high;
    }
}

bool RasterLayerSource::setMapSystem(const QString& wkt, QString* error)
{
    if (m_warped) {
        GDALClose(m_warped);
        m_warped = nullptr;
    }
    double gt[6] = {0, 1, 0, 0, 0, -1};
    const bool hasTransform = GDALGetGeoTransform(m_dataset, gt) == CE_None;
    const bool northUp = gt[2] == 0.0 && gt[4] == 0.0 && gt[1] > 0 && gt[5] < 0;
    const bool reproject = !sameSystem(m_nativeWkt, wkt);
    if (hasTransform && (reproject || !northUp)) {
        // Warp on the fly, with an alpha band so that what lies outside the
        // source stays transparent.
        const int count = GDALGetRasterCount(m_dataset);
        GDALWarpOptions* options = GDALCreateWarpOptions();
        options->nBandCount = count;
        options->panSrcBands = static_cast<int*>(CPLMalloc(sizeof(int) * count));
        options->panDstBands = static_cast<int*>(CPLMalloc(sizeof(int) * count));
        for (int i = 0; i < count; ++i)
            options->panSrcBands[i] = options->panDstBands[i] = i + 1;
        options->nDstAlphaBand = count + 1;
        const QByteArray src = m_nativeWkt.toUtf8();
        const QByteArray dst = (reproject ? wkt : m_nativeWkt).toUtf8();
        m_warped = GDALAutoCreateWarpedVRT(m_dataset, src.isEmpty() ? nullptr : src.constData(),
                                           dst.isEmpty() ? nullptr : dst.constData(), GRA_NearestNeighbour, 0.125,
                                           options);
        GDALDestroyWarpOptions(options);
        if (!m_warped) {
            if (error)
                *error = QCoreApplication::translate("RasterLayerSource",
                                                     "%1 cannot be drawn in the map's coordinate system: %2")
                             .arg(m_path, QString::fromUtf8(CPLGetLastErrorMsg()));
            // Drawn where it is rather than not at all.
            std::copy(gt, gt + 6, m_transform.begin());
            m_width = GDALGetRasterXSize(m_dataset);
            m_height = GDALGetRasterYSize(m_dataset);
            return false;
        }
    }
    GDALDatasetH ds = drawn();
    if (!hasTransform) {
        // Image space, with rows going down.
        gt[0] = 0; gt[1] = 1; gt[2] = 0; gt[3] = 0; gt[4] = 0; gt[5] = -1;
    } else if (m_warped) {
        GDALGetGeoTransform(m_warped, gt);
    }
    std::copy(gt, gt + 6, m_transform.begin());
    m_width = GDALGetRasterXSize(ds);
    m_height = GDALGetRasterYSize(ds);
    return true;
}

bool RasterLayerSource::extent(QRectF* extent) const
{
    if (m_width <= 0 || m_height <= 0)
        return false;
    const double x0 = m_transform[0];
    const double x1 = x0 + m_width * m_transform[1];
    const double y0 = m_transform[3];
    const double y1 = y0 + m_height * m_transform[5];
    *extent = QRectF(QPointF(std::min(x0, x1), std::min(y0, y1)), QPointF(std::max(x0, x1), std::max(y0, y1)));
    return true;
}

void RasterLayerSource::draw(QPainter& painter, const View& view)
{
    QRectF bounds;
    if (m_transform[1] == 0.0 || m_transform[5] == 0.0 || !extent(&bounds))
        return;
    const QRectF visible = bounds.intersected(view.extent);
    if (visible.isEmpty())
        return;

    // Whole screen pixels covering the visible part, then the exact source
    // window they show.
    const QPointF topLeft = view.toScreen(visible.left(), visible.bottom());
    const QPointF bottomRight = view.toScreen(visible.right(), visible.top());
    const int sx0 = std::max(0, static_cast<int>(std::floor(topLeft.x())));
    const int sy0 = std::max(0, static_cast<int>(std::floor(topLeft.y())));
    const int sx1 = std::min(view.size.width(), static_cast<int>(std::ceil(bottomRight.x())));
    const int sy1 = std::min(view.size.height(), static_cast<int>(std::ceil(bottomRight.y())));
    const int bw = sx1 - sx0;
    const int bh = sy1 - sy0;
    if (bw <= 0 || bh <= 0)
        return;
    const QPointF m0 = view.toMap(sx0, sy0);
    const QPointF m1 = view.toMap(sx1, sy1);
    double c0 = (m0.x() - m_transform[0]) / m_transform[1];
    double c1 = (m1.x() - m_transform[0]) / m_transform[1];
    double r0 = (m0.y() - m_transform[3]) / m_transform[5];
    double r1 = (m1.y() - m_transform[3]) / m_transform[5];
    // The screen pixels may reach past the raster's edge; clip the window and
    // shrink the target rectangle alike.
    double tx0 = sx0, ty0 = sy0, tx1 = sx1, ty1 = sy1;
    const double pxPerCol = (tx1 - tx0) / (c1 - c0);
    const double pxPerRow = (ty1 - ty0) / (r1 - r0);
    if (c0 < 0) { tx0 += -c0 * pxPerCol; c0 = 0; }
    if (r0 < 0) { ty0 += -r0 * pxPerRow; r0 = 0; }
    if (c1 > m_width) { tx1 -= (c1 - m_width) * pxPerCol; c1 = m_width; }
    if (r1 > m_height) { ty1 -= (r1 - m_height) * pxPerRow; r1 = m_height; }
    if (c1 <= c0 || r1 <= r0)
        return;

    GDALRasterIOExtraArg extra;
    INIT_RASTERIO_EXTRA_ARG(extra);
    extra.eResampleAlg = GRIORA_NearestNeighbour;
    extra.bFloatingPointWindowValidity = TRUE;
    extra.dfXOff = c0;
    extra.dfYOff = r0;
    extra.dfXSize = c1 - c0;
    extra.dfYSize = r1 - r0;
    const int xOff = std::clamp(static_cast<int>(std::floor(c0)), 0, m_width - 1);
    const int yOff = std::clamp(static_cast<int>(std::floor(r0)), 0, m_height - 1);
    const int xSize = std::clamp(static_cast<int>(std::ceil(c1)) - xOff, 1, m_width - xOff);
    const int ySize = std::clamp(static_cast<int>(std::ceil(r1)) - yOff, 1, m_height - yOff);

    const int ow = std::max(1, static_cast<int>(std::lround(tx1 - tx0)));
    const int oh = std::max(1, static_cast<int>(std::lround(ty1 - ty0)));
    const int pixels = ow * oh;
    GDALDatasetH ds = drawn();
    const int used = m_mode == Mode::Rgb ? 3 : 1;
    m_buffer.resize(pixels * used);
    for (int k = 0; k < used; ++k) {
        GDALRasterBandH band = GDALGetRasterBand(ds, m_bands[k]);
        if (!band || GDALRasterIOEx(band, GF_Read, xOff, yOff, xSize, ySize, m_buffer.data() + k * pixels, ow, oh,
                                    GDT_Float32, 0, 0, &extra) != CE_None)
            return;
    }
    GDALRasterBandH first = GDALGetRasterBand(ds, m_bands[0]);
    const bool allValid = GDALGetMaskFlags(first) & GMF_ALL_VALID;
    if (!allValid) {
        m_mask.resize(pixels);
        if (GDALRasterIOEx(GDALGetMaskBand(first), GF_Read, xOff, yOff, xSize, ySize, m_mask.data(), ow, oh,
                           GDT_Byte, 0, 0, &extra) != CE_None)
            std::fill(m_mask.begin(), m_mask.end(), 255);
    }

    QImage image(ow, oh, QImage::Format_ARGB32_Premultiplied);
    double scale[3];
    for (int k = 0; k < 3; ++k)
        scale[k] = m_high[k] > m_low[k] ? 255.0 / (m_high[k] - m_low[k]) : 0.0;
    auto level = [&](int k, float v) {
        const double s = (v - m_low[k]) * scale[k];
        return s <= 0 ? 0 : s >= 255 ? 255 : static_cast<int>(s + 0.5);
    };
    const float* values = m_buffer.constData();
    for (int y = 0; y < oh; ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < ow; ++x) {
            const int i = y * ow + x;
            if ((!allValid && m_mask[i] == 0) || !std::isfinite(values[i])) {
                line[x] = 0;
                continue;
            }
            switch (m_mode) {
            case Mode::Grey: {
                const int g = level(0, values[i]);
                line[x] = qRgb(g, g, g);
                break;
            }
            case Mode::Palette: {
                const int index = static_cast<int>(values[i]);
                line[x] = index >= 0 && index < m_palette.size() ? qPremultiply(m_palette[index]) : 0;
                break;
            }
            case Mode::Rgb:
                line[x] = qRgb(level(0, values[i]), level(1, values[i + pixels]), level(2, values[i + 2 * pixels]));
                break;
            }
        }
    }
    painter.drawImage(QRectF(tx0, ty0, tx1 - tx0, ty1 - ty0), image);
}
