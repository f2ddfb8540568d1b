#include "support/DatasetFixtures.h"
#include "support/TestRegistry.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

namespace {

QByteArray contentOf(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
}

} // namespace

// Each writer is killed a few hundred times at random moments by the helper
// program; it checks the file after every kill and reports the figures.
class WriterKillTest : public QObject
{
    Q_OBJECT

private slots:
    void killedWriterLeavesCompleteFile_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<int>("rounds");
        QTest::newRow("model store") << "store" << 250;
        QTest::newRow("format file") << "format" << 250;
        QTest::newRow("converted coordinate file") << "coords" << 250;
    }

    void killedWriterLeavesCompleteFile()
    {
        QFETCH(QString, kind);
        QFETCH(int, rounds);
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        // A folder name with a blank, a dot and Chinese characters.
        const QString folder = dir.filePath(QStringLiteral("out put.d \u6570\u636e"));

        QProcess writer;
        writer.setProcessChannelMode(QProcess::MergedChannels);
        const quint32 seed = QRandomGenerator::global()->generate();
        writer.start(QStringLiteral(KIV_FAULT_WRITER),
                     {kind, folder, QString::number(rounds), QString::number(seed)});
        QVERIFY(writer.waitForStarted());
        QVERIFY2(writer.waitForFinished(60000), "the kill rounds did not finish in a minute");
        const QString output = QString::fromLocal8Bit(writer.readAll()).trimmed();
        QVERIFY2(writer.exitStatus() == QProcess::NormalExit && writer.exitCode() == 0,
                 qPrintable(QStringLiteral("seed %1: %2").arg(seed).arg(output)));

        const QRegularExpressionMatch m =
            QRegularExpression(QStringLiteral("rounds (\\d+) advanced (\\d+) interrupted (\\d+)")).match(output);
        QVERIFY2(m.hasMatch(), qPrintable(output));
        QCOMPARE(m.captured(1).toInt(), rounds);
        // The kills must not all land before the first write finished, or
        // nothing was tested.
        QVERIFY2(m.captured(2).toInt() > 0, qPrintable(output));
        // ... nor all between writes.
        QVERIFY2(m.captured(3).toInt() > 0, qPrintable(output));
        qInfo("%s: %s", qPrintable(kind), qPrintable(output));
    }

    // Two processes adding models at once through the store's lock.
    void concurrentWritersLoseNothing()
    {
        QTemporaryDir dir;
        QProcess writer;
        writer.setProcessChannelMode(QProcess::MergedChannels);
        writer.start(QStringLiteral(KIV_FAULT_WRITER),
                     {QStringLiteral("concurrent"), dir.filePath(QStringLiteral("st ore.d \u6570")), QStringLiteral("100")});
        QVERIFY(writer.waitForFinished(120000));
        const QString output = QString::fromLocal8Bit(writer.readAll()).trimmed();
        QVERIFY2(writer.exitStatus() == QProcess::NormalExit && writer.exitCode() == 0, qPrintable(output));
        QVERIFY2(output.contains(QStringLiteral("models 200")), qPrintable(output));
        qInfo("%s", qPrintable(output));
    }

    // coordstransform reproject killed while it writes a GeoTIFF over an old
    // one: the output is always the old file or the complete new one.
    void killedReprojectionLeavesCompleteDataset()
    {
        const QString program =
            QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../../../bin/coordstransform"));
        QVERIFY2(QFile::exists(program), qPrintable(program));
        QTemporaryDir dir;
        const QString input = dir.filePath(QStringLiteral("in.tif")), output = dir.filePath(QStringLiteral("out.tif"));
        QVERIFY(DatasetFixtures::writeRaster(input, "EPSG:2436", 400));
        const QStringList args{"reproject", "--from", "EPSG:2436", "--to", "EPSG:4326", "--params7",
                               "15.8,-154.4,-82.3,0.52,-1.31,2.17,3.5e-6", input, output};
        // The complete new version, and how long writing it takes.
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(QProcess::execute(program, args), 0);
        const qint64 duration = qMax<qint64>(clock.elapsed(), 20);
        const QByteArray complete = contentOf(output);
        const QByteArray old("an older output that only a complete new one may replace\n");

        int rounds = 0, replaced = 0, kept = 0;
        for (; rounds < 60; ++rounds) {
            QFile f(output);
            QVERIFY(f.open(QIODevice::WriteOnly) && f.write(old) == old.size());
            f.close();
            QProcess run;
            run.start(program, args);
            QVERIFY(run.waitForStarted());
            QThread::usleep(QRandomGenerator::global()->bounded(quint32(duration * 1000)));
            run.kill();
            run.waitForFinished(10000);
            const QByteArray now = contentOf(output);
            QVERIFY2(now == old || now == complete, qPrintable(QStringLiteral("round %1: %2 bytes").arg(rounds).arg(now.size())));
            (now == complete ? replaced : kept)++;
        }
        qInfo("dataset: rounds %d replaced %d kept %d", rounds, replaced, kept);
        QVERIFY(kept > 0);
    }
};

KIV_TEST_CLASS(WriterKillTest)
#include "tst_WriterKill.moc"
