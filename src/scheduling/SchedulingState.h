#pragma once
// What manual scheduling shares between the window, the lists and the clash
// dialog. Tests reset it between cases.

#include <QStringList>

namespace Scheduling {

struct State {
    // The other lessons a tutor is in at the selected cell's time, as the
    // tutor's context menu found them for its Details.
    QStringList gBusyLessons;
    // The clash dialog's answer.
    bool gbClash_ShowDetails = false;
    bool gbClash_Return = false;
    bool gbClash_AllowClash = false;
    // The name boxes: completion is off while the program sets a box's text,
    // and after a deletion until the next other key.
    bool gbUpdateTextNameControls = true;
    bool gbBackspaced = false;
};

State& state();
void Reset();

} // namespace Scheduling
