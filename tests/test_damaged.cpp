// Damaged and foreign project files. A small sound project is spoilt in a few
// hundred ways, one data row per kind of damage, and each copy is opened and
// shown by show_project in a child process. Whatever is wrong with a file,
// the program must refuse it with one box or show it: never crash, hang, trip
// a sanitizer, show two boxes for one action, or write to a file it only shows.

#include "store/Records.h"
#include "support/Fixtures.h"
#include "timetable/TimetableChoices.h"

#include <QtTest>
#include <QtWidgets>
#include <algorithm>
#include <functional>
#include <memory>
#include <sqlite3.h>
#include <vector>

using namespace Fixtures;

namespace {
// Twenty files per child and two children at a time keep a few hundred files
// well under a minute; a child that takes longer than this has hung.
constexpr int kBatch = 20;
constexpr int kChildren = 2;
constexpr int kBatchSeconds = 60;
// The same damage every run, so a failure can be reproduced.
constexpr quint32 kSeed = 20240611;

QString quotedName(const QString& name) {
    return QLatin1Char('"') + QString(name).replace(u'"', QStringLiteral("\"\"")) +
           QLatin1Char('"');
}

// --- Making the variants ----------------------------------------------------

// Copies of the sound project, each spoilt in one way, in a folder per kind.
class Spoiler {
public:
    Spoiler(const QString& base, const QString& dir)
        : m_base(base), m_dir(dir), m_bytes(readFile(base)) {
        QDir().mkpath(dir);
        const int size = (quint8(m_bytes.at(16)) << 8) | quint8(m_bytes.at(17));
        m_pageSize = size == 1 ? 65536 : size;
    }
    int pageSize() const { return m_pageSize; }
    int pages() const { return int(m_bytes.size() / m_pageSize); }
    const QByteArray& bytes() const { return m_bytes; }
    QStringList files() const { return m_files; }
    // Statements that would not run: the variant they meant is missing.
    QStringList errors() const { return m_errors; }
    void withBytes(const QString& name, const QByteArray& content) {
        m_files << writeFile(m_dir + QLatin1Char('/') + name, content);
    }
    void withFolder(const QString& name) {
        m_files << m_dir + QLatin1Char('/') + name;
        QDir().mkpath(m_files.last());
    }
    // A copy of the project, or a database of its own, changed by the
    // statements. Returns its path, empty when the statements failed.
    QString withSql(const QString& name, const QString& sql, bool fromProject = true) {
        const QString path = m_dir + QLatin1Char('/') + name;
        QFile::remove(path);
        if (fromProject && !QFile::copy(m_base, path))
            qFatal("cannot copy %s", qPrintable(m_base));
        QFile(path).setPermissions(QFile::ReadOwner | QFile::WriteOwner);
        sqlite3* db = nullptr;
        char* err = nullptr;
        if (sqlite3_open(path.toUtf8().constData(), &db) != SQLITE_OK ||
            sqlite3_exec(db, ("PRAGMA synchronous = OFF;" + sql).toUtf8().constData(), nullptr,
                         nullptr, &err) != SQLITE_OK)
            m_errors << name + QStringLiteral(": ") + QString::fromUtf8(err ? err : "cannot open");
        else
            m_files << path;
        sqlite3_free(err);
        sqlite3_close(db);
        return m_files.contains(path) ? path : QString();
    }

private:
    QString m_base, m_dir;
    QByteArray m_bytes;
    int m_pageSize = 4096;
    QStringList m_files, m_errors;
};

quint32 bigEndian(const QByteArray& b, qsizetype at, int bytes) {
    quint32 v = 0;
    for (int i = 0; i < bytes; ++i)
        v = (v << 8) | quint8(b.at(at + i));
    return v;
}

// The byte ranges that hold the schema's records: the cells of page 1 and,
// once the schema outgrows it, of the pages below it.
QList<QPair<int, int>> schemaCells(const QByteArray& b, int pageSize) {
    QList<QPair<int, int>> ranges;
    QList<quint32> pages = {1};
    for (int i = 0; i < pages.size(); ++i) {
        const int start = int(pages.at(i) - 1) * pageSize;
        const int header = start + (pages.at(i) == 1 ? 100 : 0);
        const quint32 content = bigEndian(b, header + 5, 2);
        ranges << qMakePair(start + int(content == 0 ? 65536 : content), start + pageSize);
        if (quint8(b.at(header)) != 0x05) // a leaf
            continue;
        for (quint32 cell = 0; cell < bigEndian(b, header + 3, 2); ++cell)
            pages << bigEndian(b, start + bigEndian(b, header + 12 + 2 * cell, 2), 4);
        pages << bigEndian(b, header + 8, 4);
    }
    return ranges;
}

// "Table: column column; Table: column" as each table with its columns.
QList<QPair<QString, QStringList>> byTable(const char* text) {
    QList<QPair<QString, QStringList>> out;
    for (const QString& entry : QString::fromLatin1(text).split(u';')) {
        const QStringList f = entry.simplified().split(u' ');
        out.append({f.first().chopped(1), f.mid(1)});
    }
    return out;
}

// Number columns that showing a timetable reads.
const auto kNumberColumns =
    byTable("Timetable: TimeOnTop Time12Hour ClassID TutorID RoomID SubjectID PeriodFontSize "
            "ColHeadFontSize PeriodForeground UnavailableBackground; DayTitle: ProjectDayTitleID "
            "TimetableID Height Width SpecialID Pos; TimeTitle: ProjectTimeTitleID TimetableID "
            "StartTime Duration Width Height SpecialID Pos; Slot: TimetableID StartTime Duration "
            "SpecialID DayTitleID TimeTitleID; TutorSlot: SlotID TutorID; SubjectSlot: SubjectID; "
            "RoomSlot: RoomID; ClassSlot: ClassID; ProjectDayTitle: SpecialID Pos Height; "
            "ProjectTimeTitle: StartTime Duration Pos; Room: Capacity; Subject: length");

// Sizes, positions, fonts, colours and references set to extremes.
const auto kExtremeColumns = byTable(
    "Timetable: TitleFontSize PeriodFontSize ColHeadFontSize RowHeadFontSize PeriodForeground "
    "ColHeadForeground UnavailableBackground; DayTitle: Height Width Pos; TimeTitle: Height Width "
    "Duration SpecialID; Slot: TimetableID Duration SpecialID; ProjectTimeTitle: Duration; "
    "TutorSlot: TutorID; ClassSlot: SlotID; Room: Capacity; Subject: length");

// A table's id and the columns that refer to it; renumbering a row moves
// its references along, so the project stays whole around the odd id.
const auto kReferences = byTable(
    "Timetable: Slot.TimetableID DayTitle.TimetableID TimeTitle.TimetableID; Slot: "
    "TutorSlot.SlotID SubjectSlot.SlotID RoomSlot.SlotID ClassSlot.SlotID; DayTitle: "
    "Slot.DayTitleID; TimeTitle: Slot.TimeTitleID; ProjectDayTitle: DayTitle.ProjectDayTitleID; "
    "ProjectTimeTitle: TimeTitle.ProjectTimeTitleID; Tutor: Timetable.TutorID TutorSlot.TutorID "
    "SubjectsTaughtByTutor.TutorID; Class: Timetable.ClassID ClassSlot.ClassID; Room: "
    "Timetable.RoomID RoomSlot.RoomID; Subject: Timetable.SubjectID SubjectSlot.SubjectID");

const QStringList kPlaceholderTables = {"Tutor", "Subject", "Room", "Class"};

const QStringList kExtremes = {"2147483647", "-2147483648", "9223372036854775807", "22369622",
                               "-1"};

// Text that names something: the lists, headings, title bar and fonts show it.
const QStringList kNames =
    QStringLiteral("Tutor.name Tutor.DisplayName Class.name Room.name Subject.name DayTitle.DOW "
                   "ProjectDayTitle.DOW Slot.DOW Timetable.Type Timetable.Title "
                   "Timetable.PeriodFont Timetable.ColHeadFont Timetable.RowHeadFont "
                   "Timetable.TitleFont Style.TitleFont TimeTitle.StartTime")
        .split(u' ');

const QList<QPair<const char*, const char*>> kMismatches = {
    {"every-slot-twice", "CREATE TEMP TABLE t AS SELECT * FROM Slot; UPDATE t SET id = NULL; "
                         "INSERT INTO Slot SELECT * FROM t;"},
    {"every-link-twice",
     "INSERT INTO TutorSlot (SlotID, TutorID) SELECT SlotID, TutorID FROM TutorSlot; INSERT INTO "
     "ClassSlot (SlotID, ClassID) SELECT SlotID, ClassID FROM ClassSlot;"},
    {"days-twice", "CREATE TEMP TABLE t AS SELECT * FROM DayTitle; UPDATE t SET id = NULL; INSERT "
                   "INTO DayTitle SELECT * FROM t;"},
    {"no-days", "DELETE FROM DayTitle;"},
    {"no-periods", "DELETE FROM TimeTitle;"},
    {"no-calendar", "DELETE FROM ProjectDayTitle; DELETE FROM ProjectTimeTitle;"},
    {"slots-in-other-timetables", "UPDATE Slot SET TimetableID = TimetableID % 4 + 1;"},
    {"links-to-missing-slots", "DELETE FROM Slot;"},
    {"links-to-missing-resources",
     "DELETE FROM Tutor WHERE id > 1; DELETE FROM Room WHERE id > 1; DELETE FROM Class WHERE id > "
     "1; DELETE FROM Subject WHERE id > 1;"},
    {"no-placeholders", "DELETE FROM Tutor WHERE id = 1; DELETE FROM Room WHERE id = 1; DELETE "
                        "FROM Class WHERE id = 1; DELETE FROM Subject WHERE id = 1;"},
    {"no-styles", "DELETE FROM Style;"},
    {"two-timetables-one-class", "CREATE TEMP TABLE t AS SELECT * FROM Timetable WHERE id = 1; "
                                 "UPDATE t SET id = NULL; INSERT INTO Timetable SELECT * FROM t;"},
    {"unknown-types",
     "UPDATE Timetable SET Type = 'Subject' WHERE id = 1; UPDATE Timetable SET Type = 'Teacher' "
     "WHERE id = 2; UPDATE Timetable SET Type = NULL WHERE id = 3;"},
    {"special-cells", "UPDATE Slot SET SpecialID = id % 5; UPDATE TimeTitle SET SpecialID = id % "
                      "5; UPDATE DayTitle SET SpecialID = id % 5;"},
    {"same-positions", "UPDATE DayTitle SET Pos = 1; UPDATE TimeTitle SET Pos = 1;"},
    {"huge-grid",
     "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 150) INSERT INTO "
     "DayTitle (ProjectDayTitleID, TimetableID, DOW, Height, Width, SpecialID, Pos) SELECT 1, 1, "
     "'Day ' || i, 600, 600, 1, 10 + i FROM n; WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i "
     "+ 1 FROM n WHERE i < 60) INSERT INTO TimeTitle (ProjectTimeTitleID, TimetableID, StartTime, "
     "Duration, Width, Height, SpecialID, Pos) SELECT 1, 1, '13:00:00', 5, 1600, 1200, 1, 10 + i "
     "FROM n;"},
};

// A project written by a program with a collation of its own: every
// statement that sorts days by position would fail, so it is refused.
const QString kUnknownCollation =
    QStringLiteral("PRAGMA writable_schema = ON; UPDATE sqlite_master SET sql = replace(sql, 'Pos "
                   "INTEGER', 'Pos INTEGER COLLATE elsewhere') WHERE name = 'DayTitle';");

// The file's write version raised past what SQLite knows: it opens the file
// for reading only, whoever the user is.
QByteArray readOnly(QByteArray bytes) {
    bytes[18] = 3;
    return bytes;
}

// --- The sound project ------------------------------------------------------

// Books the lesson into the cell of each timetable given, as ticking it in
// the lists would mirror it.
void book(const QList<qint32>& timetables, int day, int period, const QList<qint32>& lesson) {
    for (qint32 tt : timetables) {
        const qint32 slot = slotAt(tt, day, period);
        ModMain::CreateTutorSlotRecord(slot, lesson[0]);
        ModMain::CreateSubjectSlotRecord(slot, lesson[1]);
        ModMain::CreateRoomSlotRecord(slot, lesson[2]);
        ModMain::CreateClassSlotRecord(slot, lesson[3]);
    }
}

struct Column {
    QString table, name;
    bool primaryKey = false;
    QString dropIndexes; // the statements dropping the indexes that would stop dropping it
};
// The sound project's columns, and the first real row of each table that
// others refer to (row 1 of a resource table is its placeholder).
QList<Column> gColumns;
QHash<QString, QString> gFirstId;

// Two classes, a tutor and a room with timetables in four styles, three
// lessons and a lunch: every table that showing reads has rows.
QString makeSoundProject(const TestEnv& env) {
    const QString file = env.newProjectWithCalendar(
        {"Monday", "Tuesday", "Wednesday", "Thursday", "Friday"},
        {"8:00", "9:00", "10:00", "11:00", "12:00"}, QStringLiteral("sound.VNPL"));
    if (!env.open(file))
        qFatal("cannot open %s", qPrintable(file));
    const qint32 smith = ModMain::CreateTutorRecord("Smith", "Mr Smith", "", "Head of maths");
    const qint32 jones = ModMain::CreateTutorRecord("Jones", "Ms Jones", "", "");
    const qint32 maths = ModMain::CreateSubjectRecord("Maths", 60);
    const qint32 art = ModMain::CreateSubjectRecord("Art", 60);
    const qint32 lab = ModMain::CreateRoomRecord("Lab", 30);
    const qint32 hall = ModMain::CreateRoomRecord("Hall", 200);
    const qint32 c7a = ModMain::CreateOwner("Class", "7A");
    const qint32 c8b = ModMain::CreateOwner("Class", "8B");
    value("INSERT INTO SubjectsTaughtByTutor (TutorID, SubjectID) VALUES (%1, %2)", smith, maths);
    const qint32 tt7a = ModMain::CreateTimetable("Class", c7a, 1);
    const qint32 tt8b = ModMain::CreateTimetable("Class", c8b, 2);
    const qint32 ttSmith = ModMain::CreateTimetable("Tutor", smith, 3);
    const qint32 ttLab = ModMain::CreateTimetable("Room", lab, 4);
    book({tt7a, ttSmith, ttLab}, 1, 1, {smith, maths, lab, c7a});
    book({tt7a}, 2, 2, {jones, art, hall, c7a});
    book({tt8b, ttSmith}, 3, 3, {smith, art, hall, c8b});
    value("UPDATE Slot SET SpecialID = 3 WHERE id = %1", slotAt(tt7a, 4, 4)); // lunch
    for (const QString& row :
         rows("SELECT m.name, p.name, p.pk, (SELECT group_concat('DROP INDEX \"' || i.name || "
              "'\";', '') FROM sqlite_master i, pragma_index_info(i.name) c WHERE i.type = 'index' "
              "AND i.tbl_name = m.name AND c.name = p.name COLLATE NOCASE) FROM sqlite_master m, "
              "pragma_table_info(m.name) p WHERE m.type = 'table' ORDER BY m.name, p.cid")) {
        const QStringList f = row.split(u'|');
        gColumns << Column{f[0], f[1], f[2] != QLatin1String("0"), f[3]};
    }
    for (const auto& [table, refs] : kReferences)
        gFirstId[table] = value("SELECT min(id) FROM %1 WHERE id > %2", table,
                                kPlaceholderTables.contains(table) ? 1 : 0);
    ModMain::DB().DBClose();
    return file;
}

// --- Running the child ------------------------------------------------------

bool hasSanitizerReport(const QString& err) {
    return err.contains(QLatin1String("Sanitizer")) ||
           err.contains(QLatin1String("runtime error:"));
}

// The lines of stderr worth reading: sanitizer reports with their stacks,
// else the first few lines.
QString excerpt(const QString& err) {
    const QStringList lines = err.split(u'\n', Qt::SkipEmptyParts);
    QStringList keep;
    for (const QString& l : lines)
        if (hasSanitizerReport(l) || l.startsWith(QLatin1String("    #")))
            keep << l;
    keep = (keep.isEmpty() ? lines : keep).mid(0, 24);
    return keep.isEmpty() ? QString()
                          : QStringLiteral("\n      ") + keep.join(QStringLiteral("\n      "));
}

// Shows files in children, a batch each, and collects each file's OK line or
// why it failed. A child in trouble (crashed, hung, a sanitizer report, a
// leak at exit) has each of its files shown again alone, so the blame lands
// on the file that caused it.
class ChildRunner {
public:
    explicit ChildRunner(const QString& dir) : m_dir(dir) {
        QDir().mkpath(dir);
        m_env = QProcessEnvironment::systemEnvironment();
        m_env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        m_env.insert(QStringLiteral("XDG_CONFIG_HOME"), dir);
        // Reports must reach stderr; UBSan keeps going so each finding shows.
        for (const auto& [name, options] : {std::pair{"ASAN_OPTIONS", "detect_leaks=1:exitcode=86"},
                                            std::pair{"UBSAN_OPTIONS", "print_stacktrace=1"}}) {
            const QString old = m_env.value(QLatin1String(name));
            m_env.insert(QLatin1String(name), (old.isEmpty() ? QString() : old + QLatin1Char(':')) +
                                                  QLatin1String(options));
        }
    }
    void run(const QStringList& files) {
        QList<QStringList> queue;
        for (qsizetype i = 0; i < files.size(); i += kBatch)
            queue << files.mid(i, kBatch);
        std::vector<Child> running;
        while (!queue.isEmpty() || !running.empty()) {
            while (int(running.size()) < kChildren && !queue.isEmpty())
                running.push_back(start(queue.takeFirst()));
            for (auto it = running.begin(); it != running.end();) {
                const bool done = it->process->state() == QProcess::NotRunning ||
                                  it->process->waitForFinished(20);
                if (!done && it->clock.elapsed() < kBatchSeconds * 1000) {
                    ++it;
                    continue;
                }
                if (!done) {
                    it->timedOut = true;
                    it->process->kill();
                    it->process->waitForFinished(10000);
                }
                queue << judge(*it);
                it = running.erase(it);
            }
        }
    }
    // file -> its OK line
    const QHash<QString, QString>& okLines() const { return m_ok; }
    // file -> why it failed
    const QMap<QString, QString>& failures() const { return m_failed; }

private:
    struct Child {
        std::unique_ptr<QProcess> process;
        QStringList files;
        QString output; // the file its stdout and stderr go to, so neither pipe can fill
        QElapsedTimer clock;
        bool timedOut = false;
    };
    Child start(const QStringList& files) {
        Child c{std::make_unique<QProcess>(),
                files,
                m_dir + QStringLiteral("/child-%1").arg(++m_started),
                {}};
        c.process->setProcessEnvironment(m_env);
        c.process->setStandardOutputFile(c.output + QStringLiteral(".out"));
        c.process->setStandardErrorFile(c.output + QStringLiteral(".err"));
        c.clock.start();
        c.process->start(QStringLiteral(VANTOR_TEST_BIN_DIR "/show_project"), files);
        return c;
    }
    // Returns the batches to show again.
    QList<QStringList> judge(const Child& c) {
        const QProcess& p = *c.process;
        const QStringList out = QString::fromLocal8Bit(readFile(c.output + ".out")).split(u'\n');
        const QString err = QString::fromLocal8Bit(readFile(c.output + ".err"));
        const QString why = p.error() == QProcess::FailedToStart
                                ? QStringLiteral(": show_project did not start: ") + p.errorString()
                            : c.timedOut
                                ? QStringLiteral(": hung (no end within %1 s)").arg(kBatchSeconds)
                            : p.exitStatus() == QProcess::CrashExit
                                ? QStringLiteral(": crashed")
                                : QStringLiteral(": exit code %1").arg(p.exitCode());
        const bool trouble = p.error() == QProcess::FailedToStart || c.timedOut ||
                             p.exitStatus() == QProcess::CrashExit || p.exitCode() > 1 ||
                             hasSanitizerReport(err);
        QList<QStringList> alone;
        for (const QString& file : c.files) {
            QString said;
            for (const QString& line : out)
                if (line.startsWith(QStringLiteral("OK ") + file + QLatin1Char(' ')) ||
                    line.startsWith(QStringLiteral("FAIL ") + file + QLatin1Char(' ')))
                    said = line;
            if (trouble && c.files.size() > 1)
                alone << QStringList{file};
            else if (said.startsWith(QLatin1String("FAIL ")))
                m_failed[file] = said.mid(6 + file.size()) + excerpt(err);
            else if (said.isEmpty() || trouble)
                m_failed[file] = (said.isEmpty() ? QStringLiteral("no result")
                                                 : QStringLiteral("failed after showing it")) +
                                 why + excerpt(err);
            else
                m_ok[file] = said;
        }
        return alone;
    }
    QString m_dir;
    int m_started = 0;
    QProcessEnvironment m_env;
    QHash<QString, QString> m_ok;
    QMap<QString, QString> m_failed;
};

// Makes one kind of variant; run by the test row, so only one row's files
// are on disk at a time.
using Maker = std::function<void(Spoiler&)>;

} // namespace

