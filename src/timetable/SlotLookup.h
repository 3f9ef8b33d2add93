#pragma once
// Finding, and creating on first use, the Slot row behind one day and period
// of a timetable. Missing heading rows are raised as VbError 1.

#include <QtGlobal>

namespace ModMain {

// The slot of the timetable at that project period and day, or -1.
qint32 DoGetSlot(qint32 TimetableID, qint32 ProjectTimeTitleID, qint32 ProjectDayTitleID);
// As DoGetSlot, but a missing slot is created.
qint32 DoCreateGetSlot(qint32 TimetableID, qint32 ProjectTimeTitleID, qint32 ProjectDayTitleID);
// Creates a slot of the timetable at its own day and time title, copying the
// period's start, duration and day name; returns the new id.
qint32 CreateSlotAt(qint32 TimetableID, qint32 DayTitleID, qint32 TimeTitleID);

} // namespace ModMain
