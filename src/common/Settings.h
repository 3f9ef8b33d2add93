#pragma once
// Per-user settings: one INI file per application name in the user's
// configuration folder ($XDG_CONFIG_HOME, else ~/.config), one group per section.

#include <QString>

namespace Common {

// The folder the settings files live in.
QString SettingsDir();
// Full path of the settings file of one application name.
QString SettingsFile(const QString& appName);

QString GetSetting(const QString& appName, const QString& section, const QString& key,
                   const QString& defaultValue = QString());
void SaveSetting(const QString& appName, const QString& section, const QString& key,
                 const QString& value);

// The application names the program keeps its settings under.
inline const char* const kConfigApp = "VT Timetable";
inline const char* const kOptionsApp = "Timetable";

} // namespace Common
