// The project wizard driven through its screens, and the first-run prompt.

#include "common/Settings.h"
#include "shell/Main.h"
#include "shell/frmHelp.h"
#include "shell/frmMain.h"
#include "store/ModMain.h"
#include "store/Project.h"
#include "support/TestSupport.h"
#include "wizards/WizardState.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>
#include <QTextBrowser>
#include <QTimer>
#include <QtTest>

using namespace TestSupport;
using Common::MsgResult;

namespace {
// Acts on the wizard's modal screens one after another while the code under
// test runs its own event loops. Each step names the screen it expects; a
// wrong screen, a failed check or a screen left open ends the run by
// cancelling, so a failing test cannot hang.
class ScreenDriver : public QObject {
public:
    using Step = std::function<void(QDialog*)>;
    // screen: "DOW" for frmScr_Project_DOW.
    void expect(const QString& screen, Step step) {
        m_steps.append({QStringLiteral("frmScr_Project_") + screen, std::move(step)});
    }
    // Empty when every step ran on the screen it expected.
    QString run(const std::function<void()>& code) {
        QTimer timer;
        connect(&timer, &QTimer::timeout, this, [this] { poll(); });
        timer.start(1);
        code();
        for (const auto& step : std::as_const(m_steps))
            m_error += QStringLiteral(" never shown: ") + step.first;
        return m_error;
    }

private:
    void poll() {
        auto* dlg = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!dlg)
            return;
        const bool fresh = dlg != m_last;
        m_idle = fresh ? 0 : m_idle + 1;
        if (fresh && !m_steps.isEmpty() && m_steps.first().first == dlg->objectName() &&
            !QTest::currentTestFailed()) {
            m_last = dlg;
            // Not from inside this poll: the step may wait in a further screen.
            QTimer::singleShot(0, dlg, [dlg, step = m_steps.takeFirst().second] { step(dlg); });
        } else if (fresh || QTest::currentTestFailed() || m_idle > 3000) {
            if (m_error.isEmpty())
                m_error = QStringLiteral("stopped on ") + dlg->objectName();
            m_steps.clear();
            Wizard::state().WizardCancel = true; // so no screen comes back
            dlg->reject();
        }
    }

    QList<QPair<QString, Step>> m_steps;
    QString m_error;
    QPointer<QDialog> m_last;
    int m_idle = 0;
};

template <class T> T* child(QWidget* w, const char* name) {
    T* c = w->findChild<T*>(QString::fromLatin1(name));
    if (!c)
        qFatal("no control %s on %s", name, qPrintable(w->objectName()));
    return c;
}

void click(QWidget* w, const char* button) {
    child<QPushButton>(w, button)->click();
}

void next(QDialog* d) {
    click(d, "cmdNext");
}

void pick(QWidget* w, const char* list, int row) {
    child<QListWidget>(w, list)->setCurrentRow(row);
}

// Chooses the entry shown with exactly this text.
void pick(QWidget* w, const char* list, const QString& text) {
    auto* l = child<QListWidget>(w, list);
    const QList<QListWidgetItem*> found = l->findItems(text, Qt::MatchExactly);
    QVERIFY2(found.size() == 1, qPrintable(text));
    l->setCurrentItem(found.first());
}

const QString kNoProject = QStringLiteral("No project open");

// Each row of a query as its fields joined by '|'.
QStringList rows(const QString& sql) {
    QStringList out;
    const auto rs = ModMain::DB().Execute(sql);
    const TableArray& table = rs.vTableArray();
    for (qsizetype r = 1; r < table.size(); ++r) {
        QStringList fields;
        for (const Variant& v : table.at(r))
            fields << v.toString();
        out << fields.join(QLatin1Char('|'));
    }
    return out;
}

// One New Project run over a fresh main window; message boxes answer No
// unless told otherwise.
struct Run {
    TestEnv env;
    MessageRecorder boxes;
    FileDialogRecorder files;
    frmMain w;
    ScreenDriver driver;

    Run() { boxes.setDefault(MsgResult::No); }
    // Past the welcome screen, choosing this file in the save dialog.
    explicit Run(const QString& file) : Run() {
        driver.expect("Welcome", next);
        files.choose(env.path(file));
    }
    QString go() {
        return driver.run([this] { w.command(QStringLiteral("mnuFileNewProject"))->trigger(); });
    }
    QString statusPath() const { return w.findChild<QLabel*>(QStringLiteral("sbPath"))->text(); }
};
} // namespace

