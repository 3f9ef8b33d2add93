// The main window's states and project commands, start-up and exit, the help
// window and the error reporter.

#include "common/FlexGrid.h"
#include "common/Settings.h"
#include "shell/CrashReport.h"
#include "shell/Main.h"
#include "shell/frmAbout.h"
#include "shell/frmHelp.h"
#include "shell/frmMain.h"
#include "shell/frmTip.h"
#include "store/Project.h"
#include "store/Records.h"
#include "support/TestSupport.h"
#include "timetable/Lessons.h"
#include "timetable/TimetableRecords.h"
#include "timetable/TimetableState.h"

#include <QtTest>
#include <QtWidgets>
#include <sqlite3.h>

using namespace TestSupport;
using Common::MsgResult;

namespace {
const QStringList kWeek = {"Monday", "Tuesday", "Wednesday", "Thursday", "Friday"};
const QStringList kTimes = {"8:00", "9:00", "10:00", "11:00"};

// Checks the window against the no-project state, or the project-open state for path.
void verifyState(const frmMain& w, const QString& path) {
    QCOMPARE(w.windowTitle(), QStringLiteral("Vantor Planner"));
    QCOMPARE(ModMain::DB().GetDBFilename(), path);
    for (const char* menu : {"mnuView", "mnuFormat", "mnuTools", "mnuPeriod"})
        QVERIFY2(!w.findChild<QMenu*>(QString::fromLatin1(menu))->menuAction()->isEnabled(), menu);
    for (const char* cmd : {"mnuFileDelete", "mnuFilePrintPreview", "tbBlank"})
        QVERIFY2(!w.command(QString::fromLatin1(cmd))->isEnabled(), cmd);
    QVERIFY(w.command(QStringLiteral("mnuFileOpenProject"))->isEnabled());
    for (const char* cmd : {"mnuFileNew", "mnuFileOpen", "tbNew", "tbManage"}) {
        QAction* a = w.command(QString::fromLatin1(cmd));
        QVERIFY2(a->isEnabled() == !path.isEmpty(), cmd);
    }
    if (!path.isEmpty())
        QCOMPARE(w.findChild<QLabel*>(QStringLiteral("sbPath"))->text(), path);
}

// Runs SQL on a file with a connection of the test's own.
void alter(const QString& file, const char* sql) {
    sqlite3* db = nullptr;
    sqlite3_open(file.toUtf8().constData(), &db);
    char* err = nullptr;
    if (sqlite3_exec(db, sql, nullptr, nullptr, &err) != SQLITE_OK)
        qFatal("%s: %s", sql, err);
    sqlite3_close(db);
}

// A project with a calendar and one class timetable with a lesson.
QString schoolWithTimetable(const TestEnv& env, const QString& name) {
    const QString file = env.newProjectWithCalendar(kWeek, kTimes, name);
    env.open(file);
    ModMain::DB().Execute(QStringLiteral("INSERT INTO Class (name) VALUES ('7A')"));
    ModMain::CreateTimetable(QStringLiteral("Class"), ModMain::DB().GetInsertID(), 1);
    ModMain::DB().DBClose();
    return file;
}

// With no timetable shown, nothing that needs one is on, and the name boxes
// are empty.
void verifyNoTimetableCommands(const frmMain& w) {
    for (const char* cmd : {"tbBlank", "tbLunch", "tbBreak", "tbUnavailable", "mnuPeriodLunch"})
        QVERIFY2(!w.findChild<QAction*>(QString::fromLatin1(cmd))->isEnabled(), cmd);
    for (QLineEdit* box : {w.txtTutorName, w.txtSubjectName, w.txtRoomName})
        QVERIFY(!box->isEnabled() && box->text().isEmpty());
}

// Nothing of a project is left on screen.
void verifyClean(const frmMain& w) {
    verifyState(w, QString());
    QCOMPARE(w.g->rows(), 1);
    QCOMPARE(w.g->cols(), 1);
    QVERIFY(w.g->emptyText().startsWith(QStringLiteral("No project is open")));
    for (FlexGrid* list : {w.gTutor, w.gSubject, w.gRoom, w.gClass}) {
        QVERIFY(!list->isHidden());
        QCOMPARE(list->rows(), 1);
    }
    QVERIFY(!w.findChild<QWidget*>(QStringLiteral("tbTimetables"))->isEnabled());
    verifyNoTimetableCommands(w);
}

} // namespace

