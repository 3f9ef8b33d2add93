#include "scheduling/Availability.h"

#include "store/ModMain.h"

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

} // namespace

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

namespace {
// The lessons then that hold the resource, the cell's own left out.
QVector<const Lesson*> otherLessons(const LessonIndex& idx, const Member& m, const Cell& cell,
                                    const Lesson* own) {
    QVector<const Lesson*> others = idx.holding(cell.period(), m);
    others.removeAll(own);
    return others;
}

const Lesson* selectedLesson(const LessonIndex& idx, const Cell& cell) {
    const QVector<const Lesson*> lessons = idx.cellLessons(cell.TimetableID, cell.period());
    return lessons.isEmpty() ? nullptr : lessons.first();
}
} // namespace

QVector<RowState> ListStates(ResourceKind kind, const QVector<qint32>& ids, const Cell& cell) {
    const LessonIndex& idx = LessonIndex::current();
    const Lesson* own = selectedLesson(idx, cell);
    QVector<RowState> rows(ids.size());
    for (int i = 0; i < ids.size(); ++i) {
        const Member m{kind, ids[i]};
        RowState& row = rows[i];
        row.checked = own && own->has(m);
        const qsizetype others = IsBooked(kind) ? otherLessons(idx, m, cell, own).size() : 0;
        if (row.checked)
            row.status = others > 0 ? QStringLiteral("Clash") : QStringLiteral("-");
        else
            row.status = others == 0   ? QStringLiteral("Avail")
                         : others == 1 ? QStringLiteral("Busy")
                                       : QStringLiteral("Clash");
    }
    return rows;
}

QStringList BusyLessons(ResourceKind kind, qint32 ResourceID, const Cell& cell) {
    QStringList names;
    if (!IsBooked(kind))
        return names;
    const LessonIndex& idx = LessonIndex::current();
    for (const Lesson* l : otherLessons(idx, {kind, ResourceID}, cell, selectedLesson(idx, cell)))
        names << idx.describe(*l);
    return names;
}

} // namespace ModMain
