#pragma once

#include "KivGeometry/Spheroid.h"

#include <QString>

namespace KivGeometry {

/// Coordinate functions used by the dialogs: angle texts, geodetic and
/// geocentric conversions, Gauss-Krüger plane coordinates, and the least-
/// squares computation of four- and seven-parameter models.
///
/// Plane coordinates follow the surveying convention: X is the north and Y the
/// east coordinate. Geodetic coordinates are B (latitude) and L (longitude) in
/// decimal degrees and H in metres. All array functions work in place on
/// `count` points and return false (leaving failed points unchanged) when a
/// point cannot be converted.
class CoordFuncLibrary
{
public:
    /// Canonical degree-minute-second text D°M′S.ssssss″: no padding, six
    /// decimals of seconds, a leading "-" for negative angles, "0°0′0.000000″"
    /// for zero; rounding carries into minutes and degrees, never 60″.
    static QString ConvertDegToDegMinSec(double degrees);
    /// Parses an angle text: the canonical form, the padded masks
    /// "00°00′00.000000″" and "000°00′00.000000″", "dd:mm:ss.s", "dd:mm.m",
    /// decimal degrees, and dd゜mm'ss" (with U+309C); a leading "-" and
    /// surrounding blanks are allowed. In a degree-minute-second text, blanks
    /// and empty fields (the untyped positions of an input mask, "32°1 ′  .  ″")
    /// count as 0, but at least one digit is needed. Anything else returns 0
    /// and sets `*ok` to false. The grammar is in docs/geodesy.md.
    static double ConvertDegMinSecToDeg(const QString& text, bool* ok = nullptr);

    /// Geodetic B, L, H -> geocentric X, Y, Z (metres), in place: b becomes X,
    /// l becomes Y, h becomes Z.
    static bool ConvertBLHToXYZ(const Spheroid& spheroid, double* b, double* l, double* h, int count);
    /// Geocentric X, Y, Z -> geodetic B, L, H, in place.
    static bool ConvertXYZToBLH(const Spheroid& spheroid, double* x, double* y, double* z, int count);

    /// Gauss-Krüger plane X (north), Y (east) -> B, L in degrees, in place:
    /// scale 1 on the central meridian, false easting 500000 m. When
    /// `hasZoneNumber` is true, a Y of 1,000,000 or more carries its zone
    /// number in front (Y = zone * 1,000,000 + easting), which is removed first.
    static bool ConvertXYToBL(const Spheroid& spheroid, double centralMeridian,
                              double* x, double* y, int count, bool hasZoneNumber);
    /// B, L in degrees -> Gauss-Krüger X (north), Y (east), in place. A
    /// `zoneNumber` above 0 is put in front of Y (Y += zoneNumber * 1,000,000).
    static bool ConvertBLToXY(const Spheroid& spheroid, double centralMeridian,
                              double* b, double* l, int count, int zoneNumber = 0);
    /// The zone number carried in front of a Y value (0 when Y < 1,000,000).
    static int ZoneNumberOf(double y);
    /// Y without its zone number.
    static double RemoveZoneNumber(double y);

    /// Least-squares four-parameter model from `count` control points (at
    /// least 2): returns a `malloc`ed array DX, DY (metres), T (degrees), K that
    /// the caller releases with `free`, or null for too few points or a
    /// singular system. `residuals` (count entries) receives each point's
    /// plane distance from its target after the fit, in metres.
    static double* Calculate4Params(double* srcX, double* srcY, double* dstX, double* dstY,
                                    int count, double* residuals);
    /// Least-squares seven-parameter model between geocentric coordinates (at
    /// least 3 points): returns a `malloc`ed array DX, DY, DZ (metres), ω, κ, γ
    /// (arc-seconds), m (scale 1 + m) for the convention of
    /// `CoordinateTransformation_7Param`, or null for too few points or a
    /// singular system (coinciding or collinear points). Per point,
    /// `planeResiduals` receives the horizontal length and `heightResiduals`
    /// the vertical component (signed, positive when the target lies above the
    /// model) of its residual, observed minus computed, in its local
    /// east-north-up frame, in metres.
    static double* Calculate7Params(double* srcX, double* srcY, double* srcZ,
                                    double* dstX, double* dstY, double* dstZ, int count,
                                    double* planeResiduals, double* heightResiduals);
};

} // namespace KivGeometry
