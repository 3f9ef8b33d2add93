#pragma once
// Moving a lesson by dragging it to another period of the same timetable:
// where it would clash, and the move (or swap) itself, as one step.

#include "scheduling/Assignment.h"

#include <QStringList>
#include <QVector>

class QWidget;

namespace ModMain {

// Whether a lesson may be put in the cell: an ordinary period, not one
// marked for lunch, a break or unavailable.
bool CanHoldLesson(const Cell& cell);

// A tutor, room or class of the lesson that is in another lesson at the
// cell's day and period. The lesson leaving the cell (a swap's other half)
// does not count.
struct LessonClash {
    Member who;
    QStringList lessons; // the other lessons, described
};
QVector<LessonClash> LessonClashes(const Members& lesson, const Cell& at, const Lesson* leaving);

// Moves the lesson of from into to; when to holds a lesson, the two swap.
// A clash is asked about as a tick's is. One step, "Move Lesson" or "Swap
// Lessons"; false when refused, declined or nothing could be written.
bool MoveLesson(const Cell& from, const Cell& to, QWidget* window);

} // namespace ModMain
