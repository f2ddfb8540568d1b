#include "TransformCommand.h"

#include "CliRegistry.h"
#include "CliSupport.h"
#include "PointLineConverter.h"

#include "io/OutputFile.h"
#include "models/ModelStore.h"
#include "spatialref/CoordinateConversion.h"

#include "KivGeometry/SpatialReference.h"

#include <QCommandLineParser>
#include <QFile>
#include <QTextStream>

#include <memory>
#include <vector>

static CliRegistrar<TransformCommand> registrar;

QString TransformCommand::name() const
{
    return QStringLiteral("transform");
}

QString TransformCommand::summary() const
{
    return QStringLiteral("convert points \"X Y [H]\" from one coordinate system to another");
}

QString TransformCommand::help() const
{
    return QStringLiteral(
        "Usage: coordstransform transform --from CRS --to CRS\n"
        "           [--params7 DX,DY,DZ,W,K,R,M | --params4 DX,DY,T,K | --model NAME]\n"
        "           [--code] [--precision N] [--threads N] [INPUT [OUTPUT]]\n"
        "\n"
        "Reads one point per line, \"X Y\" or \"X Y H\", separated by blanks, tabs or\n"
        "commas, from INPUT (default: standard input) and writes the converted points\n"
        "in the same order and with the same number of values to OUTPUT (default:\n"
        "standard output; \"-\" names standard input or output). A regular OUTPUT\n"
        "file is replaced only when the run gets to its end; a named pipe or a device\n"
        "is written directly; OUTPUT may not be INPUT. Each output line uses the separator of\n"
        "its input line. X is the latitude or northing, Y the longitude or easting,\n"
        "H the height in metres. Angles may be decimal degrees or degree-minute-second\n"
        "texts such as 39°54′26.5″, 39:54:26.5 or 39:54.44.\n"
        "\n"
        "Options:\n"
        "  --from CRS        source coordinate system\n"
        "  --to CRS          target coordinate system\n"
        "                    CRS: an authority code (EPSG:2436), WKT, a PROJ string,\n"
        "                    or the path of a .prj or .wkt file\n"
        "  --params7 VALUES  seven-parameter model: DX,DY,DZ (metres), W,K,R (arc-\n"
        "                    seconds, coordinate-frame rotations about X, Y, Z), M\n"
        "                    (scale 1 + M); projected ends are unprojected and\n"
        "                    reprojected around it\n"
        "  --params4 VALUES  four-parameter plane model: DX,DY (metres), T (degrees),\n"
        "                    K (scale); points are first taken into the target zone\n"
        "                    when the central meridians differ\n"
        "  --model NAME      a stored model, by exact name; its kind decides whether\n"
        "                    it acts as --params7 or --params4\n"
        "                    Without a model, PROJ's own operation between the two\n"
        "                    systems is used. Heights change with a seven-parameter\n"
        "                    model and PROJ's operation, not with a four-parameter one.\n"
        "  --code            projected source Y values carry their zone number in\n"
        "                    front (e.g. 39500000.0); it is removed first. A Y from\n"
        "                    another zone than the system's is refused; a system whose\n"
        "                    false easting holds the zone takes Y as it is, without --code\n"
        "  --precision N     decimals written (default: 6 for metres, 9 for degrees)\n"
        "  --threads N       worker threads (default: one per core; 1 converts on the\n"
        "                    calling thread only); the output order is the input's\n"
        "\n"
        "A line that cannot be read or converted is reported on standard error with\n"
        "its line number and skipped; the exit status is then 1. Empty lines are\n"
        "skipped silently. Without a model between two datums for which PROJ has no\n"
        "datum transformation, a warning says that no datum shift is applied.\n"
        "When OUTPUT cannot be written completely the exit status is 2, and a\n"
        "regular file keeps its old content.\n");
}

namespace {

const QString kPrefix = QStringLiteral("coordstransform transform: ");

QString modelNames(ModelStore::Kind kind)
{
    QStringList names;
    for (const TransformModel& model : ModelStore::List(kind))
        names << QLatin1Char('"') + model.TransName + QLatin1Char('"');
    return names.isEmpty() ? QStringLiteral("(none)") : names.join(QStringLiteral(", "));
}

/// Why a conversion that is not ready cannot run, for the error message.
QString notReadyReason(CoordinateConversion::Mode mode, const KivGeometry::SpatialReference& from,
                       const KivGeometry::SpatialReference& to)
{
    const auto planeOrGeographic = [](int type) {
        return type == KivGeometry::SRT_Geographic || type == KivGeometry::SRT_Projected;
    };
    const QString pair = QStringLiteral("\"%1\" to \"%2\"").arg(from.GetName(), to.GetName());
    if (mode == CoordinateConversion::Direct)
        return QStringLiteral("PROJ knows no operation from %1").arg(pair);
    if (!planeOrGeographic(from.GetType()) || !planeOrGeographic(to.GetType()))
        return QStringLiteral("a model converts only between geographic and projected systems, not from %1")
            .arg(pair);
    return QStringLiteral("cannot convert from %1 with this model").arg(pair);
}

} // namespace

