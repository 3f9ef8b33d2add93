// The database layer, the blank project, time texts and the record helpers.

#include "store/ModMain.h"
#include "store/Project.h"
#include "store/Records.h"
#include "store/TimeText.h"
#include "store/Transaction.h"
#include "support/TestSupport.h"
#include "timetable/TimetableRecords.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QtTest>
#include <sqlite3.h>

using namespace TestSupport;

class TestStore : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void recordsets();
    void failingStatement();
    void open_data();
    void open();
    void blankProject();
    void indexesServeJoins_data();
    void indexesServeJoins();
    void timeText_data();
    void timeText();
    void resourceAndSlotRecords();
    void slotLinks_data();
    void slotLinks();
    void actionSurvivesKill_data();
    void actionSurvivesKill();
    void transactionNesting();
    void lockedProjectRefused();
    void oneBoxPerAction();
};

namespace {
QString integrity(const QString& file) {
    sqlite3* db = nullptr;
    QString result;
    sqlite3_open_v2(file.toUtf8().constData(), &db, SQLITE_OPEN_READWRITE, nullptr);
    sqlite3_stmt* st = nullptr;
    if (sqlite3_prepare_v2(db, "PRAGMA integrity_check;", -1, &st, nullptr) == SQLITE_OK &&
        sqlite3_step(st) == SQLITE_ROW)
        result = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, 0)));
    sqlite3_finalize(st);
    sqlite3_close(db);
    return result;
}

// Runs the crash tool; returns its output, or "killed" when it died by a signal.
QString crashTool(const QStringList& args) {
    QProcess p;
    p.start(QStringLiteral(VANTOR_TEST_BIN_DIR "/crash_action"), args);
    if (!p.waitForFinished(60000))
        return QStringLiteral("hung");
    if (p.exitStatus() == QProcess::CrashExit)
        return QStringLiteral("killed");
    if (p.exitCode() != 0)
        return QStringLiteral("failed: ") + QString::fromLocal8Bit(p.readAllStandardError());
    return QString::fromLocal8Bit(p.readAllStandardOutput()).trimmed();
}
} // namespace

void TestStore::actionSurvivesKill_data() {
    QTest::addColumn<QString>("action");
    QTest::addColumn<QStringList>("setup"); // what the project holds before
    const QStringList school = {"prepare"};
    QTest::newRow("project wizard's days and periods") << "calendar" << QStringList();
    QTest::newRow("creating a tutor timetable") << "create-tutor" << school;
    QTest::newRow("deleting a timetable") << "delete" << school;
    QTest::newRow("format dialog OK") << "format" << school;
    QTest::newRow("saving grid sizes") << "sizes" << school;
    QTest::newRow("same size columns") << "same-size" << school;
    QTest::newRow("custom days") << "day-template" << school;
    QTest::newRow("custom hours") << "hour-template" << school;
    QTest::newRow("one Auto Fill run") << "autofill" << school;
    QTest::newRow("ticking a class, with mirroring")
        << "tick-class" << QStringList{"prepare", "prepare-tick"};
}

void TestStore::actionSurvivesKill() {
    QFETCH(QString, action);
    QFETCH(QStringList, setup);
    TestEnv env;
    const QString base = env.newProject(QStringLiteral("base.VNPL"));
    for (const QString& step : setup)
        QVERIFY(crashTool({step, base}).toInt() > 0);
    const QString before = dump(base);

    const QString done = env.path(QStringLiteral("done.VNPL"));
    QVERIFY(QFile::copy(base, done));
    const int statements = crashTool({action, done}).toInt();
    QVERIFY2(statements > 2, "the action ran too few statements to be cut");
    const QString after = dump(done);
    QVERIFY(after != before);

    // Cut after the lock, early, half-way, late, and after the commit.
    const QList<int> cuts = {1, 2, statements / 3, statements / 2, statements - 1, statements};
    for (int n : QSet<int>(cuts.begin(), cuts.end())) {
        const QString copy = env.path(QStringLiteral("cut%1.VNPL").arg(n));
        QVERIFY(QFile::copy(base, copy));
        QCOMPARE(crashTool({action, copy, QString::number(n)}), QStringLiteral("killed"));
        QCOMPARE(integrity(copy), QStringLiteral("ok"));
        const QString found = dump(copy);
        QVERIFY2(
            found == before || found == after,
            qPrintable(
                QStringLiteral("half an action after statement %1 of %2").arg(n).arg(statements)));
        // Only a kill after the commit may keep the action.
        QCOMPARE(found == after, n == statements);
    }
}

