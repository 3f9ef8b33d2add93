#pragma once
// New Project: the project wizard's loop, the new file, and its days and periods.

#include <QString>

class frmMain;

namespace ModMain {

// Runs the wizard over the main window. Cancelling before a file is chosen
// leaves the open project as it was; a file already made stays made and open.
void DoNewProject(frmMain& main);

// Copies blank.db from the application folder over target. On failure
// returns false with the reason in error.
bool CopyBlankProject(const QString& target, QString* error);

} // namespace ModMain
