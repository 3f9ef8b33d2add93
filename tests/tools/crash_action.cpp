// Runs one user action on a project and, when asked, kills itself with
// SIGKILL straight after the Nth statement the connection sends, as a power
// cut would. The store test then finds the file exactly as it was before the
// action or exactly as after it.
//
//   crash_action prepare PROJECT        fill a copy of blank.db with a school
//   crash_action prepare-tick PROJECT   then give Ms O'Hara a timetable and tick
//                                       her into its Monday 8:00 cell
//   crash_action ACTION PROJECT [N]     run ACTION; print the statement count
//                                       (autofill: fill 7A's free cells)

#include "autofill/AutoFillEngine.h"
#include "autofill/AutoFillState.h"
#include "common/Arrays.h"
#include "store/Records.h"
#include "support/Fixtures.h"
#include "timetable/TimetableGrid.h"
#include "timetable/TimetableState.h"
#include "wizards/ProjectCalendar.h"

#include <QApplication>
#include <csignal>
#include <cstdio>
#include <unistd.h>

namespace {
using namespace ModMain;
using namespace Fixtures;

const QStringList kDays = {"Monday", "Tuesday", "Wednesday", "Thursday", "Friday"};

QVector<QTime> hours() {
    QVector<QTime> t;
    for (int h = 8; h <= 14; ++h)
        t << QTime(h, 0);
    return t;
}

qint32 idOf(const QString& sql) {
    return value(sql).toInt();
}

// A small school whose rooms are booked in every period, so a new tutor
// timetable gets many cross-referenced slots.
void prepare() {
    Wizard::WriteProjectCalendar(hours(), kDays);
    QVector<qint32> rooms;
    for (int i = 0; i < 4; ++i)
        rooms << CreateRoomRecord(QString("Room %1").arg(i + 1), 30);
    const qint32 maths = CreateSubjectRecord("Maths", 1);
    const qint32 tutor = CreateTutorRecord("Ms O'Hara", "OH", QString(), QString());
    CreateTutorRecord("Mr Brown", "BR", QString(), QString());
    const qint32 room = CreateTimetable("Room", rooms.first(), 1);
    CreateTimetable("Class", insertClass("7A"), 2);
    for (int day = 1; day <= kDays.size(); ++day)
        for (int period = 1; period < hours().size(); ++period) {
            const qint32 slot = slotAt(room, day, period);
            for (qint32 r : rooms)
                CreateRoomSlotRecord(slot, r);
            CreateSubjectSlotRecord(slot, maths);
            CreateTutorSlotRecord(slot, tutor);
        }
}

qint32 tutorTimetable() {
    return idOf("SELECT id FROM Timetable WHERE Type = 'Tutor'");
}

// The grid of the first timetable, as the window draws it.
void showFirst(FlexGrid& grid) {
    Timetable::current().ID = FirstTimetableID();
    RefreshTable(grid);
}

bool run(const QString& action) {
    const qint32 first = FirstTimetableID();
    if (action == QLatin1String("prepare"))
        prepare();
    else if (action == QLatin1String("prepare-tick")) {
        const qint32 tutor = idOf("SELECT id FROM Tutor WHERE name = 'Ms O''Hara'");
        TickResource(ResourceKind::Tutor, tutor, cellAt(CreateTimetable("Tutor", tutor, 1), 1, 1));
    } else if (action == QLatin1String("tick-class"))
        // Mirrored into 7A's own timetable and the room's, which share the tutor.
        TickResource(ResourceKind::Class, idOf("SELECT id FROM Class WHERE name = '7A'"),
                     cellAt(tutorTimetable(), 1, 1));
    else if (action == QLatin1String("autofill")) {
        // 7A's free cells with Maths, Mr Brown and the rooms; the same
        // shuffle every time, so every run writes the same rows.
        AutoFill::State& a = AutoFill::state();
        a.AutoFill_WhoID = idOf("SELECT id FROM Timetable WHERE Type = 'Class'");
        a.AutoFill_IncludeSubjects = {idOf("SELECT id FROM Subject WHERE id <> 1")};
        a.AutoFill_IncludeSubjectPeriods = {20};
        a.AutoFill_Tutors = {idOf("SELECT id FROM Tutor WHERE name = 'Mr Brown'")};
        for (auto rs = DB().Execute("SELECT id FROM Room WHERE id <> 1"); !rs.eof(); rs.MoveNext())
            a.AutoFill_Rooms << rs.Field("id").toInt();
        a.AutoFill_MethodID = 1;
        Common::Randomize(7);
        FillProgress quiet;
        return RunAutoFill(quiet) == FillOutcome::Finished;
    } else if (action == QLatin1String("calendar"))
        Wizard::WriteProjectCalendar(hours(), kDays);
    else if (action == QLatin1String("create-tutor"))
        CreateTimetable("Tutor", idOf("SELECT id FROM Tutor WHERE name = 'Mr Brown'"), 3);
    else if (action == QLatin1String("delete"))
        // The room's timetable: the one with slots and links to remove.
        DeleteTimetable(idOf("SELECT id FROM Timetable WHERE Type = 'Room'"));
    else if (action == QLatin1String("format"))
        SaveTimetableFormat(first, true, false);
    else if (action == QLatin1String("day-template"))
        Wizard::StoreDayTemplate("Week B", kDays);
    else if (action == QLatin1String("hour-template"))
        Wizard::StoreHourTemplate("Short day", hours());
    else if (action == QLatin1String("sizes") || action == QLatin1String("same-size")) {
        FlexGrid grid;
        showFirst(grid);
        if (action == QLatin1String("sizes")) {
            grid.setColWidthTwips(1, 2400);
            grid.setRowHeightTwips(2, 1500);
        } else {
            grid.setRowCol(1, 2);
            grid.setColWidthTwips(2, 2000);
            SetSameColumnWidths(grid);
        }
        SaveTimetable(grid);
    } else
        return false;
    return true;
}
} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    if (argc < 3) {
        std::fprintf(stderr, "usage: crash_action ACTION PROJECT [N]\n");
        return 2;
    }
    // Any message box is a fault here: say so and stop.
    Common::SetMsgBoxHandler([](const QString& text, auto, auto, const QString&) {
        std::fprintf(stderr, "message: %s\n", qPrintable(text));
        std::_Exit(3);
        return Common::MsgResult::Ok;
    });
    const QString action = QString::fromLocal8Bit(argv[1]);
    const long killAfter = argc > 3 ? std::strtol(argv[3], nullptr, 10) : -1;
    long statements = 0;
    if (!DB().DBOpen(QString::fromLocal8Bit(argv[2]))) {
        std::fprintf(stderr, "cannot open %s\n", argv[2]);
        return 2;
    }
    clsSQLite::SetStatementHook([&] {
        if (++statements == killAfter)
            ::kill(::getpid(), SIGKILL);
    });
    if (!run(action)) {
        std::fprintf(stderr, "unknown action %s\n", argv[1]);
        return 2;
    }
    clsSQLite::SetStatementHook({});
    DB().DBClose();
    std::printf("%ld\n", statements);
    return 0;
}
