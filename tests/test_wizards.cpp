// The project wizard driven through its screens, New Project's rows and
// states, and the first-run prompt.

#include "common/Settings.h"
#include "shell/Main.h"
#include "shell/frmHelp.h"
#include "shell/frmMain.h"
#include "store/ModMain.h"
#include "store/Project.h"
#include "support/TestSupport.h"
#include "wizards/ProjectCalendar.h"
#include "wizards/WizardState.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPointer>
#include <QPushButton>
#include <QTextBrowser>
#include <QTimer>
#include <QtTest>

using namespace TestSupport;
using Common::MsgResult;

namespace {
// Acts on the wizard's modal screens one after another while the code under
// test runs its own event loops. Each step names the screen it expects.
class ScreenDriver : public QObject {
public:
    using Step = std::function<void(QDialog*)>;
    void expect(const QString& screen, Step step) { m_steps.append({screen, std::move(step)}); }
    void start() { schedule(); }
    // Empty when every step ran on the screen it expected.
    QString outcome() const {
        if (!m_error.isEmpty())
            return m_error;
        QStringList left;
        for (const auto& step : m_steps)
            left << step.first;
        return left.isEmpty() ? QString() : QStringLiteral("never shown: ") + left.join(QLatin1Char(','));
    }

private:
    void poll() {
        auto* dlg = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        const bool fresh = dlg && dlg->isVisible() && dlg != m_last;
        if (!fresh || (m_last && m_last->isVisible())) {
            if (++m_idle > 2000) {
                // Unstick whatever waits, so a failing test ends instead of hanging.
                if (m_error.isEmpty())
                    m_error = QStringLiteral("no new screen after ") + m_seen.join(QLatin1Char(','));
                m_steps.clear();
                if (dlg)
                    dlg->reject();
                m_idle = 0;
            }
            if (!m_steps.isEmpty() || dlg)
                schedule();
            return;
        }
        m_idle = 0;
        m_seen << dlg->objectName();
        if (m_steps.isEmpty() || m_steps.first().first != dlg->objectName()) {
            if (m_error.isEmpty())
                m_error = QStringLiteral("unexpected screen ") + dlg->objectName();
            m_steps.clear();
            dlg->reject();
            schedule();
            return;
        }
        m_last = dlg;
        const Step step = m_steps.takeFirst().second;
        // Before the step: it may open a further screen and wait inside it.
        schedule();
        step(dlg);
        if (QTest::currentTestFailed() && m_last && m_last->isVisible()) {
            m_steps.clear();
            m_last->reject();
        }
    }

    void schedule() { QTimer::singleShot(0, this, [this] { poll(); }); }

