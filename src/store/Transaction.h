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
