// The main window's states and project commands, start-up and exit, and the
// error reporter.

#include "common/FlexGrid.h"
#include "common/Settings.h"
#include "shell/ErrorHandler.h"
#include "shell/frmHelp.h"
#include "shell/frmMain.h"
#include "store/ModMain.h"
#include "store/Project.h"
#include "support/TestSupport.h"

#include <QAction>
#include <QFile>
#include <QLabel>
#include <QMenu>
#include <QProcess>
#include <QRegularExpression>
#include <QSettings>
#include <QTextBrowser>
#include <QToolBar>
#include <QtTest>

using namespace TestSupport;
using Common::MsgResult;

namespace {
const QStringList kWeek = {"Monday", "Tuesday", "Wednesday", "Thursday", "Friday"};
const QStringList kTimes = {"8:00", "9:00", "10:00", "11:00"};

QString statusPath(const frmMain& w) {
    return w.findChild<QLabel*>(QStringLiteral("sbPath"))->text();
}

bool menuEnabled(const frmMain& w, const char* name) {
    return w.findChild<QMenu*>(QString::fromLatin1(name))->menuAction()->isEnabled();
}

// A command is on when the state allows it and the command has been built.
bool commandOn(const frmMain& w, const char* name) {
    return w.command(QString::fromLatin1(name))->isEnabled();
}

void verifyNoProject(const frmMain& w) {
    QCOMPARE(w.windowTitle(), QStringLiteral("Vantor Planner"));
    for (const char* menu : {"mnuView", "mnuFormat", "mnuTools", "mnuPeriod"})
        QVERIFY2(!menuEnabled(w, menu), menu);
    for (const char* cmd : {"mnuFileNew", "mnuFileOpen", "mnuFileDelete", "mnuFilePrintPreview",
                            "tbNew", "tbView", "tbAutoFill", "tbBlank", "tbLunch", "tbBreak",
                            "tbUnavailable", "tbManage"})
        QVERIFY2(!commandOn(w, cmd), cmd);
    QVERIFY(commandOn(w, "mnuFileOpenProject"));
    QVERIFY(commandOn(w, "mnuFileExit"));
}

void verifyProjectOpen(const frmMain& w, const QString& path) {
    QCOMPARE(w.windowTitle(), QStringLiteral("Vantor Planner"));
    QCOMPARE(statusPath(w), path);
    for (const char* menu : {"mnuView", "mnuFormat", "mnuTools", "mnuPeriod"})
        QVERIFY2(!menuEnabled(w, menu), menu);
    QVERIFY(!commandOn(w, "mnuFileDelete"));
    QVERIFY(!commandOn(w, "mnuFilePrintPreview"));
    for (const char* cmd : {"mnuFileNew", "mnuFileOpen"}) {
        QAction* a = w.command(QString::fromLatin1(cmd));
        QCOMPARE(a->isEnabled(), w.isBuilt(a));
    }
}
} // namespace

class TestShell : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void startsWithoutProject();
    void opensLastProject();
    void opensProjectNamedOnCommandLine();
    void missingLastProjectAsks_data();
    void missingLastProjectAsks();
    void openProjectCommand();
    void openProjectRefusesNonDatabase();
    void openProjectCancelKeepsProject();
    void exitRemembersProject();
    void exitWithoutProjectKeepsLastDB();
    void toolbarButtons();
    void layoutKeepsGridAndLists();
    void errorBoxText();
    void errorReportObject();
    void guardReturnsFallback();
    void commandLine_data();
    void commandLine();
    void helpCommandsOpenTopics_data();
    void helpCommandsOpenTopics();
    void helpPagesLinkToPagesThatExist();
    void helpMissingSaysSo();
};

void TestShell::startsWithoutProject() {
    TestEnv env;
    MessageRecorder boxes;
    frmMain w;
    w.Form_Load();
    verifyNoProject(w);
    QVERIFY(boxes.messages().isEmpty());
    QVERIFY(!ModMain::DB().IsDBOpen());
}

