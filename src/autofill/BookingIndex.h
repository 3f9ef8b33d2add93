#pragma once
// The counts the fill scores a tutor or room by, read once at the start of a
// run and kept up to date as the fill writes (it is the only writer while it
// runs): how many of the timetable's periods each one teaches, and where in
// the project each one is booked. Gives the same values as the statements
// GetTutorPointValue and GetRoomPointValue run for every candidate.

#include "scheduling/Availability.h"

#include <QHash>
#include <QVector>

namespace ModMain {

class BookingIndex {
public:
    // kind is Tutor or Room; only the bookings of the chosen ones are read.
    BookingIndex(ResourceKind kind, qint32 TimetableID, const QVector<qint32>& chosen);

    // The candidate at 1-based index of chosen, for the cell's slot at the
    // project day and period.
    double PointValue(const QVector<qint32>& chosen, qint32 index, qint32 set, qint32 SlotID,
                      qint32 ProjectTimeTitleID, qint32 ProjectDayTitleID) const;
    // The fill has linked the resource to the slot at that day and period.
    void Linked(qint32 SlotID, qint32 id, qint32 ProjectTimeTitleID, qint32 ProjectDayTitleID);

private:
    struct Booking {
        qint32 id, time, day;
        friend bool operator==(const Booking&, const Booking&) = default;
        friend size_t qHash(const Booking& b, size_t seed = 0) {
            return qHashMulti(seed, b.id, b.time, b.day);
        }
    };
    struct Link {
        qint32 slot, id;
        friend bool operator==(const Link&, const Link&) = default;
        friend size_t qHash(const Link& l, size_t seed = 0) {
            return qHashMulti(seed, l.slot, l.id);
        }
    };

    // Links of each resource in the timetable, and their total.
    QHash<qint32, qint32> m_usage;
    qint32 m_total = 0;
    // Links of the chosen ones at each project day and period, in every timetable.
    QHash<Booking, qint32> m_busy;
    // Links of the timetable's own slots that m_busy counts: the clash test
    // leaves the cell's own slot out.
    QHash<Link, qint32> m_own;
};

} // namespace ModMain
