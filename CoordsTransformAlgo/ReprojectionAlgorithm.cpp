#include "ReprojectionAlgorithm.h"

#include "RasterReprojector.h"
#include "VectorReprojector.h"

#include "KivDataSource/DatasetFactory.h"
#include "KivDataSource/MultiDataset.h"
#include "KivGeometry/SpatialReferenceFactory.h"
#include "spatialref/CoordinateConversion.h"

#include <QDir>
#include <QFileInfo>

ReprojectionAlgorithm::~ReprojectionAlgorithm()
{
    StopAndWait();
}

bool ReprojectionAlgorithm::Execute()
{
    stCoordsTransformInfo info;
    try {
        info = boost::any_cast<stCoordsTransformInfo>(Parameters());
    } catch (const boost::bad_any_cast&) {
        SetError(-1, QStringLiteral("The parameters are not a reprojection record."));
        return false;
    }
    info.lstOutputFiles.clear();
    QString problem;
    m_rasterOptions = RasterOptions::FromRecord(info, &problem);
    if (!problem.isEmpty()) {
        SetError(-1, problem);
        Parameters() = info;
        return false;
    }
    const bool done = Reproject(info);
    // What was written is handed back even when other parts failed.
    Parameters() = info;
    return done;
}

std::function<bool(double)> ReprojectionAlgorithm::Portion(double offset, double share, const QString& text)
{
    return [this, offset, share, text](double fraction) {
        return ReportProgress(100.0 * (offset + share * fraction), text);
    };
}

QString ReprojectionAlgorithm::RunItem(const RouteSettings& route, const Item& item,
                                       const std::function<bool(double)>& progress, bool* stopped, QString* note)
{
    note->clear();
    QStringList notes;
    const auto noShift = [&](long long count, const QString& what) {
        if (count <= 0)
            return;
        const auto source = KivGeometry::SpatialReferenceFactory::CreateSpatialReference(route.sourceWkt);
        const auto target = KivGeometry::SpatialReferenceFactory::CreateSpatialReference(route.targetWkt);
        notes << QStringLiteral("%1: ").arg(item.output)
                     + CoordinateConversion::NoDatumShiftWarning(count, what, source ? source->GetName() : QString(),
                                                                 target ? target->GetName() : QString());
    };
    QString error;
    if (item.layer < 0) {
        RasterReprojector raster(route, item.format);
        raster.SetOptions(m_rasterOptions);
        error = raster.Run(item.input, item.output, progress, stopped);
        if (error.isEmpty())
            noShift(raster.UnshiftedSamples(),
                    QStringLiteral("of the %1 points sampled over the raster's extent").arg(raster.ExtentSamples()));
    } else {
        VectorReprojector vector(route, item.format);
        long long skipped = 0;
        error = vector.Run(item.input, item.layer, item.output, progress, stopped, &skipped);
        if (error.isEmpty() && skipped > 0)
            notes << QStringLiteral("%1: %2 features had points outside the target system's domain and were left out.")
                         .arg(item.output)
                         .arg(skipped);
        if (error.isEmpty())
            noShift(vector.UnshiftedPoints(), QStringLiteral("point(s)"));
    }
    *note = notes.join(QLatin1Char('\n'));
    return error;
}
