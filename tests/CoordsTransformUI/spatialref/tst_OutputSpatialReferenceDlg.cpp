#include "SrsDialogSteps.h"

#include "spatialref/OutputSpatialReferenceDlg.h"

#include "support/DatasetFixtures.h"
#include "support/ModalDriver.h"
#include "support/SelectorDriver.h"
#include "support/TestData.h"
#include "support/TestRegistry.h"

#include "KivGeometry/SpatialReferenceFactory.h"

#include <QFile>
#include <QMenu>
#include <QPushButton>
#include <QTemporaryDir>
#include <QtTest>

using KivTest::ModalDriver;
using namespace SrsTest;

namespace {

const QString kTitle = "Spatial Reference Information";

QString kBeijingText()
{
    return geogcs("GCS_Beijing_1954", "D_Beijing_1954", "Krasovsky_1940", "6378245.0", "298.3");
}

QString esri(const char* code)
{
    auto system = KivGeometry::SpatialReferenceFactory::CreateSpatialReference(code);
    system->MorphToESRI();
    return system->ExportToWkt();
}

struct Fixture
{
    OutputSpatialReferenceDlg dlg;
    ModalDriver driver;
    Fixture() { dlg.show(); }
    void click(const char* name) { press(&dlg, name); }
    void trigger(int action) { widget<QPushButton>(&dlg, "NewProj_pushButton")->menu()->actions().at(action)->trigger(); }
    bool enabled(const char* name) { return widget<QWidget>(&dlg, name)->isEnabled(); }
    QString content() { return text(&dlg, "content_textEdit"); }
    QString name() { return text(&dlg, "lname_ineEdit"); }
    /// Imports `path`; `message`: an information box is expected then.
    void importFile(const QString& path, bool message = false)
    {
        driver.answerFileDialog(path);
        if (message)
            driver.answerMessageBox();
        click("import_pushButton");
    }
};

} // namespace

class TestOutputSpatialReferenceDlg : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }
    void select();
    void importProjectionFile_data();
    void importProjectionFile();
    void importDataset_data();
    void importDataset();
    void newSystemsAndClear_data();
    void newSystemsAndClear();
    void modifyGeographic();
    void modifyProjected_data();
    void modifyProjected();
    void exportWithoutRights();
};

void TestOutputSpatialReferenceDlg::select()
{
    Fixture f;
    KivTest::cancelSelector(f.driver);
    f.click("Select_pushButton");
    QVERIFY(!f.enabled("Export_pushButton"));
    KivTest::answerSelector(f.driver, "EPSG:4610");
    f.click("Select_pushButton");
    QVERIFY2(f.driver.verify(), qPrintable(f.driver.report()));
    const auto system = KivGeometry::SpatialReferenceFactory::CreateSpatialReference("EPSG:4610");
    QCOMPARE(f.dlg.GetWkt(), system->ExportToWkt());
    QCOMPARE(f.content(), system->ExportToPrettyWkt());
    QCOMPARE(f.name(), QString("Xian 1980"));
    for (const char* button : {"modify_pushButton", "Clear_pushButton", "Export_pushButton"})
        QVERIFY2(f.enabled(button), button);
}

void TestOutputSpatialReferenceDlg::importProjectionFile_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("message");   // information box, empty: none
    QTest::addColumn<QString>("name");      // name field afterwards
    QTest::addColumn<QString>("shows");     // the content starts with this
    QTest::addColumn<QByteArray>("result"); // GetWkt(), and what Export writes back

    const QByteArray gk = esri("EPSG:2401").toUtf8(), xian = esri("EPSG:4610").toUtf8();
    QTest::newRow("projected") << "gk.prj" << gk << QString() << "Beijing 1954 / 3-degree Gauss-Kruger zone 25"
                               << "PROJCS["
                               << gk;
    QTest::newRow("geographic, terminator kept") << "xian.prj" << xian + "\n" << QString() << "Xian 1980"
                                                 << "GEOGCS[" << xian + "\n";
    QTest::newRow(".prj inside the name") << "xian.prj.bak" << xian << QString() << "Xian 1980" << "GEOGCS["
                                          << xian;
    // Only the first line counts, for the display and for the result.
    QTest::newRow("several lines") << "multi.prj" << xian + "\n" + gk + "\n" << QString() << "Xian 1980"
                                   << "GEOGCS[" << xian + "\n";
    // A blank first line is not empty (its terminator counts): nothing to
    // show, yet it becomes the result.
    QTest::newRow("blank first line") << "blank.prj" << QByteArray("\n" + gk) << QString() << QString() << QString()
                                      << QByteArray("\n");
    QTest::newRow("empty file") << "null.prj" << QByteArray() << "The projection file is null!" << QString()
                                << QString() << QByteArray();
    // Capitals go to the data source, which does not read a bare WKT file.
    QTest::newRow("capital extension") << "gk.PRJ" << gk << QString() << QString() << QString() << QByteArray();
}