void TestShell::opensLastProject() {
    TestEnv env;
    MessageRecorder boxes;
    const QString file = env.newProjectWithCalendar(kWeek, kTimes);
    ModMain::SetLastDB(file);
    frmMain w;
    w.Form_Load();
    verifyProjectOpen(w, file);
    QCOMPARE(ModMain::DB().GetDBFilename(), file);
    QVERIFY(boxes.messages().isEmpty());
}

void TestShell::opensProjectNamedOnCommandLine() {
    TestEnv env;
    MessageRecorder boxes;
    const QString last = env.newProjectWithCalendar(kWeek, kTimes, QStringLiteral("last.VNPL"));
    const QString named = env.newProjectWithCalendar(kWeek, kTimes, QStringLiteral("named.VNPL"));
    ModMain::SetLastDB(last);
    frmMain w;
    w.Form_Load(named);
    verifyProjectOpen(w, named);
}

void TestShell::missingLastProjectAsks_data() {
    QTest::addColumn<QString>("kind");
    QTest::newRow("missing file") << "missing";
    QTest::newRow("folder") << "folder";
    QTest::newRow("not a database") << "text";
}

void TestShell::missingLastProjectAsks() {
    QFETCH(QString, kind);
    TestEnv env;
    MessageRecorder boxes;
    boxes.answer(MsgResult::No);
    QString path = env.path(QStringLiteral("lost.VNPL"));
    if (kind == QLatin1String("folder"))
        QVERIFY(QDir().mkpath(path));
    if (kind == QLatin1String("text")) {
        QFile f(path);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(QByteArray(4096, 'z'));
    }
    ModMain::SetLastDB(path);
    frmMain w;
    w.Form_Load();
    QCOMPARE(boxes.messages().size(), 1);
    const ShownMessage& m = boxes.messages().first();
    QCOMPARE(m.text, QStringLiteral("Unable to open project file ") + path +
                         QStringLiteral(". Would you like to create a new project?"));
    QCOMPARE(m.buttons, Common::MsgButtons::YesNo);
    QCOMPARE(m.icon, Common::MsgIcon::Question);
    verifyNoProject(w);
    QCOMPARE(ModMain::DB().GetDBFilename(), QString());
    QVERIFY(!QFileInfo(path).isFile() || kind == QLatin1String("text"));
}

void TestShell::openProjectCommand() {
    TestEnv env;
    MessageRecorder boxes;
    FileDialogRecorder dialogs;
    const QString first = env.newProjectWithCalendar(kWeek, kTimes, QStringLiteral("a.VNPL"));
    const QString second = env.newProjectWithCalendar(kWeek, kTimes, QStringLiteral("b.VNPL"));
    frmMain w;
    w.Form_Load(first);
    dialogs.choose(second);
    w.command(QStringLiteral("mnuFileOpenProject"))->trigger();

    QCOMPARE(dialogs.requests().size(), 1);
    const Common::FileDialogRequest& r = dialogs.requests().first();
    QVERIFY(!r.save);
    QCOMPARE(r.title, QStringLiteral("Open Vantor Timetable Project"));
    QCOMPARE(r.filter, QStringLiteral("Vantor Planner Project (*.VNPL)|*.VNPL|All(*.*)|*.*"));
    QCOMPARE(r.defaultExt, QStringLiteral("VNPL"));
    QVERIFY(r.flags & Common::OFN::FileMustExist);
    verifyProjectOpen(w, second);
    QCOMPARE(ModMain::DB().GetDBFilename(), second);
    QVERIFY(boxes.messages().isEmpty());
}

