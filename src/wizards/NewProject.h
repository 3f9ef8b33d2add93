#pragma once
// New Project: the project wizard's loop, the new file, and its days and
// periods; and setting up the days and periods of a project that has none.

#include "wizards/WizardState.h"

#include <QString>

class QWidget;

namespace ModMain {

// What New Project tells the window it runs over.
class ProjectHost {
public:
    virtual ~ProjectHost() = default;
    // The window the wizard's screens belong to.
    virtual QWidget* HostWindow() = 0;
    // The shown timetable's size changes are kept before its project closes.
    virtual void SaveTimetable() = 0;
    // The open project is gone: nothing of it may stay on screen.
    virtual void ProjectClosed() = 0;
    // A project is open now (its days and periods may still be missing).
    virtual void ProjectOpened() = 0;
    // The user wants to create a timetable now.
    virtual void StartNewTimetable() = 0;
};

// Runs the wizard over the window. Cancelling before a file is chosen leaves
// the open project as it was; a file already made stays made and open.
void DoNewProject(ProjectHost& host);

// Runs the days, hours and completion screens for the open project, which
// has no days or periods yet, and writes them. Returns false when cancelled.
bool DoSetUpCalendar(ProjectHost& host);

// Copies blank.db from the application folder over target. On failure
// returns false with the reason in error.
bool CopyBlankProject(const QString& target, QString* error);

} // namespace ModMain
