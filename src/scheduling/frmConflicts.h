#pragma once
// Tools > Conflicts: every double booking in the project (a tutor, room or
// class in two or more lessons at once), by day and period, with the lessons
// involved. Choosing one shows its cell.

#include "timetable/Lessons.h"

#include <QDialog>
#include <functional>

class QLabel;
class QPushButton;
class QTableWidget;

namespace ModMain {

class frmConflicts : public QDialog {
    Q_OBJECT
public:
    // Shows the cell of a timetable at a period; the window provides it.
    using ShowCell = std::function<void(qint32 timetable, const Period& at)>;
    explicit frmConflicts(ShowCell show, QWidget* parent = nullptr);

    QTableWidget* grdConflicts = nullptr;
    QPushButton* cmdShow = nullptr;
    QLabel* lblSummary = nullptr;

private:
    void showChosen();

    struct Row {
        qint32 timetable = 0;
        Period at;
    };
    QVector<Row> m_rows;
    ShowCell m_show;
};

} // namespace ModMain
