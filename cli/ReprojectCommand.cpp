#include "ReprojectCommand.h"

#include "CliRegistry.h"
#include "CliSupport.h"
#include "ConversionOptions.h"

#include "io/DatasetOutput.h"
#include "reprojection/RasterOptions.h"
#include "reprojection/ReprojectionAlgorithmChoice.h"
#include "models/ModelStore.h"
#include "reprojection/stCoordsTransformInfo.h"

#include "KivAlgo/AlgoFactory.h"
#include "KivDataSource/DatasetFactory.h"
#include "KivDataSource/MultiDataset.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QCommandLineParser>
#include <QtGlobal>
#include <QTextStream>
#include <QEventLoop>
#include <QFileInfo>
#include <QTimer>

#include <gdal.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <unistd.h>

static CliRegistrar<ReprojectCommand> registrar;

namespace {

const QString kPrefix = QStringLiteral("coordstransform reproject: ");
const QString kLibrary = ReprojectionAlgorithmChoice::Library();

std::atomic<bool> stopRequested{false};

extern "C" void onInterrupt(int)
{
    stopRequested = true;
}

/// Ctrl-C stops the run (and removes what it was writing) instead of killing
/// the process half-way through a file; the old handler comes back after.
class InterruptGuard
{
public:
    InterruptGuard()
    {
        struct sigaction action = {};
        action.sa_handler = onInterrupt;
        sigemptyset(&action.sa_mask);
        sigaction(SIGINT, &action, &m_old);
    }
    ~InterruptGuard() { sigaction(SIGINT, &m_old, nullptr); }

private:
    struct sigaction m_old;
};

QString rasterFormatFor(const QString& output, const QString& requested)
{
    if (!requested.isEmpty())
        return requested;
    const QString suffix = QFileInfo(output).suffix().toLower();
    if (suffix == QLatin1String("img"))
        return QStringLiteral("HFA");
    return QStringLiteral("GTiff");
}

} // namespace

void ReprojectCommand::requestStop()
{
    stopRequested = true;
}

QString ReprojectCommand::name() const
{
    return QStringLiteral("reproject");
}

QString ReprojectCommand::summary() const
{
    return QStringLiteral("reproject raster and vector datasets into another coordinate system");
}

QString ReprojectCommand::help() const
{
    return QStringLiteral(
        "Usage: coordstransform reproject [--from CRS] --to CRS\n"
        "           [--params7 DX,DY,DZ,W,K,R,M | --params4 DX,DY,T,K | --model NAME]\n"
        "           [--code] [--format GTiff|HFA|ENVI|COG] [--resampling METHOD]\n"
        "           [--resolution XRES,YRES] [--co KEY=VALUE]... INPUT OUTPUT\n"
        "       coordstransform reproject [options] INPUT... --folder DIR\n"
        "\n"
        "Reprojects a raster (GeoTIFF, ERDAS IMG, ENVI, ...) or vector data (a\n"
        "shapefile, or each layer of a GeoPackage or geodatabase) with the same\n"
        "conversion route as the dialogs. Rasters are warped (nearest neighbour\n"
        "unless --resampling says otherwise) onto the grid GDAL suggests, pixels\n"
        "outside the source become nodata; vector data is written as shapefiles with the target .prj. With\n"
        "--folder, every INPUT goes into DIR under its own name; a container gives\n"
        "one shapefile per layer, also when OUTPUT names a folder.\n"
        "\n"
        "Options:\n"
        "%1"
        "                    --from defaults to the input's own system. Without a model\n"
        "                    the two systems must share datum, ellipsoid and prime\n"
        "                    meridian.\n"
        "  --format NAME     raster output format: GTiff, HFA, ENVI or COG (default:\n"
        "                    by the output's suffix, .img HFA, otherwise GTiff)\n"
        "  --resampling METHOD\n"
        "                    near (default), bilinear, cubic, cubicspline, lanczos,\n"
        "                    average or mode\n"
        "  --resolution XRES,YRES\n"
        "                    output pixel size in the target's units; the extent\n"
        "                    stays the one GDAL suggests\n"
        "  --co KEY=VALUE    a GDAL creation option of the raster format, e.g.\n"
        "                    COMPRESS=DEFLATE or TILED=YES; repeatable, and a key\n"
        "                    given replaces the built-in value\n"
        "  --folder DIR      batch: write every INPUT into DIR\n"
        "  --json            list the results as one JSON object on standard output:\n"
        "                    {\"outputs\": [paths], \"warnings\": [texts],\n"
        "                    \"errors\": [texts], \"status\": exit status}\n"
        "\n"
        "An output is written under a temporary name and renamed when complete;\n"
        "Ctrl-C stops and leaves no partial output. Outputs are listed on standard\n"
        "output. Exit status 0 when everything was written, 1 when something\n"
        "failed (each failure on standard error), 2 for bad arguments, 130 when\n"
        "stopped.\n").arg(ConversionOptions::Help());
}

