#pragma once
// The Auto Fill command: its start checks, the wizard's screens and the fill.

#include <QtGlobal>
#include <functional>

class QWidget;

namespace AutoFill {

// What the wizard asks of the main window.
struct WizardHost {
    // Starts the new-timetable wizard for a class.
    std::function<void()> newClassTimetable;
    // Shows the timetable after a fill.
    std::function<void(qint32)> loadTimetable;
};

// Runs the wizard and, unless it is cancelled, the fill. preferredTimetable
// is offered first on the timetable screen (-1: the first class).
void RunAutoFillWizard(QWidget* parent, const WizardHost& host, qint32 preferredTimetable = -1);

} // namespace AutoFill
