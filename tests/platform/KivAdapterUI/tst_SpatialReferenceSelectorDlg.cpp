#include "KivAdapterUI/SpatialReferenceSelectorDlg.h"
#include "KivUI/EnvironmentSetting.h"
#include "support/ProjReference.h"
#include "support/TestData.h"
#include "support/TestRegistry.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>

using KivAdapterUI::SpatialReferenceSelectorDlg;

namespace {

const QString kRecentKey = QStringLiteral("SpatialReferenceSelector/RecentCodes");
enum Group { Recent, Geographic, Projected };

QTreeWidget* tree(const QDialog& dlg) { return dlg.findChild<QTreeWidget*>(QStringLiteral("treeWidget_Systems")); }
QLineEdit* filter(const QDialog& dlg) { return dlg.findChild<QLineEdit*>(QStringLiteral("lineEdit_Filter")); }
QPushButton* okButton(const QDialog& dlg) { return dlg.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok); }
QString pane(const QDialog& dlg) { return dlg.findChild<QPlainTextEdit*>(QStringLiteral("textEdit_Wkt"))->toPlainText(); }
int countLabel(const QDialog& dlg)
{
    return dlg.findChild<QLabel*>(QStringLiteral("label_Count"))->text().section(QLatin1Char(' '), 0, 0).toInt();
}

/// Codes a user can see in a group, in order.
QStringList visible(const QDialog& dlg, Group g)
{
    QStringList codes;
    QTreeWidgetItem* group = tree(dlg)->topLevelItem(g);
    for (int i = 0; !group->isHidden() && i < group->childCount(); ++i)
        if (!group->child(i)->isHidden())
            codes << group->child(i)->data(0, Qt::UserRole).toString();
    return codes;
}

/// The systems PROJ's database offers for one kind (deprecated EPSG codes aside), sorted.
QStringList projCodes(PJ_TYPE type)
{
    QStringList codes;
    for (const char* authority : {"EPSG", "ESRI"}) {
        PROJ_STRING_LIST list = proj_get_codes_from_database(nullptr, authority, type, qstrcmp(authority, "ESRI") == 0);
        for (PROJ_STRING_LIST code = list; code && *code; ++code)
            codes << QLatin1String(authority) + QLatin1Char(':') + QString::fromUtf8(*code);
        proj_string_list_destroy(list);
    }
    codes.removeDuplicates();
    codes.sort();
    return codes;
}

void choose(const QString& code)
{
    SpatialReferenceSelectorDlg dlg;
    QVERIFY(dlg.SelectCode(code));
    okButton(dlg)->click();
}

} // namespace

class TestSpatialReferenceSelectorDlg : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void listsTheCatalogueByKind();
    void filters_data();
    void filters();
    void closing_data();
    void closing();
    void recentSystemsComeFirstAfterReopening();
};

void TestSpatialReferenceSelectorDlg::init()
{
    KivTest::resetData();
    KivUI::EnvironmentSetting::Instance()->SetValue(kRecentKey, QStringList());
}

void TestSpatialReferenceSelectorDlg::listsTheCatalogueByKind()
{
    SpatialReferenceSelectorDlg dlg;
    QCOMPARE(tree(dlg)->topLevelItemCount(), 3);
    QCOMPARE(tree(dlg)->topLevelItem(Projected)->text(0), QStringLiteral("Projected Coordinate Systems"));
    QVERIFY(visible(dlg, Recent).isEmpty());
    // Every system once, under its own kind.
    QStringList geographic = visible(dlg, Geographic), projected = visible(dlg, Projected);
    geographic.sort();
    projected.sort();
    QCOMPARE(geographic, projCodes(PJ_TYPE_GEOGRAPHIC_2D_CRS));
    QCOMPARE(projected, projCodes(PJ_TYPE_PROJECTED_CRS));
    QCOMPARE(countLabel(dlg), geographic.size() + projected.size());
    QTreeWidgetItem* item = tree(dlg)->findItems(QStringLiteral("EPSG:2435"), Qt::MatchExactly | Qt::MatchRecursive, 1).value(0);
    QVERIFY(item && item->parent() == tree(dlg)->topLevelItem(Projected));
    QCOMPARE(item->text(0), QStringLiteral("Beijing 1954 / 3-degree Gauss-Kruger CM 114E"));

    // The pane shows the current system's WKT and its area of use; OK needs a system.
    dlg.show();
    QVERIFY(!okButton(dlg)->isEnabled());
    tree(dlg)->setCurrentItem(tree(dlg)->topLevelItem(Geographic));
    QVERIFY(!okButton(dlg)->isEnabled() && pane(dlg).isEmpty());
    QVERIFY(!dlg.SelectCode(QStringLiteral("EPSG:999999")) && !dlg.SelectCode(QStringLiteral("4214")));
    QVERIFY(dlg.SelectCode(QStringLiteral(" epsg:4214 ")) && okButton(dlg)->isEnabled());
    const KivTest::ProjReference crs(QStringLiteral("EPSG:4214"));
    const char* area = nullptr;
    double w, s, e, n;
    QVERIFY(proj_get_area_of_use(crs.context(), crs.get(), &w, &s, &e, &n, &area));
    QVERIFY(pane(dlg).startsWith(QStringLiteral("GEOGCS[\"Beijing 1954\"")));
    QVERIFY2(pane(dlg).contains(QString::fromUtf8(area)) && pane(dlg).contains(QString::number(n)), qPrintable(pane(dlg)));
}

