#pragma once

#include "KivGeometry/SpatialReference.h"
#include "KivUtility/_ptr_t.h"

#include <QString>

namespace KivDataSource {
class Dataset;
}

/// Decisions the dataset and batch reprojection dialogs share.
class ReprojectionSupport
{
public:
    /// True when the two systems stand on one geographic coordinate system by
    /// the reprojection dialogs' rule (`ConversionSetup::SameNameEnding`).
    /// Then a four-parameter model applies, otherwise a seven-parameter one.
    static bool SameGeographicSystem(const KivUtility::_ptr_t<KivGeometry::SpatialReference>& source,
                                     const KivUtility::_ptr_t<KivGeometry::SpatialReference>& target);

    /// What the model controls become for the kinds of the two systems: 0
    /// disabled (one geographic, the other projected), 1 enabled (both
    /// projected), -1 left as they are (any other pair).
    static int ModelControlsForKinds(const KivUtility::_ptr_t<KivGeometry::SpatialReference>& source,
                                     const KivUtility::_ptr_t<KivGeometry::SpatialReference>& target);

    /// The system of a dataset: its own, or for a container of layers that of
    /// member `member` (the dataset dialog looks at the first, the batch
    /// dialog at the second). Null when there is none.
    static KivUtility::_ptr_t<KivGeometry::SpatialReference> DatasetReference(const KivDataSource::Dataset& dataset,
                                                                              int member);

    /// The ellipsoid test before a reprojection, on the two WKT texts: the
    /// text after each first "SPHEROID" and one more character, from after
    /// its first ","; the source piece ends before the character that
    /// precedes its first "AUTHORITY", the target piece before its first
    /// "]]". The two ends differ on purpose: a target with an authority
    /// clause always asks, so the user confirms the model once more.
    static bool SpheroidsDiffer(const QString& sourceWkt, const QString& targetWkt);
};
