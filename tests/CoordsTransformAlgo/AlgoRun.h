#pragma once

#include "KivAlgo/AlgoFactory.h"
#include "reprojection/stCoordsTransformInfo.h"

#include <QString>

/// Runs one algorithm of CoordsTransformAlgo through the factory and waits
/// for its end, as a command would.
struct AlgoRun
{
    int completed = 0;
    int canceled = 0;
    int code = 0;
    QString message;
    stCoordsTransformInfo info;
    qint64 millisecondsToEnd = 0;

    /// `answer`: what the progress handler returns; `cancel`: ask to cancel
    /// at the first progress report.
    static AlgoRun run(const QString& algorithm, const stCoordsTransformInfo& info, int answer = 1,
                       bool cancel = false);
};
