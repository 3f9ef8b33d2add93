// The main window's New Project and Help commands; the work lives in the
// project wizard and the help window.

#include "shell/frmHelp.h"
#include "shell/frmMain.h"
#include "wizards/NewProject.h"

void frmMain::mnuFileNewProject_Click() {
    ModMain::DoNewProject(*this);
}

void frmMain::mnuHelpContents_Click() {
    frmHelp::ShowHelp(frmHelp::kContents);
}

void frmMain::mnuHelpGettingStarted_Click() {
    frmHelp::ShowHelp(frmHelp::kGettingStarted);
}