int ReprojectCommand::run(const QStringList& args, QTextStream& out, QTextStream& err)
{
    QCommandLineParser parser;
    const ConversionOptions conversion(parser);
    const QCommandLineOption formatOption(QStringLiteral("format"), QString(), QStringLiteral("name"));
    const QCommandLineOption folderOption(QStringLiteral("folder"), QString(), QStringLiteral("DIR"));
    const QCommandLineOption jsonOption(QStringLiteral("json"));
    const QCommandLineOption resamplingOption(QStringLiteral("resampling"), QString(), QStringLiteral("METHOD"));
    const QCommandLineOption resolutionOption(QStringLiteral("resolution"), QString(), QStringLiteral("XRES,YRES"));
    const QCommandLineOption creationOption(QStringLiteral("co"), QString(), QStringLiteral("KEY=VALUE"));
    parser.addOptions({formatOption, folderOption, jsonOption, resamplingOption, resolutionOption, creationOption});
    QString error;
    if (!CliSupport::parse(parser, args, &error)) {
        err << kPrefix << error << '\n';
        return CliUsageError;
    }
    const auto usageError = [&err](const QString& message) {
        err << kPrefix << message << "\nRun \"coordstransform reproject --help\" for the usage.\n";
        return int(CliUsageError);
    };

    const QString format = parser.value(formatOption);
    if (!format.isEmpty() && format != QLatin1String("GTiff") && format != QLatin1String("HFA")
        && format != QLatin1String("ENVI") && format != QLatin1String("COG"))
        return usageError(QStringLiteral("--format takes GTiff, HFA, ENVI or COG, not \"%1\"").arg(format));
    RasterOptions rasterOptions;
    error.clear();
    if (parser.isSet(resamplingOption))
        error = rasterOptions.SetResampling(parser.value(resamplingOption));
    if (error.isEmpty() && parser.isSet(resolutionOption))
        error = rasterOptions.SetResolution(parser.value(resolutionOption));
    for (const QString& option : parser.values(creationOption))
        if (error.isEmpty())
            error = rasterOptions.AddCreationOption(option);
    if (!error.isEmpty())
        return usageError(error);
    const bool batch = parser.isSet(folderOption);
    QStringList files = parser.positionalArguments();
    if (batch ? files.isEmpty() : files.size() != 2)
        return usageError(batch ? QStringLiteral("give at least one INPUT") : QStringLiteral("give INPUT and OUTPUT"));

    // The inputs' own system, unless --from names one.
    const QString firstInput = files.first();
    const auto dataset = KivDataSource::DatasetFactory::Instance()->OpenDataset(firstInput, 0, QString());
    if (!dataset) {
        err << kPrefix << "cannot open \"" << firstInput << "\" as a raster or vector dataset\n";
        return CliUsageError;
    }
    const auto own = dataset->GetSpatialReference();
    if (!own && !parser.isSet(QStringLiteral("from"))) {
        err << kPrefix << "\"" << firstInput << "\" has no spatial reference; give it with --from\n";
        return CliUsageError;
    }
    // The command line tells one geographic base from two by datum,
    // ellipsoid and prime meridian, as the point and file dialogs do.
    const ConversionSetup::SameBaseRule rule = ConversionSetup::SameDatum;
    ConversionSetup setup;
    bool usage = false;
    if (!conversion.Read(parser, rule, own, &setup, &error, &usage)) {
        if (usage)
            return usageError(error);
        err << kPrefix << error << '\n';
        return CliUsageError;
    }
    if (setup.NeedsSevenParameters(rule))
        return usageError(QStringLiteral("\"%1\" and \"%2\" lie on different geographic bases (%3 differ); give the "
                                         "seven-parameter model with --params7 or --model")
                              .arg(setup.source->GetName(), setup.target->GetName(),
                                   QStringLiteral("datum, ellipsoid or prime meridian")));

    stCoordsTransformInfo info;
    info.strSrcWkt = setup.source->ExportToWkt();
    info.strDstWkt = setup.target->ExportToWkt();
    info.bCode = setup.codeNumber;
    rasterOptions.WriteTo(info);
    info.bUse7Params = setup.mode == CoordinateConversion::SevenParameters;
    TransformModel& model = info.bUse7Params ? info.model7 : info.model4;
    model.TransName = setup.modelName;
    model.Params = setup.params;

    QString algorithmName;
    if (batch) {
        algorithmName = ReprojectionAlgorithmChoice::Batch();
        if (!QFileInfo(parser.value(folderOption)).isDir()) {
            err << kPrefix << "--folder \"" << parser.value(folderOption) << "\" is not an existing folder\n";
            return CliUsageError;
        }
        info.lstInputFiles = files;
        info.strOutputFolder = parser.value(folderOption);
        if (!format.isEmpty())
            info.strRasterFormat = format;
        // Without --format each raster's suffix decides; its run checks then.
        error = format.isEmpty() ? QString() : rasterOptions.CreationProblem(format);
        if (!error.isEmpty())
            return usageError(error);
    } else {
        info.strInputFile = files[0];
        const bool toFolder = dataset->GetKind() != KivDataSource::DK_Raster
                              && (dataset->GetKind() == KivDataSource::DK_Container || QFileInfo(files[1]).isDir());
        const QString problem = toFolder ? (QFileInfo(files[1]).isDir() ? QString()
                                            : QStringLiteral("The output folder \"%1\" does not exist.").arg(files[1]))
                                         : DatasetOutput::Problem(files[1], {files[0]});
        if (!problem.isEmpty()) {
            err << kPrefix << problem << '\n';
            return CliUsageError;
        }
        if (dataset->GetKind() == KivDataSource::DK_Raster) {
            algorithmName = ReprojectionAlgorithmChoice::ByKind(dataset->GetKind());
            info.strOutputFile = files[1];
            info.strRasterFormat = rasterFormatFor(files[1], format);
            error = rasterOptions.CreationProblem(info.strRasterFormat);
            if (!error.isEmpty())
                return usageError(error);
        } else {
            algorithmName = ReprojectionAlgorithmChoice::ByKind(dataset->GetKind());
            if (toFolder)
                info.strOutputFolder = files[1];
            else
                info.strOutputFile = files[1];
        }
    }

    // GDAL's block cache grows to a share of the machine's memory by
    // default; a fixed one keeps the peak flat whatever the raster's size
    // (the warper works in chunks of its own memory limit besides).
    if (qgetenv("GDAL_CACHEMAX").isEmpty())
        GDALSetCacheMax64(48 * 1024 * 1024);

    KivAlgo::AlgoFactory* factory = KivAlgo::AlgoFactory::Instance();
    std::unique_ptr<KivAlgo::Algorithm> algorithm(factory->CreateAlgorithm(kLibrary, algorithmName));
    if (!algorithm) {
        err << kPrefix << "the algorithm library \"" << kLibrary << "\" cannot be loaded from "
            << factory->LibraryFolders().join(QStringLiteral(", ")) << '\n';
        return CliUsageError;
    }
    algorithm->SetParameters(boost::any(info));
    algorithm->SetDisplayName(batch ? QStringLiteral("BatchReproject") : QStringLiteral("Reproject"));

    const bool terminal = isatty(fileno(stderr));
    QEventLoop loop;
    bool canceled = false;
    int lastShown = -1;
    algorithm->SigProgressUpdated().connect([&](double percent, const QString&, void*) {
        const int shown = int(percent);
        if (terminal && shown != lastShown) {
            lastShown = shown;
            const int filled = std::max(0, std::min(40, shown * 40 / 100));
            std::fprintf(stderr, "\r[%s%s] %3d%%", QByteArray(filled, '#').constData(),
                         QByteArray(40 - filled, ' ').constData(), shown);
            std::fflush(stderr);
        }
        return 1;
    });
    algorithm->SigExecuteCompleted().connect([&](void*) { loop.quit(); });
    algorithm->SigExecuteCanceled().connect([&](void*) {
        canceled = true;
        loop.quit();
    });

    stopRequested = false;
    InterruptGuard interrupt;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [&] {
        if (stopRequested)
            factory->Cancel(algorithm.get());
    });
    watch.start(50);
    if (!factory->Run(algorithm.get())) {
        err << kPrefix << "the reprojection could not be started\n";
        return CliUsageError;
    }
    loop.exec();
    watch.stop();
    if (terminal && lastShown >= 0)
        std::fprintf(stderr, "\n");

    if (canceled) {
        err << kPrefix << "stopped; nothing partial was left behind\n";
        return 130;
    }
    int code = 0;
    QString message;
    algorithm->GetError(code, message);
    stCoordsTransformInfo result;
    try {
        result = boost::any_cast<stCoordsTransformInfo>(algorithm->GetParameters());
    } catch (const boost::bad_any_cast&) {
    }
    const int status = code == 0 ? int(CliOk) : int(CliDataErrors);
    const QStringList lines = message.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    if (parser.isSet(jsonOption)) {
        // Messages still go to standard error as well, for whoever watches.
        out << QJsonDocument(QJsonObject{{QStringLiteral("outputs"), QJsonArray::fromStringList(result.lstOutputFiles)},
                                         {QStringLiteral("warnings"), QJsonArray::fromStringList(code == 0 ? lines : QStringList())},
                                         {QStringLiteral("errors"), QJsonArray::fromStringList(code == 0 ? QStringList() : lines)},
                                         {QStringLiteral("status"), status}})
                   .toJson(QJsonDocument::Indented);
    } else {
        for (const QString& path : result.lstOutputFiles)
            out << path << '\n';
    }
    for (const QString& line : lines)
        err << kPrefix << (code == 0 ? QStringLiteral("warning: ") : QString()) << line << '\n';
    return status;
}
