#include "shell/Main.h"

#include "common/Common.h"
#include "shell/frmMain.h"

#include <QApplication>
#include <QFileInfo>
#include <cstdio>
#include <cstring>

namespace ModMain {

namespace {
bool g_runningFromIDE = false;

const char* const kUsage =
    "Usage: vantor-planner [FILE.VNPL]\n"
    "\n"
    "Vantor Planner builds school timetables. Each school's tutors, subjects,\n"
    "rooms, classes, days, periods and timetables live in one project file.\n"
    "\n"
    "  FILE.VNPL      open this project instead of the one open at the last exit\n"
    "  -h, --help     show this help and exit\n"
    "  -v, --version  show the version and exit\n";
} // namespace

bool RunningFromIDE() {
    return g_runningFromIDE;
}

int Main(int argc, char** argv) {
    // Answer --help and --version before Qt needs a display.
    QString projectFile;
    for (int i = 1; i < argc; ++i) {
        const char* arg = argv[i];
        if (std::strcmp(arg, "-h") == 0 || std::strcmp(arg, "--help") == 0) {
            std::fputs(kUsage, stdout);
            return 0;
        }
        if (std::strcmp(arg, "-v") == 0 || std::strcmp(arg, "--version") == 0) {
            std::printf("vantor-planner %s\n", VANTOR_VERSION);
            return 0;
        }
        if (arg[0] == '-' && arg[1] != '\0') {
            std::fprintf(stderr, "vantor-planner: unknown option %s\n\n%s", arg, kUsage);
            return 2;
        }
        if (!projectFile.isEmpty()) {
            std::fprintf(stderr, "vantor-planner: only one project file can be opened\n");
            return 2;
        }
        projectFile = QString::fromLocal8Bit(arg);
    }

    g_runningFromIDE = !qEnvironmentVariableIsEmpty("VANTOR_DEVELOPMENT");

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Vantor Planner"));
    QApplication::setApplicationVersion(QStringLiteral(VANTOR_VERSION));
    QApplication::setOrganizationName(QStringLiteral("Vantor"));
    QApplication::setStyle(QStringLiteral("Fusion"));

    frmMain window;
    window.show();
    window.Form_Load(projectFile.isEmpty() ? QString() : QFileInfo(projectFile).absoluteFilePath());
    return QApplication::exec();
}

} // namespace ModMain
