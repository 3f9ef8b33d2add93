// The database layer, the blank project and the project settings.

#include "store/ModMain.h"
#include "store/Project.h"
#include "store/Records.h"
#include "store/TimeText.h"
#include "support/TestSupport.h"

#include <QDir>
#include <QFile>
#include <QtTest>

using namespace TestSupport;

class TestStore : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void emptyResult();
    void fieldLookup();
    void nullStaysDistinctFromEmptyText();
    void moveNextPastEnd();
    void failingStatementReports();
    void failingStatementFallbackBox();
    void insertIdAndMultipleStatements();
    void openRefusals_data();
    void openRefusals();
    void openNonDatabaseKeepsLibraryHandle();
    void closeIsIdempotent();
    void versionTexts();
    void blankDbPlaceholders();
    void blankDbPredefinedRows();
    void blankDbTimetableDefaults();
    void blankDbIndexesServeJoins_data();
    void blankDbIndexesServeJoins();
    void timeText_data();
    void timeText();
    void openFailureText();
    void resourceRecords();
    void slotRecord();
    void slotLinks_data();
    void slotLinks();
};

void TestStore::emptyResult() {
    TestEnv env;
    QVERIFY(env.open(env.newProject()));
    auto rs = ModMain::DB().Execute(QStringLiteral("SELECT id, name FROM Tutor WHERE id<>1;"));
    QCOMPARE(rs.RecordCount(), 0);
    QCOMPARE(rs.RecordIndex(), 1);
    QVERIFY(rs.eof());
    rs.MoveFirst();
    QCOMPARE(rs.RecordIndex(), 0);
    QVERIFY(rs.eof());

    // Statements without a result come back the same way.
    auto ins = ModMain::DB().Execute(QStringLiteral("INSERT INTO Class (name) VALUES ('7A');"));
    QCOMPARE(ins.RecordCount(), 0);
    QVERIFY(ins.eof());
}

void TestStore::fieldLookup() {
    TestEnv env;
    ErrorRecorder errors;
    QVERIFY(env.open(env.newProject()));
    auto& db = ModMain::DB();
    db.Execute(QStringLiteral("INSERT INTO Room (name, Capacity) VALUES ('Lab', 30);"));
    auto rs = db.Execute(
        QStringLiteral("SELECT id, name AS RoomName, Capacity FROM Room WHERE id<>1;"));
    QCOMPARE(rs.RecordCount(), 1);
    QCOMPARE(rs.RecordIndex(), 0);
    QCOMPARE(rs.vTableArray().first().at(1).toString(), QStringLiteral("RoomName"));

    QCOMPARE(rs.Field("RoomName").toString(), QStringLiteral("Lab"));
    QCOMPARE(rs.Field(QStringLiteral("Capacity")).toInt(), 30);
    QCOMPARE(rs.Field(qint16(1)).toString(), QStringLiteral("Lab"));
    QCOMPARE(rs.Field(qint16(2)).toString(), QStringLiteral("30"));
    QVERIFY(errors.reports().isEmpty());

    // Other argument types give empty without error.
    QVERIFY(rs.Field(qint32(1)).isEmpty());
    QVERIFY(rs.Field(1.0).isEmpty());
    QVERIFY(errors.reports().isEmpty());

    // Names are case-sensitive: the column is "id", not "ID".
    const Variant missing = rs.Field("ID");
    QVERIFY(missing.isEmpty());
    QCOMPARE(errors.reports().size(), 1);
    const ErrorReport& report = errors.reports().first();
    QCOMPARE(report.number, 381);
    QCOMPARE(report.description, QStringLiteral("Field ID not found"));
    QCOMPARE(report.source, QStringLiteral("clsSQLiteRecordset.Field"));
    QCOMPARE(report.module, QStringLiteral("clsSQLiteRecordset"));
    QCOMPARE(report.procedure, QStringLiteral("Field"));
    QVERIFY(report.variables.startsWith(QStringLiteral("<Variables><LocalVariables>")));
    QVERIFY(report.variables.endsWith(QStringLiteral("</Parameters>")));

    // Columns are named as the statement writes them, not as the table spells them.
    auto written = db.Execute(QStringLiteral("SELECT ID, Name FROM Room WHERE id<>1;"));
    QCOMPARE(written.Field("ID").toString(), rs.Field("id").toString());
    QCOMPARE(written.Field("Name").toString(), QStringLiteral("Lab"));
    errors.clear();
    QVERIFY(written.Field("id").isEmpty());
    QCOMPARE(errors.reports().size(), 1);
    auto qualified = db.Execute(QStringLiteral("SELECT Room.ID AS ID, Room.Capacity FROM Room "
                                               "WHERE id<>1;"));
    QCOMPARE(qualified.vTableArray().first().at(1).toString(), QStringLiteral("Room.Capacity"));

    // With two columns of one name, the first wins.
    auto dup = db.Execute(QStringLiteral("SELECT 'first' AS x, 'second' AS x;"));
    QCOMPARE(dup.Field("x").toString(), QStringLiteral("first"));
}

