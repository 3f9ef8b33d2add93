#pragma once
// Reading, writing and deleting the project's tutors, subjects, rooms and
// classes one at a time, as the management dialogs and the lists' menus do.
// Each write is one user action: one transaction.

#include "common/Variant.h"
#include "scheduling/Availability.h"

#include <QString>
#include <QVector>
#include <optional>

namespace ModMain {

// Deletes the resource. Only a tutor's subjects taught go with it: its slot
// links and timetables stay, and every reader joins them away.
void DeleteResource(ResourceKind kind, qint32 id);

// The name of a subject, room or class; nothing when it is gone.
std::optional<QString> ReadResourceName(ResourceKind kind, qint32 id);
// Renames the subject, room or class, or with id -1 adds one; returns its id
// (-1 when nothing could be written).
qint32 SaveResourceName(ResourceKind kind, qint32 id, const QString& name);

// Whether another resource of the kind has this name, blanks around it and
// letter case aside.
bool NameTaken(ResourceKind kind, const QString& name, qint32 except = -1);

struct TutorRow {
    QString name;
    QString displayName;
    QVector<qint32> subjects; // taught, in the order they are listed
};
std::optional<TutorRow> ReadTutor(qint32 id);
// Updates the tutor, or with id -1 adds one, and replaces its subjects
// taught; returns its id (-1 when nothing could be written).
qint32 SaveTutor(qint32 id, const TutorRow& tutor);

} // namespace ModMain
