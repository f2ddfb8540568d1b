#include "KivAdapterUI/SpatialReferenceSelectorDlg.h"
#include "KivUI/EnvironmentSetting.h"
#include "support/ModalDriver.h"
#include "support/SelectorDriver.h"
#include "support/TestData.h"
#include "support/TestRegistry.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>

#include <proj.h>

using KivAdapterUI::SpatialReferenceSelectorDlg;
using SrPtr = KivUtility::_ptr_t<KivGeometry::SpatialReference>;

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

/// The systems PROJ's database offers for one kind (deprecated EPSG codes aside).
QSet<QString> projCodes(PJ_TYPE type)
{
    QSet<QString> codes;
    for (const char* authority : {"EPSG", "ESRI"}) {
        PROJ_CRS_LIST_PARAMETERS* params = proj_get_crs_list_parameters_create();
        params->types = &type;
        params->typesCount = 1;
        params->allow_deprecated = qstrcmp(authority, "ESRI") == 0;
        int count = 0;
        PROJ_CRS_INFO** list = proj_get_crs_info_list_from_database(nullptr, authority, params, &count);
        for (int i = 0; i < count; ++i)
            codes.insert(QString::fromUtf8(list[i]->auth_name) + QLatin1Char(':') + QString::fromUtf8(list[i]->code));
        proj_crs_info_list_destroy(list);
        proj_get_crs_list_parameters_destroy(params);
    }
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
    void offersPredefinedSystemsByKind();
    void filtersAsOneTypes_data();
    void filtersAsOneTypes();
    void okAndPaneFollowTheCurrentSystem();
    void closing_data();
    void closing();
    void selectCode_data();
    void selectCode();
    void recentSystemsComeFirstAfterReopening();
    void answersWhenDrivenModally();
};

void TestSpatialReferenceSelectorDlg::init()
{
    KivTest::resetData();
    KivUI::EnvironmentSetting::Instance()->SetValue(kRecentKey, QStringList());
}

void TestSpatialReferenceSelectorDlg::offersPredefinedSystemsByKind()
{
    SpatialReferenceSelectorDlg dlg;
    QTreeWidget* t = tree(dlg);
    QCOMPARE(t->topLevelItemCount(), 3);
    QCOMPARE(t->topLevelItem(Recent)->text(0), QStringLiteral("Recently Used"));
    QCOMPARE(t->topLevelItem(Geographic)->text(0), QStringLiteral("Geographic Coordinate Systems"));
    QCOMPARE(t->topLevelItem(Projected)->text(0), QStringLiteral("Projected Coordinate Systems"));
    QVERIFY(visible(dlg, Recent).isEmpty());

    const QStringList geographic = visible(dlg, Geographic), projected = visible(dlg, Projected);
    // Equal sets of equal size: every system once, under its own kind.
    QCOMPARE(QSet<QString>(geographic.begin(), geographic.end()), projCodes(PJ_TYPE_GEOGRAPHIC_2D_CRS));
    QCOMPARE(QSet<QString>(projected.begin(), projected.end()), projCodes(PJ_TYPE_PROJECTED_CRS));
    QCOMPARE(geographic.size(), projCodes(PJ_TYPE_GEOGRAPHIC_2D_CRS).size());
    QCOMPARE(projected.size(), projCodes(PJ_TYPE_PROJECTED_CRS).size());
    QVERIFY(geographic.size() + projected.size() > 7000);
    QCOMPARE(countLabel(dlg), geographic.size() + projected.size());
    for (const char* code : {"EPSG:4214", "EPSG:4326"})
        QVERIFY2(geographic.contains(QLatin1String(code)), code);
    for (const char* code : {"EPSG:2435", "ESRI:102100"})
        QVERIFY2(projected.contains(QLatin1String(code)), code);
    QTreeWidgetItem* item = t->topLevelItem(Projected)->child(projected.indexOf(QStringLiteral("EPSG:2435")));
    QCOMPARE(item->text(1), QStringLiteral("EPSG:2435"));
    QCOMPARE(item->text(0), QStringLiteral("Beijing 1954 / 3-degree Gauss-Kruger CM 114E"));
}

