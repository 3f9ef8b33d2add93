#pragma once
// Driving the main window's timetable grid as a user does: dragging a lesson
// from one cell and dropping it on another.

#include "shell/frmMain.h"

#include <QtTest>
#include <QtWidgets>

namespace Fixtures {

// Sends the grid the drag-and-drop events of a drop on (row, col); whether
// the grid would take it there.
inline bool dropOn(frmMain& w, QMimeData* data, int row, int col, bool drop = true) {
    // A drag enters the grid where no lesson may go (here its empty corner),
    // then moves to the cell.
    const QPoint corner = w.g->viewport()->rect().bottomRight() - QPoint(2, 2);
    QDragEnterEvent enter(corner, Qt::MoveAction, data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(w.g->viewport(), &enter);
    const QPoint pos = w.g->visualRect(w.g->model()->index(row - 1, col - 1)).center();
    QDragMoveEvent move(pos, Qt::MoveAction, data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(w.g->viewport(), &move);
    if (!enter.isAccepted() || !move.isAccepted() || !drop) {
        QDragLeaveEvent leave;
        QCoreApplication::sendEvent(w.g->viewport(), &leave);
        return enter.isAccepted() && move.isAccepted();
    }
    QDropEvent event(pos, Qt::MoveAction, data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(w.g->viewport(), &event);
    return true;
}

// Drags the lesson in (fromRow, fromCol) onto (row, col) and lets the drag end.
inline void dragLesson(frmMain& w, int fromRow, int fromCol, int row, int col) {
    std::unique_ptr<QMimeData> data(w.BeginLessonDrag(fromRow, fromCol));
    QVERIFY(data);
    QVERIFY(dropOn(w, data.get(), row, col));
    w.EndLessonDrag();
}

} // namespace Fixtures
