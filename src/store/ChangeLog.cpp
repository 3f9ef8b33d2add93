#define SQLITE_ENABLE_SESSION
#define SQLITE_ENABLE_PREUPDATE_HOOK
#include "store/ChangeLog.h"

#include <sqlite3.h>

namespace {
// Another connection's commits change it; this connection's own do not.
qint64 dataVersion(sqlite3* db) {
    sqlite3_stmt* stmt = nullptr;
    qint64 version = -1;
    if (sqlite3_prepare_v2(db, "PRAGMA data_version;", -1, &stmt, nullptr) == SQLITE_OK &&
        sqlite3_step(stmt) == SQLITE_ROW)
        version = sqlite3_column_int64(stmt, 0);
    sqlite3_finalize(stmt);
    return version;
}

struct Conflicts {
    bool found = false;
};

int onConflict(void* context, int kind, sqlite3_changeset_iter*) {
    // A row whose other columns differ was changed by this program without a
    // step of its own (a saved size): the step's values win. A row missing
    // or in the way means the project is not as the step left it.
    if (kind == SQLITE_CHANGESET_DATA)
        return SQLITE_CHANGESET_REPLACE;
    static_cast<Conflicts*>(context)->found = true;
    return SQLITE_CHANGESET_ABORT;
}
} // namespace

ChangeLog::~ChangeLog() {
    if (m_session)
        sqlite3session_delete(m_session);
}

void ChangeLog::pushName(const QString& name) {
    if (m_nameDepth++ == 0)
        m_name = name;
}

void ChangeLog::popName() {
    if (--m_nameDepth == 0)
        m_name.clear();
}

void ChangeLog::reset(sqlite3* db) {
    if (m_session)
        sqlite3session_delete(m_session);
    m_session = nullptr;
    m_outsideChange = false;
    m_dataVersion = db ? dataVersion(db) : -1;
}

bool ChangeLog::changedElsewhere(sqlite3* db) {
    const qint64 now = dataVersion(db);
    const bool changed = now != m_dataVersion;
    m_dataVersion = now;
    return changed;
}

void ChangeLog::begin(sqlite3* db) {
    if (!m_recorder || m_quiet > 0 || m_session)
        return;
    if (changedElsewhere(db))
        m_outsideChange = true;
    if (sqlite3session_create(db, "main", &m_session) != SQLITE_OK) {
        m_session = nullptr;
        return;
    }
    sqlite3session_attach(m_session, nullptr);
}

void ChangeLog::end(bool committed) {
    if (!m_session)
        return;
    int size = 0;
    void* data = nullptr;
    const bool ok = sqlite3session_changeset(m_session, &size, &data) == SQLITE_OK;
    sqlite3session_delete(m_session);
    m_session = nullptr;
    QByteArray changes;
    if (ok && data)
        changes = QByteArray(static_cast<const char*>(data), size);
    sqlite3_free(data);
    if (!committed || changes.isEmpty() || !m_recorder)
        return;
    ChangeStep step{m_name.isEmpty() ? QStringLiteral("Change") : m_name, changes, m_outsideChange};
    m_outsideChange = false;
    m_recorder(step);
}

ApplyResult ChangeLog::apply(sqlite3* db, const QByteArray& changes, bool invert) {
    if (changedElsewhere(db))
        return ApplyResult::ChangedElsewhere;
    QByteArray set = changes;
    if (invert) {
        int size = 0;
        void* inverted = nullptr;
        if (sqlite3changeset_invert(int(changes.size()), const_cast<char*>(changes.constData()),
                                    &size, &inverted) != SQLITE_OK)
            return ApplyResult::Failed;
        set = QByteArray(static_cast<const char*>(inverted), size);
        sqlite3_free(inverted);
    }
    if (sqlite3_exec(db, "BEGIN IMMEDIATE;", nullptr, nullptr, nullptr) != SQLITE_OK)
        return ApplyResult::Busy;
    Conflicts conflicts;
    const int rc =
        sqlite3changeset_apply(db, int(set.size()), set.data(), nullptr, onConflict, &conflicts);
    if (rc != SQLITE_OK) {
        sqlite3_exec(db, "ROLLBACK;", nullptr, nullptr, nullptr);
        return conflicts.found ? ApplyResult::ChangedElsewhere : ApplyResult::Failed;
    }
    if (sqlite3_exec(db, "COMMIT;", nullptr, nullptr, nullptr) != SQLITE_OK) {
        sqlite3_exec(db, "ROLLBACK;", nullptr, nullptr, nullptr);
        return ApplyResult::Failed;
    }
    return ApplyResult::Applied;
}
