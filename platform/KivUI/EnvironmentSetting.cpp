#include "KivUI/EnvironmentSetting.h"

#include <QCoreApplication>
#include <QDir>
#include <QSettings>
#include <QStandardPaths>

namespace KivUI {

namespace {
const char kWorkDirKey[] = "General/CurrentWorkDir";
}

EnvironmentSetting* EnvironmentSetting::Instance()
{
    static EnvironmentSetting instance;
    return &instance;
}

EnvironmentSetting::EnvironmentSetting() = default;

QString EnvironmentSetting::GetDataDir() const
{
    QString dir = QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../data"));
    if (!dir.endsWith(QLatin1Char('/')))
        dir += QLatin1Char('/');
    return dir;
}

QString EnvironmentSetting::settingsFile() const
{
    return QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation)
        + QStringLiteral("/settings.ini");
}

QString EnvironmentSetting::GetCurrentWorkDir() const
{
    const QString dir = Value(QString::fromLatin1(kWorkDirKey)).toString();
    if (!dir.isEmpty() && QDir(dir).exists())
        return dir;
    return QDir::homePath();
}

void EnvironmentSetting::SetCurrentWorkDir(const QString& dir)
{
    SetValue(QString::fromLatin1(kWorkDirKey), dir);
}

QVariant EnvironmentSetting::Value(const QString& key, const QVariant& defaultValue) const
{
    QSettings settings(settingsFile(), QSettings::IniFormat);
    return settings.value(key, defaultValue);
}

void EnvironmentSetting::SetValue(const QString& key, const QVariant& value)
{
    QSettings settings(settingsFile(), QSettings::IniFormat);
    settings.setValue(key, value);
}

} // namespace KivUI
