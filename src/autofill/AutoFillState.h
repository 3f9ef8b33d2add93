#pragma once
// What the Auto Fill wizard chooses and the engine reads: the class
// timetable, the subjects with their periods, the tutors, the rooms and the
// fill method. The lists keep the wizard's order.

#include <QVector>

namespace AutoFill {

// The screen numbers of the wizard; Finished ends its loop.
namespace Screen {
constexpr qint16 Welcome = 1;
constexpr qint16 Timetable = 2;
constexpr qint16 Subjects = 3;
constexpr qint16 Tutors = 4;
constexpr qint16 Rooms = 5;
constexpr qint16 Method = 6;
constexpr qint16 Complete = 7;
constexpr qint16 Finished = 8;
} // namespace Screen

struct State {
    qint32 AutoFill_WhoID = -1;
    // The timetable the timetable screen offers first when none was chosen.
    qint32 PreferredWhoID = -1;
    bool AutoFill_TimeOnTop = true;
    // Same index: a subject and the periods asked for it.
    QVector<qint32> AutoFill_IncludeSubjects;
    QVector<qint32> AutoFill_IncludeSubjectPeriods;
    QVector<qint32> AutoFill_Tutors;
    QVector<qint32> AutoFill_Rooms;
    qint16 AutoFill_MethodID = 0;

    // The method the Method Details dialog edits; -1 for a new one, then the
    // new row's id once it is saved.
    qint32 giMethodEditID = -1;

    bool AutoFill_Cancel = false;
    qint16 AutoFill_Screen = Screen::Welcome;
    bool AutoFill_ShowWelcome = true;

    qint32 AutoFill_IncludeSubjectsCount() const {
        return static_cast<qint32>(AutoFill_IncludeSubjects.size());
    }
    qint32 AutoFill_TutorsCount() const { return static_cast<qint32>(AutoFill_Tutors.size()); }
    qint32 AutoFill_RoomsCount() const { return static_cast<qint32>(AutoFill_Rooms.size()); }
};

// The program's one Auto Fill state.
State& state();
// Back to a fresh start, as the wizard begins (tests call it between cases).
void Reset();

} // namespace AutoFill
