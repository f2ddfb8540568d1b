// Temporary: placeholders until the PROJ-based implementation lands.
#include "KivGeometry/CoordFuncLibrary.h"
#include "KivGeometry/CoordinateTransformation.h"
#include "KivGeometry/CoordinateTransformation_7Param.h"
#include "KivGeometry/GeographicCoordinateSystem.h"
#include "KivGeometry/ProjectedCoordinateSystem.h"
#include "KivGeometry/SpatialReferenceFactory.h"

namespace KivGeometry {
class SpatialReferencePrivate {};
class CoordinateTransformationPrivate {};
class CoordinateTransformation_7ParamPrivate {};
SpatialReference::SpatialReference() = default;
SpatialReference::SpatialReference(const SpatialReference&) : KivUtility::CRef() {}
SpatialReference& SpatialReference::operator=(const SpatialReference&) { return *this; }
SpatialReference::~SpatialReference() = default;
bool SpatialReference::IsValid() const { return false; }
QString SpatialReference::GetName() const { return {}; }
int SpatialReference::GetType() const { return SRT_Unknown; }
bool SpatialReference::ImportFromWkt(const QString&) { return false; }
QString SpatialReference::ExportToWkt() const { return {}; }
QString SpatialReference::ExportToPrettyWkt() const { return {}; }
QString SpatialReference::ExportToProj4() const { return {}; }
QString SpatialReference::GetAuthorityCode() const { return {}; }
bool SpatialReference::MorphToESRI() { return false; }
bool SpatialReference::Normalize() { return false; }
bool SpatialReference::IsSame(const SpatialReference*) const { return false; }
bool SpatialReference::IsSameGeoCS(const SpatialReference*) const { return false; }
KivUtility::_ptr_t<SpatialReference> SpatialReference::Clone() const { return nullptr; }
KivUtility::_ptr_t<Datum> GeographicCoordinateSystem::GetDatum() const { return nullptr; }
KivUtility::_ptr_t<GeographicCoordinateSystem> ProjectedCoordinateSystem::GetGeographicCoordinateSystem() const { return nullptr; }
KivUtility::_ptr_t<Projection> ProjectedCoordinateSystem::GetProjection() const { return nullptr; }
double ProjectedCoordinateSystem::GetLinearUnits() const { return 1.0; }
KivUtility::_ptr_t<SpatialReference> SpatialReferenceFactory::CreateSpatialReference(const QString&) { return nullptr; }
CoordinateTransformation::CoordinateTransformation(const KivUtility::_ptr_t<SpatialReference>&, const KivUtility::_ptr_t<SpatialReference>&) {}
CoordinateTransformation::~CoordinateTransformation() = default;
bool CoordinateTransformation::IsValid() const { return false; }
bool CoordinateTransformation::Transform(int, double*, double*, double*) const { return false; }
bool CoordinateTransformation::Transform(int, double*, double*, double*, int*) const { return false; }
CoordinateTransformation_7Param::CoordinateTransformation_7Param() = default;
CoordinateTransformation_7Param::~CoordinateTransformation_7Param() = default;
void CoordinateTransformation_7Param::SetCT7Param(double, double, double, double, double, double, double) {}
void CoordinateTransformation_7Param::SetSourceSpheroid(double, double, double) {}
void CoordinateTransformation_7Param::SetTargetSpheroid(double, double, double) {}
bool CoordinateTransformation_7Param::ConvertBLHToBLH(double, double, double, double&, double&, double&) const { return false; }
bool CoordinateTransformation_7Param::ConvertBLHToBLH(int, double*, double*, double*, int*) const { return false; }
QString CoordFuncLibrary::ConvertDegToDegMinSec(double) { return {}; }
double CoordFuncLibrary::ConvertDegMinSecToDeg(const QString&, bool* ok) { if (ok) *ok = false; return 0; }
bool CoordFuncLibrary::ConvertBLHToXYZ(const Spheroid&, double*, double*, double*, int) { return false; }
bool CoordFuncLibrary::ConvertXYZToBLH(const Spheroid&, double*, double*, double*, int) { return false; }
bool CoordFuncLibrary::ConvertXYToBL(const Spheroid&, double, double*, double*, int, bool) { return false; }
bool CoordFuncLibrary::ConvertBLToXY(const Spheroid&, double, double*, double*, int, int) { return false; }
int CoordFuncLibrary::ZoneNumberOf(double) { return 0; }
double CoordFuncLibrary::RemoveZoneNumber(double y) { return y; }
double* CoordFuncLibrary::Calculate4Params(double*, double*, double*, double*, int, double*) { return nullptr; }
double* CoordFuncLibrary::Calculate7Params(double*, double*, double*, double*, double*, double*, int, double*, double*) { return nullptr; }
} // namespace KivGeometry
