// The main window's states and project commands, start-up and exit, the help
// window and the error reporter.

#include "common/ErrorHandler.h"
#include "common/FlexGrid.h"
#include "common/Settings.h"
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
#include <QTextBrowser>
#include <QtTest>

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
    for (const char* cmd : {"mnuFileDelete", "mnuFilePrintPreview"})
        QVERIFY2(!w.command(QString::fromLatin1(cmd))->isEnabled(), cmd);
    QVERIFY(w.command(QStringLiteral("mnuFileOpenProject"))->isEnabled());
    for (const char* cmd : {"mnuFileNew", "mnuFileOpen", "tbNew", "tbBlank", "tbManage"}) {
        QAction* a = w.command(QString::fromLatin1(cmd));
        QVERIFY2(a->isEnabled() == (!path.isEmpty() && w.isBuilt(a)), cmd);
    }
    if (!path.isEmpty())
        QCOMPARE(w.findChild<QLabel*>(QStringLiteral("sbPath"))->text(), path);
}

QString writeFile(const QString& path, const QByteArray& bytes) {
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly))
        qFatal("cannot write %s", qPrintable(path));
    f.write(bytes);
    return path;
}
} // namespace

class TestShell : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void startUp_data();
    void startUp();
    void missingLastProjectAsks_data();
    void missingLastProjectAsks();
    void openProjectCommand_data();
    void openProjectCommand();
    void exitRemembersProject_data();
    void exitRemembersProject();
    void toolbarAndLayout();
    void errorReporting();
    void commandLine();
    void help_data();
    void help();
    void helpMissingSaysSo();
};

void TestShell::startUp_data() {
    QTest::addColumn<bool>("rememberLast");
    QTest::addColumn<bool>("nameOnCommandLine");
    QTest::newRow("first start") << false << false;
    QTest::newRow("last project") << true << false;
    QTest::newRow("command line wins") << true << true;
}

void TestShell::startUp() {
    QFETCH(bool, rememberLast);
    QFETCH(bool, nameOnCommandLine);
    TestEnv env;
    MessageRecorder boxes;
    const QString last = env.newProjectWithCalendar(kWeek, kTimes, QStringLiteral("last.VNPL"));
    const QString named = env.newProjectWithCalendar(kWeek, kTimes, QStringLiteral("named.VNPL"));
    if (rememberLast)
        ModMain::SetLastDB(last);
    frmMain w;
    w.Form_Load(nameOnCommandLine ? named : QString());
    verifyState(w, nameOnCommandLine ? named : rememberLast ? last : QString());
    QVERIFY(boxes.messages().isEmpty());
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
    QCOMPARE(m.text, QStringLiteral("Unable to open project file ") + path +
                         QStringLiteral(". Would you like to create a new project?"));
    QCOMPARE(m.buttons, Common::MsgButtons::YesNo);
    QCOMPARE(m.icon, Common::MsgIcon::Question);
    verifyState(w, QString());
}

void TestShell::openProjectCommand_data() {
    QTest::addColumn<QString>("choice"); // "project", "letter", or "" to cancel
    QTest::newRow("another project") << "project";
    QTest::newRow("not a database") << "letter";
    QTest::newRow("cancel") << "";
}

void TestShell::openProjectCommand() {
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
        QCOMPARE(boxes.messages().first().text,
                 QStringLiteral("Unable to open project file ") + letter +
                     QStringLiteral(".\r\nfile is not a database\r\n26"));
        verifyState(w, QString());
    } else {
        QVERIFY(boxes.messages().isEmpty());
        verifyState(w, choice.isEmpty() ? first : second);
    }
}

void TestShell::exitRemembersProject_data() {
    QTest::addColumn<bool>("open");
    QTest::newRow("project open") << true;
    QTest::newRow("none ever opened") << false;
}

void TestShell::exitRemembersProject() {
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

void TestShell::toolbarAndLayout() {
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

void TestShell::errorReporting() {
    {
        MessageRecorder boxes;
        QCOMPARE(ErrorHandler(QStringLiteral("frmMain"), QStringLiteral("RefreshTable"), 12,
                              VbError(5, QStringLiteral("frmMain"),
                                      QStringLiteral("Invalid procedure call"))),
                 0);
        QCOMPARE(boxes.messages().size(), 1);
        const ShownMessage& m = boxes.messages().first();
        QCOMPARE(m.title, QStringLiteral("Application Error"));
        QCOMPARE(m.icon, Common::MsgIcon::Critical);
        QCOMPARE(m.text, QStringLiteral(
                             "Timetable has encountered a problem. We are sorry for the "
                             "inconvenience.\r\n\r\nModule: frmMain\r\nProcedure: RefreshTable\r\n"
                             "Line Number: 12\r\n\r\nInvalid procedure call (5)"));
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
    QCOMPARE(r.module, QStringLiteral("ModMain"));
    QCOMPARE(r.procedure, QStringLiteral("DoCreateGetSlot"));
    QVERIFY(r.line > 0);
    QCOMPARE(r.number, 1);
    QCOMPARE(r.description, QStringLiteral("Error DoCreateGetSlot can't find TimeTitle 0"));
    QCOMPARE(r.appTitle, QStringLiteral("Timetable"));
    QCOMPARE(r.version, QStringLiteral(VANTOR_VERSION));
    QCOMPARE(r.variables,
             QStringLiteral("<Variables><LocalVariables></LocalVariables>"
                            "<ModuleVariables></ModuleVariables><GlobalVariables>"
                            "</GlobalVariables></Variables><Parameters></Parameters>"));
    QCOMPARE(errors.reports().at(1).number, 51);
    QCOMPARE(errors.reports().at(1).description, QStringLiteral("disk full"));
}

void TestShell::commandLine() {
    // Answered on the terminal, without a display.
    QProcess p;
    p.start(QStringLiteral(VANTOR_TEST_APP_DIR "/vantor-planner"), {QStringLiteral("--version")});
    QVERIFY(p.waitForFinished(20000));
    QCOMPARE(p.exitCode(), 0);
    QCOMPARE(QString::fromLocal8Bit(p.readAllStandardOutput()).trimmed(),
             QStringLiteral("vantor-planner " VANTOR_VERSION));
}

void TestShell::help_data() {
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("page");
    QTest::newRow("contents") << "mnuHelpContents"
                              << "index.html";
    QTest::newRow("tutorial") << "mnuHelpGettingStarted"
                              << "getting-started.html";
}

void TestShell::help() {
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
