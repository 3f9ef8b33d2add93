#pragma once
// The Auto Fill engine: fills the free cells of one class timetable with the
// chosen subjects, and gives each filled cell the best-scoring free tutor and
// room. It reads the wizard's choices from AutoFill::state() and tells the
// window how far it is through FillProgress; it includes no widget.

#include <QMap>
#include <QString>
#include <QTime>
#include <QVector>

namespace ModMain {

// Counts of one timetable.
qint32 GetTotalDayTitlesForTimetable(qint32 TimetableID);
qint32 GetTotalTimeTitlesForTimetable(qint32 TimetableID);
// Days x periods; 0 when there is no such timetable.
qint32 GetTotalSlotsForTimetable(qint32 TimetableID);
// The timetable's cells that take no more lessons: those with a subject and
// those marked lunch, break or unavailable.
qint32 GetTotalAllocatedSlotsForTimetable(qint32 TimetableID);
// Its cells with a subject: the periods filled.
qint32 GetTotalLessonSlotsForTimetable(qint32 TimetableID);

// Arrays here are 1-based in the procedures' arguments: index i is element
// i - 1 of the vector, and the upper bound is its size.

// The distance from StartSearchIndex to the nearest other entry equal to
// MatchValue; the array's upper bound when there is none.
qint32 GetNearestIndex(const QVector<qint32>& array, qint32 StartSearchIndex, qint32 MatchValue);
// How well the subject sits at iSubjectIndex of the list: 100 when its
// nearest repeat is at the spacing SubjectSet asks for, less either side.
double GetSubjectPointValue(const QVector<qint32>& aIncludeSubjects, qint32 iSubjectIndex,
                            qint32 SubjectID, qint32 SubjectSet);
// The tutor's score for a cell: spacing in the chosen list, up to 10 points
// for teaching few of the timetable's periods, and 0 when the tutor is
// booked anywhere else at that project day and period.
double GetTutorPointValue(qint32 TimetableID, qint32 SlotID, const QVector<qint32>& aIncludeTutors,
                          qint32 iTutorIndex, qint32 TutorID, qint32 TutorSet,
                          qint32 ProjectTimeTitleID, qint32 ProjectDayTitleID);
double GetRoomPointValue(qint32 TimetableID, qint32 SlotID, const QVector<qint32>& aIncludeRooms,
                         qint32 iRoomIndex, qint32 RoomID, qint32 RoomSet,
                         qint32 ProjectTimeTitleID, qint32 ProjectDayTitleID);

// The scoring both ways share: the spacing value of the entry at index,
// then the usage bonus from the timetable's links (total) and this
// resource's (count), folded back below 100; a clash scores 0.
double SpacingPointValue(const QVector<qint32>& array, qint32 index, qint32 value, qint32 set);
double ResourcePointValue(double spacing, qint32 total, qint32 count, bool clash);

struct TimeRecord {
    qint32 id = 0;
    QTime starttime;
    qint32 duration = 0;
    qint32 specialid = 0;
    qint32 projecttimetitleid = 0;
};
struct DayRecord {
    qint32 id = 0;
    QString dow;
    qint32 specialid = 0;
    qint32 projectdaytitleid = 0;
};
struct FreeCell {
    qint32 SlotID = 0;
    bool Free = true;
};
// Indexed [period - 1][day - 1].
using FreeCellGrid = QVector<QVector<FreeCell>>;

class FillProgress;

// Reads the timetable's headings in their storage order and marks the cells
// that already have a subject; a cell with only a tutor, a room or a period
// mark stays free.
void InitPointValues(FreeCellGrid& grid, QVector<TimeRecord>& TimeID, QVector<DayRecord>& DayID,
                     qint32 TimetableID, FillProgress* progress = nullptr);
// 1-based index of the first record with the id, -1 when there is none.
qint32 ArraySearch_Time(const QVector<TimeRecord>& TimeID, qint32 TimeTitleID);
qint32 ArraySearch_Day(const QVector<DayRecord>& DayID, qint32 DayTitleID);

// Where the engine tells the window how far it is and lets it repaint.
class FillProgress {
public:
    virtual ~FillProgress() = default;
    virtual void setMaximum(int) {}
    virtual void setValue(int) {}
    // Called often; true asks the run to stop.
    virtual bool yield() { return false; }
};

// Thrown out of the engine when FillProgress::yield asks it to stop.
struct FillCancelled {};

// How the tutor and room counts are answered: by the prescribed statements,
// one set per candidate, or from the project's bookings read once at the
// start and kept up to date as the engine writes. Both write the same rows.
enum class Scoring { Statements, Index };

// Ten passes of swaps over the shuffled fill list that move repeats of a
// subject towards the spacing SubjectSet asks for.
void ImproveSequence(QVector<qint32>& list, qint32 SubjectSet, FillProgress& progress);

// One fill of AutoFill_WhoID with the wizard's choices. Writes in whatever
// transaction is open; see RunAutoFill for the user's action.
void DoAutoFill(FillProgress& progress, Scoring scoring = Scoring::Index);

enum class FillOutcome { Finished, Cancelled, Failed, Refused };

// What the last fill did: the periods asked and filled, and by subject the
// periods that got no tutor or no room, none offered being free then (or,
// for tutors, none offered teaching the subject).
struct FillReport {
    qint32 asked = 0;
    qint32 filled = 0;
    QMap<qint32, qint32> noTutor, noRoom; // subject id -> periods
};
const FillReport& LastFillReport();
// The report in the user's words, for the end of the fill.
QString FillReportText(const FillReport& report);

// The user's Auto Fill: one transaction. Cancelled leaves the project as it
// was; an unexpected error keeps what was written and is reported (Failed);
// Refused means the project could not be locked and nothing ran (the user
// has been told).
FillOutcome RunAutoFill(FillProgress& progress, Scoring scoring = Scoring::Index);

} // namespace ModMain
