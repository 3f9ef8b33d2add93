// Damaged and foreign project files. A small sound project is spoilt in a few
// hundred ways, one data row per kind of damage, and each copy is opened and
// shown by show_project in a child process. Whatever is wrong with a file,
// the program must refuse it with one box or show it: never crash, hang, trip
// a sanitizer, show two boxes for one action, or write to a file it only shows.

#include "store/ModMain.h"
#include "store/Records.h"
#include "support/TestSupport.h"
#include "timetable/SlotLookup.h"
#include "timetable/TimetableChoices.h"
#include "timetable/TimetableRecords.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QProcess>
#include <QRandomGenerator>
#include <QtTest>
#include <algorithm>
#include <functional>
#include <memory>
#include <sqlite3.h>
#include <vector>

using namespace TestSupport;

namespace {
const QStringList kWeek = {"Monday", "Tuesday", "Wednesday", "Thursday", "Friday"};
const QStringList kTimes = {"8:00", "9:00", "10:00", "11:00", "12:00"};

// Twenty files per child and two children at a time keep a few hundred files
// well under a minute; a child that takes longer than this has hung.
constexpr int kBatch = 20;
constexpr int kChildren = 2;
constexpr int kBatchSeconds = 60;
// The same damage every run, so a failure can be reproduced.
constexpr quint32 kSeed = 20240611;

// Every row of a statement on a file, each as its fields' text.
QList<QStringList> query(const QString& file, const QString& sql) {
    sqlite3* db = nullptr;
    sqlite3_stmt* st = nullptr;
    QList<QStringList> rows;
    if (sqlite3_open_v2(file.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr) !=
            SQLITE_OK ||
        sqlite3_prepare_v2(db, sql.toUtf8().constData(), -1, &st, nullptr) != SQLITE_OK)
        qFatal("%s: %s", qPrintable(sql), sqlite3_errmsg(db));
    while (sqlite3_step(st) == SQLITE_ROW) {
        QStringList row;
        for (int i = 0; i < sqlite3_column_count(st); ++i)
            row << QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, i)));
        rows << row;
    }
    sqlite3_finalize(st);
    sqlite3_close(db);
    return rows;
}

QString quotedName(const QString& name) {
    return QLatin1Char('"') + QString(name).replace(u'"', QStringLiteral("\"\"")) +
           QLatin1Char('"');
}

// --- The sound project ------------------------------------------------------

qint32 projectTitle(const char* table, int pos) {
    return ModMain::DB()
        .Execute(QStringLiteral("SELECT id FROM Project%1 WHERE Pos = %2").arg(table).arg(pos))
        .Field(qint16(0))
        .toInt();
}

struct Booking {
    qint32 tutor, subject, room, klass;
};

// Books the lesson into the cell of each timetable given, as ticking it in
// the lists would mirror it.
void book(const QList<qint32>& timetables, int dayPos, int periodPos, const Booking& b) {
    for (qint32 tt : timetables) {
        const qint32 slot = ModMain::DoCreateGetSlot(tt, projectTitle("TimeTitle", periodPos),
                                                     projectTitle("DayTitle", dayPos));
        ModMain::CreateTutorSlotRecord(slot, b.tutor);
        ModMain::CreateSubjectSlotRecord(slot, b.subject);
        ModMain::CreateRoomSlotRecord(slot, b.room);
        ModMain::CreateClassSlotRecord(slot, b.klass);
    }
}

// Two classes, a tutor and a room with timetables in four styles, three
// lessons and a lunch: every table that showing reads has rows.
QString makeSoundProject(const TestEnv& env) {
    const QString file = env.newProjectWithCalendar(kWeek, kTimes, QStringLiteral("sound.VNPL"));
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
    ModMain::DB().Execute(
        QStringLiteral("INSERT INTO SubjectsTaughtByTutor (TutorID, SubjectID) VALUES (%1, %2)")
            .arg(smith)
            .arg(maths));
    const qint32 tt7a = ModMain::CreateTimetable("Class", c7a, 1);
    const qint32 tt8b = ModMain::CreateTimetable("Class", c8b, 2);
    const qint32 ttSmith = ModMain::CreateTimetable("Tutor", smith, 3);
    const qint32 ttLab = ModMain::CreateTimetable("Room", lab, 4);
    book({tt7a, ttSmith, ttLab}, 1, 1, {smith, maths, lab, c7a});
    book({tt7a}, 2, 2, {jones, art, hall, c7a});
    book({tt8b, ttSmith}, 3, 3, {smith, art, hall, c8b});
    const qint32 lunch =
        ModMain::DoCreateGetSlot(tt7a, projectTitle("TimeTitle", 4), projectTitle("DayTitle", 4));
    ModMain::DB().Execute(QStringLiteral("UPDATE Slot SET SpecialID = 3 WHERE id = %1").arg(lunch));
    ModMain::DB().DBClose();
    return file;
}

