#pragma once
// The state the wizard screens share with the loops that drive them. One
// set serves the project wizard and the new-timetable wizard, as both drive
// their screens by number.

#include "common/WizardPage.h"

#include <QString>
#include <QStringList>
#include <QTime>
#include <QVector>

namespace Wizard {

// The screen numbers of the project wizard, shared by its loop and screens.
namespace ProjectScreen {
constexpr qint16 Welcome = 1;
constexpr qint16 FileName = 2; // the save dialog
constexpr qint16 Days = 3;
constexpr qint16 Hours = 4;
constexpr qint16 Complete = 5;
constexpr qint16 Finished = 6;
} // namespace ProjectScreen

// The screen numbers of the new-timetable wizard. Hours and Days are numbered
// but never shown, as a timetable takes the project's days and periods; Type
// is shown when the user has not chosen the kind yet.
namespace TimetableScreen {
constexpr qint16 Welcome = 1;
constexpr qint16 Type = 2;
constexpr qint16 Who = 3;
constexpr qint16 Style = 4;
constexpr qint16 Hours = 5;
constexpr qint16 Days = 6;
constexpr qint16 Complete = 7;
constexpr qint16 Finished = 8;
} // namespace TimetableScreen

struct State {
    bool WizardCancel = false;
    qint16 WizardScreen = 1;
    qint16 tempWizardScreen = 0;

    // New-timetable wizard.
    QString WizardType = QStringLiteral("Class");
    qint32 WizardWhoID = -1;
    qint16 WizardStyleID = 1;
    bool WizardShowWelcome = true;

    // Project wizard: chosen days and period boundaries (positions 1..count
    // in the original; here index 0..count-1).
    QStringList WizardDOW;
    QVector<QTime> WizardHours;
    qint16 WizardDOWIndex = 0;
    qint16 WizardHoursIndex = 0;
    qint16 WizardHourIncIndex = 0;
    QString WizardFileName;
    // Only the days and periods of the open project are set up: there is no
    // file to choose before the days screen.
    bool WizardCalendarOnly = false;
    // Whether New Project opens on its welcome screen; kept for the run.
    bool WizardProjectWelcome = true;
};

// The program's one wizard state.
State& state();
// What the screens of these wizards move: its screen number and cancel flag.
WizardPage::Flow flow();
// Back to a fresh start (tests call this between cases).
void Reset();
// What New Project clears before its first screen: the flags, the screen
// number, the chosen days, times, list entries and file name.
void ClearProjectWizard();

} // namespace Wizard
