#pragma once
// What each user action changed, kept as an SQLite changeset so the action
// can be undone and done again exactly: every row it inserted, updated or
// deleted, in every table, ids included. The connection starts a session at
// the beginning of a writing action and hands the changeset to the recorder
// when the action commits.

#include <QByteArray>
#include <QString>
#include <functional>

struct sqlite3;
struct sqlite3_session;

struct ChangeStep {
    QString name;       // "Tick Tutor Mr Brown"
    QByteArray changes; // the changeset
    // The project was changed by another program since the last step: the
    // steps before this one no longer fit it.
    bool afterOutsideChange = false;
};

using ChangeRecorder = std::function<void(const ChangeStep&)>;

enum class ApplyResult {
    Applied,
    // Another program changed the project, or a row is not as the step left it.
    ChangedElsewhere,
    // Another program holds the project's lock now.
    Busy,
    Failed,
};

class ChangeLog {
public:
    ChangeLog() = default;
    ChangeLog(const ChangeLog&) = delete;
    ChangeLog& operator=(const ChangeLog&) = delete;
    ~ChangeLog();

    void setRecorder(ChangeRecorder recorder) { m_recorder = std::move(recorder); }
    bool recording() const { return bool(m_recorder); }

    // The name the running action's step gets; the outermost name wins.
    void pushName(const QString& name);
    void popName();
    // Changes made while quiet (sizes saved on the way) are no step of their own.
    void pushQuiet() { ++m_quiet; }
    void popQuiet() { --m_quiet; }

    // A connection opened or closed: nothing recorded carries over.
    void reset(sqlite3* db);
    // Within a just-begun write transaction.
    void begin(sqlite3* db);
    // After the action's commit (or its failure); records the step.
    void end(bool committed);

    // Applies a step's changes, or their inverse, in one transaction.
    ApplyResult apply(sqlite3* db, const QByteArray& changes, bool invert);

private:
    bool changedElsewhere(sqlite3* db);

    ChangeRecorder m_recorder;
    sqlite3_session* m_session = nullptr;
    QString m_name;
    int m_nameDepth = 0;
    int m_quiet = 0;
    qint64 m_dataVersion = -1;
    bool m_outsideChange = false;
};