void TestOutputSpatialReferenceDlg::importProjectionFile()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, content);
    QFETCH(QString, message);
    QFETCH(QString, name);
    QFETCH(QString, shows);
    QFETCH(QByteArray, result);
    QTemporaryDir dir;
    const QString path = dir.filePath(file);
    QVERIFY(KivTest::writeFile(path, content));
    Fixture f;
    f.importFile(path, !message.isEmpty());
    QVERIFY2(f.driver.verify(), qPrintable(f.driver.report()));
    if (!message.isEmpty()) {
        QCOMPARE(f.driver.messages().at(0).text, message);
        QCOMPARE(f.driver.messages().at(0).title, kTitle);
    }
    QCOMPARE(f.name(), name);
    if (shows.isEmpty())
        QVERIFY(f.content().isEmpty());
    else
        QVERIFY2(f.content().startsWith(shows), qPrintable(f.content()));
    QCOMPARE(f.dlg.GetWkt().toUtf8(), result);
    QCOMPARE(f.enabled("Export_pushButton"), !shows.isEmpty());
    if (shows.isEmpty())
        return;

    // Export writes the line back as it was read.
    const QString out = dir.filePath("out.prj");
    f.driver.answerFileDialog(out);
    f.driver.answerMessageBox();
    f.click("Export_pushButton");
    QVERIFY2(f.driver.verify(), qPrintable(f.driver.report()));
    QCOMPARE(f.driver.messages().last().text, QString("Export success!"));
    QCOMPARE(KivTest::readFile(out), result);
}

void TestOutputSpatialReferenceDlg::importDataset_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("code");     // the dataset's system; empty: none
    QTest::addColumn<QString>("message");

    QTest::newRow("GeoTIFF") << "beijing.tif" << "EPSG:2401" << QString();
    QTest::newRow("shapefile") << "xian.shp" << "EPSG:4610" << QString();
    QTest::newRow("GeoTIFF without system") << "plain.tif" << QString() << "Data doesn't have spatial reference!";
    QTest::newRow("not a dataset") << "notes.txt" << QString() << QString();
}

void TestOutputSpatialReferenceDlg::importDataset()
{
    QFETCH(QString, file);
    QFETCH(QString, code);
    QFETCH(QString, message);
    QTemporaryDir dir;
    const QString path = dir.filePath(file);
    if (file.endsWith(".txt"))
        QVERIFY(KivTest::writeFile(path, "not a dataset\n"));
    else
        QVERIFY(file.endsWith(".tif") ? DatasetFixtures::writeRaster(path, code, 2)
                                      : DatasetFixtures::writePoints(path, code, {}));
    Fixture f;
    widget<QLineEdit>(&f.dlg, "lname_ineEdit")->setText("kept");
    f.importFile(path, !message.isEmpty());
    QVERIFY2(f.driver.verify(), qPrintable(f.driver.report()));
    if (!message.isEmpty())
        QCOMPARE(f.driver.messages().at(0).text, message);
    // The name field is left as it was.
    QCOMPARE(f.name(), QString("kept"));
    if (code.isEmpty() || !message.isEmpty()) {
        QVERIFY(f.content().isEmpty());
        QVERIFY(f.dlg.GetWkt().isEmpty());
        QVERIFY(!f.enabled("Export_pushButton"));
        return;
    }
    const auto read = KivGeometry::SpatialReferenceFactory::CreateSpatialReference(f.dlg.GetWkt());
    const auto registry = KivGeometry::SpatialReferenceFactory::CreateSpatialReference(code);
    QVERIFY(read);
    QVERIFY(read->IsSame(registry));
    QVERIFY2(f.content().startsWith((code == "EPSG:2401" ? "PROJCS[\"" : "GEOGCS[\"") + registry->GetName() + "\""),
             qPrintable(f.content()));
    QVERIFY(f.enabled("Export_pushButton"));
}

