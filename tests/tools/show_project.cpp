// Opens each project named on the command line in the main window, shows
// every timetable it holds, and closes it again, the way a user looking at a
// file would. test_damaged runs it on damaged files, many per process.
//
// One line per file on stdout, written as soon as the file is done so a
// crash still tells which file was being shown:
//   OK <path> boxes=<n> actions=<k>
//   FAIL <path> <reason>
// Opening (with the listing of its timetables), each timetable shown and the
// closing are the actions; each may show at most one message box. Looking at
// a file must leave it byte for byte as it was. Each box's text goes to stderr.
//
// Exit code 0 when every file was OK, 1 when one was not, 2 on misuse.

#include "common/Common.h"
#include "common/ErrorHandler.h"
#include "shell/frmMain.h"
#include "store/ModMain.h"
#include "timetable/TimetableRecords.h"
#include "timetable/TimetableState.h"

#include <QtWidgets>
#include <cstdio>
#include <functional>
#include <memory>

namespace {

// What is on disk under a path: the file's bytes, or that it is a folder,
// absent or unreadable, and which of SQLite's companion files lie beside it.
QByteArray diskState(const QString& path) {
    const QFileInfo info(path);
    QFile f(path);
    QByteArray s = info.isDir()                  ? "folder"
                   : !info.exists()              ? "absent"
                   : f.open(QIODevice::ReadOnly) ? "file " + f.readAll()
                                                 : "unreadable";
    for (const char* suffix : {"-journal", "-wal", "-shm"})
        if (QFileInfo::exists(path + QLatin1String(suffix)))
            s += QByteArray(" with ") + suffix;
    return s;
}

// One line, so a report stays one line on stdout.
QString oneLine(const QString& text, int limit = 300) {
    QString s = text.simplified();
    if (s.size() > limit)
        s = s.left(limit) + QStringLiteral("...");
    return s;
}

// Shows one project from opening to closing; returns its report line.
QString showProject(const QString& path) {
    const QByteArray before = diskState(path);
    int boxes = 0, inAction = 0, actions = 0;
    QStringList texts, problems;
    Common::SetMsgBoxHandler([&](const QString& text, Common::MsgButtons buttons, Common::MsgIcon,
                                 const QString&) {
        ++boxes;
        ++inAction;
        texts << oneLine(text);
        std::fprintf(stderr, "box: %s\n", qPrintable(texts.last()));
        // No to a question, so no wizard or second project starts.
        return buttons == Common::MsgButtons::YesNo || buttons == Common::MsgButtons::YesNoCancel
                   ? Common::MsgResult::No
                   : Common::MsgResult::Ok;
    });
    // One user action, noted when it showed more than one box.
    const auto action = [&](const QString& name, const std::function<void()>& f) {
        inAction = 0;
        texts.clear();
        f();
        QCoreApplication::processEvents();
        ++actions;
        if (inAction > 1)
            problems << QStringLiteral("%1 boxes in %2: %3")
                            .arg(inAction)
                            .arg(name, texts.join(QStringLiteral(" | ")));
    };
    {
        frmMain w;
        w.show();
        QVector<ModMain::TimetableEntry> list;
        action(QStringLiteral("Form_Load"), [&] {
            w.Form_Load(path);
            // The timetable list is read as the toolbar reads it on opening.
            if (ModMain::ProjectIsOpen())
                Guard("show_project", "TimetableList", [&] { list = ModMain::TimetableList(); });
        });
        for (const ModMain::TimetableEntry& t : list)
            action(QStringLiteral("LoadTimetable(%1)").arg(t.id), [&] { w.LoadTimetable(t.id); });
        action(QStringLiteral("close"), [&] { w.close(); });
    }
    // Nothing of this project may reach the next one.
    Common::SetMsgBoxHandler({});
    ModMain::DB().DBClose();
    Timetable::Reset();

    const QByteArray after = diskState(path);
    if (before != after)
        problems.prepend(QStringLiteral("the file or those beside it changed: %1 bytes of it and "
                                        "its companions before, %2 after")
                             .arg(before.size())
                             .arg(after.size()));
    if (!problems.isEmpty())
        return QStringLiteral("FAIL %1 %2").arg(path, problems.join(QStringLiteral("; ")));
    return QStringLiteral("OK %1 boxes=%2 actions=%3").arg(path).arg(boxes).arg(actions);
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fputs("usage: show_project FILE...\n", stderr);
        return 2;
    }
    // Settings go to a folder of this run's own unless the caller chose one.
    std::unique_ptr<QTemporaryDir> config;
    if (qEnvironmentVariableIsEmpty("XDG_CONFIG_HOME")) {
        config = std::make_unique<QTemporaryDir>();
        qputenv("XDG_CONFIG_HOME", config->path().toLocal8Bit());
    }
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Vantor Planner"));
    QApplication::setStyle(QStringLiteral("Fusion"));
    bool allOk = true;
    for (int i = 1; i < argc; ++i) {
        const QString path = QString::fromLocal8Bit(argv[i]);
        const QString line = showProject(path);
        allOk = allOk && line.startsWith(QLatin1String("OK "));
        std::printf("%s\n", line.toLocal8Bit().constData());
        std::fflush(stdout);
    }
    return allOk ? 0 : 1;
}
