#pragma once

#include <QList>
#include <QString>

/// One stored transformation model.
struct TransformModel
{
    QString TransName;  ///< the model name, the key in the store
    QString SrcSpaRef;  ///< source reference (or ellipsoid) name
    QString DesSpaRef;  ///< target reference (or ellipsoid) name
    /// Four values DX, DY (metres), T (degrees), K; or seven values DX, DY,
    /// DZ (metres), w, k, r (arc-seconds), m (scale 1 + m).
    QList<double> Params;
};
