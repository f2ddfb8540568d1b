#include "HelpMenu.h"

#include "AboutDialog.h"
#include "Translations.h"
#include "UserGuideDialog.h"

#include <QActionGroup>
#include <QMessageBox>

HelpMenu::HelpMenu(QWidget* parent) : QMenu(tr("&Help"), parent), m_languages(new QActionGroup(this))
{
    setObjectName(QStringLiteral("menuHelp"));

    QAction* guide = addAction(tr("&User Guide"), this, &HelpMenu::showGuide);
    guide->setObjectName(QStringLiteral("actionUserGuide"));
    guide->setShortcut(QKeySequence::HelpContents);

    QMenu* language = addMenu(tr("&Language"));
    language->setObjectName(QStringLiteral("menuLanguage"));
    // Each language is named in itself, so that a user who cannot read the
    // current one still finds theirs.
    const QList<QPair<QString, QString>> choices = {
        {QString(), tr("System Language")},
        {QStringLiteral("en"), QStringLiteral("English")},
        {QStringLiteral("zh_CN"), QStringLiteral("\u7b80\u4f53\u4e2d\u6587")},  // 简体中文
    };
    const QString configured = Translations::configuredLanguage();
    for (const auto& choice : choices) {
        QAction* action = language->addAction(choice.second);
        action->setObjectName(QStringLiteral("actionLanguage_") + (choice.first.isEmpty() ? QStringLiteral("System")
                                                                                        : choice.first));
        action->setCheckable(true);
        action->setChecked(choice.first == configured);
        m_languages->addAction(action);
        const QString code = choice.first;
        connect(action, &QAction::triggered, this, [this, code] { chooseLanguage(code); });
    }

    addSeparator();
    QAction* about = addAction(tr("&About kivdesk"), this, &HelpMenu::showAbout);
    about->setObjectName(QStringLiteral("actionAbout"));
    about->setMenuRole(QAction::AboutRole);
}

void HelpMenu::showGuide()
{
    UserGuideDialog dlg(parentWidget());
    dlg.exec();
}

void HelpMenu::showAbout()
{
    AboutDialog dlg(parentWidget());
    dlg.exec();
}

void HelpMenu::chooseLanguage(const QString& language)
{
    Translations::setConfiguredLanguage(language);
    QMessageBox::information(parentWidget(), tr("Language"),
                             tr("The language changes the next time kivdesk starts."));
}