void TestStore::nullStaysDistinctFromEmptyText() {
    TestEnv env;
    QVERIFY(env.open(env.newProject()));
    auto rs = ModMain::DB().Execute(QStringLiteral("SELECT NULL AS n, '' AS e, 'x' AS t;"));
    QVERIFY(rs.Field("n").isNull());
    QVERIFY(!rs.Field("e").isNull());
    QVERIFY(rs.Field("e").isText());
    QCOMPARE(Common::NullToString(rs.Field("n")), QString());
    QCOMPARE(rs.Field("t").toString(), QStringLiteral("x"));
}

void TestStore::moveNextPastEnd() {
    TestEnv env;
    QVERIFY(env.open(env.newProject()));
    auto rs = ModMain::DB().Execute(
        QStringLiteral("SELECT name FROM DOWTemplateItem WHERE DOWTemplateID = 1 ORDER BY pos"));
    QStringList days;
    while (!rs.eof()) {
        days << rs.Field("name").toString();
        rs.MoveNext();
    }
    QCOMPARE(days, (QStringList{"Monday", "Tuesday", "Wednesday", "Thursday", "Friday"}));
    rs.MoveNext();
    QVERIFY(rs.eof());
    QCOMPARE(rs.RecordIndex(), 6);
    rs.MoveFirst();
    QCOMPARE(rs.Field("name").toString(), QStringLiteral("Monday"));
}

void TestStore::failingStatementReports() {
    TestEnv env;
    ErrorRecorder errors;
    QVERIFY(env.open(env.newProject()));
    const QString sql = QStringLiteral("SELECT id FROM NoSuchTable");
    auto rs = ModMain::DB().Execute(sql);
    QCOMPARE(rs.RecordCount(), 0);
    QVERIFY(rs.eof());
    QCOMPARE(errors.reports().size(), 1);
    const ErrorReport& r = errors.reports().first();
    QCOMPARE(r.number, 425);
    QCOMPARE(r.module, QStringLiteral("clsSQLite"));
    QCOMPARE(r.procedure, QStringLiteral("Execute"));
    QCOMPARE(r.source, QStringLiteral("clsSQLite ") + sql);
    QCOMPARE(r.description, QStringLiteral("Error in SQL '") + sql +
                                QStringLiteral("'. Error 'no such table: NoSuchTable'"));
    QVERIFY(r.line > 0);
    QCOMPARE(ModMain::DB().GetErrorString(), QStringLiteral("no such table: NoSuchTable"));

    // The next good statement clears the error.
    ModMain::DB().Execute(QStringLiteral("SELECT 1;"));
    QCOMPARE(ModMain::DB().GetErrorString(), QString());
}

void TestStore::failingStatementFallbackBox() {
    TestEnv env;
    MessageRecorder boxes;
    QVERIFY(env.open(env.newProject()));
    ModMain::DB().Execute(QStringLiteral("INSERT INTO Nowhere VALUES (1)"));
    QCOMPARE(boxes.messages().size(), 1);
    const ShownMessage& m = boxes.messages().first();
    QCOMPARE(m.title, QStringLiteral("Application Error"));
    QCOMPARE(m.icon, Common::MsgIcon::Critical);
    QVERIFY(m.text.startsWith(QStringLiteral(
        "Timetable has encountered a problem. We are sorry for the inconvenience.\r\n\r\n"
        "Module: clsSQLite\r\nProcedure: Execute\r\nLine Number: ")));
    QVERIFY(m.text.endsWith(
        QStringLiteral("\r\n\r\nError in SQL 'INSERT INTO Nowhere VALUES (1)'. Error 'no such "
                       "table: Nowhere' (425)")));
}

