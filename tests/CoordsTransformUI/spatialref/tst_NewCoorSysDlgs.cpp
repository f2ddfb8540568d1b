#include "SrsDialogSteps.h"

#include "spatialref/NewGeoCoorSysDlg.h"
#include "spatialref/NewProjCoorSysDlg.h"

#include "support/FilesDialogSteps.h"
#include "support/ModalDriver.h"
#include "support/SelectorDriver.h"
#include "support/TestData.h"
#include "support/TestRegistry.h"

#include "KivGeometry/SpatialReferenceFactory.h"

#include <QFile>
#include <QtTest>

using KivTest::ModalDriver;
using namespace SrsTest;

namespace {

const QString kGeoName = "Please enter a valid name of the new geographic coordinate system!";
const QString kProjName = "Please enter a valid name of the new projection coordinate system!";
const QString kNoGeo = "Please enter a valid geographic coordinate system!";
const QString kNoModify = "The current projection coordinate system does not support modification!";
const QString kOpenFailed = "Parse spatial reference file failed!";
const QString kParseFailed = "Read spatial reference file failed!";

const QString kBeijing = geogcs("GCS_Beijing_1954", "D_Beijing_1954", "Krasovsky_1940", "6378245.0", "298.3");

QStringList tableRows(QWidget* dlg)
{
    QStringList rows;
    auto* table = widget<QTableWidget>(dlg, "tableWidget");
    for (int r = 0; r < table->rowCount(); ++r)
        rows << table->item(r, 0)->text() + "=" + table->item(r, 1)->text();
    return rows;
}

/// Replaces catalogue `file`: "missing" removes it, anything else is its content.
void replaceCatalogue(const QString& file, const QByteArray& content)
{
    const QString path = catalogueDir() + "/" + file;
    QFile::remove(path);
    if (content != "missing")
        QVERIFY(KivTest::writeFile(path, content));
}

} // namespace

class TestNewGeoCoorSysDlg : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }
    void composedText_data();
    void composedText();
    void emptyNameKeepsResult();
    void catalogueFailures_data();
    void catalogueFailures();
    void modifyAssistant_data();
    void modifyAssistant();
};

void TestNewGeoCoorSysDlg::composedText_data()
{
    QTest::addColumn<QStringList>("steps");   // "combo=item", "field:text" in order
    QTest::addColumn<QString>("wkt");

    QTest::newRow("Beijing 1954") << QStringList{"datumName_comboBox=D_Beijing_1954"} << kBeijing;
    QTest::newRow("Xian 1980, grad, Paris")
        << QStringList{"datumName_comboBox=D_Xian_1980", "unitName_comboBox=Grad", "centrlMerName_comboBox=Paris"}
        << "GEOGCS[\"GCS_Beijing_1954\",DATUM[\"D_Xian_1980\",SPHEROID[\"Xian_1980\",6378140.0,298.257]],"
           "PRIMEM[\"Paris\",2.33722917,0,0],UNIT[\"Grad\",0.0157079632679489]]";
    // "<Custom>" datum: the combo becomes editable and the spheroid values stay
    // as the previous datum left them (and read-only).
    QTest::newRow("custom datum")
        << QStringList{"datumName_comboBox=D_Xian_1980", "datumName_comboBox=<Custom>", "datumName_comboBox:D_Mine"}
        << "GEOGCS[\"GCS_Beijing_1954\",DATUM[\"D_Mine\",SPHEROID[\"Xian_1980\",6378140.0,298.257]],"
           "PRIMEM[\"Greenwich\",0.0,0,0],UNIT[\"Degree\",0.0174532925199433]]";
    // Custom unit and meridian take typed values, written as they stand.
    QTest::newRow("custom unit and meridian")
        << QStringList{"unitName_comboBox=<Custom>", "unitName_comboBox:Half_Degree", "radians_lineEdit:0.00872664626",
                       "centrlMerName_comboBox=<Custom>", "centrlMerName_comboBox:Local", "centMerDgre_lineEdit:117",
                       "centMerMina_lineEdit:30", "centMerSecs_lineEdit:00.5"}
        << "GEOGCS[\"GCS_Beijing_1954\",DATUM[\"D_WGS_1984\",SPHEROID[\"WGS_1984\",6378137.0,298.257223563]],"
           "PRIMEM[\"Local\",117,30,00.5],UNIT[\"Half_Degree\",0.00872664626]]";
}

