// Auto Fill: the engine's scoring and placement, the fast scoring against the
// prescribed statements, the run as one action, and the wizard and method
// dialogs driven through their controls.

#include "autofill/AutoFillEngine.h"
#include "autofill/AutoFillScreens.h"
#include "autofill/AutoFillState.h"
#include "autofill/AutoFillWizard.h"
#include "autofill/BookingIndex.h"
#include "autofill/FillChoices.h"
#include "autofill/frmAutoFill_Progress.h"
#include "autofill/frmDefineFillMethods.h"
#include "common/Arrays.h"
#include "store/Records.h"
#include "support/Fixtures.h"

#include <QtTest>
#include <QtWidgets>
#include <sqlite3.h>

using namespace Fixtures;
using Common::MsgResult;
using ModMain::ResourceKind;

namespace {
// The choices of one fill.
void choose(qint32 who, const QVector<qint32>& subjects, const QVector<qint32>& periods,
            const QVector<qint32>& tutors, const QVector<qint32>& rooms, qint16 method) {
    AutoFill::Reset();
    AutoFill::State& a = AutoFill::state();
    a.AutoFill_WhoID = who;
    a.AutoFill_IncludeSubjects = subjects;
    a.AutoFill_IncludeSubjectPeriods = periods;
    a.AutoFill_Tutors = tutors;
    a.AutoFill_Rooms = rooms;
    a.AutoFill_MethodID = method;
}

// Stops the run at its nth pause.
struct CancelAt : ModMain::FillProgress {
    int left;
    explicit CancelAt(int n) : left(n) {}
    bool yield() override { return --left == 0; }
};

// Where each resource is booked: "Tutor 3 at 5/7" -> the slots.
QHash<QString, QSet<QString>> bookings() {
    QHash<QString, QSet<QString>> out;
    for (const char* kind : {"Tutor", "Room"})
        for (const QString& row :
             rows("SELECT %1Slot.%1ID, TimeTitle.ProjectTimeTitleID, DayTitle.ProjectDayTitleID, "
                  "Slot.ID FROM Slot, %1Slot, DayTitle, TimeTitle WHERE Slot.ID = %1Slot.SlotID "
                  "AND Slot.DayTitleID = DayTitle.ID AND Slot.TimeTitleID = TimeTitle.ID AND "
                  "Slot.TimetableID IN (SELECT id FROM Timetable WHERE Type = 'Class')",
                  QLatin1String(kind))) {
            const QStringList f = row.split('|');
            out[QStringLiteral("%1 %2 at %3/%4").arg(QLatin1String(kind), f[0], f[1], f[2])]
                << f[3];
        }
    return out;
}

// A generated school: 5 days of 6 periods, 8 tutors, 6 rooms, 6 subjects,
// 4 classes with timetables, and tutor and room timetables, booked at
// random with double bookings, duplicate links and marked periods. The
// class to fill (its id in `target`) has some cells with subjects, some
// with only a tutor or a room, and a lunch period.
struct GeneratedSchool {
    TestEnv env;
    QString file;
    qint32 target = 0;
    QVector<qint32> tutors, rooms, subjects;
    explicit GeneratedSchool(quint32 seed) {
        file = env.newProjectWithCalendar(
            {"Monday", "Tuesday", "Wednesday", "Thursday", "Friday"},
            {"8:00", "9:00", "10:00", "11:00", "12:00", "13:00", "14:00"});
        if (!openQuick(env, file))
            qFatal("cannot open the generated school");
        QRandomGenerator rng(seed);
        for (int i = 0; i < 8; ++i)
            tutors << ModMain::CreateTutorRecord(QStringLiteral("T%1").arg(i), QString(), QString(),
                                                 QString());
        for (int i = 0; i < 6; ++i) {
            rooms << ModMain::CreateRoomRecord(QStringLiteral("R%1").arg(i), 30);
            subjects << ModMain::CreateSubjectRecord(QStringLiteral("S%1").arg(i), 1);
        }
        QVector<qint32> timetables;
        for (int i = 0; i < 4; ++i)
            timetables << ModMain::CreateTimetable("Class", insertClass(QString("C%1").arg(i)), 1);
        timetables << ModMain::CreateTimetable("Tutor", tutors[0], 1)
                   << ModMain::CreateTimetable("Room", rooms[0], 1);
        target = timetables[0];
        for (const qint32 tt : timetables)
            for (int day = 1; day <= 5; ++day)
                for (int period = 1; period <= 6; ++period) {
                    if (rng.bounded(tt == target ? 5 : 3) != 0)
                        continue;
                    const qint32 slot = slotAt(tt, day, period);
                    const int what = rng.bounded(4);
                    if (what != 0) // the rest keep only a tutor or room
                        link("Subject", slot, subjects[rng.bounded(6)]);
                    for (int n = rng.bounded(3); n > 0; --n)
                        link("Tutor", slot, tutors[rng.bounded(8)]);
                    if (rng.bounded(2))
                        link("Room", slot, rooms[rng.bounded(6)]);
                    if (what == 0 && rng.bounded(2))
                        value("UPDATE Slot SET SpecialID = 3 WHERE id = %1", slot);
                }
    }
    // The free cells of the target, as the fill counts them.
    qint32 freeCells() const {
        return ModMain::GetTotalSlotsForTimetable(target) -
               ModMain::GetTotalAllocatedSlotsForTimetable(target);
    }
};

// The links of the target's cells that hold a subject.
QStringList takenCells(qint32 tt) {
    return rows(
        "SELECT Slot.ID, (SELECT group_concat(SubjectID) FROM SubjectSlot WHERE SlotID = Slot.ID), "
        "(SELECT group_concat(TutorID) FROM TutorSlot WHERE SlotID = Slot.ID), (SELECT "
        "group_concat(RoomID) FROM RoomSlot WHERE SlotID = Slot.ID) FROM Slot WHERE TimetableID = "
        "%1 AND Slot.ID IN (SELECT SlotID FROM SubjectSlot) ORDER BY Slot.ID",
        tt);
}

using Step = ModalDriver::Step;

const Step next = press("cmdNext");
const Step back = press("cmdBack");
const Step cancel = press("cmdCancel");

QString screen(const char* name) {
    return QStringLiteral("frmScr_AutoFill_") + QLatin1String(name);
}

// The selected entries of a list, by text.
QStringList selected(QDialog* d, const char* list) {
    QStringList out;
    for (const QListWidgetItem* item : control<QListWidget>(d, list)->selectedItems())
        out << item->text();
    out.sort();
    return out;
}

void select(QDialog* d, const char* list, const QStringList& names) {
    auto* l = control<QListWidget>(d, list);
    for (int i = 0; i < l->count(); ++i)
        l->item(i)->setSelected(names.contains(l->item(i)->text()));
}

// A small school for the wizard: Monday and Tuesday of three periods,
// Maths, Art and Music, tutors Ann and Bob, rooms Hall and Lab, class 7A
// with a timetable, and Art on Monday 8:00 already.
struct WizardSchool : OpenProject {
    ModalDriver driver;
    qint32 tt = 0;
    QList<qint32> loaded;
    WizardSchool(bool withTimetable = true)
        : OpenProject({"Monday", "Tuesday"}, {"8:00", "9:00", "10:00", "11:00"}) {
        for (const char* s : {"Maths", "Art", "Music"})
            ModMain::CreateSubjectRecord(s, 1);
        for (const char* t : {"Ann", "Bob"})
            ModMain::CreateTutorRecord(t, t, QString(), QString());
        for (const char* r : {"Hall", "Lab"})
            ModMain::CreateRoomRecord(r, 30);
        if (withTimetable) {
            tt = ModMain::CreateTimetable("Class", insertClass("7A"), 1);
            link("Subject", slotAt(tt, 1, 1),
                 value("SELECT id FROM Subject WHERE name = 'Art'").toInt());
        }
    }
    QString run() {
        AutoFill::WizardHost host;
        host.newClassTimetable = [this] { loaded << -1; };
        host.loadTimetable = [this](qint32 id) { loaded << id; };
        return driver.run([&] { AutoFill::RunAutoFillWizard(nullptr, host); });
    }
    void expect(const char* name, Step step) { driver.expect(screen(name), std::move(step)); }
};
} // namespace

