#include "AlgorithmRun.h"

#include "reprojection/ReprojectionFeedback.h"

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdio>
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

class TerminalFeedback : public ReprojectionFeedback
{
public:
    TerminalFeedback(QStringList* outputs, QStringList* warnings)
        : m_outputs(outputs), m_warnings(warnings), m_terminal(isatty(fileno(stderr)))
    {
    }
    void Progress(double percent, const QString&) override
    {
        const int shown = int(percent);
        if (!m_terminal || shown == m_lastShown)
            return;
        m_lastShown = shown;
        const int filled = std::max(0, std::min(40, shown * 40 / 100));
        std::fprintf(stderr, "\r[%s%s] %3d%%", QByteArray(filled, '#').constData(),
                     QByteArray(40 - filled, ' ').constData(), shown);
        std::fflush(stderr);
    }
    bool StopRequested() override { return stopRequested; }
    void Warning(const QString& text) override { *m_warnings << text; }
    void Output(const QString& path) override { *m_outputs << path; }
    /// Ends the bar's line.
    void Finish()
    {
        if (m_terminal && m_lastShown >= 0)
            std::fprintf(stderr, "\n");
    }

private:
    QStringList* m_outputs;
    QStringList* m_warnings;
    const bool m_terminal;
    int m_lastShown = -1;
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

ReprojectionRunner::Outcome AlgorithmRun::Run(const ReprojectionRequest& request, QStringList* outputs,
                                              QStringList* warnings, QStringList* errors)
{
    const InterruptGuard interrupt;
    TerminalFeedback feedback(outputs, warnings);
    const ReprojectionRunner::Outcome outcome = ReprojectionRunner::Run(request, feedback, errors);
    feedback.Finish();
    return outcome;
}
