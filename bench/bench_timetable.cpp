// The timetable actions a user waits for, on a large school, each beside its
// budget: creating a tutor timetable (with its cross-referenced rooms),
// deleting a class timetable, and loading a timetable into the window.

#include "LargeSchool.h"
#include "common/Common.h"
#include "shell/frmMain.h"
#include "store/ModMain.h"
#include "store/Project.h"
#include "store/Transaction.h"
#include "timetable/TimetableRecords.h"

#include <QApplication>
#include <benchmark/benchmark.h>

namespace {
Bench::OpenSchool& school() {
    return Bench::Kept<Bench::OpenSchool>();
}

qint32 value(const QString& sql) {
    return ModMain::DB().Execute(sql).Field(qint16(0)).toInt();
}

void BM_CreateTutorTimetable(benchmark::State& state) {
    school();
    const qint32 tutor = value(QStringLiteral("SELECT id FROM Tutor WHERE name = 'Tutor 7'"));
    for (auto _ : state) {
        const qint32 id = ModMain::CreateTimetable(QStringLiteral("Tutor"), tutor, 1);
        state.PauseTiming();
        ModMain::DeleteTimetable(id);
        state.ResumeTiming();
    }
    state.SetLabel("budget 150 ms");
}
BENCHMARK(BM_CreateTutorTimetable)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(3)
    ->ReportAggregatesOnly(true);

// A copy of class timetable 1, slots and links included, to be deleted.
qint32 copyOfFirstClassTimetable() {
    Transaction tx;
    const qint32 klass = value(QStringLiteral("SELECT ClassID FROM Timetable WHERE id = 1"));
    const qint32 id = ModMain::CreateTimetable(QStringLiteral("Class"), klass, 1);
    auto& db = ModMain::DB();
    db.Execute(
        QStringLiteral("INSERT INTO Slot (TimetableID,StartTime,Duration,DOW,SpecialID,"
                       "DayTitleID,TimeTitleID) SELECT %1, s.StartTime, s.Duration, s.DOW, "
                       "1, nd.id, nt.id FROM Slot s, DayTitle od, TimeTitle ot, DayTitle nd, "
                       "TimeTitle nt WHERE s.TimetableID = 1 AND od.id = s.DayTitleID AND "
                       "ot.id = s.TimeTitleID AND nd.TimetableID = %1 AND "
                       "nd.ProjectDayTitleID = od.ProjectDayTitleID AND nt.TimetableID = %1 "
                       "AND nt.ProjectTimeTitleID = ot.ProjectTimeTitleID")
            .arg(id));
    for (const char* kind : {"Tutor", "Subject", "Room", "Class"})
        db.Execute(QStringLiteral("INSERT INTO %1Slot (SlotID, %1ID) SELECT s.id, 2 FROM Slot s "
                                  "WHERE s.TimetableID = %2")
                       .arg(QLatin1String(kind))
                       .arg(id));
    return id;
}

void BM_DeleteClassTimetable(benchmark::State& state) {
    school();
    for (auto _ : state) {
        state.PauseTiming();
        const qint32 id = copyOfFirstClassTimetable();
        state.ResumeTiming();
        ModMain::DeleteTimetable(id);
    }
    state.SetLabel("budget 10 ms");
}
BENCHMARK(BM_DeleteClassTimetable)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(3)
    ->ReportAggregatesOnly(true);

// Loading one timetable after another into the main window, the window's
// layout and painting included.
void BM_LoadTimetable(benchmark::State& state) {
    school();
    frmMain window;
    window.show();
    window.Form_Load(school().path());
    QApplication::processEvents();
    QVector<qint32> ids;
    for (const ModMain::TimetableEntry& e : ModMain::TimetableList())
        ids << e.id;
    int next = 0;
    for (auto _ : state) {
        window.LoadTimetable(ids[next]);
        window.repaint();
        QApplication::processEvents();
        next = (next + 37) % ids.size();
    }
    window.close();
    ModMain::OpenProject(school().path());
    state.SetLabel("budget 16 ms");
}
BENCHMARK(BM_LoadTimetable)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(3)
    ->ReportAggregatesOnly(true);
} // namespace

int main(int argc, char** argv) {
    return Bench::RunWithWidgets(argc, argv);
}
