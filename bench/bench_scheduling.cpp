// Manual scheduling on a large school, each beside its budget: the four
// lists' statuses for a selected cell, counted in lessons, and ticking a
// class on a tutor's timetable with the lesson written into every timetable
// it belongs in, its commit included.

#include "LargeSchool.h"
#include "common/Common.h"
#include "scheduling/Assignment.h"
#include "scheduling/Availability.h"
#include "store/ModMain.h"
#include "store/Project.h"
#include "timetable/Lessons.h"

#include <QApplication>
#include <benchmark/benchmark.h>

namespace {
using ModMain::ResourceKind;

constexpr ResourceKind kKinds[] = {ResourceKind::Tutor, ResourceKind::Subject, ResourceKind::Room,
                                   ResourceKind::Class};

Bench::OpenSchool& school() {
    return Bench::Kept<Bench::OpenSchool>();
}

// Cells of tutors' timetables that hold a lesson, spread over the school.
QVector<ModMain::Cell> tutorCells() {
    QVector<ModMain::Cell> cells;
    for (auto rs = ModMain::DB().Execute(QStringLiteral(
             "SELECT Slot.id AS slot, Slot.TimetableID AS tt, Slot.DayTitleID AS day, "
             "Slot.TimeTitleID AS time, DayTitle.ProjectDayTitleID AS pdt, "
             "TimeTitle.ProjectTimeTitleID AS ptt FROM Slot, Timetable, DayTitle, TimeTitle "
             "WHERE Timetable.id = Slot.TimetableID AND Timetable.Type = 'Tutor' AND "
             "DayTitle.id = Slot.DayTitleID AND TimeTitle.id = Slot.TimeTitleID AND "
             "Slot.id % 7 = 0 ORDER BY Slot.id;"));
         !rs.eof(); rs.MoveNext()) {
        ModMain::Cell c;
        c.TimetableID = rs.Field("tt").toInt();
        c.Type = QStringLiteral("Tutor");
        c.SlotID = rs.Field("slot").toInt();
        c.DayTitleID = rs.Field("day").toInt();
        c.TimeTitleID = rs.Field("time").toInt();
        c.ProjectDayTitleID = rs.Field("pdt").toInt();
        c.ProjectTimeTitleID = rs.Field("ptt").toInt();
        cells << c;
    }
    return cells;
}

struct List {
    QVector<qint32> ids;
    QStringList status;
};

List listOf(ResourceKind kind) {
    List list;
    for (auto rs = ModMain::DB().Execute(QStringLiteral("SELECT id FROM %1 WHERE id<>1 ORDER BY "
                                                        "name;")
                                             .arg(ModMain::KindWord(kind)));
         !rs.eof(); rs.MoveNext()) {
        list.ids << rs.Field("id").toInt();
        list.status << QStringLiteral("Avail");
    }
    return list;
}

void BM_ListStatuses(benchmark::State& state) {
    school();
    const QVector<ModMain::Cell> cells = tutorCells();
    QVector<List> lists;
    for (const ResourceKind kind : kKinds)
        lists << listOf(kind);
    int next = 0;
    for (auto _ : state) {
        const ModMain::Cell& c = cells[next];
        for (int k = 0; k < 4; ++k) {
            const auto rows = ModMain::ListStates(kKinds[k], lists[k].ids, c);
            benchmark::DoNotOptimize(rows.data());
        }
        next = (next + 1) % cells.size();
    }
    state.SetLabel("part of the grid click");
}
BENCHMARK(BM_ListStatuses)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(3)
    ->ReportAggregatesOnly(true);

// A class to tick on each cell: another class than the one taught there, so
// the lesson is written anew into its tutor's, room's and both classes'
// timetables.
QVector<qint32> classesToTick(const QVector<ModMain::Cell>& cells) {
    QVector<qint32> classes;
    for (auto rs = ModMain::DB().Execute(QStringLiteral("SELECT id FROM Class WHERE id<>1"));
         !rs.eof(); rs.MoveNext())
        classes << rs.Field("id").toInt();
    QVector<qint32> picks;
    for (int i = 0; i < cells.size(); ++i) {
        const qint32 taught = ModMain::DB()
                                  .Execute(QStringLiteral("SELECT ClassID FROM ClassSlot WHERE "
                                                          "SlotID = %1")
                                               .arg(cells[i].SlotID))
                                  .Field(qint16(0))
                                  .toInt();
        const int at = qMax(0, int(classes.indexOf(taught)));
        picks << classes[(at + 1 + i % (classes.size() - 1)) % classes.size()];
    }
    return picks;
}

void BM_TickClass(benchmark::State& state) {
    school();
    const QVector<ModMain::Cell> cells = tutorCells();
    const QVector<qint32> classes = classesToTick(cells);
    const Bench::Restore restore;
    int next = 0;
    for (auto _ : state) {
        ModMain::TickResource(ResourceKind::Class, classes[next], cells[next]);
        state.PauseTiming();
        restore();
        // The lessons are read when the cell is clicked, before any tick.
        ModMain::LessonIndex::current();
        next = (next + 1) % cells.size();
        state.ResumeTiming();
    }
    state.SetLabel("budget 20 ms");
}
BENCHMARK(BM_TickClass)->Unit(benchmark::kMillisecond)->Repetitions(3)->ReportAggregatesOnly(true);

// The floor under every tick: one link and its durable commit, no mirroring.
void BM_TickSubject(benchmark::State& state) {
    school();
    const QVector<ModMain::Cell> cells = tutorCells();
    const qint32 subject = ModMain::DB()
                               .Execute(QStringLiteral("SELECT MIN(id) AS id FROM Subject WHERE "
                                                       "id<>1"))
                               .Field("id")
                               .toInt();
    const Bench::Restore restore;
    int next = 0;
    for (auto _ : state) {
        ModMain::TickResource(ResourceKind::Subject, subject, cells[next]);
        state.PauseTiming();
        restore();
        next = (next + 1) % cells.size();
        state.ResumeTiming();
    }
    state.SetLabel("the commit's floor, no budget");
}
BENCHMARK(BM_TickSubject)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(3)
    ->ReportAggregatesOnly(true);

} // namespace

int main(int argc, char** argv) {
    return Bench::RunWithWidgets(argc, argv);
}
