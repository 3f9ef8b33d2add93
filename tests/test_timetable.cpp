// Timetables: creation through the wizard, slot look-up, the grid in both
// orientations, the toolbar list, the format dialog, deleting, and sizes.

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
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
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
const QStringList kDays = {"Monday", "Tuesday", "Wednesday"};
// Three periods: 9:00-10:00, 10:00-12:30, 12:30-13:15.
const QStringList kTimes = {"9:00", "10:00", "12:30", "13:15"};
const QColor kWhite(255, 255, 255);
const QColor kLightBlue(224, 244, 250);

clsSQLite& db() {
    return ModMain::DB();
}

int count(const QString& sql) {
    return db().Execute(sql).Field(qint16(0)).toInt();
}

QString value(const QString& sql) {
    return db().Execute(sql).Field(qint16(0)).toString();
}

void resetState() {
    Timetable::Reset();
    Wizard::Reset();
}

// Writes a timetable as the wizard would, without its screens.
qint32 makeTimetable(const QString& type, qint32 whoID, qint16 styleID = 1) {
    Wizard::state().WizardType = type;
    Wizard::state().WizardWhoID = whoID;
    Wizard::state().WizardStyleID = styleID;
    return ModMain::CreateTimetableFromWizard();
}

qint32 insertClass(const QString& name) {
    db().Execute(QStringLiteral("INSERT INTO Class (name) VALUES ('%1')").arg(Common::SQLReplace(name)));
    return db().GetInsertID();
}

qint32 titleID(const char* table, qint32 timetableID, int pos) {
    return count(QStringLiteral("SELECT id FROM %1 WHERE TimetableID = %2 AND Pos = %3")
                     .arg(QString::fromLatin1(table))
                     .arg(timetableID)
                     .arg(pos));
}

qint32 projectID(const char* table, int pos) {
    return count(
        QStringLiteral("SELECT id FROM %1 WHERE Pos = %2").arg(QString::fromLatin1(table)).arg(pos));
}

// The slot at the timetable's day and period (1-based positions), created.
qint32 slotAt(qint32 timetableID, int dayPos, int periodPos) {
    return ModMain::DoCreateGetSlot(timetableID, projectID("ProjectTimeTitle", periodPos),
                                    projectID("ProjectDayTitle", dayPos));
}

// The grid cell of a day and period, whichever way round the grid is.
QPoint cellOf(const FlexGrid& g, qint32 dayTitleID, qint32 timeTitleID) {
    for (int r = 1; r < g.rows(); ++r)
        for (int c = 1; c < g.cols(); ++c) {
            const bool onTop = Timetable::current().TimeOnTop;
            const qint32 day = onTop ? g.rowData(r) : g.colData(c);
            const qint32 time = onTop ? g.colData(c) : g.rowData(r);
            if (day == dayTitleID && time == timeTitleID)
                return QPoint(c, r);
        }
    return QPoint(-1, -1);
}

template <class T>
T* child(QWidget* w, const char* name) {
    T* found = w ? w->findChild<T*>(QString::fromLatin1(name)) : nullptr;
    if (!found)
        qWarning("no %s in %s", name, w ? qPrintable(w->objectName()) : "(no window)");
    return found;
}

void click(QWidget* screen, const char* button) {
    if (auto* b = child<QPushButton>(screen, button))
        b->click();
}

// Acts on each modal screen as it appears, one step per screen. A screen
// for which no step is left is cancelled, so a wrong path cannot hang.
class ScreenDriver {
public:
    using Step = std::function<void(QWidget*)>;
    explicit ScreenDriver(QList<Step> steps) : m_steps(std::move(steps)) {
        QObject::connect(&m_timer, &QTimer::timeout, [this] { poll(); });
        m_timer.start(5);
    }
    QStringList seen;
    bool ranOut = false;

private:
    void poll() {
        QWidget* w = QApplication::activeModalWidget();
        if (!w || w == m_last)
            return;
        m_last = w;
        seen << w->objectName();
        if (m_steps.isEmpty()) {
            ranOut = true;
            w->close();
            return;
        }
        m_steps.takeFirst()(w);
    }

    QList<Step> m_steps;
    QTimer m_timer;
    QPointer<QWidget> m_last;
};

ScreenDriver::Step next() {
    return [](QWidget* w) { click(w, "cmdNext"); };
}

ScreenDriver::Step cancel() {
    return [](QWidget* w) { click(w, "cmdCancel"); };
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

struct Project {
    TestEnv env;
    MessageRecorder messages;
    ErrorRecorder errors;
    QString file;
    explicit Project(const QStringList& days = kDays) {
        resetState();
        file = env.newProjectWithCalendar(days, kTimes);
        if (!env.open(file))
            qFatal("cannot open the test project");
    }
};
} // namespace

class TestTimetable : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { resetState(); }

    void periodHeadings_data();
    void periodHeadings();
    void cellText_data();
    void cellText();
    void slotLookup();
    void slotLookupErrors_data();
    void slotLookupErrors();
    void timetableName();
    void creationCopiesCalendar();
    void tutorTimetableCrossReferencesRooms();
    void missingStyleWritesNothing();

    void wizardCreates_data();
    void wizardCreates();
    void wizardCancelWritesNothing_data();
    void wizardCancelWritesNothing();
    void whoScreenChecks();
    void whoScreenMarksCreated();

    void gridOrientation_data();
    void gridOrientation();
    void formatDialogSwitchesAxisAndClock();
    void specialCellsAndHeadings();
    void currentCellSlot();
    void resourceLists();
    void toolbarListLoadsTimetables();
    void sizesSurviveSwitchingAndReopening();
    void sameSizeCommands();
    void deleteTimetable();
    void openingProjectLoadsFirstTimetable();
};

