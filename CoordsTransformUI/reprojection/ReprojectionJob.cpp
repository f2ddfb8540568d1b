#include "reprojection/ReprojectionJob.h"

#include "KivCarto/LayerFactory.h"
#include "KivCarto/Map.h"
#include "KivFramework/IApplication.h"
#include "KivFramework/IDesktopFrame.h"

QString ReprojectionJob::AlgorithmFor(const QString& inputFile)
{
    const int dot = inputFile.lastIndexOf(QLatin1Char('.'));
    const QString suffix = dot >= 0 ? inputFile.mid(dot + 1).toLower() : QString();
    if (suffix == QLatin1String("tif") || suffix == QLatin1String("tiff") || suffix == QLatin1String("img"))
        return QStringLiteral("ImgProjectTransAlgo");
    return QStringLiteral("ShapeDataCoordTransformAlgo");
}

KivFramework::IProgressIndicator* ReprojectionJob::Indicator(KivFramework::IDesktopFrame* frame)
{
    return frame ? frame->GetProgressIndicator() : nullptr;
}

void ReprojectionJob::AddResultLayers(KivFramework::IApplication* application, const QStringList& paths)
{
    if (!application)
        return;
    const KivUtility::_ptr_t<KivCarto::Map> map = application->GetCurrentMap();
    if (!map)
        return;
    for (const QString& path : paths) {
        const KivUtility::_ptr_t<KivCarto::Layer> layer = KivCarto::LayerFactory::CreateDefaultLayer(path);
        if (!layer)
            continue;
        map->AddLayer(layer);
        map->Refresh(0, true);
    }
}