void TestStore::insertIdAndMultipleStatements() {
    TestEnv env;
    QVERIFY(env.open(env.newProject()));
    auto& db = ModMain::DB();
    db.Execute(QStringLiteral("INSERT INTO Tutor (name, DisplayName, image, notes) VALUES "
                              "('Ann O''Neil', 'AO', '', '');"));
    const qint32 first = db.GetInsertID();
    QVERIFY(first >= 2); // row 1 is the placeholder
    db.Execute(QStringLiteral("BEGIN;"));
    db.Execute(QStringLiteral("INSERT INTO Tutor (name) VALUES ('B');"));
    db.Execute(QStringLiteral("COMMIT;"));
    QCOMPARE(db.GetInsertID(), first + 1);
    auto rs = db.Execute(QStringLiteral("SELECT name FROM Tutor WHERE id = %1").arg(first));
    QCOMPARE(rs.Field("name").toString(), QStringLiteral("Ann O'Neil"));

    // Several statements in one call run together.
    db.Execute(QStringLiteral("BEGIN; INSERT INTO Class (name) VALUES ('1'); INSERT INTO Class "
                              "(name) VALUES ('2'); COMMIT;"));
    auto count = db.Execute(QStringLiteral("SELECT COUNT(*) AS tot FROM Class WHERE id<>1;"));
    QCOMPARE(count.Field("tot").toInt(), 2);
}

void TestStore::openRefusals_data() {
    QTest::addColumn<QString>("kind");
    QTest::newRow("missing") << "missing";
    QTest::newRow("directory") << "directory";
    QTest::newRow("empty name") << "empty";
}

void TestStore::openRefusals() {
    QFETCH(QString, kind);
    TestEnv env;
    QString name;
    if (kind == QLatin1String("missing"))
        name = env.path(QStringLiteral("absent.VNPL"));
    else if (kind == QLatin1String("directory")) {
        name = env.path(QStringLiteral("folder.VNPL"));
        QVERIFY(QDir().mkpath(name));
    }
    clsSQLite db;
    QVERIFY(!db.DBOpen(name));
    QVERIFY(!db.IsDBOpen());
    QCOMPARE(db.GetDBFilename(), QString());
    // Nothing was created.
    if (kind == QLatin1String("missing"))
        QVERIFY(!QFile::exists(name));
}

void TestStore::openNonDatabaseKeepsLibraryHandle() {
    TestEnv env;
    const QString text = env.path(QStringLiteral("notes.VNPL"));
    QFile f(text);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write("These are my notes, not a project.\n" + QByteArray(2048, 'x'));
    f.close();

    clsSQLite db;
    QVERIFY(!db.DBOpen(text));
    QVERIFY(db.GetErrorString().contains(QStringLiteral("not a database")));
    QVERIFY(db.GetErrorNumber() != 0);
    // The refused open keeps the library's handle 0, so IsDBOpen reads true.
    QVERIFY(db.IsDBOpen());
    QCOMPARE(db.GetDBFilename(), QString());
    db.DBClose();
    QVERIFY(!db.IsDBOpen());
}

void TestStore::closeIsIdempotent() {
    TestEnv env;
    clsSQLite db;
    db.DBClose();
    QVERIFY(!db.IsDBOpen());
    const QString file = env.newProject();
    QVERIFY(db.DBOpen(file));
    QVERIFY(db.IsDBOpen());
    QCOMPARE(db.GetDBFilename(), file);
    db.DBClose();
    db.DBClose();
    QVERIFY(!db.IsDBOpen());
    QCOMPARE(db.GetDBFilename(), QString());
}

void TestStore::versionTexts() {
    clsSQLite db;
    QVERIFY(db.GetSQLiteVersion().startsWith(QStringLiteral("3.")));
    QVERIFY(!db.GetAGS_SQLiteVersion().isEmpty());
    QCOMPARE(db.GetLibraryEncoding(), QStringLiteral("UTF-8"));
}

void TestStore::blankDbPlaceholders() {
    TestEnv env;
    QVERIFY(env.open(env.newProject()));
    auto& db = ModMain::DB();
    for (const char* table : {"Tutor", "Subject", "Room", "Class"}) {
        auto rs = db.Execute(QStringLiteral("SELECT id FROM %1;").arg(QLatin1String(table)));
        QCOMPARE(rs.RecordCount(), 1);
        QCOMPARE(rs.Field("id").toInt(), 1);
    }
    // Tables the project fills itself start empty.
    for (const char* table : {"ProjectDayTitle", "ProjectTimeTitle", "Timetable", "TimeTitle",
                              "DayTitle", "Slot", "TutorSlot", "SubjectSlot", "RoomSlot",
                              "ClassSlot", "SubjectsTaughtByTutor"}) {
        auto rs =
            db.Execute(QStringLiteral("SELECT COUNT(*) AS tot FROM %1;").arg(QLatin1String(table)));
        QVERIFY2(rs.Field("tot").toInt() == 0, table);
    }
}

