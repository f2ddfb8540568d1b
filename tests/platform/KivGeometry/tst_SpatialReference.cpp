#include "ProjReference.h"
#include "support/TestData.h"
#include "support/TestRegistry.h"

#include "KivGeometry/GeographicCoordinateSystem.h"
#include "KivGeometry/ProjectedCoordinateSystem.h"
#include "KivGeometry/SpatialReferenceFactory.h"

#include <QTemporaryFile>
#include <QTest>

#include <cstdio>
#include <unistd.h>

using namespace KivGeometry;
using KivUtility::_ptr_t;

namespace {

// The two systems the seven-parameter dialog starts with, tabs included.
const QString kDefaultSource = QStringLiteral(
    "GEOGCS[\"GCS_WGS_1984\",DATUM[\"D_WGS_1984\",SPHEROID[\"WGS_1984\",6378137,298.257223563]],\t\tPRIMEM["
    "\"Greenwich\",0],UNIT[\"Degree\",0.017453292519943295]]");
const QString kDefaultTarget = QStringLiteral(
    "PROJCS[\"Beijing_1954_3_Degree_GK_CM_102E\", \t\tGEOGCS[\"GCS_Beijing_1954\",\t\tDATUM[\"D_Beijing_1954\",\t\t"
    "SPHEROID[\"Krasovsky_1940\", 6378245.0, 298.3]],\t\tPRIMEM[\"Greenwich\", 0.0],\t\tUNIT[\"Degree\", "
    "0.0174532925199433]],\t\tPROJECTION[\"Transverse_Mercator\"],\t\tPARAMETER[\"False_Easting\", 500000.0],\t\t"
    "PARAMETER[\"False_Northing\", 0.0],\t\tPARAMETER[\"Central_Meridian\", 102.0],\t\tPARAMETER[\"Scale_Factor\", "
    "1.0],\t\tPARAMETER[\"Latitude_Of_Origin\", 0.0],\t\tUNIT[\"Meter\", 1.0]]");
const QString kEsriCm114 = QStringLiteral(
    "PROJCS[\"Beijing_1954_3_Degree_GK_CM_114E\",GEOGCS[\"GCS_Beijing_1954\",DATUM[\"D_Beijing_1954\",SPHEROID["
    "\"Krasovsky_1940\",6378245.0,298.3]],PRIMEM[\"Greenwich\",0.0],UNIT[\"Degree\",0.0174532925199433]],PROJECTION["
    "\"Gauss_Kruger\"],PARAMETER[\"False_Easting\",500000.0],PARAMETER[\"False_Northing\",0.0],PARAMETER["
    "\"Central_Meridian\",114.0],PARAMETER[\"Scale_Factor\",1.0],PARAMETER[\"Latitude_Of_Origin\",0.0],UNIT["
    "\"Meter\",1.0]]");
// As the new-geographic-system dialog composes it from its catalogue.
const QString kCustomDatum = QStringLiteral(
    "GEOGCS[\"My system\",DATUM[\"My_Datum\",SPHEROID[\"Krasovsky_1940\",6378245,298.3]],PRIMEM[\"Greenwich\",0,0,0],"
    "UNIT[\"Degree\",0.0174532925199433]]");

_ptr_t<SpatialReference> create(const QString& text)
{
    return SpatialReferenceFactory::CreateSpatialReference(text);
}

QString projjson(const char* code)
{
    ProjReference::Context c;
    ProjReference::Object crs(c.ctx, proj_create(c.ctx, code));
    return QString::fromUtf8(proj_as_projjson(c.ctx, crs.get(), nullptr));
}

QString wkt2(const char* code)
{
    ProjReference::Context c;
    ProjReference::Object crs(c.ctx, proj_create(c.ctx, code));
    return QString::fromUtf8(proj_as_wkt(c.ctx, crs.get(), PJ_WKT2_2019, nullptr));
}

} // namespace

