#include "VectorReprojector.h"

#include "OutputGuard.h"
#include "RouteTransformation.h"

#include "reprojection/ReprojectionPlan.h"

#include <QFile>
#include <QFileInfo>

#include <gdal_priv.h>
#include <ogrsf_frmts.h>

#include <memory>
#include <vector>

namespace {

struct GdalCloser
{
    void operator()(GDALDataset* ds) const { GDALClose(ds); }
};
using DatasetPtr = std::unique_ptr<GDALDataset, GdalCloser>;

/// Records the coordinates OGR hands over, leaving the geometry as it is.
class CollectingTransformation : public OGRCoordinateTransformation
{
public:
    std::vector<double> x, y, z;

    OGRSpatialReference* GetSourceCS() override { return nullptr; }
    OGRSpatialReference* GetTargetCS() override { return nullptr; }
    int Transform(int count, double* px, double* py, double* pz, double*, int* success) override
    {
        x.insert(x.end(), px, px + count);
        y.insert(y.end(), py, py + count);
        if (pz)
            z.insert(z.end(), pz, pz + count);
        else
            z.insert(z.end(), size_t(count), 0.0);
        if (success)
            std::fill(success, success + count, TRUE);
        return TRUE;
    }
    OGRCoordinateTransformation* Clone() const override { return nullptr; }
    OGRCoordinateTransformation* GetInverse() const override { return nullptr; }
};

/// Hands the converted coordinates back in the order they were collected.
class ReplayingTransformation : public OGRCoordinateTransformation
{
public:
    const std::vector<double>* x = nullptr;
    const std::vector<double>* y = nullptr;
    const std::vector<double>* z = nullptr;
    const std::vector<int>* ok = nullptr;
    size_t next = 0;
    OGRSpatialReference* target = nullptr;

    OGRSpatialReference* GetSourceCS() override { return nullptr; }
    OGRSpatialReference* GetTargetCS() override { return target; }
    int Transform(int count, double* px, double* py, double* pz, double*, int* success) override
    {
        bool any = false;
        for (int i = 0; i < count; ++i, ++next) {
            const bool good = next < ok->size() && (*ok)[next];
            if (good) {
                px[i] = (*x)[next];
                py[i] = (*y)[next];
                if (pz)
                    pz[i] = (*z)[next];
                any = true;
            }
            if (success)
                success[i] = good ? TRUE : FALSE;
        }
        return any ? TRUE : FALSE;
    }
    OGRCoordinateTransformation* Clone() const override { return nullptr; }
    OGRCoordinateTransformation* GetInverse() const override { return nullptr; }
};

QString gdalMessage()
{
    const QString message = QString::fromUtf8(CPLGetLastErrorMsg());
    return message.isEmpty() ? QStringLiteral("unknown error") : message;
}

/// The .cpg beside a shapefile, whatever the case of its suffix.
QString codePageFile(const QString& shapefile)
{
    const QFileInfo info(shapefile);
    for (const char* suffix : {".cpg", ".CPG", ".Cpg"}) {
        const QString path = info.absolutePath() + QLatin1Char('/') + info.completeBaseName() + QLatin1String(suffix);
        if (QFileInfo::exists(path))
            return path;
    }
    return QString();
}

} // namespace

VectorReprojector::VectorReprojector(const RouteSettings& route, const QString& format)
    : m_route(route), m_format(ReprojectionPlan::VectorFormatOf(format))
{
}

QStringList VectorReprojector::LayerNames(const QString& input)
{
    GDALAllRegister();
    CPLErrorStateBackuper errorState;
    CPLErrorHandlerPusher quiet(CPLQuietErrorHandler);
    DatasetPtr source(GDALDataset::Open(QFile::encodeName(input).constData(), GDAL_OF_VECTOR | GDAL_OF_READONLY));
    QStringList names;
    if (source)
        for (int i = 0; i < source->GetLayerCount(); ++i)
            names << QString::fromUtf8(source->GetLayer(i)->GetName());
    return names;
}

