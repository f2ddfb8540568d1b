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

namespace {

const QString kRecentKey = QStringLiteral("SpatialReferenceSelector/RecentCodes");
const QString kRecent = QStringLiteral("Recently Used");
const QString kGeographic = QStringLiteral("Geographic Coordinate Systems");
const QString kProjected = QStringLiteral("Projected Coordinate Systems");

QTreeWidget* tree(const QDialog& dlg) { return dlg.findChild<QTreeWidget*>(QStringLiteral("treeWidget_Systems")); }
QLineEdit* filter(const QDialog& dlg) { return dlg.findChild<QLineEdit*>(QStringLiteral("lineEdit_Filter")); }
QPushButton* button(const QDialog& dlg, QDialogButtonBox::StandardButton which)
{
    return dlg.findChild<QDialogButtonBox*>(QStringLiteral("buttonBox"))->button(which);
}
QString paneText(const QDialog& dlg)
{
    return dlg.findChild<QPlainTextEdit*>(QStringLiteral("textEdit_Wkt"))->toPlainText();
}
int shownCount(const QDialog& dlg)
{
    const QString text = dlg.findChild<QLabel*>(QStringLiteral("label_Count"))->text();
    bool ok = false;
    const int n = text.section(QLatin1Char(' '), 0, 0).toInt(&ok);
    return ok ? n : -1;
}

QTreeWidgetItem* group(const QDialog& dlg, const QString& name)
{
    const QList<QTreeWidgetItem*> found = tree(dlg)->findItems(name, Qt::MatchExactly);
    return found.size() == 1 && !found.first()->parent() ? found.first() : nullptr;
}

/// Codes a user can see in a group, in order.
QStringList visibleCodes(const QDialog& dlg, const QString& name)
{
    QStringList codes;
    QTreeWidgetItem* g = group(dlg, name);
    if (!g || g->isHidden())
        return codes;
    for (int i = 0; i < g->childCount(); ++i)
        if (!g->child(i)->isHidden())
            codes << g->child(i)->data(0, Qt::UserRole).toString();
    return codes;
}

QTreeWidgetItem* findItem(const QDialog& dlg, const QString& groupName, const QString& code)
{
    QTreeWidgetItem* g = group(dlg, groupName);
    for (int i = 0; g && i < g->childCount(); ++i)
        if (g->child(i)->data(0, Qt::UserRole).toString() == code)
            return g->child(i);
    return nullptr;
}

/// What PROJ's database holds for an authority and a kind: the systems the
/// picker must offer (deprecated EPSG codes aside).
QSet<QString> projCodes(const char* authority, PJ_TYPE type)
{
    PROJ_CRS_LIST_PARAMETERS* params = proj_get_crs_list_parameters_create();
    params->types = &type;
    params->typesCount = 1;
    params->allow_deprecated = qstrcmp(authority, "ESRI") == 0;
    int count = 0;
    PROJ_CRS_INFO** list = proj_get_crs_info_list_from_database(nullptr, authority, params, &count);
    QSet<QString> codes;
    for (int i = 0; i < count; ++i)
        codes.insert(QString::fromUtf8(list[i]->auth_name) + QLatin1Char(':') + QString::fromUtf8(list[i]->code));
    proj_crs_info_list_destroy(list);
    proj_get_crs_list_parameters_destroy(params);
    return codes;
}

QString normalisedName(const QTreeWidgetItem* item)
{
    return item->text(0).toLower().replace(QLatin1Char('_'), QLatin1Char(' '));
}

/// Chooses `code` in a fresh dialog and presses OK.
void choose(const QString& code)
{
    SpatialReferenceSelectorDlg dlg;
    QVERIFY(dlg.SelectCode(code));
    button(dlg, QDialogButtonBox::Ok)->click();
    QCOMPARE(dlg.result(), int(QDialog::Accepted));
}

} // namespace

class TestSpatialReferenceSelectorDlg : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void offersEveryPredefinedSystemOnceByKind();
    void listsWellKnownSystems_data();
    void listsWellKnownSystems();
    void filtersAsOneTypes_data();
    void filtersAsOneTypes();
    void okNeedsACurrentSystem();
    void closingGivesTheSystemOrNothing_data();
    void closingGivesTheSystemOrNothing();
    void selectCode_data();
    void selectCode();
    void recentSystemsComeFirstAfterReopening();
    void recentListIsCappedAndSkipsUnknownCodes();
    void answersWhenDrivenModally();
};

