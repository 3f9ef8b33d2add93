#include "store/Project.h"

#include "common/Common.h"
#include "common/Settings.h"
#include "common/VbError.h"
#include "store/ModMain.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <QStandardPaths>
#include <sqlite3.h>

// The schema file is compiled into this static library; its registration
// must be asked for by name, at global scope.
static void initSchemaResource() {
    Q_INIT_RESOURCE(schema);
}

namespace ModMain {

namespace {
// The reason the last OpenProject refused its file, for OpenFailureText.
struct Refusal {
    QString path;
    QString description;
    int number = 0;
};
Refusal& lastRefusal() {
    static Refusal r;
    return r;
}

constexpr int kNotAProject = SQLITE_NOTADB;
constexpr int kDamaged = SQLITE_CORRUPT;

using Schema = QHash<QString, QSet<QString>>; // table -> columns, lower case

Schema readSchema(sqlite3* db) {
    Schema schema;
    sqlite3_stmt* tables = nullptr;
    if (sqlite3_prepare_v2(db, "SELECT name FROM sqlite_master WHERE type = 'table';", -1, &tables,
                           nullptr) != SQLITE_OK)
        return schema;
    QStringList names;
    while (sqlite3_step(tables) == SQLITE_ROW)
        names << QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(tables, 0)));
    sqlite3_finalize(tables);
    for (const QString& name : names) {
        QSet<QString>& columns = schema[name.toLower()];
        sqlite3_stmt* info = nullptr;
        const QByteArray sql = "PRAGMA table_info(\"" + name.toUtf8().replace('"', "\"\"") + "\");";
        if (sqlite3_prepare_v2(db, sql.constData(), -1, &info, nullptr) != SQLITE_OK)
            continue;
        while (sqlite3_step(info) == SQLITE_ROW)
            columns.insert(
                QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(info, 1)))
                    .toLower());
        sqlite3_finalize(info);
    }
    return schema;
}

// Every project has the tables and columns of a new one; the schema is read
// from the same SQL blank.db is built from, so the two cannot drift apart.
const Schema& projectSchema() {
    static const Schema schema = [] {
        initSchemaResource();
        QFile file(QStringLiteral(":/store/blank.sql"));
        Schema s;
        if (!file.open(QIODevice::ReadOnly))
            return s;
        const QByteArray sql = file.readAll();
        sqlite3* memory = nullptr;
        if (sqlite3_open(":memory:", &memory) == SQLITE_OK &&
            sqlite3_exec(memory, sql.constData(), nullptr, nullptr, nullptr) == SQLITE_OK)
            s = readSchema(memory);
        sqlite3_close(memory);
        return s;
    }();
    return schema;
}

// A text order (collation) the schema names that SQLite does not have built
// in; every statement touching it would fail.
QString unknownCollation(sqlite3* db) {
    static const QRegularExpression collate(QStringLiteral(R"(\bCOLLATE\s+"?(\w+))"),
                                            QRegularExpression::CaseInsensitiveOption);
    sqlite3_stmt* st = nullptr;
    QString unknown;
    if (sqlite3_prepare_v2(db, "SELECT sql FROM sqlite_master WHERE sql IS NOT NULL;", -1, &st,
                           nullptr) != SQLITE_OK)
        return unknown;
    while (unknown.isEmpty() && sqlite3_step(st) == SQLITE_ROW) {
        const QString sql =
            QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, 0)));
        for (auto it = collate.globalMatch(sql); it.hasNext();) {
            const QString name = it.next().captured(1);
            if (name.compare(QLatin1String("BINARY"), Qt::CaseInsensitive) != 0 &&
                name.compare(QLatin1String("NOCASE"), Qt::CaseInsensitive) != 0 &&
                name.compare(QLatin1String("RTRIM"), Qt::CaseInsensitive) != 0) {
                unknown = name;
                break;
            }
        }
    }
    sqlite3_finalize(st);
    return unknown;
}

// The first line of SQLite's quick check: "ok" for a sound file.
QString quickCheck(sqlite3* db) {
    sqlite3_stmt* check = nullptr;
    QString result;
    if (sqlite3_prepare_v2(db, "PRAGMA quick_check(1);", -1, &check, nullptr) != SQLITE_OK)
        return QString::fromUtf8(sqlite3_errmsg(db));
    if (sqlite3_step(check) == SQLITE_ROW)
        result = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(check, 0)));
    else
        result = QString::fromUtf8(sqlite3_errmsg(db));
    sqlite3_finalize(check);
    return result;
}
} // namespace

QString LastDB() {
    return Common::GetSetting(QString::fromLatin1(Common::kConfigApp), QStringLiteral("Config"),
                              QStringLiteral("LastDB"));
}

void SetLastDB(const QString& path) {
    Common::SaveSetting(QString::fromLatin1(Common::kConfigApp), QStringLiteral("Config"),
                        QStringLiteral("LastDB"), path);
}

QString CopySampleSchool(QString& error) {
    const QString sample = Common::AppDir() + QStringLiteral("/sample-school.VNPL");
    if (!QFileInfo::exists(sample)) {
        error = QStringLiteral("The sample school was not found at %1.")
                    .arg(QDir::toNativeSeparators(sample));
        return QString();
    }
    QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (folder.isEmpty())
        folder = QDir::homePath();
    QDir().mkpath(folder);
    QString copy = folder + QStringLiteral("/Sample School.VNPL");
    for (int n = 2; QFileInfo::exists(copy); ++n)
        copy = folder + QStringLiteral("/Sample School %1.VNPL").arg(n);
    if (!QFile::copy(sample, copy)) {
        error = QStringLiteral("The sample school could not be copied to %1.")
                    .arg(QDir::toNativeSeparators(folder));
        return QString();
    }
    // An installed file is read-only; the copy is the user's to change.
    QFile(copy).setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup |
                               QFile::ReadOther);
    return copy;
}

