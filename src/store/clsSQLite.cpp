#include "store/clsSQLite.h"

#include "common/Common.h"
#include "common/ErrorHandler.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <sqlite3.h>

namespace {
std::function<void()>& statementHook() {
    static std::function<void()> hook;
    return hook;
}

void afterStatement() {
    if (statementHook())
        statementHook()();
}

// "BEGIN;" or "COMMIT;" as the callers write them, in any case and spacing.
QString plainCommand(const QString& sql) {
    QString s = sql.trimmed();
    while (s.endsWith(QLatin1Char(';')))
        s.chop(1);
    return s.simplified().toUpper();
}

bool isBusy(int rc) {
    return (rc & 0xFF) == SQLITE_BUSY || (rc & 0xFF) == SQLITE_LOCKED;
}

// A journal is written beside the file, so its folder must take new files too.
// A file marked read-only is read-only even to an administrator, who could
// write it anyway: the mark is the user's wish.
bool writable(const QString& file) {
    const QFileInfo info(file);
    const auto writeBits =
        QFileDevice::WriteOwner | QFileDevice::WriteGroup | QFileDevice::WriteOther;
    return info.isWritable() && (info.permissions() & writeBits) &&
           QFileInfo(info.absolutePath()).isWritable();
}
} // namespace

QString ProjectBusyText(const QString& path) {
    return QStringLiteral("The project ") + QDir::toNativeSeparators(path) +
           QStringLiteral(" is in use by another program, so it cannot be changed now. Nothing "
                          "was changed. Close the project in the other program, then try again.");
}

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
    m_actionDepth = 0;
    m_savepoints = 0;
    const bool readOnly = !writable(File_Name);
    sqlite3* db = nullptr;
    const int rc =
        sqlite3_open_v2(File_Name.toUtf8().constData(), &db,
                        readOnly ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE, nullptr);
    if (rc == SQLITE_OK) {
        // SQLite opens lazily: read the schema now so a file that is not a
        // database fails here, with the library's own message.
        sqlite3_busy_timeout(db, m_busyTimeout);
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
        ++m_opens;
        m_readOnly = readOnly || sqlite3_db_readonly(db, "main") == 1;
        // Name result columns exactly as each statement writes them ("SELECT ID"
        // gives "ID"), not by the table's own spelling; Field reads by that name.
        sqlite3_exec(m_db, "PRAGMA short_column_names = OFF;", nullptr, nullptr, nullptr);
        m_filename = File_Name;
        m_changes.reset(m_db);
        return true;
    }
    if (db)
        sqlite3_close_v2(db);
    // The library's handle for a refused open is 0; it is kept as it is.
    m_handle = 0;
    m_readOnly = false;
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
    m_readOnly = false;
    m_actionDepth = 0;
    m_savepoints = 0;
    m_changes.reset(nullptr);
}

ApplyResult clsSQLite::ApplyChanges(const QByteArray& changes, bool invert) {
    if (!m_db || m_readOnly || m_actionDepth > 0)
        return ApplyResult::Failed;
    return m_changes.apply(m_db, changes, invert);
}

