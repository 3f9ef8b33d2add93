#pragma once
// Runs the new-timetable wizard's screens. The caller sets WizardType and
// WizardWhoID first; returns false when the user cancelled.

class QWidget;

namespace Wizard {

bool RunNewTimetableScreens(QWidget* parent);

} // namespace Wizard
