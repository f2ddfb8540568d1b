// Whole jobs from the command's OnClick to the layers on the map, with the
// real algorithm library: the dialog driven as a user would, the output read
// back with OGR and compared with the conversion route point by point.

#include "support/DatasetFixtures.h"

#include "plugin/BatchProjTransCommand.h"
#include "plugin/DataProjTransCommand.h"
#include "support/FakeHost.h"
#include "support/FilesDialogSteps.h"
#include "support/TestRegistry.h"

#include "KivAlgo/AlgoFactory.h"
#include "KivGeometry/SpatialReferenceFactory.h"
#include "spatialref/CoordinateConversion.h"

#include <QListWidget>
#include <QTest>

using namespace DialogSteps;
using KivTest::ModalDriver;

class TestReprojectionCommands : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void datasetJob_data();
    void datasetJob();
    void batchJob();
    void cancelledJob();
    void missingLibrary_data();
    void missingLibrary();
};

namespace {

QString scratch(const QString& name)
{
    return KivTest::scratchDir() + QLatin1Char('/') + name;
}

// Beijing 1954 zone 39 (CM 117E) plane points, x = easting, y = northing.
const std::vector<double> kPlane{432109.876, 4376543.211, 500123.25, 4420000.5, 398765.4, 4300000.0};

/// Fills the dataset dialog: input, target, output; then Transform with OK
/// to the ellipsoid question.
void fillDatasetDialog(ModalDriver& driver, QWidget* w, const QString& input, const QString& target,
                       const QString& output)
{
    auto& dlg = *w;
    pickInput(dlg, driver, input);
    answerTarget(driver, target);
    click(dlg, "pushButton_OutputCoordSys");
    edit(dlg, "lineEdit_Output")->setText(output);
    driver.answerMessageBoxText(QStringLiteral("OK"));
    click(dlg, "pushButton_Transform");
}

QStringList layerPaths(const KivTest::FakeHost& host)
{
    QStringList paths;
    for (int i = 0; i < host.map->GetLayerCount(); ++i)
        paths << host.map->GetLayer(i)->GetSourcePath();
    return paths;
}

} // namespace

void TestReprojectionCommands::init()
{
    KivTest::resetData();
    writeStore();
    QVERIFY(DatasetFixtures::writePoints(scratch("plane.shp"), "EPSG:2436", kPlane));
    QVERIFY(DatasetFixtures::writeRaster(scratch("plane.tif"), "EPSG:2436", 64));
}

void TestReprojectionCommands::cleanup()
{
    qunsetenv("KIV_ALGORITHM_PATH");
}

void TestReprojectionCommands::datasetJob_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("output");    // in the scratch folder; a missing folder makes the job fail
    QTest::addColumn<QString>("message");   // the failure box, "" none
    QTest::newRow("seven parameters to WGS 84") << "EPSG:4326" << "wgs84.shp" << "";
    QTest::newRow("four parameters across zones") << "EPSG:2435" << "zone38.shp" << "";
    QTest::newRow("unwritable output") << "EPSG:4326" << "no/such/folder/out.shp" << "no/such/folder";
}

void TestReprojectionCommands::datasetJob()
{
    QFETCH(QString, target);
    QFETCH(QString, output);
    QFETCH(QString, message);
    KivTest::FakeHost host;
    host.map = new KivCarto::Map;
    DataProjTransCommand command;
    command.OnCreate(host.hook());
    ModalDriver driver(20000);
    const QString input = scratch("plane.shp"), out = scratch(output);
    // Answers queued inside a handler come after those queued before it:
    // the failure box is queued last, once the dialog is filled.
    driver.handleModal("DataProjTransDlg", [&](QWidget* w) {
        fillDatasetDialog(driver, w, input, target, out);
        if (!message.isEmpty())
            driver.answerMessageBox();
    });
    command.OnClick();
    QTRY_VERIFY_WITH_TIMEOUT(host.progress.calls.contains(QStringLiteral("end")), 30000);
    QVERIFY2(driver.verify(), qPrintable(driver.report()));

    if (!message.isEmpty()) {
        QCOMPARE(driver.messages().last().title, QStringLiteral("Coordinate transformation"));
        QVERIFY2(driver.messages().last().text.contains(message), qPrintable(driver.messages().last().text));
        QCOMPARE(host.progress.calls.mid(host.progress.calls.size() - 2),
                 (QStringList{"show 0.0 Data spatial reference system transformation process failed!", "end"}));
        QCOMPARE(host.map->GetLayerCount(), 0);
        QVERIFY(!QFileInfo::exists(out));
        return;
    }
    QCOMPARE(host.progress.calls.mid(host.progress.calls.size() - 2),
             (QStringList{"show 100.0 Data spatial reference system transformation process complete!", "end"}));
    QVERIFY(!layerPaths(host).isEmpty());
    QCOMPARE(layerPaths(host).last(), out);

    // Every point as the one conversion route gives it with the chosen model.
    const bool seven = target == QLatin1String("EPSG:4326");
    CoordinateConversion route(KivGeometry::SpatialReferenceFactory::CreateSpatialReference(QStringLiteral("EPSG:2436")),
                               KivGeometry::SpatialReferenceFactory::CreateSpatialReference(target));
    route.SetParams(seven ? sevenA() : fourA());
    const std::vector<double> written = DatasetFixtures::readPoints(out);
    QCOMPARE(written.size(), kPlane.size());
    for (size_t i = 0; i + 1 < kPlane.size(); i += 2) {
        double n = kPlane[i + 1], e = kPlane[i], h = 0;
        QVERIFY(route.Convert(n, e, h));
        QVERIFY2(std::abs(written[i] - e) <= (seven ? 1e-9 : 1e-3) && std::abs(written[i + 1] - n) <= (seven ? 1e-9 : 1e-3),
                 qPrintable(QStringLiteral("%1 %2").arg(written[i + 1], 0, 'f', 10).arg(written[i], 0, 'f', 10)));
    }
}