void TestNewGeoCoorSysDlg::composedText()
{
    QFETCH(QStringList, steps);
    QFETCH(QString, wkt);
    NewGeoCoorSysDlg dlg;
    dlg.show();
    widget<QLineEdit>(&dlg, "geoCoorName_lineEdit")->setText("GCS_Beijing_1954");
    for (const QString& step : steps) {
        if (step.contains('=')) {
            choose(&dlg, step.section('=', 0, 0).toLatin1().constData(), step.section('=', 1));
        } else {
            const QByteArray name = step.section(':', 0, 0).toLatin1();
            QWidget* w = widget<QWidget>(&dlg, name.constData());
            if (auto* combo = qobject_cast<QComboBox*>(w)) {
                QVERIFY2(combo->isEditable(), name.constData());
                combo->setEditText(step.section(':', 1));
            } else {
                auto* edit = qobject_cast<QLineEdit*>(w);
                QVERIFY2(!edit->isReadOnly(), name.constData());
                edit->setText(step.section(':', 1));
            }
        }
    }
    // Only a "<Custom>" datum opens the spheroid; its values stay read-only.
    QCOMPARE(widget<QComboBox>(&dlg, "spheroidName_comboBox")->isEnabled(),
             steps.join(' ').contains("datumName_comboBox=<Custom>"));
    QVERIFY(widget<QLineEdit>(&dlg, "SemiMaj_lineEdit")->isReadOnly());
    ModalDriver driver;
    press(&dlg, "okButton");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(dlg.result(), int(QDialog::Accepted));
    QCOMPARE(dlg.GetSrsWkt(), wkt);
    QCOMPARE(dlg.GetSrsName(), QString("GCS_Beijing_1954"));
}

void TestNewGeoCoorSysDlg::emptyNameKeepsResult()
{
    NewGeoCoorSysDlg dlg;
    dlg.show();
    ModalDriver driver;
    driver.answerMessageBox();
    press(&dlg, "okButton");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(dlg.result(), int(QDialog::Accepted));
    QCOMPARE(driver.messages().at(0).text, kGeoName);
    QCOMPARE(driver.messages().at(0).title, QString("New Geographic Coordinate System"));
    QCOMPARE(driver.messages().at(0).icon, QMessageBox::Warning);
    QVERIFY(dlg.GetSrsWkt().isEmpty());

    // A later OK without a name leaves the earlier result in place.
    fillGeographic(&dlg, "GCS_Beijing_1954", "D_Beijing_1954");
    press(&dlg, "okButton");
    widget<QLineEdit>(&dlg, "geoCoorName_lineEdit")->clear();
    driver.answerMessageBox();
    press(&dlg, "okButton");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(dlg.GetSrsWkt(), kBeijing);
    QCOMPARE(dlg.GetSrsName(), QString());
}

void TestNewGeoCoorSysDlg::catalogueFailures_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("combo");
    QTest::addColumn<QStringList>("items");   // of that combo after construction

    for (const char* file : {"SPHEROID.xml", "AngularUnit.xml", "PrimeMeridian.xml"}) {
        const QString combo = QString(file) == "SPHEROID.xml" ? "datumName_comboBox"
            : QString(file) == "AngularUnit.xml"              ? "unitName_comboBox"
                                                              : "centrlMerName_comboBox";
        QTest::addRow("%s missing", file) << file << QByteArray("missing") << kOpenFailed << combo
                                          << QStringList{"<Custom>"};
        QTest::addRow("%s malformed", file) << file << QByteArray("<a><b></a>") << kParseFailed << combo
                                            << QStringList{"<Custom>"};
    }
    // Positional reading: element names do not matter, short records give
    // empty texts, extra children are ignored.
    QTest::newRow("short record")
        << "SPHEROID.xml" << QByteArray("<x><r><a>D_Short</a><b>Sph</b><c>6378000</c></r>"
                                        "<r><q>D_WGS_1984</q><q>W</q><q>1</q><q>2</q><q>3</q><q>extra</q></r></x>")
        << QString() << "datumName_comboBox" << QStringList{"<Custom>", "D_Short", "D_WGS_1984"};
}

