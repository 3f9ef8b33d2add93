// A lesson shows the same in every timetable it belongs to, whatever the
// user did: seeded random actions (ticks and unticks in class, tutor and room
// timetables, period marks, moves and swaps, Auto Fill, timetables made and
// deleted, undo and redo) on generated schools, each checked against a small model of
// lessons kept here: every timetable's grid, the lists' statuses and the
// double bookings; and the lessons the program keeps up to date as it writes
// equal those it reads whole from the file. A failure names the shortest run of actions that shows
// it.

#include "autofill/AutoFillEngine.h"
#include "autofill/AutoFillState.h"
#include "common/Arrays.h"
#include "scheduling/LessonMove.h"
#include "scheduling/ListSelect.h"
#include "scheduling/PeriodMarking.h"
#include "shell/UndoHistory.h"
#include "store/Records.h"
#include "store/Transaction.h"
#include "support/Fixtures.h"
#include "timetable/TimetableGrid.h"
#include "timetable/TimetableState.h"

#include <QtTest>
#include <map>
#include <optional>
#include <set>

using namespace Fixtures;
using ModMain::Member;
using ModMain::ResourceKind;

namespace {
constexpr int kDays = 2, kPeriods = 3;

// The model: lessons as sets of resources at a day and period, which owners
// have timetables, and the marks of those timetables' cells.
struct Model {
    using Set = std::set<Member>;
    struct Lesson {
        int day, period;
        Set members;
        bool operator==(const Lesson&) const = default;
    };
    std::vector<Lesson> lessons;
    std::set<Member> owners;
    std::map<std::tuple<Member, int, int>, int> marks;
    bool operator==(const Model&) const = default;

    std::vector<const Lesson*> at(int d, int p, const Member& m) const {
        std::vector<const Lesson*> out;
        for (const Lesson& l : lessons)
            if (l.day == d && l.period == p && l.members.count(m))
                out.push_back(&l);
        return out;
    }
    int mark(const Member& o, int d, int p) const {
        const auto it = marks.find({o, d, p});
        return it == marks.end() ? 1 : it->second;
    }
    void remove(const Lesson* l) { lessons.erase(lessons.begin() + (l - lessons.data())); }
    // A lesson of one resource, or without a tutor, room or class, is none.
    void put(int d, int p, const Set& members) {
        const bool booked = std::any_of(members.begin(), members.end(),
                                        [](const Member& m) { return ModMain::IsBooked(m.kind); });
        if (members.size() >= 2 && booked)
            lessons.push_back({d, p, members});
    }
    bool clashes(const Lesson& l) const {
        for (const Member& m : l.members)
            if (ModMain::IsBooked(m.kind) && at(l.day, l.period, m).size() > 1)
                return true;
        return false;
    }
};

struct Action {
    int what, owner, day, period, resource, code, day2, period2;
};

QString describe(const Action& a, const QStringList& names) {
    static const char* words[] = {"click",  "click",  "click", "click", "mark",     "move",
                                  "create", "delete", "undo",  "redo",  "auto fill"};
    return QStringLiteral("%1 owner %2 at %3/%4 resource %5 code %6 to %7/%8")
        .arg(QLatin1String(words[a.what]), names.value(a.owner))
        .arg(a.day)
        .arg(a.period)
        .arg(names.value(a.resource))
        .arg(a.code)
        .arg(a.day2)
        .arg(a.period2);
}

// One school and one run of actions against the model; the first difference
// found is returned in words.
class Run {
public:
    Run() : p({"Mon", "Tue"}, {"9:00", "10:00", "11:00", "12:00"}) {
        ModMain::SetAllowClashesSetting(true);
        const auto add = [&](ResourceKind k, const QString& name) {
            qint32 id = 0;
            if (k == ResourceKind::Tutor)
                id = ModMain::CreateTutorRecord(name, name, QString(), QString());
            else if (k == ResourceKind::Room)
                id = ModMain::CreateRoomRecord(name, 20);
            else if (k == ResourceKind::Subject)
                id = ModMain::CreateSubjectRecord(name, 1);
            else
                id = insertClass(name);
            all.push_back({k, id});
            names << name;
        };
        for (const char* n : {"T1", "T2", "T3"})
            add(ResourceKind::Tutor, n);
        for (const char* n : {"R1", "R2"})
            add(ResourceKind::Room, n);
        for (const char* n : {"C1", "C2", "C3"})
            add(ResourceKind::Class, n);
        for (const char* n : {"Ma", "En"})
            add(ResourceKind::Subject, n);
        // Most have a timetable from the start; T3, R2 and C3 not yet.
        for (int i : {0, 1, 3, 5, 6}) {
            ModMain::CreateTimetable(ModMain::KindWord(all[i].kind), all[i].id, 1);
            model.owners.insert(all[i]);
        }
        history = std::make_unique<UndoHistory>();
        timetableOwners = {0, 1, 2, 3, 4, 5, 6, 7};
    }

