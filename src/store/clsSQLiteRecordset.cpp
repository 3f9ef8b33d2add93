#include "store/clsSQLiteRecordset.h"

#include "common/ErrorHandler.h"

Variant clsSQLiteRecordset::cell(int row, int column) const {
    if (row < 0 || row >= m_table.size() || column < 0 || column >= m_table.at(row).size())
        return Variant();
    return m_table.at(row).at(column);
}

Variant clsSQLiteRecordset::Field(const QString& name) const {
    return Guard("clsSQLiteRecordset", "Field", [&]() -> Variant {
        if (!m_table.isEmpty()) {
            const QVector<Variant>& header = m_table.first();
            for (int c = 0; c < header.size(); ++c)
                if (header.at(c).toString() == name)
                    return cell(m_recordIndex + 1, c);
        }
        throw VbError(VbErr::FieldNotFound, QStringLiteral("clsSQLiteRecordset.Field"),
                      QStringLiteral("Field ") + name + QStringLiteral(" not found"));
    });
}

Variant clsSQLiteRecordset::Field(qint16 column) const {
    return cell(m_recordIndex + 1, column);
}
