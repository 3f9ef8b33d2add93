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

// The timetable's own heading rows for a project period and day. Both look-up
// procedures report a missing one in the same words.
Titles findTitles(qint32 timetableID, qint32 projectTimeTitleID, qint32 projectDayTitleID) {
    Titles t;
    auto rs = DB().Execute(QStringLiteral("SELECT ID FROM TimeTitle WHERE timetableid = %1 AND "
                                          "ProjectTimeTitleID = %2")
                               .arg(timetableID)
                               .arg(projectTimeTitleID));
    if (rs.eof())
        throw VbError(VbErr::Lookup, kSource,
                      QStringLiteral("Error DoCreateGetSlot can't find TimeTitle %1")
                          .arg(t.timeTitleID));
    t.timeTitleID = rs.Field("id").toInt();

    rs = DB().Execute(QStringLiteral("SELECT ID FROM DayTitle WHERE timetableid = %1 AND "
                                     "ProjectDayTitleID = %2")
                          .arg(timetableID)
                          .arg(projectDayTitleID));
    if (rs.eof())
        throw VbError(VbErr::Lookup, kSource,
                      QStringLiteral("Error DoCreateGetSlot can't find DayTitle %1")
                          .arg(t.dayTitleID));
    t.dayTitleID = rs.Field("id").toInt();
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
        throw VbError(VbErr::Lookup, kSource,
                      QStringLiteral("Error DoCurrentTimetableCreateGetSlot can't find TimeTitle %1")
                          .arg(TimeTitleID));
    auto day = DB().Execute(QStringLiteral("SELECT DOW FROM DayTitle WHERE id = %1").arg(DayTitleID));
    if (day.eof())
        throw VbError(VbErr::Lookup, kSource,
                      QStringLiteral("Error DoCurrentTimetableCreateGetSlot can't find DayTitle %1")
                          .arg(DayTitleID));
    return CreateSlotRecord(TimetableID, TimeText::Parse(time.Field("StartTime").toString()),
                            time.Field("Duration").toInt(), day.Field("DOW").toString(), 1,
                            DayTitleID, TimeTitleID);
}

} // namespace ModMain