class TestAutoFill : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { AutoFill::Reset(); }
    void subjectScore_data() {
        QTest::addColumn<QVector<qint32>>("list");
        QTest::addColumn<int>("index");
        QTest::addColumn<int>("set");
        QTest::addColumn<double>("score");
        // Asked once: Distance = N = 4, ideal 5/10 * 4 * 0.8 + 1 = 2.6.
        QTest::newRow("asked once") << QVector<qint32>{7, 0, 0, 0} << 1 << 5 << 65.0;
        QTest::newRow("asked once, anywhere") << QVector<qint32>{0, 0, 7, 0} << 3 << 5 << 65.0;
        // SubjectSet 0: the ideal spacing is 1, so neighbours score 100.
        QTest::newRow("set 0, adjacent") << QVector<qint32>{7, 7, 0, 0} << 1 << 0 << 100.0;
        QTest::newRow("set 0, two apart") << QVector<qint32>{7, 0, 7, 0} << 1 << 0 << 50.0;
        // Set 10 on N = 5: ideal 5, the repeat 1 away scores 1/5.
        QTest::newRow("set 10, adjacent") << QVector<qint32>{7, 7, 0, 0, 0} << 2 << 10 << 20.0;
    }
    void subjectScore() {
        QFETCH(QVector<qint32>, list);
        QFETCH(int, index);
        QFETCH(int, set);
        QFETCH(double, score);
        QCOMPARE(ModMain::GetSubjectPointValue(list, index, list[index - 1], set), score);
    }
    void sequencePasses_data() {
        QTest::addColumn<QVector<qint32>>("list");
        QTest::addColumn<int>("set");
        QTest::addColumn<QVector<qint32>>("after");
        // Worked through by hand and by a model of the passes: the kept best is
        // scored with the subject at i, the candidates with the one at best.
        QTest::newRow("two singles")
            << QVector<qint32>{0, 0, 1, 2} << 0 << QVector<qint32>{1, 2, 0, 0};
        QTest::newRow("a pair and a single")
            << QVector<qint32>{0, 1, 2, 1} << 0 << QVector<qint32>{2, 1, 1, 0};
        QTest::newRow("a pair kept together")
            << QVector<qint32>{0, 2, 2, 1} << 0 << QVector<qint32>{1, 2, 2, 0};
    }
    void sequencePasses() {
        QFETCH(QVector<qint32>, list);
        QFETCH(int, set);
        QFETCH(QVector<qint32>, after);
        ModMain::FillProgress quiet;
        ModMain::ImproveSequence(list, set, quiet);
        QCOMPARE(list, after);
    }
    void tutorScore() {
        // One class cell at Monday 8:00 taught twice by A; the five chosen tutors
        // are distinct, and TutorSet 10 on five makes the ideal spacing 5 = N, so
        // each starts from 100.
        OpenProject p({"Monday", "Tuesday"}, {"8:00", "9:00"});
        QVector<qint32> t;
        for (const char* name : {"A", "B", "C", "D", "E"})
            t << ModMain::CreateTutorRecord(name, name, QString(), QString());
        const qint32 tt = ModMain::CreateTimetable("Class", insertClass("7A"), 1);
        const qint32 cell = slotAt(tt, 1, 1);
        link("Tutor", cell, t[0]);
        link("Tutor", cell, t[0]);
        // B teaches elsewhere at Tuesday 8:00.
        link("Tutor", slotAt(ModMain::CreateTimetable("Class", insertClass("7B"), 1), 2, 1), t[1]);
        const qint32 tuesday = slotAt(tt, 2, 1);
        const qint32 pt = projectID("TimeTitle", 1);
        const ModMain::BookingIndex index(ResourceKind::Tutor, tt, t);
        // A teaches every tutored period: no bonus; C none: 100 + 10 folds back
        // to 90; B is booked elsewhere then; A's own cell is no clash.
        for (const auto& [tutor, slot, day, score] :
             {std::tuple{0, tuesday, 2, 100.0}, std::tuple{2, tuesday, 2, 90.0},
              std::tuple{1, tuesday, 2, 0.0}, std::tuple{0, cell, 1, 100.0}}) {
            const qint32 pd = projectID("DayTitle", day);
            QCOMPARE(ModMain::GetTutorPointValue(tt, slot, t, tutor + 1, t[tutor], 10, pt, pd),
                     score);
            QCOMPARE(index.PointValue(t, tutor + 1, 10, slot, pt, pd), score);
        }
    }
    void placement() {
        // Two days of two periods. Monday 8:00 has a subject already; Monday
        // 9:00 a slot with only a tutor; B is busy elsewhere on Tuesday 8:00.
        OpenProject p({"Monday", "Tuesday"}, {"8:00", "9:00", "10:00"});
        const qint32 maths = ModMain::CreateSubjectRecord("Maths", 1);
        const qint32 a = ModMain::CreateTutorRecord("A", "A", QString(), QString());
        const qint32 b = ModMain::CreateTutorRecord("B", "B", QString(), QString());
        const qint32 tt = ModMain::CreateTimetable("Class", insertClass("7A"), 1);
        link("Subject", slotAt(tt, 1, 1), maths);
        const qint32 tutorOnly = slotAt(tt, 1, 2);
        link("Tutor", tutorOnly, a);
        const qint32 other = ModMain::CreateTimetable("Class", insertClass("7B"), 1);
        link("Tutor", slotAt(other, 2, 1), b);
        const QStringList taken = takenCells(tt);
        // Three periods of Maths fill the three free cells whatever the shuffle.
        choose(tt, {maths}, {3}, {b, a}, {}, 4);
        ModMain::FillProgress quiet;
        QCOMPARE(ModMain::RunAutoFill(quiet), ModMain::FillOutcome::Finished);
        QCOMPARE(takenCells(tt).mid(0, 1), taken);
        // The tutor-only cell keeps its slot and gains the subject; each cell
        // filled links its class, and no other timetable gains a slot (the
        // tutors have none).
        QCOMPARE(rows("SELECT (SELECT COUNT(*) FROM Slot WHERE TimetableID = %1), (SELECT COUNT(*) "
                      "FROM SubjectSlot WHERE SlotID = %2), (SELECT COUNT(*) FROM ClassSlot), "
                      "(SELECT COUNT(*) FROM Slot WHERE TimetableID <> %1)",
                      tt, tutorOnly),
                 QStringList{"4|1|3|1"});
        // On Monday 9:00 B, who teaches none of the class's periods yet, earns
        // the bonus A does not; on Tuesday 8:00 B is busy, so A is taken.
        const auto tutorAt = [&](qint32 timetable, int day, int period) {
            return value("SELECT group_concat(TutorID) FROM TutorSlot WHERE SlotID = %1",
                         ModMain::DoGetSlot(timetable, projectID("TimeTitle", period),
                                            projectID("DayTitle", day)));
        };
        QCOMPARE(tutorAt(tt, 1, 2), QString("%1,%2").arg(a).arg(b));
        QCOMPARE(tutorAt(tt, 2, 1), QString::number(a));
        // Equal scores: the earlier chosen tutor is taken. B teaches 7B's one
        // tutored period, so on Monday 8:00 C and A earn the same full bonus.
        const qint32 c = ModMain::CreateTutorRecord("C", "C", QString(), QString());
        choose(other, {maths}, {4}, {c, a}, {}, 4);
        QCOMPARE(ModMain::RunAutoFill(quiet), ModMain::FillOutcome::Finished);
        QCOMPARE(tutorAt(other, 1, 1), QString::number(c));
    }
    void tutorsTeachTheirOwnSubjects() {
        // Ann teaches Music, Bob Maths; nobody is recorded for Art. Each
        // subject goes only to its teachers, Art to anyone offered, and the
        // end names the periods no teacher could take.
        OpenProject p({"Monday", "Tuesday"}, {"8:00", "9:00", "10:00", "11:00"});
        QMap<QString, qint32> id;
        for (const char* s : {"Maths", "Music", "Art"})
            id[s] = ModMain::CreateSubjectRecord(s, 1);
        for (const char* t : {"Ann", "Bob"})
            id[t] = ModMain::CreateTutorRecord(t, t, QString(), QString());
        value("INSERT INTO SubjectsTaughtByTutor (TutorID, SubjectID) VALUES (%1, %2), (%3, %4)",
              id["Ann"], id["Music"], id["Bob"], id["Maths"]);
        const qint32 tt = ModMain::CreateTimetable("Class", insertClass("7A"), 1);
        const auto taughtBy = [&] {
            return rows("SELECT Subject.name, IFNULL(Tutor.name, '-'), COUNT(*) FROM SubjectSlot "
                        "JOIN Slot ON Slot.id = SubjectSlot.SlotID JOIN Subject ON Subject.id = "
                        "SubjectID LEFT JOIN TutorSlot ON TutorSlot.SlotID = Slot.id LEFT JOIN "
                        "Tutor ON Tutor.id = TutorID WHERE Slot.TimetableID = %1 GROUP BY 1, 2 "
                        "ORDER BY 1, 2",
                        tt);
        };
        choose(tt, {id["Maths"], id["Music"]}, {2, 2}, {id["Ann"], id["Bob"]}, {}, 1);
        ModMain::FillProgress quiet;
        QCOMPARE(ModMain::RunAutoFill(quiet), ModMain::FillOutcome::Finished);
        QCOMPARE(taughtBy(), (QStringList{"Maths|Bob|2", "Music|Ann|2"}));
        const ModMain::FillReport& report = ModMain::LastFillReport();
        QCOMPARE(report.asked, 4);
        QCOMPARE(report.filled, 4);
        // Only Ann offered: Maths has no teacher to take it, Art is anyone's.
        value("DELETE FROM SubjectSlot");
        value("DELETE FROM TutorSlot");
        ModMain::LessonIndex::invalidate();
        choose(tt, {id["Maths"], id["Art"]}, {2, 1}, {id["Ann"]}, {}, 1);
        QCOMPARE(ModMain::RunAutoFill(quiet), ModMain::FillOutcome::Finished);
        QCOMPARE(taughtBy(), (QStringList{"Art|Ann|1", "Maths|-|2"}));
        QCOMPARE(ModMain::FillReportText(ModMain::LastFillReport()),
                 QStringLiteral("Filled 3 of the 3 periods asked.\nNo tutor offered who teaches "
                                "it was free for: Maths (2).\nThose periods have their subject; "
                                "add the rest by hand."));
        // One period asked is one period, not one periods.
        ModMain::FillReport one;
        one.asked = 1;
        one.filled = 1;
        QCOMPARE(ModMain::FillReportText(one), QStringLiteral("Filled 1 of the 1 period asked."));
    }
    void headingsInStorageOrder() {
        // Two classes, the second with its period headings stored in reverse
        // (their positions unchanged). With the same shuffle each fill takes its
        // cells in storage order, so the subjects read the same in storage order.
        OpenProject p({"Monday"}, {"8:00", "9:00", "10:00", "11:00", "12:00", "13:00"});
        const QVector<qint32> subjects = {ModMain::CreateSubjectRecord("W", 1),
                                          ModMain::CreateSubjectRecord("X", 1),
                                          ModMain::CreateSubjectRecord("Y", 1)};
        const qint32 first = ModMain::CreateTimetable("Class", insertClass("7A"), 1);
        const qint32 second = ModMain::CreateTimetable("Class", insertClass("7B"), 1);
        const QString columns =
            "ProjectTimeTitleID, TimetableID, StartTime, Duration, Width, Height, SpecialID, Pos";
        value("CREATE TEMP TABLE t AS SELECT %1 FROM TimeTitle WHERE TimetableID = %2", columns,
              second);
        value("DELETE FROM TimeTitle WHERE TimetableID = %1", second);
        value("INSERT INTO TimeTitle (%1) SELECT %1 FROM t ORDER BY Pos DESC", columns);
        const auto fillInStorageOrder = [&](qint32 tt) {
            choose(tt, subjects, {2, 1, 1}, {}, {}, 1);
            Common::Randomize(5);
            ModMain::FillProgress quiet;
            ModMain::RunAutoFill(quiet);
            return rows(
                "SELECT group_concat(SubjectID) FROM TimeTitle LEFT JOIN Slot ON Slot.TimeTitleID "
                "= TimeTitle.ID LEFT JOIN SubjectSlot ON SlotID = Slot.ID WHERE "
                "TimeTitle.TimetableID = %1 GROUP BY TimeTitle.ID ORDER BY TimeTitle.ID",
                tt);
        };
        const QStringList inFirst = fillInStorageOrder(first);
        QCOMPARE(inFirst.size(), 5);
        QCOMPARE(fillInStorageOrder(second), inFirst);
    }
    void manySchools() {
        int emptyEarly = 0, emptyLate = 0;
        for (quint32 seed = 1; seed <= 12; ++seed) {
            GeneratedSchool school(seed);
            ErrorRecorder errors;
            const qint32 free = school.freeCells();
            const QVector<qint32> periods = {free / 4, free / 6, 2};
            const QVector<qint32> chosen = {school.subjects[0], school.subjects[3],
                                            school.subjects[5]};
            // Every tutor and room, or some of them.
            const int some = seed % 3 ? 8 : 4;
            const auto fill = [&](ModMain::Scoring scoring) {
                choose(school.target, chosen, periods, school.tutors.mid(8 - some),
                       school.rooms.mid(0, some - 2), qint16(QList<int>{1, 2, 3, 5}[seed % 4]));
                Common::Randomize(seed);
                ModMain::FillProgress quiet;
                QCOMPARE(ModMain::RunAutoFill(quiet, scoring), ModMain::FillOutcome::Finished);
            };
            // The prescribed statements fill a copy; the fast scoring must write the same rows.
            ModMain::DB().DBClose();
            const QString copy = school.env.path(QStringLiteral("statements.VNPL"));
            QVERIFY(QFile::copy(school.file, copy));
            QVERIFY(openQuick(school.env, copy));
            fill(ModMain::Scoring::Statements);
            ModMain::DB().DBClose();
            QVERIFY(openQuick(school.env, school.file));
            const auto before = bookings();
            const QStringList taken = takenCells(school.target);
            const auto counts = [&] {
                return rows("SELECT SubjectID, COUNT(*) FROM SubjectSlot, Slot WHERE Slot.ID = "
                            "SlotID AND TimetableID = %1 GROUP BY SubjectID ORDER BY SubjectID",
                            school.target);
            };
            const QStringList countsBefore = counts();
            fill(ModMain::Scoring::Index);
            QVERIFY(errors.reports().isEmpty());
            // No resource newly booked where it was, or twice.
            const auto after = bookings();
            for (auto it = after.cbegin(); it != after.cend(); ++it)
                if (it.value() != before.value(it.key()))
                    QVERIFY2(before.value(it.key()).isEmpty() && it.value().size() == 1,
                             qPrintable(it.key()));
            // Each chosen subject gained exactly the periods asked for.
            QMap<QString, int> gained;
            for (const QString& r : counts())
                gained[r.section('|', 0, 0)] += r.section('|', 1).toInt();
            for (const QString& r : countsBefore)
                gained[r.section('|', 0, 0)] -= r.section('|', 1).toInt();
            for (int i = 0; i < chosen.size(); ++i)
                QCOMPARE(gained.take(QString::number(chosen[i])), periods[i]);
            for (const int rest : gained)
                QCOMPARE(rest, 0);
            // Cells that had subjects kept every link.
            for (const QString& cell : taken)
                QVERIFY(takenCells(school.target).contains(cell));
            // Where the empty cells fell, in the fill's order.
            const QStringList order =
                rows("SELECT (SELECT COUNT(*) FROM SubjectSlot, Slot WHERE SlotID = Slot.ID AND "
                     "Slot.DayTitleID = DayTitle.ID AND Slot.TimeTitleID = TimeTitle.ID) FROM "
                     "DayTitle, TimeTitle WHERE DayTitle.TimetableID = %1 AND "
                     "TimeTitle.TimetableID = %1 ORDER BY DayTitle.ID, TimeTitle.ID",
                     school.target);
            for (int i = 0; i < order.size(); ++i)
                if (order[i] == "0")
                    ++(i < order.size() / 2 ? emptyEarly : emptyLate);
            ModMain::DB().DBClose();
            QVERIFY2(dump(school.file) == dump(copy), qPrintable(QString("school %1").arg(seed)));
        }
        // The empty entries are shuffled among the subjects, not left at the end.
        QVERIFY2(emptyEarly * 3 > emptyLate && emptyLate * 3 > emptyEarly,
                 qPrintable(QString("%1 empty early, %2 late").arg(emptyEarly).arg(emptyLate)));
    }
    void cancelAndFailure() {
        GeneratedSchool school(3);
        ErrorRecorder errors;
        ModMain::DB().DBClose();
        const QString original = dump(school.file);
        QVERIFY(openQuick(school.env, school.file));
        const auto fill = [&](qint32 periods, qint16 method, ModMain::FillProgress& progress) {
            choose(school.target, {school.subjects[0]}, {periods}, school.tutors, school.rooms,
                   method);
            return ModMain::RunAutoFill(progress);
        };
        // How many pauses a whole run makes, counted on a copy.
        struct Count : ModMain::FillProgress {
            int n = 0;
            bool yield() override { return ++n < 0; }
        } count;
        const QString copy = school.env.path("count.VNPL");
        ModMain::DB().DBClose();
        QVERIFY(QFile::copy(school.file, copy));
        QVERIFY(openQuick(school.env, copy));
        QCOMPARE(fill(school.freeCells(), 1, count), ModMain::FillOutcome::Finished);
        QVERIFY(openQuick(school.env, school.file));
        // Cancelled at the first pause, and at the last cells after most rows
        // are written: nothing stays.
        for (const int at : {1, count.n - 2}) {
            CancelAt cancel(at);
            QCOMPARE(fill(school.freeCells(), 1, cancel), ModMain::FillOutcome::Cancelled);
            QVERIFY2(cancel.left == 0, "the run ended before it was cancelled");
        }
        // A method that is gone ends the run at once.
        ModMain::FillProgress quiet;
        QCOMPARE(fill(2, 99, quiet), ModMain::FillOutcome::Finished);
        // More periods than free cells: reported, nothing written.
        QCOMPARE(fill(school.freeCells() + 1, 1, quiet), ModMain::FillOutcome::Failed);
        QCOMPARE(errors.reports().size(), 1);
        QCOMPARE(errors.reports()[0].procedure + QString::number(errors.reports()[0].number),
                 "DoAutoFill9");
        // Another program holds the lock: refused in words before anything runs.
        MessageRecorder boxes;
        ModMain::DB().SetBusyTimeout(50);
        sqlite3* other = nullptr;
        QCOMPARE(sqlite3_open(school.file.toUtf8().constData(), &other), SQLITE_OK);
        QCOMPARE(sqlite3_exec(other, "BEGIN IMMEDIATE;", nullptr, nullptr, nullptr), SQLITE_OK);
        QCOMPARE(fill(2, 1, quiet), ModMain::FillOutcome::Refused);
        QCOMPARE(boxes.texts(), QStringList{ProjectBusyText(school.file)});
        sqlite3_exec(other, "ROLLBACK;", nullptr, nullptr, nullptr);
        sqlite3_close(other);
        ModMain::DB().DBClose();
        QCOMPARE(dump(school.file), original);
    }
    void entryTexts() {
        QCOMPARE(SubjectEntryText("Maths", 1), QString("Maths (fill 1 period)"));
        QCOMPARE(SubjectEntryText("Maths", 12), QString("Maths (fill 12 periods)"));
        QCOMPARE(SubjectEntryPeriods("Maths (fill 12 periods)"), 12);
        QCOMPARE(SubjectEntryPeriods("Art (fill 2) (fill 3 periods)"), 3);
        QCOMPARE(SubjectEntryPeriods("Maths"), 0);
    }
    void startChecks() {
        {
            WizardSchool school(false);
            school.messages.answer(MsgResult::Yes);
            QCOMPARE(school.run(), QString());
            QCOMPARE(school.messages.texts(),
                     QStringList{"You must create a class timetable before you can Auto Fill it. "
                                 "Would you like to create a class timetable now?"});
            QCOMPARE(school.loaded, QList<qint32>{-1});
        }
        WizardSchool school;
        value("DELETE FROM Subject WHERE id <> 1");
        QCOMPARE(school.run(), QString());
        QCOMPARE(school.messages.texts(),
                 QStringList{"No subjects exist to fill the timetable with. Please create some "
                             "subjects to continue."});
    }
    void subjectsScreen() {
        WizardSchool school;
        const QString before = dump(school.file);
        school.expect("Welcome", next);
        school.expect("Timetable", next);
        school.expect("Subjects", [&](QDialog* d) {
            auto* subjects = control<QComboBox>(d, "cboSubjects");
            auto* periods = control<QComboBox>(d, "cboPeriods");
            const auto add = [&](const char* subject, const char* n) {
                subjects->setCurrentText(subject);
                periods->setCurrentText(n);
                control<QPushButton>(d, "cmdAdd")->click();
            };
            auto* list = control<QListWidget>(d, "lstIncludeSubjects");
            const auto shown = [&] {
                return texts(list) << control<QLabel>(d, "lblPeriodsAvailable")->text()
                                   << control<QLabel>(d, "lblPeriodsFilled")->text();
            };
            QCOMPARE(shown(), (QStringList{"5", "1"}));
            add("Maths", "2");
            add("Maths", "1");
            QCOMPARE(shown(), (QStringList{"Maths (fill 3 periods)", "2", "4"}));
            add("Music", "3");
            add("Maths", "3");
            press("cmdRemove")(d);
            QCOMPARE(school.messages.texts(),
                     (QStringList{"Their is not enough room to add this Subject. To add this "
                                  "Subject, first remove some existing entries.",
                                  "Their is not enough space to add this Subject. To add this "
                                  "Subject, first remove some existing Subjects.",
                                  "Please select an item to remove."}));
            // Add All goes Art, Maths, Music, and stops at Music, keeping the rest.
            periods->setCurrentText("1");
            school.messages.clear();
            press("cmdAddAll")(d);
            QCOMPARE(shown(),
                     (QStringList{"Maths (fill 4 periods)", "Art (fill 1 period)", "0", "6"}));
            QCOMPARE(school.messages.texts().size(), 1);
            list->setCurrentRow(0);
            press("cmdRemove")(d);
            QCOMPARE(shown(), (QStringList{"Art (fill 1 period)", "4", "2"}));
            next(d);
        });
        school.expect("Tutors", back);
        school.expect("Subjects", [&](QDialog* d) {
            // The choices come back, counted out of the free periods.
            QCOMPARE(control<QLabel>(d, "lblPeriodsAvailable")->text(), QString("4"));
            auto* list = control<QListWidget>(d, "lstIncludeSubjects");
            QCOMPARE(list->count(), 1);
            while (list->count()) {
                list->setCurrentRow(0);
                press("cmdRemove")(d);
            }
            school.messages.clear();
            next(d);
            QCOMPARE(school.messages.texts(),
                     QStringList{"Please select some Subjects to fill the timetable with."});
            cancel(d);
        });
        QCOMPARE(school.run(), QString());
        ModMain::DB().DBClose();
        QCOMPARE(dump(school.file), before);
    }
    void backRestoresTutorsAndRooms() {
        WizardSchool school;
        // Later Maths gets Ann as its teacher; Music has none.
        const QString maths = value("SELECT id FROM Subject WHERE name = 'Maths'");
        const QString ann = value("SELECT id FROM Tutor WHERE name = 'Ann'");
        school.expect("Welcome", next);
        school.expect("Timetable", next);
        school.expect("Subjects", [](QDialog* d) {
            control<QComboBox>(d, "cboSubjects")->setCurrentText("Music");
            press("cmdAdd")(d);
            next(d);
        });
        school.expect("Tutors", [](QDialog* d) {
            QCOMPARE(selected(d, "lstTutors"), (QStringList{"Ann", "Bob"}));
            select(d, "lstTutors", {"Bob"});
            next(d);
        });
        school.expect("Rooms", [](QDialog* d) {
            QCOMPARE(selected(d, "lstRooms"), (QStringList{"Hall", "Lab"}));
            select(d, "lstRooms", {"Lab"});
            next(d);
        });
        school.expect("Method", back);
        school.expect("Rooms", [](QDialog* d) {
            QCOMPARE(selected(d, "lstRooms"), QStringList{"Lab"});
            back(d);
        });
        school.expect("Tutors", [](QDialog* d) {
            QCOMPARE(selected(d, "lstTutors"), QStringList{"Bob"});
            back(d);
        });
        school.expect("Subjects", [&](QDialog* d) {
            value("INSERT INTO SubjectsTaughtByTutor (TutorID, SubjectID) VALUES (%1, %2)", ann,
                  maths);
            control<QComboBox>(d, "cboSubjects")->setCurrentText("Maths");
            press("cmdAdd")(d);
            next(d);
        });
        school.expect("Tutors", [](QDialog* d) {
            // Music, first in the list, has no teachers; Maths has Ann, and the
            // teachers of a chosen subject outweigh the earlier choice of Bob.
            QCOMPARE(selected(d, "lstTutors"), QStringList{"Ann"});
            cancel(d);
        });
        QCOMPARE(school.run(), QString());
    }
    void cancelOnEveryScreenWritesNothing() {
        for (int last = 1; last <= 7; ++last) {
            WizardSchool school;
            const QString before = dump(school.file);
            const char* names[] = {"Welcome", "Timetable", "Subjects", "Tutors",
                                   "Rooms",   "Method",    "Complete"};
            for (int i = 0; i < last; ++i) {
                Step step = i + 1 == last ? cancel : next;
                if (last == 7) // the same labels as every other wizard's
                    step = [step](QDialog* d) {
                        verifyWizardButtons(d);
                        step(d);
                    };
                if (i == 2 && i + 1 != last)
                    step = [](QDialog* d) {
                        verifyWizardButtons(d);
                        press("cmdAddAll")(d);
                        next(d);
                    };
                school.expect(names[i], step);
            }
            QCOMPARE(school.run(), QString());
            QVERIFY(school.loaded.isEmpty());
            ModMain::DB().DBClose();
            QVERIFY2(dump(school.file) == before, names[last - 1]);
        }
    }
    void markedPeriodsAreNeitherFreeNorFilled() {
        // Of six periods, Art fills one and lunch takes one: four are free.
        WizardSchool school;
        value("UPDATE Slot SET SpecialID = 3 WHERE id = %1", slotAt(school.tt, 2, 1));
        school.expect("Welcome", next);
        school.expect("Timetable", next);
        school.expect("Subjects", [](QDialog* d) {
            QCOMPARE(control<QLabel>(d, "lblPeriodsAvailable")->text(), QString("4"));
            QCOMPARE(control<QLabel>(d, "lblPeriodsFilled")->text(), QString("1"));
            cancel(d);
        });
        QCOMPARE(school.run(), QString());
    }
    void wholeRun() {
        WizardSchool school;
        school.expect("Welcome", next);
        school.expect("Timetable", [](QDialog* d) {
            QCOMPARE(control<QComboBox>(d, "cboWho")->currentText(), QString("7A"));
            next(d);
        });
        school.expect("Subjects", [](QDialog* d) {
            control<QComboBox>(d, "cboPeriods")->setCurrentText("2");
            control<QComboBox>(d, "cboSubjects")->setCurrentText("Music");
            press("cmdAdd")(d);
            control<QComboBox>(d, "cboSubjects")->setCurrentText("Maths");
            press("cmdAdd")(d);
            next(d);
        });
        school.expect("Tutors", next);
        school.expect("Rooms", next);
        school.expect("Method", [](QDialog* d) {
            QCOMPARE(control<QComboBox>(d, "cboMethod")->count(), 4);
            QCOMPARE(control<QComboBox>(d, "cboMethod")->currentText(),
                     QString("Spread subjects across the week"));
            control<QComboBox>(d, "cboMethod")->setCurrentText("Fewest room changes");
            next(d);
        });
        school.expect("Complete", next);
        school.driver.expect("frmAutoFill_Progress", [](QDialog* d) {
            QTRY_COMPARE_WITH_TIMEOUT(control<QLabel>(d, "Label2")->text(),
                                      QString("Filled 4 of the 4 periods asked."), 20000);
            auto* button = control<QPushButton>(d, "cmdCancel");
            QCOMPARE(button->text(), QString("Done"));
            QCOMPARE(control<QProgressBar>(d, "ProgressBar1")->value(), 11);
            button->click();
        });
        QCOMPARE(school.run(), QString());
        QCOMPARE(school.loaded, QList<qint32>{school.tt});
        QCOMPARE(AutoFill::state().AutoFill_MethodID,
                 qint16(value("SELECT id FROM Method WHERE name = 'Fewest room changes'").toInt()));
        QCOMPARE(
            rows("SELECT Subject.name, COUNT(*) FROM SubjectSlot, Slot, Subject WHERE Slot.ID = "
                 "SlotID AND Subject.ID = SubjectID AND TimetableID = %1 GROUP BY 1 ORDER BY 1",
                 school.tt),
            (QStringList{"Art|1", "Maths|2", "Music|2"}));
        // Every filled cell got a tutor and a room; none is booked twice.
        QCOMPARE(
            value("SELECT (SELECT COUNT(*) FROM TutorSlot) || (SELECT COUNT(*) FROM RoomSlot)"),
            QString("44"));
        QVERIFY(school.errors.reports().isEmpty());
    }
    void fillMethods() {
        WizardSchool school;
        const QStringList names = {"Double lessons (subjects together)", "Fewest room changes",
                                   "Spread subjects across the week",
                                   "Spread tutors and rooms apart"};
        frmDefineFillMethods dialog;
        auto* list = control<QListWidget>(&dialog, "lstItems");
        QCOMPARE(texts(list), names);
        // Nothing chosen: Edit and Remove ask for a method.
        press("cmdEdit")(&dialog);
        press("cmdRemove")(&dialog);
        const QString none = "No method has been selected. Please select a method to continue.";
        QCOMPARE(school.messages.texts(), (QStringList{none, none}));
        // Add one with an apostrophe; it comes back selected, its values kept.
        school.driver.expect("frmAutoFillMethod", [](QDialog* d) {
            control<QLineEdit>(d, "txtName")->setText("Mrs O'Brien's week");
            control<QSlider>(d, "sSubject")->setValue(9);
            control<QSlider>(d, "sRoom")->setValue(0);
            press("cmdOK")(d);
        });
        QCOMPARE(school.driver.run([&] { press("cmdAdd")(&dialog); }), QString());
        QCOMPARE(list->currentItem()->text(), QString("Mrs O'Brien's week"));
        const qint32 id = list->currentItem()->data(Qt::UserRole).toInt();
        const auto method = ModMain::ReadMethod(id);
        QVERIFY(method);
        QCOMPARE(method->name + QString::asprintf(" %d %d %d %d", method->TutorSet, method->RoomSet,
                                                  method->SubjectSet, method->ClassSet),
                 QString("Mrs O'Brien's week 5 0 9 5"));
        // Cancel on the details writes nothing; No keeps the method; Yes removes it.
        const QString before = dump(school.file);
        school.driver.expect("frmAutoFillMethod", [](QDialog* d) {
            control<QLineEdit>(d, "txtName")->setText("changed");
            press("cmdCancel")(d);
        });
        QCOMPARE(school.driver.run([&] { press("cmdEdit")(&dialog); }), QString());
        school.messages.answer(MsgResult::No);
        press("cmdRemove")(&dialog);
        QCOMPARE(dump(school.file), before);
        school.messages.answer(MsgResult::Yes);
        press("cmdRemove")(&dialog);
        QCOMPARE(texts(list), names);
        QVERIFY(!ModMain::ReadMethod(id));
    }
};

QTEST_MAIN(TestAutoFill)
#include "test_autofill.moc"