// --- Making the variants ----------------------------------------------------

struct Column {
    QString table, name;
    bool primaryKey = false;
};

// Copies of the sound project, each spoilt in one way, in a folder per kind.
class Spoiler {
public:
    Spoiler(const QString& base, const QString& dir)
        : m_base(base), m_dir(dir), m_bytes(readFile(base)) {
        QDir().mkpath(dir);
        const int size = (quint8(m_bytes.at(16)) << 8) | quint8(m_bytes.at(17));
        m_pageSize = size == 1 ? 65536 : size;
    }

    const QString& base() const { return m_base; }
    int pageSize() const { return m_pageSize; }
    int pages() const { return int(m_bytes.size() / m_pageSize); }
    const QByteArray& bytes() const { return m_bytes; }
    QStringList files() const { return m_files; }
    // Statements that would not run: the variant they meant is missing.
    QStringList errors() const { return m_errors; }

    void withBytes(const QString& name, const QByteArray& content) {
        const QString path = m_dir + QLatin1Char('/') + name;
        writeFile(path, content);
        m_files << path;
    }

    // A copy of the project changed by the statements.
    // Returns the copy's path, empty when the statements failed.
    QString withSql(const QString& name, const QString& sql) {
        const QString path = m_dir + QLatin1Char('/') + name;
        QFile::remove(path);
        if (!QFile::copy(m_base, path))
            qFatal("cannot copy %s", qPrintable(m_base));
        QFile(path).setPermissions(QFile::ReadOwner | QFile::WriteOwner);
        sqlite3* db = nullptr;
        char* err = nullptr;
        if (sqlite3_open_v2(path.toUtf8().constData(), &db, SQLITE_OPEN_READWRITE, nullptr) !=
                SQLITE_OK ||
            sqlite3_exec(db, ("PRAGMA synchronous = OFF;" + sql).toUtf8().constData(), nullptr,
                         nullptr, &err) != SQLITE_OK)
            m_errors << name + QStringLiteral(": ") + QString::fromUtf8(err ? err : "cannot open");
        else
            m_files << path;
        sqlite3_free(err);
        sqlite3_close(db);
        return m_files.contains(path) ? path : QString();
    }

    // A database of its own, not made from the project.
    void withDatabase(const QString& name, const QString& sql) {
        const QString path = m_dir + QLatin1Char('/') + name;
        QFile::remove(path);
        sqlite3* db = nullptr;
        if (sqlite3_open(path.toUtf8().constData(), &db) != SQLITE_OK ||
            sqlite3_exec(db, sql.toUtf8().constData(), nullptr, nullptr, nullptr) != SQLITE_OK)
            m_errors << name + QStringLiteral(": ") + QString::fromUtf8(sqlite3_errmsg(db));
        else
            m_files << path;
        sqlite3_close(db);
    }

    void withFolder(const QString& name) {
        const QString path = m_dir + QLatin1Char('/') + name;
        QDir().mkpath(path);
        m_files << path;
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

QList<Column> columnsOf(const QString& file) {
    QList<Column> columns;
    for (const QStringList& t :
         query(file, QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table' "
                                    "ORDER BY name")))
        for (const QStringList& c :
             query(file, QStringLiteral("PRAGMA table_info(%1)").arg(quotedName(t.at(0)))))
            columns << Column{t.at(0), c.at(1), c.at(5) != QLatin1String("0")};
    return columns;
}

// The statements that drop a column, with the indexes that would stop it.
QString dropColumnSql(const QString& file, const Column& c) {
    QString sql;
    for (const QStringList& index :
         query(file, QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'index' AND "
                                    "tbl_name = '%1'")
                         .arg(c.table)))
        for (const QStringList& part :
             query(file, QStringLiteral("PRAGMA index_info(%1)").arg(quotedName(index.at(0)))))
            if (part.at(2).compare(c.name, Qt::CaseInsensitive) == 0)
                sql += QStringLiteral("DROP INDEX %1;").arg(quotedName(index.at(0)));
    return sql + QStringLiteral("ALTER TABLE %1 DROP COLUMN %2;")
                     .arg(quotedName(c.table), quotedName(c.name));
}

