#pragma once

#include "spatialref/CoordinateConversion.h"

#include "KivGeometry/SpatialReference.h"
#include "KivUtility/_ptr_t.h"

#include <QList>
#include <QString>

#include <memory>

/// One conversion, set up once: the two systems, the kind of model and its
/// values, and the zone-number flag. The command line parses its options
/// into one; the dialogs fill one from their widgets. `MakeConversion` gives
/// the route (`CoordinateConversion`) it describes.
class ConversionSetup
{
public:
    /// How two systems are found to stand on one geographic base, which
    /// decides between a four-parameter model (one base) and a
    /// seven-parameter model (two bases).
    enum SameBaseRule {
        /// Same datum, ellipsoid and prime meridian (`IsSameGeoCS`): the
        /// point and file conversion dialogs and the command line.
        SameDatum,
        /// The dataset and batch reprojection dialogs' rule: the last four
        /// characters of the names of the two geographic systems (a projected
        /// system's own) are equal, or else the two geographic systems are
        /// the same (`IsSame`). Looser than SameDatum: "Beijing 1954" and
        /// "Pulkovo 1954" would count as one base.
        SameNameEnding
    };
    static bool SameBase(const KivGeometry::SpatialReference* source, const KivGeometry::SpatialReference* target,
                         SameBaseRule rule);
    /// The rule's name as the command line reports it.
    static QString RuleName(SameBaseRule rule);

    KivUtility::_ptr_t<KivGeometry::SpatialReference> source;
    KivUtility::_ptr_t<KivGeometry::SpatialReference> target;
    /// Direct: PROJ's own operation; otherwise a model in `params`.
    CoordinateConversion::Mode mode = CoordinateConversion::Direct;
    QList<double> params;
    QString modelName; ///< the stored model's name; empty for typed values
    bool codeNumber = false;

    /// Comma-separated numbers ("1.5,-2,3e-6"); false unless each piece is a
    /// finite number and there are exactly `count` of them (any count for -1).
    static bool ParseValues(const QString& text, int count, QList<double>* values);

    /// Seven or four typed values (DX,DY,DZ,W,K,R,M or DX,DY,T,K, separated
    /// by commas). False with a message naming the option in `error`.
    bool UseTypedModel(CoordinateConversion::Mode kind, const QString& values, QString* error);
    /// The stored model named exactly `name`, from either list of the store;
    /// a name in both lists takes the kind `rule` gives the two systems.
    /// False with the reason in `error`: no such model (the stored names are
    /// listed), a store that cannot be read, or a model whose numbers are
    /// not numbers.
    bool UseStoredModel(const QString& name, SameBaseRule rule, QString* error);
    /// True when no model is set and the two systems stand on different
    /// bases by `rule`: a route that applies models only (the reprojection
    /// algorithms) then needs a seven-parameter one.
    bool NeedsSevenParameters(SameBaseRule rule) const;

    /// The route, ready to convert unless the pair cannot be converted with
    /// this model (see `CoordinateConversion::IsReady`).
    std::unique_ptr<CoordinateConversion> MakeConversion() const;
    /// Why the route is not ready, for a message.
    QString NotReadyReason() const;
};
