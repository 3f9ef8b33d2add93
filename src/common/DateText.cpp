#include "common/DateText.h"

#include <array>

namespace Common {

int GetDayOfWeekIndex(const QString& sDay) {
    static const std::array<QLatin1StringView, 7> kDays = {
        QLatin1StringView("Monday"),   QLatin1StringView("Tuesday"), QLatin1StringView("Wednesday"),
        QLatin1StringView("Thursday"), QLatin1StringView("Friday"),  QLatin1StringView("Saturday"),
        QLatin1StringView("Sunday")};
    const QString day = sDay.trimmed();
    for (int i = 0; i < static_cast<int>(kDays.size()); ++i)
        if (day.compare(kDays[static_cast<size_t>(i)], Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

QDate NextMonth(const QDate& MyDate) {
    return MyDate.addMonths(1);
}

QDate EndOfMonth(const QDate& MyDate) {
    return QDate(MyDate.year(), MyDate.month(), MyDate.daysInMonth());
}

int DaysInMonth(const QDate& MyDate) {
    return MyDate.daysInMonth();
}

QString StrZToStr(const QString& s) {
    const qsizetype zero = s.indexOf(QChar(u'\0'));
    return zero < 0 ? s : s.left(zero);
}

} // namespace Common
