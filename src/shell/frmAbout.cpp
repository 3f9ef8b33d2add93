#include "shell/frmAbout.h"

#include "common/Common.h"
#include "common/Icons.h"
#include "common/Settings.h"
#include "shell/CrashReport.h"
#include "store/ModMain.h"

#include <QClipboard>
#include <QDialogButtonBox>
#include <QDir>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QSysInfo>
#include <QTimer>
#include <QVBoxLayout>
#include <sqlite3.h>

namespace {
QLabel* line(QWidget* parent, const QString& text) {
    auto* label = new QLabel(text, parent);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}
} // namespace

frmAbout::frmAbout(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmAbout"));
    setWindowTitle(QStringLiteral("About Vantor Planner"));
    setWindowIcon(Icons::App());

    auto* picture = new QLabel(this);
    picture->setPixmap(Icons::App().pixmap(64, 64));
    picture->setAlignment(Qt::AlignTop);
    auto* title = line(this, Common::AppTitle());
    QFont font = title->font();
    font.setPointSizeF(font.pointSizeF() * 1.6);
    font.setBold(true);
    title->setFont(font);
    auto* text = new QVBoxLayout;
    text->addWidget(title);
    text->addWidget(line(this, QStringLiteral("Version %1").arg(QStringLiteral(VANTOR_VERSION))));
    text->addWidget(
        line(this, QStringLiteral("School timetables, built by hand or by Auto Fill.")));
    text->addSpacing(8);
    text->addWidget(line(this, QStringLiteral("Qt %1, SQLite %2")
                                   .arg(QString::fromLatin1(qVersion()),
                                        QString::fromLatin1(sqlite3_libversion()))));
    text->addStretch(1);
    auto* top = new QHBoxLayout;
    top->addWidget(picture);
    top->addSpacing(12);
    top->addLayout(text, 1);

    auto* cmdSysInfo = new QPushButton(QStringLiteral("&System Info..."), this);
    cmdSysInfo->setObjectName(QStringLiteral("cmdSysInfo"));
    auto* cmdOk = new QPushButton(QStringLiteral("OK"), this);
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    cmdOk->setDefault(true);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdSysInfo);
    buttons->addWidget(cmdOk);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top, 1);
    layout->addLayout(buttons);
    connect(cmdSysInfo, &QPushButton::clicked, this, &frmAbout::StartSysInfo);
    connect(cmdOk, &QPushButton::clicked, this, &QDialog::accept);
}

QString frmAbout::SystemInformation() {
    QStringList info;
    const auto add = [&](const QString& name, const QString& value) {
        info << name + QStringLiteral(": ") + (value.isEmpty() ? QStringLiteral("-") : value);
    };
    add(QStringLiteral("Program"),
        Common::AppTitle() + QLatin1Char(' ') + QStringLiteral(VANTOR_VERSION));
    add(QStringLiteral("Operating system"), QSysInfo::prettyProductName());
    add(QStringLiteral("Kernel"),
        QSysInfo::kernelType() + QLatin1Char(' ') + QSysInfo::kernelVersion());
    add(QStringLiteral("Processor"), QSysInfo::currentCpuArchitecture());
    add(QStringLiteral("Qt"), QString::fromLatin1(qVersion()));
    add(QStringLiteral("Qt platform plugin"), QGuiApplication::platformName());
    if (const QScreen* screen = QGuiApplication::primaryScreen())
        add(QStringLiteral("Screen"), QStringLiteral("%1 x %2 pixels, %3 dpi")
                                          .arg(screen->size().width())
                                          .arg(screen->size().height())
                                          .arg(screen->logicalDotsPerInch()));
    add(QStringLiteral("SQLite"), QString::fromLatin1(sqlite3_libversion()));
    add(QStringLiteral("Application folder"), QDir::toNativeSeparators(Common::AppDir()));
    add(QStringLiteral("Settings"),
        QDir::toNativeSeparators(Common::SettingsFile(QString::fromLatin1(Common::kConfigApp))) +
            QStringLiteral(", ") +
            QDir::toNativeSeparators(
                Common::SettingsFile(QString::fromLatin1(Common::kOptionsApp))));
    add(QStringLiteral("Crash reports"), QDir::toNativeSeparators(CrashReport::ReportFolder()));
    add(QStringLiteral("Project"),
        ModMain::ProjectIsOpen()
            ? QDir::toNativeSeparators(ModMain::DB().GetDBFilename()) +
                  (ModMain::DB().IsReadOnly() ? QStringLiteral(" (read only)") : QString())
            : QStringLiteral("none open"));
    return info.join(QLatin1Char('\n'));
}

void frmAbout::StartSysInfo() {
    const QString text = SystemInformation();
    if (text.isEmpty()) {
        Common::MsgBox(QStringLiteral("System Information Is Unavailable At This Time"),
                       Common::MsgButtons::Ok, Common::MsgIcon::Exclamation);
        return;
    }
    QDialog dialog(this);
    dialog.setObjectName(QStringLiteral("frmSysInfo"));
    dialog.setWindowTitle(QStringLiteral("System Information"));
    dialog.resize(620, 320);
    auto* box = new QPlainTextEdit(text, &dialog);
    box->setObjectName(QStringLiteral("txtSysInfo"));
    box->setReadOnly(true);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, &dialog);
    connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    QPushButton* copy = buttons->addButton(QStringLiteral("&Copy"), QDialogButtonBox::ActionRole);
    copy->setObjectName(QStringLiteral("cmdCopy"));
    connect(copy, &QPushButton::clicked, &dialog,
            [text] { QGuiApplication::clipboard()->setText(text); });
    auto* layout = new QVBoxLayout(&dialog);
    layout->addWidget(new QLabel(QStringLiteral("Copy the text below into your message to "
                                                "support:"),
                                 &dialog));
    layout->addWidget(box, 1);
    layout->addWidget(buttons);
    dialog.exec();
}

frmSplash::frmSplash(QWidget* parent) : QDialog(parent, Qt::SplashScreen) {
    setObjectName(QStringLiteral("frmSplash"));
    setStyleSheet(QStringLiteral("#frmSplash { background: qlineargradient(x1:0, y1:0, x2:0, "
                                 "y2:1, stop:0 #1f4e79, stop:1 #4a86c5); } QLabel { color: "
                                 "white; }"));
    auto* picture = new QLabel(this);
    picture->setPixmap(Icons::App().pixmap(96, 96));
    picture->setAlignment(Qt::AlignCenter);
    auto* title = new QLabel(Common::AppTitle(), this);
    QFont font = title->font();
    font.setPointSizeF(font.pointSizeF() * 2);
    font.setBold(true);
    title->setFont(font);
    title->setAlignment(Qt::AlignCenter);
    auto* version =
        new QLabel(QStringLiteral("Version %1").arg(QStringLiteral(VANTOR_VERSION)), this);
    version->setAlignment(Qt::AlignCenter);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(40, 30, 40, 30);
    layout->addWidget(picture);
    layout->addWidget(title);
    layout->addWidget(version);
    setFixedSize(sizeHint().expandedTo(QSize(380, 240)));
    // Long enough to be seen, short enough not to wait for.
    QTimer::singleShot(1200, this, &QDialog::accept);
}

void frmSplash::keyPressEvent(QKeyEvent*) {
    accept();
}

void frmSplash::mousePressEvent(QMouseEvent*) {
    accept();
}
