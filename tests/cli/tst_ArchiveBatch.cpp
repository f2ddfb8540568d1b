// Archive batches of "coordstransform reproject": shares that cover the list
// exactly once, a killed run resumed without converting anything twice, a
// log line per input, and inputs that would overwrite each other.

#include "ArchiveBatch.h"
#include "CliRun.h"

#include "support/DatasetFixtures.h"
#include "support/TestRegistry.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

class TestArchiveBatch : public QObject
{
    Q_OBJECT
private slots:
    void sharesCoverTheListOnce_data();
    void sharesCoverTheListOnce();
    void badShards_data();
    void badShards();
    void resumesAndLogs();
    void foldersKeepTheirLayout();
};

void TestArchiveBatch::sharesCoverTheListOnce_data()
{
    QTest::addColumn<int>("count");
    for (int n : {1, 2, 7})
        QTest::addRow("%d shards", n) << n;
}

void TestArchiveBatch::sharesCoverTheListOnce()
{
    QFETCH(int, count);
    QStringList inputs;
    for (int i = 0; i < 500; ++i)
        inputs << QStringLiteral("/archive/sheet %1/J50G%2.tif").arg(i % 13).arg(i, 6, 10, QLatin1Char('0'));
    QSet<QString> seen;
    for (int k = 1; k <= count; ++k) {
        int index = -1, n = 0;
        QString error;
        QVERIFY(ArchiveBatch::ParseShard(QStringLiteral("%1/%2").arg(k).arg(count), &index, &n, &error));
        // A Slurm array numbered from 1 and a Kubernetes index from 0 name the same share.
        for (const auto& env : {QStringList{"SLURM_ARRAY_TASK_ID", "SLURM_ARRAY_TASK_COUNT", "SLURM_ARRAY_TASK_MIN"},
                                QStringList{"JOB_COMPLETION_INDEX", "COORDSTRANSFORM_SHARD_COUNT"}}) {
            const bool slurm = env.size() == 3;
            qputenv(qPrintable(env[0]), QByteArray::number(slurm ? k : k - 1));
            qputenv(qPrintable(env[1]), QByteArray::number(count));
            if (slurm)
                qputenv(qPrintable(env[2]), "1");
            int autoIndex = -1, autoCount = 0;
            QVERIFY2(ArchiveBatch::ParseShard(QStringLiteral("auto"), &autoIndex, &autoCount, &error), qPrintable(error));
            QCOMPARE(autoIndex * 1000 + autoCount, index * 1000 + n);
            for (const QString& name : env)
                qunsetenv(qPrintable(name));
        }
        for (const QString& input : inputs)
            if (ArchiveBatch::ShardOf(input, n) == index) {
                QVERIFY2(!seen.contains(input), qPrintable(input));
                seen.insert(input);
            }
    }
    QCOMPARE(seen.size(), inputs.size());
    // The same path in another spelling lands in the same share.
    QCOMPARE(ArchiveBatch::ShardOf(QStringLiteral("/archive/./a//b.tif"), count),
             ArchiveBatch::ShardOf(QStringLiteral("/archive/a/b.tif"), count));
}

void TestArchiveBatch::badShards_data()
{
    QTest::addColumn<QString>("shard");
    QTest::addColumn<QString>("message");
    QTest::newRow("zero") << "0/3" << "1 <= K <= N";
    QTest::newRow("past the count") << "4/3" << "1 <= K <= N";
    QTest::newRow("not a share") << "half" << "K/N";
    QTest::newRow("auto without a scheduler") << "auto" << "SLURM_ARRAY_TASK_ID";
}

void TestArchiveBatch::badShards()
{
    QFETCH(QString, shard);
    QFETCH(QString, message);
    qunsetenv("SLURM_ARRAY_TASK_ID");
    qunsetenv("JOB_COMPLETION_INDEX");
    QTemporaryDir dir;
    const CliRun run({QStringLiteral("reproject"), QStringLiteral("--to"), QStringLiteral("EPSG:4214"),
                      QStringLiteral("--shard"), shard, QStringLiteral("--folder"), dir.path(),
                      dir.filePath(QStringLiteral("in.tif"))});
    QCOMPARE(run.status, 2);
    QVERIFY2(run.err.contains(message), qPrintable(run.err));
}

