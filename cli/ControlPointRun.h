#pragma once

#include "models/ControlPointCalculation.h"
#include "models/ControlPointFile.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

class QCommandLineParser;
class QTextStream;

/// What calc4 and calc7 add on request (see ControlPointRun).
struct ControlPointQualityOptions
{
    QString report;  ///< PDF to write, or empty
    QString residuals;  ///< GeoPackage of the residual vectors to write, or empty
    bool json = false;
    bool robust = false;
    QString source, target;  ///< system names for the report
};

/// What calc4 and calc7 do once their arguments are taken: read the
/// control-point file, fit the model to every point in it and print the result
/// block as the dialog shows it, then one tab-separated line per point (its
/// number, its coordinates, its residuals). On request it adds the quality
/// of the fit: a PDF report, JSON on standard output, the robust fit.
class ControlPointRun
{
public:
    using QualityOptions = ControlPointQualityOptions;
    /// --report FILE, --json, --robust, and their lines for the help text.
    static void AddQualityOptions(QCommandLineParser& parser);
    static QualityOptions ReadQualityOptions(const QCommandLineParser& parser);
    static const char* QualityHelp();

    using Calculate = std::function<ControlPointCalculation::Status(ControlPointCalculation&,
                                                                    const QList<QStringList>& points)>;

    /// `command` names the command in messages ("calc4").
    ControlPointRun(const QString& command, ControlPointFile::Kind kind);

    /// Returns a `CliStatus`: usage error for a file that cannot be read or
    /// holds no points and for two systems on one geographic system; data
    /// errors for too few points and for points no model fits ("Calculate
    /// Error!" on `out`).
    /// With `quality.json` standard output holds only the JSON document.
    int Run(const QString& path, const Calculate& calculate, QTextStream& out, QTextStream& err,
            const QualityOptions& quality = QualityOptions()) const;

    /// What to do with a result once it is printed (--save); its status is
    /// the run's.
    void OnResult(const std::function<int(const double* result)>& then) { m_then = then; }

private:
    std::function<int(const double* result)> m_then;
    QString m_command;
    ControlPointFile::Kind m_kind;
};