class TestWizards : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { Wizard::Reset(); }
    void cleanup() { delete frmHelp::instance(); }
    void newProject_data();
    void newProject();
    void customTemplatesStayAfterCancel();
    void cancelEndsWizard_data();
    void cancelEndsWizard();
    void copyFailureReported();
    void firstRunPrompt_data();
    void firstRunPrompt();
};

void TestWizards::newProject_data() {
    QTest::addColumn<QString>("hours");
    QTest::addColumn<QString>("inc");
    // Periods: count|last Pos|first start|last start|shortest|longest.
    QTest::addColumn<QString>("periods");
    QTest::addColumn<bool>("yes"); // the answer to "create a timetable now?"
    // Times added on the custom-hours screen under the title in hours.
    QTest::addColumn<QStringList>("custom");
    QTest::newRow("7am-4pm @60") << "7.00am to 4.00pm"
                                 << "60 minutes"
                                 << "9|9|07:00:00 |15:00:00 |60|60" << true << QStringList();
    QTest::newRow("9am-5pm @120 keeps the end")
        << "9.00am to 5.00pm"
        << "120 minutes"
        << "4|4|09:00:00 |15:00:00 |120|120" << false << QStringList();
    QTest::newRow("8am-3pm @120 drops the tail")
        << "8.00am to 3.00pm"
        << "120 minutes"
        << "3|3|08:00:00 |12:00:00 |120|120" << false << QStringList();
    QTest::newRow("saved template ignores the increment")
        << "Primary: five 75-minute sessions from 8:45am"
        << "120 minutes"
        << "5|5|08:45:00 |13:45:00 |75|75" << false << QStringList();
    // The start times keep their trailing blank.
    QTest::newRow("custom 8, 9 and 10am make two periods")
        << "Mine"
        << "60 minutes"
        << "2|2|08:00:00 |09:00:00 |60|60" << false << QStringList{"8:00am", "9:00am", "10:00am"};
}

void TestWizards::newProject() {
    QFETCH(QString, hours);
    QFETCH(QString, inc);
    QFETCH(QString, periods);
    QFETCH(bool, yes);
    QFETCH(QStringList, custom);
    Run run;
    run.w.Form_Load();
    if (yes)
        run.boxes.answer(MsgResult::Yes);
    // Stand in for the new-timetable wizard: only whether it is started matters here.
    QAction* newTimetable = run.w.command(QStringLiteral("mnuFileNew"));
    int started = 0;
    if (run.w.isBuilt(newTimetable))
        newTimetable->disconnect();
    connect(newTimetable, &QAction::triggered, this, [&started] { ++started; });
    // A file of that name is replaced; typed without the extension, the
    // dialog's default extension finds it.
    const QString path = run.env.path(QStringLiteral("new school.VNPL"));
    QFile junk(path);
    QVERIFY(junk.open(QIODevice::WriteOnly) && junk.write(QByteArray(5000, 'x')) == 5000);
    junk.close();
    run.driver.expect("Welcome", next);
    run.files.choose(run.env.path(QStringLiteral("new school")));
    run.driver.expect("DOW", [](QDialog* d) {
        pick(d, "lstDOW", QStringLiteral("Monday to Friday"));
        next(d);
    });
    if (!custom.isEmpty()) {
        run.driver.expect("Hours", [](QDialog* d) { click(d, "cmdCustom"); });
        run.driver.expect("CustomHours", [hours, custom](QDialog* d) {
            child<QLineEdit>(d, "txtTitle")->setText(hours);
            for (const QString& t : custom) {
                child<QComboBox>(d, "cboHour")->setCurrentText(t);
                click(d, "cmdAdd");
            }
            next(d);
        });
    }
    run.driver.expect("Hours", [hours, inc](QDialog* d) {
        pick(d, "lstHours", hours);
        pick(d, "lstInc", inc);
        next(d);
    });
    run.driver.expect("Complete", next);
    QCOMPARE(run.go(), QString());

    QCOMPARE(run.boxes.texts(),
             QStringList{"Vantor Planner is now ready to create your timetables. "
                         "Would you like to create a timetable now?"});
    QCOMPARE(run.boxes.messages().first().buttons, Common::MsgButtons::YesNo);
    QCOMPARE(run.boxes.messages().first().icon, Common::MsgIcon::Question);
    QCOMPARE(started, yes && run.w.isBuilt(newTimetable) ? 1 : 0);
    QCOMPARE(run.files.requests().size(), 1);
    QVERIFY(run.files.requests().first().save);
    QVERIFY(run.files.requests().first().flags & Common::OFN::OverwritePrompt);

    QCOMPARE(rows(QStringLiteral("SELECT COUNT(*), MAX(Pos), MIN(StartTime), MAX(StartTime), "
                                 "MIN(Duration), MAX(Duration) FROM ProjectTimeTitle;")),
             QStringList{periods});
    QCOMPARE(
        rows(QStringLiteral("SELECT DISTINCT Width, Height, SpecialID FROM ProjectTimeTitle;")),
        QStringList{"1600|600|1"});
    QCOMPARE(rows(QStringLiteral("SELECT DOW FROM ProjectDayTitle ORDER BY Pos;")),
             (QStringList{"Monday", "Tuesday", "Wednesday", "Thursday", "Friday"}));
    QCOMPARE(rows(QStringLiteral("SELECT DISTINCT Height, Width, SpecialID FROM ProjectDayTitle;")),
             QStringList{"600|600|1"});

    QCOMPARE(ModMain::DB().GetDBFilename(), path);
    QCOMPARE(run.statusPath(), path);
    // Project open, no timetable yet: timetables can be made, not yet printed.
    QCOMPARE(newTimetable->isEnabled(), run.w.isBuilt(newTimetable));
    QVERIFY(!run.w.command(QStringLiteral("mnuFilePrintPreview"))->isEnabled());
    run.w.close();
    QCOMPARE(ModMain::LastDB(), path);
}