void TestTimetable::periodHeadings_data() {
    QTest::addColumn<bool>("twelveHour");
    QTest::addColumn<QString>("start");
    QTest::addColumn<int>("minutes");
    QTest::addColumn<QString>("heading");
    QTest::newRow("12h morning") << true << "09:00" << 60 << "9:00 - 10:00";
    QTest::newRow("12h across noon") << true << "12:30" << 45 << "12:30 - 1:15";
    QTest::newRow("12h afternoon") << true << "13:30" << 30 << "1:30 - 2:00";
    QTest::newRow("12h midnight hour") << true << "00:15" << 30 << "12:15 - 12:45";
    QTest::newRow("24h afternoon") << false << "13:00" << 30 << "13:00 - 13:30";
    QTest::newRow("24h morning") << false << "09:00" << 60 << "9:00 - 10:00";
    QTest::newRow("24h stored with blank") << false << "08:00:00 " << 50 << "8:00 - 8:50";
}

void TestTimetable::periodHeadings() {
    QFETCH(bool, twelveHour);
    QFETCH(QString, start);
    QFETCH(int, minutes);
    QFETCH(QString, heading);
    Timetable::current().Time12Hour = twelveHour;
    QCOMPARE(ModMain::FormatTimeTitle(TimeText::Parse(start), minutes), heading);
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
    const qint32 tt = makeTimetable(QStringLiteral("Class"), insertClass(QStringLiteral("7A")));
    const qint32 slot = slotAt(tt, 1, 1);
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
    const qint32 tt = makeTimetable(QStringLiteral("Class"), insertClass(QStringLiteral("7A")));
    const qint32 period = projectID("ProjectTimeTitle", 2), day = projectID("ProjectDayTitle", 3);

    QCOMPARE(ModMain::DoGetSlot(tt, period, day), -1);
    QCOMPARE(count("SELECT COUNT(*) FROM Slot"), 0);

    const qint32 slot = ModMain::DoCreateGetSlot(tt, period, day);
    QVERIFY(slot > 0);
    QCOMPARE(count("SELECT COUNT(*) FROM Slot"), 1);
    QCOMPARE(ModMain::DoCreateGetSlot(tt, period, day), slot);
    QCOMPARE(ModMain::DoGetSlot(tt, period, day), slot);
    QCOMPARE(count("SELECT COUNT(*) FROM Slot"), 1);

    // The slot copies its period and day and belongs to the timetable's own titles.
    auto rs = db().Execute(QStringLiteral("SELECT * FROM Slot WHERE id = %1").arg(slot));
    QCOMPARE(TimeText::Parse(rs.Field("StartTime").toString()), QTime(10, 0));
    QCOMPARE(rs.Field("Duration").toInt(), 150);
    QCOMPARE(rs.Field("DOW").toString(), QStringLiteral("Wednesday"));
    QCOMPARE(rs.Field("SpecialID").toInt(), 1);
    QCOMPARE(rs.Field("DayTitleID").toInt(), titleID("DayTitle", tt, 3));
    QCOMPARE(rs.Field("TimeTitleID").toInt(), titleID("TimeTitle", tt, 2));
    QVERIFY(p.errors.reports().isEmpty());
}

void TestTimetable::slotLookupErrors_data() {
    QTest::addColumn<bool>("create");
    QTest::addColumn<bool>("badPeriod");
    QTest::addColumn<QString>("description");
    QTest::newRow("get, no period") << false << true << "Error DoCreateGetSlot can't find TimeTitle 0";
    QTest::newRow("get, no day") << false << false << "Error DoCreateGetSlot can't find DayTitle 0";
    QTest::newRow("create, no period") << true << true << "Error DoCreateGetSlot can't find TimeTitle 0";
    QTest::newRow("create, no day") << true << false << "Error DoCreateGetSlot can't find DayTitle 0";
}

void TestTimetable::slotLookupErrors() {
    QFETCH(bool, create);
    QFETCH(bool, badPeriod);
    QFETCH(QString, description);
    Project p;
    const qint32 tt = makeTimetable(QStringLiteral("Class"), insertClass(QStringLiteral("7A")));
    const qint32 period = badPeriod ? 999 : projectID("ProjectTimeTitle", 1);
    const qint32 day = badPeriod ? projectID("ProjectDayTitle", 1) : 999;
    try {
        create ? ModMain::DoCreateGetSlot(tt, period, day) : ModMain::DoGetSlot(tt, period, day);
        QFAIL("no error raised");
    } catch (const VbError& e) {
        QCOMPARE(e.number(), 1);
        QCOMPARE(e.source(), QStringLiteral("ModMain"));
        QCOMPARE(e.description(), description);
    }
    QCOMPARE(count("SELECT COUNT(*) FROM Slot"), 0);
}

void TestTimetable::timetableName() {
    Project p;
    const qint32 c = makeTimetable(QStringLiteral("Class"), insertClass(QStringLiteral("7A")));
    const qint32 t = makeTimetable(QStringLiteral("Tutor"),
                                   ModMain::CreateTutorRecord("Smith", "Mr S", "", ""));
    const qint32 r = makeTimetable(QStringLiteral("Room"), ModMain::CreateRoomRecord("Lab", 30));
    QCOMPARE(ModMain::GetTimetableName(c), QStringLiteral("Class 7A"));
    QCOMPARE(ModMain::GetTimetableName(t), QStringLiteral("Tutor Smith"));
    QCOMPARE(ModMain::GetTimetableName(r), QStringLiteral("Room Lab"));
    QCOMPARE(ModMain::GetTimetableName(999), QString());
}

