#include "timetable/TimetableGrid.h"

#include "common/FlexGrid.h"
#include "store/ModMain.h"
#include "store/Records.h"
#include "store/TimeText.h"
#include "timetable/CellLook.h"
#include "timetable/SlotLookup.h"
#include "timetable/TimetableState.h"
#include "timetable/TimetableText.h"

#include "store/Transaction.h"

#include <QFontMetrics>
#include <QHeaderView>
#include <QRegularExpression>
#include <QStyledItemDelegate>

namespace ModMain {

namespace {
constexpr int kHeadingTwips = 500;
constexpr int kPaddingPx = 12;
// Cell text longer than this wraps instead of widening its column further.
constexpr int kWidestAutoColumnTwips = 2400;

QColor colourFromNumber(qint64 n) {
    return ColourFromNumber(n);
}

QFont fontFrom(const QString& family, int size, const QFont& fallback, bool bold) {
    QFont f = fallback;
    if (!family.trimmed().isEmpty())
        f.setFamily(family.trimmed());
    if (size > 0)
        f.setPointSize(size);
    f.setBold(bold);
    return f;
}

void setHeaderColour(QHeaderView* header, const QColor& colour) {
    QPalette p = header->palette();
    p.setColor(QPalette::ButtonText, colour);
    p.setColor(QPalette::WindowText, colour);
    header->setPalette(p);
}

// The timetable's own fonts and colours: cells in the period font, the
// heading row and column in theirs.
void applyStyle(FlexGrid& g, qint32 id) {
    auto rs = DB().Execute(QStringLiteral("SELECT ColHeadFont, ColHeadFontSize, ColHeadForeground, "
                                          "RowHeadFont, RowHeadFontSize, RowHeadForeground, "
                                          "PeriodFont, PeriodFontSize, PeriodForeground, "
                                          "UnavailableBackground, UnavailableForeground FROM "
                                          "Timetable WHERE id = %1;")
                               .arg(id));
    if (rs.eof())
        return;
    Timetable::State& tt = Timetable::current();
    tt.UnavailableBack = colourFromNumber(rs.Field("UnavailableBackground").toLongLong());
    tt.UnavailableFore = colourFromNumber(rs.Field("UnavailableForeground").toLongLong());
    const QFont base = g.parentWidget() ? g.parentWidget()->font() : g.font();
    g.setFont(fontFrom(rs.Field("PeriodFont").toString(), rs.Field("PeriodFontSize").toInt(), base,
                       false));
    QPalette p = g.palette();
    p.setColor(QPalette::Text, colourFromNumber(rs.Field("PeriodForeground").toLongLong()));
    g.setPalette(p);
    g.horizontalHeader()->setFont(fontFrom(rs.Field("ColHeadFont").toString(),
                                           rs.Field("ColHeadFontSize").toInt(), base, true));
    setHeaderColour(g.horizontalHeader(),
                    colourFromNumber(rs.Field("ColHeadForeground").toLongLong()));
    g.verticalHeader()->setFont(fontFrom(rs.Field("RowHeadFont").toString(),
                                         rs.Field("RowHeadFontSize").toInt(), base, true));
    setHeaderColour(g.verticalHeader(),
                    colourFromNumber(rs.Field("RowHeadForeground").toLongLong()));
}

int textWidth(const QFont& font, const QString& text) {
    const QFontMetrics fm(font);
    int widest = 0;
    for (const QString& line : text.split(QStringLiteral("\r\n")))
        widest = std::max(widest, fm.horizontalAdvance(line));
    return widest;
}

// Stored sizes are kept unless they would cut a heading or a cell's three
// lines; only then is a row or column made larger.
void fitToText(FlexGrid& g) {
    const QFont colHead = g.horizontalHeader()->font();
    const QFont rowHead = g.verticalHeader()->font();
    const int lineHeight = QFontMetrics(g.font()).lineSpacing();
    const int widestAuto = g.twipsToPixels(kWidestAutoColumnTwips);

    int headingColumn = g.twipsToPixels(kHeadingTwips);
    for (int r = 1; r < g.rows(); ++r)
        headingColumn =
            std::max(headingColumn, textWidth(rowHead, g.textMatrix(r, 0)) + kPaddingPx);
    if (headingColumn > g.twipsToPixels(g.colWidthTwips(0)))
        g.setColWidthTwips(0, g.pixelsToTwips(headingColumn));

    const int headingRow = QFontMetrics(colHead).lineSpacing() + kPaddingPx;
    if (headingRow > g.twipsToPixels(g.rowHeightTwips(0)))
        g.setRowHeightTwips(0, g.pixelsToTwips(headingRow));

    for (int c = 1; c < g.cols(); ++c) {
        int need = textWidth(colHead, g.textMatrix(0, c));
        for (int r = 1; r < g.rows(); ++r)
            need = std::max(need, std::min(textWidth(g.font(), g.textMatrix(r, c)), widestAuto));
        need += kPaddingPx;
        if (need > g.twipsToPixels(g.colWidthTwips(c)))
            g.setColWidthTwips(c, g.pixelsToTwips(need));
    }
    const int threeLines = 3 * lineHeight + kPaddingPx;
    for (int r = 1; r < g.rows(); ++r)
        if (threeLines > g.twipsToPixels(g.rowHeightTwips(r)))
            g.setRowHeightTwips(r, g.pixelsToTwips(threeLines));
}

// Paints body cell (r, c) of the current timetable as its lessons and mark say.
void paintCell(FlexGrid& g, int r, int c, const Period& at) {
    const Timetable::State& tt = Timetable::current();
    const CellLook look = LookOfCell(LessonIndex::current(), tt.ID, at, tt.Type, tt.UnavailableBack,
                                     tt.UnavailableFore);
    g.setCellData(r, c, look.slot);
    g.setTextMatrix(r, c, look.text);
    g.setCellBackColor(r, c, look.back);
    g.setCellForeColor(r, c, look.fore);
    g.setCellEdge(r, c, look.conflict ? ConflictEdge() : QColor());
    g.setCellToolTip(r, c, look.tip);
}

// Adds a body row (across = false) or column (across = true) for one title;
// a row takes the title's height, a column its width.
void addLine(FlexGrid& g, bool across, qint32 id, const QString& heading, int height, int width) {
    if (across) {
        const int index = g.cols();
        g.setCols(index + 1);
        g.setColData(index, id);
        g.setTextMatrix(0, index, heading);
        g.setColWidthTwips(index, width);
    } else {
        const int index = g.rows();
        g.setRows(index + 1);
        g.setRowData(index, id);
        g.setTextMatrix(index, 0, heading);
        g.setRowHeightTwips(index, height);
    }
}
} // namespace

void RefreshTable(FlexGrid& g) {
    // One read transaction: the statements see one state of the file, cheaply.
    Transaction read(Transaction::Read);
    Timetable::State& tt = Timetable::current();
    const QString id = QString::number(tt.ID);
    g.clearGrid();
    g.setRows(1);
    g.setCols(1);
    auto rs = DB().Execute(
        QStringLiteral("SELECT id, type, TimeOnTop, Title FROM Timetable WHERE id = ") + id +
        QLatin1Char(';'));
    if (!rs.eof()) {
        tt.Type = rs.Field("type").toString();
        tt.TimeOnTop = rs.Field("TimeOnTop").toBool();
        tt.Title = rs.Field("Title").toString();
    }
    applyStyle(g, tt.ID);
    g.setRowHeightTwips(0, kHeadingTwips);
    g.setColWidthTwips(0, kHeadingTwips);
    const bool onTop = tt.TimeOnTop;

    QHash<qint32, qint32> projectDay, projectTime; // the timetable's titles -> the project's
    for (auto days = DB().Execute(QStringLiteral("SELECT id, DOW, Height, Width, SpecialID, "
                                                 "ProjectDayTitleID FROM DayTitle WHERE "
                                                 "TimetableID = ") +
                                  id + QStringLiteral(" ORDER BY pos;"));
         !days.eof(); days.MoveNext()) {
        addLine(g, !onTop, days.Field("id").toInt(), days.Field("DOW").toString(),
                days.Field("Height").toInt(), days.Field("Width").toInt());
        projectDay.insert(days.Field("id").toInt(), days.Field("ProjectDayTitleID").toInt());
    }

    for (auto times = DB().Execute(QStringLiteral("SELECT id, StartTime, Duration, Height, Width, "
                                                  "SpecialID, ProjectTimeTitleID FROM TimeTitle "
                                                  "WHERE TimetableID = ") +
                                   id + QStringLiteral(" ORDER BY pos;"));
         !times.eof(); times.MoveNext()) {
        QString heading;
        const int special = times.Field("SpecialID").toInt();
        if (special == SpecialID::Ordinary)
            heading = FormatTimeTitle(TimeText::Parse(times.Field("StartTime").toString()),
                                      times.Field("Duration").toInt());
        else if (special == SpecialID::Lunch)
            heading = QStringLiteral("Lunch");
        addLine(g, onTop, times.Field("id").toInt(), heading, times.Field("Height").toInt(),
                times.Field("Width").toInt());
        projectTime.insert(times.Field("id").toInt(), times.Field("ProjectTimeTitleID").toInt());
    }

    for (int c = 1; c < g.cols(); ++c)
        g.setColAlignment(c, Qt::AlignCenter);
    // Every cell from the lessons read once for the whole project.
    for (int r = 1; r < g.rows(); ++r)
        for (int c = 1; c < g.cols(); ++c) {
            const qint32 day = projectDay.value(onTop ? g.rowData(r) : g.colData(c));
            const qint32 time = projectTime.value(onTop ? g.colData(c) : g.rowData(r));
            paintCell(g, r, c, {day, time});
        }
    fitToText(g);
    // What was drawn is what the file holds: only the user's changes are saved.
    g.markSizesSaved();
}

void RefreshCell(FlexGrid& Grid, bool TimeOnTop, qint32 DayTitleID, qint32 TimeTitleID,
                 qint32 SlotID, qint32 SpecialID, const QString& Type) {
    // The cell shows its lessons and its mark, whatever slot the caller knew.
    Q_UNUSED(SlotID);
    Q_UNUSED(SpecialID);
    Q_UNUSED(Type);
    const qint32 colID = TimeOnTop ? TimeTitleID : DayTitleID;
    const qint32 rowID = TimeOnTop ? DayTitleID : TimeTitleID;
    int c = 1;
    while (c < Grid.cols() && Grid.colData(c) != colID)
        ++c;
    int r = 1;
    while (r < Grid.rows() && Grid.rowData(r) != rowID)
        ++r;
    if (c >= Grid.cols() || r >= Grid.rows())
        return;
    const auto project = [](const char* table, const char* column, qint32 id) {
        auto rs = DB().Execute(QStringLiteral("SELECT %1 FROM %2 WHERE id = %3")
                                   .arg(QLatin1String(column), QLatin1String(table))
                                   .arg(id));
        return rs.eof() ? 0 : rs.Field(qint16(0)).toInt();
    };
    Grid.setRowCol(r, c);
    paintCell(Grid, r, c,
              {project("DayTitle", "ProjectDayTitleID", DayTitleID),
               project("TimeTitle", "ProjectTimeTitleID", TimeTitleID)});
}

qint32 DoCurrentTimetableCreateGetSlot(FlexGrid& Grid) {
    const int r = Grid.row(), c = Grid.col();
    if (const qint32 existing = Grid.cellData(r, c); existing != 0)
        return existing;
    const bool onTop = Timetable::current().TimeOnTop;
    const qint32 dayTitleID = onTop ? Grid.rowData(r) : Grid.colData(c);
    const qint32 timeTitleID = onTop ? Grid.colData(c) : Grid.rowData(r);
    if (dayTitleID == 0 || timeTitleID == 0)
        return -1;
    const qint32 slot = CreateSlotAt(Timetable::current().ID, dayTitleID, timeTitleID);
    Grid.setCellData(r, c, slot);
    return slot;
}

void SaveTimetable(FlexGrid& Grid) {
    const Timetable::State& tt = Timetable::current();
    if (tt.ID == 0 || DB().IsReadOnly())
        return;
    // Looking never writes: only sizes the user changed go back to the file.
    bool changed = false;
    for (int c = 1; c < Grid.cols() && !changed; ++c)
        changed = Grid.colWidthChanged(c);
    for (int r = 1; r < Grid.rows() && !changed; ++r)
        changed = Grid.rowHeightChanged(r);
    if (!changed)
        return;
    // Sizes follow the user's dragging; they are no step to undo.
    QuietAction quiet;
    Transaction tx;
    if (!tx.ok())
        return;
    const QString columns = tt.TimeOnTop ? QStringLiteral("UPDATE TimeTitle SET width = ")
                                         : QStringLiteral("UPDATE DayTitle SET width = ");
    const QString rows = tt.TimeOnTop ? QStringLiteral("UPDATE DayTitle SET height = ")
                                      : QStringLiteral("UPDATE TimeTitle SET height = ");
    DB().Execute(QStringLiteral("BEGIN;"));
    for (int c = 1; c < Grid.cols(); ++c)
        if (Grid.colWidthChanged(c))
            DB().Execute(columns + QString::number(Grid.colWidthTwips(c)) +
                         QStringLiteral(" WHERE id = ") + QString::number(Grid.colData(c)));
    for (int r = 1; r < Grid.rows(); ++r)
        if (Grid.rowHeightChanged(r))
            DB().Execute(rows + QString::number(Grid.rowHeightTwips(r)) +
                         QStringLiteral(" WHERE id = ") + QString::number(Grid.rowData(r)));
    DB().Execute(QStringLiteral("COMMIT;"));
    Grid.markSizesSaved();
}

void SetSameColumnWidths(FlexGrid& Grid) {
    const int lWidth = Grid.colWidthTwips(Grid.col());
    for (int c = 1; c < Grid.cols(); ++c)
        Grid.setColWidthTwips(c, lWidth);
}

void SetSameRowHeights(FlexGrid& Grid) {
    const int lHeight = Grid.rowHeightTwips(Grid.row());
    for (int r = 1; r < Grid.rows(); ++r)
        Grid.setRowHeightTwips(r, lHeight);
}

namespace {
class CentredCellText : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    QString displayText(const QVariant& value, const QLocale& locale) const override {
        static const QRegularExpression ends(
            QStringLiteral("^[\\r\\n\\x{2028}]+|[\\r\\n\\x{2028}]+$"));
        return QStyledItemDelegate::displayText(value, locale).remove(ends);
    }
};
} // namespace

void UseCentredCellText(FlexGrid& Grid) {
    Grid.setItemDelegate(new CentredCellText(&Grid));
}

} // namespace ModMain
