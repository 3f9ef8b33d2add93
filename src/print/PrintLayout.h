#pragma once
// A timetable laid out for paper: its title, its heading texts and the text
// of every cell, read from the project. The painter, the PDF and the HTML
// writers all start from this, so what prints is what the window shows.

#include <QColor>
#include <QString>
#include <QStringList>
#include <QVector>

namespace ModMain {

struct PrintedTimetable {
    qint32 id = 0;
    QString title;              // the title table's one cell, "Class 7A"
    bool timeOnTop = true;      // periods across the top, days down the side
    QStringList columnHeadings; // periods when timeOnTop, else days
    QStringList rowHeadings;
    QVector<QStringList> cells;     // [row][column], cell texts as the grid shows them
    QVector<QVector<QColor>> backs; // [row][column], the cells' tints
    QVector<QVector<bool>> clashes; // [row][column], double-booked cells

    // The grid table as the print control of old took it: "^" and the
    // column headings, then one row a day (or period), columns between "|"
    // and rows between ";".
    QString FormatString() const;
};

// Lays out one timetable: headings in position order, "Lunch" for a lunch
// period, times in the timetable's own clock. Empty when there is none.
PrintedTimetable PrintTimetable(qint32 TimetableID);
// Every timetable of the project, in the order "SELECT id FROM timetable" gives.
QVector<qint32> AllTimetableIDs();

} // namespace ModMain