Q_DECLARE_METATYPE(Maker)

class TestDamaged : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() {
        m_env = std::make_unique<TestEnv>();
        m_sound = makeSoundProject(*m_env);
        QVERIFY(QFileInfo(QStringLiteral(VANTOR_TEST_BIN_DIR "/show_project")).isExecutable());
    }
    void damage_data() {
        QTest::addColumn<Maker>("make");
        // What every file's OK line must end with; empty for any count of boxes.
        QTest::addColumn<QString>("expected");
        const auto row = [](const char* name, Maker make, const QString& expected = QString()) {
            QTest::newRow(name) << make << expected;
        };
        // The control, shown twice in one child: nothing of the first showing may
        // leak into the second. Opening, four timetables and closing, no box.
        row(
            "sound project",
            [](Spoiler& s) {
                s.withBytes(QStringLiteral("sound.VNPL"), s.bytes());
                s.withBytes(QStringLiteral("sound-again.VNPL"), s.bytes());
            },
            QStringLiteral("boxes=0 actions=6"));
        row("flipped header byte", [](Spoiler& s) {
            QRandomGenerator random(kSeed);
            for (int at = 0; at < 100; ++at) {
                QByteArray b = s.bytes();
                const int mask = int(random.bounded(1, 256));
                b[at] = char(b.at(at) ^ mask);
                s.withBytes(QStringLiteral("flip-%1-x%2.VNPL")
                                .arg(at, 5, 10, QLatin1Char('0'))
                                .arg(mask, 2, 16, QLatin1Char('0')),
                            b);
            }
        });
        // Flips land on bytes in use: free space is zeros, and changing it
        // changes nothing.
        const auto flips = [](Spoiler& s, int count, const QList<int>& offsets) {
            QRandomGenerator random(kSeed);
            for (int i = 0; i < count; ++i) {
                QByteArray b = s.bytes();
                const int at = offsets.at(int(random.bounded(qsizetype(offsets.size()))));
                const int mask = int(random.bounded(1, 256));
                b[at] = char(b.at(at) ^ mask);
                s.withBytes(QStringLiteral("flip%1-at-%2-x%3.VNPL")
                                .arg(i, 2, 10, QLatin1Char('0'))
                                .arg(at, 6, 10, QLatin1Char('0'))
                                .arg(mask, 2, 16, QLatin1Char('0')),
                            b);
            }
        };
        const auto schemaBytes = [](const Spoiler& s) {
            QList<int> schema;
            for (const auto& [from, to] : schemaCells(s.bytes(), s.pageSize()))
                for (int at = from; at < to; ++at)
                    schema << at;
            return schema;
        };
        row("flipped schema byte", [=](Spoiler& s) { flips(s, 40, schemaBytes(s)); });
        row("flipped data byte", [=](Spoiler& s) {
            QList<bool> inSchema(s.bytes().size(), false);
            for (int at : schemaBytes(s))
                inSchema[at] = true;
            QList<int> data;
            for (int at = s.pageSize(); at < s.bytes().size(); ++at)
                if (s.bytes().at(at) != 0 && !inSchema.at(at))
                    data << at;
            flips(s, 80, data);
        });
        row("truncated", [](Spoiler& s) {
            QList<int> lengths = {0, 1, 100, 512};
            // Every page boundary, and the middle of every fourth page.
            for (int page = 0; page < s.pages(); ++page) {
                lengths << page * s.pageSize();
                if (page % 4 == 0)
                    lengths << page * s.pageSize() + s.pageSize() / 2;
            }
            std::sort(lengths.begin(), lengths.end());
            lengths.erase(std::unique(lengths.begin(), lengths.end()), lengths.end());
            for (int length : lengths)
                s.withBytes(QStringLiteral("cut-%1.VNPL").arg(length, 7, 10, QLatin1Char('0')),
                            s.bytes().left(length));
        });
        row("zeroed page", [](Spoiler& s) {
            for (int page = 0; page < s.pages(); ++page) {
                QByteArray b = s.bytes();
                b.replace(page * s.pageSize(), s.pageSize(), QByteArray(s.pageSize(), '\0'));
                s.withBytes(
                    QStringLiteral("zero-page-%1.VNPL").arg(page + 1, 3, 10, QLatin1Char('0')), b);
            }
        });
        row("dropped table", [](Spoiler& s) {
            QStringList tables;
            for (const Column& c : std::as_const(gColumns))
                if (!tables.contains(c.table))
                    tables << c.table;
            for (const QString& t : tables)
                s.withSql(QStringLiteral("drop-%1.VNPL").arg(t),
                          QStringLiteral("DROP TABLE %1;").arg(quotedName(t)));
        });
        row("dropped column", [](Spoiler& s) {
            for (const Column& c : std::as_const(gColumns))
                if (!c.primaryKey)
                    s.withSql(QStringLiteral("drop-%1.%2.VNPL").arg(c.table, c.name),
                              c.dropIndexes + QStringLiteral("ALTER TABLE %1 DROP COLUMN %2;")
                                                  .arg(quotedName(c.table), quotedName(c.name)));
        });
        row("null or text for a number", [](Spoiler& s) {
            const QList<QPair<QString, QString>> values = {{"null", "NULL"},
                                                           {"abc", "'abc'"},
                                                           {"empty", "''"},
                                                           {"1e999", "'1e999'"},
                                                           {"NaN", "'NaN'"}};
            for (const auto& [table, names] : kNumberColumns)
                for (const QString& name : names)
                    for (const auto& [label, value] : values)
                        s.withSql(QStringLiteral("%1.%2-%3.VNPL").arg(table, name, label),
                                  QStringLiteral("UPDATE %1 SET %2 = %3;").arg(table, name, value));
        });
        row("huge or negative number", [](Spoiler& s) {
            for (const auto& [table, names] : kExtremeColumns)
                for (const QString& name : names)
                    for (const QString& value : kExtremes)
                        s.withSql(QStringLiteral("%1.%2=%3.VNPL").arg(table, name, value),
                                  QStringLiteral("UPDATE %1 SET %2 = %3;").arg(table, name, value));
            for (const auto& [table, refs] : kReferences) {
                const QString first = gFirstId.value(table);
                for (const QString& value : kExtremes) {
                    QString sql;
                    for (const QString& ref : refs)
                        sql +=
                            QStringLiteral("UPDATE %1 SET %2 = %3 WHERE %2 = %4;")
                                .arg(ref.section(u'.', 0, 0), ref.section(u'.', 1), value, first);
                    sql += QStringLiteral("UPDATE %1 SET id = %2 WHERE id = %3;")
                               .arg(table, value, first);
                    s.withSql(QStringLiteral("%1.id=%2.VNPL").arg(table, value), sql);
                }
            }
        });
        row("10,000-character name", [](Spoiler& s) {
            const QString name = QStringLiteral("Wide%1").arg(QString(9996, u'W'));
            for (const QString& column : kNames)
                s.withSql(QStringLiteral("long-%1.VNPL").arg(column),
                          QStringLiteral("UPDATE %1 SET %2 = '%3';")
                              .arg(column.section(u'.', 0, 0), column.section(u'.', 1), name));
        });
        row("not quite a project", [](Spoiler& s) {
            s.withBytes(QStringLiteral("text.VNPL"),
                        QByteArray("Timetable for 7A\nMonday: Maths, Art\n").repeated(200));
            s.withBytes(QStringLiteral("empty.VNPL"), QByteArray());
            s.withFolder(QStringLiteral("folder.VNPL"));
            s.withSql(QStringLiteral("other-database.VNPL"),
                      QStringLiteral("CREATE TABLE Notes (id INTEGER PRIMARY KEY, text TEXT); "
                                     "INSERT INTO Notes (text) VALUES ('Monday: Maths');"),
                      false);
            s.withSql(QStringLiteral("newer-project.VNPL"),
                      QStringLiteral("ALTER TABLE Slot ADD COLUMN Colour INTEGER; CREATE TABLE "
                                     "Holiday (id INTEGER PRIMARY KEY, Day TEXT);"));
            s.withSql(QStringLiteral("wal-journal.VNPL"),
                      QStringLiteral("PRAGMA journal_mode = WAL;"));
            s.withSql(QStringLiteral("unknown-collation.VNPL"), kUnknownCollation);
            const QString path =
                s.withSql(QStringLiteral("read-only-unknown-collation.VNPL"), kUnknownCollation);
            if (!path.isEmpty())
                writeFile(path, readOnly(readFile(path)));
        });
        // A project the program may only read says so once, on opening.
        row(
            "read-only",
            [](Spoiler& s) { s.withBytes(QStringLiteral("read-only.VNPL"), readOnly(s.bytes())); },
            QStringLiteral("boxes=1 actions=6"));
        // Rows that do not fit together, as a crash or another program may leave
        // them: every table is there and the file itself is sound.
        row("rows that do not fit together", [](Spoiler& s) {
            for (const auto& [name, sql] : kMismatches)
                s.withSql(QStringLiteral("%1.VNPL").arg(QLatin1String(name)), QLatin1String(sql));
        });
    }
    void damage() {
        QFETCH(Maker, make);
        QFETCH(QString, expected);
        const QString dir =
            m_env->path(QStringLiteral("variants/") +
                        QString::fromUtf8(QTest::currentDataTag()).replace(u' ', u'-'));
        Spoiler spoiler(m_sound, dir);
        make(spoiler);
        QVERIFY2(spoiler.errors().isEmpty(), qPrintable(spoiler.errors().join(u'\n')));
        const QStringList files = spoiler.files();
        QVERIFY(!files.isEmpty());
        ChildRunner runner(dir + QStringLiteral("-children"));
        runner.run(files);
        QStringList bad;
        for (auto it = runner.failures().cbegin(); it != runner.failures().cend(); ++it)
            bad << QFileInfo(it.key()).fileName() + QStringLiteral(": ") + it.value();
        for (const QString& file : files) {
            const QString line = runner.okLines().value(file);
            if (!expected.isEmpty() && !line.isEmpty() &&
                !line.endsWith(QLatin1Char(' ') + expected))
                bad << QFileInfo(file).fileName() +
                           QStringLiteral(": expected %1, got: %2").arg(expected, line);
        }
        QDir(dir).removeRecursively();
        QDir(dir + QStringLiteral("-children")).removeRecursively();
        // Every file has its verdict: nothing was lost between the batches.
        QCOMPARE(runner.okLines().size() + runner.failures().size(), files.size());
        // QFAIL, not QVERIFY2, which would cut the list short.
        if (!bad.isEmpty())
            QFAIL(
                qPrintable(QStringLiteral("%1 of %2 files:\n  ").arg(bad.size()).arg(files.size()) +
                           bad.join(QStringLiteral("\n  "))));
    }

private:
    std::unique_ptr<TestEnv> m_env;
    QString m_sound;
};

QTEST_MAIN(TestDamaged)
#include "test_damaged.moc"
