#include "Calc4Command.h"

#include "CliRegistry.h"
#include "CliSupport.h"
#include "ControlPointRun.h"

#include <QCommandLineParser>
#include <QTextStream>

static CliRegistrar<Calc4Command> registrar;

QString Calc4Command::name() const
{
    return QStringLiteral("calc4");
}

QString Calc4Command::summary() const
{
    return QStringLiteral("compute a four-parameter plane model from a control-point file");
}

QString Calc4Command::help() const
{
    return QStringLiteral(
        "Usage: coordstransform calc4 [--report FILE] [--json] [--robust] FILE\n"
        "\n"
        "Computes the four-parameter plane model (DX, DY in metres, T in degrees,\n"
        "K) from the control points of FILE, a file written by the Export button of\n"
        "the four-parameter calculation: GB18030 text, tab separated, or comma\n"
        "separated when the name ends in .csv; point lines \"N X0 Y0 X1 Y1 [RMS]\",\n"
        "X the north and Y the east coordinate. Every point of the file is used.\n"
        "\n"
        "Prints the result block exactly as the dialog shows it (\"DX(m)=\" ...\n"
        "\"K=\", lines ended by CR LF), then one line per point: its number, its\n"
        "four coordinates and its residual in metres, tab separated.\n"
        "\n")
        + QString::fromUtf8(ControlPointRun::QualityHelp())
        + QStringLiteral(
        "\n"
        "Exit status: 0 done; 1 a report that cannot be written, fewer than\n"
        " 2 points, or no model fits them\n"
        "(\"Calculate Error!\", e.g. identical points); 2 bad arguments or a file\n"
        "that cannot be read or holds no points.\n");
}

int Calc4Command::run(const QStringList& args, QTextStream& out, QTextStream& err)
{
    QCommandLineParser parser;
    ControlPointRun::AddQualityOptions(parser);
    QString error;
    if (!CliSupport::parse(parser, args, &error)) {
        err << "coordstransform calc4: " << error << '\n';
        return CliUsageError;
    }
    if (parser.positionalArguments().size() != 1) {
        err << "coordstransform calc4: give exactly one control-point file\n";
        return CliUsageError;
    }
    const auto calculate = [](ControlPointCalculation& calculation, const QList<QStringList>& points) {
        return calculation.Calculate4(points);
    };
    ControlPointRun::QualityOptions quality = ControlPointRun::ReadQualityOptions(parser);
    return ControlPointRun(QStringLiteral("calc4"), ControlPointFile::FourParameters)
        .Run(parser.positionalArguments().first(), calculate, out, err, quality);
}
