#pragma once
// One open connection to one project file. Every read and write of a project
// is a plain SQL text sent through Execute.

#include "common/VariableDump.h"
#include "store/ChangeLog.h"
#include "store/clsSQLiteRecordset.h"

#include <QString>
#include <functional>

struct sqlite3;
struct sqlite3_stmt;

// One row of a statement run by ForEachRow, read in place.
class clsSQLiteRow {
public:
    explicit clsSQLiteRow(sqlite3_stmt* statement) : m_st(statement) {}
    qint32 Int(int column) const;
    QString Text(int column) const;

private:
    sqlite3_stmt* m_st;
};

class clsSQLite {
public:
    clsSQLite() = default;
    clsSQLite(const clsSQLite&) = delete;
    clsSQLite& operator=(const clsSQLite&) = delete;
    // Like the project lifecycle expects, the owner closes first; this only
    // frees the library's handle so nothing leaks.
    ~clsSQLite();

    QString GetAGS_SQLiteVersion() const;
    QString GetSQLiteVersion() const;
    QString GetLibraryEncoding() const;

    // True for an existing plain file; a directory or hidden file counts as absent.
    bool FileExist(const QString& sFileName) const;
    // Opens an existing file; a missing file is never created. A file the user
    // may not write (or whose folder cannot take the journal) opens read-only.
    bool DBOpen(const QString& File_Name, qint32 Mode = 0);
    // Whether the open file is read-only to this program.
    bool IsReadOnly() const { return m_readOnly; }
    QString GetDBFilename() const { return m_filename; }
    void DBClose();
    bool IsDBOpen() const { return m_handle != -1; }
    QString GetErrorString() const { return m_errMsg; }
    // The library's result code of the last failed open or statement (0: none).
    int GetErrorNumber() const { return m_errCode; }

    // Runs the statement(s) and returns the whole result. A failing statement
    // is reported (error 425) and gives an empty result. Inside a user action
    // that has failed already, nothing runs. Within a transaction the plain
    // "BEGIN;" and "COMMIT;" become a savepoint and its release.
    clsSQLiteRecordset Execute(const QString& SQL);
    // Runs one statement and hands each row to visit as it comes, building
    // no result: for reads of thousands of rows. Fails as Execute does,
    // returning false.
    bool ForEachRow(const QString& SQL, const std::function<void(const clsSQLiteRow&)>& visit);
    qint32 GetInsertID() const;
    // Changes whenever the open file's contents may have: a write by this
    // connection, a commit by another, or another file opened. Runs no
    // statement.
    quint64 ChangeStamp() const;

    // One user action's transaction (see store/Transaction.h): the outermost
    // begins it, inner ones only count. Begin returns false, having told the
    // user, when the project cannot be written now; nothing was written.
    bool BeginAction(bool write);
    void EndAction();
    bool InAction() const { return m_actionDepth > 0; }

    // Each committed writing action's changes go to the recorder (the undo
    // history); ActionName and QuietAction in Transaction.h say what it was.
    void SetChangeRecorder(ChangeRecorder recorder) { m_changes.setRecorder(std::move(recorder)); }
    ChangeLog& Changes() { return m_changes; }
    // Undoes (invert) or redoes one recorded step in one transaction.
    ApplyResult ApplyChanges(const QByteArray& changes, bool invert);

    // Writes a consistent copy of the open database to path, through SQLite's
    // backup, even while it is open and in use; the copy replaces path only
    // once whole. Empty on success, else why not, in words.
    QString BackupTo(const QString& path);

    // How long a statement waits for another program's lock.
    void SetBusyTimeout(int milliseconds);
    // Called after every statement the connection runs; only tests install it.
    static void SetStatementHook(std::function<void()> hook);

private:
    // The connection's state as an error report shows it.
    VariableDump variables() const;
    // Tells of a failed statement: a lock by another program once, in
    // words, failing the action; anything else as error 425.
    void reportFailure(int rc, const QString& SQL, const char* procedure);

    qint32 m_handle = -1; // -1: nothing open; 0: the library refused the open
    sqlite3* m_db = nullptr;
    QString m_errMsg;
    int m_errCode = 0;
    QString m_filename;
    bool m_readOnly = false;
    int m_busyTimeout = 3000;
    quint64 m_opens = 0;
    int m_actionDepth = 0;
    int m_savepoints = 0; // "BEGIN;" turned into savepoints, not yet released
    ChangeLog m_changes;
};

// The words shown when another program holds the project's lock.
QString ProjectBusyText(const QString& path);
