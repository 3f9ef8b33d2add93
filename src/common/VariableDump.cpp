#include "common/VariableDump.h"

#include "common/VbError.h"

namespace {
QString marker(const char* text) {
    return QString::fromLatin1(text);
}

QString tag(const QString& name, const QString& attributes, const QString& value) {
    return QLatin1Char('<') + name + attributes + QLatin1Char('>') + value + QStringLiteral("</") +
           name + QLatin1Char('>');
}

// Values are escaped so the dump stays well formed whatever a name holds.
QString escaped(const QString& text) {
    return text.toHtmlEscaped();
}

GlobalVariablesWriter& globalsWriter() {
    static GlobalVariablesWriter writer;
    return writer;
}
} // namespace

DumpValue::DumpValue(Kind kind, QString text) : m_kind(kind), m_text(std::move(text)) {}

DumpValue::DumpValue(const QVariant& value) : m_kind(Kind::Marker) {
    if (!value.isValid()) {
        m_text = marker("{Empty}");
    } else if (value.isNull()) {
        m_text = marker("{Null}");
    } else if (value.metaType().id() == QMetaType::QVariantList ||
               value.metaType().id() == QMetaType::QStringList) {
        m_text = marker("{Cannot dump variant arrays}");
    } else if (value.canConvert<QString>()) {
        m_kind = Kind::Text;
        m_text = escaped(value.toString());
    } else {
        m_text = QStringLiteral("{Error 13 formatting for output}");
    }
}

DumpValue::DumpValue(const QString& text) : DumpValue(Kind::Text, escaped(text)) {}
DumpValue::DumpValue(const char* text) : DumpValue(QString::fromUtf8(text)) {}
DumpValue::DumpValue(int number) : DumpValue(Kind::Text, QString::number(number)) {}
DumpValue::DumpValue(qint64 number) : DumpValue(Kind::Text, QString::number(number)) {}
DumpValue::DumpValue(bool flag)
    : DumpValue(Kind::Text, flag ? QStringLiteral("True") : QStringLiteral("False")) {}

DumpValue DumpValue::Null() {
    return {Kind::Marker, marker("{Null}")};
}
DumpValue DumpValue::Empty() {
    return {Kind::Marker, marker("{Empty}")};
}
DumpValue DumpValue::Object(const void* reference, const QString& description) {
    if (!reference)
        return {Kind::Marker, marker("{Nothing}")};
    return {Kind::Text, escaped(description)};
}
DumpValue DumpValue::DataObject() {
    return {Kind::Marker, marker("{DataObject}")};
}
DumpValue DumpValue::ExternalRecord() {
    return {Kind::Marker, marker("{Cannot dump external UDTs}")};
}
DumpValue DumpValue::RecordArray() {
    return {Kind::Marker, marker("{Cannot dump UDT arrays}")};
}
DumpValue DumpValue::RecordParameter() {
    return {Kind::Marker, marker("{Can't dump UDT parameters}")};
}
DumpValue DumpValue::VariantArray() {
    return {Kind::Marker, marker("{Cannot dump variant arrays}")};
}
DumpValue DumpValue::Record(const QString& typeName) {
    return {Kind::Marker, QStringLiteral("{UDT - ") + escaped(typeName) + QLatin1Char('}')};
}
DumpValue DumpValue::OpenFileName() {
    return {Kind::Marker, marker("{OPENFILENAME}")};
}
DumpValue DumpValue::Rect() {
    return {Kind::Marker, marker("{RECT}")};
}
DumpValue DumpValue::UninitialisedArray() {
    return {Kind::Marker, marker("{UnInitialised Array}")};
}
DumpValue DumpValue::UninitialisedDimension(int dimension) {
    return {Kind::Marker, QStringLiteral("{UnInitialised Array Dimension %1}").arg(dimension)};
}
DumpValue DumpValue::TruncatedArray(int dimensions) {
    return {Kind::Marker, QStringLiteral("{Dump truncated at %1 dimensions}").arg(dimensions)};
}

DumpValue DumpValue::Array(const QList<DumpValue>& elements, int lowerBound) {
    DumpValue value(Kind::Array, QString());
    value.m_elements = std::make_shared<const QList<DumpValue>>(elements);
    value.m_lowerBound = lowerBound;
    return value;
}

DumpValue DumpValue::Deferred(std::function<DumpValue()> compute) {
    DumpValue value(Kind::Deferred, QString());
    value.m_compute = std::move(compute);
    return value;
}

QString DumpValue::valueText() const {
    switch (m_kind) {
    case Kind::Text:
    case Kind::Marker:
        return m_text;
    case Kind::Array:
        // An array inside an array is a variant holding one.
        return QStringLiteral("{Cannot dump variant arrays}");
    case Kind::Deferred:
        break;
    }
    // The dump must never raise a second report: a value that fails to turn
    // into text says so in its place.
    int number = VbErr::Internal;
    try {
        return m_compute().valueText();
    } catch (const VbError& e) {
        number = e.number();
    } catch (...) {
    }
    return QStringLiteral("{Error %1 formatting for output}").arg(number);
}

QString DumpValue::element(const QString& name) const {
    if (m_kind != Kind::Array)
        return tag(name, QString(), valueText());
    QString out;
    for (qsizetype i = 0; i < m_elements->size(); ++i)
        out += tag(name, QStringLiteral(" Index=\"%1\"").arg(m_lowerBound + i),
                   (*m_elements)[i].valueText());
    return out;
}

VariableDump& VariableDump::local(const QString& name, const DumpValue& value) {
    m_locals += value.element(name);
    return *this;
}
VariableDump& VariableDump::module(const QString& name, const DumpValue& value) {
    m_module += value.element(name);
    return *this;
}
VariableDump& VariableDump::global(const QString& name, const DumpValue& value) {
    m_globals += value.element(name);
    return *this;
}
VariableDump& VariableDump::parameter(const QString& name, const DumpValue& value) {
    m_parameters += value.element(name);
    return *this;
}

bool VariableDump::isEmpty() const {
    return m_locals.isEmpty() && m_module.isEmpty() && m_globals.isEmpty() &&
           m_parameters.isEmpty();
}

QString VariableDump::text() const {
    return QStringLiteral("<Variables><LocalVariables>") + m_locals +
           QStringLiteral("</LocalVariables><ModuleVariables>") + m_module +
           QStringLiteral("</ModuleVariables><GlobalVariables>") + m_globals +
           QStringLiteral("</GlobalVariables></Variables><Parameters>") + m_parameters +
           QStringLiteral("</Parameters>");
}

void SetGlobalVariablesWriter(GlobalVariablesWriter writer) {
    globalsWriter() = std::move(writer);
}

void AddGlobalVariables(VariableDump& dump) {
    if (!globalsWriter())
        return;
    // Gathering state for a report must not itself fail the report.
    try {
        globalsWriter()(dump);
    } catch (...) {
    }
}