void TestShell::openProjectRefusesNonDatabase() {
    TestEnv env;
    MessageRecorder boxes;
    FileDialogRecorder dialogs;
    const QString good = env.newProjectWithCalendar(kWeek, kTimes);
    const QString bad = env.path(QStringLiteral("letter.VNPL"));
    QFile f(bad);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write("Dear parents,\n" + QByteArray(2000, '.'));
    f.close();

    frmMain w;
    w.Form_Load(good);
    dialogs.choose(bad);
    w.command(QStringLiteral("mnuFileOpenProject"))->trigger();
    QCOMPARE(boxes.messages().size(), 1);
    const ShownMessage& m = boxes.messages().first();
    QCOMPARE(m.icon, Common::MsgIcon::Critical);
    QCOMPARE(m.text, QStringLiteral("Unable to open project file ") + bad +
                         QStringLiteral(".\r\nfile is not a database\r\n26"));
    verifyNoProject(w);
    QCOMPARE(ModMain::DB().GetDBFilename(), QString());
}

void TestShell::openProjectCancelKeepsProject() {
    TestEnv env;
    MessageRecorder boxes;
    FileDialogRecorder dialogs;
    const QString file = env.newProjectWithCalendar(kWeek, kTimes);
    frmMain w;
    w.Form_Load(file);
    dialogs.cancel();
    w.command(QStringLiteral("mnuFileOpenProject"))->trigger();
    QCOMPARE(dialogs.requests().size(), 1);
    verifyProjectOpen(w, file);
    QCOMPARE(ModMain::DB().GetDBFilename(), file);
}

void TestShell::exitRemembersProject() {
    TestEnv env;
    MessageRecorder boxes;
    const QString file = env.newProjectWithCalendar(kWeek, kTimes);
    {
        frmMain w;
        w.show();
        w.Form_Load(file);
        w.command(QStringLiteral("mnuFileExit"))->trigger();
        QVERIFY(!w.isVisible());
    }
    QVERIFY(!ModMain::DB().IsDBOpen());
    QSettings ini(Common::SettingsDir() + QStringLiteral("/VT Timetable.ini"), QSettings::IniFormat);
    QCOMPARE(ini.value(QStringLiteral("Config/LastDB")).toString(), file);
}

void TestShell::exitWithoutProjectKeepsLastDB() {
    TestEnv env;
    MessageRecorder boxes;
    boxes.setDefault(MsgResult::No);
    const QString remembered = env.path(QStringLiteral("elsewhere.VNPL"));
    ModMain::SetLastDB(remembered);
    {
        frmMain w;
        w.show();
        w.Form_Load();
        w.close();
    }
    QCOMPARE(ModMain::LastDB(), remembered);
}

void TestShell::toolbarButtons() {
    TestEnv env;
    frmMain w;
    const struct {
        const char* key;
        const char* caption;
        const char* tip;
    } expected[] = {
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
        QAction* a = w.command(QStringLiteral("tb") + QString::fromLatin1(e.key));
        QVERIFY2(a, e.key);
        QCOMPARE(a->text(), QString::fromLatin1(e.caption));
        QCOMPARE(a->toolTip(), QString::fromLatin1(e.tip));
        QCOMPARE(a->data().toString(), QString::fromLatin1(e.key));
        QVERIFY(!a->icon().isNull());
    }
    // A key that matches no button does nothing.
    w.ToolBar_ButtonClick(QStringLiteral("Nothing"));
}

void TestShell::layoutKeepsGridAndLists() {
    TestEnv env;
    frmMain w;
    w.show();
    for (const QSize size : {QSize(640, 480), QSize(1600, 1000)}) {
        w.resize(size);
        QCoreApplication::processEvents();
        QVERIFY(w.g->isVisible());
        QVERIFY(w.g->width() >= 300);
        for (FlexGrid* list : {w.gTutor, w.gSubject, w.gRoom, w.gClass}) {
            QVERIFY(list->isVisible());
            QVERIFY(list->width() >= 200);
            QVERIFY(list->x() > w.g->x());
        }
    }
    QCOMPARE(w.gTutor->textMatrix(0, 0), QStringLiteral("Status"));
    QCOMPARE(w.gTutor->textMatrix(0, 1), QStringLiteral("Sel"));
    QCOMPARE(w.gTutor->textMatrix(0, 2), QStringLiteral("Tutor"));
    QCOMPARE(w.gClass->textMatrix(0, 2), QStringLiteral("Class"));
}