    QList<QPair<QString, Step>> m_steps;
    QStringList m_seen;
    QString m_error;
    QPointer<QDialog> m_last;
    int m_idle = 0;
};

template <class T>
T* child(QWidget* w, const char* name) {
    T* c = w->findChild<T*>(QString::fromLatin1(name));
    if (!c)
        qFatal("no control %s on %s", name, qPrintable(w->objectName()));
    return c;
}

void click(QWidget* w, const char* button) {
    child<QPushButton>(w, button)->click();
}

void pick(QWidget* w, const char* list, int row) {
    child<QListWidget>(w, list)->setCurrentRow(row);
}

const QString kWelcome = QStringLiteral("frmScr_Project_Welcome");
const QString kDOW = QStringLiteral("frmScr_Project_DOW");
const QString kCustomDOW = QStringLiteral("frmScr_Project_CustomDOW");
const QString kHours = QStringLiteral("frmScr_Project_Hours");
const QString kCustomHours = QStringLiteral("frmScr_Project_CustomHours");
const QString kComplete = QStringLiteral("frmScr_Project_Complete");

const QString kReady = QStringLiteral(
    "Vantor Planner is now ready to create your timetables. Would you like to create a timetable now?");

void next(QDialog* d) {
    click(d, "cmdNext");
}

// Welcome and the file name: the steps every run starts with.
void startWizard(ScreenDriver& driver, FileDialogRecorder& files, const QString& path) {
    driver.expect(kWelcome, next);
    files.choose(path);
}

struct Period {
    QString start;
    int minutes;
};

QList<Period> projectPeriods() {
    QList<Period> out;
    auto rs = ModMain::DB().Execute(
        QStringLiteral("SELECT StartTime, Duration, Width, Height, SpecialID, Pos FROM "
                       "ProjectTimeTitle ORDER BY pos;"));
    for (int pos = 1; !rs.eof(); rs.MoveNext(), ++pos) {
        if (rs.Field("Pos").toInt() != pos || rs.Field("Width").toInt() != 1600 ||
            rs.Field("Height").toInt() != 600 || rs.Field("SpecialID").toInt() != 1)
            qWarning("unexpected ProjectTimeTitle row at %d", pos);
        out.append({rs.Field("StartTime").toString(), rs.Field("Duration").toInt()});
    }
    return out;
}

QStringList projectDays() {
    QStringList out;
    auto rs = ModMain::DB().Execute(
        QStringLiteral("SELECT DOW, Height, Width, SpecialID FROM ProjectDayTitle ORDER BY pos;"));
    for (; !rs.eof(); rs.MoveNext()) {
        if (rs.Field("Height").toInt() != 600 || rs.Field("Width").toInt() != 600 ||
            rs.Field("SpecialID").toInt() != 1)
            qWarning("unexpected ProjectDayTitle row %s", qPrintable(rs.Field("DOW").toString()));
        out << rs.Field("DOW").toString();
    }
    return out;
}

// The "name" column of a query's rows.
QStringList names(const QString& sql) {
    QStringList out;
    for (auto rs = ModMain::DB().Execute(sql); !rs.eof(); rs.MoveNext())
        out << rs.Field("name").toString();
    return out;
}

int count(const QString& sql) {
    auto rs = ModMain::DB().Execute(sql);
    return rs.eof() ? -1 : rs.Field("n").toInt();
}

QString statusPath(const frmMain& w) {
    return w.findChild<QLabel*>(QStringLiteral("sbPath"))->text();
}

QString runNewProject(frmMain& w, ScreenDriver& driver) {
    driver.start();
    w.command(QStringLiteral("mnuFileNewProject"))->trigger();
    return driver.outcome();
}
} // namespace

class TestWizards : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void fixedRanges_data();
    void fixedRanges();
    void newProjectFromRange_data();
    void newProjectFromRange();
    void customHoursKeepTimeOrder();
    void customHoursChecks();
    void customDaysStayAfterCancel();
    void hoursScreenRemembersChoice();
    void savedHourTemplateIgnoresIncrement();
    void cancelEndsWizard_data();
    void cancelEndsWizard();
    void saveDialogRequest();
    void existingFileIsReplaced();
    void copyFailureReported();
    void readyQuestionYesStartsTimetableWizard();
    void firstRunPrompt_data();
    void firstRunPrompt();
};

void TestWizards::init() {
    Wizard::Reset();
}

void TestWizards::cleanup() {
    if (frmHelp* help = frmHelp::instance())
        delete help;
}

void TestWizards::fixedRanges_data() {
    QTest::addColumn<int>("range");
    QTest::addColumn<int>("inc");
    QTest::addColumn<QStringList>("times");
    QTest::newRow("8-3 @60") << 0 << 0
                             << QStringList{"8:00", "9:00", "10:00", "11:00", "12:00", "13:00",
                                            "14:00", "15:00"};
    QTest::newRow("8-3 @120 drops the tail") << 0 << 1
                                             << QStringList{"8:00", "10:00", "12:00", "14:00"};
    QTest::newRow("7-4 @60") << 1 << 0
                             << QStringList{"7:00", "8:00", "9:00", "10:00", "11:00", "12:00",
                                            "13:00", "14:00", "15:00", "16:00"};
    QTest::newRow("8-4 @120") << 2 << 1
                              << QStringList{"8:00", "10:00", "12:00", "14:00", "16:00"};
    QTest::newRow("9-5 @120 keeps the end")
        << 3 << 1 << QStringList{"9:00", "11:00", "13:00", "15:00", "17:00"};
}

