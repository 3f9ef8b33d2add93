#pragma once
// Day names, calendar arithmetic and zero-terminated text.

#include <QDate>
#include <QString>

namespace Common {

// Position of an English day name, Monday = 0 ... Sunday = 6, ignoring case
// and surrounding blanks; -1 for anything else.
int GetDayOfWeekIndex(const QString& sDay);

// The same day in the next month, or that month's last day when it is shorter.
QDate NextMonth(const QDate& MyDate);
QDate EndOfMonth(const QDate& MyDate);
int DaysInMonth(const QDate& MyDate);

// The text of a buffer up to its first zero character.
QString StrZToStr(const QString& s);

} // namespace Common
