// Where results go: named pipes and devices are written, never replaced; a
// run that fails keeps the old output file; the real program gives its
// status as exit code and reports full disks, closed and broken pipes on
// standard output instead of exiting 0.

#include "CliRun.h"

#include "models/ModelStore.h"
#include "support/TestData.h"
#include "support/TestRegistry.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTest>
#include <QThread>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <atomic>
#include <thread>

class TestCliOutputs : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void namedPipeIsWrittenInPlace_data();
    void namedPipeIsWrittenInPlace();
    void failedRunKeepsOldOutput();
    void standardOutputErrors_data();
    void standardOutputErrors();
    void threadsAndChunksGiveTheSameResult_data();
    void threadsAndChunksGiveTheSameResult();
    void refusedFileWritesNothingToAPipe();
};

namespace {

QString scratch(const QString& name)
{
    return KivTest::scratchDir() + QLatin1Char('/') + name;
}

/// Standard input that gives some lines and then fails, as a disk or a
/// network share can in the middle of a file.
class FailingInput : public QIODevice
{
public:
    FailingInput() { open(QIODevice::ReadOnly); }

protected:
    qint64 readData(char* data, qint64 max) override
    {
        if (m_sent) {
            setErrorString(QStringLiteral("Input/output error"));
            return -1;
        }
        m_sent = true;
        const QByteArray lines("4376543.211 432109.876\n4376544.211 432110.876\n");
        const qint64 n = qMin<qint64>(max, lines.size());
        memcpy(data, lines.constData(), size_t(n));
        return n;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    bool m_sent = false;
};

} // namespace

void TestCliOutputs::init()
{
    KivTest::resetData();
    QCOMPARE(ModelStore::Add(ModelStore::Params7, {"seven-a", "Beijing 1954", "WGS 84", {-12.5, -130.3, -80.1, 0.5, -1.2, 2, 4e-6}}),
             ModelStore::Written);
}

void TestCliOutputs::namedPipeIsWrittenInPlace_data()
{
    QTest::addColumn<QStringList>("args"); // the pipe's path is appended
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<QByteArray>("expectedStart");
    const QString in = scratch(QStringLiteral("in.txt"));
    QTest::newRow("transform") << QStringList{"transform", "--from", "EPSG:2436", "--to", "EPSG:4214", in}
                               << QByteArray("4376543.211 432109.876\n") << QByteArray("39.");
    QTest::newRow("convert") << QStringList{"convert", "--format", "General", "--from", "EPSG:4214", "--to", "EPSG:4326",
                                            "--model", "seven-a", in}
                             << QByteArray("A,30,120,5\n") << QByteArray("A,29.99");
}

void TestCliOutputs::namedPipeIsWrittenInPlace()
{
    QFETCH(QStringList, args);
    QFETCH(QByteArray, input);
    QFETCH(QByteArray, expectedStart);
    QVERIFY(KivTest::writeFile(scratch(QStringLiteral("in.txt")), input));
    const QString fifo = scratch(QStringLiteral("pipe"));
    QCOMPARE(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);

    QByteArray received;
    std::thread reader([&received, fifo] {
        QFile f(fifo);
        if (f.open(QIODevice::ReadOnly))
            received = f.readAll();
    });
    const CliRun run(args << fifo);
    reader.join();
    QVERIFY2(run.status == 0, qPrintable(run.err));
    QVERIFY2(received.startsWith(expectedStart), received.constData());
    struct stat st;
    QVERIFY(::lstat(QFile::encodeName(fifo).constData(), &st) == 0 && S_ISFIFO(st.st_mode));
}

void TestCliOutputs::failedRunKeepsOldOutput()
{
    const QString out = scratch(QStringLiteral("out.txt"));
    QVERIFY(KivTest::writeFile(out, "old content\n"));
    FailingInput input;
    CliCommand::setStandardInput(&input);
    QString outText, errText;
    QTextStream outStream(&outText), errStream(&errText);
    const int status = CliRegistry::instance().run({"transform", "--from", "EPSG:2436", "--to", "EPSG:4214", "-", out},
                                                   outStream, errStream);
    errStream.flush();
    CliCommand::setStandardInput(nullptr);
    QCOMPARE(status, int(CliUsageError));
    QVERIFY2(errText.contains(QLatin1String("Input/output error")), qPrintable(errText));
    QCOMPARE(KivTest::readFile(out), QByteArray("old content\n"));
    QCOMPARE(QDir(KivTest::scratchDir()).entryList(QDir::Files), QStringList{"out.txt"});
}

void TestCliOutputs::standardOutputErrors_data()
{
    QTest::addColumn<QString>("script"); // $0 is the program, $1 a file of 200,000 points
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("err");
    QTest::newRow("full disk") << "\"$0\" transform --from EPSG:2436 --to EPSG:4214 \"$1\" > /dev/full" << 2
                               << "cannot write standard output";
    QTest::newRow("closed") << "\"$0\" transform --from EPSG:2436 --to EPSG:4214 \"$1\" >&-" << 2
                            << "cannot write standard output";
    QTest::newRow("reader goes away")
        << "set -o pipefail; \"$0\" transform --from EPSG:2436 --to EPSG:4214 \"$1\" | head -c 10 > /dev/null" << 2
        << "cannot write standard output";
    QTest::newRow("/dev/stdout as OUTPUT")
        << "\"$0\" transform --from EPSG:2436 --to EPSG:4214 \"$1\" /dev/stdout | wc -l | grep -qx 200000" << 0 << "";
    // Redirected to a file, /dev/stdout continues it: not truncated, not overwritten from its start.
    QTest::newRow("/dev/stdout into a file")
        << "{ echo first; \"$0\" transform --from EPSG:2436 --to EPSG:4214 \"$1\" /dev/stdout; } > \"$1.out\" && "
           "test \"$(wc -l < \"$1.out\")\" = 200001 && head -n 1 \"$1.out\" | grep -qx first && ! grep -qa 'x' \"$1.out\""
        << 0 << "";
    // Angles in UTF-8 through standard input whatever the locale; a bad line is reported and skipped.
    QTest::newRow("standard input, a bad line")
        << "printf '39.5 116.2\\nbad line\\n39\\302\\26030\\342\\200\\2620.000000\\342\\200\\263 "
           "116\\302\\26012\\342\\200\\2620.000000\\342\\200\\263\\n' | \"$0\" transform --from EPSG:4214 --to EPSG:2436 "
           "> \"$1.dms\"; test $? = 1 && test \"$(uniq \"$1.dms\" | wc -l)\" = 1"
        << 0 << "line 2: ";
    QTest::newRow("unknown command") << "\"$0\" nonsense" << 2 << "unknown command";
    QTest::newRow("convert to a full disk")
        << "\"$0\" convert --format General --from EPSG:4214 --to EPSG:2436 \"$1.csv\" - > /dev/full" << 2
        << "cannot write \"standard output\"";
}

void TestCliOutputs::standardOutputErrors()
{
    QFETCH(QString, script);
    QFETCH(int, status);
    QFETCH(QString, err);
    const QString program =
        QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../../../bin/coordstransform"));
    QVERIFY2(QFile::exists(program), qPrintable(program));
    const QString points = scratch(QStringLiteral("points.txt"));
    QByteArray lines, general;
    for (int i = 0; i < 200000; ++i) {
        lines += "4376543.211 432109.876\n";
        general += "P,30,117,5\n";
    }
    QVERIFY(KivTest::writeFile(points, lines) && KivTest::writeFile(points + QStringLiteral(".csv"), general));

    QProcess process;
    process.start(QStringLiteral("/bin/bash"), {"-c", script, program, points});
    QVERIFY(process.waitForFinished(60000));
    const QString messages = QString::fromUtf8(process.readAllStandardError());
    QVERIFY2(process.exitCode() == status, qPrintable(messages));
    QVERIFY2(err.isEmpty() ? messages.isEmpty() : messages.contains(err), qPrintable(messages));
}

void TestCliOutputs::threadsAndChunksGiveTheSameResult_data()
{
    QTest::addColumn<QStringList>("args"); // INPUT and OUTPUT are appended
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<int>("status");
    QByteArray points, titled, plane;
    titled = "Point,Latitude,Longitude,Height,Note\n";
    for (int i = 0; i < 60; ++i) {
        const QByteArray n = QByteArray::number(i);
        points += "P" + n + ",3" + QByteArray::number(i % 10) + ".5,114." + n + "," + n + "\n";
        titled += "P" + n + ",3" + QByteArray::number(i % 10) + ".5,114." + n + "," + n + ",note " + n + "\n";
        plane += "43765" + n + ".211 4321" + n + ".876" + (i % 2 ? " 12.5\n" : "\n");
        if (i % 9 == 4) {
            titled += "S" + n + ",x,114,1,skipped\n" + "F" + n + ",95,114,1,fails\n" + "H" + n + ",31,114,h,height\n";
            plane += "not a point\n\n" + QByteArray("4376543.211 432109.876 x\n");
        }
    }
    const QStringList convert{"convert", "--from", "EPSG:4214", "--to", "EPSG:2435", "--format"};
    QTest::newRow("convert: title, other column, skipped lines, failed points, bad heights")
        << convert + QStringList{"General_Other"} << titled << 1;
    QTest::newRow("convert: a seven-parameter model")
        << QStringList{"convert", "--from", "EPSG:4214", "--to", "EPSG:4326", "--model", "seven-a", "--format", "General"}
        << points << 0;
    // Refused only at its last line: the old output stays.
    QTest::newRow("convert: a missing column at the end") << convert + QStringList{"General"} << points + "Z,30,114\n" << 2;
    QTest::newRow("transform: unreadable lines") << QStringList{"transform", "--from", "EPSG:2436", "--to", "EPSG:4214"}
                                                 << plane << 1;
}

void TestCliOutputs::threadsAndChunksGiveTheSameResult()
{
    QFETCH(QStringList, args);
    QFETCH(QByteArray, input);
    QFETCH(int, status);
    const QString in = scratch(QStringLiteral("in.txt")), out = scratch(QStringLiteral("out.txt"));
    QVERIFY(KivTest::writeFile(in, input));
    const auto run = [&](const QStringList& extra, const QByteArray& chunk, QString* err) {
        QVERIFY(KivTest::writeFile(out, "old content\n"));
        if (chunk.isEmpty())
            qunsetenv("COORDSTRANSFORM_CHUNK_LINES");
        else
            qputenv("COORDSTRANSFORM_CHUNK_LINES", chunk);
        const CliRun r(args + extra + QStringList{in, out});
        qunsetenv("COORDSTRANSFORM_CHUNK_LINES");
        QVERIFY2(r.status == status, qPrintable(r.err));
        *err = r.err;
        QCOMPARE(QDir(KivTest::scratchDir()).entryList(QDir::Files), (QStringList{"in.txt", "out.txt"}));
    };
    QString referenceErr;
    run({"--threads", "1"}, QByteArray(), &referenceErr);
    const QByteArray reference = KivTest::readFile(out);
    if (status == 2)
        QCOMPARE(reference, QByteArray("old content\n"));
    else
        QVERIFY(reference.count('\n') > 50);
    for (const QStringList& threads : {QStringList(), QStringList{"--threads", "2"}, QStringList{"--threads", "3"}}) {
        for (const QByteArray& chunk : {QByteArray("1"), QByteArray("2"), QByteArray("7"), QByteArray()}) {
            QString err;
            run(threads, chunk, &err);
            const QByteArray where = threads.join(' ').toUtf8() + " chunks of " + chunk;
            QVERIFY2(KivTest::readFile(out) == reference, where.constData());
            QVERIFY2(err == referenceErr, qPrintable(where + ":\n" + err + "\nagainst\n" + referenceErr));
        }
    }
}

void TestCliOutputs::refusedFileWritesNothingToAPipe()
{
    // What reaches a pipe cannot be taken back: a file refused at its last
    // line must not have sent its first lines.
    QByteArray input;
    for (int i = 0; i < 1000; ++i)
        input += "A,30,120,5\n";
    QVERIFY(KivTest::writeFile(scratch(QStringLiteral("in.txt")), input + "B,31\n"));
    const QString fifo = scratch(QStringLiteral("pipe"));
    QCOMPARE(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    QByteArray received = "nothing read";
    std::atomic<bool> done(false);
    std::thread reader([&received, &done, fifo] {
        QFile f(fifo);
        if (f.open(QIODevice::ReadOnly))
            received = f.readAll();
        done = true;
    });
    qputenv("COORDSTRANSFORM_CHUNK_LINES", "10");
    const CliRun run({"convert", "--format", "General", "--from", "EPSG:4214", "--to", "EPSG:4326", "--model", "seven-a",
                      "--threads", "2", scratch(QStringLiteral("in.txt")), fifo});
    qunsetenv("COORDSTRANSFORM_CHUNK_LINES");
    // Let the reader go when the run never opened the pipe (opening for
    // writing succeeds only once the reader waits in its open).
    for (int i = 0; i < 1000 && !done; ++i) {
        const int fd = ::open(QFile::encodeName(fifo).constData(), O_WRONLY | O_NONBLOCK);
        if (fd >= 0) {
            ::close(fd);
            break;
        }
        QThread::msleep(10);
    }
    reader.join();
    QCOMPARE(run.status, int(CliUsageError));
    QVERIFY2(run.err.contains(QLatin1String("line 1001 of")), qPrintable(run.err));
    QCOMPARE(received, QByteArray());
}

KIV_TEST_CLASS(TestCliOutputs)
#include "tst_CliOutputs.moc"