void TestWizards::fixedRanges() {
    QFETCH(int, range);
    QFETCH(int, inc);
    QFETCH(QStringList, times);
    QStringList got;
    for (const QTime& t : Wizard::RangeTimes(range, Wizard::IncrementMinutes(inc)))
        got << t.toString(QStringLiteral("H:mm"));
    QCOMPARE(got, times);
}

void TestWizards::newProjectFromRange_data() {
    QTest::addColumn<int>("range");
    QTest::addColumn<int>("inc");
    QTest::addColumn<int>("periods");
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("last");
    QTest::addColumn<int>("minutes");
    QTest::newRow("7am-4pm @60") << 1 << 0 << 9 << "07:00:00 " << "15:00:00 " << 60;
    QTest::newRow("9am-5pm @120") << 3 << 1 << 4 << "09:00:00 " << "15:00:00 " << 120;
    QTest::newRow("8am-3pm @120") << 0 << 1 << 3 << "08:00:00 " << "12:00:00 " << 120;
}

void TestWizards::newProjectFromRange() {
    QFETCH(int, range);
    QFETCH(int, inc);
    QFETCH(int, periods);
    QFETCH(QString, first);
    QFETCH(QString, last);
    QFETCH(int, minutes);
    TestEnv env;
    MessageRecorder boxes;
    boxes.answer(MsgResult::No);
    FileDialogRecorder files;
    const QString path = env.path(QStringLiteral("new school.VNPL"));
    {
        frmMain w;
        w.Form_Load();
        ScreenDriver driver;
        startWizard(driver, files, path);
        driver.expect(kDOW, [](QDialog* d) {
            QCOMPARE(child<QListWidget>(d, "lstDOW")->item(0)->text(),
                     QStringLiteral("Monday to Friday"));
            pick(d, "lstDOW", 0);
            next(d);
        });
        driver.expect(kHours, [range, inc](QDialog* d) {
            auto* hours = child<QListWidget>(d, "lstHours");
            QCOMPARE(hours->item(0)->text(), QStringLiteral("8.00am to 3.00pm"));
            QCOMPARE(hours->item(3)->text(), QStringLiteral("9.00am to 5.00pm"));
            QVERIFY(hours->count() > 4); // the saved templates follow
            QCOMPARE(child<QListWidget>(d, "lstInc")->item(1)->text(),
                     QStringLiteral("120 minutes"));
            pick(d, "lstHours", range);
            pick(d, "lstInc", inc);
            next(d);
        });
        driver.expect(kComplete, next);
        QCOMPARE(runNewProject(w, driver), QString());

        QCOMPARE(boxes.texts(), QStringList{kReady});
        QCOMPARE(boxes.messages().first().buttons, Common::MsgButtons::YesNo);
        QCOMPARE(boxes.messages().first().icon, Common::MsgIcon::Question);
        QCOMPARE(files.requests().size(), 1);

        const QList<Period> rows = projectPeriods();
        QCOMPARE(rows.size(), periods);
        QCOMPARE(rows.first().start, first);
        QCOMPARE(rows.last().start, last);
        for (const Period& p : rows)
            QCOMPARE(p.minutes, minutes);
        QCOMPARE(projectDays(), (QStringList{"Monday", "Tuesday", "Wednesday", "Thursday",
                                             "Friday"}));

        QCOMPARE(ModMain::DB().GetDBFilename(), path);
        QCOMPARE(statusPath(w), path);
        // Project open, no timetable yet: timetables can be made, not yet printed.
        QAction* newTimetable = w.command(QStringLiteral("mnuFileNew"));
        QCOMPARE(newTimetable->isEnabled(), w.isBuilt(newTimetable));
        QVERIFY(!w.command(QStringLiteral("mnuFilePrintPreview"))->isEnabled());
        w.close();
    }
    QCOMPARE(ModMain::LastDB(), path);
}