int TransformCommand::run(const QStringList& args, QTextStream& out, QTextStream& err)
{
    QCommandLineParser parser;
    const QCommandLineOption fromOption(QStringLiteral("from"), QString(), QStringLiteral("CRS"));
    const QCommandLineOption toOption(QStringLiteral("to"), QString(), QStringLiteral("CRS"));
    const QCommandLineOption params7Option(QStringLiteral("params7"), QString(), QStringLiteral("values"));
    const QCommandLineOption params4Option(QStringLiteral("params4"), QString(), QStringLiteral("values"));
    const QCommandLineOption modelOption(QStringLiteral("model"), QString(), QStringLiteral("name"));
    const QCommandLineOption codeOption(QStringLiteral("code"));
    const QCommandLineOption precisionOption(QStringLiteral("precision"), QString(), QStringLiteral("N"));
    const QCommandLineOption threadsOption(QStringLiteral("threads"), QString(), QStringLiteral("N"));
    parser.addOptions({fromOption, toOption, params7Option, params4Option, modelOption, codeOption,
                       precisionOption, threadsOption});
    QString error;
    if (!CliSupport::parse(parser, args, &error)) {
        err << kPrefix << error << '\n';
        return CliUsageError;
    }
    const auto usageError = [&err](const QString& message) {
        err << kPrefix << message << "\nRun \"coordstransform transform --help\" for the usage.\n";
        return int(CliUsageError);
    };

    if (!parser.isSet(fromOption) || !parser.isSet(toOption))
        return usageError(QStringLiteral("both --from and --to are needed"));
    const int modelOptions = int(parser.isSet(params7Option)) + int(parser.isSet(params4Option))
                             + int(parser.isSet(modelOption));
    if (modelOptions > 1)
        return usageError(QStringLiteral("give only one of --params7, --params4 and --model"));
    const QStringList files = parser.positionalArguments();
    if (files.size() > 2)
        return usageError(QStringLiteral("too many arguments: \"%1\"").arg(files.mid(2).join(QLatin1Char(' '))));
    int precision = -1;
    if (parser.isSet(precisionOption)) {
        bool ok = false;
        precision = parser.value(precisionOption).toInt(&ok);
        if (!ok || precision < 0 || precision > 17)
            return usageError(QStringLiteral("--precision takes a number of decimals from 0 to 17, not \"%1\"")
                                  .arg(parser.value(precisionOption)));
    }

    const int threads = CliSupport::threadCount(parser, QStringLiteral("threads"), &error);
    if (threads == 0)
        return usageError(error);

    const auto source = CliSupport::loadSpatialReference(parser.value(fromOption), &error);
    if (!source) {
        err << kPrefix << error << '\n';
        return CliUsageError;
    }
    const auto target = CliSupport::loadSpatialReference(parser.value(toOption), &error);
    if (!target) {
        err << kPrefix << error << '\n';
        return CliUsageError;
    }

    CoordinateConversion::Mode mode = CoordinateConversion::Direct;
    QList<double> params;
    if (parser.isSet(params7Option)) {
        if (!CliSupport::parseNumberList(parser.value(params7Option), 7, &params))
            return usageError(QStringLiteral("--params7 takes seven numbers DX,DY,DZ,W,K,R,M, not \"%1\"")
                                  .arg(parser.value(params7Option)));
        mode = CoordinateConversion::SevenParameters;
    } else if (parser.isSet(params4Option)) {
        if (!CliSupport::parseNumberList(parser.value(params4Option), 4, &params))
            return usageError(QStringLiteral("--params4 takes four numbers DX,DY,T,K, not \"%1\"")
                                  .arg(parser.value(params4Option)));
        mode = CoordinateConversion::FourParameters;
    } else if (parser.isSet(modelOption)) {
        const QString name = parser.value(modelOption);
        TransformModel model7, model4;
        QString error7, error4;
        const bool has7 = CliSupport::findModel(ModelStore::Params7, name, &model7, &error7);
        const bool has4 = CliSupport::findModel(ModelStore::Params4, name, &model4, &error4);
        if (!has7 && !has4) {
            if (!error7.isEmpty() || !error4.isEmpty()) {
                err << kPrefix << (error7.isEmpty() ? error4 : error7) << '\n';
                return CliUsageError;
            }
            err << kPrefix << "no stored model is named \"" << name << "\"\n"
                << "Seven-parameter models: " << modelNames(ModelStore::Params7) << '\n'
                << "Four-parameter models: " << modelNames(ModelStore::Params4) << '\n';
            return CliUsageError;
        }
        // A name used in both lists: the kind the dialogs would offer for this pair.
        const bool useSeven = has7 && has4
                                  ? CoordinateConversion::DialogMode(source.get(), target.get())
                                        == CoordinateConversion::SevenParameters
                                  : has7;
        params = useSeven ? model7.Params : model4.Params;
        mode = useSeven ? CoordinateConversion::SevenParameters : CoordinateConversion::FourParameters;
    }
    if (parser.isSet(codeOption)) {
        const QString refusal = CliSupport::codeNumberRefusal(*source);
        if (!refusal.isEmpty())
            return usageError(refusal);
    }

    // The route's objects are not shared between threads: one per worker,
    // all made here from the same systems, mode, model and flag.
    std::vector<std::unique_ptr<CoordinateConversion>> owned;
    std::vector<const CoordinateConversion*> conversions;
    for (int i = 0; i < threads; ++i) {
        owned.emplace_back(new CoordinateConversion(source, target));
        owned.back()->SetMode(mode);
        owned.back()->SetParams(params);
        owned.back()->SetCodeNumber(parser.isSet(codeOption));
        conversions.push_back(owned.back().get());
    }
    if (!conversions.front()->IsReady()) {
        err << kPrefix << notReadyReason(mode, *source, *target) << '\n';
        return CliUsageError;
    }

    const bool angularInput = source->GetType() == KivGeometry::SRT_Geographic;
    const bool angularOutput = target->GetType() == KivGeometry::SRT_Geographic;
    PointLineConverter::Options options;
    options.angularInput = angularInput;
    options.precisionXY = precision >= 0 ? precision : (angularOutput ? 9 : 6);
    options.precisionH = precision >= 0 ? precision : 6;
    options.messagePrefix = kPrefix;
    if (parser.isSet(codeOption))
        options.codeCentralMeridian = CliSupport::centralMeridian(*source);
    options.chunkLines = CliSupport::chunkLines(16384);
    PointLineConverter converter(conversions, options);

    const QString inputPath = files.value(0).isEmpty() ? QStringLiteral("-") : files.value(0);
    const QString outputPath = files.value(1).isEmpty() ? QStringLiteral("-") : files.value(1);
    if (OutputFile::SameFile(inputPath, outputPath))
        return usageError(QStringLiteral("OUTPUT \"%1\" is the input file; writing it would destroy the input")
                              .arg(outputPath));

    QFile inputFile;
    QIODevice* input = CliCommand::standardInput();
    if (inputPath != QLatin1String("-")) {
        inputFile.setFileName(inputPath);
        if (!inputFile.open(QIODevice::ReadOnly)) {
            err << kPrefix << "cannot read input file \"" << inputPath << "\": " << inputFile.errorString() << '\n';
            return CliUsageError;
        }
        input = &inputFile;
    }

    if (outputPath == QLatin1String("-")) {
        // Standard output goes through the caller's stream; main checks the
        // final flush, so a full disk or a closed pipe is not a success.
        out.flush();
        QIODevice* device = out.device();
        const PointLineConverter::Sink sink = [&out, device](const char* data, qsizetype size) {
            if (device)
                return device->write(data, size) == size;
            out << QLatin1String(data, int(size));
            return out.status() == QTextStream::Ok;
        };
        if (!converter.process(input, sink, err)) {
            if (converter.writeFailed())
                err << kPrefix << "cannot write standard output: "
                    << (device ? device->errorString() : QStringLiteral("write error")) << '\n';
            return CliUsageError;
        }
    } else {
        OutputFile output(outputPath);
        if (!output.Open(&error)) {
            err << kPrefix << error << '\n';
            return CliUsageError;
        }
        QIODevice* device = output.Device();
        const PointLineConverter::Sink sink = [device](const char* data, qsizetype size) {
            return device->write(data, size) == size;
        };
        if (!converter.process(input, sink, err)) {
            if (converter.writeFailed())
                err << kPrefix << output.WriteError() << '\n';
            output.Cancel();
            return CliUsageError;
        }
        if (!output.Commit(&error)) {
            err << kPrefix << error << '\n';
            return CliUsageError;
        }
    }
    if (converter.pointsWithoutDatumShift() > 0)
        err << kPrefix << "warning: "
            << CoordinateConversion::NoDatumShiftWarning(converter.pointsWithoutDatumShift(), QStringLiteral("point(s)"),
                                                         source->GetName(), target->GetName())
            << '\n';
    return converter.linesRejected() > 0 ? CliDataErrors : CliOk;
}
