#pragma once

#include <QCoreApplication>
#include <QString>
#include <QStringList>
#include <QVector>

/// How good a four- or seven-parameter fit is, and which control point spoils
/// it (docs/geodesy.md, section 6a): the a-posteriori standard deviation of
/// unit weight, the parameters' standard deviations and correlations, the
/// leave-one-out check residual of every point, data snooping with a w-test
/// and a robust IGG III fit whose parameters stand beside the plain ones.
///
/// It works on the coordinates the fit itself used (plane X, Y for four
/// parameters, geocentric X, Y, Z for seven) and on the same linear model, so
/// its plain parameters are those of `ControlPointFit`. Whatever cannot be
/// computed (too few points, points that do not fix the model) is left
/// unavailable with a line in `Notes()`, never a NaN.
class ControlPointQuality
{
    Q_DECLARE_TR_FUNCTIONS(ControlPointQuality)
public:
    enum Model { FourParameters, SevenParameters };

    struct Point
    {
        QString id;
        /// Position for a plot: east and north in metres from the points' centre.
        double east = 0, north = 0;
        /// Residual (observed target minus model) north, east, up in metres;
        /// up is 0 for four parameters.
        double vNorth = 0, vEast = 0, vUp = 0;
        double plane = 0, height = 0;
        bool checkAvailable = false;
        double checkPlane = 0, checkHeight = 0;
        /// The w-test of the plain fit with every point: the largest |w| of the
        /// plane components and the w of the height.
        bool wAvailable = false;
        double wPlane = 0, wHeight = 0;
        /// IGG III weight after the robust fit (the smaller of its components).
        double robustWeight = 1;
        /// Named by data snooping, and the w and part that named it.
        bool flagged = false;
        double flaggedW = 0;
        bool flaggedInHeight = false;
        bool heightMissing = false;
        /// Where the point lies on a map, in the system of `PositionWkt()`:
        /// easting, northing or longitude, latitude in degrees.
        double mapX = 0, mapY = 0;
    };

    /// Significance of the whole snooping pass, split evenly over the tested
    /// observations; IGG III constants.
    static constexpr double FamilyAlpha = 0.005;
    static constexpr double IggK0 = 3.0;
    static constexpr double IggK1 = 6.0;

    /// `coordinates`: source X, Y, target X, Y (four) or source X, Y, Z, target
    /// X, Y, Z geocentric (seven), one value per point. `plain`: the fit's own
    /// result (4 or 7 values) to report as the plain parameters, or null.
    static ControlPointQuality Analyse(Model model, const QVector<QVector<double>>& coordinates,
                                       const QStringList& ids, const double* plain = nullptr,
                                       const QVector<bool>& heightMissing = QVector<bool>(),
                                       double k0 = IggK0, double k1 = IggK1);

    Model GetModel() const { return m_model; }
    /// False when no model fits the points at all; `Notes()` says why.
    bool IsValid() const { return m_valid; }
    int ObservationCount() const { return m_observations; }
    int ParameterCount() const { return m_model == FourParameters ? 4 : 7; }
    int DegreesOfFreedom() const { return m_observations - ParameterCount(); }

    bool HasSigma0() const { return m_hasSigma0; }
    double Sigma0() const { return m_sigma0; }
    /// Parameters in the library's order and units, their standard deviations
    /// (only with sigma0) and the correlation matrix, row by row.
    const QVector<double>& Parameters() const { return m_parameters; }
    const QVector<double>& StandardDeviations() const { return m_stdDev; }
    double Correlation(int i, int j) const { return m_correlation.value(i * ParameterCount() + j); }

    bool HasSnooping() const { return m_hasSnooping; }
    double ObservationAlpha() const { return m_observationAlpha; }
    /// Critical |w| of the plane and the height components in the first pass.
    double CriticalPlane() const { return m_criticalPlane; }
    double CriticalHeight() const { return m_criticalHeight; }

    bool HasRobust() const { return m_hasRobust; }
    const QVector<double>& RobustParameters() const { return m_robust; }
    int RobustIterations() const { return m_robustIterations; }
    double K0() const { return m_k0; }
    double K1() const { return m_k1; }

    const QVector<Point>& Points() const { return m_points; }
    QStringList FlaggedIds() const;

    /// The points' target positions (one per point, x east) in the system
    /// `wkt` (empty: unknown); `geographic` when they are degrees.
    void SetPositions(const QVector<double>& x, const QVector<double>& y, const QString& wkt, bool geographic);
    bool HasPositions() const { return m_hasPositions; }
    QString PositionWkt() const { return m_positionWkt; }
    bool PositionsGeographic() const { return m_positionsGeographic; }
    /// Why something is unavailable, or what to keep in mind, one line each.
    const QStringList& Notes() const { return m_notes; }

private:
    Model m_model = FourParameters;
    bool m_valid = false;
    int m_observations = 0;
    bool m_hasSigma0 = false;
    double m_sigma0 = 0;
    QVector<double> m_parameters, m_stdDev, m_correlation;
    bool m_hasSnooping = false;
    double m_observationAlpha = 0, m_criticalPlane = 0, m_criticalHeight = 0;
    bool m_hasRobust = false;
    QVector<double> m_robust;
    int m_robustIterations = 0;
    double m_k0 = IggK0, m_k1 = IggK1;
    QVector<Point> m_points;
    QStringList m_notes;
    bool m_hasPositions = false, m_positionsGeographic = false;
    QString m_positionWkt;

    friend class ControlPointQualityEngine;
};