QString VectorReprojector::Run(const QString& input, int layerIndex, const QString& output, const Progress& progress,
                               bool* stopped, long long* skipped)
{
    if (stopped)
        *stopped = false;
    if (skipped)
        *skipped = 0;
    GDALAllRegister();
    CPLErrorStateBackuper errorState;
    CPLErrorHandlerPusher quiet(CPLQuietErrorHandler);
    CPLErrorReset();

    const QString driverName = m_format;
    const bool toShapefile = driverName == QLatin1String("ESRI Shapefile");
    OutputGuard guard(output, driverName);
    QString problem = guard.Check({input});
    if (!problem.isEmpty())
        return problem;

    DatasetPtr source(GDALDataset::Open(QFile::encodeName(input).constData(), GDAL_OF_VECTOR | GDAL_OF_READONLY));
    if (!source)
        return QStringLiteral("Cannot open the vector data \"%1\".").arg(input);
    OGRLayer* sourceLayer = source->GetLayer(layerIndex);
    if (!sourceLayer)
        return QStringLiteral("\"%1\" has no layer %2.").arg(input).arg(layerIndex);

    RouteTransformation route(m_route, false);
    if (!route.IsValid())
        return QStringLiteral("No conversion exists between the source and the target spatial references.");

    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName(driverName.toUtf8().constData());
    if (!driver)
        return QStringLiteral("The vector format \"%1\" cannot be written.").arg(driverName);
    const QByteArray temporary = QFile::encodeName(guard.TemporaryPath());
    DatasetPtr target(driver->Create(temporary.constData(), 0, 0, 0, GDT_Unknown, nullptr));
    if (!target)
        return QStringLiteral("Cannot create \"%1\": %2").arg(output, gdalMessage());

    // Attributes are written back in the encoding they were read from.
    const bool sourceIsShapefile = QByteArray(source->GetDriver()->GetDescription()) == "ESRI Shapefile";
    QByteArray encoding = sourceIsShapefile ? QByteArray(sourceLayer->GetMetadataItem("SOURCE_ENCODING", "SHAPEFILE"))
                                            : QByteArray("UTF-8");
    const QByteArray encodingOption = "ENCODING=" + encoding;
    // A GeoPackage holds UTF-8 text by definition; only a shapefile says its encoding.
    const char* layerOptions[] = {toShapefile ? encodingOption.constData() : nullptr, nullptr};
    const QByteArray layerName = QFileInfo(output).completeBaseName().toUtf8();
    OGRLayer* targetLayer = target->CreateLayer(layerName.constData(), route.GetTargetCS(),
                                                sourceLayer->GetGeomType(), const_cast<char**>(layerOptions));
    if (!targetLayer)
        return QStringLiteral("Cannot create \"%1\": %2").arg(output, gdalMessage());

    OGRFeatureDefn* sourceDefn = sourceLayer->GetLayerDefn();
    std::vector<int> fieldMap(sourceDefn->GetFieldCount(), -1);
    for (int i = 0; i < sourceDefn->GetFieldCount(); ++i) {
        if (targetLayer->CreateField(sourceDefn->GetFieldDefn(i), TRUE) != OGRERR_NONE)
            return QStringLiteral("Cannot write the field \"%1\" to \"%2\".")
                .arg(QString::fromUtf8(sourceDefn->GetFieldDefn(i)->GetNameRef()), output);
        fieldMap[i] = targetLayer->GetLayerDefn()->GetFieldCount() - 1;
    }

    const GIntBig total = std::max<GIntBig>(1, sourceLayer->GetFeatureCount(TRUE));
    GIntBig done = 0;
    long long failed = 0;
    sourceLayer->ResetReading();
    const size_t chunkPoints = 65536;
    bool more = true;
    while (more) {
        std::vector<std::unique_ptr<OGRFeature>> chunk;
        std::vector<size_t> ends;  // where each feature's points end in the chunk
        CollectingTransformation collect;
        while (collect.x.size() < chunkPoints && chunk.size() < 16384) {
            CPLErrorReset();
            std::unique_ptr<OGRFeature> feature(sourceLayer->GetNextFeature());
            // A damaged file ends the features early with an error; the
            // output must not pass for the whole layer.
            if (CPLGetLastErrorType() >= CE_Failure)
                return QStringLiteral("Reading \"%1\" failed: %2").arg(input, gdalMessage());
            if (!feature) {
                more = false;
                break;
            }
            if (OGRGeometry* geometry = feature->GetGeometryRef())
                geometry->transform(&collect);
            chunk.push_back(std::move(feature));
            ends.push_back(collect.x.size());
        }
        // One call of the route for the whole chunk.
        std::vector<int> ok(collect.x.size(), 0);
        if (!collect.x.empty())
            route.Transform(int(collect.x.size()), collect.x.data(), collect.y.data(), collect.z.data(), nullptr,
                            ok.data());
        ReplayingTransformation replay;
        replay.x = &collect.x;
        replay.y = &collect.y;
        replay.z = &collect.z;
        replay.ok = &ok;
        replay.target = route.GetTargetCS();
        for (size_t f = 0; f < chunk.size(); ++f) {
            const auto& feature = chunk[f];
            OGRFeature out(targetLayer->GetLayerDefn());
            out.SetFrom(feature.get(), fieldMap.data(), TRUE);
            if (OGRGeometry* geometry = feature->GetGeometryRef()) {
                const size_t start = f == 0 ? 0 : ends[f - 1];
                bool good = true;
                for (size_t i = start; i < ends[f]; ++i)
                    good = good && ok[i];
                replay.next = start;
                if (good)
                    geometry->transform(&replay);
                if (!good) {
                    ++failed;
                    continue;
                }
                out.SetGeometry(geometry);
            }
            if (targetLayer->CreateFeature(&out) != OGRERR_NONE)
                return QStringLiteral("Writing \"%1\" failed: %2").arg(output, gdalMessage());
        }
        done += GIntBig(chunk.size());
        if (progress && !progress(std::min(1.0, double(done) / double(total)))) {
            if (stopped)
                *stopped = true;
            return QStringLiteral("Stopped.");
        }
    }

    CPLErrorReset();
    target.reset();
    if (CPLGetLastErrorType() >= CE_Failure)
        return QStringLiteral("Writing \"%1\" failed: %2").arg(output, gdalMessage());
    source.reset();

    // The code page file goes along byte for byte, as the user's tools wrote it.
    const QString sourceCpg = sourceIsShapefile && toShapefile ? codePageFile(input) : QString();
    const QString targetCpg = toShapefile ? codePageFile(guard.TemporaryPath()) : QString();
    if (!sourceCpg.isEmpty()) {
        const QFileInfo tmp(guard.TemporaryPath());
        const QString wanted = tmp.absolutePath() + QLatin1Char('/') + tmp.completeBaseName() + QStringLiteral(".cpg");
        if (!targetCpg.isEmpty())
            QFile::remove(targetCpg);
        if (!QFile::copy(sourceCpg, wanted))
            return QStringLiteral("Cannot write \"%1\".").arg(wanted);
    } else if (sourceIsShapefile && !targetCpg.isEmpty()) {
        QFile::remove(targetCpg);
    }
    if (skipped)
        *skipped = failed;
    m_unshifted = route.UnshiftedPoints();
    return guard.Commit();
}
