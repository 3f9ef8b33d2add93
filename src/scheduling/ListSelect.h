#pragma once
// Ticking resources into the selected cell of the timetable grid: the grid
// click that refreshes the four lists, a click in a list, the clash question,
// the tutor's details, and the name boxes that find or create a resource.

#include "scheduling/Availability.h"
#include "scheduling/PeriodMarking.h"

#include <Qt>
#include <functional>

class FlexGrid;
class QLineEdit;
class QMenu;
class QWidget;

namespace ModMain {

struct Cell;

// The timetable grid, its four lists, and the window dialogs belong to.
struct SchedulingView {
    FlexGrid* g = nullptr;
    ResourceListSet lists;
    QWidget* window = nullptr;
    // Adds the window's own commands for the resource to a list's context
    // menu (editing it, adding another); may be empty.
    std::function<void(QMenu& menu, ResourceKind kind, qint32 id)> extendMenu;
};

FlexGrid* ListOf(const SchedulingView& view, ResourceKind kind);

// The grid's current cell of the shown timetable; false on a heading.
bool CurrentCell(const FlexGrid& g, Cell& cell);
// The same for the cell at row r, column c.
bool CellAt(const FlexGrid& g, int r, int c, Cell& cell);

// The statuses and check boxes of one list for a cell.
void RefreshListSelection(ResourceKind kind, FlexGrid& list, const Cell& cell);
// After a click (or a move) in the timetable grid: all four lists.
void FireGridClickEvent(const SchedulingView& view);

// A mouse-down in a list: ticks or unticks on the "Sel" column, or offers the
// tutor's details on a right click; then refreshes that list.
void ListMouseDown(ResourceKind kind, int Col, Qt::MouseButton Button, const SchedulingView& view);
void DoListSelect(ResourceKind kind, FlexGrid& List, int Col, Qt::MouseButton Button,
                  const SchedulingView& view);

// Asks in the clash dialog; true to go ahead. Details lists the other
// lessons. AllowFutureClashes presets the dialog's box and returns its state.
bool AllowClash(const QString& ListType, const QStringList& BusyLessons, bool& AllowFutureClashes,
                QWidget* parent);
// Whether the user lets the resource clash: yes when the setting says so,
// else as answered in the clash dialog (whose box then updates the setting).
bool AgreeToClash(ResourceKind kind, const QStringList& BusyLessons, QWidget* parent);
// "Ask Before Allowing Clashes": the saved answer of the dialog's box.
bool AllowClashesSetting();
void SetAllowClashesSetting(bool allow);

// The tutor's context menu's Details: the lessons of gBusyLessons.
void ShowTutorDetails();

// The name boxes.
void FindMatch(QLineEdit& box, const FlexGrid& list);
void DoListNameKeyDown(QLineEdit& box, int KeyCode, QWidget* grid);
// Leaving a box: ticks the named resource into the cell, creating it first
// when no row has that name. A blank box does nothing.
void NameBoxLostFocus(ResourceKind kind, QLineEdit& box, const SchedulingView& view);

} // namespace ModMain
