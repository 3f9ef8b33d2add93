#include "store/clsSQLite.h"

#include "shell/ErrorHandler.h"

#include <QFileInfo>
#include <sqlite3.h>

clsSQLite::~clsSQLite() {
    if (m_db)
        sqlite3_close_v2(m_db);
}

QString clsSQLite::GetAGS_SQLiteVersion() const {
    return QStringLiteral("Vantor SQLite layer %1").arg(QStringLiteral(VANTOR_VERSION));
}

QString clsSQLite::GetSQLiteVersion() const {
    return QString::fromLatin1(sqlite3_libversion());
}

QString clsSQLite::GetLibraryEncoding() const {
    // SQLite 3 keeps project text as UTF-8.
    return QStringLiteral("UTF-8");
}

bool clsSQLite::FileExist(const QString& sFileName) const {
    if (sFileName.isEmpty())
        return false;
    const QFileInfo info(sFileName);
    return info.exists() && info.isFile() && !info.isHidden();
}

bool clsSQLite::DBOpen(const QString& File_Name, qint32 /*Mode: no meaning for SQLite 3*/) {
    if (!FileExist(File_Name)) {
        m_handle = -1;
        m_errMsg.clear();
        m_errCode = 0;
        return false;
    }
    if (m_db) {
        // Opening over an open connection replaces it.
        sqlite3_close_v2(m_db);
        m_db = nullptr;
    }
    m_errMsg.clear();
    m_errCode = 0;
    sqlite3* db = nullptr;
    const int rc = sqlite3_open_v2(File_Name.toUtf8().constData(), &db, SQLITE_OPEN_READWRITE,
                                   nullptr);
    if (rc == SQLITE_OK) {
        // SQLite opens lazily: read the schema now so a file that is not a
        // database fails here, with the library's own message.
        char* err = nullptr;
        if (sqlite3_exec(db, "SELECT count(*) FROM sqlite_master;", nullptr, nullptr, &err) !=
            SQLITE_OK) {
            m_errMsg = QString::fromUtf8(err ? err : sqlite3_errmsg(db));
            m_errCode = sqlite3_errcode(db);
            sqlite3_free(err);
        }
    } else {
        m_errMsg = QString::fromUtf8(db ? sqlite3_errmsg(db) : sqlite3_errstr(rc));
        m_errCode = rc;
    }
    if (m_errMsg.isEmpty()) {
        m_db = db;
        m_handle = 1;
        // A project on a busy network share may be locked for a moment.
        sqlite3_busy_timeout(m_db, 3000);
        // Name result columns exactly as each statement writes them ("SELECT ID"
        // gives "ID"), not by the table's own spelling; Field reads by that name.
        sqlite3_exec(m_db, "PRAGMA short_column_names = OFF;", nullptr, nullptr, nullptr);
        m_filename = File_Name;
        return true;
    }
    if (db)
        sqlite3_close_v2(db);
    // The library's handle for a refused open is 0; it is kept as it is.
    m_handle = 0;
    return false;
}

void clsSQLite::DBClose() {
    if (m_handle == -1)
        return;
    if (m_db) {
        sqlite3_close_v2(m_db);
        m_db = nullptr;
    }
    m_filename.clear();
    m_handle = -1;
}

clsSQLiteRecordset clsSQLite::Execute(const QString& SQL) {
    clsSQLiteRecordset rs;
    Guard("clsSQLite", "Execute", [&] {
        m_errMsg.clear();
        m_errCode = 0;
        TableArray table;
        int rows = 0;
        if (!m_db) {
            m_errMsg = QStringLiteral("no project is open");
        } else {
            char** result = nullptr;
            int cols = 0;
            char* err = nullptr;
            const int rc = sqlite3_get_table(m_db, SQL.toUtf8().constData(), &result, &rows,
                                             &cols, &err);
            if (rc != SQLITE_OK) {
                m_errMsg = QString::fromUtf8(err ? err : sqlite3_errmsg(m_db));
                m_errCode = rc;
                rows = 0;
            } else if (cols > 0) {
                table.reserve(rows + 1);
                for (int r = 0; r <= rows; ++r) {
                    QVector<Variant> line;
                    line.reserve(cols);
                    for (int c = 0; c < cols; ++c) {
                        const char* v = result[r * cols + c];
                        line.append(v ? Variant(QString::fromUtf8(v)) : Variant::null());
                    }
                    table.append(std::move(line));
                }
            }
            sqlite3_free(err);
            sqlite3_free_table(result);
        }
        if (!m_errMsg.isEmpty())
            throw VbError(VbErr::SqlError, QStringLiteral("clsSQLite ") + SQL,
                          QStringLiteral("Error in SQL '") + SQL + QStringLiteral("'. Error '") +
                              m_errMsg + QStringLiteral("'"));
        rs.setVTableArray(std::move(table));
        rs.setRecordCount(rows);
        rs.setRecordIndex(rows > 0 ? 0 : 1);
    });
    return rs;
}

qint32 clsSQLite::GetInsertID() const {
    return m_db ? static_cast<qint32>(sqlite3_last_insert_rowid(m_db)) : 0;
}