void TestShell::errorBoxText() {
    MessageRecorder boxes;
    const int action = ErrorHandler(QStringLiteral("frmMain"), QStringLiteral("RefreshTable"), 12,
                                    VbError(5, QStringLiteral("frmMain"),
                                            QStringLiteral("Invalid procedure call")));
    QCOMPARE(action, 0);
    QCOMPARE(boxes.messages().size(), 1);
    const ShownMessage& m = boxes.messages().first();
    QCOMPARE(m.title, QStringLiteral("Application Error"));
    QCOMPARE(m.icon, Common::MsgIcon::Critical);
    QCOMPARE(m.buttons, Common::MsgButtons::Ok);
    QCOMPARE(m.text,
             QStringLiteral("Timetable has encountered a problem. We are sorry for the "
                            "inconvenience.\r\n\r\nModule: frmMain\r\nProcedure: RefreshTable\r\n"
                            "Line Number: 12\r\n\r\nInvalid procedure call (5)"));
}

void TestShell::errorReportObject() {
    MessageRecorder boxes;
    ErrorRecorder errors;
    ErrorHandler(QStringLiteral("ModMain"), QStringLiteral("DoCreateGetSlot"), 40,
                 VbError(1, QStringLiteral("ModMain"),
                         QStringLiteral("Error DoCreateGetSlot can't find TimeTitle 0")));
    QVERIFY(boxes.messages().isEmpty());
    QCOMPARE(errors.reports().size(), 1);
    const ErrorReport& r = errors.reports().first();
    QCOMPARE(r.module, QStringLiteral("ModMain"));
    QCOMPARE(r.procedure, QStringLiteral("DoCreateGetSlot"));
    QCOMPARE(r.line, 40);
    QCOMPARE(r.number, 1);
    QCOMPARE(r.source, QStringLiteral("ModMain"));
    QCOMPARE(r.appTitle, QStringLiteral("Timetable"));
    QCOMPARE(r.version, QStringLiteral(VANTOR_VERSION));
    QCOMPARE(r.variables, QStringLiteral("<Variables><LocalVariables></LocalVariables>"
                                         "<ModuleVariables></ModuleVariables><GlobalVariables>"
                                         "</GlobalVariables></Variables><Parameters></Parameters>"));
}

void TestShell::guardReturnsFallback() {
    MessageRecorder boxes;
    const int value = Guard("ModMain", "Compute", []() -> int {
        throw VbError(VbErr::FileNotFound, QStringLiteral("ModMain"), QStringLiteral("gone"));
    }, -1);
    QCOMPARE(value, -1);
    bool ran = false;
    Guard("frmMain", "Other", [&] {
        ran = true;
        throw std::runtime_error("disk full");
    });
    QVERIFY(ran);
    QCOMPARE(boxes.messages().size(), 2);
    QVERIFY(boxes.messages().at(0).text.endsWith(QStringLiteral("gone (53)")));
    QVERIFY(boxes.messages().at(1).text.contains(QStringLiteral("Procedure: Other\r\n")));
    QVERIFY(boxes.messages().at(1).text.endsWith(QStringLiteral("disk full (51)")));
}

void TestShell::commandLine_data() {
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("output");
    QTest::newRow("version") << QStringList{"--version"} << 0
                             << QStringLiteral("vantor-planner " VANTOR_VERSION);
    QTest::newRow("help") << QStringList{"--help"} << 0
                          << QStringLiteral("Usage: vantor-planner [FILE.VNPL]");
    QTest::newRow("bad option") << QStringList{"--colour"} << 2
                                << QStringLiteral("unknown option --colour");
}