void TestWizards::customTemplatesStayAfterCancel() {
    Run run(QStringLiteral("custom.VNPL"));
    run.driver.expect("DOW", [](QDialog* d) { click(d, "cmdCustom"); });
    run.driver.expect("CustomDOW", [&run](QDialog* d) {
        next(d);
        child<QLineEdit>(d, "txtTitle")->setText(QStringLiteral("Week 'A'"));
        next(d);
        click(d, "cmdAdd");
        click(d, "cmdRemove");
        QCOMPARE(run.boxes.texts(),
                 (QStringList{
                     "No title has have been entered. Please enter a title to continue.",
                     "No days have been entered. Please enter some days to include and try again.",
                     "No day has been entered. Please enter a day name and then try again.",
                     "No day has been selected to remove. Please select a day to remove and then "
                     "try again."}));
        run.boxes.clear();
        auto* day = child<QLineEdit>(d, "txtDay");
        for (const char* name : {"Mon A", "Tue A", "Oops"}) {
            day->setText(QString::fromLatin1(name));
            click(d, "cmdAdd");
        }
        // Enter in the day box adds the day; it does not press Next.
        day->setText(QStringLiteral("Wed A"));
        QTest::keyClick(day, Qt::Key_Return);
        QVERIFY(d->isVisible());
        pick(d, "lstDays", 2);
        click(d, "cmdRemove");
        next(d);
    });
    run.driver.expect("DOW", next);
    run.driver.expect("Hours", [](QDialog* d) { click(d, "cmdCustom"); });
    run.driver.expect("CustomHours", [&run](QDialog* d) {
        click(d, "cmdRemove");
        child<QLineEdit>(d, "txtTitle")->setText(QStringLiteral("O'Hare's day"));
        click(d, "cmdAdd");
        next(d); // one time is not enough
        QVERIFY(d->isVisible());
        QCOMPARE(run.boxes.texts(),
                 (QStringList{"No hour has been selected to remove. Please select an hour to "
                              "remove and then try again.",
                              "No hours have been entered. Please enter at least two times and "
                              "try again."}));
        auto* list = child<QListWidget>(d, "lstHour");
        list->setCurrentRow(0);
        click(d, "cmdRemove");
        QCOMPARE(list->count(), 0);

        auto* cbo = child<QComboBox>(d, "cboHour");
        QCOMPARE(cbo->count(), 288);
        QCOMPARE(cbo->itemText(0), QStringLiteral("12:00am"));
        QCOMPARE(cbo->itemText(287), QStringLiteral("11:55pm"));
        for (const char* t : {"10:00am", "8:00am", "9:00am", "8:00am"}) {
            cbo->setCurrentText(QString::fromLatin1(t));
            click(d, "cmdAdd");
        }
        QStringList shown;
        for (int i = 0; i < list->count(); ++i)
            shown << list->item(i)->text();
        QCOMPARE(shown, (QStringList{"8:00am", "9:00am", "10:00am"}));
        next(d);
    });
    // Each new template is listed last and chosen, and stays so when the
    // user comes back to its screen.
    const auto chosen = [](const char* list, const QString& name, const char* then) {
        return [list, name, then](QDialog* d) {
            auto* l = child<QListWidget>(d, list);
            QCOMPARE(l->currentItem()->text(), name);
            QCOMPARE(l->currentRow(), l->count() - 1);
            click(d, then);
        };
    };
    run.driver.expect("Hours", [chosen](QDialog* d) {
        // A saved set of times has its own period lengths.
        QVERIFY(!child<QListWidget>(d, "lstInc")->isEnabled());
        QCOMPARE(child<QListWidget>(d, "lstInc")->currentRow(), 0);
        pick(d, "lstInc", 1);
        chosen("lstHours", QStringLiteral("O'Hare's day"), "cmdNext")(d);
    });
    run.driver.expect("Complete", [](QDialog* d) {
        const QString summary = child<QLabel>(d, "lblSummary")->text();
        QVERIFY2(summary.contains(QStringLiteral("Mon A, Tue A, Wed A")), qPrintable(summary));
        QVERIFY2(summary.contains(QStringLiteral("2, from 8:00am to 10:00am")),
                 qPrintable(summary));
        click(d, "cmdBack");
    });
    run.driver.expect("Hours", [chosen](QDialog* d) {
        QCOMPARE(child<QListWidget>(d, "lstInc")->currentRow(), 1);
        chosen("lstHours", QStringLiteral("O'Hare's day"), "cmdBack")(d);
    });
    run.driver.expect("DOW", chosen("lstDOW", QStringLiteral("Week 'A'"), "cmdCancel"));
    QCOMPARE(run.go(), QString());

    const QString path = run.env.path(QStringLiteral("custom.VNPL"));
    QVERIFY(QFileInfo::exists(path));
    QCOMPARE(ModMain::DB().GetDBFilename(), path);
    QCOMPARE(
        rows(QStringLiteral("SELECT i.name FROM DOWTemplate t, DOWTemplateItem i WHERE "
                            "i.DOWTemplateID = t.id AND t.name = 'Week ''A''' ORDER BY i.Pos;")),
        (QStringList{"Mon A", "Tue A", "Wed A"}));
    QCOMPARE(rows(QStringLiteral("SELECT i.name FROM HourTemplate t, HourTemplateItem i WHERE "
                                 "i.HourTemplateID = t.id AND t.name = 'O''Hare''s day' ORDER BY "
                                 "i.Pos;")),
             (QStringList{"08:00:00", "09:00:00", "10:00:00"}));
    QCOMPARE(rows(QStringLiteral("SELECT (SELECT COUNT(*) FROM ProjectDayTitle), "
                                 "(SELECT COUNT(*) FROM ProjectTimeTitle);")),
             QStringList{"0|0"});
}