void TestOutputSpatialReferenceDlg::newSystemsAndClear_data()
{
    QTest::addColumn<bool>("projected");
    QTest::newRow("geographic") << false;
    QTest::newRow("projected") << true;
}

void TestOutputSpatialReferenceDlg::newSystemsAndClear()
{
    QFETCH(bool, projected);
    Fixture f;
    // Cancel before anything was accepted: empty result and name.
    f.driver.handleModal(projected ? "NewProjCoorSysDlg" : "NewGeoCoorSysDlg",
                         [](QWidget* w) { press(w, "cancelButton"); });
    f.trigger(projected ? 1 : 0);
    QVERIFY(f.dlg.GetWkt().isEmpty());
    QVERIFY(!f.enabled("Clear_pushButton"));

    if (projected)
        answerNewProjected(f.driver, "GK 117", "D_Beijing_1954", "Gauss_Kruger",
                           {"Central_Meridian=117", "False_Easting=39500000"});
    else
        answerNewGeographic(f.driver, "GCS_Beijing_1954", "D_Beijing_1954");
    f.trigger(projected ? 1 : 0);
    QVERIFY2(f.driver.verify(), qPrintable(f.driver.report()));
    const QString composed = f.dlg.GetWkt();
    QVERIFY(composed.startsWith(projected ? "PROJCS[\"GK 117\"," : "GEOGCS[\"GCS_Beijing_1954\","));
    if (!projected)
        QCOMPARE(composed, kBeijingText());
    QCOMPARE(f.name(), QString(projected ? "GK 117" : "GCS_Beijing_1954"));
    // The display goes through a geographic system object, whatever the kind.
    QCOMPARE(f.content(), KivGeometry::SpatialReferenceFactory::CreateSpatialReference(composed)->ExportToPrettyWkt());
    QVERIFY(f.enabled("modify_pushButton"));

    f.click("Clear_pushButton");
    QVERIFY(f.dlg.GetWkt().isEmpty());
    QVERIFY(f.content().isEmpty() && f.name().isEmpty());
    for (const char* button : {"modify_pushButton", "Clear_pushButton", "Export_pushButton"})
        QVERIFY2(!f.enabled(button), button);

    // Cancel after Clear brings the remembered text back, with an empty name.
    f.driver.handleModal(projected ? "NewProjCoorSysDlg" : "NewGeoCoorSysDlg",
                         [](QWidget* w) { press(w, "cancelButton"); });
    f.trigger(projected ? 1 : 0);
    QVERIFY2(f.driver.verify(), qPrintable(f.driver.report()));
    QCOMPARE(f.dlg.GetWkt(), composed);
    QVERIFY(f.name().isEmpty());
    QVERIFY(!f.content().isEmpty());
    QVERIFY(f.enabled("Export_pushButton"));
    f.click("okButton");
    QCOMPARE(f.dlg.result(), 1);
}

