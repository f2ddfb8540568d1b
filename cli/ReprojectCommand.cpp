#include "ReprojectCommand.h"

#include "CliRegistry.h"
#include "AlgorithmRun.h"
#include "ArchiveBatch.h"
#include "CliSupport.h"
#include "ConversionOptions.h"

#include "io/DatasetOutput.h"
#include "reprojection/RasterOptions.h"
#include "reprojection/ReprojectionPlan.h"
#include "reprojection/ReprojectionRunner.h"
#include "KivDataSource/DatasetFactory.h"
#include "KivDataSource/MultiDataset.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QCommandLineParser>
#include <QtGlobal>
#include <QTextStream>
#include <QFileInfo>

#include <gdal.h>

#include <optional>

static CliRegistrar<ReprojectCommand> registrar;

namespace {

const QString kPrefix = QStringLiteral("coordstransform reproject: ");

} // namespace

void ReprojectCommand::requestStop()
{
    AlgorithmRun::RequestStop();
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
        "  --vector-format NAME\n"
        "                    vector output format: \"ESRI Shapefile\" (default, as the\n"
        "                    dialogs write) or GPKG, one GeoPackage per layer\n"
        "  --folder DIR      batch: write every INPUT into DIR\n"
        "  --list FILE       batch: the inputs also from FILE, one path a line\n"
        "  --shard K/N|auto  batch: only the K-th of N shares of the inputs (the\n"
        "                    same input always in the same share); auto reads a\n"
        "                    Slurm job array's or a Kubernetes Indexed Job's index\n"
        "                    (docs/scale.md)\n"
        "  --skip-existing   batch: an input whose outputs all exist and open is\n"
        "                    skipped (outputs are only ever written whole)\n"
        "  --log FILE        batch: append one JSON line per input: input, outputs,\n"
        "                    status (done, skipped, failed), seconds, warnings, error.\n"
        "                    With these four options the batch runs input by input\n"
        "                    and exits 0 when all are done, 1 when some failed, 3\n"
        "                    when none was done\n"
        "  --recursive       batch: a folder among the inputs stands for the datasets\n"
        "                    below it (.tif .tiff .img .jp2 .shp .gpkg); their outputs\n"
        "                    keep their folders below DIR\n"
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
    const QCommandLineOption listOption(QStringLiteral("list"), QString(), QStringLiteral("FILE"));
    const QCommandLineOption shardOption(QStringLiteral("shard"), QString(), QStringLiteral("K/N"));
    const QCommandLineOption skipOption(QStringLiteral("skip-existing"));
    const QCommandLineOption logOption(QStringLiteral("log"), QString(), QStringLiteral("FILE"));
    const QCommandLineOption recursiveOption(QStringLiteral("recursive"));
    const QCommandLineOption resamplingOption(QStringLiteral("resampling"), QString(), QStringLiteral("METHOD"));
    const QCommandLineOption resolutionOption(QStringLiteral("resolution"), QString(), QStringLiteral("XRES,YRES"));
    const QCommandLineOption creationOption(QStringLiteral("co"), QString(), QStringLiteral("KEY=VALUE"));
    const QCommandLineOption vectorFormatOption(QStringLiteral("vector-format"), QString(), QStringLiteral("NAME"));
    parser.addOptions({formatOption, folderOption, jsonOption, listOption, shardOption, skipOption, logOption,
                       recursiveOption, resamplingOption, resolutionOption, creationOption, vectorFormatOption});
    AlgorithmRun::ResetStop();
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
    const QString vectorFormat = parser.value(vectorFormatOption);
    if (!vectorFormat.isEmpty() && !ReprojectionPlan::VectorFormats().contains(vectorFormat))
        return usageError(QStringLiteral("--vector-format takes \"ESRI Shapefile\" or GPKG, not \"%1\"").arg(vectorFormat));
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
    const bool archive = parser.isSet(listOption) || parser.isSet(shardOption) || parser.isSet(skipOption)
                         || parser.isSet(logOption) || parser.isSet(recursiveOption);
    if (archive && !batch)
        return usageError(QStringLiteral("--list, --shard, --skip-existing, --log and --recursive go with --folder"));
    if (parser.isSet(listOption) && !ArchiveBatch::ReadList(parser.value(listOption), &files, &error)) {
        err << kPrefix << error << '\n';
        return CliUsageError;
    }
    ArchiveBatch::Options archiveOptions;
    if (batch) {
        // Folders among the inputs stand for the datasets below them.
        QStringList expanded;
        for (const QString& input : files) {
            if (!QFileInfo(input).isDir()) {
                expanded << input;
                continue;
            }
            if (!parser.isSet(recursiveOption))
                return usageError(QStringLiteral("\"%1\" is a folder; give --recursive to convert what it holds")
                                      .arg(input));
            expanded << ArchiveBatch::FindInputs(input, &archiveOptions.subfolders);
        }
        files = expanded;
    }
    if (parser.isSet(shardOption)
        && !ArchiveBatch::ParseShard(parser.value(shardOption), &archiveOptions.shardIndex,
                                     &archiveOptions.shardCount, &error))
        return usageError(error);
    if (batch ? files.isEmpty() : files.size() != 2)
        return usageError(batch ? QStringLiteral("give at least one INPUT") : QStringLiteral("give INPUT and OUTPUT"));

    // The inputs' own system, unless --from names one.
    const QString firstInput = files.first();
    // The input is described once in this run, by whoever asks first.
    std::optional<KivDataSource::DatasetFactory::RunCache> describeOnce;
    describeOnce.emplace();
    const auto dataset = KivDataSource::DatasetFactory::Instance()->OpenDataset(firstInput, 0, QString());
    // A batch with --from needs no input to be readable before it starts:
    // each input that cannot be read fails on its own.
    if (!dataset && !(batch && parser.isSet(QStringLiteral("from")))) {
        err << kPrefix << "cannot open \"" << firstInput << "\" as a raster or vector dataset\n";
        return CliUsageError;
    }
    const auto own = dataset ? dataset->GetSpatialReference() : KivUtility::_ptr_t<KivGeometry::SpatialReference>();
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

    ReprojectionRequest request;
    stCoordsTransformInfo& info = request.info;
    info.strSrcWkt = setup.source->ExportToWkt();
    info.strDstWkt = setup.target->ExportToWkt();
    info.bCode = setup.codeNumber;
    // A named format decides over each raster's suffix, also in a batch.
    rasterOptions.SetFormatNamed(!format.isEmpty());
    rasterOptions.WriteTo(info);
    // The dialogs leave the field empty: shapefiles.
    if (vectorFormat == QLatin1String("GPKG"))
        info.strExtra2 = vectorFormat;
    info.bUse7Params = setup.mode == CoordinateConversion::SevenParameters;
    TransformModel& model = info.bUse7Params ? info.model7 : info.model4;
    model.TransName = setup.modelName;
    model.Params = setup.params;

    if (batch) {
        request.choice = ReprojectionRequest::Batch;
        request.displayName = QStringLiteral("BatchReproject");
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
        request.datasetKind = dataset->GetKind();
        if (dataset->GetKind() == KivDataSource::DK_Raster) {
            info.strOutputFile = files[1];
            info.strRasterFormat = ReprojectionPlan::RasterFormat(files[1], format, format.isEmpty());
            error = rasterOptions.CreationProblem(info.strRasterFormat);
            if (!error.isEmpty())
                return usageError(error);
        } else {
            if (toFolder)
                info.strOutputFolder = files[1];
            else
                info.strOutputFile = files[1];
        }
    }

    if (archive) {
        archiveOptions.folder = info.strOutputFolder;
        archiveOptions.rasterFormat = format;
        archiveOptions.skipExisting = parser.isSet(skipOption);
        archiveOptions.logPath = parser.value(logOption);
        if (qgetenv("GDAL_CACHEMAX").isEmpty())
            GDALSetCacheMax64(48 * 1024 * 1024);
        // Each input is described once in its own run; descriptions of a
        // whole archive are not kept.
        describeOnce.reset();
        return ArchiveBatch::Run(files, info, archiveOptions, out, err);
    }

    // GDAL's block cache grows to a share of the machine's memory by
    // default; a fixed one keeps the peak flat whatever the raster's size
    // (the warper works in chunks of its own memory limit besides).
    if (qgetenv("GDAL_CACHEMAX").isEmpty())
        GDALSetCacheMax64(48 * 1024 * 1024);

    QStringList outputs, warnings, errors;
    const ReprojectionRunner::Outcome outcome = AlgorithmRun::Run(request, &outputs, &warnings, &errors);
    if (outcome == ReprojectionRunner::Stopped) {
        err << kPrefix << "stopped; nothing partial was left behind\n";
        return 130;
    }
    if (outcome == ReprojectionRunner::NotLoaded || outcome == ReprojectionRunner::NotStarted) {
        err << kPrefix << errors.join(QLatin1Char('\n')) << '\n';
        return CliUsageError;
    }
    const int status = outcome == ReprojectionRunner::Done ? int(CliOk) : int(CliDataErrors);
    if (parser.isSet(jsonOption)) {
        // Messages still go to standard error as well, for whoever watches.
        out << QJsonDocument(QJsonObject{{QStringLiteral("outputs"), QJsonArray::fromStringList(outputs)},
                                         {QStringLiteral("warnings"), QJsonArray::fromStringList(warnings)},
                                         {QStringLiteral("errors"), QJsonArray::fromStringList(errors)},
                                         {QStringLiteral("status"), status}})
                   .toJson(QJsonDocument::Indented);
    } else {
        for (const QString& path : outputs)
            out << path << '\n';
    }
    for (const QString& line : errors)
        err << kPrefix << line << '\n';
    for (const QString& line : warnings)
        err << kPrefix << "warning: " << line << '\n';
    return status;
}