void TestTimetable::creationCopiesCalendar() {
    Project p({"Monday", "Satur'day"});
    const qint32 tt = makeTimetable(QStringLiteral("Room"), ModMain::CreateRoomRecord("Lab", 30), 2);
    auto t = db().Execute(QStringLiteral("SELECT * FROM Timetable WHERE id = %1").arg(tt));
    QCOMPARE(t.Field("Type").toString(), QStringLiteral("Room"));
    QCOMPARE(t.Field("TimeOnTop").toString(), QStringLiteral("True"));
    QCOMPARE(t.Field("Title").toString(), QStringLiteral("Title"));
    QCOMPARE(t.Field("ClassID").toInt(), 1);
    QCOMPARE(t.Field("TutorID").toInt(), 1);
    QCOMPARE(t.Field("SubjectID").toInt(), 1);
    QVERIFY(t.Field("RoomID").toInt() > 1);
    // The style's values are copied, not referred to.
    auto s = db().Execute(QStringLiteral("SELECT * FROM Style WHERE id = 2"));
    for (const char* column : {"TitleFont", "TitleFontSize", "TitleForeground", "ColHeadFont",
                               "ColHeadFontSize", "ColHeadForeground", "RowHeadFont",
                               "RowHeadFontSize", "RowHeadForeground", "PeriodFont",
                               "PeriodFontSize", "PeriodForeground", "UnavailableBackground",
                               "UnavailableForeground"})
        QCOMPARE(t.Field(column).toString(), s.Field(column).toString());

    auto times = db().Execute(QStringLiteral(
        "SELECT t.*, p.id AS pid, p.StartTime AS pstart FROM TimeTitle t, ProjectTimeTitle p "
        "WHERE t.ProjectTimeTitleID = p.id AND t.TimetableID = %1 ORDER BY t.Pos").arg(tt));
    QCOMPARE(times.RecordCount(), 3);
    for (int pos = 1; !times.eof(); times.MoveNext(), ++pos) {
        QCOMPARE(times.Field("Pos").toInt(), pos);
        QCOMPARE(times.Field("StartTime").toString(), times.Field("pstart").toString());
        QCOMPARE(times.Field("Width").toInt(), 1600);
        QCOMPARE(times.Field("Height").toInt(), 1200);
        QCOMPARE(times.Field("SpecialID").toInt(), 1);
    }
    QCOMPARE(value(QStringLiteral("SELECT Duration FROM TimeTitle WHERE TimetableID = %1 AND Pos = 2")
                       .arg(tt)),
             QStringLiteral("150"));

    auto days = db().Execute(
        QStringLiteral("SELECT * FROM DayTitle WHERE TimetableID = %1 ORDER BY Pos").arg(tt));
    QCOMPARE(days.RecordCount(), 2);
    days.MoveNext();
    QCOMPARE(days.Field("DOW").toString(), QStringLiteral("Satur'day"));
    QCOMPARE(days.Field("Height").toInt(), 1200);
    QCOMPARE(days.Field("Width").toInt(), 600);
    QCOMPARE(days.Field("SpecialID").toInt(), 1);
    QCOMPARE(days.Field("ProjectDayTitleID").toInt(), projectID("ProjectDayTitle", 2));
    // Class and room timetables start without slots.
    QCOMPARE(count("SELECT COUNT(*) FROM Slot"), 0);
    QVERIFY(p.errors.reports().isEmpty());
}

void TestTimetable::tutorTimetableCrossReferencesRooms() {
    Project p;
    const qint32 lab = ModMain::CreateRoomRecord("Lab", 30);
    const qint32 hall = ModMain::CreateRoomRecord("Hall", 200);
    const qint32 labTT = makeTimetable(QStringLiteral("Room"), lab);
    const qint32 hallTT = makeTimetable(QStringLiteral("Room"), hall);
    // Tuesday period 2 has two room bookings, Wednesday period 1 one; a
    // booking of an unrelated slot's room counts too (the rule is project-wide).
    ModMain::CreateRoomSlotRecord(slotAt(labTT, 2, 2), lab);
    ModMain::CreateRoomSlotRecord(slotAt(hallTT, 2, 2), hall);
    ModMain::CreateRoomSlotRecord(slotAt(hallTT, 3, 1), hall);
    slotAt(labTT, 1, 1); // a slot without a room books nothing

    const qint32 tutor = ModMain::CreateTutorRecord("Smith", "Mr S", "", "");
    const qint32 tt = makeTimetable(QStringLiteral("Tutor"), tutor);
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM Slot WHERE TimetableID = %1").arg(tt)), 3);
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM Slot WHERE TimetableID = %1 AND DayTitleID "
                                  "= %2 AND TimeTitleID = %3")
                       .arg(tt)
                       .arg(titleID("DayTitle", tt, 2))
                       .arg(titleID("TimeTitle", tt, 2))),
             2);
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM RoomSlot, Slot WHERE RoomSlot.SlotID = "
                                  "Slot.ID AND Slot.TimetableID = %1 AND RoomID = %2 AND "
                                  "DayTitleID = %3")
                       .arg(tt)
                       .arg(hall)
                       .arg(titleID("DayTitle", tt, 3))),
             1);
    QCOMPARE(count("SELECT COUNT(*) FROM TutorSlot"), 0);

    // Class and room timetables are not cross-referenced.
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM Slot WHERE TimetableID = %1")
                       .arg(makeTimetable(QStringLiteral("Class"), insertClass("7A")))),
             0);
}

