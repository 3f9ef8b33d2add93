#include "wizards/WizardState.h"

namespace Wizard {

State& state() {
    static State s;
    return s;
}

WizardPage::Flow flow() {
    return {state().WizardScreen, state().WizardCancel};
}

void Reset() {
    state() = State();
}

void ClearProjectWizard() {
    State& s = state();
    s.WizardCancel = false;
    s.WizardScreen = 1;
    s.tempWizardScreen = 0;
    s.WizardDOW.clear();
    s.WizardHours.clear();
    s.WizardDOWIndex = 0;
    s.WizardHoursIndex = 0;
    s.WizardHourIncIndex = 0;
    s.WizardFileName.clear();
    s.WizardCalendarOnly = false;
}

} // namespace Wizard
