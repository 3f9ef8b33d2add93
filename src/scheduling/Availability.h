#pragma once
// Whether a tutor, room or class is free at a project day and period, and
// what the four resource lists show for a selected cell. Two slots are at the
// same time when their day headings share a project day and their period
// headings a project period, whatever timetables they belong to.

#include <QString>
#include <QStringList>
#include <QVector>

namespace ModMain {

enum class ResourceKind { Tutor, Subject, Room, Class };

// "Tutor", "Subject", "Room" or "Class": the list's word, the timetable type
// and the stem of the resource's tables (TutorSlot, TutorID).
QString KindWord(ResourceKind kind);

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

// The resources of the kind linked to the slot, in the order the lists tick
// them; a resource whose record is gone is left out.
QVector<qint32> LinkedResources(ResourceKind kind, qint32 SlotID);

// One list row's status text and check box.
struct RowState {
    QString status;
    bool checked = false;

    bool operator==(const RowState&) const = default;
};

// The rows of one list for a selected cell, in the order of ids: "Avail",
// "Busy" (one other slot) or "Clash" (more), then every resource linked to
// the slot (none when SlotID is 0) ticked and shown as "-" unless it clashes.
// Subjects have no availability: they keep currentStatus and only get ticks.
// This is the reference: one availability test per row.
QVector<RowState> ListSelectionPerRow(ResourceKind kind, const QVector<qint32>& ids,
                                      const QStringList& currentStatus, qint32 SlotID,
                                      qint32 ProjectTimeTitleID, qint32 ProjectDayTitleID,
                                      qint32 IgnoreSlotID);
// The same rows from two statements: every resource's bookings at the cell's
// day and period counted at once, and the slot's links. A grid click on a
// large school would otherwise run hundreds of statements.
QVector<RowState> ListSelection(ResourceKind kind, const QVector<qint32>& ids,
                                const QStringList& currentStatus, qint32 SlotID,
                                qint32 ProjectTimeTitleID, qint32 ProjectDayTitleID,
                                qint32 IgnoreSlotID);

// The timetables that hold the resource at that project day and period, one
// name per busy slot, as the details box lists them.
QStringList BusyTimetableNames(ResourceKind kind, qint32 ResourceID, qint32 ProjectTimeTitleID,
                               qint32 ProjectDayTitleID, qint32 IgnoreSlotID);

} // namespace ModMain
