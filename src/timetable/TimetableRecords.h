#pragma once
// Writing and removing whole timetables, and naming them.

#include <QString>

namespace ModMain {

// Writes the timetable the new-timetable wizard chose (type, owner and style
// from the wizard state): its Timetable row, its copies of the project's
// periods and days, and for a tutor the cross-referenced slots. Returns the
// new id, or 0 when the chosen style does not exist (nothing is written).
qint32 CreateTimetableFromWizard();
// Gives a new timetable one slot per room booking found anywhere in the
// project at each of its days and periods.
void DoCrossReferenceNewTimetable(qint32 TimetableID, const QString& Type, qint32 WhoID);
// Whether the project has subjects besides the placeholder row.
bool HasRealSubjects();
// Removes the timetable, its headings, its slots and their links.
void DeleteTimetable(qint32 TimetableID);
// "Class 7A", "Tutor Smith", "Room Lab"; empty when there is no such timetable.
QString GetTimetableName(qint32 TimetableID);

} // namespace ModMain
