// Timetables: the wizard, slot look-up, the grid both ways round, sizes and deleting.

#include "common/VbError.h"
#include "shell/frmMain.h"
#include "store/Records.h"
#include "support/Fixtures.h"
#include "timetable/CellLook.h"
#include "timetable/TimetableGrid.h"
#include "timetable/TimetableState.h"
#include "timetable/TimetableText.h"
#include "wizards/WizardState.h"

#include <QtTest>
#include <QtWidgets>

using namespace Fixtures;

namespace {
qint32 makeTimetable(const QString& type, qint32 whoID) {
    return ModMain::CreateTimetable(type, whoID, 1);
}

qint32 classTimetable(const QString& name = QStringLiteral("7A")) {
    return makeTimetable(QStringLiteral("Class"), insertClass(name));
}

// One step for each new-timetable screen in turn, from the first; the kind's
// screen comes only where the user has not chosen the kind yet (File > New).
using Step = ModalDriver::Step;
ModalDriver wizard(const QList<Step>& steps, bool askKind = false) {
    QStringList screens = {"Welcome", "Who", "Style", "Complete"};
    if (askKind)
        screens.insert(1, "Type");
    ModalDriver driver;
    for (int i = 0; i < steps.size(); ++i)
        driver.expect(QStringLiteral("frmScr_CreateTT_") + screens[i], steps[i]);
    return driver;
}

// On the Who screen: type a new name under "Create new...".
Step createNew(const QString& name) {
    return [name](QDialog* d) {
        auto* cbo = control<QComboBox>(d, "cboWho");
        cbo->setCurrentIndex(cbo->findText(QStringLiteral("Create new...")));
        control<QLineEdit>(d, "txtWho")->setText(name);
        clickButton(d, "cmdNext");
    };
}

// An open project with two days, one with a quote in its name, and four
// periods: 9:00-10:00, 10:00-12:30, 12:30-13:15 and 13:15-14:00.
struct Project : OpenProject {
    Project() : OpenProject({"Monday", "Satur'day"}, {"9:00", "10:00", "12:30", "13:15", "14:00"}) {
        Timetable::Reset();
        Wizard::Reset();
    }
};
} // namespace

