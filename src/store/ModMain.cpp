#include "store/ModMain.h"

namespace ModMain {

clsSQLite& DB() {
    static clsSQLite db;
    return db;
}

} // namespace ModMain
