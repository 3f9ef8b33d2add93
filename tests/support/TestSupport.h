#pragma once
// What every test program shares: a private project and settings folder per
// test, recorders that answer message boxes, file dialogs and error reports,
// and a driver for modal screens.

#include "common/Common.h"
#include "common/ErrorHandler.h"
#include "common/FileDialogs.h"
#include "store/ModMain.h"

#include <QtWidgets>
#include <functional>
#include <memory>
#include <optional>

class QDialog;

namespace TestSupport {

// Sets an environment variable for one scope and puts back what was there
// (or its absence), even when a failed check leaves the test early.
class ScopedEnv {
public:
    ScopedEnv(const char* name, const QByteArray& value);
    ~ScopedEnv();
    ScopedEnv(const ScopedEnv&) = delete;
    ScopedEnv& operator=(const ScopedEnv&) = delete;

private:
    const char* m_name;
    QByteArray m_old;
    bool m_had;
};

// One test's world: settings in a temporary folder, projects copied from the
// built blank.db. Closes the project and removes every seam on destruction.
class TestEnv {
public:
    TestEnv();
    ~TestEnv();
    TestEnv(const TestEnv&) = delete;
    TestEnv& operator=(const TestEnv&) = delete;
    QString dir() const { return m_dir.path(); }
    QString path(const QString& name) const { return m_dir.filePath(name); }
    // A copy of blank.db under the given name.
    QString newProject(const QString& name = QStringLiteral("school.VNPL")) const;
    // A project with days and periods, as New Project would leave it.
    QString newProjectWithCalendar(const QStringList& days, const QStringList& startTimes,
                                   const QString& name = QStringLiteral("school.VNPL")) const;
    // Opens the file on the program's connection (closing what was open).
    bool open(const QString& file) const;

private:
    QTemporaryDir m_dir;
    ScopedEnv m_config; // the settings folder, inside m_dir
};

struct ShownMessage {
    QString text;
    Common::MsgButtons buttons;
    Common::MsgIcon icon;
    QString title;
};

// Records every message box; answers from a queue, then with a default.
class MessageRecorder {
public:
    MessageRecorder();
    ~MessageRecorder();
    void answer(Common::MsgResult result) { m_answers.append(result); }
    void setDefault(Common::MsgResult result) { m_default = result; }
    // Called for each box before it is answered (for example to act on a dialog).
    void onShow(std::function<void(const ShownMessage&)> fn) { m_onShow = std::move(fn); }
    const QList<ShownMessage>& messages() const { return m_messages; }
    QStringList texts() const;
    void clear() { m_messages.clear(); }

private:
    QList<ShownMessage> m_messages;
    QList<Common::MsgResult> m_answers;
    Common::MsgResult m_default = Common::MsgResult::Ok;
    std::function<void(const ShownMessage&)> m_onShow;
};

// Answers file dialogs: each queued name is "chosen"; an empty name cancels.
class FileDialogRecorder {
public:
    FileDialogRecorder();
    ~FileDialogRecorder();
    void choose(const QString& fileName) { m_names.append(fileName); }
    void cancel() { m_names.append(QString()); }
    const QList<Common::FileDialogRequest>& requests() const { return m_requests; }

private:
    QList<QString> m_names;
    QList<Common::FileDialogRequest> m_requests;
};

// Stands in for the installed error-report component.
class ErrorRecorder {
public:
    ErrorRecorder();
    ~ErrorRecorder();
    const QList<ErrorReport>& reports() const { return *m_reports; }
    void clear() { m_reports->clear(); }

private:
    std::shared_ptr<QList<ErrorReport>> m_reports;
};

// The named control on a screen; a missing one stops the test program.
template <class T> T* control(QWidget* screen, const char* name) {
    if (T* found = screen->findChild<T*>(QLatin1String(name)))
        return found;
    qFatal("no %s on %s", name, qPrintable(screen->objectName()));
}

// A file's bytes (empty when it cannot be read), and writing them; the
// write stops the test program when it fails. writeFile returns path.
QByteArray readFile(const QString& path);
QString writeFile(const QString& path, const QByteArray& bytes);

// Every row of every table of a project file, in a fixed order, as text: two
// files with the same dump hold the same data, ids included.
QString dump(const QString& file);

// Runs a statement on the open project, %1, %2, ... taking the arguments:
// the first field of its first row, and every row with its fields joined by '|'.
template <class... A> QString value(QString sql, const A&... args) {
    ((sql = sql.arg(args)), ...);
    return ModMain::DB().Execute(sql).Field(qint16(0)).toString();
}
template <class... A> QStringList rows(QString sql, const A&... args) {
    ((sql = sql.arg(args)), ...);
    QStringList out;
    for (const auto& row : ModMain::DB().Execute(sql).vTableArray().mid(1)) {
        QStringList fields;
        for (const Variant& v : row)
            fields << v.toString();
        out << fields.join(QLatin1Char('|'));
    }
    return out;
}

// Clicks the named push button on a screen.
void clickButton(QWidget* screen, const char* name);

// Acts on the modal screens that code under test opens, one step per screen,
// from a timer while that code runs its own event loops. Each step names the
// screen it expects; a wrong screen, a failed check or a screen left open is
// rejected and any wizard cancelled, so a failing test cannot hang.
class ModalDriver {
public:
    using Step = std::function<void(QDialog*)>;
    // screen: the dialog's object name.
    void expect(const QString& screen, Step step) { m_steps.append({screen, std::move(step)}); }
    // Runs the code; empty when every step ran on the screen it expected.
    QString run(const std::function<void()>& code);

private:
    QList<QPair<QString, Step>> m_steps;
};

} // namespace TestSupport
