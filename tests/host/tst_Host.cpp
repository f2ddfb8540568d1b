#include "LayerPanel.h"
#include "MainWindow.h"
#include "PluginManifest.h"
#include "ProgressIndicator.h"
#include "support/TestData.h"
#include "support/TestRegistry.h"

#include "KivAlgo/Algorithm.h"
#include "KivCarto/Map.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>

namespace {

QString writeManifest(const QString& library, const QString& extraCommand = QString())
{
    const QString path = KivTest::scratchDir() + QStringLiteral("/plugins.xml");
    QString xml = QStringLiteral(
        "<Plugins><Plugin library=\"%1\" menu=\"Coordinate Transformation\">"
        "<Command name=\"CoordsTransform_4params\" caption=\"Calculate 4\" tooltip=\"tip\"/>"
        "<Command name=\"CoordsTransform_Set7params\" caption=\"Set 7\" menu=\"Models\"/>"
        "%2</Plugin></Plugins>").arg(library, extraCommand);
    KivTest::writeFile(path, xml.toUtf8());
    return path;
}

} // namespace

class TestHost : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }
    void manifestProblemsAreReported_data();
    void manifestProblemsAreReported();
    void shippedManifestConfiguresTheEightCommands();
    void loadsThePluginAndOffersItsCommands();
    void hostStartsWithoutItsPlugin();
    void progressIndicatorShowsAndCancels();
    void layerPanelFollowsTheMap();
};

void TestHost::manifestProblemsAreReported_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("errorPart");
    QTest::newRow("not xml") << QByteArray("<Plugins><Plugin") << QStringLiteral("not valid XML");
    QTest::newRow("no library") << QByteArray("<Plugins><Plugin/></Plugins>") << QStringLiteral("without a library");
    QTest::newRow("missing file") << QByteArray() << QStringLiteral("Cannot read");
}

void TestHost::manifestProblemsAreReported()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, errorPart);
    const QString path = KivTest::scratchDir() + QStringLiteral("/m.xml");
    if (!content.isNull())
        KivTest::writeFile(path, content);
    PluginManifest manifest;
    QVERIFY(!manifest.load(path));
    QVERIFY2(manifest.error().contains(errorPart), qPrintable(manifest.error()));
    QVERIFY(manifest.plugins().isEmpty());
}

void TestHost::shippedManifestConfiguresTheEightCommands()
{
    PluginManifest manifest;
    QVERIFY2(manifest.load(KivTest::dataRoot() + QStringLiteral("/kivdesk/plugins.xml")), qPrintable(manifest.error()));
    QCOMPARE(manifest.plugins().size(), 1);
    QCOMPARE(manifest.plugins().first().library, QStringLiteral("CoordsTransformUI"));
    QCOMPARE(manifest.plugins().first().commands.size(), 8);
}

void TestHost::loadsThePluginAndOffersItsCommands()
{
    MainWindow window;
    window.loadPlugins(writeManifest(QStringLiteral(KIV_PLUGIN_PATH),
                                     QStringLiteral("<Command name=\"NoSuchCommand\"/>")));
    QCOMPARE(window.commands().size(), 3);
    QVERIFY(window.commands().at(0).command);
    QVERIFY(window.commands().at(1).command);
    QVERIFY(!window.commands().at(2).command);
    QCOMPARE(window.problems().size(), 1);
    QVERIFY(window.problems().first().contains(QStringLiteral("NoSuchCommand")));

    // The host hands itself to the commands, which then present themselves
    // with the host's configuration.
    QCOMPARE(window.commands().at(0).command->GetCaption(), QStringLiteral("Calculate 4"));
    QCOMPARE(window.commands().at(0).command->GetToolTip(), QStringLiteral("tip"));

    auto* action = window.findChild<QAction*>(QStringLiteral("CoordsTransform_4params"));
    QVERIFY(action);
    QVERIFY(action->isEnabled());
    QStringList menus;
    for (QAction* a : window.menuBar()->actions())
        menus << a->text();
    QVERIFY(menus.contains(QStringLiteral("Coordinate Transformation")));
    QVERIFY(menus.contains(QStringLiteral("Models")));
}

void TestHost::hostStartsWithoutItsPlugin()
{
    MainWindow window;
    window.loadPlugins(writeManifest(KivTest::scratchDir() + QStringLiteral("/libMissing.so")));
    QCOMPARE(window.problems().size(), 1);
    QVERIFY(window.problems().first().contains(QStringLiteral("cannot be loaded")));
    for (const LoadedCommand& c : window.commands())
        QVERIFY(!c.command);
    QVERIFY(window.findChildren<QAction*>(QStringLiteral("CoordsTransform_4params")).isEmpty());
}

void TestHost::progressIndicatorShowsAndCancels()
{
    MainWindow window;
    KivFramework::IProgressIndicator* progress = window.GetProgressIndicator();
    int cancels = 0;
    progress->CancelRequested.connect([&cancels] { ++cancels; });
    progress->ShowProgress(42.5, QStringLiteral("Reprojecting"));
    QCOMPARE(window.progressIndicator()->value(), 42);
    QCOMPARE(window.progressIndicator()->text(), QStringLiteral("Reprojecting"));
    window.progressIndicator()->findChild<QPushButton*>(QStringLiteral("progressCancel"))->click();
    QCOMPARE(cancels, 1);
    progress->Reset();
    progress->End();
    QCOMPARE(window.progressIndicator()->value(), 0);
    QVERIFY(!window.progressIndicator()->isRunning());

    // What a successful job has to say is shown; failures are the plug-in's.
    KivAlgo::Algorithm::SigAnyRunEnded()(QStringLiteral("Reproject"), -1, QStringLiteral("failed"));
    QVERIFY(!window.findChild<QMessageBox*>(QStringLiteral("jobWarnings")));
    KivAlgo::Algorithm::SigAnyRunEnded()(QStringLiteral("Reproject"), 0, QStringLiteral("3 point(s) converted"));
    auto* box = window.findChild<QMessageBox*>(QStringLiteral("jobWarnings"));
    QVERIFY(box && box->isVisible() && !box->isModal());
    QCOMPARE(box->text(), QStringLiteral("3 point(s) converted"));
}

void TestHost::layerPanelFollowsTheMap()
{
    MainWindow window;
    auto map = window.GetCurrentMap();
    QVERIFY(map);
    QVERIFY(dynamic_cast<QWidget*>(window.GetMapContents()));
    map->AddLayer(KivUtility::_ptr_t<KivCarto::Layer>(new KivCarto::Layer(QStringLiteral("roads"), QStringLiteral("/d/roads.shp"))));
    map->AddLayer(KivUtility::_ptr_t<KivCarto::Layer>(new KivCarto::Layer(QStringLiteral("dem"), QStringLiteral("/d/dem.tif"))));
    QCOMPARE(window.layerPanel()->count(), 0);  // not until the map is refreshed
    map->Refresh(0, true);
    QCOMPARE(window.layerPanel()->count(), 2);
    QCOMPARE(window.layerPanel()->item(0)->text(), QStringLiteral("dem"));  // top layer first
}

KIV_TEST_CLASS(TestHost)
#include "tst_Host.moc"
