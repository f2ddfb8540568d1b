#pragma once

#include "reprojection/stCoordsTransformInfo.h"

#include <QString>

/// One run of a reprojection algorithm from the command line: loaded by
/// name, started, waited for (with a progress bar when standard error is a
/// terminal) and stopped by Ctrl-C, which leaves nothing partial behind.
class AlgorithmRun
{
public:
    enum Outcome { Finished, Stopped, NotLoaded, NotStarted };

    /// Runs `algorithm` on `info`; when it finished, `result` holds the
    /// record handed back and `code`/`message` its error (code 0 with
    /// warnings on success).
    static Outcome Run(const QString& algorithm, const QString& displayName, const stCoordsTransformInfo& info,
                       stCoordsTransformInfo* result, int* code, QString* message);
    /// The folders searched for the algorithm library, for a message.
    static QString LibraryFolders();
    /// Asks the run under way to stop, as Ctrl-C does.
    static void RequestStop();
    /// True once a stop was requested: a batch then starts no further run.
    static bool StopRequested();
    /// A command starts with no stop requested.
    static void ResetStop();
};
