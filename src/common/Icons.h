#pragma once
// The program's icons, drawn at run time so they stay sharp at any size and
// need no image files.

#include <QIcon>
#include <QImage>
#include <QString>

namespace Icons {

// The picture of a toolbar button, by its key ("New", "View", "AutoFill", ...).
QIcon Toolbar(const QString& key);
// The window icon, and its picture at one size (the desktop's icon files
// are made from it at build time).
QIcon App();
QImage AppImage(int size);

} // namespace Icons
