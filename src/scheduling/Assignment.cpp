#include "scheduling/Assignment.h"

#include "store/ModMain.h"
#include "store/Records.h"
#include "store/Transaction.h"
#include "timetable/SlotLookup.h"

#include <QHash>
#include <QPair>
#include <QSet>
#include <QStringList>
#include <algorithm>

namespace ModMain {

namespace {
using Kind = ResourceKind;

// The order in which a slot's links are mirrored.
constexpr Kind kMirrorOrder[] = {Kind::Tutor, Kind::Room, Kind::Class, Kind::Subject};

QString number(qint32 n) {
    return QString::number(n);
}

QString linkTable(Kind kind) {
    return KindWord(kind) + QStringLiteral("Slot");
}

QString idColumn(Kind kind) {
    return KindWord(kind) + QStringLiteral("ID");
}

qint32 createLink(Kind kind, qint32 slotID, qint32 resourceID) {
    switch (kind) {
    case Kind::Tutor:
        return CreateTutorSlotRecord(slotID, resourceID);
    case Kind::Subject:
        return CreateSubjectSlotRecord(slotID, resourceID);
    case Kind::Room:
        return CreateRoomSlotRecord(slotID, resourceID);
    case Kind::Class:
        return CreateClassSlotRecord(slotID, resourceID);
    }
    return 0;
}

void deleteLink(Kind kind, qint32 slotID, qint32 resourceID) {
    DB().Execute(QStringLiteral("DELETE FROM %1 WHERE SlotID = ").arg(linkTable(kind)) +
                 number(slotID) + QStringLiteral(" AND %1 = ").arg(idColumn(kind)) +
                 number(resourceID));
}

// The resources of the kind that the slot links, link rows as they stand.
QVector<qint32> linksOf(Kind kind, qint32 slotID) {
    QVector<qint32> ids;
    const QString column = idColumn(kind);
    for (auto rs = DB().Execute(
             QStringLiteral("SELECT %1 FROM %2 WHERE SlotID = ").arg(column, linkTable(kind)) +
             number(slotID));
         !rs.eof(); rs.MoveNext())
        ids << rs.Field(column).toInt();
    return ids;
}

// The target timetable's slot at the project period. A class or room
// timetable may have none there yet; it is created then, so no link is ever
// written to slot -1.
qint32 targetSlot(qint32 timetableID, qint32 projectTimeTitleID, qint32 projectDayTitleID) {
    return DoCreateGetSlot(timetableID, projectTimeTitleID, projectDayTitleID);
}

// The resource's own timetable, 0 when it has none. Subjects have none.
qint32 ownTimetable(Kind kind, qint32 resourceID) {
    auto rs =
        DB().Execute(QStringLiteral("SELECT id FROM timetable WHERE %1 = ").arg(idColumn(kind)) +
                     number(resourceID) + QStringLiteral(" AND type = '%1';").arg(KindWord(kind)));
    return rs.eof() ? 0 : rs.Field("id").toInt();
}

// The kind a timetable type names; false for any other type.
bool kindOfType(const QString& type, Kind& kind) {
    for (const Kind k : {Kind::Tutor, Kind::Room, Kind::Class})
        if (type == KindWord(k)) {
            kind = k;
            return true;
        }
    return false;
}

struct PropagationRow {
    qint32 timetableID = 0;
    QString type;
    qint32 testSlotID = 0;
};

// Every slot of every other timetable that has the project day and period
// among its headings, wherever the slot itself lies: the breadth is meant.
QVector<PropagationRow> propagationRows(qint32 currentTimetableID, qint32 projectTimeTitleID,
                                        qint32 projectDayTitleID) {
    QVector<PropagationRow> rows;
    for (auto rs = DB().Execute(
             QStringLiteral("SELECT timetable.id AS id, type, Slot.ID as TestSlotID FROM slot, "
                            "timetable, TimeTitle, DayTitle WHERE DayTitle.TimetableID = "
                            "Timetable.ID AND TimeTitle.TimetableID = Timetable.ID AND "
                            "TimeTitle.ProjectTimeTitleID = ") +
             number(projectTimeTitleID) + QStringLiteral(" AND DayTitle.ProjectDayTitleID = ") +
             number(projectDayTitleID) +
             QStringLiteral(" AND slot.timetableID = timetable.id AND timetable.id<>") +
             number(currentTimetableID) + QLatin1Char(';'));
         !rs.eof(); rs.MoveNext())
        // By position: thousands of rows on a large school.
        rows.append({rs.Field(qint16(0)).toInt(), rs.Field(qint16(1)).toString(),
                     rs.Field(qint16(2)).toInt()});
    return rows;
}

// One link row's resource value as stored. A slot's links come back from
// "SELECT TutorID FROM TutorSlot WHERE SlotID = " in the order of the index
// on (SlotID, TutorID): NULL first, then numbers, then text, equal values by
// row id. Only an integer equals the number a statement compares it with.
struct LinkValue {
    int rank = 1; // 0 NULL, 1 number, 2 text or blob
    bool integer = false;
    qint64 exact = 0;  // an integer's value
    double number = 0; // a real's value
    qint32 read = 0;   // what the procedures read from it: Field(...).toInt()

