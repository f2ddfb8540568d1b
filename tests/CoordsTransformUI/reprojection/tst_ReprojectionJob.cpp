// The steps around a running reprojection, with a scripted algorithm: what
// reaches the progress indicator, the message boxes and the map for each
// ending, and that the algorithm is deleted exactly once.

#include "support/DatasetFixtures.h"

#include "reprojection/ReprojectionJob.h"
#include "support/FakeHost.h"
#include "support/FilesDialogSteps.h"
#include "support/TestRegistry.h"

#include "KivAlgo/Algorithm.h"

#include <QTest>

using KivTest::ModalDriver;

class TestReprojectionJob : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void progress_data();
    void progress();
    void endings_data();
    void endings();
    void cancelOrder_data();
    void cancelOrder();
};

namespace {

int g_alive = 0;

/// An algorithm whose ending the test writes: error code, message and the
/// record handed back.
class ScriptedAlgorithm : public KivAlgo::Algorithm
{
public:
    ScriptedAlgorithm() { ++g_alive; }
    ~ScriptedAlgorithm() override { --g_alive; }
    void end(int code, const QString& message, const boost::any& parameters)
    {
        SetError(code, message);
        Parameters() = parameters;
    }

protected:
    bool Execute() override { return true; }
};

QString scratch(const QString& name)
{
    return KivTest::scratchDir() + QLatin1Char('/') + name;
}

QStringList layerNames(const KivUtility::_ptr_t<KivCarto::Map>& map)
{
    QStringList names;
    for (int i = 0; i < map->GetLayerCount(); ++i)
        names << QFileInfo(map->GetLayer(i)->GetSourcePath()).fileName();
    return names;
}

} // namespace

void TestReprojectionJob::init()
{
    KivTest::resetData();
    QVERIFY(DatasetFixtures::writeRaster(scratch("a.tif"), "EPSG:4326", 8, 116, 40, 0.01));
    QVERIFY(DatasetFixtures::writePoints(scratch("b.shp"), "EPSG:4326", {116.4, 39.9}));
    QVERIFY(DatasetFixtures::writePoints(scratch("c.shp"), "EPSG:4326", {116.5, 39.8}));
}

void TestReprojectionJob::progress_data()
{
    QTest::addColumn<double>("percent");
    QTest::addColumn<QStringList>("calls");
    QTest::newRow("below 100") << 99.9 << QStringList{"show 99.9 half"};
    QTest::newRow("exactly 100 waits for the completion") << 100.0 << QStringList{};
    QTest::newRow("above 100") << 250.0 << QStringList{};
}

void TestReprojectionJob::progress()
{
    QFETCH(double, percent);
    QFETCH(QStringList, calls);
    KivTest::FakeHost host;
    QCOMPARE(ReprojectionJob::ShowProgress(&host, percent, QStringLiteral("half")), 1);
    QCOMPARE(host.progress.calls, calls);
    QCOMPARE(ReprojectionJob::ShowProgress(nullptr, percent, QStringLiteral("half")), 1);
}

void TestReprojectionJob::endings_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("message");
    QTest::addColumn<bool>("withOutputFile");
    QTest::addColumn<QStringList>("calls");
    QTest::addColumn<QStringList>("layers");
    QTest::addColumn<QString>("errored"); // "code message" handed to the error handler
    QTest::newRow("single job: the list, then the output file")
        << 0 << "" << true << QStringList{"show 100.0 done", "end"} << QStringList{"a.tif", "b.shp", "c.shp"} << "";
    QTest::newRow("batch job: the list only") << 0 << "" << false << QStringList{"show 100.0 done", "end"}
                                              << QStringList{"a.tif", "b.shp"} << "";
    QTest::newRow("stopped by the user: nothing") << int(KivAlgo::kStoppedByHandler) << "Stopped" << true << QStringList{}
                                                  << QStringList{} << "";
    QTest::newRow("failed") << -1 << "disk full" << true << QStringList{} << QStringList{} << "-1 disk full";
}

void TestReprojectionJob::endings()
{
    QFETCH(int, code);
    QFETCH(QString, message);
    QFETCH(bool, withOutputFile);
    QFETCH(QStringList, calls);
    QFETCH(QStringList, layers);
    QFETCH(QString, errored);
    KivTest::FakeHost host;
    host.map = new KivCarto::Map;
    int refreshes = 0;
    host.map->Refreshed.connect([&refreshes](int flags, bool contents) { refreshes += flags == 0 && contents; });

    stCoordsTransformInfo info;
    // A path that gives no layer is skipped without a word.
    info.lstOutputFiles = QStringList{scratch("a.tif"), scratch("missing.shp"), scratch("b.shp")};
    info.strOutputFile = scratch("c.shp");
    auto* algorithm = new ScriptedAlgorithm;
    algorithm->end(code, message, boost::any(info));
    QString erroredWith;
    ModalDriver driver;
    ReprojectionJob::Complete(algorithm, &host, &host, QStringLiteral("done"), withOutputFile,
                              [&erroredWith](int c, const QString& m) { erroredWith = QString::number(c) + ' ' + m; });
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(g_alive, 0);
    QCOMPARE(host.progress.calls, calls);
    QCOMPARE(layerNames(host.map), layers);
    QCOMPARE(refreshes, layers.size());
    QCOMPARE(erroredWith, errored);

    // A record of another type is a broken library: the cast fails loudly,
    // and the algorithm is still deleted.
    auto* wrong = new ScriptedAlgorithm;
    wrong->end(0, QString(), boost::any(QStringLiteral("not a record")));
    QVERIFY_EXCEPTION_THROWN(ReprojectionJob::Complete(wrong, &host, &host, QString(), true, nullptr),
                             boost::bad_any_cast);
    QCOMPARE(g_alive, 0);
}

void TestReprojectionJob::cancelOrder_data()
{
    QTest::addColumn<bool>("endFirst");
    QTest::addColumn<QStringList>("calls");
    QTest::newRow("dataset job") << false << QStringList{"reset", "end"};
    QTest::newRow("batch job") << true << QStringList{"end", "reset"};
}

void TestReprojectionJob::cancelOrder()
{
    QFETCH(bool, endFirst);
    QFETCH(QStringList, calls);
    KivTest::FakeHost host;
    ModalDriver driver;
    ReprojectionJob::Cancelled(new ScriptedAlgorithm, &host, endFirst);
    ReprojectionJob::Cancelled(nullptr, &host, endFirst);
    QVERIFY2(driver.verify() && driver.messages().isEmpty(), qPrintable(driver.report()));
    QCOMPARE(g_alive, 0);
    QCOMPARE(host.progress.calls, calls + calls);
}

KIV_TEST_CLASS(TestReprojectionJob)
#include "tst_ReprojectionJob.moc"
