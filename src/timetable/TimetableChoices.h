#pragma once
// What the new-timetable wizard offers: the classes, tutors or rooms that may
// own a timetable, and the styles it may be drawn in.

#include "common/Variant.h"

#include <QString>
#include <QVector>

namespace ModMain {

struct OwnerChoice {
    qint32 id = 0;
    QString name;
    bool created = false; // the owner has a timetable already
};

// Every class, tutor or room (by type "Class", "Tutor", "Room") in name order,
// the placeholder row left out; empty for another type.
QVector<OwnerChoice> OwnerChoices(const QString& type);
// Inserts a class, tutor or room of that name; returns its id.
qint32 CreateOwner(const QString& type, const QString& name);
// Whether a timetable of that type belongs to the owner already.
bool TimetableExistsFor(const QString& type, qint32 ownerID);
// The owner's name; empty when there is none.
QString OwnerName(const QString& type, qint32 ownerID);

// The styles as "id, name" rows, in the order the project returns them.
TableArray StyleList();
QString StyleName(qint32 styleID);

} // namespace ModMain
