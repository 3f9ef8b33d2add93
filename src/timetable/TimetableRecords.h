#pragma once
// Writing and removing whole timetables, reading their rows, and naming them.
// Each writing operation is one user action: one transaction.

#include <QString>
#include <QVector>

namespace ModMain {

// Creates a timetable of type "Class", "Tutor" or "Room" for the owner, in
// the style: its Timetable row, its copies of the project's periods and days,
// and every lesson the owner already has. Returns the new id, or 0 when the
// style does not exist or the project could not be written (nothing is).
qint32 CreateTimetable(const QString& type, qint32 whoID, qint32 styleID);
// Whether the project has subjects besides the placeholder row.
bool HasRealSubjects();
// Removes the timetable, its headings, its slots and their links.
void DeleteTimetable(qint32 TimetableID);
// The first timetable of the project, or 0 when it has none.
qint32 FirstTimetableID();

struct TimetableRow {
    bool found = false;
    bool TimeOnTop = true;
    bool Time12Hour = false;
    QString Type;
};
TimetableRow ReadTimetable(qint32 TimetableID);
// The clock and axis of a timetable, as the format dialog edits them.
void SaveTimetableFormat(qint32 TimetableID, bool Time12Hour, bool TimeOnTop);

// "Class 7A", "Tutor Smith", "Room Lab"; empty when there is no such timetable.
QString GetTimetableName(qint32 TimetableID);

struct TimetableEntry {
    qint32 id = 0;
    QString name; // as GetTimetableName gives it
    QString type; // "Class", "Tutor", "Room" or what the file holds
    bool operator==(const TimetableEntry&) const = default;
};
// Every timetable with its name, in the project's order, read in one
// statement (GetTimetableName per timetable is the reference).
QVector<TimetableEntry> TimetableList();

// Whether the project has days and periods, which every timetable needs.
bool HasCalendar();

} // namespace ModMain
