#pragma once
// What most tests build their schools from: an open project whose boxes and
// error reports are recorded, the cells of its timetables, and the texts a
// list, box or grid shows. Inline, so a test program links only what it uses.

#include "common/FlexGrid.h"
#include "scheduling/Assignment.h"
#include "scheduling/Availability.h"
#include "store/ModMain.h"
#include "support/TestSupport.h"
#include "timetable/SlotLookup.h"
#include "timetable/TimetableRecords.h"

#include <QtTest>
#include <QtWidgets>

namespace Fixtures {
using namespace TestSupport;

// Opens a project without waiting for the disk: only the crash tests need
// writes to reach it, and they run in processes of their own.
inline bool openQuick(const TestEnv& env, const QString& file) {
    if (!env.open(file))
        return false;
    ModMain::DB().Execute(QStringLiteral("PRAGMA synchronous = OFF;"));
    return true;
}

// A project with these days and periods, open; an error report fails the test.
struct OpenProject {
    TestEnv env;
    MessageRecorder messages;
    ErrorRecorder errors;
    QString file;
    OpenProject(const QStringList& days, const QStringList& times)
        : file(env.newProjectWithCalendar(days, times)) {
        if (!openQuick(env, file))
            qFatal("cannot open the test project");
    }
    ~OpenProject() { QVERIFY(errors.reports().isEmpty()); }
};

inline qint32 projectID(const char* table, int pos) {
    return value("SELECT id FROM Project%1 WHERE Pos = %2", table, pos).toInt();
}

// The slot at a timetable's day and period (positions from 1), created.
inline qint32 slotAt(qint32 timetable, int day, int period) {
    return ModMain::DoCreateGetSlot(timetable, projectID("TimeTitle", period),
                                    projectID("DayTitle", day));
}

inline qint32 insertClass(const QString& name) {
    value("INSERT INTO Class (name) VALUES ('%1')", Common::SQLReplace(name));
    return ModMain::DB().GetInsertID();
}

// A link row written as it stands, duplicates allowed.
inline void link(const QString& kind, qint32 slot, qint32 id) {
    value("INSERT INTO %1Slot (SlotID, %1ID) VALUES (%2, %3)", kind, slot, id);
}
inline void link(ModMain::ResourceKind kind, qint32 slot, qint32 id) {
    link(ModMain::KindWord(kind), slot, id);
}

// A timetable's cell as the window describes it when it is selected.
inline ModMain::Cell cellAt(qint32 timetable, int day, int period) {
    ModMain::Cell cell;
    cell.TimetableID = timetable;
    cell.Type = ModMain::ReadTimetable(timetable).Type;
    const QString heading =
        QStringLiteral("SELECT id FROM %1 WHERE TimetableID = %2 AND Project%1ID = %3");
    cell.DayTitleID = value(heading, "DayTitle", timetable, projectID("DayTitle", day)).toInt();
    cell.TimeTitleID =
        value(heading, "TimeTitle", timetable, projectID("TimeTitle", period)).toInt();
    cell.ProjectTimeTitleID = ModMain::ProjectTimeTitleOf(cell.TimeTitleID);
    cell.ProjectDayTitleID = ModMain::ProjectDayTitleOf(cell.DayTitleID);
    cell.SlotID =
        qMax(0, ModMain::DoGetSlot(timetable, cell.ProjectTimeTitleID, cell.ProjectDayTitleID));
    return cell;
}

// A modal screen's step that presses the named button.
inline ModalDriver::Step press(const QByteArray& button) {
    return [button](QDialog* d) { clickButton(d, button.constData()); };
}

// Every wizard's screens name their buttons alike.
inline void verifyWizardButtons(QDialog* d) {
    for (const auto& [name, text] :
         {std::pair{"cmdBack", "< &Back"}, {"cmdNext", "&Next >"}, {"cmdCancel", "&Cancel"}})
        QCOMPARE(d->findChild<QPushButton*>(QString::fromLatin1(name))->text(),
                 QString::fromLatin1(text));
}

// What a list or a box offers, an entry each; a grid, a row each with '|'
// between its cells.
inline QStringList texts(const QListWidget* list) {
    QStringList out;
    for (int i = 0; i < list->count(); ++i)
        out << list->item(i)->text();
    return out;
}
inline QStringList texts(const QComboBox* box) {
    QStringList out;
    for (int i = 0; i < box->count(); ++i)
        out << box->itemText(i);
    return out;
}
inline QStringList texts(const FlexGrid& grid) {
    QStringList out;
    for (int r = 0; r < grid.rows(); ++r) {
        QStringList cells;
        for (int c = 0; c < grid.cols(); ++c)
            cells << grid.textMatrix(r, c);
        out << cells.join(QLatin1Char('|'));
    }
    return out;
}

} // namespace Fixtures
