// The two list dialogs: the timetable list and the capacity report.

#include "common/Common.h"
#include "common/ErrorHandler.h"
#include "common/FlexGrid.h"
#include "common/Icons.h"
#include "manage/TimetableOverview.h"
#include "manage/frmCapacityReport.h"
#include "manage/frmTableOpen.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
FlexGrid* addGrid(QDialog* dialog, const char* name, const QString& caption, QVBoxLayout* layout) {
    auto* label = new QLabel(caption, dialog);
    layout->addWidget(label);
    auto* grid = new FlexGrid(dialog);
    grid->setObjectName(QString::fromLatin1(name));
    grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    grid->setSelectionMode(QAbstractItemView::SingleSelection);
    grid->horizontalHeader()->setStretchLastSection(true);
    // The names are rows' ordinary first cells, not grey heading buttons:
    // the grid's heading column stays empty and out of sight.
    grid->verticalHeader()->hide();
    label->setBuddy(grid);
    layout->addWidget(grid, 1);
    return grid;
}

// One body row of texts from column 1, as compact as the window's lists.
void addRow(FlexGrid& g, const QStringList& texts, qint32 data = 0) {
    const int r = g.rows();
    g.setRows(r + 1);
    for (int c = 0; c < texts.size(); ++c)
        g.setTextMatrix(r, c + 1, texts[c]);
    g.setRowData(r, data);
    g.setRowHeightTwips(r, 330);
}

QPushButton* addButton(QDialog* dialog, QHBoxLayout* row, const char* name, const QString& text) {
    auto* button = new QPushButton(text, dialog);
    button->setObjectName(QString::fromLatin1(name));
    row->addWidget(button);
    return button;
}
} // namespace

frmTableOpen::frmTableOpen(Host host, qint32 currentTimetable, QWidget* parent)
    : QDialog(parent), m_host(std::move(host)) {
    setObjectName(QStringLiteral("frmTableOpen"));
    setWindowTitle(QStringLiteral("Open Timetable"));
    setWindowIcon(Icons::App());
    resize(480, 420);
    auto* layout = new QVBoxLayout(this);
    grdTimetables =
        addGrid(this, "grdTimetables", QStringLiteral("&Select the timetable to open:"), layout);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    cmdOk = addButton(this, buttons, "cmdOk", QStringLiteral("Open"));
    cmdOk->setDefault(true);
    cmdCancel = addButton(this, buttons, "cmdCancel", QStringLiteral("Cancel"));
    layout->addLayout(buttons);
    connect(cmdOk, &QPushButton::clicked, this, &frmTableOpen::cmdOk_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(grdTimetables, &QTableWidget::cellDoubleClicked, this, &frmTableOpen::cmdOk_Click);

    Guard("frmTableOpen", "Form_Load", [&] {
        FlexGrid& g = *grdTimetables;
        g.clearGrid();
        g.setCols(4);
        g.setRows(1);
        g.setTextMatrix(0, 1, QStringLiteral("Timetable"));
        g.setTextMatrix(0, 2, QStringLiteral("Type"));
        g.setTextMatrix(0, 3, QStringLiteral("Status"));
        g.setColWidthTwips(1, 2800);
        g.setColWidthTwips(2, 1000);
        int current = 0;
        for (const ModMain::TimetableListRow& row : ModMain::TimetableOpenList()) {
            addRow(g,
                   {row.name, row.type,
                    row.created ? QStringLiteral("Created") : QStringLiteral("Not Created")},
                   row.id);
            if (row.created && row.id == currentTimetable)
                current = g.rows() - 1;
        }
        if (g.rows() > 1) {
            const int r = current > 0 ? current : 1;
            g.selectRange(r, 1, r, 3);
        }
        cmdOk->setEnabled(g.rows() > 1);
    });
}

void frmTableOpen::cmdOk_Click() {
    Guard("frmTableOpen", "cmdOk_Click", [&] {
        const FlexGrid& g = *grdTimetables;
        const int r = g.row();
        if (r < 1)
            return;
        const QString name = g.textMatrix(r, 1);
        const qint32 id = g.rowData(r);
        if (g.textMatrix(r, 3) == QLatin1String("Not Created")) {
            if (Common::MsgBox(QStringLiteral("Create timetable for ") + name + QStringLiteral("?"),
                               Common::MsgButtons::YesNo,
                               Common::MsgIcon::Question) != Common::MsgResult::Yes)
                return;
            const QString type = g.textMatrix(r, 2);
            accept();
            if (m_host.createTimetable)
                m_host.createTimetable(type, id);
            return;
        }
        accept();
        if (m_host.loadTimetable)
            m_host.loadTimetable(id);
    });
}

frmCapacityReport::frmCapacityReport(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmCapacityReport"));
    setWindowTitle(QStringLiteral("Capacity Report"));
    setWindowIcon(Icons::App());
    resize(420, 420);
    auto* layout = new QVBoxLayout(this);
    grdCapacity = addGrid(this, "grdCapacity", QStringLiteral("Tutor Capacity Report:"), layout);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    auto* cmdCancel = addButton(this, buttons, "cmdCancel", QStringLiteral("&Close"));
    cmdCancel->setDefault(true);
    layout->addLayout(buttons);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    Guard("frmCapacityReport", "Form_Load", [&] {
        FlexGrid& g = *grdCapacity;
        g.clearGrid();
        g.setCols(3);
        g.setRows(1);
        g.setTextMatrix(0, 1, QStringLiteral("Tutor Name"));
        g.setTextMatrix(0, 2, QStringLiteral("Periods Teaching"));
        g.setColWidthTwips(1, 2800);
        g.setColWidthTwips(2, 1500);
        for (const ModMain::CapacityRow& row : ModMain::TutorCapacity()) {
            addRow(g, {row.name, row.periods});
        }
    });
}
