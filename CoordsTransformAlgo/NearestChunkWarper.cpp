#include "NearestChunkWarper.h"

#include <cpl_conv.h>
#include <cpl_minixml.h>
#include <cpl_error.h>
#include <cpl_string.h>

#include <gdal_alg.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <exception>
#include <new>
#include <thread>
#include <vector>

namespace {

constexpr int kRowsPerTake = 8;

/// Where a transformed point falls against the chunk's source window.
enum class Fit { Inside, Outside, Near };

/// GDAL's acceptance test: points up to 1e-10 pixel past the far edge belong
/// to the last cell, NaN never fits; a point less than a pixel outside is
/// `Near`, worth transforming again exactly (the approximation may have put
/// it there).
Fit fit(const GDALWarpKernel& chunk, double sx, double sy)
{
    if (std::isnan(sx) || std::isnan(sy))
        return Fit::Outside;
    const double left = chunk.nSrcXOff, top = chunk.nSrcYOff;
    const double right = chunk.nSrcXSize + chunk.nSrcXOff, bottom = chunk.nSrcYSize + chunk.nSrcYOff;
    if (sx < left)
        return sx > left - 1 ? Fit::Near : Fit::Outside;
    if (sy < top)
        return sy > top - 1 ? Fit::Near : Fit::Outside;
    if (sx + 1e-10 > right)
        return sx < right + 1 ? Fit::Near : Fit::Outside;
    if (sy + 1e-10 > bottom)
        return sy < bottom + 1 ? Fit::Near : Fit::Outside;
    return Fit::Inside;
}

/// A point the row's approximation put outside the source window, but less
/// than a pixel outside, is transformed again on its own (exactly), as
/// GDAL's kernel does; true when it then falls inside.
[[gnu::noinline]] bool fitsOnSecondLook(const GDALWarpKernel& chunk, void* transformer, int column, int row, double* sx,
                                        double* sy)
{
    if (fit(chunk, *sx, *sy) != Fit::Near)
        return false;
    *sx = column + 0.5 + chunk.nDstXOff;
    *sy = row + 0.5 + chunk.nDstYOff;
    double sz = 0.0;
    int ok = FALSE;
    chunk.pfnTransformer(transformer, TRUE, 1, sx, sy, &sz, &ok);
    return ok && fit(chunk, *sx, *sy) == Fit::Inside;
}

/// Bit `offset` of one of the warper's validity masks (source nodata).
bool valid(const GUInt32* mask, std::ptrdiff_t offset)
{
    return (mask[offset >> 5] >> (offset & 31)) & 1U;
}

/// The offset in the chunk's source buffers of the cell under each
/// transformed point of destination row `row`, or -1 where there is none.
void sourceOffsets(const GDALWarpKernel& chunk, void* transformer, int row, const double* x, const double* y,
                   const int* ok, std::ptrdiff_t* offsets)
{
    const int width = chunk.nDstXSize;
    const int sourceWidth = chunk.nSrcXSize, sourceHeight = chunk.nSrcYSize;
    const int xOffset = chunk.nSrcXOff, yOffset = chunk.nSrcYOff;
    const double left = xOffset, top = yOffset;
    const double right = sourceWidth + xOffset, bottom = sourceHeight + yOffset;
    for (int i = 0; i < width; ++i) {
        offsets[i] = -1;
        if (!ok[i])
            continue;
        double sx = x[i], sy = y[i];
        if (!(sx >= left && sy >= top && sx + 1e-10 <= right && sy + 1e-10 <= bottom)
            && !fitsOnSecondLook(chunk, transformer, i, row, &sx, &sy))
            continue;
        const int column = std::min(int(sx + 1e-10) - xOffset, sourceWidth - 1);
        const int line = std::min(int(sy + 1e-10) - yOffset, sourceHeight - 1);
        const std::ptrdiff_t offset = column + std::ptrdiff_t(line) * sourceWidth;
        if (!chunk.panUnifiedSrcValid || valid(chunk.panUnifiedSrcValid, offset))
            offsets[i] = offset;
    }
}

/// A band's cells; where the band has a nodata mask, its nodata cells are
/// not copied (the destination keeps its nodata there).
template <typename Cell>
void copyCells(const void* from, void* to, const std::ptrdiff_t* offsets, int width, const GUInt32* mask)
{
    const Cell* source = static_cast<const Cell*>(from);
    Cell* target = static_cast<Cell*>(to);
    if (!mask) {
        for (int i = 0; i < width; ++i)
            if (offsets[i] >= 0)
                target[i] = source[offsets[i]];
        return;
    }
    for (int i = 0; i < width; ++i)
        if (offsets[i] >= 0 && valid(mask, offsets[i]))
            target[i] = source[offsets[i]];
}

/// Copies the cells at `offsets` into destination row `row` of every band.
void copyRow(const GDALWarpKernel& chunk, int row, const std::ptrdiff_t* offsets)
{
    const int width = chunk.nDstXSize;
    const int size = GDALGetDataTypeSizeBytes(chunk.eWorkingDataType);
    for (int b = 0; b < chunk.nBands; ++b) {
        const void* from = chunk.papabySrcImage[b];
        void* to = chunk.papabyDstImage[b] + std::ptrdiff_t(row) * width * size;
        const GUInt32* mask = chunk.papanBandSrcValid ? chunk.papanBandSrcValid[b] : nullptr;
        switch (size) {
        case 1: copyCells<std::uint8_t>(from, to, offsets, width, mask); break;
        case 2: copyCells<std::uint16_t>(from, to, offsets, width, mask); break;
        case 4: copyCells<std::uint32_t>(from, to, offsets, width, mask); break;
        default: copyCells<std::uint64_t>(from, to, offsets, width, mask); break;
        }
    }
}

} // namespace

