#include "wizards/ProjectCalendar.h"

#include "common/Common.h"
#include "store/ModMain.h"
#include "store/TimeText.h"
#include "store/Transaction.h"

#include <array>

using Common::SQLReplace;
using ModMain::DB;

namespace Wizard {

namespace {
struct Range {
    const char* name;
    int firstHour;
    int lastHour;
};
constexpr std::array<Range, 4> kRanges = {{{"8.00am to 3.00pm", 8, 15},
                                           {"7.00am to 4.00pm", 7, 16},
                                           {"8.00am to 4.00pm", 8, 16},
                                           {"9.00am to 5.00pm", 9, 17}}};
constexpr std::array<int, 2> kIncrements = {60, 120};

QStringList names(const QString& sql) {
    QStringList out;
    for (auto rs = DB().Execute(sql); !rs.eof(); rs.MoveNext())
        out << rs.Field("name").toString();
    return out;
}

qint32 storeTemplate(const QString& table, const QString& idColumn, const QString& title,
                     const QStringList& items) {
    Transaction tx;
    if (!tx.ok())
        return 0;
    DB().Execute(
        QStringLiteral("INSERT INTO %1 (name) VALUES ('%2');").arg(table, SQLReplace(title)));
    const qint32 id = DB().GetInsertID();
    for (int i = 0; i < items.size(); ++i)
        DB().Execute(QStringLiteral("INSERT INTO %1Item (%2,name,Pos) VALUES (%3,'%4',%5)")
                         .arg(table, idColumn)
                         .arg(id)
                         .arg(SQLReplace(items.at(i)))
                         .arg(i + 1));
    return id;
}
} // namespace

QStringList FixedRangeNames() {
    QStringList out;
    for (const Range& r : kRanges)
        out << QString::fromLatin1(r.name);
    return out;
}

QStringList IncrementNames() {
    QStringList out;
    for (int minutes : kIncrements)
        out << QStringLiteral("%1 minutes").arg(minutes);
    return out;
}

int IncrementMinutes(int incIndex) {
    return incIndex == 1 ? kIncrements[1] : kIncrements[0];
}

QVector<QTime> RangeTimes(int rangeIndex, int minutes) {
    QVector<QTime> times;
    if (rangeIndex < 0 || rangeIndex >= static_cast<int>(kRanges.size()) || minutes <= 0)
        return times;
    const Range& r = kRanges[static_cast<size_t>(rangeIndex)];
    const QTime last(r.lastHour, 0);
    for (QTime t(r.firstHour, 0); t.isValid() && t <= last; t = t.addSecs(minutes * 60)) {
        times << t;
        // Adding past midnight wraps round; stop rather than start again.
        if (t.addSecs(minutes * 60) < t)
            break;
    }
    return times;
}

TableArray DayTemplateList() {
    return DB()
        .Execute(QStringLiteral("SELECT id, name FROM DOWTemplate ORDER BY id;"))
        .vTableArray();
}

TableArray HourTemplateList() {
    return DB()
        .Execute(QStringLiteral("SELECT id, name FROM HourTemplate ORDER BY id;"))
        .vTableArray();
}

QStringList DayTemplateDays(qint32 templateID) {
    const QString sql =
        QStringLiteral("SELECT name FROM DOWTemplateItem WHERE DOWTemplateID = %1 ORDER BY pos")
            .arg(templateID);
    return names(sql);
}

QVector<QTime> HourTemplateTimes(qint32 templateID) {
    const QString sql =
        QStringLiteral("SELECT name FROM hourtemplateitem WHERE hourtemplateid = %1 ORDER BY pos")
            .arg(templateID);
    QVector<QTime> times;
    for (const QString& name : names(sql))
        times << TimeText::Parse(name);
    return times;
}

qint32 StoreDayTemplate(const QString& title, const QStringList& days) {
    return storeTemplate(QStringLiteral("DOWTemplate"), QStringLiteral("DOWTemplateID"), title,
                         days);
}

qint32 StoreHourTemplate(const QString& title, const QVector<QTime>& times) {
    QStringList texts;
    for (const QTime& t : times)
        texts << TimeText::ToText(t);
    return storeTemplate(QStringLiteral("HourTemplate"), QStringLiteral("HourTemplateID"), title,
                         texts);
}

void WriteProjectCalendar(const QVector<QTime>& times, const QStringList& days) {
    Transaction tx;
    if (!tx.ok())
        return;
    for (int i = 1; i < times.size(); ++i) {
        const QTime start = times.at(i - 1);
        // The blank after the time is part of the stored format; readers ignore it.
        DB().Execute(QStringLiteral("INSERT INTO ProjectTimeTitle (StartTime,Duration,Width,Height,"
                                    "SpecialID,Pos) VALUES ('%1 ', '%2',1600,600,1, %3);")
                         .arg(TimeText::ToText(start))
                         .arg(start.secsTo(times.at(i)) / 60)
                         .arg(i));
    }
    for (int i = 1; i <= days.size(); ++i)
        DB().Execute(QStringLiteral("INSERT INTO ProjectDayTitle (DOW,Height,Width,SpecialID,Pos) "
                                    "VALUES ('%1',600,600,1,%2)")
                         .arg(SQLReplace(days.at(i - 1)))
                         .arg(i));
}

} // namespace Wizard
