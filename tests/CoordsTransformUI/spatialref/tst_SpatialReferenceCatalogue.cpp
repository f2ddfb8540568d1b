#include "SrsDialogSteps.h"

#include "spatialref/NewGeoCoorSysDlg.h"
#include "spatialref/NewProjCoorSysDlg.h"
#include "spatialref/OutputSpatialReferenceDlg.h"
#include "spatialref/SpatialReferenceCatalogue.h"

#include "support/ModalDriver.h"
#include "support/SelectorDriver.h"
#include "support/TestData.h"
#include "support/TestRegistry.h"

#include "KivGeometry/SpatialReferenceFactory.h"

#include <QAction>
#include <QDomDocument>
#include <QMenu>
#include <QProcess>
#include <QPushButton>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>


using KivTest::ModalDriver;
using namespace SrsTest;

namespace {

QList<QStringList> records(const QString& file, int fields)
{
    QList<QStringList> list;
    SpatialReferenceCatalogue::ReadRecords(catalogueDir() + "/" + file, fields, &list);
    return list;
}

/// The text of node `keyword` (first occurrence) of one-line WKT, split at commas.
QStringList node(const QString& wkt, const QString& keyword)
{
    const QRegularExpression re(QRegularExpression::escape(keyword) + "\\[([^\\[\\]]*)");
    const QString inside = re.match(wkt).captured(1);
    QStringList parts = inside.split(',');
    for (QString& p : parts)
        p.remove('"');
    return parts;
}

/// Pressing OK on every choice of one combo of a shown dialog: each composed
/// text must make a system of `type`. Returns the refused texts.
QStringList composeEach(QDialog* dlg, const char* combo, int first, const std::function<QString()>& result, int type)
{
    QStringList refused;
    auto* box = widget<QComboBox>(dlg, combo);
    for (int i = first; i < box->count(); ++i) {
        box->setCurrentIndex(i);
        press(dlg, "okButton");
        const QString wkt = result();
        const auto system = KivGeometry::SpatialReferenceFactory::CreateSpatialReference(wkt);
        if (!system || system->GetType() != type)
            refused << wkt;
    }
    return refused;
}

} // namespace

class TestSpatialReferenceCatalogue : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }
    void generatorMatchesShipped();
    void esriNames_data();
    void esriNames();
    void everyGeographicPartComposes();
    void everyProjectionComposes();
    void composedMatchesRegistry_data();
    void composedMatchesRegistry();
};

void TestSpatialReferenceCatalogue::generatorMatchesShipped()
{
    QTemporaryDir dir;
    QProcess generator;
    generator.start(KIV_SRS_CATALOGUES, {dir.path()});
    QVERIFY(generator.waitForFinished(240000));
    QCOMPARE(generator.exitCode(), 0);
    for (const char* file : {"SPHEROID.xml", "AngularUnit.xml", "PrimeMeridian.xml", "Projection.xml", "LinearUnit.xml"}) {
        const QByteArray made = KivTest::readFile(dir.filePath(file));
        QVERIFY2(!made.isEmpty(), file);
        QVERIFY2(made == KivTest::readFile(catalogueDir() + "/" + file),
                 qPrintable(QString("%1 differs from the generator's output; run scripts/make-srs-catalogues").arg(file)));
    }
}

void TestSpatialReferenceCatalogue::esriNames_data()
{
    QTest::addColumn<QString>("code");
    for (const char* code : {"EPSG:4214", "EPSG:4610", "EPSG:4490", "EPSG:4326", "EPSG:4555", "EPSG:4269",
                             "EPSG:4258", "EPSG:4230", "EPSG:4283", "EPSG:4612", "EPSG:2401", "EPSG:32650",
                             "EPSG:3857", "EPSG:2154", "EPSG:3035", "EPSG:27700"})
        QTest::newRow(code) << code;
}

void TestSpatialReferenceCatalogue::esriNames()
{
    // The parts of a registry system, in the form MorphToESRI gives them, are
    // in the catalogues under exactly those names and values.
    QFETCH(QString, code);
    const auto system = KivGeometry::SpatialReferenceFactory::CreateSpatialReference(code);
    QVERIFY(system);
    system->MorphToESRI();
    const QString wkt = system->ExportToWkt();

    const QStringList datum = node(wkt, "DATUM"), spheroid = node(wkt, "SPHEROID");
    bool found = false;
    for (const QStringList& r : records("SPHEROID.xml", 5)) {
        if (r.value(0) != datum.value(0))
            continue;
        found = true;
        QCOMPARE(r.value(1), spheroid.value(0));
        QCOMPARE(r.value(2).toDouble(), spheroid.value(1).toDouble());
        QCOMPARE(r.value(4).toDouble(), spheroid.value(2).toDouble());
    }
    QVERIFY2(found, qPrintable(datum.value(0)));
    QVERIFY(SpatialReferenceCatalogue::Column(records("AngularUnit.xml", 2), 0).contains(node(wkt, "UNIT").value(0)));
    QVERIFY(SpatialReferenceCatalogue::Column(records("PrimeMeridian.xml", 4), 0).contains(node(wkt, "PRIMEM").value(0)));
    if (system->GetType() != 10)
        return;

    const QString projection = node(wkt, "PROJECTION").value(0);
    QStringList keys;
    auto it = QRegularExpression("PARAMETER\\[\"([^\"]+)\"").globalMatch(wkt);
    while (it.hasNext())
        keys << it.next().captured(1);
    keys.sort();
    QDomDocument doc;
    QCOMPARE(SpatialReferenceCatalogue::ReadDocument(catalogueDir() + "/Projection.xml", &doc),
             SpatialReferenceCatalogue::Ok);
    QStringList catalogued;
    for (QDomElement p = doc.documentElement().firstChildElement(); !p.isNull(); p = p.nextSiblingElement()) {
        if (p.firstChildElement("NAME").text() != projection)
            continue;
        for (QDomElement k = p.firstChildElement("PARAMETER"); !k.isNull(); k = k.nextSiblingElement("PARAMETER"))
            catalogued << k.attribute("key");
    }
    catalogued.sort();
    QCOMPARE(catalogued, keys);
    const QString unit = wkt.mid(wkt.lastIndexOf("UNIT[")).section('"', 1, 1);
    QVERIFY2(SpatialReferenceCatalogue::Column(records("LinearUnit.xml", 2), 0).contains(unit), qPrintable(unit));
}