    QString apply(const Action& a) {
        const Member owner = all[a.owner % timetableOwners.size()];
        const qint32 tt = timetableOf(owner);
        switch (a.what) {
        case 0:
        case 1:
        case 2:
        case 3:
            if (tt)
                return click(owner, tt, a);
            return {};
        case 4:
            if (tt)
                markCell(owner, tt, a);
            return {};
        case 5:
            if (tt)
                return move(owner, tt, a);
            return {};
        case 6:
            if (!tt) {
                const ActionName n(QStringLiteral("New Timetable"));
                ModMain::CreateTimetable(ModMain::KindWord(owner.kind), owner.id, 1);
                step();
                model.owners.insert(owner);
            }
            return {};
        case 7:
            if (tt && model.owners.size() > 1) {
                const ActionName n(QStringLiteral("Delete Timetable"));
                ModMain::DeleteTimetable(tt);
                step();
                model.owners.erase(owner);
                for (auto it = model.marks.begin(); it != model.marks.end();)
                    it = std::get<0>(it->first) == owner ? model.marks.erase(it) : std::next(it);
                std::erase_if(model.lessons, [&](const Model::Lesson& l) {
                    return std::none_of(l.members.begin(), l.members.end(),
                                        [&](const Member& m) { return model.owners.count(m) > 0; });
                });
            }
            return {};
        case 10:
            if (tt && owner.kind == ResourceKind::Class)
                return autoFill(owner, tt, a);
            return {};
        case 8:
            if (history->stack().canUndo() != !done.empty())
                return QStringLiteral("undo offered: %1, steps: %2")
                    .arg(history->stack().canUndo())
                    .arg(done.size());
            if (!done.empty() && history->undo()) {
                undone.push_back(model);
                model = done.back();
                done.pop_back();
            }
            return {};
        case 9:
            if (undone.empty())
                return {};
            if (history->redo()) {
                done.push_back(model);
                model = undone.back();
                undone.pop_back();
            }
            return {};
        }
        return {};
    }