namespace {
QString problemOf(const QString& path, int* number) {
    const QString name = QFileInfo(path).fileName();
    const auto problem = [&](int code, const QString& text) {
        if (number)
            *number = code;
        return text;
    };
    // A connection of its own, so that nothing here reports to the user.
    sqlite3* db = nullptr;
    if (sqlite3_open_v2(path.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr) !=
        SQLITE_OK) {
        sqlite3_close(db);
        return problem(kNotAProject, name + QStringLiteral(" cannot be read."));
    }
    // SQLite opens lazily: reading the list of tables tells a damaged
    // database from a file that is none.
    char* err = nullptr;
    if (sqlite3_exec(db, "SELECT count(*) FROM sqlite_master;", nullptr, nullptr, &err) !=
        SQLITE_OK) {
        const QString detail = QString::fromUtf8(err ? err : sqlite3_errmsg(db));
        const int code = sqlite3_errcode(db) & 0xFF;
        sqlite3_free(err);
        sqlite3_close(db);
        if (code == kDamaged)
            return problem(kDamaged, DamagedText(path, detail));
        return problem(kNotAProject,
                       name + QStringLiteral(" is not a Vantor Planner project (%1).").arg(detail));
    }
    const Schema found = readSchema(db);
    const QString order = unknownCollation(db);
    // A damaged page would otherwise surface as an error in every later statement.
    const QString check = quickCheck(db);
    sqlite3_close(db);
    // A file with tables but damaged pages is damaged, whatever tables it
    // seems to lack; one with none at all is something else.
    if (!found.isEmpty() && check != QLatin1String("ok"))
        return problem(kDamaged, DamagedText(path, check.section(QLatin1Char('\n'), 0, 0)));
    for (auto table = projectSchema().cbegin(); table != projectSchema().cend(); ++table) {
        if (!found.contains(table.key()))
            return problem(kNotAProject, name + QStringLiteral(" is not a Vantor Planner project: "
                                                               "it has no table %1.")
                                                    .arg(table.key()));
        for (const QString& column : table.value())
            if (!found.value(table.key()).contains(column))
                return problem(kNotAProject,
                               name + QStringLiteral(" is not a Vantor Planner project: its "
                                                     "table %1 has no column %2.")
                                          .arg(table.key(), column));
    }
    if (!order.isEmpty())
        return problem(kNotAProject,
                       name + QStringLiteral(" is not a Vantor Planner project: it sorts text by "
                                             "\"%1\", an order this program does not know.")
                                  .arg(order));
    if (check != QLatin1String("ok"))
        return problem(kDamaged, DamagedText(path, check.section(QLatin1Char('\n'), 0, 0)));
    if (number)
        *number = 0;
    return QString();
}
} // namespace

QString ProjectProblem(int* number) {
    return problemOf(DB().GetDBFilename(), number);
}

bool CanOpenProject(const QString& path) {
    lastRefusal() = Refusal();
    const QFileInfo info(path);
    if (!info.exists() || info.isDir()) {
        lastRefusal() = {path,
                         info.isDir() ? QStringLiteral("The name is a folder, not a project file")
                                      : QStringLiteral("File not found"),
                         VbErr::FileNotFound};
        return false;
    }
    int number = 0;
    const QString problem = problemOf(path, &number);
    if (problem.isEmpty())
        return true;
    lastRefusal() = {path, problem, number};
    return false;
}

QString DamagedText(const QString& path, const QString& detail) {
    return QFileInfo(path).fileName() +
           QStringLiteral(" is damaged and cannot be used (%1). The file was left as it is; open "
                          "a copy from your backups.")
               .arg(detail);
}

bool OpenProject(const QString& path) {
    lastRefusal() = Refusal();
    if (!DB().DBOpen(path)) {
        if ((DB().GetErrorNumber() & 0xFF) == kDamaged)
            lastRefusal() = {path, DamagedText(path, DB().GetErrorString()), kDamaged};
        return false;
    }
    int number = 0;
    const QString problem = ProjectProblem(&number);
    if (problem.isEmpty())
        return true;
    DB().DBClose();
    lastRefusal() = {path, problem, number};
    return false;
}

QString OpenFailureReason(const QString& path) {
    QString description = DB().GetErrorString();
    int number = DB().GetErrorNumber();
    if (lastRefusal().path == path && !lastRefusal().description.isEmpty()) {
        description = lastRefusal().description;
        number = lastRefusal().number;
    } else if (description.isEmpty()) {
        // DBOpen refuses missing files and folders without asking the library.
        const QFileInfo info(path);
        description = info.isDir() ? QStringLiteral("The name is a folder, not a project file")
                                   : QStringLiteral("File not found");
        number = VbErr::FileNotFound;
    }
    // The code is for whoever the user asks for help, after the words.
    return QStringLiteral("%1 (code %2)").arg(description).arg(number);
}

QString OpenFailureText(const QString& path) {
    return QStringLiteral("Unable to open project file ") + path + QStringLiteral(".\r\n") +
           OpenFailureReason(path);
}

} // namespace ModMain
