#include "support/TestData.h"
#include "support/TestRegistry.h"

#include "KivUI/EnvironmentSetting.h"

#include <QDir>
#include <QFile>
#include <QTest>

class TestTestData : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }
    void dataRootIsTheProductsDataFolder();
    void resetRestoresTheShippedState();
    void resetCopesWithReadOnlyFolders();
};

void TestTestData::dataRootIsTheProductsDataFolder()
{
    QCOMPARE(KivTest::dataRoot() + QLatin1Char('/'), KivUI::EnvironmentSetting::Instance()->GetDataDir());
    QVERIFY(QFile::exists(KivTest::dataRoot() + QStringLiteral("/Geograpic transformation model/coordtransform.xml")));
}

void TestTestData::resetRestoresTheShippedState()
{
    const QString store = KivTest::dataRoot() + QStringLiteral("/Geograpic transformation model/coordtransform.xml");
    const QByteArray shipped = KivTest::readFile(store);
    QVERIFY(KivTest::writeFile(store, "garbage"));
    QVERIFY(KivTest::writeFile(KivTest::dataRoot() + QStringLiteral("/extra/file.txt"), "x"));
    QVERIFY(KivTest::writeFile(KivTest::scratchDir() + QStringLiteral("/a.txt"), "x"));
    KivTest::resetData();
    QCOMPARE(KivTest::readFile(store), shipped);
    QVERIFY(!QFile::exists(KivTest::dataRoot() + QStringLiteral("/extra")));
    QVERIFY(QDir(KivTest::scratchDir()).isEmpty());
}

void TestTestData::resetCopesWithReadOnlyFolders()
{
    const QString folder = KivTest::dataRoot() + QStringLiteral("/Geograpic transformation model");
    QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner));
    KivTest::resetData();
    QVERIFY(QFileInfo(folder).isWritable() || QFileInfo(folder).exists());
    QVERIFY(QFile::exists(folder + QStringLiteral("/coordtransform.xml")));
}

KIV_TEST_CLASS(TestTestData)
#include "tst_TestData.moc"
