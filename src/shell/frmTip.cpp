#include "shell/frmTip.h"

#include "common/Common.h"
#include "common/Icons.h"
#include "common/Settings.h"

#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTextStream>
#include <QVBoxLayout>

namespace {
const QString kOptions = QStringLiteral("Options");
const QString kShowAtStartup = QStringLiteral("Show Tips at Startup");
const QString kCurrentTip = QStringLiteral("Current Tip");

QString option(const QString& key, const QString& fallback) {
    return Common::GetSetting(QString::fromLatin1(Common::kOptionsApp), kOptions, key, fallback);
}

void saveOption(const QString& key, const QString& value) {
    Common::SaveSetting(QString::fromLatin1(Common::kOptionsApp), kOptions, key, value);
}
} // namespace

QString frmTip::TipFile() {
    return QDir(Common::AppDir()).filePath(QStringLiteral("TipOfTheDay.txt"));
}

bool frmTip::ShowAtStartup() {
    return option(kShowAtStartup, QStringLiteral("1")).toInt() != 0;
}

frmTip::frmTip(QWidget* parent, const QString& tipFile) : QDialog(parent) {
    setObjectName(QStringLiteral("frmTip"));
    setWindowTitle(QStringLiteral("Tip of the Day"));
    setWindowIcon(Icons::App());
    resize(480, 200);

    auto* picture = new QLabel(this);
    picture->setPixmap(Icons::App().pixmap(48, 48));
    picture->setAlignment(Qt::AlignTop);
    auto* heading = new QLabel(QStringLiteral("Did you know..."), this);
    QFont font = heading->font();
    font.setPointSizeF(font.pointSizeF() * 1.3);
    font.setBold(true);
    heading->setFont(font);
    lblTipText = new QLabel(this);
    lblTipText->setObjectName(QStringLiteral("lblTipText"));
    lblTipText->setWordWrap(true);
    lblTipText->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    lblTipText->setTextInteractionFlags(Qt::TextSelectableByMouse);
    chkLoadTipsAtStartup = new QCheckBox(QStringLiteral("&Show tips at startup"), this);
    chkLoadTipsAtStartup->setObjectName(QStringLiteral("chkLoadTipsAtStartup"));
    cmdNextTip = new QPushButton(QStringLiteral("&Next Tip"), this);
    cmdNextTip->setObjectName(QStringLiteral("cmdNextTip"));
    cmdOk = new QPushButton(QStringLiteral("OK"), this);
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    cmdOk->setDefault(true);

    auto* text = new QVBoxLayout;
    text->addWidget(heading);
    text->addWidget(lblTipText, 1);
    auto* top = new QHBoxLayout;
    top->addWidget(picture);
    top->addLayout(text, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(chkLoadTipsAtStartup);
    buttons->addStretch(1);
    buttons->addWidget(cmdNextTip);
    buttons->addWidget(cmdOk);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top, 1);
    layout->addLayout(buttons);

    chkLoadTipsAtStartup->setChecked(ShowAtStartup());
    connect(chkLoadTipsAtStartup, &QCheckBox::clicked, this, [](bool on) {
        saveOption(kShowAtStartup, on ? QStringLiteral("1") : QStringLiteral("0"));
    });
    connect(cmdNextTip, &QPushButton::clicked, this, &frmTip::DoNextTip);
    connect(cmdOk, &QPushButton::clicked, this, &QDialog::accept);

    CurrentTip = option(kCurrentTip, QStringLiteral("1")).toInt();
    if (!LoadTips(tipFile)) {
        const QString file = QDir::toNativeSeparators(tipFile);
        lblTipText->setText(QStringLiteral("That the ") + file +
                            QStringLiteral(" file was not found? ") +
                            QStringLiteral("Create a text file named ") + file +
                            QStringLiteral(" using NotePad with 1 tip per line. ") +
                            QStringLiteral("Then place it in the same directory as the "
                                           "application. "));
    }
}

bool frmTip::LoadTips(const QString& fileName) {
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return false;
    QTextStream in(&file);
    while (!in.atEnd())
        Tips << in.readLine();
    file.close();
    DoNextTip();
    return true;
}

void frmTip::DoNextTip() {
    ++CurrentTip;
    if (CurrentTip > Tips.size())
        CurrentTip = 1;
    saveOption(kCurrentTip, QString::number(CurrentTip));
    DisplayCurrentTip();
}

void frmTip::DisplayCurrentTip() {
    if (!Tips.isEmpty())
        lblTipText->setText(Tips.value(CurrentTip - 1));
}