// Number columns that showing a timetable reads, by table.
const QList<QPair<QString, QStringList>> kNumberColumns = {
    {"Timetable",
     {"TimeOnTop", "Time12Hour", "ClassID", "TutorID", "RoomID", "SubjectID", "PeriodFontSize",
      "ColHeadFontSize", "PeriodForeground", "UnavailableBackground"}},
    {"DayTitle", {"ProjectDayTitleID", "TimetableID", "Height", "Width", "SpecialID", "Pos"}},
    {"TimeTitle",
     {"ProjectTimeTitleID", "TimetableID", "StartTime", "Duration", "Width", "Height", "SpecialID",
      "Pos"}},
    {"Slot", {"TimetableID", "StartTime", "Duration", "SpecialID", "DayTitleID", "TimeTitleID"}},
    {"TutorSlot", {"SlotID", "TutorID"}},
    {"SubjectSlot", {"SubjectID"}},
    {"RoomSlot", {"RoomID"}},
    {"ClassSlot", {"ClassID"}},
    {"ProjectDayTitle", {"SpecialID", "Pos", "Height"}},
    {"ProjectTimeTitle", {"StartTime", "Duration", "Pos"}},
    {"Room", {"Capacity"}},
    {"Subject", {"length"}},
};

// Sizes, positions, fonts, colours and references set to extremes.
const QList<QPair<QString, QStringList>> kExtremeColumns = {
    {"Timetable",
     {"TitleFontSize", "PeriodFontSize", "ColHeadFontSize", "RowHeadFontSize", "PeriodForeground",
      "ColHeadForeground", "UnavailableBackground"}},
    {"DayTitle", {"Height", "Width", "Pos"}},
    {"TimeTitle", {"Height", "Width", "Duration", "SpecialID"}},
    {"Slot", {"TimetableID", "Duration", "SpecialID"}},
    {"ProjectTimeTitle", {"Duration"}},
    {"TutorSlot", {"TutorID"}},
    {"ClassSlot", {"SlotID"}},
    {"Room", {"Capacity"}},
    {"Subject", {"length"}},
};

// A table's id and the columns that refer to it; renumbering a row moves
// its references along, so the project stays whole around the odd id.
const QList<QPair<QString, QStringList>> kReferences = {
    {"Timetable", {"Slot.TimetableID", "DayTitle.TimetableID", "TimeTitle.TimetableID"}},
    {"Slot", {"TutorSlot.SlotID", "SubjectSlot.SlotID", "RoomSlot.SlotID", "ClassSlot.SlotID"}},
    {"DayTitle", {"Slot.DayTitleID"}},
    {"TimeTitle", {"Slot.TimeTitleID"}},
    {"ProjectDayTitle", {"DayTitle.ProjectDayTitleID"}},
    {"ProjectTimeTitle", {"TimeTitle.ProjectTimeTitleID"}},
    {"Tutor", {"Timetable.TutorID", "TutorSlot.TutorID", "SubjectsTaughtByTutor.TutorID"}},
    {"Class", {"Timetable.ClassID", "ClassSlot.ClassID"}},
    {"Room", {"Timetable.RoomID", "RoomSlot.RoomID"}},
    {"Subject", {"Timetable.SubjectID", "SubjectSlot.SubjectID"}},
};

const QStringList kPlaceholderTables = {"Tutor", "Subject", "Room", "Class"};

const QStringList kExtremes = {"2147483647", "-2147483648", "9223372036854775807", "22369622",
                               "-1"};

