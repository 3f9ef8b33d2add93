#pragma once
// A large school for the benchmarks: 100 tutors, 60 rooms, 40 classes,
// 30 subjects, 5 days of 8 periods, and a full timetable for every class,
// tutor and room, linked the way hand scheduling links them.

#include <QString>
#include <QTemporaryDir>
#include <QVector>
#include <functional>

namespace Bench {

struct SchoolSize {
    int tutors = 100;
    int rooms = 60;
    int classes = 40;
    int subjects = 30;
    int days = 5;
    int periods = 8;
};

// Writes the school into a copy of blankDb at path and returns the number of
// slots written.
int MakeLargeSchool(const QString& blankDb, const QString& path, const SchoolSize& size = {});

// The large school in a temporary folder, open on the program's connection,
// with the settings in the same folder. A benchmark has no one to answer a
// message box: any box stops it as a fault.
class OpenSchool {
public:
    OpenSchool();
    const QString& path() const { return m_path; }

private:
    QTemporaryDir m_dir;
    QString m_path;
};

// Puts back the rows an action added: the actions measured only add rows, so
// deleting those above the ids seen at construction gives every iteration
// the same school.
class Restore {
public:
    Restore();
    void operator()() const;

private:
    QVector<int> m_max;
};

// A new class with an empty timetable on the open school (made once), and
// Auto Fill's choices of a full week for it: six subjects of six periods in
// its forty cells, every tutor and room offered. Returns the timetable.
qint32 PrepareClassFill();

// Runs the program's benchmarks; 1 when one of them reported an error.
int Run(int argc, char** argv);
// The same for a program that needs Qt's widgets, offscreen.
int RunWithWidgets(int argc, char** argv);
// Runs when the benchmarks are done, while Qt's application still lives:
// windows and the school kept for every run are let go here, not after it.
void BeforeExit(std::function<void()> cleanup);

// One T for the whole program, made on first use and let go before exit.
template <class T> T& Kept() {
    static T* kept = [] {
        auto* t = new T;
        BeforeExit([t] { delete t; });
        return t;
    }();
    return *kept;
}

} // namespace Bench
