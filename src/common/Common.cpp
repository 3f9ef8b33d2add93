#include "common/Common.h"

#include "common/Variant.h"

#include <QApplication>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QMessageBox>

namespace Common {

namespace {
MsgBoxHandler& msgBoxHandler() {
    static MsgBoxHandler handler;
    return handler;
}

MsgResult showRealBox(const QString& text, MsgButtons buttons, MsgIcon icon, const QString& title) {
    QMessageBox box(QApplication::activeWindow());
    box.setWindowTitle(title.isEmpty() ? AppTitle() : title);
    box.setText(text);
    switch (icon) {
    case MsgIcon::Critical:
        box.setIcon(QMessageBox::Critical);
        break;
    case MsgIcon::Question:
        box.setIcon(QMessageBox::Question);
        break;
    case MsgIcon::Exclamation:
        box.setIcon(QMessageBox::Warning);
        break;
    case MsgIcon::Information:
        box.setIcon(QMessageBox::Information);
        break;
    case MsgIcon::None:
        box.setIcon(QMessageBox::NoIcon);
        break;
    }
    switch (buttons) {
    case MsgButtons::Ok:
        box.setStandardButtons(QMessageBox::Ok);
        break;
    case MsgButtons::OkCancel:
        box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
        break;
    case MsgButtons::YesNo:
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        break;
    case MsgButtons::YesNoCancel:
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
        break;
    }
    switch (box.exec()) {
    case QMessageBox::Yes:
        return MsgResult::Yes;
    case QMessageBox::No:
        return MsgResult::No;
    case QMessageBox::Ok:
        return MsgResult::Ok;
    default:
        // Closing the box with Escape or the title bar answers like its "no" button.
        return buttons == MsgButtons::Ok      ? MsgResult::Ok
               : buttons == MsgButtons::YesNo ? MsgResult::No
                                              : MsgResult::Cancel;
    }
}
} // namespace

MsgResult MsgBox(const QString& text, MsgButtons buttons, MsgIcon icon, const QString& title) {
    if (msgBoxHandler())
        return msgBoxHandler()(text, buttons, icon, title.isEmpty() ? AppTitle() : title);
    return showRealBox(text, buttons, icon, title);
}

void SetMsgBoxHandler(MsgBoxHandler handler) {
    msgBoxHandler() = std::move(handler);
}

QString AppTitle() {
    return QStringLiteral("Vantor Planner");
}

QString AppDir() {
    const QByteArray overridden = qgetenv("VANTOR_APP_DIR");
    if (!overridden.isEmpty())
        return QDir::cleanPath(QString::fromLocal8Bit(overridden));
    if (!QCoreApplication::instance())
        return QDir::currentPath();
    // Built, the files sit beside the program; installed, in its share folder.
    const QString beside = QCoreApplication::applicationDirPath();
    const QString installed = QDir::cleanPath(beside + QStringLiteral("/../share/vantor-planner"));
    if (!QFileInfo::exists(beside + QStringLiteral("/blank.db")) &&
        QFileInfo::exists(installed + QStringLiteral("/blank.db")))
        return installed;
    return beside;
}

QString SQLReplace(const QString& text) {
    QString out;
    out.reserve(text.size() + 4);
    for (const QChar c : text) {
        out += c;
        if (c == QLatin1Char('\''))
            out += c;
    }
    return out;
}

QString NullToString(const Variant& value) {
    return value.toString();
}

} // namespace Common