void TestStore::transactionNesting() {
    TestEnv env;
    ErrorRecorder errors;
    const QString file = env.newProject();
    QVERIFY(env.open(file));
    auto& db = ModMain::DB();
    const QString before = dump(file);
    {
        Transaction outer;
        QVERIFY(outer.ok() && db.InAction());
        {
            // An action inside an action, with the plain statements an editor sends.
            Transaction inner;
            db.Execute(QStringLiteral("BEGIN;"));
            ModMain::CreateRoomRecord(QStringLiteral("Hall"), 200);
            db.Execute(QStringLiteral("COMMIT;"));
        }
        QVERIFY(db.InAction());
        // A failing statement keeps what ran before it: the action commits it.
        ModMain::CreateRoomRecord(QStringLiteral("Lab"), 20);
        db.Execute(QStringLiteral("INSERT INTO NoSuchTable VALUES (1)"));
        // Nothing is in the file until the action ends.
        QCOMPARE(dump(file), before);
    }
    QVERIFY(!db.InAction());
    QCOMPARE(errors.reports().size(), 1);
    QCOMPARE(db.Execute(QStringLiteral("SELECT group_concat(name) AS n FROM Room WHERE id<>1"))
                 .Field("n")
                 .toString(),
             QStringLiteral("Hall,Lab"));
    // Outside an action the plain statements are a transaction of their own.
    db.Execute(QStringLiteral("BEGIN;"));
    ModMain::CreateRoomRecord(QStringLiteral("Gym"), 60);
    db.Execute(QStringLiteral("COMMIT;"));
    QVERIFY(dump(file).contains(QStringLiteral("Gym")));
    QCOMPARE(errors.reports().size(), 1);
}

void TestStore::lockedProjectRefused() {
    TestEnv env;
    MessageRecorder boxes;
    ErrorRecorder errors;
    const QString file = env.newProject();
    QCOMPARE(crashTool({QStringLiteral("prepare"), file}).toInt() > 0, true);
    QVERIFY(env.open(file));
    ModMain::DB().SetBusyTimeout(50);
    const qint32 first = ModMain::FirstTimetableID();

    // Another program holds the write lock past the wait.
    sqlite3* other = nullptr;
    QCOMPARE(sqlite3_open(file.toUtf8().constData(), &other), SQLITE_OK);
    QCOMPARE(sqlite3_exec(other, "BEGIN IMMEDIATE;", nullptr, nullptr, nullptr), SQLITE_OK);
    const QByteArray old = readFile(file);
    Guard("test", "delete", [&] { ModMain::DeleteTimetable(first); });
    Guard("test", "create",
          [&] { QCOMPARE(ModMain::CreateTimetable(QStringLiteral("Room"), 2, 1), 0); });
    QCOMPARE(boxes.texts(), QStringList(2, ProjectBusyText(file)));
    QVERIFY(errors.reports().isEmpty());
    QCOMPARE(readFile(file), old);
    sqlite3_exec(other, "ROLLBACK;", nullptr, nullptr, nullptr);
    sqlite3_close(other);

    // Free again, the same action goes through.
    Guard("test", "delete", [&] { ModMain::DeleteTimetable(first); });
    QVERIFY(ModMain::FirstTimetableID() != first);
    QCOMPARE(boxes.messages().size(), 2);
}