NearestChunkWarper::NearestChunkWarper(const std::atomic<bool>* stop) : m_stop(stop) {}

NearestChunkWarper::~NearestChunkWarper()
{
    for (void* clone : m_clones)
        GDALDestroyTransformer(clone);
}

bool NearestChunkWarper::Handles(const GDALWarpKernel& chunk)
{
    const int size = GDALGetDataTypeSizeBytes(chunk.eWorkingDataType);
    return chunk.eResample == GRA_NearestNeighbour && !chunk.pafUnifiedSrcDensity && !chunk.panDstValid && !chunk.pafDstDensity && !chunk.bApplyVerticalShift
           && !GDALDataTypeIsComplex(chunk.eWorkingDataType) && (size == 1 || size == 2 || size == 4 || size == 8)
           && chunk.nSrcXSize > 0 && chunk.nSrcYSize > 0 && chunk.nDstXSize > 0 && chunk.nDstYSize > 0
           && !CSLFetchNameValue(chunk.papszWarpOptions, "SRC_COORD_PRECISION");
}

void NearestChunkWarper::rows(GDALWarpKernel& chunk, void* transformer, bool reports)
{
    try {
        rowsOrThrow(chunk, transformer, reports);
    } catch (const std::bad_alloc&) {
        m_failed = true;
    }
}

void NearestChunkWarper::rowsOrThrow(GDALWarpKernel& chunk, void* transformer, bool reports)
{
    const int width = chunk.nDstXSize;
    std::vector<double> x(static_cast<size_t>(width) * 4);
    std::vector<int> ok(static_cast<size_t>(width));
    std::vector<std::ptrdiff_t> offsets(static_cast<size_t>(width));
    double* y = x.data() + width;
    double* z = y + width;
    double* columns = z + width;
    for (int i = 0; i < width; ++i)
        columns[i] = i + 0.5 + chunk.nDstXOff;
    for (;;) {
        const int first = m_nextRow.fetch_add(kRowsPerTake);
        if (first >= chunk.nDstYSize || m_failed || (m_stop && *m_stop))
            return;
        const int last = std::min(first + kRowsPerTake, chunk.nDstYSize);
        for (int row = first; row < last; ++row) {
            std::copy(columns, columns + width, x.data());
            std::fill(y, y + width, row + 0.5 + chunk.nDstYOff);
            std::fill(z, z + width, 0.0);
            chunk.pfnTransformer(transformer, TRUE, width, x.data(), y, z, ok.data());
            sourceOffsets(chunk, transformer, row, x.data(), y, ok.data(), offsets.data());
            copyRow(chunk, row, offsets.data());
        }
        const int done = m_rowsDone += last - first;
        if (reports && chunk.pfnProgress
            && !chunk.pfnProgress(chunk.dfProgressBase + chunk.dfProgressScale * done / chunk.nDstYSize, "",
                                  chunk.pProgress))
            m_failed = true;
    }
}

CPLErr NearestChunkWarper::Warp(GDALWarpKernel& chunk)
{
    // Threads take rows as the kernel's do; a thread needs a transformer of
    // its own, and the clones live as long as the run, over every chunk.
    const int threads = std::max(1, std::min(CPLGetNumCPUs(), chunk.nDstYSize / kRowsPerTake));
    m_clones.reserve(size_t(threads));
    while (int(m_clones.size()) < threads - 1) {
        void* clone = nullptr;
        if (CPLXMLNode* tree = GDALSerializeTransformer(chunk.pfnTransformer, chunk.pTransformerArg)) {
            GDALTransformerFunc function = nullptr;
            if (GDALDeserializeTransformer(tree, &function, &clone) != CE_None || function != chunk.pfnTransformer) {
                if (clone)
                    GDALDestroyTransformer(clone);
                clone = nullptr;
            }
            CPLDestroyXMLNode(tree);
        }
        if (!clone) {
            CPLError(CE_Failure, CPLE_AppDefined, "The transformation cannot be run on more than one thread.");
            return CE_Failure;
        }
        m_clones.push_back(clone);
    }
    m_nextRow = 0;
    m_rowsDone = 0;
    m_failed = false;
    std::vector<std::thread> workers;
    try {
        for (int t = 1; t < threads; ++t)
            workers.emplace_back([this, &chunk, t] { rows(chunk, m_clones[size_t(t - 1)], false); });
    } catch (const std::exception&) {
        // Fewer threads than asked: the rows are taken all the same.
    }
    rows(chunk, chunk.pTransformerArg, true);
    for (std::thread& worker : workers)
        worker.join();
    if (m_failed) {
        CPLError(CE_Failure, CPLE_AppDefined, "The chunk was stopped or ran out of memory.");
        return CE_Failure;
    }
    m_sourceWidth = chunk.nSrcXSize;
    chunk.nSrcXSize = 0;
    return CE_None;
}

void NearestChunkWarper::Restore(GDALWarpKernel& chunk)
{
    if (chunk.nSrcXSize == 0 && m_sourceWidth > 0)
        chunk.nSrcXSize = m_sourceWidth;
    m_sourceWidth = 0;
}
