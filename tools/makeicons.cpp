// Build-time tool: the program's icon as PNG files in the sizes desktops
// look for, drawn by the same code as the window icon.
//
//   makeicons FOLDER      writes FOLDER/SIZE/vantor-planner.png

#include "common/Icons.h"

#include <QDir>
#include <QGuiApplication>
#include <cstdio>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: makeicons FOLDER\n");
        return 2;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    for (const int size : {16, 24, 32, 48, 64, 128, 256}) {
        const QString folder =
            QStringLiteral("%1/%2").arg(QString::fromLocal8Bit(argv[1])).arg(size);
        if (!QDir().mkpath(folder) ||
            !Icons::AppImage(size).save(folder + QStringLiteral("/vantor-planner.png"))) {
            std::fprintf(stderr, "makeicons: cannot write %s\n", qPrintable(folder));
            return 1;
        }
    }
    return 0;
}
