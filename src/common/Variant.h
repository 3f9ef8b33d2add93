#pragma once
// A value read from a project: empty (nothing was read), SQL NULL, or text.
// SQLite hands every non-null value back as text, numbers included, so the
// conversions below are the ones callers use to read a column.

#include <QString>
#include <QVariant>
#include <QVector>
#include <cmath>

class Variant {
public:
    enum class Kind { Empty, Null, Text };

    Variant() = default;
    static Variant null() {
        Variant v;
        v.m_kind = Kind::Null;
        return v;
    }
    Variant(const QString& text) : m_kind(Kind::Text), m_text(text) {}
    Variant(const char* text) : m_kind(Kind::Text), m_text(QString::fromUtf8(text)) {}

    Kind kind() const { return m_kind; }
    bool isEmpty() const { return m_kind == Kind::Empty; }
    bool isNull() const { return m_kind == Kind::Null; }
    bool isText() const { return m_kind == Kind::Text; }

    // Null and empty read as "" so optional columns need no special case.
    QString toString() const { return m_text; }
    int toInt(bool* ok = nullptr) const;
    qint64 toLongLong(bool* ok = nullptr) const;
    double toDouble(bool* ok = nullptr) const;
    // "True"/"False" as the program stores them; numbers are true when not 0.
    bool toBool() const;

    bool operator==(const Variant& o) const { return m_kind == o.m_kind && m_text == o.m_text; }

private:
    Kind m_kind = Kind::Empty;
    QString m_text;
};

inline int Variant::toInt(bool* ok) const {
    return static_cast<int>(toLongLong(ok));
}

inline qint64 Variant::toLongLong(bool* ok) const {
    bool good = false;
    const QString t = m_text.trimmed();
    qint64 v = t.toLongLong(&good);
    if (!good) {
        // Values such as "12.0" or "1e3" still read as whole numbers; what no
        // whole number holds (infinity, NaN, 1e300) reads as no number.
        const double d = t.toDouble(&good);
        good = good && std::isfinite(d) && std::fabs(d) < 9.0e18;
        v = good ? static_cast<qint64>(d < 0 ? d - 0.5 : d + 0.5) : 0;
    }
    if (ok)
        *ok = good;
    return v;
}

inline double Variant::toDouble(bool* ok) const {
    bool good = false;
    const double d = m_text.trimmed().toDouble(&good);
    if (ok)
        *ok = good;
    return good ? d : 0.0;
}

inline bool Variant::toBool() const {
    const QString t = m_text.trimmed();
    if (t.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0)
        return true;
    if (t.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0 || t.isEmpty())
        return false;
    bool ok = false;
    const double d = t.toDouble(&ok);
    return ok && d != 0.0;
}

// A statement's whole result: row 0 holds the column names, rows 1.. the records.
using TableArray = QVector<QVector<Variant>>;
