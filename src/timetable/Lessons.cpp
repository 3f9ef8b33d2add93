#include "timetable/Lessons.h"

#include "store/ModMain.h"
#include "store/Records.h"
#include "store/TimeText.h"
#include "timetable/SlotLookup.h"
#include "timetable/TimetableText.h"

#include <QSet>
#include <algorithm>

namespace ModMain {

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

Members Normalized(Members members) {
    members.erase(
        std::remove_if(members.begin(), members.end(), [](const Member& m) { return m.id <= 1; }),
        members.end());
    std::sort(members.begin(), members.end());
    members.erase(std::unique(members.begin(), members.end()), members.end());
    return members;
}

bool Lesson::has(const Member& m) const {
    return std::binary_search(members.cbegin(), members.cend(), m);
}

QVector<qint32> Lesson::idsOf(ResourceKind kind) const {
    QVector<qint32> ids;
    for (const Member& m : members)
        if (m.kind == kind)
            ids << m.id;
    return ids;
}

namespace {
constexpr ResourceKind kKinds[] = {ResourceKind::Tutor, ResourceKind::Subject, ResourceKind::Room,
                                   ResourceKind::Class};

bool kindOfType(const QString& type, ResourceKind& kind) {
    for (const ResourceKind k : {ResourceKind::Tutor, ResourceKind::Room, ResourceKind::Class})
        if (type == KindWord(k)) {
            kind = k;
            return true;
        }
    return false;
}

// Every slot at the periods the condition selects, with its period.
QString slotsSql(const QString& where) {
    return QStringLiteral("SELECT s.id, s.TimetableID, d.ProjectDayTitleID, t.ProjectTimeTitleID, "
                          "s.SpecialID FROM Slot s, DayTitle d, TimeTitle t WHERE d.ID = "
                          "s.DayTitleID AND t.ID = s.TimeTitleID") +
           where + QStringLiteral(" ORDER BY s.id;");
}

// Every link to a resource that exists, as (slot, kind, id), for the slots
// the condition selects.
QString linksSql(const QString& slotCondition) {
    QStringList parts;
    for (const ResourceKind kind : kKinds) {
        const QString word = KindWord(kind);
        parts << QStringLiteral("SELECT l.SlotID, %1, l.%2ID FROM %2Slot l, %2 r WHERE r.ID = "
                                "l.%2ID AND r.ID <> 1%3")
                     .arg(int(kind))
                     .arg(word, slotCondition);
    }
    return parts.join(QStringLiteral(" UNION ALL ")) + QLatin1Char(';');
}

bool isSubset(const Members& part, const Members& whole) {
    return std::includes(whole.cbegin(), whole.cend(), part.cbegin(), part.cend());
}

// The slots the condition selects (all when empty), with their links, by
// period and in id order.
QHash<Period, QVector<SlotEntry>> readSlots(const QString& where) {
    QHash<Period, QVector<SlotEntry>> out;
    QHash<qint32, QPair<Period, int>> place; // slot -> its period and place there
    QStringList ids;
    DB().ForEachRow(slotsSql(where), [&](const clsSQLiteRow& row) {
        const Period p{row.Int(2), row.Int(3)};
        QVector<SlotEntry>& slots = out[p];
        place.insert(row.Int(0), {p, int(slots.size())});
        slots.append({row.Int(0), row.Int(1), row.Int(4), {}});
        ids << QString::number(row.Int(0));
    });
    if (!where.isEmpty() && ids.isEmpty())
        return out;
    // A few slots are looked up by id; the whole project reads every link.
    const QString linkCondition =
        where.isEmpty() ? QString()
                        : QStringLiteral(" AND l.SlotID IN (%1)").arg(ids.join(QLatin1Char(',')));
    DB().ForEachRow(linksSql(linkCondition), [&](const clsSQLiteRow& row) {
        const auto it = place.constFind(row.Int(0));
        if (it != place.cend())
            out[it->first][it->second].links.append({ResourceKind(row.Int(1)), row.Int(2)});
    });
    return out;
}

LessonIndex& instance() {
    static LessonIndex index;
    return index;
}
} // namespace

// --- reading ---------------------------------------------------------------

const LessonIndex& LessonIndex::current() {
    LessonIndex& idx = instance();
    const quint64 now = DB().ChangeStamp();
    if (!idx.m_valid || idx.m_stamp != now) {
        idx.readAll();
        idx.m_stamp = DB().ChangeStamp();
        idx.m_valid = true;
    }
    return idx;
}

void LessonIndex::invalidate() {
    instance().m_valid = false;
}

quint64 LessonIndex::stamp() {
    return instance().m_valid ? instance().m_stamp : 0;
}

void LessonIndex::refreshAfterWrite(const QVector<Period>& periods, quint64 stampBefore) {
    LessonIndex& idx = instance();
    if (!idx.m_valid || idx.m_stamp != stampBefore) {
        idx.m_valid = false;
        return;
    }
    for (const Period& p : periods)
        idx.readPeriod(p);
    idx.m_stamp = DB().ChangeStamp();
}

void LessonIndex::applyWrites(const Period& p, const QVector<SlotEntry>& written,
                              const QVector<qint32>& deleted, quint64 stampBefore) {
    LessonIndex& idx = instance();
    if (!idx.m_valid || idx.m_stamp != stampBefore) {
        idx.m_valid = false;
        return;
    }
    idx.putSlots(p, written, deleted);
    idx.m_stamp = DB().ChangeStamp();
}

// What readPeriod would find after the writes: slots in id order, links
// as group() normalizes them.
void LessonIndex::putSlots(const Period& p, const QVector<SlotEntry>& written,
                           const QVector<qint32>& deleted) {
    PeriodData& data = m_periods[p];
    QVector<SlotEntry>& slots = data.slots;
    const auto byId = [](const SlotEntry& a, qint32 id) { return a.id < id; };
    for (const qint32 id : deleted) {
        const auto it = std::lower_bound(slots.begin(), slots.end(), id, byId);
        if (it != slots.end() && it->id == id)
            slots.erase(it);
    }
    for (const SlotEntry& e : written) {
        const auto it = std::lower_bound(slots.begin(), slots.end(), e.id, byId);
        if (it != slots.end() && it->id == e.id)
            *it = e;
        else
            slots.insert(it, e);
    }
    group(data, p);
    if (slots.isEmpty())
        m_periods.remove(p);
}

void LessonIndex::readNames() {
    m_owners.clear();
    m_timetables.clear();
    m_cellNames.clear();
    m_fullNames.clear();
    m_dayNames.clear();
    m_periodNames.clear();
    m_dayPos.clear();
    m_periodPos.clear();
    DB().ForEachRow(
        QStringLiteral("SELECT id, Type, ClassID, TutorID, RoomID FROM Timetable ORDER BY id;"),
        [&](const clsSQLiteRow& row) {
            ResourceKind kind;
            if (!kindOfType(row.Text(1), kind))
                return;
            const int column = kind == ResourceKind::Class   ? 2
                               : kind == ResourceKind::Tutor ? 3
                                                             : 4;
            const Member owner{kind, row.Int(column)};
            m_owners.insert(row.Int(0), owner);
            m_timetables[owner].append(row.Int(0));
        });
    for (const ResourceKind kind : kKinds) {
        const bool tutor = kind == ResourceKind::Tutor;
        DB().ForEachRow(
            QStringLiteral("SELECT id, name%1 FROM %2 WHERE id <> 1;")
                .arg(tutor ? QStringLiteral(", COALESCE(NULLIF(TRIM(DisplayName), ''), name)")
                           : QString(),
                     KindWord(kind)),
            [&](const clsSQLiteRow& row) {
                const Member m{kind, row.Int(0)};
                m_fullNames.insert(m, row.Text(1));
                m_cellNames.insert(m, row.Text(tutor ? 2 : 1));
            });
    }
    int pos = 0;
    DB().ForEachRow(QStringLiteral("SELECT id, DOW FROM ProjectDayTitle ORDER BY pos, id;"),
                    [&](const clsSQLiteRow& row) {
                        m_dayNames.insert(row.Int(0), row.Text(1));
                        m_dayPos.insert(row.Int(0), pos++);
                    });
    pos = 0;
    DB().ForEachRow(
        QStringLiteral("SELECT id, StartTime, Duration FROM ProjectTimeTitle ORDER BY pos, id;"),
        [&](const clsSQLiteRow& row) {
            m_periodNames.insert(row.Int(0),
                                 FormatTimeTitle(TimeText::Parse(row.Text(1)), row.Int(2), false));
            m_periodPos.insert(row.Int(0), pos++);
        });
}

void LessonIndex::readAll() {
    m_periods.clear();
    readNames();
    const QHash<Period, QVector<SlotEntry>> all = readSlots(QString());
    for (auto it = all.cbegin(); it != all.cend(); ++it) {
        PeriodData& data = m_periods[it.key()];
        data.slots = it.value();
        group(data, it.key());
    }
}

void LessonIndex::readPeriod(const Period& p) {
    PeriodData data;
    data.slots =
        readSlots(QStringLiteral(" AND d.ProjectDayTitleID = %1 AND t.ProjectTimeTitleID = %2")
                      .arg(p.day)
                      .arg(p.time))
            .value(p);
    group(data, p);
    if (data.slots.isEmpty())
        m_periods.remove(p);
    else
        m_periods.insert(p, std::move(data));
}

// Slots that link their own timetable's owner were written whole: equal
// link sets are one lesson. A slot without its owner is a part copied by an
// earlier version: it belongs to the first lesson that holds all of it, or
// stands as a lesson of its own. A tutor's slot that holds only rooms is the
// stray room copy that version gave a new tutor timetable, unless it is part
// of a lesson.
void LessonIndex::group(PeriodData& data, const Period& at) const {
    data.lessons.clear();
    struct Entry {
        qint32 slot;
        Members set;
        Member owner;
        bool whole;
    };
    QVector<Entry> whole, parts;
    for (SlotEntry& s : data.slots) {
        s.links = Normalized(s.links);
        if (s.special != SpecialID::Ordinary || s.links.isEmpty())
            continue;
        const Member owner = m_owners.value(s.timetable);
        Members set = s.links;
        const bool hasOwner = owner.id == 0 || std::binary_search(set.cbegin(), set.cend(), owner);
        if (!hasOwner)
            set = Normalized(set << owner);
        if (set.size() < 2 || std::none_of(set.cbegin(), set.cend(),
                                           [](const Member& m) { return IsBooked(m.kind); }))
            continue;
        (hasOwner ? whole : parts).append({s.id, set, owner, hasOwner});
    }
    QHash<Members, int> bySet;
    for (const Entry& e : whole) {
        const auto it = bySet.constFind(e.set);
        if (it != bySet.cend()) {
            data.lessons[*it].slots << e.slot;
        } else {
            bySet.insert(e.set, int(data.lessons.size()));
            data.lessons.append({at, e.set, {e.slot}});
        }
    }
    std::stable_sort(parts.begin(), parts.end(),
                     [](const Entry& a, const Entry& b) { return a.set.size() > b.set.size(); });
    for (const Entry& e : parts) {
        auto home = std::find_if(data.lessons.begin(), data.lessons.end(),
                                 [&](const Lesson& l) { return isSubset(e.set, l.members); });
        if (home != data.lessons.end()) {
            home->slots << e.slot;
            continue;
        }
        const bool strayRooms = e.owner.kind == ResourceKind::Tutor &&
                                std::all_of(e.set.cbegin(), e.set.cend(), [&](const Member& m) {
                                    return m == e.owner || m.kind == ResourceKind::Room;
                                });
        if (!strayRooms)
            data.lessons.append({at, e.set, {e.slot}});
    }
    for (Lesson& l : data.lessons)
        std::sort(l.slots.begin(), l.slots.end());
    std::sort(data.lessons.begin(), data.lessons.end(),
              [](const Lesson& a, const Lesson& b) { return a.slots.first() < b.slots.first(); });
}

namespace {
const QVector<Lesson> kNoLessons;
const QVector<SlotEntry> kNoSlots;
} // namespace

const QVector<Lesson>& LessonIndex::at(const Period& p) const {
    const auto it = m_periods.constFind(p);
    return it == m_periods.cend() ? kNoLessons : it->lessons;
}

const QVector<SlotEntry>& LessonIndex::slotsAt(const Period& p) const {
    const auto it = m_periods.constFind(p);
    return it == m_periods.cend() ? kNoSlots : it->slots;
}

QVector<const Lesson*> LessonIndex::holding(const Period& p, const Member& m) const {
    QVector<const Lesson*> found;
    for (const Lesson& l : at(p))
        if (l.has(m))
            found << &l;
    return found;
}

QVector<const Lesson*> LessonIndex::cellLessons(qint32 timetable, const Period& p) const {
    const Member owner = ownerOf(timetable);
    QSet<qint32> own;
    for (const SlotEntry& s : slotsAt(p))
        if (s.timetable == timetable)
            own.insert(s.id);
    QVector<QPair<qint64, const Lesson*>> keyed;
    for (const Lesson& l : at(p)) {
        const auto mine = std::find_if(l.slots.cbegin(), l.slots.cend(),
                                       [&](qint32 s) { return own.contains(s); });
        if (mine != l.slots.cend())
            keyed.append({*mine, &l});
        else if (owner.id != 0 && l.has(owner))
            // Held by the owner, though this timetable has no copy yet.
            keyed.append({(qint64(1) << 40) + l.slots.first(), &l});
    }
    std::sort(keyed.begin(), keyed.end(),
              [](const auto& a, const auto& b) { return a.first < b.first; });
    QVector<const Lesson*> lessons;
    for (const auto& k : keyed)
        lessons << k.second;
    return lessons;
}

qint32 LessonIndex::cellMark(qint32 timetable, const Period& p) const {
    for (const SlotEntry& s : slotsAt(p))
        if (s.timetable == timetable && s.special > SpecialID::Ordinary)
            return s.special;
    return SpecialID::Ordinary;
}

qint32 LessonIndex::cellSlot(qint32 timetable, const Period& p) const {
    const QVector<const Lesson*> lessons = cellLessons(timetable, p);
    qint32 first = 0;
    for (const SlotEntry& s : slotsAt(p)) {
        if (s.timetable != timetable)
            continue;
        if (!lessons.isEmpty() && lessons.first()->slots.contains(s.id))
            return s.id;
        if (first == 0)
            first = s.id;
    }
    return first;
}

bool LessonIndex::conflicted(const Lesson& lesson) const {
    for (const Member& m : lesson.members)
        if (IsBooked(m.kind))
            for (const Lesson& other : at(lesson.at))
                if (&other != &lesson && other.has(m))
                    return true;
    return false;
}

QVector<Conflict> LessonIndex::conflicts() const {
    QVector<Conflict> found;
    for (auto it = m_periods.cbegin(); it != m_periods.cend(); ++it) {
        QHash<Member, QVector<const Lesson*>> by;
        for (const Lesson& l : it->lessons)
            for (const Member& m : l.members)
                if (IsBooked(m.kind))
                    by[m] << &l;
        for (auto b = by.cbegin(); b != by.cend(); ++b)
            if (b->size() > 1)
                found.append({it.key(), b.key(), *b});
    }
    std::sort(found.begin(), found.end(), [this](const Conflict& a, const Conflict& b) {
        const auto key = [this](const Conflict& c) {
            return std::make_tuple(dayPos(c.at.day), periodPos(c.at.time),
                                   c.who.kind == ResourceKind::Class ? 0 : int(c.who.kind) + 1,
                                   fullName(c.who), c.who.id);
        };
        return key(a) < key(b);
    });
    return found;
}

QVector<Period> LessonIndex::periodsInOrder() const {
    QVector<Period> periods = m_periods.keys();
    std::sort(periods.begin(), periods.end(), [this](const Period& a, const Period& b) {
        return std::make_tuple(dayPos(a.day), periodPos(a.time), a) <
               std::make_tuple(dayPos(b.day), periodPos(b.time), b);
    });
    return periods;
}

QVector<const Lesson*> LessonIndex::lessonsIn(qint32 timetable) const {
    QVector<const Lesson*> found;
    for (const Period& p : periodsInOrder())
        found << cellLessons(timetable, p);
    return found;
}

QVector<const Lesson*> LessonIndex::lessonsOf(const Member& m) const {
    QVector<const Lesson*> found;
    for (const Period& p : periodsInOrder())
        found << holding(p, m);
    return found;
}

Member LessonIndex::ownerOf(qint32 timetable) const {
    return m_owners.value(timetable, Member{ResourceKind::Class, 0});
}

QVector<qint32> LessonIndex::timetablesOf(const Member& m) const {
    return m_timetables.value(m);
}

QString LessonIndex::cellName(const Member& m) const {
    return m_cellNames.value(m);
}

QString LessonIndex::fullName(const Member& m) const {
    return m_fullNames.value(m);
}

QString LessonIndex::timetableName(qint32 timetable) const {
    const Member owner = ownerOf(timetable);
    return owner.id == 0 ? QString() : KindWord(owner.kind) + QLatin1Char(' ') + fullName(owner);
}

QString LessonIndex::dayName(qint32 day) const {
    return m_dayNames.value(day);
}

QString LessonIndex::periodName(qint32 time) const {
    return m_periodNames.value(time);
}

int LessonIndex::dayPos(qint32 day) const {
    return m_dayPos.value(day, 1 << 20);
}

int LessonIndex::periodPos(qint32 time) const {
    return m_periodPos.value(time, 1 << 20);
}

QString LessonIndex::describe(const Lesson& lesson) const {
    const auto names = [&](ResourceKind kind) {
        QStringList list;
        for (const qint32 id : lesson.idsOf(kind))
            list << fullName({kind, id});
        std::sort(list.begin(), list.end());
        return list.join(QStringLiteral(", "));
    };
    QStringList words;
    for (const QString& part : {names(ResourceKind::Class), names(ResourceKind::Subject)})
        if (!part.isEmpty())
            words << part;
    if (const QString tutors = names(ResourceKind::Tutor); !tutors.isEmpty())
        words << QStringLiteral("with ") + tutors;
    if (const QString rooms = names(ResourceKind::Room); !rooms.isEmpty())
        words << QStringLiteral("in ") + rooms;
    QStringList timetables;
    for (const qint32 slot : lesson.slots)
        for (const SlotEntry& s : slotsAt(lesson.at))
            if (s.id == slot && !timetables.contains(timetableName(s.timetable)))
                timetables << timetableName(s.timetable);
    const QString what =
        words.isEmpty() ? QStringLiteral("A lesson") : words.join(QLatin1Char(' '));
    return what + QStringLiteral(" (") +
           (timetables.isEmpty() ? QStringLiteral("in no timetable")
                                 : timetables.join(QStringLiteral(", "))) +
           QLatin1Char(')');
}

// --- writing ---------------------------------------------------------------

namespace {
void deleteLink(const Member& m, qint32 slot) {
    DB().Execute(QStringLiteral("DELETE FROM %1Slot WHERE SlotID = %2 AND %1ID = %3")
                     .arg(KindWord(m.kind))
                     .arg(slot)
                     .arg(m.id));
}

void addLink(const Member& m, qint32 slot) {
    switch (m.kind) {
    case ResourceKind::Tutor:
        CreateTutorSlotRecord(slot, m.id, false);
        break;
    case ResourceKind::Subject:
        CreateSubjectSlotRecord(slot, m.id, false);
        break;
    case ResourceKind::Room:
        CreateRoomSlotRecord(slot, m.id, false);
        break;
    case ResourceKind::Class:
        CreateClassSlotRecord(slot, m.id, false);
        break;
    }
}

void setLinks(qint32 slot, const Members& have, const Members& want) {
    for (const Member& m : have)
        if (!std::binary_search(want.cbegin(), want.cend(), m))
            deleteLink(m, slot);
    for (const Member& m : want)
        if (!std::binary_search(have.cbegin(), have.cend(), m))
            addLink(m, slot);
}

// Every link of the slot, also to resources that are gone.
void deleteLinksOf(qint32 slot) {
    for (const ResourceKind kind : kKinds)
        DB().Execute(
            QStringLiteral("DELETE FROM %1Slot WHERE SlotID = %2").arg(KindWord(kind)).arg(slot));
}

void deleteSlot(qint32 slot) {
    deleteLinksOf(slot);
    DB().Execute(QStringLiteral("DELETE FROM Slot WHERE id = %1").arg(slot));
}

// A new slot of the timetable at the period; 0 when it has no such day or period.
qint32 createSlot(qint32 timetable, const Period& p) {
    auto rs = DB().Execute(
        QStringLiteral("SELECT d.id AS d, t.id AS t, t.StartTime AS st, t.Duration AS du, "
                       "d.DOW AS dow FROM DayTitle d, TimeTitle t WHERE "
                       "d.TimetableID = %1 AND d.ProjectDayTitleID = %2 AND "
                       "t.TimetableID = %1 AND t.ProjectTimeTitleID = %3 "
                       "ORDER BY d.id, t.id LIMIT 1;")
            .arg(timetable)
            .arg(p.day)
            .arg(p.time));
    if (rs.eof())
        return 0;
    const qint32 slot =
        CreateSlotRecord(timetable, TimeText::Parse(rs.Field("st").toString()),
                         rs.Field("du").toInt(), rs.Field("dow").toString(), SpecialID::Ordinary,
                         rs.Field("d").toInt(), rs.Field("t").toInt());
    // Links a deleted slot of the same id left behind are nobody's.
    QStringList anyLink;
    for (const ResourceKind kind : kKinds)
        anyLink << QStringLiteral("EXISTS (SELECT 1 FROM %1Slot WHERE SlotID = %2)")
                       .arg(KindWord(kind))
                       .arg(slot);
    if (DB().Execute(QStringLiteral("SELECT ") + anyLink.join(QStringLiteral(" OR ")) +
                     QStringLiteral(" AS n;"))
            .Field("n")
            .toInt() != 0)
        deleteLinksOf(slot);
    return slot;
}
} // namespace

void WriteLesson(const Period& at, const Lesson* before, Members after) {
    const LessonIndex& idx = LessonIndex::current();
    const quint64 stampBefore = LessonIndex::stamp();
    const Lesson old = before ? *before : Lesson{at, {}, {}};
    after = Normalized(after);
    const bool keep =
        after.size() >= 2 &&
        std::any_of(after.cbegin(), after.cend(), [](const Member& m) { return IsBooked(m.kind); });
    QVector<qint32> targets;
    if (keep)
        for (const Member& m : after)
            if (IsBooked(m.kind))
                for (const qint32 t : idx.timetablesOf(m))
                    if (!targets.contains(t))
                        targets << t;

    QHash<qint32, SlotEntry> entries;
    QHash<qint32, qint32> anchor; // timetable -> its first slot at the period
    for (const SlotEntry& s : idx.slotsAt(at)) {
        entries.insert(s.id, s);
        if (!anchor.contains(s.timetable))
            anchor.insert(s.timetable, s.id);
    }
    QSet<qint32> used;
    QVector<SlotEntry> written;
    QVector<qint32> deleted;
    for (const qint32 t : targets) {
        qint32 slot = 0;
        for (const qint32 s : old.slots)
            if (entries.value(s).timetable == t && !used.contains(s)) {
                slot = s;
                break;
            }
        if (slot == 0)
            for (const SlotEntry& s : idx.slotsAt(at))
                if (s.timetable == t && s.special == SpecialID::Ordinary && s.links.isEmpty() &&
                    !used.contains(s.id) && !old.slots.contains(s.id)) {
                    slot = s.id;
                    break;
                }
        const Members have = entries.value(slot).links;
        if (slot == 0)
            slot = createSlot(t, at);
        if (slot <= 0)
            continue;
        setLinks(slot, have, after);
        used.insert(slot);
        written.append({slot, t, SpecialID::Ordinary, after});
    }
    for (const qint32 s : old.slots) {
        if (used.contains(s))
            continue;
        const SlotEntry e = entries.value(s);
        // The cell's first slot stays, as the grid knows it; others go.
        if (anchor.value(e.timetable) == s) {
            setLinks(s, e.links, {});
            written.append({s, e.timetable, e.special, {}});
        } else {
            deleteSlot(s);
            deleted.append(s);
        }
    }
    LessonIndex::applyWrites(at, written, deleted, stampBefore);
}

void RemoveLesson(const Lesson& lesson) {
    const Lesson copy = lesson;
    WriteLesson(copy.at, &copy, {});
}

namespace {
void writeOut(const QVector<Lesson>& lessons) {
    for (const Lesson& l : lessons)
        WriteLesson(l.at, &l, l.members);
}
} // namespace

void CopyLessonsInto(qint32 timetable) {
    const LessonIndex& idx = LessonIndex::current();
    QVector<Lesson> lessons;
    for (const Lesson* l : idx.lessonsOf(idx.ownerOf(timetable)))
        lessons << *l;
    writeOut(lessons);
}

OwnSlotsChange::OwnSlotsChange(qint32 timetable) : m_timetable(timetable) {
    const LessonIndex& idx = LessonIndex::current();
    m_stamp = LessonIndex::stamp();
    for (auto it = idx.m_periods.cbegin(); it != idx.m_periods.cend(); ++it) {
        for (const SlotEntry& s : it->slots)
            if (s.timetable == timetable) {
                m_links.insert(s.id, s.links);
                m_periodOf.insert(s.id, it.key());
            }
        for (const Lesson& l : it->lessons)
            for (const qint32 slot : l.slots)
                if (m_links.contains(slot))
                    m_lessonOf.insert(slot, l);
    }
}

void OwnSlotsChange::writeOut() {
    // The work wrote this timetable's slots only: read them back and put
    // them in place, rather than reading the whole project again.
    QHash<Period, QVector<SlotEntry>> now =
        readSlots(QStringLiteral(" AND s.TimetableID = %1").arg(m_timetable));
    QSet<qint32> where;
    for (const auto& slots : std::as_const(now))
        for (const SlotEntry& e : slots)
            where.insert(e.id);
    QHash<Period, QVector<qint32>> gone;
    for (auto it = m_periodOf.cbegin(); it != m_periodOf.cend(); ++it)
        if (!where.contains(it.key()))
            gone[it.value()].append(it.key());
    QSet<Period> touched;
    for (auto it = now.begin(); it != now.end(); ++it)
        for (SlotEntry& e : it.value()) {
            e.links = Normalized(e.links);
            if (!m_links.contains(e.id) || m_links.value(e.id) != e.links)
                touched.insert(it.key());
        }
    for (auto it = gone.cbegin(); it != gone.cend(); ++it)
        touched.insert(it.key());
    // In the project's order, so the rows written are the same every run.
    QVector<Period> periods(touched.cbegin(), touched.cend());
    std::sort(periods.begin(), periods.end(), [](const Period& a, const Period& b) {
        return std::pair(a.day, a.time) < std::pair(b.day, b.time);
    });
    quint64 stamp = m_stamp;
    for (const Period& p : periods) {
        LessonIndex::applyWrites(p, now.value(p), gone.value(p), stamp);
        stamp = LessonIndex::stamp();
    }

    const LessonIndex& idx = LessonIndex::current();
    const Member owner = idx.ownerOf(m_timetable);
    struct Change {
        qint32 slot;
        Lesson before;
        Members after;
    };
    QVector<Change> changes;
    for (const Period& p : periods)
        for (const SlotEntry& s : idx.slotsAt(p)) {
            if (s.timetable != m_timetable || s.special != SpecialID::Ordinary ||
                (m_links.contains(s.id) && m_links.value(s.id) == s.links))
                continue;
            Lesson before = m_lessonOf.value(s.id, Lesson{p, {}, {}});
            before.at = p;
            if (!before.slots.contains(s.id))
                before.slots << s.id;
            changes.append({s.id, before, s.links + Members{owner}});
        }
    std::sort(changes.begin(), changes.end(),
              [](const Change& a, const Change& b) { return a.slot < b.slot; });
    for (const Change& c : changes)
        WriteLesson(c.before.at, &c.before, c.after);
}

// --- text ------------------------------------------------------------------

QString MarkWord(qint32 special) {
    switch (special) {
    case SpecialID::Unavailable:
        return QStringLiteral("Unavailable");
    case SpecialID::Lunch:
        return QStringLiteral("Lunch");
    case SpecialID::Break:
        return QStringLiteral("Break");
    default:
        return QString();
    }
}

QString FormatLessonText(const QVector<const Lesson*>& lessons, const QString& Type) {
    ResourceKind lines[3];
    if (Type == QLatin1String("Tutor"))
        lines[0] = ResourceKind::Class, lines[1] = ResourceKind::Subject,
        lines[2] = ResourceKind::Room;
    else if (Type == QLatin1String("Class"))
        lines[0] = ResourceKind::Tutor, lines[1] = ResourceKind::Subject,
        lines[2] = ResourceKind::Room;
    else if (Type == QLatin1String("Room"))
        lines[0] = ResourceKind::Tutor, lines[1] = ResourceKind::Subject,
        lines[2] = ResourceKind::Class;
    else
        return QString();
    const LessonIndex& idx = LessonIndex::current();
    QStringList text;
    for (const ResourceKind kind : lines) {
        QStringList perLesson;
        for (const Lesson* l : lessons) {
            QStringList names;
            for (const qint32 id : l->idsOf(kind))
                names << idx.cellName({kind, id});
            std::sort(names.begin(), names.end());
            if (!names.isEmpty())
                perLesson << names.join(QStringLiteral(", "));
        }
        text << perLesson.join(QStringLiteral(" / "));
    }
    return text.join(QStringLiteral("\r\n"));
}

} // namespace ModMain