    // Everything a user sees, against the model.
    QString check() {
        const ModMain::LessonIndex& idx = ModMain::LessonIndex::current();
        for (const Member& owner : model.owners) {
            const qint32 tt = timetableOf(owner);
            if (!tt)
                return QStringLiteral("%1 has no timetable").arg(nameOf(owner));
            Timetable::current() = Timetable::State();
            Timetable::current().ID = tt;
            Timetable::current().Type = ModMain::KindWord(owner.kind);
            FlexGrid g;
            ModMain::RefreshTable(g);
            for (int d = 1; d <= kDays; ++d)
                for (int p = 1; p <= kPeriods; ++p) {
                    const ModMain::Cell cell = cellAt(tt, d, p);
                    const auto shown = idx.cellLessons(tt, cell.period());
                    std::multiset<Model::Set> program, expected;
                    for (const ModMain::Lesson* l : shown)
                        program.insert(Model::Set(l->members.begin(), l->members.end()));
                    bool clash = false;
                    for (const Model::Lesson* l : model.at(d, p, owner)) {
                        expected.insert(l->members);
                        clash = clash || model.clashes(*l);
                    }
                    const QString where =
                        QStringLiteral("%1's cell %2/%3").arg(nameOf(owner)).arg(d).arg(p);
                    if (program != expected)
                        return where + QStringLiteral(": lessons %1, the model has %2")
                                           .arg(text(program), text(expected));
                    const QString grid = g.textMatrix(d, p);
                    const QString want = cellText(owner, d, p, shown);
                    // An empty cell is blank, with or without its empty lines.
                    if (want.trimmed().isEmpty() ? !grid.trimmed().isEmpty() : grid != want)
                        return where +
                               QStringLiteral(": shows \"%1\", should \"%2\"").arg(grid, want);
                    if (g.cellEdge(d, p).isValid() != clash)
                        return where + QStringLiteral(": red edge %1").arg(!clash);
                    if (const QString s = statuses(owner, cell, d, p); !s.isEmpty())
                        return where + QStringLiteral(": ") + s;
                }
        }
        std::multiset<QString> program, expected;
        for (const ModMain::Conflict& c : idx.conflicts())
            program.insert(QStringLiteral("%1 %2").arg(nameOf(c.who)).arg(c.lessons.size()) +
                           QString::number(c.at.day) + QString::number(c.at.time));
        for (int d = 1; d <= kDays; ++d)
            for (int p = 1; p <= kPeriods; ++p)
                for (const Member& m : all)
                    if (ModMain::IsBooked(m.kind) && model.at(d, p, m).size() > 1)
                        expected.insert(
                            QStringLiteral("%1 %2").arg(nameOf(m)).arg(model.at(d, p, m).size()) +
                            QString::number(projectID("DayTitle", d)) +
                            QString::number(projectID("TimeTitle", p)));
        if (program != expected)
            return QStringLiteral("double bookings differ");
        // Kept up to date by the writes, or read whole: the same.
        const QString kept = indexText(idx);
        ModMain::LessonIndex::invalidate();
        if (indexText(ModMain::LessonIndex::current()) != kept)
            return QStringLiteral("the lessons kept differ from those read whole");
        return {};
    }

