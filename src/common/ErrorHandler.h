#pragma once
// The one place unexpected errors end up. A registered report object receives
// them; without one the user sees the fixed "Application Error" box.
//
// One user action shows at most one box: the outermost Guard is the action,
// and once it has reported an error, later reports in it are dropped and the
// store runs no further statement for it (see ActionScope).

#include "common/VariableDump.h"
#include "common/VbError.h"

#include <QString>
#include <functional>
#include <memory>
#include <source_location>
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

// What an error-report component offers. The installed one is a plugin
// beside the program (see ErrorReportPlugin.h).
class ErrorReportObject {
public:
    virtual ~ErrorReportObject() = default;
    virtual void ErrorHandler(const ErrorReport& report) = 0;
    // How the failing procedure goes on; the program always returns the
    // procedure's default result and keeps running.
    virtual int Action() const = 0;
};

using ErrorReportFactory = std::function<std::unique_ptr<ErrorReportObject>()>;

// Replaces the search for the installed component (tests register a fake);
// empty restores the search.
void SetErrorReportFactory(ErrorReportFactory factory);

// The module and procedure a Guard entered last, for a crash report written
// where nothing else may be called. Both point at string literals.
struct LastEntered {
    static void Set(const char* module, const char* procedure);
    static const char* Module();
    static const char* Procedure();
};

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
// fallback box was shown. The registered global variables join the dump.
// Within an action that has failed already, nothing is shown.
int ErrorHandler(const QString& module, const QString& procedure, int line, const VbError& error,
                 const VariableDump& variables = VariableDump());

// Reports the exception being handled as coming from module/procedure, at
// the line it was raised when that is in the guard's own file, otherwise at
// the guard. Call only inside a catch block.
void ReportCurrentException(const char* module, const char* procedure,
                            const std::source_location& guard,
                            const VariableDump& variables = VariableDump());

namespace GuardDetail {
template <class F>
void run(const char* module, const char* procedure, const VariableDump* variables,
         const std::source_location& where, F&& f) {
    ActionScope action;
    LastEntered::Set(module, procedure);
    try {
        std::forward<F>(f)();
    } catch (...) {
        ReportCurrentException(module, procedure, where, variables ? *variables : VariableDump());
    }
}
} // namespace GuardDetail

// Runs f; an exception is reported as coming from module/procedure and the
// fallback is returned instead. Event handlers and public operations use it;
// those that hold parameters worth seeing pass them in a VariableDump.
template <class F>
requires std::is_void_v<std::invoke_result_t<F>>
void Guard(const char* module, const char* procedure, F&& f,
           std::source_location where = std::source_location::current()) {
    GuardDetail::run(module, procedure, nullptr, where, std::forward<F>(f));
}

template <class F>
requires std::is_void_v<std::invoke_result_t<F>>
void Guard(const char* module, const char* procedure, const VariableDump& variables, F&& f,
           std::source_location where = std::source_location::current()) {
    GuardDetail::run(module, procedure, &variables, where, std::forward<F>(f));
}

template <class F, class R = std::invoke_result_t<F>>
requires(std::is_invocable_v<F> && !std::is_void_v<R>) R
    Guard(const char* module, const char* procedure, F&& f, R fallback = R{},
          std::source_location where = std::source_location::current()) {
    R result = std::move(fallback);
    GuardDetail::run(module, procedure, nullptr, where, [&] { result = std::forward<F>(f)(); });
    return result;
}
