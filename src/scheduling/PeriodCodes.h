#pragma once
// Marking periods in the database: what a period command does to one slot,
// and the lunch mark of a period heading. No widgets here.

#include <QtGlobal>

namespace ModMain {

// Removes every link of an existing slot (hadSlot) and gives it the code.
void MarkSlot(qint32 SlotID, bool hadSlot, qint32 SpecialID);
// The code of a timetable's period heading, and setting it.
qint32 TimeTitleSpecialID(qint32 TimeTitleID);
void SetTimeTitleSpecialID(qint32 TimeTitleID, qint32 SpecialID);

} // namespace ModMain
