// Manual scheduling without a window: availability and the lists' statuses,
// ticking and unticking with the mirroring it brings, and the fast paths
// against the procedures they stand in for.

#include "common/Common.h"
#include "store/Records.h"
#include "store/Transaction.h"
#include "support/Fixtures.h"

#include <QtTest>
#include <QtWidgets>

using namespace Fixtures;
using ModMain::ResourceKind;

namespace {
// Two days of three periods: 9:00, 10:00 and 11:00.
struct Project : OpenProject {
    Project() : OpenProject({"Monday", "Tuesday"}, {"9:00", "10:00", "11:00", "12:00"}) {}
};

qint32 createResource(ResourceKind kind, const QString& name) {
    switch (kind) {
    case ResourceKind::Tutor:
        return ModMain::CreateTutorRecord(name, name, QString(), QString());
    case ResourceKind::Subject:
        return ModMain::CreateSubjectRecord(name, 1);
    case ResourceKind::Room:
        return ModMain::CreateRoomRecord(name, 20);
    case ResourceKind::Class:
        return insertClass(name);
    }
    return 0;
}

qint32 timetable(ResourceKind kind, qint32 owner) {
    return ModMain::CreateTimetable(ModMain::KindWord(kind), owner, 1);
}

// A list's ids, as the list shows them.
QVector<qint32> listIds(ResourceKind kind) {
    QVector<qint32> ids;
    for (const QString& id : rows("SELECT id FROM %1 WHERE id<>1 ORDER BY name", KindWord(kind)))
        ids << id.toInt();
    return ids;
}

// Every slot's links by its timetable and cell ("Class X 1/2"), as sorted
// "Kind name" texts: what a user would find in the grids.
QMap<QString, QString> cells() {
    QMap<QString, QString> out;
    for (const QString& row :
         rows("SELECT Slot.id, Slot.TimetableID, DayTitle.Pos || '/' || TimeTitle.Pos FROM Slot, "
              "DayTitle, TimeTitle WHERE DayTitle.id = Slot.DayTitleID AND TimeTitle.id = "
              "Slot.TimeTitleID ORDER BY Slot.id")) {
        const QStringList f = row.split(QLatin1Char('|'));
        QStringList links;
        for (const char* kind : {"Tutor", "Subject", "Room", "Class"})
            for (const QString& name :
                 rows("SELECT %1.name FROM %1Slot, %1 WHERE %1.id = %1ID AND SlotID = %2", kind,
                      f[0]))
                links << QLatin1String(kind) + QLatin1Char(' ') + name;
        links.sort();
        const QString key = ModMain::GetTimetableName(f[1].toInt()) + QLatin1Char(' ') + f[2];
        out.insert(out.contains(key) ? key + QStringLiteral(" again") : key,
                   links.join(QStringLiteral(", ")));
    }
    return out;
}

// Link rows that point at no slot: never written by mirroring.
int strayLinks() {
    return value(
               "SELECT (SELECT COUNT(*) FROM TutorSlot WHERE SlotID NOT IN (SELECT id FROM Slot)) "
               "+ (SELECT COUNT(*) FROM RoomSlot WHERE SlotID NOT IN (SELECT id FROM Slot)) + "
               "(SELECT COUNT(*) FROM ClassSlot WHERE SlotID NOT IN (SELECT id FROM Slot)) + "
               "(SELECT COUNT(*) FROM SubjectSlot WHERE SlotID NOT IN (SELECT id FROM Slot))")
        .toInt();
}

// One timetable of each kind at 1/1, the tutor T and the class Y in several,
// T once more at 2/2, and resources without a timetable (W, R2, Z, M2).
struct MirrorSchool {
    QHash<QString, qint32> id; // resource by name
    QHash<QString, qint32> tt; // timetable by its owner's name
    MirrorSchool() {
        const auto add = [&](ResourceKind kind, const QString& name, bool own) {
            id[name] = createResource(kind, name);
            if (own)
                tt[name] = timetable(kind, id[name]);
        };
        for (const char* t : {"T", "U", "V"})
            add(ResourceKind::Tutor, t, true);
        add(ResourceKind::Tutor, "W", false);
        add(ResourceKind::Room, "R", true);
        add(ResourceKind::Room, "R2", false);
        for (const char* c : {"X", "Y", "K", "B", "N"})
            add(ResourceKind::Class, c, true);
        add(ResourceKind::Class, "Z", false);
        add(ResourceKind::Subject, "M", false);
        add(ResourceKind::Subject, "M2", false);
        fill("T", 1, 1, {"Tutor T", "Room R", "Class Y", "Subject M"});
        fill("X", 1, 1, {"Class X", "Tutor U", "Class Y", "Room R", "Subject M"});
        fill("Y", 1, 1, {"Class X", "Class Y", "Tutor T", "Subject M2"});
        fill("R", 1, 1, {"Room R", "Tutor T", "Class Y", "Subject M"});
        fill("N", 1, 1, {"Class N", "Tutor V", "Subject M"});
        fill("B", 2, 2, {"Class B", "Tutor T"});
    }
    void fill(const QString& owner, int day, int period, const QStringList& links) {
        const qint32 slot = slotAt(tt[owner], day, period);
        for (const QString& l : links)
            link(l.section(QLatin1Char(' '), 0, 0), slot, id[l.section(QLatin1Char(' '), 1)]);
    }
};

} // namespace