// Text that names something: the lists, headings, title bar and fonts show it.
const QStringList kNames = {
    "Tutor.name",
    "Tutor.DisplayName",
    "Class.name",
    "Room.name",
    "Subject.name",
    "DayTitle.DOW",
    "ProjectDayTitle.DOW",
    "Slot.DOW",
    "Timetable.Type",
    "Timetable.Title",
    "Timetable.PeriodFont",
    "Timetable.ColHeadFont",
    "Timetable.RowHeadFont",
    "Timetable.TitleFont",
    "Style.TitleFont",
    "TimeTitle.StartTime",
};

const QList<QPair<const char*, const char*>> kMismatches = {
    {"every-slot-twice", "INSERT INTO Slot (TimetableID, StartTime, Duration, DOW, SpecialID, "
                         "DayTitleID, TimeTitleID) SELECT TimetableID, StartTime, Duration, DOW, "
                         "SpecialID, DayTitleID, TimeTitleID FROM Slot;"},
    {"every-link-twice", "INSERT INTO TutorSlot (SlotID, TutorID) SELECT SlotID, TutorID FROM "
                         "TutorSlot; INSERT INTO ClassSlot (SlotID, ClassID) SELECT SlotID, "
                         "ClassID FROM ClassSlot;"},
    {"days-twice", "INSERT INTO DayTitle (ProjectDayTitleID, TimetableID, DOW, Height, Width, "
                   "SpecialID, Pos) SELECT ProjectDayTitleID, TimetableID, DOW, Height, Width, "
                   "SpecialID, Pos FROM DayTitle;"},
    {"no-days", "DELETE FROM DayTitle;"},
    {"no-periods", "DELETE FROM TimeTitle;"},
    {"no-calendar", "DELETE FROM ProjectDayTitle; DELETE FROM ProjectTimeTitle;"},
    {"slots-in-other-timetables", "UPDATE Slot SET TimetableID = TimetableID % 4 + 1;"},
    {"links-to-missing-slots", "DELETE FROM Slot;"},
    {"links-to-missing-resources",
     "DELETE FROM Tutor WHERE id > 1; DELETE FROM Room WHERE id > 1; DELETE FROM Class WHERE "
     "id > 1; DELETE FROM Subject WHERE id > 1;"},
    {"no-placeholders", "DELETE FROM Tutor WHERE id = 1; DELETE FROM Room WHERE id = 1; DELETE "
                        "FROM Class WHERE id = 1; DELETE FROM Subject WHERE id = 1;"},
    {"no-styles", "DELETE FROM Style;"},
    {"two-timetables-one-class", "INSERT INTO Timetable SELECT NULL, Type, TimeOnTop, Time12Hour, "
                                 "Title, ClassID, RoomID, TutorID, SubjectID, TitleFont, "
                                 "TitleFontSize, TitleForeground, ColHeadFont, ColHeadFontSize, "
                                 "ColHeadForeground, RowHeadFont, RowHeadFontSize, "
                                 "RowHeadForeground, PeriodFont, PeriodFontSize, PeriodForeground, "
                                 "UnavailableBackground, UnavailableForeground FROM Timetable "
                                 "WHERE id = 1;"},
    {"unknown-types", "UPDATE Timetable SET Type = 'Subject' WHERE id = 1; UPDATE Timetable SET "
                      "Type = 'Teacher' WHERE id = 2; UPDATE Timetable SET Type = NULL WHERE id "
                      "= 3;"},
    {"special-cells", "UPDATE Slot SET SpecialID = id % 5; UPDATE TimeTitle SET SpecialID = id % "
                      "5; UPDATE DayTitle SET SpecialID = id % 5;"},
    {"same-positions", "UPDATE DayTitle SET Pos = 1; UPDATE TimeTitle SET Pos = 1;"},
    {"huge-grid",
     "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 150) "
     "INSERT INTO DayTitle (ProjectDayTitleID, TimetableID, DOW, Height, Width, SpecialID, Pos) "
     "SELECT 1, 1, 'Day ' || i, 600, 600, 1, 10 + i FROM n; "
     "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 60) "
     "INSERT INTO TimeTitle (ProjectTimeTitleID, TimetableID, StartTime, Duration, Width, "
     "Height, SpecialID, Pos) SELECT 1, 1, '13:00:00', 5, 1600, 1200, 1, 10 + i FROM n;"},
};

