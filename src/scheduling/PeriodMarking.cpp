#include "scheduling/PeriodMarking.h"

#include "common/FlexGrid.h"
#include "scheduling/ListSelect.h"
#include "scheduling/PeriodCodes.h"
#include "scheduling/ResourceLists.h"
#include "store/Records.h"
#include "timetable/TimetableGrid.h"
#include "timetable/TimetableState.h"

#include <algorithm>

namespace ModMain {

void SetSpecialCells(FlexGrid& Grid, qint16 SpecialSlotID, const ResourceListSet& lists) {
    const int iOrigRow = Grid.row(), iOrigCol = Grid.col();
    const int iOrigRowSel = Grid.rowSel(), iOrigColSel = Grid.colSel();
    const int top = std::min(iOrigRow, iOrigRowSel), bottom = std::max(iOrigRow, iOrigRowSel);
    const int left = std::min(iOrigCol, iOrigColSel), right = std::max(iOrigCol, iOrigColSel);
    const Timetable::State& tt = Timetable::current();
    for (int r = std::max(top, 1); r <= bottom; ++r) {
        for (int c = std::max(left, 1); c <= right; ++c) {
            Grid.setRowCol(r, c);
            for (FlexGrid* list : {lists.tutor, lists.subject, lists.room, lists.klass})
                if (list)
                    DeselectGridList(*list);
            Cell cell;
            if (!CellAt(Grid, r, c, cell))
                continue; // a heading cell
            // A marked period holds no lesson: the cell's lessons are taken
            // out of every timetable they show in.
            QVector<Lesson> lessons;
            for (const Lesson* l : LessonIndex::current().cellLessons(tt.ID, cell.period()))
                lessons << *l;
            for (const Lesson& l : lessons)
                RemoveLesson(l);
            qint32 existing = 0;
            for (const SlotEntry& s : LessonIndex::current().slotsAt(cell.period()))
                if (s.timetable == tt.ID) {
                    existing = s.id;
                    break;
                }
            Grid.setCellData(r, c, existing);
            const quint64 stamp = LessonIndex::stamp();
            const qint32 slot = existing != 0 ? existing : DoCurrentTimetableCreateGetSlot(Grid);
            if (slot <= 0)
                continue;
            MarkSlot(slot, existing != 0, SpecialSlotID);
            LessonIndex::refreshAfterWrite({cell.period()}, stamp);
            const qint32 dayTitle = tt.TimeOnTop ? Grid.rowData(r) : Grid.colData(c);
            const qint32 timeTitle = tt.TimeOnTop ? Grid.colData(c) : Grid.rowData(r);
            RefreshCell(Grid, tt.TimeOnTop, dayTitle, timeTitle, slot, SpecialSlotID, tt.Type);
        }
    }
    Grid.selectRange(iOrigRow, iOrigCol, iOrigRowSel, iOrigColSel);
}

void DefineLunchColumn(FlexGrid& Grid, const ResourceListSet& lists) {
    const bool onTop = Timetable::current().TimeOnTop;
    const qint32 timeTitle = onTop ? Grid.colData(Grid.col()) : Grid.rowData(Grid.row());
    if (timeTitle == 0)
        return;
    const qint32 code = TimeTitleSpecialID(timeTitle);
    qint16 mark = 0;
    if (code == SpecialID::Ordinary)
        mark = SpecialID::Lunch;
    else if (code == SpecialID::Lunch)
        mark = SpecialID::Ordinary;
    else
        return;
    SetTimeTitleSpecialID(timeTitle, mark);
    // The whole period: its column (or row) from the first day to the last.
    if (onTop)
        Grid.selectRange(1, Grid.col(), Grid.rows() - 1, Grid.col());
    else
        Grid.selectRange(Grid.row(), 1, Grid.row(), Grid.cols() - 1);
    SetSpecialCells(Grid, mark, lists);
}

} // namespace ModMain
