#pragma once
// Ticking and unticking a resource in a list for the selected cell: the link
// to the cell's slot and the mirroring into other timetables that ticking a
// class, or unticking a resource with a timetable of its own, brings. Any
// clash question has been asked before these run.

#include "scheduling/Availability.h"

#include <QString>

namespace ModMain {

// The selected cell of the shown timetable.
struct Cell {
    qint32 TimetableID = 0;
    QString Type;                           // "Class", "Tutor" or "Room"
    qint32 SlotID = 0;                      // 0: the cell has no slot yet
    qint32 DayTitleID = 0, TimeTitleID = 0; // the timetable's own headings
    qint32 ProjectTimeTitleID = 0, ProjectDayTitleID = 0;
};

// Links the resource to the cell's slot, creating the slot first when there
// is none. A class is also mirrored: its own timetable gets the owner of the
// shown one, and the slot's links go to the timetables sharing its tutors.
// One user action. Returns the cell's slot id: -1 for a heading cell, which
// has none, and the cell's own when the project could not be written.
qint32 TickResource(ResourceKind kind, qint32 ResourceID, const Cell& cell);
// Unlinks the resource from the cell's slot, after removing the mirrored
// links from the resource's own timetable; nothing when the cell has no slot.
// One user action.
void UntickResource(ResourceKind kind, qint32 ResourceID, const Cell& cell);

// Puts the owner of the current timetable (of type SelectedType) into the
// target timetable's slot at the project period; SlotID receives that slot.
void CreateCrossReferenceTimetable(qint32& SlotID, qint32 TargetTimetableID,
                                   qint32 ProjectTimeTitleID, qint32 ProjectDayTitleID,
                                   const QString& SelectedType, qint32 CurrentTimetableID);
// Copies the slot's tutors, rooms, classes and subjects (not the kind the
// target timetable is of) into the target's slot at the project period.
// SlotID moves to the target slot at the first link copied, so the kinds after
// it read the target's own links.
void CreateCrossReferenceSlot(qint32& SlotID, qint32 TargetTimetableID, qint32 ProjectTimeTitleID,
                              qint32 ProjectDayTitleID, const QString& SelectedType,
                              qint32 CurrentTimetableID);
// Removes the slot's links, and the current timetable's owner, from the
// target's slot at the project period; SlotID moves the same way.
void DeleteCrossReferenceSlot2(qint32& SlotID, qint32 CurrentTimetableID, qint32 TargetTimetableID,
                               qint32 ProjectTimeTitleID, qint32 ProjectDayTitleID,
                               const QString& CurrentType, const QString& ListType);

// After a class tick: for every slot of every other timetable that has the
// project day and period among its headings, and every tutor of SlotID that
// slot also holds, CreateCrossReferenceSlot into that slot's timetable.
// Every copy starts from SlotID, the ticked cell's slot, which stays as it
// is. This is the reference: one statement per row and tutor.
void PropagateClassTickPerRow(qint32& SlotID, qint32 CurrentTimetableID, qint32 ProjectTimeTitleID,
                              qint32 ProjectDayTitleID);
// The same copies in the same order, worked out in memory from a few reads
// and written at the end in one statement per link table: the same rows, ids
// included, and the same SlotID after. On a large school one tick meets
// thousands of rows and makes over a thousand copies, each of which the
// reference does with dozens of statements.
void PropagateClassTick(qint32& SlotID, qint32 CurrentTimetableID, qint32 ProjectTimeTitleID,
                        qint32 ProjectDayTitleID);

} // namespace ModMain
