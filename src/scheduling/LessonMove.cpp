#include "scheduling/LessonMove.h"

#include "scheduling/ListSelect.h"
#include "scheduling/PeriodCodes.h"
#include "store/ModMain.h"
#include "store/Records.h"
#include "store/Transaction.h"
#include "timetable/SlotLookup.h"

namespace ModMain {

namespace {
constexpr ResourceKind kTickOrder[] = {ResourceKind::Tutor, ResourceKind::Subject,
                                       ResourceKind::Room, ResourceKind::Class};

// The cell with the slot it has now (a move may have just created it).
Cell withSlot(Cell cell) {
    cell.SlotID =
        qMax(0, DoGetSlot(cell.TimetableID, cell.ProjectTimeTitleID, cell.ProjectDayTitleID));
    return cell;
}

void untick(const Lesson& lesson, const Cell& cell) {
    // Classes first, so their mirrored links go while the tutors are known.
    for (auto it = lesson.links.crbegin(); it != lesson.links.crend(); ++it)
        UntickResource(it->first, it->second, withSlot(cell));
}

void tick(const Lesson& lesson, const Cell& cell) {
    for (const auto& [kind, id] : lesson.links)
        TickResource(kind, id, withSlot(cell));
}

// The class, tutor or room whose own timetable holds the slot.
QPair<ResourceKind, qint32> TimetableOwnerOfSlot(qint32 SlotID) {
    auto rs = DB().Execute(QStringLiteral("SELECT t.Type, t.ClassID, t.TutorID, t.RoomID FROM Slot "
                                          "s JOIN Timetable t ON t.ID = s.TimetableID WHERE s.id "
                                          "= %1")
                               .arg(SlotID));
    const QString type = rs.Field(qint16(0)).toString();
    if (type == QLatin1String("Tutor"))
        return {ResourceKind::Tutor, rs.Field(qint16(2)).toInt()};
    if (type == QLatin1String("Room"))
        return {ResourceKind::Room, rs.Field(qint16(3)).toInt()};
    return {ResourceKind::Class, rs.Field(qint16(1)).toInt()};
}

// Asks about each clash in turn; false at the first the user refuses.
bool agree(const Lesson& lesson, const Cell& at, const Lesson& leaving, QWidget* window) {
    for (const LessonClash& clash : LessonClashes(lesson, at, leaving))
        if (!AgreeToClash(clash.kind, clash.busySlots, clash.count, window))
            return false;
    return true;
}
} // namespace

Lesson ReadLesson(const Cell& cell) {
    Lesson lesson;
    if (cell.SlotID <= 0)
        return lesson;
    for (const ResourceKind kind : kTickOrder) {
        // A timetable's own kind is never ticked into its cells.
        if (KindWord(kind) == cell.Type)
            continue;
        const QString word = KindWord(kind);
        for (auto rs = DB().Execute(QStringLiteral("SELECT %1ID FROM %1Slot WHERE SlotID = %2 "
                                                   "ORDER BY id")
                                        .arg(word)
                                        .arg(cell.SlotID));
             !rs.eof(); rs.MoveNext())
            lesson.links.append({kind, rs.Field(qint16(0)).toInt()});
    }
    return lesson;
}

bool CanHoldLesson(const Cell& cell) {
    if (TimeTitleSpecialID(cell.TimeTitleID) > SpecialID::Ordinary)
        return false;
    if (cell.SlotID <= 0)
        return true;
    return DB().Execute(QStringLiteral("SELECT SpecialID FROM Slot WHERE id = %1").arg(cell.SlotID))
               .Field(qint16(0))
               .toInt() <= SpecialID::Ordinary;
}

QVector<LessonClash> LessonClashes(const Lesson& lesson, const Cell& at, const Lesson& leaving) {
    QVector<LessonClash> clashes;
    const qint32 ignore = at.SlotID > 0 ? at.SlotID : -1;
    for (const auto& [kind, id] : lesson.links) {
        LessonClash clash{kind, {}, 0};
        QVector<qint32> busy;
        bool free = true;
        if (kind == ResourceKind::Tutor)
            free = GetTutorAvailability(at.ProjectTimeTitleID, at.ProjectDayTitleID, id, busy,
                                        clash.count, ignore);
        else if (kind == ResourceKind::Room)
            free = GetRoomAvailability(at.ProjectTimeTitleID, at.ProjectDayTitleID, id, busy,
                                       clash.count, ignore);
        else if (kind == ResourceKind::Class)
            free = GetClassAvailability(at.ProjectTimeTitleID, at.ProjectDayTitleID, id, busy,
                                        clash.count, ignore);
        if (free)
            continue;
        // The leaving lesson's own copies in its resources' timetables go with it.
        for (const qint32 slot : busy.mid(0, clash.count))
            if (!leaving.links.contains(TimetableOwnerOfSlot(slot)))
                clash.busySlots.append(slot);
        clash.count = qint32(clash.busySlots.size());
        if (clash.count > 0)
            clashes.append(clash);
    }
    return clashes;
}

bool MoveLesson(const Cell& from, const Cell& to, QWidget* window) {
    const Lesson moving = ReadLesson(from);
    const Lesson staying = ReadLesson(to);
    if (moving.isEmpty() || !CanHoldLesson(to) || from.SlotID == to.SlotID)
        return false;
    // Both questions before anything is written: a refusal changes nothing.
    if (!agree(moving, to, staying, window) || !agree(staying, from, moving, window))
        return false;
    const ActionName name(staying.isEmpty() ? QStringLiteral("Move Lesson")
                                            : QStringLiteral("Swap Lessons"));
    Transaction tx;
    if (!tx.ok())
        return false;
    untick(moving, from);
    untick(staying, to);
    tick(moving, to);
    tick(staying, from);
    return true;
}

} // namespace ModMain