class TestSpatialReference : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }
    void defaultTextsParseAndMorphToEsri();
    void factoryAcceptsEveryForm_data();
    void factoryAcceptsEveryForm();
    void badInputPrintsNothing();
    void exportedWktRecreatesTheSameSystem_data();
    void exportedWktRecreatesTheSameSystem();
    void comparisons_data();
    void comparisons();
    void datumNameFollowsTheHeldForm_data();
    void datumNameFollowsTheHeldForm();
    void projectionParameterTable_data();
    void projectionParameterTable();
    void normalizeTakesTheCatalogueIdentity();
    void importFromWktReportsFailure();
};

void TestSpatialReference::defaultTextsParseAndMorphToEsri()
{
    _ptr_t<SpatialReference> source = create(kDefaultSource);
    _ptr_t<SpatialReference> target = create(kDefaultTarget);
    QVERIFY(source && target);
    QCOMPARE(source->GetType(), 0);
    QCOMPARE(target->GetType(), 10);
    QVERIFY(source.dynamicCast<GeographicCoordinateSystem>());
    QVERIFY(target.dynamicCast<ProjectedCoordinateSystem>());

    QVERIFY(source->MorphToESRI());
    QVERIFY(source->MorphToESRI()); // idempotent
    QCOMPARE(source->GetName(), QStringLiteral("GCS_WGS_1984"));
    auto datum = source.dynamicCast<GeographicCoordinateSystem>()->GetDatum();
    QCOMPARE(datum->GetName(), QStringLiteral("D_WGS_1984"));
    QCOMPARE(datum->GetSpheroid().GetName(), QStringLiteral("WGS_1984"));
    QCOMPARE(datum->GetSpheroid().GetSemiMajorAxis(), 6378137.0);
    QCOMPARE(datum->GetSpheroid().GetInverseFlattening(), 298.257223563);
    QVERIFY(source->ExportToWkt().startsWith(QStringLiteral("GEOGCS[\"GCS_WGS_1984\",DATUM[\"D_WGS_1984\"")));

    QVERIFY(target->MorphToESRI());
    QCOMPARE(target->GetName(), QStringLiteral("Beijing_1954_3_Degree_GK_CM_102E"));
    auto pcs = target.dynamicCast<ProjectedCoordinateSystem>();
    auto gcs = pcs->GetGeographicCoordinateSystem();
    QCOMPARE(gcs->GetName(), QStringLiteral("GCS_Beijing_1954"));
    QCOMPARE(gcs->GetDatum()->GetName(), QStringLiteral("D_Beijing_1954"));
    QCOMPARE(gcs->GetDatum()->GetSpheroid().GetInverseFlattening(), 298.3);
    QCOMPARE(pcs->GetProjection()->GetParameter(Projection::CentralMeridian), 102.0);
    QVERIFY(!source->IsSameGeoCS(target));
}

void TestSpatialReference::factoryAcceptsEveryForm_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("type"); // -2: no system
    QTest::newRow("EPSG code") << "EPSG:4214" << 0;
    QTest::newRow("lower-case code") << "epsg:2435" << 10;
    QTest::newRow("ESRI code") << "ESRI:102100" << 10;
    QTest::newRow("PROJ string") << "+proj=tmerc +lon_0=117 +k=1 +x_0=500000 +ellps=krass +units=m" << 10;
    QTest::newRow("PROJJSON") << projjson("EPSG:4490") << 0;
    QTest::newRow("WKT2") << wkt2("EPSG:4547") << 10;
    QTest::newRow("WKT1 with blanks and line breaks") << "  GEOGCS[\"x\",\n DATUM[\"D_WGS_1984\",\r\n SPHEROID[\"WGS_1984\", 6378137, 298.257223563]],\n PRIMEM[\"Greenwich\",0],\tUNIT[\"Degree\",0.0174532925199433]]\n" << 0;
    QTest::newRow("geocentric") << "EPSG:4978" << 20;
    QTest::newRow("compound") << "EPSG:5972" << 40;
    QTest::newRow("empty") << "" << -2;
    QTest::newRow("garbage") << "garbage" << -2;
    QTest::newRow("unknown code") << "EPSG:999999" << -2;
    QTest::newRow("truncated WKT") << "PROJCS[\"x\",GEOGCS[" << -2;
    QTest::newRow("a file name is not read") << "/etc/hostname" << -2;
}

