#include "scheduling/ResourceLists.h"

#include "common/Common.h"
#include "common/FlexGrid.h"
#include "store/ModMain.h"

#include <QHeaderView>

namespace ModMain {

namespace {
using AddFn = void (*)(FlexGrid&, qint32, const QString&, const QString&, bool);

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
bool fill(FlexGrid& g, const char* word, const char* sql, AddFn add) {
    setUpHeadings(g, QString::fromLatin1(word));
    for (auto rs = DB().Execute(QString::fromLatin1(sql)); !rs.eof(); rs.MoveNext())
        add(g, rs.Field("id").toInt(), Common::NullToString(rs.Field("name")),
            QStringLiteral("Avail"), false);
    return g.rows() != 1;
}

void appendRow(FlexGrid& g, qint32 id, const QString& name, const QString& status, bool selected) {
    const int r = g.rows();
    g.setRows(r + 1);
    g.setRowData(r, id);
    g.setTextMatrix(r, 0, status);
    g.setCellCheck(r, 1, selected ? FlexGrid::Checked : FlexGrid::Unchecked);
    g.setTextMatrix(r, 1, QString());
    g.setTextMatrix(r, 2, name);
}
} // namespace

bool RefreshTutorList(FlexGrid& Grid) {
    return fill(Grid, "Tutor", "SELECT id, name, DisplayName FROM Tutor WHERE id<>1 ORDER BY name;",
         &AddTutorToList);
}

bool RefreshSubjectList(FlexGrid& Grid) {
    return fill(Grid, "Subject", "SELECT id, name FROM Subject WHERE id<>1 ORDER BY name;",
         &AddSubjectToList);
}

bool RefreshRoomList(FlexGrid& Grid) {
    return fill(Grid, "Room", "SELECT id, name FROM Room WHERE id<>1 ORDER BY name;", &AddRoomToList);
}

bool RefreshClassList(FlexGrid& Grid) {
    return fill(Grid, "Class", "SELECT id, name FROM Class WHERE id<>1 ORDER BY name;", &AddClassToList);
}

void AddTutorToList(FlexGrid& Grid, qint32 ID, const QString& Name, const QString& Status,
                    bool Selected) {
    appendRow(Grid, ID, Name, Status, Selected);
}

void AddSubjectToList(FlexGrid& Grid, qint32 ID, const QString& Name, const QString& Status,
                      bool Selected) {
    appendRow(Grid, ID, Name, Status, Selected);
}

void AddRoomToList(FlexGrid& Grid, qint32 ID, const QString& Name, const QString& Status,
                   bool Selected) {
    appendRow(Grid, ID, Name, Status, Selected);
}

void AddClassToList(FlexGrid& Grid, qint32 ID, const QString& Name, const QString& Status,
                    bool Selected) {
    appendRow(Grid, ID, Name, Status, Selected);
}

} // namespace ModMain
