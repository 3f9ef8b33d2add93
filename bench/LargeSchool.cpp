#include "LargeSchool.h"

#include "autofill/AutoFillState.h"
#include "common/Common.h"
#include "store/ModMain.h"
#include "store/Project.h"
#include "store/Transaction.h"
#include "store/clsSQLite.h"
#include "timetable/TimetableRecords.h"

#include <QApplication>
#include <benchmark/benchmark.h>

#include <QFile>
#include <QStringList>
#include <QVector>

namespace Bench {

namespace {
struct Calendar {
    QVector<int> dayTitle;  // per project day
    QVector<int> timeTitle; // per project period
};

int insert(clsSQLite& db, const QString& sql) {
    db.Execute(sql);
    return db.GetInsertID();
}

Calendar addTimetable(clsSQLite& db, const QString& type, int classID, int roomID, int tutorID,
                      const QVector<int>& projectDays, const QVector<int>& projectTimes, int& id) {
    id = insert(db, QStringLiteral("INSERT INTO Timetable (Type,TimeOnTop,Title,ClassID,RoomID,"
                                   "TutorID,SubjectID,TitleFont,TitleFontSize,TitleForeground,"
                                   "ColHeadFont,ColHeadFontSize,ColHeadForeground,RowHeadFont,"
                                   "RowHeadFontSize,RowHeadForeground,PeriodFont,PeriodFontSize,"
                                   "PeriodForeground,UnavailableBackground,UnavailableForeground) "
                                   "VALUES ('%1','True','Title',%2,%3,%4,1,'DejaVu Sans',14,0,"
                                   "'DejaVu Sans',9,0,'DejaVu Sans',9,0,'DejaVu Sans',8,0,"
                                   "16446688,0)")
                        .arg(type)
                        .arg(classID)
                        .arg(roomID)
                        .arg(tutorID));
    Calendar cal;
    for (int p = 0; p < projectTimes.size(); ++p)
        cal.timeTitle << insert(
            db, QStringLiteral("INSERT INTO TimeTitle (ProjectTimeTitleID, "
                               "TimetableID,StartTime,Duration,Width,Height,"
                               "SpecialID,Pos) VALUES (%1,%2, '%3', '60', "
                               "1600, 1200, 1, %4);")
                    .arg(projectTimes[p])
                    .arg(id)
                    .arg(QStringLiteral("%1:00:00 ").arg(8 + p, 2, 10, QLatin1Char('0')))
                    .arg(p + 1));
    for (int d = 0; d < projectDays.size(); ++d)
        cal.dayTitle << insert(db, QStringLiteral("INSERT INTO DayTitle (ProjectDayTitleID,"
                                                  "TimetableID,DOW,Height,Width,SpecialID,Pos) "
                                                  "VALUES (%1,%2,'Day %3', 1200, 600, 1,%3)")
                                       .arg(projectDays[d])
                                       .arg(id)
                                       .arg(d + 1));
    return cal;
}

int addSlot(clsSQLite& db, int timetable, const Calendar& cal, int d, int p) {
    return insert(db, QStringLiteral("INSERT INTO Slot (TimetableID,StartTime,Duration,DOW,"
                                     "SpecialID,DayTitleID,TimeTitleID) VALUES (%1,'%2','60',"
                                     "'Day %3',1,%4,%5);")
                          .arg(timetable)
                          .arg(QStringLiteral("%1:00:00").arg(8 + p, 2, 10, QLatin1Char('0')))
                          .arg(d + 1)
                          .arg(cal.dayTitle[d])
                          .arg(cal.timeTitle[p]));
}

void link(clsSQLite& db, const char* kind, int slot, int id) {
    db.Execute(QStringLiteral("INSERT INTO %1Slot (SlotID, %1ID) VALUES (%2,%3);")
                   .arg(QLatin1String(kind))
                   .arg(slot)
                   .arg(id));
}
} // namespace

int MakeLargeSchool(const QString& blankDb, const QString& path, const SchoolSize& size) {
    QFile::remove(path);
    if (!QFile::copy(blankDb, path))
        return 0;
    QFile(path).setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    clsSQLite db;
    if (!db.DBOpen(path))
        return 0;
    db.Execute(QStringLiteral("BEGIN;"));

    QVector<int> tutors, rooms, classes, subjects, days, times;
    for (int i = 0; i < size.tutors; ++i)
        tutors << insert(db, QStringLiteral("INSERT INTO Tutor (name, DisplayName, image, notes) "
                                            "VALUES ('Tutor %1','T%1','','');")
                                 .arg(i + 1));
    for (int i = 0; i < size.rooms; ++i)
        rooms << insert(
            db,
            QStringLiteral("INSERT INTO Room (name, Capacity) VALUES ('Room %1', 30);").arg(i + 1));
    for (int i = 0; i < size.classes; ++i)
        classes << insert(
            db, QStringLiteral("INSERT INTO Class (name) VALUES ('Class %1');").arg(i + 1));
    for (int i = 0; i < size.subjects; ++i)
        subjects << insert(
            db, QStringLiteral("INSERT INTO Subject (name, length) VALUES ('Subject %1', 60);")
                    .arg(i + 1));
    for (int d = 0; d < size.days; ++d)
        days << insert(db, QStringLiteral("INSERT INTO ProjectDayTitle (DOW,Height,Width,SpecialID,"
                                          "Pos) VALUES ('Day %1',600,600,1,%1)")
                               .arg(d + 1));
    for (int p = 0; p < size.periods; ++p)
        times << insert(db, QStringLiteral("INSERT INTO ProjectTimeTitle (StartTime,Duration,Width,"
                                           "Height,SpecialID,Pos) VALUES ('%1:00:00 ', '60',1600,"
                                           "600,1, %2);")
                                .arg(8 + p, 2, 10, QLatin1Char('0'))
                                .arg(p + 1));

    QVector<int> tutorTT(size.tutors), roomTT(size.rooms), classTT(size.classes);
    QVector<Calendar> tutorCal(size.tutors), roomCal(size.rooms), classCal(size.classes);
    for (int c = 0; c < size.classes; ++c)
        classCal[c] =
            addTimetable(db, QStringLiteral("Class"), classes[c], 1, 1, days, times, classTT[c]);
    for (int t = 0; t < size.tutors; ++t)
        tutorCal[t] =
            addTimetable(db, QStringLiteral("Tutor"), 1, 1, tutors[t], days, times, tutorTT[t]);
    for (int r = 0; r < size.rooms; ++r)
        roomCal[r] =
            addTimetable(db, QStringLiteral("Room"), 1, rooms[r], 1, days, times, roomTT[r]);

    // Every class lesson has a tutor, subject and room; the tutor's and the
    // room's own timetables carry the same lesson. Class c at (d, p) gets a
    // tutor and room that no other class has then.
    int slots = 0;
    for (int c = 0; c < size.classes; ++c)
        for (int d = 0; d < size.days; ++d)
            for (int p = 0; p < size.periods; ++p) {
                const int k = d * size.periods + p;
                const int t = (c + k) % size.tutors;
                const int r = (c + 3 * k) % size.rooms;
                const int s = (c + k) % size.subjects;
                const int cs = addSlot(db, classTT[c], classCal[c], d, p);
                link(db, "Tutor", cs, tutors[t]);
                link(db, "Subject", cs, subjects[s]);
                link(db, "Room", cs, rooms[r]);
                link(db, "Class", cs, classes[c]);
                const int ts = addSlot(db, tutorTT[t], tutorCal[t], d, p);
                link(db, "Class", ts, classes[c]);
                link(db, "Subject", ts, subjects[s]);
                link(db, "Room", ts, rooms[r]);
                link(db, "Tutor", ts, tutors[t]);
                const int rs = addSlot(db, roomTT[r], roomCal[r], d, p);
                link(db, "Tutor", rs, tutors[t]);
                link(db, "Subject", rs, subjects[s]);
                link(db, "Class", rs, classes[c]);
                link(db, "Room", rs, rooms[r]);
                slots += 3;
            }
    db.Execute(QStringLiteral("COMMIT;"));
    db.DBClose();
    return slots;
}

OpenSchool::OpenSchool() : m_path(m_dir.filePath(QStringLiteral("large.VNPL"))) {
    qputenv("XDG_CONFIG_HOME", m_dir.filePath(QStringLiteral("config")).toLocal8Bit());
    Common::SetMsgBoxHandler([](const QString& text, auto, auto, const QString&) {
        qFatal("%s", qPrintable(text));
        return Common::MsgResult::Ok;
    });
    MakeLargeSchool(QStringLiteral(VANTOR_BENCH_APP_DIR "/blank.db"), m_path);
    if (!ModMain::OpenProject(m_path))
        qFatal("cannot open the large school");
}

namespace {
constexpr const char* kLinkTables[] = {"Slot", "TutorSlot", "RoomSlot", "ClassSlot", "SubjectSlot"};
} // namespace

Restore::Restore() {
    for (const char* table : kLinkTables)
        m_max << ModMain::DB()
                     .Execute(
                         QStringLiteral("SELECT MAX(id) AS m FROM %1").arg(QLatin1String(table)))
                     .Field("m")
                     .toInt();
}

void Restore::operator()() const {
    // Putting the school back is no step of the user's.
    QuietAction quiet;
    Transaction tx;
    for (int i = 0; i < m_max.size(); ++i)
        ModMain::DB().Execute(QStringLiteral("DELETE FROM %1 WHERE id > %2")
                                  .arg(QLatin1String(kLinkTables[i]))
                                  .arg(m_max[i]));
}

namespace {
QVector<qint32> ids(const char* table) {
    QVector<qint32> out;
    for (auto rs = ModMain::DB().Execute(
             QStringLiteral("SELECT id FROM %1 WHERE id<>1 ORDER BY name").arg(table));
         !rs.eof(); rs.MoveNext())
        out << rs.Field("id").toInt();
    return out;
}
} // namespace

qint32 PrepareClassFill() {
    static const qint32 timetable = [] {
        ModMain::DB().Execute(QStringLiteral("INSERT INTO Class (name) VALUES ('Bench class')"));
        return ModMain::CreateTimetable(QStringLiteral("Class"), ModMain::DB().GetInsertID(), 1);
    }();
    AutoFill::Reset();
    AutoFill::State& a = AutoFill::state();
    a.AutoFill_WhoID = timetable;
    a.AutoFill_IncludeSubjects = ids("Subject").mid(0, 6);
    a.AutoFill_IncludeSubjectPeriods = QVector<qint32>(6, 6);
    a.AutoFill_Tutors = ids("Tutor");
    a.AutoFill_Rooms = ids("Room");
    a.AutoFill_MethodID = 1;
    return timetable;
}

namespace {
std::vector<std::function<void()>>& cleanups() {
    static std::vector<std::function<void()>> list;
    return list;
}

// Counts the runs that ended in an error, so the program's status tells.
class CountingReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& r : runs)
            failed += r.error_occurred ? 1 : 0;
        ConsoleReporter::ReportRuns(runs);
    }
    int failed = 0;
};
} // namespace

void BeforeExit(std::function<void()> cleanup) {
    cleanups().push_back(std::move(cleanup));
}

int Run(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    CountingReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    for (auto it = cleanups().rbegin(); it != cleanups().rend(); ++it)
        (*it)();
    cleanups().clear();
    return reporter.failed == 0 ? 0 : 1;
}

int RunWithWidgets(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    return Run(argc, argv);
}

} // namespace Bench
