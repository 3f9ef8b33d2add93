#pragma once
// Bringing a school's tutors, subjects, rooms and classes in from a
// spreadsheet saved as CSV, and writing them out the same way. The first
// line names the columns: "Kind", "Name", "Display Name", "Subjects Taught"
// (the last two for tutors; one subject per line within the cell). Commas
// or semicolons separate the fields; the text is UTF-8, with or without a
// byte-order mark.

#include <QString>

namespace ModMain {

struct ImportResult {
    bool ok = false;
    // What was added and skipped, or why nothing was (naming the line).
    QString message;
};

// Adds the file's resources whose names are new to their kind, in one
// transaction; a malformed file writes nothing.
ImportResult ImportResources(const QString& path);

// Writes every resource in that format; empty on success, else the reason.
QString ExportResources(const QString& path);

} // namespace ModMain
