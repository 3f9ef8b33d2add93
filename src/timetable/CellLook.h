#pragma once
// What one timetable cell shows, on screen and on paper alike: its lessons'
// text, its period mark with the mark's word and tint, a warning tint for a
// marked cell that still holds a lesson, and a red edge for a double booking.

#include "timetable/Lessons.h"

#include <QColor>
#include <QString>

namespace ModMain {

struct CellLook {
    QString text;
    QColor back = Qt::white;
    QColor fore; // invalid: the timetable's own text colour
    bool conflict = false;
    QString tip;
    qint32 slot = 0; // the slot the cell stands for (0: none)
};

// The tint of a mark; unavailable periods take the timetable's own colour.
QColor MarkTint(qint32 special, const QColor& unavailable);
// The tint of a marked cell that holds a lesson all the same.
QColor WarningTint();
// The edge of a double-booked cell.
QColor ConflictEdge();

CellLook LookOfCell(const LessonIndex& idx, qint32 timetable, const Period& at, const QString& type,
                    const QColor& unavailableBack, const QColor& unavailableFore);

// Colour numbers are stored as red + 256 * green + 65536 * blue.
QColor ColourFromNumber(qint64 n);

} // namespace ModMain
