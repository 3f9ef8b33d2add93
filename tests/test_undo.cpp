// Undo and redo: every kind of action, done, undone and redone on a school
// with a clash, leaves every table exactly as it was before and after it; a
// step the file no longer fits is refused with nothing changed; the Edit
// menu names its steps and the window shows what undo brought back.

#include "autofill/AutoFillEngine.h"
#include "autofill/AutoFillState.h"
#include "common/Arrays.h"
#include "manage/ResourceCsv.h"
#include "manage/ResourceRecords.h"
#include "scheduling/SchedulingState.h"
#include "shell/UndoHistory.h"
#include "shell/frmMain.h"
#include "store/Records.h"
#include "store/Transaction.h"
#include "support/Fixtures.h"
#include "support/WindowDrive.h"
#include "timetable/TimetableState.h"

#include <QtTest>
#include <QtWidgets>
#include <sqlite3.h>

using namespace Fixtures;
using ModMain::ResourceKind;

namespace {
// Two classes whose timetables both have Mr Brown on Monday at 9:00, his own
// timetable, and a room timetable.
struct School : OpenProject {
    QMap<QString, qint32> id, tt;
    School()
        : OpenProject({"Monday", "Tuesday", "Wednesday"}, {"9:00", "10:00", "11:00", "12:00"}) {
        for (const QString name : {"Mr Brown", "Dr Chen", "Ms O'Hara"})
            id[name] = ModMain::CreateTutorRecord(name, name.right(3).toUpper(), "", "");
        for (const QString name : {"Maths", "Art"})
            id[name] = ModMain::CreateSubjectRecord(name, 1);
        for (const QString name : {"Hall", "Lab"})
            id[name] = ModMain::CreateRoomRecord(name, 30);
        for (const QString name : {"7A", "7B"}) {
            id[name] = insertClass(name);
            tt["Class " + name] = ModMain::CreateTimetable("Class", id[name], 1);
        }
        tt["Tutor Mr Brown"] = ModMain::CreateTimetable("Tutor", id["Mr Brown"], 1);
        tt["Room Hall"] = ModMain::CreateTimetable("Room", id["Hall"], 1);
        lesson("Class 7A", 1, 1, {"Mr Brown", "Maths", "Hall"});
        lesson("Class 7B", 1, 1, {"Mr Brown", "Art", "Lab"});
        lesson("Class 7A", 2, 3, {"Dr Chen", "Art", "Lab"});
        lesson("Class 7A", 3, 3, {"Ms O'Hara", "Art", "Hall"});
    }
    void lesson(const QString& timetable, int day, int period, const QStringList& names) {
        const qint32 slot = slotAt(tt[timetable], day, period);
        link("Tutor", slot, id[names[0]]);
        link("Subject", slot, id[names[1]]);
        link("Room", slot, id[names[2]]);
    }
    QString now() const { return dump(file); }
};

void autoFill7A(const School& s) {
    AutoFill::State& a = AutoFill::state();
    a = AutoFill::State();
    a.AutoFill_WhoID = s.tt["Class 7A"];
    a.AutoFill_IncludeSubjects = {s.id["Maths"], s.id["Art"]};
    a.AutoFill_IncludeSubjectPeriods = {3, 2};
    a.AutoFill_Tutors = {s.id["Mr Brown"], s.id["Dr Chen"]};
    a.AutoFill_Rooms = {s.id["Hall"], s.id["Lab"]};
    a.AutoFill_MethodID = 1;
    Common::Randomize(3);
    ModMain::FillProgress quiet;
    QCOMPARE(ModMain::RunAutoFill(quiet), ModMain::FillOutcome::Finished);
}

} // namespace