void TestSpatialReferenceSelectorDlg::init()
{
    KivTest::resetData();
    KivUI::EnvironmentSetting::Instance()->SetValue(kRecentKey, QStringList());
}

void TestSpatialReferenceSelectorDlg::offersEveryPredefinedSystemOnceByKind()
{
    SpatialReferenceSelectorDlg dlg;
    QTreeWidget* t = tree(dlg);
    QVERIFY(t);
    QCOMPARE(t->topLevelItemCount(), 3);
    QCOMPARE(t->topLevelItem(0)->text(0), kRecent);
    QCOMPARE(t->topLevelItem(1)->text(0), kGeographic);
    QCOMPARE(t->topLevelItem(2)->text(0), kProjected);
    QVERIFY(t->topLevelItem(0)->isHidden());  // nothing chosen yet

    const QStringList geographic = visibleCodes(dlg, kGeographic);
    const QStringList projected = visibleCodes(dlg, kProjected);
    const QSet<QString> geographicSet(geographic.begin(), geographic.end());
    const QSet<QString> projectedSet(projected.begin(), projected.end());
    QCOMPARE(geographicSet.size(), geographic.size());
    QCOMPARE(projectedSet.size(), projected.size());
    QCOMPARE(geographicSet, projCodes("EPSG", PJ_TYPE_GEOGRAPHIC_2D_CRS) + projCodes("ESRI", PJ_TYPE_GEOGRAPHIC_2D_CRS));
    QCOMPARE(projectedSet, projCodes("EPSG", PJ_TYPE_PROJECTED_CRS) + projCodes("ESRI", PJ_TYPE_PROJECTED_CRS));
    QVERIFY2(geographic.size() + projected.size() > 7000, "PROJ's database looks incomplete");
    QCOMPARE(shownCount(dlg), geographic.size() + projected.size());

    // Every item carries its code twice, and a sample agrees with PROJ on kind.
    PJ_CONTEXT* ctx = proj_context_create();
    for (int g = 1; g <= 2; ++g) {
        QTreeWidgetItem* grp = t->topLevelItem(g);
        for (int i = 0; i < grp->childCount(); ++i) {
            QTreeWidgetItem* item = grp->child(i);
            const QString code = item->data(0, Qt::UserRole).toString();
            QCOMPARE(item->text(1), code);
            if (i % 97 != 0)
                continue;
            const QByteArray auth = code.section(QLatin1Char(':'), 0, 0).toUtf8();
            const QByteArray number = code.section(QLatin1Char(':'), 1).toUtf8();
            PJ* crs = proj_create_from_database(ctx, auth, number, PJ_CATEGORY_CRS, 0, nullptr);
            QVERIFY2(crs, qPrintable(code));
            QCOMPARE(proj_get_type(crs), g == 1 ? PJ_TYPE_GEOGRAPHIC_2D_CRS : PJ_TYPE_PROJECTED_CRS);
            QCOMPARE(item->text(0), QString::fromUtf8(proj_get_name(crs)));
            proj_destroy(crs);
        }
    }
    proj_context_destroy(ctx);
}

void TestSpatialReferenceSelectorDlg::listsWellKnownSystems_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("groupName");
    QTest::newRow("Beijing 1954") << QStringLiteral("EPSG:4214") << kGeographic;
    QTest::newRow("WGS 84") << QStringLiteral("EPSG:4326") << kGeographic;
    QTest::newRow("Gauss-Kruger CM 114E") << QStringLiteral("EPSG:2435") << kProjected;
    QTest::newRow("ESRI web mercator") << QStringLiteral("ESRI:102100") << kProjected;
}

void TestSpatialReferenceSelectorDlg::listsWellKnownSystems()
{
    QFETCH(QString, code);
    QFETCH(QString, groupName);
    SpatialReferenceSelectorDlg dlg;
    QVERIFY2(findItem(dlg, groupName, code), qPrintable(code + QStringLiteral(" not under ") + groupName));
}

