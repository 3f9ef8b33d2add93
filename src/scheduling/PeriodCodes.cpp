#include "scheduling/PeriodCodes.h"

#include "store/ModMain.h"

namespace ModMain {

void MarkSlot(qint32 SlotID, bool hadSlot, qint32 SpecialID) {
    const QString id = QString::number(SlotID);
    // The slot's own links go; the lessons it held were taken out before.
    if (hadSlot)
        for (const char* table : {"TutorSlot", "ClassSlot", "SubjectSlot", "RoomSlot"})
            DB().Execute(
                QStringLiteral("DELETE FROM %1 WHERE SlotID = ").arg(QLatin1String(table)) + id);
    DB().Execute(QStringLiteral("UPDATE slot SET specialID = %1 WHERE ID = ").arg(SpecialID) + id);
}

qint32 TimeTitleSpecialID(qint32 TimeTitleID) {
    return DB()
        .Execute(QStringLiteral("SELECT SpecialID FROM TimeTitle WHERE id = %1").arg(TimeTitleID))
        .Field("SpecialID")
        .toInt();
}

void SetTimeTitleSpecialID(qint32 TimeTitleID, qint32 SpecialID) {
    DB().Execute(QStringLiteral("UPDATE TimeTitle SET SpecialID = %1 WHERE id = %2")
                     .arg(SpecialID)
                     .arg(TimeTitleID));
}

} // namespace ModMain
