// The dataset and batch reprojection dialogs, driven through their object
// names with real datasets made in the test; the plug-in's four exports.

#include "DatasetFixtures.h"

#include "plugin/CoordsTransformExports.h"
#include "reprojection/BatchProjTransDlg.h"
#include "reprojection/DataProjTransDlg.h"
#include "reprojection/ReprojectionRunner.h"
#include "reprojection/ReprojectionSupport.h"
#include "support/FilesDialogSteps.h"
#include "support/TestRegistry.h"

#include "KivUI/EnvironmentSetting.h"

#include <QCheckBox>
#include <QLabel>
#include <QLibrary>
#include <QListWidget>
#include <QTest>

using namespace DialogSteps;
using KivTest::ModalDriver;

class TestReprojectionDialogs : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void exports();
    void algorithmChoice_data();
    void algorithmChoice();
    void spheroidComparison_data();
    void spheroidComparison();
    void dataInputKinds();
    void dataInputRefusals_data();
    void dataInputRefusals();
    void dataTransformChecks_data();
    void dataTransformChecks();
    void dataOutputFilterSetsFormat_data();
    void dataOutputFilterSetsFormat();
    void batchAdd_data();
    void batchAdd();
    void batchOkChecks();
};

namespace {

QString scratch(const QString& name)
{
    return KivTest::scratchDir() + QLatin1Char('/') + name;
}

/// Makes the datasets the tests pick by name: rasters and shapefiles in
/// Beijing 1954 zone 39 (EPSG:2436), Beijing 1954 (4214) and WGS 84 (4326),
/// a raster without a system, a GeoPackage of two layers in two systems and
/// a text file and a truncated GeoTIFF that are no datasets.
void makeDatasets()
{
    using namespace DatasetFixtures;
    QVERIFY(writeRaster(scratch("zone39.tif"), "EPSG:2436"));
    QVERIFY(writeRaster(scratch("zone39b.tif"), "EPSG:2436"));
    QVERIFY(writeRaster(scratch("zone39.img"), "EPSG:2436", 16, 432000, 4377000, 10, "HFA"));
    QVERIFY(writeRaster(scratch("wgs84.tif"), "EPSG:4326", 16, 116, 40, 0.001));
    QVERIFY(writeRaster(scratch("bare.tif"), ""));
    QVERIFY(writePoints(scratch("bj54.shp"), "EPSG:4214", {116.4, 39.9}));
    QVERIFY(writeGeoPackage(scratch("two.gpkg"), {"first=EPSG:4214", "second=EPSG:4326"}));
    QVERIFY(KivTest::writeFile(scratch("notes.txt"), "no dataset\n"));
    // Beijing 1954 as a .prj without identifiers, as many tools write it.
    QVERIFY(KivTest::writeFile(scratch("bj54.prj"),
                               "GEOGCS[\"GCS_Beijing_1954\",DATUM[\"D_Beijing_1954\",SPHEROID[\"Krassowsky 1940\","
                               "6378245,298.3]],PRIMEM[\"Greenwich\",0],UNIT[\"degree\",0.0174532925199433]]"));
    QVERIFY(KivTest::writeFile(scratch("broken.tif"), "II*\0 cut short\n"));
}

QWidget* child(QWidget& dlg, const char* name)
{
    return dlg.findChild<QWidget*>(QLatin1String(name));
}

} // namespace

void TestReprojectionDialogs::init()
{
    KivTest::resetData();
    writeStore();
    makeDatasets();
}