void TestSpatialReferenceSelectorDlg::filtersAsOneTypes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("shown");
    QTest::addColumn<QStringList>("hidden");
    QTest::addColumn<int>("exactCount");         // -1: not fixed
    QTest::addColumn<bool>("namesHoldTheWords");  // every shown name contains every word

    const QString beijing = QStringLiteral("EPSG:4214"), gk114 = QStringLiteral("EPSG:2435");
    const QString wgs84 = QStringLiteral("EPSG:4326"), webMercator = QStringLiteral("ESRI:102100");
    QTest::newRow("bare number") << "4214" << QStringList{beijing} << QStringList{gk114} << 1 << false;
    QTest::newRow("authority code") << "EPSG:4214" << QStringList{beijing} << QStringList{wgs84} << 1 << false;
    QTest::newRow("lower-case code") << "esri:102100" << QStringList{webMercator} << QStringList{beijing} << 1 << false;
    QTest::newRow("words") << "beijing 1954 114E" << QStringList{gk114} << QStringList{beijing} << -1 << true;
    QTest::newRow("words in any order and case") << "114e GAUSS Beijing" << QStringList{gk114} << QStringList{beijing, wgs84} << -1 << true;
    QTest::newRow("blank for underscore") << "web mercator auxiliary" << QStringList{webMercator} << QStringList{wgs84} << -1 << true;
    QTest::newRow("underscore for blank") << "WGS_1984_Web" << QStringList{webMercator} << QStringList{wgs84} << -1 << true;
    QTest::newRow("short name") << "wgs 84" << QStringList{wgs84} << QStringList{beijing} << -1 << true;
    QTest::newRow("Xian 1980") << "  xian   1980 " << QStringList{QStringLiteral("EPSG:4610")} << QStringList{beijing} << -1 << true;
    QTest::newRow("nothing") << "no such system zzz" << QStringList() << QStringList{beijing, wgs84} << 0 << true;
}

void TestSpatialReferenceSelectorDlg::filtersAsOneTypes()
{
    QFETCH(QString, text);
    QFETCH(QStringList, shown);
    QFETCH(QStringList, hidden);
    QFETCH(int, exactCount);
    QFETCH(bool, namesHoldTheWords);

    // EPSG:4214 also sits in the recent group, which must follow the filter too.
    KivUI::EnvironmentSetting::Instance()->SetValue(kRecentKey, QStringList{QStringLiteral("EPSG:4214")});
    SpatialReferenceSelectorDlg dlg;
    dlg.show();
    const int total = shownCount(dlg);
    QTest::keyClicks(filter(dlg), text);

    const QStringList systems = visibleCodes(dlg, kGeographic) + visibleCodes(dlg, kProjected);
    for (const QString& code : shown)
        QVERIFY2(systems.contains(code), qPrintable(code));
    for (const QString& code : hidden)
        QVERIFY2(!systems.contains(code), qPrintable(code));
    if (exactCount >= 0)
        QCOMPARE(systems.size(), exactCount);
    QCOMPARE(shownCount(dlg), systems.size());
    QCOMPARE(visibleCodes(dlg, kRecent).contains(QStringLiteral("EPSG:4214")), systems.contains(QStringLiteral("EPSG:4214")));
    for (const QString& name : {kRecent, kGeographic, kProjected}) {
        QTreeWidgetItem* g = group(dlg, name);
        bool anyChild = false;
        for (int i = 0; i < g->childCount(); ++i)
            anyChild = anyChild || !g->child(i)->isHidden();
        QCOMPARE(g->isHidden(), !anyChild);
        if (!g->isHidden())
            QVERIFY2(g->isExpanded(), qPrintable(name));
    }
    if (namesHoldTheWords) {
        const QStringList words = text.toLower().replace(QLatin1Char('_'), QLatin1Char(' ')).split(QLatin1Char(' '), Qt::SkipEmptyParts);
        for (const QString& name : {kGeographic, kProjected}) {
            QTreeWidgetItem* g = group(dlg, name);
            for (int i = 0; i < g->childCount(); ++i) {
                if (g->child(i)->isHidden())
                    continue;
                for (const QString& w : words)
                    QVERIFY2(normalisedName(g->child(i)).contains(w), qPrintable(g->child(i)->text(0) + " / " + w));
            }
        }
    }

    // Erasing the text brings the whole list back.
    filter(dlg)->selectAll();
    QTest::keyClick(filter(dlg), Qt::Key_Backspace);
    QCOMPARE(shownCount(dlg), total);
    QCOMPARE(visibleCodes(dlg, kGeographic).size() + visibleCodes(dlg, kProjected).size(), total);
    QCOMPARE(visibleCodes(dlg, kRecent), QStringList{QStringLiteral("EPSG:4214")});
}

