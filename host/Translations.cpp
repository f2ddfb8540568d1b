#include "Translations.h"

#include "KivUI/EnvironmentSetting.h"

#include <QAction>
#include <QCoreApplication>
#include <QDir>
#include <QLibraryInfo>
#include <QLocale>
#include <QSettings>
#include <QToolBar>
#include <QTranslator>

namespace {

const char kLanguageKey[] = "ui/language";
QString g_current = QStringLiteral("en");

// kivdesk's settings file in the user's configuration folder (~/.config/kivdesk/kivdesk.ini).
QString settingsFile()
{
    return QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("kivdesk"), QStringLiteral("kivdesk"))
        .fileName();
}

// "zh", "zh_CN", "zh-Hans-CN" all mean the one Chinese translation.
QString normalised(const QString& name)
{
    if (name.startsWith(QLatin1String("zh"), Qt::CaseInsensitive))
        return QStringLiteral("zh_CN");
    if (name.startsWith(QLatin1String("en"), Qt::CaseInsensitive) || name == QLatin1String("C"))
        return QStringLiteral("en");
    return QString();
}

} // namespace

QStringList Translations::available()
{
    return {QStringLiteral("en"), QStringLiteral("zh_CN")};
}

QString Translations::configuredLanguage()
{
    QSettings s(settingsFile(), QSettings::IniFormat);
    return normalised(s.value(QLatin1String(kLanguageKey)).toString());
}

void Translations::setConfiguredLanguage(const QString& language)
{
    QSettings s(settingsFile(), QSettings::IniFormat);
    if (language.isEmpty())
        s.remove(QLatin1String(kLanguageKey));
    else
        s.setValue(QLatin1String(kLanguageKey), normalised(language));
    s.sync();
}

QString Translations::choose(const QString& requested)
{
    QString language = normalised(requested);
    if (language.isEmpty())
        language = configuredLanguage();
    if (language.isEmpty()) {
        for (const QString& ui : QLocale::system().uiLanguages()) {
            language = normalised(ui);
            if (!language.isEmpty())
                break;
        }
    }
    return language.isEmpty() ? QStringLiteral("en") : language;
}

QString Translations::directory()
{
    return KivUI::EnvironmentSetting::Instance()->GetDataDir() + QStringLiteral("translations");
}

bool Translations::install(const QString& language)
{
    auto* app = QCoreApplication::instance();
    // Parented to the application, so they live exactly as long as it.
    auto* own = new QTranslator(app);
    const bool loaded = own->load(QStringLiteral("kivdesk_") + language, directory());
    if (loaded)
        QCoreApplication::installTranslator(own);
    else
        delete own;

    // Qt's own texts (dialog buttons, file dialogs) from the system's Qt translations.
    if (language != QLatin1String("en")) {
        auto* qt = new QTranslator(app);
        if (qt->load(QStringLiteral("qtbase_") + language, QLibraryInfo::location(QLibraryInfo::TranslationsPath)))
            QCoreApplication::installTranslator(qt);
        else
            delete qt;
    }
    g_current = language;
    return loaded;
}

void Translations::shortenToolbar(QToolBar* toolbar)
{
    if (!toolbar)
        return;
    for (QAction* action : toolbar->actions()) {
        const QByteArray name = action->objectName().toUtf8();
        const QString text = QCoreApplication::translate("ToolbarTexts", name.constData());
        if (!name.isEmpty() && text != QString::fromUtf8(name))
            action->setIconText(text);
    }
}

QString Translations::current()
{
    return g_current;
}
