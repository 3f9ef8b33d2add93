// frmMain's resource commands: the management dialog and the detail dialogs
// from the lists' menus, the timetable list, the capacity report, and the
// import and export of resources. The work lives in manage/.

#include "shell/frmMain.h"

#include "common/FlexGrid.h"
#include "scheduling/ListSelect.h"
#include "scheduling/frmConflicts.h"

#include "common/Common.h"
#include "common/ErrorHandler.h"
#include "common/FileDialogs.h"
#include "manage/ResourceCsv.h"
#include "manage/ResourceDialogs.h"
#include "manage/frmCapacityReport.h"
#include "manage/frmManage.h"
#include "manage/frmTableOpen.h"
#include "store/ModMain.h"
#include "store/Transaction.h"
#include "timetable/TimetableState.h"
#include "wizards/WizardState.h"

#include <QDir>
#include <QMenu>

using Common::MsgBox;
using Common::MsgButtons;
using Common::MsgIcon;

namespace {
const QString kCsvFilter = QStringLiteral("Spreadsheet text (*.csv)|*.csv|All files (*)|*");
} // namespace

void frmMain::ResourcesChanged() {
    if (Timetable::current().ID != 0)
        LoadTimetable(Timetable::current().ID);
    else
        RefreshToolbarTimetables();
}

void frmMain::ShowManage(int page) {
    Guard("frmMain", "mnuToolsManage_Click", [&] {
        frmManage dialog([this] { ResourcesChanged(); }, this);
        dialog.SelectTab(page);
        dialog.exec();
    });
}

void frmMain::mnuViewTimetable_Click() {
    Guard("frmMain", "mnuViewTimetable_Click", [&] {
        frmTableOpen::Host host;
        host.loadTimetable = [this](qint32 id) { LoadTimetable(id); };
        host.createTimetable = [this](const QString& type, qint32 owner) {
            if (ModMain::DB().IsReadOnly()) {
                MsgBox(QStringLiteral("This project is open for reading only, so no timetable can "
                                      "be created in it."),
                       MsgButtons::Ok, MsgIcon::Exclamation);
                return;
            }
            Wizard::state().WizardWhoID = owner;
            Wizard::state().WizardType = type;
            DoNewTimeTableWizard();
        };
        frmTableOpen dialog(host, Timetable::current().ID, this);
        dialog.exec();
    });
}

void frmMain::mnuToolsCapacityReport_Click() {
    Guard("frmMain", "mnuToolsCapacityReport_Click", [&] {
        frmCapacityReport dialog(this);
        dialog.exec();
    });
}

void frmMain::mnuToolsConflicts_Click() {
    Guard("frmMain", "mnuToolsConflicts_Click", [&] {
        ModMain::frmConflicts dialog(
            [this](qint32 timetable, const ModMain::Period& at) {
                LoadTimetable(timetable);
                for (int r = 1; r < g->rows(); ++r)
                    for (int c = 1; c < g->cols(); ++c) {
                        ModMain::Cell cell;
                        if (ModMain::CellAt(*g, r, c, cell) && cell.period() == at) {
                            g->setRowCol(r, c);
                            FireGridClickEvent();
                            return;
                        }
                    }
            },
            this);
        dialog.exec();
    });
}

void frmMain::mnuFileImportResources_Click() {
    Guard("frmMain", "mnuFileImportResources_Click", [&] {
        QString file;
        if (!Common::VBGetOpenFileName(file, nullptr, true, false, false, true, kCsvFilter, nullptr,
                                       QString(), QStringLiteral("Import Resources"),
                                       QStringLiteral("csv"), this))
            return;
        const ActionName name(QStringLiteral("Import Resources"));
        const ModMain::ImportResult result = ModMain::ImportResources(file);
        if (result.ok)
            ResourcesChanged();
        if (!result.message.isEmpty())
            MsgBox(result.message, MsgButtons::Ok,
                   result.ok ? MsgIcon::Information : MsgIcon::Exclamation);
    });
}

void frmMain::mnuFileExportResources_Click() {
    Guard("frmMain", "mnuFileExportResources_Click", [&] {
        QString file = QStringLiteral("resources.csv");
        if (!Common::VBGetSaveFileName(file, nullptr, true, false, false, true, kCsvFilter, nullptr,
                                       QString(), QStringLiteral("Export Resources"),
                                       QStringLiteral("csv"), this))
            return;
        const QString error = ModMain::ExportResources(file);
        if (error.isEmpty())
            MsgBox(QStringLiteral("The tutors, subjects, rooms and classes were written to %1.")
                       .arg(QDir::toNativeSeparators(file)),
                   MsgButtons::Ok, MsgIcon::Information);
        else
            MsgBox(error, MsgButtons::Ok, MsgIcon::Exclamation);
    });
}

void frmMain::extendListMenu(QMenu& menu, ModMain::ResourceKind kind, qint32 id) {
    if (!ModMain::ProjectIsOpen() || ModMain::DB().IsReadOnly())
        return;
    const QString word = ModMain::KindWord(kind);
    if (!menu.isEmpty())
        menu.addSeparator();
    QAction* edit = menu.addAction(QStringLiteral("&Edit %1...").arg(word));
    edit->setObjectName(QStringLiteral("mnuListEdit"));
    connect(edit, &QAction::triggered, this, [this, kind, id] {
        Guard("frmMain", "mnuListEdit_Click", [&] {
            if (Manage::EditResource(kind, id, this))
                ResourcesChanged();
        });
    });
    QAction* add = menu.addAction(QStringLiteral("&New %1...").arg(word));
    add->setObjectName(QStringLiteral("mnuListNew"));
    connect(add, &QAction::triggered, this, [this, kind] {
        Guard("frmMain", "mnuListNew_Click", [&] {
            if (Manage::EditResource(kind, -1, this))
                ResourcesChanged();
        });
    });
}
