#include "scheduling/Availability.h"

#include "store/ModMain.h"
#include "store/Transaction.h"
#include "timetable/TimetableRecords.h"

#include <QHash>

namespace ModMain {

namespace {
QString number(qint32 n) {
    return QString::number(n);
}

// The first field of the first row, 0 when there is none.
qint32 firstInt(const QString& sql, const char* field) {
    auto rs = DB().Execute(sql);
    return rs.eof() ? 0 : rs.Field(field).toInt();
}

// The availability test of one kind, through its link table: two cheap
// counts first (period, then day), and only then the exact join decides.
bool availability(ResourceKind kind, qint32 projectTimeTitleID, qint32 projectDayTitleID,
                  qint32 resourceID, QVector<qint32>& busySlotID, qint32& slotCount,
                  qint32 ignoreSlotID) {
    const QString link = KindWord(kind) + QStringLiteral("Slot");
    const QString column = link + QLatin1Char('.') + KindWord(kind) + QStringLiteral("ID");
    slotCount = 0;
    busySlotID.clear();

    auto period = DB().Execute(
        QStringLiteral("SELECT COUNT(*) AS tot FROM %1, Slot, TimeTitle WHERE %1.SlotID = Slot.ID "
                       "AND Slot.TimeTitleID = TimeTitle.ID AND TimeTitle.ProjectTimeTitleID = ")
            .arg(link) +
        number(projectTimeTitleID) + QStringLiteral(" AND ") + column + QStringLiteral(" = ") +
        number(resourceID) + QLatin1Char(';'));
    if (!(period.Field("tot").toInt() > 0))
        return true;
    auto day = DB().Execute(
        QStringLiteral("SELECT COUNT(*) AS tot FROM %1, Slot, DayTitle WHERE %1.SlotID = Slot.ID "
                       "AND Slot.DayTitleID = DayTitle.ID AND DayTitle.ProjectDayTitleID = ")
            .arg(link) +
        number(projectDayTitleID) + QStringLiteral(" AND ") + column + QStringLiteral(" = ") +
        number(resourceID) + QLatin1Char(';'));
    if (!(day.Field("tot").toInt() > 0))
        return true;

    const QString ignore = ignoreSlotID == -1 ? QString()
                                              : QStringLiteral("Slot.ID<>") + number(ignoreSlotID) +
                                                    QStringLiteral(" AND ");
    auto slots = DB().Execute(
        QStringLiteral("SELECT Slot.ID AS ID FROM %1, Slot, DayTitle, TimeTitle WHERE ").arg(link) +
        ignore +
        QStringLiteral("%1.SlotID = Slot.ID AND Slot.DayTitleID = DayTitle.ID AND "
                       "DayTitle.ProjectDayTitleID = ")
            .arg(link) +
        number(projectDayTitleID) + QStringLiteral(" AND ") + column + QStringLiteral(" = ") +
        number(resourceID) +
        QStringLiteral(" AND Slot.TimeTitleID = TimeTitle.ID AND TimeTitle.ProjectTimeTitleID = ") +
        number(projectTimeTitleID) + QLatin1Char(';'));
    if (slots.eof())
        return true;
    for (; !slots.eof(); slots.MoveNext()) {
        ++slotCount;
        busySlotID.append(slots.Field("ID").toInt());
    }
    return false;
}

QString statusFor(qint32 busySlots) {
    if (busySlots == 0)
        return QStringLiteral("Avail");
    return busySlots == 1 ? QStringLiteral("Busy") : QStringLiteral("Clash");
}

// Ticks the rows of the linked resources; a resource already in the cell
// reads "-", but a real double booking still shows.
void markLinked(ResourceKind kind, const QVector<qint32>& ids, QVector<RowState>& rows,
                qint32 slotID) {
    if (slotID == 0)
        return;
    for (const qint32 linked : LinkedResources(kind, slotID))
        for (int i = 0; i < ids.size(); ++i)
            if (ids[i] == linked) {
                rows[i].checked = true;
                if (kind != ResourceKind::Subject && rows[i].status != QLatin1String("Clash"))
                    rows[i].status = QStringLiteral("-");
            }
}
} // namespace

QString KindWord(ResourceKind kind) {
    switch (kind) {
    case ResourceKind::Tutor:
        return QStringLiteral("Tutor");
    case ResourceKind::Subject:
        return QStringLiteral("Subject");
    case ResourceKind::Room:
        return QStringLiteral("Room");
    case ResourceKind::Class:
        return QStringLiteral("Class");
    }
    return QString();
}

qint32 ProjectTimeTitleOf(qint32 TimeTitleID) {
    return firstInt(QStringLiteral("SELECT ProjectTimeTitleID FROM TimeTitle WHERE id = ") +
                        number(TimeTitleID),
                    "ProjectTimeTitleID");
}

qint32 ProjectDayTitleOf(qint32 DayTitleID) {
    return firstInt(QStringLiteral("SELECT ProjectDayTitleID FROM DayTitle WHERE id = ") +
                        number(DayTitleID),
                    "ProjectDayTitleID");
}

bool GetTutorAvailability(qint32 ProjectTimeTitleID, qint32 ProjectDayTitleID, qint32 TutorID,
                          QVector<qint32>& BusySlotID, qint32& SlotCount, qint32 IgnoreSlotID) {
    return availability(ResourceKind::Tutor, ProjectTimeTitleID, ProjectDayTitleID, TutorID,
                        BusySlotID, SlotCount, IgnoreSlotID);
}

bool GetRoomAvailability(qint32 ProjectTimeTitleID, qint32 ProjectDayTitleID, qint32 RoomID,
                         QVector<qint32>& BusySlotID, qint32& SlotCount, qint32 IgnoreSlotID) {
    return availability(ResourceKind::Room, ProjectTimeTitleID, ProjectDayTitleID, RoomID,
                        BusySlotID, SlotCount, IgnoreSlotID);
}

bool GetClassAvailability(qint32 ProjectTimeTitleID, qint32 ProjectDayTitleID, qint32 ClassID,
                          QVector<qint32>& BusySlotID, qint32& SlotCount, qint32 IgnoreSlotID) {
    return availability(ResourceKind::Class, ProjectTimeTitleID, ProjectDayTitleID, ClassID,
                        BusySlotID, SlotCount, IgnoreSlotID);
}

QVector<qint32> LinkedResources(ResourceKind kind, qint32 SlotID) {
    const QString word = KindWord(kind);
    QVector<qint32> ids;
    for (auto rs = DB().Execute(QStringLiteral("SELECT %1.ID AS id FROM %1, %1Slot WHERE %1.ID = "
                                               "%1Slot.%1ID AND %1Slot.SlotID = ")
                                    .arg(word) +
                                number(SlotID));
         !rs.eof(); rs.MoveNext())
        ids << rs.Field("id").toInt();
    return ids;
}

QVector<RowState> ListSelectionPerRow(ResourceKind kind, const QVector<qint32>& ids,
                                      const QStringList& currentStatus, qint32 SlotID,
                                      qint32 ProjectTimeTitleID, qint32 ProjectDayTitleID,
                                      qint32 IgnoreSlotID) {
    Transaction tx(Transaction::Read);
    QVector<RowState> rows(ids.size());
    QVector<qint32> busy;
    qint32 count = 0;
    for (int i = 0; i < ids.size(); ++i) {
        if (kind == ResourceKind::Subject) {
            rows[i].status = currentStatus.value(i);
            continue;
        }
        availability(kind, ProjectTimeTitleID, ProjectDayTitleID, ids[i], busy, count,
                     IgnoreSlotID);
        rows[i].status = statusFor(count);
    }
    markLinked(kind, ids, rows, SlotID);
    return rows;
}

QVector<RowState> ListSelection(ResourceKind kind, const QVector<qint32>& ids,
                                const QStringList& currentStatus, qint32 SlotID,
                                qint32 ProjectTimeTitleID, qint32 ProjectDayTitleID,
                                qint32 IgnoreSlotID) {
    Transaction tx(Transaction::Read);
    QVector<RowState> rows(ids.size());
    if (kind == ResourceKind::Subject) {
        for (int i = 0; i < ids.size(); ++i)
            rows[i].status = currentStatus.value(i);
    } else {
        // The exact join of the availability test, grouped: each resource's
        // count is the number of rows its own test would fetch.
        const QString link = KindWord(kind) + QStringLiteral("Slot");
        const QString column = link + QLatin1Char('.') + KindWord(kind) + QStringLiteral("ID");
        const QString ignore = IgnoreSlotID == -1
                                   ? QString()
                                   : QStringLiteral(" AND Slot.ID<>") + number(IgnoreSlotID);
        QHash<qint32, qint32> busy;
        for (auto rs = DB().Execute(
                 QStringLiteral("SELECT %2 AS id, COUNT(*) AS tot FROM %1, Slot, DayTitle, "
                                "TimeTitle WHERE %1.SlotID = Slot.ID AND Slot.DayTitleID = "
                                "DayTitle.ID AND DayTitle.ProjectDayTitleID = %3 AND "
                                "Slot.TimeTitleID = TimeTitle.ID AND "
                                "TimeTitle.ProjectTimeTitleID = %4%5 GROUP BY %2;")
                     .arg(link, column)
                     .arg(ProjectDayTitleID)
                     .arg(ProjectTimeTitleID)
                     .arg(ignore));
             !rs.eof(); rs.MoveNext()) {
            // Only a whole number can equal the id the test writes into its
            // statement; anything else in the column is nobody's booking.
            bool whole = false;
            const qint32 id = rs.Field("id").toString().toInt(&whole);
            if (whole)
                busy.insert(id, rs.Field("tot").toInt());
        }
        for (int i = 0; i < ids.size(); ++i)
            rows[i].status = statusFor(busy.value(ids[i]));
    }
    markLinked(kind, ids, rows, SlotID);
    return rows;
}

QStringList BusyTimetableNames(ResourceKind kind, qint32 ResourceID, qint32 ProjectTimeTitleID,
                               qint32 ProjectDayTitleID, qint32 IgnoreSlotID) {
    QStringList names;
    if (kind == ResourceKind::Subject)
        return names;
    Transaction tx(Transaction::Read);
    QVector<qint32> busy;
    qint32 count = 0;
    availability(kind, ProjectTimeTitleID, ProjectDayTitleID, ResourceID, busy, count,
                 IgnoreSlotID);
    for (const qint32 slot : busy)
        names << GetTimetableName(
            firstInt(QStringLiteral("SELECT TimetableID FROM Slot WHERE ID = ") + number(slot),
                     "TimetableID"));
    return names;
}

} // namespace ModMain
