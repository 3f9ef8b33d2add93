#pragma once
// What happens when the program is killed by a fault it cannot go on from.
// vbcsExceptionFilter names the fault, writes a crash report into the user's
// data folder with nothing but async-signal-safe calls, and lets the fault end
// the program. The next start finds the report, says so, and opens the last
// project again: every action is a transaction, so the file is intact.

#include <QString>
#include <QtGlobal>
#include <csignal>

class frmMain;

namespace CrashReport {

// An exception code on this platform: the signal in the high half, the
// signal's si_code in the low half.
constexpr quint32 Code(int signal, int siCode) {
    return (quint32(signal) << 16) | quint16(siCode);
}
// A segmentation fault at the end of the stack.
inline constexpr quint32 kStackOverflow = Code(SIGSEGV, 0x7fff);

// The fault's name by the table; "Unknown (&H0000000F)" for any other code.
QString ExceptionName(quint32 code);

// The signal handler for every fatal signal.
void vbcsExceptionFilter(int signal, siginfo_t* info, void* context);

// Where reports go: the user's data folder.
QString ReportFolder();
// Installs vbcsExceptionFilter for the fatal signals and Ctrl+C, on its own
// stack so a stack overflow can still be reported.
void Install();
// The project named in a report; kept up to date as projects open and close.
void SetProject(const QString& path);

// The report a crash left since the last start, or empty; once taken it is
// not announced again.
QString TakePendingReport();
// Tells the user that the last run ended unexpectedly and where its report is.
void AnnouncePendingReport();

} // namespace CrashReport
