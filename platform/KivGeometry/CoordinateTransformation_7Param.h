#pragma once

#include "KivUtility/CRef.h"

#include <memory>
#include <string>

namespace KivGeometry {

class CoordinateTransformation_7ParamPrivate;

/// Seven-parameter (Bursa-Wolf) datum shift between two ellipsoids, applied
/// to geodetic coordinates: geodetic -> geocentric on the source ellipsoid,
/// Helmert in the coordinate-frame rotation convention (EPSG method 1032) with
/// the small-angle rotation matrix, geocentric -> geodetic on the target
/// ellipsoid. See docs/geodesy.md for the formula.
class CoordinateTransformation_7Param : public KivUtility::CRef
{
public:
    CoordinateTransformation_7Param();
    ~CoordinateTransformation_7Param() override;

    /// DX, DY, DZ in metres; ω (about X), κ (about Y), γ (about Z) in
    /// arc-seconds; m dimensionless, the scale being 1 + m.
    void SetCT7Param(double dx, double dy, double dz, double w, double k, double r, double m);
    /// Semi-major axis, semi-minor axis (metres) and flattening f (the third
    /// argument is 1 / inverse flattening; 0 for a sphere, and so is the
    /// +infinity that 1 / 0 gives). The semi-minor axis is not needed beside a
    /// and f and is ignored.
    void SetSourceSpheroid(double a, double b, double f);
    void SetTargetSpheroid(double a, double b, double f);

    /// B, L in decimal degrees (latitude, longitude), H in metres above the
    /// ellipsoid. Returns false when the parameters or ellipsoids are not set
    /// or the point cannot be converted; the outputs are then unchanged.
    bool ConvertBLHToBLH(double B, double L, double H, double& B2, double& L2, double& H2) const;
    /// Batch form, in place: `b`, `l`, `h` hold `count` points. `success` (may
    /// be null) receives 1 or 0 per point. Returns true when all converted.
    bool ConvertBLHToBLH(int count, double* b, double* l, double* h, int* success = nullptr) const;

    /// The same shift as a PROJ pipeline on longitude, latitude (degrees) and
    /// height, with the matrix written out as an affine step: PROJ inverts an
    /// affine step exactly, whereas its helmert inverse transposes the
    /// small-angle matrix (a tenth of a millimetre off). Empty when not set.
    std::string InvertibleDefinition() const;

private:
    std::unique_ptr<CoordinateTransformation_7ParamPrivate> d;
};

} // namespace KivGeometry
