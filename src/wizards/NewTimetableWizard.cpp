#include "wizards/NewTimetableWizard.h"

#include "wizards/WizardState.h"
#include "wizards/frmScr_CreateTT.h"

#include <memory>

namespace Wizard {

namespace {
std::unique_ptr<QDialog> screenFor(qint16 number, QWidget* parent) {
    switch (number) {
    case TimetableScreen::Welcome:
        return std::make_unique<frmScr_CreateTT_Welcome>(parent);
    case TimetableScreen::Type:
        return std::make_unique<frmScr_CreateTT_Type>(parent);
    case TimetableScreen::Who:
        return std::make_unique<frmScr_CreateTT_Who>(parent);
    case TimetableScreen::Style:
        return std::make_unique<frmScr_CreateTT_Style>(parent);
    case TimetableScreen::Complete:
        return std::make_unique<frmScr_CreateTT_Complete>(parent);
    default:
        return nullptr;
    }
}
} // namespace

bool RunNewTimetableScreens(QWidget* parent, bool askKind) {
    State& w = state();
    w.WizardCancel = false;
    w.WizardScreen = TimetableScreen::Welcome;
    w.WizardDOWIndex = 0;
    w.WizardDOW.clear();
    w.WizardHoursIndex = 0;
    w.WizardHourIncIndex = 0;
    w.WizardHours.clear();
    w.WizardStyleID = 1;

    qint16 shown = 0; // the screen shown last; 0 before the first
    while (!w.WizardCancel && w.WizardScreen != TimetableScreen::Finished) {
        const qint16 at = w.WizardScreen;
        const bool back = at < shown;
        // The days and hours screens are never shown (a timetable takes the
        // project's calendar), nor the kind when the caller chose it; they are
        // passed in the way the user is going, so Back goes back.
        const bool passed = at == TimetableScreen::Hours || at == TimetableScreen::Days ||
                            (at == TimetableScreen::Type && !askKind) ||
                            // Asked not to see it again: the welcome only on the way back.
                            (at == TimetableScreen::Welcome && !w.WizardShowWelcome && !back);
        if (passed) {
            w.WizardScreen = back ? at - 1 : at + 1;
            if (w.WizardScreen < TimetableScreen::Welcome)
                w.WizardScreen = TimetableScreen::Welcome;
            continue;
        }
        auto screen = screenFor(at, parent);
        if (!screen)
            return false;
        screen->exec();
        shown = at;
    }
    return !w.WizardCancel;
}

} // namespace Wizard
