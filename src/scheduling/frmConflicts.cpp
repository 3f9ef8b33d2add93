#include "scheduling/frmConflicts.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace ModMain {

frmConflicts::frmConflicts(ShowCell show, QWidget* parent)
    : QDialog(parent), m_show(std::move(show)) {
    setObjectName(QStringLiteral("frmConflicts"));
    setWindowTitle(QStringLiteral("Conflicts"));
    auto* layout = new QVBoxLayout(this);
    lblSummary = new QLabel(this);
    lblSummary->setObjectName(QStringLiteral("lblSummary"));
    lblSummary->setWordWrap(true);
    layout->addWidget(lblSummary);
    grdConflicts = new QTableWidget(this);
    grdConflicts->setObjectName(QStringLiteral("grdConflicts"));
    grdConflicts->setColumnCount(4);
    grdConflicts->setHorizontalHeaderLabels({QStringLiteral("Day"), QStringLiteral("Period"),
                                             QStringLiteral("Who"),
                                             QStringLiteral("Lessons at that time")});
    grdConflicts->setSelectionBehavior(QAbstractItemView::SelectRows);
    grdConflicts->setSelectionMode(QAbstractItemView::SingleSelection);
    grdConflicts->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grdConflicts->verticalHeader()->hide();
    grdConflicts->horizontalHeader()->setStretchLastSection(true);
    grdConflicts->setWordWrap(true);
    layout->addWidget(grdConflicts);
    auto* buttons = new QDialogButtonBox(this);
    cmdShow =
        buttons->addButton(QStringLiteral("&Show in Timetable"), QDialogButtonBox::AcceptRole);
    cmdShow->setObjectName(QStringLiteral("cmdShow"));
    QPushButton* close = buttons->addButton(QDialogButtonBox::Close);
    close->setObjectName(QStringLiteral("cmdClose"));
    layout->addWidget(buttons);
    connect(cmdShow, &QPushButton::clicked, this, &frmConflicts::showChosen);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    connect(grdConflicts, &QTableWidget::cellDoubleClicked, this, &frmConflicts::showChosen);

    const LessonIndex& idx = LessonIndex::current();
    const QVector<Conflict> conflicts = idx.conflicts();
    grdConflicts->setRowCount(int(conflicts.size()));
    for (int r = 0; r < conflicts.size(); ++r) {
        const Conflict& c = conflicts[r];
        QStringList lessons;
        for (const Lesson* l : c.lessons)
            lessons << idx.describe(*l);
        const QStringList cells = {idx.dayName(c.at.day), idx.periodName(c.at.time),
                                   KindWord(c.who.kind) + QLatin1Char(' ') + idx.fullName(c.who),
                                   lessons.join(QLatin1Char('\n'))};
        for (int col = 0; col < cells.size(); ++col)
            grdConflicts->setItem(r, col, new QTableWidgetItem(cells[col]));
        // The resource's own timetable shows every lesson it is in; without
        // one, the first lesson's.
        qint32 timetable = idx.timetablesOf(c.who).value(0);
        for (const Lesson* l : c.lessons)
            for (const SlotEntry& s : idx.slotsAt(c.at))
                if (timetable == 0 && l->slots.contains(s.id))
                    timetable = s.timetable;
        m_rows.append({timetable, c.at});
    }
    grdConflicts->resizeColumnsToContents();
    grdConflicts->resizeRowsToContents();
    lblSummary->setText(
        conflicts.isEmpty()
            ? QStringLiteral("No double bookings: every tutor, room and class is in "
                             "one lesson at a time.")
            : (conflicts.size() == 1 ? QStringLiteral("One double booking")
                                     : QStringLiteral("%1 double bookings").arg(conflicts.size())) +
                  QStringLiteral(": a tutor, room or class in two or more lessons at once. "
                                 "Choose one and Show in Timetable to go to it."));
    cmdShow->setEnabled(!conflicts.isEmpty());
    if (!conflicts.isEmpty())
        grdConflicts->selectRow(0);
    resize(720, 360);
}

void frmConflicts::showChosen() {
    const int r = grdConflicts->currentRow();
    if (r < 0 || r >= m_rows.size() || m_rows[r].timetable == 0)
        return;
    if (m_show)
        m_show(m_rows[r].timetable, m_rows[r].at);
    accept();
}

} // namespace ModMain
