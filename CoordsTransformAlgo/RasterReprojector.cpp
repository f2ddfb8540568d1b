#include "RasterReprojector.h"

#include "NearestChunkWarper.h"
#include "OutputGuard.h"
#include "RouteTransformation.h"
#include "RouteWarpTransformer.h"

#include <QFile>
#include <QFileInfo>

#include <gdal_alg.h>
#include <gdal_priv.h>
#include <gdalwarper.h>
#include <ogr_spatialref.h>

#include <algorithm>
#include <atomic>
#include <climits>
#include <cmath>
#include <memory>
#include <vector>

namespace {

struct GdalCloser
{
    void operator()(GDALDataset* ds) const { GDALClose(ds); }
};
using DatasetPtr = std::unique_ptr<GDALDataset, GdalCloser>;

struct TransformerDestroyer
{
    void operator()(void* t) const { GDALDestroyTransformer(t); }
};
using TransformerPtr = std::unique_ptr<void, TransformerDestroyer>;

/// GDAL's multi-threaded warp kernel can hang when its progress callback
/// asks it to stop, so the callback only reports; a stop makes every point
/// of the transformer fail, which runs the chunk under way out at once, and
/// no further chunk is warped (see stopBeforeChunk).
struct ProgressState
{
    const RasterReprojector::Progress* progress;
    double whole = 1.0;   ///< the warp's part of the run (COG: the copy follows)
    std::atomic<bool> stopped{false};
    NearestChunkWarper* nearest = nullptr;
};

int CPL_STDCALL warpProgress(double fraction, const char*, void* data)
{
    auto* state = static_cast<ProgressState*>(data);
    if (!state->stopped && *state->progress && !(*state->progress)(state->whole * std::min(1.0, fraction)))
        state->stopped = true;
    return TRUE;
}

/// Runs before each chunk is warped, after its source is read: failing here
/// ends the warp cleanly, each chunk being bounded by the warp memory. A
/// nearest-neighbour chunk `NearestChunkWarper` handles is resampled here.
CPLErr beforeChunk(void* kernel, void* data)
{
    auto* state = static_cast<ProgressState*>(data);
    if (state->stopped)
        return CE_Failure;
    auto* chunk = static_cast<GDALWarpKernel*>(kernel);
    try {
        if (state->nearest && NearestChunkWarper::Handles(*chunk))
            return state->nearest->Warp(*chunk);
    } catch (...) {
        // Called from GDAL's C code: nothing may be thrown through it.
        CPLError(CE_Failure, CPLE_OutOfMemory, "Out of memory while resampling.");
        return CE_Failure;
    }
    return CE_None;
}

CPLErr afterChunk(void* kernel, void* data)
{
    if (auto* state = static_cast<ProgressState*>(data); state->nearest)
        state->nearest->Restore(*static_cast<GDALWarpKernel*>(kernel));
    return CE_None;
}

/// The copy into a COG runs in one thread and may stop at once.
int CPL_STDCALL copyProgress(double fraction, const char*, void* data)
{
    auto* state = static_cast<ProgressState*>(data);
    if (!state->stopped && *state->progress && !(*state->progress)(state->whole + (1.0 - state->whole) * fraction))
        state->stopped = true;
    return state->stopped ? FALSE : TRUE;
}

QString gdalMessage()
{
    const QString message = QString::fromUtf8(CPLGetLastErrorMsg());
    return message.isEmpty() ? QStringLiteral("unknown error") : message;
}

/// GDAL's reason why `source` cannot be read whole, or empty when every
/// block reads. Run after a failed warp, which does not say which side
/// failed: a damaged input must not be reported as a failed write.
QString readProblem(GDALDataset* source)
{
    CPLErrorReset();
    const int width = source->GetRasterXSize();
    for (int b = 1; b <= source->GetRasterCount(); ++b) {
        GDALRasterBand* band = source->GetRasterBand(b);
        int blockX = 0, blockY = 0;
        band->GetBlockSize(&blockX, &blockY);
        blockY = std::max(1, blockY);
        std::vector<double> row(size_t(width) * size_t(blockY));
        for (int y = 0; y < source->GetRasterYSize(); y += blockY) {
            const int rows = std::min(blockY, source->GetRasterYSize() - y);
            if (band->RasterIO(GF_Read, 0, y, width, rows, row.data(), width, rows, GDT_Float64, 0, 0, nullptr)
                != CE_None)
                return gdalMessage();
        }
    }
    return QString();
}

CPLStringList optionList(const QStringList& options)
{
    CPLStringList list;
    for (const QString& option : options)
        list.AddString(option.toUtf8().constData());
    return list;
}

QStringList creationOptions(const QString& format)
{
    if (format == QLatin1String("GTiff"))
        return {QStringLiteral("TILED=YES"), QStringLiteral("BIGTIFF=IF_SAFER")};
    if (format == QLatin1String("COG"))
        return {QStringLiteral("BIGTIFF=IF_SAFER")};
    if (format == QLatin1String("HFA"))
        return {QStringLiteral("USE_SPILL=YES")};
    return {};
}

} // namespace