class TestShell : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void startUp_data() {
        QTest::addColumn<bool>("rememberLast");
        QTest::addColumn<bool>("nameOnCommandLine");
        QTest::newRow("first start") << false << false;
        QTest::newRow("last project") << true << false;
        QTest::newRow("command line wins") << true << true;
    }
    void startUp() {
        QFETCH(bool, rememberLast);
        QFETCH(bool, nameOnCommandLine);
        TestEnv env;
        MessageRecorder boxes;
        const QString last = env.newProjectWithCalendar(kWeek, kTimes, QStringLiteral("last.VNPL"));
        const QString named =
            env.newProjectWithCalendar(kWeek, kTimes, QStringLiteral("named.VNPL"));
        if (rememberLast)
            ModMain::SetLastDB(last);
        frmMain w;
        w.Form_Load(nameOnCommandLine ? named : QString());
        verifyState(w, nameOnCommandLine ? named : rememberLast ? last : QString());
        QVERIFY(boxes.messages().isEmpty());
    }
    void missingLastProjectAsks_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("reason"); // the words after the question
        QTest::newRow("missing file") << "missing"
                                      << "File not found (code 53)";
        QTest::newRow("folder") << "folder"
                                << "The name is a folder, not a project file";
        QTest::newRow("not a database") << "text"
                                        << "lost.VNPL is not a Vantor Planner project";
    }
    void missingLastProjectAsks() {
        QFETCH(QString, kind);
        QFETCH(QString, reason);
        TestEnv env;
        MessageRecorder boxes;
        boxes.answer(MsgResult::No);
        const QString path = env.path(QStringLiteral("lost.VNPL"));
        if (kind == QLatin1String("folder"))
            QVERIFY(QDir().mkpath(path));
        if (kind == QLatin1String("text"))
            writeFile(path, QByteArray(4096, 'z'));
        ModMain::SetLastDB(path);
        frmMain w;
        w.Form_Load();
        QCOMPARE(boxes.messages().size(), 1);
        const ShownMessage& m = boxes.messages().first();
        // The question as always, then why, as File > Open Project says it.
        const QString question = QStringLiteral("Unable to open project file ") + path +
                                 QStringLiteral(". Would you like to create a new project?");
        QVERIFY2(m.text.startsWith(question + "\r\n\r\n" + reason), qPrintable(m.text));
        QCOMPARE(m.buttons, Common::MsgButtons::YesNo);
        QCOMPARE(m.icon, Common::MsgIcon::Question);
        verifyClean(w);
    }
    void openProjectCommand_data() {
        QTest::addColumn<QString>("choice"); // "project", "letter", or "" to cancel
        QTest::newRow("another project") << "project";
        QTest::newRow("not a database") << "letter";
        QTest::newRow("cancel") << "";
    }
    void openProjectCommand() {
        QFETCH(QString, choice);
        TestEnv env;
        MessageRecorder boxes;
        FileDialogRecorder dialogs;
        const QString first = env.newProjectWithCalendar(kWeek, kTimes, QStringLiteral("a.VNPL"));
        const QString second = env.newProjectWithCalendar(kWeek, kTimes, QStringLiteral("b.VNPL"));
        const QString letter = writeFile(env.path(QStringLiteral("letter.VNPL")),
                                         "Dear parents,\n" + QByteArray(2000, '.'));
        frmMain w;
        w.Form_Load(first);
        dialogs.choose(choice == QLatin1String("project") ? second
                       : choice.isEmpty()                 ? QString()
                                                          : letter);
        w.command(QStringLiteral("mnuFileOpenProject"))->trigger();
        const Common::FileDialogRequest& r = dialogs.requests().first();
        QCOMPARE(r.title, QStringLiteral("Open Vantor Timetable Project"));
        QCOMPARE(r.filter, QStringLiteral("Vantor Planner Project (*.VNPL)|*.VNPL|All(*.*)|*.*"));
        QCOMPARE(r.defaultExt, QStringLiteral("VNPL"));
        QVERIFY(r.flags & Common::OFN::FileMustExist);
        if (choice == QLatin1String("letter")) {
            QCOMPARE(boxes.messages().size(), 1);
            QCOMPARE(boxes.messages().first().icon, Common::MsgIcon::Critical);
            const QStringList lines = boxes.messages().first().text.split("\r\n");
            QCOMPARE(lines.size(), 2); // no code on a line of its own
            QCOMPARE(lines[0], QStringLiteral("Unable to open project file ") + letter + ".");
            QVERIFY(lines[1].startsWith("letter.VNPL is not a Vantor Planner project"));
            QVERIFY(lines[1].endsWith(QStringLiteral(" (code 26)")));
            verifyState(w, first); // the open project stays open
        } else {
            QVERIFY(boxes.messages().isEmpty());
            verifyState(w, choice.isEmpty() ? first : second);
        }
    }
    void exitRemembersProject_data() {
        QTest::addColumn<bool>("open");
        QTest::newRow("project open") << true;
        QTest::newRow("none ever opened") << false;
    }
    void exitRemembersProject() {
        QFETCH(bool, open);
        TestEnv env;
        MessageRecorder boxes;
        const QString file = env.newProjectWithCalendar(kWeek, kTimes);
        const QString remembered = env.path(QStringLiteral("elsewhere.VNPL"));
        ModMain::SetLastDB(remembered);
        {
            frmMain w;
            w.show();
            w.Form_Load(open ? file : QString());
            w.command(QStringLiteral("mnuFileExit"))->trigger();
            QVERIFY(!w.isVisible());
        }
        QVERIFY(!ModMain::DB().IsDBOpen());
        QCOMPARE(ModMain::LastDB(), open ? file : remembered);
    }
    void toolbarAndLayout() {
        TestEnv env;
        frmMain w;
        const char* const expected[][3] = {
            {"New", "New Table", "Create a new timetable"},
            {"View", "View Table", "View an existing timetable"},
            {"AutoFill", "Auto Fill", "Automatically populate a timetable"},
            {"Blank", "Clear", "Clear period"},
            {"Lunch", "Lunch", "Set period as a lunch break"},
            {"Break", "Break", "Set period as a break"},
            {"Unavailable", "Unavailable", "Set period as unavailable"},
            {"Manage", "Manage", "Manage tutors, rooms, classes and subjects"},
        };
        for (const auto& e : expected) {
            QAction* a = w.command(QStringLiteral("tb") + QString::fromLatin1(e[0]));
            QVERIFY2(a, e[0]);
            QCOMPARE(a->text(), QString::fromLatin1(e[1]));
            QCOMPARE(a->toolTip(), QString::fromLatin1(e[2]));
        }
        w.ToolBar_ButtonClick(QStringLiteral("Nothing")); // does nothing
        // Grid and lists stay usable, side by side, at any window size.
        w.show();
        for (const QSize size : {QSize(640, 480), QSize(1600, 1000)}) {
            w.resize(size);
            QCoreApplication::processEvents();
            QVERIFY(w.g->width() >= 300);
            for (FlexGrid* list : {w.gTutor, w.gSubject, w.gRoom, w.gClass}) {
                QVERIFY(list->isVisible());
                QVERIFY(list->width() >= 200);
                QVERIFY(list->x() > w.g->x());
            }
        }
    }
    void windowUsesItsSpace() {
        TestEnv env;
        const QString file = schoolWithTimetable(env, QStringLiteral("school.VNPL"));
        const auto storedSizes = [&] {
            env.open(file);
            const QString sizes =
                rows("SELECT group_concat(Width) || '/' || group_concat(Height) FROM TimeTitle")
                    .join(",") +
                rows("SELECT group_concat(Width) || '/' || group_concat(Height) FROM DayTitle")
                    .join(",");
            ModMain::DB().DBClose();
            return sizes;
        };
        const QString before = storedSizes();
        env.open(file);
        for (int i = 0; i < 14; ++i)
            ModMain::CreateTutorRecord(QString("Tutor %1").arg(i), "", "", "");
        ModMain::CreateRoomRecord("Lab", 30);
        ModMain::DB().DBClose();
        const auto body = [](const FlexGrid& g, bool across) {
            int total = 0;
            for (int i = 1; i < (across ? g.cols() : g.rows()); ++i) {
                const int shown = across ? g.columnWidth(i - 1) : g.rowHeight(i - 1);
                const int own = g.twipsToPixels(across ? g.colWidthTwips(i) : g.rowHeightTwips(i));
                if (shown < own)
                    return -1; // never drawn smaller than its own size
                total += shown;
            }
            return total;
        };
        QList<int> splitSizes;
        {
            frmMain w;
            w.Form_Load(file);
            FlexGrid& g = *w.g;
            const int ownWidth = g.twipsToPixels(g.colWidthTwips(1));
            w.resize(1600, 1000);
            w.show();
            QVERIFY(QTest::qWaitForWindowExposed(&w));
            // A small timetable fills the grid: the rows and columns share it.
            QTRY_COMPARE(body(g, true), g.viewport()->width());
            QTRY_COMPARE(body(g, false), g.viewport()->height());
            QVERIFY(g.columnWidth(0) > ownWidth);
            QCOMPARE(g.twipsToPixels(g.colWidthTwips(1)), ownWidth);
            // Fourteen tutors get more of the height than one room.
            QVERIFY(w.gTutor->height() > 2 * w.gRoom->height());
            // In a small window they keep their own sizes and the grid scrolls.
            w.resize(640, 420);
            QTRY_COMPARE(g.columnWidth(0), ownWidth);
            QVERIFY(body(g, true) > g.viewport()->width());
            // The splitter between the grid and the lists is kept for next time.
            // (Within the headless screen's 800 by 600, which a restored
            // window is kept inside.)
            w.resize(780, 560);
            auto* split = w.findChild<QSplitter*>(QStringLiteral("splitMain"));
            split->setSizes({340, 420});
            QCoreApplication::processEvents();
            splitSizes = split->sizes();
            w.close();
        }
        // Only sizes the user dragged are written: filling the window is not.
        QCOMPARE(storedSizes(), before);
        frmMain again;
        again.show();
        QVERIFY(QTest::qWaitForWindowExposed(&again));
        QCOMPARE(again.size(), QSize(780, 560));
        QCOMPARE(again.findChild<QSplitter*>(QStringLiteral("splitMain"))->sizes(), splitSizes);
    }
    void autoFillButtonWithoutTimetable() {
        // The menus wait for a timetable; Auto Fill's button offers to make one.
        TestEnv env;
        MessageRecorder boxes;
        frmMain w;
        w.Form_Load(env.newProjectWithCalendar(kWeek, kTimes));
        boxes.clear();
        QVERIFY(!w.findChild<QMenu*>(QStringLiteral("mnuTools"))->menuAction()->isEnabled());
        QAction* button = w.command(QStringLiteral("tbAutoFill"));
        QVERIFY(button->isEnabled());
        button->trigger();
        QCOMPARE(boxes.texts(),
                 QStringList{"You must create a class timetable before you can Auto Fill it. Would "
                             "you like to create a class timetable now?"});
        // Print Preview says what it needs.
        boxes.clear();
        w.mnuFilePrintPreview_Click();
        QCOMPARE(boxes.texts(),
                 QStringList{"No timetable selected to print. Please select a timetable to "
                             "continue (press the View Table button on the toolbar)."});
        // So do View Table and Manage.
        ModalDriver driver;
        driver.expect("frmTableOpen", [](QDialog* d) { clickButton(d, "cmdCancel"); });
        driver.expect("frmManage", [](QDialog* d) {
            QCOMPARE(control<QTabWidget>(d, "tsMain")->currentIndex(), 0);
            clickButton(d, "cmdClose");
        });
        QCOMPARE(driver.run([&] {
            w.command(QStringLiteral("tbView"))->trigger();
            w.command(QStringLiteral("tbManage"))->trigger();
        }),
                 QString());
    }
    void tipOfTheDay() {
        TestEnv env;
        const QString file = env.path("TipOfTheDay.txt");
        const auto currentTip = [] {
            return Common::GetSetting(Common::kOptionsApp, "Options", "Current Tip");
        };
        {
            // No file: the help text, and Next shows nothing else.
            frmTip tips(nullptr, file);
            const QString name = QDir::toNativeSeparators(file);
            const QString help = "That the " + name +
                                 " file was not found? Create a text file named " + name +
                                 " using NotePad with 1 tip per line. Then place it in the same "
                                 "directory as the application. ";
            QCOMPARE(tips.lblTipText->text(), help);
            tips.cmdNextTip->click();
            QCOMPARE(tips.lblTipText->text(), help);
        }
        // Three tips after the third: the first, and the counter kept.
        writeFile(file, "One\nTwo\nThree\n");
        Common::SaveSetting(Common::kOptionsApp, "Options", "Current Tip", "3");
        frmTip tips(nullptr, file);
        QCOMPARE(tips.lblTipText->text(), QString("One"));
        QCOMPARE(currentTip(), QString("1"));
        tips.cmdNextTip->click();
        QCOMPARE(tips.lblTipText->text(), QString("Two"));
        QCOMPARE(currentTip(), QString("2"));
        // The start-up choice, shown and kept.
        QVERIFY(frmTip::ShowAtStartup() && tips.chkLoadTipsAtStartup->isChecked());
        tips.chkLoadTipsAtStartup->click();
        QVERIFY(!frmTip::ShowAtStartup());
        // The program ships real tips.
        QVERIFY(
            QString::fromUtf8(readFile(frmTip::TipFile())).split('\n', Qt::SkipEmptyParts).size() >=
            20);
    }
    void aboutBox() {
        TestEnv env;
        QString info = frmAbout::SystemInformation();
        for (const QString& part :
             {QString("Operating system: "), QString("Qt platform plugin: "),
              "SQLite: " + QString::fromLatin1(sqlite3_libversion()),
              "Application folder: " + QDir::toNativeSeparators(Common::AppDir()),
              QString("Project: none open")})
            QVERIFY2(info.contains(part), qPrintable(part));
        QVERIFY(env.open(env.newProject()));
        QVERIFY(frmAbout::SystemInformation().contains(
            "Project: " + QDir::toNativeSeparators(ModMain::DB().GetDBFilename())));
    }
    void errorReporting() {
        TestEnv env;
        const QString project = env.newProject();
        QVERIFY(env.open(project));
        {
            // A failing statement, word for word, at the line that raises it.
            const QString source =
                QString::fromUtf8(readFile(VANTOR_SOURCE_DIR "/src/store/clsSQLite.cpp"));
            const qsizetype at = source.indexOf("where a failing statement is reported");
            QVERIFY(at > 0);
            MessageRecorder boxes;
            ModMain::DB().Execute("SELECT * FROM NoSuchTable;");
            QCOMPARE(boxes.messages().size(), 1);
            const ShownMessage& m = boxes.messages().first();
            QCOMPARE(m.title, QStringLiteral("Application Error"));
            QCOMPARE(m.icon, Common::MsgIcon::Critical);
            QCOMPARE(
                m.text,
                "Timetable has encountered a problem. We are sorry for the "
                "inconvenience.\r\n\r\nModule: clsSQLite\r\nProcedure: Execute\r\nLine Number: " +
                    QString::number(source.left(at).count('\n') + 1) +
                    "\r\n\r\nError in SQL 'SELECT * FROM NoSuchTable;'. Error 'no such table: "
                    "NoSuchTable' (425)");
        }
        // With a report component, it gets everything and no box is shown;
        // Guard turns any exception into a report and the fallback value.
        MessageRecorder boxes;
        ErrorRecorder errors;
        const int value = Guard(
            "ModMain", "DoCreateGetSlot",
            []() -> int {
                throw VbError(1, QStringLiteral("ModMain"),
                              QStringLiteral("Error DoCreateGetSlot can't find TimeTitle 0"));
            },
            -1);
        QCOMPARE(value, -1);
        Guard("frmMain", "Other", [] { throw std::runtime_error("disk full"); });
        QVERIFY(boxes.messages().isEmpty());
        QCOMPARE(errors.reports().size(), 2);
        const ErrorReport& r = errors.reports().first();
        QVERIFY(r.line > 0);
        QCOMPARE((QStringList{r.module, r.procedure, QString::number(r.number), r.description,
                              r.appTitle, r.version}),
                 (QStringList{"ModMain", "DoCreateGetSlot", "1",
                              "Error DoCreateGetSlot can't find TimeTitle 0", "Timetable",
                              VANTOR_VERSION}));
        // The window's state joins every dump.
        frmMain w;
        Guard("frmMain", "LoadTimetable", VariableDump().parameter("ID", 12),
              [] { throw VbError(1, "ModMain", "No slot"); });
        QCOMPARE(errors.reports().at(2).variables,
                 "<Variables><LocalVariables></LocalVariables><ModuleVariables></"
                 "ModuleVariables><GlobalVariables><ProjectFile>" +
                     project +
                     "</ProjectFile><TimetableID>0</TimetableID><TimetableTitle></TimetableTitle></"
                     "GlobalVariables></Variables><Parameters><ID>12</ID></Parameters>");
        // A statement's report names it and its connection.
        ModMain::DB().Execute("SELECT nothing;");
        QVERIFY(errors.reports().at(3).variables.contains("<ModuleVariables><DB_Filename>" +
                                                          project + "</DB_Filename><DB_Handle>"));
        QVERIFY(errors.reports().at(3).variables.contains(
            "<Parameters><SQL>SELECT nothing;</SQL></Parameters>"));
        QCOMPARE(QString::number(errors.reports().at(1).number) +
                     errors.reports().at(1).description,
                 "51disk full");
    }
    void exceptionNames() {
        using CrashReport::Code;
        // The faults a report can name, each from one signal, and the form of
        // an unknown code.
        const std::vector<std::pair<quint32, QString>> names = {
            {Code(SIGSEGV, SEGV_MAPERR), "Access Violation"},
            {CrashReport::kStackOverflow, "Stack Overflow"},
            {Code(SIGBUS, BUS_ADRALN), "Data Type Misalignment"},
            {Code(SIGTRAP, TRAP_BRKPT), "Breakpoint"},
            {Code(SIGFPE, FPE_INTDIV), "Integer Divide By Zero"},
            {Code(SIGILL, ILL_ILLOPC), "Illegal Instruction"},
            {Code(SIGABRT, SI_TKILL), "Non Continuable Exception"},
            {Code(SIGFPE, 99), "Unknown (&H00080063)"},
            {0xDEADBEEF, "Unknown (&HDEADBEEF)"},
        };
        for (const auto& [code, name] : names)
            QCOMPARE(CrashReport::ExceptionName(code), name);
    }
    void crashReport_data() {
        QTest::addColumn<QString>("mode");
        QTest::addColumn<QString>("fault");
        QTest::newRow("access violation") << QString("access") << "Access Violation";
        QTest::newRow("stack overflow") << QString("stack") << "Stack Overflow";
        QTest::newRow("abort") << QString("abort") << "Non Continuable Exception";
    }
    void crashReport() {
        QFETCH(QString, mode);
        QFETCH(QString, fault);
        TestEnv env;
        const QString project = env.newProjectWithCalendar(kWeek, kTimes);
        const ScopedEnv data("XDG_DATA_HOME", env.path("data").toLocal8Bit());
        Common::SaveSetting(Common::kOptionsApp, "Options", "Show Tips at Startup", "0");
        Common::SaveSetting(Common::kConfigApp, "Config", "FirstRun", "False");
        QProcess child;
        child.start(QStringLiteral(VANTOR_TEST_BIN_DIR "/crash_report"), {mode, project});
        QVERIFY(child.waitForFinished(60000));
        QCOMPARE(child.exitStatus(), QProcess::CrashExit);
        const QStringList reports =
            QDir(CrashReport::ReportFolder()).entryList({"crash-*.txt"}, QDir::Files);
        QCOMPARE(reports.size(), 1);
        const QString report = CrashReport::ReportFolder() + "/" + reports.first();
        const QString text = QString::fromUtf8(readFile(report));
        for (const QString& line :
             {"Fault: " + fault, QString("Module last entered: frmMain"),
              QString("Procedure last entered: RefreshTable"), "Project: " + project,
              QString("Version: " VANTOR_VERSION), QString("Backtrace:")})
            QVERIFY2(text.contains(line + "\n"), qPrintable(text));
        QVERIFY(text.section("Backtrace:\n", 1).count('\n') >= 3);
        // The next start says so once, shows where the report is, and has the
        // last project open again.
        MessageRecorder boxes;
        frmMain w;
        w.Form_Load(QString());
        ModMain::ShowStartupMessages(w);
        QCOMPARE(ModMain::DB().GetDBFilename(), project);
        QCOMPARE(boxes.messages().size(), 1);
        QVERIFY(boxes.messages().first().text.contains(QDir::toNativeSeparators(report)));
        QVERIFY(boxes.messages().first().text.contains("opened again"));
        QCOMPARE(CrashReport::TakePendingReport(), QString());
    }
    void commandLine() {
        // Answered on the terminal, without a display.
        QProcess p;
        p.start(QStringLiteral(VANTOR_TEST_APP_DIR "/vantor-planner"),
                {QStringLiteral("--version")});
        QVERIFY(p.waitForFinished(20000));
        QCOMPARE(p.exitCode(), 0);
        QCOMPARE(QString::fromLocal8Bit(p.readAllStandardOutput()).trimmed(),
                 QStringLiteral("vantor-planner " VANTOR_VERSION));
    }
    void help_data() {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("page");
        QTest::newRow("contents") << QString("mnuHelpContents") << "index.html";
        QTest::newRow("tutorial") << QString("mnuHelpGettingStarted") << "getting-started.html";
    }
    void help() {
        QFETCH(QString, command);
        QFETCH(QString, page);
        TestEnv env;
        frmMain w;
        w.Form_Load();
        w.command(command)->trigger();
        frmHelp* help = frmHelp::instance();
        QVERIFY(help && help->isVisible());
        QCOMPARE(help->txtHelp->source().fileName(), page);
        w.command(QStringLiteral("mnuHelpContents"))->trigger();
        QCOMPARE(frmHelp::instance(), help); // one window serves every topic
        delete help;
        // Every link leads to a page that is there, and every topic is linked.
        const QDir dir(frmHelp::HelpDir());
        QSet<QString> linked;
        static const QRegularExpression href(QStringLiteral("href=\"([^\"#]+)"));
        for (const QString& name : dir.entryList({QStringLiteral("*.html")})) {
            QFile f(dir.filePath(name));
            QVERIFY(f.open(QIODevice::ReadOnly));
            for (auto it = href.globalMatch(QString::fromUtf8(f.readAll())); it.hasNext();) {
                const QString target = it.next().captured(1);
                QVERIFY2(dir.exists(target), qPrintable(name + QStringLiteral(" -> ") + target));
                linked << target;
            }
        }
        for (int id = 1; !frmHelp::TopicPage(id).isEmpty(); ++id)
            QVERIFY2(linked.contains(frmHelp::TopicPage(id)), qPrintable(frmHelp::TopicPage(id)));
    }
    void helpMissingSaysSo() {
        TestEnv env;
        frmHelp help;
        {
            const ScopedEnv appDir("VANTOR_APP_DIR", env.dir().toLocal8Bit());
            help.showTopic(frmHelp::kGettingStarted);
        }
        const QString text = help.txtHelp->toPlainText();
        QVERIFY2(text.contains(QStringLiteral("Help is not available")), qPrintable(text));
        QVERIFY2(text.contains(env.dir() + QStringLiteral("/help")), qPrintable(text));
    }
    void badFilesLeaveTheOpenProjectOpen_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("reason"); // the second line of the box
        QTest::newRow("empty file")
            << QString("empty") << "bad.VNPL is not a Vantor Planner project: it has no table";
        QTest::newRow("text") << QString("text") << "bad.VNPL is not a Vantor Planner project";
        QTest::newRow("truncated")
            << QString("truncated") << "bad.VNPL is damaged and cannot be used";
        QTest::newRow("table dropped")
            << "no table"
            << "bad.VNPL is not a Vantor Planner project: it has no table slot";
        QTest::newRow("column dropped") << QString("no column")
                                        << "bad.VNPL is not a Vantor Planner project: its table "
                                           "timetable has no column time12hour";
        QTest::newRow("folder") << QString("folder") << "The name is a folder, not a project file";
    }
    void badFilesLeaveTheOpenProjectOpen() {
        QFETCH(QString, kind);
        QFETCH(QString, reason);
        TestEnv env;
        MessageRecorder boxes;
        ErrorRecorder errors;
        const QString good = schoolWithTimetable(env, QStringLiteral("good.VNPL"));
        const QString bad = env.path(QStringLiteral("bad.VNPL"));
        if (kind == QLatin1String("empty"))
            writeFile(bad, QByteArray());
        else if (kind == QLatin1String("text"))
            writeFile(bad, "Timetable ideas\n" + QByteArray(3000, '-'));
        else if (kind == QLatin1String("folder"))
            QVERIFY(QDir().mkpath(bad));
        else {
            QVERIFY(QFile::copy(good, bad));
            if (kind == QLatin1String("no table"))
                alter(bad, "DROP TABLE Slot;");
            else if (kind == QLatin1String("no column"))
                alter(bad, "ALTER TABLE Timetable DROP COLUMN Time12Hour;");
            if (kind == QLatin1String("truncated"))
                writeFile(bad, readFile(bad).left(readFile(bad).size() * 2 / 5));
        }
        const QByteArray before = readFile(bad);
        frmMain w;
        w.Form_Load(good);
        QVERIFY(Timetable::current().ID != 0);
        FileDialogRecorder dialogs;
        dialogs.choose(bad);
        w.command(QStringLiteral("mnuFileOpenProject"))->trigger();
        QCOMPARE(boxes.messages().size(), 1);
        const ShownMessage& m = boxes.messages().first();
        QCOMPARE(m.icon, Common::MsgIcon::Critical);
        const QStringList lines = m.text.split(QStringLiteral("\r\n"));
        QCOMPARE(lines.value(0),
                 QStringLiteral("Unable to open project file ") + bad + QLatin1Char('.'));
        QVERIFY2(lines.value(1).contains(reason), qPrintable(lines.value(1)));
        // Checked before anything was closed: the good project is still on show.
        QCOMPARE(ModMain::DB().GetDBFilename(), good);
        QCOMPARE(w.windowTitle(), QStringLiteral("Vantor Planner - Class 7A"));
        // Closing shows nothing more, and the file is as it was.
        w.close();
        QCOMPARE(boxes.messages().size(), 1);
        QVERIFY(errors.reports().isEmpty());
        QCOMPARE(readFile(bad), before);
    }
    void noTimetableNothingToMark() {
        TestEnv env;
        MessageRecorder boxes;
        FileDialogRecorder dialogs;
        const QString file = schoolWithTimetable(env, QStringLiteral("one.VNPL"));
        const QString other = env.newProjectWithCalendar({"Monday"}, {"9:00", "10:00"});
        frmMain w;
        w.show();
        w.Form_Load(file);
        QVERIFY(w.command("tbLunch")->isEnabled() && w.txtTutorName->isEnabled());
        // Typed but not entered: not carried into the next project.
        w.txtTutorName->setText("Half typed");
        w.txtTutorName->setModified(false);
        dialogs.choose(other);
        w.command(QStringLiteral("mnuFileOpenProject"))->trigger();
        QCOMPARE(ModMain::DB().GetDBFilename(), other);
        QCOMPARE(Timetable::current().ID, 0);
        verifyNoTimetableCommands(w);
        // The toolbar's mark buttons do nothing there, and ask nothing.
        w.command("tbBreak")->trigger();
        QVERIFY(boxes.messages().isEmpty());
    }
    void saveAsGoesOnInTheCopy() {
        TestEnv env;
        MessageRecorder boxes;
        ErrorRecorder errors;
        FileDialogRecorder dialogs;
        const QString file = schoolWithTimetable(env, QStringLiteral("school.VNPL"));
        QVERIFY(
            QFile::setPermissions(file, QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther));
        const QByteArray before = readFile(file);
        frmMain w;
        w.show();
        w.Form_Load(file);
        QVERIFY(boxes.texts().value(0).contains("File > Save Project As..."));
        boxes.clear();
        QAction* saveAs = w.command(QStringLiteral("mnuFileSaveAs"));
        QVERIFY(saveAs->isEnabled()); // read-only: a copy is the way to change it
        // Onto itself, or where nothing can be written: refused, still open.
        dialogs.choose(file);
        saveAs->trigger();
        dialogs.choose(env.path("no/such/folder/copy.VNPL"));
        saveAs->trigger();
        QCOMPARE(boxes.texts().size(), 2);
        QCOMPARE(boxes.texts()[0], file + " is the project open now. Choose another name for "
                                          "the copy.");
        QVERIFY(boxes.texts()[1].startsWith("The copy " + env.path("no/such/folder/copy.VNPL") +
                                            " could not be written ("));
        QCOMPARE(ModMain::DB().GetDBFilename(), file);
        QVERIFY(!QFile::exists(env.path("no/such/folder/copy.VNPL.part")));
        // A copy, suggested beside the original, then worked on.
        boxes.clear();
        const QString copy = env.path("school copy.VNPL");
        dialogs.choose(copy);
        saveAs->trigger();
        QCOMPARE(dialogs.requests().last().title, QStringLiteral("Save Project As"));
        QCOMPARE(dialogs.requests().last().fileName, copy);
        QCOMPARE(ModMain::DB().GetDBFilename(), copy);
        QVERIFY(!ModMain::DB().IsReadOnly());
        QCOMPARE(w.windowTitle(), QStringLiteral("Vantor Planner - Class 7A"));
        // The toolbar's list of timetables is the copy's, and usable.
        auto* list = w.findChild<QToolButton*>(QStringLiteral("tbTimetables"));
        QVERIFY(list->isEnabled());
        QCOMPARE(list->menu()->actions().size(), 1);
        QVERIFY(list->menu()->actions().first()->isChecked());
        QVERIFY(boxes.texts().isEmpty());
        QCOMPARE(value("PRAGMA integrity_check"), QStringLiteral("ok"));
        w.command(QStringLiteral("mnuFormatSameSizeColumns"))->trigger();
        boxes.answer(MsgResult::Yes);
        w.command(QStringLiteral("mnuFileDelete"))->trigger();
        QCOMPARE(value("SELECT COUNT(*) FROM Timetable"), "0");
        w.close();
        QCOMPARE(readFile(file), before);
        QVERIFY(errors.reports().isEmpty());
    }
    void readOnlyProject() {
        TestEnv env;
        MessageRecorder boxes;
        ErrorRecorder errors;
        const QString file = schoolWithTimetable(env, QStringLiteral("shared.VNPL"));
        QVERIFY(
            QFile::setPermissions(file, QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther));
        const QByteArray before = readFile(file);
        {
            frmMain w;
            w.show();
            w.Form_Load(file);
            QCOMPARE(boxes.messages().size(), 1);
            QVERIFY(boxes.texts().first().contains(QStringLiteral("open for reading only")));
            QCOMPARE(w.windowTitle(), QStringLiteral("Vantor Planner - Class 7A (read only)"));
            QVERIFY(ModMain::DB().IsReadOnly());
            for (const char* cmd : {"mnuFileNew", "mnuFileDelete", "mnuFormatTimetable",
                                    "mnuFormatSameSizeColumns", "mnuFormatSameSizeRows", "tbNew"})
                QVERIFY2(!w.command(QString::fromLatin1(cmd))->isEnabled(), cmd);
            for (const char* cmd : {"mnuFileOpenProject", "mnuFileNewProject", "mnuFileExit"})
                QVERIFY2(w.command(QString::fromLatin1(cmd))->isEnabled(), cmd);
            // A typed name or a Space on a list says why nothing happened.
            w.g->setRowCol(1, 1);
            w.txtTutorName->setText("Zed");
            Q_EMIT w.txtTutorName->editingFinished();
            QCOMPARE(w.statusBar()->currentMessage(),
                     QStringLiteral("This project is open for reading only, so nothing was "
                                    "changed."));
            w.statusBar()->clearMessage();
            w.gSubject->setFocus();
            QTest::keyClick(w.gSubject, Qt::Key_Space);
            QVERIFY(w.statusBar()->currentMessage().contains("reading only"));
            // Resizing and leaving writes nothing and raises nothing.
            w.g->setColWidthTwips(1, 3000);
            w.LoadTimetable(Timetable::current().ID);
            w.close();
        }
        QCOMPARE(boxes.messages().size(), 1);
        QVERIFY(errors.reports().isEmpty());
        QCOMPARE(readFile(file), before);
    }
    void lockedProjectWaitsOnce() {
        TestEnv env;
        MessageRecorder boxes;
        ErrorRecorder errors;
        const QString file = schoolWithTimetable(env, QStringLiteral("busy.VNPL"));
        frmMain w;
        w.Form_Load(file);
        ModMain::DB().SetBusyTimeout(50);
        const qint32 shown = Timetable::current().ID;
        sqlite3* other = nullptr;
        QCOMPARE(sqlite3_open(file.toUtf8().constData(), &other), SQLITE_OK);
        QCOMPARE(sqlite3_exec(other, "BEGIN IMMEDIATE;", nullptr, nullptr, nullptr), SQLITE_OK);
        const QByteArray before = readFile(file);
        // Looking needs no lock; a change is refused once, in words, with nothing
        // written, and the timetable is shown all the same.
        w.LoadTimetable(shown);
        QVERIFY(boxes.messages().isEmpty());
        w.g->setColWidthTwips(1, 2500);
        w.g->setRows(1);
        w.LoadTimetable(shown);
        QCOMPARE(w.g->rows(), kWeek.size() + 1);
        boxes.answer(MsgResult::Yes);
        w.command(QStringLiteral("mnuFileDelete"))->trigger();
        QCOMPARE(boxes.texts(), (QStringList{ProjectBusyText(file), "Delete current timetable?",
                                             ProjectBusyText(file)}));
        QVERIFY(errors.reports().isEmpty());
        QCOMPARE(readFile(file), before);
        sqlite3_exec(other, "ROLLBACK;", nullptr, nullptr, nullptr);
        sqlite3_close(other);
        QCOMPARE(ModMain::FirstTimetableID(), shown);
    }
    void hugeSizesAndLongNames() {
        TestEnv env;
        MessageRecorder boxes;
        ErrorRecorder errors;
        const QString file = schoolWithTimetable(env, QStringLiteral("odd.VNPL"));
        const QString longName = QString(300, QChar(0x00E9)) + QStringLiteral(" class");
        alter(file, ("UPDATE TimeTitle SET Width = 22369622 WHERE Pos = 1; UPDATE TimeTitle SET "
                     "Width = -5 WHERE Pos = 2; UPDATE DayTitle SET Height = 2147483647 WHERE Pos "
                     "= 1; UPDATE DayTitle SET Height = 9223372036854775807 WHERE Pos = 2; UPDATE "
                     "DayTitle SET DOW = '" +
                     QByteArray(30000, 'W') + "' WHERE Pos = 3; UPDATE Class SET name = '" +
                     longName.toUtf8() + "';")
                        .constData());
        const QByteArray before = readFile(file);
        frmMain w;
        w.show();
        w.Form_Load(file);
        QCoreApplication::processEvents();
        for (int c = 0; c < w.g->cols(); ++c)
            QVERIFY(w.g->colWidthTwips(c) >= 0 && w.g->colWidthTwips(c) <= 20 * 1440);
        for (int r = 0; r < w.g->rows(); ++r)
            QVERIFY(w.g->rowHeightTwips(r) >= 0 && w.g->rowHeightTwips(r) <= 20 * 1440);
        // The toolbar's list keeps a sensible width; the whole name is its tooltip.
        auto* list = w.findChild<QToolButton*>(QStringLiteral("tbTimetables"));
        QVERIFY(list->width() <= 300);
        QCOMPARE(list->toolTip(), QStringLiteral("Class ") + longName);
        QVERIFY(list->text().size() < longName.size());
        w.close();
        QVERIFY(boxes.messages().isEmpty());
        QVERIFY(errors.reports().isEmpty());
        QCOMPARE(readFile(file), before);
    }
    void firstRunWithProjectOnCommandLine() {
        TestEnv env;
        MessageRecorder boxes;
        FileDialogRecorder dialogs;
        const QString file = schoolWithTimetable(env, QStringLiteral("opened.VNPL"));
        boxes.answer(MsgResult::No); // no tutorial
        frmMain w;
        w.Form_Load(file);
        ModMain::DoFirstRun(w);
        QCOMPARE(boxes.messages().size(), 1);
        QVERIFY(boxes.texts().first().startsWith(QStringLiteral("We've noticed")));
        QVERIFY(dialogs.requests().isEmpty()); // no New Project over it
        QCOMPARE(ModMain::DB().GetDBFilename(), file);
        QVERIFY(Timetable::current().ID != 0);
    }
    void sampleSchool() {
        TestEnv env;
        MessageRecorder boxes;
        const ScopedEnv home("HOME", env.dir().toLocal8Bit());
        const QString shipped = Common::AppDir() + "/sample-school.VNPL";
        const QByteArray original = readFile(shipped);
        frmMain w;
        w.Form_Load(QString());
        // Opened as a copy in the documents folder, its first timetable shown.
        w.command("mnuHelpOpenSample")->trigger();
        const QString copy = env.path("Documents/Sample School.VNPL");
        QCOMPARE(ModMain::DB().GetDBFilename(), copy);
        QCOMPARE(ModMain::LastDB(), copy); // remembered at once, for a start after a crash
        QVERIFY(w.windowTitle().endsWith("Class 7A"));
        QCOMPARE(value("PRAGMA integrity_check"), QString("ok"));
        QCOMPARE(rows("SELECT (SELECT COUNT(*) FROM Tutor), (SELECT COUNT(*) FROM Subject), "
                      "(SELECT COUNT(*) FROM Room), (SELECT COUNT(*) FROM Class), (SELECT COUNT(*) "
                      "FROM ProjectDayTitle), (SELECT COUNT(*) FROM ProjectTimeTitle), (SELECT "
                      "COUNT(DISTINCT Type) FROM Timetable)"),
                 QStringList("13|11|9|7|5|7|3")); // each with its "(none)"
        QCOMPARE(value("SELECT COUNT(*) FROM Tutor WHERE id <> 1 AND id NOT IN (SELECT TutorID "
                       "FROM SubjectsTaughtByTutor)"),
                 QString("0"));
        // Every class's week is filled, and nobody is in two places at once.
        QCOMPARE(value("SELECT MIN(n) FROM (SELECT COUNT(*) n FROM Slot s JOIN Timetable t ON t.id "
                       "= s.TimetableID JOIN SubjectSlot x ON x.SlotID = s.id WHERE t.Type = "
                       "'Class' GROUP BY t.id)"),
                 QString("29"));
        QVERIFY(ModMain::LessonIndex::current().conflicts().isEmpty());
        // Every lesson is in the timetable of each of its tutors, rooms and classes.
        const ModMain::LessonIndex& idx = ModMain::LessonIndex::current();
        for (const QString& klass : rows("SELECT id FROM Class WHERE id <> 1"))
            for (const ModMain::Lesson* l :
                 idx.lessonsOf({ModMain::ResourceKind::Class, klass.toInt()})) {
                qsizetype timetables = 0;
                for (const ModMain::Member& m : l->members)
                    timetables += idx.timetablesOf(m).size();
                QCOMPARE(l->slots.size(), timetables);
            }
        // A second copy never overwrites the first; the shipped file is unchanged.
        w.command("mnuHelpOpenSample")->trigger();
        QCOMPARE(ModMain::DB().GetDBFilename(), env.path("Documents/Sample School 2.VNPL"));
        QCOMPARE(readFile(shipped), original);
        QVERIFY(boxes.messages().isEmpty());
    }
};

QTEST_MAIN(TestShell)
#include "test_shell.moc"
