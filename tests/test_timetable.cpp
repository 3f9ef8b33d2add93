// Timetables: creation through the wizard, slot look-up, the grid in both
// orientations, the format dialog, sizes, and deleting.

#include "common/FlexGrid.h"
#include "common/VbError.h"
#include "shell/frmMain.h"
#include "store/ModMain.h"
#include "store/Records.h"
#include "store/TimeText.h"
#include "support/TestSupport.h"
#include "timetable/SlotLookup.h"
#include "timetable/TimetableGrid.h"
#include "timetable/TimetableRecords.h"
#include "timetable/TimetableState.h"
#include "timetable/TimetableText.h"
#include "wizards/WizardState.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QTimer>
#include <QToolButton>
#include <QtTest>
#include <functional>

using namespace TestSupport;
using Common::MsgResult;

namespace {
// Two days, one with a quote in its name, and four periods: 9:00-10:00,
// 10:00-12:30, 12:30-13:15 and 13:15-14:00.
const QStringList kDays = {"Monday", "Satur'day"};
const QStringList kTimes = {"9:00", "10:00", "12:30", "13:15", "14:00"};
const QColor kWhite(255, 255, 255);
const QColor kLightBlue(224, 244, 250);

// Runs a statement on the open project; %1, %2, ... take the arguments.
template <class... A>
clsSQLiteRecordset run(const QString& sql, const A&... args) {
    QString s = sql;
    ((s = s.arg(args)), ...);
    return ModMain::DB().Execute(s);
}

// The first field of the statement's first row.
template <class... A>
QString value(const QString& sql, const A&... args) {
    return run(sql, args...).Field(qint16(0)).toString();
}

template <class... A>
int count(const QString& sql, const A&... args) {
    return value(sql, args...).toInt();
}

// Writes a timetable as the wizard would, without its screens.
qint32 makeTimetable(const QString& type, qint32 whoID) {
    Wizard::state().WizardType = type;
    Wizard::state().WizardWhoID = whoID;
    return ModMain::CreateTimetableFromWizard();
}

qint32 classTimetable(const QString& name = QStringLiteral("7A")) {
    run("INSERT INTO Class (name) VALUES ('%1')", name);
    return makeTimetable(QStringLiteral("Class"), ModMain::DB().GetInsertID());
}

// The timetable's own DayTitle or TimeTitle at a position, and the project's.
qint32 titleID(const char* table, qint32 timetableID, int pos) {
    return count("SELECT id FROM %1 WHERE TimetableID = %2 AND Pos = %3", table, timetableID, pos);
}

qint32 projectID(const char* table, int pos) {
    return count("SELECT id FROM Project%1 WHERE Pos = %2", table, pos);
}

// The slot at the timetable's day and period (1-based positions), created.
qint32 slotAt(qint32 timetableID, int dayPos, int periodPos) {
    return ModMain::DoCreateGetSlot(timetableID, projectID("TimeTitle", periodPos),
                                    projectID("DayTitle", dayPos));
}

template <class T>
T* child(QWidget* w, const char* name) {
    T* found = w->findChild<T*>(QLatin1String(name));
    if (!found)
        qWarning("no %s in %s", name, qPrintable(w->objectName()));
    return found;
}

void click(QWidget* screen, const char* button) {
    if (auto* b = child<QPushButton>(screen, button))
        b->click();
}

// Acts on each modal screen as it appears, one step per screen. A screen
// for which no step is left is closed, so a wrong path cannot hang.
class ScreenDriver {
public:
    using Step = std::function<void(QWidget*)>;
    explicit ScreenDriver(QList<Step> steps) : m_steps(std::move(steps)) {
        QObject::connect(&m_timer, &QTimer::timeout, [this] {
            QWidget* w = QApplication::activeModalWidget();
            if (!w || w == m_last)
                return;
            m_last = w;
            seen << w->objectName();
            ranOut = m_steps.isEmpty();
            ranOut ? void(w->close()) : m_steps.takeFirst()(w);
        });
        m_timer.start(5);
    }
    QStringList seen;
    bool ranOut = false;

private:
    QList<Step> m_steps;
    QTimer m_timer;
    QPointer<QWidget> m_last;
};

ScreenDriver::Step press(const char* button) {
    return [button](QWidget* w) { click(w, button); };
}

// On the Who screen: type a new name under "Create new...".
ScreenDriver::Step createNew(const QString& name) {
    return [name](QWidget* w) {
        auto* cbo = child<QComboBox>(w, "cboWho");
        cbo->setCurrentIndex(cbo->findText(QStringLiteral("Create new...")));
        child<QLineEdit>(w, "txtWho")->setText(name);
        click(w, "cmdNext");
    };
}

// A project with the calendar above, open on the program's connection.
struct Project {
    TestEnv env;
    MessageRecorder messages;
    ErrorRecorder errors;
    QString file;
    Project() {
        Timetable::Reset();
        Wizard::Reset();
        file = env.newProjectWithCalendar(kDays, kTimes);
        if (!env.open(file))
            qFatal("cannot open the test project");
    }
};
} // namespace

