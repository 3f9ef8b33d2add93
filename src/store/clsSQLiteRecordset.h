#pragma once
// The complete result of one statement, held in memory. Row 0 of the table
// holds the column names as the statement named them; rows 1..RecordCount the
// records. RecordIndex counts records from 0.

#include "common/Variant.h"

#include <QString>
#include <QVector>

class clsSQLiteRecordset {
public:
    const TableArray& vTableArray() const { return m_table; }
    void setVTableArray(const TableArray& table) { m_table = table; }
    void setVTableArray(TableArray&& table) { m_table = std::move(table); }

    qint32 RecordCount() const { return m_recordCount; }
    void setRecordCount(qint32 n) { m_recordCount = n; }
    qint32 RecordIndex() const { return m_recordIndex; }
    void setRecordIndex(qint32 i) { m_recordIndex = i; }

    // The EOF property (EOF itself is a C macro).
    bool eof() const { return m_recordIndex >= m_recordCount; }
    void MoveFirst() { m_recordIndex = 0; }
    void MoveNext() { ++m_recordIndex; }

    // By exact, case-sensitive column name; an unknown name reports error 381
    // and gives empty.
    Variant Field(const QString& name) const;
    Variant Field(const char* name) const { return Field(QString::fromUtf8(name)); }
    // By column position, counted from 0, whatever the integer's width: a
    // plain int must not silently read nothing.
    Variant Field(qint16 column) const;
    Variant Field(qint32 column) const { return cell(m_recordIndex + 1, column); }
    // Neither is a position.
    Variant Field(qint64) const = delete;
    Variant Field(double) const = delete;

private:
    Variant cell(int row, int column) const;

    TableArray m_table;
    qint32 m_recordCount = 0;
    qint32 m_recordIndex = 1;
};
