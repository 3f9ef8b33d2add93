#pragma once
// Filling the four resource lists beside the timetable: a status column, a
// check-box column and the name; each row's data is the resource's id.

#include "common/Variant.h"
#include "scheduling/Availability.h"

#include <QColor>
#include <QString>

class FlexGrid;

namespace ModMain {

// The kind's "id, name" rows by name, the placeholder row left out: what
// every dialog that offers tutors, subjects, rooms or classes lists.
TableArray ResourceNames(ResourceKind kind);

// Each returns whether the list holds any resource.
bool RefreshTutorList(FlexGrid& Grid);
bool RefreshSubjectList(FlexGrid& Grid);
bool RefreshRoomList(FlexGrid& Grid);
bool RefreshClassList(FlexGrid& Grid);

// Appends one row: status, check box (checked when Selected) and name, with
// the id as row data. The four lists' rows are alike, so each list's name
// stands for the same function.
void AddResourceToList(FlexGrid& Grid, qint32 ID, const QString& Name, const QString& Status,
                       bool Selected);
inline constexpr auto& AddTutorToList = AddResourceToList;
inline constexpr auto& AddSubjectToList = AddResourceToList;
inline constexpr auto& AddRoomToList = AddResourceToList;
inline constexpr auto& AddClassToList = AddResourceToList;

// Writes a row's status and check box; the status cell takes the status's
// colour, so free, busy and clashing read apart at a glance.
void SetListRow(FlexGrid& Grid, int Row, const QString& Status, bool Selected);
// The colour of a status: "Avail", "Busy", "Clash" or "-".
QColor StatusColour(const QString& Status);
// Unchecks every row, keeping the current row.
void DeselectGridList(FlexGrid& Grid);
// Back to "Avail" and unchecked, as when the list was filled (no cell chosen).
void ClearListStatuses(FlexGrid& Grid);

} // namespace ModMain
