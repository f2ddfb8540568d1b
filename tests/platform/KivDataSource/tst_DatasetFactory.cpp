#include "support/DatasetFixtures.h"
#include "support/TestRegistry.h"

#include "KivCarto/LayerFactory.h"
#include "KivDataSource/DatasetFactory.h"
#include "KivDataSource/MultiDataset.h"
#include "KivGeometry/SpatialReferenceFactory.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace KivDataSource;
using KivUtility::_ptr_t;

namespace {

QString crs(int epsg)
{
    return epsg ? QStringLiteral("EPSG:%1").arg(epsg) : QString();
}

} // namespace

class TestDatasetFactory : public QObject
{
    Q_OBJECT
private slots:
    void kindsAndSpatialReferences_data();
    void kindsAndSpatialReferences();
    void containerMembers();
    void unreadableGivesNull_data();
    void unreadableGivesNull();
    void defaultLayers();
    void describedOncePerRun();
};

void TestDatasetFactory::kindsAndSpatialReferences_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("epsg");
    QTest::newRow("GeoTIFF") << "a b.tif" << int(DK_Raster) << 2436;
    QTest::newRow("ERDAS IMG") << "点.img" << int(DK_Raster) << 2436;
    QTest::newRow("ENVI") << "e.dat" << int(DK_Raster) << 2436;
    QTest::newRow("raster without system") << "none.tif" << int(DK_Raster) << 0;
    QTest::newRow("shapefile") << "p.shp" << int(DK_Vector) << 4214;
    QTest::newRow("shapefile without .prj") << "q.shp" << int(DK_Vector) << 0;
    QTest::newRow("one-layer GeoPackage") << "one.gpkg" << int(DK_Container) << 4326;
}

void TestDatasetFactory::kindsAndSpatialReferences()
{
    QFETCH(QString, file);
    QFETCH(int, kind);
    QFETCH(int, epsg);
    QTemporaryDir dir;
    const QString path = dir.filePath(file);
    if (kind == DK_Raster) {
        const char* driver = file.endsWith(QLatin1String(".img")) ? "HFA"
                             : file.endsWith(QLatin1String(".dat")) ? "ENVI" : "GTiff";
        QVERIFY(DatasetFixtures::writeRaster(path, crs(epsg), 4, 500000, 3400000, 10, driver));
    } else if (file.endsWith(QLatin1String(".gpkg"))) {
        QVERIFY(DatasetFixtures::writeGeoPackage(path, {"layer=" + crs(epsg)}));
    } else {
        QVERIFY(DatasetFixtures::writePoints(path, crs(epsg), {117.0, 30.0}));
    }
    const _ptr_t<Dataset> dataset = DatasetFactory::Instance()->OpenDataset(path, 0, QString());
    QVERIFY(dataset);
    QCOMPARE(dataset->GetKind(), kind);
    QCOMPARE(dataset->GetPath(), path);
    if (!epsg) {
        QVERIFY(!dataset->GetSpatialReference());
        return;
    }
    QVERIFY(dataset->GetSpatialReference());
    const auto expected = KivGeometry::SpatialReferenceFactory::CreateSpatialReference(
        QStringLiteral("EPSG:%1").arg(epsg));
    QVERIFY(dataset->GetSpatialReference()->IsSame(expected));
    // Every identifier EPSG knows survives the reading, as from the code.
    QCOMPARE(dataset->GetSpatialReference()->ExportToWkt(), expected->ExportToWkt());
}

void TestDatasetFactory::containerMembers()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("two.gpkg"));
    QVERIFY(DatasetFixtures::writeGeoPackage(path, {"roads=EPSG:2436", "wells=EPSG:2436"}));
    const _ptr_t<Dataset> dataset = DatasetFactory::Instance()->OpenDataset(path, 0, QString());
    QVERIFY(dataset);
    QCOMPARE(dataset->GetKind(), int(DK_Container));
    const auto multi = dataset.dynamicCast<MultiDataset>();
    QVERIFY(multi);
    QCOMPARE(multi->GetDatasetCount(), 2);
    QCOMPARE(multi->GetDataset(0)->GetName(), QStringLiteral("roads"));
    QCOMPARE(multi->GetDataset(1)->GetName(), QStringLiteral("wells"));
    QCOMPARE(multi->GetDataset(1)->GetKind(), int(DK_Vector));
    QVERIFY(multi->GetDataset(1)->GetSpatialReference());
    QVERIFY(!multi->GetDataset(2));
    QVERIFY(!multi->GetDataset(-1));
}

void TestDatasetFactory::unreadableGivesNull_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("create");
    QTest::newRow("missing file") << QByteArray() << false;
    QTest::newRow("empty file") << QByteArray() << true;
    QTest::newRow("text") << QByteArray("not a dataset\n") << true;
    QTest::newRow("truncated TIFF header") << QByteArray("II*\0\x08\0\0\0", 8) << true;
}

void TestDatasetFactory::unreadableGivesNull()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, create);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("bad.tif"));
    if (create) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    QVERIFY(!DatasetFactory::Instance()->OpenDataset(path, 0, QString()));
    QVERIFY(!DatasetFactory::Instance()->OpenDataset(QString(), 0, QString()));
}

void TestDatasetFactory::describedOncePerRun()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("p.shp"));
    DatasetFactory* factory = DatasetFactory::Instance();
    _ptr_t<Dataset> first;
    {
        const DatasetFactory::RunCache run;
        QVERIFY(!factory->OpenDataset(path, 0, QString())); // a failure is not remembered
        QVERIFY(DatasetFixtures::writePoints(path, crs(4214), {117.0, 30.0}));
        first = factory->OpenDataset(path, 0, QString());
        QVERIFY(first);
        QCOMPARE(factory->OpenDataset(path, 0, QString()), first);
        QVERIFY(factory->OpenDataset(path, 1, QString()) != first);
    }
    QVERIFY(factory->OpenDataset(path, 0, QString()) != first);
}

void TestDatasetFactory::defaultLayers()
{
    QTemporaryDir dir;
    const QString raster = dir.filePath(QStringLiteral("r.tif"));
    const QString vector = dir.filePath(QStringLiteral("v.shp"));
    QVERIFY(DatasetFixtures::writeRaster(raster, "EPSG:2436"));
    QVERIFY(DatasetFixtures::writePoints(vector, "EPSG:4214", {117.0, 30.0}));
    const auto rasterLayer = KivCarto::LayerFactory::CreateDefaultLayer(raster);
    QVERIFY(rasterLayer);
    QCOMPARE(rasterLayer->GetName(), QStringLiteral("r"));
    QCOMPARE(rasterLayer->GetSourcePath(), raster);
    const auto vectorLayer = KivCarto::LayerFactory::CreateDefaultLayer(vector);
    QVERIFY(vectorLayer);
    QCOMPARE(vectorLayer->GetName(), QStringLiteral("v"));
    QVERIFY(!KivCarto::LayerFactory::CreateDefaultLayer(dir.filePath(QStringLiteral("missing.shp"))));
}

KIV_TEST_CLASS(TestDatasetFactory)
#include "tst_DatasetFactory.moc"