void TestStore::blankDbPredefinedRows() {
    TestEnv env;
    QVERIFY(env.open(env.newProject()));
    auto& db = ModMain::DB();

    auto method4 = db.Execute(QStringLiteral(
        "SELECT name, TutorSet, RoomSet, SubjectSet, ClassSet FROM Method WHERE id = 4"));
    QCOMPARE(method4.RecordCount(), 1);
    auto listed = db.Execute(QStringLiteral("SELECT id, name FROM method WHERE id<>4 ORDER BY name"));
    QVERIFY(listed.RecordCount() >= 3);
    auto sets = db.Execute(QStringLiteral("SELECT TutorSet, RoomSet, SubjectSet, ClassSet FROM Method"));
    for (; !sets.eof(); sets.MoveNext())
        for (qint16 c = 0; c < 4; ++c) {
            const int v = sets.Field(c).toInt();
            QVERIFY(v >= 0 && v <= 10);
        }

    auto styles = db.Execute(QStringLiteral(
        "SELECT ID, UnavailableBackground, UnavailableForeground, TitleFont, TitleFontSize, "
        "TitleForeground, ColHeadFont, ColHeadFontSize, ColHeadForeground, RowHeadFont, "
        "RowHeadFontSize, RowHeadForeground, PeriodFont, PeriodFontSize, PeriodForeground FROM "
        "Style"));
    QVERIFY(styles.RecordCount() >= 4);
    for (; !styles.eof(); styles.MoveNext()) {
        QVERIFY(!styles.Field("PeriodFont").toString().isEmpty());
        QVERIFY(styles.Field("PeriodFontSize").toInt() >= 7);
        QVERIFY(styles.Field("TitleFontSize").toInt() > styles.Field("PeriodFontSize").toInt());
    }
    auto style1 = db.Execute(QStringLiteral("SELECT id FROM Style WHERE id = 1"));
    QCOMPARE(style1.RecordCount(), 1);

    auto days = db.Execute(QStringLiteral("SELECT id, name FROM DOWTemplate;"));
    QStringList dayNames;
    for (; !days.eof(); days.MoveNext())
        dayNames << days.Field("name").toString();
    QVERIFY(dayNames.contains(QStringLiteral("Monday to Friday")));
    QVERIFY(dayNames.contains(QStringLiteral("Monday to Saturday")));

    // Every hour template item is a time the program can read, in order.
    auto hours = db.Execute(QStringLiteral("SELECT id, name FROM HourTemplate;"));
    QVERIFY(hours.RecordCount() >= 2);
    for (; !hours.eof(); hours.MoveNext()) {
        auto items = db.Execute(
            QStringLiteral("SELECT name FROM hourtemplateitem WHERE hourtemplateid = %1 ORDER BY pos")
                .arg(hours.Field("id").toInt()));
        QVERIFY(items.RecordCount() >= 2);
        QTime previous;
        for (; !items.eof(); items.MoveNext()) {
            const QTime t = TimeText::Parse(items.Field("name").toString());
            QVERIFY(t.isValid());
            QVERIFY(!previous.isValid() || previous < t);
            previous = t;
        }
    }
}

void TestStore::blankDbTimetableDefaults() {
    TestEnv env;
    QVERIFY(env.open(env.newProject()));
    auto& db = ModMain::DB();
    // The timetable insert leaves Time12Hour out, so the column default applies.
    db.Execute(QStringLiteral("INSERT INTO Timetable (Type,TimeOnTop,Title,ClassID,RoomID,TutorID,"
                              "SubjectID) VALUES ('Class','True','Title',1,1,1,1)"));
    auto rs = db.Execute(QStringLiteral("SELECT Time12Hour FROM Timetable WHERE id = %1")
                             .arg(db.GetInsertID()));
    const QString value = rs.Field("Time12Hour").toString();
    QVERIFY(value == QLatin1String("True") || value == QLatin1String("False"));
}