void TestTimetable::missingStyleWritesNothing() {
    Project p;
    QCOMPARE(makeTimetable(QStringLiteral("Class"), insertClass(QStringLiteral("7A")), 99), 0);
    QCOMPARE(count("SELECT COUNT(*) FROM Timetable"), 0);
    QCOMPARE(count("SELECT COUNT(*) FROM TimeTitle"), 0);
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

    bool backDisabled = false;
    ScreenDriver driver({next(), createNew(name),
                         [](QWidget* s) {
                             auto* list = child<QListWidget>(s, "lstStyle");
                             QCOMPARE(list->count(), 5);
                             list->setCurrentRow(1); // "Classic (serif)", id 2
                             click(s, "cmdNext");
                         },
                         [&](QWidget* s) {
                             backDisabled = !child<QPushButton>(s, "cmdBack")->isEnabled();
                             click(s, "cmdNext");
                         }});
    if (type == QLatin1String("Class")) {
        w.ToolBar_ButtonClick(QStringLiteral("New"));
    } else {
        Wizard::state().WizardType = type;
        Wizard::state().WizardWhoID = -1;
        w.DoNewTimeTableWizard();
    }
    QCOMPARE(driver.seen, QStringList({"frmScr_CreateTT_Welcome", "frmScr_CreateTT_Who",
                                       "frmScr_CreateTT_Style", "frmScr_CreateTT_Complete"}));
    QVERIFY(backDisabled);

    const qint32 owner = count(QStringLiteral("SELECT id FROM %1 WHERE name = '%2'")
                                   .arg(type, Common::SQLReplace(name)));
    QVERIFY(owner > 1);
    auto t = db().Execute(QStringLiteral("SELECT * FROM Timetable"));
    QCOMPARE(t.RecordCount(), 1);
    const qint32 id = t.Field("id").toInt();
    QCOMPARE(t.Field("Type").toString(), type);
    for (const QString& column : {QStringLiteral("Class"), QStringLiteral("Tutor"), QStringLiteral("Room")})
        QCOMPARE(t.Field(column + QStringLiteral("ID")).toInt(), column == type ? owner : 1);
    QCOMPARE(t.Field("PeriodFont").toString(), QStringLiteral("DejaVu Serif"));
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM TimeTitle WHERE TimetableID = %1").arg(id)), 3);
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM DayTitle WHERE TimetableID = %1").arg(id)), 3);

    // The new timetable is shown and listed.
    QCOMPARE(Timetable::current().ID, id);
    QCOMPARE(w.windowTitle(), QStringLiteral("Vantor Planner - ") + type + QLatin1Char(' ') + name);
    QCOMPARE(w.g->rows(), 4);
    QCOMPARE(w.g->cols(), 4);
    QVERIFY(w.findChild<QAction*>(QStringLiteral("k%1").arg(id)));
    QCOMPARE(p.messages.texts().contains(
                 QStringLiteral("Would you like to run the Auto Fill Wizard to fill your timetable?")),
             autoFillAsked);
    QVERIFY(p.errors.reports().isEmpty());
}

void TestTimetable::wizardCancelWritesNothing_data() {
    QTest::addColumn<int>("screensBefore");
    QTest::addColumn<bool>("escape");
    QTest::addColumn<bool>("typedClassKept");
    QTest::newRow("welcome") << 0 << false << false;
    QTest::newRow("who") << 1 << false << false;
    QTest::newRow("style, after typing a new class") << 2 << false << true;
    QTest::newRow("style by Escape") << 2 << true << true;
    QTest::newRow("complete") << 3 << false << true;
}

void TestTimetable::wizardCancelWritesNothing() {
    QFETCH(int, screensBefore);
    QFETCH(bool, escape);
    QFETCH(bool, typedClassKept);
    Project p;
    frmMain w;
    w.Form_Load(p.file);
    QList<ScreenDriver::Step> steps = {next(), createNew(QStringLiteral("8C")), next()};
    steps = steps.mid(0, screensBefore);
    steps << (escape ? ScreenDriver::Step([](QWidget* s) { QTest::keyClick(s, Qt::Key_Escape); })
                     : cancel());
    ScreenDriver driver(steps);
    w.command(QStringLiteral("mnuFileNew"))->trigger();
    QCOMPARE(driver.seen.size(), screensBefore + 1);
    QVERIFY(!driver.ranOut);
    for (const char* table : {"Timetable", "TimeTitle", "DayTitle", "Slot"})
        QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM %1").arg(QString::fromLatin1(table))), 0);
    QCOMPARE(count("SELECT COUNT(*) FROM Class WHERE name = '8C'"), typedClassKept ? 1 : 0);
    QCOMPARE(Timetable::current().ID, 0);
    QVERIFY(p.messages.messages().isEmpty());
}