void TestSpatialReferenceCatalogue::everyGeographicPartComposes()
{
    NewGeoCoorSysDlg dlg;
    dlg.show();
    widget<QLineEdit>(&dlg, "geoCoorName_lineEdit")->setText("composed");
    const auto result = [&] { return dlg.GetSrsWkt(); };
    QCOMPARE(composeEach(&dlg, "datumName_comboBox", 1, result, 0), QStringList());
    choose(&dlg, "datumName_comboBox", "D_WGS_1984");
    QCOMPARE(composeEach(&dlg, "unitName_comboBox", 1, result, 0), QStringList());
    choose(&dlg, "unitName_comboBox", "Degree");
    QCOMPARE(composeEach(&dlg, "centrlMerName_comboBox", 1, result, 0), QStringList());

    // A catalogued meridian is written whole in its degrees text, so the
    // composed system keeps its longitude although minutes and seconds are
    // written too.
    choose(&dlg, "centrlMerName_comboBox", "Paris");
    press(&dlg, "okButton");
    const auto paris = KivGeometry::SpatialReferenceFactory::CreateSpatialReference(dlg.GetSrsWkt());
    QVERIFY(paris->ExportToProj4().contains("+pm=paris") || paris->ExportToProj4().contains("+pm=2.337229"));
}

void TestSpatialReferenceCatalogue::everyProjectionComposes()
{
    NewProjCoorSysDlg dlg;
    dlg.show();
    ModalDriver driver;
    KivTest::answerSelector(driver, "EPSG:4326");
    press(&dlg, "selectGeo_pushButton");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    widget<QLineEdit>(&dlg, "lineEdit")->setText("composed");
    const auto result = [&] { return dlg.GetSrsWkt(); };
    QVERIFY(widget<QComboBox>(&dlg, "projName_comboBox")->count() > 50);
    QCOMPARE(composeEach(&dlg, "projName_comboBox", 0, result, 10), QStringList());
    choose(&dlg, "projName_comboBox", "Transverse_Mercator");
    QCOMPARE(composeEach(&dlg, "uintName_comboBox", 0, result, 10), QStringList());
}

void TestSpatialReferenceCatalogue::composedMatchesRegistry_data()
{
    QTest::addColumn<QString>("datum");
    QTest::addColumn<QStringList>("parameters");   // empty: a geographic system
    QTest::addColumn<QString>("registry");

    QTest::newRow("Beijing 1954 GK 117E") << "D_Beijing_1954"
                                          << QStringList{"Central_Meridian=117", "False_Easting=39500000"}
                                          << "EPSG:2415";
    QTest::newRow("Beijing 1954 GK 75E") << "D_Beijing_1954"
                                         << QStringList{"Central_Meridian=75", "False_Easting=25500000"}
                                         << "EPSG:2401";
    // The geographic part picked from the registry: its indented WKT goes into
    // the PROJCS text as the text box holds it.
    QTest::newRow("GK 117E on a picked Beijing 1954") << "EPSG:4214"
                                                    << QStringList{"Central_Meridian=117", "False_Easting=39500000"}
                                                    << "EPSG:2415";
    QTest::newRow("Xian 1980 geographic") << "D_Xian_1980" << QStringList() << "EPSG:4610";
    QTest::newRow("CGCS2000 geographic") << "D_China_2000" << QStringList() << "EPSG:4490";
}

void TestSpatialReferenceCatalogue::composedMatchesRegistry()
{
    QFETCH(QString, datum);
    QFETCH(QStringList, parameters);
    QFETCH(QString, registry);

    // Composed the way a user does it, through the spatial reference dialog.
    OutputSpatialReferenceDlg dlg;
    dlg.show();
    ModalDriver driver;
    const bool projected = !parameters.isEmpty();
    if (projected)
        answerNewProjected(driver, "composed", datum, "Gauss_Kruger", parameters);
    else
        answerNewGeographic(driver, "composed", datum);
    widget<QPushButton>(&dlg, "NewProj_pushButton")->menu()->actions().at(projected ? 1 : 0)->trigger();
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    const auto composed = KivGeometry::SpatialReferenceFactory::CreateSpatialReference(dlg.GetWkt());
    QVERIFY(composed);
    QCOMPARE(composed->GetType(), projected ? 10 : 0);
    QVERIFY(composed->IsSame(KivGeometry::SpatialReferenceFactory::CreateSpatialReference(registry)));
}

KIV_TEST_CLASS(TestSpatialReferenceCatalogue)
#include "tst_SpatialReferenceCatalogue.moc"
