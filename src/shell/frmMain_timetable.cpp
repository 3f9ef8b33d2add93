// frmMain's timetable commands: the grid, the toolbar's timetable list, the
// new-timetable wizard, deleting and formatting. The work itself lives in
// timetable/, wizards/ and scheduling/.

#include "shell/frmMain.h"

#include "common/Common.h"
#include "common/ErrorHandler.h"
#include "common/FlexGrid.h"
#include "scheduling/ResourceLists.h"
#include "store/ModMain.h"
#include "store/Transaction.h"
#include "timetable/TimetableChoices.h"
#include "timetable/TimetableGrid.h"
#include "timetable/TimetableRecords.h"
#include "timetable/TimetableState.h"
#include "timetable/frmFormatTimeTable.h"
#include "wizards/NewTimetableWizard.h"
#include "wizards/WizardState.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QFontMetrics>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

using Common::MsgBox;
using Common::MsgButtons;
using Common::MsgIcon;
using Common::MsgResult;

namespace {
class WaitCursor {
public:
    WaitCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { restore(); }
    void restore() {
        if (m_set)
            QApplication::restoreOverrideCursor();
        m_set = false;
    }

private:
    bool m_set = true;
};

constexpr int kTimetableListWidth = 260;
constexpr int kTimetableMenuWidth = 420;

QString elided(const QFontMetrics& metrics, const QString& text, int width) {
    return metrics.elidedText(text, Qt::ElideRight, width);
}
} // namespace

void frmMain::buildTimetableList() {
    m_toolbar->addSeparator();
    tbTimetables = new QToolButton(m_toolbar);
    tbTimetables->setObjectName(QStringLiteral("tbTimetables"));
    tbTimetables->setText(QStringLiteral("Timetables"));
    tbTimetables->setToolTip(QStringLiteral("Show another timetable"));
    tbTimetables->setPopupMode(QToolButton::InstantPopup);
    tbTimetables->setToolButtonStyle(Qt::ToolButtonTextOnly);
    // A long name must not push the toolbar into its overflow menu.
    tbTimetables->setMaximumWidth(kTimetableListWidth);
    tbTimetables->setMenu(new QMenu(tbTimetables));
    tbTimetables->menu()->setObjectName(QStringLiteral("mnuTimetables"));
    tbTimetables->setEnabled(false);
    m_toolbar->addWidget(tbTimetables);
}

void frmMain::RefreshToolbarTimetables() {
    Guard("frmMain", "RefreshToolbarTimetables", [&] {
        QMenu* menu = tbTimetables->menu();
        tbTimetables->setText(QStringLiteral("Timetables"));
        tbTimetables->setToolTip(QStringLiteral("Show another timetable"));
        if (!ModMain::ProjectIsOpen()) {
            menu->clear();
            m_menuTimetables.clear();
            tbTimetables->setEnabled(false);
            return;
        }
        QVector<ModMain::TimetableEntry> list = ModMain::TimetableList();
        // Classes, then tutors, then rooms, each by name as a person sorts them.
        const auto rank = [](const QString& type) {
            static const QStringList order = {"Class", "Tutor", "Room"};
            const qsizetype at = order.indexOf(type);
            return at < 0 ? order.size() : at;
        };
        std::stable_sort(list.begin(), list.end(), [&](const auto& a, const auto& b) {
            if (rank(a.type) != rank(b.type))
                return rank(a.type) < rank(b.type);
            return QString::localeAwareCompare(a.name, b.name) < 0;
        });
        // Built again only when the list changed: showing another timetable
        // moves only the check.
        if (list != m_menuTimetables) {
            menu->clear();
            menu->setToolTipsVisible(true);
            auto* group = new QActionGroup(menu);
            const QFontMetrics metrics(menu->font());
            for (const ModMain::TimetableEntry& t : list) {
                const qint32 id = t.id;
                const QString key = QStringLiteral("k") + QString::number(id);
                // Long names are cut in the list; the whole name is the tooltip.
                QAction* entry = menu->addAction(elided(metrics, t.name, kTimetableMenuWidth));
                entry->setToolTip(t.name);
                entry->setObjectName(key);
                entry->setData(id);
                entry->setCheckable(true);
                group->addAction(entry);
                // Queued: loading moves the check, which must not happen while
                // the entry is still announcing its own click.
                connect(
                    entry, &QAction::triggered, this, [this, id] { LoadTimetable(id); },
                    Qt::QueuedConnection);
            }
            m_menuTimetables = list;
        }
        const qint32 current = Timetable::current().ID;
        for (QAction* entry : menu->actions()) {
            const bool shown = entry->data().toInt() == current;
            entry->setChecked(shown);
            if (shown) {
                tbTimetables->setText(elided(tbTimetables->fontMetrics(), entry->toolTip(),
                                             kTimetableListWidth - 24));
                tbTimetables->setToolTip(entry->toolTip());
            }
        }
        tbTimetables->setEnabled(!menu->isEmpty());
    });
}