class TestTimetable : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void periodHeadings_data();
    void periodHeadings();
    void cellText_data();
    void cellText();
    void slotLookup();
    void slotLookupErrors_data();
    void slotLookupErrors();
    void wizardCreates_data();
    void wizardCreates();
    void tutorTimetableCrossReferencesRooms();
    void wizardCancelWritesNothing_data();
    void wizardCancelWritesNothing();
    void whoScreenKeepsWizard();
    void gridInBothOrientations_data();
    void gridInBothOrientations();
    void sizesSurviveSwitchingAndReopening();
    void deleteToEmptyState();
};

void TestTimetable::periodHeadings_data() {
    QTest::addColumn<bool>("twelveHour");
    QTest::addColumn<QTime>("start");
    QTest::addColumn<int>("minutes");
    QTest::addColumn<QString>("heading");
    QTest::newRow("12h morning") << true << QTime(9, 0) << 60 << "9:00 - 10:00";
    QTest::newRow("12h across noon") << true << QTime(12, 30) << 45 << "12:30 - 1:15";
    QTest::newRow("12h afternoon") << true << QTime(13, 30) << 30 << "1:30 - 2:00";
    QTest::newRow("12h midnight hour") << true << QTime(0, 15) << 30 << "12:15 - 12:45";
    QTest::newRow("24h afternoon") << false << QTime(13, 0) << 30 << "13:00 - 13:30";
    QTest::newRow("24h morning") << false << QTime(9, 0) << 60 << "9:00 - 10:00";
}

void TestTimetable::periodHeadings() {
    QFETCH(bool, twelveHour);
    QFETCH(QTime, start);
    QFETCH(int, minutes);
    QFETCH(QString, heading);
    Timetable::current().Time12Hour = twelveHour;
    QCOMPARE(ModMain::FormatTimeTitle(start, minutes), heading);
}

void TestTimetable::cellText_data() {
    QTest::addColumn<QString>("type");
    QTest::addColumn<bool>("linked");
    QTest::addColumn<QString>("text");
    QTest::newRow("class") << "Class" << true << "Mr B, Ms A\r\nMaths\r\nLab";
    QTest::newRow("tutor") << "Tutor" << true << "7A\r\nMaths\r\nLab";
    QTest::newRow("room") << "Room" << true << "Mr B, Ms A\r\nMaths\r\n7A";
    QTest::newRow("empty class slot") << "Class" << false << "\r\n\r\n";
    QTest::newRow("empty room slot") << "Room" << false << "\r\n\r\n";
    QTest::newRow("other type") << "Subject" << true << "";
}

