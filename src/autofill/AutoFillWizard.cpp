#include "autofill/AutoFillWizard.h"

#include "autofill/AutoFillScreens.h"
#include "autofill/AutoFillState.h"
#include "autofill/FillChoices.h"
#include "autofill/frmAutoFill_Progress.h"
#include "common/Common.h"
#include "common/ErrorHandler.h"

#include <memory>

namespace AutoFill {

namespace {
std::unique_ptr<QDialog> screenFor(qint16 number, QWidget* parent) {
    switch (number) {
    case Screen::Welcome:
        return std::make_unique<frmScr_AutoFill_Welcome>(parent);
    case Screen::Timetable:
        return std::make_unique<frmScr_AutoFill_Timetable>(parent);
    case Screen::Subjects:
        return std::make_unique<frmScr_AutoFill_Subjects>(parent);
    case Screen::Tutors:
        return std::make_unique<frmScr_AutoFill_Tutors>(parent);
    case Screen::Rooms:
        return std::make_unique<frmScr_AutoFill_Rooms>(parent);
    case Screen::Method:
        return std::make_unique<frmScr_AutoFill_Method>(parent);
    case Screen::Complete:
        return std::make_unique<frmScr_AutoFill_Complete>(parent);
    default:
        return nullptr;
    }
}
} // namespace

void RunAutoFillWizard(QWidget* parent, const WizardHost& host, qint32 preferredTimetable) {
    using Common::MsgBox;
    bool createTimetable = false;
    bool start = false;
    Guard("frmMain", "mnuToolsAutoFill_Click", [&] {
        if (ModMain::ClassTimetableList().size() <= 1) {
            createTimetable =
                MsgBox(QStringLiteral("You must create a class timetable before you can Auto "
                                      "Fill it. Would you like to create a class timetable now?"),
                       Common::MsgButtons::YesNo,
                       Common::MsgIcon::Question) == Common::MsgResult::Yes;
            return;
        }
        if (ModMain::CountFillSubjects() == 0) {
            MsgBox(QStringLiteral("No subjects exist to fill the timetable with. Please create "
                                  "some subjects to continue."),
                   Common::MsgButtons::Ok, Common::MsgIcon::Critical);
            return;
        }
        start = true;
    });
    if (createTimetable && host.newClassTimetable)
        host.newClassTimetable();
    if (!start)
        return;

    Reset();
    State& a = state();
    a.PreferredWhoID = preferredTimetable;
    while (!a.AutoFill_Cancel && a.AutoFill_Screen != Screen::Finished) {
        // After "do not show again" the welcome is passed over, on Back too.
        if (a.AutoFill_Screen == Screen::Welcome && !a.AutoFill_ShowWelcome) {
            a.AutoFill_Screen = Screen::Timetable;
            continue;
        }
        if (auto screen = screenFor(a.AutoFill_Screen, parent))
            screen->exec();
        else
            a.AutoFill_Cancel = true;
    }
    if (a.AutoFill_Cancel)
        return;
    frmAutoFill_Progress progress(host.loadTimetable, parent);
    progress.exec();
}

} // namespace AutoFill
