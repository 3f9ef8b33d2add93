#pragma once
// Opening and closing the project file, apart from any window.

#include <QString>

namespace ModMain {

// The settings that remember the project between runs.
QString LastDB();
void SetLastDB(const QString& path);

// "Unable to open project file <path>." with the library's reason and number
// on the next two lines, as shown when an open fails.
QString OpenFailureText(const QString& path);

} // namespace ModMain
