// Kills writers at random moments and checks what they leave behind.
//
//     kiv_fault_writer KIND FOLDER ROUNDS SEED
//
// KIND is store, format or coords. Each round forks a child that rewrites
// the file in FOLDER over and over, each time with a higher version number;
// after a random delay (20 microseconds to 20 milliseconds or more) the child is
// killed with SIGKILL and the file must hold one complete version, never
// older than the last one seen. The supervisor is a process of its own,
// without threads, so that forking it is safe.
//
//     kiv_fault_writer concurrent FOLDER EACH
//
// has two processes add EACH models each to one store at once (see
// concurrentWriters).
//
// Prints "rounds R advanced A interrupted I" (A: rounds after which the file
// held a newer version, I: rounds whose kill landed inside a write) and exits
// 0, or names the first bad round and exits 1.

#include "models/ModelStore.h"
#include "textfiles/CoordsFileStreamConverter.h"
#include "spatialref/CoordinateConversion.h"
#include "KivGeometry/SpatialReferenceFactory.h"
#include "textfiles/FileFormatDirectory.h"
#include "textfiles/TextFileFormat.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <random>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

const int kFixedModels = 100;
const int kPoints = 2000;
const char kRecord[] = "F.xml PointID Longitude Latitude altitude Title \",\"";

struct Check
{
    bool ok = false;
    qint64 version = -1;
    QString why;
};

// --- the model store ---------------------------------------------------

QString storePath(const QString& folder) { return folder + QStringLiteral("/coordtransform.xml"); }

TransformModel versioned(qint64 v)
{
    return TransformModel{QStringLiteral("m"), QStringLiteral("src"), QStringLiteral("dst"),
                          {double(v), double(-v), double(v) / 8, 1.0}};
}

bool initStore(const QString& folder)
{
    QFile file(storePath(folder));
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<CoordTransform>\n<Params4/>\n<Params7/>\n</CoordTransform>\n");
    file.close();
    // A store of some size, so that a rewrite takes long enough to be hit.
    for (int i = 0; i < kFixedModels; ++i) {
        const TransformModel m{QStringLiteral("fixed %1").arg(i), QStringLiteral("Beijing 1954"),
                               QStringLiteral("Xian 1980"), {0.5 * i, -2.25, 0.000123, 1.0000001}};
        if (ModelStore::Add(ModelStore::Params4, m, nullptr, storePath(folder)) != ModelStore::Written)
            return false;
    }
    return ModelStore::Add(ModelStore::Params4, versioned(0), nullptr, storePath(folder)) == ModelStore::Written;
}

void writeStore(const QString& folder, qint64 v)
{
    ModelStore::Add(ModelStore::Params4, versioned(v), [] { return true; }, storePath(folder));
}

Check checkStore(const QString& folder)
{
    Check c;
    const ModelStore::Reading r = ModelStore::Read(ModelStore::Params4, storePath(folder));
    if (!r.error.isEmpty()) {
        c.why = r.error;
        return c;
    }
    if (r.models.size() != kFixedModels + 1 || r.models.last().TransName != QLatin1String("m")) {
        c.why = QStringLiteral("%1 models, the last named %2").arg(r.models.size()).arg(r.models.value(r.models.size() - 1).TransName);
        return c;
    }
    const QList<double>& p = r.models.last().Params;
    if (p.size() != 4 || p[1] != -p[0] || p[2] != p[0] / 8 || p[3] != 1.0) {
        c.why = QStringLiteral("inconsistent parameters of the rewritten model");
        return c;
    }
    c.ok = true;
    c.version = qint64(p[0]);
    return c;
}

// --- a text-file format ------------------------------------------------

QString formatFields(qint64 v) { return QStringLiteral("PointID Longitude Latitude altitude v%1").arg(v); }

bool initFormat(const QString& folder)
{
    return FileFormatDirectory::Write(QStringLiteral("F.xml"), QStringLiteral("Title"), formatFields(0),
                                      QStringLiteral(","), folder);
}

void writeFormat(const QString& folder, qint64 v)
{
    FileFormatDirectory::Write(QStringLiteral("F.xml"), QStringLiteral("Title"), formatFields(v), QStringLiteral(","), folder);
}

Check checkFormat(const QString& folder)
{
    Check c;
    QString record;
    if (!FileFormatDirectory::LoadRecord(folder + QStringLiteral("/F.xml"), &record)) {
        c.why = QStringLiteral("the format file does not load");
        return c;
    }
    const TextFileFormat f = TextFileFormat::FromRecord(record);
    bool number = false;
    const qint64 v = f.fields.value(4).mid(1).toLongLong(&number);
    if (f.fields.size() != 5 || !number || f.separator != QLatin1String(",") || !f.hasTitle
        || QStringList(f.fields.mid(0, 4)).join(' ') != QLatin1String("PointID Longitude Latitude altitude")) {
        c.why = QStringLiteral("unexpected record: ") + record;
        return c;
    }
    c.ok = true;
    c.version = v;
    return c;
}