void TestTimetable::cellText() {
    QFETCH(QString, type);
    QFETCH(bool, linked);
    QFETCH(QString, text);
    Project p;
    const qint32 slot = slotAt(classTimetable(), 1, 1);
    if (linked) {
        // Display names, sorted by themselves rather than by the names.
        ModMain::CreateTutorSlotRecord(slot, ModMain::CreateTutorRecord("Aaa", "Ms A", "", ""));
        ModMain::CreateTutorSlotRecord(slot, ModMain::CreateTutorRecord("Zzz", "Mr B", "", ""));
        ModMain::CreateSubjectSlotRecord(slot, ModMain::CreateSubjectRecord("Maths", 1));
        ModMain::CreateRoomSlotRecord(slot, ModMain::CreateRoomRecord("Lab", 30));
        ModMain::CreateClassSlotRecord(slot, count("SELECT id FROM Class WHERE name = '7A'"));
    }
    QCOMPARE(ModMain::FormatSlotText(slot, type), text);
}

void TestTimetable::slotLookup() {
    Project p;
    const qint32 tt = classTimetable();
    const qint32 period = projectID("TimeTitle", 2), day = projectID("DayTitle", 2);
    QCOMPARE(ModMain::DoGetSlot(tt, period, day), -1);
    QCOMPARE(count("SELECT COUNT(*) FROM Slot"), 0);
    const qint32 slot = ModMain::DoCreateGetSlot(tt, period, day);
    QVERIFY(slot > 0);
    QCOMPARE(ModMain::DoCreateGetSlot(tt, period, day), slot);
    QCOMPARE(ModMain::DoGetSlot(tt, period, day), slot);
    QCOMPARE(count("SELECT COUNT(*) FROM Slot"), 1);
    // The slot copies its period and day.
    QCOMPARE(TimeText::Parse(value("SELECT StartTime FROM Slot WHERE id = %1", slot)),
             QTime(10, 0));
    QCOMPARE(
        value("SELECT Duration || ' ' || DOW || ' ' || SpecialID FROM Slot WHERE id = %1", slot),
        QStringLiteral("150 Satur'day 1"));
    QVERIFY(p.errors.reports().isEmpty());
}

void TestTimetable::slotLookupErrors_data() {
    QTest::addColumn<bool>("create");
    QTest::addColumn<QString>("missing");
    QTest::newRow("get, no period") << false << "TimeTitle";
    QTest::newRow("get, no day") << false << "DayTitle";
    QTest::newRow("create, no period") << true << "TimeTitle";
    QTest::newRow("create, no day") << true << "DayTitle";
}

void TestTimetable::slotLookupErrors() {
    QFETCH(bool, create);
    QFETCH(QString, missing);
    Project p;
    const qint32 tt = classTimetable();
    const bool noPeriod = missing == QLatin1String("TimeTitle");
    const qint32 period = noPeriod ? 999 : projectID("TimeTitle", 1);
    const qint32 day = noPeriod ? projectID("DayTitle", 1) : 999;
    try {
        create ? ModMain::DoCreateGetSlot(tt, period, day) : ModMain::DoGetSlot(tt, period, day);
        QFAIL("no error raised");
    } catch (const VbError& e) {
        QCOMPARE(e.number(), 1);
        QCOMPARE(e.source(), QStringLiteral("ModMain"));
        // Both look-ups use the same words, naming the id found so far.
        QCOMPARE(e.description(), "Error DoCreateGetSlot can't find " + missing + " 0");
    }
    QCOMPARE(count("SELECT COUNT(*) FROM Slot"), 0);
}

void TestTimetable::wizardCreates_data() {
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("subjects");
    QTest::addColumn<bool>("autoFillAsked");
    QTest::newRow("class, with subjects") << "Class" << "O'Brien's 7A" << true << true;
    QTest::newRow("class, placeholder subject only") << "Class" << "7B" << false << false;
    QTest::newRow("tutor") << "Tutor" << "Mr O'Neil" << true << false;
    QTest::newRow("room") << "Room" << "Lab 'B'" << true << false;
}

