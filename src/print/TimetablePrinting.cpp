#include "print/TimetablePrinting.h"

#include "timetable/CellLook.h"

#include <QDir>
#include <QFontMetricsF>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>
#include <QTextStream>

#include <algorithm>

namespace Print {

using ModMain::PrintedTimetable;

namespace {
// "Times New Roman", or a face of the same metrics where it is not installed.
QFont printFont(int pixelSize, bool bold = false) {
    QFont font(QStringLiteral("Times New Roman"));
    font.setStyleHint(QFont::Serif);
    font.setPixelSize(pixelSize);
    font.setBold(bold);
    return font;
}

QFont headingFont() {
    return printFont(150, true);
}

// The heading column: as wide as the grid's, or as its longest heading.
double headingWidth(const PrintedTimetable& t) {
    const QFontMetricsF metrics(headingFont());
    double widest = 0;
    for (const QString& heading : t.rowHeadings)
        widest = std::max(widest, metrics.horizontalAdvance(heading));
    return std::max<double>(kHeadingTwips, widest + 120);
}

// The table's size in twips before it is scaled to its place.
QSizeF naturalSize(const PrintedTimetable& t, const PageOptions& o) {
    return {headingWidth(t) + double(o.columnWidth) * t.columnHeadings.size(),
            kTitleTwips + kHeadingTwips + double(o.rowHeight) * t.rowHeadings.size()};
}

// Draws one timetable at the painter's origin, in twips.
void paintTable(QPainter& p, const PrintedTimetable& t, const PageOptions& o) {
    const QSizeF size = naturalSize(t, o);
    p.setPen(QPen(Qt::black, 10));
    p.setFont(printFont(240, true));
    p.drawText(QRectF(0, 0, size.width(), kTitleTwips), Qt::AlignCenter, t.title);

    const double top = kTitleTwips;
    const double heading = headingWidth(t);
    const auto colLeft = [&](int c) { return c == 0 ? 0.0 : heading + (c - 1.0) * o.columnWidth; };
    const auto rowTop = [&](int r) {
        return top + (r == 0 ? 0.0 : kHeadingTwips + (r - 1.0) * o.rowHeight);
    };
    const auto cellRect = [&](int r, int c) {
        return QRectF(colLeft(c), rowTop(r), c == 0 ? heading : o.columnWidth,
                      r == 0 ? kHeadingTwips : o.rowHeight);
    };
    const int cols = int(t.columnHeadings.size()) + 1;
    const int rows = int(t.rowHeadings.size()) + 1;
    p.fillRect(QRectF(0, top, size.width(), kHeadingTwips), QColor(235, 235, 235));
    p.fillRect(QRectF(0, top, heading, size.height() - top), QColor(235, 235, 235));

    p.setFont(headingFont());
    for (int c = 1; c < cols; ++c)
        p.drawText(cellRect(0, c).adjusted(20, 0, -20, 0), Qt::AlignCenter | Qt::TextWordWrap,
                   t.columnHeadings[c - 1]);
    for (int r = 1; r < rows; ++r)
        p.drawText(cellRect(r, 0).adjusted(20, 0, -20, 0), Qt::AlignCenter | Qt::TextWordWrap,
                   t.rowHeadings[r - 1]);
    p.setFont(printFont(170));
    for (int r = 1; r < rows; ++r)
        for (int c = 1; c < cols; ++c) {
            const QColor back = t.backs.value(r - 1).value(c - 1, Qt::white);
            if (back.isValid() && back != Qt::white)
                p.fillRect(cellRect(r, c), back);
            if (t.clashes.value(r - 1).value(c - 1)) {
                // A double booking reads on paper as on screen: a red edge.
                p.save();
                p.setPen(QPen(ModMain::ConflictEdge(), 40));
                p.drawRect(cellRect(r, c).adjusted(40, 40, -40, -40));
                p.restore();
            }
            QString text = t.cells.value(r - 1).value(c - 1);
            text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
            p.drawText(cellRect(r, c).adjusted(30, 30, -30, -30),
                       Qt::AlignCenter | Qt::TextWordWrap, text.trimmed());
        }
    for (int r = 0; r <= rows; ++r) {
        const double y = r == rows ? size.height() : rowTop(r);
        p.drawLine(QPointF(0, y), QPointF(size.width(), y));
    }
    for (int c = 0; c <= cols; ++c) {
        const double x = c == cols ? size.width() : colLeft(c);
        p.drawLine(QPointF(x, top), QPointF(x, size.height()));
    }
}
} // namespace

void SetUpPage(QPagedPaintDevice& device, const PageOptions& options) {
    device.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), options.orientation,
                                     QMarginsF(0.5, 0.5, 0.5, 0.5), QPageLayout::Inch));
}

