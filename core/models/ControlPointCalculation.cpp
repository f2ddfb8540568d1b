#include "models/ControlPointCalculation.h"

#include "spatialref/ConversionSetup.h"

#include "KivGeometry/CoordFuncLibrary.h"
#include "KivGeometry/GeographicCoordinateSystem.h"
#include "KivGeometry/ProjectedCoordinateSystem.h"

#include <cmath>
#include <cstdlib>
#include <vector>

using KivGeometry::CoordFuncLibrary;
using KivGeometry::SpatialReference;

namespace {

bool allFinite(const double* values, int count)
{
    for (int i = 0; i < count; ++i) {
        if (!std::isfinite(values[i]))
            return false;
    }
    return true;
}

bool isGeographic(const SpatialReference* ref)
{
    return ref && ref->GetType() == KivGeometry::SRT_Geographic;
}

bool isProjected(const SpatialReference* ref)
{
    return ref && ref->GetType() == KivGeometry::SRT_Projected;
}

bool spheroidOf(const SpatialReference* ref, KivGeometry::Spheroid& spheroid)
{
    const KivGeometry::GeographicCoordinateSystem gcs(*ref);
    const KivUtility::_ptr_t<KivGeometry::Datum> datum = gcs.GetDatum();
    if (!datum)
        return false;
    spheroid = datum->GetSpheroid();
    return spheroid.GetSemiMajorAxis() > 0.0;
}

// One side of the control points to geocentric X, Y, Z, in place.
bool toGeocentric(const SpatialReference* ref, std::vector<double>& x, std::vector<double>& y,
                  std::vector<double>& h)
{
    KivGeometry::Spheroid spheroid;
    if (!spheroidOf(ref, spheroid))
        return false;
    const int count = static_cast<int>(x.size());
    if (isProjected(ref)) {
        const KivGeometry::ProjectedCoordinateSystem pcs(*ref);
        const KivUtility::_ptr_t<KivGeometry::Projection> projection = pcs.GetProjection();
        if (!projection)
            return false;
        const double centralMeridian = projection->GetParameter(KivGeometry::Projection::CentralMeridian);
        if (!CoordFuncLibrary::ConvertXYToBL(spheroid, centralMeridian, x.data(), y.data(), count, true))
            return false;
    }
    return CoordFuncLibrary::ConvertBLHToXYZ(spheroid, x.data(), y.data(), h.data(), count)
        && allFinite(x.data(), count) && allFinite(y.data(), count) && allFinite(h.data(), count);
}

// The target side of the points as map positions, x east: longitude and
// latitude for a geographic system; for a projected one Y, X, without a zone
// number the system's false easting does not hold.
void mapPositions(const SpatialReference* ref, const std::vector<double>& x, const std::vector<double>& y,
                  QVector<double>& mapX, QVector<double>& mapY)
{
    mapX = QVector<double>(y.begin(), y.end());
    mapY = QVector<double>(x.begin(), x.end());
    if (!isProjected(ref))
        return;
    const KivGeometry::ProjectedCoordinateSystem pcs(*ref);
    const KivUtility::_ptr_t<KivGeometry::Projection> projection = pcs.GetProjection();
    if (projection && projection->GetParameter(KivGeometry::Projection::FalseEasting) < 1e6) {
        for (double& east : mapX)
            east = CoordFuncLibrary::RemoveZoneNumber(east);
    }
}

QString line(const char* label, double value, int decimals)
{
    // The labels hold degree, prime and Greek signs in UTF-8 source bytes.
    return QString::fromLocal8Bit(label) + QString::number(value, 'f', decimals) + QStringLiteral("\r\n");
}

} // namespace

ControlPointCalculation::ControlPointCalculation() = default;

ControlPointCalculation::~ControlPointCalculation()
{
    std::free(m_result);
}

void ControlPointCalculation::Reset()
{
    std::free(m_result);
    m_result = nullptr;
    m_resultCount = 0;
    m_plane.clear();
    m_height.clear();
    m_fitted.clear();
    m_heightMissing.clear();
    m_mapX.clear();
    m_mapY.clear();
    m_positionWkt.clear();
    m_positionsGeographic = false;
}

ControlPointQuality ControlPointCalculation::Quality(const QStringList& ids) const
{
    if (!m_result)
        return ControlPointQuality::Analyse(ControlPointQuality::FourParameters, {}, ids);
    ControlPointQuality quality = ControlPointQuality::Analyse(
        m_resultCount == 4 ? ControlPointQuality::FourParameters : ControlPointQuality::SevenParameters, m_fitted, ids,
        m_result, m_heightMissing);
    quality.SetPositions(m_mapX, m_mapY, m_positionWkt, m_positionsGeographic);
    return quality;
}

double* ControlPointCalculation::TakeResult()
{
    double* result = m_result;
    m_result = nullptr;
    return result;
}

double ControlPointCalculation::ReadValue(const QString& text, bool angle)
{
    if (angle)
        return CoordFuncLibrary::ConvertDegMinSecToDeg(text);
    return text.toDouble();
}