void TestTimetable::wizardCreates() {
    QFETCH(QString, type);
    QFETCH(QString, name);
    QFETCH(bool, subjects);
    QFETCH(bool, autoFillAsked);
    Project p;
    if (subjects)
        ModMain::CreateSubjectRecord("Maths", 1);
    frmMain w;
    w.Form_Load(p.file);
    ScreenDriver driver({press("cmdNext"), createNew(name),
                         [](QWidget* s) {
                             child<QListWidget>(s, "lstStyle")->setCurrentRow(1); // id 2, serif
                             click(s, "cmdNext");
                         },
                         press("cmdNext")});
    Wizard::state().WizardType = type;
    Wizard::state().WizardWhoID = -1;
    type == QLatin1String("Class") ? w.ToolBar_ButtonClick(QStringLiteral("New"))
                                   : w.DoNewTimeTableWizard();
    QCOMPARE(driver.seen, QStringList({"frmScr_CreateTT_Welcome", "frmScr_CreateTT_Who",
                                       "frmScr_CreateTT_Style", "frmScr_CreateTT_Complete"}));

    auto t = run("SELECT id, PeriodFont FROM Timetable");
    QCOMPARE(t.RecordCount(), 1);
    const qint32 id = t.Field("id").toInt();
    QCOMPARE(t.Field("PeriodFont").toString(), QStringLiteral("DejaVu Serif")); // copied from style 2
    // The project's days, copied in order at the starting sizes.
    QCOMPARE(value("SELECT group_concat(DOW || ' ' || Height || ' ' || Width || ' ' || SpecialID, "
                   "', ') FROM (SELECT * FROM DayTitle WHERE TimetableID = %1 ORDER BY Pos)",
                   id),
             QStringLiteral("Monday 1200 600 1, Satur'day 1200 600 1"));
    QCOMPARE(count("SELECT COUNT(*) FROM Slot"), 0); // no room is booked anywhere yet

    // The new timetable is shown, with the lists of the other kinds.
    QCOMPARE(Timetable::current().ID, id);
    QCOMPARE(w.windowTitle(), QStringLiteral("Vantor Planner - ") + type + QLatin1Char(' ') + name);
    QCOMPARE(w.g->rows(), 3);
    QCOMPARE(w.g->cols(), 5);
    QCOMPARE(w.gClass->isVisibleTo(&w), type != QLatin1String("Class"));
    QCOMPARE(w.gSubject->rows(), subjects ? 2 : 1); // the placeholder is never listed
    if (subjects) { // a list row: status, check box and name, with the id as row data
        QCOMPARE(w.gSubject->textMatrix(1, 0) + w.gSubject->textMatrix(1, 2), "AvailMaths");
        QCOMPARE(w.gSubject->cellCheck(1, 1), int(FlexGrid::Unchecked));
        QCOMPARE(w.gSubject->rowData(1), count("SELECT id FROM Subject WHERE name = 'Maths'"));
    }
    QCOMPARE(p.messages.texts().contains(QStringLiteral(
                 "Would you like to run the Auto Fill Wizard to fill your timetable?")),
             autoFillAsked);
    QVERIFY(p.errors.reports().isEmpty());
}

