#pragma once
// One open connection to one project file. Every read and write of a project
// is a plain SQL text sent through Execute.

#include "store/clsSQLiteRecordset.h"

#include <QString>

struct sqlite3;

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
    // Opens an existing project; a missing file is never created.
    bool DBOpen(const QString& File_Name, qint32 Mode = 0);
    QString GetDBFilename() const { return m_filename; }
    void DBClose();
    bool IsDBOpen() const { return m_handle != -1; }
    QString GetErrorString() const { return m_errMsg; }
    // The library's result code of the last failed open or statement (0: none).
    int GetErrorNumber() const { return m_errCode; }

    // Runs the statement(s) and returns the whole result. A failing statement
    // is reported (error 425) and gives an empty result.
    clsSQLiteRecordset Execute(const QString& SQL);
    qint32 GetInsertID() const;

private:
    qint32 m_handle = -1; // -1: nothing open; 0: the library refused the open
    sqlite3* m_db = nullptr;
    QString m_errMsg;
    int m_errCode = 0;
    QString m_filename;
};