void TestSpatialReference::factoryAcceptsEveryForm()
{
    QFETCH(QString, text);
    QFETCH(int, type);
    _ptr_t<SpatialReference> sr = create(text);
    if (type == -2) {
        QVERIFY(!sr);
        return;
    }
    QVERIFY(sr);
    QCOMPARE(sr->GetType(), type);
    QCOMPARE(bool(sr.dynamicCast<GeographicCoordinateSystem>()), type == 0);
    QCOMPARE(bool(sr.dynamicCast<ProjectedCoordinateSystem>()), type == 10);
    QVERIFY(!sr->GetName().isEmpty());
    QVERIFY(!sr->ExportToPrettyWkt().isEmpty());
}

void TestSpatialReference::badInputPrintsNothing()
{
    // Bad systems are reported by return values, never on the console.
    QTemporaryFile capture;
    QVERIFY(capture.open());
    fflush(stderr);
    const int saved = dup(2);
    dup2(capture.handle(), 2);
    for (const char* text : {"PROJCS[\"x\",GEOGCS[", "EPSG:999999", "+proj=nonsense", "ESRI:1", "{\"type\": 1}"})
        QVERIFY(!create(QString::fromLatin1(text)));
    GeographicCoordinateSystem g;
    QVERIFY(!g.ImportFromWkt(QStringLiteral("GEOGCS[\"broken\"")));
    fflush(stderr);
    dup2(saved, 2);
    ::close(saved);
    capture.seek(0);
    QCOMPARE(capture.readAll(), QByteArray());
}

void TestSpatialReference::exportedWktRecreatesTheSameSystem_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("esri");
    QTest::addColumn<QString>("authority");
    QTest::newRow("EPSG:2435") << "EPSG:2435" << false << "EPSG:2435";
    QTest::newRow("EPSG:2435 in ESRI form") << "EPSG:2435" << true << "";
    QTest::newRow("EPSG:4326") << "EPSG:4326" << false << "EPSG:4326";
    QTest::newRow("default target") << kDefaultTarget << false << "";
    QTest::newRow("custom datum in ESRI form") << kCustomDatum << true << "";
    QTest::newRow("feet") << "EPSG:2229" << false << "EPSG:2229";
}

void TestSpatialReference::exportedWktRecreatesTheSameSystem()
{
    QFETCH(QString, text);
    QFETCH(bool, esri);
    QFETCH(QString, authority);
    _ptr_t<SpatialReference> sr = create(text);
    QVERIFY(sr);
    if (esri)
        sr->MorphToESRI();
    const QString wkt = sr->ExportToWkt();
    QVERIFY(!wkt.contains(QLatin1Char('\n')));
    const QString code = authority.section(QLatin1Char(':'), 1);
    QCOMPARE(wkt.endsWith(QStringLiteral("AUTHORITY[\"EPSG\",\"%1\"]]").arg(code)), !authority.isEmpty());
    _ptr_t<SpatialReference> back = create(wkt);
    QVERIFY(back);
    QVERIFY(back->IsSame(sr));
    QVERIFY(sr->IsSame(back));
    QCOMPARE(back->GetAuthorityCode(), authority);
    QCOMPARE(back->GetType(), sr->GetType());
    QVERIFY(create(sr->ExportToPrettyWkt())->IsSame(sr));
}

