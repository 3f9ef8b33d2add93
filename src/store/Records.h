#pragma once
// Inserting resources, slots and slot links. Each returns the new row's id
// (or, for a link that already exists and is checked for, the existing id).

#include <QString>
#include <QTime>

namespace ModMain {

// What a slot or a heading is: every new one is an ordinary period; the
// period commands mark the others.
namespace SpecialID {
constexpr qint32 Ordinary = 1;
constexpr qint32 Unavailable = 2;
constexpr qint32 Lunch = 3;
constexpr qint32 Break = 4;
} // namespace SpecialID

// What a subject's length and a room's capacity start as when the user adds
// one by name; neither is read back.
constexpr qint32 kNewSubjectLength = 1;
constexpr qint32 kNewRoomCapacity = 0;

qint32 CreateTutorRecord(const QString& name, const QString& displayName, const QString& image,
                         const QString& notes);
qint32 CreateSubjectRecord(const QString& name, qint32 length);
qint32 CreateRoomRecord(const QString& name, qint32 capacity);
qint32 CreateSlotRecord(qint32 timetableID, const QTime& startTime, qint32 duration,
                        const QString& dayName, qint32 specialID, qint32 dayTitleID,
                        qint32 timeTitleID);

// With check set, an existing (slot, resource) row is returned instead of a
// second one; without it the caller guarantees the pair is new.
qint32 CreateTutorSlotRecord(qint32 slotID, qint32 tutorID, bool check = true);
qint32 CreateSubjectSlotRecord(qint32 slotID, qint32 subjectID, bool check = true);
qint32 CreateRoomSlotRecord(qint32 slotID, qint32 roomID, bool check = true);
qint32 CreateClassSlotRecord(qint32 slotID, qint32 classID, bool check = true);

} // namespace ModMain
