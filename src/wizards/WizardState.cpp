#include "wizards/WizardState.h"

namespace Wizard {

State& state() {
    static State s;
    return s;
}

void Reset() {
    state() = State();
}

} // namespace Wizard
