#include "common/FileDialogs.h"

#include "common/DateText.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QRegularExpression>
#include <QScreen>

namespace Common {

namespace {
FileDialogHandler& fileDialogHandler() {
    static FileDialogHandler handler;
    return handler;
}

bool runQtDialog(FileDialogRequest& req, QWidget* owner) {
    QFileDialog dlg(owner, req.title);
    // Qt's own dialog behaves the same on every desktop, so filters and the
    // default extension work as the program expects everywhere.
    dlg.setOption(QFileDialog::DontUseNativeDialog, true);
    dlg.setAcceptMode(req.save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    if (req.save)
        dlg.setFileMode(QFileDialog::AnyFile);
    else if (req.flags & OFN::AllowMultiSelect)
        dlg.setFileMode(QFileDialog::ExistingFiles);
    else
        dlg.setFileMode((req.flags & OFN::FileMustExist) ? QFileDialog::ExistingFile
                                                         : QFileDialog::AnyFile);
    dlg.setOption(QFileDialog::DontConfirmOverwrite, !(req.flags & OFN::OverwritePrompt));
    dlg.setOption(QFileDialog::ReadOnly, false);
    dlg.setNameFilters(req.nameFilters);
    if (req.filterIndex >= 1 && req.filterIndex <= req.nameFilters.size())
        dlg.selectNameFilter(req.nameFilters.at(req.filterIndex - 1));
    if (!req.defaultExt.isEmpty())
        dlg.setDefaultSuffix(req.defaultExt);
    if (!req.initDir.isEmpty())
        dlg.setDirectory(req.initDir);
    if (!req.fileName.isEmpty())
        dlg.selectFile(req.fileName);

    // Centre the dialog on the screen it opens on.
    dlg.adjustSize();
    if (QScreen* screen = owner ? owner->screen() : QApplication::primaryScreen()) {
        const QRect avail = screen->availableGeometry();
        dlg.move(avail.left() + (avail.width() - dlg.width()) / 2,
                 avail.top() + (avail.height() - dlg.height()) / 2);
    }
    if (dlg.exec() != QDialog::Accepted || dlg.selectedFiles().isEmpty())
        return false;
    req.fileName = dlg.selectedFiles().join(QLatin1Char('\n'));
    req.filterIndex = static_cast<int>(req.nameFilters.indexOf(dlg.selectedNameFilter())) + 1;
    return true;
}

bool runDialog(bool save, QString& FileName, QString* FileTitle, int flags, const QString& Filter,
               int* FilterIndex, const QString& InitDir, const QString& DlgTitle,
               const QString& DefaultExt, QWidget* Owner) {
    FileDialogRequest req;
    req.save = save;
    req.title = DlgTitle;
    req.filter = Filter;
    req.nameFilters = FilterToNameFilters(Filter);
    req.filterIndex = FilterIndex ? *FilterIndex : 1;
    req.initDir = InitDir;
    req.defaultExt = DefaultExt;
    req.fileName = FileName;
    req.flags = flags;

    const bool chosen = fileDialogHandler() ? fileDialogHandler()(req) : runQtDialog(req, Owner);
    if (!chosen || req.fileName.isEmpty())
        return false;
    const QString chosenName = StrZToStr(req.fileName);
    FileName = (req.flags & OFN::AllowMultiSelect) ? chosenName
                                                   : AddDefaultExtension(chosenName, DefaultExt);
    if (FileTitle)
        *FileTitle = QFileInfo(FileName.section(QLatin1Char('\n'), 0, 0)).fileName();
    if (FilterIndex)
        *FilterIndex = req.filterIndex;
    return true;
}

int callerFlags(int Flags) {
    // The caller cannot install its own hook or dialog template.
    return Flags & ~(OFN::EnableHook | OFN::EnableTemplate);
}
} // namespace

void SetFileDialogHandler(FileDialogHandler handler) {
    fileDialogHandler() = std::move(handler);
}

QStringList FilterToNameFilters(const QString& filter) {
    QStringList out;
    const QStringList parts = filter.split(QLatin1Char('|'));
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        QString desc = parts.at(i).trimmed();
        QStringList patterns = parts.at(i + 1).split(QLatin1Char(';'), Qt::SkipEmptyParts);
        // Linux file names are case-sensitive; show school.vnpl under *.VNPL too.
        const QStringList given = patterns;
        for (const QString& p : given) {
            const QString lower = p.trimmed().toLower();
            if (!patterns.contains(lower))
                patterns << lower;
        }
        for (QString& p : patterns) {
            p = p.trimmed();
            // "*.*" means every file, but Qt would skip names without a dot.
            if (p == QLatin1String("*.*"))
                p = QStringLiteral("*");
        }
        patterns.removeDuplicates();
        // The description usually repeats the pattern in brackets; Qt reads the
        // patterns from there, so replace that part with the full list.
        desc.remove(QRegularExpression(QStringLiteral("\\s*\\([^()]*\\)\\s*$")));
        out << desc + QStringLiteral(" (") + patterns.join(QLatin1Char(' ')) + QLatin1Char(')');
    }
    return out;
}

QString AddDefaultExtension(const QString& fileName, const QString& defaultExt) {
    if (defaultExt.isEmpty() || fileName.isEmpty())
        return fileName;
    const QFileInfo info(fileName);
    if (!info.suffix().isEmpty())
        return fileName;
    QString ext = defaultExt;
    if (ext.startsWith(QLatin1Char('.')))
        ext.remove(0, 1);
    return fileName.endsWith(QLatin1Char('.')) ? fileName + ext : fileName + QLatin1Char('.') + ext;
}

bool VBGetOpenFileName(QString& FileName, QString* FileTitle, bool FileMustExist, bool MultiSelect,
                       bool ReadOnly, bool HideReadOnly, const QString& Filter, int* FilterIndex,
                       const QString& InitDir, const QString& DlgTitle, const QString& DefaultExt,
                       QWidget* Owner, int Flags) {
    const int flags = (FileMustExist ? OFN::FileMustExist : 0) |
                      (MultiSelect ? OFN::AllowMultiSelect : 0) | (ReadOnly ? OFN::ReadOnly : 0) |
                      (HideReadOnly ? OFN::HideReadOnly : 0) | callerFlags(Flags);
    return runDialog(false, FileName, FileTitle, flags, Filter, FilterIndex, InitDir, DlgTitle,
                     DefaultExt, Owner);
}

bool VBGetSaveFileName(QString& FileName, QString* FileTitle, bool OverWritePrompt,
                       bool MultiSelect, bool ReadOnly, bool HideReadOnly, const QString& Filter,
                       int* FilterIndex, const QString& InitDir, const QString& DlgTitle,
                       const QString& DefaultExt, QWidget* Owner, int Flags) {
    const int flags = (OverWritePrompt ? OFN::OverwritePrompt : 0) |
                      (MultiSelect ? OFN::AllowMultiSelect : 0) | (ReadOnly ? OFN::ReadOnly : 0) |
                      (HideReadOnly ? OFN::HideReadOnly : 0) | callerFlags(Flags);
    return runDialog(true, FileName, FileTitle, flags, Filter, FilterIndex, InitDir, DlgTitle,
                     DefaultExt, Owner);
}

} // namespace Common
