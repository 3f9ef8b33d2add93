#include "scheduling/LessonMove.h"

#include "scheduling/ListSelect.h"
#include "scheduling/PeriodCodes.h"
#include "store/Records.h"
#include "store/Transaction.h"

#include <optional>

namespace ModMain {

namespace {
// Asks about each clash in turn; false at the first the user refuses.
bool agree(const Members& lesson, const Cell& at, const Lesson* leaving, QWidget* window) {
    for (const LessonClash& clash : LessonClashes(lesson, at, leaving))
        if (!AgreeToClash(clash.who.kind, clash.lessons, window))
            return false;
    return true;
}

std::optional<Lesson> lessonAt(const Cell& cell) {
    if (const Lesson* l = SelectedLesson(cell))
        return *l;
    return std::nullopt;
}
} // namespace

bool CanHoldLesson(const Cell& cell) {
    return TimeTitleSpecialID(cell.TimeTitleID) <= SpecialID::Ordinary &&
           CellRefusal(cell).isEmpty();
}

QVector<LessonClash> LessonClashes(const Members& lesson, const Cell& at, const Lesson* leaving) {
    QVector<LessonClash> clashes;
    const LessonIndex& idx = LessonIndex::current();
    for (const Member& m : lesson) {
        if (!IsBooked(m.kind))
            continue;
        LessonClash clash{m, {}};
        for (const Lesson* other : idx.holding(at.period(), m))
            if (!leaving || other->members != leaving->members)
                clash.lessons << idx.describe(*other);
        if (!clash.lessons.isEmpty())
            clashes.append(clash);
    }
    return clashes;
}

bool MoveLesson(const Cell& from, const Cell& to, QWidget* window) {
    const std::optional<Lesson> moving = lessonAt(from);
    const std::optional<Lesson> staying = lessonAt(to);
    if (!moving || from.period() == to.period() || !CanHoldLesson(to) ||
        (staying && !CanHoldLesson(from)))
        return false;
    // Both questions before anything is written: a refusal changes nothing.
    const Lesson* leavingTo = staying ? &*staying : nullptr;
    if (!agree(moving->members, to, leavingTo, window) ||
        (staying && !agree(staying->members, from, &*moving, window)))
        return false;
    const ActionName name(staying ? QStringLiteral("Swap Lessons") : QStringLiteral("Move Lesson"));
    Transaction tx;
    if (!tx.ok())
        return false;
    RemoveLesson(*moving);
    if (staying)
        RemoveLesson(*staying);
    WriteLesson(to.period(), nullptr, moving->members);
    if (staying)
        WriteLesson(from.period(), nullptr, staying->members);
    return true;
}

} // namespace ModMain