void TestWizards::customHoursKeepTimeOrder() {
    TestEnv env;
    MessageRecorder boxes;
    boxes.setDefault(MsgResult::No);
    FileDialogRecorder files;
    frmMain w;
    const QString path = env.path(QStringLiteral("custom.VNPL"));
    ScreenDriver driver;
    startWizard(driver, files, path);
    driver.expect(kDOW, next);
    driver.expect(kHours, [](QDialog* d) { click(d, "cmdCustom"); });
    driver.expect(kCustomHours, [](QDialog* d) {
        child<QLineEdit>(d, "txtTitle")->setText(QStringLiteral("Mornings"));
        auto* cbo = child<QComboBox>(d, "cboHour");
        QCOMPARE(cbo->count(), 288);
        QCOMPARE(cbo->itemText(0), QStringLiteral("12:00am"));
        QCOMPARE(cbo->itemText(1), QStringLiteral("12:05am"));
        QCOMPARE(cbo->itemText(287), QStringLiteral("11:55pm"));
        for (const char* t : {"10:00am", "8:00am", "9:00am", "8:00am"}) {
            cbo->setCurrentText(QString::fromLatin1(t));
            click(d, "cmdAdd");
        }
        auto* list = child<QListWidget>(d, "lstHour");
        QStringList shown;
        for (int i = 0; i < list->count(); ++i)
            shown << list->item(i)->text();
        QCOMPARE(shown, (QStringList{"8:00am", "9:00am", "10:00am"}));
        next(d);
    });
    driver.expect(kHours, [](QDialog* d) {
        auto* hours = child<QListWidget>(d, "lstHours");
        QCOMPARE(hours->currentItem()->text(), QStringLiteral("Mornings"));
        QCOMPARE(hours->currentRow(), hours->count() - 1);
        QVERIFY(!child<QListWidget>(d, "lstInc")->isEnabled());
        next(d);
    });
    driver.expect(kComplete, next);
    QCOMPARE(runNewProject(w, driver), QString());

    const QList<Period> rows = projectPeriods();
    QCOMPARE(rows.size(), 2);
    QCOMPARE(rows.at(0).start, QStringLiteral("08:00:00 "));
    QCOMPARE(rows.at(1).start, QStringLiteral("09:00:00 "));
    QCOMPARE(rows.at(0).minutes, 60);
    QCOMPARE(rows.at(1).minutes, 60);

    QCOMPARE(names(QStringLiteral("SELECT i.name AS name FROM HourTemplate t, HourTemplateItem i "
                                  "WHERE i.HourTemplateID = t.id AND t.name = 'Mornings' ORDER "
                                  "BY i.Pos;")),
             (QStringList{"08:00:00", "09:00:00", "10:00:00"}));
}

void TestWizards::customHoursChecks() {
    TestEnv env;
    MessageRecorder boxes;
    FileDialogRecorder files;
    frmMain w;
    const QString path = env.path(QStringLiteral("checks.VNPL"));
    ScreenDriver driver;
    startWizard(driver, files, path);
    driver.expect(kDOW, next);
    driver.expect(kHours, [](QDialog* d) { click(d, "cmdCustom"); });
    driver.expect(kCustomHours, [&boxes](QDialog* d) {
        click(d, "cmdRemove");
        next(d);
        child<QLineEdit>(d, "txtTitle")->setText(QStringLiteral("O'Hare's day"));
        next(d);
        click(d, "cmdAdd");
        next(d); // one time is not enough
        QVERIFY(d->isVisible());
        QCOMPARE(boxes.texts(),
                 (QStringList{"No hour has been selected to remove. Please select an hour to "
                              "remove and then try again.",
                              "No title has have been entered. Please enter a title to continue.",
                              "No hours have been entered. Please enter at least two times and "
                              "try again.",
                              "No hours have been entered. Please enter at least two times and "
                              "try again."}));
        auto* list = child<QListWidget>(d, "lstHour");
        list->setCurrentRow(0);
        click(d, "cmdRemove");
        QCOMPARE(list->count(), 0);
        click(d, "cmdCancel");
    });
    QCOMPARE(runNewProject(w, driver), QString());
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) AS n FROM HourTemplate WHERE name LIKE 'O%';")),
             0);
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) AS n FROM ProjectTimeTitle;")), 0);
}