RasterReprojector::RasterReprojector(const RouteSettings& route, const QString& format)
    : m_route(route), m_format(format.isEmpty() ? QStringLiteral("GTiff") : format)
{
}

void RasterReprojector::sampleExtent(GDALDataset* source, const double* geoTransform)
{
    // The warper asks for source points of target pixels, which says nothing
    // of datum shifts; a grid over the source's extent, converted forward,
    // tells whether the route changes datum everywhere.
    constexpr int kSide = 11;
    std::vector<double> x, y;
    for (int j = 0; j < kSide; ++j) {
        for (int i = 0; i < kSide; ++i) {
            const double px = source->GetRasterXSize() * double(i) / (kSide - 1);
            const double py = source->GetRasterYSize() * double(j) / (kSide - 1);
            x.push_back(geoTransform[0] + px * geoTransform[1] + py * geoTransform[2]);
            y.push_back(geoTransform[3] + px * geoTransform[4] + py * geoTransform[5]);
        }
    }
    RouteTransformation forward(m_route, false);
    std::vector<int> ok(x.size(), 0);
    if (forward.IsValid())
        forward.Transform(int(x.size()), x.data(), y.data(), nullptr, nullptr, ok.data());
    m_samples = int(x.size());
    m_unshifted = int(forward.UnshiftedPoints());
}

QString RasterReprojector::resizeGrid(double* gt, int* width, int* height) const
{
    const double xRes = m_options.XResolution();
    const double yRes = m_options.YResolution();
    if (xRes <= 0 || yRes <= 0)
        return QString();
    // The suggested extent, cut into pixels of the asked size as gdalwarp's
    // -tr does (the last column and row rounded to the nearer whole pixel).
    const double spanX = gt[1] * *width;
    const double spanY = std::fabs(gt[5]) * *height;
    const double columns = std::floor((spanX + xRes / 2.0) / xRes);
    const double rows = std::floor((spanY + yRes / 2.0) / yRes);
    if (!(columns >= 1 && rows >= 1 && columns <= INT_MAX && rows <= INT_MAX))
        return QStringLiteral("The pixel size %1 x %2 does not fit the output's extent of %3 x %4 target units.")
            .arg(xRes, 0, 'g', 12)
            .arg(yRes, 0, 'g', 12)
            .arg(spanX, 0, 'g', 12)
            .arg(spanY, 0, 'g', 12);
    *width = int(columns);
    *height = int(rows);
    gt[1] = xRes;
    gt[2] = gt[4] = 0.0;
    gt[5] = -yRes;
    return QString();
}

