#pragma once

#include <QString>

#include <boost/any.hpp>
#include <boost/signals2.hpp>

#include <memory>

namespace KivAlgo {

class AlgorithmPrivate;

/// Error code of a run that a progress handler stopped by returning 0.
constexpr int kStoppedByHandler = -1010;

/// A long-running job made by `AlgoFactory` and run by it on a worker thread.
///
/// The three signals reach their handlers on the thread that called
/// `AlgoFactory::Run`, which needs a running Qt event loop. The `void*`
/// argument is the algorithm itself. Exactly one of `ExecuteCompleted` (also
/// after an error: see `GetError`) and `ExecuteCanceled` ends every run; a
/// handler of either may delete the algorithm.
///
/// Implementations override `Execute`, which runs on the worker thread, and
/// call `ReportProgress` often: it returns false as soon as the run must stop
/// (a cancel request, or a progress handler that returned 0), and then
/// `Execute` should return promptly, leaving nothing half-written.
class Algorithm
{
public:
    using ProgressSignal = boost::signals2::signal<int(double, const QString&, void*),
                                                   boost::signals2::optional_last_value<int>>;
    using CompletedSignal = boost::signals2::signal<void(void*)>;
    using CanceledSignal = boost::signals2::signal<void(void*)>;
    /// Display name, error code (0: success) and message of a run that ended.
    using RunEndedSignal = boost::signals2::signal<void(const QString&, int, const QString&)>;

    Algorithm();
    Algorithm(const Algorithm&) = delete;
    Algorithm& operator=(const Algorithm&) = delete;
    /// Deleting a running algorithm stops the run first; derived classes call
    /// `StopAndWait` in their own destructors so that the worker is gone
    /// before their members are.
    virtual ~Algorithm();

    void SetDisplayName(const QString& name);
    QString GetDisplayName() const;

    /// The parameters, a copy held by the algorithm. Not to be changed while
    /// running.
    virtual void SetParameters(const boost::any& parameters);
    /// The parameters as the algorithm holds them; after a run, with its
    /// results filled in.
    virtual boost::any GetParameters() const;

    /// Code 0 and an empty message unless the last run failed; after a
    /// successful run the message may hold warnings.
    void GetError(int& code, QString& message) const;

    /// Progress in percent and a text; handlers return 0 to stop the run.
    ProgressSignal& SigProgressUpdated() { return m_progress; }
    CompletedSignal& SigExecuteCompleted() { return m_completed; }
    CanceledSignal& SigExecuteCanceled() { return m_canceled; }

    /// True while a run is under way (from `AlgoFactory::Run` until the
    /// ending signal has been delivered).
    bool IsRunning() const;

    /// Every run that completes, successfully or not, in this process, just
    /// before its own completion signal (whose handler may delete it), on the
    /// thread that started it: a host reports there what the runs its
    /// plug-ins started have to say (the warnings of a successful run).
    static RunEndedSignal& SigAnyRunEnded();

protected:
    /// The work, on the worker thread. Returns false on failure after calling
    /// `SetError`. Must not throw (an exception becomes an error).
    virtual bool Execute() = 0;

    /// Posts progress to the handlers (at most one report waits at a time;
    /// later ones replace it). Returns false when the run must stop.
    bool ReportProgress(double percent, const QString& text);
    /// True once the run must stop.
    bool IsStopRequested() const;
    void SetError(int code, const QString& message);
    /// For `Execute`: the parameters may be rewritten with the results.
    boost::any& Parameters();
    /// Asks a run still going to stop and waits for its worker thread.
    void StopAndWait();

private:
    friend class AlgoFactory;
    friend class AlgorithmPrivate;
    bool Start();
    void RequestCancel();
    /// Asks every run under way to stop; the number of runs asked.
    static int CancelEveryRun();

    ProgressSignal m_progress;
    CompletedSignal m_completed;
    CanceledSignal m_canceled;
    std::unique_ptr<AlgorithmPrivate> d;
};

} // namespace KivAlgo

/// The entry point every algorithm library exports: a new algorithm called
/// `name` (UTF-8), or null for a name the library does not know. Must not
/// throw.
extern "C" {
typedef KivAlgo::Algorithm* (*KivCreateAlgorithmFunc)(const char* name);
}
#define KIV_ALGO_ENTRY_POINT "KivCreateAlgorithm"
