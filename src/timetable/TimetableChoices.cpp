#include "timetable/TimetableChoices.h"

#include "common/Common.h"
#include "store/ModMain.h"

namespace ModMain {

namespace {
// The statements each kind of owner is read and checked with.
struct OwnerSql {
    const char* type;
    const char* list;
    const char* count;
    const char* ownerColumn;
};
constexpr OwnerSql kOwners[] = {
    {"Class", "SELECT id, name FROM class WHERE id<>1 ORDER BY name",
     "SELECT COUNT(*) AS tot FROM timetable WHERE classid = ", " AND ClassID="},
    {"Tutor", "SELECT id, name FROM tutor WHERE id<>1 ORDER BY name",
     "SELECT COUNT(*) AS tot FROM timetable WHERE tutorid = ", " AND tutorid="},
    {"Room", "SELECT id, name FROM room WHERE id<>1 ORDER BY name",
     "SELECT COUNT(*) AS tot FROM timetable WHERE roomid = ", " AND roomid="},
};

const OwnerSql* ownerSql(const QString& type) {
    for (const OwnerSql& o : kOwners)
        if (type == QLatin1String(o.type))
            return &o;
    return nullptr;
}
} // namespace

QVector<OwnerChoice> OwnerChoices(const QString& type) {
    QVector<OwnerChoice> choices;
    const OwnerSql* o = ownerSql(type);
    if (!o)
        return choices;
    for (auto rs = DB().Execute(QString::fromLatin1(o->list)); !rs.eof(); rs.MoveNext()) {
        OwnerChoice c;
        c.id = rs.Field("id").toInt();
        c.name = Common::NullToString(rs.Field("name"));
        c.created = DB().Execute(QString::fromLatin1(o->count) + QString::number(c.id))
                        .Field("tot")
                        .toInt() > 0;
        choices << c;
    }
    return choices;
}

qint32 CreateOwner(const QString& type, const QString& name) {
    if (!ownerSql(type))
        return 0;
    DB().Execute(QStringLiteral("INSERT INTO ") + type + QStringLiteral(" (name) VALUES ('") +
                 Common::SQLReplace(name) + QStringLiteral("')"));
    return DB().GetInsertID();
}

bool TimetableExistsFor(const QString& type, qint32 ownerID) {
    const OwnerSql* o = ownerSql(type);
    if (!o)
        return false;
    return !DB().Execute(QStringLiteral("SELECT id FROM Timetable WHERE Type='") + type +
                         QLatin1Char('\'') + QString::fromLatin1(o->ownerColumn) +
                         QString::number(ownerID))
                .eof();
}

QString OwnerName(const QString& type, qint32 ownerID) {
    if (!ownerSql(type))
        return QString();
    return DB()
        .Execute(QStringLiteral("SELECT name FROM %1 WHERE id = %2").arg(type).arg(ownerID))
        .Field("name")
        .toString();
}

TableArray StyleList() {
    return DB().Execute(QStringLiteral("SELECT id, name FROM style")).vTableArray();
}

QString StyleName(qint32 styleID) {
    return DB()
        .Execute(QStringLiteral("SELECT name FROM style WHERE id = %1").arg(styleID))
        .Field("name")
        .toString();
}

} // namespace ModMain
