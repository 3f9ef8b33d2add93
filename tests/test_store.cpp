// The database layer, the blank project, time texts and the record helpers.

#include "store/Project.h"
#include "store/Records.h"
#include "store/TimeText.h"
#include "store/Transaction.h"
#include "support/TestSupport.h"
#include "timetable/TimetableRecords.h"

#include <QtTest>
#include <QtWidgets>
#include <sqlite3.h>

using namespace TestSupport;

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

class TestStore : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void recordsets() {
        TestEnv env;
        ErrorRecorder errors;
        QVERIFY(env.open(env.newProject()));
        auto& db = ModMain::DB();
        auto empty = db.Execute(QStringLiteral("SELECT id, name FROM Tutor WHERE id<>1;"));
        QCOMPARE(QPoint(empty.RecordCount(), empty.RecordIndex()), QPoint(0, 1));
        empty.MoveFirst();
        QVERIFY(empty.eof());
        // Several statements run in one call; the insert id is the last row's, after placeholder 1.
        db.Execute(
            QStringLiteral("BEGIN; INSERT INTO Room (name, Capacity) VALUES ('Lab', 30); INSERT "
                           "INTO Room (name, Capacity) VALUES ('Hall', NULL); COMMIT;"));
        QCOMPARE(db.GetInsertID(), 3);
        auto rs = db.Execute(QStringLiteral(
            "SELECT id, name AS RoomName, Capacity, '' AS e FROM Room WHERE id<>1 ORDER BY id;"));
        QCOMPARE(rs.RecordCount(), 2);
        QCOMPARE(rs.Field("RoomName").toString() + rs.Field(qint16(2)).toString(), "Lab30");
        QVERIFY(rs.Field("e").isText());
        // A plain int is a position too.
        QCOMPARE(rs.Field(1).toString(), "Lab");
        rs.MoveNext();
        QVERIFY(rs.Field("Capacity").isNull());
        QCOMPARE(Common::NullToString(rs.Field("Capacity")), QString());
        rs.MoveNext();
        rs.MoveNext();
        QVERIFY(rs.eof() && errors.reports().isEmpty());
        // Names are matched exactly, as the statement wrote them.
        QVERIFY(rs.Field("ID").isEmpty());
        auto written =
            db.Execute(QStringLiteral("SELECT ID, Room.Capacity FROM Room WHERE id<>1;"));
        QCOMPARE(written.Field("ID").toString(), written.Field(qint16(0)).toString());
        QCOMPARE(written.vTableArray().first().at(1).toString(), QStringLiteral("Room.Capacity"));
        QVERIFY(written.Field("id").isEmpty());
        QCOMPARE(errors.reports().size(), 2);
        const ErrorReport& r = errors.reports().first();
        QCOMPARE((QStringList{QString::number(r.number), r.description, r.source}),
                 (QStringList{"381", "Field ID not found", "clsSQLiteRecordset.Field"}));
        auto dup = db.Execute(QStringLiteral("SELECT 'first' AS x, 'second' AS x;"));
        QCOMPARE(dup.Field("x").toString(), QStringLiteral("first"));
    }
    void failingStatements() {
        TestEnv env;
        QVERIFY(env.open(env.newProject()));
        auto& db = ModMain::DB();
        const QString sql = QStringLiteral("SELECT id FROM NoSuchTable");
        {
            ErrorRecorder errors;
            QVERIFY(db.Execute(sql).eof());
            QCOMPARE(errors.reports().size(), 1);
            const ErrorReport& r = errors.reports().first();
            QCOMPARE(
                (QStringList{QString::number(r.number), r.module, r.procedure, r.source,
                             r.description}),
                (QStringList{"425", "clsSQLite", "Execute", "clsSQLite " + sql,
                             "Error in SQL '" + sql + "'. Error 'no such table: NoSuchTable'"}));
            db.Execute(QStringLiteral("SELECT 1;"));
            QCOMPARE(db.GetErrorString(), QString());
            // One report per action: after the first error the action runs
            // nothing more, and the next action starts afresh.
            const auto failTwice = [&] {
                db.Execute(sql);
                db.Execute(QStringLiteral("INSERT INTO Room (name) VALUES ('After')"));
                db.Execute(QStringLiteral("SELECT more FROM NoSuchTable"));
            };
            Guard("test", "action", failTwice);
            QCOMPARE(errors.reports().size(), 2);
            QCOMPARE(value("SELECT COUNT(*) FROM Room WHERE name = 'After'"), "0");
            Guard("test", "action", failTwice);
            QCOMPARE(errors.reports().size(), 3);
        }
        // Without a report component the fixed box: the shell test reads it word for word.
    }
    void open_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<bool>("opens");
        QTest::newRow("project") << "project" << true;
        QTest::newRow("missing") << "missing" << false;
        QTest::newRow("directory") << "directory" << false;
        QTest::newRow("not a database") << "text" << false;
    }
    void open() {
        QFETCH(QString, kind);
        QFETCH(bool, opens);
        TestEnv env;
        QString name = env.path(QStringLiteral("x.VNPL"));
        if (kind == QLatin1String("project"))
            name = env.newProject();
        else if (kind == QLatin1String("directory"))
            QVERIFY(QDir().mkpath(name));
        else if (kind == QLatin1String("text"))
            writeFile(name, "These are my notes.\n" + QByteArray(2048, 'x'));
        clsSQLite db;
        QCOMPARE(db.DBOpen(name), opens);
        QCOMPARE(db.GetDBFilename(), opens ? name : QString());
        // A refused open keeps the library's handle 0, so only a missing file reads closed.
        QCOMPARE(db.IsDBOpen(),
                 kind != QLatin1String("missing") && kind != QLatin1String("directory"));
        if (kind == QLatin1String("missing"))
            QVERIFY(!QFile::exists(name)); // never created
        if (kind == QLatin1String("text"))
            QVERIFY(db.GetErrorString().contains(QStringLiteral("not a database")));
        db.DBClose();
        db.DBClose();
        QVERIFY(!db.IsDBOpen());
        if (kind == QLatin1String("missing")) {
            QVERIFY(!ModMain::DB().DBOpen(name));
            QCOMPARE(ModMain::OpenFailureText(name),
                     QStringLiteral("Unable to open project file ") + name +
                         QStringLiteral(".\r\nFile not found (code 53)"));
        }
    }
    void blankProject() {
        TestEnv env;
        QVERIFY(env.open(env.newProject()));
        // Each a fact of the blank project: only the placeholders (id 1) and the
        // shipped methods, styles and templates, all within their ranges.
        const QStringList facts = {
            "SELECT (SELECT MAX(id) || COUNT(*) FROM Tutor) || (SELECT MAX(id) || COUNT(*) FROM "
            "Subject) || (SELECT MAX(id) || COUNT(*) FROM Room) || (SELECT MAX(id) || COUNT(*) "
            "FROM Class) = '11111111'",
            "SELECT (SELECT COUNT(*) FROM ProjectDayTitle) + (SELECT COUNT(*) FROM "
            "ProjectTimeTitle) + (SELECT COUNT(*) FROM Timetable) + (SELECT COUNT(*) FROM Slot) + "
            "(SELECT COUNT(*) FROM TutorSlot) + (SELECT COUNT(*) FROM SubjectsTaughtByTutor) = 0",
            "SELECT COUNT(*) = 1 FROM Method WHERE id = 4",
            "SELECT COUNT(*) >= 3 FROM Method WHERE id <> 4",
            "SELECT COUNT(*) = 0 FROM Method WHERE TutorSet NOT BETWEEN 0 AND 10 OR RoomSet NOT "
            "BETWEEN 0 AND 10 OR SubjectSet NOT BETWEEN 0 AND 10 OR ClassSet NOT BETWEEN 0 AND 10",
            "SELECT COUNT(*) >= 4 FROM Style WHERE PeriodFontSize >= 7 AND TitleFontSize > "
            "PeriodFontSize AND PeriodFont <> ''",
            "SELECT COUNT(*) = 2 FROM DOWTemplate WHERE name IN ('Monday to Friday', 'Monday to "
            "Saturday')",
            "SELECT COUNT(*) >= 6 FROM HourTemplateItem"};
        for (const QString& fact : facts)
            QVERIFY2(value(fact) == "1", qPrintable(fact));
        // Every hour template holds readable times in rising order.
        QTime previous;
        QString previousTemplate;
        for (const QString& item : rows("SELECT HourTemplateID, name FROM HourTemplateItem ORDER "
                                        "BY HourTemplateID, pos")) {
            const QTime t = TimeText::Parse(item.section(u'|', 1));
            QVERIFY2(t.isValid() && (item.section(u'|', 0, 0) != previousTemplate || previous < t),
                     qPrintable(item));
            previous = t;
            previousTemplate = item.section(u'|', 0, 0);
        }
        // The timetable insert leaves Time12Hour out, so the column default applies.
        value("INSERT INTO Timetable (Type) VALUES ('Class')");
        QVERIFY(QStringList({"True", "False"}).contains(value("SELECT Time12Hour FROM Timetable")));
    }
    void indexesServeJoins() {
        TestEnv env;
        QVERIFY(env.open(env.newProject()));
        for (const char* sql :
             {"SELECT Slot.ID AS ID FROM TutorSlot, Slot, DayTitle, TimeTitle WHERE "
              "TutorSlot.SlotID = Slot.ID AND Slot.DayTitleID = DayTitle.ID AND "
              "DayTitle.ProjectDayTitleID = 3 AND TutorSlot.TutorID = 5 AND Slot.TimeTitleID = "
              "TimeTitle.ID AND TimeTitle.ProjectTimeTitleID = 2;",
              "SELECT Name FROM Room, RoomSlot WHERE Room.ID = RoomSlot.RoomID AND RoomSlot.SlotID "
              "= 9"}) {
            auto plan = ModMain::DB().Execute(QStringLiteral("EXPLAIN QUERY PLAN ") + sql);
            QVERIFY(plan.RecordCount() > 0);
            for (; !plan.eof(); plan.MoveNext()) {
                const QString detail = plan.Field("detail").toString();
                QVERIFY2(!detail.startsWith(QStringLiteral("SCAN ")) ||
                             detail.contains(QStringLiteral("INDEX")),
                         qPrintable(detail));
            }
        }
    }
    void timeText_data() {
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
    void timeText() {
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
    void resourceAndSlotRecords() {
        TestEnv env;
        ErrorRecorder errors;
        QVERIFY(env.open(env.newProject()));
        // Quotes are stored as typed, in every field.
        const qint32 tutor =
            ModMain::CreateTutorRecord(QStringLiteral("Mr O'Brien"), QStringLiteral("O'B"),
                                       QString(), QStringLiteral("Head of 'Year 7'"));
        const qint32 room = ModMain::CreateRoomRecord(QStringLiteral("Room ''4''"), 32);
        const qint32 subject = ModMain::CreateSubjectRecord(QStringLiteral("Children's Art"), 45);
        QVERIFY(tutor > 1 && room > 1 && subject > 1);
        QCOMPARE(ModMain::CreateRoomRecord(QStringLiteral("Hall"), 200), room + 1);
        const qint32 slot =
            ModMain::CreateSlotRecord(7, QTime(9, 5), 45, QStringLiteral("Monday's"), 3, 11, 12);
        QCOMPARE(rows("SELECT name, DisplayName, notes FROM Tutor WHERE id = %1 UNION ALL SELECT "
                      "name, Capacity, '' FROM Room WHERE id = %2 UNION ALL SELECT name, length, "
                      "'' FROM Subject WHERE id = %3",
                      tutor, room, subject),
                 (QStringList{"Mr O'Brien|O'B|Head of 'Year 7'", "Room ''4''|32|",
                              "Children's Art|45|"}));
        QCOMPARE(rows("SELECT TimetableID, StartTime, Duration, DOW, SpecialID, DayTitleID, "
                      "TimeTitleID FROM Slot WHERE id = %1",
                      slot),
                 QStringList{"7|09:05:00|45|Monday's|3|11|12"});
        QVERIFY(errors.reports().isEmpty());
    }
    void slotLinks() {
        TestEnv env;
        QVERIFY(env.open(env.newProject()));
        for (const auto& [table, link] : {std::pair{"Tutor", &ModMain::CreateTutorSlotRecord},
                                          {"Subject", &ModMain::CreateSubjectSlotRecord},
                                          {"Room", &ModMain::CreateRoomSlotRecord},
                                          {"Class", &ModMain::CreateClassSlotRecord}}) {
            const auto count = [table] {
                return value("SELECT COUNT(*) FROM %1Slot WHERE SlotID = 5 AND %1ID = 9", table);
            };
            // Checked twice: one row, the same id both times; another pair is a new row.
            const qint32 first = link(5, 9, true);
            QCOMPARE(link(5, 9, true), first);
            QCOMPARE(count(), "1");
            QVERIFY(link(5, 10, true) != first);
            // Unchecked, nothing is looked up: the caller vouches the pair is new.
            QVERIFY(link(5, 9, false) != first);
            QCOMPARE(count(), "2");
        }
    }
    void actionSurvivesKill_data() {
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
    void actionSurvivesKill() {
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
            QVERIFY2(found == before || found == after,
                     qPrintable(QStringLiteral("half an action after statement %1 of %2")
                                    .arg(n)
                                    .arg(statements)));
            // Only a kill after the commit may keep the action.
            QCOMPARE(found == after, n == statements);
        }
    }
    void transactionNesting() {
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
        QCOMPARE(value("SELECT group_concat(name) FROM Room WHERE id<>1"), "Hall,Lab");
        // Outside an action the plain statements are a transaction of their own.
        db.Execute(QStringLiteral("BEGIN;"));
        ModMain::CreateRoomRecord(QStringLiteral("Gym"), 60);
        db.Execute(QStringLiteral("COMMIT;"));
        QVERIFY(dump(file).contains(QStringLiteral("Gym")));
        QCOMPARE(errors.reports().size(), 1);
    }
    void lockedProjectRefused() {
        TestEnv env;
        MessageRecorder boxes;
        ErrorRecorder errors;
        const QString file = env.newProject();
        QVERIFY(crashTool({QStringLiteral("prepare"), file}).toInt() > 0);
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
};

QTEST_MAIN(TestStore)
#include "test_store.moc"