void TestNewGeoCoorSysDlg::catalogueFailures()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, content);
    QFETCH(QString, message);
    QFETCH(QString, combo);
    QFETCH(QStringList, items);
    replaceCatalogue(file, content);
    ModalDriver driver;
    if (!message.isEmpty())
        driver.answerMessageBox();
    NewGeoCoorSysDlg dlg;
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    if (!message.isEmpty()) {
        QCOMPARE(driver.messages().at(0).text, message);
        QCOMPARE(driver.messages().at(0).title, QString("New Geographic Coordinate System"));
        QCOMPARE(driver.messages().at(0).icon, QMessageBox::Information);
    }
    QCOMPARE(DialogSteps::comboItems(dlg, combo.toLatin1().constData()), items);
    // "<Custom>" selected by default ran its handler: typed values are open.
    if (items == QStringList{"<Custom>"}) {
        QVERIFY(widget<QComboBox>(&dlg, combo.toLatin1().constData())->isEditable());
        if (combo == "unitName_comboBox")
            QVERIFY(!widget<QLineEdit>(&dlg, "radians_lineEdit")->isReadOnly());
        if (combo == "centrlMerName_comboBox")
            QVERIFY(!widget<QLineEdit>(&dlg, "centMerDgre_lineEdit")->isReadOnly());
    }
    if (content.contains("D_Short")) {
        choose(&dlg, "datumName_comboBox", "D_Short");
        QCOMPARE(text(&dlg, "SemiMaj_lineEdit"), QString("6378000"));
        QCOMPARE(text(&dlg, "inverFlatt_lineEdit"), QString());
        QCOMPARE(text(&dlg, "spheroidName_comboBox"), QString("Sph"));
    }
    // The dialog stays usable.
    dlg.show();
    widget<QLineEdit>(&dlg, "geoCoorName_lineEdit")->setText("n");
    press(&dlg, "okButton");
    QVERIFY(dlg.GetSrsWkt().startsWith("GEOGCS[\"n\",DATUM[\""));
}

void TestNewGeoCoorSysDlg::modifyAssistant_data()
{
    QTest::addColumn<QString>("wkt");
    QTest::addColumn<bool>("accepted");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("datum");

    const auto pretty = [](const char* code) {
        return KivGeometry::SpatialReferenceFactory::CreateSpatialReference(code)->ExportToPrettyWkt();
    };
    QTest::newRow("EPSG:4610 pretty") << pretty("EPSG:4610") << true << "Xian 1980" << "D_Xian_1980";
    QTest::newRow("CGCS2000") << pretty("EPSG:4490") << true << "China Geodetic Coordinate System 2000"
                              << "D_China_2000";
    QTest::newRow("composed Beijing 1954") << QString(kBeijing).replace("GCS_Beijing_1954", "Beijing54 local") << true
                                           << "Beijing54 local" << "D_Beijing_1954";
    QTest::newRow("WGS_1984 found as D_WGS_1984")
        << "GEOGCS[\"mine\",DATUM[\"WGS_1984\",SPHEROID[\"WGS 84\",6378137,298.257223563]],PRIMEM[\"Greenwich\",0],"
           "UNIT[\"degree\",0.0174532925199433]]"
        << true << "mine" << "D_WGS_1984";
    QTest::newRow("uncatalogued datum")
        << "GEOGCS[\"x\",DATUM[\"Nowhere_datum\",SPHEROID[\"s\",6378000,300]],PRIMEM[\"Greenwich\",0],"
           "UNIT[\"degree\",0.0174532925199433]]"
        << false << QString() << "D_WGS_1984";
    QTest::newRow("not WKT") << "garbage" << false << QString() << "D_WGS_1984";
}

void TestNewGeoCoorSysDlg::modifyAssistant()
{
    QFETCH(QString, wkt);
    QFETCH(bool, accepted);
    QFETCH(QString, name);
    QFETCH(QString, datum);
    NewGeoCoorSysDlg dlg;
    choose(&dlg, "unitName_comboBox", "Grad");
    ModalDriver driver;
    if (!accepted)
        driver.answerMessageBox();
    QCOMPARE(dlg.ModifyAssistant(wkt), accepted);
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    if (!accepted)
        QCOMPARE(driver.messages().at(0).text, kNoModify);
    QCOMPARE(text(&dlg, "geoCoorName_lineEdit"), name);
    QCOMPARE(text(&dlg, "datumName_comboBox"), datum);
    // Only name and datum are taken over.
    QCOMPARE(text(&dlg, "unitName_comboBox"), QString("Grad"));
}

class TestNewProjCoorSysDlg : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }
    void composedText();
    void okChecks_data();
    void okChecks();
    void selectNonGeographic();
    void modifyGeographic();
    void modifyAssistant_data();
    void modifyAssistant();
    void catalogueFailures_data();
    void catalogueFailures();
};