void TestStore::oneBoxPerAction() {
    TestEnv env;
    ErrorRecorder errors;
    QVERIFY(env.open(env.newProject()));
    auto& db = ModMain::DB();
    const auto failTwice = [&] {
        db.Execute(QStringLiteral("SELECT nothing FROM NoSuchTable"));
        // After the first error the action runs nothing more.
        db.Execute(QStringLiteral("INSERT INTO Room (name) VALUES ('After')"));
        db.Execute(QStringLiteral("SELECT more FROM NoSuchTable"));
    };
    Guard("test", "action", failTwice);
    QCOMPARE(errors.reports().size(), 1);
    QCOMPARE(errors.reports().first().procedure, QStringLiteral("Execute"));
    QCOMPARE(db.Execute(QStringLiteral("SELECT COUNT(*) AS n FROM Room WHERE name = 'After'"))
                 .Field("n")
                 .toInt(),
             0);
    // The next action starts afresh.
    Guard("test", "action", failTwice);
    QCOMPARE(errors.reports().size(), 2);
}

void TestStore::recordsets() {
    TestEnv env;
    ErrorRecorder errors;
    QVERIFY(env.open(env.newProject()));
    auto& db = ModMain::DB();

    auto empty = db.Execute(QStringLiteral("SELECT id, name FROM Tutor WHERE id<>1;"));
    QCOMPARE(empty.RecordCount(), 0);
    QCOMPARE(empty.RecordIndex(), 1);
    QVERIFY(empty.eof());
    empty.MoveFirst();
    QVERIFY(empty.eof());

    // Several statements run in one call; the insert id is the last row's, after placeholder 1.
    db.Execute(QStringLiteral("BEGIN; INSERT INTO Room (name, Capacity) VALUES ('Lab', 30); "
                              "INSERT INTO Room (name, Capacity) VALUES ('Hall', NULL); COMMIT;"));
    QCOMPARE(db.GetInsertID(), 3);
    auto rs = db.Execute(QStringLiteral(
        "SELECT id, name AS RoomName, Capacity, '' AS e FROM Room WHERE id<>1 ORDER BY id;"));
    QCOMPARE(rs.RecordCount(), 2);
    QCOMPARE(rs.Field("RoomName").toString(), QStringLiteral("Lab"));
    QCOMPARE(rs.Field(qint16(2)).toString(), QStringLiteral("30"));
    QVERIFY(rs.Field("e").isText());
    QVERIFY(rs.Field(qint32(1)).isEmpty()); // only 16-bit numbers are positions
    QVERIFY(rs.Field(1.0).isEmpty());
    rs.MoveNext();
    QVERIFY(rs.Field("Capacity").isNull());
    QCOMPARE(Common::NullToString(rs.Field("Capacity")), QString());
    rs.MoveNext();
    rs.MoveNext();
    QVERIFY(rs.eof());
    QVERIFY(errors.reports().isEmpty());

    // Names are matched exactly, as the statement wrote them.
    QVERIFY(rs.Field("ID").isEmpty());
    auto written = db.Execute(QStringLiteral("SELECT ID, Room.Capacity FROM Room WHERE id<>1;"));
    QCOMPARE(written.Field("ID").toString(), written.Field(qint16(0)).toString());
    QCOMPARE(written.vTableArray().first().at(1).toString(), QStringLiteral("Room.Capacity"));
    QVERIFY(written.Field("id").isEmpty());
    QCOMPARE(errors.reports().size(), 2);
    const ErrorReport& r = errors.reports().first();
    QCOMPARE(r.number, 381);
    QCOMPARE(r.description, QStringLiteral("Field ID not found"));
    QCOMPARE(r.source, QStringLiteral("clsSQLiteRecordset.Field"));

    auto dup = db.Execute(QStringLiteral("SELECT 'first' AS x, 'second' AS x;"));
    QCOMPARE(dup.Field("x").toString(), QStringLiteral("first"));
}

