#pragma once
// The program's icons, drawn at run time so they stay sharp at any size and
// need no image files.

#include <QIcon>
#include <QString>

namespace Icons {

// The picture of a toolbar button, by its key ("New", "View", "AutoFill", ...).
QIcon Toolbar(const QString& key);
// The window icon.
QIcon App();

} // namespace Icons