void TestOutputSpatialReferenceDlg::modifyGeographic()
{
    Fixture f;
    answerNewGeographic(f.driver, "GCS_Beijing_1954", "D_Beijing_1954");
    f.trigger(0);
    QString title, preloaded;
    f.driver.handleModal("NewGeoCoorSysDlg", [&](QWidget* w) {
        title = w->windowTitle();
        preloaded = text(w, "geoCoorName_lineEdit") + "|" + text(w, "datumName_comboBox");
        widget<QLineEdit>(w, "geoCoorName_lineEdit")->setText("Beijing54 local");
        press(w, "okButton");
    });
    f.click("modify_pushButton");
    QVERIFY2(f.driver.verify(), qPrintable(f.driver.report()));
    QCOMPARE(title, QString("Geographic Coordinate System"));
    QCOMPARE(preloaded, QString("Beijing 1954|D_Beijing_1954"));
    QCOMPARE(f.dlg.GetWkt(), QString(kBeijingText()).replace("GCS_Beijing_1954", "Beijing54 local"));
    QCOMPARE(f.name(), QString("Beijing54 local"));

    // A datum the catalogue does not know cannot be modified.
    QTemporaryDir dir;
    QVERIFY(KivTest::writeFile(dir.filePath("own.prj"),
                               "GEOGCS[\"own\",DATUM[\"D_Own\",SPHEROID[\"s\",6378000,300]],PRIMEM[\"Greenwich\",0],"
                               "UNIT[\"Degree\",0.0174532925199433]]"));
    f.importFile(dir.filePath("own.prj"));
    QVERIFY(f.content().contains("D_Own") || f.content().contains("Own"));
    f.driver.answerMessageBox();
    f.click("modify_pushButton");
    QVERIFY2(f.driver.verify(), qPrintable(f.driver.report()));
    QCOMPARE(f.driver.messages().last().text,
             QString("The current projection coordinate system does not support modification!"));
    QCOMPARE(f.driver.messages().last().title, QString("Geographic Coordinate System"));
}

void TestOutputSpatialReferenceDlg::modifyProjected_data()
{
    QTest::addColumn<bool>("geographicFirst");
    QTest::newRow("no geographic accepted before") << false;
    QTest::newRow("a geographic accepted before") << true;
}

void TestOutputSpatialReferenceDlg::modifyProjected()
{
    QFETCH(bool, geographicFirst);
    Fixture f;
    if (geographicFirst) {
        answerNewGeographic(f.driver, "GCS_Xian", "D_Xian_1980");
        f.trigger(0);
    }
    const QString geographic = f.dlg.GetWkt();
    answerNewProjected(f.driver, "GK 117", "D_Beijing_1954", "Gauss_Kruger", {"Central_Meridian=117"});
    f.trigger(1);
    QString title, preloaded;
    f.driver.handleModal("NewProjCoorSysDlg", [&](QWidget* w) {
        title = w->windowTitle();
        preloaded = text(w, "lineEdit") + "|" + text(w, "projName_comboBox");
        widget<QLineEdit>(w, "lineEdit")->setText("GK 117 modified");
        press(w, "okButton");
    });
    f.click("modify_pushButton");
    QVERIFY2(f.driver.verify(), qPrintable(f.driver.report()));
    QCOMPARE(title, QString("Projection Coordinate System"));
    // The shown system went through the platform: a Gauss-Krüger zone comes
    // back as Transverse_Mercator.
    QCOMPARE(preloaded, QString("GK 117|Transverse_Mercator"));
    QCOMPARE(f.name(), QString("GK 117 modified"));
    QVERIFY(f.content().startsWith("PROJCS[\"GK 117 modified\""));
    // The result is the last geographic text accepted here, not the modified
    // projected one.
    QCOMPARE(f.dlg.GetWkt(), geographic);
}

void TestOutputSpatialReferenceDlg::exportWithoutRights()
{
    Fixture f;
    KivTest::answerSelector(f.driver, "EPSG:4490");
    f.click("Select_pushButton");
    QTemporaryDir dir;
    const QString out = dir.filePath("no such folder/x.prj");
    f.driver.answerFileDialog(out);
    f.driver.answerMessageBox();
    f.click("Export_pushButton");
    QVERIFY2(f.driver.verify(), qPrintable(f.driver.report()));
    QCOMPARE(f.driver.messages().last().text, QString("Export success!"));
    QCOMPARE(f.driver.messages().last().title, kTitle);
    QVERIFY(!QFile::exists(out));
    // A cancelled save dialog writes nothing and says nothing.
    f.driver.cancelFileDialog();
    f.click("Export_pushButton");
    QVERIFY2(f.driver.verify(), qPrintable(f.driver.report()));
    QCOMPARE(f.driver.messages().size(), 1);
}

KIV_TEST_CLASS(TestOutputSpatialReferenceDlg)
#include "tst_OutputSpatialReferenceDlg.moc"
