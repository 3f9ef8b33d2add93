#include "print/PrintLayout.h"

#include "store/ModMain.h"
#include "store/Records.h"
#include "store/TimeText.h"
#include "store/Transaction.h"
#include "timetable/CellLook.h"
#include "timetable/TimetableRecords.h"
#include "timetable/TimetableText.h"

#include <QHash>

namespace ModMain {

QString PrintedTimetable::FormatString() const {
    QStringList lines;
    lines << QStringLiteral("^|") + columnHeadings.join(QLatin1Char('|'));
    for (int r = 0; r < rowHeadings.size(); ++r) {
        QStringList fields = {rowHeadings[r]};
        for (const QString& text : cells.value(r))
            fields << QString(text).replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
        lines << fields.join(QLatin1Char('|'));
    }
    return lines.join(QLatin1Char(';'));
}

PrintedTimetable PrintTimetable(qint32 TimetableID) {
    Transaction read(Transaction::Read);
    PrintedTimetable t;
    const QString id = QString::number(TimetableID);
    auto rs =
        DB().Execute(QStringLiteral("SELECT id, Type, TimeOnTop, Title, UnavailableBackground, "
                                    "UnavailableForeground FROM Timetable WHERE id = ") +
                     id);
    if (rs.eof())
        return t;
    const TimetableRow row = ReadTimetable(TimetableID);
    const QString type = rs.Field(qint16(1)).toString();
    t.id = TimetableID;
    t.timeOnTop = rs.Field(qint16(2)).toBool();
    t.title = GetTimetableName(TimetableID);

    QVector<qint32> dayIDs, timeIDs;
    QStringList days, times;
    for (auto d = DB().Execute(QStringLiteral("SELECT ProjectDayTitleID, DOW FROM DayTitle WHERE "
                                              "TimetableID = ") +
                               id + QStringLiteral(" ORDER BY pos;"));
         !d.eof(); d.MoveNext()) {
        dayIDs << d.Field(qint16(0)).toInt();
        days << d.Field(qint16(1)).toString();
    }
    for (auto p = DB().Execute(QStringLiteral("SELECT ProjectTimeTitleID, StartTime, Duration, "
                                              "SpecialID FROM TimeTitle WHERE TimetableID = ") +
                               id + QStringLiteral(" ORDER BY pos;"));
         !p.eof(); p.MoveNext()) {
        timeIDs << p.Field(qint16(0)).toInt();
        const int special = p.Field(qint16(3)).toInt();
        QString heading;
        if (special == SpecialID::Ordinary)
            heading = FormatTimeTitle(TimeText::Parse(p.Field(qint16(1)).toString()),
                                      p.Field(qint16(2)).toInt(), row.Time12Hour);
        else if (special == SpecialID::Lunch)
            heading = QStringLiteral("Lunch");
        times << heading;
    }

    // Each cell as the grid shows it: its lessons, its mark, a double booking.
    const LessonIndex& idx = LessonIndex::current();
    const QColor unavailableBack = ColourFromNumber(rs.Field(qint16(4)).toLongLong());
    const QColor unavailableFore = ColourFromNumber(rs.Field(qint16(5)).toLongLong());
    const auto look = [&](qint32 day, qint32 time) {
        return LookOfCell(idx, TimetableID, {day, time}, type, unavailableBack, unavailableFore);
    };
    t.columnHeadings = t.timeOnTop ? times : days;
    t.rowHeadings = t.timeOnTop ? days : times;
    for (int r = 0; r < t.rowHeadings.size(); ++r) {
        QStringList line;
        QVector<QColor> backs;
        QVector<bool> clashes;
        for (int c = 0; c < t.columnHeadings.size(); ++c) {
            const qint32 day = t.timeOnTop ? dayIDs[r] : dayIDs[c];
            const qint32 time = t.timeOnTop ? timeIDs[c] : timeIDs[r];
            const CellLook cell = look(day, time);
            line << cell.text;
            backs << cell.back;
            clashes << cell.conflict;
        }
        t.cells << line;
        t.backs << backs;
        t.clashes << clashes;
    }
    return t;
}

QVector<qint32> AllTimetableIDs() {
    QVector<qint32> ids;
    for (auto rs = DB().Execute(QStringLiteral("SELECT id FROM timetable")); !rs.eof();
         rs.MoveNext())
        ids << rs.Field(qint16(0)).toInt();
    return ids;
}

} // namespace ModMain
