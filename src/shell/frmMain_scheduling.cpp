// frmMain's hand scheduling: the grid's clicks and moves, the four lists and
// their name boxes, the clash setting, and the period commands. The work
// lives in scheduling/.

#include "shell/frmMain.h"

#include "common/Common.h"
#include "common/ErrorHandler.h"
#include "common/FlexGrid.h"
#include "scheduling/Assignment.h"
#include "scheduling/ListSelect.h"
#include "scheduling/PeriodMarking.h"
#include "scheduling/ResourceLists.h"
#include "scheduling/SchedulingState.h"
#include "store/ModMain.h"
#include "store/Records.h"
#include "store/Transaction.h"
#include "timetable/TimetableState.h"

#include <QAction>
#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QStatusBar>
#include <QToolTip>
#include <array>

using Common::MsgBox;
using Common::MsgButtons;
using Common::MsgIcon;
using Common::MsgResult;
using ModMain::ResourceKind;

namespace {
struct ListBinding {
    FlexGrid* list;
    QLineEdit* box;
    ResourceKind kind;
};
} // namespace

// Each list with its name box (classes have none) and its kind.
static std::array<ListBinding, 4> bindingsOf(const frmMain& w) {
    return {{{w.gTutor, w.txtTutorName, ResourceKind::Tutor},
             {w.gSubject, w.txtSubjectName, ResourceKind::Subject},
             {w.gRoom, w.txtRoomName, ResourceKind::Room},
             {w.gClass, nullptr, ResourceKind::Class}}};
}

ModMain::SchedulingView frmMain::schedulingView() const {
    ModMain::SchedulingView view;
    view.g = g;
    view.lists = {gTutor, gSubject, gRoom, gClass};
    view.window = const_cast<frmMain*>(this);
    view.extendMenu = [w = const_cast<frmMain*>(this)](QMenu& menu, ResourceKind kind, qint32 id) {
        w->extendListMenu(menu, kind, id);
    };
    return view;
}

void frmMain::FireGridClickEvent() {
    ModMain::FireGridClickEvent(schedulingView());
}

void frmMain::readOnlyRefused() {
    statusBar()->showMessage(
        QStringLiteral("This project is open for reading only, so nothing was changed."), 8000);
}

void frmMain::wireScheduling() {
    txtTutorName = findChild<QLineEdit*>(QStringLiteral("txtTutorName"));
    txtSubjectName = findChild<QLineEdit*>(QStringLiteral("txtSubjectName"));
    txtRoomName = findChild<QLineEdit*>(QStringLiteral("txtRoomName"));
    g->setTabKeyNavigation(false);
    g->viewport()->installEventFilter(this);
    g->viewport()->setAcceptDrops(true);
    // A click, or an arrow key, that lands on another cell.
    connect(g, &QTableWidget::currentCellChanged, this, [this] {
        if (m_quietGrid == 0 && Timetable::current().Loaded)
            FireGridClickEvent();
    });
    connect(g, &FlexGrid::gridMouseDown, this, [this](int, int, Qt::MouseButton) {
        if (m_quietGrid == 0 && Timetable::current().Loaded)
            FireGridClickEvent();
    });
    for (const ListBinding& b : bindingsOf(*this)) {
        const ResourceKind kind = b.kind;
        connect(b.list, &FlexGrid::gridMouseDown, this,
                [this, kind](int, int c, Qt::MouseButton button) {
                    if (ModMain::DB().IsReadOnly() && button != Qt::RightButton) {
                        if (c == 1)
                            readOnlyRefused();
                        return;
                    }
                    ModMain::ListMouseDown(kind, c, button, schedulingView());
                });
        b.list->installEventFilter(this);
        b.list->viewport()->installEventFilter(this);
        b.list->verticalHeader()->viewport()->installEventFilter(this);
        if (!b.box)
            continue;
        QLineEdit* box = b.box;
        box->installEventFilter(this);
        connect(box, &QLineEdit::textChanged, this, [box, list = b.list] {
            if (Scheduling::state().gbUpdateTextNameControls)
                ModMain::FindMatch(*box, *list);
        });
        connect(box, &QLineEdit::editingFinished, this, [this, box, kind] {
            if (!ModMain::ProjectIsOpen())
                return;
            if (!ModMain::DB().IsReadOnly())
                ModMain::NameBoxLostFocus(kind, *box, schedulingView());
            else if (!box->text().trimmed().isEmpty())
                readOnlyRefused();
        });
    }
    connect(mnuTools, &QMenu::aboutToShow, this,
            [this] { mnuToolsAskClashes->setChecked(!ModMain::AllowClashesSetting()); });
}

