#pragma once

#include <QString>
#include <QStringList>

class QToolBar;

/// Chooses kivdesk's language and installs the translators of the program,
/// the plug-ins and Qt's own dialogs. The language follows the system locale
/// unless the user picked one in Help > Language (applied at the next start)
/// or a script passes --lang.
class Translations
{
public:
    /// The languages kivdesk ships, as locale names ("en", "zh_CN").
    static QStringList available();

    /// The language picked in the settings; empty means the system's.
    static QString configuredLanguage();
    static void setConfiguredLanguage(const QString& language);

    /// `requested` when given, else the configured language, else the
    /// system locale's; always one of `available()`.
    static QString choose(const QString& requested = QString());

    /// Installs the translators for `language` into the application. Returns
    /// false when the program's own translation is missing (the texts then
    /// stay in their English source form).
    static bool install(const QString& language);

    /// The language installed last ("en" before any install).
    static QString current();

    /// Gives each command of `toolbar` the short text that the translation has
    /// for it under "ToolbarTexts" (keyed by the command's name), so that the
    /// whole toolbar fits the window; the menus keep the full captions.
    static void shortenToolbar(QToolBar* toolbar);

    /// Folder of the .qm files: <data folder>/translations.
    static QString directory();
};