void TestStore::failingStatement() {
    TestEnv env;
    QVERIFY(env.open(env.newProject()));
    const QString sql = QStringLiteral("SELECT id FROM NoSuchTable");
    {
        ErrorRecorder errors;
        auto rs = ModMain::DB().Execute(sql);
        QVERIFY(rs.eof());
        QCOMPARE(errors.reports().size(), 1);
        const ErrorReport& r = errors.reports().first();
        QCOMPARE(r.number, 425);
        QCOMPARE(r.module, QStringLiteral("clsSQLite"));
        QCOMPARE(r.procedure, QStringLiteral("Execute"));
        QCOMPARE(r.source, QStringLiteral("clsSQLite ") + sql);
        QCOMPARE(r.description, QStringLiteral("Error in SQL '") + sql +
                                    QStringLiteral("'. Error 'no such table: NoSuchTable'"));
        ModMain::DB().Execute(QStringLiteral("SELECT 1;"));
        QCOMPARE(ModMain::DB().GetErrorString(), QString());
    }
    // Without a report component the user sees the fixed box.
    MessageRecorder boxes;
    ModMain::DB().Execute(sql);
    QCOMPARE(boxes.messages().size(), 1);
    QCOMPARE(boxes.messages().first().title, QStringLiteral("Application Error"));
    QVERIFY(boxes.messages().first().text.contains(
        QStringLiteral("Module: clsSQLite\r\nProcedure: Execute\r\nLine Number: ")));
    QVERIFY(boxes.messages().first().text.endsWith(
        QStringLiteral("Error 'no such table: NoSuchTable' (425)")));
}

void TestStore::open_data() {
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("opens");
    QTest::newRow("project") << "project" << true;
    QTest::newRow("missing") << "missing" << false;
    QTest::newRow("directory") << "directory" << false;
    QTest::newRow("not a database") << "text" << false;
}

void TestStore::open() {
    QFETCH(QString, kind);
    QFETCH(bool, opens);
    TestEnv env;
    QString name = env.path(QStringLiteral("x.VNPL"));
    if (kind == QLatin1String("project"))
        name = env.newProject();
    else if (kind == QLatin1String("directory"))
        QVERIFY(QDir().mkpath(name));
    else if (kind == QLatin1String("text")) {
        QFile f(name);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("These are my notes.\n" + QByteArray(2048, 'x'));
    }
    clsSQLite db;
    QCOMPARE(db.DBOpen(name), opens);
    QCOMPARE(db.GetDBFilename(), opens ? name : QString());
    // A refused open keeps the library's handle 0, so only a missing file reads closed.
    QCOMPARE(db.IsDBOpen(), kind != QLatin1String("missing") && kind != QLatin1String("directory"));
    if (kind == QLatin1String("missing"))
        QVERIFY(!QFile::exists(name)); // never created
    if (kind == QLatin1String("text"))
        QVERIFY(db.GetErrorString().contains(QStringLiteral("not a database")));
    db.DBClose();
    db.DBClose();
    QVERIFY(!db.IsDBOpen());

    if (kind == QLatin1String("missing")) {
        QVERIFY(!ModMain::DB().DBOpen(name));
        QCOMPARE(ModMain::OpenFailureText(name), QStringLiteral("Unable to open project file ") +
                                                     name +
                                                     QStringLiteral(".\r\nFile not found\r\n53"));
    }
}