    OpenProject p;
    QStringList names;
    std::vector<Member> all;

private:
    qint32 timetableOf(const Member& m) const {
        const char* column = m.kind == ResourceKind::Class   ? "ClassID"
                             : m.kind == ResourceKind::Tutor ? "TutorID"
                                                             : "RoomID";
        return value("SELECT MIN(id) FROM Timetable WHERE Type = '%1' AND %2 = %3",
                     ModMain::KindWord(m.kind), column, m.id)
            .toInt();
    }
    QString nameOf(const Member& m) const {
        for (size_t i = 0; i < all.size(); ++i)
            if (all[i] == m)
                return names[int(i)];
        return QStringLiteral("?");
    }
    QString text(const std::multiset<Model::Set>& sets) const {
        QStringList out;
        for (const Model::Set& s : sets) {
            QStringList n;
            for (const Member& m : s)
                n << nameOf(m);
            out << n.join(' ');
        }
        return out.join(QStringLiteral(" | "));
    }
    // The model's text of a cell, its lessons in the order the cell lists them.
    QString cellText(const Member& owner, int d, int p,
                     const QVector<const ModMain::Lesson*>& order) const {
        ResourceKind lines[3] = {ResourceKind::Tutor, ResourceKind::Subject, ResourceKind::Room};
        if (owner.kind == ResourceKind::Tutor)
            lines[0] = ResourceKind::Class;
        if (owner.kind == ResourceKind::Room)
            lines[2] = ResourceKind::Class;
        QStringList out;
        for (const ResourceKind k : lines) {
            QStringList parts;
            for (const ModMain::Lesson* l : order) {
                QStringList n;
                for (const Member& m : l->members)
                    if (m.kind == k)
                        n << nameOf(m);
                n.sort();
                if (!n.isEmpty())
                    parts << n.join(QStringLiteral(", "));
            }
            out << parts.join(QStringLiteral(" / "));
        }
        const QString lessons = out.join(QStringLiteral("\r\n"));
        const int mark = model.mark(owner, d, p);
        if (mark == 1)
            return lessons;
        const QString word = QStringList{"", "", "Unavailable", "Lunch", "Break"}[mark];
        return order.isEmpty() ? word : word + QStringLiteral("\r\n") + lessons;
    }
    QString statuses(const Member& owner, const ModMain::Cell& cell, int d, int p) const {
        const auto selected = ModMain::SelectedLesson(cell);
        const Model::Lesson* own = nullptr;
        for (const Model::Lesson* l : model.at(d, p, owner))
            if (selected &&
                l->members == Model::Set(selected->members.begin(), selected->members.end()))
                own = l;
        for (const Member& m : all) {
            if (m.kind == owner.kind)
                continue;
            const auto states = ModMain::ListStates(m.kind, {m.id}, cell);
            const bool in = own && own->members.count(m);
            size_t others = ModMain::IsBooked(m.kind) ? model.at(d, p, m).size() : 0;
            if (in && ModMain::IsBooked(m.kind))
                --others;
            const QString want = in ? (others ? "Clash" : "-")
                                    : (others == 0   ? "Avail"
                                       : others == 1 ? "Busy"
                                                     : "Clash");
            if (states.value(0).status != want || states.value(0).checked != in)
                return QStringLiteral("%1 reads %2, should %3")
                    .arg(nameOf(m), states.value(0).status, want);
        }
        return {};
    }
    // The lesson the cell selects, in the model; none when the cell shows none.
    const Model::Lesson* selected(const Member& owner, qint32 tt, int d, int p) {
        const ModMain::Lesson* l = ModMain::SelectedLesson(cellAt(tt, d, p));
        if (!l)
            return nullptr;
        for (const Model::Lesson* m : model.at(d, p, owner))
            if (m->members == Model::Set(l->members.begin(), l->members.end()))
                return m;
        return nullptr;
    }
    QString click(const Member& owner, qint32 tt, const Action& a) {
        const Member r = all[a.resource % all.size()];
        if (r.kind == owner.kind)
            return {};
        const ModMain::Cell cell = cellAt(tt, a.day, a.period);
        const Model::Lesson* sel = selected(owner, tt, a.day, a.period);
        if (ModMain::SelectedLesson(cell) && !sel)
            return QStringLiteral("the cell selects a lesson the model does not have");
        if (sel && sel->members.count(r)) {
            const ActionName n(QStringLiteral("Untick"));
            ModMain::UntickResource(r.kind, r.id, cell);
            Model::Set members = sel->members;
            members.erase(r);
            model.remove(sel);
            model.put(a.day, a.period, members);
        } else {
            const ActionName n(QStringLiteral("Tick"));
            const bool refused = ModMain::TickResource(r.kind, r.id, cell) < 0;
            if (refused != (model.mark(owner, a.day, a.period) != 1))
                return QStringLiteral("a tick %1").arg(refused ? "refused" : "taken");
            if (refused)
                return {};
            Model::Set members = sel ? sel->members : Model::Set{owner};
            members.insert(r);
            if (sel)
                model.remove(sel);
            model.put(a.day, a.period, members);
        }
        step();
        return {};
    }
    void markCell(const Member& owner, qint32 tt, const Action& a) {
        Timetable::current() = Timetable::State();
        Timetable::current().ID = tt;
        Timetable::current().Type = ModMain::KindWord(owner.kind);
        FlexGrid g;
        ModMain::RefreshTable(g);
        g.setRowCol(a.day, a.period);
        {
            const ActionName n(QStringLiteral("Mark"));
            Transaction tx;
            ModMain::SetSpecialCells(g, qint16(a.code), {});
        }
        step();
        while (!model.at(a.day, a.period, owner).empty())
            model.remove(model.at(a.day, a.period, owner).front());
        if (a.code == 1)
            model.marks.erase({owner, a.day, a.period});
        else
            model.marks[{owner, a.day, a.period}] = a.code;
    }
    QString move(const Member& owner, qint32 tt, const Action& a) {
        const Model::Lesson* moving = selected(owner, tt, a.day, a.period);
        const Model::Lesson* staying = selected(owner, tt, a.day2, a.period2);
        const bool can = moving && (a.day != a.day2 || a.period != a.period2) &&
                         model.mark(owner, a.day2, a.period2) == 1 &&
                         !(staying && model.mark(owner, a.day, a.period) != 1);
        const bool moved = ModMain::MoveLesson(cellAt(tt, a.day, a.period),
                                               cellAt(tt, a.day2, a.period2), nullptr);
        if (moved != can)
            return QStringLiteral("the move was %1").arg(moved ? "made" : "refused");
        if (!moved)
            return {};
        step();
        const Model::Lesson m = *moving;
        const std::optional<Model::Lesson> s =
            staying ? std::optional<Model::Lesson>(*staying) : std::nullopt;
        model.lessons.erase(std::find(model.lessons.begin(), model.lessons.end(), m));
        if (s)
            model.lessons.erase(std::find(model.lessons.begin(), model.lessons.end(), *s));
        model.put(a.day2, a.period2, m.members);
        if (s)
            model.put(a.day, a.period, s->members);
        return {};
    }
    // The fill's choices are its own: the model takes what it wrote into the
    // class's own slots (read from the file, not through the program's
    // lessons) and expects each such lesson in every timetable it names.
    QString autoFill(const Member& owner, qint32 tt, const Action& a) {
        const auto ownSlots = [&] {
            std::map<qint32, std::pair<std::pair<int, int>, Model::Set>> out;
            for (const QString& row :
                 rows("SELECT Slot.id, pd.Pos, pt.Pos FROM Slot, DayTitle d, TimeTitle t, "
                      "ProjectDayTitle pd, ProjectTimeTitle pt WHERE d.ID = Slot.DayTitleID AND "
                      "t.ID = Slot.TimeTitleID AND pd.id = d.ProjectDayTitleID AND pt.id = "
                      "t.ProjectTimeTitleID AND Slot.TimetableID = %1",
                      tt)) {
                const QStringList f = row.split('|');
                out[f[0].toInt()].first = {f[1].toInt(), f[2].toInt()};
            }
            for (const ResourceKind k : {ResourceKind::Tutor, ResourceKind::Subject,
                                         ResourceKind::Room, ResourceKind::Class})
                for (const QString& row :
                     rows("SELECT SlotID, %1ID FROM %1Slot", ModMain::KindWord(k))) {
                    const auto it = out.find(row.section('|', 0, 0).toInt());
                    if (it != out.end())
                        it->second.second.insert({k, row.section('|', 1).toInt()});
                }
            return out;
        };
        const auto before = ownSlots();
        const qint32 free = ModMain::GetTotalSlotsForTimetable(tt) -
                            ModMain::GetTotalAllocatedSlotsForTimetable(tt);
        if (free < 1)
            return {};
        AutoFill::Reset();
        AutoFill::State& s = AutoFill::state();
        s.AutoFill_WhoID = tt;
        s.AutoFill_IncludeSubjects = {all[8].id, all[9].id};
        s.AutoFill_IncludeSubjectPeriods = {qMin(free, 1 + a.code % 2), free > 2 ? 1 : 0};
        for (const Member& m : all)
            if (m.kind == ResourceKind::Tutor)
                s.AutoFill_Tutors << m.id;
            else if (m.kind == ResourceKind::Room)
                s.AutoFill_Rooms << m.id;
        s.AutoFill_MethodID = 1;
        Common::Randomize(quint32(a.resource * 7 + a.day2));
        ModMain::FillProgress quiet;
        {
            const ActionName n(QStringLiteral("Auto Fill"));
            if (ModMain::RunAutoFill(quiet) != ModMain::FillOutcome::Finished)
                return QStringLiteral("the fill did not finish");
        }
        step();
        for (const auto& [slot, after] : ownSlots()) {
            const auto old = before.find(slot);
            Model::Set was = old == before.end() ? Model::Set{} : old->second.second;
            if (old != before.end() && was == after.second)
                continue;
            const auto [d, p] = after.first;
            if (model.mark(owner, d, p) != 1)
                return QStringLiteral("the fill wrote into the marked cell %1/%2").arg(d).arg(p);
            was.insert(owner);
            for (const Model::Lesson* l : model.at(d, p, owner))
                if (l->members == was) {
                    model.remove(l);
                    break;
                }
            Model::Set now = after.second;
            now.insert(owner);
            model.put(d, p, now);
        }
        return {};
    }
    // Every slot and lesson the program knows, in the project's order.
    static QString indexText(const ModMain::LessonIndex& idx) {
        QStringList out;
        for (int d = 1; d <= kDays; ++d)
            for (int p = 1; p <= kPeriods; ++p) {
                const ModMain::Period at{projectID("DayTitle", d), projectID("TimeTitle", p)};
                for (const ModMain::SlotEntry& e : idx.slotsAt(at)) {
                    QStringList links;
                    for (const Member& m : e.links)
                        links << QStringLiteral("%1:%2").arg(int(m.kind)).arg(m.id);
                    out << QStringLiteral("slot %1 of %2 mark %3: %4")
                               .arg(e.id)
                               .arg(e.timetable)
                               .arg(e.special)
                               .arg(links.join(','));
                }
                for (const ModMain::Lesson& l : idx.at(at)) {
                    QStringList members, slots;
                    for (const Member& m : l.members)
                        members << QStringLiteral("%1:%2").arg(int(m.kind)).arg(m.id);
                    for (const qint32 id : l.slots)
                        slots << QString::number(id);
                    out << members.join(',') + QStringLiteral(" in ") + slots.join(',');
                }
            }
        return out.join('\n');
    }
    // An action was made: when it changed the file, it can be undone.
    void step() {
        if (history->stack().index() > indexBefore) {
            done.push_back(before);
            undone.clear();
        }
    }

public:
    // What the model was before the action now being applied, and the
    // history's place then.
    Model before;
    int indexBefore = 0;
    Model model;

