#pragma once

#include "KivAlgo/Algorithm.h"

#include <QString>
#include <QStringList>

namespace KivAlgo {

/// Creates algorithms from libraries loaded by name, and runs and cancels them.
class AlgoFactory
{
public:
    static AlgoFactory* Instance();

    /// Loads lib<library>.so (once; it stays loaded) from the folder of the
    /// program's libraries and asks its entry point for `algorithm`. Null when
    /// the library, its entry point or the algorithm is missing. The caller
    /// owns the result.
    Algorithm* CreateAlgorithm(const QString& library, const QString& algorithm);

    /// Starts `algorithm` on a worker thread; false when it is null or already
    /// running. Needs a Qt event loop on the calling thread for the signals.
    bool Run(Algorithm* algorithm);
    /// Asks a running algorithm to stop; it then ends through its cancellation
    /// signal and leaves no output. False when it is not running.
    bool Cancel(Algorithm* algorithm);

    /// Asks every run under way to stop (a host's one Cancel button: the
    /// host does not know which algorithms its plug-ins started). Returns
    /// how many were asked. Call it on the thread that started them.
    int CancelAll();

    /// The folders searched for libraries, in order: those of the
    /// environment variable KIV_ALGORITHM_PATH (separated by ":") when it is
    /// set, else the program's library folder and the folder of this library.
    QStringList LibraryFolders() const;

private:
    AlgoFactory() = default;
};

} // namespace KivAlgo