void TestStore::blankProject() {
    TestEnv env;
    QVERIFY(env.open(env.newProject()));
    auto& db = ModMain::DB();
    auto count = [&](const QString& sql) { return db.Execute(sql).Field(qint16(0)).toInt(); };
    for (const char* table : {"Tutor", "Subject", "Room", "Class"})
        QCOMPARE(
            count(QStringLiteral("SELECT MAX(id) + COUNT(*) FROM %1").arg(QLatin1String(table))),
            2);
    for (const char* table : {"ProjectDayTitle", "ProjectTimeTitle", "Timetable", "Slot",
                              "TutorSlot", "SubjectsTaughtByTutor"})
        QVERIFY2(count(QStringLiteral("SELECT COUNT(*) FROM %1").arg(QLatin1String(table))) == 0,
                 table);

    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM Method WHERE id = 4")), 1);
    QVERIFY(count(QStringLiteral("SELECT COUNT(*) FROM Method WHERE id<>4")) >= 3);
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM Method WHERE TutorSet NOT BETWEEN 0 AND 10 "
                                  "OR RoomSet NOT BETWEEN 0 AND 10 OR SubjectSet NOT BETWEEN 0 AND "
                                  "10 OR ClassSet NOT BETWEEN 0 AND 10")),
             0);
    QVERIFY(count(QStringLiteral("SELECT COUNT(*) FROM Style WHERE PeriodFontSize >= 7 AND "
                                 "TitleFontSize > PeriodFontSize AND PeriodFont <> ''")) >= 4);
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM DOWTemplate WHERE name IN ('Monday to "
                                  "Friday', 'Monday to Saturday')")),
             2);

    // Every hour template holds readable times in rising order.
    auto hours = db.Execute(QStringLiteral("SELECT name, HourTemplateID AS t FROM HourTemplateItem "
                                           "ORDER BY HourTemplateID, pos"));
    QVERIFY(hours.RecordCount() >= 6);
    QTime previous;
    QString previousTemplate;
    for (; !hours.eof(); hours.MoveNext()) {
        const QTime t = TimeText::Parse(hours.Field("name").toString());
        QVERIFY(t.isValid());
        QVERIFY(hours.Field("t").toString() != previousTemplate || previous < t);
        previous = t;
        previousTemplate = hours.Field("t").toString();
    }

    // The timetable insert leaves Time12Hour out, so the column default applies.
    db.Execute(QStringLiteral("INSERT INTO Timetable (Type) VALUES ('Class')"));
    const QString clock = db.Execute(QStringLiteral("SELECT Time12Hour FROM Timetable"))
                              .Field("Time12Hour")
                              .toString();
    QVERIFY(clock == QLatin1String("True") || clock == QLatin1String("False"));
}

void TestStore::indexesServeJoins_data() {
    QTest::addColumn<QString>("sql");
    QTest::newRow("tutor busy join") << QStringLiteral(
        "SELECT Slot.ID AS ID FROM TutorSlot, Slot, DayTitle, TimeTitle WHERE TutorSlot.SlotID = "
        "Slot.ID AND Slot.DayTitleID = DayTitle.ID AND DayTitle.ProjectDayTitleID = 3 AND "
        "TutorSlot.TutorID = 5 AND Slot.TimeTitleID = TimeTitle.ID AND "
        "TimeTitle.ProjectTimeTitleID = 2;");
    QTest::newRow("slot links") << QStringLiteral(
        "SELECT Name FROM Room, RoomSlot WHERE Room.ID = RoomSlot.RoomID AND RoomSlot.SlotID = 9");
}

void TestStore::indexesServeJoins() {
    QFETCH(QString, sql);
    TestEnv env;
    QVERIFY(env.open(env.newProject()));
    auto plan = ModMain::DB().Execute(QStringLiteral("EXPLAIN QUERY PLAN ") + sql);
    QVERIFY(plan.RecordCount() > 0);
    for (; !plan.eof(); plan.MoveNext()) {
        const QString detail = plan.Field("detail").toString();
        QVERIFY2(!detail.startsWith(QStringLiteral("SCAN ")) ||
                     detail.contains(QStringLiteral("INDEX")),
                 qPrintable(detail));
    }
}

void TestStore::timeText_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QTime>("time");
    QTest::newRow("stored, trailing blank") << "08:00:00 " << QTime(8, 0);
    QTest::newRow("pm spaced") << "3:30 PM" << QTime(15, 30);
    QTest::newRow("midnight") << "12:00am" << QTime(0, 0);
    QTest::newRow("noon") << "12:00pm" << QTime(12, 0);
    QTest::newRow("just before one") << "12:55pm" << QTime(12, 55);
    QTest::newRow("not a time") << "lunch" << QTime();
    QTest::newRow("13 pm") << "13:00pm" << QTime();
}

void TestStore::timeText() {
    QFETCH(QString, text);
    QFETCH(QTime, time);
    QCOMPARE(TimeText::Parse(text), time);
    if (time.isValid())
        QCOMPARE(TimeText::Parse(TimeText::ToText(time)), time);
    // The program's own 12-hour form reads back as written: 12:xx is pm.
    if (time.isValid() &&
        QRegularExpression(QStringLiteral("^\\d+:\\d\\d[ap]m$")).match(text).hasMatch())
        QCOMPARE(TimeText::To12Hour(time), text);
}

