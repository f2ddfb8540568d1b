#include "ArchiveBatch.h"

#include "AlgorithmRun.h"

#include "reprojection/ReprojectionPlan.h"

#include "KivDataSource/Dataset.h"
#include "KivDataSource/DatasetFactory.h"

#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>

namespace {

const QString kPrefix = QStringLiteral("coordstransform reproject: ");

bool environmentNumber(const char* name, int* value)
{
    bool ok = false;
    *value = qEnvironmentVariableIntValue(name, &ok);
    return ok;
}

/// The key two inputs would share when they write one dataset.
QString outputKey(const QString& path)
{
    return QFileInfo(path).absoluteFilePath();
}

} // namespace

bool ArchiveBatch::ParseShard(const QString& text, int* index, int* count, QString* error)
{
    if (text == QLatin1String("auto")) {
        int id = 0, n = 0, min = 0;
        if (environmentNumber("SLURM_ARRAY_TASK_ID", &id) && environmentNumber("SLURM_ARRAY_TASK_COUNT", &n)) {
            if (!environmentNumber("SLURM_ARRAY_TASK_MIN", &min))
                min = 0;
            id -= min;
        } else if (!(environmentNumber("JOB_COMPLETION_INDEX", &id)
                     && environmentNumber("COORDSTRANSFORM_SHARD_COUNT", &n))) {
            *error = QStringLiteral("--shard auto needs SLURM_ARRAY_TASK_ID and SLURM_ARRAY_TASK_COUNT (a Slurm job "
                                    "array) or JOB_COMPLETION_INDEX and COORDSTRANSFORM_SHARD_COUNT (a Kubernetes "
                                    "Indexed Job); neither pair is set");
            return false;
        }
        if (n < 1 || id < 0 || id >= n) {
            *error = QStringLiteral("--shard auto: index %1 of %2 shards is out of range").arg(id).arg(n);
            return false;
        }
        *index = id;
        *count = n;
        return true;
    }
    const QStringList parts = text.split(QLatin1Char('/'));
    bool okK = false, okN = false;
    const int k = parts.size() == 2 ? parts[0].toInt(&okK) : 0;
    const int n = parts.size() == 2 ? parts[1].toInt(&okN) : 0;
    if (!okK || !okN || n < 1 || k < 1 || k > n) {
        *error = QStringLiteral("--shard takes K/N with 1 <= K <= N, or auto; not \"%1\"").arg(text);
        return false;
    }
    *index = k - 1;
    *count = n;
    return true;
}

int ArchiveBatch::ShardOf(const QString& input, int count)
{
    // FNV-1a over the cleaned path: stable across runs, machines and orders.
    quint64 hash = 1469598103934665603ULL;
    for (const char c : QDir::cleanPath(input).toUtf8()) {
        hash ^= quint8(c);
        hash *= 1099511628211ULL;
    }
    return int(hash % quint64(count));
}

QStringList ArchiveBatch::FindInputs(const QString& folder, QHash<QString, QString>* subfolders)
{
    static const QStringList patterns = {QStringLiteral("*.tif"), QStringLiteral("*.tiff"), QStringLiteral("*.img"),
                                         QStringLiteral("*.jp2"), QStringLiteral("*.shp"), QStringLiteral("*.gpkg")};
    const QDir root(folder);
    QStringList found;
    QDirIterator it(folder, patterns, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext())
        found << it.next();
    found.sort();
    for (const QString& path : found) {
        const QString relative = root.relativeFilePath(QFileInfo(path).absolutePath());
        subfolders->insert(path, relative == QLatin1String(".") ? QString() : relative);
    }
    return found;
}

bool ArchiveBatch::ReadList(const QString& path, QStringList* inputs, QString* error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("cannot read the list \"%1\": %2").arg(path, file.errorString());
        return false;
    }
    while (!file.atEnd()) {
        const QString line = QString::fromUtf8(file.readLine()).trimmed();
        if (!line.isEmpty() && !line.startsWith(QLatin1Char('#')))
            inputs->append(line);
    }
    if (file.error() != QFile::NoError) {
        *error = QStringLiteral("cannot read the list \"%1\": %2").arg(path, file.errorString());
        return false;
    }
    return true;
}

