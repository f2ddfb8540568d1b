#include "Calc7Command.h"

#include "CliRegistry.h"
#include "CliSupport.h"
#include "ControlPointRun.h"
#include "ModelStoreEdit.h"

#include "models/ModelEntry.h"

#include <QCommandLineParser>
#include <QTextStream>

static CliRegistrar<Calc7Command> registrar;

QString Calc7Command::name() const
{
    return QStringLiteral("calc7");
}

QString Calc7Command::summary() const
{
    return QStringLiteral("compute a seven-parameter model from a control-point file");
}

QString Calc7Command::help() const
{
    return QStringLiteral(
        "Usage: coordstransform calc7 [--report FILE] [--json] [--robust] [--residuals FILE]\n"
        "           --from CRS --to CRS [--save NAME [--replace]] FILE\n"
        "\n"
        "Computes the seven-parameter model (DX, DY, DZ in metres, rotations ω, κ,\n"
        "γ about X, Y, Z in arc-seconds, coordinate-frame convention, scale 1 + m)\n"
        "from the source to the target ellipsoid, from the control points of FILE,\n"
        "a file written by the Export button of the seven-parameter calculation:\n"
        "GB18030 text, tab separated, or comma separated when the name ends in\n"
        ".csv; point lines \"N X|B Y|L H X|B Y|L H [PRMS HRMS]\". Every point of\n"
        "the file is used.\n"
        "\n"
        "A geographic side gives latitude and longitude as angle texts or decimal\n"
        "degrees; a projected side gives Gauss-Krüger X (north) and Y (east) on its\n"
        "central meridian, Y possibly with its zone number in front. Both sides go\n"
        "to geocentric coordinates on their own ellipsoids before the fit.\n"
        "\n"
        "Options:\n"
        "  --from CRS   source coordinate system\n"
        "  --to CRS     target coordinate system\n"
        "               CRS: an authority code (EPSG:2435), WKT, a PROJ string,\n"
        "               or the path of a .prj or .wkt file\n"
        "  --save NAME  keep the model in the model store under NAME, between the\n"
        "               geographic systems of the two sides, as the Save dialog does\n"
        "  --replace    replace a stored model of that name (else it is refused)\n"
        "\n"
        "Prints the result block exactly as the dialog shows it (\"DX(m)=\" ...\n"
        "\"m=\", lines ended by CR LF), then one line per point: its number, its six\n"
        "coordinates, its plane and its height residual in metres, tab separated.\n"
        "\n")
        + QString::fromUtf8(ControlPointRun::QualityHelp())
        + QStringLiteral(
        "\n"
        "Exit status: 0 done; 1 a report that cannot be written, fewer than\n"
        " 3 points, or no model fits them\n"
        "(\"Calculate Error!\", e.g. identical or collinear points); 2 bad\n"
        "arguments, an unknown system, two systems on one geographic system, or a\n"
        "file that cannot be read or holds no points.\n");
}

int Calc7Command::run(const QStringList& args, QTextStream& out, QTextStream& err)
{
    QCommandLineParser parser;
    const QCommandLineOption from(QStringLiteral("from"), QString(), QStringLiteral("CRS"));
    const QCommandLineOption to(QStringLiteral("to"), QString(), QStringLiteral("CRS"));
    parser.addOption(from);
    parser.addOption(to);
    const QCommandLineOption save(QStringLiteral("save"), QString(), QStringLiteral("NAME"));
    const QCommandLineOption replace(QStringLiteral("replace"));
    parser.addOptions({save, replace});
    ControlPointRun::AddQualityOptions(parser);
    QString error;
    if (!CliSupport::parse(parser, args, &error)) {
        err << "coordstransform calc7: " << error << '\n';
        return CliUsageError;
    }
    if (!parser.isSet(from) || !parser.isSet(to) || parser.positionalArguments().size() != 1) {
        err << "coordstransform calc7: give --from CRS, --to CRS and one control-point file\n";
        return CliUsageError;
    }
    auto source = CliSupport::loadSpatialReference(parser.value(from), &error);
    if (!source) {
        err << "coordstransform calc7: " << error << '\n';
        return CliUsageError;
    }
    auto target = CliSupport::loadSpatialReference(parser.value(to), &error);
    if (!target) {
        err << "coordstransform calc7: " << error << '\n';
        return CliUsageError;
    }
    // Names as the dialog keeps them; the numbers do not depend on them.
    source->MorphToESRI();
    target->MorphToESRI();

    const auto calculate = [&](ControlPointCalculation& calculation, const QList<QStringList>& points) {
        return calculation.Calculate7(source, target, points);
    };
    ControlPointRun run(QStringLiteral("calc7"), ControlPointFile::SevenParameters);
    if (parser.isSet(save)) {
        run.OnResult([&](const double* result) {
            const TransformModel model{parser.value(save), ModelEntry::SevenParameterSideName(source.get()),
                                       ModelEntry::SevenParameterSideName(target.get()),
                                       QList<double>(result, result + 7)};
            return ModelStoreEdit(name(), out, err).SaveComputed(ModelStore::Params7, model, parser.isSet(replace));
        });
    }
    ControlPointRun::QualityOptions quality = ControlPointRun::ReadQualityOptions(parser);
    quality.source = source->GetName();
    quality.target = target->GetName();
    return run.Run(parser.positionalArguments().first(), calculate, out, err, quality);
}
