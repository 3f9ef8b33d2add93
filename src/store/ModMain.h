#pragma once
// Program-wide state of the project store.

#include "store/clsSQLite.h"

namespace ModMain {

// The program's one connection to the open project.
clsSQLite& DB();
// Whether a project is open: a refused open leaves the connection's handle
// looking open (IsDBOpen), but no file.
inline bool ProjectIsOpen() {
    return !DB().GetDBFilename().isEmpty();
}

} // namespace ModMain
