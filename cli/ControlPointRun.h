#pragma once

#include "models/ControlPointCalculation.h"
#include "models/ControlPointFile.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

class QTextStream;

/// What calc4 and calc7 do once their arguments are taken: read the
/// control-point file, fit the model to every point in it and print the result
/// block as the dialog shows it, then one tab-separated line per point (its
/// number, its coordinates, its residuals).
class ControlPointRun
{
public:
    using Calculate = std::function<ControlPointCalculation::Status(ControlPointCalculation&,
                                                                    const QList<QStringList>& points)>;

    /// `command` names the command in messages ("calc4").
    ControlPointRun(const QString& command, ControlPointFile::Kind kind);

    /// Returns a `CliStatus`: usage error for a file that cannot be read or
    /// holds no points and for two systems on one geographic system; data
    /// errors for too few points and for points no model fits ("Calculate
    /// Error!" on `out`).
    int Run(const QString& path, const Calculate& calculate, QTextStream& out, QTextStream& err) const;

    /// What to do with a result once it is printed (--save); its status is
    /// the run's.
    void OnResult(const std::function<int(const double* result)>& then) { m_then = then; }

private:
    std::function<int(const double* result)> m_then;
    QString m_command;
    ControlPointFile::Kind m_kind;
};
