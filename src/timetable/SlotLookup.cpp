#include "timetable/SlotLookup.h"

#include "common/VbError.h"
#include "store/ModMain.h"
#include "store/Records.h"
#include "store/TimeText.h"

namespace ModMain {

namespace {
const QString kSource = QStringLiteral("ModMain");

struct Titles {
    qint32 timeTitleID = 0;
    qint32 dayTitleID = 0;
};

// The id of the timetable's own TimeTitle or DayTitle row for a project
// period or day. Both look-up procedures report a missing one in the same
// words, naming the id found so far, which is still 0.
qint32 findTitle(const char* table, qint32 timetableID, qint32 projectID) {
    const QString t = QString::fromLatin1(table);
    auto rs = DB().Execute(QStringLiteral("SELECT ID FROM %1 WHERE timetableid = %2 AND "
                                          "Project%1ID = %3")
                               .arg(t)
                               .arg(timetableID)
                               .arg(projectID));
    if (rs.eof())
        throw VbError(VbErr::Lookup, kSource,
                      QStringLiteral("Error DoCreateGetSlot can't find %1 %2").arg(t).arg(0));
    return rs.Field("ID").toInt();
}

Titles findTitles(qint32 timetableID, qint32 projectTimeTitleID, qint32 projectDayTitleID) {
    Titles t;
    t.timeTitleID = findTitle("TimeTitle", timetableID, projectTimeTitleID);
    t.dayTitleID = findTitle("DayTitle", timetableID, projectDayTitleID);
    return t;
}

qint32 findSlot(qint32 timetableID, const Titles& t) {
    auto rs = DB().Execute(QStringLiteral("SELECT Slot.ID AS ID FROM Slot WHERE timetableid = %1 "
                                          "AND DayTitleID = %2 AND TimeTitleID = %3")
                               .arg(timetableID)
                               .arg(t.dayTitleID)
                               .arg(t.timeTitleID));
    return rs.eof() ? -1 : rs.Field("ID").toInt();
}
} // namespace

qint32 DoGetSlot(qint32 TimetableID, qint32 ProjectTimeTitleID, qint32 ProjectDayTitleID) {
    return findSlot(TimetableID, findTitles(TimetableID, ProjectTimeTitleID, ProjectDayTitleID));
}

qint32 DoCreateGetSlot(qint32 TimetableID, qint32 ProjectTimeTitleID, qint32 ProjectDayTitleID) {
    const Titles t = findTitles(TimetableID, ProjectTimeTitleID, ProjectDayTitleID);
    const qint32 slot = findSlot(TimetableID, t);
    return slot != -1 ? slot : CreateSlotAt(TimetableID, t.dayTitleID, t.timeTitleID);
}

qint32 CreateSlotAt(qint32 TimetableID, qint32 DayTitleID, qint32 TimeTitleID) {
    auto time = DB().Execute(
        QStringLiteral("SELECT StartTime, Duration FROM TimeTitle WHERE id = %1").arg(TimeTitleID));
    if (time.eof())
        throw VbError(
            VbErr::Lookup, kSource,
            QStringLiteral("Error DoCurrentTimetableCreateGetSlot can't find TimeTitle %1")
                .arg(TimeTitleID));
    auto day =
        DB().Execute(QStringLiteral("SELECT DOW FROM DayTitle WHERE id = %1").arg(DayTitleID));
    if (day.eof())
        throw VbError(VbErr::Lookup, kSource,
                      QStringLiteral("Error DoCurrentTimetableCreateGetSlot can't find DayTitle %1")
                          .arg(DayTitleID));
    return CreateSlotRecord(TimetableID, TimeText::Parse(time.Field("StartTime").toString()),
                            time.Field("Duration").toInt(), day.Field("DOW").toString(),
                            SpecialID::Ordinary, DayTitleID, TimeTitleID);
}

} // namespace ModMain
