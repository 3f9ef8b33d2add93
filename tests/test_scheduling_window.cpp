// Hand scheduling through the main window, as a timetabler does it: clicking
// cells, reading the lists' statuses, ticking, the clash question, the name
// boxes, marking periods, and one lesson shown alike in every timetable it is in.

#include "autofill/AutoFillState.h"
#include "scheduling/ListSelect.h"
#include "scheduling/SchedulingState.h"
#include "shell/frmMain.h"
#include "store/Records.h"
#include "support/Fixtures.h"
#include "support/WindowDrive.h"
#include "timetable/CellLook.h"
#include "timetable/TimetableState.h"

#include <QtTest>
#include <QtWidgets>

using namespace Fixtures;
using Common::MsgResult;

namespace {
// A school of two days and three periods: tutors Mark and mary, a subject, a
// room, classes 7A, 7B and 7C with timetables, and Mark's own timetable.
struct School : OpenProject {
    qint32 mark = ModMain::CreateTutorRecord("Mark", "MK", "", "");
    qint32 mary = ModMain::CreateTutorRecord("mary", "MY", "", "");
    qint32 maths = ModMain::CreateSubjectRecord("Maths", 1);
    qint32 lab = ModMain::CreateRoomRecord("Lab", 20);
    qint32 c7A = insertClass("7A"), c7B = insertClass("7B"), c7C = insertClass("7C");
    qint32 t7A = ModMain::CreateTimetable("Class", c7A, 1);
    qint32 t7B = ModMain::CreateTimetable("Class", c7B, 1);
    qint32 t7C = ModMain::CreateTimetable("Class", c7C, 1);
    qint32 tMark = ModMain::CreateTimetable("Tutor", mark, 1);
    std::unique_ptr<frmMain> w;
    MessageRecorder& boxes = messages;
    School() : OpenProject({"Monday", "Tuesday"}, {"9:00", "10:00", "11:00", "12:00"}) {
        Timetable::Reset();
        Scheduling::Reset();
        w = std::make_unique<frmMain>();
        w->resize(1200, 800);
        w->show();
        w->Form_Load(file);
    }
    // Shows a timetable and selects the cell of (day, period), periods across.
    void select(qint32 timetable, int day, int period) {
        w->LoadTimetable(timetable);
        w->g->setRowCol(day, period);
        QCoreApplication::processEvents();
    }
    int rowOf(FlexGrid* list, qint32 id) const {
        for (int r = 1; r < list->rows(); ++r)
            if (list->rowData(r) == id)
                return r;
        return -1;
    }
    QString status(FlexGrid* list, qint32 id) const {
        const int r = rowOf(list, id);
        return list->textMatrix(r, 0) + (list->cellCheck(r, 1) == FlexGrid::Checked ? "+" : "");
    }
    // A mouse click on a list's cell, as the user makes it.
    void click(FlexGrid* list, qint32 id, int col = 1, Qt::MouseButton b = Qt::LeftButton) {
        const int r = rowOf(list, id);
        QVERIFY(r > 0);
        const QTableWidget* table = list;
        list->scrollToItem(table->item(r - 1, col - 1));
        const QRect rect = list->visualItemRect(table->item(r - 1, col - 1));
        QTest::mouseClick(list->viewport(), b, {}, rect.center());
    }
    qint32 links(const char* table, qint32 slot) const {
        return value("SELECT COUNT(*) FROM %1 WHERE SlotID = %2", table, slot).toInt();
    }
};

// One modal clash dialog step, about a tutor unless told.
ModalDriver::Step clash(const char* button, bool dontShow = false, QString kind = "Tutor") {
    return [button, dontShow, kind](QDialog* d) {
        QCOMPARE(d->windowTitle(), kind + " clash"); // a title, without a full stop
        QCOMPARE(control<QLabel>(d, "lblMessage")->text(),
                 "This " + kind +
                     " will be elsewhere at this time. Allow this clash to occur anyway?");
        control<QCheckBox>(d, "chkDontShow")->setChecked(dontShow);
        clickButton(d, button);
    };
}
} // namespace

