#include "Calc4Command.h"

#include "CliRegistry.h"
#include "CliSupport.h"
#include "ControlPointRun.h"
#include "ModelStoreEdit.h"

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
        "Usage: coordstransform calc4 [--report FILE] [--json] [--robust] [--residuals FILE]\n"
        "           [--save NAME --from NAME --to NAME [--replace]] FILE\n"
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
        "  --save NAME  keep the model in the model store under NAME, as the Save\n"
        "               dialog does, with --from and --to as its source and target\n"
        "               names (free text, as the dialog takes them)\n"
        "  --replace    replace a stored model of that name (else it is refused)\n"
        "\n"
        "Exit status: 0 done; 1 a report that cannot be written, fewer than\n"
        " 2 points, or no model fits them\n"
        "(\"Calculate Error!\", e.g. identical points); 2 bad arguments or a file\n"
        "that cannot be read or holds no points.\n");
}

int Calc4Command::run(const QStringList& args, QTextStream& out, QTextStream& err)
{
    QCommandLineParser parser;
    const QCommandLineOption save(QStringLiteral("save"), QString(), QStringLiteral("NAME"));
    const QCommandLineOption from(QStringLiteral("from"), QString(), QStringLiteral("NAME"));
    const QCommandLineOption to(QStringLiteral("to"), QString(), QStringLiteral("NAME"));
    const QCommandLineOption replace(QStringLiteral("replace"));
    parser.addOptions({save, from, to, replace});
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
    ControlPointRun run(QStringLiteral("calc4"), ControlPointFile::FourParameters);
    if (parser.isSet(save)) {
        run.OnResult([&](const double* result) {
            const TransformModel model{parser.value(save), parser.value(from), parser.value(to),
                                       QList<double>(result, result + 4)};
            return ModelStoreEdit(name(), out, err).SaveComputed(ModelStore::Params4, model, parser.isSet(replace));
        });
    }
    const ControlPointRun::QualityOptions quality = ControlPointRun::ReadQualityOptions(parser);
    return run.Run(parser.positionalArguments().first(), calculate, out, err, quality);
}
