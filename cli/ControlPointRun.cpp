#include "ControlPointRun.h"

#include "CliCommand.h"

#include <QTextStream>

ControlPointRun::ControlPointRun(const QString& command, ControlPointFile::Kind kind)
    : m_command(command), m_kind(kind)
{
}

int ControlPointRun::Run(const QString& path, const Calculate& calculate, QTextStream& out, QTextStream& err) const
{
    const QString prefix = QStringLiteral("coordstransform ") + m_command + QStringLiteral(": ");
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
        out << "Calculate Error!\n";
        err << prefix << "no model fits the points of \"" << path << "\"\n";
        return CliDataErrors;
    }

    out << calculation.ResultText();
    for (int i = 0; i < points.size(); ++i) {
        out << file.Points().at(i).number << '\t' << points.at(i).join(QLatin1Char('\t')) << '\t'
            << ControlPointCalculation::FormatResidual(calculation.PlaneResiduals().at(i));
        if (m_kind == ControlPointFile::SevenParameters)
            out << '\t' << ControlPointCalculation::FormatResidual(calculation.HeightResiduals().at(i));
        out << '\n';
    }
    return m_then ? m_then(calculation.Result()) : CliOk;
}
