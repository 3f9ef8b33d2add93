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

bool RunNewTimetableScreens(QWidget* parent) {
    State& w = state();
    w.WizardCancel = false;
    w.WizardScreen = TimetableScreen::Welcome;
    w.WizardDOWIndex = 0;
    w.WizardDOW.clear();
    w.WizardHoursIndex = 0;
    w.WizardHourIncIndex = 0;
    w.WizardHours.clear();
    w.WizardStyleID = 1;

    while (!w.WizardCancel && w.WizardScreen != TimetableScreen::Finished) {
        // The type screen and the days and hours screens are skipped: the
        // caller chose the type and a timetable takes the project's calendar.
        if (w.WizardScreen == TimetableScreen::Type)
            w.WizardScreen = TimetableScreen::Who;
        else if (w.WizardScreen == TimetableScreen::Hours)
            w.WizardScreen = TimetableScreen::Complete;
        // A user who asked not to see the welcome again starts at the owner.
        if (w.WizardScreen == TimetableScreen::Welcome && !w.WizardShowWelcome) {
            w.WizardScreen = TimetableScreen::Who;
            continue;
        }
        if (auto screen = screenFor(w.WizardScreen, parent))
            screen->exec();
    }
    return !w.WizardCancel;
}

} // namespace Wizard
