#pragma once

#include "reprojection/ReprojectionRunner.h"

#include <QStringList>

/// A reprojection from the command line: the one runner, with a progress
/// bar when standard error is a terminal, and Ctrl-C (or a scheduler's TERM)
/// stopping it, which leaves nothing partial behind.
class AlgorithmRun
{
public:
    /// Runs `request`; `outputs`, `warnings` and `errors` get what it said.
    static ReprojectionRunner::Outcome Run(const ReprojectionRequest& request, QStringList* outputs,
                                           QStringList* warnings, QStringList* errors);
    /// Asks the run under way to stop, as Ctrl-C does.
    static void RequestStop();
    /// True once a stop was requested: a batch then starts no further run.
    static bool StopRequested();
    /// A command starts with no stop requested.
    static void ResetStop();
};
