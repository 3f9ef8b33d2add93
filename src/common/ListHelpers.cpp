#include "common/ListHelpers.h"

#include "common/FlexGrid.h"
#include "store/clsSQLiteRecordset.h"

#include <QComboBox>
#include <QListWidget>

namespace Common {

namespace {
// The records of a result, skipping its heading row of column names.
template <class F>
void forEachRecord(const clsSQLiteRecordset& rs, F&& f) {
    const TableArray& table = rs.vTableArray();
    for (qint32 r = 1; r <= rs.RecordCount() && r < table.size(); ++r)
        f(table.at(r));
}
} // namespace

void GetFlexGrid_List(FlexGrid& grid, const clsSQLiteRecordset& rs, int firstCol) {
    grid.clearGrid();
    const TableArray& table = rs.vTableArray();
    const int fields = table.isEmpty() ? 0 : static_cast<int>(table.first().size());
    if (grid.cols() < firstCol + fields - 1)
        grid.setCols(firstCol + fields - 1);
    grid.setRows(rs.RecordCount() + 1);
    int row = 0;
    forEachRecord(rs, [&](const QVector<Variant>& record) {
        ++row;
        grid.setRowData(row, record.value(0).toInt());
        for (int f = 1; f < record.size(); ++f)
            grid.setTextMatrix(row, firstCol + f - 1, record.at(f).toString());
    });
}

void GetComboItemData_List(QComboBox& combo, const clsSQLiteRecordset& rs) {
    combo.clear();
    forEachRecord(rs, [&](const QVector<Variant>& record) {
        combo.addItem(record.value(1).toString(), record.value(0).toInt());
    });
}

void GetListBoxItemData_List(QListWidget& list, const clsSQLiteRecordset& rs) {
    list.clear();
    forEachRecord(rs, [&](const QVector<Variant>& record) {
        auto* item = new QListWidgetItem(record.value(1).toString(), &list);
        item->setData(Qt::UserRole, record.value(0).toInt());
    });
}

void SelectListBox_ItemData(QListWidget& list, const QList<qint32>& ids) {
    for (int i = 0; i < list.count(); ++i) {
        QListWidgetItem* item = list.item(i);
        item->setSelected(ids.contains(item->data(Qt::UserRole).toInt()));
    }
}

qint32 ListBoxItemData(const QListWidget& list, int index) {
    const QListWidgetItem* item = list.item(index);
    return item ? item->data(Qt::UserRole).toInt() : -1;
}

QString GetComboText_ItemData(const QComboBox& combo, qint32 itemData) {
    const int index = combo.findData(itemData);
    return index < 0 ? QString() : combo.itemText(index);
}

QString GetComboText_List(const QComboBox& combo, int index) {
    return index >= 0 && index < combo.count() ? combo.itemText(index) : QString();
}

} // namespace Common
