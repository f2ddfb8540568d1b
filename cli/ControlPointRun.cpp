#include "ControlPointRun.h"

#include "CliCommand.h"

#include "io/OutputFile.h"
#include "models/ControlPointReport.h"
#include "models/ResidualLayer.h"

#include <QCommandLineParser>
#include <QJsonDocument>
#include <QTextStream>

void ControlPointRun::AddQualityOptions(QCommandLineParser& parser)
{
    parser.addOption(QCommandLineOption(QStringLiteral("report"), QString(), QStringLiteral("FILE")));
    parser.addOption(QCommandLineOption(QStringLiteral("json")));
    parser.addOption(QCommandLineOption(QStringLiteral("robust")));
    parser.addOption(QCommandLineOption(QStringLiteral("residuals"), QString(), QStringLiteral("FILE")));
}

ControlPointRun::QualityOptions ControlPointRun::ReadQualityOptions(const QCommandLineParser& parser)
{
    QualityOptions options;
    options.report = parser.value(QStringLiteral("report"));
    options.json = parser.isSet(QStringLiteral("json"));
    options.robust = parser.isSet(QStringLiteral("robust"));
    options.residuals = parser.value(QStringLiteral("residuals"));
    return options;
}

const char* ControlPointRun::QualityHelp()
{
    return "Quality (docs/control-point-report.md):\n"
           "  --report FILE  write the quality report as PDF: parameters with their\n"
           "                 standard deviations, sigma0, per point the residuals,\n"
           "                 check residuals, w-test and robust weight, a plot of the\n"
           "                 residual vectors, a verdict per point named as a gross\n"
           "                 error\n"
           "  --json         print the result, parameters and quality as JSON instead\n"
           "                 of the text output\n"
           "  --robust       after the text output, print the robust (IGG III)\n"
           "                 result block, every point's weight and the verdicts\n"
           "  --residuals FILE\n"
           "                 write the points and their residual vectors (drawn\n"
           "                 longer by the factor the vector layer's description\n"
           "                 states) as a GeoPackage for a GIS\n";
}

ControlPointRun::ControlPointRun(const QString& command, ControlPointFile::Kind kind)
    : m_command(command), m_kind(kind)
{
}

int ControlPointRun::Run(const QString& path, const Calculate& calculate, QTextStream& out, QTextStream& err,
                         const QualityOptions& quality) const
{
    const QString prefix = QStringLiteral("coordstransform ") + m_command + QStringLiteral(": ");
    for (const QString& output : {quality.report, quality.residuals}) {
        if (!output.isEmpty() && OutputFile::SameFile(path, output)) {
            err << prefix << "the " << (output == quality.report ? "report" : "residual layer") << " \"" << output
                << "\" would replace the control-point file\n";
            return CliUsageError;
        }
    }
    ControlPointFile file(m_kind);
    if (!file.Read(path)) {
        err << prefix << "cannot read \"" << path << "\"\n";
        return CliUsageError;
    }
    if (file.Points().isEmpty()) {
        err << prefix << '"' << path << "\" holds no control points\n";
        return CliUsageError;
    }

    QList<QStringList> points;
    for (const ControlPointFile::Point& point : file.Points())
        points << point.cells.mid(0, file.CoordinateCount());
    ControlPointCalculation calculation;
    switch (calculate(calculation, points)) {
    case ControlPointCalculation::Succeeded:
        break;
    case ControlPointCalculation::TooFewPoints:
        err << prefix
            << (m_kind == ControlPointFile::FourParameters ? "Need 2 GCPs at least!\n" : "Need 3 GCPs at least!\n");
        return CliDataErrors;
    case ControlPointCalculation::SameGeographicSystem:
        err << prefix << "The Source Spheroid must be different with target Spheroid!\n";
        return CliUsageError;
    default:
        if (!quality.json)
            out << "Calculate Error!\n";
        err << prefix << "no model fits the points of \"" << path << "\"\n";
        return CliDataErrors;
    }

    QStringList ids;
    for (const ControlPointFile::Point& point : file.Points())
        ids << point.number;
    const bool wantsQuality = quality.json || quality.robust || !quality.report.isEmpty() || !quality.residuals.isEmpty();
    const ControlPointQuality analysis = wantsQuality ? calculation.Quality(ids) : ControlPointQuality();
    const ControlPointReport report(analysis, quality.source, quality.target);
    if (!quality.report.isEmpty()) {
        QString error;
        if (!report.WritePdf(quality.report, &error)) {
            err << prefix << error << '\n';
            return CliDataErrors;
        }
    }
    if (!quality.residuals.isEmpty()) {
        QString error;
        if (!ResidualLayer::WriteFile(analysis, ResidualLayer::Exaggeration(analysis), quality.residuals, &error)) {
            err << prefix << error << '\n';
            return CliDataErrors;
        }
    }
    if (quality.json) {
        out << QJsonDocument(report.Json(calculation.ResultText())).toJson(QJsonDocument::Indented);
        return m_then ? m_then(calculation.Result()) : CliOk;
    }

    out << calculation.ResultText();
    for (int i = 0; i < points.size(); ++i) {
        out << file.Points().at(i).number << '\t' << points.at(i).join(QLatin1Char('\t')) << '\t'
            << ControlPointCalculation::FormatResidual(calculation.PlaneResiduals().at(i));
        if (m_kind == ControlPointFile::SevenParameters)
            out << '\t' << ControlPointCalculation::FormatResidual(calculation.HeightResiduals().at(i));
        out << '\n';
    }
    if (quality.robust) {
        if (analysis.HasRobust()) {
            const double* r = analysis.RobustParameters().constData();
            out << "\nIGG III\n"
                << (m_kind == ControlPointFile::FourParameters ? ControlPointCalculation::FormatResult4(r)
                                                               : ControlPointCalculation::FormatResult7(r));
            for (const ControlPointQuality::Point& point : analysis.Points())
                out << point.id << '\t' << QString::number(point.robustWeight, 'f', 2) << '\n';
        }
        for (const QString& line : report.Verdicts() + analysis.Notes())
            out << line << '\n';
    }
    return m_then ? m_then(calculation.Result()) : CliOk;
}
