#include "timetable/CellLook.h"

#include "store/Records.h"
#include "timetable/TimetableText.h"

namespace ModMain {

QColor MarkTint(qint32 special, const QColor& unavailable) {
    switch (special) {
    case SpecialID::Unavailable:
        return unavailable;
    case SpecialID::Lunch:
        return QColor(255, 242, 204);
    case SpecialID::Break:
        return QColor(222, 240, 222);
    default:
        return Qt::white;
    }
}

QColor WarningTint() {
    return QColor(255, 196, 128);
}

QColor ConflictEdge() {
    return QColor(204, 0, 0);
}

QColor ColourFromNumber(qint64 n) {
    return QColor(int(n & 0xFF), int((n >> 8) & 0xFF), int((n >> 16) & 0xFF));
}

CellLook LookOfCell(const LessonIndex& idx, qint32 timetable, const Period& at, const QString& type,
                    const QColor& unavailableBack, const QColor& unavailableFore) {
    CellLook look;
    const QVector<const Lesson*> lessons = idx.cellLessons(timetable, at);
    const qint32 mark = idx.cellMark(timetable, at);
    look.slot = idx.cellSlot(timetable, at);
    QStringList tips, clashes;
    for (const Lesson* l : lessons) {
        tips << idx.describe(*l);
        for (const Member& m : l->members)
            if (IsBooked(m.kind))
                for (const Lesson* other : idx.holding(at, m))
                    if (other != l)
                        clashes << QStringLiteral("Double booked: %1 %2 is also in %3")
                                       .arg(KindWord(m.kind), idx.fullName(m),
                                            idx.describe(*other));
    }
    clashes.removeDuplicates();
    look.conflict = !clashes.isEmpty();
    // Links an earlier version left in a marked slot are shown, not hidden.
    Lesson stray;
    for (const SlotEntry& s : idx.slotsAt(at))
        if (s.timetable == timetable && s.special != SpecialID::Ordinary && !s.links.isEmpty()) {
            stray.at = at;
            stray.members = s.links;
            stray.slots = {s.id};
            break;
        }
    QVector<const Lesson*> shown = lessons;
    if (!stray.members.isEmpty())
        shown << &stray;
    // A cell without a slot is blank; an empty slot keeps its empty lines.
    const QString lessonText = !shown.isEmpty() ? FormatLessonText(shown, type)
                               : look.slot != 0 ? EmptySlotText(type)
                                                : QString();
    if (mark == SpecialID::Ordinary) {
        look.text = lessonText;
    } else {
        look.text = MarkWord(mark);
        if (!shown.isEmpty()) {
            look.text += QStringLiteral("\r\n") + lessonText;
            look.back = WarningTint();
            tips.prepend(QStringLiteral("Marked %1, but holds a lesson: clear the period or move "
                                        "the lesson.")
                             .arg(MarkWord(mark)));
        } else {
            look.back = MarkTint(mark, unavailableBack);
            if (mark == SpecialID::Unavailable)
                look.fore = unavailableFore;
        }
    }
    look.tip = (clashes + tips).join(QLatin1Char('\n'));
    return look;
}

} // namespace ModMain
