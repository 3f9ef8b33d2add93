#pragma once
// Whether a tutor, room or class is free at a project day and period, and
// what the four resource lists show for a selected cell. Two slots are at the
// same time when their day headings share a project day and their period
// headings a project period, whatever timetables they belong to.

#include "timetable/Lessons.h"

#include <QString>
#include <QStringList>
#include <QVector>

namespace ModMain {

// The selected cell of the shown timetable.
struct Cell {
    qint32 TimetableID = 0;
    QString Type;                           // "Class", "Tutor" or "Room"
    qint32 SlotID = 0;                      // 0: the cell has no slot yet
    qint32 DayTitleID = 0, TimeTitleID = 0; // the timetable's own headings
    qint32 ProjectTimeTitleID = 0, ProjectDayTitleID = 0;

    Period period() const { return {ProjectDayTitleID, ProjectTimeTitleID}; }
};

// The project period and day behind a timetable's own headings; 0 when the
// heading is missing.
qint32 ProjectTimeTitleOf(qint32 TimeTitleID);
qint32 ProjectDayTitleOf(qint32 DayTitleID);

// True when no slot of any timetable other than IgnoreSlotID (-1: none) holds
// the resource at that project day and period. Otherwise BusySlotID holds the
// busy slots in the order found and SlotCount their number; a slot linked
// twice counts twice.
bool GetTutorAvailability(qint32 ProjectTimeTitleID, qint32 ProjectDayTitleID, qint32 TutorID,
                          QVector<qint32>& BusySlotID, qint32& SlotCount, qint32 IgnoreSlotID);
bool GetRoomAvailability(qint32 ProjectTimeTitleID, qint32 ProjectDayTitleID, qint32 RoomID,
                         QVector<qint32>& BusySlotID, qint32& SlotCount, qint32 IgnoreSlotID);
bool GetClassAvailability(qint32 ProjectTimeTitleID, qint32 ProjectDayTitleID, qint32 ClassID,
                          QVector<qint32>& BusySlotID, qint32& SlotCount, qint32 IgnoreSlotID);

// One list row's status text and check box.
struct RowState {
    QString status;
    bool checked = false;

    bool operator==(const RowState&) const = default;
};

// The rows of one list for a cell, in the order of ids, counted in lessons:
// a resource in the cell's selected lesson is ticked and reads "-" (or
// "Clash" when it is in another lesson too); any other reads "Avail", "Busy"
// (in one other lesson then) or "Clash" (in two or more: double booked).
// Subjects read "-" or "Avail".
QVector<RowState> ListStates(ResourceKind kind, const QVector<qint32>& ids, const Cell& cell);
// The lessons other than the cell's own that hold the resource then,
// described with their timetables.
QStringList BusyLessons(ResourceKind kind, qint32 ResourceID, const Cell& cell);

} // namespace ModMain