void TestReprojectionDialogs::exports()
{
    QLibrary library(QStringLiteral(KIV_PLUGIN_PATH));
    QVERIFY2(library.load(), qPrintable(library.errorString()));
    using Create = QDialog* (*)();
    using Params = stCoordsTransformInfo* (*)(QDialog*);
    const auto createData = reinterpret_cast<Create>(library.resolve("GetDataPrjTransDialog"));
    const auto dataParams = reinterpret_cast<Params>(library.resolve("GetPrjTransParams"));
    const auto createBatch = reinterpret_cast<Create>(library.resolve("GetBatchDataPrjTransDialog"));
    const auto batchParams = reinterpret_cast<Params>(library.resolve("GetBatchPrjTransParams"));
    QVERIFY(createData && dataParams && createBatch && batchParams);

    std::unique_ptr<QDialog> data(createData()), batch(createBatch());
    QVERIFY(data && batch && !data->parent() && !batch->parent());
    QCOMPARE(data->objectName(), QStringLiteral("DataProjTransDlg"));
    QCOMPARE(batch->objectName(), QStringLiteral("BatchProjTransDlg"));
    QVERIFY(dataParams(data.get()) && batchParams(batch.get()));
    QCOMPARE(dataParams(data.get())->strRasterFormat, QStringLiteral("GTiff"));
    QVERIFY(!dataParams(batch.get()) && !batchParams(data.get()));
    QVERIFY(!dataParams(nullptr) && !batchParams(nullptr));
    QDialog plain;
    QVERIFY(!dataParams(&plain) && !batchParams(&plain));
}

void TestReprojectionDialogs::algorithmChoice_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("algorithm");
    const QString img = QStringLiteral("ImgProjectTransAlgo"), shape = QStringLiteral("ShapeDataCoordTransformAlgo");
    QTest::newRow("TIF in capitals") << "/data/SCENE.TIF" << img;
    QTest::newRow("tiff") << "/data/scene.tiff" << img;
    QTest::newRow("img") << "/data/scene.Img" << img;
    QTest::newRow("shapefile") << "/data/roads.shp" << shape;
    QTest::newRow("no dot") << "/data/roads" << shape;
    QTest::newRow("dot only in a folder") << "/data/v1.tif/roads" << shape;
    QTest::newRow("personal geodatabase") << "/data/parcels.mdb" << shape;
}

void TestReprojectionDialogs::algorithmChoice()
{
    QFETCH(QString, path);
    QFETCH(QString, algorithm);
    ReprojectionRequest request;
    request.choice = ReprojectionRequest::BySuffix;
    request.info.strInputFile = path;
    QCOMPARE(ReprojectionRunner::AlgorithmOf(request), algorithm);
}

void TestReprojectionDialogs::spheroidComparison_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("target");
    QTest::addColumn<bool>("differ");
    const QString bj = QStringLiteral("GEOGCS[\"Beijing 1954\",DATUM[\"Beijing_1954\",SPHEROID[\"Krassowsky 1940\","
                                      "6378245,298.3,AUTHORITY[\"EPSG\",\"7024\"]]]]");
    // The target is cut at "]]", the source before the comma ahead of AUTHORITY:
    // the same ellipsoid with its authority on the target side still asks.
    QTest::newRow("same ellipsoid, target with authority") << bj << bj << true;
    QTest::newRow("same ellipsoid, target without authority")
        << bj << "GEOGCS[\"x\",DATUM[\"y\",SPHEROID[\"Krasovsky_1940\",6378245,298.3]]]" << false;
    QTest::newRow("other ellipsoid") << bj << "GEOGCS[\"WGS 84\",DATUM[\"WGS_1984\",SPHEROID[\"WGS 84\",6378137,"
                                            "298.257223563]]]"
                                     << true;
}

void TestReprojectionDialogs::spheroidComparison()
{
    QFETCH(QString, source);
    QFETCH(QString, target);
    QFETCH(bool, differ);
    QCOMPARE(ReprojectionSupport::SpheroidsDiffer(source, target), differ);
}