// A project written by a program with a collation of its own: every
// statement that sorts days by position would fail, so it is refused.
const QString kUnknownCollation =
    QStringLiteral("PRAGMA writable_schema = ON; UPDATE sqlite_master SET sql = replace(sql, "
                   "'Pos INTEGER', 'Pos INTEGER COLLATE elsewhere') WHERE name = 'DayTitle';");

// The file's write version raised past what SQLite knows: it opens the file
// for reading only, whoever the user is.
QByteArray readOnly(QByteArray bytes) {
    bytes[18] = 3;
    return bytes;
}

// --- Running the child ------------------------------------------------------

bool isSanitizerReport(const QString& line) {
    return line.contains(QLatin1String("AddressSanitizer")) ||
           line.contains(QLatin1String("LeakSanitizer")) ||
           line.contains(QLatin1String("runtime error:"));
}

bool hasSanitizerReport(const QStringList& lines) {
    return std::any_of(lines.cbegin(), lines.cend(), isSanitizerReport);
}

// The lines of stderr worth reading: sanitizer reports with their stacks,
// else the last few lines.
QString excerpt(const QStringList& lines) {
    QStringList keep;
    for (const QString& l : lines)
        if (isSanitizerReport(l) || l.startsWith(QLatin1String("    #")) ||
            l.startsWith(QLatin1String("SUMMARY")))
            keep << l;
    if (keep.isEmpty())
        for (const QString& l : lines)
            if (!l.trimmed().isEmpty())
                keep << l;
    if (keep.size() > 24)
        keep = keep.mid(0, 24);
    return keep.isEmpty() ? QString()
                          : QStringLiteral("\n      ") + keep.join(QStringLiteral("\n      "));
}

// Shows files in children, a batch each; collects each file's OK line or
// the reason it failed.
class ChildRunner {
public:
    explicit ChildRunner(const QString& configDir) {
        m_env = QProcessEnvironment::systemEnvironment();
        m_env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        m_env.insert(QStringLiteral("XDG_CONFIG_HOME"), configDir);
        const auto add = [&](const char* name, const char* options) {
            const QString old = m_env.value(QString::fromLatin1(name));
            m_env.insert(QString::fromLatin1(name),
                         (old.isEmpty() ? QString() : old + QLatin1Char(':')) +
                             QString::fromLatin1(options));
        };
        // Reports must reach stderr; UBSan keeps going so each finding shows.
        add("ASAN_OPTIONS", "detect_leaks=1:exitcode=86");
        add("UBSAN_OPTIONS", "print_stacktrace=1");
    }

