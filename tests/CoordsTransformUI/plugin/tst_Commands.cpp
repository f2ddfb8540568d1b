#include "KivFramework/BaseCommand.h"
#include "plugin/CoordsTransformUIPlugin.h"
#include "support/FakeHost.h"
#include "support/ModalDriver.h"
#include "support/TestData.h"
#include "support/TestRegistry.h"

#include <QDialog>
#include <QTest>

using KivTest::FakeHost;
using KivTest::ModalDriver;
using KivUtility::_ptr_t;

namespace {

_ptr_t<KivUI::ICommand> create(const QString& name)
{
    CoordsTransformUIPlugin module;
    return module.CreateCommand(name, QString());
}

} // namespace

class TestCommands : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }
    void opensItsDialogParentedToTheContentsView_data();
    void opensItsDialogParentedToTheContentsView();
    void hostChecksDecideWhetherTheDialogOpens_data();
    void hostChecksDecideWhetherTheDialogOpens();
    void presentationComesFromTheHostConfiguration();
};

void TestCommands::opensItsDialogParentedToTheContentsView_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("dialogClass");
    QTest::addColumn<int>("contents");
    QTest::addColumn<bool>("parented");
    const QList<QPair<const char*, const char*>> commands = {
        {"CoordsTransform_7params", "Calculate7ParamsDlg"},
        {"CoordsTransform_FileDataProjTransCommand", "FileDataProjTransDlg"},
        {"CoordsTransform_PointCoordsTransCommand", "PointCoordsTransformDlg"},
        {"CoordsTransform_DataProjTransCommand", "DataProjTransDlg"},
        {"CoordsTransform_4params", "Calculate4ParamsDlg"},
        {"CoordsTransform_Set7params", "Set7ParamsDlg"},
        {"CoordsTransform_Set4params", "Set4ParamsDlg"},
        {"CoordsTransform_BatchProjectTrans", "BatchProjTransDlg"},
    };
    for (const auto& c : commands) {
        QTest::addRow("%s, widget view", c.first) << QString::fromLatin1(c.first) << QByteArray(c.second)
                                                  << int(FakeHost::WidgetView) << true;
        QTest::addRow("%s, view not a widget", c.first) << QString::fromLatin1(c.first) << QByteArray(c.second)
                                                        << int(FakeHost::NonWidgetView) << false;
    }
}

void TestCommands::opensItsDialogParentedToTheContentsView()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, dialogClass);
    QFETCH(int, contents);
    QFETCH(bool, parented);

    FakeHost host(static_cast<FakeHost::ContentsKind>(contents));
    _ptr_t<KivUI::ICommand> command = create(name);
    command->OnCreate(host.hook());

    ModalDriver driver;
    QWidget* parentSeen = reinterpret_cast<QWidget*>(1);
    driver.handleModal(dialogClass.constData(), [&parentSeen](QWidget* w) {
        parentSeen = w->parentWidget();
        static_cast<QDialog*>(w)->reject();
    });
    command->OnClick();
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(parentSeen, parented ? static_cast<QWidget*>(&host.widgetContents) : nullptr);
    // The dialog is gone once OnClick returns.
    QVERIFY(host.widgetContents.findChildren<QDialog*>().isEmpty());
}

void TestCommands::hostChecksDecideWhetherTheDialogOpens_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("giveHost");
    QTest::addColumn<bool>("withFrame");
    QTest::addColumn<bool>("opens");
    // Point and file conversion need a host; the others open without one.
    QTest::newRow("point without host") << QStringLiteral("CoordsTransform_PointCoordsTransCommand") << false << true << false;
    QTest::newRow("file without host") << QStringLiteral("CoordsTransform_FileDataProjTransCommand") << false << true << false;
    QTest::newRow("set4 without host") << QStringLiteral("CoordsTransform_Set4params") << false << true << true;
    QTest::newRow("7params without host") << QStringLiteral("CoordsTransform_7params") << false << true << true;
    QTest::newRow("batch without host") << QStringLiteral("CoordsTransform_BatchProjectTrans") << false << true << true;
    // Dataset reprojection also needs the desktop frame.
    QTest::newRow("data without host") << QStringLiteral("CoordsTransform_DataProjTransCommand") << false << true << false;
    QTest::newRow("data without frame") << QStringLiteral("CoordsTransform_DataProjTransCommand") << true << false << false;
    QTest::newRow("data with frame") << QStringLiteral("CoordsTransform_DataProjTransCommand") << true << true << true;
    QTest::newRow("point with host, no frame") << QStringLiteral("CoordsTransform_PointCoordsTransCommand") << true << false << true;
}

void TestCommands::hostChecksDecideWhetherTheDialogOpens()
{
    QFETCH(QString, name);
    QFETCH(bool, giveHost);
    QFETCH(bool, withFrame);
    QFETCH(bool, opens);

    FakeHost host(FakeHost::WidgetView, withFrame);
    _ptr_t<KivUI::ICommand> command = create(name);
    if (giveHost)
        command->OnCreate(host.hook());
    QVERIFY(command->IsEnable());

    ModalDriver driver;
    if (opens)
        driver.handleModal("QDialog", [](QWidget* w) { static_cast<QDialog*>(w)->reject(); });
    command->OnClick();
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
}

void TestCommands::presentationComesFromTheHostConfiguration()
{
    FakeHost host;
    _ptr_t<KivUI::ICommand> command = create(QStringLiteral("CoordsTransform_Set7params"));
    QVERIFY(command->GetCaption().isEmpty());
    KivFramework::CommandInfo info;
    info.name = QStringLiteral("CoordsTransform_Set7params");
    info.caption = QStringLiteral("Enter 7 Parameters");
    info.toolTip = QStringLiteral("Type a model");
    info.typeName = QStringLiteral("Button");
    host.infos.insert(command.get(), info);
    command->OnCreate(host.hook());
    QCOMPARE(command->GetName(), info.name);
    QCOMPARE(command->GetCaption(), info.caption);
    QCOMPARE(command->GetToolTip(), info.toolTip);
    QCOMPARE(command->GetTypeName(), info.typeName);
    QVERIFY(!command->IsChecked());
}

KIV_TEST_CLASS(TestCommands)
#include "tst_Commands.moc"
