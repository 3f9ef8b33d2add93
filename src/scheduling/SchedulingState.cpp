#include "scheduling/SchedulingState.h"

namespace Scheduling {

State& state() {
    static State s;
    return s;
}

void Reset() {
    state() = State();
}

} // namespace Scheduling