void TestSpatialReferenceSelectorDlg::okNeedsACurrentSystem()
{
    SpatialReferenceSelectorDlg dlg;
    dlg.show();
    QPushButton* ok = button(dlg, QDialogButtonBox::Ok);
    QVERIFY(!ok->isEnabled());
    QVERIFY(!dlg.GetCoordinateSystem());

    tree(dlg)->setCurrentItem(group(dlg, kGeographic));
    QVERIFY(!ok->isEnabled());
    QVERIFY(paneText(dlg).isEmpty());

    // A system shows its WKT and PROJ's area of use.
    tree(dlg)->setCurrentItem(findItem(dlg, kGeographic, QStringLiteral("EPSG:4214")));
    QVERIFY(ok->isEnabled());
    PJ* crs = proj_create_from_database(nullptr, "EPSG", "4214", PJ_CATEGORY_CRS, 0, nullptr);
    const char* area = nullptr;
    double w, s, e, n;
    QVERIFY(proj_get_area_of_use(nullptr, crs, &w, &s, &e, &n, &area));
    QVERIFY(paneText(dlg).startsWith(QStringLiteral("GEOGCS[\"Beijing 1954\"")));
    QVERIFY2(paneText(dlg).contains(QString::fromUtf8(area)), qPrintable(paneText(dlg)));
    QVERIFY(paneText(dlg).contains(QString::number(n)));
    proj_destroy(crs);

    // Filtering the current system away leaves nothing to accept...
    QTest::keyClicks(filter(dlg), QStringLiteral("mercator"));
    QVERIFY(!ok->isEnabled());
    QVERIFY(!tree(dlg)->currentItem());
    // ...while a filter that leaves one system makes it current.
    filter(dlg)->setText(QStringLiteral("EPSG:2435"));
    QVERIFY(ok->isEnabled());
    QCOMPARE(tree(dlg)->currentItem()->data(0, Qt::UserRole).toString(), QStringLiteral("EPSG:2435"));
    QVERIFY(paneText(dlg).startsWith(QStringLiteral("PROJCS[\"Beijing 1954 / 3-degree Gauss-Kruger CM 114E\"")));
}

void TestSpatialReferenceSelectorDlg::closingGivesTheSystemOrNothing_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("how");
    QTest::addColumn<int>("result");
    QTest::addColumn<int>("type");
    QTest::newRow("OK, geographic") << "EPSG:4214" << "ok" << int(QDialog::Accepted) << 0;
    QTest::newRow("OK, ESRI projected") << "ESRI:102100" << "ok" << int(QDialog::Accepted) << 10;
    QTest::newRow("double-click") << "EPSG:2435" << "double-click" << int(QDialog::Accepted) << 10;
    QTest::newRow("Enter in the filter") << "EPSG:4326" << "enter" << int(QDialog::Accepted) << 0;
    QTest::newRow("Cancel") << "EPSG:4326" << "cancel" << int(QDialog::Rejected) << -1;
    QTest::newRow("Escape") << "EPSG:4326" << "escape" << int(QDialog::Rejected) << -1;
    QTest::newRow("double-click on a group") << "EPSG:4326" << "group" << -1 << -1;
}

