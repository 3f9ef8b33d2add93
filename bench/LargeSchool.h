#pragma once
// A large school for the benchmarks: 100 tutors, 60 rooms, 40 classes,
// 30 subjects, 5 days of 8 periods, and a full timetable for every class,
// tutor and room, linked the way hand scheduling links them.

#include <QString>

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

} // namespace Bench
