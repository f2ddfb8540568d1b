#include "support/SelectorDriver.h"

#include "support/ModalDriver.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

namespace KivTest {

void answerSelector(ModalDriver& driver, const QString& code)
{
    driver.handleModal("KivAdapterUI::SpatialReferenceSelectorDlg", [&driver, code](QWidget* w) {
        auto* dlg = static_cast<QDialog*>(w);
        auto* tree = dlg->findChild<QTreeWidget*>(QStringLiteral("treeWidget_Systems"));
        auto* box = dlg->findChild<QDialogButtonBox*>(QStringLiteral("buttonBox"));
        QTreeWidgetItem* found = nullptr;
        if (tree) {
            for (QTreeWidgetItemIterator it(tree); *it; ++it) {
                if ((*it)->data(0, Qt::UserRole).toString().compare(code, Qt::CaseInsensitive) == 0) {
                    found = *it;
                    break;
                }
            }
        }
        if (!found || !box) {
            driver.fail(QStringLiteral("the reference picker does not list %1").arg(code));
            dlg->reject();
            return;
        }
        found->setHidden(false);
        if (found->parent())
            found->parent()->setExpanded(true);
        tree->setCurrentItem(found);
        box->button(QDialogButtonBox::Ok)->click();
    });
}

void cancelSelector(ModalDriver& driver)
{
    driver.handleModal("KivAdapterUI::SpatialReferenceSelectorDlg", [](QWidget* w) {
        static_cast<QDialog*>(w)->reject();
    });
}

} // namespace KivTest