QString clsSQLite::BackupTo(const QString& path) {
    const QString shown = QDir::toNativeSeparators(path);
    if (!m_db)
        return QStringLiteral("No project is open to copy.");
    // Beside the target, so that the rename at the end stays on one disk.
    const QString part = path + QStringLiteral(".part");
    QFile::remove(part);
    sqlite3* copy = nullptr;
    int rc = sqlite3_open_v2(part.toUtf8().constData(), &copy,
                             SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    if (rc == SQLITE_OK) {
        sqlite3_backup* backup = sqlite3_backup_init(copy, "main", m_db, "main");
        if (!backup) {
            rc = sqlite3_errcode(copy);
        } else {
            rc = sqlite3_backup_step(backup, -1);
            sqlite3_backup_finish(backup);
            rc = rc == SQLITE_DONE ? sqlite3_errcode(copy) : rc;
        }
    }
    const QString reason = rc == SQLITE_OK ? QString() : QString::fromUtf8(sqlite3_errstr(rc));
    sqlite3_close(copy);
    if (!reason.isEmpty()) {
        QFile::remove(part);
        return QStringLiteral("The copy %1 could not be written (%2). Nothing was changed.")
            .arg(shown, reason);
    }
    // Renaming replaces the old file at once, so a failure never leaves half of one.
    if (std::rename(part.toLocal8Bit().constData(), path.toLocal8Bit().constData()) != 0) {
        QFile::remove(part);
        return QStringLiteral("The copy %1 could not be written (%2). Nothing was changed.")
            .arg(shown, QString::fromLocal8Bit(std::strerror(errno)));
    }
    return QString();
}

void clsSQLite::SetBusyTimeout(int milliseconds) {
    m_busyTimeout = milliseconds;
    if (m_db)
        sqlite3_busy_timeout(m_db, milliseconds);
}

void clsSQLite::SetStatementHook(std::function<void()> hook) {
    statementHook() = std::move(hook);
}

bool clsSQLite::BeginAction(bool write) {
    if (!m_db || ActionScope::Failed())
        return false;
    if (m_actionDepth > 0) {
        ++m_actionDepth;
        return true;
    }
    // The write lock is taken up front, so a project locked elsewhere is
    // refused before anything is written.
    const char* begin = write && !m_readOnly ? "BEGIN IMMEDIATE;" : "BEGIN;";
    const int rc = sqlite3_exec(m_db, begin, nullptr, nullptr, nullptr);
    afterStatement();
    if (rc != SQLITE_OK) {
        if (isBusy(rc)) {
            if (!ActionScope::Failed())
                Common::MsgBox(ProjectBusyText(m_filename), Common::MsgButtons::Ok,
                               Common::MsgIcon::Exclamation);
        } else {
            ErrorHandler(QStringLiteral("clsSQLite"), QStringLiteral("BeginAction"), __LINE__,
                         VbError(VbErr::SqlError,
                                 QStringLiteral("clsSQLite ") + QString::fromLatin1(begin),
                                 QString::fromUtf8(sqlite3_errmsg(m_db))),
                         variables());
        }
        ActionScope::MarkFailed();
        return false;
    }
    m_actionDepth = 1;
    m_savepoints = 0;
    if (write && !m_readOnly)
        m_changes.begin(m_db);
    return true;
}

void clsSQLite::EndAction() {
    if (m_actionDepth == 0 || --m_actionDepth > 0)
        return;
    m_savepoints = 0;
    if (!m_db || sqlite3_get_autocommit(m_db)) {
        m_changes.end(false);
        return;
    }
    // What ran is kept, even when the action ended through an error: the
    // statements already run stand, as they would one by one.
    int rc = sqlite3_exec(m_db, "COMMIT;", nullptr, nullptr, nullptr);
    afterStatement();
    if (rc != SQLITE_OK) {
        const QString message = QString::fromUtf8(sqlite3_errmsg(m_db));
        sqlite3_exec(m_db, "ROLLBACK;", nullptr, nullptr, nullptr);
        m_changes.end(false);
        ErrorHandler(QStringLiteral("clsSQLite"), QStringLiteral("EndAction"), __LINE__,
                     VbError(VbErr::SqlError, QStringLiteral("clsSQLite COMMIT;"), message),
                     variables());
        return;
    }
    m_changes.end(true);
}

VariableDump clsSQLite::variables() const {
    VariableDump dump;
    dump.module(QStringLiteral("DB_Filename"), m_filename)
        .module(QStringLiteral("DB_Handle"),
                m_db ? DumpValue::ExternalRecord() : DumpValue(qint64(-1)));
    return dump;
}

clsSQLiteRecordset clsSQLite::Execute(const QString& SQL) {
    clsSQLiteRecordset rs;
    // An action that has stopped on an error runs nothing more.
    if (ActionScope::Failed())
        return rs;
    try {
        m_errMsg.clear();
        m_errCode = 0;
        TableArray table;
        int rows = 0;
        QString sql = SQL;
        if (m_actionDepth > 0) {
            // Inside an action the plain transaction statements nest.
            const QString command = plainCommand(SQL);
            if (command == QLatin1String("BEGIN") ||
                command == QLatin1String("BEGIN TRANSACTION")) {
                sql = QStringLiteral("SAVEPOINT vantor_nested;");
                ++m_savepoints;
            } else if (command == QLatin1String("COMMIT") || command == QLatin1String("END") ||
                       command == QLatin1String("COMMIT TRANSACTION")) {
                if (m_savepoints == 0)
                    return rs;
                sql = QStringLiteral("RELEASE vantor_nested;");
                --m_savepoints;
            }
        }
        int rc = SQLITE_OK;
        if (!m_db) {
            m_errMsg = QStringLiteral("no project is open");
        } else {
            char** result = nullptr;
            int cols = 0;
            char* err = nullptr;
            rc = sqlite3_get_table(m_db, sql.toUtf8().constData(), &result, &rows, &cols, &err);
            // Freed however this block is left, an exception included.
            const std::unique_ptr<char*, void (*)(char**)> ownResult(result, &sqlite3_free_table);
            const std::unique_ptr<char, void (*)(void*)> ownErr(err, &sqlite3_free);
            afterStatement();
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
        }
        if (isBusy(rc) || !m_errMsg.isEmpty()) {
            reportFailure(rc, SQL, "Execute");
            return rs;
        }
        rs.setVTableArray(std::move(table));
        rs.setRecordCount(rows);
        rs.setRecordIndex(rows > 0 ? 0 : 1);
    } catch (const VbError& e) {
        ErrorHandler(QStringLiteral("clsSQLite"), QStringLiteral("Execute"), e.line(), e,
                     variables().parameter(QStringLiteral("SQL"), SQL));
    } catch (...) {
        ReportCurrentException("clsSQLite", "Execute", std::source_location::current(),
                               variables().parameter(QStringLiteral("SQL"), SQL));
    }
    return rs;
}

void clsSQLite::reportFailure(int rc, const QString& SQL, const char* procedure) {
    if (isBusy(rc)) {
        // Another program's lock is no fault of the program: say so once.
        if (!ActionScope::Failed())
            Common::MsgBox(ProjectBusyText(m_filename), Common::MsgButtons::Ok,
                           Common::MsgIcon::Exclamation);
        ActionScope::MarkFailed();
        return;
    }
    const int line = __LINE__; // where a failing statement is reported
    const QString description = QStringLiteral("Error in SQL '") + SQL +
                                QStringLiteral("'. Error '") + m_errMsg + QStringLiteral("'");
    ErrorHandler(QStringLiteral("clsSQLite"), QString::fromLatin1(procedure), line,
                 VbError(VbErr::SqlError, QStringLiteral("clsSQLite ") + SQL, description),
                 variables().parameter(QStringLiteral("SQL"), SQL));
}

qint32 clsSQLiteRow::Int(int column) const {
    return sqlite3_column_int(m_st, column);
}

QString clsSQLiteRow::Text(int column) const {
    return QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(m_st, column)),
                             sqlite3_column_bytes(m_st, column));
}

