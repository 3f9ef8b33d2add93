#include "autofill/frmAutoFill_Progress.h"

#include "autofill/AutoFillState.h"
#include "autofill/FillAnimation.h"
#include "common/Icons.h"
#include "store/Transaction.h"
#include "timetable/TimetableRecords.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
// Often enough that the window repaints every frame and Cancel answers at once.
constexpr qint64 kYieldEveryMs = 8;
} // namespace

frmAutoFill_Progress::frmAutoFill_Progress(std::function<void(qint32)> loadTimetable,
                                           QWidget* parent)
    : QDialog(parent), m_loadTimetable(std::move(loadTimetable)) {
    setObjectName(QStringLiteral("frmAutoFill_Progress"));
    setWindowTitle(QStringLiteral("Auto Fill Progress"));
    setWindowIcon(Icons::App());
    setModal(true);

    Picture1 = new QLabel(this);
    Picture1->setObjectName(QStringLiteral("Picture1"));
    Picture1->setPixmap(Icons::App().pixmap(48, 48));
    Picture1->setAlignment(Qt::AlignTop);
    Animation1 = new FillAnimation(this);
    Label2 = new QLabel(QStringLiteral("Processing:"), this);
    Label2->setWordWrap(true);
    Label2->setObjectName(QStringLiteral("Label2"));
    ProgressBar1 = new QProgressBar(this);
    ProgressBar1->setObjectName(QStringLiteral("ProgressBar1"));
    ProgressBar1->setTextVisible(false);
    ProgressBar1->setValue(0);
    cmdCancel = new QPushButton(QStringLiteral("Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    tmrStart = new QTimer(this);
    tmrStart->setObjectName(QStringLiteral("tmrStart"));
    tmrStart->setSingleShot(true);
    tmrStart->setInterval(150);

    auto* top = new QHBoxLayout;
    top->addWidget(Picture1);
    top->addSpacing(12);
    top->addWidget(Animation1, 1, Qt::AlignCenter);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdCancel);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addSpacing(8);
    layout->addWidget(Label2);
    layout->addWidget(ProgressBar1);
    layout->addLayout(buttons);
    setFixedSize(sizeHint().expandedTo(QSize(380, 0)));

    connect(tmrStart, &QTimer::timeout, this, &frmAutoFill_Progress::tmrStart_Timer);
    connect(cmdCancel, &QPushButton::clicked, this, &frmAutoFill_Progress::cmdCancel_Click);
}

void frmAutoFill_Progress::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (!m_running && ProgressBar1->value() == 0 && !tmrStart->isActive()) {
        PlayAnimation();
        tmrStart->start();
    }
}

void frmAutoFill_Progress::PlayAnimation() {
    Animation1->play();
}

void frmAutoFill_Progress::tmrStart_Timer() {
    tmrStart->stop();
    m_running = true;
    m_sinceYield.start();
    {
        const ActionName name(QStringLiteral("Auto Fill ") +
                              ModMain::GetTimetableName(AutoFill::state().AutoFill_WhoID));
        m_outcome = ModMain::RunAutoFill(*this);
    }
    m_running = false;
    if (m_outcome == ModMain::FillOutcome::Cancelled ||
        m_outcome == ModMain::FillOutcome::Refused) {
        // Nothing was written, so the timetable on screen is still right.
        QDialog::reject();
        return;
    }
    if (m_loadTimetable)
        m_loadTimetable(AutoFill::state().AutoFill_WhoID);
    Animation1->stop();
    Animation1->hide();
    cmdCancel->setText(QStringLiteral("Done"));
    cmdCancel->setEnabled(true);
    cmdCancel->setDefault(true);
    Label2->setText(ModMain::FillReportText(ModMain::LastFillReport()));
    ProgressBar1->setValue(ProgressBar1->maximum());
}

void frmAutoFill_Progress::cmdCancel_Click() {
    if (!m_running) {
        accept();
        return;
    }
    // The fill stops at its next pause; the window closes once it has.
    m_cancelRequested = true;
    cmdCancel->setEnabled(false);
    Label2->setText(QStringLiteral("Cancelling..."));
}

void frmAutoFill_Progress::reject() {
    if (m_running)
        cmdCancel_Click();
    else
        QDialog::reject();
}

void frmAutoFill_Progress::closeEvent(QCloseEvent* event) {
    if (m_running) {
        event->ignore();
        cmdCancel_Click();
        return;
    }
    QDialog::closeEvent(event);
}

void frmAutoFill_Progress::setMaximum(int maximum) {
    ProgressBar1->setMaximum(maximum);
}

void frmAutoFill_Progress::setValue(int value) {
    ProgressBar1->setValue(value);
}

bool frmAutoFill_Progress::yield() {
    if (m_sinceYield.elapsed() >= kYieldEveryMs) {
        QCoreApplication::processEvents();
        m_sinceYield.restart();
    }
    return m_cancelRequested;
}
