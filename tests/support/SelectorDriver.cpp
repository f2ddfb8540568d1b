#include "support/SelectorDriver.h"

#include "support/ModalDriver.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QLineEdit>
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
        // Start from the whole list, as a user clearing the filter would.
        if (auto* filter = dlg->findChild<QLineEdit*>(QStringLiteral("lineEdit_Filter")))
            filter->clear();
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
        QPushButton* ok = box->button(QDialogButtonBox::Ok);
        if (!ok || !ok->isEnabled()) {
            driver.fail(QStringLiteral("the reference picker does not let %1 be accepted").arg(code));
            dlg->reject();
            return;
        }
        ok->click();
    });
}

void cancelSelector(ModalDriver& driver)
{
    driver.handleModal("KivAdapterUI::SpatialReferenceSelectorDlg", [](QWidget* w) {
        static_cast<QDialog*>(w)->reject();
    });
}

} // namespace KivTest
