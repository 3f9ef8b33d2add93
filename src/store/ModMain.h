#pragma once
// Program-wide state of the project store.

#include "store/clsSQLite.h"

namespace ModMain {

// The program's one connection to the open project.
clsSQLite& DB();

} // namespace ModMain