    static LinkValue stored(const Variant& value, const QString& type) {
        LinkValue l;
        l.read = value.toInt();
        if (type == QLatin1String("null")) {
            l.rank = 0;
        } else if (type == QLatin1String("integer")) {
            l.integer = true;
            l.exact = value.toString().toLongLong();
        } else if (type == QLatin1String("real")) {
            l.number = value.toString().toDouble();
        } else {
            l.rank = 2;
        }
        return l;
    }
    bool equals(qint32 v) const { return integer && exact == v; }
    bool after(qint32 v) const {
        return rank == 2 || (rank == 1 && (integer ? exact > v : number > double(v)));
    }
};

// A class tick's propagation worked out in memory, with the reads the
// reference makes one at a time done once, and the link rows it adds written
// at the end in the order it adds them, so their ids are the same.
//
// What it keeps: the links of every slot the copies read or write (those at
// the tick's project day and period, and slots it creates), each timetable's
// slot there, and which slots hold the tutors met so far.
class ClassTickMirror {
public:
    ClassTickMirror(qint32 cellSlot, qint32 projectTimeTitleID, qint32 projectDayTitleID)
        : m_ptt(projectTimeTitleID), m_pdt(projectDayTitleID) {
        QVector<qint32> slots = {cellSlot};
        for (auto rs = DB().Execute(
                 QStringLiteral("SELECT Slot.ID FROM Slot, DayTitle, TimeTitle WHERE "
                                "Slot.DayTitleID = DayTitle.ID AND DayTitle.ProjectDayTitleID = "
                                "%1 AND Slot.TimeTitleID = TimeTitle.ID AND "
                                "TimeTitle.ProjectTimeTitleID = %2;")
                     .arg(m_pdt)
                     .arg(m_ptt));
             !rs.eof(); rs.MoveNext())
            slots << rs.Field(qint16(0)).toInt();
        loadLinks(slots);
        loadTargets();
    }

    // The tutors of the slot as the reference reads them.
    QVector<qint32> tutorsOf(qint32 slotID) {
        QVector<qint32> tutors = read(Kind::Tutor, slotID);
        learn(tutors);
        return tutors;
    }

    // The tutors met so far that the slot holds; null when none. Valid
    // until the next copy.
    const QVector<qint32>* heldAt(qint32 slotID) const {
        const auto it = m_held.constFind(slotID);
        return it == m_held.cend() ? nullptr : &*it;
    }

    // What CreateCrossReferenceSlot does. Each link it copies looks up the
    // target's slot again; the answer is the same every time.
    void copy(qint32& slotID, qint32 targetTimetableID, const QString& selectedType) {
        for (const Kind kind : kMirrorOrder) {
            if (KindWord(kind) == selectedType)
                continue;
            const Links from = linksOf(kind, slotID);
            if (from.isEmpty())
                continue;
            const bool self = slotID == targetSlot(targetTimetableID);
            slotID = targetSlot(targetTimetableID);
            Links& links = m_links[int(kind)][slotID];
            for (const LinkValue& l : from)
                // A slot's own whole-number links are there already.
                if (!self || !l.equals(l.read))
                    add(kind, links, slotID, l.read);
        }
    }

    // Writes the links added, each table's in one statement: the rows go in
    // in the array's order, so they get the ids one insert each would give.
    void flush() {
        for (const Kind kind : kMirrorOrder) {
            QVector<QPair<qint32, qint32>>& rows = m_pending[int(kind)];
            if (rows.isEmpty())
                continue;
            QString array = QStringLiteral("[");
            array.reserve(rows.size() * 14 + 2);
            for (const auto& [slot, id] : rows)
                array += QLatin1Char('[') + number(slot) + QLatin1Char(',') + number(id) +
                         QStringLiteral("],");
            array.back() = QLatin1Char(']');
            DB().Execute(QStringLiteral("INSERT INTO %1 (SlotID, %2) SELECT json_extract(value, "
                                        "'$[0]'), json_extract(value, '$[1]') FROM "
                                        "json_each('%3');")
                             .arg(linkTable(kind), idColumn(kind), array));
            rows.clear();
        }
    }

private:
    using Links = QVector<LinkValue>;

