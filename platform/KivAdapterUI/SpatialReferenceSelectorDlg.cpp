#include "KivAdapterUI/SpatialReferenceSelectorDlg.h"

#include "KivAdapterUI/SpatialReferenceCatalog.h"
#include "KivGeometry/SpatialReferenceFactory.h"
#include "KivUI/EnvironmentSetting.h"
#include "ui_SpatialReferenceSelectorDlg.h"

#include <QHeaderView>
#include <QPushButton>

#include <proj.h>

namespace KivAdapterUI {

namespace {

const char kRecentKey[] = "SpatialReferenceSelector/RecentCodes";
const int kMaxRecent = 10;
// System items carry this type; group items keep the default one.
const int kSystemItemType = QTreeWidgetItem::UserType + 1;

bool isSystem(const QTreeWidgetItem* item)
{
    return item && item->type() == kSystemItemType;
}

QString fromProj(const char* text)
{
    return text ? QString::fromUtf8(text) : QString();
}

} // namespace

class SpatialReferenceSelectorDlgPrivate
{
public:
    ~SpatialReferenceSelectorDlgPrivate()
    {
        if (ctx)
            proj_context_destroy(ctx);
    }

    QTreeWidgetItem* makeItem(int entry) const
    {
        const SpatialReferenceCatalog::Entry& e = catalog.At(entry);
        auto* item = new QTreeWidgetItem(QStringList{e.name, e.code}, kSystemItemType);
        item->setData(0, Qt::UserRole, e.code);
        return item;
    }

    /// The pane text for a system: WKT1 (WKT2 when WKT1 cannot express it),
    /// then the area of use.
    QString describe(const QString& code);

    const SpatialReferenceCatalog& catalog = SpatialReferenceCatalog::Instance();
    Ui::SpatialReferenceSelectorDlg ui;
    QTreeWidgetItem* recentGroup = nullptr;
    QTreeWidgetItem* geographicGroup = nullptr;
    QTreeWidgetItem* projectedGroup = nullptr;
    QVector<QTreeWidgetItem*> items;                   ///< per catalogue entry
    QVector<QPair<int, QTreeWidgetItem*>> recentItems; ///< catalogue entry, item
    bool closed = false;
    QString chosenCode;
    PJ_CONTEXT* ctx = nullptr;
};

QString SpatialReferenceSelectorDlgPrivate::describe(const QString& code)
{
    if (!ctx) {
        ctx = proj_context_create();
        if (!ctx)
            return QString();
        proj_log_level(ctx, PJ_LOG_NONE);
    }
    const int colon = code.indexOf(QLatin1Char(':'));
    const QByteArray auth = code.left(colon).toUtf8();
    const QByteArray number = code.mid(colon + 1).toUtf8();
    PJ* crs = proj_create_from_database(ctx, auth.constData(), number.constData(), PJ_CATEGORY_CRS, 0, nullptr);
    if (!crs)
        return SpatialReferenceSelectorDlg::tr("The definition of %1 cannot be read.").arg(code);

    const char* const options[] = {"MULTILINE=YES", nullptr};
    QString text = fromProj(proj_as_wkt(ctx, crs, PJ_WKT1_GDAL, options));
    if (text.isEmpty())
        text = fromProj(proj_as_wkt(ctx, crs, PJ_WKT2_2019, options));

    double west = 0, south = 0, east = 0, north = 0;
    const char* areaName = nullptr;
    if (proj_get_area_of_use(ctx, crs, &west, &south, &east, &north, &areaName)) {
        text += QStringLiteral("\n\n") + SpatialReferenceSelectorDlg::tr("Area of use: %1").arg(fromProj(areaName));
        // PROJ reports -1000 for bounds it does not know.
        if (west > -1000 && south > -1000 && east > -1000 && north > -1000)
            text += QLatin1Char('\n')
                + SpatialReferenceSelectorDlg::tr("Bounds: west %1, south %2, east %3, north %4")
                      .arg(west).arg(south).arg(east).arg(north);
    }

    // PROJ already marks the name "(deprecated)"; say what replaces it when
    // the database knows.
    if (proj_is_deprecated(crs)) {
        QStringList replacements;
        if (PJ_OBJ_LIST* list = proj_get_non_deprecated(ctx, crs)) {
            for (int i = 0; i < proj_list_get_count(list); ++i) {
                if (PJ* obj = proj_list_get(ctx, list, i)) {
                    replacements << fromProj(proj_get_id_auth_name(obj, 0)) + QLatin1Char(':')
                            + fromProj(proj_get_id_code(obj, 0));
                    proj_destroy(obj);
                }
            }
            proj_list_destroy(list);
        }
        if (!replacements.isEmpty())
            text += QStringLiteral("\n\n")
                + SpatialReferenceSelectorDlg::tr("Replaced by %1.").arg(replacements.join(QStringLiteral(", ")));
    }
    proj_destroy(crs);
    return text;
}

SpatialReferenceSelectorDlg::SpatialReferenceSelectorDlg(QWidget* parent)
    : QDialog(parent), d(new SpatialReferenceSelectorDlgPrivate)
{
    d->ui.setupUi(this);
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);

