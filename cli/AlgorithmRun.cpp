#include "AlgorithmRun.h"

#include "reprojection/ReprojectionAlgorithmChoice.h"

#include "KivAlgo/AlgoFactory.h"

#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <memory>
#include <unistd.h>

namespace {

std::atomic<bool> stopRequested{false};

extern "C" void onInterrupt(int)
{
    stopRequested = true;
}

/// Ctrl-C, and the TERM a scheduler sends before it kills a worker, stop
/// the run (and remove what it was writing) instead of killing the process
/// half-way through a file; the old handlers come back after.
class InterruptGuard
{
public:
    InterruptGuard()
    {
        struct sigaction action = {};
        action.sa_handler = onInterrupt;
        sigemptyset(&action.sa_mask);
        sigaction(SIGINT, &action, &m_oldInt);
        sigaction(SIGTERM, &action, &m_oldTerm);
    }
    ~InterruptGuard()
    {
        sigaction(SIGINT, &m_oldInt, nullptr);
        sigaction(SIGTERM, &m_oldTerm, nullptr);
    }

private:
    struct sigaction m_oldInt;
    struct sigaction m_oldTerm;
};

} // namespace

void AlgorithmRun::RequestStop()
{
    stopRequested = true;
}

bool AlgorithmRun::StopRequested()
{
    return stopRequested;
}

void AlgorithmRun::ResetStop()
{
    stopRequested = false;
}

QString AlgorithmRun::LibraryFolders()
{
    return KivAlgo::AlgoFactory::Instance()->LibraryFolders().join(QStringLiteral(", "));
}

AlgorithmRun::Outcome AlgorithmRun::Run(const QString& algorithmName, const QString& displayName,
                                        const stCoordsTransformInfo& info, stCoordsTransformInfo* result, int* code,
                                        QString* message)
{
    KivAlgo::AlgoFactory* factory = KivAlgo::AlgoFactory::Instance();
    std::unique_ptr<KivAlgo::Algorithm> algorithm(
        factory->CreateAlgorithm(ReprojectionAlgorithmChoice::Library(), algorithmName));
    if (!algorithm)
        return NotLoaded;
    algorithm->SetParameters(boost::any(info));
    algorithm->SetDisplayName(displayName);

    const bool terminal = isatty(fileno(stderr));
    QEventLoop loop;
    bool canceled = false;
    int lastShown = -1;
    algorithm->SigProgressUpdated().connect([&](double percent, const QString&, void*) {
        const int shown = int(percent);
        if (terminal && shown != lastShown) {
            lastShown = shown;
            const int filled = std::max(0, std::min(40, shown * 40 / 100));
            std::fprintf(stderr, "\r[%s%s] %3d%%", QByteArray(filled, '#').constData(),
                         QByteArray(40 - filled, ' ').constData(), shown);
            std::fflush(stderr);
        }
        return 1;
    });
    algorithm->SigExecuteCompleted().connect([&](void*) { loop.quit(); });
    algorithm->SigExecuteCanceled().connect([&](void*) {
        canceled = true;
        loop.quit();
    });

    InterruptGuard interrupt;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [&] {
        if (stopRequested)
            factory->Cancel(algorithm.get());
    });
    watch.start(50);
    if (!factory->Run(algorithm.get()))
        return NotStarted;
    loop.exec();
    watch.stop();
    if (terminal && lastShown >= 0)
        std::fprintf(stderr, "\n");
    if (canceled)
        return Stopped;
    *code = 0;
    message->clear();
    algorithm->GetError(*code, *message);
    try {
        *result = boost::any_cast<stCoordsTransformInfo>(algorithm->GetParameters());
    } catch (const boost::bad_any_cast&) {
    }
    return Finished;
}