class TestTimetable : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void textsAndSlotLookup() {
        // Morning and across-noon headings in both clocks are in the grid test.
        Timetable::current().Time12Hour = true;
        QCOMPARE(ModMain::FormatTimeTitle(QTime(13, 30), 30), QStringLiteral("1:30 - 2:00"));
        QCOMPARE(ModMain::FormatTimeTitle(QTime(0, 15), 30), QStringLiteral("12:15 - 12:45"));
        Project p;
        const qint32 tt = classTimetable();
        const qint32 period = projectID("TimeTitle", 2), day = projectID("DayTitle", 2);
        // An unknown period or day: both look-ups raise the same words, naming
        // the id found so far, and write nothing.
        for (const auto& [create, t, d, missing] :
             {std::tuple{false, 999, day, "TimeTitle"}, std::tuple{false, period, 999, "DayTitle"},
              std::tuple{true, 999, day, "TimeTitle"}, std::tuple{true, period, 999, "DayTitle"}}) {
            QString raised;
            try {
                create ? ModMain::DoCreateGetSlot(tt, t, d) : ModMain::DoGetSlot(tt, t, d);
            } catch (const VbError& e) {
                raised =
                    QStringLiteral("%1 %2: %3").arg(e.number()).arg(e.source(), e.description());
            }
            QCOMPARE(
                raised,
                QStringLiteral("1 ModMain: Error DoCreateGetSlot can't find %1 0").arg(missing));
        }
        QCOMPARE(ModMain::DoGetSlot(tt, period, day), -1);
        QCOMPARE(value("SELECT COUNT(*) FROM Slot"), "0");
        const qint32 slot = ModMain::DoCreateGetSlot(tt, period, day);
        QCOMPARE(ModMain::DoCreateGetSlot(tt, period, day), slot);
        QCOMPARE(value("SELECT COUNT(*) FROM Slot"), "1");
        // The slot copies its period and day.
        QCOMPARE(value("SELECT time(trim(StartTime)) || ' ' || Duration || ' ' || DOW || ' ' || "
                       "SpecialID FROM Slot"),
                 "10:00:00 150 Satur'day 1");
        // Cell texts: display names, sorted by themselves rather than by the names.
        const qint32 empty = slotAt(tt, 1, 2);
        ModMain::CreateTutorSlotRecord(slot, ModMain::CreateTutorRecord("Aaa", "Ms A", "", ""));
        ModMain::CreateTutorSlotRecord(slot, ModMain::CreateTutorRecord("Zzz", "Mr B", "", ""));
        // A tutor without a display name is shown by name.
        ModMain::CreateTutorSlotRecord(slot, ModMain::CreateTutorRecord("O'Neill", " ", "", ""));
        ModMain::CreateSubjectSlotRecord(slot, ModMain::CreateSubjectRecord("Maths", 1));
        ModMain::CreateRoomSlotRecord(slot, ModMain::CreateRoomRecord("Lab", 30));
        ModMain::CreateClassSlotRecord(slot,
                                       value("SELECT id FROM Class WHERE name = '7A'").toInt());
        QStringList shown;
        for (const char* type : {"Class", "Tutor", "Room", "Subject"})
            shown << ModMain::FormatSlotText(slot, type);
        shown << ModMain::FormatSlotText(empty, "Class") << ModMain::FormatSlotText(empty, "Room");
        QCOMPARE(shown,
                 (QStringList{"Mr B, Ms A, O'Neill\r\nMaths\r\nLab", "7A\r\nMaths\r\nLab",
                              "Mr B, Ms A, O'Neill\r\nMaths\r\n7A", "", "\r\n\r\n", "\r\n\r\n"}));
    }
    void wizardCreates_data() {
        QTest::addColumn<QString>("type");
        QTest::addColumn<bool>("subjects");
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("autoFillAsked");
        QTest::newRow("class, with subjects") << "Class" << true << "O'Brien's 7A" << true;
        QTest::newRow("class, placeholder subject only") << "Class" << false << "7B" << false;
        QTest::newRow("tutor") << "Tutor" << true << "Mr O'Neil" << false;
        QTest::newRow("room") << "Room" << true << "Lab 'B'" << false;
    }
    void wizardCreates() {
        QFETCH(QString, type);
        QFETCH(bool, subjects);
        QFETCH(QString, name);
        QFETCH(bool, autoFillAsked);
        Project p;
        const qint32 maths = subjects ? ModMain::CreateSubjectRecord("Maths", 1) : 0;
        value("INSERT INTO %1 (name) VALUES ('Smith')", type);
        makeTimetable(type, ModMain::DB().GetInsertID());
        Wizard::state().WizardType = type;
        Wizard::state().WizardWhoID = -1;
        frmMain w;
        w.Form_Load(p.file);
        // Smith, who has a timetable, then "Create new..." with no name keep the
        // wizard on the Who screen.
        const auto who = [name](QDialog* d) {
            auto* cbo = control<QComboBox>(d, "cboWho");
            QCOMPARE(cbo->count(), 2);
            QCOMPARE(cbo->itemText(0), QStringLiteral("Smith - Already created"));
            cbo->setCurrentIndex(0);
            clickButton(d, "cmdNext");
            cbo->setCurrentIndex(1);
            clickButton(d, "cmdNext");
            QVERIFY(d->isVisible() && !Wizard::state().WizardCancel);
            createNew(name)(d);
        };
        const auto style = [](QDialog* d) {
            control<QListWidget>(d, "lstStyle")->setCurrentRow(1); // id 2, serif
            clickButton(d, "cmdNext");
        };
        // The caller has chosen the type.
        const auto start = [&w] { w.DoNewTimeTableWizard(); };
        ModalDriver driver = wizard({press("cmdNext"), who, style, press("cmdNext")});
        if (autoFillAsked) {
            // Yes starts Auto Fill on the new timetable.
            p.messages.setDefault(Common::MsgResult::Yes);
            driver.expect("frmScr_AutoFill_Welcome", press("cmdNext"));
            driver.expect("frmScr_AutoFill_Timetable", [name](QDialog* d) {
                QCOMPARE(control<QComboBox>(d, "cboWho")->currentText(), name);
                clickButton(d, "cmdCancel");
            });
        }
        QCOMPARE(driver.run(start), QString());
        QStringList asked = {"A timetable already exists for this " + type +
                                 ". To view and change the timetable select it from the View Table "
                                 "button on the main window.",
                             "You have not entered a name. Please enter a name to continue."};
        if (autoFillAsked)
            asked << "Would you like to run the Auto Fill Wizard to fill your timetable?";
        QCOMPARE(p.messages.texts(), asked);
        const qint32 id = Timetable::current().ID;
        QCOMPARE(value("SELECT COUNT(*) FROM Timetable"), "2");
        QCOMPARE(value("SELECT PeriodFont FROM Timetable WHERE id = %1", id), "DejaVu Serif");
        // The project's days, copied in order at the starting sizes.
        QCOMPARE(
            value("SELECT group_concat(DOW || ' ' || Height || ' ' || Width || ' ' || SpecialID, "
                  "', ') FROM (SELECT * FROM DayTitle WHERE TimetableID = %1 ORDER BY Pos)",
                  id),
            QStringLiteral("Monday 1200 600 1, Satur'day 1200 600 1"));
        // The new timetable is shown, with the lists of the other kinds.
        QCOMPARE(w.windowTitle(),
                 QStringLiteral("Vantor Planner - ") + type + QLatin1Char(' ') + name);
        QCOMPARE(w.gClass->isVisibleTo(&w), type != QLatin1String("Class"));
        QCOMPARE(w.gSubject->rows(), subjects ? 2 : 1); // the placeholder is never listed
        if (subjects) { // a list row: status, check box and name, with the id as row data
            QCOMPARE(w.gSubject->textMatrix(1, 0) + w.gSubject->textMatrix(1, 2), "AvailMaths");
            QCOMPARE(w.gSubject->cellCheck(1, 1), int(FlexGrid::Unchecked));
            QCOMPARE(w.gSubject->rowData(1), maths);
        }
    }
    void newTutorTimetableShowsItsLessons() {
        Project p;
        const qint32 lab = ModMain::CreateRoomRecord("Lab", 30);
        const qint32 hall = ModMain::CreateRoomRecord("Hall", 200);
        const qint32 smith = ModMain::CreateTutorRecord("Smith", "Mr S", "", "");
        const qint32 labTT = makeTimetable(QStringLiteral("Room"), lab);
        const qint32 hallTT = makeTimetable(QStringLiteral("Room"), hall);
        // Smith teaches in the lab on day 2 period 2; the hall is booked then
        // by someone else, and on day 1 period 3.
        ModMain::TickResource(ModMain::ResourceKind::Tutor, smith, cellAt(labTT, 2, 2));
        ModMain::TickResource(ModMain::ResourceKind::Class, insertClass("7A"),
                              cellAt(hallTT, 2, 2));
        ModMain::TickResource(ModMain::ResourceKind::Class, insertClass("7B"),
                              cellAt(hallTT, 1, 3));
        const qint32 tt = makeTimetable(QStringLiteral("Tutor"), smith);
        // Only Smith's own lesson comes in, whole: no other room's booking.
        const auto rooms = [&](int day, int period) {
            return value("SELECT group_concat(RoomID) FROM Slot LEFT JOIN RoomSlot ON SlotID = "
                         "Slot.id JOIN DayTitle d ON d.id = DayTitleID JOIN TimeTitle t ON t.id = "
                         "TimeTitleID WHERE Slot.TimetableID = %1 AND d.Pos = %2 AND t.Pos = %3",
                         tt, day, period);
        };
        QCOMPARE(value("SELECT COUNT(*) FROM Slot WHERE TimetableID = %1", tt), "1");
        QCOMPARE(rooms(2, 2), QString::number(lab));
        QCOMPARE(value("SELECT COUNT(*) FROM TutorSlot WHERE TutorID = %1", smith), "2");
    }
    void newTableAsksTheKind() {
        // The kind has a screen of its own; Back from the owner goes back to it,
        // and the owners listed follow the kind chosen.
        Project p;
        ModMain::CreateRoomRecord("Lab", 30);
        ModMain::CreateTutorRecord("Smith", "S", "", "");
        frmMain w;
        w.Form_Load(p.file);
        const auto choose = [](const QString& kind) {
            return [kind](QDialog* d) {
                auto* kinds = control<QListWidget>(d, "lstType");
                QCOMPARE(kinds->count(), 3);
                for (int i = 0; i < kinds->count(); ++i)
                    if (kinds->item(i)->text().startsWith(kind))
                        kinds->setCurrentRow(i);
                clickButton(d, "cmdNext");
            };
        };
        const auto owners = [](const QString& first, const char* button) {
            return [first, button](QDialog* d) {
                QCOMPARE(control<QComboBox>(d, "cboWho")->itemText(0), first);
                clickButton(d, button);
            };
        };
        ModalDriver driver;
        driver.expect("frmScr_CreateTT_Welcome", [](QDialog* d) {
            verifyWizardButtons(d);
            clickButton(d, "cmdNext");
        });
        driver.expect("frmScr_CreateTT_Type", choose("Tutor"));
        driver.expect("frmScr_CreateTT_Who", owners("Smith", "cmdBack"));
        driver.expect("frmScr_CreateTT_Type", [](QDialog* d) {
            QVERIFY(control<QListWidget>(d, "lstType")->currentItem()->text().startsWith("Tutor"));
            clickButton(d, "cmdBack");
        });
        driver.expect("frmScr_CreateTT_Welcome", press("cmdNext"));
        driver.expect("frmScr_CreateTT_Type", choose("Room"));
        driver.expect("frmScr_CreateTT_Who", owners("Lab", "cmdNext"));
        driver.expect("frmScr_CreateTT_Style", press("cmdBack"));
        driver.expect("frmScr_CreateTT_Who", press("cmdNext"));
        driver.expect("frmScr_CreateTT_Style", press("cmdNext"));
        driver.expect("frmScr_CreateTT_Complete", press("cmdNext"));
        QCOMPARE(driver.run([&] { w.command(QStringLiteral("mnuFileNew"))->trigger(); }),
                 QString());
        QCOMPARE(w.windowTitle(), QStringLiteral("Vantor Planner - Room Lab"));
        QCOMPARE(value("SELECT COUNT(*) FROM Timetable"), "1");
    }
    void wizardCancelWritesNothing_data() {
        QTest::addColumn<int>("screensBefore");
        QTest::addColumn<bool>("escape");
        QTest::newRow("welcome") << 0 << false;
        QTest::newRow("kind") << 1 << false;
        QTest::newRow("who") << 2 << false;
        QTest::newRow("style, after typing a new class") << 3 << false;
        QTest::newRow("style by Escape") << 3 << true;
        QTest::newRow("complete") << 4 << false;
    }
    void wizardCancelWritesNothing() {
        QFETCH(int, screensBefore);
        QFETCH(bool, escape);
        Project p;
        frmMain w;
        w.Form_Load(p.file);
        auto steps =
            QList<Step>{press("cmdNext"), press("cmdNext"), createNew("8C"), press("cmdNext")}.mid(
                0, screensBefore);
        steps << (escape ? Step([](QDialog* s) { QTest::keyClick(s, Qt::Key_Escape); })
                         : press("cmdCancel"));
        QCOMPARE(
            wizard(steps, true).run([&] { w.command(QStringLiteral("mnuFileNew"))->trigger(); }),
            QString());
        for (const char* table : {"Timetable", "TimeTitle", "DayTitle", "Slot"})
            QCOMPARE(value("SELECT COUNT(*) FROM %1", table), "0");
        // Only the class typed on the Who screen stays.
        QCOMPARE(value("SELECT COUNT(*) FROM Class WHERE name = '8C'"),
                 screensBefore >= 3 ? "1" : "0");
        QCOMPARE(Timetable::current().ID, 0);
        QVERIFY(p.messages.messages().isEmpty());
        // The same command in the same window starts afresh and goes through; a
        // blank name is no name.
        const Step blankThenName = [](QDialog* d) {
            auto* cbo = control<QComboBox>(d, "cboWho");
            cbo->setCurrentIndex(cbo->findText(QStringLiteral("Create new...")));
            control<QLineEdit>(d, "txtWho")->setText(QStringLiteral("   "));
            clickButton(d, "cmdNext");
            QVERIFY(d->isVisible());
            createNew(QStringLiteral("  9D  "))(d);
        };
        QCOMPARE(wizard({press("cmdNext"), press("cmdNext"), blankThenName, press("cmdNext"),
                         press("cmdNext")},
                        true)
                     .run([&] { w.command(QStringLiteral("mnuFileNew"))->trigger(); }),
                 QString());
        QCOMPARE(p.messages.texts(),
                 QStringList{"You have not entered a name. Please enter a name to continue."});
        QCOMPARE(value("SELECT COUNT(*) FROM Timetable"), "1");
        QCOMPARE(value("SELECT name FROM Class WHERE id = (SELECT ClassID FROM Timetable)"), "9D");
    }
    void gridInBothOrientations_data() {
        QTest::addColumn<bool>("switched");
        QTest::newRow("periods across, as created") << false;
        QTest::newRow("days across, switched in the format dialog") << true;
    }
    void gridInBothOrientations() {
        QFETCH(bool, switched);
        Project p;
        const qint32 tt = classTimetable();
        // Period 2 is lunch, period 4 has another code; one slot is unavailable.
        value("UPDATE TimeTitle SET SpecialID = CASE Pos WHEN 2 THEN 3 ELSE 4 END WHERE Pos IN (2, "
              "4)");
        const qint32 maths = slotAt(tt, 1, 3), art = slotAt(tt, 2, 1), off = slotAt(tt, 2, 4);
        ModMain::CreateSubjectSlotRecord(maths, ModMain::CreateSubjectRecord("Maths", 1));
        ModMain::CreateSubjectSlotRecord(art, ModMain::CreateSubjectRecord("Art", 1));
        ModMain::CreateSubjectSlotRecord(off, 2);
        value("UPDATE Slot SET SpecialID = 2 WHERE id = %1", off);
        frmMain w;
        w.Form_Load(p.file);
        // The format dialog switches the grid; opened again it shows what is
        // stored, so OK without a change changes nothing.
        QString stored;
        const auto format = [&](bool change) {
            ModalDriver driver;
            driver.expect(QStringLiteral("frmFormatTimeTable"), [change](QDialog* d) {
                auto* axis = control<QComboBox>(d, "cboAxis");
                auto* clock = control<QComboBox>(d, "cboTimeFormat");
                if (change) {
                    axis->setCurrentIndex(1);
                    clock->setCurrentIndex(0);
                }
                QCOMPARE(QPoint(axis->currentIndex(), clock->currentIndex()), QPoint(1, 0));
                clickButton(d, "cmdOk");
            });
            QCOMPARE(
                driver.run([&] { w.command(QStringLiteral("mnuFormatTimetable"))->trigger(); }),
                QString());
            ModMain::DB().DBClose();
            stored = dump(p.file);
            QVERIFY(p.env.open(p.file));
        };
        if (switched) {
            format(true);
            QCOMPARE(value("SELECT TimeOnTop || Time12Hour FROM Timetable"), "FalseTrue");
            const QString once = stored;
            format(false);
            QCOMPARE(stored, once);
            w.LoadTimetable(tt);
        }
        // Every slot stays in its day and period whichever way round the grid is.
        FlexGrid& g = *w.g;
        const bool onTop = !switched;
        QCOMPARE(QSize(g.cols(), g.rows()), onTop ? QSize(5, 3) : QSize(3, 5));
        QStringList periods;
        for (int i = 1; i <= 4; ++i)
            periods << (onTop ? g.textMatrix(0, i) : g.textMatrix(i, 0));
        QCOMPARE(periods, (QStringList{"9:00 - 10:00", "Lunch",
                                       switched ? "12:30 - 1:15" : "12:30 - 13:15", ""}));
        QCOMPARE(onTop ? g.textMatrix(2, 0) : g.textMatrix(0, 2), QStringLiteral("Satur'day"));
        const auto at = [&](int d, int p) { return onTop ? QPoint(p, d) : QPoint(d, p); };
        const QColor white(255, 255, 255);
        for (const auto& [slot, day, period, text, colour] :
             {std::tuple{maths, 1, 3, "\r\nMaths\r\n", white},
              std::tuple{art, 2, 1, "\r\nArt\r\n", white},
              std::tuple{off, 2, 4, "Unavailable\r\n\r\nMaths\r\n", ModMain::WarningTint()}}) {
            const QPoint c = at(day, period);
            QCOMPARE(g.cellData(c.y(), c.x()), slot);
            QCOMPARE(g.textMatrix(c.y(), c.x()), QString::fromLatin1(text));
            QCOMPARE(g.cellBackColor(c.y(), c.x()), colour);
        }
        // The current cell's slot: none on a heading, else made once, kept in the
        // cell and found again by day and period.
        g.setCurrentCell(-1, -1); // row and column 0
        QCOMPARE(ModMain::DoCurrentTimetableCreateGetSlot(g), -1);
        const QPoint used = at(1, 3), empty = at(1, 2);
        g.setRowCol(used.y(), used.x());
        QCOMPARE(ModMain::DoCurrentTimetableCreateGetSlot(g), maths);
        g.setRowCol(empty.y(), empty.x());
        const qint32 made = ModMain::DoCurrentTimetableCreateGetSlot(g);
        QVERIFY(made > off);
        QCOMPARE(g.cellData(empty.y(), empty.x()), made);
        QCOMPARE(ModMain::DoGetSlot(tt, projectID("TimeTitle", 2), projectID("DayTitle", 1)), made);
    }
    void switchingAndDeleting() {
        Project p;
        const qint32 a = classTimetable();
        const qint32 b =
            makeTimetable(QStringLiteral("Room"), ModMain::CreateRoomRecord("Lab", 30));
        value("UPDATE Timetable SET TimeOnTop = 'False' WHERE id = %1", b);
        const qint32 sa = slotAt(a, 1, 1), sb = slotAt(b, 1, 1);
        for (const qint32 s : {sa, sb}) {
            ModMain::CreateTutorSlotRecord(s, ModMain::CreateTutorRecord("T", "T", "", ""));
            ModMain::CreateSubjectSlotRecord(s, 1);
            ModMain::CreateRoomSlotRecord(s, 1);
            ModMain::CreateClassSlotRecord(s, 1);
        }
        const auto stored = [](const char* column, const char* table, qint32 tt) {
            return value("SELECT group_concat(%1) FROM (SELECT %1 FROM %2 WHERE TimetableID = %3 "
                         "ORDER BY Pos)",
                         column, table, tt);
        };
        frmMain w; // showing the first, a
        w.Form_Load(p.file);
        FlexGrid& g = *w.g;
        // Same width for all columns is saved at once and leaves the headings;
        // same height for all rows only when another timetable is shown.
        const QSize heading(g.colWidthTwips(0), g.rowHeightTwips(0));
        p.messages.setDefault(Common::MsgResult::Yes);
        g.setColWidthTwips(2, 2400);
        g.setRowCol(1, 2);
        w.command(QStringLiteral("mnuFormatSameSizeColumns"))->trigger();
        QCOMPARE(stored("Width", "TimeTitle", a), QStringLiteral("2400,2400,2400,2400"));
        g.setRowHeightTwips(2, 1500);
        g.setRowCol(2, 1);
        w.command(QStringLiteral("mnuFormatSameSizeRows"))->trigger();
        QCOMPARE(p.messages.texts(), QStringList({"Set all columns to the same width?",
                                                  "Set all rows to the same height?"}));
        QCOMPARE(QSize(g.colWidthTwips(0), g.rowHeightTwips(0)), heading);
        QCOMPARE(stored("Height", "DayTitle", a), QStringLiteral("1200,1200"));
        w.LoadTimetable(b);
        QCOMPARE(stored("Height", "DayTitle", a), QStringLiteral("1500,1500"));
        // With days across, a column is a day and a row a period; showing
        // another timetable saves them and loads its own.
        g.setColWidthTwips(1, 2100);
        g.setRowHeightTwips(3, 1800);
        w.LoadTimetable(a);
        QCOMPARE(stored("Width", "DayTitle", b).section(',', 0, 0), QStringLiteral("2100"));
        QCOMPARE(stored("Height", "TimeTitle", b), QStringLiteral("1200,1200,1800,1200"));
        QCOMPARE(g.colWidthTwips(3), 2400);
        QCOMPARE(g.rowHeightTwips(1), 1500);
        // Deleting a: only its own rows and links go; b is shown and listed.
        p.messages.clear();
        w.command(QStringLiteral("mnuFileDelete"))->trigger();
        QCOMPARE(p.messages.texts(), QStringList({"Delete current timetable?"}));
        QCOMPARE(value("SELECT COUNT(*) FROM Timetable"), "1");
        for (const char* table : {"TimeTitle", "DayTitle", "Slot"})
            QCOMPARE(value("SELECT COUNT(*) FROM %1 WHERE TimetableID = %2", table, a), "0");
        for (const char* table : {"TutorSlot", "SubjectSlot", "RoomSlot", "ClassSlot"})
            QCOMPARE(value("SELECT group_concat(SlotID) FROM %1", table), QString::number(sb));
        QCOMPARE(Timetable::current().ID, b);
        QCOMPARE(w.windowTitle(), QStringLiteral("Vantor Planner - Room Lab"));
        auto* list = w.findChild<QToolButton*>(QStringLiteral("tbTimetables"));
        QCOMPARE(list->menu()->actions().size(), 1);
        QCOMPARE(list->menu()->actions().first()->text(), QStringLiteral("Room Lab"));
        QVERIFY(list->menu()->actions().first()->isChecked());
        // Deleting the last leaves the empty state.
        w.command(QStringLiteral("mnuFileDelete"))->trigger();
        QCOMPARE(value("SELECT COUNT(*) FROM Timetable"), "0");
        QCOMPARE(Timetable::current().ID, 0);
        QCOMPARE(QSize(w.g->cols(), w.g->rows()), QSize(1, 1));
        QCOMPARE(w.windowTitle(), QStringLiteral("Vantor Planner"));
        QVERIFY(!w.command(QStringLiteral("mnuFileDelete"))->isEnabled());
        QVERIFY(!list->isEnabled());
    }
    void toolbarListSortedAndChecked() {
        Project p;
        const qint32 zed = makeTimetable("Tutor", ModMain::CreateTutorRecord("Zed", "Z", "", ""));
        const qint32 lab = makeTimetable("Room", ModMain::CreateRoomRecord("Lab", 30));
        const qint32 c7b = classTimetable("7b");
        classTimetable("10A");
        classTimetable("7A");
        frmMain w;
        w.Form_Load(p.file);
        QMenu* menu = w.findChild<QToolButton*>(QStringLiteral("tbTimetables"))->menu();
        const auto listed = [&] {
            QStringList texts;
            for (QAction* a : menu->actions())
                texts << a->text() + (a->isChecked() ? "*" : "");
            return texts;
        };
        w.LoadTimetable(c7b);
        QCOMPARE(listed(),
                 QStringList({"Class 10A", "Class 7A", "Class 7b*", "Tutor Zed", "Room Lab"}));
        // Choosing an entry shows its timetable and moves the check.
        menu->findChild<QAction*>(QStringLiteral("k%1").arg(lab))->trigger();
        QCoreApplication::processEvents();
        QCOMPARE(Timetable::current().ID, lab);
        QCOMPARE(listed().filter("*"), QStringList{"Room Lab*"});
        // A renamed owner is listed by its new name, in its new place.
        value("UPDATE Tutor SET name = 'Abe' WHERE name = 'Zed'");
        w.LoadTimetable(zed);
        QCOMPARE(listed(),
                 QStringList({"Class 10A", "Class 7A", "Class 7b", "Tutor Abe*", "Room Lab"}));
    }
    void batchedLoadEqualsCellByCell() {
        // A generated school with the untidy corners real files have: duplicate
        // links, names that sort oddly or are NULL, links to deleted resources,
        // two slots in one cell, special cells, slots off the grid, and
        // timetables whose owner is gone or whose type is unknown.
        Project p;
        QRandomGenerator rng(20261123);
        QList<qint32> tutors, subjects, rooms, classes;
        const QStringList names = {"b", "B", "a'b", "Émile", "10", "9", "", "Zed", "alpha"};
        for (int i = 0; i < 12; ++i) {
            const QString name = names[i % names.size()] + QString::number(i / names.size());
            tutors << ModMain::CreateTutorRecord(name, i == 3 ? QString() : name.left(2), "", "");
            subjects << ModMain::CreateSubjectRecord(name, 1);
            rooms << ModMain::CreateRoomRecord(name, 20);
            classes << insertClass(name);
        }
        value("UPDATE Tutor SET DisplayName = NULL WHERE id = %1", tutors[4]);
        QList<qint32> timetables;
        for (int i = 0; i < 3; ++i)
            timetables << makeTimetable("Class", classes[i]) << makeTimetable("Tutor", tutors[i])
                       << makeTimetable("Room", rooms[i]);
        const auto pick = [&](const QList<qint32>& ids) {
            return ids[rng.bounded(int(ids.size()))];
        };
        for (qint32 tt : timetables)
            for (int day = 1; day <= 2; ++day)
                for (int period = 1; period <= 4; ++period) {
                    if (rng.bounded(5) == 0)
                        continue; // no slot yet
                    const qint32 slot = slotAt(tt, day, period);
                    for (int n = rng.bounded(4); n > 0; --n) {
                        ModMain::CreateTutorSlotRecord(slot, pick(tutors), false);
                        ModMain::CreateSubjectSlotRecord(slot, pick(subjects), false);
                        ModMain::CreateRoomSlotRecord(slot, pick(rooms), rng.bounded(2) == 0);
                        ModMain::CreateClassSlotRecord(slot, pick(classes), false);
                    }
                    if (rng.bounded(6) == 0)
                        value("UPDATE Slot SET SpecialID = %1 WHERE id = %2", 2 + rng.bounded(3),
                              slot);
                    if (rng.bounded(8) == 0) // a second slot in the same cell
                        value("INSERT INTO Slot (TimetableID, SpecialID, DayTitleID, TimeTitleID) "
                              "SELECT TimetableID, 1, DayTitleID, TimeTitleID FROM Slot WHERE id = "
                              "%1",
                              slot);
                }
        ModMain::CreateTutorSlotRecord(slotAt(timetables[0], 1, 1), 9999); // a tutor since deleted
        value("INSERT INTO Slot (TimetableID, SpecialID, DayTitleID, TimeTitleID) VALUES (%1, 1, "
              "777, 778)",
              timetables[1]);
        value("DELETE FROM Class WHERE id = %1", classes[2]); // the owner of timetables[6]
        value("INSERT INTO Timetable (Type, TimeOnTop, ClassID, RoomID, TutorID, SubjectID) VALUES "
              "('Subject', 'False', 1, 1, 1, 1)");
        value("INSERT INTO Timetable (Type, TimeOnTop, ClassID, RoomID, TutorID, SubjectID) VALUES "
              "('Odd', 'True', 1, 1, 1, 1)");
        // The toolbar's list: one statement against one look-up per timetable.
        QStringList listed, lookedUp;
        for (const ModMain::TimetableEntry& e : ModMain::TimetableList())
            listed << QString::number(e.id) + QLatin1Char(' ') + e.name;
        for (auto rs = ModMain::DB().Execute(
                 "SELECT id, type, classid, roomid, tutorid, subjectid FROM timetable;");
             !rs.eof(); rs.MoveNext())
            lookedUp << rs.Field("id").toString() + QLatin1Char(' ') +
                            ModMain::GetTimetableName(rs.Field("id").toInt());
        QCOMPARE(listed, lookedUp);
        QVERIFY(listed.contains(QString::number(timetables[6]) + QLatin1Char(' ')));
        // Every timetable's grid: the batched texts against RefreshCell's own.
        for (auto rs = ModMain::DB().Execute("SELECT id FROM Timetable"); !rs.eof();
             rs.MoveNext()) {
            Timetable::Reset();
            Timetable::current().ID = rs.Field("id").toInt();
            FlexGrid batched, cellByCell;
            ModMain::RefreshTable(batched);
            ModMain::RefreshTable(cellByCell);
            for (int r = 1; r < cellByCell.rows(); ++r)
                for (int c = 1; c < cellByCell.cols(); ++c) {
                    cellByCell.setTextMatrix(r, c, QStringLiteral("?"));
                    cellByCell.setCellBackColor(r, c, Qt::black);
                }
            const Timetable::State& tt = Timetable::current();
            for (auto slots = ModMain::DB().Execute(
                     QStringLiteral("SELECT id, SpecialID, DayTitleID, TimeTitleID FROM Slot WHERE "
                                    "TimetableID = %1;")
                         .arg(tt.ID));
                 !slots.eof(); slots.MoveNext())
                ModMain::RefreshCell(cellByCell, tt.TimeOnTop, slots.Field("DayTitleID").toInt(),
                                     slots.Field("TimeTitleID").toInt(), slots.Field("id").toInt(),
                                     slots.Field("SpecialID").toInt(), tt.Type);
            QCOMPARE(QSize(batched.cols(), batched.rows()),
                     QSize(cellByCell.cols(), cellByCell.rows()));
            for (int r = 0; r < batched.rows(); ++r)
                for (int c = 0; c < batched.cols(); ++c) {
                    if (r > 0 && c > 0 && cellByCell.textMatrix(r, c) == QLatin1String("?"))
                        continue; // no slot: neither way paints the cell
                    // Where, for the failure message, then what the cell shows.
                    const auto cell = [&](const FlexGrid& g) {
                        return QStringList{
                            QStringLiteral("timetable %1 cell %2,%3").arg(tt.ID).arg(r).arg(c),
                            g.textMatrix(r, c), QString::number(g.cellBackColor(r, c).rgba()),
                            QString::number(g.cellData(r, c))};
                    };
                    QCOMPARE(cell(batched), cell(cellByCell));
                }
        }
    }
};

QTEST_MAIN(TestTimetable)
#include "test_timetable.moc"
