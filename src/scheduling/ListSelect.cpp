#include "scheduling/ListSelect.h"

#include "common/Common.h"
#include "common/ErrorHandler.h"
#include "common/FlexGrid.h"
#include "common/Settings.h"
#include "common/Variant.h"
#include "scheduling/Assignment.h"
#include "scheduling/ResourceLists.h"
#include "scheduling/SchedulingState.h"
#include "scheduling/frmClash.h"
#include "store/ModMain.h"
#include "store/Records.h"
#include "store/Transaction.h"
#include "timetable/TimetableGrid.h"
#include "timetable/TimetableRecords.h"
#include "timetable/TimetableState.h"

#include <QLineEdit>
#include <QMenu>

using Common::MsgBox;
using Common::MsgButtons;
using Common::MsgIcon;

namespace ModMain {

namespace {
const QString kCrlf = QStringLiteral("\r\n");

// Paints the timetable cell again from the database.
void redrawCell(FlexGrid& g, const Cell& cell) {
    RefreshCell(g, Timetable::current().TimeOnTop, cell.DayTitleID, cell.TimeTitleID, cell.SlotID,
                -1, Timetable::current().Type);
}

const QString kConfigSection = QStringLiteral("Config");
const QString kAllowClashes = QStringLiteral("AllowClashes");
} // namespace

FlexGrid* ListOf(const SchedulingView& view, ResourceKind kind) {
    switch (kind) {
    case ResourceKind::Tutor:
        return view.lists.tutor;
    case ResourceKind::Subject:
        return view.lists.subject;
    case ResourceKind::Room:
        return view.lists.room;
    case ResourceKind::Class:
        return view.lists.klass;
    }
    return nullptr;
}

bool CurrentCell(const FlexGrid& g, Cell& cell) {
    return CellAt(g, g.row(), g.col(), cell);
}

bool CellAt(const FlexGrid& g, int r, int c, Cell& cell) {
    const Timetable::State& tt = Timetable::current();
    if (tt.ID == 0 || r < 1 || c < 1 || r >= g.rows() || c >= g.cols())
        return false;
    cell.TimetableID = tt.ID;
    cell.Type = tt.Type;
    cell.SlotID = g.cellData(r, c);
    cell.DayTitleID = tt.TimeOnTop ? g.rowData(r) : g.colData(c);
    cell.TimeTitleID = tt.TimeOnTop ? g.colData(c) : g.rowData(r);
    if (cell.DayTitleID == 0 || cell.TimeTitleID == 0)
        return false;
    cell.ProjectTimeTitleID = ProjectTimeTitleOf(cell.TimeTitleID);
    cell.ProjectDayTitleID = ProjectDayTitleOf(cell.DayTitleID);
    return true;
}

void RefreshListSelection(ResourceKind kind, FlexGrid& list, const Cell& cell) {
    QVector<qint32> ids;
    for (int r = 1; r < list.rows(); ++r)
        ids << list.rowData(r);
    const QVector<RowState> states = ListStates(kind, ids, cell);
    const int row = list.row(), col = list.col();
    list.setUpdatesEnabled(false);
    for (int r = 1; r < list.rows() && r - 1 < states.size(); ++r)
        SetListRow(list, r, states.at(r - 1).status, states.at(r - 1).checked);
    if (row > 0)
        list.setRowCol(row, std::max(col, 1));
    list.setUpdatesEnabled(true);
}

void FireGridClickEvent(const SchedulingView& view) {
    Guard("frmMain", "FireGridClickEvent", [&] {
        Cell cell;
        if (!CurrentCell(*view.g, cell)) {
            for (ResourceKind kind : {ResourceKind::Tutor, ResourceKind::Subject,
                                      ResourceKind::Room, ResourceKind::Class})
                if (FlexGrid* list = ListOf(view, kind))
                    ClearListStatuses(*list);
            return;
        }
        Transaction read(Transaction::Read);
        for (ResourceKind kind :
             {ResourceKind::Tutor, ResourceKind::Subject, ResourceKind::Room, ResourceKind::Class})
            if (FlexGrid* list = ListOf(view, kind))
                RefreshListSelection(kind, *list, cell);
    });
}

void ListMouseDown(ResourceKind kind, int Col, Qt::MouseButton Button, const SchedulingView& view) {
    Guard("frmMain", "ListMouseDown",
          VariableDump()
              .parameter(QStringLiteral("Kind"), int(kind))
              .parameter(QStringLiteral("Col"), Col)
              .parameter(QStringLiteral("Button"), int(Button)),
          [&] {
              FlexGrid* list = ListOf(view, kind);
              if (!list)
                  return;
              DoListSelect(kind, *list, Col, Button, view);
              Cell cell;
              if (CurrentCell(*view.g, cell))
                  RefreshListSelection(kind, *list, cell);
          });
}

void DoListSelect(ResourceKind kind, FlexGrid& List, int Col, Qt::MouseButton Button,
                  const SchedulingView& view) {
    Guard("ModMain", "DoListSelect", [&] {
        const int row = List.row();
        if (row < 1 || row >= List.rows())
            return;
        const qint32 id = List.rowData(row);
        Cell cell;
        const bool onCell = CurrentCell(*view.g, cell);
        Scheduling::State& s = Scheduling::state();
        if (Button == Qt::RightButton) {
            QMenu menu(view.window);
            menu.setObjectName(QStringLiteral("mnuListPopup"));
            // A busy tutor's other lessons, as the clash question lists them.
            if (kind == ResourceKind::Tutor && onCell &&
                !(s.gBusyLessons = BusyLessons(kind, id, cell)).isEmpty()) {
                QAction* details = menu.addAction(QStringLiteral("&Details..."));
                details->setObjectName(QStringLiteral("mnuTutorDetails"));
                QObject::connect(details, &QAction::triggered, &menu, [] { ShowTutorDetails(); });
            }
            if (view.extendMenu)
                view.extendMenu(menu, kind, id);
            if (!menu.isEmpty())
                menu.exec(QCursor::pos());
            return;
        }
        if (!onCell)
            return;
        if (Col != 1)
            return;
        const bool adding = List.cellCheck(row, 1) != FlexGrid::Checked;
        if (adding) {
            if (const QString refusal = CellRefusal(cell); !refusal.isEmpty()) {
                MsgBox(refusal, MsgButtons::Ok, MsgIcon::Information);
                return;
            }
            const QStringList busy = BusyLessons(kind, id, cell);
            if (!busy.isEmpty() && !AgreeToClash(kind, busy, view.window))
                return;
        }
        const ActionName name((adding ? QStringLiteral("Tick ") : QStringLiteral("Untick ")) +
                              KindWord(kind) + QLatin1Char(' ') + List.textMatrix(row, 2));
        if (adding) {
            cell.SlotID = TickResource(kind, id, cell);
            if (cell.SlotID > 0)
                view.g->setCellData(view.g->row(), view.g->col(), cell.SlotID);
        } else {
            UntickResource(kind, id, cell);
        }
        redrawCell(*view.g, cell);
    });
}

bool AgreeToClash(ResourceKind kind, const QStringList& BusyLessons, QWidget* parent) {
    // A ticked "don't show this again" keeps its promise: allowed.
    bool allowFuture = AllowClashesSetting();
    if (allowFuture)
        return true;
    const bool go = AllowClash(KindWord(kind), BusyLessons, allowFuture, parent);
    SetAllowClashesSetting(allowFuture);
    return go;
}

bool AllowClashesSetting() {
    return Variant(Common::GetSetting(QString::fromLatin1(Common::kConfigApp), kConfigSection,
                                      kAllowClashes, QStringLiteral("False")))
        .toBool();
}

void SetAllowClashesSetting(bool allow) {
    Common::SaveSetting(QString::fromLatin1(Common::kConfigApp), kConfigSection, kAllowClashes,
                        allow ? QStringLiteral("True") : QStringLiteral("False"));
}

bool AllowClash(const QString& ListType, const QStringList& BusyLessons, bool& AllowFutureClashes,
                QWidget* parent) {
    Scheduling::State& s = Scheduling::state();
    for (;;) {
        s.gbClash_ShowDetails = false;
        s.gbClash_Return = false;
        s.gbClash_AllowClash = AllowFutureClashes;
        frmClash dialog(parent);
        dialog.setWindowTitle(ListType + QStringLiteral(" clash"));
        dialog.setMessage(QStringLiteral("This ") + ListType +
                          QStringLiteral(" will be elsewhere at this time. ") +
                          QStringLiteral("Allow this clash to occur anyway?"));
        dialog.setAllowFutureClashes(AllowFutureClashes);
        dialog.exec();
        AllowFutureClashes = s.gbClash_AllowClash;
        if (!s.gbClash_ShowDetails)
            break;
        MsgBox(QStringLiteral("This ") + ListType +
                   QStringLiteral(" is also used in the following timetables:") + kCrlf +
                   BusyLessons.join(kCrlf) + kCrlf,
               MsgButtons::Ok, MsgIcon::Information);
    }
    return s.gbClash_Return;
}

void ShowTutorDetails() {
    Guard("frmMain", "mnuTutorDetails_Click", [&] {
        const Scheduling::State& s = Scheduling::state();
        MsgBox(QStringLiteral("This tutor is also allocated on the following timetables:") + kCrlf +
                   s.gBusyLessons.join(kCrlf) + kCrlf,
               MsgButtons::Ok, MsgIcon::Information);
    });
}

void FindMatch(QLineEdit& box, const FlexGrid& list) {
    Scheduling::State& s = Scheduling::state();
    if (s.gbBackspaced || box.text().isEmpty()) {
        s.gbBackspaced = false;
        return;
    }
    const QString typed = box.text();
    for (int r = 1; r < list.rows(); ++r) {
        const QString name = list.textMatrix(r, 2);
        if (!name.startsWith(typed, Qt::CaseInsensitive))
            continue;
        const int caret = box.cursorPosition();
        s.gbUpdateTextNameControls = false;
        box.setText(name);
        s.gbUpdateTextNameControls = true;
        // The completed part stays selected, so typing on overwrites it.
        box.setSelection(name.size(), caret - int(name.size()));
        return;
    }
}

void DoListNameKeyDown(QLineEdit& box, int KeyCode, QWidget* grid) {
    Scheduling::State& s = Scheduling::state();
    if (KeyCode == Qt::Key_Return || KeyCode == Qt::Key_Enter) {
        if (grid)
            grid->setFocus();
        return;
    }
    s.gbBackspaced =
        (KeyCode == Qt::Key_Backspace || KeyCode == Qt::Key_Delete) && !box.text().isEmpty();
}

void NameBoxLostFocus(ResourceKind kind, QLineEdit& box, const SchedulingView& view) {
    Guard("frmMain", "txtNameBox_LostFocus", [&] {
        FlexGrid* list = ListOf(view, kind);
        // Blanks around a name are no part of it; a blank box names nothing.
        const QString name = box.text().trimmed();
        if (!list || name.isEmpty())
            return;
        Cell cell;
        if (!CurrentCell(*view.g, cell))
            return;
        if (const int row = list->findRow(2, name); row >= 0) {
            list->setRowCol(row, 1);
            box.clear();
            ListMouseDown(kind, 1, Qt::LeftButton, view);
            return;
        }
        // Creating the resource and ticking it are one action; a new one is
        // busy nowhere, so no question waits inside it.
        const ActionName step(QStringLiteral("Tick ") + KindWord(kind) + QLatin1Char(' ') + name);
        Transaction tx;
        if (!tx.ok())
            return;
        qint32 id = 0;
        if (kind == ResourceKind::Tutor)
            id = CreateTutorRecord(name, name, QString(), QString());
        else if (kind == ResourceKind::Subject)
            id = CreateSubjectRecord(name, kNewSubjectLength);
        else if (kind == ResourceKind::Room)
            id = CreateRoomRecord(name, kNewRoomCapacity);
        if (id <= 1)
            return;
        AddResourceToList(*list, id, name, QStringLiteral("Avail"), false);
        list->setRowCol(list->rows() - 1, 1);
        box.clear();
        ListMouseDown(kind, 1, Qt::LeftButton, view);
    });
}

} // namespace ModMain
