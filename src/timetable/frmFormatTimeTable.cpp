#include "timetable/frmFormatTimeTable.h"

#include "common/ErrorHandler.h"
#include "store/Transaction.h"
#include "timetable/TimetableRecords.h"
#include "timetable/TimetableState.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

frmFormatTimeTable::frmFormatTimeTable(std::function<void()> reload, QWidget* parent)
    : QDialog(parent), m_reload(std::move(reload)) {
    setObjectName(QStringLiteral("frmFormatTimeTable"));
    setWindowTitle(QStringLiteral("Timetable Format"));

    cboAxis = new QComboBox(this);
    cboAxis->setObjectName(QStringLiteral("cboAxis"));
    cboAxis->addItems({QStringLiteral("Time across top"), QStringLiteral("Days across top")});
    cboTimeFormat = new QComboBox(this);
    cboTimeFormat->setObjectName(QStringLiteral("cboTimeFormat"));
    cboTimeFormat->addItems({QStringLiteral("12 Hour Format"), QStringLiteral("24 Hour Format")});

    auto* form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    auto* lblAxis = new QLabel(QStringLiteral("Axis:"), this);
    lblAxis->setObjectName(QStringLiteral("lblAxis"));
    lblAxis->setBuddy(cboAxis);
    auto* lblTimeFormat = new QLabel(QStringLiteral("Time format:"), this);
    lblTimeFormat->setObjectName(QStringLiteral("lblTimeFormat"));
    lblTimeFormat->setBuddy(cboTimeFormat);
    form->addRow(lblAxis, cboAxis);
    form->addRow(lblTimeFormat, cboTimeFormat);

    cmdOk = new QPushButton(QStringLiteral("OK"), this);
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    cmdOk->setDefault(true);
    cmdCancel = new QPushButton(QStringLiteral("Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdOk);
    buttons->addWidget(cmdCancel);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addSpacing(8);
    layout->addLayout(buttons);
    setMinimumWidth(320);

    connect(cmdOk, &QPushButton::clicked, this, &frmFormatTimeTable::cmdOk_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    Form_Load();
}

void frmFormatTimeTable::Form_Load() {
    Guard("frmFormatTimeTable", "Form_Load", [&] {
        cboAxis->setCurrentIndex(-1);
        cboTimeFormat->setCurrentIndex(-1);
        const ModMain::TimetableRow row = ModMain::ReadTimetable(Timetable::current().ID);
        if (!row.found)
            return;
        cboTimeFormat->setCurrentIndex(row.Time12Hour ? 0 : 1);
        cboAxis->setCurrentIndex(row.TimeOnTop ? 0 : 1);
    });
}

void frmFormatTimeTable::cmdOk_Click() {
    Guard("frmFormatTimeTable", "cmdOk_Click", [&] {
        const ActionName name(QStringLiteral("Format Timetable"));
        ModMain::SaveTimetableFormat(Timetable::current().ID, cboTimeFormat->currentIndex() == 0,
                                     cboAxis->currentIndex() == 0);
        if (m_reload)
            m_reload();
    });
    accept();
}