class TestSchedulingWindow : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void statusesFollowTheSelectedCell() {
        School s;
        ModMain::CreateTutorSlotRecord(slotAt(s.t7A, 1, 1), s.mark);
        // Which statuses a cell gives is the scheduling layer's test; here the
        // lists follow the cell selected.
        s.select(s.t7B, 1, 1);
        QCOMPARE(s.status(s.w->gTutor, s.mark), "Busy");
        QCOMPARE(s.status(s.w->gTutor, s.mary), "Avail");
        // Each status has its own colour; the placeholder row is never listed.
        QVERIFY(s.w->gTutor->cellBackColor(s.rowOf(s.w->gTutor, s.mark), 0) !=
                s.w->gTutor->cellBackColor(s.rowOf(s.w->gTutor, s.mary), 0));
        s.select(s.t7B, 2, 1);
        QCOMPARE(s.status(s.w->gTutor, s.mark), "Avail");
        QCOMPARE(s.rowOf(s.w->gTutor, 1), -1);
        QVERIFY(s.w->gClass->isHidden()); // a class timetable lists no classes
        // Showing a timetable again lists what the project holds now.
        value("UPDATE Tutor SET name = 'Mary Ann' WHERE id = %1", s.mary);
        ModMain::CreateTutorRecord("Abel", "AB", "", "");
        s.select(s.t7A, 2, 2);
        QCOMPARE(s.w->gTutor->textMatrix(s.rowOf(s.w->gTutor, s.mary), 2),
                 QStringLiteral("Mary Ann"));
        QCOMPARE(s.w->gTutor->textMatrix(1, 2), QStringLiteral("Abel"));
    }
    void nameBoxesCompleteAndCreate() {
        School s;
        s.select(s.t7A, 1, 1);
        QLineEdit* box = s.w->txtTutorName;
        box->setFocus();
        QTest::keyClicks(box, "ma");
        QCOMPARE(box->text(), QStringLiteral("Mark")); // the first in name order
        QCOMPARE(box->selectedText(), QStringLiteral("rk"));
        QTest::keyClick(box, Qt::Key_Backspace);
        QCOMPARE(box->text(), QStringLiteral("Ma")); // the selection gone, no completion again
        // Enter goes to the grid; leaving the box ticks the named tutor.
        box->setText("Zoe O'Neill");
        QTest::keyClick(box, Qt::Key_Return);
        QCoreApplication::processEvents();
        const qint32 zoe = value("SELECT id FROM Tutor WHERE name = 'Zoe O''Neill'").toInt();
        QVERIFY(zoe > 1);
        const qint32 slot = slotAt(s.t7A, 1, 1);
        QCOMPARE(
            value("SELECT COUNT(*) FROM TutorSlot WHERE SlotID = %1 AND TutorID = %2", slot, zoe),
            "1");
        QCOMPARE(s.status(s.w->gTutor, zoe), "-+");
        QVERIFY(s.w->g->textMatrix(1, 1).startsWith(QStringLiteral("Zoe O'Neill")));
        // A blank box creates nothing.
        const QString tutors = value("SELECT COUNT(*) FROM Tutor");
        s.w->txtSubjectName->setText("   ");
        s.w->txtSubjectName->setFocus();
        s.w->g->setFocus();
        QCoreApplication::processEvents();
        QCOMPARE(value("SELECT COUNT(*) FROM Tutor"), tutors);
        QCOMPARE(value("SELECT COUNT(*) FROM Subject WHERE TRIM(name) = ''"), "0");
        QVERIFY(s.boxes.messages().isEmpty());
    }
    void clashIsAskedAndDetailed() {
        School s;
        ModMain::CreateTutorSlotRecord(slotAt(s.t7A, 1, 1), s.mark);
        s.select(s.t7B, 1, 1);
        const qint32 before = value("SELECT COUNT(*) FROM TutorSlot").toInt();
        // Details names the other lessons with their timetables, one per line,
        // then asks again; No changes nothing.
        ModalDriver driver;
        driver.expect("frmClash", clash("cmdDetails"));
        driver.expect("frmClash", clash("cmdNo"));
        QCOMPARE(driver.run([&] { s.click(s.w->gTutor, s.mark); }), QString());
        QCOMPARE(s.boxes.texts(),
                 QStringList{"This Tutor is also used in the following timetables:\r\n7A with Mark "
                             "(Class 7A)\r\n"});
        QCOMPARE(value("SELECT COUNT(*) FROM TutorSlot").toInt(), before);
        QCOMPARE(s.status(s.w->gTutor, s.mark), "Busy");
        // Yes with "don't show this again": linked, and later clashes go through unasked.
        driver = ModalDriver();
        driver.expect("frmClash", clash("cmdYes", true));
        QCOMPARE(driver.run([&] { s.click(s.w->gTutor, s.mark); }), QString());
        // In this lesson and in 7A's at once: a real double booking.
        QCOMPARE(s.status(s.w->gTutor, s.mark), "Clash+");
        s.select(s.t7C, 1, 1);
        s.click(s.w->gTutor, s.mark); // no dialog may come
        QCOMPARE(s.status(s.w->gTutor, s.mark), "Clash+");
        // The Tools menu shows the setting and gives the question back.
        QAction* ask = s.w->command("mnuToolsAskClashes");
        s.w->findChild<QMenu*>("mnuTools")->aboutToShow();
        QVERIFY(ask->isCheckable() && !ask->isChecked());
        ask->trigger();
        QVERIFY(!ModMain::AllowClashesSetting());
        s.select(s.t7B, 1, 2);
        ModMain::CreateTutorSlotRecord(slotAt(s.t7A, 1, 2), s.mary);
        s.select(s.t7B, 1, 2);
        driver = ModalDriver();
        driver.expect("frmClash", clash("cmdNo"));
        QCOMPARE(driver.run([&] { s.click(s.w->gTutor, s.mary); }), QString());
        // The tutor's context menu details the same timetables.
        s.boxes.clear();
        QTimer::singleShot(0, [] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            QVERIFY(menu);
            menu->findChild<QAction*>("mnuTutorDetails")->trigger();
            menu->close();
        });
        s.click(s.w->gTutor, s.mary, 2, Qt::RightButton);
        QCOMPARE(
            s.boxes.texts(),
            QStringList{"This tutor is also allocated on the following timetables:\r\n7A with mary "
                        "(Class 7A)\r\n"});
    }
    void roomBusyElsewhereIsAsked() {
        // A room is asked about as a tutor is: No books nothing, Yes books it twice.
        School s;
        s.select(s.t7A, 1, 1);
        s.click(s.w->gRoom, s.lab);
        s.select(s.t7B, 1, 1);
        QCOMPARE(s.status(s.w->gRoom, s.lab), "Busy");
        ModalDriver driver;
        driver.expect("frmClash", clash("cmdNo", false, "Room"));
        QCOMPARE(driver.run([&] { s.click(s.w->gRoom, s.lab); }), QString());
        QCOMPARE(value("SELECT COUNT(*) FROM RoomSlot WHERE RoomID = %1", s.lab), "1");
        QCOMPARE(s.status(s.w->gRoom, s.lab), "Busy");
        driver = ModalDriver();
        driver.expect("frmClash", clash("cmdYes", false, "Room"));
        QCOMPARE(driver.run([&] { s.click(s.w->gRoom, s.lab); }), QString());
        QCOMPARE(s.status(s.w->gRoom, s.lab), "Clash+");
    }
    void tickingAndUntickingMirror() {
        School s;
        // A click on Mark's own timetable ticks with mirroring (the rows it
        // writes are the scheduling layer's test); a second click unticks.
        s.select(s.tMark, 2, 3);
        s.click(s.w->gClass, s.c7A);
        QCOMPARE(
            value("SELECT TutorID FROM TutorSlot WHERE SlotID = %1", slotAt(s.t7A, 2, 3)).toInt(),
            s.mark);
        QCOMPARE(s.status(s.w->gClass, s.c7A), "-+");
        s.click(s.w->gClass, s.c7A);
        QCOMPARE(s.links("ClassSlot", slotAt(s.tMark, 2, 3)), 0);
        QCOMPARE(s.status(s.w->gClass, s.c7A), "Avail");
    }
    void periodMarking() {
        School s;
        s.select(s.t7A, 1, 1);
        for (FlexGrid* list : {s.w->gTutor, s.w->gSubject, s.w->gRoom})
            s.click(list, list == s.w->gTutor ? s.mary : list == s.w->gSubject ? s.maths : s.lab);
        const qint32 full = slotAt(s.t7A, 1, 1);
        const auto linksOfFull = [&] {
            return s.links("TutorSlot", full) + s.links("SubjectSlot", full) +
                   s.links("RoomSlot", full);
        };
        QCOMPARE(linksOfFull(), 3);
        // No and Cancel change nothing.
        s.w->g->selectRange(2, 2, 1, 1); // dragged from bottom-right to top-left
        s.boxes.answer(MsgResult::No);
        s.w->command("mnuPeriodBreak")->trigger();
        QCOMPARE(value("SELECT COUNT(*) FROM Slot WHERE SpecialID = 4"), "0");
        s.boxes.answer(MsgResult::Yes);
        s.w->command("tbBreak")->trigger();
        QCOMPARE(s.boxes.texts(), QStringList(2, "Mark selected as free periods?"));
        // A plain question: Yes and No only.
        QCOMPARE(s.boxes.messages().first().buttons, Common::MsgButtons::YesNo);
        // The whole rectangle: the full cell lost its links, empty cells got slots.
        QCOMPARE(value("SELECT COUNT(*) FROM Slot WHERE TimetableID = %1 AND SpecialID = 4", s.t7A),
                 "4");
        QCOMPARE(linksOfFull(), 0);
        // A marked cell says what it is, in its own tint.
        QCOMPARE(s.w->g->textMatrix(2, 2), QString("Break"));
        QCOMPARE(s.w->g->cellBackColor(2, 2), ModMain::MarkTint(ModMain::SpecialID::Break, {}));
        // The selection is as the user left it.
        QCOMPARE(QPoint(s.w->g->col(), s.w->g->row()), QPoint(2, 2));
        QCOMPARE(QPoint(s.w->g->colSel(), s.w->g->rowSel()), QPoint(1, 1));
        // Clearing makes them ordinary again.
        s.boxes.answer(MsgResult::Yes);
        s.w->command("mnuPeriodClear")->trigger();
        QCOMPARE(value("SELECT COUNT(*) FROM Slot WHERE TimetableID = %1 AND SpecialID = 1", s.t7A),
                 "4");
    }
    void roomOnlyCellDrawnCentred() {
        // The blank lines of the missing tutor and subject are not drawn, so
        // the room sits in the middle of its cell.
        School s;
        s.select(s.t7A, 1, 3);
        s.click(s.w->gRoom, s.lab);
        QCOMPARE(s.w->g->textMatrix(1, 3), QStringLiteral("\r\n\r\nLab"));
        const auto* drawn = qobject_cast<QStyledItemDelegate*>(s.w->g->itemDelegate());
        QVERIFY(drawn);
        QCOMPARE(drawn->displayText(s.w->g->model()->index(0, 2).data(), QLocale()),
                 QStringLiteral("Lab"));
        s.click(s.w->gTutor, s.mark);
        QCOMPARE(drawn->displayText(s.w->g->model()->index(0, 2).data(), QLocale())
                         .count(QChar::LineSeparator) +
                     drawn->displayText(s.w->g->model()->index(0, 2).data(), QLocale()).count('\n'),
                 2); // the subject's blank line stays between
    }
    void lunchColumnBothWays() {
        School s;
        s.select(s.t7A, 1, 2);
        s.click(s.w->gTutor, s.mary);
        s.w->command("mnuFormatDefineLunchColumn")->trigger();
        QCOMPARE(s.w->g->textMatrix(0, 2), QStringLiteral("Lunch"));
        QCOMPARE(value("SELECT SpecialID FROM TimeTitle WHERE TimetableID = %1 AND Pos = 2", s.t7A),
                 "3");
        QCOMPARE(value("SELECT group_concat(SpecialID) FROM Slot WHERE TimetableID = %1", s.t7A),
                 "3,3");
        QCOMPARE(value("SELECT COUNT(*) FROM TutorSlot"), "0");
        s.w->command("mnuFormatDefineLunchColumn")->trigger();
        QCOMPARE(s.w->g->textMatrix(0, 2), QStringLiteral("10:00 - 11:00"));
        QCOMPARE(value("SELECT group_concat(SpecialID) FROM Slot WHERE TimetableID = %1", s.t7A),
                 "1,1");
        QVERIFY(s.boxes.messages().isEmpty());
    }
    void keyboard() {
        School s;
        ModMain::CreateTutorSlotRecord(slotAt(s.t7A, 2, 1), s.mark);
        s.select(s.t7B, 1, 1);
        QCOMPARE(s.status(s.w->gTutor, s.mark), "Avail");
        // An arrow key moves to Tuesday and the lists follow.
        s.w->g->setFocus();
        QTest::keyClick(s.w->g, Qt::Key_Down);
        QCOMPARE(s.w->g->row(), 2);
        QCOMPARE(s.status(s.w->gTutor, s.mark), "Busy");
        // Resting on a Busy status names where the tutor is.
        FlexGrid* tutors = s.w->gTutor;
        const QTableWidget* table = tutors;
        const QPoint at =
            tutors->visualItemRect(table->item(s.rowOf(tutors, s.mark) - 1, 0)).center();
        QHelpEvent help(QEvent::ToolTip, at, tutors->viewport()->mapToGlobal(at));
        QCoreApplication::sendEvent(tutors->viewport(), &help);
        QCOMPARE(QToolTip::text(),
                 QStringLiteral("Busy at this time in:\n7A with Mark (Class 7A)"));
        // Resting on the status itself says the same.
        QHeaderView* statuses = tutors->verticalHeader();
        const int section = s.rowOf(tutors, s.mark) - 1;
        const QPoint onStatus(statuses->width() / 2, statuses->sectionViewportPosition(section) +
                                                         statuses->sectionSize(section) / 2);
        QToolTip::hideText();
        QHelpEvent overStatus(QEvent::ToolTip, onStatus,
                              statuses->viewport()->mapToGlobal(onStatus));
        QCoreApplication::sendEvent(statuses->viewport(), &overStatus);
        QCOMPARE(QToolTip::text(),
                 QStringLiteral("Busy at this time in:\n7A with Mark (Class 7A)"));
        // Space on a list's row ticks it.
        s.w->gSubject->setFocus();
        s.w->gSubject->setRowCol(s.rowOf(s.w->gSubject, s.maths), 2);
        QTest::keyClick(s.w->gSubject, Qt::Key_Space);
        QCOMPARE(s.status(s.w->gSubject, s.maths), "-+");
        QCOMPARE(s.links("SubjectSlot", slotAt(s.t7B, 2, 1)), 1);
    }
    void listMenusEditResources() {
        // A list's context menu edits the resource; the lists and the grid follow.
        School s;
        s.select(s.t7A, 1, 1);
        s.click(s.w->gTutor, s.mary);
        ModalDriver driver;
        driver.expect("frmTutor", [](QDialog* d) {
            QCOMPARE(control<QLineEdit>(d, "txtName")->text(), QString("mary"));
            control<QLineEdit>(d, "txtName")->setText("Mary Zhou");
            control<QLineEdit>(d, "txtDisplayName")->setText("MZ");
            clickButton(d, "cmdOk");
        });
        QTimer::singleShot(0, [] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            QVERIFY(menu);
            QVERIFY(!menu->findChild<QAction*>("mnuTutorDetails")); // she is free elsewhere
            QVERIFY(menu->findChild<QAction*>("mnuListNew"));
            menu->findChild<QAction*>("mnuListEdit")->trigger();
            menu->close();
        });
        QCOMPARE(driver.run([&] { s.click(s.w->gTutor, s.mary, 2, Qt::RightButton); }), QString());
        QCOMPARE(s.w->gTutor->textMatrix(s.rowOf(s.w->gTutor, s.mary), 2), QString("Mary Zhou"));
        QVERIFY(s.w->g->textMatrix(1, 1).contains("MZ"));
        QCOMPARE(s.status(s.w->gTutor, s.mary), QString("-+"));
    }
    // A lesson ticked in a class, moved by a drag and filled by Auto Fill
    // shows whole in the timetable of its tutor, made afterwards or before.
    void classLessonsReachTheirTutor() {
        School s;
        s.select(s.t7A, 1, 1);
        s.click(s.w->gTutor, s.mary);
        s.click(s.w->gSubject, s.maths);
        s.click(s.w->gRoom, s.lab);
        // Her timetable made afterwards, from View > Timetables.
        s.boxes.answer(MsgResult::Yes);
        ModalDriver driver;
        driver.expect("frmTableOpen", [](QDialog* d) {
            auto* list = control<FlexGrid>(d, "grdTimetables");
            for (int r = 1; r < list->rows(); ++r)
                if (list->textMatrix(r, 1) == "mary")
                    list->setRowCol(r, 1);
            clickButton(d, "cmdOk");
        });
        for (const char* screen : {"Welcome", "Who", "Style", "Complete"})
            driver.expect(QStringLiteral("frmScr_CreateTT_") + screen, press("cmdNext"));
        const QString shown = driver.run([&] { s.w->command("mnuViewTimetable")->trigger(); });
        QCOMPARE(s.boxes.texts(), QStringList{"Create timetable for mary?"});
        QCOMPARE(shown, QString());
        const qint32 tMary = Timetable::current().ID;
        QCOMPARE(s.w->windowTitle(), QStringLiteral("Vantor Planner - Tutor mary"));
        const auto words = [&](int row, int col) {
            QStringList w =
                s.w->g->textMatrix(row, col).split(QRegularExpression("\\s+"), Qt::SkipEmptyParts);
            w.sort();
            return w.join(' ');
        };
        QCOMPARE(words(1, 1), QStringLiteral("7A Lab Maths"));
        s.select(tMary, 1, 1);
        QCOMPARE(s.status(s.w->gClass, s.c7A), "-+");
        QCOMPARE(s.status(s.w->gSubject, s.maths), "-+");
        QCOMPARE(s.status(s.w->gRoom, s.lab), "-+");
        // Dragged in the class to Tuesday 11:00: it leaves Monday in hers too.
        s.select(s.t7A, 1, 1);
        dragLesson(*s.w, 1, 1, 2, 3);
        s.select(tMary, 2, 3);
        QCOMPARE(words(1, 1), QString());
        QCOMPARE(words(2, 3), QStringLiteral("7A Lab Maths"));
        // Auto Fill gives 7B two Maths lessons with her, from Tools > Auto Fill.
        s.select(s.t7B, 1, 1);
        AutoFill::Reset();
        const auto only = [](const char* list, const QString& name) {
            return [list, name](QDialog* d) {
                auto* l = control<QListWidget>(d, list);
                for (int i = 0; i < l->count(); ++i)
                    l->item(i)->setSelected(l->item(i)->text() == name);
                clickButton(d, "cmdNext");
            };
        };
        driver = ModalDriver();
        driver.expect("frmScr_AutoFill_Welcome", press("cmdNext"));
        driver.expect("frmScr_AutoFill_Timetable", [](QDialog* d) {
            QCOMPARE(control<QComboBox>(d, "cboWho")->currentText(), QString("7B"));
            clickButton(d, "cmdNext");
        });
        driver.expect("frmScr_AutoFill_Subjects", [](QDialog* d) {
            control<QComboBox>(d, "cboPeriods")->setCurrentText("2");
            control<QComboBox>(d, "cboSubjects")->setCurrentText("Maths");
            clickButton(d, "cmdAdd");
            clickButton(d, "cmdNext");
        });
        driver.expect("frmScr_AutoFill_Tutors", only("lstTutors", "mary"));
        driver.expect("frmScr_AutoFill_Rooms", only("lstRooms", "Lab"));
        driver.expect("frmScr_AutoFill_Method", press("cmdNext"));
        driver.expect("frmScr_AutoFill_Complete", press("cmdNext"));
        driver.expect("frmAutoFill_Progress", [](QDialog* d) {
            QTRY_VERIFY_WITH_TIMEOUT(control<QPushButton>(d, "cmdCancel")->text() == "Done", 20000);
            clickButton(d, "cmdCancel");
        });
        QCOMPARE(driver.run([&] { s.w->command("mnuToolsAutoFill")->trigger(); }), QString());
        QCOMPARE(value("SELECT COUNT(*) FROM Slot JOIN SubjectSlot ON SlotID = Slot.id WHERE "
                       "TimetableID = %1",
                       s.t7B),
                 "2");
        // Each of 7B's lessons with her is in her timetable; where she was
        // busy, Auto Fill gave the subject alone.
        const auto count = [&](qint32 timetable, const QString& text) {
            s.select(timetable, 1, 1);
            int n = 0;
            for (int r = 1; r < s.w->g->rows(); ++r)
                for (int c = 1; c < s.w->g->cols(); ++c)
                    n += words(r, c) == text;
            return n;
        };
        const int withHer = count(s.t7B, QStringLiteral("Lab MY Maths"));
        QVERIFY(withHer >= 1);
        QCOMPARE(count(tMary, QStringLiteral("7B Lab Maths")), withHer);
        QCOMPARE(words(2, 3), QStringLiteral("7A Lab Maths")); // and 7A's still there
    }
    // A lesson ticked in a tutor's timetable is the class's lesson too: the
    // class shows it whole, and its room is no clash with that tutor.
    void tutorLessonsReachTheirClass() {
        School s;
        s.select(s.tMark, 1, 2);
        s.click(s.w->gClass, s.c7A);
        s.click(s.w->gSubject, s.maths);
        s.click(s.w->gRoom, s.lab);
        // Each timetable leaves out its own owner.
        QCOMPARE(s.w->g->textMatrix(1, 2), QStringLiteral("7A\r\nMaths\r\nLab"));
        s.select(s.t7A, 1, 2);
        QCOMPARE(s.w->g->textMatrix(1, 2), QStringLiteral("MK\r\nMaths\r\nLab"));
        QCOMPARE(s.status(s.w->gTutor, s.mark), "-+");
        QCOMPARE(s.status(s.w->gRoom, s.lab), "-+");
        // Unticking the room in the class takes it out of the tutor's too.
        s.click(s.w->gRoom, s.lab);
        QCOMPARE(s.status(s.w->gRoom, s.lab), "Avail");
        s.select(s.tMark, 1, 2);
        QVERIFY(!s.w->g->textMatrix(1, 2).contains("Lab"));
        QVERIFY(s.w->g->textMatrix(1, 2).contains("7A"));
        QVERIFY(s.boxes.messages().isEmpty());
    }
    // In the sample school, Mr Brown's Thursday 9:45 lists 7A Busy, as 7A has
    // English with Ms Hughes then; ticking it asks, and No changes nothing.
    void sampleSchoolTutorSeesClassesBusy() {
        TestEnv env;
        MessageRecorder boxes;
        const QString file = env.path("sample.VNPL");
        QVERIFY(QFile::copy(Common::AppDir() + "/sample-school.VNPL", file));
        Timetable::Reset();
        Scheduling::Reset();
        frmMain w;
        w.resize(1200, 800);
        w.show();
        w.Form_Load(file);
        w.LoadTimetable(value("SELECT t.id FROM Timetable t JOIN Tutor ON Tutor.id = t.TutorID "
                              "WHERE Tutor.name = 'Mr Brown'")
                            .toInt());
        // The cell under Thursday and 9:45, whichever way round the grid is.
        int row = -1, col = -1;
        for (int r = 1; r < w.g->rows(); ++r)
            for (int c = 1; c < w.g->cols(); ++c) {
                const QString across = w.g->textMatrix(0, c), down = w.g->textMatrix(r, 0);
                if ((across + down).contains("Thursday") && (across + down).contains("9:45 "))
                    row = r, col = c;
            }
        QVERIFY(row > 0);
        w.g->setRowCol(row, col);
        QCoreApplication::processEvents();
        FlexGrid* classes = w.gClass;
        const qint32 c7A = value("SELECT id FROM Class WHERE name = '7A'").toInt();
        int at = -1;
        for (int r = 1; r < classes->rows(); ++r)
            if (classes->rowData(r) == c7A)
                at = r;
        QVERIFY(at > 0);
        QCOMPARE(classes->textMatrix(at, 0), QStringLiteral("Busy"));
        const QString before = dump(file);
        ModalDriver driver;
        driver.expect("frmClash", press("cmdNo"));
        const QTableWidget* table = classes;
        const QRect rect = classes->visualItemRect(table->item(at - 1, 0)); // its tick box
        QCOMPARE(driver.run([&] {
            QTest::mouseClick(classes->viewport(), Qt::LeftButton, {}, rect.center());
        }),
                 QString());
        QCOMPARE(classes->textMatrix(at, 0), QStringLiteral("Busy"));
        QVERIFY(boxes.messages().isEmpty());
        w.close();
        QCOMPARE(dump(file), before);
    }
    // A room in one lesson is Busy for another class, not a clash, though
    // the lesson is in a tutor's timetable as well as the class's.
    void oneLessonIsOneBooking() {
        School s;
        s.select(s.t7A, 1, 1);
        s.click(s.w->gTutor, s.mark);
        s.click(s.w->gRoom, s.lab);
        s.select(s.t7B, 1, 1);
        QCOMPARE(s.status(s.w->gRoom, s.lab), "Busy");
        QCOMPARE(s.status(s.w->gTutor, s.mark), "Busy");
        s.select(s.tMark, 1, 1);
        QCOMPARE(s.status(s.w->gRoom, s.lab), "-+");
        QCOMPARE(s.status(s.w->gClass, s.c7A), "-+");
        QCOMPARE(s.status(s.w->gClass, s.c7B), "Avail");
    }
    // A clash allowed with Yes stays in sight: both cells edged in red, the
    // tutor listed Clash, and the double booking in Tools > Conflicts, which
    // goes to the tutor's own timetable.
    void allowedClashStaysVisible() {
        School s;
        s.select(s.t7A, 1, 1);
        s.click(s.w->gTutor, s.mark);
        s.select(s.t7B, 1, 1);
        QCOMPARE(s.w->g->cellEdge(1, 1), QColor());
        ModalDriver driver;
        driver.expect("frmClash", clash("cmdYes"));
        QCOMPARE(driver.run([&] { s.click(s.w->gTutor, s.mark); }), QString());
        QCOMPARE(s.w->g->cellEdge(1, 1), ModMain::ConflictEdge());
        QCOMPARE(s.status(s.w->gTutor, s.mark), "Clash+");
        s.select(s.t7A, 1, 1);
        QCOMPARE(s.w->g->cellEdge(1, 1), ModMain::ConflictEdge());
        QCOMPARE(s.w->g->cellEdge(1, 2), QColor());
        s.select(s.t7C, 1, 1);
        QCOMPARE(s.status(s.w->gTutor, s.mark), "Clash");
        // Mark's own timetable shows both lessons in the one cell.
        s.select(s.tMark, 1, 1);
        QVERIFY(s.w->g->textMatrix(1, 1).contains("7A"));
        QVERIFY(s.w->g->textMatrix(1, 1).contains("7B"));
        QCOMPARE(s.w->g->cellEdge(1, 1), ModMain::ConflictEdge());
        s.select(s.t7C, 2, 2);
        driver = ModalDriver();
        driver.expect("frmConflicts", [](QDialog* d) {
            QCOMPARE(control<QLabel>(d, "lblSummary")->text(),
                     QStringLiteral("One double booking: a tutor, room or class in two or more "
                                    "lessons at once. Choose one and Show in Timetable to go to "
                                    "it."));
            auto* list = control<QTableWidget>(d, "grdConflicts");
            QCOMPARE(list->rowCount(), 1);
            QCOMPARE(list->item(0, 0)->text(), QStringLiteral("Monday"));
            QCOMPARE(list->item(0, 2)->text(), QStringLiteral("Tutor Mark"));
            QVERIFY(list->item(0, 3)->text().contains("7A"));
            QVERIFY(list->item(0, 3)->text().contains("7B"));
            clickButton(d, "cmdShow");
        });
        QCOMPARE(driver.run([&] { s.w->command("mnuToolsConflicts")->trigger(); }), QString());
        QCOMPARE(Timetable::current().ID, s.tMark);
        QCOMPARE(QPoint(s.w->g->col(), s.w->g->row()), QPoint(1, 1));
        // Taken out again, nothing is edged or listed.
        s.select(s.t7B, 1, 1);
        s.click(s.w->gTutor, s.mark);
        QCOMPARE(s.w->g->cellEdge(1, 1), QColor());
        driver = ModalDriver();
        driver.expect("frmConflicts", [](QDialog* d) {
            QCOMPARE(control<QTableWidget>(d, "grdConflicts")->rowCount(), 0);
            QVERIFY(!control<QPushButton>(d, "cmdShow")->isEnabled());
            clickButton(d, "cmdClose");
        });
        QCOMPARE(driver.run([&] { s.w->command("mnuToolsConflicts")->trigger(); }), QString());
    }
    // Lunch, break and unavailable periods each show their word in their own
    // tint, and take no ticks.
    void markedPeriodsShowAndRefuse() {
        School s;
        const auto mark = [&](int day, int period, const char* command) {
            s.select(s.t7A, day, period);
            s.boxes.answer(MsgResult::Yes);
            s.w->command(command)->trigger();
        };
        mark(1, 1, "mnuPeriodLunch");
        mark(1, 2, "mnuPeriodBreak");
        mark(1, 3, "mnuPeriodUnavailable");
        QCOMPARE(s.w->g->textMatrix(1, 1), QStringLiteral("Lunch"));
        QCOMPARE(s.w->g->textMatrix(1, 2), QStringLiteral("Break"));
        QCOMPARE(s.w->g->textMatrix(1, 3), QStringLiteral("Unavailable"));
        const QColor plain = s.w->g->cellBackColor(2, 1);
        const QSet<QRgb> tints = {plain.rgb(), s.w->g->cellBackColor(1, 1).rgb(),
                                  s.w->g->cellBackColor(1, 2).rgb(),
                                  s.w->g->cellBackColor(1, 3).rgb()};
        QCOMPARE(tints.size(), 4);
        s.boxes.clear();
        for (int period = 1; period <= 3; ++period) {
            s.select(s.t7A, 1, period);
            s.click(s.w->gTutor, s.mark);
            QCOMPARE(s.status(s.w->gTutor, s.mark), "Avail");
        }
        QCOMPARE(value("SELECT COUNT(*) FROM TutorSlot"), "0");
        QCOMPARE(s.w->g->textMatrix(1, 3), QStringLiteral("Unavailable"));
        QCOMPARE(s.boxes.texts().size(), 3);
        QCOMPARE(s.boxes.texts().last(),
                 QStringLiteral("This period is marked Unavailable, so it takes no lesson. Choose "
                                "Period > Clear first to use it for lessons."));
    }
};

QTEST_MAIN(TestSchedulingWindow)
#include "test_scheduling_window.moc"
