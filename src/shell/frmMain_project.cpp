// The main window's New Project, calendar set-up and Help commands; the work
// lives in the project wizard and the help window.

#include "shell/frmAbout.h"
#include "shell/frmHelp.h"
#include "shell/frmMain.h"
#include "shell/frmTip.h"
#include "wizards/NewProject.h"

#include <QAction>

void frmMain::mnuFileNewProject_Click() {
    ModMain::DoNewProject(*this);
}

void frmMain::mnuFileSetUpCalendar_Click() {
    ModMain::DoSetUpCalendar(*this);
}

void frmMain::StartNewTimetable() {
    if (mnuFileNew->isEnabled())
        mnuFileNew->trigger();
}

void frmMain::mnuHelpContents_Click() {
    frmHelp::ShowHelp(frmHelp::kContents);
}

void frmMain::mnuHelpGettingStarted_Click() {
    frmHelp::ShowHelp(frmHelp::kGettingStarted);
}

void frmMain::mnuHelpTips_Click() {
    frmTip tips(this);
    tips.exec();
}

void frmMain::mnuHelpAbout_Click() {
    frmAbout about(this);
    about.exec();
}