    std::unique_ptr<UndoHistory> history;

private:
    std::vector<Model> done, undone;
    std::vector<int> timetableOwners;
};

std::vector<Action> actions(quint32 seed, int count) {
    QRandomGenerator rng(seed);
    std::vector<Action> out;
    for (int i = 0; i < count; ++i)
        out.push_back({rng.bounded(11), rng.bounded(8), 1 + rng.bounded(kDays),
                       1 + rng.bounded(kPeriods), rng.bounded(10), 1 + rng.bounded(4),
                       1 + rng.bounded(kDays), 1 + rng.bounded(kPeriods)});
    return out;
}

// The first failure of a run of actions, with the step it came at; empty
// when every check holds.
QString failure(const std::vector<Action>& run, int* at = nullptr) {
    Run r;
    for (size_t i = 0; i < run.size(); ++i) {
        r.before = r.model;
        r.indexBefore = r.history->stack().index();
        QString why = r.apply(run[i]);
        if (why.isEmpty())
            why = r.check();
        if (!why.isEmpty()) {
            if (at)
                *at = int(i);
            return why;
        }
    }
    return {};
}
} // namespace

class TestLessons : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void randomActionsAgreeWithTheModel_data() {
        QTest::addColumn<quint32>("seed");
        for (const quint32 seed : {1u, 2u, 3u, 5u, 8u, 13u})
            QTest::addRow("seed %u", seed) << seed;
    }
    void randomActionsAgreeWithTheModel() {
        QFETCH(quint32, seed);
        std::vector<Action> run = actions(seed, 150);
        int at = -1;
        QString why = failure(run, &at);
        if (why.isEmpty())
            return;
        // The shortest run that still fails: the prefix up to the failure,
        // then every action that can go without the failure going.
        run.resize(size_t(std::max(at, 0)) + 1);
        for (size_t i = run.size(); i-- > 0;) {
            std::vector<Action> shorter;
            for (size_t j = 0; j < run.size(); ++j)
                if (j != i)
                    shorter.push_back(run[j]);
            if (!failure(shorter).isEmpty())
                run = shorter;
        }
        why = failure(run);
        Run names;
        QStringList steps;
        for (const Action& a : run)
            steps << describe(a, names.names);
        QFAIL(qPrintable(why + QStringLiteral("\nafter:\n") + steps.join('\n')));
    }
};

QTEST_MAIN(TestLessons)
#include "test_lessons.moc"
