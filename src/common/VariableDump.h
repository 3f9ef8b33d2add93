#pragma once
// The text dump of a failing procedure's variables that goes with an error
// report. Values that are not plain text are written as fixed markers a
// support person recognises ("{Null}", "{Nothing}", ...); a value that fails
// to turn into text is written as "{Error N formatting for output}" instead of
// raising a second error.

#include <QList>
#include <QString>
#include <QVariant>
#include <functional>
#include <memory>

class DumpValue {
public:
    // Plain values: numbers, text, booleans and dates as text; a null
    // QVariant is "{Null}", an invalid one "{Empty}".
    DumpValue(const QVariant& value); // NOLINT: values convert implicitly
    DumpValue(const QString& text);   // NOLINT
    DumpValue(const char* text);      // NOLINT
    DumpValue(int number);            // NOLINT
    DumpValue(qint64 number);         // NOLINT
    DumpValue(bool flag);             // NOLINT

    static DumpValue Null();
    static DumpValue Empty();
    // An object reference; unset is "{Nothing}", set is its description.
    static DumpValue Object(const void* reference, const QString& description = QString());
    static DumpValue DataObject();
    // A record of a type the program does not own (a result set, a connection).
    static DumpValue ExternalRecord();
    static DumpValue RecordArray();
    static DumpValue RecordParameter();
    static DumpValue VariantArray();
    // A record of one of the program's own types.
    static DumpValue Record(const QString& typeName);
    static DumpValue OpenFileName();
    static DumpValue Rect();
    // An array never given a size.
    static DumpValue UninitialisedArray();
    // An array whose second or third dimension was never given a size.
    static DumpValue UninitialisedDimension(int dimension);
    // An array with more dimensions than the dump prints.
    static DumpValue TruncatedArray(int dimensions);
    // A one-dimensional array: one element per entry, numbered from lowerBound.
    static DumpValue Array(const QList<DumpValue>& elements, int lowerBound = 0);
    // A value worked out only when the dump is written; what it throws
    // becomes the formatting error.
    static DumpValue Deferred(std::function<DumpValue()> compute);

    // The element for a variable of this name, with its value.
    QString element(const QString& name) const;

private:
    // The text between the tags.
    QString valueText() const;
    enum class Kind { Text, Marker, Array, Deferred };
    DumpValue(Kind kind, QString text);

    Kind m_kind;
    QString m_text; // escaped text, or a marker written as it stands
    std::shared_ptr<const QList<DumpValue>> m_elements;
    int m_lowerBound = 0;
    std::function<DumpValue()> m_compute;
};

// One procedure's variables, section by section, written in the fixed order.
class VariableDump {
public:
    VariableDump& local(const QString& name, const DumpValue& value);
    VariableDump& module(const QString& name, const DumpValue& value);
    VariableDump& global(const QString& name, const DumpValue& value);
    VariableDump& parameter(const QString& name, const DumpValue& value);
    bool isEmpty() const;

    QString text() const;

private:
    QString m_locals, m_module, m_globals, m_parameters;
};

// The program-wide state worth seeing in every report (the open project, the
// timetable shown): the layer that owns it registers a writer at start-up.
using GlobalVariablesWriter = std::function<void(VariableDump&)>;
void SetGlobalVariablesWriter(GlobalVariablesWriter writer);
// Adds the registered globals to dump.
void AddGlobalVariables(VariableDump& dump);
