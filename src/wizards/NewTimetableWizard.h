#pragma once
// Runs the new-timetable wizard's screens. The caller sets WizardType and
// WizardWhoID first; with askKind the user chooses the kind on a screen of its
// own. Returns false when the user cancelled.

class QWidget;

namespace Wizard {

bool RunNewTimetableScreens(QWidget* parent, bool askKind = false);

} // namespace Wizard
