#include "timetable/TimetableState.h"

namespace Timetable {

State& current() {
    static State s;
    return s;
}

void Reset() {
    current() = State();
}

} // namespace Timetable
