#include "TransformCommand.h"

#include "CliRegistry.h"
#include "CliSupport.h"
#include "ConversionOptions.h"
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
        "%1"
        "                    Without a model, PROJ's own operation between the two\n"
        "                    systems is used. Heights change with a seven-parameter\n"
        "                    model and PROJ's operation, not with a four-parameter one.\n"
        "  --precision N     decimals written (default: 6 for metres, 9 for degrees)\n"
        "  --threads N       worker threads (default: one per core; 1 converts on the\n"
        "                    calling thread only); the output order is the input's\n"
        "\n"
        "A line that cannot be read or converted is reported on standard error with\n"
        "its line number and skipped; the exit status is then 1. Empty lines are\n"
        "skipped silently. Without a model between two datums for which PROJ has no\n"
        "datum transformation, a warning says that no datum shift is applied.\n"
        "When OUTPUT cannot be written completely the exit status is 2, and a\n"
        "regular file keeps its old content.\n").arg(ConversionOptions::Help());
}

namespace {

const QString kPrefix = QStringLiteral("coordstransform transform: ");

} // namespace

int TransformCommand::run(const QStringList& args, QTextStream& out, QTextStream& err)
{
    QCommandLineParser parser;
    const ConversionOptions conversion(parser);
    const QCommandLineOption precisionOption(QStringLiteral("precision"), QString(), QStringLiteral("N"));
    const QCommandLineOption threadsOption(QStringLiteral("threads"), QString(), QStringLiteral("N"));
    parser.addOptions({precisionOption, threadsOption});
    QString error;
    if (!CliSupport::parse(parser, args, &error)) {
        err << kPrefix << error << '\n';
        return CliUsageError;
    }
    const auto usageError = [&err](const QString& message) {
        err << kPrefix << message << "\nRun \"coordstransform transform --help\" for the usage.\n";
        return int(CliUsageError);
    };

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

    ConversionSetup setup;
    bool usage = false;
    if (!conversion.Read(parser, ConversionSetup::SameDatum, nullptr, &setup, &error, &usage)) {
        if (usage)
            return usageError(error);
        err << kPrefix << error << '\n';
        return CliUsageError;
    }
    const auto& source = setup.source;
    const auto& target = setup.target;

    // The route's objects are not shared between threads: one per worker,
    // all made from the same set-up.
    std::vector<std::unique_ptr<CoordinateConversion>> owned;
    std::vector<const CoordinateConversion*> conversions;
    for (int i = 0; i < threads; ++i) {
        owned.push_back(setup.MakeConversion());
        conversions.push_back(owned.back().get());
    }
    if (!conversions.front()->IsReady()) {
        err << kPrefix << setup.NotReadyReason() << '\n';
        return CliUsageError;
    }

    const bool angularInput = source->GetType() == KivGeometry::SRT_Geographic;
    const bool angularOutput = target->GetType() == KivGeometry::SRT_Geographic;
    PointLineConverter::Options options;
    options.angularInput = angularInput;
    options.precisionXY = precision >= 0 ? precision : (angularOutput ? 9 : 6);
    options.precisionH = precision >= 0 ? precision : 6;
    options.messagePrefix = kPrefix;
    if (setup.codeNumber)
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
