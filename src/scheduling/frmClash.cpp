#include "scheduling/frmClash.h"

#include "scheduling/SchedulingState.h"
#include "ui_frmClash.h"

#include <QStyle>

frmClash::frmClash(QWidget* parent) : QDialog(parent), ui(std::make_unique<Ui::frmClash>()) {
    ui->setupUi(this);
    ui->picIcon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(40, 40));
    connect(ui->cmdYes, &QPushButton::clicked, this, &frmClash::cmdYes_Click);
    connect(ui->cmdNo, &QPushButton::clicked, this, &frmClash::cmdNo_Click);
    connect(ui->cmdDetails, &QPushButton::clicked, this, &frmClash::cmdDetails_Click);
}

frmClash::~frmClash() = default;

void frmClash::setMessage(const QString& text) {
    ui->lblMessage->setText(text);
}

void frmClash::setAllowFutureClashes(bool allow) {
    ui->chkDontShow->setChecked(allow);
}

void frmClash::cmdYes_Click() {
    Scheduling::State& s = Scheduling::state();
    s.gbClash_Return = true;
    s.gbClash_AllowClash = ui->chkDontShow->isChecked();
    accept();
}

void frmClash::cmdNo_Click() {
    Scheduling::State& s = Scheduling::state();
    s.gbClash_Return = false;
    s.gbClash_AllowClash = ui->chkDontShow->isChecked();
    QDialog::reject();
}

void frmClash::cmdDetails_Click() {
    Scheduling::State& s = Scheduling::state();
    s.gbClash_ShowDetails = true;
    s.gbClash_Return = false;
    s.gbClash_AllowClash = ui->chkDontShow->isChecked();
    QDialog::reject();
}

void frmClash::reject() {
    cmdNo_Click();
}