void TestSpatialReferenceSelectorDlg::filters_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("shown");
    QTest::addColumn<QStringList>("hidden");
    QTest::addColumn<int>("count"); // -1: not fixed
    const QString beijing = "EPSG:4214", gk114 = "EPSG:2435", wgs84 = "EPSG:4326", webMercator = "ESRI:102100";
    QTest::newRow("bare number") << "4214" << QStringList{beijing} << QStringList{gk114} << 1;
    QTest::newRow("lower-case code") << "esri:102100" << QStringList{webMercator} << QStringList{beijing} << 1;
    QTest::newRow("words in any order and case") << "114e GAUSS Beijing" << QStringList{gk114} << QStringList{beijing, wgs84} << -1;
    QTest::newRow("underscores as blanks") << "WGS_1984_Web" << QStringList{webMercator} << QStringList{wgs84} << -1;
    QTest::newRow("extra blanks") << "  xian   1980 " << QStringList{"EPSG:4610"} << QStringList{beijing} << -1;
    QTest::newRow("nothing") << "no such system zzz" << QStringList() << QStringList{beijing} << 0;
}

void TestSpatialReferenceSelectorDlg::filters()
{
    QFETCH(QString, text);
    QFETCH(QStringList, shown);
    QFETCH(QStringList, hidden);
    QFETCH(int, count);
    // EPSG:4214 sits in the recent group too, which must follow the filter.
    KivUI::EnvironmentSetting::Instance()->SetValue(kRecentKey, QStringList{QStringLiteral("EPSG:4214")});
    SpatialReferenceSelectorDlg dlg;
    dlg.show();
    const int total = countLabel(dlg);
    QVERIFY(dlg.SelectCode(QStringLiteral("EPSG:4326"))); // to be filtered away
    QTest::keyClicks(filter(dlg), text);

    const QStringList systems = visible(dlg, Geographic) + visible(dlg, Projected);
    for (const QString& code : shown)
        QVERIFY2(systems.contains(code), qPrintable(code));
    for (const QString& code : hidden)
        QVERIFY2(!systems.contains(code), qPrintable(code));
    QCOMPARE(countLabel(dlg), systems.size());
    QVERIFY(count < 0 || systems.size() == count);
    QCOMPARE(visible(dlg, Recent).contains(QStringLiteral("EPSG:4214")), systems.contains(QStringLiteral("EPSG:4214")));
    for (int g = Recent; g <= Projected; ++g) {
        QTreeWidgetItem* group = tree(dlg)->topLevelItem(g);
        QCOMPARE(group->isHidden(), visible(dlg, Group(g)).isEmpty());
        QVERIFY(group->isHidden() || group->isExpanded());
    }
    // A filtered-away system stops being current; a single match becomes current.
    QCOMPARE(okButton(dlg)->isEnabled(), systems.size() == 1);

    filter(dlg)->clear();
    QCOMPARE(countLabel(dlg), total);
    QCOMPARE(visible(dlg, Recent), QStringList{QStringLiteral("EPSG:4214")});
}

void TestSpatialReferenceSelectorDlg::closing_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("how");
    QTest::addColumn<int>("type"); // -1: rejected; -2: still open
    QTest::newRow("OK, ESRI projected") << "ESRI:102100" << "ok" << 10;
    QTest::newRow("double-click") << "EPSG:4214" << "double-click" << 0;
    QTest::newRow("Enter in the filter") << "EPSG:2435" << "enter" << 10;
    QTest::newRow("Escape") << "EPSG:4326" << "escape" << -1;
    QTest::newRow("double-click on a group") << "EPSG:4326" << "group" << -2;
}

