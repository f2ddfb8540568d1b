#include "support/FilesDialogSteps.h"
#include "support/TestRegistry.h"
#include "textfiles/FileDataProjTransDlg.h"
#include "textfiles/FileFormatDirectory.h"
#include "textfiles/FileFormatXMLManagerDlg.h"

#include <QCheckBox>
#include <QDir>
#include <QFileInfo>
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

// The formats left on disk, of those the tests write.
QStringList formatsOnDisk()
{
    QStringList left;
    for (const char* name : {".hidden.xml", "a.xml", "b.xml", "bad.xml", "c.xml", "new.xml"}) {
        if (QFileInfo::exists(FileFormatDirectory::Path() + QLatin1Char('/') + QLatin1String(name)))
            left << QLatin1String(name);
    }
    return left;
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
    void listsAndRemoves_data();
    void listsAndRemoves();
    void addsThroughTheEditorForTheConversion();
};

void TestFileFormatXMLManagerDlg::init()
{
    KivTest::resetData();
    const QString dir = FileFormatDirectory::Path();
    QDir(dir).removeRecursively();
    for (const char* n : {"a.xml", "b.xml", "c.xml", ".hidden.xml", "upper.XML", "notes.txt", "x.xml.bak"})
        FileFormatDirectory::Write(QLatin1String(n), "NoTitle", "PointID Latitude Longitude", ",");
    QDir().mkpath(dir + QStringLiteral("/folder.xml"));
    QFile::link(dir + QStringLiteral("/a.xml"), dir + QStringLiteral("/link.xml"));
}

void TestFileFormatXMLManagerDlg::listsAndRemoves_data()
{
    QTest::addColumn<QByteArray>("bad");       // content of bad.xml; "-" none
    QTest::addColumn<QString>("keepChecked");  // "*" everything as opened, else the one item left checked
    QTest::addColumn<QStringList>("left");
    QTest::newRow("all good, everything right after opening") << QByteArray("-") << "*" << QStringList();
    QTest::newRow("not well-formed, nothing checked") << QByteArray("<CoordsTransformFileType><Name0 bUseTitle=\"Title\">")
                                                      << "" << QStringList{".hidden.xml", "a.xml", "b.xml", "bad.xml", "c.xml"};
    QTest::newRow("empty file, only b") << QByteArray() << "b.xml"
                                        << QStringList{".hidden.xml", "a.xml", "bad.xml", "c.xml"};
    QTest::newRow("binary, only bad") << QByteArray("\x00\xff\xfe\x01garbage", 12) << "bad.xml"
                                      << QStringList{".hidden.xml", "a.xml", "b.xml", "c.xml"};
}

void TestFileFormatXMLManagerDlg::listsAndRemoves()
{
    QFETCH(QByteArray, bad);
    QFETCH(QString, keepChecked);
    QFETCH(QStringList, left);
    const QString dir = FileFormatDirectory::Path();
    if (bad != "-")
        KivTest::writeFile(dir + QStringLiteral("/bad.xml"), bad);
    // Plain files (hidden ones too) whose suffix is exactly "xml", in the
    // folder's order, all checked; records up to the first file that cannot be loaded.
    QStringList names, records;
    for (const QString& name : QDir(dir).entryList(QDir::Files | QDir::Hidden, QDir::Unsorted)) {
        if (!formatsOnDisk().contains(name))
            continue;
        names << name;
        if (records.size() == names.size() - 1 && name != QLatin1String("bad.xml"))
            records << name + QStringLiteral(" PointID Latitude Longitude NoTitle \",\"");
    }
    FileFormatXMLManagerDlg dlg;
    auto* list = dlg.findChild<QListWidget*>(QStringLiteral("listWidget"));
    auto* selAll = dlg.findChild<QCheckBox*>(QStringLiteral("checkBox_selAll"));
    QCOMPARE(items(list, true), names);
    QCOMPARE(dlg.GetFormatRecords(), records);
    QVERIFY(selAll->isChecked());

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
    QCOMPARE(formatsOnDisk(), left);
    QVERIFY(QFileInfo::exists(dir + QStringLiteral("/upper.XML")));
    QVERIFY(QFileInfo(dir + QStringLiteral("/link.xml")).isSymLink());
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
        if (items(list, true) != items(list) || items(list).last() != QLatin1String("new.xml"))
            driver.fail(QStringLiteral("the new format is not the last checked item: ") + items(list).join(' '));
        click(*manager, "pushButton_Cancel");
    });
    click(conversion, "pushButton_Format");
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(messageTexts(driver),
             QStringList("Warning|There is a file with the same name.Please reset the file name!"));
    QCOMPARE(records.last(), QStringLiteral("new.xml Latitude Longitude NoTitle \",\""));
    QVERIFY(formatsOnDisk().contains(QStringLiteral("new.xml")));
    // The conversion dialog lists the manager's records, the new one current.
    QCOMPARE(comboItems(conversion, "comboBox"), records);
    QCOMPARE(conversion.findChild<QComboBox*>(QStringLiteral("comboBox"))->currentText(), records.last());
}

KIV_TEST_CLASS(TestFileFormatXMLManagerDlg)
#include "tst_FileFormatXMLManagerDlg.moc"
