#include "plugin/Calculate4ParamsCommand.h"
#include "plugin/Calculate7ParamsCommand.h"
#include "plugin/CoordsTransformUIPlugin.h"
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
    // Which name opens which dialog is tested with the commands.
    row("set4 lower case", "coordstransform_set4params", "", typeid(Set4ParamsCommand));
    row("upper case", "COORDSTRANSFORM_7PARAMS", "", typeid(Calculate7ParamsCommand));
    row("second argument ignored", "CoordsTransform_4params", "CoordsTransform_7params", typeid(Calculate4ParamsCommand));
    row("second argument junk", "CoordsTransform_Set7params", "\xc3\xa9 <&>", typeid(Set7ParamsCommand));
    // Unknown names give no command.
    for (const char* name : {"CoordsTransform_BatchProjTrans", "", "CoordsTransform_", "CoordsTransform_4params ",
                             "Set4ParamsCommand"})
        QTest::addRow("unknown \"%s\"", name) << QString::fromLatin1(name) << QStringLiteral("CoordsTransform_4params")
                                               << QByteArray();
}

void TestCommandFactory::createsTheCommandOfAName()
{
    QFETCH(QString, name);
    QFETCH(QString, extra);
    QFETCH(QByteArray, type);
    _ptr_t<CoordsTransformUIPlugin> module(new CoordsTransformUIPlugin);
    _ptr_t<KivUI::ICommand> command = module->CreateCommand(name, extra);
    QCOMPARE(bool(command), !type.isEmpty());
    if (!command)
        return;
    QCOMPARE(QByteArray(typeid(*command).name()), type);
    QVERIFY(command->IsEnable());  // before OnCreate too
    // Every call makes a new command, held once.
    const _ptr_t<KivUI::ICommand> again = module->CreateCommand(name, extra);
    QVERIFY(again && again != command && command->RefCount() == 1 && again->RefCount() == 1);
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
