#include "plugin/BatchProjTransCommand.h"
#include "plugin/Calculate4ParamsCommand.h"
#include "plugin/Calculate7ParamsCommand.h"
#include "plugin/CoordsTransformUIPlugin.h"
#include "plugin/DataProjTransCommand.h"
#include "plugin/FileDataProjTransCommand.h"
#include "plugin/PointCoordsTransCommand.h"
#include "plugin/Set4ParamsCommand.h"
#include "plugin/Set7ParamsCommand.h"
#include "support/TestRegistry.h"

#include <QLibrary>
#include <QTest>

#include <typeinfo>

using KivUtility::_ptr_t;

class TestCommandFactory : public QObject
{
    Q_OBJECT
private slots:
    void createsTheCommandOfAName_data();
    void createsTheCommandOfAName();
    void unknownNamesGiveNull_data();
    void unknownNamesGiveNull();
    void everyCallMakesANewCommandHeldOnce();
    void exportedEntryPointMakesANewModule();
};

void TestCommandFactory::createsTheCommandOfAName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("extra");
    QTest::addColumn<QByteArray>("type");
    auto row = [](const char* tag, const char* name, const char* extra, const std::type_info& t) {
        QTest::newRow(tag) << QString::fromLatin1(name) << QString::fromLatin1(extra) << QByteArray(t.name());
    };
    row("7params", "CoordsTransform_7params", "", typeid(Calculate7ParamsCommand));
    row("file", "CoordsTransform_FileDataProjTransCommand", "", typeid(FileDataProjTransCommand));
    row("point", "CoordsTransform_PointCoordsTransCommand", "", typeid(PointCoordsTransCommand));
    row("data", "CoordsTransform_DataProjTransCommand", "", typeid(DataProjTransCommand));
    row("4params", "CoordsTransform_4params", "", typeid(Calculate4ParamsCommand));
    row("set7", "CoordsTransform_Set7params", "", typeid(Set7ParamsCommand));
    row("set4", "CoordsTransform_Set4params", "", typeid(Set4ParamsCommand));
    row("batch", "CoordsTransform_BatchProjectTrans", "", typeid(BatchProjTransCommand));
    row("set4 lower case", "coordstransform_set4params", "", typeid(Set4ParamsCommand));
    row("upper case", "COORDSTRANSFORM_7PARAMS", "", typeid(Calculate7ParamsCommand));
    row("second argument ignored", "CoordsTransform_4params", "CoordsTransform_7params", typeid(Calculate4ParamsCommand));
    row("second argument junk", "CoordsTransform_Set7params", "\xc3\xa9 <&>", typeid(Set7ParamsCommand));
}

void TestCommandFactory::createsTheCommandOfAName()
{
    QFETCH(QString, name);
    QFETCH(QString, extra);
    QFETCH(QByteArray, type);
    _ptr_t<CoordsTransformUIPlugin> module(new CoordsTransformUIPlugin);
    _ptr_t<KivUI::ICommand> command = module->CreateCommand(name, extra);
    QVERIFY(command);
    QCOMPARE(QByteArray(typeid(*command).name()), type);
    QVERIFY(command->IsEnable());  // before OnCreate too
}

void TestCommandFactory::unknownNamesGiveNull_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("batch spelled like its class") << QStringLiteral("CoordsTransform_BatchProjTrans");
    QTest::newRow("empty") << QString();
    QTest::newRow("prefix only") << QStringLiteral("CoordsTransform_");
    QTest::newRow("trailing blank") << QStringLiteral("CoordsTransform_4params ");
    QTest::newRow("class name") << QStringLiteral("Set4ParamsCommand");
}

void TestCommandFactory::unknownNamesGiveNull()
{
    QFETCH(QString, name);
    CoordsTransformUIPlugin module;
    QVERIFY(!module.CreateCommand(name, QStringLiteral("CoordsTransform_4params")));
}

void TestCommandFactory::everyCallMakesANewCommandHeldOnce()
{
    _ptr_t<KivUI::CMDPluginModule> module(new CoordsTransformUIPlugin);
    _ptr_t<KivUI::ICommand> a = module->CreateCommand(QStringLiteral("CoordsTransform_Set4params"), QString());
    _ptr_t<KivUI::ICommand> b = module->CreateCommand(QStringLiteral("CoordsTransform_Set4params"), QString());
    QVERIFY(a && b);
    QVERIFY(a != b);
    QCOMPARE(a->RefCount(), 1L);
    QCOMPARE(b->RefCount(), 1L);
}

void TestCommandFactory::exportedEntryPointMakesANewModule()
{
    QLibrary library(QStringLiteral(KIV_PLUGIN_PATH));
    QVERIFY2(library.load(), qPrintable(library.errorString()));
    // Resolving by the plain name proves the export is undecorated.
    auto entry = reinterpret_cast<KivUI::GetPluginModuleFunction>(library.resolve("GetPluginModule"));
    QVERIFY(entry);
    _ptr_t<KivUI::CMDPluginModule> first(entry());
    _ptr_t<KivUI::CMDPluginModule> second(entry());
    QVERIFY(first && second && first != second);
    QCOMPARE(first->RefCount(), 1L);
    QVERIFY(first->CreateCommand(QStringLiteral("CoordsTransform_PointCoordsTransCommand"), QString()));
}

KIV_TEST_CLASS(TestCommandFactory)
#include "tst_CommandFactory.moc"