void TestSpatialReferenceSelectorDlg::closingGivesTheSystemOrNothing()
{
    QFETCH(QString, code);
    QFETCH(QString, how);
    QFETCH(int, result);
    QFETCH(int, type);

    SpatialReferenceSelectorDlg dlg;
    dlg.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dlg));
    if (how == QLatin1String("enter")) {
        QTest::keyClicks(filter(dlg), code);
        QTest::keyClick(filter(dlg), Qt::Key_Return);
    } else if (how == QLatin1String("double-click") || how == QLatin1String("group")) {
        QVERIFY(dlg.SelectCode(code));
        QTreeWidgetItem* target = tree(dlg)->currentItem();
        if (how == QLatin1String("group")) {
            target = target->parent();
            tree(dlg)->scrollToItem(target);
        }
        QCoreApplication::processEvents();  // let the tree scroll
        const QPoint at = tree(dlg)->visualItemRect(target).center();
        QCOMPARE(tree(dlg)->itemAt(at), target);
        // A real double click: press and release, then the double click.
        QTest::mouseClick(tree(dlg)->viewport(), Qt::LeftButton, Qt::NoModifier, at);
        QTest::mouseDClick(tree(dlg)->viewport(), Qt::LeftButton, Qt::NoModifier, at);
    } else {
        QVERIFY(dlg.SelectCode(code));
        if (how == QLatin1String("ok"))
            button(dlg, QDialogButtonBox::Ok)->click();
        else if (how == QLatin1String("cancel"))
            button(dlg, QDialogButtonBox::Cancel)->click();
        else
            QTest::keyClick(&dlg, Qt::Key_Escape);
    }

    if (result < 0) {
        QVERIFY(dlg.isVisible());
        QVERIFY(!button(dlg, QDialogButtonBox::Ok)->isEnabled());
        return;
    }
    QVERIFY(!dlg.isVisible());
    QCOMPARE(dlg.result(), result);
    const KivUtility::_ptr_t<KivGeometry::SpatialReference> sr = dlg.GetCoordinateSystem();
    if (result == QDialog::Rejected) {
        QVERIFY(!sr);
        return;
    }
    QVERIFY(sr);
    QCOMPARE(sr->GetAuthorityCode(), code);
    QCOMPARE(sr->GetType(), type);
}

void TestSpatialReferenceSelectorDlg::selectCode_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("current");  // empty: refused
    QTest::newRow("exact") << "EPSG:4214" << "EPSG:4214";
    QTest::newRow("lower case") << "epsg:2435" << "EPSG:2435";
    QTest::newRow("blanks around") << " ESRI:102100 " << "ESRI:102100";
    QTest::newRow("unknown code") << "EPSG:999999" << "";
    QTest::newRow("number without authority") << "4214" << "";
    QTest::newRow("empty") << "" << "";
}

void TestSpatialReferenceSelectorDlg::selectCode()
{
    QFETCH(QString, code);
    QFETCH(QString, current);
    SpatialReferenceSelectorDlg dlg;
    dlg.show();
    // The filter hides every wanted system first: selecting must show it.
    QTest::keyClicks(filter(dlg), QStringLiteral("Xian 1980"));
    QVERIFY(dlg.SelectCode(QStringLiteral("EPSG:4610")));
    const int shownBefore = shownCount(dlg);

    QCOMPARE(dlg.SelectCode(code), !current.isEmpty());
    QTreeWidgetItem* item = tree(dlg)->currentItem();
    QVERIFY(item);
    if (current.isEmpty()) {
        QCOMPARE(item->data(0, Qt::UserRole).toString(), QStringLiteral("EPSG:4610"));
        QCOMPARE(shownCount(dlg), shownBefore);
        return;
    }
    QCOMPARE(item->data(0, Qt::UserRole).toString(), current);
    QVERIFY(!item->isHidden() && !item->parent()->isHidden() && item->parent()->isExpanded());
    QVERIFY(button(dlg, QDialogButtonBox::Ok)->isEnabled());
}