void TestTimetable::tutorTimetableCrossReferencesRooms() {
    Project p;
    const qint32 lab = ModMain::CreateRoomRecord("Lab", 30);
    const qint32 hall = ModMain::CreateRoomRecord("Hall", 200);
    const qint32 labTT = makeTimetable(QStringLiteral("Room"), lab);
    const qint32 hallTT = makeTimetable(QStringLiteral("Room"), hall);
    // Day 2 period 2 has two room bookings, day 1 period 3 one; a booking
    // of an unrelated slot's room counts too (the rule is project-wide).
    ModMain::CreateRoomSlotRecord(slotAt(labTT, 2, 2), lab);
    ModMain::CreateRoomSlotRecord(slotAt(hallTT, 2, 2), hall);
    ModMain::CreateRoomSlotRecord(slotAt(hallTT, 1, 3), hall);
    slotAt(labTT, 1, 1); // a slot without a room books nothing

    const qint32 tt =
        makeTimetable(QStringLiteral("Tutor"), ModMain::CreateTutorRecord("Smith", "Mr S", "", ""));
    const auto rooms = [&](int day, int period) {
        return value("SELECT group_concat(RoomID) FROM Slot LEFT JOIN RoomSlot ON SlotID = Slot.id "
                     "WHERE TimetableID = %1 AND DayTitleID = %2 AND TimeTitleID = %3",
                     tt, titleID("DayTitle", tt, day), titleID("TimeTitle", tt, period));
    };
    QCOMPARE(count("SELECT COUNT(*) FROM Slot WHERE TimetableID = %1", tt), 3);
    QCOMPARE(rooms(2, 2), QStringLiteral("%1,%2").arg(lab).arg(hall));
    QCOMPARE(rooms(1, 3), QString::number(hall));
    QCOMPARE(count("SELECT COUNT(*) FROM TutorSlot"), 0);
    // Class timetables are not cross-referenced.
    QCOMPARE(count("SELECT COUNT(*) FROM Slot WHERE TimetableID = %1", classTimetable()), 0);
}

void TestTimetable::wizardCancelWritesNothing_data() {
    QTest::addColumn<int>("screensBefore");
    QTest::addColumn<bool>("escape");
    QTest::newRow("welcome") << 0 << false;
    QTest::newRow("who") << 1 << false;
    QTest::newRow("style, after typing a new class") << 2 << false;
    QTest::newRow("style by Escape") << 2 << true;
    QTest::newRow("complete") << 3 << false;
}

void TestTimetable::wizardCancelWritesNothing() {
    QFETCH(int, screensBefore);
    QFETCH(bool, escape);
    Project p;
    frmMain w;
    w.Form_Load(p.file);
    QList<ScreenDriver::Step> steps = {press("cmdNext"), createNew(QStringLiteral("8C")),
                                       press("cmdNext")};
    steps = steps.mid(0, screensBefore);
    steps << (escape ? ScreenDriver::Step([](QWidget* s) { QTest::keyClick(s, Qt::Key_Escape); })
                     : press("cmdCancel"));
    ScreenDriver driver(steps);
    w.command(QStringLiteral("mnuFileNew"))->trigger();
    QCOMPARE(driver.seen.size(), screensBefore + 1);
    QVERIFY(!driver.ranOut);
    for (const char* table : {"Timetable", "TimeTitle", "DayTitle", "Slot"})
        QCOMPARE(count("SELECT COUNT(*) FROM %1", table), 0);
    // Only the class typed on the Who screen stays.
    QCOMPARE(count("SELECT COUNT(*) FROM Class WHERE name = '8C'"), screensBefore >= 2 ? 1 : 0);
    QCOMPARE(Timetable::current().ID, 0);
    QVERIFY(p.messages.messages().isEmpty());
}

