#pragma once
// What every test program shares: a private project and settings folder per
// test, and recorders that answer message boxes, file dialogs and error reports.

#include "common/Common.h"
#include "common/FileDialogs.h"
#include "shell/ErrorHandler.h"

#include <QList>
#include <QString>
#include <QTemporaryDir>
#include <functional>
#include <memory>

namespace TestSupport {

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
    QByteArray m_oldConfig;
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

} // namespace TestSupport
