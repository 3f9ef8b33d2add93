#include "print/PrintLayout.h"

#include "store/ModMain.h"
#include "store/Records.h"
#include "store/TimeText.h"
#include "store/Transaction.h"
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
    auto rs = DB().Execute(QStringLiteral("SELECT id, Type, TimeOnTop, Title FROM Timetable WHERE "
                                          "id = ") +
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
    for (auto d = DB().Execute(QStringLiteral("SELECT id, DOW FROM DayTitle WHERE TimetableID = ") +
                               id + QStringLiteral(" ORDER BY pos;"));
         !d.eof(); d.MoveNext()) {
        dayIDs << d.Field(qint16(0)).toInt();
        days << d.Field(qint16(1)).toString();
    }
    for (auto p = DB().Execute(QStringLiteral("SELECT id, StartTime, Duration, SpecialID FROM "
                                              "TimeTitle WHERE TimetableID = ") +
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

    // Cell texts by (day title, time title); a cell without a slot is blank.
    const QHash<qint32, QString> texts = FormatSlotTexts(TimetableID, type);
    const QString empty = EmptySlotText(type);
    QHash<QPair<qint32, qint32>, QString> at;
    for (auto s = DB().Execute(QStringLiteral("SELECT id, DayTitleID, TimeTitleID FROM Slot WHERE "
                                              "TimetableID = ") +
                               id + QLatin1Char(';'));
         !s.eof(); s.MoveNext()) {
        const QPair<qint32, qint32> key{s.Field(qint16(1)).toInt(), s.Field(qint16(2)).toInt()};
        // Two slots in one cell: the later one shows, as in the grid.
        at.insert(key, texts.value(s.Field(qint16(0)).toInt(), empty));
    }
    t.columnHeadings = t.timeOnTop ? times : days;
    t.rowHeadings = t.timeOnTop ? days : times;
    for (int r = 0; r < t.rowHeadings.size(); ++r) {
        QStringList line;
        for (int c = 0; c < t.columnHeadings.size(); ++c) {
            const qint32 day = t.timeOnTop ? dayIDs[r] : dayIDs[c];
            const qint32 time = t.timeOnTop ? timeIDs[c] : timeIDs[r];
            line << at.value({day, time});
        }
        t.cells << line;
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
