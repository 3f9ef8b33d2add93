#include "autofill/BookingIndex.h"

#include "autofill/AutoFillEngine.h"
#include "store/ModMain.h"
#include "timetable/Lessons.h"

#include <QSet>

namespace ModMain {

BookingIndex::BookingIndex(ResourceKind kind, qint32 TimetableID, const QVector<qint32>& chosen) {
    const QString word = KindWord(kind);
    const QString link = word + QStringLiteral("Slot");
    const QString column = link + QLatin1Char('.') + word + QStringLiteral("ID");
    const QString timetable = QString::number(TimetableID);

    // Thousands of rows: read in place rather than as a result table.
    DB().ForEachRow(QStringLiteral("SELECT %1 AS id, COUNT(*) AS tot FROM %2, Slot, "
                                   "Timetable WHERE %2.SlotID = Slot.ID AND "
                                   "Slot.TimetableID = Timetable.ID AND "
                                   "Slot.TimetableID = %3 GROUP BY %1;")
                        .arg(column, link, timetable),
                    [&](const clsSQLiteRow& row) {
                        m_usage[row.Int(0)] += row.Int(1);
                        m_total += row.Int(1);
                    });

    // Where the candidates are booked comes from the project's lessons, read
    // already for the grid: every slot's links at each project day and
    // period, in every timetable. A slot counts once however often it links
    // the resource; the clash test only asks whether a slot other than the
    // cell's own does. A heading without a project day or period matches no
    // test, so it is left out.
    const QSet<qint32> candidates(chosen.cbegin(), chosen.cend());
    const LessonIndex& lessons = LessonIndex::current();
    for (const Period& p : lessons.periods()) {
        if (p.day == 0 || p.time == 0)
            continue;
        for (const SlotEntry& s : lessons.slotsAt(p))
            for (const Member& m : s.links) {
                if (m.kind != kind || !candidates.contains(m.id))
                    continue;
                ++m_busy[{m.id, p.time, p.day}];
                if (s.timetable == TimetableID)
                    ++m_own[{s.id, m.id}];
            }
    }
}

double BookingIndex::PointValue(const QVector<qint32>& chosen, qint32 index, qint32 set,
                                qint32 SlotID, qint32 ProjectTimeTitleID,
                                qint32 ProjectDayTitleID) const {
    const qint32 id = chosen.at(index - 1);
    const bool clash =
        m_busy.value({id, ProjectTimeTitleID, ProjectDayTitleID}) - m_own.value({SlotID, id}) > 0;
    return ResourcePointValue(SpacingPointValue(chosen, index, id, set), m_total, m_usage.value(id),
                              clash);
}

void BookingIndex::Linked(qint32 SlotID, qint32 id, qint32 ProjectTimeTitleID,
                          qint32 ProjectDayTitleID) {
    ++m_usage[id];
    ++m_total;
    // A heading with no project day or period is in no clash test.
    if (ProjectTimeTitleID == 0 || ProjectDayTitleID == 0)
        return;
    ++m_busy[{id, ProjectTimeTitleID, ProjectDayTitleID}];
    ++m_own[{SlotID, id}];
}

} // namespace ModMain