void frmMain::clearTimetable() {
    g->clearGrid();
    g->setRows(1);
    g->setCols(1);
    // Nothing of the timetable that was shown, not even its title in an
    // error report.
    Timetable::Reset();
    // Without a timetable the lists have no cell to speak of, and the
    // timetable list may belong to a project that is closed now; whoever
    // shows a timetable next fills them again.
    for (FlexGrid* list : {gTutor, gSubject, gRoom, gClass})
        if (list)
            list->setRows(1);
    if (tbTimetables) {
        // Forgotten as well as cleared, so the next project's list is built
        // even when it names the same timetables (a copy of this one).
        m_menuTimetables.clear();
        tbTimetables->menu()->clear();
        tbTimetables->setText(QStringLiteral("Timetables"));
        tbTimetables->setEnabled(false);
    }
}

// Loading rebuilds the timetable list; without a timetable it stays as
// NoTimetable left it, empty.
void frmMain::showFirstTimetable() {
    if (const qint32 first = ModMain::FirstTimetableID(); first != 0)
        LoadTimetable(first);
}

void frmMain::showResourceLists(const QString& type) {
    // A timetable never lists its own kind: a class is not put into a class.
    const struct {
        FlexGrid* list;
        const char* label;
        const char* kind;
    } lists[] = {{gTutor, "lblTutor", "Tutor"},
                 {gSubject, "lblSubject", "Subject"},
                 {gRoom, "lblRoom", "Room"},
                 {gClass, "lblClass", "Class"}};
    for (const auto& l : lists) {
        const bool shown = type != QLatin1String(l.kind);
        l.list->setVisible(shown);
        if (auto* label = findChild<QLabel*>(QString::fromLatin1(l.label)))
            label->setVisible(shown);
        if (auto* box =
                findChild<QLineEdit*>(QStringLiteral("txt%1Name").arg(QLatin1String(l.kind))))
            box->setVisible(shown);
    }
}

void frmMain::LoadTimetable(qint32 TimetableID) {
    Guard("frmMain", "LoadTimetable",
          VariableDump().parameter(QStringLiteral("TimetableID"), int(TimetableID)), [&] {
              const int row = g->row(), col = g->col();
              SaveTimetable();
              // Everything below only reads: one read transaction, one view of the file.
              Transaction read(Transaction::Read);
              Timetable::State& tt = Timetable::current();
              tt.ID = TimetableID;
              const ModMain::TimetableRow found = ModMain::ReadTimetable(TimetableID);
              if (!found.found)
                  return;
              for (QMenu* menu : {mnuView, mnuFormat, mnuTools, mnuPeriod})
                  setMenuEnabled(menu, true);
              setToolbarEnabled(true);
              for (QLineEdit* box : {txtTutorName, txtSubjectName, txtRoomName})
                  box->setEnabled(true);
              for (QAction* action : {mnuFileDelete, mnuFilePrintPreview, mnuFileExportPdf})
                  setEnabled(action, true);
              tt.Loaded = false;
              tt.TimeOnTop = found.TimeOnTop;
              tt.Type = found.Type;
              tt.Time12Hour = found.Time12Hour;
              showResourceLists(tt.Type);

              ModMain::RefreshTutorList(*gTutor);
              ModMain::RefreshSubjectList(*gSubject);
              ModMain::RefreshRoomList(*gRoom);
              ModMain::RefreshClassList(*gClass);
              // A long list gets more of the height than a short one, so the
              // tutors do not scroll beside a half-empty list of rooms.
              // Only a change lays the window out again.
              for (FlexGrid* list : {gTutor, gSubject, gRoom, gClass}) {
                  const int stretch = std::max(3, list->rows());
                  if (m_listLayout->stretch(m_listLayout->indexOf(list)) != stretch)
                      m_listLayout->setStretchFactor(list, stretch);
              }
              RefreshTable();
              RefreshToolbarTimetables();

              setCaption(ModMain::GetTimetableName(TimetableID));
              tt.Loaded = true;
              {
                  QuietGrid quiet(*this);
                  g->setRowCol(std::clamp(row, 1, std::max(1, g->rows() - 1)),
                               std::clamp(col, 1, std::max(1, g->cols() - 1)));
              }
              // The lists speak of the cell the grid comes back to.
              ModMain::FireGridClickEvent(schedulingView());
          });
}