void TestWizards::cancelEndsWizard_data() {
    // The screens passed with Next (or Custom) on the way, then how the last is left.
    QTest::addColumn<QStringList>("path");
    QTest::addColumn<QString>("how"); // "cmdCancel", "escape", "close" or "save dialog"
    const QStringList toHours{"Welcome", "DOW", "Hours"};
    QTest::newRow("welcome") << QStringList{"Welcome"} << "cmdCancel";
    QTest::newRow("welcome, escape") << QStringList{"Welcome"} << "escape";
    QTest::newRow("save dialog") << QStringList{"Welcome"} << "save dialog";
    QTest::newRow("days") << QStringList{"Welcome", "DOW"} << "cmdCancel";
    QTest::newRow("days, title bar") << QStringList{"Welcome", "DOW"} << "close";
    QTest::newRow("custom days") << QStringList{"Welcome", "DOW", "CustomDOW"} << "cmdCancel";
    QTest::newRow("hours") << toHours << "cmdCancel";
    QTest::newRow("hours, escape") << toHours << "escape";
    QTest::newRow("custom hours") << toHours + QStringList{"CustomHours"} << "cmdCancel";
    QTest::newRow("custom hours, escape") << toHours + QStringList{"CustomHours"} << "escape";
    QTest::newRow("complete") << toHours + QStringList{"Complete"} << "cmdCancel";
}

