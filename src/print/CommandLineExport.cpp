#include "print/CommandLineExport.h"

#include "common/ErrorHandler.h"
#include "print/TimetablePrinting.h"
#include "store/ModMain.h"
#include "store/Project.h"
#include "timetable/TimetableRecords.h"

#include <QDir>
#include <QFileInfo>

namespace Print {

int RunExport(const ExportRequest& request, QString& error) {
    const QString project = QDir::toNativeSeparators(request.project);
    if (!QFileInfo(request.project).isFile()) {
        error = QStringLiteral("There is no project file %1.").arg(project);
        return 1;
    }
    if (!ModMain::OpenProject(request.project)) {
        error = ModMain::OpenFailureText(request.project);
        return 1;
    }
    QVector<qint32> ids = ModMain::AllTimetableIDs();
    if (ids.isEmpty()) {
        ModMain::DB().DBClose();
        error = QStringLiteral("%1 has no timetables to export.").arg(project);
        return 1;
    }
    if (!request.timetable.isEmpty()) {
        QVector<qint32> named;
        for (const ModMain::TimetableEntry& e : ModMain::TimetableList())
            if (e.name == request.timetable)
                named << e.id;
        if (named.isEmpty()) {
            QStringList names;
            for (const ModMain::TimetableEntry& e : ModMain::TimetableList())
                names << e.name;
            ModMain::DB().DBClose();
            error = QStringLiteral("%1 has no timetable called \"%2\". Its timetables are: %3.")
                        .arg(project, request.timetable, names.join(QStringLiteral(", ")));
            return 1;
        }
        ids = named;
    } else if (!request.all) {
        ids = {ids.first()};
    }
    QVector<ModMain::PrintedTimetable> tables;
    bool readWhole = true;
    {
        // One action: the first error read is reported, the rest of the
        // reading is skipped, and nothing is written from what was read.
        ActionScope reading;
        for (const qint32 id : ids)
            tables << ModMain::PrintTimetable(id);
        readWhole = !ActionScope::Failed();
    }
    ModMain::DB().DBClose();
    if (!readWhole) {
        error = QStringLiteral("%1 could not be read whole, so %2 was not written.")
                    .arg(project, QDir::toNativeSeparators(request.output));
        return 1;
    }
    error = request.html ? WriteHtml(request.output, tables)
                         : WritePdf(request.output, tables, PageOptions());
    return error.isEmpty() ? 0 : 1;
}

} // namespace Print
