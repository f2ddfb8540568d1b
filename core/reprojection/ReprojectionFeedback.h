#pragma once

#include <QString>

/// What a surface hears from a reprojection while it runs and when it ends.
/// Every call comes on the thread that started the run.
class ReprojectionFeedback
{
public:
    virtual ~ReprojectionFeedback() = default;

    /// Percent done, and what is being done.
    virtual void Progress(double percent, const QString& text) { Q_UNUSED(percent) Q_UNUSED(text) }
    /// Asked several times a second: true stops the run, which then leaves
    /// nothing partial behind.
    virtual bool StopRequested() { return false; }
    /// One warning of a successful run (points without a datum shift,
    /// features left out).
    virtual void Warning(const QString& text) { Q_UNUSED(text) }
    /// One dataset the run wrote.
    virtual void Output(const QString& path) { Q_UNUSED(path) }
};