void TestSpatialReferenceSelectorDlg::closing()
{
    QFETCH(QString, code);
    QFETCH(QString, how);
    QFETCH(int, type);
    SpatialReferenceSelectorDlg dlg;
    if (how == QLatin1String("enter")) {
        dlg.show();
        QTest::keyClicks(filter(dlg), code);
        QTest::keyClick(filter(dlg), Qt::Key_Return);
    } else {
        dlg.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dlg));
        // The filter hides the wanted system: selecting must show it.
        QTest::keyClicks(filter(dlg), QStringLiteral("Xian 1980"));
        QVERIFY(dlg.SelectCode(code));
        QTreeWidgetItem* target = tree(dlg)->currentItem();
        QVERIFY(!target->isHidden() && !target->parent()->isHidden() && target->parent()->isExpanded());
        if (how == QLatin1String("ok")) {
            okButton(dlg)->click();
        } else if (how == QLatin1String("escape")) {
            QTest::keyClick(&dlg, Qt::Key_Escape);
        } else {
            if (how == QLatin1String("group"))
                target = target->parent();
            tree(dlg)->scrollToItem(target);
            QCoreApplication::processEvents();
            const QPoint at = tree(dlg)->visualItemRect(target).center();
            QCOMPARE(tree(dlg)->itemAt(at), target);
            QTest::mouseClick(tree(dlg)->viewport(), Qt::LeftButton, Qt::NoModifier, at);
            QTest::mouseDClick(tree(dlg)->viewport(), Qt::LeftButton, Qt::NoModifier, at);
        }
    }
    QCOMPARE(dlg.isVisible(), type == -2);
    if (type == -2) {
        QVERIFY(!okButton(dlg)->isEnabled());
        return;
    }
    QCOMPARE(dlg.result(), type >= 0 ? int(QDialog::Accepted) : int(QDialog::Rejected));
    const auto sr = dlg.GetCoordinateSystem();
    QCOMPARE(sr ? sr->GetAuthorityCode() : QString(), type >= 0 ? code : QString());
    QVERIFY(!sr || sr->GetType() == type);
}

void TestSpatialReferenceSelectorDlg::recentSystemsComeFirstAfterReopening()
{
    KivUI::EnvironmentSetting::Instance()->SetValue(kRecentKey, QStringList{"EPSG:999999", "junk", "epsg:4326", "EPSG:4326"});
    QCOMPARE(visible(SpatialReferenceSelectorDlg(), Recent), QStringList{QStringLiteral("EPSG:4326")});
    choose(QStringLiteral("EPSG:2435"));
    choose(QStringLiteral("EPSG:4214"));
    {
        SpatialReferenceSelectorDlg cancelled;
        QVERIFY(cancelled.SelectCode(QStringLiteral("EPSG:4610")));
        cancelled.reject();
    }
    choose(QStringLiteral("EPSG:2435"));
    SpatialReferenceSelectorDlg dlg;
    QCOMPARE(visible(dlg, Recent), (QStringList{"EPSG:2435", "EPSG:4214", "EPSG:4326"}));
    QVERIFY(tree(dlg)->topLevelItem(Recent)->isExpanded());
    // The recent copies are duplicates: the count is of distinct systems.
    QTest::keyClicks(filter(dlg), QStringLiteral("2435"));
    QCOMPARE(countLabel(dlg), 1);

    for (int code = 2431; code <= 2442; ++code)
        choose(QStringLiteral("EPSG:%1").arg(code));
    const QStringList recent = visible(SpatialReferenceSelectorDlg(), Recent);
    QVERIFY(recent.size() == 10 && recent.first() == QLatin1String("EPSG:2442") && recent.last() == QLatin1String("EPSG:2433"));
    KivUI::EnvironmentSetting* settings = KivUI::EnvironmentSetting::Instance();
    QCOMPARE(settings->Value(kRecentKey).toStringList(), recent);
    // A longer list, written by hand, is cut on reading.
    settings->SetValue(kRecentKey, recent + QStringList{"EPSG:4326", "EPSG:4214"});
    QCOMPARE(visible(SpatialReferenceSelectorDlg(), Recent), recent);
}

KIV_TEST_CLASS(TestSpatialReferenceSelectorDlg)
#include "tst_SpatialReferenceSelectorDlg.moc"