bool frmMain::eventFilter(QObject* watched, QEvent* event) {
    if (watched == g->viewport() && lessonDragEvent(event))
        return true;
    for (const ListBinding& b : bindingsOf(*this)) {
        if (b.box && watched == b.box && event->type() == QEvent::KeyPress) {
            // Enter goes on to the grid; the box then loses the focus and ticks.
            ModMain::DoListNameKeyDown(*b.box, static_cast<QKeyEvent*>(event)->key(), g);
            continue;
        }
        if (watched == b.list && event->type() == QEvent::KeyPress &&
            static_cast<QKeyEvent*>(event)->key() == Qt::Key_Space) {
            // Space ticks or unticks the current row, as a click on its box does.
            if (!ModMain::DB().IsReadOnly())
                ModMain::ListMouseDown(b.kind, 1, Qt::LeftButton, schedulingView());
            else
                readOnlyRefused();
            return true;
        }
        QHeaderView* statuses = b.list->verticalHeader();
        if ((watched == b.list->viewport() || watched == statuses->viewport()) &&
            event->type() == QEvent::ToolTip) {
            // Where a busy or clashing resource is, named as its details name
            // it: over the status itself or anywhere on its row.
            auto* help = static_cast<QHelpEvent*>(event);
            const int row = watched == statuses->viewport()
                                ? statuses->logicalIndexAt(help->pos().y())
                                : b.list->indexAt(help->pos()).row();
            const QString status = row >= 0 ? b.list->textMatrix(row + 1, 0) : QString();
            if (status != QLatin1String("Busy") && status != QLatin1String("Clash")) {
                QToolTip::hideText();
                return true;
            }
            const QString names = Guard("frmMain", "ListToolTip", [&] {
                ModMain::Cell cell;
                if (!ModMain::CurrentCell(*g, cell))
                    return QString();
                return ModMain::BusyLessons(b.kind, b.list->rowData(row + 1), cell)
                    .join(QLatin1Char('\n'));
            });
            QToolTip::showText(help->globalPos(),
                               QStringLiteral("%1 at this time in:\n%2").arg(status, names),
                               qobject_cast<QWidget*>(watched));
            return true;
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

void frmMain::markPeriods(const QString& question, qint16 code, const QString& step) {
    Guard("frmMain", "mnuPeriod_Click", VariableDump().parameter(QStringLiteral("code"), int(code)),
          [&] {
              if (MsgBox(question, MsgButtons::YesNo, MsgIcon::Question) != MsgResult::Yes)
                  return;
              const ActionName name(step);
              Transaction tx;
              if (!tx.ok())
                  return;
              QuietGrid quiet(*this);
              ModMain::SetSpecialCells(*g, code, schedulingView().lists);
          });
    FireGridClickEvent();
}

void frmMain::mnuPeriodClear_Click() {
    markPeriods(QStringLiteral("Blank all selected periods?"), ModMain::SpecialID::Ordinary,
                QStringLiteral("Clear Periods"));
}

void frmMain::mnuPeriodUnavailable_Click() {
    markPeriods(QStringLiteral("Make selected periods unavailable?"),
                ModMain::SpecialID::Unavailable, QStringLiteral("Mark Unavailable"));
}

void frmMain::mnuPeriodLunch_Click() {
    markPeriods(QStringLiteral("Make selected periods for lunch?"), ModMain::SpecialID::Lunch,
                QStringLiteral("Mark Lunch"));
}

void frmMain::mnuPeriodBreak_Click() {
    markPeriods(QStringLiteral("Mark selected as free periods?"), ModMain::SpecialID::Break,
                QStringLiteral("Mark Break"));
}

void frmMain::mnuFormatDefineLunchColumn_Click() {
    Guard("frmMain", "mnuFormatDefineLunchColumn_Click", [&] {
        const int row = g->row(), col = g->col();
        const ActionName name(QStringLiteral("Define Lunch"));
        {
            Transaction tx;
            if (!tx.ok())
                return;
            QuietGrid quiet(*this);
            ModMain::DefineLunchColumn(*g, schedulingView().lists);
        }
        // The period's heading reads "Lunch", or its times again.
        SaveTimetable();
        QuietGrid quiet(*this);
        RefreshTable();
        g->setRowCol(row, col);
    });
    FireGridClickEvent();
}

void frmMain::mnuToolsAskClashes_Click() {
    ModMain::SetAllowClashesSetting(!mnuToolsAskClashes->isChecked());
}
