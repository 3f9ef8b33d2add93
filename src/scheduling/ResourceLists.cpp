#include "scheduling/ResourceLists.h"

#include "common/Common.h"
#include "common/FlexGrid.h"
#include "store/ModMain.h"

#include <QHeaderView>

namespace ModMain {

namespace {
void setUpHeadings(FlexGrid& g, const QString& word) {
    g.clearGrid();
    g.setRows(1);
    g.setCols(3);
    g.setTextMatrix(0, 1, QStringLiteral("Sel"));
    g.setTextMatrix(0, 0, QStringLiteral("Status"));
    g.setTextMatrix(0, 2, word);
    g.setColWidthTwips(0, 900);
    g.setColWidthTwips(1, 480);
    g.setColAlignment(1, Qt::AlignCenter);
    g.setColAlignment(2, Qt::AlignLeft | Qt::AlignVCenter);
    g.horizontalHeader()->setStretchLastSection(true);
}

// One list row: id, status, check box and name.
void setRow(FlexGrid& g, int r, qint32 id, const QString& name, const QString& status,
            bool selected) {
    g.setRowData(r, id);
    SetListRow(g, r, status, selected);
    g.setTextMatrix(r, 1, QString());
    g.setTextMatrix(r, 2, name);
}

// Returns whether the list holds any data row.
bool fill(FlexGrid& g, const char* word, const char* sql) {
    auto rs = DB().Execute(QString::fromLatin1(sql));
    const TableArray& table = rs.vTableArray();
    // Showing another timetable lists the same resources again: then only the
    // statuses and boxes go back to their first state, not every cell anew.
    bool same = g.rows() == rs.RecordCount() + 1 && g.cols() == 3 &&
                g.textMatrix(0, 2) == QLatin1String(word);
    for (int r = 1; same && r < g.rows(); ++r)
        same = g.rowData(r) == table.at(r).value(0).toInt() &&
               g.textMatrix(r, 2) == table.at(r).value(1).toString();
    // Drawn once when filled, not once per row.
    g.setUpdatesEnabled(false);
    if (same) {
        for (int r = 1; r < g.rows(); ++r)
            SetListRow(g, r, QStringLiteral("Avail"), false);
    } else {
        setUpHeadings(g, QString::fromLatin1(word));
        // All rows at once: the rows are what AddResourceToList appends one by one.
        g.setRows(rs.RecordCount() + 1);
        for (int r = 1; !rs.eof(); rs.MoveNext(), ++r)
            setRow(g, r, rs.Field("id").toInt(), Common::NullToString(rs.Field("name")),
                   QStringLiteral("Avail"), false);
    }
    g.setUpdatesEnabled(true);
    return g.rows() != 1;
}
} // namespace

TableArray ResourceNames(ResourceKind kind) {
    return DB()
        .Execute(
            QStringLiteral("SELECT id, name FROM %1 WHERE id<>1 ORDER BY name").arg(KindWord(kind)))
        .vTableArray();
}

bool RefreshTutorList(FlexGrid& Grid) {
    return fill(Grid, "Tutor",
                "SELECT id, name, DisplayName FROM Tutor WHERE id<>1 ORDER BY name;");
}

bool RefreshSubjectList(FlexGrid& Grid) {
    return fill(Grid, "Subject", "SELECT id, name FROM Subject WHERE id<>1 ORDER BY name;");
}

bool RefreshRoomList(FlexGrid& Grid) {
    return fill(Grid, "Room", "SELECT id, name FROM Room WHERE id<>1 ORDER BY name;");
}

bool RefreshClassList(FlexGrid& Grid) {
    return fill(Grid, "Class", "SELECT id, name FROM Class WHERE id<>1 ORDER BY name;");
}

void AddResourceToList(FlexGrid& Grid, qint32 ID, const QString& Name, const QString& Status,
                       bool Selected) {
    const int r = Grid.rows();
    Grid.setRows(r + 1);
    setRow(Grid, r, ID, Name, Status, Selected);
}

QColor StatusColour(const QString& Status) {
    if (Status == QLatin1String("Busy"))
        return QColor(255, 226, 160);
    if (Status == QLatin1String("Clash"))
        return QColor(244, 176, 176);
    if (Status == QLatin1String("-"))
        return QColor(200, 222, 246);
    return QColor(214, 240, 214);
}

void SetListRow(FlexGrid& Grid, int Row, const QString& Status, bool Selected) {
    // Only what changed: most rows keep their status from one click to the next.
    if (Grid.textMatrix(Row, 0) != Status || Grid.cellBackColor(Row, 0) != StatusColour(Status)) {
        Grid.setTextMatrix(Row, 0, Status);
        Grid.setCellBackColor(Row, 0, StatusColour(Status));
    }
    const int check = Selected ? FlexGrid::Checked : FlexGrid::Unchecked;
    if (Grid.cellCheck(Row, 1) != check)
        Grid.setCellCheck(Row, 1, check);
}

void DeselectGridList(FlexGrid& Grid) {
    const int row = Grid.row(), col = Grid.col();
    for (int r = 1; r < Grid.rows(); ++r)
        Grid.setCellCheck(r, 1, FlexGrid::Unchecked);
    if (row > 0)
        Grid.setRowCol(row, std::max(col, 1));
}

void ClearListStatuses(FlexGrid& Grid) {
    for (int r = 1; r < Grid.rows(); ++r)
        SetListRow(Grid, r, QStringLiteral("Avail"), false);
}

} // namespace ModMain
