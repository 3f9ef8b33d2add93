#include "common/ErrorHandler.h"

#include "common/Common.h"
#include "common/ErrorReportPlugin.h"

#include <atomic>
#include <cstring>

namespace {
ErrorReportFactory& reportFactory() {
    static ErrorReportFactory factory;
    return factory;
}
} // namespace

namespace {
int g_actionDepth = 0;
bool g_actionFailed = false;
// Read by the crash handler, where only lock-free loads are safe.
std::atomic<const char*> g_lastModule{nullptr};
std::atomic<const char*> g_lastProcedure{nullptr};
} // namespace

void LastEntered::Set(const char* module, const char* procedure) {
    g_lastModule.store(module, std::memory_order_relaxed);
    g_lastProcedure.store(procedure, std::memory_order_relaxed);
}

const char* LastEntered::Module() {
    return g_lastModule.load(std::memory_order_relaxed);
}

const char* LastEntered::Procedure() {
    return g_lastProcedure.load(std::memory_order_relaxed);
}

ActionScope::ActionScope() {
    ++g_actionDepth;
}

ActionScope::~ActionScope() {
    if (--g_actionDepth == 0)
        g_actionFailed = false;
}

bool ActionScope::Active() {
    return g_actionDepth > 0;
}

bool ActionScope::Failed() {
    return g_actionDepth > 0 && g_actionFailed;
}

void ActionScope::MarkFailed() {
    if (g_actionDepth > 0)
        g_actionFailed = true;
}

SideTask::SideTask() : m_outerFailed(g_actionFailed) {
    g_actionFailed = false;
}

SideTask::~SideTask() {
    g_actionFailed = m_outerFailed;
}

void SetErrorReportFactory(ErrorReportFactory factory) {
    reportFactory() = std::move(factory);
}

int ErrorHandler(const QString& module, const QString& procedure, int line, const VbError& error,
                 const VariableDump& variables) {
    if (ActionScope::Failed())
        return 0;
    ActionScope::MarkFailed();
    std::unique_ptr<ErrorReportObject> reporter;
    // A component that is missing or fails to start is no error of its own:
    // the box is shown instead.
    try {
        reporter = reportFactory() ? reportFactory()() : CreateInstalledReportObject();
    } catch (...) {
        reporter.reset();
    }
    if (reporter) {
        ErrorReport report;
        report.module = module;
        report.procedure = procedure;
        report.line = line;
        report.number = error.number();
        report.description = error.description();
        report.source = error.source();
        VariableDump dump = variables;
        AddGlobalVariables(dump);
        report.variables = dump.text();
        report.appTitle = QStringLiteral("Timetable");
        report.version = QStringLiteral("%1.%2.%3")
                             .arg(VANTOR_VERSION_MAJOR)
                             .arg(VANTOR_VERSION_MINOR)
                             .arg(VANTOR_VERSION_PATCH);
        reporter->ErrorHandler(report);
        return reporter->Action();
    }

    const QString crlf = QStringLiteral("\r\n");
    const QString text =
        QStringLiteral("Timetable has encountered a problem. We are sorry for the inconvenience.") +
        crlf + crlf + QStringLiteral("Module: ") + module + crlf + QStringLiteral("Procedure: ") +
        procedure + crlf + QStringLiteral("Line Number: ") + QString::number(line) + crlf + crlf +
        error.description() + QStringLiteral(" (") + QString::number(error.number()) +
        QStringLiteral(")");
    Common::MsgBox(text, Common::MsgButtons::Ok, Common::MsgIcon::Critical,
                   QStringLiteral("Application Error"));
    return 0;
}

void ReportCurrentException(const char* module, const char* procedure,
                            const std::source_location& guard, const VariableDump& variables) {
    const QString mod = QString::fromLatin1(module);
    const QString proc = QString::fromLatin1(procedure);
    const int guardLine = static_cast<int>(guard.line());
    try {
        throw;
    } catch (const ActionAborted&) {
        // Already told.
    } catch (const VbError& e) {
        // Raised deeper down, the error's own line would point into another
        // file; the guard's line is the one inside this procedure.
        const bool here = e.file() && std::strcmp(e.file(), guard.file_name()) == 0;
        ErrorHandler(mod, proc, here ? e.line() : guardLine, e, variables);
    } catch (const std::exception& e) {
        ErrorHandler(mod, proc, guardLine,
                     VbError(VbErr::Internal, mod, QString::fromLocal8Bit(e.what())), variables);
    } catch (...) {
        ErrorHandler(mod, proc, guardLine,
                     VbError(VbErr::Internal, mod, QStringLiteral("Unknown error")), variables);
    }
}