void TestArchiveBatch::resumesAndLogs()
{
    using namespace DatasetFixtures;
    QTemporaryDir dir;
    const QDir root(dir.path());
    QVERIFY(root.mkpath(QStringLiteral("a")) && root.mkpath(QStringLiteral("b")) && root.mkpath(QStringLiteral("out")));
    const QString a = root.filePath(QStringLiteral("a/one.tif")), b = root.filePath(QStringLiteral("a/two.tif"));
    const QString twin = root.filePath(QStringLiteral("b/one.tif")), shp = root.filePath(QStringLiteral("a/line.shp"));
    QVERIFY(writeRaster(a, QStringLiteral("EPSG:2436")) && writeRaster(b, QStringLiteral("EPSG:2436"))
            && writeRaster(twin, QStringLiteral("EPSG:2436")));
    QVERIFY(writePoints(shp, QStringLiteral("EPSG:2436"), {432000, 4377000, 432100, 4377100}));
    const QString missing = root.filePath(QStringLiteral("a/missing.tif"));
    const QString list = root.filePath(QStringLiteral("list.txt"));
    QFile file(list);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QStringList{a, "# a comment", b, missing, twin, shp, ""}.join(QLatin1Char('\n')).toUtf8());
    file.close();
    const QString log = root.filePath(QStringLiteral("run.jsonl"));
    const QStringList args{QStringLiteral("reproject"), QStringLiteral("--to"), QStringLiteral("EPSG:4214"),
                           QStringLiteral("--list"), list, QStringLiteral("--skip-existing"),
                           QStringLiteral("--log"), log, QStringLiteral("--folder"), root.filePath(QStringLiteral("out"))};

    const auto statuses = [&log]() {
        QFile f(log);
        QStringList result;
        if (f.open(QIODevice::ReadOnly))
            for (const QByteArray& line : f.readAll().split('\n'))
                if (!line.isEmpty())
                    result << QJsonDocument::fromJson(line).object().value(QStringLiteral("status")).toString();
        return result;
    };
    const CliRun first(args);
    QCOMPARE(first.status, 1); // the missing file and the twin fail, the others are done
    QCOMPARE(statuses(), (QStringList{"done", "done", "failed", "failed", "done"}));
    QVERIFY2(first.err.contains(QStringLiteral("is also the output of \"%1\"").arg(a)), qPrintable(first.err));
    const QStringList written = QDir(root.filePath(QStringLiteral("out"))).entryList(QDir::Files | QDir::Hidden);
    QVERIFY2(written.contains(QStringLiteral("one.tif")) && written.contains(QStringLiteral("line.shp")),
             qPrintable(written.join(' ')));

    // Run again, as after a killed worker: what is there is not made again.
    const QDateTime before = QFileInfo(root.filePath(QStringLiteral("out/one.tif"))).lastModified();
    const CliRun second(args);
    QCOMPARE(second.status, 1);
    QCOMPARE(statuses().mid(5), (QStringList{"skipped", "skipped", "failed", "failed", "skipped"}));
    QCOMPARE(QFileInfo(root.filePath(QStringLiteral("out/one.tif"))).lastModified(), before);

    // Nothing done at all: its own status.
    const CliRun none({QStringLiteral("reproject"), QStringLiteral("--from"), QStringLiteral("EPSG:2436"),
                       QStringLiteral("--to"), QStringLiteral("EPSG:4214"),
                       QStringLiteral("--log"), log, QStringLiteral("--folder"), root.filePath(QStringLiteral("out")),
                       missing});
    QCOMPARE(none.status, 3);
}

void TestArchiveBatch::foldersKeepTheirLayout()
{
    using namespace DatasetFixtures;
    QTemporaryDir dir;
    const QDir root(dir.path());
    QVERIFY(root.mkpath(QStringLiteral("src/a")) && root.mkpath(QStringLiteral("src/b/c"))
            && root.mkpath(QStringLiteral("out")));
    QVERIFY(writeRaster(root.filePath(QStringLiteral("src/a/x.tif")), QStringLiteral("EPSG:2436"))
            && writeRaster(root.filePath(QStringLiteral("src/b/c/y.tif")), QStringLiteral("EPSG:2436")));
    QVERIFY(writePoints(root.filePath(QStringLiteral("src/b/p.shp")), QStringLiteral("EPSG:2436"), {432000, 4377000}));
    QStringList args{QStringLiteral("reproject"), QStringLiteral("--from"), QStringLiteral("EPSG:2436"),
                     QStringLiteral("--to"), QStringLiteral("EPSG:4214"), QStringLiteral("--folder"),
                     root.filePath(QStringLiteral("out")), root.filePath(QStringLiteral("src"))};
    const CliRun refused(args);
    QCOMPARE(refused.status, 2);
    QVERIFY2(refused.err.contains(QLatin1String("give --recursive")), qPrintable(refused.err));
    const CliRun run(args << QStringLiteral("--recursive"));
    QVERIFY2(run.status == 0, qPrintable(run.err));
    for (const char* output : {"out/a/x.tif", "out/b/c/y.tif", "out/b/p.shp"})
        QVERIFY2(QFileInfo(root.filePath(QLatin1String(output))).isFile(), output);

    // Vector data as GeoPackages instead, read back with its points converted.
    const CliRun gpkg(args << QStringLiteral("--vector-format") << QStringLiteral("GPKG"));
    QVERIFY2(gpkg.status == 0, qPrintable(gpkg.err));
    const std::vector<double> points = readPoints(root.filePath(QStringLiteral("out/b/p.gpkg")));
    QCOMPARE(points.size(), size_t(2));
    QVERIFY(points[0] > 116.0 && points[0] < 118.0 && points[1] > 39.0 && points[1] < 40.0);
}

KIV_TEST_CLASS(TestArchiveBatch)
#include "tst_ArchiveBatch.moc"
