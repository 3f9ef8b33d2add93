#include "common/ListHelpers.h"

#include "common/FlexGrid.h"

#include <QComboBox>
#include <QListWidget>

namespace Common {

namespace {
// The records of a result, skipping its heading row of column names.
template <class F> void forEachRecord(const TableArray& table, F&& f) {
    for (qsizetype r = 1; r < table.size(); ++r)
        f(table.at(r));
}
} // namespace

void GetFlexGrid_List(FlexGrid& grid, const TableArray& table, int firstCol) {
    grid.clearGrid();
    const int fields = table.isEmpty() ? 0 : static_cast<int>(table.first().size());
    if (grid.cols() < firstCol + fields - 1)
        grid.setCols(firstCol + fields - 1);
    grid.setRows(static_cast<int>(std::max<qsizetype>(table.size(), 1)));
    int row = 0;
    forEachRecord(table, [&](const QVector<Variant>& record) {
        ++row;
        grid.setRowData(row, record.value(0).toInt());
        for (int f = 1; f < record.size(); ++f)
            grid.setTextMatrix(row, firstCol + f - 1, record.at(f).toString());
    });
}

void GetComboItemData_List(QComboBox& combo, const TableArray& table) {
    combo.clear();
    forEachRecord(table, [&](const QVector<Variant>& record) {
        combo.addItem(record.value(1).toString(), record.value(0).toInt());
    });
}

void GetListBoxItemData_List(QListWidget& list, const TableArray& table) {
    list.clear();
    forEachRecord(table, [&](const QVector<Variant>& record) {
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