void TestReprojectionDialogs::dataInputKinds()
{
    DataProjTransDlg dlg;
    dlg.show();
    ModalDriver driver;
    QVERIFY(child(dlg, "checkBox_bCode")->isHidden() && child(dlg, "lineEdit_Folder")->isHidden());
    QCOMPARE(comboItems(dlg, "comboBox_7Param"), QStringList{"seven-a"});

    edit(dlg, "lineEdit_Output")->setText(scratch("out.tif"));
    pickInput(dlg, driver, scratch("two.gpkg"));
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    // A container: its first member's system, an output folder instead of a file.
    QCOMPARE(edit(dlg, "lineEdit_InputCoordSys")->text(), QStringLiteral("Beijing 1954"));
    QVERIFY(child(dlg, "lineEdit_Folder")->isVisible() && child(dlg, "lineEdit_Output")->isHidden());
    QVERIFY(edit(dlg, "lineEdit_Output")->text().isEmpty());
    QVERIFY(!child(dlg, "checkBox_bCode")->isEnabled());

    edit(dlg, "lineEdit_Folder")->setText(KivTest::scratchDir());
    pickInput(dlg, driver, scratch("zone39.tif"));
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QVERIFY(child(dlg, "lineEdit_Output")->isVisible() && child(dlg, "lineEdit_Folder")->isHidden());
    QVERIFY(edit(dlg, "lineEdit_Folder")->text().isEmpty());
    QCOMPARE(edit(dlg, "lineEdit_InputCoordSys")->text(), QStringLiteral("Beijing 1954 / 3-degree Gauss-Kruger CM 117E"));
    QCOMPARE(edit(dlg, "lineEdit_Input")->text(), scratch("zone39.tif"));
    QVERIFY(child(dlg, "checkBox_bCode")->isEnabled());
    QCOMPARE(KivUI::EnvironmentSetting::Instance()->GetCurrentWorkDir(), KivTest::scratchDir());

    // Same geographic system: four-parameter models, controls on for two planes.
    answerTarget(driver, QStringLiteral("EPSG:2435"));
    click(dlg, "pushButton_OutputCoordSys");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(dlg.findChild<QLabel*>(QStringLiteral("label_5"))->text(), QStringLiteral("Transform 4Parameter:"));
    QCOMPARE(comboItems(dlg, "comboBox_7Param"), (QStringList{"four-a", "four-b"}));
    // Another geographic system: seven-parameter models; a geographic input
    // against a projected target switches the model controls off.
    answerTarget(driver, QStringLiteral("EPSG:32650"));
    click(dlg, "pushButton_OutputCoordSys");
    pickInput(dlg, driver, scratch("wgs84.tif"));
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(dlg.findChild<QLabel*>(QStringLiteral("label_5"))->text(), QStringLiteral("Transform 4Parameter:"));
    QVERIFY(!child(dlg, "comboBox_7Param")->isEnabled() && !child(dlg, "pushButton_7Param")->isEnabled());
}

void TestReprojectionDialogs::dataInputRefusals_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("message");
    QTest::newRow("no system") << "bare.tif" << "Warning|This Data has no spatialreference!";
    QTest::newRow("not a dataset") << "notes.txt" << "Warning|File Abnormity!";
}

void TestReprojectionDialogs::dataInputRefusals()
{
    QFETCH(QString, file);
    QFETCH(QString, message);
    DataProjTransDlg dlg;
    ModalDriver driver;
    driver.answerFileDialog(scratch(file));
    driver.answerMessageBox();
    click(dlg, "pushButton_Input");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(messageTexts(driver), QStringList{message});
    QVERIFY(edit(dlg, "lineEdit_Input")->text().isEmpty() && edit(dlg, "lineEdit_InputCoordSys")->text().isEmpty());
}