void TestShell::commandLine() {
    QFETCH(QStringList, args);
    QFETCH(int, exitCode);
    QFETCH(QString, output);
    QProcess p;
    p.start(QStringLiteral(VANTOR_TEST_APP_DIR "/vantor-planner"), args);
    QVERIFY(p.waitForFinished(20000));
    QCOMPARE(p.exitCode(), exitCode);
    const QString all = QString::fromLocal8Bit(p.readAllStandardOutput() + p.readAllStandardError());
    QVERIFY2(all.contains(output), qPrintable(all));
}

void TestShell::helpCommandsOpenTopics_data() {
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("page");
    QTest::addColumn<QString>("title");
    QTest::newRow("contents") << "mnuHelpContents" << "index.html" << "Vantor Planner Help";
    QTest::newRow("tutorial") << "mnuHelpGettingStarted" << "getting-started.html"
                              << "Getting started";
}

void TestShell::helpCommandsOpenTopics() {
    QFETCH(QString, command);
    QFETCH(QString, page);
    QFETCH(QString, title);
    TestEnv env;
    frmMain w;
    w.Form_Load();
    QAction* action = w.command(command);
    QVERIFY(action->isEnabled());
    action->trigger();
    frmHelp* help = frmHelp::instance();
    QVERIFY(help);
    QVERIFY(help->isVisible());
    auto* browser = help->findChild<QTextBrowser*>(QStringLiteral("txtHelp"));
    QVERIFY(browser);
    QCOMPARE(browser->source().fileName(), page);
    QCOMPARE(browser->documentTitle(), title);
    // A second command reuses the one window.
    w.command(QStringLiteral("mnuHelpContents"))->trigger();
    QCOMPARE(frmHelp::instance(), help);
    QCOMPARE(browser->source().fileName(), QStringLiteral("index.html"));
    delete help;
}

void TestShell::helpPagesLinkToPagesThatExist() {
    TestEnv env;
    const QDir dir(frmHelp::HelpDir());
    QVERIFY2(dir.exists(QStringLiteral("index.html")), qPrintable(dir.path()));
    QCOMPARE(frmHelp::TopicPage(frmHelp::kGettingStarted), QStringLiteral("getting-started.html"));
    QCOMPARE(frmHelp::TopicPage(frmHelp::kContents), QStringLiteral("index.html"));
    QSet<QString> linked;
    static const QRegularExpression href(QStringLiteral("href=\"([^\"#]+)"));
    for (const QString& page : dir.entryList({QStringLiteral("*.html")})) {
        QFile f(dir.filePath(page));
        QVERIFY(f.open(QIODevice::ReadOnly));
        const QString html = QString::fromUtf8(f.readAll());
        for (auto it = href.globalMatch(html); it.hasNext();) {
            const QString target = it.next().captured(1);
            QVERIFY2(dir.exists(target), qPrintable(page + QStringLiteral(" -> ") + target));
            linked << target;
        }
    }
    // Every topic is reachable from the pages, and every topic page is there.
    for (int id = 1; !frmHelp::TopicPage(id).isEmpty(); ++id) {
        QVERIFY2(dir.exists(frmHelp::TopicPage(id)), qPrintable(frmHelp::TopicPage(id)));
        QVERIFY2(linked.contains(frmHelp::TopicPage(id)), qPrintable(frmHelp::TopicPage(id)));
    }
}

void TestShell::helpMissingSaysSo() {
    TestEnv env;
    const QByteArray appDir = qgetenv("VANTOR_APP_DIR");
    qputenv("VANTOR_APP_DIR", env.dir().toLocal8Bit());
    frmHelp help;
    help.showTopic(frmHelp::kGettingStarted);
    qputenv("VANTOR_APP_DIR", appDir);
    const QString text = help.txtHelp->toPlainText();
    QVERIFY2(text.contains(QStringLiteral("Help is not available")), qPrintable(text));
    QVERIFY2(text.contains(env.dir() + QStringLiteral("/help")), qPrintable(text));
}

QTEST_MAIN(TestShell)
#include "test_shell.moc"
