#include "store/Project.h"

#include "common/Settings.h"
#include "store/ModMain.h"

#include <QFileInfo>

namespace ModMain {

QString LastDB() {
    return Common::GetSetting(QString::fromLatin1(Common::kConfigApp), QStringLiteral("Config"),
                              QStringLiteral("LastDB"));
}

void SetLastDB(const QString& path) {
    Common::SaveSetting(QString::fromLatin1(Common::kConfigApp), QStringLiteral("Config"),
                        QStringLiteral("LastDB"), path);
}

QString OpenFailureText(const QString& path) {
    QString description = DB().GetErrorString();
    int number = DB().GetErrorNumber();
    if (description.isEmpty()) {
        // DBOpen refuses missing files and folders without asking the library.
        const QFileInfo info(path);
        description = info.isDir() ? QStringLiteral("The name is a folder, not a project file")
                                   : QStringLiteral("File not found");
        number = 53;
    }
    return QStringLiteral("Unable to open project file ") + path + QStringLiteral(".\r\n") +
           description + QStringLiteral("\r\n") + QString::number(number);
}

} // namespace ModMain
