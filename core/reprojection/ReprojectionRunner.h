#pragma once

#include "reprojection/ReprojectionRequest.h"

#include <QString>
#include <QStringList>

#include <functional>

class ReprojectionFeedback;

namespace KivAlgo {
class Algorithm;
}

/// Reprojection as one call: chooses the algorithm for a request, loads it
/// by name from the algorithm library and runs it. Every surface starts its
/// reprojections here.
class ReprojectionRunner
{
public:
    enum Outcome {
        Done,       ///< finished; warnings and outputs went to the feedback
        Failed,     ///< finished with an error (the outputs written still went to the feedback)
        Stopped,    ///< stopped on request; nothing partial left
        NotLoaded,  ///< the algorithm library or the algorithm is missing
        NotStarted  ///< the algorithm would not start
    };

    /// The algorithm that runs `request` (`ReprojectionAlgorithmChoice`).
    static QString AlgorithmOf(const ReprojectionRequest& request);

    /// Runs `request` to its end, turning a Qt event loop on this thread
    /// meanwhile. `errors` gets the reasons of a failure, one a line (also
    /// for `NotLoaded` and `NotStarted`). While it runs, a description of
    /// a dataset is read once per path (`KivDataSource::DatasetFactory`).
    static Outcome Run(const ReprojectionRequest& request, ReprojectionFeedback& feedback, QStringList* errors);

    /// Starts `request` and returns at once: `connect` binds the caller's
    /// own handlers to the algorithm's signals before it starts, and from
    /// then on they own it (the completion or cancellation handler deletes
    /// it). `Done` when started.
    static Outcome Start(const ReprojectionRequest& request, const std::function<void(KivAlgo::Algorithm*)>& connect);

    /// The folders searched for the algorithm library, for a message.
    static QString LibraryFolders();
};
