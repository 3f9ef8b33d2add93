// A click in the timetable grid on a large school: the four lists refreshed
// for the new cell, widgets included, the batched way the window uses and the
// per-row way it is proved equal to.

#include "LargeSchool.h"
#include "common/Common.h"
#include "common/FlexGrid.h"
#include "scheduling/Assignment.h"
#include "scheduling/Availability.h"
#include "scheduling/ListSelect.h"
#include "scheduling/ResourceLists.h"
#include "shell/frmMain.h"
#include "store/ModMain.h"
#include "store/Transaction.h"
#include "timetable/TimetableRecords.h"

#include <QApplication>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

namespace {
struct Window {
    Bench::OpenSchool school;
    frmMain window;
    Window() {
        window.resize(1200, 800);
        window.show();
        window.Form_Load(school.path());
        // A tutor's timetable: three lists to answer, most of them busy somewhere.
        const QVector<ModMain::TimetableEntry> list = ModMain::TimetableList();
        for (const ModMain::TimetableEntry& e : list)
            if (e.name.startsWith(QLatin1String("Tutor "))) {
                window.LoadTimetable(e.id);
                break;
            }
        QApplication::processEvents();
    }
};

Window& shown() {
    return Bench::Kept<Window>();
}

// The cells visited in turn: every day and period.
void nextCell(FlexGrid& g, int& k) {
    k = (k + 7) % ((g.rows() - 1) * (g.cols() - 1));
    g.setRowCol(1 + k / (g.cols() - 1), 1 + k % (g.cols() - 1));
}

void BM_GridClick(benchmark::State& state) {
    frmMain& w = shown().window;
    int k = 0;
    for (auto _ : state) {
        nextCell(*w.g, k); // the window refreshes the lists as for a click
        w.repaint();
        QApplication::processEvents();
    }
    state.SetLabel("budget 16 ms");
}
BENCHMARK(BM_GridClick)->Unit(benchmark::kMillisecond)->Repetitions(3)->ReportAggregatesOnly(true);

} // namespace

int main(int argc, char** argv) {
    return Bench::RunWithWidgets(argc, argv);
}
