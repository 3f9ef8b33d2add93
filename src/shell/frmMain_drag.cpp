// Dragging a lesson to another period of the timetable shown. Press on the
// selected cell and drag: the periods where the lesson's tutor, room or
// class would clash are tinted until the drag ends; a drop moves the lesson
// there, or swaps it with the lesson there, as one step to undo.

#include "shell/frmMain.h"

#include "common/ErrorHandler.h"
#include "common/FlexGrid.h"
#include "scheduling/LessonMove.h"
#include "store/ModMain.h"
#include "timetable/TimetableState.h"

#include <QApplication>
#include <QDrag>
#include <QDropEvent>
#include <QMimeData>
#include <QMouseEvent>

namespace {
const QString kLessonFormat = QStringLiteral("application/x-vantor-lesson");
const QColor kClashTint(248, 200, 200);

// The grid's cell under a point of its viewport (headings are row and
// column 0, outside the table's own items).
QPoint cellUnder(const FlexGrid& g, const QPoint& pos) {
    const QModelIndex at = g.indexAt(pos);
    return at.isValid() ? QPoint(at.column() + 1, at.row() + 1) : QPoint(-1, -1);
}
} // namespace

QMimeData* frmMain::BeginLessonDrag(int row, int col) {
    return Guard("frmMain", "BeginLessonDrag", [&]() -> QMimeData* {
        ModMain::Cell from;
        if (ModMain::DB().IsReadOnly() || !ModMain::CellAt(*g, row, col, from))
            return nullptr;
        const ModMain::Lesson* selected = ModMain::SelectedLesson(from);
        if (!selected)
            return nullptr;
        const ModMain::Members lesson = selected->members;
        m_drag = LessonDrag();
        m_drag.row = row;
        m_drag.col = col;
        m_drag.timetable = Timetable::current().ID;
        for (int r = 1; r < g->rows(); ++r)
            for (int c = 1; c < g->cols(); ++c) {
                ModMain::Cell at;
                if ((r == row && c == col) || !ModMain::CellAt(*g, r, c, at) ||
                    !ModMain::CanHoldLesson(at) ||
                    ModMain::LessonClashes(lesson, at, ModMain::SelectedLesson(at)).isEmpty())
                    continue;
                m_drag.tinted.insert({r, c}, g->cellBackColor(r, c));
                g->setCellBackColor(r, c, kClashTint);
            }
        auto* data = new QMimeData;
        data->setData(kLessonFormat, QByteArray::number(m_drag.timetable));
        return data;
    });
}

void frmMain::EndLessonDrag() {
    for (auto it = m_drag.tinted.cbegin(); it != m_drag.tinted.cend(); ++it)
        g->setCellBackColor(it.key().first, it.key().second, it.value());
    const LessonDrag drag = m_drag;
    m_drag = LessonDrag();
    if (drag.dropRow < 0)
        return;
    Guard("frmMain", "g_DragDrop", [&] {
        ModMain::Cell from, to;
        if (drag.timetable != Timetable::current().ID ||
            !ModMain::CellAt(*g, drag.row, drag.col, from) ||
            !ModMain::CellAt(*g, drag.dropRow, drag.dropCol, to))
            return;
        const bool moved = ModMain::MoveLesson(from, to, this);
        LoadTimetable(Timetable::current().ID);
        if (moved)
            g->setRowCol(drag.dropRow, drag.dropCol);
    });
}

void frmMain::startLessonDrag(int row, int col) {
    QMimeData* data = BeginLessonDrag(row, col);
    if (!data)
        return;
    auto* drag = new QDrag(g->viewport());
    drag->setMimeData(data);
    drag->setPixmap(g->viewport()->grab(g->visualRect(g->model()->index(row - 1, col - 1))));
    // Escape, or a drop where no lesson may go, ends it with nothing moved.
    drag->exec(Qt::MoveAction);
    EndLessonDrag();
}

bool frmMain::lessonDragEvent(QEvent* event) {
    switch (event->type()) {
    case QEvent::MouseButtonPress: {
        // Only a press on the selected, filled cell picks its lesson up; a
        // press elsewhere selects as always (a range for the period marks).
        auto* press = static_cast<QMouseEvent*>(event);
        const QPoint cell = cellUnder(*g, press->position().toPoint());
        m_pressed = press->button() == Qt::LeftButton && cell == QPoint(g->col(), g->row()) &&
                            g->rowSel() == g->row() && g->colSel() == g->col()
                        ? press->position().toPoint()
                        : QPoint(-1, -1);
        return false;
    }
    case QEvent::MouseMove: {
        auto* move = static_cast<QMouseEvent*>(event);
        if (m_pressed.x() < 0 || !(move->buttons() & Qt::LeftButton) ||
            (move->position().toPoint() - m_pressed).manhattanLength() <
                QApplication::startDragDistance())
            return false;
        m_pressed = QPoint(-1, -1);
        startLessonDrag(g->row(), g->col());
        return true;
    }
    case QEvent::MouseButtonRelease:
        m_pressed = QPoint(-1, -1);
        return false;
    case QEvent::DragEnter:
        // The drag starts over its own cell: taken here, or the grid would
        // get no move or drop events at all; each move then says where it fits.
        if (static_cast<QDragEnterEvent*>(event)->mimeData()->hasFormat(kLessonFormat) &&
            m_drag.row > 0)
            static_cast<QDragEnterEvent*>(event)->acceptProposedAction();
        else
            event->ignore();
        return true;
    case QEvent::DragMove: {
        auto* drag = static_cast<QDragMoveEvent*>(event);
        const QPoint at = cellUnder(*g, drag->position().toPoint());
        ModMain::Cell to;
        const bool fits = drag->mimeData()->hasFormat(kLessonFormat) && m_drag.row > 0 &&
                          m_drag.timetable == Timetable::current().ID &&
                          at != QPoint(m_drag.col, m_drag.row) &&
                          ModMain::CellAt(*g, at.y(), at.x(), to) && ModMain::CanHoldLesson(to);
        if (fits)
            drag->acceptProposedAction();
        else
            drag->ignore();
        return true;
    }
    case QEvent::DragLeave:
        return true;
    case QEvent::Drop: {
        // The move itself waits for the drag to end: a clash question must
        // not open while the pointer is still held by the drag.
        auto* drop = static_cast<QDropEvent*>(event);
        const QPoint at = cellUnder(*g, drop->position().toPoint());
        if (drop->mimeData()->hasFormat(kLessonFormat) && m_drag.row > 0 && at.x() > 0) {
            m_drag.dropRow = at.y();
            m_drag.dropCol = at.x();
            drop->acceptProposedAction();
        }
        return true;
    }
    default:
        return false;
    }
}
