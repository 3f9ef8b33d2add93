// The project wizard driven through its screens, and the first-run prompt.

#include "shell/Main.h"
#include "shell/frmHelp.h"
#include "shell/frmMain.h"
#include "store/Project.h"
#include "support/Fixtures.h"
#include "wizards/WizardState.h"

#include <QtTest>
#include <QtWidgets>

using namespace Fixtures;
using Common::MsgResult;

namespace {
using Step = ModalDriver::Step;

const Step next = press("cmdNext");
const Step escape = [](QDialog* d) { QTest::keyClick(d, Qt::Key_Escape); };

// Chooses the entry shown with exactly this text.
void pick(QWidget* w, const char* list, const QString& text) {
    auto* l = control<QListWidget>(w, list);
    l->setCurrentItem(l->findItems(text, Qt::MatchExactly).value(0));
    QVERIFY2(l->currentItem(), qPrintable(text));
}

// The rows of a query, ", " between rows and '|' between fields.
QString joined(const char* sql) {
    return rows(QString::fromLatin1(sql)).join(QStringLiteral(", "));
}

// One New Project run over a fresh main window; message boxes answer No by default.
struct Run {
    TestEnv env;
    MessageRecorder boxes;
    FileDialogRecorder files;
    frmMain w;
    ModalDriver driver;
    Run() { boxes.setDefault(MsgResult::No); }
    // screen: "DOW" for frmScr_Project_DOW.
    void expect(const QString& screen, Step s) { driver.expect("frmScr_Project_" + screen, s); }
    QString go() {
        return driver.run([this] { w.command("mnuFileNewProject")->trigger(); });
    }
    QString statusPath() const { return w.findChild<QLabel*>("sbPath")->text(); }
};
} // namespace

