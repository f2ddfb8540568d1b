#pragma once

#include "LayerSource.h"

#include <QVector>

#include <gdal.h>

#include <array>

/// A raster layer: one band drawn grey (stretched between its 2nd and 98th
/// percentile) or through its palette, three or more bands as red, green and
/// blue; masked pixels (nodata, alpha) stay transparent. Every draw reads only
/// the visible window at the image's resolution, so GDAL serves it from the
/// overviews when there are any. A raster in another system, or one that is
/// not north-up, is read through a warped virtual dataset.
class RasterLayerSource : public LayerSource
{
public:
    /// Takes ownership of `dataset`.
    RasterLayerSource(const QString& path, GDALDatasetH dataset);
    ~RasterLayerSource() override;

    bool setMapSystem(const QString& wkt, QString* error) override;
    bool extent(QRectF* extent) const override;
    void draw(QPainter& painter, const View& view) override;

private:
    enum class Mode { Grey, Palette, Rgb };

    void computeStretch();
    GDALDatasetH drawn() const { return m_warped ? m_warped : m_dataset; }

    GDALDatasetH m_dataset;
    GDALDatasetH m_warped = nullptr;  ///< owned; null when the source is drawn as it is
    std::array<double, 6> m_transform{};  ///< of the drawn dataset
    int m_width = 0;
    int m_height = 0;
    Mode m_mode = Mode::Grey;
    std::array<int, 3> m_bands{{1, 1, 1}};
    std::array<double, 3> m_low{{0, 0, 0}};
    std::array<double, 3> m_high{{255, 255, 255}};
    QVector<QRgb> m_palette;
    // Reused between draws so that panning does not reallocate.
    QVector<float> m_buffer;
    QVector<unsigned char> m_mask;
};