void TestSpatialReference::comparisons_data()
{
    QTest::addColumn<QString>("a");
    QTest::addColumn<QString>("b");
    QTest::addColumn<bool>("same");
    QTest::addColumn<bool>("sameGeoCS");
    QTest::newRow("EPSG and ESRI text of one zone") << "EPSG:2435" << kEsriCm114 << true << true;
    QTest::newRow("two zones of Beijing 1954") << "EPSG:2435" << "EPSG:2436" << false << true;
    QTest::newRow("zone and its base") << "EPSG:2435" << "EPSG:4214" << false << true;
    QTest::newRow("default target and a zone") << kDefaultTarget << "EPSG:2436" << false << true;
    QTest::newRow("Beijing 1954 and WGS 84") << "EPSG:4214" << "EPSG:4326" << false << false;
    QTest::newRow("same ellipsoid, other datum") << "EPSG:4214" << "EPSG:4284" << false << false;
    QTest::newRow("CGCS2000 and WGS 84") << "EPSG:4490" << "EPSG:4326" << false << false;
    QTest::newRow("Xian 1980 zone and Beijing 1954 zone") << "EPSG:2383" << "EPSG:2435" << false << false;
    QTest::newRow("WGS 84 and the default source") << "EPSG:4326" << kDefaultSource << true << true;
    QTest::newRow("other angular unit") << "EPSG:4214"
        << "GEOGCS[\"Beijing grads\",DATUM[\"Beijing_1954\",SPHEROID[\"Krassowsky 1940\",6378245,298.3]],PRIMEM[\"Greenwich\",0],UNIT[\"grad\",0.015707963267949]]"
        << false << true;
    QTest::newRow("bound to WGS 84") << "EPSG:4214"
        << "GEOGCS[\"Beijing 1954\",DATUM[\"Beijing_1954\",SPHEROID[\"Krassowsky 1940\",6378245,298.3],TOWGS84[15.8,-154.4,-82.3,0,0,0,0]],PRIMEM[\"Greenwich\",0],UNIT[\"degree\",0.0174532925199433]]"
        << true << true;
    QTest::newRow("geographic and geocentric") << "EPSG:4326" << "EPSG:4978" << false << true;
}

void TestSpatialReference::comparisons()
{
    QFETCH(QString, a);
    QFETCH(QString, b);
    QFETCH(bool, same);
    QFETCH(bool, sameGeoCS);
    _ptr_t<SpatialReference> x = create(a);
    _ptr_t<SpatialReference> y = create(b);
    QVERIFY(x && y);
    QCOMPARE(x->IsSame(y), same);
    QCOMPARE(y->IsSame(x), same);
    QCOMPARE(x->IsSameGeoCS(y), sameGeoCS);
    QCOMPARE(y->IsSameGeoCS(x), sameGeoCS);
    // An ESRI copy compares as its original.
    _ptr_t<SpatialReference> esri = x->Clone();
    esri->MorphToESRI();
    QVERIFY(esri->IsSame(x) && esri->IsSameGeoCS(x));
    QCOMPARE(esri->IsSame(y), same);
    QCOMPARE(esri->IsSameGeoCS(y), sameGeoCS);
    QVERIFY(!x->IsSame(static_cast<SpatialReference*>(nullptr)));
    QVERIFY(!x->IsSameGeoCS(_ptr_t<SpatialReference>(new SpatialReference)));
}

void TestSpatialReference::datumNameFollowsTheHeldForm_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("esri");
    QTest::addColumn<QString>("datum");
    QTest::addColumn<QString>("name");
    QTest::newRow("WKT1 datum") << "GEOGCS[\"WGS 84\",DATUM[\"WGS_1984\",SPHEROID[\"WGS 84\",6378137,298.257223563]],PRIMEM[\"Greenwich\",0],UNIT[\"degree\",0.0174532925199433]]" << false << "WGS_1984" << "WGS 84";
    QTest::newRow("ESRI datum read back") << kDefaultSource << false << "WGS_1984" << "WGS 84";
    QTest::newRow("catalogue") << "EPSG:4214" << false << "Beijing_1954" << "Beijing 1954";
    QTest::newRow("catalogue in ESRI form") << "EPSG:4214" << true << "D_Beijing_1954" << "GCS_Beijing_1954";
    QTest::newRow("projected in ESRI form") << "EPSG:4547" << true << "D_China_2000" << "CGCS2000_3_Degree_GK_CM_114E";
    QTest::newRow("user datum") << kCustomDatum << false << "My_Datum" << "My system";
}

void TestSpatialReference::datumNameFollowsTheHeldForm()
{
    QFETCH(QString, text);
    QFETCH(bool, esri);
    QFETCH(QString, datum);
    QFETCH(QString, name);
    // The dialogs read WKT into a projected-system object whatever it holds.
    ProjectedCoordinateSystem sr;
    QVERIFY(sr.ImportFromWkt(create(text)->ExportToWkt()));
    if (esri)
        sr.MorphToESRI();
    QCOMPARE(sr.GetName(), name);
    QCOMPARE(GeographicCoordinateSystem(sr).GetDatum()->GetName(), datum);
}

