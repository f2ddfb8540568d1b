#include "support/FilesDialogSteps.h"
#include "support/TestRegistry.h"
#include "textfiles/FileDataProjTransDlg.h"
#include "textfiles/FileFormatDirectory.h"
#include "textfiles/FileFormatXMLManagerDlg.h"

#include <QCheckBox>
#include <QDir>
#include <QListView>
#include <QListWidget>
#include <QTest>

using namespace DialogSteps;
using KivTest::ModalDriver;

namespace {

QStringList items(QListWidget* list, bool checkedOnly = false)
{
    QStringList t;
    for (int i = 0; i < list->count(); ++i) {
        if (!checkedOnly || list->item(i)->checkState() == Qt::Checked)
            t << list->item(i)->text();
    }
    return t;
}

QStringList filesOnDisk()
{
    return QDir(FileFormatDirectory::Path()).entryList({QStringLiteral("*.xml")}, QDir::Files, QDir::Name);
}

// The records stay in step with the list: record i describes item i.
bool recordsFollowTheList(FileFormatXMLManagerDlg& dlg, QListWidget* list)
{
    const QStringList records = dlg.GetFormatRecords();
    for (int i = 0; i < records.size(); ++i) {
        if (i >= list->count() || !records.at(i).startsWith(list->item(i)->text() + QLatin1Char(' ')))
            return false;
    }
    return true;
}

} // namespace

class TestFileFormatXMLManagerDlg : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void listsFormatFilesInFolderOrder_data();
    void listsFormatFilesInFolderOrder();
    void removesTheCheckedFormats_data();
    void removesTheCheckedFormats();
    void addsThroughTheEditorForTheConversion();
};

void TestFileFormatXMLManagerDlg::init()
{
    KivTest::resetData();
    QDir(FileFormatDirectory::Path()).removeRecursively();
    for (const char* n : {"a.xml", "b.xml", "c.xml"})
        FileFormatDirectory::Write(QLatin1String(n), QStringLiteral("NoTitle"), QStringLiteral("PointID Latitude Longitude"),
                                   QStringLiteral(","));
}

void TestFileFormatXMLManagerDlg::listsFormatFilesInFolderOrder_data()
{
    QTest::addColumn<QByteArray>("bad");  // content of bad.xml; "-" none
    QTest::newRow("all good") << QByteArray("-");
    QTest::newRow("not well-formed") << QByteArray("<CoordsTransformFileType><Name0 bUseTitle=\"Title\">");
    QTest::newRow("empty file") << QByteArray();
    QTest::newRow("binary") << QByteArray("\x00\xff\xfe\x01garbage", 12);
}

void TestFileFormatXMLManagerDlg::listsFormatFilesInFolderOrder()
{
    QFETCH(QByteArray, bad);
    const QString dir = FileFormatDirectory::Path();
    for (const char* name : {".hidden.xml", "upper.XML", "notes.txt", "x.xml.bak"})
        FileFormatDirectory::Write(QLatin1String(name), QStringLiteral("NoTitle"),
                                   QStringLiteral("PointID Latitude Longitude"), QStringLiteral(","));
    if (bad != "-")
        KivTest::writeFile(dir + QStringLiteral("/bad.xml"), bad);
    QDir().mkpath(dir + QStringLiteral("/folder.xml"));
    QFile::link(dir + QStringLiteral("/a.xml"), dir + QStringLiteral("/link.xml"));

    // Plain files (hidden ones too) whose suffix is exactly "xml", in the
    // folder's order; records up to the first file that cannot be loaded.
    QStringList names, records;
    for (const QString& name : QDir(dir).entryList(QDir::Files | QDir::Hidden, QDir::Unsorted)) {
        if (!QStringList{"a.xml", "b.xml", "c.xml", ".hidden.xml", "bad.xml"}.contains(name))
            continue;
        names << name;
        if (records.size() == names.size() - 1 && name != QLatin1String("bad.xml"))
            records << name + QStringLiteral(" PointID Latitude Longitude NoTitle \",\"");
    }
    FileFormatXMLManagerDlg dlg;
    auto* list = dlg.findChild<QListWidget*>(QStringLiteral("listWidget"));
    QCOMPARE(items(list, true), names);
    QCOMPARE(dlg.GetFormatRecords(), records);
    QVERIFY(dlg.findChild<QCheckBox*>(QStringLiteral("checkBox_selAll"))->isChecked());
}