    QTreeWidget* tree = d->ui.treeWidget_Systems;
    // Stretch and fixed sections only: sizing a column to its contents would
    // measure every one of the thousands of rows.
    tree->header()->setStretchLastSection(false);
    tree->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    tree->header()->setSectionResizeMode(1, QHeaderView::Fixed);
    tree->header()->resizeSection(1, fontMetrics().horizontalAdvance(QStringLiteral("ESRI:1234567")) + 16);
    d->ui.splitter->setStretchFactor(0, 3);
    d->ui.splitter->setStretchFactor(1, 1);

    d->recentGroup = new QTreeWidgetItem(QStringList{tr("Recently Used")});
    d->geographicGroup = new QTreeWidgetItem(QStringList{tr("Geographic Coordinate Systems")});
    d->projectedGroup = new QTreeWidgetItem(QStringList{tr("Projected Coordinate Systems")});

    // Children are attached while their groups are still outside the tree,
    // so the model sees one insertion instead of thousands.
    const SpatialReferenceCatalog& catalog = d->catalog;
    d->items.resize(catalog.Count());
    QList<QTreeWidgetItem*> geographic;
    QList<QTreeWidgetItem*> projected;
    for (int i = 0; i < catalog.Count(); ++i) {
        QTreeWidgetItem* item = d->makeItem(i);
        d->items[i] = item;
        (catalog.At(i).kind == SpatialReferenceCatalog::Projected ? projected : geographic).append(item);
    }
    d->geographicGroup->addChildren(geographic);
    d->projectedGroup->addChildren(projected);

    QList<QTreeWidgetItem*> recent;
    const QStringList recentCodes = KivUI::EnvironmentSetting::Instance()->Value(QString::fromLatin1(kRecentKey)).toStringList();
    for (const QString& code : recentCodes) {
        const int index = catalog.IndexOf(code);
        if (index < 0 || recent.size() >= kMaxRecent)
            continue;
        bool seen = false;
        for (const auto& r : qAsConst(d->recentItems))
            seen = seen || r.first == index;
        if (seen)
            continue;
        QTreeWidgetItem* item = d->makeItem(index);
        d->recentItems.append(qMakePair(index, item));
        recent.append(item);
    }
    d->recentGroup->addChildren(recent);

    tree->addTopLevelItems({d->recentGroup, d->geographicGroup, d->projectedGroup});
    d->recentGroup->setExpanded(true);
    d->recentGroup->setHidden(recent.isEmpty());
    d->geographicGroup->setHidden(geographic.isEmpty());
    d->projectedGroup->setHidden(projected.isEmpty());

    d->ui.buttonBox->button(QDialogButtonBox::Ok)->setEnabled(false);
    d->ui.label_Count->setText(catalog.Count() == 1 ? tr("1 system") : tr("%1 systems").arg(catalog.Count()));
    d->ui.lineEdit_Filter->setFocus();

    connect(d->ui.lineEdit_Filter, SIGNAL(textChanged(QString)), this, SLOT(slot_FilterChanged(QString)));
    connect(tree, SIGNAL(currentItemChanged(QTreeWidgetItem*,QTreeWidgetItem*)),
            this, SLOT(slot_CurrentItemChanged(QTreeWidgetItem*,QTreeWidgetItem*)));
    connect(tree, SIGNAL(itemDoubleClicked(QTreeWidgetItem*,int)), this, SLOT(slot_ItemDoubleClicked(QTreeWidgetItem*,int)));
    connect(d->ui.buttonBox, SIGNAL(accepted()), this, SLOT(accept()));
    connect(d->ui.buttonBox, SIGNAL(rejected()), this, SLOT(reject()));
}

SpatialReferenceSelectorDlg::~SpatialReferenceSelectorDlg()
{
    // The children outlive this part of the object; their last signals must
    // not reach its slots.
    disconnect(d->ui.treeWidget_Systems, nullptr, this, nullptr);
    disconnect(d->ui.lineEdit_Filter, nullptr, this, nullptr);
}

KivUtility::_ptr_t<KivGeometry::SpatialReference> SpatialReferenceSelectorDlg::GetCoordinateSystem() const
{
    QString code = d->chosenCode;
    if (!d->closed) {
        QTreeWidgetItem* current = d->ui.treeWidget_Systems->currentItem();
        if (isSystem(current))
            code = current->data(0, Qt::UserRole).toString();
    }
    if (code.isEmpty())
        return nullptr;
    return KivGeometry::SpatialReferenceFactory::CreateSpatialReference(code);
}