void TestWizards::cancelEndsWizard() {
    QFETCH(QStringList, path);
    QFETCH(QString, how);
    // Past the welcome screen the file is made.
    const bool fileMade = path.size() > 1;
    Run run;
    const QString old = run.env.newProjectWithCalendar({"Monday"}, {"9:00", "10:00"}, "old.VNPL");
    QVERIFY(run.env.open(old));
    run.w.ProjectOpened();
    const QString fresh = run.env.path(QStringLiteral("fresh.VNPL"));

    if (how == QLatin1String("save dialog"))
        run.files.cancel();
    else
        run.files.choose(fresh);
    for (int i = 0; i < path.size(); ++i) {
        QString button = how;
        if (i + 1 < path.size())
            button = path.at(i + 1).contains(QLatin1String("Custom")) ? "cmdCustom" : "cmdNext";
        else if (how == QLatin1String("save dialog"))
            button = QStringLiteral("cmdNext");
        run.driver.expect(path.at(i), [button](QDialog* d) {
            if (button == QLatin1String("escape"))
                QTest::keyClick(d, Qt::Key_Escape);
            else if (button == QLatin1String("close"))
                d->close();
            else
                click(d, qPrintable(button));
        });
    }
    QCOMPARE(run.go(), QString());
    QVERIFY(Wizard::state().WizardCancel);
    QVERIFY(run.boxes.messages().isEmpty());

    const QString open = fileMade ? fresh : old;
    QCOMPARE(QFileInfo::exists(fresh), fileMade);
    QCOMPARE(ModMain::DB().GetDBFilename(), open);
    QCOMPARE(run.statusPath(), open);
    QCOMPARE(rows(QStringLiteral("SELECT COUNT(*) FROM ProjectTimeTitle;")),
             QStringList{fileMade ? "0" : "1"});
}

void TestWizards::copyFailureReported() {
    Run run(QStringLiteral("no such folder/school.VNPL"));
    QVERIFY(run.env.open(run.env.newProject(QStringLiteral("old.VNPL"))));
    run.w.ProjectOpened();
    QCOMPARE(run.go(), QString());
    QCOMPARE(run.boxes.messages().size(), 1);
    const QString text = run.boxes.messages().first().text;
    const QString lead =
        QStringLiteral("Unable to create project file. Detailed error message is ");
    QVERIFY2(text.startsWith(lead) && text.size() > lead.size(), qPrintable(text));
    QCOMPARE(run.boxes.messages().first().icon, Common::MsgIcon::Critical);
    QVERIFY(!ModMain::DB().IsDBOpen());
    QCOMPARE(run.statusPath(), kNoProject);
}

void TestWizards::firstRunPrompt_data() {
    QTest::addColumn<int>("answer");
    QTest::newRow("yes") << int(MsgResult::Yes);
    QTest::newRow("no") << int(MsgResult::No);
    QTest::newRow("cancel") << int(MsgResult::Cancel);
}

void TestWizards::firstRunPrompt() {
    QFETCH(int, answer);
    const bool help = MsgResult(answer) == MsgResult::Yes;
    Run run;
    run.boxes.answer(MsgResult(answer));
    run.w.Form_Load();
    run.driver.expect("Welcome", [](QDialog* d) { click(d, "cmdCancel"); });
    QCOMPARE(run.driver.run([&run] { ModMain::DoFirstRun(run.w); }), QString());

    QCOMPARE(run.boxes.messages().size(), 1);
    const ShownMessage& m = run.boxes.messages().first();
    QCOMPARE(m.text, QStringLiteral("We've noticed that this is the first time you have launched "
                                    "Vantor Planner. You may find it useful to follow the getting "
                                    "started tutorial. Would you like to view it now?"));
    QCOMPARE(m.buttons, Common::MsgButtons::YesNoCancel);
    QCOMPARE(m.icon, Common::MsgIcon::Question);
    QCOMPARE(Common::GetSetting(QStringLiteral("VT Timetable"), QStringLiteral("Config"),
                                QStringLiteral("FirstRun")),
             QStringLiteral("False"));
    QCOMPARE(frmHelp::instance() != nullptr, help);
    if (help)
        QVERIFY(frmHelp::instance()->isVisible() &&
                frmHelp::instance()->txtHelp->source().path().endsWith(
                    QStringLiteral("/getting-started.html")));
    QVERIFY(!ModMain::DB().IsDBOpen());
    QCOMPARE(run.statusPath(), kNoProject);

    // Later starts ask nothing.
    ModMain::DoFirstRun(run.w);
    QCOMPARE(run.boxes.messages().size(), 1);
}

QTEST_MAIN(TestWizards)
#include "test_wizards.moc"