void TestStore::blankDbIndexesServeJoins_data() {
    QTest::addColumn<QString>("sql");
    QTest::newRow("tutor busy join") << QStringLiteral(
        "SELECT Slot.ID AS ID FROM TutorSlot, Slot, DayTitle, TimeTitle WHERE TutorSlot.SlotID = "
        "Slot.ID AND Slot.DayTitleID = DayTitle.ID AND DayTitle.ProjectDayTitleID = 3 AND "
        "TutorSlot.TutorID = 5 AND Slot.TimeTitleID = TimeTitle.ID AND "
        "TimeTitle.ProjectTimeTitleID = 2;");
    QTest::newRow("slot lookup") << QStringLiteral(
        "SELECT Slot.ID AS ID FROM Slot WHERE timetableid = 3 AND DayTitleID = 4 AND "
        "TimeTitleID = 5");
    QTest::newRow("time title lookup") << QStringLiteral(
        "SELECT ID FROM TimeTitle WHERE timetableid = 3 AND ProjectTimeTitleID = 4");
    QTest::newRow("slot links") << QStringLiteral(
        "SELECT Name FROM Room, RoomSlot WHERE Room.ID = RoomSlot.RoomID AND RoomSlot.SlotID = 9");
}

void TestStore::blankDbIndexesServeJoins() {
    QFETCH(QString, sql);
    TestEnv env;
    QVERIFY(env.open(env.newProject()));
    auto plan = ModMain::DB().Execute(QStringLiteral("EXPLAIN QUERY PLAN ") + sql);
    QVERIFY(plan.RecordCount() > 0);
    for (; !plan.eof(); plan.MoveNext()) {
        const QString detail = plan.Field("detail").toString();
        // A full scan of a table is what the indexes are there to avoid.
        QVERIFY2(!detail.startsWith(QStringLiteral("SCAN ")) ||
                     detail.contains(QStringLiteral("INDEX")),
                 qPrintable(detail));
    }
}

void TestStore::timeText_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QTime>("time");
    QTest::newRow("24h with seconds") << "13:05:00" << QTime(13, 5);
    QTest::newRow("24h no seconds") << "8:00" << QTime(8, 0);
    QTest::newRow("trailing blank") << "08:00:00 " << QTime(8, 0);
    QTest::newRow("am") << "8:00am" << QTime(8, 0);
    QTest::newRow("pm spaced") << "3:30 PM" << QTime(15, 30);
    QTest::newRow("pm seconds") << "8:00:00 PM" << QTime(20, 0);
    QTest::newRow("midnight") << "12:00am" << QTime(0, 0);
    QTest::newRow("noon") << "12:00pm" << QTime(12, 0);
    QTest::newRow("dotted") << "8.00am" << QTime(8, 0);
    QTest::newRow("not a time") << "lunch" << QTime();
    QTest::newRow("13 pm") << "13:00pm" << QTime();
}

void TestStore::timeText() {
    QFETCH(QString, text);
    QFETCH(QTime, time);
    QCOMPARE(TimeText::Parse(text), time);
    if (time.isValid())
        QCOMPARE(TimeText::Parse(TimeText::ToText(time)), time);
}

void TestStore::openFailureText() {
    TestEnv env;
    const QString missing = env.path(QStringLiteral("gone.VNPL"));
    QVERIFY(!ModMain::DB().DBOpen(missing));
    QCOMPARE(ModMain::OpenFailureText(missing),
             QStringLiteral("Unable to open project file ") + missing +
                 QStringLiteral(".\r\nFile not found\r\n53"));
}

void TestStore::resourceRecords() {
    TestEnv env;
    ErrorRecorder errors;
    QVERIFY(env.open(env.newProject()));
    auto& db = ModMain::DB();
    const qint32 tutor = ModMain::CreateTutorRecord(QStringLiteral("Mr O'Brien"),
                                                    QStringLiteral("O'B"), QStringLiteral(""),
                                                    QStringLiteral("Head of 'Year 7'"));
    const qint32 subject = ModMain::CreateSubjectRecord(QStringLiteral("Children's Art"), 45);
    const qint32 room = ModMain::CreateRoomRecord(QStringLiteral("Room ''4''"), 32);
    QVERIFY(errors.reports().isEmpty());
    QVERIFY(tutor > 1 && subject > 1 && room > 1);

    auto t = db.Execute(QStringLiteral("SELECT name, DisplayName, image, notes FROM Tutor WHERE id = %1;")
                            .arg(tutor));
    QCOMPARE(t.Field("name").toString(), QStringLiteral("Mr O'Brien"));
    QCOMPARE(t.Field("DisplayName").toString(), QStringLiteral("O'B"));
    QCOMPARE(t.Field("image").toString(), QString());
    QCOMPARE(t.Field("notes").toString(), QStringLiteral("Head of 'Year 7'"));
    auto s = db.Execute(QStringLiteral("SELECT name, length FROM Subject WHERE id = %1;").arg(subject));
    QCOMPARE(s.Field("name").toString(), QStringLiteral("Children's Art"));
    QCOMPARE(s.Field("length").toInt(), 45);
    auto r = db.Execute(QStringLiteral("SELECT name, Capacity FROM Room WHERE id = %1;").arg(room));
    QCOMPARE(r.Field("name").toString(), QStringLiteral("Room ''4''"));
    QCOMPARE(r.Field("Capacity").toInt(), 32);
    // Each call adds one row and gives its id.
    QCOMPARE(ModMain::CreateRoomRecord(QStringLiteral("Hall"), 200), room + 1);
}

