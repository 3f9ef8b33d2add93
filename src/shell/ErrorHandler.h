#pragma once
// The one place unexpected errors end up. A registered report object receives
// them; without one the user sees the fixed "Application Error" box.

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
                          const QString& globals = QString(), const QString& parameters = QString());

// Reports one error; returns the report object's Action, or 0 when the
// fallback box was shown.
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
    try {
        std::forward<F>(f)();
    } catch (...) {
        ReportCurrentException(module, procedure);
    }
}

template <class F, class R = std::invoke_result_t<F>>
    requires(!std::is_void_v<R>)
R Guard(const char* module, const char* procedure, F&& f, R fallback = R{}) {
    try {
        return std::forward<F>(f)();
    } catch (...) {
        ReportCurrentException(module, procedure);
    }
    return fallback;
}
