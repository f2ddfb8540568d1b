#include "AboutDialog.h"
#include "Translations.h"
#include "support/TestRegistry.h"

#include <QAction>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>
#include <QTranslator>

#include <gdal.h>
#include <proj.h>

class TestTranslations : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void choosesAShippedLanguage_data();
    void choosesAShippedLanguage();
    void settingAppliesWhenNothingIsRequested();
    void toolbarTakesOnlyTranslatedShortTexts();
    void aboutNamesTheLibrariesInUse();

private:
    QTemporaryDir m_config;
};

void TestTranslations::initTestCase()
{
    // The language setting goes to a folder of the test's own.
    QVERIFY(m_config.isValid());
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, m_config.path());
}

void TestTranslations::choosesAShippedLanguage_data()
{
    QTest::addColumn<QString>("requested");
    QTest::addColumn<QString>("chosen");
    QTest::newRow("zh_CN") << "zh_CN" << "zh_CN";
    QTest::newRow("bcp47 script form") << "zh-Hans-CN" << "zh_CN";
    QTest::newRow("language only") << "zh" << "zh_CN";
    QTest::newRow("other English") << "en_GB" << "en";
}

void TestTranslations::choosesAShippedLanguage()
{
    QFETCH(QString, requested);
    QFETCH(QString, chosen);
    Translations::setConfiguredLanguage(QString());
    QCOMPARE(Translations::choose(requested), chosen);
    QVERIFY(Translations::available().contains(Translations::choose(QStringLiteral("fr_FR"))));
}

void TestTranslations::settingAppliesWhenNothingIsRequested()
{
    Translations::setConfiguredLanguage(QStringLiteral("zh_CN"));
    QCOMPARE(Translations::configuredLanguage(), QStringLiteral("zh_CN"));
    QCOMPARE(Translations::choose(), QStringLiteral("zh_CN"));
    QCOMPARE(Translations::choose(QStringLiteral("en")), QStringLiteral("en"));  // --lang wins
    Translations::setConfiguredLanguage(QString());
    QVERIFY(Translations::configuredLanguage().isEmpty());
}

// Without a translation the toolbar must not show command names.
void TestTranslations::toolbarTakesOnlyTranslatedShortTexts()
{
    QToolBar bar;
    auto* action = bar.addAction(QStringLiteral("Calculate 7 Parameters"));
    action->setObjectName(QStringLiteral("CoordsTransform_7params"));
    Translations::shortenToolbar(&bar);
    QCOMPARE(action->iconText(), QStringLiteral("Calculate 7 Parameters"));
}

void TestTranslations::aboutNamesTheLibrariesInUse()
{
    const QStringList versions = AboutDialog::libraryVersions();
    QVERIFY(versions.contains(QStringLiteral("PROJ ") + QString::fromUtf8(proj_info().version)));
    QVERIFY(versions.contains(QStringLiteral("GDAL ") + QString::fromUtf8(GDALVersionInfo("RELEASE_NAME"))));
    QVERIFY(versions.contains(QStringLiteral("Qt ") + QString::fromLatin1(qVersion())));
}

KIV_TEST_CLASS(TestTranslations)
#include "tst_Translations.moc"
