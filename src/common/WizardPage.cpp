#include "common/WizardPage.h"

#include "common/Icons.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
QWidget* makeBanner(QWidget* parent) {
    auto* banner = new QFrame(parent);
    banner->setObjectName(QStringLiteral("picBanner"));
    banner->setFixedWidth(120);
    banner->setStyleSheet(
        QStringLiteral("#picBanner { background: qlineargradient(x1:0, y1:0, x2:0, y2:1,"
                       " stop:0 #1f4e79, stop:1 #4a86c5); }"));
    auto* layout = new QVBoxLayout(banner);
    layout->setContentsMargins(0, 24, 0, 0);
    auto* icon = new QLabel(banner);
    icon->setPixmap(Icons::App().pixmap(64, 64));
    icon->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    layout->addWidget(icon);
    layout->addStretch(1);
    return banner;
}
} // namespace

WizardPage::WizardPage(Flow flow, const QString& name, const QString& title, const QString& heading,
                       const QString& intro, QWidget* parent)
    : QDialog(parent), m_flow(flow) {
    setObjectName(name);
    setWindowTitle(title);
    setWindowIcon(Icons::App());
    setMinimumSize(600, 420);
    // One size for every screen, so Next and Back do not make the window jump.
    resize(680, 440);

    auto* top = new QHBoxLayout;
    top->setContentsMargins(0, 0, 0, 0);
    top->setSpacing(0);
    top->addWidget(makeBanner(this));

    auto* content = new QVBoxLayout;
    content->setContentsMargins(20, 16, 20, 8);
    content->setSpacing(10);
    auto* lblHeading = new QLabel(heading, this);
    lblHeading->setObjectName(QStringLiteral("lblHeading"));
    QFont font = lblHeading->font();
    font.setPointSizeF(font.pointSizeF() * 1.4);
    font.setBold(true);
    lblHeading->setFont(font);
    lblHeading->setWordWrap(true);
    content->addWidget(lblHeading);
    auto* lblIntro = new QLabel(intro, this);
    lblIntro->setObjectName(QStringLiteral("lblIntro"));
    lblIntro->setWordWrap(true);
    content->addWidget(lblIntro);
    m_body = new QVBoxLayout;
    m_body->setSpacing(8);
    content->addLayout(m_body, 1);
    top->addLayout(content, 1);

    auto* line = new QFrame(this);
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);

    cmdBack = new QPushButton(QStringLiteral("< &Back"), this);
    cmdBack->setObjectName(QStringLiteral("cmdBack"));
    cmdNext = new QPushButton(QStringLiteral("&Next >"), this);
    cmdNext->setObjectName(QStringLiteral("cmdNext"));
    cmdNext->setDefault(true);
    cmdCancel = new QPushButton(QStringLiteral("&Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    auto* buttons = new QHBoxLayout;
    buttons->setContentsMargins(12, 8, 12, 12);
    buttons->addStretch(1);
    buttons->addWidget(cmdBack);
    buttons->addWidget(cmdNext);
    buttons->addSpacing(12);
    buttons->addWidget(cmdCancel);

    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->setSpacing(0);
    outer->addLayout(top, 1);
    outer->addWidget(line);
    outer->addLayout(buttons);

    connect(cmdNext, &QPushButton::clicked, this, [this] { cmdNext_Click(); });
    connect(cmdBack, &QPushButton::clicked, this, [this] { cmdBack_Click(); });
    connect(cmdCancel, &QPushButton::clicked, this, &WizardPage::cmdCancel_Click);
}

void WizardPage::cmdNext_Click() {
    ++m_flow.screen;
    finish();
}

void WizardPage::cmdBack_Click() {
    --m_flow.screen;
    finish();
}

void WizardPage::cmdCancel_Click() {
    m_flow.cancel = true;
    finish();
}

void WizardPage::finish() {
    m_finished = true;
    accept();
}

void WizardPage::reject() {
    if (!m_finished)
        m_flow.cancel = true;
    m_finished = true;
    QDialog::reject();
}
