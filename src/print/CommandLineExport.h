#pragma once
// Exporting timetables from the command line, with no window:
//   vantor-planner --export-pdf OUT.pdf [--all] [--timetable NAME] PROJECT.VNPL
//   vantor-planner --export-html OUT.html [--all] [--timetable NAME] PROJECT.VNPL
// Without --all or --timetable the project's first timetable is written.

#include <QString>

namespace Print {

struct ExportRequest {
    QString output;
    bool html = false;
    bool all = false;
    QString timetable; // "Class 7A", as the window's title names it
    QString project;
};

// Writes the file; returns the exit status (0 when written) and puts any
// error, in words, into error. The project is only read.
int RunExport(const ExportRequest& request, QString& error);

} // namespace Print
