#pragma once

#include "KivUtility/CRef.h"

#include <string>

namespace KivGeometry {

/// Four-parameter plane similarity between two grids:
///   X2 = DX + K (X cos T - Y sin T)
///   Y2 = DY + K (X sin T + Y cos T)
/// with X the north and Y the east coordinate, T in degrees.
class CoordinateTransformation_4Param : public KivUtility::CRef
{
public:
    CoordinateTransformation_4Param() = default;

    /// DX, DY in metres, T in degrees, K the scale (1 for none).
    void SetCT4Param(double dx, double dy, double t, double k);
    void ConvertXYToXY(double x, double y, double& x2, double& y2) const;
    /// The same as a PROJ affine step in GIS order (x = east, y = north),
    /// which PROJ can invert.
    std::string ProjDefinition() const;

private:
    double m_dx = 0.0;
    double m_dy = 0.0;
    double m_cosT = 1.0;
    double m_sinT = 0.0;
    double m_k = 1.0;
};

} // namespace KivGeometry
