// Build-time tool: runs blank.sql into a fresh SQLite file, the blank project
// that New Project copies.
#include <cstdio>
#include <fstream>
#include <sqlite3.h>
#include <sstream>
#include <string>

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: makeblank blank.sql blank.db\n");
        return 2;
    }
    std::ifstream in(argv[1]);
    if (!in) {
        std::fprintf(stderr, "makeblank: cannot read %s\n", argv[1]);
        return 1;
    }
    std::stringstream sql;
    sql << in.rdbuf();

    const std::string tmp = std::string(argv[2]) + ".tmp";
    std::remove(tmp.c_str());
    sqlite3* db = nullptr;
    if (sqlite3_open(tmp.c_str(), &db) != SQLITE_OK) {
        std::fprintf(stderr, "makeblank: %s\n", sqlite3_errmsg(db));
        sqlite3_close(db);
        return 1;
    }
    char* err = nullptr;
    const int rc = sqlite3_exec(db, sql.str().c_str(), nullptr, nullptr, &err);
    if (rc != SQLITE_OK) {
        std::fprintf(stderr, "makeblank: %s\n", err ? err : sqlite3_errmsg(db));
        sqlite3_free(err);
        sqlite3_close(db);
        std::remove(tmp.c_str());
        return 1;
    }
    sqlite3_exec(db, "VACUUM;", nullptr, nullptr, nullptr);
    sqlite3_close(db);
    // Replace the old file only once the new one is complete.
    if (std::rename(tmp.c_str(), argv[2]) != 0) {
        std::fprintf(stderr, "makeblank: cannot write %s\n", argv[2]);
        return 1;
    }
    return 0;
}
