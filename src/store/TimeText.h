#pragma once
// Times in a project are text. They are written as "HH:mm:ss" (24-hour) and
// read in that form or the 12-hour forms older files and templates hold.

#include <QString>
#include <QTime>

namespace TimeText {

// "08:00:00" for 8 am.
QString ToText(const QTime& time);
// "8:00am", "12:05pm": how the program shows a time to the user.
QString To12Hour(const QTime& time);
// Accepts "8:00", "08:00:00", "8:00am", "8:00 AM", "8:00:00 PM", "8.00am",
// with surrounding blanks; an invalid QTime when the text is no time.
QTime Parse(const QString& text);

} // namespace TimeText
