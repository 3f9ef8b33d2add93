#include "manage/ManageState.h"

namespace Manage {

qint32& State::editID(ModMain::ResourceKind kind) {
    switch (kind) {
    case ModMain::ResourceKind::Tutor:
        return giTutorEditID;
    case ModMain::ResourceKind::Class:
        return giClassEditID;
    case ModMain::ResourceKind::Room:
        return giRoomEditID;
    case ModMain::ResourceKind::Subject:
        break;
    }
    return giSubjectEditID;
}

State& state() {
    static State s;
    return s;
}

} // namespace Manage
