// Dies of a fault on purpose, inside a guarded procedure, with the crash
// handler installed and a project open, as the program would:
//
//   crash_report access|stack|abort PROJECT
//
// The shell test then finds the report this leaves and starts over.

#include "common/ErrorHandler.h"
#include "shell/CrashReport.h"
#include "store/ModMain.h"
#include "store/Project.h"

#include <QtWidgets>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sys/mman.h>

namespace {
volatile int g_never = -1;

// Deep enough to run out of any stack; the volatile buffer keeps the
// compiler from turning it into a loop.
int recurse(int depth) {
    if (depth == g_never)
        return 0;
    volatile char frame[512];
    frame[0] = char(depth);
    return recurse(depth + 1) + frame[0];
}
} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: crash_report access|stack|abort PROJECT\n", stderr);
        return 2;
    }
    QApplication app(argc, argv);
    CrashReport::Install();
    const QString project = QString::fromLocal8Bit(argv[2]);
    if (!ModMain::OpenProject(project))
        return 1;
    ModMain::SetLastDB(project);
    CrashReport::SetProject(project);
    const char* mode = argv[1];
    Guard("frmMain", "RefreshTable", [mode] {
        if (std::strcmp(mode, "access") == 0) {
            // A page that may not be touched: a real fault, not a raised signal.
            auto* page = static_cast<volatile int*>(
                mmap(nullptr, 4096, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
            *page = 1;
        } else if (std::strcmp(mode, "stack") == 0) {
            std::printf("%d\n", recurse(0));
        } else {
            std::abort();
        }
    });
    return 3;
}
