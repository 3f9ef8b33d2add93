// Build-time tool: the sample school. Runs sample-school.sql into a copy of
// blank.db, then sets up the week and the timetables it lists and ticks
// every lesson in, through the program's own functions, so the file is
// exactly what a user ticking the same lessons would have made.
//
//   makesample blank.db sample-school.sql sample-school.VNPL

#include "common/Common.h"
#include "scheduling/Assignment.h"
#include "scheduling/PeriodCodes.h"
#include "store/ModMain.h"
#include "store/Records.h"
#include "store/Transaction.h"
#include "timetable/SlotLookup.h"
#include "timetable/TimetableChoices.h"
#include "timetable/TimetableRecords.h"
#include "wizards/ProjectCalendar.h"

#include <QCoreApplication>
#include <QFile>
#include <QMap>
#include <QTime>
#include <cstdio>

namespace {
using namespace ModMain;

QMap<QString, qint32> idsOf(const QString& table) {
    QMap<QString, qint32> ids;
    for (auto rs = DB().Execute(QStringLiteral("SELECT name, id FROM %1").arg(table)); !rs.eof();
         rs.MoveNext())
        ids.insert(rs.Field(qint16(0)).toString(), rs.Field(qint16(1)).toInt());
    return ids;
}

qint32 projectID(const char* table, int pos) {
    return DB()
        .Execute(QStringLiteral("SELECT id FROM Project%1 WHERE Pos = %2").arg(table).arg(pos))
        .Field(qint16(0))
        .toInt();
}

// A timetable's cell at a project day and period, as the grid gives it.
Cell cellAt(qint32 timetable, qint32 projectDay, qint32 projectTime) {
    Cell cell;
    cell.TimetableID = timetable;
    cell.Type = ReadTimetable(timetable).Type;
    const auto heading = [&](const char* table, qint32 projectId) {
        return DB()
            .Execute(QStringLiteral("SELECT id FROM %1 WHERE TimetableID = %2 AND Project%1ID = %3")
                         .arg(table)
                         .arg(timetable)
                         .arg(projectId))
            .Field(qint16(0))
            .toInt();
    };
    cell.DayTitleID = heading("DayTitle", projectDay);
    cell.TimeTitleID = heading("TimeTitle", projectTime);
    cell.ProjectDayTitleID = projectDay;
    cell.ProjectTimeTitleID = projectTime;
    cell.SlotID = qMax(0, DoGetSlot(timetable, projectTime, projectDay));
    return cell;
}

void tick(ResourceKind kind, qint32 id, qint32 timetable, qint32 day, qint32 time) {
    TickResource(kind, id, cellAt(timetable, day, time));
}

// The school, as one transaction.
void build(const QString& sql);
} // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fprintf(stderr, "usage: makesample blank.db sample-school.sql sample-school.VNPL\n");
        return 2;
    }
    QCoreApplication app(argc, argv);
    // Nobody answers a box at build time: any is a fault.
    Common::SetMsgBoxHandler(
        [](const QString& text, auto, auto, const QString&) -> Common::MsgResult {
            std::fprintf(stderr, "makesample: %s\n", qPrintable(text));
            std::exit(1);
        });
    QFile script(QString::fromLocal8Bit(argv[2]));
    if (!script.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "makesample: cannot read %s\n", argv[2]);
        return 1;
    }
    const QString out = QString::fromLocal8Bit(argv[3]);
    const QString tmp = out + QStringLiteral(".tmp");
    QFile::remove(tmp);
    if (!QFile::copy(QString::fromLocal8Bit(argv[1]), tmp) || !DB().DBOpen(tmp)) {
        std::fprintf(stderr, "makesample: cannot copy %s\n", argv[1]);
        return 1;
    }
    // The whole school is written at once; nobody else reads it meanwhile.
    DB().Execute(QStringLiteral("PRAGMA synchronous = OFF;"));
    build(QString::fromUtf8(script.readAll()));
    DB().Execute(QStringLiteral("VACUUM;"));
    const bool ok = DB().GetErrorString().isEmpty();
    DB().DBClose();
    QFile::remove(out);
    if (!ok || !QFile::rename(tmp, out)) {
        std::fprintf(stderr, "makesample: cannot write %s\n", argv[3]);
        return 1;
    }
    return 0;
}

