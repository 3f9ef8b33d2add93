#pragma once
// The program's start-up: command line, main window, project.

class frmMain;

namespace ModMain {

// Runs the program; returns its exit code.
int Main(int argc, char** argv);

// On the very first start: offers the getting-started tutorial, then New
// Project. Does nothing on later starts.
void DoFirstRun(frmMain& main);

// Once the window is on screen with its project: word of a crash in the last
// run, the tip of the day, then the first-run prompt.
void ShowStartupMessages(frmMain& main);

} // namespace ModMain