void TestWizards::customDaysStayAfterCancel() {
    TestEnv env;
    MessageRecorder boxes;
    FileDialogRecorder files;
    frmMain w;
    const QString path = env.path(QStringLiteral("days.VNPL"));
    ScreenDriver driver;
    startWizard(driver, files, path);
    driver.expect(kDOW, [](QDialog* d) { click(d, "cmdCustom"); });
    driver.expect(kCustomDOW, [&boxes](QDialog* d) {
        next(d);
        child<QLineEdit>(d, "txtTitle")->setText(QStringLiteral("Week 'A'"));
        next(d);
        click(d, "cmdAdd");
        click(d, "cmdRemove");
        QCOMPARE(boxes.texts(),
                 (QStringList{
                     "No title has have been entered. Please enter a title to continue.",
                     "No days have been entered. Please enter some days to include and try again.",
                     "No day has been entered. Please enter a day name and then try again.",
                     "No day has been selected to remove. Please select a day to remove and then "
                     "try again."}));
        auto* day = child<QLineEdit>(d, "txtDay");
        for (const char* name : {"Mon A", "Tue A", "Oops"}) {
            day->setText(QString::fromLatin1(name));
            click(d, "cmdAdd");
        }
        // Enter in the day box adds the day; it does not press Next.
        day->setText(QStringLiteral("Wed A"));
        QTest::keyClick(day, Qt::Key_Return);
        QVERIFY(d->isVisible());
        child<QListWidget>(d, "lstDays")->setCurrentRow(2);
        click(d, "cmdRemove");
        next(d);
    });
    driver.expect(kDOW, [](QDialog* d) {
        auto* list = child<QListWidget>(d, "lstDOW");
        QCOMPARE(list->currentItem()->text(), QStringLiteral("Week 'A'"));
        next(d);
    });
    driver.expect(kHours, [](QDialog* d) { click(d, "cmdBack"); });
    driver.expect(kDOW, [](QDialog* d) {
        // The new template is still listed and still chosen.
        QCOMPARE(child<QListWidget>(d, "lstDOW")->currentItem()->text(), QStringLiteral("Week 'A'"));
        click(d, "cmdCancel");
    });
    QCOMPARE(runNewProject(w, driver), QString());

    QVERIFY(QFileInfo::exists(path));
    QCOMPARE(ModMain::DB().GetDBFilename(), path);
    QCOMPARE(names(QStringLiteral("SELECT i.name AS name FROM DOWTemplate t, DOWTemplateItem i "
                                  "WHERE i.DOWTemplateID = t.id AND t.name = 'Week ''A''' ORDER "
                                  "BY i.Pos;")),
             (QStringList{"Mon A", "Tue A", "Wed A"}));
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) AS n FROM ProjectDayTitle;")), 0);
    QCOMPARE(Wizard::state().WizardDOW, (QStringList{"Mon A", "Tue A", "Wed A"}));
}