    void loadLinks(const QVector<qint32>& slotIDs) {
        QStringList list;
        for (const qint32 id : slotIDs) {
            list << number(id);
            m_loaded.insert(id);
        }
        const QString slots = list.join(QLatin1Char(','));
        for (const Kind kind : kMirrorOrder) {
            const QString column = idColumn(kind);
            for (auto rs = DB().Execute(QStringLiteral("SELECT SlotID, %1 AS v, typeof(%1) AS t "
                                                       "FROM %2 WHERE SlotID IN (%3) ORDER BY "
                                                       "SlotID, %1, rowid;")
                                            .arg(column, linkTable(kind), slots));
                 !rs.eof(); rs.MoveNext())
                m_links[int(kind)][rs.Field(qint16(0)).toInt()].append(
                    LinkValue::stored(rs.Field(qint16(1)), rs.Field(qint16(2)).toString()));
        }
    }

    // Each timetable's first period and day heading for the project's, and
    // its first slot there: what DoCreateGetSlot finds.
    void loadTargets() {
        for (auto rs = DB().Execute(
                 QStringLiteral(
                     "SELECT tt, ti, di, (SELECT MIN(ID) FROM Slot WHERE TimetableID = tt AND "
                     "DayTitleID = di AND TimeTitleID = ti) AS slot FROM (SELECT Timetable.id AS "
                     "tt, (SELECT MIN(ID) FROM TimeTitle WHERE TimetableID = Timetable.id AND "
                     "ProjectTimeTitleID = %1) AS ti, (SELECT MIN(ID) FROM DayTitle WHERE "
                     "TimetableID = Timetable.id AND ProjectDayTitleID = %2) AS di FROM "
                     "Timetable) WHERE ti IS NOT NULL AND di IS NOT NULL;")
                     .arg(m_ptt)
                     .arg(m_pdt));
             !rs.eof(); rs.MoveNext())
            m_targets.insert(rs.Field("tt").toInt(),
                             {rs.Field("ti").toInt(), rs.Field("di").toInt(),
                              rs.Field("slot").isNull() ? 0 : rs.Field("slot").toInt()});
    }

    qint32 targetSlot(qint32 timetableID) {
        auto it = m_targets.find(timetableID);
        if (it == m_targets.end()) // no heading there: the look-up raises its error
            return DoCreateGetSlot(timetableID, m_ptt, m_pdt);
        if (it->slot == 0) {
            it->slot = CreateSlotAt(timetableID, it->dayTitle, it->timeTitle);
            // Links left by a deleted slot with the same id belong to it now.
            loadLinks({it->slot});
        }
        return it->slot;
    }

    Links linksOf(Kind kind, qint32 slotID) {
        if (!m_loaded.contains(slotID))
            loadLinks({slotID});
        return m_links[int(kind)].value(slotID);
    }

    QVector<qint32> read(Kind kind, qint32 slotID) {
        QVector<qint32> ids;
        for (const LinkValue& l : linksOf(kind, slotID))
            ids << l.read;
        return ids;
    }

    // What Create...SlotRecord does, with its check for an existing link.
    void add(Kind kind, Links& links, qint32 slotID, qint32 id) {
        // The links are in index order: those not after id come first, and
        // an equal one would be the last of them.
        const auto at = std::partition_point(links.begin(), links.end(),
                                             [id](const LinkValue& l) { return !l.after(id); });
        if (at != links.begin() && std::prev(at)->equals(id))
            return;
        LinkValue l;
        l.integer = true;
        l.exact = l.read = id;
        links.insert(at, l);
        m_pending[int(kind)].append({slotID, id});
        if (kind == Kind::Tutor)
            m_held[slotID].append(id);
    }

