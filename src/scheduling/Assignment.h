#pragma once
// Ticking and unticking a resource in a list for the selected cell. The cell
// selects a lesson (or none yet); a tick adds the resource to that lesson, an
// untick takes it out, and the lesson is written anew into every timetable
// of its tutors, rooms and classes. Any clash question has been asked before
// these run.

#include "scheduling/Availability.h"

#include <QString>

namespace ModMain {

// The lesson the cell selects, or null when it holds none.
const Lesson* SelectedLesson(const Cell& cell);

// Why the cell takes no lesson ("This period is marked Lunch ..."); empty
// when it can take one.
QString CellRefusal(const Cell& cell);

// Adds the resource to the cell's lesson, or starts one with the cell's own
// class, tutor or room. One user action. Returns the cell's slot id: -1 for
// a heading or a marked cell, which take none, and the cell's own when the
// project could not be written.
qint32 TickResource(ResourceKind kind, qint32 ResourceID, const Cell& cell);
// Takes the resource out of the cell's lesson, everywhere it shows; a lesson
// left with only the cell's owner is gone. One user action.
void UntickResource(ResourceKind kind, qint32 ResourceID, const Cell& cell);

} // namespace ModMain
