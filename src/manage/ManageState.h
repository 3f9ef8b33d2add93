#pragma once
// The record each detail dialog edits: an id, or -1 to add a new one. The
// caller sets it before showing the dialog.

#include "scheduling/Availability.h"

namespace Manage {

struct State {
    qint32 giTutorEditID = -1;
    qint32 giClassEditID = -1;
    qint32 giRoomEditID = -1;
    qint32 giSubjectEditID = -1;

    qint32& editID(ModMain::ResourceKind kind);
};

State& state();

} // namespace Manage
