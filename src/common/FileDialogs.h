#pragma once
// Open and save file dialogs, and the seam that lets tests answer them.
// Filters are written "description|pattern|description|pattern".

#include <QString>
#include <QStringList>
#include <functional>

class QWidget;

namespace Common {

// The dialog flags, with the values callers and tests see in FileDialogRequest::flags.
namespace OFN {
constexpr int ReadOnly = 0x1;
constexpr int OverwritePrompt = 0x2;
constexpr int HideReadOnly = 0x4;
constexpr int EnableHook = 0x20;
constexpr int EnableTemplate = 0x40;
constexpr int AllowMultiSelect = 0x200;
constexpr int FileMustExist = 0x1000;
} // namespace OFN

struct FileDialogRequest {
    bool save = false;
    QString title;
    QString filter;          // as the caller wrote it, "desc|pattern|..."
    QStringList nameFilters; // the same, as Qt filters
    int filterIndex = 1;     // 1-based, as chosen or to preselect
    QString initDir;
    QString defaultExt;
    QString fileName; // in: the suggested name; out: the chosen one
    int flags = 0;
    bool readOnlyChecked = false; // out: the read-only box was ticked
};

// Returns true when the user chose a file (written to request.fileName).
using FileDialogHandler = std::function<bool(FileDialogRequest& request)>;
void SetFileDialogHandler(FileDialogHandler handler);

// Turns "desc|pattern|desc|pattern" into Qt's name filters.
QStringList FilterToNameFilters(const QString& filter);
// Adds ".ext" to a chosen name that has no extension of its own.
QString AddDefaultExtension(const QString& fileName, const QString& defaultExt);

// Both return false, with FileName unchanged, when the user cancels.
bool VBGetOpenFileName(QString& FileName, QString* FileTitle = nullptr, bool FileMustExist = true,
                       bool MultiSelect = false, bool ReadOnly = false, bool HideReadOnly = false,
                       const QString& Filter = QStringLiteral("All (*.*)|*.*"),
                       int* FilterIndex = nullptr, const QString& InitDir = QString(),
                       const QString& DlgTitle = QString(), const QString& DefaultExt = QString(),
                       QWidget* Owner = nullptr, int Flags = 0);

bool VBGetSaveFileName(QString& FileName, QString* FileTitle = nullptr, bool OverWritePrompt = true,
                       bool MultiSelect = false, bool ReadOnly = false, bool HideReadOnly = false,
                       const QString& Filter = QStringLiteral("All (*.*)|*.*"),
                       int* FilterIndex = nullptr, const QString& InitDir = QString(),
                       const QString& DlgTitle = QString(), const QString& DefaultExt = QString(),
                       QWidget* Owner = nullptr, int Flags = 0);

} // namespace Common