void TestFileFormatXMLManagerDlg::removesTheCheckedFormats_data()
{
    QTest::addColumn<QString>("keepChecked");  // "*" everything as opened, else the one item left checked
    QTest::addColumn<bool>("broken");          // a malformed format file among them
    QTest::addColumn<QStringList>("left");
    QTest::newRow("everything, right after opening") << "*" << false << QStringList();
    QTest::newRow("nothing checked") << "" << false << QStringList{"a.xml", "b.xml", "c.xml"};
    QTest::newRow("only b") << "b.xml" << false << QStringList{"a.xml", "c.xml"};
    QTest::newRow("malformed file among them") << "c.xml" << true << QStringList{"a.xml", "b.xml", "broken.xml"};
}

void TestFileFormatXMLManagerDlg::removesTheCheckedFormats()
{
    QFETCH(QString, keepChecked);
    QFETCH(bool, broken);
    QFETCH(QStringList, left);
    if (broken)
        KivTest::writeFile(FileFormatDirectory::Path() + QStringLiteral("/broken.xml"), "<CoordsTransformFileType>");
    FileFormatXMLManagerDlg dlg;
    auto* list = dlg.findChild<QListWidget*>(QStringLiteral("listWidget"));
    auto* selAll = dlg.findChild<QCheckBox*>(QStringLiteral("checkBox_selAll"));
    if (keepChecked != QLatin1String("*")) {
        selAll->click();
        QVERIFY(items(list, true).isEmpty());
        for (int i = 0; i < list->count(); ++i) {
            if (list->item(i)->text() == keepChecked)
                list->item(i)->setCheckState(Qt::Checked);
        }
    }
    click(dlg, "pushButton_Remove");
    QStringList shown = items(list);
    shown.sort();
    QCOMPARE(shown, left);
    QCOMPARE(filesOnDisk(), left);
    QVERIFY(recordsFollowTheList(dlg, list));
    QVERIFY(!selAll->isChecked());
}

void TestFileFormatXMLManagerDlg::addsThroughTheEditorForTheConversion()
{
    FileDataProjTransDlg conversion;
    ModalDriver driver;
    QStringList records;
    driver.handleModal("FileFormatXMLManagerDlg", [&driver, &records](QWidget* manager) {
        driver.handleModal("FileFormatUI", [&driver](QWidget* w) {
            auto* list = w->findChild<QListView*>(QStringLiteral("listView"));
            for (int row : {1, 2}) {
                QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                                  list->visualRect(list->model()->index(row, 0)).center());
                click(*w, "pushButton_Add");
            }
            edit(*w, "lineEdit_Name")->setText(QStringLiteral("B"));  // b.xml exists, whatever the case
            driver.answerMessageBox();
            click(*w, "pushButton_Ok");
            edit(*w, "lineEdit_Name")->setText(QStringLiteral("new"));
            click(*w, "pushButton_Ok");
        });
        click(*manager, "pushButton_Add");
        auto* list = manager->findChild<QListWidget*>(QStringLiteral("listWidget"));
        records = static_cast<FileFormatXMLManagerDlg*>(manager)->GetFormatRecords();
        if (items(list, true).size() != 4 || items(list).last() != QLatin1String("new.xml"))
            driver.fail(QStringLiteral("the new format is not the last checked item: ") + items(list).join(' '));
        click(*manager, "pushButton_Cancel");
    });
    click(conversion, "pushButton_Format");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(driver.messages().first().text, QStringLiteral("There is a file with the same name.Please reset the file name!"));
    QCOMPARE(records.last(), QStringLiteral("new.xml Latitude Longitude NoTitle \",\""));
    QVERIFY(filesOnDisk().contains(QStringLiteral("new.xml")));
    // The conversion dialog lists the manager's records, the new one current.
    QCOMPARE(comboItems(conversion, "comboBox"), records);
    QCOMPARE(conversion.findChild<QComboBox*>(QStringLiteral("comboBox"))->currentText(), records.last());
}

KIV_TEST_CLASS(TestFileFormatXMLManagerDlg)
#include "tst_FileFormatXMLManagerDlg.moc"
