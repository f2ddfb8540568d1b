#include "CliRegistry.h"

#include "support/TestData.h"
#include "support/TestRegistry.h"

#include <QTest>
#include <QTextStream>

class TestCliRegistry : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }
    void dispatch_data();
    void dispatch();
};

void TestCliRegistry::dispatch_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("outContains");
    QTest::addColumn<QString>("errContains");

    QTest::newRow("no arguments") << QStringList{} << 2 << QString() << "Usage: coordstransform";
    QTest::newRow("--help lists commands") << QStringList{"--help"} << 0 << "  transform" << QString();
    QTest::newRow("help") << QStringList{"help"} << 0 << "Commands:" << QString();
    QTest::newRow("command --help") << QStringList{"transform", "--from", "x", "--help"} << 0
                                    << "Usage: coordstransform transform" << QString();
    QTest::newRow("help command") << QStringList{"help", "transform"} << 0
                                  << "Usage: coordstransform transform" << QString();
    QTest::newRow("unknown command") << QStringList{"frobnicate"} << 2 << QString()
                                     << "unknown command \"frobnicate\"";
    QTest::newRow("unknown option") << QStringList{"transform", "--bogus"} << 2 << QString() << "bogus";
}

void TestCliRegistry::dispatch()
{
    QFETCH(QStringList, args);
    QFETCH(int, status);
    QFETCH(QString, outContains);
    QFETCH(QString, errContains);
    QString outText, errText;
    QTextStream out(&outText), err(&errText);
    QCOMPARE(CliRegistry::instance().run(args, out, err), status);
    QVERIFY2(outContains.isEmpty() || outText.contains(outContains), qPrintable(outText));
    QVERIFY2(errContains.isEmpty() || errText.contains(errContains), qPrintable(errText));
    if (status == 0)
        QVERIFY(errText.isEmpty());
}

KIV_TEST_CLASS(TestCliRegistry)
#include "tst_CliRegistry.moc"