void TestStore::slotRecord() {
    TestEnv env;
    ErrorRecorder errors;
    QVERIFY(env.open(env.newProject()));
    const qint32 slot =
        ModMain::CreateSlotRecord(7, QTime(9, 5), 45, QStringLiteral("Monday's"), 3, 11, 12);
    QVERIFY(errors.reports().isEmpty());
    auto rs = ModMain::DB().Execute(
        QStringLiteral("SELECT TimetableID, StartTime, Duration, DOW, SpecialID, DayTitleID, "
                       "TimeTitleID FROM Slot WHERE id = %1;")
            .arg(slot));
    QCOMPARE(rs.RecordCount(), 1);
    QCOMPARE(rs.Field("TimetableID").toInt(), 7);
    QCOMPARE(rs.Field("StartTime").toString(), QStringLiteral("09:05:00"));
    QCOMPARE(rs.Field("Duration").toString(), QStringLiteral("45"));
    QCOMPARE(rs.Field("DOW").toString(), QStringLiteral("Monday's"));
    QCOMPARE(rs.Field("SpecialID").toInt(), 3);
    QCOMPARE(rs.Field("DayTitleID").toInt(), 11);
    QCOMPARE(rs.Field("TimeTitleID").toInt(), 12);
}

namespace {
using LinkFn = qint32 (*)(qint32, qint32, bool);
struct LinkKind {
    const char* table;
    const char* column;
    LinkFn create;
};
const LinkKind kLinks[] = {{"TutorSlot", "TutorID", &ModMain::CreateTutorSlotRecord},
                           {"SubjectSlot", "SubjectID", &ModMain::CreateSubjectSlotRecord},
                           {"RoomSlot", "RoomID", &ModMain::CreateRoomSlotRecord},
                           {"ClassSlot", "ClassID", &ModMain::CreateClassSlotRecord}};
} // namespace

void TestStore::slotLinks_data() {
    QTest::addColumn<int>("kind");
    for (int i = 0; i < 4; ++i)
        QTest::newRow(kLinks[i].table) << i;
}

void TestStore::slotLinks() {
    QFETCH(int, kind);
    const LinkKind& k = kLinks[kind];
    TestEnv env;
    ErrorRecorder errors;
    QVERIFY(env.open(env.newProject()));
    auto rows = [&](qint32 slot, qint32 resource) {
        return ModMain::DB()
            .Execute(QStringLiteral("SELECT id FROM %1 WHERE SlotID = %2 AND %3 = %4;")
                         .arg(QString::fromLatin1(k.table))
                         .arg(slot)
                         .arg(QString::fromLatin1(k.column))
                         .arg(resource))
            .RecordCount();
    };

    // Checked twice: one row, the same id both times.
    const qint32 first = k.create(5, 9, true);
    QVERIFY(first > 0);
    QCOMPARE(k.create(5, 9, true), first);
    QCOMPARE(rows(5, 9), 1);

    // Another resource or another slot is a new pair.
    const qint32 other = k.create(5, 10, true);
    QVERIFY(other != first);
    QVERIFY(k.create(6, 9, true) != first);

    // Unchecked, the caller vouches the pair is new, so nothing is looked up.
    const qint32 again = k.create(5, 9, false);
    QVERIFY(again != first);
    QCOMPARE(rows(5, 9), 2);
    // Checked after that, the first row is found.
    QCOMPARE(k.create(5, 9, true), first);
    QVERIFY(errors.reports().isEmpty());
}

QTEST_MAIN(TestStore)
#include "test_store.moc"