void TestReprojectionDialogs::dataTransformChecks_data()
{
    QTest::addColumn<QString>("input");   // "" none
    QTest::addColumn<QString>("target");  // "" none
    QTest::addColumn<QString>("output");  // "" none
    QTest::addColumn<QString>("answer");  // the ellipsoid question's answer; "" not asked
    QTest::addColumn<QString>("message"); // the warning; "" accepted or left by Cancel
    QTest::addColumn<bool>("accepted");
    QTest::newRow("nothing") << "" << "" << "" << "" << "Please select input file!" << false;
    QTest::newRow("no output") << "bj54.shp" << "EPSG:2436" << "" << "" << "The output file is empty!" << false;
    QTest::newRow("no target") << "bj54.shp" << "" << "o.shp" << "" << "The output file has no space for reference!"
                               << false;
    QTest::newRow("shapefile to raster") << "bj54.shp" << "EPSG:2436" << "o.tif" << ""
                                         << "The input file does not match the output file type!" << false;
    QTest::newRow("shapefile to SHP in capitals") << "bj54.shp" << "EPSG:2436" << "o.SHP" << "OK" << "" << true;
    // The raster's system keeps its spheroid's identifier, so the comparison
    // of the two texts sees one spheroid and asks nothing.
    QTest::newRow("raster to a system on its own spheroid") << "zone39.tif" << "bj54.prj" << "o.tif" << "" << "" << true;
    QTest::newRow("ERDAS IMG to a shapefile passes the type check")
        << "zone39.img" << "EPSG:4326" << "o.shp" << "Cancel" << "" << false;
    QTest::newRow("raster to WGS 84") << "zone39.tif" << "EPSG:4326" << "o.tif" << "OK" << "" << true;
}

void TestReprojectionDialogs::dataTransformChecks()
{
    QFETCH(QString, input);
    QFETCH(QString, target);
    QFETCH(QString, output);
    QFETCH(QString, answer);
    QFETCH(QString, message);
    QFETCH(bool, accepted);
    DataProjTransDlg dlg;
    ModalDriver driver;
    if (!input.isEmpty())
        pickInput(dlg, driver, scratch(input));
    if (!target.isEmpty()) {
        answerTarget(driver, target);
        click(dlg, "pushButton_OutputCoordSys");
    }
    if (!output.isEmpty())
        edit(dlg, "lineEdit_Output")->setText(scratch(output));
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    const stCoordsTransformInfo before = *dlg.GetParams();

    if (!message.isEmpty())
        driver.answerMessageBox();
    if (!answer.isEmpty())
        driver.answerMessageBoxText(answer == QLatin1String("OK") ? QStringLiteral("OK") : QStringLiteral("Cancel"));
    click(dlg, "pushButton_Transform");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(dlg.result() == QDialog::Accepted, accepted);
    if (!message.isEmpty())
        QCOMPARE(messageTexts(driver), QStringList{"Warning|" + message});
    const stCoordsTransformInfo& info = *dlg.GetParams();
    if (!accepted) {
        // Refused or sent back: the record is as it was.
        QVERIFY(info.strInputFile == before.strInputFile && info.strOutputFile.isEmpty() && info.strDstWkt.isEmpty());
        return;
    }
    QCOMPARE(driver.messages().size(), answer.isEmpty() ? 0 : 1);
    if (!answer.isEmpty())
        QVERIFY(driver.messages().first().text.startsWith(QLatin1String("Please confirm whether the correct 7-parameter")));
    QCOMPARE(info.strInputFile, scratch(input));
    QCOMPARE(info.strOutputFile, scratch(output));
    QVERIFY(info.strOutputFolder.isEmpty());
    QVERIFY(info.strSrcWkt.contains(QLatin1String("Beijing"))
            && info.strDstWkt.contains(target.endsWith(QLatin1String(".prj")) ? QStringLiteral("Beijing") : target.mid(5)));
    // Beijing 1954 to its own zone: four parameters; to WGS 84: seven.
    const bool seven = target == QLatin1String("EPSG:4326");
    QCOMPARE(info.bUse7Params, seven);
    QCOMPARE(info.model7.TransName, seven ? QStringLiteral("seven-a") : QString());
    QCOMPARE(info.model7.Params, seven ? sevenA() : QList<double>());
    QCOMPARE(info.model4.TransName, seven ? QString() : QStringLiteral("four-a"));
    QCOMPARE(info.strRasterFormat, QStringLiteral("GTiff"));
    QVERIFY(!info.bCode && info.bAlgoOption && info.lstInputFiles.isEmpty());
}

