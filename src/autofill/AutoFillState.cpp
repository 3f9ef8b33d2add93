#include "autofill/AutoFillState.h"

namespace AutoFill {

State& state() {
    static State s;
    return s;
}

void Reset() {
    state() = State();
}

} // namespace AutoFill