QString RasterReprojector::Run(const QString& input, const QString& output, const Progress& progress, bool* stopped)
{
    if (stopped)
        *stopped = false;
    m_samples = m_unshifted = 0;
    GDALAllRegister();
    CPLErrorStateBackuper errorState;
    CPLErrorHandlerPusher quiet(CPLQuietErrorHandler);
    CPLErrorReset();

    // A COG cannot be written block by block: the warp goes into a GeoTIFF
    // beside the output, which is then copied into the COG.
    const bool viaCopy = m_format == QLatin1String("COG");
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName(m_format.toUtf8().constData());
    GDALDriver* warpDriver = viaCopy ? GetGDALDriverManager()->GetDriverByName("GTiff") : driver;
    if (!driver || !driver->GetMetadataItem(viaCopy ? GDAL_DCAP_CREATECOPY : GDAL_DCAP_CREATE) || !warpDriver)
        return QStringLiteral("The raster format \"%1\" cannot be written.").arg(m_format);
    QString problem = m_options.CreationProblem(m_format);
    if (!problem.isEmpty())
        return QStringLiteral("Cannot create \"%1\": %2").arg(output, problem);

    OutputGuard guard(output, m_format);
    problem = guard.Check({input});
    if (!problem.isEmpty())
        return problem;
    OutputGuard intermediate(output, QStringLiteral("GTiff"));

    DatasetPtr source(GDALDataset::Open(QFile::encodeName(input).constData(), GDAL_OF_RASTER | GDAL_OF_READONLY));
    if (!source)
        return QStringLiteral("Cannot open the raster \"%1\".").arg(input);
    const int bands = source->GetRasterCount();
    if (bands == 0)
        return QStringLiteral("\"%1\" has no raster bands.").arg(input);
    double sourceGT[6];
    if (source->GetGeoTransform(sourceGT) != CE_None)
        return QStringLiteral("\"%1\" is not georeferenced.").arg(input);

    // Zone numbers: the inverse route must hand back eastings with the zone
    // in front, as the source's georeferencing has them.
    double zonePrefix = 0.0;
    if (m_route.codeNumber) {
        const double centreX = sourceGT[0] + sourceGT[1] * source->GetRasterXSize() / 2.0
                               + sourceGT[2] * source->GetRasterYSize() / 2.0;
        if (centreX >= 1e6)
            zonePrefix = std::floor(centreX / 1e6) * 1e6;
    }
    sampleExtent(source.get(), sourceGT);
    TransformerPtr transformer(RouteWarpTransformer::Create(m_route, sourceGT, zonePrefix));
    if (!transformer)
        return QStringLiteral("No conversion exists between the source and the target spatial references.");

    double targetGT[6];
    int width = 0, height = 0;
    double extent[4];
    if (GDALSuggestedWarpOutput2(source.get(), RouteWarpTransformer::Transform, transformer.get(), targetGT,
                                 &width, &height, extent, 0) != CE_None
        || width <= 0 || height <= 0)
        return QStringLiteral("\"%1\" lies outside the area where the target system is defined.").arg(input);
    problem = resizeGrid(targetGT, &width, &height);
    if (!problem.isEmpty())
        return problem;
    RouteWarpTransformer::SetTargetGeoTransform(transformer.get(), targetGT);

    const GDALDataType type = source->GetRasterBand(1)->GetRasterDataType();
    const CPLStringList options = optionList(m_options.CreationOptions(creationOptions(m_format)));
    const CPLStringList warpOptions = optionList(creationOptions(QStringLiteral("GTiff")));
    const QByteArray temporary = QFile::encodeName(guard.TemporaryPath());
    const QByteArray warpPath = viaCopy ? QFile::encodeName(intermediate.TemporaryPath()) : temporary;
    DatasetPtr target(warpDriver->Create(warpPath.constData(), width, height, bands, type,
                                         viaCopy ? warpOptions.List() : options.List()));
    if (!target)
        return QStringLiteral("Cannot create \"%1\": %2").arg(output, gdalMessage());
    target->SetGeoTransform(targetGT);
    OGRSpatialReference targetSrs;
    RouteTransformation::ImportWkt(targetSrs, m_route.targetWkt);
    target->SetSpatialRef(&targetSrs);

    std::vector<double> nodata(bands);
    for (int b = 0; b < bands; ++b) {
        int has = FALSE;
        const double value = source->GetRasterBand(b + 1)->GetNoDataValue(&has);
        nodata[b] = has ? value : 0.0;
        target->GetRasterBand(b + 1)->SetNoDataValue(nodata[b]);
        if (GDALRasterBand* srcBand = source->GetRasterBand(b + 1); srcBand->GetColorTable())
            target->GetRasterBand(b + 1)->SetColorTable(srcBand->GetColorTable());
    }

    ProgressState state{&progress};
    state.whole = viaCopy ? 0.6 : 1.0;
    RouteWarpTransformer::SetStopFlag(transformer.get(), &state.stopped);
    void* approx = GDALCreateApproxTransformer(RouteWarpTransformer::Transform, transformer.get(), 0.125);
    GDALWarpOptions* wo = GDALCreateWarpOptions();
    wo->hSrcDS = source.get();
    wo->hDstDS = target.get();
    wo->nBandCount = bands;
    wo->panSrcBands = static_cast<int*>(CPLMalloc(sizeof(int) * bands));
    wo->panDstBands = static_cast<int*>(CPLMalloc(sizeof(int) * bands));
    wo->padfDstNoDataReal = static_cast<double*>(CPLMalloc(sizeof(double) * bands));
    for (int b = 0; b < bands; ++b) {
        wo->panSrcBands[b] = b + 1;
        wo->panDstBands[b] = b + 1;
        wo->padfDstNoDataReal[b] = nodata[b];
    }
    for (int b = 0; b < bands; ++b) {
        int has = FALSE;
        source->GetRasterBand(b + 1)->GetNoDataValue(&has);
        if (has) {
            if (!wo->padfSrcNoDataReal) {
                wo->padfSrcNoDataReal = static_cast<double*>(CPLMalloc(sizeof(double) * bands));
                for (int i = 0; i < bands; ++i)
                    wo->padfSrcNoDataReal[i] = nodata[i];
            }
        }
    }
    wo->eResampleAlg = static_cast<GDALResampleAlg>(m_options.GdalResampling());
    wo->dfWarpMemoryLimit = m_memoryLimit;
    wo->pfnTransformer = GDALApproxTransform;
    wo->pTransformerArg = approx;
    wo->pfnProgress = warpProgress;
    wo->pProgressArg = &state;
    wo->papszWarpOptions = CSLSetNameValue(wo->papszWarpOptions, "NUM_THREADS", "ALL_CPUS");
    wo->papszWarpOptions = CSLSetNameValue(wo->papszWarpOptions, "INIT_DEST", "NO_DATA");
    // One nodata value for every band: the output starts filled with it and
    // the warper gets no destination nodata, so it neither builds nor checks a
    // validity mask of a buffer it has just filled; its fastest kernels then
    // apply (the run takes about a sixth less) and the pixels are the same.
    if (std::all_of(nodata.begin(), nodata.end(), [&](double v) { return v == nodata[0]; })) {
        CPLFree(wo->padfDstNoDataReal);
        wo->padfDstNoDataReal = nullptr;
        wo->papszWarpOptions = CSLSetNameValue(wo->papszWarpOptions, "INIT_DEST",
                                               QByteArray::number(nodata[0], 'g', 17).constData());
    }
    NearestChunkWarper nearest(&state.stopped);
    state.nearest = m_ownNearest ? &nearest : nullptr;
    wo->pfnPreWarpChunkProcessor = beforeChunk;
    wo->pPreWarpProcessorArg = &state;
    wo->pfnPostWarpChunkProcessor = afterChunk;
    wo->pPostWarpProcessorArg = &state;

    // The whole output in one call: the warper halves it until a chunk fits
    // the warp memory. Each chunk's source window sets the scale of the
    // resampling filter; thin stripes skewed it, and bilinear or cubic pixels
    // drifted by two grey levels or more from gdalwarp's.
    CPLErr warped = CE_Failure;
    {
        GDALWarpOperation operation;
        if (operation.Initialize(wo) == CE_None)
            warped = operation.ChunkAndWarpMulti(0, 0, width, height);
    }
    GDALDestroyWarpOptions(wo);
    GDALDestroyApproxTransformer(approx);

    if (state.stopped) {
        if (stopped)
            *stopped = true;
        return QStringLiteral("Stopped.");
    }
    if (warped != CE_None) {
        const QString writeReason = gdalMessage();
        const QString readReason = readProblem(source.get());
        if (!readReason.isEmpty())
            return QStringLiteral("Reading \"%1\" failed: %2").arg(input, readReason);
        return QStringLiteral("Writing \"%1\" failed: %2").arg(output, writeReason);
    }
    // Closing writes what is still cached; a full disk shows up only here.
    CPLErrorReset();
    GDALClose(target.release());
    if (CPLGetLastErrorType() >= CE_Failure)
        return QStringLiteral("Writing \"%1\" failed: %2").arg(output, gdalMessage());
    source.reset();
    if (viaCopy) {
        DatasetPtr warpedCopy(GDALDataset::Open(warpPath.constData(), GDAL_OF_RASTER | GDAL_OF_READONLY));
        CPLErrorReset();
        DatasetPtr cog(warpedCopy ? driver->CreateCopy(temporary.constData(), warpedCopy.get(), FALSE, options.List(),
                                                       copyProgress, &state)
                                  : nullptr);
        if (state.stopped) {
            if (stopped)
                *stopped = true;
            return QStringLiteral("Stopped.");
        }
        if (!cog)
            return QStringLiteral("Writing \"%1\" failed: %2").arg(output, gdalMessage());
        CPLErrorReset();
        GDALClose(cog.release());
        if (CPLGetLastErrorType() >= CE_Failure)
            return QStringLiteral("Writing \"%1\" failed: %2").arg(output, gdalMessage());
    }
    if (progress && !progress(1.0)) {
        if (stopped)
            *stopped = true;
        return QStringLiteral("Stopped.");
    }
    return guard.Commit();
}