void TestWizards::hoursScreenRemembersChoice() {
    TestEnv env;
    MessageRecorder boxes;
    boxes.setDefault(MsgResult::No);
    FileDialogRecorder files;
    frmMain w;
    ScreenDriver driver;
    startWizard(driver, files, env.path(QStringLiteral("back.VNPL")));
    driver.expect(kDOW, [](QDialog* d) {
        pick(d, "lstDOW", 1);
        next(d);
    });
    driver.expect(kHours, [](QDialog* d) {
        pick(d, "lstHours", 3);
        pick(d, "lstInc", 1);
        next(d);
    });
    driver.expect(kComplete, [](QDialog* d) {
        const QString summary = child<QLabel>(d, "lblSummary")->text();
        QVERIFY2(summary.contains(QStringLiteral("Saturday")), qPrintable(summary));
        QVERIFY2(summary.contains(QStringLiteral("4, from 9:00am to 5:00pm")), qPrintable(summary));
        click(d, "cmdBack");
    });
    driver.expect(kHours, [](QDialog* d) {
        QCOMPARE(child<QListWidget>(d, "lstHours")->currentRow(), 3);
        QCOMPARE(child<QListWidget>(d, "lstInc")->currentRow(), 1);
        click(d, "cmdBack");
    });
    driver.expect(kDOW, [](QDialog* d) {
        QCOMPARE(child<QListWidget>(d, "lstDOW")->currentRow(), 1);
        next(d);
    });
    driver.expect(kHours, next);
    driver.expect(kComplete, next);
    QCOMPARE(runNewProject(w, driver), QString());
    QCOMPARE(projectPeriods().size(), 4);
    QCOMPARE(projectDays().size(), 6);
}

void TestWizards::savedHourTemplateIgnoresIncrement() {
    TestEnv env;
    MessageRecorder boxes;
    boxes.setDefault(MsgResult::No);
    FileDialogRecorder files;
    frmMain w;
    ScreenDriver driver;
    startWizard(driver, files, env.path(QStringLiteral("template.VNPL")));
    driver.expect(kDOW, next);
    driver.expect(kHours, [](QDialog* d) {
        auto* hours = child<QListWidget>(d, "lstHours");
        const int row = hours->row(
            hours->findItems(QStringLiteral("Primary: five 75-minute sessions from 8:45am"),
                             Qt::MatchExactly)
                .value(0));
        QVERIFY(row >= 4);
        pick(d, "lstInc", 1);
        pick(d, "lstHours", row);
        next(d);
    });
    driver.expect(kComplete, next);
    QCOMPARE(runNewProject(w, driver), QString());
    const QList<Period> rows = projectPeriods();
    QCOMPARE(rows.size(), 5);
    QCOMPARE(rows.first().start, QStringLiteral("08:45:00 "));
    for (const Period& p : rows)
        QCOMPARE(p.minutes, 75);
}

void TestWizards::cancelEndsWizard_data() {
    QTest::addColumn<QStringList>("path"); // screens passed with Next (or Custom) first
    QTest::addColumn<QString>("how");      // "cancel", "escape" or "close"
    QTest::addColumn<bool>("fileMade");
    QTest::newRow("welcome") << QStringList{kWelcome} << "cancel" << false;
    QTest::newRow("welcome, escape") << QStringList{kWelcome} << "escape" << false;
    QTest::newRow("save dialog") << QStringList{} << "save" << false;
    QTest::newRow("days") << QStringList{kWelcome, kDOW} << "cancel" << true;
    QTest::newRow("days, title bar") << QStringList{kWelcome, kDOW} << "close" << true;
    QTest::newRow("custom days") << QStringList{kWelcome, kDOW, kCustomDOW} << "cancel" << true;
    QTest::newRow("hours") << QStringList{kWelcome, kDOW, kHours} << "cancel" << true;
    QTest::newRow("hours, escape") << QStringList{kWelcome, kDOW, kHours} << "escape" << true;
    QTest::newRow("custom hours") << QStringList{kWelcome, kDOW, kHours, kCustomHours} << "cancel"
                                  << true;
    QTest::newRow("custom hours, escape")
        << QStringList{kWelcome, kDOW, kHours, kCustomHours} << "escape" << true;
    QTest::newRow("complete") << QStringList{kWelcome, kDOW, kHours, kComplete} << "cancel"
                              << true;
}

