#pragma once
// One user action, one transaction. A command handler opens a Transaction
// first: the outermost takes the project's write lock at once ("BEGIN
// IMMEDIATE"), so a project locked by another program is refused before
// anything is written, and commits when the action ends, normally or through
// an error. Nested ones only count, so an action may call another.
//
// Why: with full synchronous writes every statement on its own is a flush to
// disk, and a crash between two of them would leave half an action behind.

#include "store/ModMain.h"

class Transaction {
public:
    enum Mode { Write, Read };
    explicit Transaction(Mode mode = Write, clsSQLite& db = ModMain::DB())
        : m_db(db), m_ok(db.BeginAction(mode == Write)) {}
    ~Transaction() {
        if (m_ok)
            m_db.EndAction();
    }
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    // False when the project could not be locked (the user has been told);
    // the action must then write nothing.
    bool ok() const { return m_ok; }

private:
    clsSQLite& m_db;
    bool m_ok;
};

// Names the user action that runs while it lives, for Edit > Undo and Redo
// ("Undo Tick Tutor Mr Brown"). Set it before the action's first
// Transaction; the outermost name wins, so a lesson moved by unticking and
// ticking is one "Move Lesson".
class ActionName {
public:
    explicit ActionName(const QString& name, clsSQLite& db = ModMain::DB()) : m_db(db) {
        m_db.Changes().pushName(name);
    }
    ~ActionName() { m_db.Changes().popName(); }
    ActionName(const ActionName&) = delete;
    ActionName& operator=(const ActionName&) = delete;

private:
    clsSQLite& m_db;
};

// Writes that are no step of their own to undo (sizes saved on the way to
// another timetable).
class QuietAction {
public:
    explicit QuietAction(clsSQLite& db = ModMain::DB()) : m_db(db) { m_db.Changes().pushQuiet(); }
    ~QuietAction() { m_db.Changes().popQuiet(); }
    QuietAction(const QuietAction&) = delete;
    QuietAction& operator=(const QuietAction&) = delete;

private:
    clsSQLite& m_db;
};
