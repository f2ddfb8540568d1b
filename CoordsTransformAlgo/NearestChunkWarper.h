#pragma once

#include <gdalwarper.h>

#include <atomic>
#include <vector>

/// Nearest-neighbour resampling of one chunk the warper has read, for the
/// common cases: no alpha or mask band, one destination nodata for every
/// band; the source may have nodata (its cells are left out as GDAL's
/// kernel leaves them out).
///
/// GDAL's kernel does the same per pixel through checks for densities,
/// vertical shifts and masks that mostly do not apply, and they cost more
/// than the copy. This one takes the warper's chunk as it is (its source window, its
/// row width, its approximate transformer), so every source point, and with
/// it every pixel, is the one GDAL's kernel picks; it runs from the warper's
/// pre-chunk hook, and the kernel is then told that the chunk has no source
/// left to warp.
class NearestChunkWarper
{
public:
    /// `stop` (may be null) ends the rows under way when it becomes true.
    explicit NearestChunkWarper(const std::atomic<bool>* stop);
    ~NearestChunkWarper();
    NearestChunkWarper(const NearestChunkWarper&) = delete;
    NearestChunkWarper& operator=(const NearestChunkWarper&) = delete;

    /// Whether this chunk is one this class resamples exactly as GDAL would.
    static bool Handles(const GDALWarpKernel& chunk);

    /// Fills the chunk's destination buffers and leaves the chunk with an
    /// empty source window, so GDAL's kernel only reports progress. Call
    /// `Restore` after the kernel (the warper's post-chunk hook).
    CPLErr Warp(GDALWarpKernel& chunk);
    void Restore(GDALWarpKernel& chunk);

private:
    void rows(GDALWarpKernel& chunk, void* transformer, bool reports);
    void rowsOrThrow(GDALWarpKernel& chunk, void* transformer, bool reports);

    const std::atomic<bool>* m_stop;
    std::vector<void*> m_clones;   ///< one transformer for each extra thread
    std::atomic<int> m_nextRow{0};
    std::atomic<int> m_rowsDone{0};
    std::atomic<bool> m_failed{false};
    int m_sourceWidth = 0;
};