void TestSpatialReference::projectionParameterTable_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QVector<double>>("expected");
    QTest::addColumn<double>("metresPerUnit");
    QTest::newRow("Gauss-Kruger") << "EPSG:2435" << QVector<double>{500000, 114, 0, 1, 0, 0, 0, 0} << 1.0;
    QTest::newRow("zoned Gauss-Kruger") << "EPSG:2414" << QVector<double>{38500000, 114, 0, 1, 0, 0, 0, 0} << 1.0;
    QTest::newRow("Lambert in US feet") << "EPSG:2229"
        << QVector<double>{2000000.0001016, -118, 500000.0001016, 1, 33.5, 35.4666666666667, 34.0333333333333, 0} << 0.304800609601219;
    QTest::newRow("oblique Mercator") << "EPSG:3375"
        << QVector<double>{804671, 102.25, 0, 0.99984, 4, 0, 0, 323.025796466667} << 1.0;
}

void TestSpatialReference::projectionParameterTable()
{
    QFETCH(QString, text);
    QFETCH(QVector<double>, expected);
    QFETCH(double, metresPerUnit);
    auto pcs = create(text).dynamicCast<ProjectedCoordinateSystem>();
    QVERIFY(pcs);
    _ptr_t<Projection> projection = pcs->GetProjection();
    QVERIFY(projection);
    for (int i = 0; i < Projection::ParameterCount; ++i)
        QVERIFY2(std::fabs(projection->GetParameter(i) - expected[i]) < 1e-6,
                 qPrintable(Projection::GetParameterName(i) + QLatin1Char('=') + QString::number(projection->GetParameter(i), 'g', 15)));
    QVERIFY(std::fabs(pcs->GetLinearUnits() - metresPerUnit) < 1e-12);
    // Geographic systems have no projection but report themselves as base.
    ProjectedCoordinateSystem geographic(*create(QStringLiteral("EPSG:4214")));
    QVERIFY(!geographic.GetProjection());
    QVERIFY(geographic.GetGeographicCoordinateSystem()->IsSame(create(QStringLiteral("EPSG:4214"))));
}

void TestSpatialReference::normalizeTakesTheCatalogueIdentity()
{
    _ptr_t<SpatialReference> esri = create(kEsriCm114);
    QVERIFY(esri);
    QVERIFY(esri->GetAuthorityCode().isEmpty());
    esri->MorphToESRI();
    QVERIFY(esri->Normalize());
    QCOMPARE(esri->GetAuthorityCode(), QStringLiteral("EPSG:2435"));
    QCOMPARE(esri->GetName(), QStringLiteral("Beijing 1954 / 3-degree Gauss-Kruger CM 114E"));
    QVERIFY(esri->IsSame(create(QStringLiteral("EPSG:2435"))));

    // A system the catalogue does not hold keeps its own identity.
    _ptr_t<SpatialReference> custom = create(kCustomDatum);
    QVERIFY(custom->Normalize());
    QVERIFY(custom->GetAuthorityCode().isEmpty());
    QCOMPARE(custom->GetName(), QStringLiteral("My system"));
}

void TestSpatialReference::importFromWktReportsFailure()
{
    GeographicCoordinateSystem g;
    QVERIFY(!g.IsValid());
    QVERIFY(g.ImportFromWkt(kDefaultSource));
    QVERIFY(g.IsValid());
    QVERIFY(!g.ImportFromWkt(QStringLiteral("EPSG:4326"))); // a code is not WKT
    QVERIFY(!g.IsValid());
    QVERIFY(g.GetName().isEmpty() && g.ExportToWkt().isEmpty() && !g.GetDatum());
    QCOMPARE(g.GetType(), -1);
    QVERIFY(!g.MorphToESRI() && !g.Normalize());
}

KIV_TEST_CLASS(TestSpatialReference)
#include "tst_SpatialReference.moc"
