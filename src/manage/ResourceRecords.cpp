#include "manage/ResourceRecords.h"

#include "common/Common.h"
#include "store/ModMain.h"
#include "store/Records.h"
#include "store/Transaction.h"

namespace ModMain {

using Common::SQLReplace;

namespace {
QString number(qint32 n) {
    return QString::number(n);
}

// The table of a kind, as the statements spell it.
QString table(ResourceKind kind) {
    switch (kind) {
    case ResourceKind::Tutor:
        return QStringLiteral("tutor");
    case ResourceKind::Class:
        return QStringLiteral("Class");
    case ResourceKind::Room:
        return QStringLiteral("Room");
    case ResourceKind::Subject:
        return QStringLiteral("subject");
    }
    return QString();
}
} // namespace

void DeleteResource(ResourceKind kind, qint32 id) {
    Transaction tx;
    if (!tx.ok())
        return;
    if (kind == ResourceKind::Tutor) {
        DB().Execute(QStringLiteral("DELETE FROM SubjectsTaughtByTutor WHERE tutorid=") +
                     number(id));
        DB().Execute(QStringLiteral("DELETE FROM tutor WHERE id = ") + number(id));
        return;
    }
    const QString name = kind == ResourceKind::Subject ? QStringLiteral("Subject") : table(kind);
    DB().Execute(QStringLiteral("DELETE FROM %1 WHERE id = ").arg(name) + number(id));
}

std::optional<QString> ReadResourceName(ResourceKind kind, qint32 id) {
    auto rs = DB().Execute(QStringLiteral("SELECT name FROM %1 WHERE id = ").arg(table(kind)) +
                           number(id));
    if (rs.eof())
        return std::nullopt;
    return rs.Field(qint16(0)).toString();
}

bool NameTaken(ResourceKind kind, const QString& name, qint32 except) {
    return !DB().Execute(QStringLiteral("SELECT 1 FROM %1 WHERE id <> 1 AND id <> %2 AND "
                                        "LOWER(TRIM(name)) = LOWER(TRIM('%3')) LIMIT 1")
                             .arg(table(kind))
                             .arg(except)
                             .arg(SQLReplace(name)))
                .eof();
}

qint32 SaveResourceName(ResourceKind kind, qint32 id, const QString& name) {
    Transaction tx;
    if (!tx.ok())
        return -1;
    if (id != -1) {
        DB().Execute(QStringLiteral("UPDATE %1 SET Name = '").arg(table(kind)) + SQLReplace(name) +
                     QStringLiteral("' WHERE ID=") + number(id));
        return id;
    }
    switch (kind) {
    case ResourceKind::Subject:
        return CreateSubjectRecord(name, kNewSubjectLength);
    case ResourceKind::Room:
        return CreateRoomRecord(name, kNewRoomCapacity);
    default:
        DB().Execute(QStringLiteral("INSERT INTO Class (name) VALUES ('") + SQLReplace(name) +
                     QStringLiteral("')"));
        return DB().GetInsertID();
    }
}

std::optional<TutorRow> ReadTutor(qint32 id) {
    auto rs = DB().Execute(QStringLiteral("SELECT name, DisplayName FROM tutor WHERE id = ") +
                           number(id));
    if (rs.eof())
        return std::nullopt;
    TutorRow tutor{rs.Field(qint16(0)).toString(), rs.Field(qint16(1)).toString(), {}};
    for (auto taught = DB().Execute(
             QStringLiteral("SELECT subjectid FROM SubjectsTaughtByTutor WHERE tutorid=") +
             number(id));
         !taught.eof(); taught.MoveNext())
        tutor.subjects.append(taught.Field(qint16(0)).toInt());
    return tutor;
}

qint32 SaveTutor(qint32 id, const TutorRow& tutor) {
    Transaction tx;
    if (!tx.ok())
        return -1;
    DB().Execute(QStringLiteral("BEGIN;"));
    if (id == -1) {
        id = CreateTutorRecord(tutor.name, tutor.displayName, QString(), QString());
    } else {
        DB().Execute(QStringLiteral("UPDATE Tutor SET Name = '") + SQLReplace(tutor.name) +
                     QStringLiteral("', DisplayName = '") + SQLReplace(tutor.displayName) +
                     QStringLiteral("' WHERE ID = ") + number(id));
    }
    DB().Execute(QStringLiteral("DELETE FROM SubjectsTaughtByTutor WHERE tutorid=") + number(id));
    for (const qint32 subject : tutor.subjects)
        DB().Execute(
            QStringLiteral("INSERT INTO SubjectsTaughtByTutor (TutorID,SubjectID) VALUES (") +
            number(id) + QLatin1Char(',') + number(subject) + QLatin1Char(')'));
    DB().Execute(QStringLiteral("COMMIT;"));
    return id;
}

} // namespace ModMain
