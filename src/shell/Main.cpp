#include "shell/Main.h"

#include "common/Common.h"
#include "common/Settings.h"
#include "common/Variant.h"
#include "print/CommandLineExport.h"
#include "shell/CrashReport.h"
#include "shell/frmAbout.h"
#include "shell/frmHelp.h"
#include "shell/frmMain.h"
#include "shell/frmTip.h"
#include "store/ModMain.h"

#include <QAction>
#include <QApplication>
#include <QFileInfo>
#include <QTimer>
#include <cstdio>
#include <cstring>

namespace ModMain {

namespace {
const char* const kUsage =
    "Usage: vantor-planner [FILE.VNPL]\n"
    "       vantor-planner --export-pdf OUT.pdf [--all] [--timetable NAME] FILE.VNPL\n"
    "       vantor-planner --export-html OUT.html [--all] [--timetable NAME] FILE.VNPL\n"
    "\n"
    "Vantor Planner builds school timetables. Each school's tutors, subjects,\n"
    "rooms, classes, days, periods and timetables live in one project file.\n"
    "\n"
    "  FILE.VNPL             open this project instead of the one open at the last exit\n"
    "  --export-pdf OUT      write the project's first timetable to OUT as PDF, and exit\n"
    "  --export-html OUT     the same as one HTML page\n"
    "  --all                 with an export: every timetable\n"
    "  --timetable NAME      with an export: the timetable called NAME, as \"Class 7A\"\n"
    "  -h, --help            show this help and exit\n"
    "  -v, --version         show the version and exit\n"
    "\n"
    "An export needs no display and changes nothing in the project.\n";

// Writes what the command line asked for, with no window.
int runExport(int argc, char** argv, Print::ExportRequest request) {
    // No display is needed, and none may be there.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    // Nobody is there to answer a box: its words go to the terminal.
    Common::SetMsgBoxHandler([](const QString& text, auto, auto, const QString&) {
        std::fprintf(stderr, "vantor-planner: %s\n", qPrintable(text));
        return Common::MsgResult::Ok;
    });
    QString error;
    const int status = Print::RunExport(request, error);
    if (!error.isEmpty())
        std::fprintf(stderr, "vantor-planner: %s\n", qPrintable(error));
    return status;
}
} // namespace

void DoFirstRun(frmMain& main) {
    const QString app = QString::fromLatin1(Common::kConfigApp);
    const QString section = QStringLiteral("Config");
    const QString key = QStringLiteral("FirstRun");
    if (!Variant(Common::GetSetting(app, section, key, QStringLiteral("True"))).toBool())
        return;
    // Written first, so a crash during the first run does not ask again.
    Common::SaveSetting(app, section, key, QStringLiteral("False"));
    const Common::MsgResult answer = Common::MsgBox(
        QStringLiteral("We've noticed that this is the first time you have launched Vantor "
                       "Planner. You may find it useful to follow the getting started tutorial. "
                       "Would you like to view it now?"),
        Common::MsgButtons::YesNo, Common::MsgIcon::Question);
    if (answer == Common::MsgResult::Yes)
        frmHelp::ShowHelp(frmHelp::kGettingStarted);
    // A project named on the command line (a double-click in the file
    // manager) is what the user came for: no new project over it.
    if (ProjectIsOpen())
        return;
    const Common::MsgResult start = Common::MsgBox(
        QStringLiteral("Would you like to explore a sample school first? Choose No to set up "
                       "your own school now with the New Project Wizard."),
        Common::MsgButtons::YesNoCancel, Common::MsgIcon::Question);
    if (start == Common::MsgResult::Yes)
        main.mnuHelpOpenSample_Click();
    else if (start == Common::MsgResult::No)
        main.mnuFileNewProject->trigger();
    if (!ProjectIsOpen())
        main.NoProject();
}

void ShowStartupMessages(frmMain& main) {
    CrashReport::AnnouncePendingReport();
    if (frmTip::ShowAtStartup())
        main.mnuHelpTips_Click();
    DoFirstRun(main);
}

int Main(int argc, char** argv) {
    // Answer --help and --version before Qt needs a display.
    QString projectFile;
    Print::ExportRequest exportRequest;
    bool exporting = false, exportOption = false;
    for (int i = 1; i < argc; ++i) {
        const char* arg = argv[i];
        const bool pdf = std::strcmp(arg, "--export-pdf") == 0;
        if (pdf || std::strcmp(arg, "--export-html") == 0 || std::strcmp(arg, "--timetable") == 0) {
            if (i + 1 >= argc) {
                std::fprintf(stderr, "vantor-planner: %s needs a value\n\n%s", arg, kUsage);
                return 2;
            }
            const QString value = QString::fromLocal8Bit(argv[++i]);
            if (std::strcmp(arg, "--timetable") == 0) {
                exportRequest.timetable = value;
                exportOption = true;
            } else {
                if (exporting) {
                    std::fprintf(stderr, "vantor-planner: only one export at a time\n");
                    return 2;
                }
                exporting = true;
                exportRequest.html = !pdf;
                exportRequest.output = value;
            }
            continue;
        }
        if (std::strcmp(arg, "--all") == 0) {
            exportRequest.all = exportOption = true;
            continue;
        }
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
    if (exportOption && !exporting) {
        std::fprintf(stderr, "vantor-planner: --all and --timetable go with an export\n\n%s",
                     kUsage);
        return 2;
    }
    if (exporting) {
        if (projectFile.isEmpty()) {
            std::fprintf(stderr, "vantor-planner: name the project to export from\n\n%s", kUsage);
            return 2;
        }
        exportRequest.project = projectFile;
        return runExport(argc, argv, exportRequest);
    }

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Vantor Planner"));
    QApplication::setApplicationVersion(QStringLiteral(VANTOR_VERSION));
    QApplication::setOrganizationName(QStringLiteral("Vantor"));
    QApplication::setStyle(QStringLiteral("Fusion"));
    CrashReport::Install();

    {
        frmSplash splash;
        splash.exec();
    }
    frmMain window;
    window.show();
    window.Form_Load(projectFile.isEmpty() ? QString() : QFileInfo(projectFile).absoluteFilePath());
    QTimer::singleShot(0, &window, [&window] { ShowStartupMessages(window); });
    return QApplication::exec();
}

} // namespace ModMain
