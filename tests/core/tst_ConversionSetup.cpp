// The one conversion set-up: the two rules for one geographic base, and the
// choice of a stored model by name.

#include "spatialref/ConversionSetup.h"

#include "models/ModelStore.h"

#include "KivGeometry/SpatialReferenceFactory.h"

#include "support/TestData.h"
#include "support/TestRegistry.h"

#include <QTest>

namespace {

KivUtility::_ptr_t<KivGeometry::SpatialReference> sr(const QString& text)
{
    return KivGeometry::SpatialReferenceFactory::CreateSpatialReference(text);
}

// Ends in "1954" like Beijing 1954, but lies on WGS 84's datum.
const char kLocal1954[] = "GEOGCS[\"Local 1954\",DATUM[\"WGS_1984\",SPHEROID[\"WGS 84\",6378137,298.257223563]],"
                          "PRIMEM[\"Greenwich\",0],UNIT[\"degree\",0.0174532925199433]]";

} // namespace

class TestConversionSetup : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }
    void sameBase_data();
    void sameBase();
    void storedModelByName_data();
    void storedModelByName();
};

void TestConversionSetup::sameBase_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("target");
    QTest::addColumn<bool>("sameDatum");
    QTest::addColumn<bool>("sameNameEnding");
    QTest::newRow("a zone on its own base") << "EPSG:2436" << "EPSG:4214" << true << true;
    QTest::newRow("two datums") << "EPSG:4214" << "EPSG:4326" << false << false;
    QTest::newRow("names alike, datums not") << "EPSG:4214" << kLocal1954 << false << true;
    QTest::newRow("ESRI names of one datum")
        << "EPSG:2436"
        << "GEOGCS[\"GCS_Beijing_1954\",DATUM[\"D_Beijing_1954\",SPHEROID[\"Krasovsky_1940\",6378245.0,298.3]],"
           "PRIMEM[\"Greenwich\",0.0],UNIT[\"Degree\",0.0174532925199433]]"
        << true << true;
}

void TestConversionSetup::sameBase()
{
    QFETCH(QString, source);
    QFETCH(QString, target);
    QFETCH(bool, sameDatum);
    QFETCH(bool, sameNameEnding);
    const auto a = sr(source), b = sr(target);
    QVERIFY(a && b);
    QCOMPARE(ConversionSetup::SameBase(a.get(), b.get(), ConversionSetup::SameDatum), sameDatum);
    QCOMPARE(ConversionSetup::SameBase(a.get(), b.get(), ConversionSetup::SameNameEnding), sameNameEnding);
}

void TestConversionSetup::storedModelByName_data()
{
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("mode"); // -1: refused
    QTest::addColumn<QString>("error");
    QTest::newRow("only seven") << "EPSG:4214" << "seven" << int(CoordinateConversion::SevenParameters) << "";
    QTest::newRow("only four") << "EPSG:4326" << "four" << int(CoordinateConversion::FourParameters) << "";
    QTest::newRow("both, one base") << "EPSG:4214" << "both" << int(CoordinateConversion::FourParameters) << "";
    QTest::newRow("both, two bases") << "EPSG:4326" << "both" << int(CoordinateConversion::SevenParameters) << "";
    QTest::newRow("unknown, names listed") << "EPSG:4326" << "none" << -1
                                           << "Seven-parameter models: \"seven\", \"both\"";
    QTest::newRow("numbers that are not numbers") << "EPSG:4326" << "bad" << -1 << "cannot be used";
}

void TestConversionSetup::storedModelByName()
{
    QFETCH(QString, target);
    QFETCH(QString, name);
    QFETCH(int, mode);
    QFETCH(QString, error);
    QVERIFY(KivTest::writeFile(
        ModelStore::ReaderPath(),
        "<root><Params4>"
        "<GeoTransformsModel SrcSpaRef=\"a\" TransName=\"four\" DesSpaRef=\"b\" DX=\"1\" DY=\"2\" T=\"3\" K=\"1\"/>"
        "<GeoTransformsModel SrcSpaRef=\"a\" TransName=\"both\" DesSpaRef=\"b\" DX=\"4\" DY=\"4\" T=\"4\" K=\"1\"/>"
        "</Params4><Params7>"
        "<GeoTransformsModel SrcSpaRef=\"a\" TransName=\"seven\" DesSpaRef=\"b\" DX=\"1\" DY=\"2\" DZ=\"3\" w=\"0\" "
        "k=\"0\" r=\"0\" m=\"0\"/>"
        "<GeoTransformsModel SrcSpaRef=\"a\" TransName=\"both\" DesSpaRef=\"b\" DX=\"7\" DY=\"7\" DZ=\"7\" w=\"0\" "
        "k=\"0\" r=\"0\" m=\"0\"/>"
        "<GeoTransformsModel SrcSpaRef=\"a\" TransName=\"bad\" DesSpaRef=\"b\" DX=\"x\" DY=\"0\" DZ=\"0\" w=\"0\" "
        "k=\"0\" r=\"0\" m=\"0\"/>"
        "</Params7></root>"));
    ConversionSetup setup;
    setup.source = sr(QStringLiteral("EPSG:2436"));
    setup.target = sr(target);
    QString message;
    QCOMPARE(setup.UseStoredModel(name, ConversionSetup::SameDatum, &message), mode >= 0);
    if (mode < 0) {
        QVERIFY2(message.contains(error), qPrintable(message));
        return;
    }
    QCOMPARE(int(setup.mode), mode);
    QCOMPARE(setup.modelName, name);
    QCOMPARE(setup.params.size(), mode == CoordinateConversion::SevenParameters ? 7 : 4);
    QVERIFY(setup.MakeConversion()->IsReady());
}

KIV_TEST_CLASS(TestConversionSetup)
#include "tst_ConversionSetup.moc"
