#include "wizards/NewTimetableWizard.h"

#include "wizards/WizardState.h"
#include "wizards/frmScr_CreateTT.h"

#include <memory>

namespace Wizard {

namespace {
constexpr qint16 kFinished = 8;

std::unique_ptr<QDialog> screenFor(qint16 number, QWidget* parent) {
    switch (number) {
    case 1: return std::make_unique<frmScr_CreateTT_Welcome>(parent);
    case 3: return std::make_unique<frmScr_CreateTT_Who>(parent);
    case 4: return std::make_unique<frmScr_CreateTT_Style>(parent);
    case 7: return std::make_unique<frmScr_CreateTT_Complete>(parent);
    default: return nullptr;
    }
}
} // namespace

bool RunNewTimetableScreens(QWidget* parent) {
    State& w = state();
    w.WizardCancel = false;
    w.WizardScreen = 1;
    w.WizardDOWIndex = 0;
    w.WizardDOW.clear();
    w.WizardHoursIndex = 0;
    w.WizardHourIncIndex = 0;
    w.WizardHours.clear();
    w.WizardStyleID = 1;

    while (!w.WizardCancel && w.WizardScreen != kFinished) {
        // The type screen and the days and hours screens are skipped: the
        // caller chose the type and a timetable takes the project's calendar.
        if (w.WizardScreen == 2)
            w.WizardScreen = 3;
        else if (w.WizardScreen == 5)
            w.WizardScreen = 7;
        // A user who asked not to see the welcome again starts at the owner.
        if (w.WizardScreen == 1 && !w.WizardShowWelcome) {
            w.WizardScreen = 3;
            continue;
        }
        if (auto screen = screenFor(w.WizardScreen, parent))
            screen->exec();
    }
    return !w.WizardCancel;
}

} // namespace Wizard
