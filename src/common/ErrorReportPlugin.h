#pragma once
// The installed error-report component: a Qt plugin in the application
// folder named after its ProgID, "VantorErrorLibrary.Error" (with the
// platform's prefix and suffix, libVantorErrorLibrary.Error.so here).
//
// Its root object is called late-bound, so a component needs no header from
// this program, only:
//   Q_INVOKABLE void ErrorHandler(QString module, QString procedure, int line,
//                                 int number, QString description,
//                                 QString source, QString variables,
//                                 QString appTitle, QString version);
//   Q_PROPERTY(int Action ...)
// Action tells the failing procedure how to go on; this program reads and
// returns it, and the procedure then returns its default result.

#include "common/ErrorHandler.h"

#include <QString>
#include <memory>

inline constexpr const char* kErrorReportProgID = "VantorErrorLibrary.Error";

// The component found in folder, or none when it is absent, is not a plugin,
// or lacks the method.
std::unique_ptr<ErrorReportObject> CreateReportObject(const QString& folder);
// The one in the application folder.
std::unique_ptr<ErrorReportObject> CreateInstalledReportObject();
