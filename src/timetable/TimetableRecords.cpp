#include "timetable/TimetableRecords.h"

#include "common/Common.h"
#include "store/ModMain.h"
#include "store/Records.h"
#include "store/Transaction.h"
#include "timetable/Lessons.h"
#include "timetable/SlotLookup.h"

#include <QRegularExpression>
#include <QStringList>

using Common::SQLReplace;

namespace ModMain {

namespace {
QString quoted(const QString& text) {
    return QLatin1Char('\'') + SQLReplace(text) + QLatin1Char('\'');
}

void copyPeriods(qint32 timetableID) {
    for (auto rs = DB().Execute(QStringLiteral(
             "SELECT ID, StartTime, Duration, Pos FROM ProjectTimeTitle ORDER BY pos;"));
         !rs.eof(); rs.MoveNext()) {
        DB().Execute(QStringLiteral("INSERT INTO TimeTitle (ProjectTimeTitleID, TimetableID,"
                                    "StartTime,Duration,Width,Height,SpecialID,Pos) ") +
                     QStringLiteral("VALUES (%1,%2, %3, %4, 1600, 1200, %5, %6);")
                         .arg(rs.Field("ID").toInt())
                         .arg(timetableID)
                         .arg(quoted(rs.Field("StartTime").toString()),
                              quoted(rs.Field("Duration").toString()))
                         .arg(SpecialID::Ordinary)
                         .arg(rs.Field("Pos").toInt()));
    }
}

void copyDays(qint32 timetableID) {
    for (auto rs =
             DB().Execute(QStringLiteral("SELECT ID, DOW, Pos FROM ProjectDayTitle ORDER BY pos;"));
         !rs.eof(); rs.MoveNext()) {
        DB().Execute(QStringLiteral("INSERT INTO DayTitle (ProjectDayTitleID,TimetableID,DOW,"
                                    "Height,Width,SpecialID,Pos) ") +
                     QStringLiteral("VALUES (%1,%2,%3, 1200, 600, %4,%5)")
                         .arg(rs.Field("ID").toInt())
                         .arg(timetableID)
                         .arg(quoted(rs.Field("DOW").toString()))
                         .arg(SpecialID::Ordinary)
                         .arg(rs.Field("Pos").toInt()));
    }
}

// The display name from the owner names a timetable row joins to.
QString nameFor(const QString& type, const QString& tutor, const QString& subject,
                const QString& room, const QString& klass) {
    if (type == QLatin1String("Tutor"))
        return QStringLiteral("Tutor ") + tutor;
    if (type == QLatin1String("Subject"))
        return QStringLiteral("Subject ") + subject;
    if (type == QLatin1String("Room"))
        return QStringLiteral("Room ") + room;
    if (type == QLatin1String("Class"))
        return QStringLiteral("Class ") + klass;
    return QString();
}
} // namespace

qint32 CreateTimetable(const QString& type, qint32 whoID, qint32 styleID) {
    Transaction tx;
    if (!tx.ok())
        return 0;
    auto style = DB().Execute(
        QStringLiteral("SELECT ID, UnavailableBackground, UnavailableForeground, TitleFont, "
                       "TitleFontSize, TitleForeground, ColHeadFont, ColHeadFontSize, "
                       "ColHeadForeground, RowHeadFont, RowHeadFontSize, RowHeadForeground, "
                       "PeriodFont, PeriodFontSize, PeriodForeground FROM Style WHERE ID = ") +
        QString::number(styleID));
    if (style.eof())
        return 0;

    qint32 classID = 1, roomID = 1, tutorID = 1;
    if (type == QLatin1String("Class"))
        classID = whoID;
    else if (type == QLatin1String("Tutor"))
        tutorID = whoID;
    else if (type == QLatin1String("Room"))
        roomID = whoID;

    // A number goes into the statement as it stands; anything else in a
    // number column (a damaged style row) as 0, so the statement still parses.
    static const QRegularExpression plainNumber(QStringLiteral(R"(^-?\d{1,18}(\.\d+)?$)"));
    const auto number = [&](const QString& name) {
        const QString v = style.Field(name).toString().trimmed();
        return plainNumber.match(v).hasMatch() ? v : QStringLiteral("0");
    };
    QStringList values = {quoted(type),
                          QStringLiteral("'True'"),
                          QStringLiteral("'Title'"),
                          QString::number(classID),
                          QString::number(roomID),
                          QString::number(tutorID),
                          QStringLiteral("1")};
    for (const QString part : {"Title", "ColHead", "RowHead", "Period"})
        values << quoted(style.Field(part + QStringLiteral("Font")).toString())
               << number(part + QStringLiteral("FontSize"))
               << number(part + QStringLiteral("Foreground"));
    values << number(QStringLiteral("UnavailableBackground"))
           << number(QStringLiteral("UnavailableForeground"));
    DB().Execute(
        QStringLiteral("INSERT INTO Timetable (Type,TimeOnTop,Title,ClassID,RoomID,TutorID,"
                       "SubjectID,TitleFont,TitleFontSize,TitleForeground,ColHeadFont,"
                       "ColHeadFontSize,ColHeadForeground,RowHeadFont,RowHeadFontSize,"
                       "RowHeadForeground,PeriodFont,PeriodFontSize,PeriodForeground,"
                       "UnavailableBackground,UnavailableForeground) ") +
        QStringLiteral("VALUES (") + values.join(QLatin1Char(',')) + QLatin1Char(')'));
    const qint32 id = DB().GetInsertID();

    copyPeriods(id);
    copyDays(id);
    // The owner's lessons show in its new timetable at once.
    CopyLessonsInto(id);
    return id;
}

bool HasRealSubjects() {
    auto rs = DB().Execute(QStringLiteral("SELECT COUNT(*) AS tot FROM subject WHERE id<>1;"));
    return rs.Field("tot").toInt() > 0;
}

void DeleteTimetable(qint32 TimetableID) {
    Transaction tx;
    if (!tx.ok())
        return;
    const QString id = QString::number(TimetableID);
    for (auto rs = DB().Execute(QStringLiteral("SELECT id FROM slot WHERE timetableid = ") + id);
         !rs.eof(); rs.MoveNext()) {
        const QString slot = QString::number(rs.Field("id").toInt());
        DB().Execute(QStringLiteral("DELETE FROM classslot WHERE slotid = ") + slot);
        DB().Execute(QStringLiteral("DELETE FROM roomslot WHERE slotid = ") + slot);
        DB().Execute(QStringLiteral("DELETE FROM subjectslot WHERE slotid = ") + slot);
        DB().Execute(QStringLiteral("DELETE FROM tutorslot WHERE slotid = ") + slot);
    }
    DB().Execute(QStringLiteral("DELETE FROM daytitle WHERE timetableid = ") + id);
    DB().Execute(QStringLiteral("DELETE FROM timetitle WHERE timetableid = ") + id);
    DB().Execute(QStringLiteral("DELETE FROM slot WHERE timetableid = ") + id);
    DB().Execute(QStringLiteral("DELETE FROM timetable WHERE id = ") + id);
}

qint32 FirstTimetableID() {
    auto rs = DB().Execute(QStringLiteral("SELECT ID FROM Timetable;"));
    return rs.eof() ? 0 : rs.Field("ID").toInt();
}

TimetableRow ReadTimetable(qint32 TimetableID) {
    TimetableRow row;
    auto rs = DB().Execute(QStringLiteral("SELECT ID, TimeOnTop, Time12Hour, Type, Title, ClassID, "
                                          "RoomID, TutorID, SubjectID FROM Timetable WHERE ID = ") +
                           QString::number(TimetableID));
    if (rs.eof())
        return row;
    row.found = true;
    row.TimeOnTop = rs.Field("TimeOnTop").toBool();
    row.Time12Hour = rs.Field("Time12Hour").toBool();
    row.Type = rs.Field("Type").toString();
    return row;
}

void SaveTimetableFormat(qint32 TimetableID, bool Time12Hour, bool TimeOnTop) {
    Transaction tx;
    if (!tx.ok())
        return;
    const auto flag = [](bool b) { return b ? QStringLiteral("True") : QStringLiteral("False"); };
    DB().Execute(QStringLiteral("UPDATE Timetable SET Time12Hour = '%1', TimeOnTop = '%2'  WHERE "
                                "ID = %3;")
                     .arg(flag(Time12Hour), flag(TimeOnTop))
                     .arg(TimetableID));
}

QString GetTimetableName(qint32 TimetableID) {
    auto rs = DB().Execute(
        QStringLiteral("SELECT timetable.id AS id, type, Tutor.name AS TutorName, subject.name as "
                       "SubjectName, Room.name AS RoomName, Class.name AS ClassName FROM "
                       "timetable, tutor, subject, room, class WHERE timetable.tutorid = "
                       "tutor.id AND timetable.subjectid = subject.id AND timetable.roomid = "
                       "room.id AND timetable.classid = class.id AND timetable.id = ") +
        QString::number(TimetableID));
    if (rs.eof())
        return QString();
    return nameFor(rs.Field("type").toString(), rs.Field("TutorName").toString(),
                   rs.Field("SubjectName").toString(), rs.Field("RoomName").toString(),
                   rs.Field("ClassName").toString());
}

QVector<TimetableEntry> TimetableList() {
    // Outer joins keep a timetable whose owner row is missing; its name is then
    // empty, as GetTimetableName's inner join gives no row for it.
    QVector<TimetableEntry> list;
    for (auto rs = DB().Execute(QStringLiteral(
             "SELECT timetable.id AS id, timetable.type AS type, Tutor.name AS TutorName, "
             "Subject.name AS SubjectName, Room.name AS RoomName, Class.name AS ClassName, "
             "(Tutor.id IS NOT NULL AND Subject.id IS NOT NULL AND Room.id IS NOT NULL AND "
             "Class.id IS NOT NULL) AS joined FROM timetable "
             "LEFT JOIN tutor ON tutor.id = timetable.tutorid "
             "LEFT JOIN subject ON subject.id = timetable.subjectid "
             "LEFT JOIN room ON room.id = timetable.roomid "
             "LEFT JOIN class ON class.id = timetable.classid ORDER BY timetable.rowid;"));
         !rs.eof(); rs.MoveNext()) {
        TimetableEntry e;
        e.id = rs.Field("id").toInt();
        e.type = rs.Field("type").toString();
        if (rs.Field("joined").toInt() == 1)
            e.name = nameFor(rs.Field("type").toString(), rs.Field("TutorName").toString(),
                             rs.Field("SubjectName").toString(), rs.Field("RoomName").toString(),
                             rs.Field("ClassName").toString());
        list << e;
    }
    return list;
}

bool HasCalendar() {
    auto rs = DB().Execute(QStringLiteral("SELECT (SELECT COUNT(*) FROM ProjectDayTitle) AS days, "
                                          "(SELECT COUNT(*) FROM ProjectTimeTitle) AS periods;"));
    return rs.Field("days").toInt() > 0 && rs.Field("periods").toInt() > 0;
}

} // namespace ModMain
