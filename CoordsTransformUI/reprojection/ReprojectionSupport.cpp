#include "reprojection/ReprojectionSupport.h"

#include "spatialref/ConversionSetup.h"

#include "KivDataSource/MultiDataset.h"
#include "KivGeometry/ProjectedCoordinateSystem.h"

using KivGeometry::SpatialReference;
using KivUtility::_ptr_t;

namespace {

/// After the first "SPHEROID" and one character, from after the first ",".
QString spheroidTail(const QString& wkt)
{
    const QString rest = wkt.mid(wkt.indexOf(QLatin1String("SPHEROID")) + 9);
    return rest.mid(rest.indexOf(QLatin1Char(',')) + 1);
}

} // namespace

bool ReprojectionSupport::SameGeographicSystem(const _ptr_t<SpatialReference>& source,
                                               const _ptr_t<SpatialReference>& target)
{
    return ConversionSetup::SameBase(source.get(), target.get(), ConversionSetup::SameNameEnding);
}

int ReprojectionSupport::ModelControlsForKinds(const _ptr_t<SpatialReference>& source,
                                               const _ptr_t<SpatialReference>& target)
{
    if (!source || !target)
        return -1;
    const int s = source->GetType(), t = target->GetType();
    if ((s == KivGeometry::SRT_Geographic && t == KivGeometry::SRT_Projected)
        || (s == KivGeometry::SRT_Projected && t == KivGeometry::SRT_Geographic))
        return 0;
    if (s == KivGeometry::SRT_Projected && t == KivGeometry::SRT_Projected)
        return 1;
    return -1;
}

_ptr_t<SpatialReference> ReprojectionSupport::DatasetReference(const KivDataSource::Dataset& dataset, int member)
{
    if (dataset.GetKind() != KivDataSource::DK_Container)
        return dataset.GetSpatialReference();
    const auto* container = dynamic_cast<const KivDataSource::MultiDataset*>(&dataset);
    const auto chosen = container ? container->GetDataset(member) : _ptr_t<KivDataSource::Dataset>();
    return chosen ? chosen->GetSpatialReference() : _ptr_t<SpatialReference>();
}

bool ReprojectionSupport::SpheroidsDiffer(const QString& sourceWkt, const QString& targetWkt)
{
    QString source = spheroidTail(sourceWkt);
    source = source.left(source.indexOf(QLatin1String("AUTHORITY")) - 1);
    QString target = spheroidTail(targetWkt);
    target = target.left(target.indexOf(QLatin1String("]]")));
    return source != target;
}
