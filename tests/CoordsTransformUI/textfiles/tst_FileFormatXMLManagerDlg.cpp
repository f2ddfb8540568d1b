#include "support/ModalDriver.h"
#include "support/TestData.h"
#include "support/TestRegistry.h"
#include "textfiles/FileFormatDirectory.h"
#include "textfiles/FileFormatXMLManagerDlg.h"

#include <QCheckBox>
#include <QDir>
#include <QFileInfo>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

using KivTest::ModalDriver;

namespace {

QStringList itemTexts(QListWidget* list, bool checkedOnly = false)
{
    QStringList texts;
    for (int i = 0; i < list->count(); ++i) {
        if (!checkedOnly || list->item(i)->checkState() == Qt::Checked)
            texts << list->item(i)->text();
    }
    return texts;
}

QStringList formatFiles()
{
    QStringList names = QDir(FileFormatDirectory::Path()).entryList({QStringLiteral("*.xml")}, QDir::Files);
    names.sort();
    return names;
}

} // namespace

class TestFileFormatXMLManagerDlg : public QObject
{
    Q_OBJECT
private slots:
    void init();

    void opensWithEveryFormatChecked();
    void removesTheCheckedFormats_data();
    void removesTheCheckedFormats();
    void addsThroughTheEditor();
    void malformedFileKeepsTheListUsable();

private:
    void makeFormats(const QStringList& names);
};

void TestFileFormatXMLManagerDlg::init()
{
    KivTest::resetData();
    makeFormats({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")});
}

void TestFileFormatXMLManagerDlg::makeFormats(const QStringList& names)
{
    QDir(FileFormatDirectory::Path()).removeRecursively();
    for (const QString& n : names)
        FileFormatDirectory::Write(n + QStringLiteral(".xml"), QStringLiteral("NoTitle"),
                                   QStringLiteral("PointID Latitude Longitude"), QStringLiteral(","));
}

void TestFileFormatXMLManagerDlg::opensWithEveryFormatChecked()
{
    FileFormatXMLManagerDlg dlg;
    auto* list = dlg.findChild<QListWidget*>(QStringLiteral("listWidget"));
    QStringList all = itemTexts(list, true);
    QCOMPARE(all.size(), 3);
    QVERIFY(dlg.findChild<QCheckBox*>(QStringLiteral("checkBox_selAll"))->isChecked());
    // Records come in the list's order.
    const QStringList records = dlg.GetFormatRecords();
    QCOMPARE(records.size(), 3);
    for (int i = 0; i < 3; ++i)
        QCOMPARE(records.at(i), all.at(i) + QStringLiteral(" PointID Latitude Longitude NoTitle \",\""));
}

void TestFileFormatXMLManagerDlg::removesTheCheckedFormats_data()
{
    QTest::addColumn<QString>("action");     // "none", "all", "one:b", "selall-off"
    QTest::addColumn<QStringList>("left");
    QTest::newRow("everything at once") << "all" << QStringList();
    QTest::newRow("nothing checked") << "selall-off" << QStringList{"a.xml", "b.xml", "c.xml"};
    QTest::newRow("only b") << "one:b.xml" << QStringList{"a.xml", "c.xml"};
}

void TestFileFormatXMLManagerDlg::removesTheCheckedFormats()
{
    QFETCH(QString, action);
    QFETCH(QStringList, left);
    FileFormatXMLManagerDlg dlg;
    dlg.show();
    auto* list = dlg.findChild<QListWidget*>(QStringLiteral("listWidget"));
    auto* selAll = dlg.findChild<QCheckBox*>(QStringLiteral("checkBox_selAll"));
    if (action != QLatin1String("all"))
        selAll->click();  // unchecks every item
    QVERIFY(action == QLatin1String("all") || itemTexts(list, true).isEmpty());
    if (action.startsWith(QLatin1String("one:"))) {
        for (int i = 0; i < list->count(); ++i) {
            if (list->item(i)->text() == action.mid(4))
                list->item(i)->setCheckState(Qt::Checked);
        }
    }
    QTest::mouseClick(dlg.findChild<QPushButton*>(QStringLiteral("pushButton_Remove")), Qt::LeftButton);

    QStringList shown = itemTexts(list);
    shown.sort();
    QCOMPARE(shown, left);
    QCOMPARE(formatFiles(), left);
    QCOMPARE(dlg.GetFormatRecords().size(), left.size());
    for (int i = 0; i < list->count(); ++i)
        QVERIFY(dlg.GetFormatRecords().at(i).startsWith(list->item(i)->text() + QLatin1Char(' ')));
    QVERIFY(!selAll->isChecked());
}

void TestFileFormatXMLManagerDlg::addsThroughTheEditor()
{
    FileFormatXMLManagerDlg dlg;
    ModalDriver driver;
    driver.handleModal("FileFormatUI", [&driver](QWidget* w) {
        w->findChild<QLineEdit*>(QStringLiteral("lineEdit_Name"))->setText(QStringLiteral("B"));
        // "B" is taken by b.xml, whatever the case: refused, then renamed.
        driver.answerMessageBox();
        auto* list = w->findChild<QListView*>(QStringLiteral("listView"));
        auto* add = w->findChild<QPushButton*>(QStringLiteral("pushButton_Add"));
        for (int row : {1, 2}) {
            const QRect r = list->visualRect(list->model()->index(row, 0));
            QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, r.center());
            add->click();
        }
        w->findChild<QPushButton*>(QStringLiteral("pushButton_Ok"))->click();
        w->findChild<QLineEdit*>(QStringLiteral("lineEdit_Name"))->setText(QStringLiteral("new"));
        w->findChild<QPushButton*>(QStringLiteral("pushButton_Ok"))->click();
    });
    QTest::mouseClick(dlg.findChild<QPushButton*>(QStringLiteral("pushButton_Add")), Qt::LeftButton);
    QVERIFY2(driver.verify(), qPrintable(driver.report()));
    QCOMPARE(driver.messages().first().text,
             QStringLiteral("There is a file with the same name.Please reset the file name!"));

    auto* list = dlg.findChild<QListWidget*>(QStringLiteral("listWidget"));
    QCOMPARE(list->count(), 4);
    QCOMPARE(list->item(3)->text(), QStringLiteral("new.xml"));
    QCOMPARE(list->item(3)->checkState(), Qt::Checked);
    QCOMPARE(dlg.GetFormatRecords().last(), QStringLiteral("new.xml Latitude Longitude NoTitle \",\""));
    QVERIFY(QFileInfo::exists(FileFormatDirectory::Path() + QStringLiteral("/new.xml")));
}

void TestFileFormatXMLManagerDlg::malformedFileKeepsTheListUsable()
{
    KivTest::writeFile(FileFormatDirectory::Path() + QStringLiteral("/broken.xml"), "<CoordsTransformFileType>");
    FileFormatXMLManagerDlg dlg;
    auto* list = dlg.findChild<QListWidget*>(QStringLiteral("listWidget"));
    QCOMPARE(list->count(), 4);
    QVERIFY(dlg.GetFormatRecords().size() < 4);
    // Removing everything, the broken file included, must not go astray.
    QTest::mouseClick(dlg.findChild<QPushButton*>(QStringLiteral("pushButton_Remove")), Qt::LeftButton);
    QCOMPARE(list->count(), 0);
    QVERIFY(dlg.GetFormatRecords().isEmpty());
    QVERIFY(formatFiles().isEmpty());
}

KIV_TEST_CLASS(TestFileFormatXMLManagerDlg)
#include "tst_FileFormatXMLManagerDlg.moc"