void frmMain::RefreshTable() {
    Guard("frmMain", "RefreshTable", [&] { ModMain::RefreshTable(*g); });
}

void frmMain::SaveTimetable() {
    // The sizes are kept on the way to something else, which goes on even
    // when they cannot be.
    SideTask side;
    Guard("frmMain", "SaveTimetable", [&] { ModMain::SaveTimetable(*g); });
}

void frmMain::mnuFileNew_Click() {
    // Every timetable is a grid of the project's days and periods.
    if (needsCalendar()) {
        if (MsgBox(QStringLiteral("This project has no days or periods yet, so a timetable "
                                  "cannot be created. Would you like to set them up now?"),
                   MsgButtons::YesNo, MsgIcon::Question) == MsgResult::Yes)
            mnuFileSetUpCalendar_Click();
        return;
    }
    Wizard::state().WizardType = QStringLiteral("Class");
    Wizard::state().WizardWhoID = -1;
    DoNewTimeTableWizard(true);
}

void frmMain::DoNewTimeTableWizard(bool askKind) {
    Guard("frmMain", "DoNewTimeTableWizard", [&] {
        if (!Wizard::RunNewTimetableScreens(this, askKind))
            return;
        WaitCursor wait;
        const Wizard::State& w = Wizard::state();
        qint32 id = 0;
        {
            // The creation is a step of its own; an Auto Fill after it is another.
            const ActionName name(QStringLiteral("New Timetable ") + w.WizardType +
                                  QLatin1Char(' ') +
                                  ModMain::OwnerName(w.WizardType, w.WizardWhoID));
            id = ModMain::CreateTimetable(w.WizardType, w.WizardWhoID, w.WizardStyleID);
        }
        if (id == 0)
            return;
        LoadTimetable(id);
        if (Wizard::state().WizardType != QLatin1String("Class") || !ModMain::HasRealSubjects())
            return;
        wait.restore();
        if (MsgBox(QStringLiteral("Would you like to run the Auto Fill Wizard to fill your "
                                  "timetable?"),
                   MsgButtons::YesNo, MsgIcon::Question) != MsgResult::Yes)
            return;
        StartAutoFill(id);
    });
}

void frmMain::mnuFileDelete_Click() {
    Guard("frmMain", "mnuFileDelete_Click", [&] {
        if (MsgBox(QStringLiteral("Delete current timetable?"), MsgButtons::YesNo,
                   MsgIcon::Question) != MsgResult::Yes)
            return;
        WaitCursor wait;
        {
            const ActionName name(QStringLiteral("Delete Timetable ") +
                                  ModMain::GetTimetableName(Timetable::current().ID));
            ModMain::DeleteTimetable(Timetable::current().ID);
        }
        Timetable::current().ID = 0;
        if (const qint32 first = ModMain::FirstTimetableID(); first == 0)
            NoTimetable();
        else
            LoadTimetable(first);
    });
}

void frmMain::mnuFormatTimetable_Click() {
    Guard("frmMain", "mnuFormatTimetable_Click", [&] {
        frmFormatTimeTable dialog([this] { LoadTimetable(Timetable::current().ID); }, this);
        dialog.exec();
    });
}

void frmMain::mnuFormatSameSizeColumns_Click() {
    Guard("frmMain", "mnuFormatSameSizeColumns_Click", [&] {
        if (MsgBox(QStringLiteral("Set all columns to the same width?"), MsgButtons::YesNo,
                   MsgIcon::Question) != MsgResult::Yes) {
            ModMain::SaveTimetable(*g);
            return;
        }
        const ActionName name(QStringLiteral("Same Size Columns"));
        Transaction tx;
        if (!tx.ok())
            return;
        ModMain::SetSameColumnWidths(*g);
        ModMain::SaveTimetable(*g);
    });
}

void frmMain::mnuFormatSameSizeRows_Click() {
    Guard("frmMain", "mnuFormatSameSizeRows_Click", [&] {
        // Unlike the columns, the heights are saved with the next load or exit.
        if (MsgBox(QStringLiteral("Set all rows to the same height?"), MsgButtons::YesNo,
                   MsgIcon::Question) == MsgResult::Yes)
            ModMain::SetSameRowHeights(*g);
    });
}
