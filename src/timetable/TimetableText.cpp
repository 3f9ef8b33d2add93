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
    // One resource kind's names in the slot, e.g. ("Name", "Room", "RoomID").
    const auto names = [SlotID](const char* column, const char* table, const char* idColumn) {
        const QString t = QString::fromLatin1(table), link = t + QStringLiteral("Slot");
        return joinedNames(
            QStringLiteral("SELECT %1 FROM %2, %3 WHERE %2.ID = %3.%4 AND "
                           "%3.SlotID = %5 ORDER BY %1")
                .arg(QString::fromLatin1(column), t, link, QString::fromLatin1(idColumn))
                .arg(SlotID));
    };
    // A tutor without a display name is shown by name.
    const auto tutors = [&] {
        return names("COALESCE(NULLIF(TRIM(Tutor.DisplayName), ''), Tutor.Name)", "Tutor",
                     "TutorID");
    };
    const auto subjects = [&] { return names("Name", "Subject", "SubjectID"); };
    const auto rooms = [&] { return names("Name", "Room", "RoomID"); };
    const auto classes = [&] { return names("Name", "Class", "ClassID"); };
    const QString br = QStringLiteral("\r\n");
    if (Type == QLatin1String("Tutor"))
        return classes() + br + subjects() + br + rooms();
    if (Type == QLatin1String("Class"))
        return tutors() + br + subjects() + br + rooms();
    if (Type == QLatin1String("Room"))
        return tutors() + br + subjects() + br + classes();
    return QString();
}

namespace {
// Which resource kinds make a cell's three lines, by timetable type; 0 tutors,
// 1 subjects, 2 rooms, 3 classes.
const int* linesFor(const QString& Type) {
    static const int tutor[] = {3, 1, 2}, klass[] = {0, 1, 2}, room[] = {0, 1, 3};
    if (Type == QLatin1String("Tutor"))
        return tutor;
    if (Type == QLatin1String("Class"))
        return klass;
    if (Type == QLatin1String("Room"))
        return room;
    return nullptr;
}

} // namespace

QString EmptySlotText(const QString& Type) {
    return linesFor(Type) ? QStringLiteral("\r\n\r\n") : QString();
}

QString FormatTimeTitle(const QTime& StartTime, qint32 Duration) {
    return FormatTimeTitle(StartTime, Duration, Timetable::current().Time12Hour);
}

QString FormatTimeTitle(const QTime& StartTime, qint32 Duration, bool Time12Hour) {
    return StripAMPM(StartTime, Time12Hour) + QStringLiteral(" - ") +
           StripAMPM(StartTime.addSecs(qint64(Duration) * 60), Time12Hour);
}

QString StripAMPM(const QTime& Time) {
    return StripAMPM(Time, Timetable::current().Time12Hour);
}

QString StripAMPM(const QTime& Time, bool Time12Hour) {
    if (!Time12Hour)
        return Time.toString(QStringLiteral("h:mm")).trimmed();
    QString text = Time.toString(QStringLiteral("h:mm AP"));
    text.remove(Time.toString(QStringLiteral("AP")));
    return text.trimmed();
}

} // namespace ModMain
