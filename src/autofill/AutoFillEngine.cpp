#include "autofill/AutoFillEngine.h"

#include "autofill/AutoFillState.h"
#include "autofill/BookingIndex.h"
#include "common/Arrays.h"
#include "common/ErrorHandler.h"
#include "store/ModMain.h"
#include "store/Records.h"
#include "store/TimeText.h"
#include "store/Transaction.h"
#include "timetable/Lessons.h"

#include <QHash>
#include <QSet>

#include <cstdlib>
#include <limits>
#include <optional>
#include <utility>

namespace ModMain {

namespace {
QString number(qint64 n) {
    return QString::number(n);
}

qint32 total(const QString& sql) {
    auto rs = DB().Execute(sql);
    return rs.eof() ? 0 : rs.Field("tot").toInt();
}

// The errors the fill raises for lists it cannot hold.
[[noreturn]] void subscriptOutOfRange() {
    throw VbError(9, QStringLiteral("ModMain"), QStringLiteral("Subscript out of range"));
}
// Positions in the fill list are 16-bit.
qint32 nextPosition(qint32 position) {
    if (position >= std::numeric_limits<qint16>::max())
        throw VbError(6, QStringLiteral("ModMain"), QStringLiteral("Overflow"));
    return position + 1;
}

// A value over 100 comes back down by as much as it went over; then 0..100.
double foldBack(double value) {
    if (value > 100)
        value = 100 - (value - 100);
    if (value > 100)
        value = 100;
    if (value < 0)
        value = 0;
    return value;
}

// The three counts the prescribed scoring runs for one candidate.
double statementPointValue(ResourceKind kind, qint32 TimetableID, qint32 SlotID,
                           const QVector<qint32>& chosen, qint32 index, qint32 id, qint32 set,
                           qint32 ProjectTimeTitleID, qint32 ProjectDayTitleID) {
    const QString word =
        kind == ResourceKind::Tutor ? QStringLiteral("Tutor") : QStringLiteral("Room");
    const QString link = word + QStringLiteral("Slot");
    const double spacing = SpacingPointValue(chosen, index, id, set);
    const QString usage =
        QStringLiteral("SELECT COUNT(*) AS tot FROM %1, Slot, Timetable WHERE %1.SlotID = Slot.ID "
                       "AND Slot.TimetableID = Timetable.ID AND ")
            .arg(link);
    const qint32 all = total(usage + QStringLiteral("TimetableID = ") + number(TimetableID));
    qint32 mine = 0;
    if (all != 0)
        mine = total(usage + QStringLiteral("%1.%2ID = ").arg(link, word) + number(id) +
                     QStringLiteral(" AND TimetableID = ") + number(TimetableID));
    const QString SQL =
        QStringLiteral("SELECT COUNT(*) AS tot FROM Slot, %1, DayTitle, TimeTitle WHERE "
                       "Slot.DayTitleID = DayTitle.ID AND Slot.TimeTitleID = TimeTitle.ID AND "
                       "TimeTitle.ProjectTimeTitleID = ")
            .arg(link) +
        number(ProjectTimeTitleID) + QStringLiteral(" AND DayTitle.ProjectDayTitleID = ") +
        number(ProjectDayTitleID) + QStringLiteral(" AND Slot.ID <> ") + number(SlotID) +
        QStringLiteral(" AND Slot.ID = %1.SlotID AND %1.%2ID = ").arg(link, word) + number(id);
    auto clash = DB().Execute(SQL);
    return ResourcePointValue(spacing, all, mine, !clash.eof() && clash.Field("tot").toInt() > 0);
}
} // namespace

qint32 GetTotalDayTitlesForTimetable(qint32 TimetableID) {
    return total(QStringLiteral("SELECT COUNT(*) AS tot FROM timetable, daytitle WHERE "
                                "daytitle.timetableid = timetable.id AND timetable.id = ") +
                 number(TimetableID));
}

qint32 GetTotalTimeTitlesForTimetable(qint32 TimetableID) {
    return total(QStringLiteral("SELECT COUNT(*) AS tot FROM timetable, timetitle WHERE "
                                "timetitle.timetableid = timetable.id AND timetable.id = ") +
                 number(TimetableID));
}

qint32 GetTotalSlotsForTimetable(qint32 TimetableID) {
    auto rs = DB().Execute(QStringLiteral("SELECT classid, timeontop FROM timetable WHERE id = ") +
                           number(TimetableID));
    if (rs.eof())
        return 0;
    return GetTotalDayTitlesForTimetable(TimetableID) * GetTotalTimeTitlesForTimetable(TimetableID);
}

qint32 GetTotalLessonSlotsForTimetable(qint32 TimetableID) {
    return total(QStringLiteral("SELECT COUNT(*) AS tot FROM slot WHERE slot.timetableid = ") +
                 number(TimetableID) +
                 QStringLiteral(" AND EXISTS (SELECT 1 FROM subjectslot WHERE subjectslot.slotid "
                                "= slot.id)"));
}

qint32 GetTotalAllocatedSlotsForTimetable(qint32 TimetableID) {
    // A lunch, break or unavailable period takes no lesson, so it is never free.
    return total(QStringLiteral("SELECT COUNT(*) AS tot FROM slot WHERE slot.timetableid = ") +
                 number(TimetableID) +
                 QStringLiteral(" AND (slot.specialid <> 1 OR EXISTS (SELECT 1 FROM subjectslot "
                                "WHERE subjectslot.slotid = slot.id))"));
}

qint32 GetNearestIndex(const QVector<qint32>& array, qint32 StartSearchIndex, qint32 MatchValue) {
    const auto upper = static_cast<qint32>(array.size());
    qint32 Distance = upper;
    for (qint32 i = 1; i <= upper; ++i) {
        if (i == StartSearchIndex || array.at(i - 1) != MatchValue)
            continue;
        Distance = std::min(Distance, std::abs(i - StartSearchIndex));
    }
    return Distance;
}

double SpacingPointValue(const QVector<qint32>& array, qint32 index, qint32 value, qint32 set) {
    const double N = static_cast<double>(array.size());
    const double Distance = GetNearestIndex(array, index, value);
    const double DarlingDistance = set / 10.0 * N * 0.8 + 1;
    const double DistanceRatio = DarlingDistance <= Distance ? DarlingDistance / Distance * N
                                                             : Distance / DarlingDistance * N;
    return DistanceRatio / N * 100;
}

double ResourcePointValue(double spacing, qint32 total, qint32 count, bool clash) {
    double PointValuePercentage = spacing;
    if (total != 0)
        PointValuePercentage += 10.0 * (total - count) / total;
    PointValuePercentage = foldBack(PointValuePercentage);
    return clash ? 0 : PointValuePercentage;
}

double GetSubjectPointValue(const QVector<qint32>& aIncludeSubjects, qint32 iSubjectIndex,
                            qint32 SubjectID, qint32 SubjectSet) {
    return foldBack(SpacingPointValue(aIncludeSubjects, iSubjectIndex, SubjectID, SubjectSet));
}

double GetTutorPointValue(qint32 TimetableID, qint32 SlotID, const QVector<qint32>& aIncludeTutors,
                          qint32 iTutorIndex, qint32 TutorID, qint32 TutorSet,
                          qint32 ProjectTimeTitleID, qint32 ProjectDayTitleID) {
    return statementPointValue(ResourceKind::Tutor, TimetableID, SlotID, aIncludeTutors,
                               iTutorIndex, TutorID, TutorSet, ProjectTimeTitleID,
                               ProjectDayTitleID);
}

double GetRoomPointValue(qint32 TimetableID, qint32 SlotID, const QVector<qint32>& aIncludeRooms,
                         qint32 iRoomIndex, qint32 RoomID, qint32 RoomSet,
                         qint32 ProjectTimeTitleID, qint32 ProjectDayTitleID) {
    return statementPointValue(ResourceKind::Room, TimetableID, SlotID, aIncludeRooms, iRoomIndex,
                               RoomID, RoomSet, ProjectTimeTitleID, ProjectDayTitleID);
}

qint32 ArraySearch_Time(const QVector<TimeRecord>& TimeID, qint32 TimeTitleID) {
    for (qsizetype i = 0; i < TimeID.size(); ++i)
        if (TimeID.at(i).id == TimeTitleID)
            return static_cast<qint32>(i + 1);
    return -1;
}

qint32 ArraySearch_Day(const QVector<DayRecord>& DayID, qint32 DayTitleID) {
    for (qsizetype i = 0; i < DayID.size(); ++i)
        if (DayID.at(i).id == DayTitleID)
            return static_cast<qint32>(i + 1);
    return -1;
}

namespace {
// Lets the window breathe; stops the run when it asks or when the action
// has already failed on a statement.
void yieldTo(FillProgress* progress) {
    if (ActionScope::Failed())
        throw ActionAborted{};
    if (progress && progress->yield())
        throw FillCancelled{};
}
} // namespace

// The statements name their columns in lower case, and a column keeps the
// name the table gives it, so rows are read by position.
void InitPointValues(FreeCellGrid& grid, QVector<TimeRecord>& TimeID, QVector<DayRecord>& DayID,
                     qint32 TimetableID, FillProgress* progress) {
    TimeID.clear();
    DayID.clear();
    // The fill goes through the headings in their storage order. The
    // statements ask for no order, but the heading indexes would hand the
    // rows back by project period, so the storage order is named.
    auto times = DB().Execute(QStringLiteral("SELECT timetitle.id, projecttimetitleid, duration, "
                                             "starttime, specialid FROM timetable, timetitle "
                                             "WHERE timetitle.timetableid = timetable.id AND "
                                             "timetable.id = ") +
                              number(TimetableID) + QStringLiteral(" ORDER BY timetitle.id"));
    for (; !times.eof(); times.MoveNext()) {
        TimeID.append({times.Field(qint16(0)).toInt(),
                       TimeText::Parse(times.Field(qint16(3)).toString()),
                       times.Field(qint16(2)).toInt(), times.Field(qint16(4)).toInt(),
                       times.Field(qint16(1)).toInt()});
        yieldTo(progress);
    }
    auto days = DB().Execute(QStringLiteral("SELECT daytitle.id, projectdaytitleid, dow, specialid "
                                            "FROM timetable, daytitle WHERE daytitle.timetableid = "
                                            "timetable.id AND timetable.id = ") +
                             number(TimetableID) + QStringLiteral(" ORDER BY daytitle.id"));
    for (; !days.eof(); days.MoveNext()) {
        DayID.append({days.Field(qint16(0)).toInt(), days.Field(qint16(2)).toString(),
                      days.Field(qint16(3)).toInt(), days.Field(qint16(1)).toInt()});
        yieldTo(progress);
    }
    grid = FreeCellGrid(TimeID.size(), QVector<FreeCell>(DayID.size()));

    auto slots =
        DB().Execute(QStringLiteral("SELECT id,TimetableID,StartTime,Duration,DOW,SpecialID,"
                                    "DayTitleID,TimeTitleID FROM Slot WHERE TimetableID = ") +
                     number(TimetableID) + QStringLiteral(";"));
    for (; !slots.eof(); slots.MoveNext()) {
        const qint32 p = ArraySearch_Time(TimeID, slots.Field(qint16(7)).toInt());
        const qint32 d = ArraySearch_Day(DayID, slots.Field(qint16(6)).toInt());
        if (p != -1 && d != -1) {
            FreeCell& cell = grid[p - 1][d - 1];
            const qint32 id = slots.Field(qint16(0)).toInt();
            cell.SlotID = id;
            // A subject makes a cell taken, and so does a period mark: a
            // lesson there would show in no other timetable. A tutor or room
            // alone does not.
            if (slots.Field(qint16(5)).toInt() != SpecialID::Ordinary ||
                total(QStringLiteral("SELECT COUNT(*) AS tot FROM SubjectSlot WHERE slotID = ") +
                      number(id)) != 0)
                cell.Free = false;
        }
        yieldTo(progress);
    }
}

namespace {
// The set values of the chosen method.
struct MethodSets {
    qint32 TutorSet = 0;
    qint32 RoomSet = 0;
    qint32 SubjectSet = 0;
    qint32 ClassSet = 0;
};

std::optional<MethodSets> readMethod(qint16 MethodID) {
    auto rs = DB().Execute(
        QStringLiteral("SELECT tutorset, roomset, subjectset, classset FROM method WHERE id = ") +
        number(MethodID));
    if (rs.eof())
        return std::nullopt;
    return MethodSets{rs.Field(qint16(0)).toInt(), rs.Field(qint16(1)).toInt(),
                      rs.Field(qint16(2)).toInt(), rs.Field(qint16(3)).toInt()};
}

// Each chosen subject once per period asked for, then empty entries up to
// the number of free cells.
QVector<qint32> buildFillList(const AutoFill::State& a, qint32 TotalAvailableSlots,
                              FillProgress& progress) {
    if (TotalAvailableSlots < 1)
        subscriptOutOfRange();
    QVector<qint32> aIncludeSubjects(TotalAvailableSlots, 0);
    qint32 position = 0;
    for (qint32 i = 0; i < a.AutoFill_IncludeSubjectsCount(); ++i) {
        const qint32 periods = a.AutoFill_IncludeSubjectPeriods.value(i);
        for (qint32 n = 0; n < periods; ++n) {
            position = nextPosition(position);
            if (position > TotalAvailableSlots)
                subscriptOutOfRange();
            aIncludeSubjects[position - 1] = a.AutoFill_IncludeSubjects.at(i);
            yieldTo(&progress);
        }
    }
    return aIncludeSubjects;
}

} // namespace

// The candidate is scored with the subject at the best position so far, the
// kept best with the subject at i: once best has moved the two differ, and
// the fill's character depends on it.
void ImproveSequence(QVector<qint32>& list, qint32 SubjectSet, FillProgress& progress) {
    const auto TotalAvailableSlots = static_cast<qint32>(list.size());
    for (qint32 CoffeeTimeIndex = 1; CoffeeTimeIndex <= 10; ++CoffeeTimeIndex) {
        for (qint32 i = 1; i <= TotalAvailableSlots; ++i) {
            if (list.at(i - 1) != 0) {
                qint32 iBestSubjectIndex = i;
                double dBestSubjectPointValue = GetSubjectPointValue(
                    list, iBestSubjectIndex, list.at(iBestSubjectIndex - 1), SubjectSet);
                for (qint32 j = 1; j <= TotalAvailableSlots; ++j) {
                    const double v =
                        GetSubjectPointValue(list, j, list.at(iBestSubjectIndex - 1), SubjectSet);
                    if (v > dBestSubjectPointValue) {
                        dBestSubjectPointValue =
                            GetSubjectPointValue(list, j, list.at(i - 1), SubjectSet);
                        iBestSubjectIndex = j;
                    }
                    yieldTo(&progress);
                }
                std::swap(list[i - 1], list[iBestSubjectIndex - 1]);
            }
            yieldTo(&progress);
        }
        progress.setValue(CoffeeTimeIndex);
    }
}

namespace {
// The first candidate with a non-zero score, unless a later one scores
// strictly higher; -1 when every one scores 0 (or there is none).
template <class Score> qint32 bestCandidate(qint32 count, Score score) {
    qint32 best = -1;
    double dBest = 0;
    for (qint32 k = 1; k <= count; ++k) {
        if (best == -1) {
            dBest = score(k);
            if (dBest != 0)
                best = k;
        } else if (score(k) > dBest) {
            dBest = score(k);
            best = k;
        }
    }
    return best;
}

// The chosen tutors or rooms, and with the fast scoring their bookings.
struct Candidates {
    ResourceKind kind;
    const QVector<qint32>& chosen;
    qint32 set;
    std::optional<BookingIndex> index;
};

// Links the best of the candidates to the cell's slot, unless all score 0;
// whether one was linked.
bool linkBest(Candidates& c, const QVector<qint32>& chosen, qint32 TimetableID, qint32 SlotID,
              qint32 ProjectTimeTitleID, qint32 ProjectDayTitleID) {
    const bool tutor = c.kind == ResourceKind::Tutor;
    const qint32 best = bestCandidate(static_cast<qint32>(chosen.size()), [&](qint32 k) {
        if (c.index)
            return c.index->PointValue(chosen, k, c.set, SlotID, ProjectTimeTitleID,
                                       ProjectDayTitleID);
        return (tutor ? GetTutorPointValue
                      : GetRoomPointValue)(TimetableID, SlotID, chosen, k, chosen.at(k - 1), c.set,
                                           ProjectTimeTitleID, ProjectDayTitleID);
    });
    if (best == -1)
        return false;
    const qint32 id = chosen.at(best - 1);
    (tutor ? CreateTutorSlotRecord : CreateRoomSlotRecord)(SlotID, id, false);
    if (c.index)
        c.index->Linked(SlotID, id, ProjectTimeTitleID, ProjectDayTitleID);
    return true;
}

// For each subject, the chosen tutors recorded as teaching it; a subject
// nobody is recorded as teaching may go to any of them.
QHash<qint32, QVector<qint32>> tutorsBySubject(const QVector<qint32>& chosen,
                                               const QVector<qint32>& subjects) {
    QHash<qint32, QSet<qint32>> teachers;
    DB().ForEachRow(QStringLiteral("SELECT SubjectID, TutorID FROM SubjectsTaughtByTutor;"),
                    [&](const clsSQLiteRow& row) { teachers[row.Int(0)].insert(row.Int(1)); });
    QHash<qint32, QVector<qint32>> out;
    for (const qint32 subject : subjects) {
        const QSet<qint32> taught = teachers.value(subject);
        QVector<qint32>& list = out[subject];
        for (const qint32 tutor : chosen)
            if (taught.isEmpty() || taught.contains(tutor))
                list.append(tutor);
    }
    return out;
}

FillReport& report() {
    static FillReport r;
    return r;
}
} // namespace

void DoAutoFill(FillProgress& progress, Scoring scoring) {
    const AutoFill::State& a = AutoFill::state();
    const std::optional<MethodSets> method = readMethod(a.AutoFill_MethodID);
    if (!method)
        return;
    const qint32 who = a.AutoFill_WhoID;
    FillReport& done = report();
    done = FillReport();
    for (qint32 i = 0; i < a.AutoFill_IncludeSubjectsCount(); ++i)
        done.asked += a.AutoFill_IncludeSubjectPeriods.value(i);

    const qint32 TotalAvailableSlots =
        GetTotalSlotsForTimetable(who) - GetTotalAllocatedSlotsForTimetable(who);
    QVector<qint32> aIncludeSubjects = buildFillList(a, TotalAvailableSlots, progress);
    Common::RandomizeArray(aIncludeSubjects);
    progress.setMaximum(11);
    ImproveSequence(aIncludeSubjects, method->SubjectSet, progress);

    GetTotalDayTitlesForTimetable(who);
    GetTotalTimeTitlesForTimetable(who);
    FreeCellGrid grid;
    QVector<TimeRecord> TimeID;
    QVector<DayRecord> DayID;
    InitPointValues(grid, TimeID, DayID, who, &progress);

    Candidates tutors{ResourceKind::Tutor, a.AutoFill_Tutors, method->TutorSet, {}};
    Candidates rooms{ResourceKind::Room, a.AutoFill_Rooms, method->RoomSet, {}};
    if (scoring == Scoring::Index) {
        tutors.index.emplace(ResourceKind::Tutor, who, tutors.chosen);
        rooms.index.emplace(ResourceKind::Room, who, rooms.chosen);
    }
    const QHash<qint32, QVector<qint32>> teachers =
        tutorsBySubject(a.AutoFill_Tutors, a.AutoFill_IncludeSubjects);

    qint32 SlotIndex = 1;
    for (qint32 d = 1; d <= DayID.size(); ++d) {
        for (qint32 p = 1; p <= TimeID.size(); ++p) {
            FreeCell& cell = grid[p - 1][d - 1];
            if (!cell.Free)
                continue;
            if (SlotIndex <= TotalAvailableSlots && aIncludeSubjects.at(SlotIndex - 1) != 0) {
                const TimeRecord& time = TimeID.at(p - 1);
                const DayRecord& day = DayID.at(d - 1);
                if (cell.SlotID == 0)
                    cell.SlotID = CreateSlotRecord(who, time.starttime, time.duration, day.dow,
                                                   SpecialID::Ordinary, day.id, time.id);
                const qint32 SlotID = cell.SlotID;
                const qint32 subject = aIncludeSubjects.at(SlotIndex - 1);
                CreateSubjectSlotRecord(SlotID, subject, false);
                ++done.filled;

                const qint32 pt = time.projecttimetitleid;
                const qint32 pd = day.projectdaytitleid;
                // A kind none of which was offered is no shortfall.
                if (!linkBest(tutors, teachers.value(subject), who, SlotID, pt, pd) &&
                    !tutors.chosen.isEmpty())
                    ++done.noTutor[subject];
                if (!linkBest(rooms, rooms.chosen, who, SlotID, pt, pd) && !rooms.chosen.isEmpty())
                    ++done.noRoom[subject];
            }
            SlotIndex = nextPosition(SlotIndex);
            yieldTo(&progress);
        }
    }
    progress.setValue(11);
}

const FillReport& LastFillReport() {
    return report();
}

QString FillReportText(const FillReport& r) {
    QString text = (r.asked == 1 ? QStringLiteral("Filled %1 of the %2 period asked.")
                                 : QStringLiteral("Filled %1 of the %2 periods asked."))
                       .arg(r.filled)
                       .arg(r.asked);
    const auto subjects = [](const QMap<qint32, qint32>& periods) {
        QStringList names;
        for (auto it = periods.cbegin(); it != periods.cend(); ++it)
            names << QStringLiteral("%1 (%2)").arg(
                DB().Execute(QStringLiteral("SELECT name FROM Subject WHERE id = %1").arg(it.key()))
                    .Field("name")
                    .toString(),
                QString::number(it.value()));
        names.sort(Qt::CaseInsensitive);
        return names.join(QStringLiteral(", "));
    };
    if (!r.noTutor.isEmpty())
        text += QStringLiteral("\nNo tutor offered who teaches it was free for: %1.")
                    .arg(subjects(r.noTutor));
    if (!r.noRoom.isEmpty())
        text += QStringLiteral("\nNo room offered was free for: %1.").arg(subjects(r.noRoom));
    if (!r.noTutor.isEmpty() || !r.noRoom.isEmpty())
        text += QStringLiteral("\nThose periods have their subject; add the rest by hand.");
    return text;
}

FillOutcome RunAutoFill(FillProgress& progress, Scoring scoring) {
    return Guard(
        "ModMain", "DoAutoFill",
        [&] {
            Transaction tx;
            if (!tx.ok())
                return FillOutcome::Refused;
            // Cancel takes back what the run wrote; an error keeps it.
            DB().Execute(QStringLiteral("SAVEPOINT autofill_run;"));
            // The fill writes into the class's cells; its lessons then go to
            // their tutors' and rooms' timetables too.
            OwnSlotsChange change(AutoFill::state().AutoFill_WhoID);
            try {
                DoAutoFill(progress, scoring);
                if (!ActionScope::Failed())
                    change.writeOut();
            } catch (const FillCancelled&) {
                DB().Execute(QStringLiteral("ROLLBACK TO autofill_run;"));
                DB().Execute(QStringLiteral("RELEASE autofill_run;"));
                return FillOutcome::Cancelled;
            }
            DB().Execute(QStringLiteral("RELEASE autofill_run;"));
            return ActionScope::Failed() ? FillOutcome::Failed : FillOutcome::Finished;
        },
        FillOutcome::Failed);
}

} // namespace ModMain