void TestReprojectionDialogs::dataOutputFilterSetsFormat_data()
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QString>("format");
    QTest::addColumn<QStringList>("offered");
    const QStringList raster{"GeoTIFF Files(*.tif *.tiff)", "ERDAS IMG(*.img)", "ENVI IMG(*.img)"};
    QTest::newRow("GeoTIFF") << "zone39.tif" << raster[0] << "GTiff" << raster;
    QTest::newRow("ERDAS") << "zone39.tif" << raster[1] << "HFA" << raster;
    QTest::newRow("ENVI") << "zone39.img" << raster[2] << "ENVI" << raster;
    QTest::newRow("shapefile") << "bj54.shp" << "Shape Files(*.shp)" << "ENVI" << QStringList{"Shape Files(*.shp)"};
}

void TestReprojectionDialogs::dataOutputFilterSetsFormat()
{
    QFETCH(QString, input);
    QFETCH(QString, filter);
    QFETCH(QString, format);
    QFETCH(QStringList, offered);
    DataProjTransDlg dlg;
    ModalDriver driver;
    driver.answerMessageBox();
    click(dlg, "pushButton_Output");
    QCOMPARE(messageTexts(driver), QStringList{"Warning|Please select input file!"});
    pickInput(dlg, driver, scratch(input));
    QStringList seen;
    driver.handleModal("QFileDialog", [&seen, filter](QWidget* w) {
        auto* dialog = qobject_cast<QFileDialog*>(w);
        seen = QStringList{dialog->windowTitle()} + dialog->nameFilters();
        dialog->selectNameFilter(filter);
        typeAndAccept(dialog, scratch(QStringLiteral("result.out")));
    });
    click(dlg, "pushButton_Output");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(seen, QStringList{"Output File"} + offered);
    QVERIFY(edit(dlg, "lineEdit_Output")->text().startsWith(scratch(QStringLiteral("result.out"))));

    answerTarget(driver, QStringLiteral("EPSG:4326"));
    click(dlg, "pushButton_OutputCoordSys");
    driver.answerMessageBoxText(QStringLiteral("OK"));
    edit(dlg, "lineEdit_Output")->setText(scratch(input.endsWith(QLatin1String("shp")) ? "r.shp" : "r.tif"));
    click(dlg, "pushButton_Transform");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(dlg.GetParams()->strRasterFormat, format);
}

void TestReprojectionDialogs::batchAdd_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QStringList>("listed");
    QTest::addColumn<QString>("system");
    QTest::addColumn<QStringList>("reported"); // "message|file"
    QTest::newRow("second differs") << QStringList{"zone39.tif", "wgs84.tif", "zone39b.tif"}
                                    << QStringList{"zone39.tif", "zone39b.tif"}
                                    << "Beijing 1954 / 3-degree Gauss-Kruger CM 117E"
                                    << QStringList{"Different Spatial Reference!|wgs84.tif"};
    QTest::newRow("first without a system") << QStringList{"bare.tif", "wgs84.tif"} << QStringList{"wgs84.tif"} << "WGS 84"
                                            << QStringList{"There is no spatial reference!|bare.tif"};
    QTest::newRow("container judged by its second member") << QStringList{"two.gpkg"} << QStringList{"two.gpkg"}
                                                           << "WGS 84" << QStringList{};
    QTest::newRow("broken raster") << QStringList{"broken.tif", "zone39.tif"} << QStringList{"zone39.tif"}
                                   << "Beijing 1954 / 3-degree Gauss-Kruger CM 117E"
                                   << QStringList{"File Abnormity!|broken.tif"};
}

