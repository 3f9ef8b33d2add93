#pragma once
// Filling the four resource lists beside the timetable: a status column, a
// check-box column and the name; each row's data is the resource's id.

#include <QString>

class FlexGrid;

namespace ModMain {

// Each returns whether the list holds any resource.
bool RefreshTutorList(FlexGrid& Grid);
bool RefreshSubjectList(FlexGrid& Grid);
bool RefreshRoomList(FlexGrid& Grid);
bool RefreshClassList(FlexGrid& Grid);

void AddTutorToList(FlexGrid& Grid, qint32 ID, const QString& Name, const QString& Status,
                    bool Selected);
void AddSubjectToList(FlexGrid& Grid, qint32 ID, const QString& Name, const QString& Status,
                      bool Selected);
void AddRoomToList(FlexGrid& Grid, qint32 ID, const QString& Name, const QString& Status,
                   bool Selected);
void AddClassToList(FlexGrid& Grid, qint32 ID, const QString& Name, const QString& Status,
                    bool Selected);

} // namespace ModMain
