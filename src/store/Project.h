#pragma once
// Opening and closing the project file, apart from any window.

#include <QString>

namespace ModMain {

// The settings that remember the project between runs.
QString LastDB();
void SetLastDB(const QString& path);

// A copy of the sample school shipped with the program, made in the user's
// documents folder as "Sample School.VNPL" (numbered when that is taken), for
// the user to change freely; the shipped file is never opened. Empty, with
// the reason in error, when it cannot be made.
QString CopySampleSchool(QString& error);

// Opens the file on the program's connection and makes sure it is a sound
// project: every table and column of a project is there and the file is not
// damaged. A file that fails is closed again untouched; OpenFailureText then
// says why.
bool OpenProject(const QString& path);
// Whether the file can be opened as a project, checked on a connection of its
// own so that the project open now stays open; when not, OpenFailureText says
// why.
bool CanOpenProject(const QString& path);

// Why the last open of path failed, in words, then its code in brackets.
QString OpenFailureReason(const QString& path);
// "Unable to open project file <path>." with the reason on the next line,
// as shown when an open fails.
QString OpenFailureText(const QString& path);

// "<file> is damaged and cannot be used (<detail>). ..." for a damaged file.
QString DamagedText(const QString& path, const QString& detail);

// Why the open project is not a sound project, or empty when it is. Checks
// the tables and columns against a new project's and runs SQLite's quick check.
QString ProjectProblem(int* number = nullptr);

} // namespace ModMain
