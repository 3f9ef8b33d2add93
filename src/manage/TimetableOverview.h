#pragma once
// What the timetable list and the capacity report show: every timetable and
// every class, tutor and room still without one; each tutor's periods.

#include <QString>
#include <QVector>

namespace ModMain {

struct TimetableListRow {
    QString name;
    QString type;
    bool created = false;
    qint32 id = 0; // the timetable's when created, else the owner's
};
// Existing timetables by type, then classes, tutors and rooms without one,
// each by name.
QVector<TimetableListRow> TimetableOpenList();

struct CapacityRow {
    QString name;
    QString periods;
};
// Every tutor by name with the links to it in all timetables.
QVector<CapacityRow> TutorCapacity();

} // namespace ModMain
