#pragma once
// Timetables on paper: painted onto pages (printer, PDF and the preview use
// the same painting), or written as one HTML page.
//
// Layouts: "Size to fit page" gives each timetable a page of its own and
// scales it, up or down, to fill the page inside the half-inch margins.
// "2 Columns", "3 Columns" and "4 Columns" divide each page into that many
// columns and scale every timetable to its column's width; timetables stack
// down a column, then fill the next column, then the next page.

#include "print/PrintLayout.h"

#include <QPageLayout>
#include <QString>
#include <QVector>
#include <functional>

class QPagedPaintDevice;
class QPainter;

namespace Print {

enum class Layout { SizeToFit = 1, Columns2 = 2, Columns3 = 3, Columns4 = 4 };

struct PageOptions {
    Layout layout = Layout::SizeToFit;
    QPageLayout::Orientation orientation = QPageLayout::Portrait;
    int columnWidth = 1400; // twips per body column: "Timetable Width:"
    int rowHeight = 900;    // twips per body row: "Timetable Height:"
};

// The heading column's width and the heading row's height, as in the grid.
constexpr int kHeadingTwips = 500;
// The title table's height.
constexpr int kTitleTwips = 600;

// Sets the device's paper to A4 in the orientation, with half-inch margins.
void SetUpPage(QPagedPaintDevice& device, const PageOptions& options);
// Paints the timetables onto the device's pages; the painter is active on
// it. eachPage, when given, paints on every page first (the preview's guides).
void PaintTimetables(QPainter& painter, QPagedPaintDevice& device,
                     const QVector<ModMain::PrintedTimetable>& tables, const PageOptions& options,
                     const std::function<void(QPainter&)>& eachPage = {});

// A PDF of the timetables with real text; empty on success, else the reason.
QString WritePdf(const QString& path, const QVector<ModMain::PrintedTimetable>& tables,
                 const PageOptions& options);

// One self-contained UTF-8 page with a table per timetable, every name
// escaped, styled to print a timetable a page.
QString TimetablesHtml(const QVector<ModMain::PrintedTimetable>& tables);
QString WriteHtml(const QString& path, const QVector<ModMain::PrintedTimetable>& tables);

} // namespace Print
