#pragma once
// Drawing the current timetable into a grid and writing the user's row
// heights and column widths back. Body rows and columns carry their DayTitle
// and TimeTitle ids, body cells their Slot id (0: no slot yet).

#include <QString>

class FlexGrid;

namespace ModMain {

// Rebuilds the grid of the current timetable from the database.
void RefreshTable(FlexGrid& Grid);
// Paints the cell of that day and time title; SpecialID -1 reads it from the slot.
void RefreshCell(FlexGrid& Grid, bool TimeOnTop, qint32 DayTitleID, qint32 TimeTitleID,
                 qint32 SlotID, qint32 SpecialID, const QString& Type);
// The slot behind the grid's current cell, created when missing; -1 on a heading.
qint32 DoCurrentTimetableCreateGetSlot(FlexGrid& Grid);
// Writes the sizes the user changed since the grid was drawn or last saved to
// the current timetable's title rows; nothing when none changed.
void SaveTimetable(FlexGrid& Grid);
// The current column's width (row's height) given to every body column (row).
void SetSameColumnWidths(FlexGrid& Grid);
void SetSameRowHeights(FlexGrid& Grid);
// Draws the grid's cells without the blank lines a cell has for the kinds it
// lacks at either end, so a cell with a room alone shows it in the middle.
void UseCentredCellText(FlexGrid& Grid);

} // namespace ModMain
