// Auto Fill of one class on the large school, every tutor and room offered:
// the engine with its counts answered from the bookings read once (what the
// program runs, budget 20 ms with its commit), and the prescribed statements
// per candidate beside it for comparison.

#include "LargeSchool.h"
#include "autofill/AutoFillEngine.h"
#include "autofill/AutoFillState.h"
#include "common/Arrays.h"
#include "shell/UndoHistory.h"
#include "timetable/Lessons.h"

#include <benchmark/benchmark.h>

namespace {

template <ModMain::Scoring scoring> void BM_AutoFill(benchmark::State& state) {
    // One school for both ways of scoring; as in the program, the fill is
    // recorded for Edit > Undo.
    Bench::Kept<Bench::OpenSchool>();
    Bench::Kept<UndoHistory>();
    Bench::PrepareClassFill();
    const Bench::Restore restore;
    ModMain::LessonIndex::current();
    ModMain::FillProgress quiet;
    quint32 seed = 1;
    for (auto _ : state) {
        Common::Randomize(seed++);
        if (ModMain::RunAutoFill(quiet, scoring) != ModMain::FillOutcome::Finished)
            state.SkipWithError("the fill did not finish");
        state.PauseTiming();
        restore();
        // In the program the grid on show has read the lessons already.
        ModMain::LessonIndex::current();
        state.ResumeTiming();
    }
    state.SetLabel(scoring == ModMain::Scoring::Index ? "budget 20 ms, commit included"
                                                      : "the reference, no budget");
}
BENCHMARK_TEMPLATE(BM_AutoFill, ModMain::Scoring::Index)
    ->Name("BM_AutoFill")
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(3)
    ->ReportAggregatesOnly(true);
BENCHMARK_TEMPLATE(BM_AutoFill, ModMain::Scoring::Statements)
    ->Name("BM_AutoFillStatements")
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(3)
    ->ReportAggregatesOnly(true);

// The sequence phase alone: ten passes over the forty entries of the week.
void BM_ImproveSequence(benchmark::State& state) {
    QVector<qint32> week(40, 0);
    for (int i = 0; i < 36; ++i)
        week[i] = 2 + i / 6;
    ModMain::FillProgress quiet;
    quint32 seed = 1;
    for (auto _ : state) {
        state.PauseTiming();
        QVector<qint32> list = week;
        Common::Randomize(seed++);
        Common::RandomizeArray(list);
        state.ResumeTiming();
        ModMain::ImproveSequence(list, 10, quiet);
        benchmark::DoNotOptimize(list.data());
    }
    state.SetLabel("part of the fill");
}
BENCHMARK(BM_ImproveSequence)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    return Bench::RunWithWidgets(argc, argv);
}