void TestTimetable::whoScreenKeepsWizard() {
    Project p;
    makeTimetable(QStringLiteral("Tutor"), ModMain::CreateTutorRecord("Smith", "Mr S", "", ""));
    frmMain w;
    w.Form_Load(p.file);
    // A tutor with a timetable, then "Create new..." with no name: both keep
    // the wizard on the Who screen.
    bool stayed = false;
    QStringList entries;
    ScreenDriver driver({press("cmdNext"), [&](QWidget* s) {
                             auto* cbo = child<QComboBox>(s, "cboWho");
                             for (int i = 0; i < cbo->count(); ++i)
                                 entries << cbo->itemText(i);
                             cbo->setCurrentIndex(0);
                             click(s, "cmdNext");
                             cbo->setCurrentIndex(cbo->findText(QStringLiteral("Create new...")));
                             click(s, "cmdNext");
                             stayed = s->isVisible() && !Wizard::state().WizardCancel;
                             click(s, "cmdCancel");
                         }});
    Wizard::state().WizardType = QStringLiteral("Tutor");
    Wizard::state().WizardWhoID = -1;
    w.DoNewTimeTableWizard();
    QVERIFY(stayed);
    QCOMPARE(entries, QStringList({"Smith - Already created", "Create new..."}));
    QCOMPARE(p.messages.texts(),
             QStringList({"A timetable already exists for this Tutor. To view and change the "
                          "timetable select it from the View Table button on the main window.",
                          "You have not entered a name. Please enter a name to continue."}));
    QCOMPARE(p.messages.messages().at(1).icon, Common::MsgIcon::Critical);
    QCOMPARE(count("SELECT COUNT(*) FROM Timetable"), 1);
}

void TestTimetable::gridInBothOrientations_data() {
    QTest::addColumn<bool>("switched");
    QTest::newRow("periods across, as created") << false;
    QTest::newRow("days across, switched in the format dialog") << true;
}

