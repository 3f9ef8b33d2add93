#pragma once
// Moving a lesson by dragging it to another period of the same timetable:
// what a cell holds, where it would clash, and the move (or swap) itself,
// made of the same unticks and ticks, with their mirroring, as one step.

#include "scheduling/Assignment.h"
#include "scheduling/Availability.h"

#include <QPair>
#include <QVector>

class QWidget;

namespace ModMain {

// The links of a cell, kind by kind (tutors, subjects, rooms, classes).
struct Lesson {
    QVector<QPair<ResourceKind, qint32>> links;
    bool isEmpty() const { return links.isEmpty(); }
};
Lesson ReadLesson(const Cell& cell);

// Whether a lesson may be put in the cell: an ordinary period, not one
// marked for lunch, a break or unavailable.
bool CanHoldLesson(const Cell& cell);

// One of the lesson's tutors, rooms or classes that is busy elsewhere at the
// cell's day and period. The lesson leaving the cell (a swap's other half)
// does not count, nor do its copies in its resources' own timetables.
struct LessonClash {
    ResourceKind kind;
    QVector<qint32> busySlots;
    qint32 count = 0;
};
QVector<LessonClash> LessonClashes(const Lesson& lesson, const Cell& at, const Lesson& leaving);

// Moves the lesson of from into to; when to holds a lesson, the two swap.
// A clash is asked about as a tick's is. One step, "Move Lesson" or "Swap
// Lessons"; false when the user declined or nothing could be written.
bool MoveLesson(const Cell& from, const Cell& to, QWidget* window);

} // namespace ModMain
