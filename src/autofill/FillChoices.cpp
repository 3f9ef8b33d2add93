#include "autofill/FillChoices.h"

#include "common/Common.h"
#include "store/ModMain.h"
#include "store/Transaction.h"

namespace ModMain {

namespace {
QString number(qint32 n) {
    return QString::number(n);
}

TableArray table(const QString& sql) {
    return DB().Execute(sql).vTableArray();
}
} // namespace

TableArray ClassTimetableList() {
    return table(QStringLiteral("SELECT timetable.id AS id, class.name AS name FROM timetable, "
                                "class WHERE timetable.classid=class.id AND type='Class' ORDER BY "
                                "class.name;"));
}

qint32 CountFillSubjects() {
    auto rs = DB().Execute(QStringLiteral("SELECT COUNT(*) AS tot FROM subject WHERE id<>1;"));
    return rs.eof() ? 0 : rs.Field("tot").toInt();
}

std::optional<bool> TimetableTimeOnTop(qint32 TimetableID) {
    auto rs = DB().Execute(QStringLiteral("SELECT timeontop FROM Timetable WHERE id = ") +
                           number(TimetableID) + QStringLiteral(";"));
    if (rs.eof())
        return std::nullopt;
    return rs.Field(qint16(0)).toBool();
}

QVector<qint32> TutorsTeaching(qint32 SubjectID) {
    auto rs = DB().Execute(QStringLiteral("SELECT tutor.id as ID, name FROM tutor, "
                                          "subjectstaughtbytutor WHERE "
                                          "subjectstaughtbytutor.tutorid = tutor.id AND ") +
                           QStringLiteral("subjectid = ") + number(SubjectID));
    QVector<qint32> ids;
    for (; !rs.eof(); rs.MoveNext())
        ids.append(rs.Field("ID").toInt());
    return ids;
}

TableArray FillMethodChoices() {
    return table(QStringLiteral("SELECT id, name FROM method WHERE id<>4 ORDER BY name"));
}

TableArray MethodList() {
    return table(QStringLiteral("SELECT id, name FROM method  WHERE id<>4 ORDER BY name"));
}

std::optional<MethodRow> ReadMethod(qint32 MethodID) {
    auto rs = DB().Execute(
        QStringLiteral("SELECT name,TutorSet,RoomSet,SubjectSet,ClassSet FROM Method WHERE id = ") +
        number(MethodID));
    if (rs.eof())
        return std::nullopt;
    return MethodRow{rs.Field(qint16(0)).toString(), rs.Field(qint16(1)).toInt(),
                     rs.Field(qint16(2)).toInt(), rs.Field(qint16(3)).toInt(),
                     rs.Field(qint16(4)).toInt()};
}

qint32 SaveMethod(qint32 MethodID, const MethodRow& m) {
    Transaction tx;
    if (!tx.ok())
        return -1;
    const QString name = Common::SQLReplace(m.name);
    if (MethodID != -1) {
        DB().Execute(QStringLiteral("UPDATE Method SET ") + QStringLiteral("name = '") + name +
                     QStringLiteral("',TutorSet = ") + number(m.TutorSet) +
                     QStringLiteral(",RoomSet = ") + number(m.RoomSet) +
                     QStringLiteral(",SubjectSet = ") + number(m.SubjectSet) +
                     QStringLiteral(",ClassSet = ") + number(m.ClassSet) +
                     QStringLiteral(" WHERE id = ") + number(MethodID));
        return MethodID;
    }
    DB().Execute(QStringLiteral("INSERT INTO Method (name,TutorSet,RoomSet,SubjectSet,ClassSet) ") +
                 QStringLiteral("VALUES ('") + name + QStringLiteral("',") + number(m.TutorSet) +
                 QStringLiteral(",") + number(m.RoomSet) + QStringLiteral(",") +
                 number(m.SubjectSet) + QStringLiteral(",") + number(m.ClassSet) +
                 QStringLiteral(")"));
    return DB().GetInsertID();
}

void DeleteMethod(qint32 MethodID) {
    Transaction tx;
    if (tx.ok())
        DB().Execute(QStringLiteral("DELETE FROM Method WHERE id = ") + number(MethodID));
}

} // namespace ModMain