void TestStore::resourceAndSlotRecords() {
    TestEnv env;
    ErrorRecorder errors;
    QVERIFY(env.open(env.newProject()));
    auto& db = ModMain::DB();
    const qint32 tutor =
        ModMain::CreateTutorRecord(QStringLiteral("Mr O'Brien"), QStringLiteral("O'B"), QString(),
                                   QStringLiteral("Head of 'Year 7'"));
    const qint32 room = ModMain::CreateRoomRecord(QStringLiteral("Room ''4''"), 32);
    const qint32 subject = ModMain::CreateSubjectRecord(QStringLiteral("Children's Art"), 45);
    QVERIFY(tutor > 1 && room > 1 && subject > 1);
    QCOMPARE(ModMain::CreateRoomRecord(QStringLiteral("Hall"), 200), room + 1);
    auto t =
        db.Execute(QStringLiteral("SELECT DisplayName, notes FROM Tutor WHERE id = %1").arg(tutor));
    QCOMPARE(t.Field("DisplayName").toString(), QStringLiteral("O'B"));
    QCOMPARE(t.Field("notes").toString(), QStringLiteral("Head of 'Year 7'"));
    auto r = db.Execute(QStringLiteral("SELECT name, Capacity FROM Room WHERE id = %1").arg(room));
    QCOMPARE(r.Field("name").toString(), QStringLiteral("Room ''4''"));
    QCOMPARE(r.Field("Capacity").toInt(), 32);

    const qint32 slot =
        ModMain::CreateSlotRecord(7, QTime(9, 5), 45, QStringLiteral("Monday's"), 3, 11, 12);
    auto s = db.Execute(QStringLiteral("SELECT TimetableID, StartTime, Duration, DOW, SpecialID, "
                                       "DayTitleID, TimeTitleID FROM Slot WHERE id = %1")
                            .arg(slot));
    QStringList values;
    for (qint16 c = 0; c < 7; ++c)
        values << s.Field(c).toString();
    QCOMPARE(values, (QStringList{"7", "09:05:00", "45", "Monday's", "3", "11", "12"}));
    QVERIFY(errors.reports().isEmpty());
}

void TestStore::slotLinks_data() {
    using LinkFn = qint32 (*)(qint32, qint32, bool);
    QTest::addColumn<QString>("table");
    QTest::addColumn<QString>("column");
    QTest::addColumn<quintptr>("create");
    const auto fn = [](LinkFn f) { return reinterpret_cast<quintptr>(f); };
    QTest::newRow("tutor") << "TutorSlot"
                           << "TutorID" << fn(&ModMain::CreateTutorSlotRecord);
    QTest::newRow("subject") << "SubjectSlot"
                             << "SubjectID" << fn(&ModMain::CreateSubjectSlotRecord);
    QTest::newRow("room") << "RoomSlot"
                          << "RoomID" << fn(&ModMain::CreateRoomSlotRecord);
    QTest::newRow("class") << "ClassSlot"
                           << "ClassID" << fn(&ModMain::CreateClassSlotRecord);
}

void TestStore::slotLinks() {
    QFETCH(QString, table);
    QFETCH(QString, column);
    QFETCH(quintptr, create);
    const auto link = reinterpret_cast<qint32 (*)(qint32, qint32, bool)>(create);
    TestEnv env;
    QVERIFY(env.open(env.newProject()));
    auto rows = [&] {
        return ModMain::DB()
            .Execute(
                QStringLiteral("SELECT id FROM %1 WHERE SlotID = 5 AND %2 = 9").arg(table, column))
            .RecordCount();
    };
    // Checked twice: one row, the same id both times; another pair is a new row.
    const qint32 first = link(5, 9, true);
    QCOMPARE(link(5, 9, true), first);
    QCOMPARE(rows(), 1);
    QVERIFY(link(5, 10, true) != first);
    // Unchecked, nothing is looked up: the caller vouches the pair is new.
    QVERIFY(link(5, 9, false) != first);
    QCOMPARE(rows(), 2);
}

QTEST_MAIN(TestStore)
#include "test_store.moc"