void TestSpatialReferenceSelectorDlg::filtersAsOneTypes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("shown");
    QTest::addColumn<QStringList>("hidden");
    QTest::addColumn<int>("count");  // -1: not fixed
    const QString beijing = "EPSG:4214", gk114 = "EPSG:2435", wgs84 = "EPSG:4326", webMercator = "ESRI:102100";
    QTest::newRow("bare number") << "4214" << QStringList{beijing} << QStringList{gk114} << 1;
    QTest::newRow("authority code") << "EPSG:4214" << QStringList{beijing} << QStringList{wgs84} << 1;
    QTest::newRow("lower-case code") << "esri:102100" << QStringList{webMercator} << QStringList{beijing} << 1;
    QTest::newRow("words") << "beijing 1954 114E" << QStringList{gk114} << QStringList{beijing} << -1;
    QTest::newRow("any order and case") << "114e GAUSS Beijing" << QStringList{gk114} << QStringList{beijing, wgs84} << -1;
    QTest::newRow("blank for underscore") << "web mercator auxiliary" << QStringList{webMercator} << QStringList{wgs84} << -1;
    QTest::newRow("underscore for blank") << "WGS_1984_Web" << QStringList{webMercator} << QStringList{wgs84} << -1;
    QTest::newRow("extra blanks") << "  xian   1980 " << QStringList{"EPSG:4610"} << QStringList{beijing} << -1;
    QTest::newRow("nothing") << "no such system zzz" << QStringList() << QStringList{beijing} << 0;
}

void TestSpatialReferenceSelectorDlg::filtersAsOneTypes()
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
    QTest::keyClicks(filter(dlg), text);

    const QStringList systems = visible(dlg, Geographic) + visible(dlg, Projected);
    for (const QString& code : shown)
        QVERIFY2(systems.contains(code), qPrintable(code));
    for (const QString& code : hidden)
        QVERIFY2(!systems.contains(code), qPrintable(code));
    QCOMPARE(countLabel(dlg), systems.size());
    if (count >= 0)
        QCOMPARE(systems.size(), count);
    QCOMPARE(visible(dlg, Recent).contains(QStringLiteral("EPSG:4214")), systems.contains(QStringLiteral("EPSG:4214")));
    for (int g = Recent; g <= Projected; ++g) {
        QTreeWidgetItem* group = tree(dlg)->topLevelItem(g);
        QCOMPARE(group->isHidden(), visible(dlg, Group(g)).isEmpty());
        QVERIFY(group->isHidden() || group->isExpanded());
    }

    filter(dlg)->selectAll();
    QTest::keyClick(filter(dlg), Qt::Key_Backspace);
    QCOMPARE(countLabel(dlg), total);
    QCOMPARE(visible(dlg, Geographic).size() + visible(dlg, Projected).size(), total);
    QCOMPARE(visible(dlg, Recent), QStringList{QStringLiteral("EPSG:4214")});
}

void TestSpatialReferenceSelectorDlg::okAndPaneFollowTheCurrentSystem()
{
    SpatialReferenceSelectorDlg dlg;
    dlg.show();
    QVERIFY(!okButton(dlg)->isEnabled());
    tree(dlg)->setCurrentItem(tree(dlg)->topLevelItem(Geographic));
    QVERIFY(!okButton(dlg)->isEnabled());
    QVERIFY(pane(dlg).isEmpty());

    QVERIFY(dlg.SelectCode(QStringLiteral("EPSG:4214")));
    QVERIFY(okButton(dlg)->isEnabled());
    PJ* crs = proj_create_from_database(nullptr, "EPSG", "4214", PJ_CATEGORY_CRS, 0, nullptr);
    const char* area = nullptr;
    double w, s, e, n;
    QVERIFY(proj_get_area_of_use(nullptr, crs, &w, &s, &e, &n, &area));
    QVERIFY(pane(dlg).startsWith(QStringLiteral("GEOGCS[\"Beijing 1954\"")));
    QVERIFY2(pane(dlg).contains(QString::fromUtf8(area)) && pane(dlg).contains(QString::number(n)), qPrintable(pane(dlg)));
    proj_destroy(crs);

    // Filtered away, the system is no longer current; a single match becomes current.
    QTest::keyClicks(filter(dlg), QStringLiteral("mercator"));
    QVERIFY(!okButton(dlg)->isEnabled() && !tree(dlg)->currentItem());
    filter(dlg)->setText(QStringLiteral("EPSG:2435"));
    QVERIFY(okButton(dlg)->isEnabled());
    QVERIFY(pane(dlg).startsWith(QStringLiteral("PROJCS[\"Beijing 1954 / 3-degree Gauss-Kruger CM 114E\"")));
}

