#pragma once
// Edit > Undo and Redo. Every action that writes to the project records
// what it changed (see store/ChangeLog.h); a step undoes by applying the
// inverse of those changes and redoes by applying them again, each in one
// transaction. The history belongs to the open project and is cleared when
// it closes.

#include "store/ChangeLog.h"

#include <QObject>
#include <QUndoStack>

class UndoHistory : public QObject {
    Q_OBJECT
public:
    static constexpr int kLimit = 200;

    explicit UndoHistory(QObject* parent = nullptr);
    ~UndoHistory() override;

    const QUndoStack& stack() const { return m_stack; }
    void clear() { m_stack.clear(); }
    // "Undo Tick Tutor Mr Brown", or "Undo" with nothing to undo.
    QString undoText() const;
    QString redoText() const;

    // False, the user told why, when the step could not be applied; the
    // project is then as it was.
    bool undo();
    bool redo();

Q_SIGNALS:
    // The project changed under the window: reload what it shows.
    void projectChanged();
    // What can be undone or redone changed.
    void stateChanged();

private:
    void record(const ChangeStep& step);
    bool step(bool backwards);

    QUndoStack m_stack;
    ApplyResult m_result = ApplyResult::Applied;
    bool m_applying = true; // false while the stack only moves its index
    friend class ChangeCommand;
};