    // Reads the bookings of tutors not met before. Rows added since the
    // propagation began are in m_held already.
    void learn(const QVector<qint32>& tutors) {
        QStringList unknown;
        for (const qint32 t : tutors)
            if (!m_known.contains(t)) {
                m_known.insert(t);
                unknown << number(t);
            }
        if (unknown.isEmpty())
            return;
        // One row per tutor: its slots as one text, far cheaper to read than
        // a row per booking.
        for (auto rs = DB().Execute(QStringLiteral("SELECT TutorID, group_concat(SlotID) AS s FROM "
                                                   "TutorSlot WHERE TutorID IN (%1) AND "
                                                   "typeof(SlotID) = 'integer' GROUP BY TutorID;")
                                        .arg(unknown.join(QLatin1Char(','))));
             !rs.eof(); rs.MoveNext()) {
            const qint32 tutor = rs.Field(qint16(0)).toInt();
            const QString slots = rs.Field(qint16(1)).toString();
            for (const QStringView s : QStringView(slots).split(QLatin1Char(','))) {
                bool ok = false;
                const qint32 slot = s.toInt(&ok);
                if (ok)
                    m_held[slot].append(tutor);
            }
        }
    }

    struct Target {
        qint32 timeTitle = 0, dayTitle = 0;
        qint32 slot = 0; // 0: none yet
    };