void TestTimetable::gridInBothOrientations() {
    QFETCH(bool, switched);
    Project p;
    const qint32 tt = classTimetable();
    // Period 2 is lunch, period 4 has another code; one slot is unavailable.
    run("UPDATE TimeTitle SET SpecialID = CASE Pos WHEN 2 THEN 3 ELSE 4 END WHERE Pos IN (2, 4)");
    const qint32 maths = slotAt(tt, 1, 3), art = slotAt(tt, 2, 1), off = slotAt(tt, 2, 4);
    ModMain::CreateSubjectSlotRecord(maths, ModMain::CreateSubjectRecord("Maths", 1));
    ModMain::CreateSubjectSlotRecord(art, ModMain::CreateSubjectRecord("Art", 1));
    ModMain::CreateSubjectSlotRecord(off, 2);
    run("UPDATE Slot SET SpecialID = 2 WHERE id = %1", off);
    frmMain w;
    w.Form_Load(p.file);
    if (switched) {
        ScreenDriver driver({[](QWidget* d) {
            child<QComboBox>(d, "cboAxis")->setCurrentIndex(1);
            child<QComboBox>(d, "cboTimeFormat")->setCurrentIndex(0);
            click(d, "cmdOk");
        }});
        w.command(QStringLiteral("mnuFormatTimetable"))->trigger();
        QCOMPARE(driver.seen, QStringList({"frmFormatTimeTable"}));
        QCOMPARE(value("SELECT TimeOnTop || Time12Hour FROM Timetable"),
                 QStringLiteral("FalseTrue"));
    }

    // Every slot stays in its day and period whichever way round the grid is.
    FlexGrid& g = *w.g;
    const bool onTop = !switched;
    QCOMPARE(g.cols(), onTop ? 5 : 3);
    QCOMPARE(g.rows(), onTop ? 3 : 5);
    const auto heading = [&](int i, bool period) {
        return period == onTop ? g.textMatrix(0, i) : g.textMatrix(i, 0);
    };
    QCOMPARE(heading(1, true), QStringLiteral("9:00 - 10:00"));
    QCOMPARE(heading(2, true), QStringLiteral("Lunch"));
    QCOMPARE(heading(3, true),
             switched ? QStringLiteral("12:30 - 1:15") : QStringLiteral("12:30 - 13:15"));
    QCOMPARE(heading(4, true), QString());
    QCOMPARE(heading(2, false), QStringLiteral("Satur'day"));
    const auto at = [&](int day, int period) {
        return onTop ? QPoint(period, day) : QPoint(day, period);
    };
    for (const auto& [slot, day, period, text, colour] :
         {std::tuple{maths, 1, 3, "\r\nMaths\r\n", kWhite},
          std::tuple{art, 2, 1, "\r\nArt\r\n", kWhite}, std::tuple{off, 2, 4, "", kLightBlue}}) {
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
    QCOMPARE(g.cellData(empty.y(), empty.x()), 0);
    g.setRowCol(empty.y(), empty.x());
    const qint32 made = ModMain::DoCurrentTimetableCreateGetSlot(g);
    QVERIFY(made > off);
    QCOMPARE(g.cellData(empty.y(), empty.x()), made);
    QCOMPARE(ModMain::DoCurrentTimetableCreateGetSlot(g), made);
    QCOMPARE(ModMain::DoGetSlot(tt, projectID("TimeTitle", 2), projectID("DayTitle", 1)), made);

    // Repainting one cell reads its code from the slot when asked to.
    run("UPDATE Slot SET SpecialID = 4 WHERE id = %1", maths);
    ModMain::RefreshCell(g, onTop, titleID("DayTitle", tt, 1), titleID("TimeTitle", tt, 3), maths,
                         -1, QStringLiteral("Class"));
    QCOMPARE(g.textMatrix(used.y(), used.x()), QString());
    QCOMPARE(g.cellBackColor(used.y(), used.x()), kLightBlue);
    QVERIFY(p.errors.reports().isEmpty());
}

void TestTimetable::sizesSurviveSwitchingAndReopening() {
    Project p;
    const qint32 a = classTimetable(QStringLiteral("7A")), b = classTimetable(QStringLiteral("7B"));
    run("UPDATE Timetable SET TimeOnTop = 'False' WHERE id = %1", b);
    const auto stored = [](const char* column, const char* table, qint32 tt) {
        return value(
            "SELECT group_concat(%1) FROM (SELECT %1 FROM %2 WHERE TimetableID = %3 ORDER BY Pos)",
            column, table, tt);
    };
    {
        frmMain w;
        w.Form_Load(p.file);
        FlexGrid& g = *w.g;
        // Same width for all columns: No changes nothing on screen but still saves.
        g.setColWidthTwips(2, 2400);
        g.setRowCol(1, 2);
        p.messages.answer(MsgResult::No);
        w.command(QStringLiteral("mnuFormatSameSizeColumns"))->trigger();
        QCOMPARE(p.messages.texts().last(), QStringLiteral("Set all columns to the same width?"));
        QCOMPARE(p.messages.messages().last().buttons, Common::MsgButtons::YesNoCancel);
        QCOMPARE(g.colWidthTwips(1), 1600);
        QCOMPARE(stored("Width", "TimeTitle", a), QStringLiteral("1600,2400,1600,1600"));
        const int headingWidth = g.colWidthTwips(0);
        p.messages.answer(MsgResult::Yes);
        w.command(QStringLiteral("mnuFormatSameSizeColumns"))->trigger();
        QCOMPARE(stored("Width", "TimeTitle", a), QStringLiteral("2400,2400,2400,2400"));
        QCOMPARE(g.colWidthTwips(0), headingWidth);
        // Same height for all rows: the grid changes, the database only when
        // another timetable is shown.
        g.setRowHeightTwips(2, 1500);
        g.setRowCol(2, 1);
        p.messages.answer(MsgResult::Yes);
        w.command(QStringLiteral("mnuFormatSameSizeRows"))->trigger();
        QCOMPARE(p.messages.texts().last(), QStringLiteral("Set all rows to the same height?"));
        QCOMPARE(g.rowHeightTwips(1), 1500);
        QCOMPARE(stored("Height", "DayTitle", a), QStringLiteral("1200,1200"));
        w.LoadTimetable(b);
        QCOMPARE(stored("Height", "DayTitle", a), QStringLiteral("1500,1500"));
        // With days across, a column is a day and a row a period.
        g.setColWidthTwips(1, 2100);
        g.setRowHeightTwips(3, 1800);
        w.LoadTimetable(a);
        QCOMPARE(g.colWidthTwips(3), 2400);
        QCOMPARE(g.rowHeightTwips(1), 1500);
        g.setColWidthTwips(3, 2000);
        w.close();
    }
    // Closing saved the last change; switching saved the others.
    Timetable::Reset();
    frmMain again;
    again.Form_Load(p.file);
    QCOMPARE(Timetable::current().ID, a);
    QCOMPARE(again.g->colWidthTwips(3), 2000);
    QCOMPARE(again.g->rowHeightTwips(1), 1500);
    again.LoadTimetable(b);
    QCOMPARE(again.g->colWidthTwips(1), 2100);
    QCOMPARE(again.g->rowHeightTwips(3), 1800);
}

void TestTimetable::deleteToEmptyState() {
    Project p;
    const qint32 a = classTimetable();
    const qint32 b = makeTimetable(QStringLiteral("Room"), ModMain::CreateRoomRecord("Lab", 30));
    const qint32 sa = slotAt(a, 1, 1), sb = slotAt(b, 1, 1);
    for (const qint32 s : {sa, sb}) {
        ModMain::CreateTutorSlotRecord(s, ModMain::CreateTutorRecord("T", "T", "", ""));
        ModMain::CreateSubjectSlotRecord(s, 1);
        ModMain::CreateRoomSlotRecord(s, 1);
        ModMain::CreateClassSlotRecord(s, 1);
    }
    frmMain w;
    w.Form_Load(p.file);
    QCOMPARE(Timetable::current().ID, a);
    p.messages.answer(MsgResult::No);
    w.command(QStringLiteral("mnuFileDelete"))->trigger();
    QCOMPARE(count("SELECT COUNT(*) FROM Timetable"), 2);
    QCOMPARE(p.messages.texts(), QStringList({"Delete current timetable?"}));
    QCOMPARE(p.messages.messages().first().buttons, Common::MsgButtons::YesNo);

    // Only the timetable's own rows and links go; the one left is shown and listed.
    p.messages.answer(MsgResult::Yes);
    w.command(QStringLiteral("mnuFileDelete"))->trigger();
    QCOMPARE(count("SELECT COUNT(*) FROM Timetable"), 1);
    for (const char* table : {"TimeTitle", "DayTitle", "Slot"})
        QCOMPARE(count("SELECT COUNT(*) FROM %1 WHERE TimetableID = %2", table, a), 0);
    for (const char* table : {"TutorSlot", "SubjectSlot", "RoomSlot", "ClassSlot"})
        QCOMPARE(value("SELECT group_concat(SlotID) FROM %1", table), QString::number(sb));
    QCOMPARE(Timetable::current().ID, b);
    QCOMPARE(w.windowTitle(), QStringLiteral("Vantor Planner - Room Lab"));
    auto* list = w.findChild<QToolButton*>(QStringLiteral("tbTimetables"));
    QCOMPARE(list->menu()->actions().size(), 1);
    QCOMPARE(list->menu()->actions().first()->text(), QStringLiteral("Room Lab - Selected"));

    p.messages.answer(MsgResult::Yes);
    w.command(QStringLiteral("mnuFileDelete"))->trigger();
    QCOMPARE(count("SELECT COUNT(*) FROM Timetable"), 0);
    QCOMPARE(Timetable::current().ID, 0);
    QCOMPARE(w.g->rows(), 1);
    QCOMPARE(w.g->cols(), 1);
    QCOMPARE(w.windowTitle(), QStringLiteral("Vantor Planner"));
    QVERIFY(!w.command(QStringLiteral("mnuFileDelete"))->isEnabled());
    QVERIFY(!list->isEnabled());
    QVERIFY(p.errors.reports().isEmpty());
}

QTEST_MAIN(TestTimetable)
#include "test_timetable.moc"
