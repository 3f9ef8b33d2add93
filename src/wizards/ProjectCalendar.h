#pragma once
// The days and period times a new project is made from: the fixed ranges and
// saved templates the project wizard offers, and the rows New Project writes.
// Times are period boundaries: each but the last starts a period that lasts
// until the next one.

#include "common/Variant.h"

#include <QString>
#include <QStringList>
#include <QTime>
#include <QVector>

namespace Wizard {

// The fixed ranges, in the order the hours screen lists them before the templates.
QStringList FixedRangeNames();
// The period lengths the hours screen offers, in list order.
QStringList IncrementNames();
int IncrementMinutes(int incIndex);
// From the range's first time, every step of minutes up to and including its
// last time; a tail shorter than a step is dropped.
QVector<QTime> RangeTimes(int rangeIndex, int minutes);

// The saved day and hour templates as "id, name" rows, in the order made.
TableArray DayTemplateList();
TableArray HourTemplateList();
// The days or times of a saved template, in their order.
QStringList DayTemplateDays(qint32 templateID);
QVector<QTime> HourTemplateTimes(qint32 templateID);
// Saves a template in the open project; returns its id.
qint32 StoreDayTemplate(const QString& title, const QStringList& days);
qint32 StoreHourTemplate(const QString& title, const QVector<QTime>& times);

// Writes the project's periods (one per time but the last) and days.
void WriteProjectCalendar(const QVector<QTime>& times, const QStringList& days);

} // namespace Wizard