int ArchiveBatch::Run(const QStringList& inputs, const stCoordsTransformInfo& base, const Options& options,
                      QTextStream& out, QTextStream& err)
{
    QFile log(options.logPath);
    if (!options.logPath.isEmpty() && !log.open(QIODevice::WriteOnly | QIODevice::Append)) {
        err << kPrefix << "cannot write the log \"" << options.logPath << "\": " << log.errorString() << '\n';
        return 2;
    }
    bool logFailed = false;
    const auto writeLog = [&](const QJsonObject& line) {
        if (options.logPath.isEmpty())
            return;
        const QByteArray bytes = QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n';
        if (log.write(bytes) != bytes.size() || !log.flush())
            logFailed = true;
    };

    QHash<QString, QString> claimed; // output -> the input that writes it
    int done = 0, skipped = 0, failed = 0;
    for (const QString& input : inputs) {
        if (ShardOf(input, options.shardCount) != options.shardIndex)
            continue;
        if (AlgorithmRun::StopRequested())
            break;
        QElapsedTimer clock;
        clock.start();
        QJsonObject line{{QStringLiteral("input"), input}};
        QStringList outputs, warnings;
        QString error, status;

        const KivDataSource::DatasetFactory::RunCache describeOnce;
        const QString sub = options.subfolders.value(input);
        const QString folder = sub.isEmpty() ? options.folder : QDir(options.folder).filePath(sub);
        const QList<ReprojectionPlan::Item> items = ReprojectionPlan::Plan(
            input, QString(), folder, options.rasterFormat, options.rasterFormat.isEmpty(), &error, base.strExtra2);
        for (const ReprojectionPlan::Item& item : items) {
            outputs << item.output;
            const QString owner = claimed.value(outputKey(item.output));
            if (error.isEmpty() && !owner.isEmpty() && owner != input)
                error = QStringLiteral("\"%1\" is also the output of \"%2\"; this input is left out")
                            .arg(item.output, owner);
        }
        if (error.isEmpty()) {
            for (const QString& output : outputs)
                claimed.insert(outputKey(output), input);
            // Outputs are written whole or not at all, so one that exists
            // and opens is a finished one.
            bool allThere = options.skipExisting && !outputs.isEmpty();
            for (const QString& output : outputs)
                allThere = allThere && QFileInfo(output).isFile()
                           && KivDataSource::DatasetFactory::Instance()->OpenDataset(output, 0, QString());
            if (allThere) {
                status = QStringLiteral("skipped");
            } else if (!QDir().mkpath(folder)) {
                error = QStringLiteral("cannot make the output folder \"%1\"").arg(folder);
            } else {
                ReprojectionRequest request;
                request.info = base;
                request.info.strInputFile = input;
                request.info.strOutputFolder = folder;
                const bool raster = items.first().layer < 0;
                if (raster) {
                    request.info.strOutputFile = items.first().output;
                    request.info.strRasterFormat = items.first().format;
                }
                request.datasetKind = raster ? KivDataSource::DK_Raster : KivDataSource::DK_Vector;
                QStringList written, errors;
                const ReprojectionRunner::Outcome outcome = AlgorithmRun::Run(request, &written, &warnings, &errors);
                if (outcome == ReprojectionRunner::Stopped)
                    break;
                if (outcome != ReprojectionRunner::Done)
                    error = errors.join(QStringLiteral("; "));
                else
                    outputs = written;
            }
        }
        if (!error.isEmpty()) {
            status = QStringLiteral("failed");
            ++failed;
            err << kPrefix << input << ": " << error << '\n';
        } else if (status == QLatin1String("skipped")) {
            ++skipped;
        } else {
            status = QStringLiteral("done");
            ++done;
            for (const QString& path : outputs)
                out << path << '\n';
            for (const QString& warning : warnings)
                err << kPrefix << "warning: " << warning << '\n';
        }
        out.flush();
        line.insert(QStringLiteral("outputs"), QJsonArray::fromStringList(outputs));
        line.insert(QStringLiteral("status"), status);
        line.insert(QStringLiteral("seconds"), double(clock.elapsed()) / 1000.0);
        line.insert(QStringLiteral("warnings"), QJsonArray::fromStringList(warnings));
        if (!error.isEmpty())
            line.insert(QStringLiteral("error"), error);
        writeLog(line);
    }
    if (AlgorithmRun::StopRequested()) {
        err << kPrefix << "stopped; nothing partial was left behind\n";
        return 130;
    }
    if (logFailed) {
        err << kPrefix << "cannot write the log \"" << options.logPath << "\": " << log.errorString() << '\n';
        return 2;
    }
    if (failed == 0)
        return 0;
    return done + skipped > 0 ? 1 : 3;
}
