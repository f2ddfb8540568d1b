#include "support/ModalDriver.h"
#include "support/TestData.h"
#include "support/TestRegistry.h"
#include "textfiles/FileFormatDirectory.h"
#include "textfiles/FileFormatUI.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
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

    void checksAndWrites_data();
    void checksAndWrites();
    void formatFileIsUtf8WithoutDeclaration();
};

void TestFileFormatUI::checksAndWrites_data()
{
    QTest::addColumn<QStringList>("script");
    QTest::addColumn<QStringList>("warnings");  // in order
    QTest::addColumn<QString>("record");        // of the written format; "" when refused
    const QString ok = QStringLiteral("ok"), sameField = QStringLiteral("The same field has been added,please read it!");
    const QString noFormat = QStringLiteral("Please enter the correct file format!");
    const QString noLatLon = QStringLiteral("The output file must have longitude and latitude!");
    QTest::newRow("no name") << QStringList{"add:1", "add:2", ok} << QStringList("The name can not be empty!") << "";
    QTest::newRow("path in the name")
        << QStringList{"name:../up", "add:1", "add:2", ok}
        << QStringList("The name can not contain / \\ : * ? \" < > | or control characters!") << "";
    QTest::newRow("blank in the name") << QStringList{"name:my format", "add:1", "add:2", ok}
                                       << QStringList("The name can not contain blanks!") << "";
    QTest::newRow("taken name, other case")
        << QStringList{"name:GENERAL", "add:1", "add:2", ok}
        << QStringList("There is a file with the same name.Please reset the file name!") << "";
    QTest::newRow("no fields") << QStringList{"name:n", ok} << QStringList(noFormat) << "";
    QTest::newRow("no longitude") << QStringList{"name:n", "add:0", "add:1", ok} << QStringList(noLatLon) << "";
    QTest::newRow("typed by hand, codes missing") << QStringList{"name:n", "type:Latitude Longitude ", ok}
                                                  << QStringList(noLatLon) << "";
    // The codes counted are those added after the last failed check 4.
    QTest::newRow("codes dropped by an empty list") << QStringList{"name:n", "add:1", "add:2", "clear", ok, "add:0", ok}
                                                    << QStringList{noFormat, noLatLon} << "";
    // Every single-use kind is refused a second time; "other" is not.
    QTest::newRow("fields in click order, title, tab")
        << QStringList{"name:F", "sep:3", "title", "add:0", "add:2", "add:1", "add:3",
                       "add:0", "add:1", "add:2", "add:3", "add:4", "add:4", ok}
        << QStringList{sameField, sameField, sameField, sameField}
        << "F.xml PointID Longitude Latitude altitude other other Title \"\t\"";
    // Clear empties the text but keeps the codes: latitude counts although
    // it is no longer in the list.
    QTest::newRow("codes survive Clear") << QStringList{"name:F", "add:1", "clear", "add:2", "add:3", ok}
                                         << QStringList() << "F.xml Longitude altitude NoTitle \",\"";
    // The last character goes whatever it is.
    QTest::newRow("last letter of a typed list")
        << QStringList{"name:F", "sep:2", "add:1", "add:2", "type:Latitude Longitude", ok} << QStringList()
        << "F.xml Latitude Longitud NoTitle \";\"";
}

void TestFileFormatUI::checksAndWrites()
{
    QFETCH(QStringList, script);
    QFETCH(QStringList, warnings);
    QFETCH(QString, record);
    const QStringList before = FileFormatDirectory::ListFiles();
    FileFormatUI dlg({QStringLiteral("general.xml")});
    ModalDriver driver;
    for (int i = 0; i < warnings.size(); ++i)
        driver.answerMessageBox();
    run(dlg, script);
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QStringList shown;
    for (const ModalDriver::Message& m : driver.messages())
        shown << (m.title == QLatin1String("Warning") ? m.text : m.title + QLatin1Char('|') + m.text);
    QCOMPARE(shown, warnings);
    QCOMPARE(dlg.result(), int(record.isEmpty() ? QDialog::Rejected : QDialog::Accepted));
    if (record.isEmpty()) {
        QCOMPARE(FileFormatDirectory::ListFiles(), before);
        QVERIFY(!QFileInfo::exists(KivTest::dataRoot() + QStringLiteral("/up.xml")));
        return;
    }
    QString written;
    QVERIFY(FileFormatDirectory::LoadRecord(FileFormatDirectory::Path() + QStringLiteral("/F.xml"), &written));
    QCOMPARE(written, record);
    QCOMPARE(dlg.GetFileName(), QStringLiteral("F.xml"));
}

void TestFileFormatUI::formatFileIsUtf8WithoutDeclaration()
{
    const QString dir = KivTest::dataRoot() + QStringLiteral("/FileFormat");
    QDir(dir).removeRecursively();  // created again when missing
    QVERIFY(FileFormatDirectory::Write(QStringLiteral("t.xml"), QString::fromUtf8("有标题"),
                                       QString::fromUtf8("点号 纬度 经度 其他"), QStringLiteral("\t")));
    QCOMPARE(QString::fromUtf8(KivTest::readFile(dir + QStringLiteral("/t.xml"))),
             QString::fromUtf8("<CoordsTransformFileType>\n   <Name0 bUseTitle=\"有标题\"/>\n"
                               "   <Name FileName=\"t.xml\"/>\n   <Name1 name=\"General format1\" value=\"点号 纬度 经度 其他\"/>\n"
                               "   <Name2 name=\"General format2\" separator=\"&#9;\"/>\n</CoordsTransformFileType>\n"));
    QString record;
    QVERIFY(FileFormatDirectory::LoadRecord(dir + QStringLiteral("/t.xml"), &record));
    QCOMPARE(record, QString::fromUtf8("t.xml 点号 纬度 经度 其他 有标题 \"\t\""));
}

KIV_TEST_CLASS(TestFileFormatUI)
#include "tst_FileFormatUI.moc"
