#pragma once

#include "KivGeometry/SpatialReference.h"
#include "models/ControlPointQuality.h"
#include "KivUtility/_ptr_t.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QVector>

/// Computes a four- or seven-parameter model from control points given as the
/// texts of the calculation dialogs' tables, and formats the result as those
/// dialogs show it. The dialogs and the calc4/calc7 command-line tools share
/// it, so a file gives the same digits in both.
///
/// Four parameters: each point is source X, source Y, target X, target Y
/// (plane coordinates, X north), read as numbers.
///
/// Seven parameters: each point is source X or B, Y or L, H, then target X or
/// B, Y or L, H. The angle columns of a geographic side are read as angle
/// texts, everything else as numbers. A projected side is unprojected to B, L
/// with the Gauss-Krüger formulas on its ellipsoid and central meridian (a
/// zone number in front of Y is removed), then both sides go to geocentric
/// X, Y, Z on their own ellipsoids before the model is fitted.
///
/// The result array is `malloc`ed, in the library's order (DX, DY, T, K or
/// DX, DY, DZ, ω, κ, γ, m), and released with `free` by whoever holds it.
class ControlPointCalculation
{
public:
    enum Status {
        Succeeded,
        TooFewPoints,
        /// Both systems share one geographic system: there is no datum shift.
        SameGeographicSystem,
        /// A system is missing, a point cannot be converted or the fit failed
        /// (too few independent points, a singular system).
        Failed
    };

    static const int MinimumPoints4 = 2;
    static const int MinimumPoints7 = 3;

    ControlPointCalculation();
    ~ControlPointCalculation();
    ControlPointCalculation(const ControlPointCalculation&) = delete;
    ControlPointCalculation& operator=(const ControlPointCalculation&) = delete;

    Status Calculate4(const QList<QStringList>& points);
    Status Calculate7(const KivUtility::_ptr_t<KivGeometry::SpatialReference>& source,
                      const KivUtility::_ptr_t<KivGeometry::SpatialReference>& target,
                      const QList<QStringList>& points);

    /// The last successful result (4 or 7 values), null otherwise.
    const double* Result() const { return m_result; }
    /// Hands the result array over to the caller, who releases it with `free`.
    double* TakeResult();
    /// One value per point after a successful run: the plane residual
    /// (metres), and for seven parameters the height residual.
    const QVector<double>& PlaneResiduals() const { return m_plane; }
    const QVector<double>& HeightResiduals() const { return m_height; }

    /// The quality of the last successful run (`ids` name its points in
    /// order); an invalid analysis otherwise.
    ControlPointQuality Quality(const QStringList& ids) const;

    /// The result text of the last run, "\r\n" after every line; empty when
    /// the last run did not succeed.
    QString ResultText() const;

    /// "DX(m)=", "DY(m)=", "T(゜)=" with 6 decimals and "K=" with 12.
    static QString FormatResult4(const double* result);
    /// "DX(m)=" … "γ(″)=" with 6 decimals and "m=" with 12.
    static QString FormatResult7(const double* result);
    /// A residual as the tables show it: 3 decimals.
    static QString FormatResidual(double value);

    /// True when the two systems share their geographic system.
    static bool SharesGeographicSystem(const KivGeometry::SpatialReference* source,
                                       const KivGeometry::SpatialReference* target);
    /// A table text as a number: an angle text when `angle`, else a plain
    /// number; anything that does not convert gives 0.
    static double ReadValue(const QString& text, bool angle);

private:
    void Reset();

    double* m_result = nullptr;
    int m_resultCount = 0;
    QVector<double> m_plane;
    QVector<double> m_height;
    // The coordinates the model was fitted to, and which points lack a height.
    QVector<QVector<double>> m_fitted;
    QVector<bool> m_heightMissing;
    // The target side as map positions (x east) in the target system.
    QVector<double> m_mapX, m_mapY;
    QString m_positionWkt;
    bool m_positionsGeographic = false;
};
