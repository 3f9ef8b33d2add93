#include "timetable/TimetableText.h"

#include "store/ModMain.h"
#include "timetable/TimetableState.h"

#include <QStringList>

namespace ModMain {

namespace {
// The statement's one column, joined; read by position, as the column comes
// back under the table's own spelling of its name.
QString joinedNames(const QString& sql) {
    QStringList names;
    for (auto rs = DB().Execute(sql); !rs.eof(); rs.MoveNext())
        names << rs.Field(qint16(0)).toString();
    return names.join(QStringLiteral(", "));
}
} // namespace

QString FormatSlotText(qint32 SlotID, const QString& Type) {
    const QString id = QString::number(SlotID);
    const auto tutors = [&] {
        return joinedNames(QStringLiteral("SELECT DisplayName FROM Tutor, TutorSlot WHERE Tutor.ID = "
                                          "TutorSlot.TutorID AND TutorSlot.SlotID = ") +
                               id + QStringLiteral(" ORDER BY DisplayName"));
    };
    const auto subjects = [&] {
        return joinedNames(QStringLiteral("SELECT Name FROM Subject, SubjectSlot WHERE Subject.ID = "
                                          "SubjectSlot.SubjectID AND SubjectSlot.SlotID = ") +
                               id + QStringLiteral(" ORDER BY Name"));
    };
    const auto rooms = [&] {
        return joinedNames(QStringLiteral("SELECT Name FROM Room, RoomSlot WHERE Room.ID = "
                                          "RoomSlot.RoomID AND RoomSlot.SlotID = ") +
                               id + QStringLiteral(" ORDER BY Name"));
    };
    const auto classes = [&] {
        return joinedNames(QStringLiteral("SELECT Name FROM Class, ClassSlot WHERE Class.ID = "
                                          "ClassSlot.ClassID AND ClassSlot.SlotID = ") +
                               id + QStringLiteral(" ORDER BY Name"));
    };
    const QString br = QStringLiteral("\r\n");
    if (Type == QLatin1String("Tutor"))
        return classes() + br + subjects() + br + rooms();
    if (Type == QLatin1String("Class"))
        return tutors() + br + subjects() + br + rooms();
    if (Type == QLatin1String("Room"))
        return tutors() + br + subjects() + br + classes();
    return QString();
}

QString FormatTimeTitle(const QTime& StartTime, qint32 Duration) {
    return StripAMPM(StartTime) + QStringLiteral(" - ") +
           StripAMPM(StartTime.addSecs(qint64(Duration) * 60));
}

QString StripAMPM(const QTime& Time) {
    if (!Timetable::current().Time12Hour)
        return Time.toString(QStringLiteral("h:mm")).trimmed();
    QString text = Time.toString(QStringLiteral("h:mm AP"));
    text.remove(Time.toString(QStringLiteral("AP")));
    return text.trimmed();
}

} // namespace ModMain