void TestWizards::cancelEndsWizard() {
    QFETCH(QStringList, path);
    QFETCH(QString, how);
    QFETCH(bool, fileMade);
    TestEnv env;
    MessageRecorder boxes;
    FileDialogRecorder files;
    const QString old = env.newProjectWithCalendar({"Monday"}, {"9:00", "10:00"}, "old.VNPL");
    QVERIFY(env.open(old));
    frmMain w;
    w.ProjectOpened();
    const QString fresh = env.path(QStringLiteral("fresh.VNPL"));

    ScreenDriver driver;
    if (how == QLatin1String("save")) {
        driver.expect(kWelcome, next);
        files.cancel();
    }
    for (int i = 0; i < path.size(); ++i) {
        const bool last = i == path.size() - 1;
        const QString& screen = path.at(i);
        if (i == 1)
            files.choose(fresh);
        const bool customNext = i + 1 < path.size() &&
                                (path.at(i + 1) == kCustomDOW || path.at(i + 1) == kCustomHours);
        driver.expect(screen, [last, how, customNext](QDialog* d) {
            if (!last)
                click(d, customNext ? "cmdCustom" : "cmdNext");
            else if (how == QLatin1String("cancel"))
                click(d, "cmdCancel");
            else if (how == QLatin1String("escape"))
                QTest::keyClick(d, Qt::Key_Escape);
            else
                d->close();
        });
    }
    QCOMPARE(runNewProject(w, driver), QString());
    QVERIFY(Wizard::state().WizardCancel);
    QVERIFY(boxes.messages().isEmpty());

    const QString open = fileMade ? fresh : old;
    QCOMPARE(QFileInfo::exists(fresh), fileMade);
    QCOMPARE(ModMain::DB().GetDBFilename(), open);
    QCOMPARE(statusPath(w), open);
    if (fileMade)
        QCOMPARE(count(QStringLiteral("SELECT COUNT(*) AS n FROM ProjectTimeTitle;")), 0);
    else
        QCOMPARE(projectPeriods().size(), 1);
}

void TestWizards::saveDialogRequest() {
    TestEnv env;
    MessageRecorder boxes;
    FileDialogRecorder files;
    frmMain w;
    ScreenDriver driver;
    driver.expect(kWelcome, next);
    files.cancel();
    QCOMPARE(runNewProject(w, driver), QString());
    QCOMPARE(files.requests().size(), 1);
    const Common::FileDialogRequest& req = files.requests().first();
    QVERIFY(req.save);
    QCOMPARE(req.title, QStringLiteral("Save Project As"));
    QCOMPARE(req.filter, QStringLiteral("Vantor Timetable Project (*.VNPL)|*.VNPL"));
    QCOMPARE(req.defaultExt, QStringLiteral("VNPL"));
    QVERIFY(req.flags & Common::OFN::OverwritePrompt);
    QVERIFY(!ModMain::DB().IsDBOpen());
}

void TestWizards::existingFileIsReplaced() {
    TestEnv env;
    MessageRecorder boxes;
    boxes.setDefault(MsgResult::No);
    FileDialogRecorder files;
    const QString path = env.path(QStringLiteral("reused.VNPL"));
    {
        QFile f(path);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(QByteArray(5000, 'x'));
    }
    frmMain w;
    ScreenDriver driver;
    // Typed without the extension: the dialog's default extension finds the file.
    startWizard(driver, files, env.path(QStringLiteral("reused")));
    driver.expect(kDOW, next);
    driver.expect(kHours, next);
    driver.expect(kComplete, next);
    QCOMPARE(runNewProject(w, driver), QString());
    QCOMPARE(ModMain::DB().GetDBFilename(), path);
    QCOMPARE(projectPeriods().size(), 7);
    QCOMPARE(boxes.texts(), QStringList{kReady});
}