class TestUndo : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void eachActionUndoesAndRedoes_data() {
        QTest::addColumn<QString>("action");
        for (const char* action :
             {"Tick Tutor Mr Brown", "Tick Class 7B", "Untick Tutor Mr Brown", "Auto Fill Class 7A",
              "New Timetable Tutor Dr Chen", "Delete Timetable Class 7B", "Format Timetable",
              "Edit Tutor Mr Brown", "Delete Tutor Mr Brown", "Import Resources"})
            QTest::newRow(action) << QString::fromLatin1(action);
    }
    void eachActionUndoesAndRedoes() {
        QFETCH(QString, action);
        School s;
        UndoHistory history;
        const QString before = s.now();
        {
            const ActionName name(action);
            if (action == "Tick Tutor Mr Brown") // mirrored into his own timetable
                ModMain::TickResource(ResourceKind::Tutor, s.id["Mr Brown"],
                                      cellAt(s.tt["Class 7A"], 2, 2));
            else if (action == "Tick Class 7B") // mirrored into 7B's timetable
                ModMain::TickResource(ResourceKind::Class, s.id["7B"],
                                      cellAt(s.tt["Tutor Mr Brown"], 3, 1));
            else if (action == "Untick Tutor Mr Brown")
                ModMain::UntickResource(ResourceKind::Tutor, s.id["Mr Brown"],
                                        cellAt(s.tt["Class 7A"], 1, 1));
            else if (action == "Auto Fill Class 7A")
                autoFill7A(s);
            else if (action == "New Timetable Tutor Dr Chen") // cross-referenced rooms too
                ModMain::CreateTimetable("Tutor", s.id["Dr Chen"], 1);
            else if (action == "Delete Timetable Class 7B")
                ModMain::DeleteTimetable(s.tt["Class 7B"]);
            else if (action == "Format Timetable")
                ModMain::SaveTimetableFormat(s.tt["Class 7A"], true, false);
            else if (action == "Edit Tutor Mr Brown")
                ModMain::SaveTutor(s.id["Mr Brown"], {"Mr Browne", "BRN", {s.id["Art"]}});
            else if (action == "Delete Tutor Mr Brown") // his links and timetable go too
                ModMain::DeleteResource(ResourceKind::Tutor, s.id["Mr Brown"]);
            else
                QVERIFY(ModMain::ImportResources(writeFile(s.env.path("more.csv"),
                                                           "Name,Kind\nDrama,Subject\n8C,Class\n"))
                            .ok);
        }
        const QString after = s.now();
        QVERIFY(after != before);
        QCOMPARE(history.stack().count(), 1);
        QCOMPARE(history.undoText(), "Undo " + action);
        QCOMPARE(history.redoText(), QString("Redo"));
        QVERIFY(history.undo());
        QCOMPARE(s.now(), before);
        QCOMPARE(history.redoText(), "Redo " + action);
        QVERIFY(history.redo());
        QCOMPARE(s.now(), after);
        QVERIFY(history.undo());
        QCOMPARE(s.now(), before);
        QVERIFY(s.messages.texts().isEmpty());
    }
    void outsideChangesAreRefused() {
        School s;
        UndoHistory history;
        const auto tick = [&](const char* tutor, int day) {
            const ActionName name(QStringLiteral("Tick Tutor ") + tutor);
            ModMain::TickResource(ResourceKind::Tutor, s.id[tutor],
                                  cellAt(s.tt["Class 7A"], day, 2));
        };
        const auto elsewhere = [&](const char* sql) {
            sqlite3* other = nullptr;
            QCOMPARE(sqlite3_open(s.file.toUtf8().constData(), &other), SQLITE_OK);
            QCOMPARE(sqlite3_exec(other, sql, nullptr, nullptr, nullptr), SQLITE_OK);
            sqlite3_close(other);
        };
        tick("Dr Chen", 1);
        tick("Ms O'Hara", 2);
        elsewhere("UPDATE Tutor SET name = 'Mrs O''Hara' WHERE name = 'Ms O''Hara'");
        const QString changed = s.now();
        QVERIFY(!history.undo());
        QCOMPARE(s.now(), changed);
        QCOMPARE(
            s.messages.texts(),
            QStringList(
                "The project was changed outside Vantor Planner since this step, so it cannot be "
                "undone. Nothing was changed, and the list of steps to undo has been cleared."));
        QCOMPARE(history.stack().count(), 0);
        // A step after an outside change is undoable; the ones before it are gone.
        tick("Dr Chen", 3);
        elsewhere("UPDATE Room SET name = 'Great Hall' WHERE name = 'Hall'");
        const QString beforeLast = s.now();
        tick("Mr Brown", 3);
        QCOMPARE(history.stack().count(), 1);
        QVERIFY(history.undo());
        QCOMPARE(s.now(), beforeLast);
    }
    void editMenuAndWindow() {
        School s;
        Timetable::Reset();
        Scheduling::Reset();
        frmMain w;
        w.Form_Load(s.file);
        w.LoadTimetable(s.tt["Class 7A"]);
        QAction* undo = w.command("mnuEditUndo");
        QAction* redo = w.command("mnuEditRedo");
        QVERIFY(!undo->isEnabled() && !w.command("tbUndo")->isEnabled());
        QCOMPARE(undo->text(), QString("Undo"));
        // Marking a break: named, undone with the grid showing the lesson again.
        w.g->setRowCol(1, 1);
        const QString lesson = w.g->textMatrix(1, 1);
        QVERIFY(!lesson.isEmpty());
        const QString before = s.now();
        s.messages.answer(Common::MsgResult::Yes);
        w.command("tbBreak")->trigger();
        QCOMPARE(w.g->textMatrix(1, 1), QString("Break"));
        QCOMPARE(undo->text(), QString("Undo Mark Break"));
        QVERIFY(undo->isEnabled() && w.command("tbUndo")->isEnabled());
        QCOMPARE(w.command("tbUndo")->toolTip(), QString("Undo Mark Break"));
        w.command("tbUndo")->trigger();
        QCOMPARE(s.now(), before);
        QCOMPARE(w.g->textMatrix(1, 1), lesson);
        QCOMPARE(redo->text(), QString("Redo Mark Break"));
        QVERIFY(!undo->isEnabled());
        // Undoing the creation of the timetable shown shows another.
        {
            const ActionName name("New Timetable Tutor Dr Chen & Co");
            w.LoadTimetable(ModMain::CreateTimetable("Tutor", s.id["Dr Chen"], 1));
        }
        QCOMPARE(undo->text(), QString("Undo New Timetable Tutor Dr Chen && Co"));
        QVERIFY(!redo->isEnabled()); // a new step ends what could be redone
        undo->trigger();
        QVERIFY(Timetable::current().ID != 0);
        QVERIFY(ModMain::ReadTimetable(Timetable::current().ID).found);
        QCOMPARE(s.now(), before);
        // Sizes saved on the way to another timetable are no step of their own:
        // what can be redone is still there.
        w.g->setColumnWidth(1, w.g->columnWidth(1) + 40);
        w.LoadTimetable(s.tt["Class 7B"]);
        QVERIFY(redo->isEnabled());
        // Closing the project ends its history.
        redo->trigger();
        QVERIFY(undo->isEnabled());
        w.NoProject();
        QVERIFY(!undo->isEnabled() && !redo->isEnabled());
        QCOMPARE(w.history().stack().count(), 0);
    }
    void stepsOnlyForRealChanges() {
        // What changes nothing leaves no step; steps made of others are one,
        // named by the outermost; a new class timetable and its Auto Fill are two.
        School s;
        Timetable::Reset();
        Scheduling::Reset();
        frmMain w;
        w.resize(1200, 800);
        w.show();
        w.Form_Load(s.file);
        w.LoadTimetable(s.tt["Class 7B"]); // Dr Chen teaches 7A on Tuesday at 11:00
        QAction* undo = w.command("mnuEditUndo");
        const auto tickBox = [&](FlexGrid* list, qint32 id) {
            for (int r = 1; r < list->rows(); ++r)
                if (list->rowData(r) == id) {
                    const QTableWidget* table = list;
                    QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                                      list->visualItemRect(table->item(r - 1, 0)).center());
                }
        };
        w.g->setRowCol(2, 3);
        QCoreApplication::processEvents();
        tickBox(w.gSubject, s.id["Art"]);
        QCOMPARE(undo->text(), QString("Undo Tick Subject Art"));
        // A clash answered No, a mark answered No, a tick into a marked cell.
        ModalDriver driver;
        driver.expect("frmClash", press("cmdNo"));
        QCOMPARE(driver.run([&] { tickBox(w.gTutor, s.id["Dr Chen"]); }), QString());
        s.messages.answer(Common::MsgResult::No);
        w.command("mnuPeriodLunch")->trigger();
        QCOMPARE(undo->text(), QString("Undo Tick Subject Art"));
        w.g->setRowCol(2, 2);
        s.messages.answer(Common::MsgResult::Yes);
        w.command("mnuPeriodBreak")->trigger();
        QCOMPARE(undo->text(), QString("Undo Mark Break"));
        const int steps = w.history().stack().count();
        s.messages.clear();
        tickBox(w.gRoom, s.id["Lab"]); // refused: a break takes no lesson
        QCOMPARE(s.messages.texts().size(), 1);
        // The format dialog's OK with nothing changed writes the same values.
        driver = ModalDriver();
        driver.expect("frmFormatTimeTable", press("cmdOk"));
        QCOMPARE(driver.run([&] { w.command("mnuFormatTimetable")->trigger(); }), QString());
        QCOMPARE(w.history().stack().count(), steps);
        QCOMPARE(undo->text(), QString("Undo Mark Break"));
        // Two actions inside a third: one step, the outer name.
        {
            const ActionName outer("Move Lesson");
            Transaction tx;
            const ActionName inner("Tick Tutor Dr Chen");
            ModMain::TickResource(ResourceKind::Tutor, s.id["Dr Chen"],
                                  cellAt(s.tt["Class 7B"], 3, 3));
            ModMain::TickResource(ResourceKind::Subject, s.id["Art"],
                                  cellAt(s.tt["Class 7B"], 3, 3));
        }
        QCOMPARE(w.history().stack().count(), steps + 1);
        QCOMPARE(undo->text(), QString("Undo Move Lesson"));
        // File > New Timetable for 7C, then its Auto Fill: two steps, each its own name.
        s.messages.setDefault(Common::MsgResult::Yes);
        driver = ModalDriver();
        driver.expect("frmScr_CreateTT_Welcome", press("cmdNext"));
        driver.expect("frmScr_CreateTT_Type", press("cmdNext")); // a class's, as offered
        driver.expect("frmScr_CreateTT_Who", [](QDialog* d) {
            auto* cbo = control<QComboBox>(d, "cboWho");
            cbo->setCurrentIndex(cbo->findText(QStringLiteral("Create new...")));
            control<QLineEdit>(d, "txtWho")->setText("7C");
            clickButton(d, "cmdNext");
        });
        driver.expect("frmScr_CreateTT_Style", press("cmdNext"));
        driver.expect("frmScr_CreateTT_Complete", press("cmdNext"));
        driver.expect("frmScr_AutoFill_Welcome", press("cmdNext"));
        driver.expect("frmScr_AutoFill_Timetable", press("cmdNext"));
        driver.expect("frmScr_AutoFill_Subjects", [](QDialog* d) {
            control<QComboBox>(d, "cboSubjects")->setCurrentText("Maths");
            clickButton(d, "cmdAdd");
            clickButton(d, "cmdNext");
        });
        for (const char* screen : {"Tutors", "Rooms", "Method", "Complete"})
            driver.expect(QStringLiteral("frmScr_AutoFill_") + screen, press("cmdNext"));
        driver.expect("frmAutoFill_Progress", [](QDialog* d) {
            QTRY_VERIFY_WITH_TIMEOUT(control<QPushButton>(d, "cmdCancel")->text() == "Done", 20000);
            clickButton(d, "cmdCancel");
        });
        QCOMPARE(driver.run([&] { w.command("mnuFileNew")->trigger(); }), QString());
        QCOMPARE(undo->text(), QString("Undo Auto Fill Class 7C"));
        undo->trigger();
        QCOMPARE(undo->text(), QString("Undo New Timetable Class 7C"));
    }
    void lockedProjectRefusesUndo() {
        // Another program holding the project's lock: Undo and Redo say so and
        // the Edit menu stays as it was.
        School s;
        Timetable::Reset();
        Scheduling::Reset();
        frmMain w;
        w.Form_Load(s.file);
        w.LoadTimetable(s.tt["Class 7A"]);
        ModMain::DB().SetBusyTimeout(50);
        {
            const ActionName name("Tick Tutor Dr Chen");
            ModMain::TickResource(ResourceKind::Tutor, s.id["Dr Chen"],
                                  cellAt(s.tt["Class 7A"], 2, 2));
        }
        {
            const ActionName name("Tick Tutor Ms O'Hara");
            ModMain::TickResource(ResourceKind::Tutor, s.id["Ms O'Hara"],
                                  cellAt(s.tt["Class 7A"], 2, 1));
        }
        w.command("mnuEditUndo")->trigger();
        QAction* undo = w.command("mnuEditUndo");
        QAction* redo = w.command("mnuEditRedo");
        QCOMPARE(undo->text(), QString("Undo Tick Tutor Dr Chen"));
        QCOMPARE(redo->text(), QString("Redo Tick Tutor Ms O'Hara"));
        sqlite3* other = nullptr;
        QCOMPARE(sqlite3_open(s.file.toUtf8().constData(), &other), SQLITE_OK);
        QCOMPARE(sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
        const QString locked = s.now();
        const QString busy = ProjectBusyText(s.file);
        for (QAction* action : {undo, redo}) {
            s.messages.clear();
            action->trigger();
            QCOMPARE(s.messages.texts(), QStringList{busy});
            QCOMPARE(undo->text(), QString("Undo Tick Tutor Dr Chen"));
            QCOMPARE(redo->text(), QString("Redo Tick Tutor Ms O'Hara"));
            QVERIFY(undo->isEnabled() && redo->isEnabled());
            QCOMPARE(w.history().stack().index(), 1);
        }
        sqlite3_exec(other, "ROLLBACK", nullptr, nullptr, nullptr);
        sqlite3_close(other);
        QCOMPARE(s.now(), locked);
        // Free again, the step goes as asked.
        s.messages.clear();
        undo->trigger();
        QVERIFY(s.messages.texts().isEmpty());
        QCOMPARE(undo->text(), QString("Undo"));
    }
    void draggingALesson() {
        School s;
        Timetable::Reset();
        Scheduling::Reset();
        frmMain w;
        w.resize(1200, 800);
        w.show();
        w.Form_Load(s.file);
        w.LoadTimetable(s.tt["Class 7A"]);
        const auto cell = [&](int r, int c) { return w.g->textMatrix(r, c).simplified(); };
        const QString chen = cell(2, 3), ohara = cell(3, 3), brown = cell(1, 1);
        const QString start = s.now();
        const QColor plain = w.g->cellBackColor(1, 2);
        // While dragging Dr Chen's Art in the Lab: Monday 9:00 is tinted, as 7B
        // has the Lab then; Escape takes the tints away and moves nothing.
        std::unique_ptr<QMimeData> data(w.BeginLessonDrag(2, 3));
        QVERIFY(data);
        QVERIFY(w.g->cellBackColor(1, 1) != w.g->cellBackColor(1, 2));
        QCOMPARE(w.g->cellBackColor(1, 2), plain);
        QVERIFY(dropOn(w, data.get(), 1, 2, false));
        QVERIFY(!dropOn(w, data.get(), 2, 3, false)); // not onto itself
        w.EndLessonDrag();
        QCOMPARE(w.g->cellBackColor(1, 1), w.g->cellBackColor(1, 2));
        QCOMPARE(s.now(), start);
        // A move to a free period, then undone.
        data.reset(w.BeginLessonDrag(2, 3));
        QVERIFY(dropOn(w, data.get(), 1, 2));
        w.EndLessonDrag();
        QCOMPARE(cell(1, 2), chen);
        QCOMPARE(cell(2, 3), QString());
        QCOMPARE(w.command("mnuEditUndo")->text(), QString("Undo Move Lesson"));
        w.command("mnuEditUndo")->trigger();
        QCOMPARE(s.now(), start);
        QCOMPARE(cell(2, 3), chen);
        // A swap with a lesson that fits there too, then undone.
        data.reset(w.BeginLessonDrag(2, 3));
        QVERIFY(dropOn(w, data.get(), 3, 3));
        w.EndLessonDrag();
        QCOMPARE(cell(3, 3), chen);
        QCOMPARE(cell(2, 3), ohara);
        QCOMPARE(w.command("mnuEditUndo")->text(), QString("Undo Swap Lessons"));
        w.command("mnuEditUndo")->trigger();
        QCOMPARE(s.now(), start);
        // A swap that puts the Lab where 7B has it: asked as a tick's clash;
        // No leaves everything as it was, with no step to undo.
        data.reset(w.BeginLessonDrag(2, 3));
        ModalDriver driver;
        driver.expect("frmClash", press("cmdNo"));
        QCOMPARE(driver.run([&] {
            dropOn(w, data.get(), 1, 1);
            w.EndLessonDrag(); // the move, and its question, come once the drag ends
        }),
                 QString());
        QCOMPARE(s.now(), start);
        QCOMPARE(cell(1, 1), brown);
        QVERIFY(!w.command("mnuEditUndo")->isEnabled());
        // Mr Brown's own timetable holds a copy of his Monday 9:00 lesson, Hall
        // and all: a swap with it is no clash with the copy of the very lesson
        // that leaves.
        const qint32 copy = slotAt(s.tt["Tutor Mr Brown"], 1, 1);
        link("Subject", copy, s.id["Maths"]);
        link("Room", copy, s.id["Hall"]);
        link("Class", copy, s.id["7A"]);
        w.LoadTimetable(s.tt["Class 7A"]);
        data.reset(w.BeginLessonDrag(3, 3));
        QCOMPARE(w.g->cellBackColor(1, 1), w.g->cellBackColor(1, 2)); // no tint
        ModalDriver noQuestion;
        QCOMPARE(noQuestion.run([&] {
            dropOn(w, data.get(), 1, 1);
            w.EndLessonDrag();
        }),
                 QString());
        QCOMPARE(QStringList({cell(1, 1), cell(3, 3)}), QStringList({ohara, brown}));
    }
};

QTEST_MAIN(TestUndo)
#include "test_undo.moc"
