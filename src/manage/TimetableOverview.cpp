#include "manage/TimetableOverview.h"

#include "store/ModMain.h"
#include "store/Transaction.h"
#include "timetable/Lessons.h"

namespace ModMain {

namespace {
// The owners of a type that have no timetable yet.
void addMissing(QVector<TimetableListRow>& rows, const QString& type, const QString& list,
                const QString& count) {
    for (auto rs = DB().Execute(list); !rs.eof(); rs.MoveNext()) {
        const qint32 id = rs.Field(qint16(0)).toInt();
        auto tot = DB().Execute(count + QString::number(id));
        if (!tot.eof() && tot.Field("tot").toInt() != 0)
            continue;
        rows.append({rs.Field(qint16(1)).toString(), type, false, id});
    }
}
} // namespace

QVector<TimetableListRow> TimetableOpenList() {
    Transaction read(Transaction::Read);
    QVector<TimetableListRow> rows;
    for (auto rs = DB().Execute(QStringLiteral(
             "SELECT timetable.id AS id, type, Tutor.name AS TutorName, subject.name as "
             "SubjectName, Room.name AS RoomName, Class.name AS ClassName FROM timetable, tutor, "
             "subject, room, class WHERE timetable.tutorid = tutor.id AND timetable.subjectid = "
             "subject.id AND timetable.roomid = room.id AND timetable.classid = class.id ORDER BY "
             "type"));
         !rs.eof(); rs.MoveNext()) {
        const QString type = rs.Field(qint16(1)).toString();
        QString name;
        if (type == QLatin1String("Tutor"))
            name = rs.Field("TutorName").toString();
        else if (type == QLatin1String("Subject"))
            name = rs.Field("SubjectName").toString();
        else if (type == QLatin1String("Room"))
            name = rs.Field("RoomName").toString();
        else if (type == QLatin1String("Class"))
            name = rs.Field("ClassName").toString();
        rows.append({name, type, true, rs.Field("id").toInt()});
    }
    addMissing(rows, QStringLiteral("Class"),
               QStringLiteral("SELECT id, name FROM class WHERE id<>1 ORDER BY name;"),
               QStringLiteral("SELECT COUNT(*) AS tot FROM timetable WHERE classid = "));
    addMissing(rows, QStringLiteral("Tutor"),
               QStringLiteral("SELECT id, name FROM Tutor WHERE id<>1 ORDER BY name;"),
               QStringLiteral("SELECT COUNT(*) AS tot FROM timetable WHERE Tutorid = "));
    addMissing(rows, QStringLiteral("Room"),
               QStringLiteral("SELECT id, name FROM Room WHERE id<>1 ORDER BY name;"),
               QStringLiteral("SELECT COUNT(*) AS tot FROM timetable WHERE Roomid = "));
    return rows;
}

QVector<CapacityRow> TutorCapacity() {
    Transaction read(Transaction::Read);
    QVector<CapacityRow> rows;
    for (auto rs =
             DB().Execute(QStringLiteral("SELECT id, name FROM tutor WHERE id<>1 ORDER BY name"));
         !rs.eof(); rs.MoveNext()) {
        // Periods taught are lessons, however many timetables show each.
        const qsizetype periods = LessonIndex::current()
                                      .lessonsOf({ResourceKind::Tutor, rs.Field(qint16(0)).toInt()})
                                      .size();
        rows.append({rs.Field(qint16(1)).toString(), QString::number(periods)});
    }
    return rows;
}

} // namespace ModMain
