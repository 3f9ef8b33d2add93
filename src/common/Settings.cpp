#include "common/Settings.h"

#include <QDir>
#include <QSettings>

namespace Common {

QString SettingsDir() {
    // Read the environment every time so tests can point it at a temporary folder.
    const QByteArray xdg = qgetenv("XDG_CONFIG_HOME");
    if (!xdg.isEmpty())
        return QDir::cleanPath(QString::fromLocal8Bit(xdg));
    return QDir::homePath() + QStringLiteral("/.config");
}

QString SettingsFile(const QString& appName) {
    return SettingsDir() + QLatin1Char('/') + appName + QStringLiteral(".ini");
}

QString GetSetting(const QString& appName, const QString& section, const QString& key,
                   const QString& defaultValue) {
    QSettings s(SettingsFile(appName), QSettings::IniFormat);
    return s.value(section + QLatin1Char('/') + key, defaultValue).toString();
}

void SaveSetting(const QString& appName, const QString& section, const QString& key,
                 const QString& value) {
    QDir().mkpath(SettingsDir());
    QSettings s(SettingsFile(appName), QSettings::IniFormat);
    s.setValue(section + QLatin1Char('/') + key, value);
    s.sync();
}

} // namespace Common
