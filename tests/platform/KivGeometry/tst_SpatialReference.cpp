#include "support/ProjReference.h"
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

QString projText(const char* code, bool json)
{
    const KivTest::ProjReference crs(QString::fromLatin1(code));
    return QString::fromUtf8(json ? proj_as_projjson(crs.context(), crs.get(), nullptr)
                                  : proj_as_wkt(crs.context(), crs.get(), PJ_WKT2_2019, nullptr));
}

} // namespace

class TestSpatialReference : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }
    void defaultTextsParseAndMorphToEsri();
    void readsEveryFormAndWritesWktBack_data();
    void readsEveryFormAndWritesWktBack();
    void comparisons_data();
    void comparisons();
    void heldFormsNormalizeAndFailedImport();
};

void TestSpatialReference::defaultTextsParseAndMorphToEsri()
{
    _ptr_t<SpatialReference> source = create(kDefaultSource), target = create(kDefaultTarget);
    QVERIFY(source->GetType() == 0 && target->GetType() == 10 && !source->IsSameGeoCS(target));

    QVERIFY(source->MorphToESRI());
    QVERIFY(source->MorphToESRI()); // idempotent
    QCOMPARE(source->GetName(), QStringLiteral("GCS_WGS_1984"));
    const auto datum = source.dynamicCast<GeographicCoordinateSystem>()->GetDatum();
    QVERIFY(datum->GetName() == QLatin1String("D_WGS_1984") && datum->GetSpheroid().GetName() == QLatin1String("WGS_1984"));

    QVERIFY(target->MorphToESRI());
    QCOMPARE(target->GetName(), QStringLiteral("Beijing_1954_3_Degree_GK_CM_102E"));
    const auto pcs = target.dynamicCast<ProjectedCoordinateSystem>();
    QCOMPARE(pcs->GetGeographicCoordinateSystem()->GetDatum()->GetName(), QStringLiteral("D_Beijing_1954"));
    QCOMPARE(pcs->GetProjection()->GetParameter(Projection::CentralMeridian), 102.0);
}

void TestSpatialReference::readsEveryFormAndWritesWktBack_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("esri"); // morphed before writing
    QTest::addColumn<int>("type");  // -2: no system
    QTest::newRow("EPSG code") << "EPSG:4214" << false << 0;
    QTest::newRow("lower-case code, ESRI form") << "epsg:2435" << true << 10;
    QTest::newRow("ESRI code") << "ESRI:102100" << false << 10;
    QTest::newRow("US feet") << "EPSG:2229" << false << 10;
    QTest::newRow("PROJ string") << "+proj=tmerc +lon_0=117 +k=1 +x_0=500000 +ellps=krass +units=m" << false << 10;
    QTest::newRow("PROJJSON") << projText("EPSG:4490", true) << false << 0;
    QTest::newRow("WKT2") << projText("EPSG:4547", false) << false << 10;
    QTest::newRow("WKT1 with blanks and line breaks") << "  GEOGCS[\"x\",\n DATUM[\"D_WGS_1984\",\r\n SPHEROID[\"WGS_1984\", 6378137, 298.257223563]],\n PRIMEM[\"Greenwich\",0],\tUNIT[\"Degree\",0.0174532925199433]]\n" << false << 0;
    QTest::newRow("default target") << kDefaultTarget << false << 10;
    QTest::newRow("custom datum, ESRI form") << kCustomDatum << true << 0;
    QTest::newRow("geocentric") << "EPSG:4978" << false << 20;
    QTest::newRow("empty") << "" << false << -2;
    QTest::newRow("unknown code") << "EPSG:999999" << false << -2;
    QTest::newRow("truncated WKT") << "PROJCS[\"x\",GEOGCS[" << false << -2;
    QTest::newRow("bad PROJ string") << "+proj=nonsense" << false << -2;
    QTest::newRow("a file name is not read") << "/etc/hostname" << false << -2;
}

void TestSpatialReference::readsEveryFormAndWritesWktBack()
{
    QFETCH(QString, text);
    QFETCH(bool, esri);
    QFETCH(int, type);
    // Bad systems are reported by return values, never on the console.
    QTemporaryFile capture;
    QVERIFY(capture.open());
    fflush(stderr);
    const int saved = dup(2);
    dup2(capture.handle(), 2);
    _ptr_t<SpatialReference> sr = create(text);
    fflush(stderr);
    dup2(saved, 2);
    ::close(saved);
    capture.seek(0);
    QCOMPARE(capture.readAll(), QByteArray());

    QCOMPARE(bool(sr), type != -2);
    if (!sr)
        return;
    QCOMPARE(sr->GetType(), type);
    QCOMPARE(bool(sr.dynamicCast<GeographicCoordinateSystem>()), type == 0);
    QCOMPARE(bool(sr.dynamicCast<ProjectedCoordinateSystem>()), type == 10);
    if (esri)
        sr->MorphToESRI();
    const QString wkt = sr->ExportToWkt();
    QVERIFY(!sr->GetName().isEmpty() && !wkt.contains(QLatin1Char('\n')));
    const QString authority = esri ? QString() : sr->GetAuthorityCode(); // the ESRI form drops it
    QCOMPARE(wkt.endsWith(QStringLiteral("AUTHORITY[\"%1\",\"%2\"]]").arg(authority.section(':', 0, 0), authority.section(':', 1))),
             !authority.isEmpty());
    for (const QString& written : {wkt, sr->ExportToPrettyWkt()}) {
        _ptr_t<SpatialReference> back = create(written);
        QVERIFY(back && back->IsSame(sr) && sr->IsSame(back));
        QCOMPARE(back->GetAuthorityCode(), authority);
        QCOMPARE(back->GetType(), type);
    }
}

