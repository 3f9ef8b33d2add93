#pragma once
// The timetable the main window shows. Every part of the program that works
// on "the current timetable" reads it here; tests reset it between cases.

#include <QColor>
#include <QString>

namespace Timetable {

struct State {
    qint32 ID = 0; // 0: no timetable shown
    bool TimeOnTop = true;
    bool Time12Hour = false;
    QString Type;
    QString Title;
    // The timetable's own colours for unavailable periods.
    QColor UnavailableBack{224, 244, 250};
    QColor UnavailableFore{0, 0, 0};
    // False while a timetable is being loaded, so grid events during the
    // rebuild can tell they are not the user's.
    bool Loaded = false;
};

State& current();
void Reset();

} // namespace Timetable
