#pragma once
// A lesson is the classes, subjects, tutors and rooms that belong together at
// one project day and period. It is kept as one slot in the timetable of each
// of its classes, tutors and rooms that has one, every such slot linking the
// whole lesson, its own timetable's owner included: every timetable shows
// the lesson whole, and a lesson is counted once however many copies it has.
//
// The index reads the open project's lessons, also from files written before
// copies agreed, where a class's cell and its tutor's held different parts of
// one lesson; the first edit of such a lesson writes it out whole.

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>
#include <compare>

namespace ModMain {

enum class ResourceKind { Tutor, Subject, Room, Class };

// "Tutor", "Subject", "Room" or "Class": the list's word, the timetable type
// and the stem of the resource's tables (TutorSlot, TutorID).
QString KindWord(ResourceKind kind);
// Tutors, rooms and classes can be in one place at a time; subjects can not
// clash.
inline bool IsBooked(ResourceKind kind) {
    return kind != ResourceKind::Subject;
}

struct Member {
    ResourceKind kind = ResourceKind::Tutor;
    qint32 id = 0;
    auto operator<=>(const Member&) const = default;
};
inline size_t qHash(const Member& m, size_t seed = 0) {
    return qHashMulti(seed, int(m.kind), m.id);
}
// Sorted, without repeats.
using Members = QVector<Member>;
Members Normalized(Members members);

// A project day and period: the same in every timetable.
struct Period {
    qint32 day = 0;  // ProjectDayTitle id
    qint32 time = 0; // ProjectTimeTitle id
    auto operator<=>(const Period&) const = default;
};
inline size_t qHash(const Period& p, size_t seed = 0) {
    return qHashMulti(seed, p.day, p.time);
}

struct Lesson {
    Period at;
    Members members;
    QVector<qint32> slots; // every slot that holds it, by id

    bool has(const Member& m) const;
    QVector<qint32> idsOf(ResourceKind kind) const;
};

// One Slot row at a period with the resources it links (those that exist).
struct SlotEntry {
    qint32 id = 0;
    qint32 timetable = 0;
    qint32 special = 1;
    Members links;
};

// A tutor, room or class in two or more lessons at once.
struct Conflict {
    Period at;
    Member who;
    QVector<const Lesson*> lessons;
};

class LessonIndex {
public:
    // The open project's lessons as the file holds them now: read again when
    // the file changed since it was last read, by this program or another.
    static const LessonIndex& current();
    // Forgets what was read; the next current() reads the file.
    static void invalidate();

    const QVector<Lesson>& at(const Period& p) const;
    // Every period that has a slot, in no order.
    QVector<Period> periods() const { return m_periods.keys(); }
    const QVector<SlotEntry>& slotsAt(const Period& p) const;
    // The lessons at p that hold the resource.
    QVector<const Lesson*> holding(const Period& p, const Member& m) const;
    // The lessons a timetable's cell shows: those holding its owner. The one
    // the cell selects (whose slot in the timetable comes first) is first.
    QVector<const Lesson*> cellLessons(qint32 timetable, const Period& p) const;
    // The cell's period mark (unavailable, lunch or break), 1 when none.
    qint32 cellMark(qint32 timetable, const Period& p) const;
    // The slot a cell stands for: its selected lesson's, else its first; 0
    // when it has none.
    qint32 cellSlot(qint32 timetable, const Period& p) const;
    // Whether a tutor, room or class of the lesson is in another lesson then.
    bool conflicted(const Lesson& lesson) const;
    // Every double booking, by day, period and resource.
    QVector<Conflict> conflicts() const;
    // Every lesson of a resource.
    QVector<const Lesson*> lessonsOf(const Member& m) const;
    // Every lesson a timetable's cells show.
    QVector<const Lesson*> lessonsIn(qint32 timetable) const;

    // The timetable's owner; id 0 when the timetable is unknown.
    Member ownerOf(qint32 timetable) const;
    QVector<qint32> timetablesOf(const Member& m) const;
    // The name a cell shows (a tutor's display name) and the full name.
    QString cellName(const Member& m) const;
    QString fullName(const Member& m) const;
    // "Class 7A", "Tutor Mr Brown", "Room 101".
    QString timetableName(qint32 timetable) const;
    // Day and period names in the project's order, for messages.
    QString dayName(qint32 day) const;
    QString periodName(qint32 time) const;
    int dayPos(qint32 day) const;
    int periodPos(qint32 time) const;
    // "7A Maths, Mr Brown, Room 101 (Class 7A, Tutor Mr Brown)".
    QString describe(const Lesson& lesson) const;

    // Reads the periods again after an action whose writes all lay there,
    // when nothing else changed the file since it was read; otherwise reads
    // everything again at the next current().
    static void refreshAfterWrite(const QVector<Period>& periods, quint64 stampBefore);
    // What the file's state is known as now (see refreshAfterWrite).
    static quint64 stamp();
    // The same for a writer that knows the rows it wrote at the period: the
    // slots it wrote (links as written) and those it deleted are put in
    // place without reading the file.
    static void applyWrites(const Period& p, const QVector<SlotEntry>& written,
                            const QVector<qint32>& deleted, quint64 stampBefore);

private:
    friend class OwnSlotsChange;
    struct PeriodData {
        QVector<SlotEntry> slots;
        QVector<Lesson> lessons;
    };
    QVector<Period> periodsInOrder() const;
    void readAll();
    void readPeriod(const Period& p);
    void putSlots(const Period& p, const QVector<SlotEntry>& written,
                  const QVector<qint32>& deleted);
    void readNames();
    void group(PeriodData& data, const Period& at) const;

    quint64 m_stamp = 0;
    bool m_valid = false;
    QHash<Period, PeriodData> m_periods;
    QHash<qint32, Member> m_owners;
    QHash<Member, QVector<qint32>> m_timetables;
    QHash<Member, QString> m_cellNames, m_fullNames;
    QHash<qint32, QString> m_dayNames, m_periodNames;
    QHash<qint32, int> m_dayPos, m_periodPos;
};

// Makes the lesson `before` (null: a new one) hold exactly `after` at the
// period: one slot linking all of it in each timetable of its tutors, rooms
// and classes, and nothing of it anywhere else. A lesson left with nothing
// but one resource is taken out. Part of the caller's action.
void WriteLesson(const Period& at, const Lesson* before, Members after);
// Takes the lesson out of every timetable.
void RemoveLesson(const Lesson& lesson);
// Writes every lesson of the timetable's owner into it (a new timetable).
void CopyLessonsInto(qint32 timetable);
// Work that writes links into one timetable's own slots only (Auto Fill)
// takes a snapshot first; writeOut then writes each lesson it changed out
// whole, into every timetable the lesson belongs in.
class OwnSlotsChange {
public:
    explicit OwnSlotsChange(qint32 timetable);
    void writeOut();

private:
    qint32 m_timetable;
    quint64 m_stamp = 0;
    QHash<qint32, Members> m_links;   // the timetable's slots' links before
    QHash<qint32, Lesson> m_lessonOf; // the lesson each slot held before
    QHash<qint32, Period> m_periodOf;
};

// The three lines of a cell for a timetable type; several lessons at once
// (a double booking) share each line, " / " between them.
QString FormatLessonText(const QVector<const Lesson*>& lessons, const QString& Type);
// "Unavailable", "Lunch", "Break"; empty for an ordinary period.
QString MarkWord(qint32 special);

} // namespace ModMain
