#include "RasterReprojector.h"

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
/// asks it to stop, so the callback only reports; stopping happens between
/// stripes of the output, each small enough to take a fraction of a second.
struct ProgressState
{
    const RasterReprojector::Progress* progress;
    double offset = 0.0;  ///< fraction done before the current stripe
    double share = 1.0;   ///< the current stripe's part of the whole
    bool stopped = false;
};

int CPL_STDCALL warpProgress(double fraction, const char*, void* data)
{
    auto* state = static_cast<ProgressState*>(data);
    if (!state->stopped && *state->progress && !(*state->progress)(state->offset + state->share * fraction))
        state->stopped = true;
    return TRUE;
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

QStringList creationOptions(const QString& format)
{
    if (format == QLatin1String("GTiff"))
        return {QStringLiteral("TILED=YES"), QStringLiteral("BIGTIFF=IF_SAFER")};
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

QString RasterReprojector::Run(const QString& input, const QString& output, const Progress& progress, bool* stopped)
{
    if (stopped)
        *stopped = false;
    m_samples = m_unshifted = 0;
    GDALAllRegister();
    CPLErrorStateBackuper errorState;
    CPLErrorHandlerPusher quiet(CPLQuietErrorHandler);
    CPLErrorReset();

    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName(m_format.toUtf8().constData());
    if (!driver || !driver->GetMetadataItem(GDAL_DCAP_CREATE))
        return QStringLiteral("The raster format \"%1\" cannot be written.").arg(m_format);

    OutputGuard guard(output, m_format);
    QString problem = guard.Check({input});
    if (!problem.isEmpty())
        return problem;

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
    RouteWarpTransformer::SetTargetGeoTransform(transformer.get(), targetGT);

    const GDALDataType type = source->GetRasterBand(1)->GetRasterDataType();
    std::vector<QByteArray> optionStore;
    std::vector<const char*> options;
    for (const QString& option : creationOptions(m_format)) {
        optionStore.push_back(option.toUtf8());
        options.push_back(optionStore.back().constData());
    }
    options.push_back(nullptr);
    const QByteArray temporary = QFile::encodeName(guard.TemporaryPath());
    DatasetPtr target(driver->Create(temporary.constData(), width, height, bands, type,
                                     const_cast<char**>(options.data())));
    if (!target)
        return QStringLiteral("Cannot create \"%1\": %2").arg(output, gdalMessage());
    target->SetGeoTransform(targetGT);
    OGRSpatialReference targetSrs;
    targetSrs.importFromWkt(m_route.targetWkt.toUtf8().constData());
    targetSrs.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
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
    wo->eResampleAlg = static_cast<GDALResampleAlg>(m_resampling);
    wo->dfWarpMemoryLimit = m_memoryLimit;
    wo->pfnTransformer = GDALApproxTransform;
    wo->pTransformerArg = approx;
    wo->pfnProgress = warpProgress;
    wo->pProgressArg = &state;
    wo->papszWarpOptions = CSLSetNameValue(wo->papszWarpOptions, "NUM_THREADS", "ALL_CPUS");
    wo->papszWarpOptions = CSLSetNameValue(wo->papszWarpOptions, "INIT_DEST", "NO_DATA");

    CPLErr warped = CE_Failure;
    {
        GDALWarpOperation operation;
        if (operation.Initialize(wo) == CE_None) {
            // About four million pixels a stripe.
            const int stripe = std::max(1, std::min(height, int(4.0e6 / width)));
            warped = CE_None;
            for (int row = 0; row < height && warped == CE_None && !state.stopped; row += stripe) {
                const int rows = std::min(stripe, height - row);
                state.offset = double(row) / height;
                state.share = double(rows) / height;
                warped = operation.ChunkAndWarpMulti(0, row, width, rows);
            }
        }
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
    if (progress && !progress(1.0)) {
        if (stopped)
            *stopped = true;
        return QStringLiteral("Stopped.");
    }
    return guard.Commit();
}
