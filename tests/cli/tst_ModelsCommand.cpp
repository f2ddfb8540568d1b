#include "CliRun.h"

#include "models/ModelStore.h"

#include "support/TestData.h"
#include "support/TestRegistry.h"

#include <QTest>

class TestModelsCommand : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }
    void lists_data();
    void lists();
};

void TestModelsCommand::lists_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<int>("status");
    QTest::addColumn<QStringList>("lines");

    const QString header = QStringLiteral("kind\tname\tsource\ttarget\tparameters");
    const QString seven = QStringLiteral("7\t北京54 <to> \"WGS 84\"\tBeijing 1954\tWGS 84\t"
                                         "DX=15.800000 DY=-154.400000 DZ=-82.300000 w=0.520000 k=-1.310000 "
                                         "r=2.170000 m=0.000003500000");
    const QString four = QStringLiteral("4\tzone 39 local\tBeijing 1954 / 3-degree Gauss-Kruger CM 117E\tlocal\t"
                                        "DX=-35.200000 DY=120.700000 T=0.012500 K=1.000012300000");
    const QString four2 = QStringLiteral("4\tshift\ta\tb\tDX=0.500000 DY=0.000000 T=0.000000 K=1.000000000000");
    QTest::newRow("all, seven first") << QStringList{"models"} << 0 << QStringList{header, seven, four, four2};
    QTest::newRow("--kind 4") << QStringList{"models", "--kind", "4"} << 0 << QStringList{header, four, four2};
    QTest::newRow("--kind=7") << QStringList{"models", "--kind=7"} << 0 << QStringList{header, seven};
    QTest::newRow("--kind 5") << QStringList{"models", "--kind", "5"} << 2 << QStringList{};
    QTest::newRow("stray argument") << QStringList{"models", "x"} << 2 << QStringList{};
}

void TestModelsCommand::lists()
{
    QFETCH(QStringList, args);
    QFETCH(int, status);
    QFETCH(QStringList, lines);
    QCOMPARE(ModelStore::Add(ModelStore::Params4,
                             {QStringLiteral("zone 39 local"), QStringLiteral("Beijing 1954 / 3-degree Gauss-Kruger CM 117E"),
                              QStringLiteral("local"), {-35.2, 120.7, 0.0125, 1.0000123}}),
             ModelStore::Written);
    QCOMPARE(ModelStore::Add(ModelStore::Params7,
                             {QStringLiteral("北京54 <to> \"WGS 84\""), QStringLiteral("Beijing 1954"),
                              QStringLiteral("WGS 84"), {15.8, -154.4, -82.3, 0.52, -1.31, 2.17, 3.5e-6}}),
             ModelStore::Written);
    QCOMPARE(ModelStore::Add(ModelStore::Params4, {QStringLiteral("shift"), QStringLiteral("a"), QStringLiteral("b"),
                                                   {0.5, 0, 0, 1}}),
             ModelStore::Written);
    const CliRun run(args);
    QCOMPARE(run.status, status);
    if (status == 0) {
        QCOMPARE(run.outLines(), lines);
        QVERIFY(run.err.isEmpty());
    } else {
        QVERIFY(!run.err.isEmpty());
    }
}

KIV_TEST_CLASS(TestModelsCommand)
#include "tst_ModelsCommand.moc"