void TestSpatialReferenceSelectorDlg::recentSystemsComeFirstAfterReopening()
{
    choose(QStringLiteral("EPSG:2435"));
    choose(QStringLiteral("EPSG:4214"));
    {
        SpatialReferenceSelectorDlg dlg;
        QVERIFY(dlg.SelectCode(QStringLiteral("EPSG:4326")));
        dlg.reject();
    }
    {
        SpatialReferenceSelectorDlg dlg;
        QCOMPARE(tree(dlg)->topLevelItem(0)->text(0), kRecent);
        QVERIFY(tree(dlg)->topLevelItem(0)->isExpanded());
        QCOMPARE(visibleCodes(dlg, kRecent), (QStringList{QStringLiteral("EPSG:4214"), QStringLiteral("EPSG:2435")}));
        // Accepting a recent item itself moves it to the front, once.
        tree(dlg)->setCurrentItem(tree(dlg)->topLevelItem(0)->child(1));
        button(dlg, QDialogButtonBox::Ok)->click();
    }
    SpatialReferenceSelectorDlg dlg;
    QCOMPARE(visibleCodes(dlg, kRecent), (QStringList{QStringLiteral("EPSG:2435"), QStringLiteral("EPSG:4214")}));
    QCOMPARE(KivUI::EnvironmentSetting::Instance()->Value(kRecentKey).toStringList(),
             (QStringList{QStringLiteral("EPSG:2435"), QStringLiteral("EPSG:4214")}));
    // The recent copies are duplicates: the count is of distinct systems.
    QTest::keyClicks(filter(dlg), QStringLiteral("2435"));
    QCOMPARE(visibleCodes(dlg, kRecent), QStringList{QStringLiteral("EPSG:2435")});
    QCOMPARE(shownCount(dlg), 1);
}

void TestSpatialReferenceSelectorDlg::recentListIsCappedAndSkipsUnknownCodes()
{
    KivUI::EnvironmentSetting::Instance()->SetValue(
        kRecentKey, QStringList{QStringLiteral("EPSG:999999"), QStringLiteral("junk"), QStringLiteral("epsg:4326"),
                                QStringLiteral("EPSG:4326"), QString()});
    {
        SpatialReferenceSelectorDlg dlg;
        QCOMPARE(visibleCodes(dlg, kRecent), QStringList{QStringLiteral("EPSG:4326")});
    }

    QStringList chosen;
    for (int code = 2431; code <= 2442; ++code)
        chosen.prepend(QStringLiteral("EPSG:%1").arg(code));
    for (auto it = chosen.crbegin(); it != chosen.crend(); ++it)
        choose(*it);
    SpatialReferenceSelectorDlg dlg;
    QCOMPARE(visibleCodes(dlg, kRecent), chosen.mid(0, 10));
}

void TestSpatialReferenceSelectorDlg::answersWhenDrivenModally()
{
    KivTest::ModalDriver driver;
    {
        KivTest::answerSelector(driver, QStringLiteral("EPSG:2435"));
        SpatialReferenceSelectorDlg dlg;
        QCOMPARE(dlg.exec(), int(QDialog::Accepted));
        QVERIFY2(driver.verify(), qPrintable(driver.report()));
        const KivUtility::_ptr_t<KivGeometry::SpatialReference> sr = dlg.GetCoordinateSystem();
        QVERIFY(sr);
        QCOMPARE(sr->GetAuthorityCode(), QStringLiteral("EPSG:2435"));
    }
    {
        // Now EPSG:2435 is listed twice (recent and projected); either will do.
        KivTest::answerSelector(driver, QStringLiteral("epsg:2435"));
        SpatialReferenceSelectorDlg dlg;
        QTest::keyClicks(filter(dlg), QStringLiteral("wgs 84"));
        QCOMPARE(dlg.exec(), int(QDialog::Accepted));
        QVERIFY2(driver.verify(), qPrintable(driver.report()));
        QVERIFY(dlg.GetCoordinateSystem());
    }
    {
        KivTest::cancelSelector(driver);
        SpatialReferenceSelectorDlg dlg;
        QCOMPARE(dlg.exec(), int(QDialog::Rejected));
        QVERIFY2(driver.verify(), qPrintable(driver.report()));
        QVERIFY(!dlg.GetCoordinateSystem());
    }
    {
        KivTest::answerSelector(driver, QStringLiteral("EPSG:999999"));
        SpatialReferenceSelectorDlg dlg;
        QCOMPARE(dlg.exec(), int(QDialog::Rejected));
        QVERIFY(!driver.verify());
    }
}

KIV_TEST_CLASS(TestSpatialReferenceSelectorDlg)
#include "tst_SpatialReferenceSelectorDlg.moc"
