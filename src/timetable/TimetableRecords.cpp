#include "timetable/TimetableRecords.h"

#include "common/Common.h"
#include "store/ModMain.h"
#include "store/Records.h"
#include "timetable/SlotLookup.h"
#include "wizards/WizardState.h"

#include <QStringList>
#include <QVector>

using Common::SQLReplace;

namespace ModMain {

namespace {
struct Title {
    qint32 id = 0;
    qint32 projectID = 0;
};

QVector<Title> readTitles(const QString& sql, const char* projectColumn) {
    QVector<Title> titles;
    for (auto rs = DB().Execute(sql); !rs.eof(); rs.MoveNext()) {
        Title t;
        t.id = rs.Field("ID").toInt();
        t.projectID = rs.Field(projectColumn).toInt();
        titles << t;
    }
    return titles;
}

void copyPeriods(qint32 timetableID) {
    for (auto rs = DB().Execute(QStringLiteral(
             "SELECT ID, StartTime, Duration, Pos FROM ProjectTimeTitle ORDER BY pos;"));
         !rs.eof(); rs.MoveNext()) {
        DB().Execute(QStringLiteral("INSERT INTO TimeTitle (ProjectTimeTitleID, TimetableID,"
                                    "StartTime,Duration,Width,Height,SpecialID,Pos) ") +
                     QStringLiteral("VALUES (%1,%2, '%3', '%4', 1600, 1200, %5, %6);")
                         .arg(rs.Field("ID").toString())
                         .arg(timetableID)
                         .arg(rs.Field("StartTime").toString(), rs.Field("Duration").toString())
                         .arg(1)
                         .arg(rs.Field("Pos").toString()));
    }
}

void copyDays(qint32 timetableID) {
    for (auto rs = DB().Execute(QStringLiteral("SELECT ID, DOW, Pos FROM ProjectDayTitle ORDER BY pos;"));
         !rs.eof(); rs.MoveNext()) {
        DB().Execute(QStringLiteral("INSERT INTO DayTitle (ProjectDayTitleID,TimetableID,DOW,"
                                    "Height,Width,SpecialID,Pos) ") +
                     QStringLiteral("VALUES (%1,%2,'%3', 1200, 600, %4,%5)")
                         .arg(rs.Field("ID").toString())
                         .arg(timetableID)
                         .arg(SQLReplace(rs.Field("DOW").toString()))
                         .arg(1)
                         .arg(rs.Field("Pos").toString()));
    }
}
} // namespace

qint32 CreateTimetableFromWizard() {
    const Wizard::State& w = Wizard::state();
    auto style = DB().Execute(
        QStringLiteral("SELECT ID, UnavailableBackground, UnavailableForeground, TitleFont, "
                       "TitleFontSize, TitleForeground, ColHeadFont, ColHeadFontSize, "
                       "ColHeadForeground, RowHeadFont, RowHeadFontSize, RowHeadForeground, "
                       "PeriodFont, PeriodFontSize, PeriodForeground FROM Style WHERE ID = ") +
        QString::number(w.WizardStyleID));
    if (style.eof())
        return 0;

    qint32 classID = 1, roomID = 1, tutorID = 1;
    if (w.WizardType == QLatin1String("Class"))
        classID = w.WizardWhoID;
    else if (w.WizardType == QLatin1String("Tutor"))
        tutorID = w.WizardWhoID;
    else if (w.WizardType == QLatin1String("Room"))
        roomID = w.WizardWhoID;

    const auto f = [&](const QString& name) { return style.Field(name).toString(); };
    const auto quoted = [](const QString& text) {
        return QLatin1Char('\'') + text + QLatin1Char('\'');
    };
    QStringList values = {quoted(w.WizardType),      QStringLiteral("'True'"),
                          QStringLiteral("'Title'"), QString::number(classID),
                          QString::number(roomID),   QString::number(tutorID),
                          QStringLiteral("1")};
    // Each heading's font, size and colour. Font names go between quotes as
    // they are: the style rows are the program's own and hold no quotes.
    for (const QString part : {"Title", "ColHead", "RowHead", "Period"})
        values << quoted(f(part + QStringLiteral("Font"))) << f(part + QStringLiteral("FontSize"))
               << f(part + QStringLiteral("Foreground"));
    values << f(QStringLiteral("UnavailableBackground"))
           << f(QStringLiteral("UnavailableForeground"));
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
    if (w.WizardType == QLatin1String("Tutor"))
        DoCrossReferenceNewTimetable(id, QStringLiteral("Tutor"), w.WizardWhoID);
    return id;
}

void DoCrossReferenceNewTimetable(qint32 TimetableID, const QString& Type, qint32 WhoID) {
    Q_UNUSED(WhoID); // the room bookings are taken project-wide, whoever holds them
    const QVector<Title> times = readTitles(
        QStringLiteral("SELECT ID, ProjectTimeTitleID FROM TimeTitle WHERE TimetableID = %1 "
                       "ORDER BY pos;")
            .arg(TimetableID),
        "ProjectTimeTitleID");
    const QVector<Title> days = readTitles(
        QStringLiteral("SELECT ID, ProjectDayTitleID FROM DayTitle WHERE TimetableID = %1 "
                       "ORDER BY pos;")
            .arg(TimetableID),
        "ProjectDayTitleID");
    if (Type != QLatin1String("Tutor"))
        return;
    for (const Title& time : times) {
        for (const Title& day : days) {
            auto rooms = DB().Execute(
                QStringLiteral("SELECT Room.ID AS ID FROM Room, RoomSlot, Slot, TimeTitle, "
                               "DayTitle WHERE Room.ID = RoomSlot.RoomID AND RoomSlot.SlotID = "
                               "Slot.ID AND Slot.TimeTitleID = TimeTitle.ID AND "
                               "Slot.DayTitleID = DayTitle.ID AND TimeTitle.ProjectTimeTitleID "
                               "= ") +
                QString::number(time.projectID) +
                QStringLiteral(" AND DayTitle.ProjectDayTitleID = ") +
                QString::number(day.projectID) + QLatin1Char(';'));
            for (; !rooms.eof(); rooms.MoveNext())
                CreateRoomSlotRecord(CreateSlotAt(TimetableID, day.id, time.id),
                                     rooms.Field("ID").toInt());
        }
    }
}

bool HasRealSubjects() {
    auto rs = DB().Execute(QStringLiteral("SELECT COUNT(*) AS tot FROM subject WHERE id<>1;"));
    return rs.Field("tot").toInt() > 0;
}

void DeleteTimetable(qint32 TimetableID) {
    const QString id = QString::number(TimetableID);
    for (auto rs = DB().Execute(QStringLiteral("SELECT id FROM slot WHERE timetableid = ") + id);
         !rs.eof(); rs.MoveNext()) {
        const QString slot = rs.Field("id").toString();
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
    const QString type = rs.Field("type").toString();
    if (type == QLatin1String("Tutor"))
        return QStringLiteral("Tutor ") + rs.Field("TutorName").toString();
    if (type == QLatin1String("Subject"))
        return QStringLiteral("Subject ") + rs.Field("SubjectName").toString();
    if (type == QLatin1String("Room"))
        return QStringLiteral("Room ") + rs.Field("RoomName").toString();
    if (type == QLatin1String("Class"))
        return QStringLiteral("Class ") + rs.Field("ClassName").toString();
    return QString();
}

} // namespace ModMain
