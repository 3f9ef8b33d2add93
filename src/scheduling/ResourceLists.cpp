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

// Returns whether the list holds any data row.
bool fill(FlexGrid& g, const char* word, const char* sql) {
    setUpHeadings(g, QString::fromLatin1(word));
    for (auto rs = DB().Execute(QString::fromLatin1(sql)); !rs.eof(); rs.MoveNext())
        AddResourceToList(g, rs.Field("id").toInt(), Common::NullToString(rs.Field("name")),
                          QStringLiteral("Avail"), false);
    return g.rows() != 1;
}
} // namespace

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
    Grid.setRowData(r, ID);
    Grid.setTextMatrix(r, 0, Status);
    Grid.setCellCheck(r, 1, Selected ? FlexGrid::Checked : FlexGrid::Unchecked);
    Grid.setTextMatrix(r, 1, QString());
    Grid.setTextMatrix(r, 2, Name);
}

} // namespace ModMain
