#pragma once

#include "KivGeometry/SpatialReference.h"
#include "KivUtility/CRef.h"
#include "KivUtility/_ptr_t.h"

#include <memory>
#include <string>

namespace KivGeometry {

class CoordinateTransformationPrivate;

/// PROJ's best operation between two systems, in traditional GIS axis order
/// (x = easting or longitude in degrees, y = northing or latitude in degrees).
///
/// The operation for a pair of systems is looked up once and cached, so
/// building a transformation again for the same pair (as the file conversion
/// does for every point) costs microseconds. The cache is thread-safe; one
/// object must not be used by two threads at once.
class CoordinateTransformation : public KivUtility::CRef
{
public:
    CoordinateTransformation(const KivUtility::_ptr_t<SpatialReference>& source,
                             const KivUtility::_ptr_t<SpatialReference>& target);
    ~CoordinateTransformation() override;

    /// False when no operation exists between the two systems (or either is
    /// missing); `Transform` then fails for every point.
    bool IsValid() const;

    /// Converts `count` points in place; `z` may be null (heights are then
    /// taken as 0 and not returned). Returns true when every point converted.
    /// A point that fails is left unchanged.
    bool Transform(int count, double* x, double* y, double* z) const;
    /// The same, reporting each point's success in `success` (count entries,
    /// 1 converted, 0 failed; may be null).
    bool Transform(int count, double* x, double* y, double* z, int* success) const;

    /// The same, also counting in `unshifted` (may be null) the converted
    /// points that got no datum shift: PROJ knows no transformation between
    /// the two datums whose area of use takes the point in, and fell back to
    /// a ballpark operation, which changes no datum (off by up to ~100 m).
    /// Pairs on one datum never count.
    bool Transform(int count, double* x, double* y, double* z, int* success, int* unshifted) const;

    /// The operation as a PROJ string in the same axis order (often a
    /// pipeline); empty when it is invalid or PROJ cannot write it as one.
    std::string ProjDefinition() const;

private:
    std::shared_ptr<CoordinateTransformationPrivate> d;
};

} // namespace KivGeometry
