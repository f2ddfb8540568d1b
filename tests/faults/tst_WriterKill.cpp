#include "support/TestRegistry.h"

#include <QProcess>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

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
};

KIV_TEST_CLASS(WriterKillTest)
#include "tst_WriterKill.moc"