class TestWizards : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { Wizard::Reset(); }
    void cleanup() { delete frmHelp::instance(); }
    void newProject_data() {
        QTest::addColumn<QString>("hours");
        QTest::addColumn<QString>("inc");
        QTest::addColumn<QString>("periods"); // count|last Pos|first, last start|shortest, longest
        QTest::addColumn<bool>("yes");        // the answer to "create a timetable now?"
        QTest::addColumn<QStringList>("custom"); // times added as custom hours titled hours
        // clang-format off
        QTest::newRow("7am-4pm @60") << "7.00am to 4.00pm" << "60 minutes"
            << "9|9|07:00:00 |15:00:00 |60|60" << true << QStringList();
        QTest::newRow("9am-5pm @120 keeps the end") << "9.00am to 5.00pm" << "120 minutes"
            << "4|4|09:00:00 |15:00:00 |120|120" << false << QStringList();
        QTest::newRow("8am-3pm @120 drops the tail") << "8.00am to 3.00pm" << "120 minutes"
            << "3|3|08:00:00 |12:00:00 |120|120" << false << QStringList();
        QTest::newRow("first saved set of times") << QString("Secondary: six 50-minute periods from 8:50am") << "60 minutes" << "6|6|08:50:00 |13:00:00 |50|50" << false << QStringList();
        QTest::newRow("saved times, own lengths") << QString("Primary: five 75-minute sessions from 8:45am") << "120 minutes" << "5|5|08:45:00 |13:45:00 |75|75" << false << QStringList();
        // The start times keep their trailing blank.
        QTest::newRow("custom 8, 9 and 10am make two periods") << "Mine" << "60 minutes"
            << "2|2|08:00:00 |09:00:00 |60|60" << false << QStringList{"8:00am", "9:00am", "10:00am"};
        // clang-format on
    }
    void newProject() {
        QFETCH(QString, hours);
        QFETCH(QString, inc);
        QFETCH(bool, yes);
        QFETCH(QStringList, custom);
        Run run;
        run.w.Form_Load();
        run.boxes.answer(yes ? MsgResult::Yes : MsgResult::No);
        // Stand in for the new-timetable wizard: only whether it is started matters here.
        QAction* newTimetable = run.w.command("mnuFileNew");
        newTimetable->disconnect();
        QSignalSpy started(newTimetable, &QAction::triggered);
        run.expect("Welcome", [](QDialog* d) {
            verifyWizardButtons(d);
            next(d);
        });
        // Typed without the extension, the dialog's default extension adds it.
        run.files.choose(run.env.path("new school"));
        run.expect("DOW", [](QDialog* d) {
            pick(d, "lstDOW", "Monday to Friday");
            next(d);
        });
        if (!custom.isEmpty()) {
            run.expect("Hours", press("cmdCustom"));
            run.expect("CustomHours", [hours, custom](QDialog* d) {
                control<QLineEdit>(d, "txtTitle")->setText(hours);
                for (const QString& t : custom) {
                    control<QComboBox>(d, "cboHour")->setCurrentText(t);
                    press("cmdAdd")(d);
                }
                next(d);
            });
        }
        run.expect("Hours", [hours, inc](QDialog* d) {
            pick(d, "lstHours", hours);
            pick(d, "lstInc", inc);
            next(d);
        });
        run.expect("Complete", next);
        QCOMPARE(run.go(), QString());
        QCOMPARE(run.boxes.texts(),
                 QStringList{"Vantor Planner is now ready to create your timetables. Would you "
                             "like to create a timetable now?"});
        QCOMPARE(run.boxes.messages().first().buttons, Common::MsgButtons::YesNo);
        QCOMPARE(run.boxes.messages().first().icon, Common::MsgIcon::Question);
        QCOMPARE(started.count(), yes ? 1 : 0);
        QCOMPARE(run.files.requests().size(), 1);
        QVERIFY(run.files.requests().first().save);
        QVERIFY(run.files.requests().first().flags & Common::OFN::OverwritePrompt);
        QTEST(joined("SELECT COUNT(*), MAX(Pos), MIN(StartTime), MAX(StartTime), MIN(Duration), "
                     "MAX(Duration) FROM ProjectTimeTitle;"),
              "periods");
        QCOMPARE(joined("SELECT DISTINCT Width, Height, SpecialID FROM ProjectTimeTitle;"),
                 "1600|600|1");
        QCOMPARE(joined("SELECT DOW FROM ProjectDayTitle ORDER BY Pos;"),
                 "Monday, Tuesday, Wednesday, Thursday, Friday");
        QCOMPARE(joined("SELECT DISTINCT Height, Width, SpecialID FROM ProjectDayTitle;"),
                 "600|600|1");
        const QString path = run.env.path("new school.VNPL");
        QCOMPARE(ModMain::DB().GetDBFilename(), path);
        QCOMPARE(run.statusPath(), path);
        // Project open, no timetable yet: timetables can be made, not yet printed.
        QVERIFY(newTimetable->isEnabled());
        QVERIFY(!run.w.command("mnuFilePrintPreview")->isEnabled());
        run.w.close();
        QCOMPARE(ModMain::LastDB(), path);
    }
    void customTemplatesStayAfterCancel() {
        Run run;
        run.expect("Welcome", next);
        run.files.choose(run.env.path("custom.VNPL"));
        run.expect("DOW", press("cmdCustom"));
        run.expect("CustomDOW", [&run](QDialog* d) {
            next(d);
            control<QLineEdit>(d, "txtTitle")->setText("Week 'A'");
            next(d);
            press("cmdAdd")(d);
            press("cmdRemove")(d);
            QCOMPARE(
                run.boxes.texts(),
                (QStringList{
                    "No title has have been entered. Please enter a title to continue.",
                    "No days have been entered. Please enter some days to include and try again.",
                    "No day has been entered. Please enter a day name and then try again.",
                    "No day has been selected to remove. Please select a day to remove and then "
                    "try again."}));
            run.boxes.clear();
            auto* day = control<QLineEdit>(d, "txtDay");
            for (const char* name : {"Mon A", "Tue A", "Oops"}) {
                day->setText(name);
                press("cmdAdd")(d);
            }
            // Enter in the day box adds the day (and does not press Next).
            day->setText("Wed A");
            QTest::keyClick(day, Qt::Key_Return);
            control<QListWidget>(d, "lstDays")->setCurrentRow(2);
            press("cmdRemove")(d);
            next(d);
        });
        run.expect("DOW", next);
        run.expect("Hours", press("cmdCustom"));
        run.expect("CustomHours", [&run](QDialog* d) {
            press("cmdRemove")(d);
            control<QLineEdit>(d, "txtTitle")->setText("O'Hare's day");
            press("cmdAdd")(d);
            next(d); // one time is not enough
            QVERIFY(d->isVisible());
            QCOMPARE(
                run.boxes.texts(),
                (QStringList{
                    "No hour has been selected to remove. Please select an hour to remove and then "
                    "try again.",
                    "No hours have been entered. Please enter at least two times and try again."}));
            control<QListWidget>(d, "lstHour")->setCurrentRow(0);
            press("cmdRemove")(d);
            auto* cbo = control<QComboBox>(d, "cboHour");
            QCOMPARE(cbo->count(), 288);
            QCOMPARE(cbo->itemText(0), "12:00am");
            QCOMPARE(cbo->itemText(287), "11:55pm");
            // Added out of order and twice; saved in time order, once.
            for (const char* t : {"10:00am", "8:00am", "9:00am", "8:00am"}) {
                cbo->setCurrentText(t);
                press("cmdAdd")(d);
            }
            next(d);
        });
        // Each new template is listed last and chosen, and stays so when the
        // user comes back to its screen.
        const auto chosen = [](const char* list, const QString& name, const char* then) {
            return [list, name, then](QDialog* d) {
                auto* l = control<QListWidget>(d, list);
                QCOMPARE(l->currentItem()->text(), name);
                QCOMPARE(l->currentRow(), l->count() - 1);
                press(then)(d);
            };
        };
        run.expect("Hours", [chosen](QDialog* d) {
            // A saved set of times has its own period lengths.
            auto* inc = control<QListWidget>(d, "lstInc");
            QVERIFY(!inc->isEnabled());
            QCOMPARE(inc->currentRow(), 0);
            inc->setCurrentRow(1);
            chosen("lstHours", "O'Hare's day", "cmdNext")(d);
        });
        run.expect("Complete", [](QDialog* d) {
            const QString summary = control<QLabel>(d, "lblSummary")->text();
            QVERIFY2(summary.contains("Mon A, Tue A, Wed A") &&
                         summary.contains("2, from 8:00am to 10:00am"),
                     qPrintable(summary));
            press("cmdBack")(d);
        });
        run.expect("Hours", [chosen](QDialog* d) {
            QCOMPARE(control<QListWidget>(d, "lstInc")->currentRow(), 1);
            chosen("lstHours", "O'Hare's day", "cmdBack")(d);
        });
        run.expect("DOW", chosen("lstDOW", "Week 'A'", "cmdCancel"));
        QCOMPARE(run.go(), QString());
        QCOMPARE(joined("SELECT i.name FROM DOWTemplate t, DOWTemplateItem i WHERE i.DOWTemplateID "
                        "= t.id AND t.name = 'Week ''A''' ORDER BY i.Pos;"),
                 "Mon A, Tue A, Wed A");
        QCOMPARE(joined("SELECT i.name FROM HourTemplate t, HourTemplateItem i WHERE "
                        "i.HourTemplateID = t.id AND t.name = 'O''Hare''s day' ORDER BY i.Pos;"),
                 "08:00:00, 09:00:00, 10:00:00");
    }
    void cancelEndsWizard_data() {
        // Each screen shown, then the button pressed on it or Escape.
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QString>("chosen"); // names given the save dialog in turn; "" cancels it
        QTest::newRow("welcome") << QString("Welcome cmdCancel") << "fresh";
        QTest::newRow("save dialog") << QString("Welcome cmdNext") << "";
        // The open project cannot be replaced; asked again, the user gives up.
        QTest::newRow("the open project's name") << QString("Welcome cmdNext") << "old,";
        QTest::newRow("custom hours")
            << "Welcome cmdNext, DOW cmdNext, Hours cmdCustom, CustomHours cmdCancel"
            << "fresh";
        QTest::newRow("hours, escape")
            << QString("Welcome cmdNext, DOW cmdNext, Hours Escape") << "fresh";
    }
    void cancelEndsWizard() {
        QFETCH(QString, steps);
        QFETCH(QString, chosen);
        // Past the welcome screen the file is made.
        const bool fileMade = chosen == "fresh" && steps.startsWith("Welcome cmdNext");
        Run run;
        const QString old =
            run.env.newProjectWithCalendar({"Monday"}, {"9:00", "10:00"}, "old.VNPL");
        QVERIFY(run.env.open(old));
        run.w.ProjectOpened();
        const QByteArray before = readFile(old);
        const QString fresh = run.env.path("fresh.VNPL");
        for (const QString& name : chosen.split(','))
            name.isEmpty() ? run.files.cancel() : run.files.choose(run.env.path(name + ".VNPL"));
        for (const QString& step : steps.split(", ")) {
            const QString button = step.section(' ', 1);
            run.expect(step.section(' ', 0, 0),
                       button == "Escape" ? escape : press(button.toLatin1()));
        }
        QCOMPARE(run.go(), QString());
        QVERIFY(Wizard::state().WizardCancel);
        QCOMPARE(run.boxes.texts(),
                 chosen.startsWith("old")
                     ? QStringList{old + " is the project that is open now, so it cannot be "
                                         "replaced by a new one. Please choose another name."}
                     : QStringList());
        // A save dialog once past the welcome screen, and again after each refused name.
        QCOMPARE(run.files.requests().size(),
                 chosen.count(',') + (steps.contains("cmdNext") ? 1 : 0));
        const QString open = fileMade ? fresh : old;
        QCOMPARE(QFileInfo::exists(fresh), fileMade);
        QCOMPARE(ModMain::DB().GetDBFilename(), open);
        QCOMPARE(run.statusPath(), open);
        QCOMPARE(value("SELECT COUNT(*) FROM ProjectTimeTitle"), fileMade ? "0" : "1");
        if (!fileMade)
            QCOMPARE(readFile(old), before);
    }
    void firstRunPrompt_data() {
        QTest::addColumn<int>("answer");
        QTest::addColumn<bool>("sample");
        QTest::newRow("yes") << int(MsgResult::Yes) << false;
        QTest::newRow("sample school") << int(MsgResult::No) << true;
    }
    void firstRunPrompt() {
        QFETCH(int, answer);
        QFETCH(bool, sample);
        Run run;
        std::optional<ScopedEnv> home(std::in_place, "HOME", run.env.dir().toLocal8Bit());
        run.boxes.answer(MsgResult(answer));
        // Then the sample school, or the New Project Wizard.
        run.boxes.answer(sample ? MsgResult::Yes : MsgResult::No);
        run.w.Form_Load();
        if (!sample)
            run.expect("Welcome", press("cmdCancel"));
        QCOMPARE(run.driver.run([&run] { ModMain::DoFirstRun(run.w); }), QString());
        home.reset();
        QCOMPARE(run.boxes.texts(),
                 QStringList({"We've noticed that this is the first time you have launched Vantor "
                              "Planner. You may find it useful to follow the getting started "
                              "tutorial. Would you like to view it now?",
                              "Would you like to explore a sample school first? Choose No to set "
                              "up your own school now with the New Project Wizard."}));
        QCOMPARE(run.boxes.messages().first().buttons, Common::MsgButtons::YesNo);
        QCOMPARE(run.boxes.messages().last().buttons, Common::MsgButtons::YesNoCancel);
        QCOMPARE(run.boxes.messages().first().icon, Common::MsgIcon::Question);
        // Yes opens the tutorial beside the wizard; nothing else opens it.
        frmHelp* help = frmHelp::instance();
        QVERIFY(!help || help->isVisible());
        QCOMPARE(help ? help->txtHelp->source().fileName() : QString(),
                 MsgResult(answer) == MsgResult::Yes ? "getting-started.html" : "");
        QCOMPARE(run.statusPath(),
                 sample ? run.env.path("Documents/Sample School.VNPL") : "No project open");
        // Later starts ask nothing.
        ModMain::DoFirstRun(run.w);
        QCOMPARE(run.boxes.messages().size(), 2);
    }
    void cancelledProjectOffersItsCalendar() {
        Run run;
        // An old project with a timetable on screen.
        const QString old =
            run.env.newProjectWithCalendar({"Monday"}, {"9:00", "10:00"}, "old.VNPL");
        QVERIFY(run.env.open(old));
        ModMain::CreateTimetable("Class", insertClass("7A"), 1);
        run.w.ProjectOpened();
        QVERIFY(run.w.g->rows() > 1);
        const QString fresh = run.env.path("fresh.VNPL");
        run.files.choose(fresh);
        run.expect("Welcome", next);
        run.expect("DOW", press("cmdCancel"));
        QCOMPARE(run.go(), QString());
        // Nothing of the old project is left; the new one says what it lacks.
        QCOMPARE(ModMain::DB().GetDBFilename(), fresh);
        QCOMPARE(run.w.g->rows(), 1);
        QCOMPARE(run.w.windowTitle(), "Vantor Planner");
        QVERIFY(run.w.g->emptyText().contains("no days or periods"));
        QAction* setUp = run.w.command("mnuFileSetUpCalendar");
        QVERIFY(setUp->isEnabled());
        // A new timetable is refused until the days and periods are there; Yes
        // offers the same screens as the wizard.
        run.boxes.answer(MsgResult::Yes);
        run.expect("DOW", [](QDialog* d) {
            QVERIFY(!control<QPushButton>(d, "cmdBack")->isEnabled()); // no file to go back to
            pick(d, "lstDOW", "Monday to Friday");
            next(d);
        });
        run.expect("Hours", [](QDialog* d) {
            pick(d, "lstHours", "8.00am to 4.00pm");
            next(d);
        });
        run.expect("Complete", next);
        QCOMPARE(run.driver.run([&run] { run.w.command("mnuFileNew")->trigger(); }), QString());
        QCOMPARE(run.boxes.texts(),
                 (QStringList{"This project has no days or periods yet, so a timetable cannot be "
                              "created. Would you like to set them up now?",
                              "Vantor Planner is now ready to create your timetables. Would you "
                              "like to create a timetable now?"}));
        QCOMPARE(value("SELECT COUNT(*) FROM ProjectDayTitle"), "5");
        QCOMPARE(value("SELECT COUNT(*) FROM ProjectTimeTitle"), "8");
        QVERIFY(!setUp->isEnabled());
        QVERIFY(run.w.g->emptyText().startsWith("No timetable is shown"));
    }
    void blankProjectMissing() {
        Run run;
        QTemporaryDir emptyAppDir;
        std::optional<ScopedEnv> appDir(std::in_place, "VANTOR_APP_DIR",
                                        emptyAppDir.path().toLocal8Bit());
        run.files.choose(run.env.path("new.VNPL"));
        run.expect("Welcome", next);
        const QString result = run.go();
        appDir.reset();
        QCOMPARE(result, QString());
        QCOMPARE(run.boxes.texts(),
                 QStringList{
                     "Unable to create project file. Detailed error message is The blank project " +
                     emptyAppDir.path() + "/blank.db is missing."});
        QCOMPARE(run.boxes.messages().first().icon, Common::MsgIcon::Critical);
        QVERIFY(!QFileInfo::exists(run.env.path("new.VNPL")));
        QCOMPARE(run.statusPath(), "No project open");
    }
};

QTEST_MAIN(TestWizards)
#include "test_wizards.moc"
