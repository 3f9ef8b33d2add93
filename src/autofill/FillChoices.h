#pragma once
// What the Auto Fill wizard and the fill method dialogs read and write. The
// lists are "id, name" result tables, ready for the list helpers.

#include "common/Variant.h"

#include <QString>
#include <QVector>
#include <optional>

namespace ModMain {

// The class timetables, by class name.
TableArray ClassTimetableList();
// How many subjects a fill may use: every one but the placeholder row.
qint32 CountFillSubjects();
// Whether the timetable shows the periods along the top; nothing when it is gone.
std::optional<bool> TimetableTimeOnTop(qint32 TimetableID);
// The tutors recorded as teaching the subject, in the project's order.
QVector<qint32> TutorsTeaching(qint32 SubjectID);
// The methods a fill may use (the wizard's list) and the methods the user
// keeps (the Fill Methods dialog's): both leave out the built-in row 4.
TableArray FillMethodChoices();
TableArray MethodList();

struct MethodRow {
    QString name;
    qint32 TutorSet = 0;
    qint32 RoomSet = 0;
    qint32 SubjectSet = 0;
    qint32 ClassSet = 0;
};
std::optional<MethodRow> ReadMethod(qint32 MethodID);
// Updates the method, or with MethodID -1 adds it; returns its id (-1 when
// nothing could be written).
qint32 SaveMethod(qint32 MethodID, const MethodRow& method);
void DeleteMethod(qint32 MethodID);

} // namespace ModMain
