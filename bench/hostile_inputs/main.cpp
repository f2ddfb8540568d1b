// Oversized inputs: a huge coordinate file, one enormous line, a store of
// 100,000 models and a format of 10,000 fields. Each case runs in a child
// process of its own, so that its peak memory is its own; the figures are
// time, peak resident memory and what the reader made of the input.
//
//     bench_hostile_inputs [--coords-mb 2048] [--line-mb 100] [--models 100000]
//                          [--fields 10000] [--keep DIR]
//
// Exit status 0 when every case finished (or refused) without crashing and
// stayed under its memory ceiling.

#include "models/ModelStore.h"
#include "textfiles/CoordsFileStreamConverter.h"
#include "textfiles/FileFormatDirectory.h"
#include "textfiles/TextFileFormat.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <cstdio>
#include <functional>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

const char kRecord[] = "General.xml PointID Latitude Longitude altitude NoTitle \",\"";

bool writeCoords(const QString& path, qint64 bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QByteArray block;
    qint64 n = 0;
    while (block.size() < (1 << 20))
        block += QByteArray("P") + QByteArray::number(++n) + ",39.123456,116.123456,50.125\n";
    for (qint64 done = 0; done < bytes; done += block.size())
        if (file.write(block) != block.size())
            return false;
    return file.flush();
}

bool writeLongLine(const QString& path, qint64 bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write("P1,39.1,116.1,50\n");
    const QByteArray block(1 << 20, '7');
    for (qint64 done = 0; done < bytes; done += block.size())
        file.write(block);
    file.write(",1,2,3\nP2,39.2,116.2,51\n");
    return file.flush();
}

bool writeStore(const QString& path, int models)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<CoordTransform>\n<Params4/>\n<Params7>\n");
    for (int i = 0; i < models; ++i)
        file.write(QStringLiteral("<GeoTransformsModel SrcSpaRef=\"Beijing 1954\" TransName=\"model %1\" DesSpaRef=\"WGS 84\" "
                                  "DX=\"-12.500000\" DY=\"130.250000\" DZ=\"81.000000\" w=\"0.500000\" k=\"-0.250000\" "
                                  "r=\"1.750000\" m=\"0.000004100000\"/>\n")
                       .arg(i)
                       .toUtf8());
    file.write("</Params7>\n</CoordTransform>\n");
    return file.flush();
}

struct Case
{
    const char* name;
    qint64 ceilingMb;
    std::function<QString()> run; // prints nothing; returns the outcome
};

bool runCase(const Case& c)
{
    std::fflush(nullptr);
    int pipeFd[2];
    if (pipe(pipeFd) != 0)
        return false;
    const pid_t child = fork();
    if (child == 0) {
        close(pipeFd[0]);
        QElapsedTimer timer;
        timer.start();
        const QString outcome = c.run();
        const QByteArray line = QStringLiteral("%1 s, %2").arg(timer.elapsed() / 1000.0, 0, 'f', 2).arg(outcome).toUtf8();
        if (write(pipeFd[1], line.constData(), size_t(line.size())) < 0)
            _exit(3);
        _exit(0);
    }
    close(pipeFd[1]);
    QByteArray text;
    char buffer[512];
    ssize_t n;
    while ((n = read(pipeFd[0], buffer, sizeof buffer)) > 0)
        text.append(buffer, int(n));
    close(pipeFd[0]);
    int status = 0;
    struct rusage usage = {};
    wait4(child, &status, 0, &usage);
    const qint64 peakMb = usage.ru_maxrss / 1024;
    const bool ok = WIFEXITED(status) && WEXITSTATUS(status) == 0 && peakMb <= c.ceilingMb;
    std::printf("%-28s %s; peak %lld MB (ceiling %lld MB)%s\n", c.name, text.constData(), peakMb, c.ceilingMb,
                ok ? "" : (WIFSIGNALED(status) ? "  CRASHED" : "  FAILED"));
    return ok;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    qint64 coordsMb = 2048, lineMb = 100;
    int models = 100000, fields = 10000;
    QString keep;
    const QStringList args = app.arguments();
    for (int i = 1; i + 1 < args.size(); i += 2) {
        if (args[i] == "--coords-mb") coordsMb = args[i + 1].toLongLong();
        else if (args[i] == "--line-mb") lineMb = args[i + 1].toLongLong();
        else if (args[i] == "--models") models = args[i + 1].toInt();
        else if (args[i] == "--fields") fields = args[i + 1].toInt();
        else if (args[i] == "--keep") keep = args[i + 1];
    }
    QTemporaryDir temp;
    const QString dir = keep.isEmpty() ? temp.path() : keep;

    const QString coords = dir + "/big.txt", longLine = dir + "/long.txt", store = dir + "/coordtransform.xml";
    std::printf("writing the inputs in %s ...\n", qPrintable(dir));
    if (!writeCoords(coords, coordsMb << 20) || !writeLongLine(longLine, lineMb << 20) || !writeStore(store, models)) {
        std::printf("cannot write the inputs\n");
        return 2;
    }

    QStringList fieldNames{"PointID", "Latitude", "Longitude"};
    for (int i = 3; i < fields; ++i)
        fieldNames << "other";
    QByteArray wideLine = "P1,39.1,116.1";
    for (int i = 3; i < fields; ++i)
        wideLine += ",x";
    QFile wide(dir + "/wide.txt");
    if (!wide.open(QIODevice::WriteOnly) || wide.write(wideLine + "\n" + wideLine + "\n") < 0)
        return 2;
    wide.close();

    const auto readCoords = [](const QString& path, const QString& record) {
        CoordsFileStreamConverter reader;
        const int result = reader.Open(path) ? reader.Run(record, {nullptr}, nullptr, QString())
                                             : int(CoordsFileStreamConverter::CannotOpen);
        return QStringLiteral("result %1, %2 points, stop line %3").arg(result).arg(reader.PointsRead()).arg(reader.StopLine());
    };

    const Case cases[] = {
        {"coordinate file", 4 * coordsMb + 256, [&] { return readCoords(coords, kRecord); }},
        {"one long line", 12 * lineMb + 256, [&] { return readCoords(longLine, kRecord); }},
        {"store: read", 1024,
         [&] {
             const ModelStore::Reading r = ModelStore::Read(ModelStore::Params7, store);
             return QStringLiteral("%1 models, error '%2'").arg(r.models.size()).arg(r.error);
         }},
        {"store: add one", 1024,
         [&] {
             const TransformModel m{"one more", "a", "b", {1, 2, 3, 4, 5, 6, 7}};
             return QStringLiteral("result %1").arg(ModelStore::Add(ModelStore::Params7, m, nullptr, store));
         }},
        {"format: write, load, read", 512,
         [&] {
             const bool written = FileFormatDirectory::Write("Wide.xml", "NoTitle", fieldNames.join(' '), ",", dir);
             QString record;
             const bool loaded = FileFormatDirectory::LoadRecord(dir + "/Wide.xml", &record);
             return QStringLiteral("written %1, loaded %2, %3 fields; ")
                        .arg(written)
                        .arg(loaded)
                        .arg(TextFileFormat::FromRecord(record).fields.size())
                    + readCoords(dir + "/wide.txt", record);
         }},
    };
    bool ok = true;
    for (const Case& c : cases)
        ok = runCase(c) && ok;
    return ok ? 0 : 1;
}
