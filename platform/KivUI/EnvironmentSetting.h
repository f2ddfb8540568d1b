#pragma once

#include <QString>
#include <QVariant>

namespace KivUI {

/// Process-wide settings of the host: where its data folder is, and the
/// working folder that file dialogs start in.
///
/// Values set through `SetValue` (and the working folder) persist between
/// runs in an INI file under the user's configuration folder
/// (`QStandardPaths::AppConfigLocation`, i.e. `$XDG_CONFIG_HOME/<application>`),
/// written when they change.
class EnvironmentSetting
{
public:
    static EnvironmentSetting* Instance();

    /// The host's data folder: the executable's folder + "/../data/",
    /// normalised and ending in a separator. The plug-in also finds it as
    /// `applicationDirPath() + "/.." + "/data"`; both name the same folder.
    QString GetDataDir() const;

    /// The folder file dialogs start in; the user's home folder until one has
    /// been chosen.
    QString GetCurrentWorkDir() const;
    void SetCurrentWorkDir(const QString& dir);

    /// Free persistent values (the host's window state, recently chosen
    /// coordinate systems and the like).
    QVariant Value(const QString& key, const QVariant& defaultValue = QVariant()) const;
    void SetValue(const QString& key, const QVariant& value);

private:
    EnvironmentSetting();
    EnvironmentSetting(const EnvironmentSetting&) = delete;
    EnvironmentSetting& operator=(const EnvironmentSetting&) = delete;
    QString settingsFile() const;
};

} // namespace KivUI