void TestNewProjCoorSysDlg::composedText()
{
    NewProjCoorSysDlg dlg;
    dlg.show();
    ModalDriver driver;
    answerNewGeographic(driver, "GCS_Beijing_1954", "D_Beijing_1954");
    press(&dlg, "newGeo_pushButton");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QVERIFY(widget<QAbstractButton>(&dlg, "modifyGeo_pushButton")->isEnabled());
    const QString geographic = text(&dlg, "geoCoorInfo_textEdit");
    QVERIFY(geographic.startsWith("GEOGCS[\"Beijing 1954\""));

    widget<QLineEdit>(&dlg, "lineEdit")->setText("Beijing54 GK 117E");
    choose(&dlg, "projName_comboBox", "Gauss_Kruger");
    QVERIFY(setParameter(&dlg, "Central_Meridian", "117"));
    QVERIFY(setParameter(&dlg, "False_Easting", "39500000"));
    // Row order does not matter: parameters are written in name order.
    widget<QTableWidget>(&dlg, "tableWidget")->sortItems(0, Qt::DescendingOrder);
    press(&dlg, "okButton");
    QCOMPARE(dlg.result(), int(QDialog::Accepted));
    const QString expected = "PROJCS[\"Beijing54 GK 117E\"," + geographic
        + ",PROJECTION[\"Gauss_Kruger\"],PARAMETER[\"Central_Meridian\",117],PARAMETER[\"False_Easting\",39500000],"
          "PARAMETER[\"False_Northing\",0.0],PARAMETER[\"Latitude_Of_Origin\",0.0],PARAMETER[\"Scale_Factor\",1.0],"
          "UNIT[\"Meter\",1.0]]";
    QCOMPARE(dlg.GetSrsWkt(), expected);
    QCOMPARE(dlg.GetSrsName(), QString("Beijing54 GK 117E"));
}

void TestNewProjCoorSysDlg::okChecks_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("code");   // geographic system chosen first; empty: none
    QTest::addColumn<QString>("message");

    QTest::newRow("no name, no system") << QString() << QString() << kProjName;
    QTest::newRow("no name") << QString() << "EPSG:4214" << kProjName;
    QTest::newRow("no system") << "p" << QString() << kNoGeo;
}

void TestNewProjCoorSysDlg::okChecks()
{
    QFETCH(QString, name);
    QFETCH(QString, code);
    QFETCH(QString, message);
    NewProjCoorSysDlg dlg;
    dlg.show();
    ModalDriver driver;
    if (!code.isEmpty()) {
        KivTest::answerSelector(driver, code);
        press(&dlg, "selectGeo_pushButton");
    }
    widget<QLineEdit>(&dlg, "lineEdit")->setText(name);
    driver.answerMessageBox();
    press(&dlg, "okButton");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(driver.messages().size(), 1);
    QCOMPARE(driver.messages().at(0).text, message);
    QCOMPARE(driver.messages().at(0).icon, QMessageBox::Warning);
    QCOMPARE(dlg.result(), int(QDialog::Accepted));
    QVERIFY(dlg.GetSrsWkt().isEmpty());
    QVERIFY(dlg.GetSrsName().isEmpty());
}

void TestNewProjCoorSysDlg::selectNonGeographic()
{
    NewProjCoorSysDlg dlg;
    dlg.show();
    ModalDriver driver;
    KivTest::answerSelector(driver, "EPSG:4610");
    press(&dlg, "selectGeo_pushButton");
    QVERIFY(text(&dlg, "geoCoorInfo_textEdit").contains("Xian"));
    // A projected choice empties the box and is refused; Modify stays as it was.
    KivTest::answerSelector(driver, "EPSG:2401");
    driver.answerMessageBox();
    press(&dlg, "selectGeo_pushButton");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(driver.messages().at(0).text, QString("Spatial Reference type must be geographic coordinate system!"));
    QCOMPARE(driver.messages().at(0).title, QString("New Projection Coordinate System"));
    QVERIFY(text(&dlg, "geoCoorInfo_textEdit").isEmpty());
    QVERIFY(widget<QAbstractButton>(&dlg, "modifyGeo_pushButton")->isEnabled());
}

void TestNewProjCoorSysDlg::modifyGeographic()
{
    NewProjCoorSysDlg dlg;
    dlg.show();
    ModalDriver driver;
    KivTest::answerSelector(driver, "EPSG:4610");
    press(&dlg, "selectGeo_pushButton");
    QString title, preloaded;
    driver.handleModal("NewGeoCoorSysDlg", [&](QWidget* w) {
        title = w->windowTitle();
        preloaded = text(w, "geoCoorName_lineEdit") + "|" + text(w, "datumName_comboBox");
        widget<QLineEdit>(w, "geoCoorName_lineEdit")->setText("Xian80 local");
        press(w, "okButton");
    });
    press(&dlg, "modifyGeo_pushButton");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(title, QString("Geographic Coordinate System"));
    QCOMPARE(preloaded, QString("Xian 1980|D_Xian_1980"));
    QVERIFY(text(&dlg, "geoCoorInfo_textEdit").startsWith("GEOGCS[\"Xian80 local\""));
}