void PaintTimetables(QPainter& painter, QPagedPaintDevice& device,
                     const QVector<PrintedTimetable>& tables, const PageOptions& options,
                     const std::function<void(QPainter&)>& eachPage) {
    const auto newPage = [&] {
        device.newPage();
        if (eachPage)
            eachPage(painter);
    };
    if (eachPage)
        eachPage(painter);
    // The page inside the margins, in twips.
    const QRectF page = device.pageLayout().paintRect(QPageLayout::Inch);
    const double width = page.width() * 1440, height = page.height() * 1440;
    const double pixelsPerTwip = device.logicalDpiX() / 1440.0;
    const int columns = static_cast<int>(options.layout);
    const double columnWidth = width / columns;
    const double gap = 240;

    bool first = true;
    int column = 0;
    double y = 0;
    for (const PrintedTimetable& t : tables) {
        const QSizeF natural = naturalSize(t, options);
        double scale = 0;
        if (options.layout == Layout::SizeToFit) {
            scale = std::min(width / natural.width(), height / natural.height());
            if (!first)
                newPage();
            y = 0;
        } else {
            scale = (columnWidth - (columns > 1 ? gap : 0)) / natural.width();
            const double tall = natural.height() * scale;
            if (!first && y + tall > height) {
                y = 0;
                if (++column == columns) {
                    column = 0;
                    newPage();
                }
            }
        }
        first = false;
        painter.save();
        painter.scale(pixelsPerTwip, pixelsPerTwip);
        painter.translate(column * columnWidth, y);
        painter.scale(scale, scale);
        paintTable(painter, t, options);
        painter.restore();
        y += natural.height() * scale + gap;
    }
}

QString WritePdf(const QString& path, const QVector<PrintedTimetable>& tables,
                 const PageOptions& options) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return QStringLiteral("The file %1 cannot be written: %2.")
            .arg(QDir::toNativeSeparators(path), file.errorString());
    {
        QPdfWriter pdf(&file);
        pdf.setTitle(QStringLiteral("Timetables"));
        pdf.setCreator(QStringLiteral("Vantor Planner"));
        pdf.setResolution(600);
        SetUpPage(pdf, options);
        QPainter painter(&pdf);
        PaintTimetables(painter, pdf, tables, options);
    }
    if (!file.commit())
        return QStringLiteral("The file %1 cannot be written: %2.")
            .arg(QDir::toNativeSeparators(path), file.errorString());
    return QString();
}

QString TimetablesHtml(const QVector<PrintedTimetable>& tables) {
    QString html;
    QTextStream out(&html);
    out << "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
           "<title>Timetables</title>\n<style>\n"
           "@page { margin: 0.5in; }\n"
           "body { font-family: \"Times New Roman\", \"Liberation Serif\", serif; }\n"
           "section { break-after: page; page-break-after: always; }\n"
           "section:last-child { break-after: auto; page-break-after: auto; }\n"
           "h1 { text-align: center; font-size: 18pt; margin: 0 0 8pt; }\n"
           "table { border-collapse: collapse; width: 100%; table-layout: fixed; }\n"
           "th, td { border: 1px solid #000; padding: 4pt; text-align: center; "
           "vertical-align: middle; font-size: 10pt; }\n"
           "th { background: #ebebeb; }\n"
           "td { height: 3.2em; }\n"
           "</style>\n</head>\n<body>\n";
    const auto cell = [](const QString& text) {
        QStringList lines;
        for (const QString& line : QString(text)
                                       .replace(QStringLiteral("\r\n"), QStringLiteral("\n"))
                                       .split(QLatin1Char('\n')))
            lines << line.toHtmlEscaped();
        while (!lines.isEmpty() && lines.last().isEmpty())
            lines.removeLast();
        return lines.join(QStringLiteral("<br>"));
    };
    for (const PrintedTimetable& t : tables) {
        out << "<section>\n<h1>" << t.title.toHtmlEscaped()
            << "</h1>\n<table>\n<thead><tr><th></th>";
        for (const QString& heading : t.columnHeadings)
            out << "<th>" << heading.toHtmlEscaped() << "</th>";
        out << "</tr></thead>\n<tbody>\n";
        for (int r = 0; r < t.rowHeadings.size(); ++r) {
            out << "<tr><th>" << t.rowHeadings[r].toHtmlEscaped() << "</th>";
            for (int c = 0; c < t.cells.value(r).size(); ++c) {
                const QColor back = t.backs.value(r).value(c, Qt::white);
                QString style;
                if (back.isValid() && back != Qt::white)
                    style += QStringLiteral("background:%1;").arg(back.name());
                if (t.clashes.value(r).value(c))
                    style += QStringLiteral("outline:3px solid %1;outline-offset:-3px;")
                                 .arg(ModMain::ConflictEdge().name());
                out << (style.isEmpty() ? QStringLiteral("<td>")
                                        : QStringLiteral("<td style=\"%1\">").arg(style))
                    << cell(t.cells.value(r).value(c)) << "</td>";
            }
            out << "</tr>\n";
        }
        out << "</tbody>\n</table>\n</section>\n";
    }
    out << "</body>\n</html>\n";
    return html;
}

QString WriteHtml(const QString& path, const QVector<PrintedTimetable>& tables) {
    QSaveFile file(path);
    const QByteArray bytes = TimetablesHtml(tables).toUtf8();
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        return QStringLiteral("The file %1 cannot be written: %2.")
            .arg(QDir::toNativeSeparators(path), file.errorString());
    return QString();
}

} // namespace Print