void TestTimetable::whoScreenChecks() {
    Project p;
    const qint32 smith = ModMain::CreateTutorRecord("Smith", "Mr S", "", "");
    makeTimetable(QStringLiteral("Tutor"), smith);
    const qint32 existing7A = insertClass(QStringLiteral("7A"));
    frmMain w;
    w.Form_Load(p.file);

    // A tutor with a timetable, then "Create new..." with no name: both keep
    // the wizard on the Who screen.
    bool stayed = false;
    QStringList entries;
    {
    ScreenDriver tutor({next(), [&](QWidget* s) {
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
    }
    QVERIFY(stayed);
    QCOMPARE(entries, QStringList({"Smith - Already created", "Create new..."}));
    QCOMPARE(p.messages.texts(),
             QStringList({"A timetable already exists for this Tutor. To view and change the "
                          "timetable select it from the View Table button on the main window.",
                          "You have not entered a name. Please enter a name to continue."}));
    QCOMPARE(p.messages.messages().at(1).icon, Common::MsgIcon::Critical);
    QCOMPARE(count("SELECT COUNT(*) FROM Timetable"), 1);

    // Typing the name of an existing class reuses it; Back on the Who
    // screen shows the Who screen again.
    QStringList seen;
    {
        ScreenDriver cls({next(), [](QWidget* s) { click(s, "cmdBack"); }, createNew("7A"), cancel()});
        w.mnuFileNew_Click();
        seen = cls.seen;
    }
    QCOMPARE(seen, QStringList({"frmScr_CreateTT_Welcome", "frmScr_CreateTT_Who",
                                    "frmScr_CreateTT_Who", "frmScr_CreateTT_Style"}));
    QCOMPARE(count("SELECT COUNT(*) FROM Class WHERE name = '7A'"), 1);
    QCOMPARE(Wizard::state().WizardWhoID, existing7A);

    // The room screen's own words.
    QString instruction, label;
    ScreenDriver room({next(), [&](QWidget* s) {
                           instruction = child<QLabel>(s, "lblIntro")->text();
                           label = child<QLabel>(s, "lblWho")->text();
                           click(s, "cmdCancel");
                       }});
    Wizard::state().WizardType = QStringLiteral("Room");
    Wizard::state().WizardWhoID = -1;
    w.DoNewTimeTableWizard();
    QCOMPARE(instruction, QStringLiteral("Please select the Room for this timetable."));
    QCOMPARE(label, QStringLiteral("Select a Room:"));
    QVERIFY(p.errors.reports().isEmpty());
}

void TestTimetable::whoScreenMarksCreated() {
    Project p;
    frmMain w;
    w.Form_Load(p.file);
    QStringList entries;
    int selected = -1;
    const auto readWho = [&](QWidget* s) {
        auto* cbo = child<QComboBox>(s, "cboWho");
        entries.clear();
        for (int i = 0; i < cbo->count(); ++i)
            entries << cbo->itemText(i);
        selected = cbo->currentIndex();
        click(s, "cmdCancel");
    };
    {
        ScreenDriver driver({next(), readWho});
        w.mnuFileNew_Click();
    }
    QCOMPARE(entries, QStringList({"Create new..."}));

    const qint32 b = insertClass(QStringLiteral("7B"));
    makeTimetable(QStringLiteral("Class"), insertClass(QStringLiteral("7A")));
    ScreenDriver driver({next(), readWho});
    Wizard::state().WizardType = QStringLiteral("Class");
    Wizard::state().WizardWhoID = b;
    w.DoNewTimeTableWizard();
    QCOMPARE(entries, QStringList({"7A - Already created", "7B", "Create new..."}));
    QCOMPARE(selected, 1);
}

void TestTimetable::gridOrientation_data() {
    QTest::addColumn<bool>("timeOnTop");
    QTest::newRow("periods across") << true;
    QTest::newRow("days across") << false;
}

void TestTimetable::gridOrientation() {
    QFETCH(bool, timeOnTop);
    Project p({"Monday", "Tuesday"});
    const qint32 tt = makeTimetable(QStringLiteral("Class"), insertClass(QStringLiteral("7A")));
    db().Execute(QStringLiteral("UPDATE Timetable SET TimeOnTop = '%1'")
                     .arg(timeOnTop ? QStringLiteral("True") : QStringLiteral("False")));
    const qint32 slot = slotAt(tt, 2, 3);
    ModMain::CreateSubjectSlotRecord(slot, ModMain::CreateSubjectRecord("Maths", 1));
    frmMain w;
    w.LoadTimetable(tt);
    const FlexGrid& g = *w.g;

    const int periods = 3, days = 2;
    QCOMPARE(g.cols(), 1 + (timeOnTop ? periods : days));
    QCOMPARE(g.rows(), 1 + (timeOnTop ? days : periods));
    for (int i = 1; i <= periods; ++i) {
        const qint32 id = titleID("TimeTitle", tt, i);
        QCOMPARE(timeOnTop ? g.colData(i) : g.rowData(i), id);
    }
    for (int i = 1; i <= days; ++i)
        QCOMPARE(timeOnTop ? g.rowData(i) : g.colData(i), titleID("DayTitle", tt, i));
    const auto heading = [&](int i) { return timeOnTop ? g.textMatrix(0, i) : g.textMatrix(i, 0); };
    const auto dayHeading = [&](int i) { return timeOnTop ? g.textMatrix(i, 0) : g.textMatrix(0, i); };
    QCOMPARE(heading(1), QStringLiteral("9:00 - 10:00"));
    QCOMPARE(heading(3), QStringLiteral("12:30 - 13:15"));
    QCOMPARE(dayHeading(2), QStringLiteral("Tuesday"));

    const int r = timeOnTop ? 2 : 3, c = timeOnTop ? 3 : 2;
    QCOMPARE(g.cellData(r, c), slot);
    QCOMPARE(g.textMatrix(r, c), QStringLiteral("\r\nMaths\r\n"));
    QCOMPARE(g.cellBackColor(r, c), kWhite);
    QCOMPARE(g.cellData(1, 1), 0);
    QVERIFY(p.errors.reports().isEmpty());
}

void TestTimetable::formatDialogSwitchesAxisAndClock() {
    Project p;
    const qint32 tt = makeTimetable(QStringLiteral("Class"), insertClass(QStringLiteral("7A")));
    const qint32 maths = ModMain::CreateSubjectRecord("Maths", 1);
    const qint32 art = ModMain::CreateSubjectRecord("Art", 1);
    const qint32 s1 = slotAt(tt, 1, 2), s2 = slotAt(tt, 3, 1);
    ModMain::CreateSubjectSlotRecord(s1, maths);
    ModMain::CreateSubjectSlotRecord(s2, art);
    frmMain w;
    w.Form_Load(p.file);
    QCOMPARE(Timetable::current().ID, tt);

    // Cancel writes nothing, whatever the boxes show.
    {
        ScreenDriver driver({[](QWidget* d) {
            child<QComboBox>(d, "cboAxis")->setCurrentIndex(1);
            click(d, "cmdCancel");
        }});
        w.command(QStringLiteral("mnuFormatTimetable"))->trigger();
        QCOMPARE(driver.seen, QStringList({"frmFormatTimeTable"}));
    }
    QCOMPARE(value("SELECT TimeOnTop FROM Timetable"), QStringLiteral("True"));

    int axis = -1, clock = -1;
    ScreenDriver driver({[&](QWidget* d) {
        QCOMPARE(d->windowTitle(), QStringLiteral("Timetable Format"));
        axis = child<QComboBox>(d, "cboAxis")->currentIndex();
        clock = child<QComboBox>(d, "cboTimeFormat")->currentIndex();
        child<QComboBox>(d, "cboAxis")->setCurrentIndex(1);
        child<QComboBox>(d, "cboTimeFormat")->setCurrentIndex(0);
        click(d, "cmdOk");
    }});
    w.command(QStringLiteral("mnuFormatTimetable"))->trigger();
    QCOMPARE(axis, 0);
    QCOMPARE(clock, 1); // a new timetable uses the 24-hour clock
    QCOMPARE(value("SELECT TimeOnTop FROM Timetable"), QStringLiteral("False"));
    QCOMPARE(value("SELECT Time12Hour FROM Timetable"), QStringLiteral("True"));

    // Days now run across, and every slot stays in its day and period.
    const FlexGrid& g = *w.g;
    QCOMPARE(g.cols(), 4);
    QCOMPARE(g.textMatrix(0, 3), QStringLiteral("Wednesday"));
    QCOMPARE(g.textMatrix(3, 0), QStringLiteral("12:30 - 1:15"));
    for (const auto& [slot, day, period, text] :
         {std::tuple{s1, 1, 2, "\r\nMaths\r\n"}, std::tuple{s2, 3, 1, "\r\nArt\r\n"}}) {
        const QPoint at = cellOf(g, titleID("DayTitle", tt, day), titleID("TimeTitle", tt, period));
        QCOMPARE(at, QPoint(day, period));
        QCOMPARE(g.cellData(at.y(), at.x()), slot);
        QCOMPARE(g.textMatrix(at.y(), at.x()), QString::fromLatin1(text));
    }
    QVERIFY(p.errors.reports().isEmpty());
}

void TestTimetable::specialCellsAndHeadings() {
    Project p;
    const qint32 tt = makeTimetable(QStringLiteral("Class"), insertClass(QStringLiteral("7A")));
    db().Execute(QStringLiteral("UPDATE TimeTitle SET SpecialID = 3 WHERE Pos = 2"));
    db().Execute(QStringLiteral("UPDATE TimeTitle SET SpecialID = 4 WHERE Pos = 3"));
    const qint32 tutor = ModMain::CreateTutorRecord("Smith", "Mr S", "", "");
    const qint32 ordinary = slotAt(tt, 1, 1), unavailable = slotAt(tt, 2, 1);
    for (const qint32 s : {ordinary, unavailable})
        ModMain::CreateTutorSlotRecord(s, tutor);
    db().Execute(QStringLiteral("UPDATE Slot SET SpecialID = 2 WHERE id = %1").arg(unavailable));
    frmMain w;
    w.LoadTimetable(tt);
    FlexGrid& g = *w.g;

    QCOMPARE(g.textMatrix(0, 2), QStringLiteral("Lunch"));
    QCOMPARE(g.textMatrix(0, 3), QString());
    QCOMPARE(g.textMatrix(1, 1), QStringLiteral("Mr S\r\n\r\n"));
    QCOMPARE(g.cellBackColor(1, 1), kWhite);
    QCOMPARE(g.textMatrix(2, 1), QString());
    QCOMPARE(g.cellBackColor(2, 1), kLightBlue);
    QCOMPARE(g.cellData(2, 1), unavailable);

    // Repainting one cell reads its code from the slot when asked to.
    db().Execute(QStringLiteral("UPDATE Slot SET SpecialID = 4 WHERE id = %1").arg(ordinary));
    ModMain::RefreshCell(g, true, titleID("DayTitle", tt, 1), titleID("TimeTitle", tt, 1), ordinary,
                         -1, QStringLiteral("Class"));
    QCOMPARE(g.textMatrix(1, 1), QString());
    QCOMPARE(g.cellBackColor(1, 1), kLightBlue);
    // A title the grid does not show is skipped.
    ModMain::RefreshCell(g, true, 9999, titleID("TimeTitle", tt, 1), ordinary, 1,
                         QStringLiteral("Class"));
    QCOMPARE(g.cellBackColor(1, 1), kLightBlue);
}

void TestTimetable::currentCellSlot() {
    Project p;
    const qint32 tt = makeTimetable(QStringLiteral("Class"), insertClass(QStringLiteral("7A")));
    frmMain w;
    w.LoadTimetable(tt);
    FlexGrid& g = *w.g;
    g.setCurrentCell(-1, -1);
    QCOMPARE(ModMain::DoCurrentTimetableCreateGetSlot(g), -1);
    QCOMPARE(count("SELECT COUNT(*) FROM Slot"), 0);

    g.setRowCol(2, 3);
    const qint32 slot = ModMain::DoCurrentTimetableCreateGetSlot(g);
    QVERIFY(slot > 0);
    QCOMPARE(g.cellData(2, 3), slot);
    QCOMPARE(ModMain::DoCurrentTimetableCreateGetSlot(g), slot);
    QCOMPARE(count("SELECT COUNT(*) FROM Slot"), 1);
    QCOMPARE(ModMain::DoGetSlot(tt, projectID("ProjectTimeTitle", 3), projectID("ProjectDayTitle", 2)),
             slot);
}

void TestTimetable::resourceLists() {
    Project p;
    ModMain::CreateTutorRecord("Zed", "Z", "", "");
    const qint32 amy = ModMain::CreateTutorRecord("Amy", "A", "", "");
    ModMain::CreateRoomRecord("Lab", 30);
    const qint32 tt = makeTimetable(QStringLiteral("Class"), insertClass(QStringLiteral("7A")));
    frmMain w;
    w.show();
    w.LoadTimetable(tt);
    const FlexGrid& tutors = *w.gTutor;
    QCOMPARE(tutors.rows(), 3);
    QCOMPARE(tutors.textMatrix(0, 0), QStringLiteral("Status"));
    QCOMPARE(tutors.textMatrix(0, 1), QStringLiteral("Sel"));
    QCOMPARE(tutors.textMatrix(0, 2), QStringLiteral("Tutor"));
    QCOMPARE(tutors.textMatrix(1, 2), QStringLiteral("Amy"));
    QCOMPARE(tutors.rowData(1), amy);
    QCOMPARE(tutors.textMatrix(2, 2), QStringLiteral("Zed"));
    QCOMPARE(tutors.textMatrix(1, 0), QStringLiteral("Avail"));
    QCOMPARE(tutors.cellCheck(1, 1), int(FlexGrid::Unchecked));
    QCOMPARE(w.gSubject->rows(), 1); // the placeholder is never listed
    QCOMPARE(w.gClass->rows(), 2);
    QVERIFY(!w.gClass->isVisible());
    QVERIFY(w.gTutor->isVisible() && w.gRoom->isVisible() && w.gSubject->isVisible());

    w.LoadTimetable(makeTimetable(QStringLiteral("Tutor"), amy));
    QVERIFY(!w.gTutor->isVisible());
    QVERIFY(w.gClass->isVisible() && w.gRoom->isVisible());
}

void TestTimetable::toolbarListLoadsTimetables() {
    Project p;
    const qint32 a = makeTimetable(QStringLiteral("Class"), insertClass(QStringLiteral("7A")));
    const qint32 b = makeTimetable(QStringLiteral("Room"), ModMain::CreateRoomRecord("Lab", 30));
    frmMain w;
    w.Form_Load(p.file);
    auto* button = w.findChild<QToolButton*>(QStringLiteral("tbTimetables"));
    QVERIFY(button && button->isEnabled());
    const auto texts = [&] {
        QStringList out;
        for (QAction* entry : button->menu()->actions())
            out << entry->objectName() + QLatin1Char('=') + entry->text();
        return out;
    };
    QCOMPARE(texts(), QStringList({QStringLiteral("k%1=Class 7A - Selected").arg(a),
                                   QStringLiteral("k%1=Room Lab").arg(b)}));

    w.findChild<QAction*>(QStringLiteral("k%1").arg(b))->trigger();
    QTRY_COMPARE(Timetable::current().ID, b);
    QCOMPARE(w.windowTitle(), QStringLiteral("Vantor Planner - Room Lab"));
    QCOMPARE(texts(), QStringList({QStringLiteral("k%1=Class 7A").arg(a),
                                   QStringLiteral("k%1=Room Lab - Selected").arg(b)}));
}

void TestTimetable::sizesSurviveSwitchingAndReopening() {
    Project p;
    const qint32 a = makeTimetable(QStringLiteral("Class"), insertClass(QStringLiteral("7A")));
    const qint32 b = makeTimetable(QStringLiteral("Class"), insertClass(QStringLiteral("7B")));
    db().Execute(QStringLiteral("UPDATE Timetable SET TimeOnTop = 'False' WHERE id = %1").arg(b));
    {
        frmMain w;
        w.Form_Load(p.file);
        w.g->setColWidthTwips(2, 2400);
        w.g->setRowHeightTwips(1, 1500);
        w.LoadTimetable(b);
        QCOMPARE(count(QStringLiteral("SELECT Width FROM TimeTitle WHERE id = %1")
                           .arg(titleID("TimeTitle", a, 2))),
                 2400);
        // With days across, a column is a day and a row a period.
        w.g->setColWidthTwips(1, 2100);
        w.g->setRowHeightTwips(3, 1800);
        w.LoadTimetable(a);
        QCOMPARE(w.g->colWidthTwips(2), 2400);
        QCOMPARE(w.g->rowHeightTwips(1), 1500);
        QCOMPARE(w.g->colWidthTwips(1), 1600);
        w.g->setColWidthTwips(3, 2000);
        w.close();
    }
    QVERIFY(p.env.open(p.file));
    QCOMPARE(count(QStringLiteral("SELECT Width FROM DayTitle WHERE id = %1")
                       .arg(titleID("DayTitle", b, 1))),
             2100);
    QCOMPARE(count(QStringLiteral("SELECT Height FROM TimeTitle WHERE id = %1")
                       .arg(titleID("TimeTitle", b, 3))),
             1800);

    Timetable::Reset();
    frmMain again;
    again.Form_Load(p.file);
    QCOMPARE(Timetable::current().ID, a);
    QCOMPARE(again.g->colWidthTwips(2), 2400);
    QCOMPARE(again.g->colWidthTwips(3), 2000);
    QCOMPARE(again.g->rowHeightTwips(1), 1500);
    again.LoadTimetable(b);
    QCOMPARE(again.g->colWidthTwips(1), 2100);
    QCOMPARE(again.g->rowHeightTwips(3), 1800);
}

void TestTimetable::sameSizeCommands() {
    Project p;
    const qint32 tt = makeTimetable(QStringLiteral("Class"), insertClass(QStringLiteral("7A")));
    frmMain w;
    w.LoadTimetable(tt);
    FlexGrid& g = *w.g;
    const auto widths = [&] {
        return value(QStringLiteral("SELECT group_concat(Width) FROM (SELECT Width FROM TimeTitle "
                                    "WHERE TimetableID = %1 ORDER BY Pos)")
                         .arg(tt));
    };
    const auto heights = [&] {
        return value(QStringLiteral("SELECT group_concat(Height) FROM (SELECT Height FROM DayTitle "
                                    "WHERE TimetableID = %1 ORDER BY Pos)")
                         .arg(tt));
    };

    // Columns: No changes nothing on screen but still saves.
    g.setColWidthTwips(2, 1800);
    g.setRowCol(1, 2);
    p.messages.answer(MsgResult::No);
    w.command(QStringLiteral("mnuFormatSameSizeColumns"))->trigger();
    QCOMPARE(p.messages.texts().last(), QStringLiteral("Set all columns to the same width?"));
    QCOMPARE(p.messages.messages().last().buttons, Common::MsgButtons::YesNoCancel);
    QCOMPARE(g.colWidthTwips(1), 1600);
    QCOMPARE(widths(), QStringLiteral("1600,1800,1600"));

    const int headingWidth = g.colWidthTwips(0);
    p.messages.answer(MsgResult::Yes);
    w.command(QStringLiteral("mnuFormatSameSizeColumns"))->trigger();
    QCOMPARE(widths(), QStringLiteral("1800,1800,1800"));
    QCOMPARE(g.colWidthTwips(0), headingWidth);

    // Rows: the grid changes, the database only at the next save.
    g.setRowHeightTwips(3, 1500);
    g.setRowCol(3, 1);
    p.messages.answer(MsgResult::Yes);
    w.command(QStringLiteral("mnuFormatSameSizeRows"))->trigger();
    QCOMPARE(p.messages.texts().last(), QStringLiteral("Set all rows to the same height?"));
    QCOMPARE(g.rowHeightTwips(1), 1500);
    QCOMPARE(heights(), QStringLiteral("1200,1200,1200"));
    w.SaveTimetable();
    QCOMPARE(heights(), QStringLiteral("1500,1500,1500"));
}

void TestTimetable::deleteTimetable() {
    Project p;
    const qint32 a = makeTimetable(QStringLiteral("Class"), insertClass(QStringLiteral("7A")));
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

    p.messages.answer(MsgResult::Yes);
    w.command(QStringLiteral("mnuFileDelete"))->trigger();
    QCOMPARE(count("SELECT COUNT(*) FROM Timetable"), 1);
    for (const char* table : {"TimeTitle", "DayTitle", "Slot"})
        QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM %1 WHERE TimetableID = %2")
                           .arg(QString::fromLatin1(table))
                           .arg(a)),
                 0);
    for (const char* table : {"TutorSlot", "SubjectSlot", "RoomSlot", "ClassSlot"}) {
        const QString t = QString::fromLatin1(table);
        QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM %1 WHERE SlotID = %2").arg(t).arg(sa)), 0);
        QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM %1 WHERE SlotID = %2").arg(t).arg(sb)), 1);
    }
    QCOMPARE(Timetable::current().ID, b);
    QCOMPARE(w.windowTitle(), QStringLiteral("Vantor Planner - Room Lab"));

    p.messages.answer(MsgResult::Yes);
    w.command(QStringLiteral("mnuFileDelete"))->trigger();
    QCOMPARE(count("SELECT COUNT(*) FROM Timetable"), 0);
    QCOMPARE(Timetable::current().ID, 0);
    QCOMPARE(w.g->rows(), 1);
    QCOMPARE(w.g->cols(), 1);
    QCOMPARE(w.windowTitle(), QStringLiteral("Vantor Planner"));
    QVERIFY(!w.command(QStringLiteral("mnuFileDelete"))->isEnabled());
    QVERIFY(!w.findChild<QToolButton*>(QStringLiteral("tbTimetables"))->isEnabled());
    QVERIFY(p.errors.reports().isEmpty());
}

void TestTimetable::openingProjectLoadsFirstTimetable() {
    Project p;
    const QString other = p.env.newProjectWithCalendar(kDays, kTimes, QStringLiteral("other.VNPL"));
    QVERIFY(p.env.open(other));
    const qint32 tt = makeTimetable(QStringLiteral("Tutor"),
                                    ModMain::CreateTutorRecord("Smith", "Mr S", "", ""));
    frmMain w;
    w.Form_Load(p.file);
    QCOMPARE(Timetable::current().ID, 0);
    QCOMPARE(w.g->rows(), 1);

    FileDialogRecorder files;
    files.choose(other);
    w.command(QStringLiteral("mnuFileOpenProject"))->trigger();
    QCOMPARE(Timetable::current().ID, tt);
    QCOMPARE(w.windowTitle(), QStringLiteral("Vantor Planner - Tutor Smith"));
    QVERIFY(w.command(QStringLiteral("mnuFileDelete"))->isEnabled());

    // Opening another project first saves the sizes of the one shown.
    w.g->setColWidthTwips(1, 2222);
    files.choose(p.file);
    w.command(QStringLiteral("mnuFileOpenProject"))->trigger();
    QCOMPARE(Timetable::current().ID, 0);
    QVERIFY(p.env.open(other));
    QCOMPARE(count(QStringLiteral("SELECT Width FROM TimeTitle WHERE TimetableID = %1 AND Pos = 1")
                       .arg(tt)),
             2222);

    // A project that fails to open leaves nothing of the last one offered.
    files.choose(other);
    w.command(QStringLiteral("mnuFileOpenProject"))->trigger();
    QVERIFY(w.findChild<QToolButton*>(QStringLiteral("tbTimetables"))->isEnabled());
    QFile junk(p.env.path(QStringLiteral("junk.VNPL")));
    QVERIFY(junk.open(QIODevice::WriteOnly));
    junk.write("not a database");
    junk.close();
    files.choose(junk.fileName());
    w.command(QStringLiteral("mnuFileOpenProject"))->trigger();
    QCOMPARE(Timetable::current().ID, 0);
    auto* list = w.findChild<QToolButton*>(QStringLiteral("tbTimetables"));
    QVERIFY(!list->isEnabled());
    QVERIFY(list->menu()->isEmpty());
    QCOMPARE(w.gTutor->rows(), 1);
}

QTEST_MAIN(TestTimetable)
#include "test_timetable.moc"
