#include "shell/UndoHistory.h"

#include "common/Common.h"
#include "store/ModMain.h"
#include "timetable/Lessons.h"

#include <QDir>

class ChangeCommand : public QUndoCommand {
public:
    ChangeCommand(UndoHistory& history, const ChangeStep& step)
        : QUndoCommand(step.name), m_history(history), m_changes(step.changes) {}

    void undo() override { apply(true); }
    void redo() override {
        // Pushed after the action has already written its changes.
        if (m_recorded) {
            m_recorded = false;
            return;
        }
        apply(false);
    }

private:
    void apply(bool invert) {
        if (m_history.m_applying) {
            m_history.m_result = ModMain::DB().ApplyChanges(m_changes, invert);
            ModMain::LessonIndex::invalidate();
        }
    }

    UndoHistory& m_history;
    QByteArray m_changes;
    bool m_recorded = true;
};

UndoHistory::UndoHistory(QObject* parent) : QObject(parent) {
    m_stack.setUndoLimit(kLimit);
    connect(&m_stack, &QUndoStack::indexChanged, this, &UndoHistory::stateChanged);
    connect(&m_stack, &QUndoStack::cleanChanged, this, &UndoHistory::stateChanged);
    ModMain::DB().SetChangeRecorder([this](const ChangeStep& s) { record(s); });
}

UndoHistory::~UndoHistory() {
    m_stack.disconnect(this);
    ModMain::DB().SetChangeRecorder({});
}

void UndoHistory::record(const ChangeStep& step) {
    // Another program changed the project since: older steps no longer fit.
    if (step.afterOutsideChange)
        m_stack.clear();
    m_stack.push(new ChangeCommand(*this, step));
}

namespace {
// A name is shown as it is, even with an "&" in it.
QString menuText(const QString& verb, const QString& name) {
    return name.isEmpty() ? verb : verb + QLatin1Char(' ') + QString(name).replace('&', "&&");
}
} // namespace

QString UndoHistory::undoText() const {
    return menuText(QStringLiteral("Undo"), m_stack.canUndo() ? m_stack.undoText() : QString());
}

QString UndoHistory::redoText() const {
    return menuText(QStringLiteral("Redo"), m_stack.canRedo() ? m_stack.redoText() : QString());
}

bool UndoHistory::undo() {
    return step(true);
}

bool UndoHistory::redo() {
    return step(false);
}

bool UndoHistory::step(bool backwards) {
    if (backwards ? !m_stack.canUndo() : !m_stack.canRedo())
        return false;
    const int before = m_stack.index();
    m_result = ApplyResult::Failed;
    if (backwards)
        m_stack.undo();
    else
        m_stack.redo();
    const QString verb = backwards ? QStringLiteral("undone") : QStringLiteral("redone");
    switch (m_result) {
    case ApplyResult::Applied:
        Q_EMIT projectChanged();
        return true;
    case ApplyResult::Busy:
        // Nothing happened: the step stays where it was, to try again.
        m_applying = false;
        m_stack.setIndex(before);
        m_applying = true;
        Common::MsgBox(ProjectBusyText(ModMain::DB().GetDBFilename()), Common::MsgButtons::Ok,
                       Common::MsgIcon::Exclamation);
        return false;
    case ApplyResult::ChangedElsewhere:
        m_stack.clear();
        Common::MsgBox(QStringLiteral("The project was changed outside Vantor Planner since this "
                                      "step, so it cannot be %1. Nothing was changed, and the "
                                      "list of steps to undo has been cleared.")
                           .arg(verb),
                       Common::MsgButtons::Ok, Common::MsgIcon::Exclamation);
        break;
    case ApplyResult::Failed:
        m_stack.clear();
        Common::MsgBox(QStringLiteral("This step could not be %1. Nothing was changed, and the "
                                      "list of steps to undo has been cleared.")
                           .arg(verb),
                       Common::MsgButtons::Ok, Common::MsgIcon::Exclamation);
        break;
    }
    // The window reloads all the same: another program's changes are worth seeing.
    Q_EMIT projectChanged();
    return false;
}