// --- a converted coordinate file ---------------------------------------

QString coordsPath(const QString& folder) { return folder + QStringLiteral("/out.csv"); }

// Written the way the file dialog and `convert` write: the stream converter
// through its output file. Both systems are geographic and alike, so every
// point goes through unchanged.
void writeCoords(const QString& folder, qint64 v)
{
    const QString input = folder + QStringLiteral("/in-%1.txt").arg(getpid());
    QByteArray text("id,lon,lat,h\n");
    for (int i = 0; i < kPoints; ++i)
        text += QStringLiteral("P%1,%2,%3,%4\n").arg(v).arg(116.25 + i * 1e-4, 0, 'f', 6).arg(39.5 + i * 1e-4, 0, 'f', 6).arg(v).toLatin1();
    QFile file(input);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        return;
    file.close();
    const auto wgs84 = KivGeometry::SpatialReferenceFactory::CreateSpatialReference(QStringLiteral("EPSG:4326"));
    const CoordinateConversion conversion(wgs84, wgs84);
    CoordsFileStreamConverter stream;
    QString error;
    if (stream.Open(input))
        stream.RunToFile(QString::fromLatin1(kRecord), {&conversion}, coordsPath(folder), coordsPath(folder), &error);
    QFile::remove(input);
}

bool initCoords(const QString& folder)
{
    writeCoords(folder, 0);
    return QFile::exists(coordsPath(folder));
}

Check checkCoords(const QString& folder)
{
    Check c;
    CoordsFileStreamConverter reader;
    reader.SetKeptPoints(kPoints + 1);
    if (!reader.Open(coordsPath(folder))
        || reader.Run(QString::fromLatin1(kRecord), {nullptr}, nullptr, QString()) != CoordsFileStreamConverter::Success) {
        c.why = QStringLiteral("the output does not read back (line %1)").arg(reader.StopLine());
        return c;
    }
    const auto& points = reader.KeptPoints();
    if (points.Size() != size_t(kPoints) || reader.SkippedLines() != 0) {
        c.why = QStringLiteral("%1 points read back").arg(points.Size());
        return c;
    }
    const QString id = points.Id(0);
    const qint64 v = qint64(points.H(0));
    for (int i = 0; i < kPoints; ++i) {
        const CoordsPoint p = points.At(size_t(i));
        if (p.id != id || p.h != double(v) || std::abs(p.east - (116.25 + i * 1e-4)) > 1e-6
            || std::abs(p.north - (39.5 + i * 1e-4)) > 1e-6) {
            c.why = QStringLiteral("point %1 does not belong to the version of the first").arg(i + 1);
            return c;
        }
    }
    if (id != QStringLiteral("P%1").arg(v)) {
        c.why = QStringLiteral("point names and heights disagree");
        return c;
    }
    c.ok = true;
    c.version = v;
    return c;
}

// --- two writers at once -------------------------------------------------

