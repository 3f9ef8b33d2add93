#include "wizards/NewProject.h"

#include "common/Common.h"
#include "common/FileDialogs.h"
#include "shell/ErrorHandler.h"
#include "shell/frmMain.h"
#include "store/ModMain.h"
#include "store/Project.h"
#include "wizards/ProjectCalendar.h"
#include "wizards/ProjectScreens.h"
#include "wizards/WizardState.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

using Common::MsgBox;
using Common::MsgButtons;
using Common::MsgIcon;
using Common::MsgResult;

namespace ModMain {

namespace {
// Screen 6 is past the last screen: the wizard has all it needs.
constexpr qint16 kFinished = 6;

template <class Screen>
void showScreen(frmMain& main) {
    Screen screen(&main);
    // Window-modal, so the help window stays usable beside the wizard.
    screen.setWindowModality(Qt::WindowModal);
    screen.exec();
}

// The file-name step. Sets the cancel flag when the wizard cannot go on: the
// dialog was cancelled, or the file could not be made or opened (reported).
void chooseProjectFile(frmMain& main) {
    Wizard::State& s = Wizard::state();
    QString file = s.WizardFileName;
    // Start where people keep their documents, not wherever the program was started from.
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const QString initDir = QFileInfo(documents).isDir() ? documents : QDir::homePath();
    if (!Common::VBGetSaveFileName(file, nullptr, true, false, false, true,
                                   QStringLiteral("Vantor Timetable Project (*.VNPL)|*.VNPL"),
                                   nullptr, initDir, QStringLiteral("Save Project As"),
                                   QStringLiteral("VNPL"), &main)) {
        s.WizardCancel = true;
        return;
    }
    s.WizardFileName = file;
    ++s.WizardScreen;
    main.SaveTimetable();
    DB().DBClose();
    QString error;
    QString failure;
    if (!CopyBlankProject(file, &error))
        failure =
            QStringLiteral("Unable to create project file. Detailed error message is ") + error;
    else if (!DB().DBOpen(file))
        failure = OpenFailureText(file);
    if (!failure.isEmpty()) {
        MsgBox(failure, MsgButtons::Ok, MsgIcon::Critical);
        main.NoProject();
        s.WizardCancel = true;
        return;
    }
    main.ShowProjectPath(file);
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

void DoNewProject(frmMain& main) {
    Guard("ModMain", "DoNewProject", [&] {
        Wizard::ClearProjectWizard();
        Wizard::State& s = Wizard::state();
        if (!s.WizardProjectWelcome)
            s.WizardScreen = 2;
        while (!s.WizardCancel && s.WizardScreen != kFinished) {
            switch (s.WizardScreen) {
            case 1: showScreen<frmScr_Project_Welcome>(main); break;
            case 2: chooseProjectFile(main); break;
            case 3: showScreen<frmScr_Project_DOW>(main); break;
            case 4: showScreen<frmScr_Project_Hours>(main); break;
            case 5: showScreen<frmScr_Project_Complete>(main); break;
            default:
                // Back from the first screen: show it again.
                s.WizardScreen = 1;
                break;
            }
        }
        if (s.WizardCancel)
            return;

        if (!DB().IsDBOpen()) {
            MsgBox(OpenFailureText(s.WizardFileName), MsgButtons::Ok, MsgIcon::Critical);
            return;
        }
        Wizard::WriteProjectCalendar(s.WizardHours, s.WizardDOW);
        main.ProjectOpened();
        if (MsgBox(QStringLiteral("Vantor Planner is now ready to create your timetables. Would "
                                  "you like to create a timetable now?"),
                   MsgButtons::YesNo, MsgIcon::Question) == MsgResult::Yes) {
            if (QAction* a = main.command(QStringLiteral("mnuFileNew")); main.isBuilt(a))
                a->trigger();
        }
    });
}

} // namespace ModMain
