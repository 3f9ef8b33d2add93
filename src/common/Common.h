#pragma once
// General helpers shared by every part of the program, and the message-box
// seam: nothing shows a QMessageBox except through MsgBox, so tests can answer.

#include <QString>
#include <functional>

class Variant;

namespace Common {

enum class MsgButtons { Ok, OkCancel, YesNo, YesNoCancel };
enum class MsgIcon { None, Critical, Question, Exclamation, Information };
enum class MsgResult { Ok, Cancel, Yes, No };

using MsgBoxHandler =
    std::function<MsgResult(const QString& text, MsgButtons, MsgIcon, const QString& title)>;

// Shows a message box (or asks the installed handler) and returns the answer.
MsgResult MsgBox(const QString& text, MsgButtons buttons = MsgButtons::Ok,
                 MsgIcon icon = MsgIcon::None, const QString& title = QString());
// Replaces the real box; an empty function restores it.
void SetMsgBoxHandler(MsgBoxHandler handler);

// The program's name as shown in title bars.
QString AppTitle();
// The application folder, where the files the program reads at run time
// are: VANTOR_APP_DIR when set; the program's own folder in a build; its
// share/vantor-planner folder when installed.
QString AppDir();

// Doubles every single quote so the text can stand between quotes in SQL.
QString SQLReplace(const QString& text);
// Null or empty gives "", anything else its text.
QString NullToString(const Variant& value);

} // namespace Common