    const qint32 m_ptt, m_pdt;
    QHash<qint32, Links> m_links[4]; // by kind, then slot
    QSet<qint32> m_loaded;
    QHash<qint32, Target> m_targets;
    QVector<QPair<qint32, qint32>> m_pending[4];
    QSet<qint32> m_known;
    QHash<qint32, QVector<qint32>> m_held; // the tutors met so far, by slot
};
} // namespace

void CreateCrossReferenceTimetable(qint32& SlotID, qint32 TargetTimetableID,
                                   qint32 ProjectTimeTitleID, qint32 ProjectDayTitleID,
                                   const QString& SelectedType, qint32 CurrentTimetableID) {
    Kind kind;
    if (CurrentTimetableID == -1 || !kindOfType(SelectedType, kind))
        return;
    const QString column = idColumn(kind);
    auto owner = DB().Execute(QStringLiteral("SELECT %1 FROM Timetable WHERE id = ").arg(column) +
                              number(CurrentTimetableID));
    if (owner.eof())
        return;
    SlotID = targetSlot(TargetTimetableID, ProjectTimeTitleID, ProjectDayTitleID);
    createLink(kind, SlotID, owner.Field(column).toInt());
}

void CreateCrossReferenceSlot(qint32& SlotID, qint32 TargetTimetableID, qint32 ProjectTimeTitleID,
                              qint32 ProjectDayTitleID, const QString& SelectedType,
                              qint32 CurrentTimetableID) {
    Q_UNUSED(CurrentTimetableID);
    for (const Kind kind : kMirrorOrder) {
        if (KindWord(kind) == SelectedType)
            continue;
        if (kind != Kind::Subject && TargetTimetableID == -1)
            continue;
        for (const qint32 id : linksOf(kind, SlotID)) {
            SlotID = targetSlot(TargetTimetableID, ProjectTimeTitleID, ProjectDayTitleID);
            createLink(kind, SlotID, id);
        }
    }
}

void DeleteCrossReferenceSlot2(qint32& SlotID, qint32 CurrentTimetableID, qint32 TargetTimetableID,
                               qint32 ProjectTimeTitleID, qint32 ProjectDayTitleID,
                               const QString& CurrentType, const QString& ListType) {
    for (const Kind kind : kMirrorOrder) {
        if (kind != Kind::Subject && KindWord(kind) == ListType)
            continue;
        for (const qint32 id : linksOf(kind, SlotID)) {
            SlotID = targetSlot(TargetTimetableID, ProjectTimeTitleID, ProjectDayTitleID);
            deleteLink(kind, SlotID, id);
        }
    }

    // The owner of the edited timetable; for a class it is read from the
    // target timetable instead.
    Kind kind;
    if (!kindOfType(CurrentType, kind))
        return;
    const qint32 ownerTimetable = kind == Kind::Class ? TargetTimetableID : CurrentTimetableID;
    const QString column = idColumn(kind);
    auto owner = DB().Execute(QStringLiteral("SELECT %1 FROM Timetable WHERE id = ").arg(column) +
                              number(ownerTimetable));
    if (owner.eof())
        return;
    SlotID = targetSlot(TargetTimetableID, ProjectTimeTitleID, ProjectDayTitleID);
    deleteLink(kind, SlotID, owner.Field(column).toInt());
}

void PropagateClassTickPerRow(qint32& SlotID, qint32 CurrentTimetableID, qint32 ProjectTimeTitleID,
                              qint32 ProjectDayTitleID) {
    for (const PropagationRow& row :
         propagationRows(CurrentTimetableID, ProjectTimeTitleID, ProjectDayTitleID)) {
        for (auto tutors = DB().Execute(
                 QStringLiteral("SELECT TutorID FROM TutorSlot WHERE TutorSlot.SlotID = ") +
                 number(SlotID));
             !tutors.eof(); tutors.MoveNext()) {
            auto shared = DB().Execute(
                QStringLiteral("SELECT TutorID FROM TutorSlot WHERE TutorSlot.SlotID = ") +
                number(row.testSlotID) + QStringLiteral(" AND TutorSlot.TutorID = ") +
                number(tutors.Field("TutorID").toInt()));
            if (shared.eof())
                continue;
            // Each copy starts from the ticked cell's slot: the copy's own
            // moving SlotID stays inside it, so one tick mirrors this cell and
            // not, through the slots it reaches, the whole school.
            qint32 source = SlotID;
            CreateCrossReferenceSlot(source, row.timetableID, ProjectTimeTitleID, ProjectDayTitleID,
                                     row.type, CurrentTimetableID);
        }
    }
}

void PropagateClassTick(qint32& SlotID, qint32 CurrentTimetableID, qint32 ProjectTimeTitleID,
                        qint32 ProjectDayTitleID) {
    const QVector<PropagationRow> rows =
        propagationRows(CurrentTimetableID, ProjectTimeTitleID, ProjectDayTitleID);
    if (rows.isEmpty())
        return;
    ClassTickMirror mirror(SlotID, ProjectTimeTitleID, ProjectDayTitleID);
    try {
        QVector<qint32> tutors = mirror.tutorsOf(SlotID);
        for (const PropagationRow& row : rows) {
            const QVector<qint32>* held = mirror.heldAt(row.testSlotID);
            if (!held)
                continue;
            // Each row compares the tutors SlotID had when the row began.
            const QVector<qint32> rowTutors = tutors;
            for (const qint32 tutor : rowTutors) {
                if (!held->contains(tutor))
                    continue;
                qint32 source = SlotID;
                mirror.copy(source, row.timetableID, row.type);
                tutors = mirror.tutorsOf(SlotID);
                held = mirror.heldAt(row.testSlotID);
            }
        }
    } catch (...) {
        // What was done before the failure stays, as it would one by one.
        mirror.flush();
        throw;
    }
    mirror.flush();
}

qint32 TickResource(ResourceKind kind, qint32 ResourceID, const Cell& cell) {
    Transaction tx;
    if (!tx.ok())
        return cell.SlotID;
    qint32 slot = cell.SlotID;
    if (slot <= 0) {
        if (cell.DayTitleID == 0 || cell.TimeTitleID == 0)
            return -1;
        slot = CreateSlotAt(cell.TimetableID, cell.DayTitleID, cell.TimeTitleID);
    }
    const qint32 cellSlot = slot;
    createLink(kind, slot, ResourceID);
    if (kind != Kind::Class)
        return cellSlot;

    // The class's own timetable gets the owner of the shown one from the
    // cell's slot; the propagation then moves the tick's slot variable with
    // every copy it makes.
    if (const qint32 own = ownTimetable(Kind::Class, ResourceID)) {
        qint32 mirrored = cellSlot;
        CreateCrossReferenceTimetable(mirrored, own, cell.ProjectTimeTitleID,
                                      cell.ProjectDayTitleID, cell.Type, cell.TimetableID);
    }
    PropagateClassTick(slot, cell.TimetableID, cell.ProjectTimeTitleID, cell.ProjectDayTitleID);
    return cellSlot;
}

void UntickResource(ResourceKind kind, qint32 ResourceID, const Cell& cell) {
    if (cell.SlotID <= 0)
        return;
    Transaction tx;
    if (!tx.ok())
        return;
    // Removing the mirror moves its own copy of the slot id; the link that
    // goes is the cell's.
    if (kind != Kind::Subject)
        if (const qint32 own = ownTimetable(kind, ResourceID)) {
            qint32 mirrored = cell.SlotID;
            DeleteCrossReferenceSlot2(mirrored, cell.TimetableID, own, cell.ProjectTimeTitleID,
                                      cell.ProjectDayTitleID, cell.Type, KindWord(kind));
        }
    deleteLink(kind, cell.SlotID, ResourceID);
}

} // namespace ModMain
