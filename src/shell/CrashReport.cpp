#include "shell/CrashReport.h"

#include "common/Common.h"
#include "common/ErrorHandler.h"
#include "store/ModMain.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <atomic>
#include <cstring>
#include <execinfo.h>
#include <fcntl.h>
#include <pthread.h>
#include <unistd.h>

namespace CrashReport {

namespace {

struct Name {
    quint32 code;
    const char* name;
};

// Codes named for the signal alone, whatever its si_code.
constexpr quint32 kAnyCode = 0xffff;

// The fault names by this platform's signals and their codes. A few
// names have no signal here (a denormal operand, a float stack check, an
// invalid disposition or handle, a guard page): those faults do not occur.
constexpr Name kNames[] = {
    {Code(SIGSEGV, SEGV_MAPERR), "Access Violation"},
    {Code(SIGSEGV, SEGV_ACCERR), "Access Violation"},
    {kStackOverflow, "Stack Overflow"},
    {Code(SIGSEGV, kAnyCode), "Access Violation"},
    {Code(SIGBUS, BUS_ADRALN), "Data Type Misalignment"},
    {Code(SIGBUS, BUS_ADRERR), "In Page Error"},
    {Code(SIGBUS, BUS_OBJERR), "In Page Error"},
    {Code(SIGBUS, kAnyCode), "In Page Error"},
    {Code(SIGTRAP, TRAP_BRKPT), "Breakpoint"},
    {Code(SIGTRAP, SI_KERNEL), "Breakpoint"},
    {Code(SIGTRAP, TRAP_TRACE), "Single Step"},
    {Code(SIGFPE, FPE_INTDIV), "Integer Divide By Zero"},
    {Code(SIGFPE, FPE_INTOVF), "Integer Overflow"},
    {Code(SIGFPE, FPE_FLTDIV), "Divide By Zero"},
    {Code(SIGFPE, FPE_FLTOVF), "Float Overflow"},
    {Code(SIGFPE, FPE_FLTUND), "Float Underflow"},
    {Code(SIGFPE, FPE_FLTRES), "Floating Point Inexact Result"},
    {Code(SIGFPE, FPE_FLTINV), "Invalid Operation"},
    {Code(SIGFPE, FPE_FLTSUB), "Array Bounds Exceeded"},
    {Code(SIGILL, ILL_PRVOPC), "Privileged Instruction"},
    {Code(SIGILL, ILL_PRVREG), "Privileged Instruction"},
    {Code(SIGILL, kAnyCode), "Illegal Instruction"},
    {Code(SIGABRT, kAnyCode), "Non Continuable Exception"},
    {Code(SIGINT, kAnyCode), "Control-C Exit"},
};

constexpr int kFatalSignals[] = {SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGTRAP, SIGABRT, SIGINT};

// Exact code first, then the signal's catch-all. Safe in a signal handler.
const char* lookUp(quint32 code) {
    for (const Name& n : kNames)
        if (n.code == code)
            return n.name;
    for (const Name& n : kNames)
        if (n.code == ((code & 0xffff0000u) | kAnyCode))
            return n.name;
    return nullptr;
}

// Everything the handler needs is prepared while it is still safe to
// allocate: it only copies these bytes out.
char g_reportPath[4096];
char g_markerPath[4096];
char g_project[2][4096];
std::atomic<int> g_projectSlot{0};
uintptr_t g_stackLow = 0;
alignas(16) char g_altStack[256 * 1024];

void copyPath(char* target, const QString& path) {
    const QByteArray bytes = QFile::encodeName(path);
    const size_t n = std::min<size_t>(size_t(bytes.size()), 4095);
    std::memcpy(target, bytes.constData(), n);
    target[n] = '\0';
}

QString markerFile() {
    return ReportFolder() + QStringLiteral("/last-crash");
}

void put(int fd, const char* text) {
    if (!text)
        text = "(none)";
    size_t left = std::strlen(text);
    while (left > 0) {
        const ssize_t n = ::write(fd, text, left);
        if (n <= 0)
            return;
        text += n;
        left -= size_t(n);
    }
}

void putHex(int fd, quint32 value) {
    char digits[9];
    for (int i = 7; i >= 0; --i) {
        digits[i] = "0123456789ABCDEF"[value & 0xf];
        value >>= 4;
    }
    digits[8] = '\0';
    put(fd, digits);
}

// A fault within this distance of the stack's end is the stack running out.
constexpr uintptr_t kStackMargin = 256 * 1024;

bool isStackOverflow(const void* address) {
    const auto a = reinterpret_cast<uintptr_t>(address);
    return g_stackLow != 0 && a + kStackMargin >= g_stackLow && a < g_stackLow + kStackMargin;
}

void writeReport(int fd, int signal, quint32 code) {
    put(fd, "Vantor Planner closed unexpectedly.\n\nFault: ");
    if (const char* name = lookUp(code)) {
        put(fd, name);
    } else {
        put(fd, "Unknown (&H");
        putHex(fd, code);
        put(fd, ")");
    }
    put(fd, "\nCode: &H");
    putHex(fd, code);
    put(fd, "\nSignal: ");
    put(fd, sigabbrev_np(signal));
    put(fd, "\nModule last entered: ");
    put(fd, LastEntered::Module());
    put(fd, "\nProcedure last entered: ");
    put(fd, LastEntered::Procedure());
    put(fd, "\nProject: ");
    const char* project = g_project[g_projectSlot.load()];
    put(fd, project[0] ? project : "(none open)");
    put(fd, "\nVersion: " VANTOR_VERSION "\n\nBacktrace:\n");
    void* frames[64];
    backtrace_symbols_fd(frames, backtrace(frames, 64), fd);
}

} // namespace

QString ExceptionName(quint32 code) {
    if (const char* name = lookUp(code))
        return QString::fromLatin1(name);
    return QStringLiteral("Unknown (&H%1)")
        .arg(QString::number(code, 16).toUpper().rightJustified(8, QLatin1Char('0')));
}

void vbcsExceptionFilter(int signal, siginfo_t* info, void*) {
    quint32 code = Code(signal, info ? info->si_code : 0);
    if (signal == SIGSEGV && info && isStackOverflow(info->si_addr))
        code = kStackOverflow;
    const int fd = ::open(g_reportPath, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (fd >= 0) {
        writeReport(fd, signal, code);
        ::close(fd);
        // Written last: the next start only announces a finished report.
        const int marker = ::open(g_markerPath, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        if (marker >= 0) {
            put(marker, g_reportPath);
            ::close(marker);
        }
    }
    // The handler was reset on entry: the signal now ends the program as if
    // nothing had caught it (it is delivered once the handler returns).
    ::raise(signal);
}

QString ReportFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/vantor-planner/crash-reports");
}

void Install() {
    const QString folder = ReportFolder();
    QDir().mkpath(folder);
    const QString name =
        QStringLiteral("crash-%1-%2.txt")
            .arg(QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss")))
            .arg(QCoreApplication::applicationPid());
    copyPath(g_reportPath, folder + QLatin1Char('/') + name);
    copyPath(g_markerPath, markerFile());

    pthread_attr_t attr;
    if (pthread_getattr_np(pthread_self(), &attr) == 0) {
        void* low = nullptr;
        size_t size = 0;
        if (pthread_attr_getstack(&attr, &low, &size) == 0)
            g_stackLow = reinterpret_cast<uintptr_t>(low);
        pthread_attr_destroy(&attr);
    }
    // The first backtrace loads the unwinder, which may allocate: do it now.
    void* frames[4];
    backtrace(frames, 4);

    stack_t stack{};
    stack.ss_sp = g_altStack;
    stack.ss_size = sizeof g_altStack;
    sigaltstack(&stack, nullptr);

    struct sigaction action {};
    action.sa_sigaction = vbcsExceptionFilter;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK | SA_RESETHAND;
    sigemptyset(&action.sa_mask);
    for (const int signal : kFatalSignals)
        sigaction(signal, &action, nullptr);
}

void SetProject(const QString& path) {
    const int next = 1 - g_projectSlot.load();
    copyPath(g_project[next], QDir::toNativeSeparators(path));
    g_projectSlot.store(next);
}

QString TakePendingReport() {
    QFile marker(markerFile());
    if (!marker.open(QIODevice::ReadOnly))
        return QString();
    const QString report = QFile::decodeName(marker.readAll());
    marker.close();
    marker.remove();
    return QFile::exists(report) ? report : QString();
}

void AnnouncePendingReport() {
    const QString report = TakePendingReport();
    if (report.isEmpty())
        return;
    QString text = QStringLiteral("Vantor Planner closed unexpectedly the last time it ran. A "
                                  "report of what happened was saved as:\n\n%1\n\nPlease send it "
                                  "to whoever supports Vantor Planner for you.")
                       .arg(QDir::toNativeSeparators(report));
    if (ModMain::ProjectIsOpen())
        text += QStringLiteral("\n\nYour last project has been opened again. Every change "
                               "finished before the problem is in it.");
    Common::MsgBox(text, Common::MsgButtons::Ok, Common::MsgIcon::Exclamation);
}

} // namespace CrashReport
