// frmMain's Auto Fill commands; the wizard, the fill and the method dialogs
// live in autofill/.

#include "shell/frmMain.h"

#include "autofill/AutoFillWizard.h"
#include "autofill/frmDefineFillMethods.h"
#include "timetable/TimetableState.h"

void frmMain::mnuToolsAutoFill_Click() {
    const Timetable::State& shown = Timetable::current();
    StartAutoFill(shown.ID != 0 && shown.Type == QLatin1String("Class") ? shown.ID : -1);
}

void frmMain::StartAutoFill(qint32 preferredTimetable) {
    AutoFill::WizardHost host;
    host.newClassTimetable = [this] { mnuFileNew_Click(); };
    host.loadTimetable = [this](qint32 id) { LoadTimetable(id); };
    AutoFill::RunAutoFillWizard(this, host, preferredTimetable);
}

void frmMain::mnuToolsFillMethods_Click() {
    frmDefineFillMethods dialog(this);
    dialog.exec();
}
