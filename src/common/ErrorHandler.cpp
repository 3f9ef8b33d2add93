#include "common/ErrorHandler.h"

#include "common/Common.h"

namespace {
ErrorReportFactory& reportFactory() {
    static ErrorReportFactory factory;
    return factory;
}
} // namespace

namespace {
int g_actionDepth = 0;
bool g_actionFailed = false;
} // namespace

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

QString BuildVariableDump(const QString& locals, const QString& moduleVars, const QString& globals,
                          const QString& parameters) {
    return QStringLiteral("<Variables><LocalVariables>") + locals +
           QStringLiteral("</LocalVariables><ModuleVariables>") + moduleVars +
           QStringLiteral("</ModuleVariables><GlobalVariables>") + globals +
           QStringLiteral("</GlobalVariables></Variables><Parameters>") + parameters +
           QStringLiteral("</Parameters>");
}

int ErrorHandler(const QString& module, const QString& procedure, int line, const VbError& error,
                 const QString& variables) {
    if (ActionScope::Failed())
        return 0;
    ActionScope::MarkFailed();
    std::unique_ptr<ErrorReportObject> reporter;
    if (reportFactory()) {
        // A component that fails to start is no error of its own: fall back to the box.
        try {
            reporter = reportFactory()();
        } catch (...) {
            reporter.reset();
        }
    }
    if (reporter) {
        ErrorReport report;
        report.module = module;
        report.procedure = procedure;
        report.line = line;
        report.number = error.number();
        report.description = error.description();
        report.source = error.source();
        report.variables = variables.isEmpty() ? BuildVariableDump() : variables;
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

void ReportCurrentException(const char* module, const char* procedure) {
    const QString mod = QString::fromLatin1(module);
    const QString proc = QString::fromLatin1(procedure);
    try {
        throw;
    } catch (const ActionAborted&) {
        // Already told.
    } catch (const VbError& e) {
        ErrorHandler(mod, proc, e.line(), e);
    } catch (const std::exception& e) {
        ErrorHandler(mod, proc, 0, VbError(VbErr::Internal, mod, QString::fromLocal8Bit(e.what())));
    } catch (...) {
        ErrorHandler(mod, proc, 0, VbError(VbErr::Internal, mod, QStringLiteral("Unknown error")));
    }
}
