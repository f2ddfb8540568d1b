#pragma once

// PROJ pipelines for the conversion route and for the dialogs and tools built
// on it, spelled out step by step (projection, geocentric conversion,
// coordinate-frame Helmert, plane similarity) independently of the route and
// of the geometry library; run them with KivTest::projTransform.

#include "support/ProjReference.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <cmath>

namespace RouteReference {

/// A Beijing 1954 Gauss-Krüger zone (Krasovsky) by its central meridian.
inline QString tmerc(int centralMeridian)
{
    return QStringLiteral("+proj=tmerc +lat_0=0 +lon_0=%1 +k=1 +x_0=500000 +y_0=0 +ellps=krass").arg(centralMeridian);
}
inline QString utm50() { return QStringLiteral("+proj=utm +zone=50 +ellps=WGS84"); }
inline QString toRad() { return QStringLiteral("+proj=unitconvert +xy_in=deg +xy_out=rad"); }
inline QString toDeg() { return QStringLiteral("+proj=unitconvert +xy_in=rad +xy_out=deg"); }
inline QString inv(const QString& step) { return QStringLiteral("+inv ") + step; }
inline QString pipeline(const QStringList& steps)
{
    return QStringLiteral("+proj=pipeline +step ") + steps.join(QStringLiteral(" +step "));
}

/// A Beijing 1954 -> WGS 84 model with rotations large enough that a sign or
/// axis mix-up shows by metres (DX, DY, DZ m; rotations ″; scale).
inline QList<double> seven() { return {15.8, -154.4, -82.3, 0.52, -1.31, 2.17, 3.5e-6}; }
/// `seven()` between two ellipsoids, as pipeline steps on radians.
inline QString helmert(const char* from = "krass", const char* to = "WGS84")
{
    return QStringLiteral("+proj=cart +ellps=%1 +step +proj=helmert +x=15.8 +y=-154.4 +z=-82.3 +rx=0.52 +ry=-1.31 "
                          "+rz=2.17 +s=3.5 +convention=coordinate_frame +step +inv +proj=cart +ellps=%2")
        .arg(QLatin1String(from), QLatin1String(to));
}

/// A plane model between two grids (DX, DY m; T degrees; K).
inline QList<double> four() { return {-35.2, 120.7, 0.0125, 1.0000123}; }
/// The plane similarity in PROJ's order x = east (Y), y = north (X):
/// E2 = DY + K(sinT N + cosT E), N2 = DX + K(cosT N - sinT E).
inline QString affine(const QList<double>& p)
{
    const double t = p[2] * M_PI / 180.0, k = p[3];
    return QStringLiteral("+proj=affine +xoff=%1 +yoff=%2 +s11=%3 +s12=%4 +s21=%5 +s22=%6")
        .arg(p[1], 0, 'g', 17).arg(p[0], 0, 'g', 17)
        .arg(k * std::cos(t), 0, 'g', 17).arg(k * std::sin(t), 0, 'g', 17)
        .arg(-k * std::sin(t), 0, 'g', 17).arg(k * std::cos(t), 0, 'g', 17);
}

} // namespace RouteReference
