#include "wizards/NewProject.h"

#include "common/Common.h"
#include "common/ErrorHandler.h"
#include "common/FileDialogs.h"
#include "store/ModMain.h"
#include "store/Project.h"
#include "store/Transaction.h"
#include "wizards/ProjectCalendar.h"
#include "wizards/ProjectScreens.h"
#include "wizards/WizardState.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

using Common::MsgBox;
using Common::MsgButtons;
using Common::MsgIcon;
using Common::MsgResult;

namespace ModMain {

namespace ProjectScreen = Wizard::ProjectScreen;

namespace {
template <class Screen> void showScreen(ProjectHost& host) {
    Screen screen(host.HostWindow());
    // Window-modal, so the help window stays usable beside the wizard.
    screen.setWindowModality(Qt::WindowModal);
    screen.exec();
}

bool samePath(const QString& a, const QString& b) {
    if (a.isEmpty() || b.isEmpty())
        return false;
    const QFileInfo fa(a), fb(b);
    const QString ca = fa.canonicalFilePath(), cb = fb.canonicalFilePath();
    return !ca.isEmpty() && !cb.isEmpty() ? ca == cb
                                          : fa.absoluteFilePath() == fb.absoluteFilePath();
}

// The file-name step. Sets the cancel flag when the wizard cannot go on: the
// dialog was cancelled, or the file could not be made or opened (reported).
void chooseProjectFile(ProjectHost& host) {
    Wizard::State& s = Wizard::state();
    QString file = s.WizardFileName;
    // Start where people keep their documents, not wherever the program was started from.
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const QString initDir = QFileInfo(documents).isDir() ? documents : QDir::homePath();
    if (!Common::VBGetSaveFileName(file, nullptr, true, false, false, true,
                                   QStringLiteral("Vantor Timetable Project (*.VNPL)|*.VNPL"),
                                   nullptr, initDir, QStringLiteral("Save Project As"),
                                   QStringLiteral("VNPL"), host.HostWindow())) {
        s.WizardCancel = true;
        return;
    }
    // Replacing the open project under itself would lose it: ask again.
    if (samePath(file, DB().GetDBFilename())) {
        MsgBox(QStringLiteral("%1 is the project that is open now, so it cannot be replaced by a "
                              "new one. Please choose another name.")
                   .arg(QDir::toNativeSeparators(file)),
               MsgButtons::Ok, MsgIcon::Exclamation);
        return;
    }
    s.WizardFileName = file;
    s.WizardScreen = ProjectScreen::FileName + 1;
    host.SaveTimetable();
    DB().DBClose();
    host.ProjectClosed();
    QString error;
    QString failure;
    if (!CopyBlankProject(file, &error))
        failure =
            QStringLiteral("Unable to create project file. Detailed error message is ") + error;
    else if (!OpenProject(file))
        failure = OpenFailureText(file);
    if (!failure.isEmpty()) {
        MsgBox(failure, MsgButtons::Ok, MsgIcon::Critical);
        host.ProjectClosed();
        s.WizardCancel = true;
        return;
    }
    host.ProjectOpened();
}

// Shows the screens from first to the completion screen, by number, until
// the user finishes or cancels. Returns whether the wizard finished.
bool runScreens(ProjectHost& host, qint16 first) {
    Wizard::State& s = Wizard::state();
    while (!s.WizardCancel && s.WizardScreen != ProjectScreen::Finished) {
        switch (s.WizardScreen) {
        case ProjectScreen::Welcome:
            showScreen<frmScr_Project_Welcome>(host);
            break;
        case ProjectScreen::FileName:
            chooseProjectFile(host);
            break;
        case ProjectScreen::Days:
            showScreen<frmScr_Project_DOW>(host);
            break;
        case ProjectScreen::Hours:
            showScreen<frmScr_Project_Hours>(host);
            break;
        case ProjectScreen::Complete:
            showScreen<frmScr_Project_Complete>(host);
            break;
        default:
            // Back from the first screen: show it again.
            s.WizardScreen = first;
            break;
        }
        if (s.WizardScreen < first)
            s.WizardScreen = first;
    }
    return !s.WizardCancel;
}

void askForTimetable(ProjectHost& host) {
    if (MsgBox(QStringLiteral("Vantor Planner is now ready to create your timetables. Would you "
                              "like to create a timetable now?"),
               MsgButtons::YesNo, MsgIcon::Question) == MsgResult::Yes)
        host.StartNewTimetable();
}
} // namespace

bool CopyBlankProject(const QString& target, QString* error) {
    QFile blank(Common::AppDir() + QStringLiteral("/blank.db"));
    if (!blank.exists()) {
        *error = QStringLiteral("The blank project ") + blank.fileName() +
                 QStringLiteral(" is missing.");
        return false;
    }
    if (QFileInfo::exists(target) && !QFile::remove(target)) {
        *error = QFile(target).errorString();
        if (error->isEmpty() || QFileInfo(target).isDir())
            *error = target + QStringLiteral(" cannot be replaced.");
        return false;
    }
    if (!blank.copy(target)) {
        *error = blank.errorString();
        return false;
    }
    // An installed blank.db may be read-only; the new project must not be.
    QFile(target).setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup |
                                 QFile::ReadOther);
    return true;
}

void DoNewProject(ProjectHost& host) {
    Guard("ModMain", "DoNewProject", [&] {
        Wizard::ClearProjectWizard();
        Wizard::State& s = Wizard::state();
        if (!s.WizardProjectWelcome)
            s.WizardScreen = ProjectScreen::FileName;
        if (!runScreens(host, ProjectScreen::Welcome))
            return;

        if (!DB().IsDBOpen()) {
            MsgBox(OpenFailureText(s.WizardFileName), MsgButtons::Ok, MsgIcon::Critical);
            return;
        }
        const ActionName name(QStringLiteral("Set Up Days and Periods"));
        Wizard::WriteProjectCalendar(s.WizardHours, s.WizardDOW);
        host.ProjectOpened();
        askForTimetable(host);
    });
}

bool DoSetUpCalendar(ProjectHost& host) {
    return Guard("ModMain", "DoSetUpCalendar", [&] {
        Wizard::ClearProjectWizard();
        Wizard::State& s = Wizard::state();
        s.WizardFileName = DB().GetDBFilename();
        s.WizardCalendarOnly = true;
        s.WizardScreen = ProjectScreen::Days;
        if (!runScreens(host, ProjectScreen::Days))
            return false;
        const ActionName name(QStringLiteral("Set Up Days and Periods"));
        Wizard::WriteProjectCalendar(s.WizardHours, s.WizardDOW);
        host.ProjectOpened();
        askForTimetable(host);
        return true;
    });
}

} // namespace ModMain
