#include "support/ModalDriver.h"
#include "support/TestData.h"
#include "support/TestRegistry.h"
#include "textfiles/FileFormatDirectory.h"
#include "textfiles/FileFormatXMLManagerDlg.h"

#include <QCheckBox>
#include <QDir>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

using KivTest::ModalDriver;

namespace {

QStringList texts(QListWidget* list, bool checkedOnly = false)
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
    QStringList names = QDir(FileFormatDirectory::Path()).entryList({QStringLiteral("*.xml")}, QDir::Files);
    names.sort();
    return names;
}

// The records must stay in step with the list: row i describes item i.
void checkRecordsFollowTheList(FileFormatXMLManagerDlg& dlg, QListWidget* list)
{
    const QStringList records = dlg.GetFormatRecords();
    QVERIFY(records.size() <= list->count());
    for (int i = 0; i < records.size(); ++i)
        QVERIFY2(records.at(i).startsWith(list->item(i)->text() + QLatin1Char(' ')), qPrintable(records.at(i)));
}

} // namespace

class TestFileFormatXMLManagerDlg : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void removesTheCheckedFormats_data();
    void removesTheCheckedFormats();
    void addsThroughTheEditor();
};

void TestFileFormatXMLManagerDlg::init()
{
    KivTest::resetData();
    QDir(FileFormatDirectory::Path()).removeRecursively();
    for (const char* n : {"a.xml", "b.xml", "c.xml"})
        FileFormatDirectory::Write(QLatin1String(n), QStringLiteral("NoTitle"), QStringLiteral("PointID Latitude Longitude"),
                                   QStringLiteral(","));
}

void TestFileFormatXMLManagerDlg::removesTheCheckedFormats_data()
{
    QTest::addColumn<QString>("keepChecked");  // "*" everything as opened, else the one item left checked
    QTest::addColumn<bool>("broken");          // a malformed format file among them
    QTest::addColumn<QStringList>("left");
    QTest::newRow("everything, right after opening") << "*" << false << QStringList();
    QTest::newRow("nothing checked") << "" << false << QStringList{"a.xml", "b.xml", "c.xml"};
    QTest::newRow("only b") << "b.xml" << false << QStringList{"a.xml", "c.xml"};
    QTest::newRow("malformed file among them") << "*" << true << QStringList();
    QTest::newRow("malformed file kept") << "c.xml" << true << QStringList{"a.xml", "b.xml", "broken.xml"};
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
    QCOMPARE(texts(list, true).size(), broken ? 4 : 3);
    QVERIFY(selAll->isChecked());
    QCOMPARE(dlg.GetFormatRecords().size() < list->count(), broken);
    checkRecordsFollowTheList(dlg, list);

    if (keepChecked != QLatin1String("*")) {
        selAll->click();
        QVERIFY(texts(list, true).isEmpty());
        for (int i = 0; i < list->count(); ++i) {
            if (list->item(i)->text() == keepChecked)
                list->item(i)->setCheckState(Qt::Checked);
        }
    }
    dlg.findChild<QPushButton*>(QStringLiteral("pushButton_Remove"))->click();
    QStringList shown = texts(list);
    shown.sort();
    QCOMPARE(shown, left);
    QCOMPARE(filesOnDisk(), left);
    checkRecordsFollowTheList(dlg, list);
    QVERIFY(!selAll->isChecked());
}

void TestFileFormatXMLManagerDlg::addsThroughTheEditor()
{
    FileFormatXMLManagerDlg dlg;
    ModalDriver driver;
    driver.handleModal("FileFormatUI", [&driver](QWidget* w) {
        auto* name = w->findChild<QLineEdit*>(QStringLiteral("lineEdit_Name"));
        auto* list = w->findChild<QListView*>(QStringLiteral("listView"));
        for (int row : {1, 2}) {
            QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                              list->visualRect(list->model()->index(row, 0)).center());
            w->findChild<QPushButton*>(QStringLiteral("pushButton_Add"))->click();
        }
        name->setText(QStringLiteral("B"));  // b.xml exists, whatever the case
        driver.answerMessageBox();
        w->findChild<QPushButton*>(QStringLiteral("pushButton_Ok"))->click();
        name->setText(QStringLiteral("new"));
        w->findChild<QPushButton*>(QStringLiteral("pushButton_Ok"))->click();
    });
    dlg.findChild<QPushButton*>(QStringLiteral("pushButton_Add"))->click();
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(driver.messages().first().text, QStringLiteral("There is a file with the same name.Please reset the file name!"));

    auto* list = dlg.findChild<QListWidget*>(QStringLiteral("listWidget"));
    QCOMPARE(list->count(), 4);
    QCOMPARE(list->item(3)->text(), QStringLiteral("new.xml"));
    QCOMPARE(list->item(3)->checkState(), Qt::Checked);
    QCOMPARE(dlg.GetFormatRecords().last(), QStringLiteral("new.xml Latitude Longitude NoTitle \",\""));
    QVERIFY(filesOnDisk().contains(QStringLiteral("new.xml")));
}

KIV_TEST_CLASS(TestFileFormatXMLManagerDlg)
#include "tst_FileFormatXMLManagerDlg.moc"
