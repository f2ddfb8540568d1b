#include "KivAlgo/Algorithm.h"

#include <QCoreApplication>
#include <QObject>
#include <QPointer>
#include <QThread>

#include <atomic>
#include <mutex>
#include <set>
#include <thread>

namespace KivAlgo {

namespace {

/// The runs under way, so that a host's single Cancel button can stop them.
std::mutex runningMutex;
std::set<Algorithm*> runningAlgorithms;

void setRunning(Algorithm* algorithm, bool running)
{
    std::lock_guard<std::mutex> lock(runningMutex);
    if (running)
        runningAlgorithms.insert(algorithm);
    else
        runningAlgorithms.erase(algorithm);
}

} // namespace

class AlgorithmPrivate
{
public:
    QString displayName;
    boost::any parameters;

    mutable std::mutex errorMutex;
    int errorCode = 0;
    QString errorMessage;

    std::atomic<bool> running{false};
    std::atomic<bool> cancelRequested{false};
    std::atomic<bool> stoppedByHandler{false};

    std::mutex progressMutex;
    bool progressPending = false;
    double progressPercent = 0.0;
    QString progressText;

    std::thread worker;
    /// Lives on the starting thread; signals are delivered through its queue.
    /// Deleting it drops whatever is still queued for a deleted algorithm.
    std::unique_ptr<QObject> relay;

    static void deliverProgress(Algorithm* algorithm);
    static void finish(Algorithm* algorithm, bool succeeded);
};

Algorithm::Algorithm() : d(new AlgorithmPrivate) {}

Algorithm::~Algorithm()
{
    setRunning(this, false);
    StopAndWait();
}

int Algorithm::CancelEveryRun()
{
    std::lock_guard<std::mutex> lock(runningMutex);
    for (Algorithm* algorithm : runningAlgorithms)
        algorithm->RequestCancel();
    return int(runningAlgorithms.size());
}

void Algorithm::StopAndWait()
{
    if (!d->worker.joinable())
        return;
    d->cancelRequested = true;
    d->worker.join();
}

void Algorithm::SetDisplayName(const QString& name) { d->displayName = name; }
QString Algorithm::GetDisplayName() const { return d->displayName; }
void Algorithm::SetParameters(const boost::any& parameters) { d->parameters = parameters; }
boost::any Algorithm::GetParameters() const { return d->parameters; }
boost::any& Algorithm::Parameters() { return d->parameters; }

void Algorithm::GetError(int& code, QString& message) const
{
    std::lock_guard<std::mutex> lock(d->errorMutex);
    code = d->errorCode;
    message = d->errorMessage;
}

void Algorithm::SetError(int code, const QString& message)
{
    std::lock_guard<std::mutex> lock(d->errorMutex);
    d->errorCode = code;
    d->errorMessage = message;
}

bool Algorithm::IsRunning() const { return d->running; }

bool Algorithm::IsStopRequested() const { return d->cancelRequested || d->stoppedByHandler; }

bool Algorithm::ReportProgress(double percent, const QString& text)
{
    if (IsStopRequested())
        return false;
    bool post = false;
    {
        std::lock_guard<std::mutex> lock(d->progressMutex);
        d->progressPercent = percent;
        d->progressText = text;
        post = !d->progressPending;
        d->progressPending = true;
    }
    // One queued report at a time: a slow handler sees the latest value, not
    // a backlog.
    if (post && d->relay)
        QMetaObject::invokeMethod(d->relay.get(), [this] { AlgorithmPrivate::deliverProgress(this); },
                                  Qt::QueuedConnection);
    return !IsStopRequested();
}

void AlgorithmPrivate::deliverProgress(Algorithm* algorithm)
{
    AlgorithmPrivate* d = algorithm->d.get();
    double percent;
    QString text;
    {
        std::lock_guard<std::mutex> lock(d->progressMutex);
        d->progressPending = false;
        percent = d->progressPercent;
        text = d->progressText;
    }
    if (d->cancelRequested || d->stoppedByHandler || !d->running)
        return;
    try {
        const boost::optional<int> answer = algorithm->m_progress(percent, text, algorithm);
        if (answer && *answer == 0)
            d->stoppedByHandler = true;
    } catch (...) {
        // A throwing handler must not take the event loop down with it.
    }
}

void AlgorithmPrivate::finish(Algorithm* algorithm, bool succeeded)
{
    AlgorithmPrivate* d = algorithm->d.get();
    if (d->worker.joinable())
        d->worker.join();
    d->running = false;
    setRunning(algorithm, false);
    try {
        // A stop that came after the work was done changes nothing: the
        // results exist and are reported.
        if (succeeded) {
            int code;
            QString notes;  // a successful run may leave warnings with code 0
            algorithm->GetError(code, notes);
            algorithm->SetError(0, notes);
            Algorithm::SigAnyRunEnded()(d->displayName, 0, notes);
            algorithm->m_completed(algorithm);  // may delete the algorithm
            return;
        }
        if (d->cancelRequested) {
            algorithm->SetError(0, QString());
            algorithm->m_canceled(algorithm);  // may delete the algorithm
            return;
        }
        if (d->stoppedByHandler) {
            algorithm->SetError(kStoppedByHandler, QStringLiteral("Stopped by the user."));
        } else {
            int code;
            QString message;
            algorithm->GetError(code, message);
            if (code == 0)
                algorithm->SetError(-1, message.isEmpty() ? QStringLiteral("The algorithm failed.") : message);
        }
        int code;
        QString message;
        algorithm->GetError(code, message);
        Algorithm::SigAnyRunEnded()(d->displayName, code, message);
        algorithm->m_completed(algorithm);  // may delete the algorithm
    } catch (...) {
    }
}

Algorithm::RunEndedSignal& Algorithm::SigAnyRunEnded()
{
    static RunEndedSignal* signal = new RunEndedSignal;
    return *signal;
}

bool Algorithm::Start()
{
    if (d->running || !QCoreApplication::instance())
        return false;
    if (d->worker.joinable())
        d->worker.join();
    d->cancelRequested = false;
    d->stoppedByHandler = false;
    d->progressPending = false;
    SetError(0, QString());
    d->relay.reset(new QObject);  // belongs to the calling thread
    d->running = true;
    setRunning(this, true);
    QObject* relay = d->relay.get();
    d->worker = std::thread([this, relay] {
        bool ok = false;
        try {
            ok = Execute();
        } catch (const std::exception& e) {
            SetError(-1, QString::fromLocal8Bit(e.what()));
        } catch (...) {
            SetError(-1, QStringLiteral("The algorithm failed."));
        }
        QMetaObject::invokeMethod(relay, [this, ok] { AlgorithmPrivate::finish(this, ok); },
                                  Qt::QueuedConnection);
    });
    return true;
}

void Algorithm::RequestCancel()
{
    d->cancelRequested = true;
}

} // namespace KivAlgo
