// Every timetable of the large school (about 200) laid out and written to
// one PDF, as File > Export as PDF and --export-pdf --all do; budget 3 s.

#include "LargeSchool.h"
#include "print/PrintLayout.h"
#include "print/TimetablePrinting.h"

#include <QTemporaryDir>
#include <benchmark/benchmark.h>

namespace {

void BM_ExportAllToPdf(benchmark::State& state) {
    Bench::Kept<Bench::OpenSchool>();
    QTemporaryDir dir;
    const QString pdf = dir.filePath(QStringLiteral("all.pdf"));
    for (auto _ : state) {
        QVector<ModMain::PrintedTimetable> tables;
        for (const qint32 id : ModMain::AllTimetableIDs())
            tables << ModMain::PrintTimetable(id);
        if (!Print::WritePdf(pdf, tables, Print::PageOptions()).isEmpty())
            state.SkipWithError("the PDF could not be written");
        state.counters["timetables"] = double(tables.size());
    }
    state.SetLabel("budget 3 s");
}
BENCHMARK(BM_ExportAllToPdf)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->Repetitions(3)
    ->ReportAggregatesOnly(true);

} // namespace

int main(int argc, char** argv) {
    return Bench::RunWithWidgets(argc, argv);
}
