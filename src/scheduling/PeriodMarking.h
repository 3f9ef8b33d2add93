#pragma once
// The period commands on the timetable grid: marking the selected cells as
// ordinary, unavailable, lunch or break periods, and a whole lunch period.

#include <QtGlobal>

class FlexGrid;

namespace ModMain {

// The four resource lists beside the grid; a marked cell holds none of them.
struct ResourceListSet {
    FlexGrid* tutor = nullptr;
    FlexGrid* subject = nullptr;
    FlexGrid* room = nullptr;
    FlexGrid* klass = nullptr;
};

// Applies the code to every cell of the grid's selection, in whichever
// direction it was dragged, then puts the selection back.
void SetSpecialCells(FlexGrid& Grid, qint16 SpecialSlotID, const ResourceListSet& lists);
// Makes the current cell's period the lunch period, or an ordinary one again.
void DefineLunchColumn(FlexGrid& Grid, const ResourceListSet& lists);

} // namespace ModMain
