#pragma once
// The one place unexpected errors end up. A registered report object receives
// them; without one the user sees the fixed "Application Error" box.
//
// One user action shows at most one box: the outermost Guard is the action,
// and once it has reported an error, later reports in it are dropped and the
// store runs no further statement for it (see ActionScope).

#include "common/VbError.h"

#include <QString>
#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

struct ErrorReport {
    QString module;
    QString procedure;
    int line = 0;
    int number = 0;
    QString description;
    QString source;
    QString variables; // the variable dump, sections in fixed order
    QString appTitle;  // "Timetable"
    QString version;   // major.minor.revision
};

// What an installed error-report component offers.
class ErrorReportObject {
public:
    virtual ~ErrorReportObject() = default;
    virtual void ErrorHandler(const ErrorReport& report) = 0;
    // How the failing procedure goes on; the program always returns the
    // procedure's default result and keeps running.
    virtual int Action() const = 0;
};

using ErrorReportFactory = std::function<std::unique_ptr<ErrorReportObject>()>;

// Installs the component that creates report objects; empty removes it.
void SetErrorReportFactory(ErrorReportFactory factory);

// The variable dump with its sections in their fixed order.
QString BuildVariableDump(const QString& locals = QString(), const QString& moduleVars = QString(),
                          const QString& globals = QString(),
                          const QString& parameters = QString());

// The user action running now: the outermost Guard opens it. After its first
// reported error it has failed, and what it still tries is skipped quietly.
class ActionScope {
public:
    ActionScope();
    ~ActionScope();
    ActionScope(const ActionScope&) = delete;
    ActionScope& operator=(const ActionScope&) = delete;

    static bool Active();
    // Whether the running action has reported an error (or been refused).
    static bool Failed();
    // The action cannot go on: what it still tries does nothing.
    static void MarkFailed();
};

// A side task of an action (saving sizes on the way to another timetable):
// its failure is reported, but the action it serves goes on.
class SideTask {
public:
    SideTask();
    ~SideTask();
    SideTask(const SideTask&) = delete;
    SideTask& operator=(const SideTask&) = delete;

private:
    bool m_outerFailed;
};

// Thrown to leave an action that has already told the user why it stopped;
// Guard ends the action without a second report.
struct ActionAborted {};

// Reports one error; returns the report object's Action, or 0 when the
// fallback box was shown. Within an action that has failed already, nothing
// is shown.
int ErrorHandler(const QString& module, const QString& procedure, int line, const VbError& error,
                 const QString& variables = QString());

// Reports the exception being handled as coming from module/procedure.
// Call only inside a catch block.
void ReportCurrentException(const char* module, const char* procedure);

// Runs f; an exception is reported as coming from module/procedure and the
// fallback is returned instead. Event handlers and public operations use it.
template <class F>
requires std::is_void_v<std::invoke_result_t<F>>
void Guard(const char* module, const char* procedure, F&& f) {
    ActionScope action;
    try {
        std::forward<F>(f)();
    } catch (...) {
        ReportCurrentException(module, procedure);
    }
}

template <class F, class R = std::invoke_result_t<F>>
requires(!std::is_void_v<R>) R
    Guard(const char* module, const char* procedure, F&& f, R fallback = R{}) {
    ActionScope action;
    try {
        return std::forward<F>(f)();
    } catch (...) {
        ReportCurrentException(module, procedure);
    }
    return fallback;
}
