#include "store/TimeText.h"

#include <QRegularExpression>

namespace TimeText {

QString ToText(const QTime& time) {
    return time.toString(QStringLiteral("HH:mm:ss"));
}

QString To12Hour(const QTime& time) {
    const int hour12 = time.hour() % 12 == 0 ? 12 : time.hour() % 12;
    return QStringLiteral("%1:%2%3")
        .arg(hour12)
        .arg(time.minute(), 2, 10, QLatin1Char('0'))
        .arg(time.hour() < 12 ? QLatin1String("am") : QLatin1String("pm"));
}

QTime Parse(const QString& text) {
    static const QRegularExpression re(QStringLiteral(
        "^\\s*(\\d{1,2})[:.](\\d{2})(?:[:.](\\d{2}))?(?:\\s*([aApP])\\.?\\s*[mM]\\.?)?\\s*$"));
    const QRegularExpressionMatch m = re.match(text);
    if (!m.hasMatch())
        return QTime();
    int hour = m.captured(1).toInt();
    const int minute = m.captured(2).toInt();
    const int second = m.captured(3).isEmpty() ? 0 : m.captured(3).toInt();
    const QString half = m.captured(4).toLower();
    if (!half.isEmpty()) {
        if (hour < 1 || hour > 12)
            return QTime();
        if (half == QLatin1String("a"))
            hour = hour == 12 ? 0 : hour;
        else
            hour = hour == 12 ? 12 : hour + 12;
    }
    return QTime(hour, minute, second);
}

} // namespace TimeText