bool clsSQLite::ForEachRow(const QString& SQL,
                           const std::function<void(const clsSQLiteRow&)>& visit) {
    if (ActionScope::Failed())
        return false;
    m_errMsg.clear();
    m_errCode = 0;
    if (!m_db) {
        m_errMsg = QStringLiteral("no project is open");
        reportFailure(SQLITE_MISUSE, SQL, "ForEachRow");
        return false;
    }
    sqlite3_stmt* st = nullptr;
    const QByteArray text = SQL.toUtf8();
    int rc = sqlite3_prepare_v2(m_db, text.constData(), int(text.size()), &st, nullptr);
    if (rc == SQLITE_OK && st) {
        const clsSQLiteRow row(st);
        while ((rc = sqlite3_step(st)) == SQLITE_ROW)
            visit(row);
        if (rc == SQLITE_DONE)
            rc = SQLITE_OK;
    }
    if (rc != SQLITE_OK) {
        m_errMsg = QString::fromUtf8(sqlite3_errmsg(m_db));
        m_errCode = rc;
    }
    sqlite3_finalize(st);
    afterStatement();
    if (rc != SQLITE_OK) {
        reportFailure(rc, SQL, "ForEachRow");
        return false;
    }
    return true;
}

qint32 clsSQLite::GetInsertID() const {
    return m_db ? static_cast<qint32>(sqlite3_last_insert_rowid(m_db)) : 0;
}

quint64 clsSQLite::ChangeStamp() const {
    if (!m_db)
        return m_opens;
    // data_version moves with other connections' commits, total_changes with
    // this one's rows. Not through Execute: a look is no statement of an action.
    qint64 version = 0;
    sqlite3_stmt* st = nullptr;
    if (sqlite3_prepare_v2(m_db, "PRAGMA data_version;", -1, &st, nullptr) == SQLITE_OK &&
        sqlite3_step(st) == SQLITE_ROW)
        version = sqlite3_column_int64(st, 0);
    sqlite3_finalize(st);
    quint64 h = m_opens;
    h = h * 1000003u ^ quint64(version);
    h = h * 1000003u ^ quint64(sqlite3_total_changes64(m_db));
    return h;
}
