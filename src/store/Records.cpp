#include "store/Records.h"

#include "common/Common.h"
#include "store/ModMain.h"
#include "store/TimeText.h"

using Common::SQLReplace;

namespace ModMain {

namespace {
QString q(const QString& text) {
    return QLatin1Char('\'') + SQLReplace(text) + QLatin1Char('\'');
}

qint32 insert(const QString& sql) {
    DB().Execute(sql);
    return DB().GetInsertID();
}

qint32 createLink(const char* table, const char* column, qint32 slotID, qint32 resourceID,
                  bool check) {
    const QString t = QString::fromLatin1(table), c = QString::fromLatin1(column);
    if (check) {
        auto rs = DB().Execute(QStringLiteral("SELECT id FROM %1 WHERE SlotID = %2 AND %3 = %4")
                                   .arg(t)
                                   .arg(slotID)
                                   .arg(c)
                                   .arg(resourceID));
        if (!rs.eof())
            return rs.Field("id").toInt();
    }
    return insert(QStringLiteral("INSERT INTO %1 (SlotID, %2) VALUES (%3,%4);")
                      .arg(t, c)
                      .arg(slotID)
                      .arg(resourceID));
}
} // namespace

qint32 CreateTutorRecord(const QString& name, const QString& displayName, const QString& image,
                         const QString& notes) {
    return insert(QStringLiteral("INSERT INTO Tutor (name, DisplayName, image, notes) VALUES "
                                 "(%1,%2,%3,%4);")
                      .arg(q(name), q(displayName), q(image), q(notes)));
}

qint32 CreateSubjectRecord(const QString& name, qint32 length) {
    return insert(QStringLiteral("INSERT INTO Subject (name, length) VALUES (%1, %2);")
                      .arg(q(name))
                      .arg(length));
}

qint32 CreateRoomRecord(const QString& name, qint32 capacity) {
    return insert(QStringLiteral("INSERT INTO Room (name, Capacity) VALUES (%1, %2);")
                      .arg(q(name))
                      .arg(capacity));
}

qint32 CreateSlotRecord(qint32 timetableID, const QTime& startTime, qint32 duration,
                        const QString& dayName, qint32 specialID, qint32 dayTitleID,
                        qint32 timeTitleID) {
    return insert(QStringLiteral("INSERT INTO Slot (TimetableID,StartTime,Duration,DOW,SpecialID,"
                                 "DayTitleID,TimeTitleID) VALUES (%1,%2,%3,%4,%5,%6,%7);")
                      .arg(timetableID)
                      .arg(q(TimeText::ToText(startTime)), q(QString::number(duration)), q(dayName))
                      .arg(specialID)
                      .arg(dayTitleID)
                      .arg(timeTitleID));
}

qint32 CreateTutorSlotRecord(qint32 slotID, qint32 tutorID, bool check) {
    return createLink("TutorSlot", "TutorID", slotID, tutorID, check);
}

qint32 CreateSubjectSlotRecord(qint32 slotID, qint32 subjectID, bool check) {
    return createLink("SubjectSlot", "SubjectID", slotID, subjectID, check);
}

qint32 CreateRoomSlotRecord(qint32 slotID, qint32 roomID, bool check) {
    return createLink("RoomSlot", "RoomID", slotID, roomID, check);
}

qint32 CreateClassSlotRecord(qint32 slotID, qint32 classID, bool check) {
    return createLink("ClassSlot", "ClassID", slotID, classID, check);
}

} // namespace ModMain