namespace {
void build(const QString& sql) {
    Transaction tx;
    DB().Execute(sql);

    QStringList days;
    for (auto rs = DB().Execute(QStringLiteral("SELECT name FROM SampleDay ORDER BY pos"));
         !rs.eof(); rs.MoveNext())
        days << rs.Field(qint16(0)).toString();
    QVector<QTime> times;
    QVector<int> lunch;
    for (auto rs = DB().Execute(QStringLiteral("SELECT start, lunch FROM SampleTime ORDER BY pos"));
         !rs.eof(); rs.MoveNext()) {
        times << QTime::fromString(rs.Field(qint16(0)).toString(), QStringLiteral("hh:mm"));
        if (rs.Field(qint16(1)).toInt())
            lunch << int(times.size());
    }
    Wizard::WriteProjectCalendar(times, days);

    QMap<QString, qint32> timetables; // "Tutor Mr Brown" -> id
    for (auto rs = DB().Execute(QStringLiteral("SELECT type, owner FROM SampleTimetable"));
         !rs.eof(); rs.MoveNext()) {
        const QString type = rs.Field(qint16(0)).toString(), owner = rs.Field(qint16(1)).toString();
        const qint32 ownerId = idsOf(type).value(owner);
        timetables.insert(type + QLatin1Char(' ') + owner, CreateTimetable(type, ownerId, 1));
    }
    // Lunch: the period's heading and its cell on every day.
    for (const qint32 timetable : timetables)
        for (const int period : lunch) {
            const qint32 time = projectID("TimeTitle", period);
            SetTimeTitleSpecialID(cellAt(timetable, projectID("DayTitle", 1), time).TimeTitleID,
                                  SpecialID::Lunch);
            for (int day = 1; day <= days.size(); ++day)
                MarkSlot(DoCreateGetSlot(timetable, time, projectID("DayTitle", day)), false,
                         SpecialID::Lunch);
        }

    // A lesson of a tutor or a room with a timetable of its own is ticked
    // there, its class first, which mirrors the tutor or room into the
    // class's timetable; the class's cell then gets the subject (and, for a
    // room, the tutor). Each tutor and room is linked once per period, so
    // the lists show them busy where they teach, never double-booked.
    const auto tutors = idsOf(QStringLiteral("Tutor")), subjects = idsOf(QStringLiteral("Subject")),
               rooms = idsOf(QStringLiteral("Room")), classes = idsOf(QStringLiteral("Class"));
    for (auto rs = DB().Execute(QStringLiteral("SELECT class, day, period, tutor, subject, room "
                                               "FROM SampleLesson"));
         !rs.eof(); rs.MoveNext()) {
        const qint32 klass = classes.value(rs.Field(qint16(0)).toString());
        const QString tutorName = rs.Field(qint16(3)).toString(),
                      roomName = rs.Field(qint16(5)).toString();
        const qint32 tutor = tutors.value(tutorName), room = rooms.value(roomName);
        const qint32 subject = subjects.value(rs.Field(qint16(4)).toString());
        const qint32 day =
            projectID("DayTitle", int(days.indexOf(rs.Field(qint16(1)).toString())) + 1);
        const qint32 time = projectID("TimeTitle", rs.Field(qint16(2)).toInt());
        const qint32 classTimetable =
            timetables.value(QStringLiteral("Class ") + rs.Field(qint16(0)).toString());
        if (const qint32 own = timetables.value(QStringLiteral("Tutor ") + tutorName)) {
            tick(ResourceKind::Class, klass, own, day, time);
            tick(ResourceKind::Subject, subject, own, day, time);
            tick(ResourceKind::Room, room, own, day, time);
        } else if (const qint32 held = timetables.value(QStringLiteral("Room ") + roomName)) {
            tick(ResourceKind::Class, klass, held, day, time);
            tick(ResourceKind::Subject, subject, held, day, time);
            tick(ResourceKind::Tutor, tutor, classTimetable, day, time);
        } else {
            tick(ResourceKind::Tutor, tutor, classTimetable, day, time);
            tick(ResourceKind::Room, room, classTimetable, day, time);
        }
        tick(ResourceKind::Subject, subject, classTimetable, day, time);
    }
    DB().Execute(QStringLiteral("DROP TABLE SampleDay; DROP TABLE SampleTime; DROP TABLE "
                                "SampleTimetable; DROP TABLE SampleLesson;"));
}
} // namespace