void TestNewProjCoorSysDlg::modifyAssistant_data()
{
    QTest::addColumn<QString>("wkt");
    QTest::addColumn<bool>("accepted");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("projection");

    const QString gk = "PROJCS[\"GK 117\"," + kBeijing
        + ",PROJECTION[\"Gauss_Kruger\"],PARAMETER[\"Central_Meridian\",117],PARAMETER[\"False_Easting\",39500000],"
          "PARAMETER[\"False_Northing\",0.0],PARAMETER[\"Latitude_Of_Origin\",0.0],PARAMETER[\"Scale_Factor\",1.0],"
          "UNIT[\"Meter\",1.0]]";
    QTest::newRow("composed text") << gk << true << "GK 117" << "Gauss_Kruger";
    // The platform's indented form, as the spatial reference dialog shows it.
    QTest::newRow("EPSG:2401 pretty")
        << KivGeometry::SpatialReferenceFactory::CreateSpatialReference("EPSG:2401")->ExportToPrettyWkt() << true
        << "Beijing 1954 / 3-degree Gauss-Kruger zone 25" << "Transverse_Mercator";
    QString dotted = gk;
    dotted.replace("Gauss_Kruger", "Gauss.Kruger");
    QTest::newRow("full stop in the projection name") << dotted << false << QString() << "Adams_Square_II";
    QString unknownDatum = gk;
    unknownDatum.replace("D_Beijing_1954", "D_Nowhere");
    QTest::newRow("uncatalogued datum") << unknownDatum << false << QString() << "Adams_Square_II";
    QTest::newRow("geographic") << kBeijing << false << QString() << "Adams_Square_II";
}

void TestNewProjCoorSysDlg::modifyAssistant()
{
    QFETCH(QString, wkt);
    QFETCH(bool, accepted);
    QFETCH(QString, name);
    QFETCH(QString, projection);
    NewProjCoorSysDlg dlg;
    choose(&dlg, "uintName_comboBox", "foot");
    ModalDriver driver;
    if (!accepted)
        driver.answerMessageBox();
    QCOMPARE(dlg.ModifyAssistant(wkt), accepted);
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    if (!accepted) {
        QCOMPARE(driver.messages().at(0).text, kNoModify);
        QVERIFY(text(&dlg, "geoCoorInfo_textEdit").isEmpty());
        return;
    }
    QCOMPARE(text(&dlg, "lineEdit"), name);
    QCOMPARE(text(&dlg, "projName_comboBox"), projection);
    QVERIFY(text(&dlg, "geoCoorInfo_textEdit").startsWith("GEOGCS["));
    // Catalogue defaults, not the system's values; the unit chosen before stays.
    QVERIFY(!tableRows(&dlg).contains("Central_Meridian=117"));
    QCOMPARE(text(&dlg, "uintName_comboBox"), QString("foot"));
}

void TestNewProjCoorSysDlg::catalogueFailures_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("message");
    for (const char* file : {"SPHEROID.xml", "Projection.xml", "LinearUnit.xml"}) {
        QTest::addRow("%s missing", file) << file << QByteArray("missing") << kOpenFailed;
        QTest::addRow("%s malformed", file) << file << QByteArray("<a>") << kParseFailed;
    }
}

void TestNewProjCoorSysDlg::catalogueFailures()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, content);
    QFETCH(QString, message);
    replaceCatalogue(file, content);
    ModalDriver driver;
    // The projection catalogue is read at construction for the list and once
    // more for the first projection's parameters.
    const int boxes = file == "Projection.xml" ? 2 : 1;
    for (int i = 0; i < boxes; ++i)
        driver.answerMessageBox();
    NewProjCoorSysDlg dlg;
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(driver.messages().size(), boxes);
    QCOMPARE(driver.messages().at(0).text, message);
    QCOMPARE(driver.messages().at(0).title, QString("New Projection Coordinate System"));
    if (file == "Projection.xml") {
        QCOMPARE(widget<QComboBox>(&dlg, "projName_comboBox")->count(), 0);
        QCOMPARE(widget<QTableWidget>(&dlg, "tableWidget")->rowCount(), 0);
    }
    if (file == "LinearUnit.xml")
        QCOMPARE(widget<QComboBox>(&dlg, "uintName_comboBox")->count(), 0);
}

KIV_TEST_CLASS(TestNewGeoCoorSysDlg)
KIV_TEST_CLASS(TestNewProjCoorSysDlg)
#include "tst_NewCoorSysDlgs.moc"