    void run(const QStringList& files) {
        QList<QStringList> queue;
        for (qsizetype i = 0; i < files.size(); i += kBatch)
            queue << files.mid(i, kBatch);
        std::vector<Child> running;
        QEventLoop loop;
        QTimer tick;
        QObject::connect(&tick, &QTimer::timeout, &loop, &QEventLoop::quit);
        tick.start(50);
        while (!queue.isEmpty() || !running.empty()) {
            while (int(running.size()) < kChildren && !queue.isEmpty())
                running.push_back(start(queue.takeFirst(), loop));
            loop.exec();
            for (auto it = running.begin(); it != running.end();) {
                if (it->process->state() != QProcess::NotRunning &&
                    it->clock.elapsed() > kBatchSeconds * 1000) {
                    it->timedOut = true;
                    it->process->kill();
                    it->process->waitForFinished(10000);
                }
                if (it->process->state() == QProcess::NotRunning) {
                    queue << judge(*it);
                    it = running.erase(it);
                } else {
                    ++it;
                }
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
        QElapsedTimer clock;
        bool timedOut = false;
    };

    Child start(const QStringList& files, QEventLoop& loop) {
        Child c;
        c.process = std::make_unique<QProcess>();
        c.process->setProcessEnvironment(m_env);
        QObject::connect(c.process.get(), &QProcess::finished, &loop, &QEventLoop::quit);
        c.files = files;
        c.clock.start();
        c.process->start(QStringLiteral(VANTOR_TEST_BIN_DIR "/show_project"), files);
        return c;
    }

    // The file the child was showing when it died or hung takes the blame,
    // and the files it never reached go back to the queue as a batch. Trouble
    // after the last file (a leak report at exit) cannot be pinned on one
    // file, so each is then shown again in a child of its own.
    QList<QStringList> judge(Child& c) {
        QProcess& p = *c.process;
        const QStringList out = QString::fromLocal8Bit(p.readAllStandardOutput()).split(u'\n');
        // Stderr in sections: before the first file, one per file, after the last.
        QHash<QString, QStringList> section;
        QString current = QStringLiteral("== start");
        for (const QString& line : QString::fromLocal8Bit(p.readAllStandardError()).split(u'\n')) {
            if (line.startsWith(QLatin1String("== ")))
                current = line == QLatin1String("== end") ? line : line.mid(3);
            else
                section[current] << line;
        }
        const QStringList outside =
            section.value(QStringLiteral("== start")) + section.value(QStringLiteral("== end"));
        const bool trouble = c.timedOut || p.exitStatus() == QProcess::CrashExit ||
                             (p.exitCode() != 0 && p.exitCode() != 1) ||
                             hasSanitizerReport(outside);

        QStringList unreached;
        QHash<QString, QString> settled; // file -> its OK line
        bool blamed = false;
        for (const QString& file : c.files) {
            QString said;
            for (const QString& line : out)
                if (line.startsWith(QStringLiteral("OK ") + file + QLatin1Char(' ')) ||
                    line.startsWith(QStringLiteral("FAIL ") + file + QLatin1Char(' ')))
                    said = line;
            const QStringList& err = section[file];
            if (said.isEmpty() && blamed) {
                unreached << file;
            } else if (said.isEmpty()) {
                blamed = true;
                QString reason = QStringLiteral("no result") + why(c);
                if (p.error() == QProcess::FailedToStart)
                    reason = QStringLiteral("show_project did not start: ") + p.errorString();
                else if (hasSanitizerReport(err))
                    reason = QStringLiteral("sanitizer report, then ") + reason;
                m_failed[file] = reason + excerpt(err + outside);
            } else if (said.startsWith(QLatin1String("FAIL "))) {
                m_failed[file] = said.mid(6 + file.size()) + excerpt(err);
            } else if (hasSanitizerReport(err)) {
                m_failed[file] = QStringLiteral("sanitizer report") + excerpt(err);
            } else {
                settled.insert(file, said);
            }
        }
        const bool atExit = trouble && !blamed;
        for (auto it = settled.cbegin(); it != settled.cend(); ++it) {
            const QString& file = it.key();
            if (!atExit)
                m_ok[file] = it.value();
            else if (c.files.size() == 1)
                m_failed[file] = QStringLiteral("failed after showing it") + why(c) +
                                 excerpt(section[file] + outside);
        }
        QList<QStringList> again;
        if (!unreached.isEmpty())
            again << unreached;
        if (atExit && c.files.size() > 1)
            for (auto it = settled.cbegin(); it != settled.cend(); ++it)
                again << QStringList{it.key()};
        return again;
    }

    static QString why(const Child& c) {
        if (c.timedOut)
            return QStringLiteral(": hung (no end within %1 s)").arg(kBatchSeconds);
        if (c.process->exitStatus() == QProcess::CrashExit)
            return QStringLiteral(": crashed");
        return QStringLiteral(": exit code %1").arg(c.process->exitCode());
    }

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
    void initTestCase();
    void damage_data();
    void damage();

private:
    std::unique_ptr<TestEnv> m_env;
    QString m_sound;
};

void TestDamaged::initTestCase() {
    m_env = std::make_unique<TestEnv>();
    m_sound = makeSoundProject(*m_env);
    QVERIFY(QFileInfo(QStringLiteral(VANTOR_TEST_BIN_DIR "/show_project")).isExecutable());
}

void TestDamaged::damage_data() {
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
            s.withBytes(QStringLiteral("zero-page-%1.VNPL").arg(page + 1, 3, 10, QLatin1Char('0')),
                        b);
        }
    });

    row("dropped table", [](Spoiler& s) {
        QStringList tables;
        for (const Column& c : columnsOf(s.base()))
            if (!tables.contains(c.table))
                tables << c.table;
        for (const QString& t : tables)
            s.withSql(QStringLiteral("drop-%1.VNPL").arg(t),
                      QStringLiteral("DROP TABLE %1;").arg(quotedName(t)));
    });
    row("dropped column", [](Spoiler& s) {
        for (const Column& c : columnsOf(s.base()))
            if (!c.primaryKey)
                s.withSql(QStringLiteral("drop-%1.%2.VNPL").arg(c.table, c.name),
                          dropColumnSql(s.base(), c));
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
            // The first real row: row 1 of a resource table is its placeholder.
            const int placeholder = kPlaceholderTables.contains(table) ? 1 : 0;
            const QString first =
                query(s.base(), QStringLiteral("SELECT min(id) FROM %1 WHERE id > %2")
                                    .arg(table)
                                    .arg(placeholder))
                    .value(0)
                    .value(0);
            for (const QString& value : kExtremes) {
                QString sql;
                for (const QString& ref : refs)
                    sql += QStringLiteral("UPDATE %1 SET %2 = %3 WHERE %2 = %4;")
                               .arg(ref.section(u'.', 0, 0), ref.section(u'.', 1), value, first);
                sql +=
                    QStringLiteral("UPDATE %1 SET id = %2 WHERE id = %3;").arg(table, value, first);
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
        s.withDatabase(QStringLiteral("other-database.VNPL"),
                       QStringLiteral("CREATE TABLE Notes (id INTEGER PRIMARY KEY, text TEXT); "
                                      "INSERT INTO Notes (text) VALUES ('Monday: Maths');"));
        s.withSql(QStringLiteral("newer-project.VNPL"),
                  QStringLiteral("ALTER TABLE Slot ADD COLUMN Colour INTEGER; "
                                 "CREATE TABLE Holiday (id INTEGER PRIMARY KEY, Day TEXT);"));
        s.withSql(QStringLiteral("wal-journal.VNPL"), QStringLiteral("PRAGMA journal_mode = WAL;"));
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

void TestDamaged::damage() {
    QFETCH(Maker, make);
    QFETCH(QString, expected);
    const QString dir = m_env->path(QStringLiteral("variants/") +
                                    QString::fromUtf8(QTest::currentDataTag()).replace(u' ', u'-'));
    Spoiler spoiler(m_sound, dir);
    make(spoiler);
    QVERIFY2(spoiler.errors().isEmpty(), qPrintable(spoiler.errors().join(u'\n')));
    const QStringList files = spoiler.files();
    QVERIFY(!files.isEmpty());

    ChildRunner runner(m_env->path(QStringLiteral("child-config")));
    runner.run(files);

    QStringList bad;
    for (auto it = runner.failures().cbegin(); it != runner.failures().cend(); ++it)
        bad << QFileInfo(it.key()).fileName() + QStringLiteral(": ") + it.value();
    for (const QString& file : files) {
        const QString line = runner.okLines().value(file);
        if (!expected.isEmpty() && !line.isEmpty() && !line.endsWith(QLatin1Char(' ') + expected))
            bad << QFileInfo(file).fileName() +
                       QStringLiteral(": expected %1, got: %2").arg(expected, line);
    }
    bad.removeDuplicates();
    // How the files went, for whoever reads the log: refused with a box or shown.
    QMap<QString, int> outcomes;
    for (const QString& line : runner.okLines())
        ++outcomes[line.section(u' ', -2)];
    QStringList summary;
    for (auto it = outcomes.cbegin(); it != outcomes.cend(); ++it)
        summary << QStringLiteral("%1 x %2").arg(it.value()).arg(it.key());
    qInfo("%lld files: %s", qlonglong(files.size()),
          qPrintable(summary.join(QStringLiteral(", "))));
    QDir(dir).removeRecursively();
    // Every file has its verdict: nothing was lost between the batches.
    QCOMPARE(runner.okLines().size() + runner.failures().size(), files.size());
    // QFAIL, not QVERIFY2, which would cut the list short.
    if (!bad.isEmpty())
        QFAIL(qPrintable(QStringLiteral("%1 of %2 files:\n  ").arg(bad.size()).arg(files.size()) +
                         bad.join(QStringLiteral("\n  "))));
}

QTEST_MAIN(TestDamaged)
#include "test_damaged.moc"
