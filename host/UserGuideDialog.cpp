#include "UserGuideDialog.h"

#include "KivUI/EnvironmentSetting.h"
#include "Translations.h"

#include <QDialogButtonBox>
#include <QFileInfo>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

UserGuideDialog::UserGuideDialog(QWidget* parent) : QDialog(parent), m_browser(new QTextBrowser(this))
{
    setObjectName(QStringLiteral("UserGuideDialog"));
    setWindowTitle(tr("User Guide"));
    m_browser->setObjectName(QStringLiteral("textBrowser_Guide"));
    m_browser->setOpenExternalLinks(true);

    const QString file = guideFile(Translations::current());
    if (QFileInfo::exists(file))
        m_browser->setSource(QUrl::fromLocalFile(file), QTextDocument::MarkdownResource);
    else
        m_browser->setPlainText(tr("The user guide %1 is missing.").arg(file));

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_browser);
    layout->addWidget(buttons);
    resize(820, 640);
}

QString UserGuideDialog::guideFile(const QString& language)
{
    const QString dir = KivUI::EnvironmentSetting::Instance()->GetDataDir() + QStringLiteral("guide/");
    const QString localised = dir + QStringLiteral("guide_%1.md").arg(language);
    return QFileInfo::exists(localised) ? localised : dir + QStringLiteral("guide_en.md");
}