bool SpatialReferenceSelectorDlg::SelectCode(const QString& code)
{
    const int index = d->catalog.IndexOf(code);
    if (index < 0)
        return false;
    QTreeWidgetItem* item = d->items.at(index);
    if (item->isHidden())
        d->ui.lineEdit_Filter->clear();
    item->setHidden(false);
    item->parent()->setHidden(false);
    item->parent()->setExpanded(true);
    d->ui.treeWidget_Systems->setCurrentItem(item);
    d->ui.treeWidget_Systems->scrollToItem(item);
    return true;
}

void SpatialReferenceSelectorDlg::done(int result)
{
    d->chosenCode.clear();
    QTreeWidgetItem* current = d->ui.treeWidget_Systems->currentItem();
    if (result == QDialog::Accepted && isSystem(current)) {
        d->chosenCode = current->data(0, Qt::UserRole).toString();
        KivUI::EnvironmentSetting* settings = KivUI::EnvironmentSetting::Instance();
        const QString key = QString::fromLatin1(kRecentKey);
        // Codes the catalogue no longer knows are dropped on the way.
        QStringList recent{d->chosenCode};
        for (const QString& code : settings->Value(key).toStringList()) {
            const int index = d->catalog.IndexOf(code);
            if (index >= 0 && !recent.contains(d->catalog.At(index).code) && recent.size() < kMaxRecent)
                recent << d->catalog.At(index).code;
        }
        settings->SetValue(key, recent);
    }
    d->closed = true;
    QDialog::done(result);
}

void SpatialReferenceSelectorDlg::slot_FilterChanged(const QString& text)
{
    const SpatialReferenceCatalog& catalog = d->catalog;
    const QStringList words = SpatialReferenceCatalog::FilterWords(text);
    QVector<bool> shown(catalog.Count(), true);
    int geographic = 0;
    int projected = 0;
    QTreeWidgetItem* single = nullptr;
    for (int i = 0; i < catalog.Count(); ++i) {
        const SpatialReferenceCatalog::Entry& e = catalog.At(i);
        const bool show = words.isEmpty() || SpatialReferenceCatalog::Matches(e, words);
        shown[i] = show;
        QTreeWidgetItem* item = d->items.at(i);
        // Touch only items whose state changes: hiding is the costly part.
        if (item->isHidden() == show)
            item->setHidden(!show);
        if (show) {
            ++(e.kind == SpatialReferenceCatalog::Projected ? projected : geographic);
            single = item;
        }
    }
    int recent = 0;
    for (const auto& r : qAsConst(d->recentItems)) {
        const bool show = shown.at(r.first);
        if (r.second->isHidden() == show)
            r.second->setHidden(!show);
        recent += show ? 1 : 0;
    }
    d->recentGroup->setHidden(recent == 0);
    d->geographicGroup->setHidden(geographic == 0);
    d->projectedGroup->setHidden(projected == 0);

    QTreeWidget* tree = d->ui.treeWidget_Systems;
    // Opened groups while filtering; only the recent ones (and the group of
    // the current system) when the whole list is back.
    QTreeWidgetItem* current = tree->currentItem();
    const bool filtering = !words.isEmpty();
    d->geographicGroup->setExpanded(filtering || (current && current->parent() == d->geographicGroup));
    d->projectedGroup->setExpanded(filtering || (current && current->parent() == d->projectedGroup));
    d->recentGroup->setExpanded(true);

    const int count = geographic + projected;
    d->ui.label_Count->setText(count == 1 ? tr("1 system") : tr("%1 systems").arg(count));

    if (current && current->isHidden())
        tree->setCurrentItem(nullptr);
    if (filtering && count == 1 && !isSystem(tree->currentItem()))
        tree->setCurrentItem(single);
    if (isSystem(tree->currentItem()))
        tree->scrollToItem(tree->currentItem());
}

void SpatialReferenceSelectorDlg::slot_CurrentItemChanged(QTreeWidgetItem* current, QTreeWidgetItem*)
{
    const bool system = isSystem(current);
    d->ui.buttonBox->button(QDialogButtonBox::Ok)->setEnabled(system);
    d->ui.textEdit_Wkt->setPlainText(system ? d->describe(current->data(0, Qt::UserRole).toString()) : QString());
}

void SpatialReferenceSelectorDlg::slot_ItemDoubleClicked(QTreeWidgetItem* item, int)
{
    if (!isSystem(item))
        return;
    d->ui.treeWidget_Systems->setCurrentItem(item);
    accept();
}

} // namespace KivAdapterUI
