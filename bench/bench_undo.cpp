// Edit > Undo and Redo of an Auto Fill of one class on the large school
// (budget 50 ms each): the inverse of the fill's changes applied, or the
// changes applied again, in one transaction.

#include "LargeSchool.h"
#include "autofill/AutoFillEngine.h"
#include "common/Arrays.h"
#include "shell/UndoHistory.h"

#include <benchmark/benchmark.h>

namespace {

// The school with one recorded fill, undone (redo) or not (undo).
struct FilledSchool {
    Bench::OpenSchool school;
    qint32 timetable = Bench::PrepareClassFill();
    UndoHistory history; // from here on, what is written is recorded
    FilledSchool() {
        Common::Randomize(1);
        ModMain::FillProgress quiet;
        if (ModMain::RunAutoFill(quiet) != ModMain::FillOutcome::Finished ||
            history.stack().count() != 1)
            qFatal("the fill to undo did not run");
    }
};

FilledSchool& filledSchool() {
    return Bench::Kept<FilledSchool>();
}

void BM_UndoAutoFill(benchmark::State& state) {
    FilledSchool& filled = filledSchool();
    for (auto _ : state) {
        if (!filled.history.undo())
            state.SkipWithError("undo failed");
        state.PauseTiming();
        filled.history.redo();
        state.ResumeTiming();
    }
    state.SetLabel("budget 50 ms");
}
BENCHMARK(BM_UndoAutoFill)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(3)
    ->ReportAggregatesOnly(true);

void BM_RedoAutoFill(benchmark::State& state) {
    FilledSchool& filled = filledSchool();
    for (auto _ : state) {
        state.PauseTiming();
        filled.history.undo();
        state.ResumeTiming();
        if (!filled.history.redo())
            state.SkipWithError("redo failed");
    }
    state.SetLabel("budget 50 ms");
}
BENCHMARK(BM_RedoAutoFill)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(3)
    ->ReportAggregatesOnly(true);

} // namespace

int main(int argc, char** argv) {
    return Bench::RunWithWidgets(argc, argv);
}
