#include "support/ModalDriver.h"
#include "support/TestData.h"
#include "support/TestRegistry.h"
#include "textfiles/FileFormatDirectory.h"
#include "textfiles/FileFormatUI.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QFileInfo>
#include <QTest>
#include <QTextEdit>

using KivTest::ModalDriver;

namespace {

// Performs a script of editor actions: "name:X", "sep:N" (combo row),
// "title", "add:ROW" (click a field row, then Add), "clear", "type:TEXT"
// (replace the field list by hand), "ok".
void run(FileFormatUI& dlg, const QStringList& script)
{
    dlg.show();
    auto* list = dlg.findChild<QListView*>(QStringLiteral("listView"));
    for (const QString& step : script) {
        const QString arg = step.section(QLatin1Char(':'), 1);
        if (step.startsWith(QLatin1String("name:"))) {
            dlg.findChild<QLineEdit*>(QStringLiteral("lineEdit_Name"))->setText(arg);
        } else if (step.startsWith(QLatin1String("sep:"))) {
            dlg.findChild<QComboBox*>(QStringLiteral("comboBox"))->setCurrentIndex(arg.toInt());
        } else if (step == QLatin1String("title")) {
            dlg.findChild<QCheckBox*>(QStringLiteral("checkBox_Title"))->click();
        } else if (step.startsWith(QLatin1String("add:"))) {
            const QModelIndex index = list->model()->index(arg.toInt(), 0);
            QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualRect(index).center());
            QTest::mouseClick(dlg.findChild<QPushButton*>(QStringLiteral("pushButton_Add")), Qt::LeftButton);
        } else if (step == QLatin1String("clear")) {
            QTest::mouseClick(dlg.findChild<QPushButton*>(QStringLiteral("pushButton_Clear")), Qt::LeftButton);
        } else if (step.startsWith(QLatin1String("type:"))) {
            dlg.findChild<QTextEdit*>(QStringLiteral("textEdit"))->setPlainText(arg);
        } else if (step == QLatin1String("ok")) {
            QTest::mouseClick(dlg.findChild<QPushButton*>(QStringLiteral("pushButton_Ok")), Qt::LeftButton);
        }
    }
}

} // namespace

class TestFileFormatUI : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }

    void refusalsComeInOrder_data();
    void refusalsComeInOrder();
    void acceptedFormatIsWritten_data();
    void acceptedFormatIsWritten();
    void sameFieldTwiceIsRefused_data();
    void sameFieldTwiceIsRefused();
};

void TestFileFormatUI::refusalsComeInOrder_data()
{
    QTest::addColumn<QStringList>("script");
    QTest::addColumn<QString>("message");
    const QString ok = QStringLiteral("ok");
    QTest::newRow("no name") << QStringList{"add:1", "add:2", ok} << "The name can not be empty!";
    QTest::newRow("path in the name") << QStringList{"name:../up", "add:1", "add:2", ok}
                                      << "The name can not contain / \\ : * ? \" < > | or control characters!";
    QTest::newRow("blank in the name") << QStringList{"name:my format", "add:1", "add:2", ok}
                                       << "The name can not contain blanks!";
    QTest::newRow("taken name, other case") << QStringList{"name:GENERAL", "add:1", "add:2", ok}
                                            << "There is a file with the same name.Please reset the file name!";
    QTest::newRow("no fields") << QStringList{"name:n", ok} << "Please enter the correct file format!";
    QTest::newRow("a blank only") << QStringList{"name:n", "type:  ", ok} << "Please enter the correct file format!";
    QTest::newRow("no longitude") << QStringList{"name:n", "add:0", "add:1", ok}
                                  << "The output file must have longitude and latitude!";
    QTest::newRow("typed by hand, codes missing") << QStringList{"name:n", "type:Latitude Longitude ", ok}
                                                  << "The output file must have longitude and latitude!";
    // The codes counted are those added before the last failed check 4.
    QTest::newRow("codes dropped by an empty list")
        << QStringList{"name:n", "add:1", "add:2", "clear", ok, "add:0", ok}
        << "The output file must have longitude and latitude!";
}

void TestFileFormatUI::refusalsComeInOrder()
{
    QFETCH(QStringList, script);
    QFETCH(QString, message);
    FileFormatUI dlg({QStringLiteral("general.xml")});
    ModalDriver driver;
    const int boxes = script.count(QStringLiteral("ok"));
    for (int i = 0; i < boxes; ++i)
        driver.answerMessageBox();
    run(dlg, script);
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(driver.messages().last().title, QStringLiteral("Warning"));
    QCOMPARE(driver.messages().last().text, message);
    QCOMPARE(dlg.result(), int(QDialog::Rejected));
    QVERIFY(!QFileInfo::exists(KivTest::dataRoot() + QStringLiteral("/up.xml")));
}

void TestFileFormatUI::acceptedFormatIsWritten_data()
{
    QTest::addColumn<QStringList>("script");
    QTest::addColumn<QString>("record");
    QTest::newRow("fields in click order, title, tab")
        << QStringList{"name:F", "sep:3", "title", "add:0", "add:2", "add:1", "add:3", "add:4", "add:4", "ok"}
        << "F.xml PointID Longitude Latitude altitude other other Title \"\t\"";
    // Clear empties the text but keeps the codes: latitude counts although
    // it is no longer in the list.
    QTest::newRow("codes survive Clear")
        << QStringList{"name:F", "add:1", "clear", "add:2", "add:3", "ok"} << "F.xml Longitude altitude NoTitle \",\"";
    // The last character goes whatever it is.
    QTest::newRow("last letter of a typed list")
        << QStringList{"name:F", "sep:2", "add:1", "add:2", "type:Latitude Longitude", "ok"}
        << "F.xml Latitude Longitud NoTitle \";\"";
}

void TestFileFormatUI::acceptedFormatIsWritten()
{
    QFETCH(QStringList, script);
    QFETCH(QString, record);
    FileFormatUI dlg({QStringLiteral("General.xml")});
    ModalDriver driver;
    run(dlg, script);
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(dlg.result(), int(QDialog::Accepted));
    QString written;
    QVERIFY(FileFormatDirectory::LoadRecord(FileFormatDirectory::Path() + QStringLiteral("/F.xml"), &written));
    QCOMPARE(written, record);
    QCOMPARE(dlg.GetFileName(), QStringLiteral("F.xml"));
}

void TestFileFormatUI::sameFieldTwiceIsRefused_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<bool>("refused");
    QTest::newRow("PointID") << 0 << true;
    QTest::newRow("Latitude") << 1 << true;
    QTest::newRow("Longitude") << 2 << true;
    QTest::newRow("altitude") << 3 << true;
    QTest::newRow("other") << 4 << false;
}

void TestFileFormatUI::sameFieldTwiceIsRefused()
{
    QFETCH(int, row);
    QFETCH(bool, refused);
    FileFormatUI dlg;
    ModalDriver driver;
    const QString add = QStringLiteral("add:%1").arg(row);
    run(dlg, {add});
    if (refused)
        driver.answerMessageBox();
    run(dlg, {add});
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    auto* edit = dlg.findChild<QTextEdit*>(QStringLiteral("textEdit"));
    const int count = edit->toPlainText().split(QLatin1Char(' '), Qt::SkipEmptyParts).size();
    QCOMPARE(count, refused ? 1 : 2);
    if (refused)
        QCOMPARE(driver.messages().first().text, QStringLiteral("The same field has been added,please read it!"));

}

KIV_TEST_CLASS(TestFileFormatUI)
#include "tst_FileFormatUI.moc"
