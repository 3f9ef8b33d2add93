#pragma once
// The program's start-up: command line, main window, project.

namespace ModMain {

// Runs the program; returns its exit code.
int Main(int argc, char** argv);

// True when started from a development build tree (VANTOR_DEVELOPMENT set),
// recorded once at start-up for the error reporter.
bool RunningFromIDE();

} // namespace ModMain