void TestWizards::copyFailureReported() {
    TestEnv env;
    MessageRecorder boxes;
    FileDialogRecorder files;
    const QString old = env.newProject(QStringLiteral("old.VNPL"));
    QVERIFY(env.open(old));
    frmMain w;
    w.ProjectOpened();
    ScreenDriver driver;
    startWizard(driver, files, env.path(QStringLiteral("no such folder/school.VNPL")));
    QCOMPARE(runNewProject(w, driver), QString());
    QCOMPARE(boxes.messages().size(), 1);
    const QString text = boxes.messages().first().text;
    const QString lead = QStringLiteral("Unable to create project file. Detailed error message is ");
    QVERIFY2(text.startsWith(lead) && text.size() > lead.size(), qPrintable(text));
    QCOMPARE(boxes.messages().first().icon, Common::MsgIcon::Critical);
    QVERIFY(!ModMain::DB().IsDBOpen());
    QCOMPARE(statusPath(w), QStringLiteral("No project open"));
}

void TestWizards::readyQuestionYesStartsTimetableWizard() {
    TestEnv env;
    MessageRecorder boxes;
    boxes.answer(MsgResult::Yes);
    FileDialogRecorder files;
    frmMain w;
    QAction* newTimetable = w.command(QStringLiteral("mnuFileNew"));
    int started = 0;
    // Stand in for the new-timetable wizard: only whether it is started matters here.
    if (w.isBuilt(newTimetable))
        newTimetable->disconnect();
    connect(newTimetable, &QAction::triggered, this, [&started] { ++started; });
    ScreenDriver driver;
    startWizard(driver, files, env.path(QStringLiteral("yes.VNPL")));
    driver.expect(kDOW, next);
    driver.expect(kHours, next);
    driver.expect(kComplete, next);
    QCOMPARE(runNewProject(w, driver), QString());
    QCOMPARE(boxes.texts(), QStringList{kReady});
    QCOMPARE(started, w.isBuilt(newTimetable) ? 1 : 0);
}

void TestWizards::firstRunPrompt_data() {
    QTest::addColumn<int>("answer");
    QTest::addColumn<bool>("help");
    QTest::newRow("yes") << int(MsgResult::Yes) << true;
    QTest::newRow("no") << int(MsgResult::No) << false;
    QTest::newRow("cancel") << int(MsgResult::Cancel) << false;
}

void TestWizards::firstRunPrompt() {
    QFETCH(int, answer);
    QFETCH(bool, help);
    TestEnv env;
    MessageRecorder boxes;
    boxes.answer(MsgResult(answer));
    FileDialogRecorder files;
    frmMain w;
    w.Form_Load();
    ScreenDriver driver;
    driver.expect(kWelcome, [](QDialog* d) { click(d, "cmdCancel"); });
    driver.start();
    ModMain::DoFirstRun(w);
    QCOMPARE(driver.outcome(), QString());

    QCOMPARE(boxes.messages().size(), 1);
    const ShownMessage& m = boxes.messages().first();
    QCOMPARE(m.text, QStringLiteral("We've noticed that this is the first time you have launched "
                                    "Vantor Planner. You may find it useful to follow the getting "
                                    "started tutorial. Would you like to view it now?"));
    QCOMPARE(m.buttons, Common::MsgButtons::YesNoCancel);
    QCOMPARE(m.icon, Common::MsgIcon::Question);
    QCOMPARE(Common::GetSetting(QStringLiteral("VT Timetable"), QStringLiteral("Config"),
                                QStringLiteral("FirstRun")),
             QStringLiteral("False"));
    QCOMPARE(frmHelp::instance() != nullptr, help);
    if (help) {
        QVERIFY(frmHelp::instance()->isVisible());
        QVERIFY(frmHelp::instance()->txtHelp->source().path().endsWith(
            QStringLiteral("/getting-started.html")));
    }
    QVERIFY(!ModMain::DB().IsDBOpen());
    QCOMPARE(statusPath(w), QStringLiteral("No project open"));

    // Later starts ask nothing.
    ModMain::DoFirstRun(w);
    QCOMPARE(boxes.messages().size(), 1);
}

QTEST_MAIN(TestWizards)
#include "test_wizards.moc"