bool ControlPointCalculation::SharesGeographicSystem(const SpatialReference* source, const SpatialReference* target)
{
    return ConversionSetup::SameBase(source, target, ConversionSetup::SameDatum);
}

ControlPointCalculation::Status ControlPointCalculation::Calculate4(const QList<QStringList>& points)
{
    Reset();
    const int count = points.size();
    if (count < MinimumPoints4)
        return TooFewPoints;
    std::vector<double> srcX(count), srcY(count), dstX(count), dstY(count), residuals(count, 0.0);
    for (int i = 0; i < count; ++i) {
        const QStringList& p = points.at(i);
        srcX[i] = ReadValue(p.value(0), false);
        srcY[i] = ReadValue(p.value(1), false);
        dstX[i] = ReadValue(p.value(2), false);
        dstY[i] = ReadValue(p.value(3), false);
    }
    double* result = CoordFuncLibrary::Calculate4Params(srcX.data(), srcY.data(), dstX.data(), dstY.data(),
                                                        count, residuals.data());
    if (!result || !allFinite(result, 4) || !allFinite(residuals.data(), count)) {
        std::free(result);
        return Failed;
    }
    m_result = result;
    m_resultCount = 4;
    m_plane = QVector<double>(residuals.begin(), residuals.end());
    for (const std::vector<double>* column : {&srcX, &srcY, &dstX, &dstY})
        m_fitted << QVector<double>(column->begin(), column->end());
    m_mapX = m_fitted[3];
    m_mapY = m_fitted[2];
    return Succeeded;
}

ControlPointCalculation::Status ControlPointCalculation::Calculate7(
    const KivUtility::_ptr_t<SpatialReference>& source, const KivUtility::_ptr_t<SpatialReference>& target,
    const QList<QStringList>& points)
{
    Reset();
    const int count = points.size();
    if (count < MinimumPoints7)
        return TooFewPoints;
    if (!source || !target)
        return Failed;

    const bool srcAngles = isGeographic(source.get());
    const bool dstAngles = isGeographic(target.get());
    std::vector<double> srcX(count), srcY(count), srcZ(count), dstX(count), dstY(count), dstZ(count);
    for (int i = 0; i < count; ++i) {
        const QStringList& p = points.at(i);
        srcX[i] = ReadValue(p.value(0), srcAngles);
        srcY[i] = ReadValue(p.value(1), srcAngles);
        srcZ[i] = ReadValue(p.value(2), false);
        dstX[i] = ReadValue(p.value(3), dstAngles);
        dstY[i] = ReadValue(p.value(4), dstAngles);
        dstZ[i] = ReadValue(p.value(5), false);
        m_heightMissing << (p.value(2).trimmed().isEmpty() || p.value(5).trimmed().isEmpty());
    }
    if (SharesGeographicSystem(source.get(), target.get()))
        return SameGeographicSystem;
    mapPositions(target.get(), dstX, dstY, m_mapX, m_mapY);
    m_positionWkt = target->ExportToWkt();
    m_positionsGeographic = dstAngles;
    if (!toGeocentric(source.get(), srcX, srcY, srcZ) || !toGeocentric(target.get(), dstX, dstY, dstZ))
        return Failed;

    std::vector<double> plane(count, 0.0), height(count, 0.0);
    double* result = CoordFuncLibrary::Calculate7Params(srcX.data(), srcY.data(), srcZ.data(), dstX.data(),
                                                        dstY.data(), dstZ.data(), count, plane.data(),
                                                        height.data());
    if (!result || !allFinite(result, 7) || !allFinite(plane.data(), count) || !allFinite(height.data(), count)) {
        std::free(result);
        return Failed;
    }
    m_result = result;
    m_resultCount = 7;
    m_plane = QVector<double>(plane.begin(), plane.end());
    m_height = QVector<double>(height.begin(), height.end());
    for (const std::vector<double>* column : {&srcX, &srcY, &srcZ, &dstX, &dstY, &dstZ})
        m_fitted << QVector<double>(column->begin(), column->end());
    return Succeeded;
}

QString ControlPointCalculation::ResultText() const
{
    if (!m_result)
        return QString();
    return m_resultCount == 4 ? FormatResult4(m_result) : FormatResult7(m_result);
}

QString ControlPointCalculation::FormatResult4(const double* r)
{
    return line("DX(m)=", r[0], 6) + line("DY(m)=", r[1], 6) + line("T(゜)=", r[2], 6) + line("K=", r[3], 12);
}

QString ControlPointCalculation::FormatResult7(const double* r)
{
    return line("DX(m)=", r[0], 6) + line("DY(m)=", r[1], 6) + line("DZ(m)=", r[2], 6)
        + line("ω(″)=", r[3], 6) + line("κ(″)=", r[4], 6) + line("γ(″)=", r[5], 6) + line("m=", r[6], 12);
}

QString ControlPointCalculation::FormatResidual(double value)
{
    // A height residual that rounds to nothing reads 0.000, not -0.000.
    if (std::abs(value) < 0.0005)
        value = 0.0;
    return QString::number(value, 'f', 3);
}