void TestSpatialReferenceSelectorDlg::closing_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("how");
    QTest::addColumn<int>("type");  // -1: rejected; -2: still open
    QTest::newRow("OK, geographic") << "EPSG:4214" << "ok" << 0;
    QTest::newRow("OK, ESRI projected") << "ESRI:102100" << "ok" << 10;
    QTest::newRow("double-click") << "EPSG:2435" << "double-click" << 10;
    QTest::newRow("Enter in the filter") << "EPSG:4326" << "enter" << 0;
    QTest::newRow("Cancel") << "EPSG:4326" << "cancel" << -1;
    QTest::newRow("Escape") << "EPSG:4326" << "escape" << -1;
    QTest::newRow("double-click on a group") << "EPSG:4326" << "group" << -2;
}

void TestSpatialReferenceSelectorDlg::closing()
{
    QFETCH(QString, code);
    QFETCH(QString, how);
    QFETCH(int, type);
    SpatialReferenceSelectorDlg dlg;
    dlg.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dlg));
    if (how == QLatin1String("enter")) {
        QTest::keyClicks(filter(dlg), code);
        QTest::keyClick(filter(dlg), Qt::Key_Return);
    } else {
        QVERIFY(dlg.SelectCode(code));
        QTreeWidgetItem* target = tree(dlg)->currentItem();
        if (how == QLatin1String("ok"))
            okButton(dlg)->click();
        else if (how == QLatin1String("cancel"))
            dlg.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Cancel)->click();
        else if (how == QLatin1String("escape"))
            QTest::keyClick(&dlg, Qt::Key_Escape);
        else {
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
    const SrPtr sr = dlg.GetCoordinateSystem();
    QCOMPARE(bool(sr), type >= 0);
    if (sr) {
        QCOMPARE(sr->GetAuthorityCode(), code);
        QCOMPARE(sr->GetType(), type);
    }
}

void TestSpatialReferenceSelectorDlg::selectCode_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("current");  // empty: refused
    QTest::newRow("exact") << "EPSG:4214" << "EPSG:4214";
    QTest::newRow("lower case, blanks") << " epsg:2435 " << "EPSG:2435";
    QTest::newRow("unknown code") << "EPSG:999999" << "";
    QTest::newRow("number alone") << "4214" << "";
}

void TestSpatialReferenceSelectorDlg::selectCode()
{
    QFETCH(QString, code);
    QFETCH(QString, current);
    SpatialReferenceSelectorDlg dlg;
    // The filter hides the wanted system: selecting must show it.
    QTest::keyClicks(filter(dlg), QStringLiteral("Xian 1980"));
    QVERIFY(dlg.SelectCode(QStringLiteral("EPSG:4610")));
    QCOMPARE(dlg.SelectCode(code), !current.isEmpty());
    QTreeWidgetItem* item = tree(dlg)->currentItem();
    QCOMPARE(item->data(0, Qt::UserRole).toString(), current.isEmpty() ? QStringLiteral("EPSG:4610") : current);
    QVERIFY(!item->isHidden() && !item->parent()->isHidden() && item->parent()->isExpanded());
    QVERIFY(okButton(dlg)->isEnabled());
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
    QCOMPARE(recent.size(), 10);
    QCOMPARE(recent.first(), QStringLiteral("EPSG:2442"));
    QCOMPARE(recent.last(), QStringLiteral("EPSG:2433"));
}

void TestSpatialReferenceSelectorDlg::answersWhenDrivenModally()
{
    KivTest::ModalDriver driver;
    for (const QString& code : {QStringLiteral("EPSG:2435"), QStringLiteral(""), QStringLiteral("EPSG:999999")}) {
        if (code.isEmpty())
            KivTest::cancelSelector(driver);
        else
            KivTest::answerSelector(driver, code);
        SpatialReferenceSelectorDlg dlg;
        QTest::keyClicks(filter(dlg), QStringLiteral("wgs 84"));
        const bool listed = code == QLatin1String("EPSG:2435");
        QCOMPARE(dlg.exec(), listed ? int(QDialog::Accepted) : int(QDialog::Rejected));
        QCOMPARE(driver.verify(), code != QLatin1String("EPSG:999999"));
        const SrPtr sr = dlg.GetCoordinateSystem();
        QCOMPARE(sr ? sr->GetAuthorityCode() : QString(), listed ? code : QString());
    }
}

KIV_TEST_CLASS(TestSpatialReferenceSelectorDlg)
#include "tst_SpatialReferenceSelectorDlg.moc"