void TestSpatialReference::comparisons_data()
{
    QTest::addColumn<QString>("a");
    QTest::addColumn<QString>("b");
    QTest::addColumn<bool>("same");
    QTest::addColumn<bool>("sameGeoCS");
    const QString beijingTo84 = "GEOGCS[\"Beijing 1954\",DATUM[\"Beijing_1954\",SPHEROID[\"Krassowsky 1940\",6378245,298.3],TOWGS84[15.8,-154.4,-82.3,0,0,0,0]],PRIMEM[\"Greenwich\",0],UNIT[\"degree\",0.0174532925199433]]";
    const QString beijingGrads = "GEOGCS[\"Beijing grads\",DATUM[\"Beijing_1954\",SPHEROID[\"Krassowsky 1940\",6378245,298.3]],PRIMEM[\"Greenwich\",0],UNIT[\"grad\",0.015707963267949]]";
    QTest::newRow("EPSG and ESRI text of one zone") << "EPSG:2435" << kEsriCm114 << true << true;
    QTest::newRow("two zones of Beijing 1954") << "EPSG:2435" << "EPSG:2436" << false << true;
    QTest::newRow("zone and its base") << "EPSG:2435" << "EPSG:4214" << false << true;
    QTest::newRow("same ellipsoid, other datum") << "EPSG:4214" << "EPSG:4284" << false << false;
    QTest::newRow("CGCS2000 and WGS 84") << "EPSG:4490" << "EPSG:4326" << false << false;
    QTest::newRow("Xian 1980 zone and Beijing 1954 zone") << "EPSG:2383" << "EPSG:2435" << false << false;
    QTest::newRow("WGS 84 and the default source") << "EPSG:4326" << kDefaultSource << true << true;
    QTest::newRow("other angular unit") << "EPSG:4214" << beijingGrads << false << true;
    QTest::newRow("bound to WGS 84") << "EPSG:4214" << beijingTo84 << true << true;
}

void TestSpatialReference::comparisons()
{
    QFETCH(QString, a);
    QFETCH(QString, b);
    QFETCH(bool, same);
    QFETCH(bool, sameGeoCS);
    _ptr_t<SpatialReference> x = create(a), y = create(b);
    QVERIFY(x && y);
    // Both ways, and an ESRI copy compares as its original.
    _ptr_t<SpatialReference> esri = x->Clone();
    esri->MorphToESRI();
    QVERIFY(esri->IsSame(x) && esri->IsSameGeoCS(x));
    for (const auto& pair : {std::make_pair(x, y), std::make_pair(y, x), std::make_pair(esri, y)}) {
        QCOMPARE(pair.first->IsSame(pair.second), same);
        QCOMPARE(pair.first->IsSameGeoCS(pair.second), sameGeoCS);
    }
    QVERIFY(!x->IsSame(static_cast<SpatialReference*>(nullptr)));
    QVERIFY(!x->IsSameGeoCS(_ptr_t<SpatialReference>(new SpatialReference)));
}

void TestSpatialReference::heldFormsNormalizeAndFailedImport()
{
    // The dialogs read WKT into a projected-system object whatever it holds.
    ProjectedCoordinateSystem held;
    QVERIFY(held.ImportFromWkt(kCustomDatum));
    QCOMPARE(GeographicCoordinateSystem(held).GetDatum()->GetName(), QStringLiteral("My_Datum"));
    QVERIFY(held.ImportFromWkt(create(QStringLiteral("EPSG:4547"))->ExportToWkt()) && held.MorphToESRI());
    QCOMPARE(held.GetName(), QStringLiteral("CGCS2000_3_Degree_GK_CM_114E"));
    QCOMPARE(GeographicCoordinateSystem(held).GetDatum()->GetName(), QStringLiteral("D_China_2000"));

    _ptr_t<SpatialReference> esri = create(kEsriCm114);
    QVERIFY(esri->GetAuthorityCode().isEmpty() && esri->Normalize());
    QCOMPARE(esri->GetAuthorityCode(), QStringLiteral("EPSG:2435"));
    QCOMPARE(esri->GetName(), QStringLiteral("Beijing 1954 / 3-degree Gauss-Kruger CM 114E"));
    // A system the catalogue does not hold keeps its own identity.
    _ptr_t<SpatialReference> custom = create(kCustomDatum);
    QVERIFY(custom->Normalize() && custom->GetAuthorityCode().isEmpty());
    QCOMPARE(custom->GetName(), QStringLiteral("My system"));

    GeographicCoordinateSystem g;
    QVERIFY(!g.IsValid() && g.ImportFromWkt(kDefaultSource) && g.IsValid());
    QVERIFY(!g.ImportFromWkt(QStringLiteral("EPSG:4326"))); // a code is not WKT
    QVERIFY(!g.IsValid() && g.GetName().isEmpty() && g.ExportToWkt().isEmpty() && !g.GetDatum());
    QVERIFY(g.GetType() == -1 && !g.MorphToESRI() && !g.Normalize());
}

KIV_TEST_CLASS(TestSpatialReference)
#include "tst_SpatialReference.moc"