class TestScheduling : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void availability_data() {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("role");
        QTest::addColumn<bool>("ignoreCell"); // the cell's slot as IgnoreSlotID, else -1
        QTest::addColumn<QString>("busy");    // the busy slots' timetables, in order
        QTest::addColumn<QString>("status");
        QTest::addColumn<bool>("checked");
        for (const ResourceKind kind :
             {ResourceKind::Tutor, ResourceKind::Room, ResourceKind::Class}) {
            const auto row = [&](const char* role, bool ignore, const char* busy,
                                 const char* status, bool checked) {
                QTest::addRow("%s %s%s", qPrintable(ModMain::KindWord(kind)), role,
                              ignore ? "" : ", cell counted")
                    << int(kind) << role << ignore << busy << status << checked;
            };
            row("free", true, "", "Avail", false);
            row("other day", true, "", "Avail", false);
            row("other period", true, "", "Avail", false);
            row("busy", true, "B", "Busy", false);
            row("clash", true, "B Hall", "Clash", false);
            row("linked twice", true, "B B", "Clash", false);
            row("linked", true, "", "-", true);
            row("linked", false, "A", "-", true);
            row("linked busy", true, "B", "-", true);
            row("linked busy", false, "A B", "Clash", true);
            row("linked clash", true, "B Hall", "Clash", true);
        }
        // Subjects have no availability: the status they had stays.
        const int subject = int(ResourceKind::Subject);
        QTest::newRow("Subject linked clash") << subject << "linked clash" << true << ""
                                              << "Avail" << true;
        QTest::newRow("Subject busy") << subject << "busy" << true << ""
                                      << "Avail" << false;
    }
    void availability() {
        QFETCH(int, kind);
        QFETCH(QString, role);
        QFETCH(bool, ignoreCell);
        QFETCH(QString, busy);
        QFETCH(QString, status);
        QFETCH(bool, checked);
        const auto k = ResourceKind(kind);
        Project p;
        // The cell is class A's Monday 10:00; B and the hall (at lunch) are
        // other timetables at the same time.
        const qint32 a = timetable(ResourceKind::Class, createResource(ResourceKind::Class, "A"));
        const qint32 b = timetable(ResourceKind::Class, createResource(ResourceKind::Class, "B"));
        const qint32 hall =
            timetable(ResourceKind::Room, createResource(ResourceKind::Room, "Hall"));
        const QHash<QString, qint32> slot = {{"A", slotAt(a, 1, 2)},
                                             {"B", slotAt(b, 1, 2)},
                                             {"Hall", slotAt(hall, 1, 2)},
                                             {"B other day", slotAt(b, 2, 2)},
                                             {"B other period", slotAt(b, 1, 1)}};
        value("UPDATE Slot SET SpecialID = 3 WHERE id = %1", slot["Hall"]);
        const QHash<QString, QStringList> links = {{"free", {}},
                                                   {"other day", {"B other day"}},
                                                   {"other period", {"B other period"}},
                                                   {"busy", {"B"}},
                                                   {"clash", {"B", "Hall"}},
                                                   {"linked twice", {"B", "B"}},
                                                   {"linked", {"A"}},
                                                   {"linked busy", {"A", "B"}},
                                                   {"linked clash", {"A", "B", "Hall"}}};
        qint32 id = 0;
        for (auto it = links.begin(); it != links.end(); ++it) {
            const qint32 r = createResource(k, it.key());
            for (const QString& s : it.value())
                link(k, slot[s], r);
            if (it.key() == role)
                id = r;
        }
        for (const char* s : {"A", "B", "Hall"}) // the placeholder counts for nobody
            link(k, slot[s], 1);
        const ModMain::Cell cell = cellAt(a, 1, 2);
        QCOMPARE(cell.SlotID, slot["A"]);
        const qint32 ignore = ignoreCell ? cell.SlotID : -1;
        QStringList busyNames, timetableNames;
        if (k != ResourceKind::Subject) {
            QVector<qint32> busySlots{999};
            qint32 count = -1;
            const auto test = k == ResourceKind::Tutor  ? ModMain::GetTutorAvailability
                              : k == ResourceKind::Room ? ModMain::GetRoomAvailability
                                                        : ModMain::GetClassAvailability;
            const bool free =
                test(cell.ProjectTimeTitleID, cell.ProjectDayTitleID, id, busySlots, count, ignore);
            for (const qint32 s : busySlots) {
                busyNames << slot.key(s);
                timetableNames << (s == slot["Hall"] ? "Room Hall" : "Class " + slot.key(s));
            }
            QCOMPARE(free, busy.isEmpty());
            QCOMPARE(count, busySlots.size());
        }
        QCOMPARE(busyNames.join(' '), busy);
        QCOMPARE(ModMain::BusyTimetableNames(k, id, cell.ProjectTimeTitleID, cell.ProjectDayTitleID,
                                             ignore),
                 timetableNames);
        const QVector<qint32> ids = listIds(k);
        const QStringList before(ids.size(), QStringLiteral("Avail"));
        const auto perRow = ModMain::ListSelectionPerRow(
            k, ids, before, cell.SlotID, cell.ProjectTimeTitleID, cell.ProjectDayTitleID, ignore);
        QVERIFY(ModMain::ListSelection(k, ids, before, cell.SlotID, cell.ProjectTimeTitleID,
                                       cell.ProjectDayTitleID, ignore) == perRow);
        QCOMPARE(perRow.value(ids.indexOf(id)).status, status);
        QCOMPARE(perRow.value(ids.indexOf(id)).checked, checked);
        QCOMPARE(ModMain::ProjectDayTitleOf(0), 0);
    }
    void fastListSelectionEqualsPerRow() {
        // A generated school with double bookings, duplicate links, links to
        // deleted slots and resources and to the placeholder, special cells, two
        // slots in one cell and a timetable with a second heading for one day.
        Project p;
        QRandomGenerator rng(4711);
        const ResourceKind kinds[] = {ResourceKind::Tutor, ResourceKind::Subject,
                                      ResourceKind::Room, ResourceKind::Class};
        QHash<int, QVector<qint32>> ids;
        const QStringList names = {"b", "B", "a'b", "Émile", "10", "9", "Zed", "alpha"};
        for (const ResourceKind k : kinds)
            for (const QString& n : names)
                ids[int(k)] << createResource(k, n);
        QVector<qint32> timetables;
        for (int i = 0; i < 3; ++i)
            for (const ResourceKind k :
                 {ResourceKind::Class, ResourceKind::Tutor, ResourceKind::Room})
                timetables << timetable(k, ids[int(k)][i]);
        for (const qint32 tt : timetables)
            for (int day = 1; day <= 2; ++day)
                for (int period = 1; period <= 3; ++period) {
                    if (rng.bounded(4) == 0)
                        continue;
                    const qint32 slot = slotAt(tt, day, period);
                    for (const ResourceKind k : kinds)
                        for (int n = rng.bounded(3); n > 0; --n)
                            link(k, slot, rng.bounded(8) == 0 ? 1 : ids[int(k)][rng.bounded(8)]);
                    if (rng.bounded(5) == 0)
                        value("UPDATE Slot SET SpecialID = %1 WHERE id = %2", 2 + rng.bounded(3),
                              slot);
                    if (rng.bounded(6) == 0) {
                        value("INSERT INTO Slot (TimetableID, SpecialID, DayTitleID, TimeTitleID) "
                              "SELECT TimetableID, 1, DayTitleID, TimeTitleID FROM Slot WHERE id = "
                              "%1",
                              slot);
                        link(ResourceKind::Tutor, ModMain::DB().GetInsertID(),
                             ids[int(ResourceKind::Tutor)][rng.bounded(8)]);
                    }
                }
        value("INSERT INTO DayTitle (ProjectDayTitleID, TimetableID, DOW, Height, Width, "
              "SpecialID, Pos) SELECT ProjectDayTitleID, TimetableID, DOW, 1200, 600, 1, 9 FROM "
              "DayTitle WHERE TimetableID = %1 AND Pos = 1",
              timetables[0]);
        value("DELETE FROM Slot WHERE id IN (SELECT id FROM Slot ORDER BY id DESC LIMIT 3)");
        for (const ResourceKind k : kinds)
            value("DELETE FROM %1 WHERE id = %2", ModMain::KindWord(k), ids[int(k)][7]);
        QSet<QString> seen;
        for (const ResourceKind k : kinds) {
            const QVector<qint32> list = listIds(k);
            QStringList before;
            for (int i = 0; i < list.size(); ++i)
                before << QStringList{"Avail", "x", ""}[rng.bounded(3)];
            for (int day = 1; day <= 2; ++day)
                for (int period = 1; period <= 3; ++period) {
                    const qint32 ptt = projectID("TimeTitle", period),
                                 pdt = projectID("DayTitle", day);
                    QList<qint32> slots = {0};
                    for (const QString& s :
                         rows("SELECT Slot.id FROM Slot, DayTitle, TimeTitle WHERE DayTitle.id = "
                              "Slot.DayTitleID AND TimeTitle.id = Slot.TimeTitleID AND "
                              "ProjectDayTitleID = %1 AND ProjectTimeTitleID = %2",
                              pdt, ptt))
                        slots << s.toInt();
                    for (const qint32 slot : slots)
                        for (const qint32 ignore : {-1, slot}) {
                            const auto fast =
                                ModMain::ListSelection(k, list, before, slot, ptt, pdt, ignore);
                            QVERIFY2(
                                fast == ModMain::ListSelectionPerRow(k, list, before, slot, ptt,
                                                                     pdt, ignore),
                                qPrintable(QString::asprintf("kind %d %d/%d slot %d ignoring %d",
                                                             int(k), day, period, slot, ignore)));
                            for (const ModMain::RowState& r : fast)
                                seen << r.status + (r.checked ? "+" : "");
                        }
                }
        }
        // The school gave every kind of row, ticked subjects keeping their text.
        for (const char* s : {"Avail", "Busy", "Clash", "Clash+", "-+"})
            QVERIFY2(seen.contains(s), s);
        QVERIFY(seen.contains("Avail+") || seen.contains("x+") || seen.contains("+"));
    }
    void tickAndUntick_data() {
        // "tick|untick Kind name at owner day/period": the owner's timetable shown.
        QTest::addColumn<QString>("cellAfter");
        QTest::addColumn<QString>("elsewhere"); // other cells that change: "cell=links;..."
        const auto row = [](const char* what, const char* cellAfter, const char* elsewhere = "") {
            QTest::newRow(what) << QString(cellAfter) << QString(elsewhere);
        };
        // Resources without a timetable of their own are linked and nothing more;
        // a subject never mirrors.
        row("tick Tutor W at X 1/1", "Class X, Class Y, Room R, Subject M, Tutor U, Tutor W");
        row("tick Tutor W at X 2/3", "Tutor W"); // on a new slot
        row("tick Room R2 at T 1/1", "Class Y, Room R, Room R2, Subject M, Tutor T");
        row("tick Subject M2 at T 1/1", "Class Y, Room R, Subject M, Subject M2, Tutor T");
        row("tick Class Z at N 1/1", "Class N, Class Z, Subject M, Tutor V"); // no tutor shared
        // Unticking removes the mirror from the resource's own timetable, reading
        // each kind's links from the slot reached so far.
        row("untick Class Y at T 1/1", "Room R, Subject M, Tutor T",
            "Class Y 1/1=Class X, Class Y");
        // On a class timetable the target's class goes.
        row("untick Class Y at X 1/1", "Class X, Room R, Subject M, Tutor U",
            "Class Y 1/1=Class X, Tutor T");
        row("untick Room R at T 1/1", "Class Y, Subject M, Tutor T", "Room R 1/1=Room R");
        // An empty slot stays in U's timetable.
        row("untick Tutor U at X 1/1", "Class X, Class Y, Room R, Subject M", "Tutor U 1/1=");
        row("untick Subject M at T 1/1", "Class Y, Room R, Tutor T");
        row("untick Tutor U at X 2/3", "(none)"); // a cell without a slot
    }
    void tickAndUntick() {
        QFETCH(QString, cellAfter);
        QFETCH(QString, elsewhere);
        const QStringList what =
            QString::fromLatin1(QTest::currentDataTag()).split(QLatin1Char(' '));
        const bool tick = what[0] == QLatin1String("tick");
        const QString& owner = what[4];
        const int day = what[5].section(QLatin1Char('/'), 0, 0).toInt();
        const int period = what[5].section(QLatin1Char('/'), 1).toInt();
        ResourceKind k = ResourceKind::Tutor;
        for (const ResourceKind kind :
             {ResourceKind::Subject, ResourceKind::Room, ResourceKind::Class})
            if (ModMain::KindWord(kind) == what[1])
                k = kind;
        Project p;
        MirrorSchool school;
        const ModMain::Cell cell = cellAt(school.tt[owner], day, period);
        const QString key = ModMain::GetTimetableName(cell.TimetableID) +
                            QStringLiteral(" %1/%2").arg(day).arg(period);
        const QMap<QString, QString> before = cells();
        const QString beforeDump = dump(p.file);
        const qint32 resource = school.id[what[2]];
        if (tick) {
            const qint32 slot = ModMain::TickResource(k, resource, cell);
            QCOMPARE(slot, cellAt(cell.TimetableID, day, period).SlotID);
        } else {
            ModMain::UntickResource(k, resource, cell);
        }
        QMap<QString, QString> expected = before;
        if (cellAfter != QLatin1String("(none)"))
            expected[key] = cellAfter;
        for (const QString& change : elsewhere.split(';', Qt::SkipEmptyParts))
            expected[change.section('=', 0, 0)] = change.section('=', 1);
        QCOMPARE(cells(), expected);
        QCOMPARE(strayLinks(), 0);
        if (!tick || k == ResourceKind::Class)
            return;
        // Unticking again leaves the file as it was, but for a slot the tick made.
        ModMain::UntickResource(k, resource, cellAt(cell.TimetableID, day, period));
        if (cell.SlotID != 0)
            QCOMPARE(dump(p.file), beforeDump);
        expected = before;
        if (cell.SlotID == 0)
            expected[key] = QString();
        QCOMPARE(cells(), expected);
    }
    void fastPropagationWritesTheSameRows_data() {
        QTest::addColumn<int>("seed");
        QTest::addColumn<int>("tutorCount");
        QTest::newRow("few tutors") << 1966 << 4;
        QTest::newRow("some tutors") << 7 << 7;
        QTest::newRow("many tutors") << 2024 << 10;
    }
    void fastPropagationWritesTheSameRows() {
        QFETCH(int, seed);
        QFETCH(int, tutorCount);
        // Tutors shared across timetables and periods, duplicate and dangling
        // links (some at the ids new slots will take), deleted tutors, a link
        // with no tutor, special cells, two slots in a cell and second headings.
        // Ticks in a row, so later ones meet what earlier ones wrote.
        Project p;
        QRandomGenerator rng(seed);
        QVector<qint32> tutors, rooms, classes, subjects, timetables;
        for (int i = 0; i < tutorCount; ++i)
            tutors << createResource(ResourceKind::Tutor, QStringLiteral("T%1").arg(i));
        for (int i = 0; i < 6; ++i) {
            rooms << createResource(ResourceKind::Room, QStringLiteral("R%1").arg(i));
            classes << createResource(ResourceKind::Class, QStringLiteral("C%1").arg(i));
            subjects << createResource(ResourceKind::Subject, QStringLiteral("S%1").arg(i));
        }
        for (int i = 0; i < 4; ++i)
            timetables << timetable(ResourceKind::Class, classes[i])
                       << timetable(ResourceKind::Tutor, tutors[i % tutorCount]);
        timetables << timetable(ResourceKind::Room, rooms[0])
                   << timetable(ResourceKind::Room, rooms[1]);
        const auto pick = [&](const QVector<qint32>& v) { return v[rng.bounded(int(v.size()))]; };
        for (const qint32 tt : timetables)
            for (int day = 1; day <= 2; ++day)
                for (int period = 1; period <= 3; ++period) {
                    if (rng.bounded(3) == 0)
                        continue;
                    const qint32 slot = slotAt(tt, day, period);
                    for (int n = rng.bounded(3); n > 0; --n)
                        link(ResourceKind::Tutor, slot, pick(tutors));
                    link(ResourceKind::Room, slot, pick(rooms));
                    link(ResourceKind::Class, slot, pick(classes));
                    link(ResourceKind::Subject, slot, pick(subjects));
                    if (rng.bounded(6) == 0)
                        value("UPDATE Slot SET SpecialID = 3 WHERE id = %1", slot);
                    if (rng.bounded(8) == 0)
                        value("INSERT INTO Slot (TimetableID, SpecialID, DayTitleID, TimeTitleID) "
                              "SELECT TimetableID, 1, DayTitleID, TimeTitleID FROM Slot WHERE id = "
                              "%1",
                              slot);
                }
        // Second headings put a timetable's slots twice among the propagation's
        // rows, apart, so a copy made early is met again later.
        for (int i = 0; i < 3; ++i)
            value(
                "INSERT INTO TimeTitle (ProjectTimeTitleID, TimetableID, StartTime, Duration, "
                "Width, Height, SpecialID, Pos) SELECT ProjectTimeTitleID, TimetableID, StartTime, "
                "Duration, 1600, 1200, 1, 9 FROM TimeTitle WHERE TimetableID = %1 AND Pos <= 3",
                timetables[2 * i]);
        // The ticks: a class linked to cells of every kind of timetable.
        struct Tick {
            qint32 timetable, slot, ptt, pdt;
        };
        QVector<Tick> ticks;
        for (int i = 0; i < 40; ++i) {
            const qint32 tt = timetables[i % timetables.size()];
            const int day = 1 + rng.bounded(2), period = 1 + rng.bounded(3);
            const qint32 ptt = projectID("TimeTitle", period), pdt = projectID("DayTitle", day);
            ticks.append({tt, ModMain::DoCreateGetSlot(tt, ptt, pdt), ptt, pdt});
            link(ResourceKind::Class, ticks.last().slot, pick(classes));
        }
        const qint32 nextSlot = value("SELECT MAX(id) + 1 FROM Slot").toInt();
        for (int i = 0; i < 4; ++i)
            link(ResourceKind::Tutor, nextSlot + i, tutors[i]);
        value("DELETE FROM Tutor WHERE id = %1", tutors.last());
        value("INSERT INTO TutorSlot (SlotID, TutorID) SELECT MIN(id), NULL FROM Slot");
        ModMain::DB().DBClose();
        QHash<QString, QString> files = {{"per row", p.env.path("perrow.VNPL")},
                                         {"fast", p.env.path("fast.VNPL")}};
        QHash<QString, QList<qint32>> moved;
        for (auto it = files.begin(); it != files.end(); ++it) {
            QVERIFY(QFile::copy(p.file, it.value()));
            QVERIFY(openQuick(p.env, it.value()));
            for (const Tick& t : ticks) {
                Transaction tx;
                qint32 slot = t.slot;
                if (it.key() == "fast")
                    ModMain::PropagateClassTick(slot, t.timetable, t.ptt, t.pdt);
                else
                    ModMain::PropagateClassTickPerRow(slot, t.timetable, t.ptt, t.pdt);
                moved[it.key()] << slot;
            }
            ModMain::DB().DBClose();
        }
        QVERIFY(dump(files["per row"]) != dump(p.file));
        QCOMPARE(moved["fast"], moved["per row"]);
        QCOMPARE(dump(files["fast"]), dump(files["per row"]));
    }
};

QTEST_MAIN(TestScheduling)
#include "test_scheduling.moc"
