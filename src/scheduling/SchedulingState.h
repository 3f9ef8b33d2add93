#pragma once
// What manual scheduling shares between the window, the lists and the clash
// dialog. Tests reset it between cases.

#include <QVector>

namespace Scheduling {

struct State {
    // The slots that hold a resource elsewhere, from the last availability
    // test made for the lists and for the tutor's context menu.
    QVector<qint32> BusySlotID;
    qint32 BusySlotCount = 0;
    QVector<qint32> gBusySlotID;
    qint32 gBusySlotCount = 0;
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
