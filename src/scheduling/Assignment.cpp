#include "scheduling/Assignment.h"

#include "store/Records.h"
#include "store/Transaction.h"

namespace ModMain {

const Lesson* SelectedLesson(const Cell& cell) {
    const QVector<const Lesson*> lessons =
        LessonIndex::current().cellLessons(cell.TimetableID, cell.period());
    return lessons.isEmpty() ? nullptr : lessons.first();
}

QString CellRefusal(const Cell& cell) {
    const qint32 mark = LessonIndex::current().cellMark(cell.TimetableID, cell.period());
    if (mark == SpecialID::Ordinary)
        return QString();
    return QStringLiteral("This period is marked %1, so it takes no lesson. Choose Period > Clear "
                          "first to use it for lessons.")
        .arg(MarkWord(mark));
}

qint32 TickResource(ResourceKind kind, qint32 ResourceID, const Cell& cell) {
    if (cell.DayTitleID == 0 || cell.TimeTitleID == 0 || !CellRefusal(cell).isEmpty())
        return -1;
    Transaction tx;
    if (!tx.ok())
        return cell.SlotID;
    const LessonIndex& idx = LessonIndex::current();
    const Lesson* lesson = SelectedLesson(cell);
    Members members = lesson ? lesson->members : Members{idx.ownerOf(cell.TimetableID)};
    const Member m{kind, ResourceID};
    if (!members.contains(m)) {
        members << m;
        WriteLesson(cell.period(), lesson, members);
    }
    return LessonIndex::current().cellSlot(cell.TimetableID, cell.period());
}

void UntickResource(ResourceKind kind, qint32 ResourceID, const Cell& cell) {
    Transaction tx;
    if (!tx.ok())
        return;
    const Lesson* lesson = SelectedLesson(cell);
    const Member m{kind, ResourceID};
    if (!lesson || !lesson->has(m))
        return;
    Members members = lesson->members;
    members.removeAll(m);
    WriteLesson(cell.period(), lesson, members);
}

} // namespace ModMain
