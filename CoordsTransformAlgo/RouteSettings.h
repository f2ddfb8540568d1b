#pragma once

#include <QList>
#include <QString>

struct stCoordsTransformInfo;

/// The conversion route a reprojection applies, read from its record: the two
/// systems and how the route goes between them, as the point and file
/// dialogs would convert the same points.
struct RouteSettings
{
    QString sourceWkt;
    QString targetWkt;
    /// True: the seven-parameter model between two geographic bases.
    /// False: one geographic base, the four-parameter model in the plane when
    /// both systems are projected (no model: no plane step).
    bool useSevenParameters = false;
    QList<double> params;
    /// Source easting values carry their zone number in front.
    bool codeNumber = false;

    static RouteSettings FromRecord(const stCoordsTransformInfo& info);
    /// Empty when the route can run, else why not.
    QString Check() const;
};
