// Where results go: named pipes and devices are written, never replaced; a
// run that fails keeps the old output file; the real program reports full
// disks, closed and broken pipes on standard output instead of exiting 0.

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

#include <sys/stat.h>
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

KIV_TEST_CLASS(TestCliOutputs)
#include "tst_CliOutputs.moc"