/// Two processes add `each` models apiece to one store while this one reads
/// it all along: every reading must be a complete store that lost nothing it
/// once held, and in the end all 2 * `each` models are there.
int concurrentWriters(const QString& folder, int each)
{
    QDir().mkpath(folder);
    const QString path = storePath(folder);
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly))
            return 1;
        file.write("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<CoordTransform>\n<Params4/>\n<Params7/>\n</CoordTransform>\n");
    }
    std::fflush(nullptr);
    pid_t children[2];
    for (int w = 0; w < 2; ++w) {
        children[w] = fork();
        if (children[w] < 0) {
            std::perror("fork");
            return 1;
        }
        if (children[w] == 0) {
            alarm(60);
            for (int i = 0; i < each; ++i) {
                const TransformModel m{QStringLiteral("writer %1 model %2").arg(w).arg(i), QStringLiteral("src"),
                                       QStringLiteral("dst"), {double(i), double(w), 0.0, 1.0}};
                if (ModelStore::Add(ModelStore::Params4, m, nullptr, path) != ModelStore::Written)
                    _exit(1);
            }
            _exit(0);
        }
    }
    int readings = 0, running = 2, failed = 0;
    QStringList seen;
    while (running > 0) {
        int status = 0;
        const pid_t done = waitpid(-1, &status, WNOHANG);
        if (done > 0) {
            --running;
            failed += !(WIFEXITED(status) && WEXITSTATUS(status) == 0);
            continue;
        }
        const ModelStore::Reading r = ModelStore::Read(ModelStore::Params4, path);
        ++readings;
        QStringList names;
        for (const TransformModel& m : r.models)
            names << m.TransName;
        const bool lost = std::any_of(seen.begin(), seen.end(), [&](const QString& n) { return !names.contains(n); });
        if (!r.error.isEmpty() || lost) {
            std::printf("reading %d: %s\n", readings, r.error.isEmpty() ? "a model was lost" : qPrintable(r.error));
            return 1;
        }
        seen = names;
    }
    const ModelStore::Reading end = ModelStore::Read(ModelStore::Params4, path);
    QStringList names;
    for (const TransformModel& m : end.models)
        names << m.TransName;
    names.removeDuplicates();
    std::printf("writers 2 failed %d models %d readings %d\n", failed, int(names.size()), readings);
    return failed == 0 && names.size() == 2 * each && end.models.size() == 2 * each ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 4 && QLatin1String(argv[1]) == QLatin1String("concurrent"))
        return concurrentWriters(QFile::decodeName(argv[2]), atoi(argv[3]));
    if (argc != 5) {
        std::fprintf(stderr, "usage: %s store|format|coords FOLDER ROUNDS SEED\n", argv[0]);
        return 2;
    }
    const QString kind = QString::fromLocal8Bit(argv[1]);
    const QString folder = QFile::decodeName(argv[2]);
    const int rounds = atoi(argv[3]);
    std::mt19937 random(unsigned(atol(argv[4])));

    bool (*init)(const QString&) = nullptr;
    void (*write)(const QString&, qint64) = nullptr;
    Check (*check)(const QString&) = nullptr;
    if (kind == QLatin1String("store")) {
        init = initStore, write = writeStore, check = checkStore;
    } else if (kind == QLatin1String("format")) {
        init = initFormat, write = writeFormat, check = checkFormat;
    } else if (kind == QLatin1String("coords")) {
        init = initCoords, write = writeCoords, check = checkCoords;
    } else {
        std::fprintf(stderr, "unknown kind %s\n", argv[1]);
        return 2;
    }
    QDir().mkpath(folder);
    if (!init(folder)) {
        std::fprintf(stderr, "cannot write the first version in %s\n", argv[2]);
        return 1;
    }
    Check last = check(folder);
    if (!last.ok) {
        std::fprintf(stderr, "the first version is bad: %s\n", qPrintable(last.why));
        return 1;
    }
    // How long one write takes, so that the kills spread over whole writes.
    QElapsedTimer timer;
    timer.start();
    const int timed = 5;
    for (int i = 0; i < timed; ++i)
        write(folder, last.version);
    const double writeUs = std::max(50.0, timer.nsecsElapsed() / 1000.0 / timed);

    // The child marks in shared memory whether it is inside a write, so that
    // the rounds that hit one can be counted.
    auto* inWrite = static_cast<volatile int*>(
        mmap(nullptr, sizeof(int), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    if (inWrite == MAP_FAILED) {
        std::perror("mmap");
        return 1;
    }

    // Delays spread evenly over the logarithm from 20 us to four writes (at
    // least 20 ms: on a busy machine the child may wait that long to run), so
    // that every phase (before the first write, opening, writing, renaming,
    // between writes) gets hit.
    std::uniform_real_distribution<double> logDelay(std::log(20.0), std::log(std::max(20000.0, 4 * writeUs)));
    int advanced = 0, interrupted = 0;
    for (int round = 1; round <= rounds; ++round) {
        const qint64 start = last.version;
        *inWrite = 0;
        std::fflush(nullptr);
        const pid_t child = fork();
        if (child < 0) {
            std::perror("fork");
            return 1;
        }
        if (child == 0) {
            alarm(5); // never outlive a supervisor that died
            for (qint64 v = start + 1;; ++v) {
                *inWrite = 1;
                write(folder, v);
                *inWrite = 0;
            }
        }
        usleep(useconds_t(std::exp(logDelay(random))));
        kill(child, SIGKILL);
        int status = 0;
        waitpid(child, &status, 0);
        if (*inWrite)
            ++interrupted;

        const Check now = check(folder);
        if (!now.ok || now.version < last.version) {
            std::printf("round %d: %s\n", round,
                        now.ok ? qPrintable(QStringLiteral("version %1 after %2").arg(now.version).arg(last.version))
                               : qPrintable(now.why));
            return 1;
        }
        if (now.version > last.version)
            ++advanced;
        last = now;
    }
    std::printf("rounds %d advanced %d interrupted %d (one write %.0f us)\n", rounds, advanced, interrupted, writeUs);
    return 0;
}
