#pragma once
// Filling grids, combo boxes and list boxes from a statement's result table
// (row 0 the column names). Each entry's id travels as its Qt::UserRole data
// (a grid row's as its row data), so a choice is read back by id, not by text.

#include "common/Variant.h"

#include <QList>
#include <QString>

class FlexGrid;
class QComboBox;
class QListWidget;

namespace Common {

// One grid row per record: the first field becomes the row data, the other
// fields the texts of columns firstCol, firstCol + 1, ... Heading row 0 is kept.
void GetFlexGrid_List(FlexGrid& grid, const TableArray& table, int firstCol = 1);

// Replaces the entries with each record's second field as text and first field
// (the id) as item data: statements read "SELECT id, name FROM ...".
void GetComboItemData_List(QComboBox& combo, const TableArray& table);
void GetListBoxItemData_List(QListWidget& list, const TableArray& table);

// Selects exactly the entries whose item data is one of ids.
void SelectListBox_ItemData(QListWidget& list, const QList<qint32>& ids);

// The item data of a list entry, or -1 when there is no such entry.
qint32 ListBoxItemData(const QListWidget& list, int index);

// Text of the entry with the given item data, or of the given index; empty
// when there is none.
QString GetComboText_ItemData(const QComboBox& combo, qint32 itemData);
QString GetComboText_List(const QComboBox& combo, int index);

} // namespace Common
