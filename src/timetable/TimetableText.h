#pragma once
// The texts of a timetable grid: what a cell shows and how a period heading reads.

#include <QHash>
#include <QString>
#include <QTime>

namespace ModMain {

// The cell text of a slot: three lines joined by "\r\n", chosen by the
// timetable type; lines stay when their list is empty.
QString FormatSlotText(qint32 SlotID, const QString& Type);
// The text of a slot without resources: the three empty lines, or nothing.
QString EmptySlotText(const QString& Type);
// "9:00 - 10:00": start and end of a period in the current clock style.
QString FormatTimeTitle(const QTime& StartTime, qint32 Duration);
// The same in the clock style given, for a timetable not on show.
QString FormatTimeTitle(const QTime& StartTime, qint32 Duration, bool Time12Hour);
// One clock time in the current timetable's style; the 12-hour form carries
// no AM/PM mark.
QString StripAMPM(const QTime& Time);
QString StripAMPM(const QTime& Time, bool Time12Hour);

} // namespace ModMain