void TestReprojectionCommands::batchJob()
{
    QVERIFY(DatasetFixtures::writePoints(scratch("plane2.shp"), "EPSG:2436", {kPlane[0], kPlane[1]}));
    QVERIFY(QDir().mkpath(scratch("out")));
    KivTest::FakeHost host;
    host.map = new KivCarto::Map;
    BatchProjTransCommand command;
    command.OnCreate(host.hook());
    ModalDriver driver(20000);
    driver.handleModal("BatchProjTransDlg", [&](QWidget* w) {
        auto& dlg = *w;
        // The shapefiles under the shapefile filter, then the raster.
        answerFiles(driver, {"plane.shp", "plane2.shp"}, QStringLiteral("Shape Files(*.shp)"));
        click(dlg, "pushButton_Add");
        answerFiles(driver, {"plane.tif"}, QStringLiteral("Raster Files(*.tiff *.tif *.img *.jp2)"));
        click(dlg, "pushButton_Add");
        edit(dlg, "lineEdit_Folder")->setText(scratch("out"));
        KivTest::answerSelector(driver, QStringLiteral("EPSG:4326"));
        click(dlg, "pushButton_OutputCoordSys");
        click(dlg, "pushButton_Ok");
    });
    command.OnClick();
    QTRY_VERIFY_WITH_TIMEOUT(host.progress.calls.contains(QStringLiteral("end")), 30000);
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(host.progress.calls.mid(host.progress.calls.size() - 2),
             (QStringList{"show 100.0 Batch spatial reference system transformation process complete!", "end"}));
    QStringList names;
    for (const QString& path : layerPaths(host))
        names << QFileInfo(path).fileName();
    names.sort();
    QCOMPARE(names, (QStringList{"plane.shp", "plane.tif", "plane2.shp"}));
    for (const QString& path : layerPaths(host))
        QCOMPARE(QFileInfo(path).absolutePath(), scratch("out"));
}

void TestReprojectionCommands::cancelledJob()
{
    QVERIFY(DatasetFixtures::writeRaster(scratch("large.tif"), "EPSG:2436", 3000));
    KivTest::FakeHost host;
    host.map = new KivCarto::Map;
    DataProjTransCommand command;
    command.OnCreate(host.hook());
    ModalDriver driver(20000);
    driver.handleModal("DataProjTransDlg", [&](QWidget* w) {
        fillDatasetDialog(driver, w, scratch("large.tif"), QStringLiteral("EPSG:4326"), scratch("large_wgs84.tif"));
    });
    command.OnClick();
    // The host's Cancel button: it knows no algorithm, the factory knows them all.
    QCOMPARE(KivAlgo::AlgoFactory::Instance()->CancelAll(), 1);
    QTRY_VERIFY_WITH_TIMEOUT(host.progress.calls.contains(QStringLiteral("end")), 30000);
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(host.progress.calls.mid(host.progress.calls.size() - 2), (QStringList{"reset", "end"}));
    QCOMPARE(driver.messages().size(), 1); // the ellipsoid question only
    QCOMPARE(host.map->GetLayerCount(), 0);
    QCOMPARE(QDir(KivTest::scratchDir()).entryList({"large_wgs84*"}), QStringList());
    QCOMPARE(KivAlgo::AlgoFactory::Instance()->CancelAll(), 0);
}

void TestReprojectionCommands::missingLibrary_data()
{
    QTest::addColumn<bool>("batch");
    QTest::newRow("dataset") << false;
    QTest::newRow("batch") << true;
}

void TestReprojectionCommands::missingLibrary()
{
    QFETCH(bool, batch);
    QTemporaryDir empty;
    qputenv("KIV_ALGORITHM_PATH", QFile::encodeName(empty.path()));
    KivTest::FakeHost host;
    host.map = new KivCarto::Map;
    host.mainWindow.setWindowTitle(QStringLiteral("kivdesk"));
    host.widgetContents.setWindowTitle(QStringLiteral("Layers"));
    std::unique_ptr<KivFramework::DesktopCommand> command;
    if (batch)
        command.reset(new BatchProjTransCommand);
    else
        command.reset(new DataProjTransCommand);
    command->OnCreate(host.hook());
    ModalDriver driver(20000);
    driver.handleModal(batch ? "BatchProjTransDlg" : "DataProjTransDlg", [&](QWidget* w) {
        if (!batch) {
            fillDatasetDialog(driver, w, scratch("plane.shp"), QStringLiteral("EPSG:4326"), scratch("o.shp"));
        } else {
            auto& dlg = *w;
            driver.answerFileDialog(scratch("plane.shp"));
            click(dlg, "pushButton_Add");
            edit(dlg, "lineEdit_Folder")->setText(KivTest::scratchDir());
            KivTest::answerSelector(driver, QStringLiteral("EPSG:4326"));
            click(dlg, "pushButton_OutputCoordSys");
            click(dlg, "pushButton_Ok");
        }
        driver.answerMessageBox();
    });
    command->OnClick();
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    // The data job names the main window, the batch job the layer panel it was opened from.
    QCOMPARE(messageTexts(driver).last(),
             QString((batch ? "Layers" : "kivdesk") + QStringLiteral("|The algorithm library fails to load!")));
    QVERIFY(host.progress.calls.isEmpty());
    QVERIFY(!QFileInfo::exists(scratch("o.shp")));
}

KIV_TEST_CLASS(TestReprojectionCommands)
#include "tst_ReprojectionCommands.moc"
