#include "autofill/BookingIndex.h"

#include "autofill/AutoFillEngine.h"
#include "store/ModMain.h"

namespace ModMain {

BookingIndex::BookingIndex(ResourceKind kind, qint32 TimetableID, const QVector<qint32>& chosen) {
    const QString word = KindWord(kind);
    const QString link = word + QStringLiteral("Slot");
    const QString column = link + QLatin1Char('.') + word + QStringLiteral("ID");
    const QString timetable = QString::number(TimetableID);

    auto usage = DB().Execute(QStringLiteral("SELECT %1 AS id, COUNT(*) AS tot FROM %2, Slot, "
                                             "Timetable WHERE %2.SlotID = Slot.ID AND "
                                             "Slot.TimetableID = Timetable.ID AND "
                                             "Slot.TimetableID = %3 GROUP BY %1;")
                                  .arg(column, link, timetable));
    for (; !usage.eof(); usage.MoveNext()) {
        const qint32 n = usage.Field("tot").toInt();
        m_usage[usage.Field("id").toInt()] += n;
        m_total += n;
    }

    // The same joins as the clash test; a heading without a project day or
    // period matches no test, so it is left out.
    const QString booked =
        QStringLiteral("FROM Slot, %1, DayTitle, TimeTitle WHERE Slot.DayTitleID = DayTitle.ID "
                       "AND Slot.TimeTitleID = TimeTitle.ID AND Slot.ID = %1.SlotID AND "
                       "TimeTitle.ProjectTimeTitleID IS NOT NULL AND "
                       "DayTitle.ProjectDayTitleID IS NOT NULL ")
            .arg(link);
    // Reading every booking of the project is most of the cost of a fill, so
    // only the candidates' are read.
    QStringList ids;
    for (const qint32 id : chosen)
        ids << QString::number(id);
    auto busy = DB().Execute(
        QStringLiteral("SELECT %1 AS id, TimeTitle.ProjectTimeTitleID AS t, "
                       "DayTitle.ProjectDayTitleID AS d, COUNT(*) AS tot ")
            .arg(column) +
        booked +
        QStringLiteral("AND %1 IN (%2) GROUP BY 1, 2, 3;").arg(column, ids.join(QLatin1Char(','))));
    for (; !busy.eof(); busy.MoveNext())
        m_busy[{busy.Field("id").toInt(), busy.Field("t").toInt(), busy.Field("d").toInt()}] +=
            busy.Field("tot").toInt();

    auto own = DB().Execute(
        QStringLiteral("SELECT Slot.ID AS slot, %1 AS id, COUNT(*) AS tot ").arg(column) + booked +
        QStringLiteral("AND Slot.TimetableID = ") + timetable + QStringLiteral(" GROUP BY 1, 2;"));
    for (; !own.eof(); own.MoveNext())
        m_own[{own.Field("slot").toInt(), own.Field("id").toInt()}] += own.Field("tot").toInt();
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
