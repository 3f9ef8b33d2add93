// frmMain's printing commands; the layout, the preview and the writers live
// in print/.

#include "shell/frmMain.h"

#include "common/Common.h"
#include "common/ErrorHandler.h"
#include "print/frmPrintPreview.h"
#include "timetable/TimetableState.h"

#include <QComboBox>

void frmMain::mnuFilePrintPreview_Click() {
    ShowPrintPreview(frmPrintPreview::ToPrinter);
}

void frmMain::mnuFileExportPdf_Click() {
    ShowPrintPreview(frmPrintPreview::ToPdf);
}

void frmMain::ShowPrintPreview(int printTo) {
    Guard("frmMain", "mnuFilePrintPreview_Click", [&] {
        if (Timetable::current().ID == 0) {
            Common::MsgBox(QStringLiteral("No timetable selected to print. Please select a "
                                          "timetable to continue (press the View Table button on "
                                          "the toolbar)."),
                           Common::MsgButtons::Ok, Common::MsgIcon::Exclamation);
            return;
        }
        SaveTimetable();
        frmPrintPreview dialog(Timetable::current().ID, this);
        dialog.cboPrintTo->setCurrentIndex(printTo);
        dialog.exec();
    });
}