void TestReprojectionDialogs::batchAdd()
{
    QFETCH(QStringList, files);
    QFETCH(QStringList, listed);
    QFETCH(QString, system);
    QFETCH(QStringList, reported);
    BatchProjTransDlg dlg;
    ModalDriver driver;
    answerFiles(driver, files);
    for (int i = 0; i < reported.size(); ++i)
        driver.answerMessageBox();
    click(dlg, "pushButton_Add");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QStringList expectedMessages;
    for (const QString& r : reported)
        expectedMessages << "Error|" + r.section('|', 0, 0) + "\r\n" + scratch(r.section('|', 1));
    QCOMPARE(messageTexts(driver), expectedMessages);
    auto* list = dlg.findChild<QListWidget*>(QStringLiteral("listWidget"));
    QStringList shown;
    for (int i = 0; i < list->count(); ++i)
        shown << QFileInfo(list->item(i)->text()).fileName();
    QCOMPARE(shown, listed);
    QCOMPARE(edit(dlg, "lineEdit_InputCoordSys")->text(), system);

    // Removing the last entry forgets the system: the next file sets it anew.
    list->selectAll();
    click(dlg, "pushButton_Remove");
    QCOMPARE(list->count(), 0);
    QVERIFY(edit(dlg, "lineEdit_InputCoordSys")->text().isEmpty());
    answerFiles(driver, {"wgs84.tif"});
    click(dlg, "pushButton_Add");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(edit(dlg, "lineEdit_InputCoordSys")->text(), QStringLiteral("WGS 84"));
}

void TestReprojectionDialogs::batchOkChecks()
{
    BatchProjTransDlg dlg;
    ModalDriver driver;
    driver.answerMessageBox();
    click(dlg, "pushButton_Ok");
    QCOMPARE(messageTexts(driver), QStringList{"Select Files|No File Is Selected!"});

    answerFiles(driver, {"zone39.tif", "zone39b.tif"});
    click(dlg, "pushButton_Add");
    driver.answerMessageBox();
    click(dlg, "pushButton_Ok");
    QCOMPARE(messageTexts(driver).last(), QStringLiteral("Warning|The output file is empty!"));
    edit(dlg, "lineEdit_Folder")->setText(KivTest::scratchDir());
    driver.answerMessageBox();
    click(dlg, "pushButton_Ok");
    QCOMPARE(messageTexts(driver).last(), QStringLiteral("Warning|The output file has no space for reference!"));

    // The input's own system as target is refused and leaves the target empty.
    KivTest::answerSelector(driver, QStringLiteral("EPSG:2436"));
    driver.answerMessageBox();
    click(dlg, "pushButton_OutputCoordSys");
    QCOMPARE(messageTexts(driver).last(), QStringLiteral("Warning|Source Spatial Reference is same with Target!"));
    QVERIFY(edit(dlg, "lineEdit_OutputCoordSys")->text().isEmpty());

    KivTest::answerSelector(driver, QStringLiteral("EPSG:4326"));
    click(dlg, "pushButton_OutputCoordSys");
    QCOMPARE(dlg.findChild<QLabel*>(QStringLiteral("label_5"))->text(), QStringLiteral("Transform 7Parameter:"));
    QVERIFY(!child(dlg, "comboBox_7Param")->isEnabled()); // a plane input, a geographic target
    click(dlg, "checkBox_bCode");
    click(dlg, "pushButton_Ok");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(dlg.result(), int(QDialog::Accepted));
    const stCoordsTransformInfo& info = *dlg.GetParams();
    QCOMPARE(info.lstInputFiles, (QStringList{scratch("zone39.tif"), scratch("zone39b.tif")}));
    QCOMPARE(info.strOutputFolder, KivTest::scratchDir());
    QVERIFY(info.bUse7Params && info.bCode);
    QCOMPARE(info.model7.TransName, QStringLiteral("seven-a"));
    QVERIFY(info.strInputFile.isEmpty() && info.strOutputFile.isEmpty());
    QCOMPARE(info.strRasterFormat, QStringLiteral("GTiff"));
}

KIV_TEST_CLASS(TestReprojectionDialogs)
#include "tst_ReprojectionDialogs.moc"
