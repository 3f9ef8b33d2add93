// The statements every click and every list refresh runs, on a large school.

#include "LargeSchool.h"
#include "common/Common.h"
#include "store/ModMain.h"

#include <benchmark/benchmark.h>

namespace {
Bench::OpenSchool& school() {
    return Bench::Kept<Bench::OpenSchool>();
}

// The availability test's deciding join: is a tutor busy at a project day and period?
void BM_TutorBusyJoin(benchmark::State& state) {
    school();
    int tutor = 2;
    for (auto _ : state) {
        auto rs = ModMain::DB().Execute(
            QStringLiteral(
                "SELECT Slot.ID AS ID FROM TutorSlot, Slot, DayTitle, TimeTitle WHERE Slot.ID<>-1 "
                "AND "
                "TutorSlot.SlotID = Slot.ID AND Slot.DayTitleID = DayTitle.ID AND "
                "DayTitle.ProjectDayTitleID = 3 AND TutorSlot.TutorID = %1 AND Slot.TimeTitleID = "
                "TimeTitle.ID AND TimeTitle.ProjectTimeTitleID = 4;")
                .arg(tutor));
        benchmark::DoNotOptimize(rs.RecordCount());
        tutor = tutor % 100 + 2;
    }
}
BENCHMARK(BM_TutorBusyJoin)->Unit(benchmark::kMicrosecond);

// Finding the slot of one timetable cell.
void BM_SlotLookup(benchmark::State& state) {
    school();
    int timetable = 1;
    for (auto _ : state) {
        auto tt = ModMain::DB().Execute(
            QStringLiteral(
                "SELECT ID FROM TimeTitle WHERE timetableid = %1 AND ProjectTimeTitleID = 5")
                .arg(timetable));
        auto dt = ModMain::DB().Execute(
            QStringLiteral(
                "SELECT ID FROM DayTitle WHERE timetableid = %1 AND ProjectDayTitleID = 2")
                .arg(timetable));
        auto rs = ModMain::DB().Execute(
            QStringLiteral("SELECT Slot.ID AS ID FROM Slot WHERE timetableid = %1 AND DayTitleID = "
                           "%2 AND TimeTitleID = %3")
                .arg(timetable)
                .arg(dt.Field("ID").toInt())
                .arg(tt.Field("ID").toInt()));
        benchmark::DoNotOptimize(rs.RecordCount());
        timetable = timetable % 200 + 1;
    }
}
BENCHMARK(BM_SlotLookup)->Unit(benchmark::kMicrosecond);
} // namespace

int main(int argc, char** argv) {
    return Bench::Run(argc, argv);
}
