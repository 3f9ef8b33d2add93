#pragma once
// The one exception type for unexpected failures: it carries an error number,
// the source that raised it and a description, like the errors the program
// reports to the user. Handlers at the edge of an event or public operation
// catch it and hand it to ErrorHandler.

#include <QString>
#include <exception>
#include <source_location>

class VbError : public std::exception {
public:
    VbError(int number, QString source, QString description,
            std::source_location where = std::source_location::current())
        : m_number(number), m_source(std::move(source)), m_description(std::move(description)),
          m_line(static_cast<int>(where.line())), m_file(where.file_name()),
          m_what(m_description.toUtf8()) {}

    int number() const { return m_number; }
    const QString& source() const { return m_source; }
    const QString& description() const { return m_description; }
    // Line of the source file that raised the error.
    int line() const { return m_line; }
    const char* file() const { return m_file; }
    const char* what() const noexcept override { return m_what.constData(); }

private:
    int m_number;
    QString m_source;
    QString m_description;
    int m_line;
    const char* m_file;
    QByteArray m_what;
};

// Error numbers the program raises itself.
namespace VbErr {
constexpr int Lookup = 1;        // a heading or slot row that must exist is missing
constexpr int Internal = 51;     // an exception that is not a VbError
constexpr int FileNotFound = 53; // a file the program copies or reads is missing
constexpr int FieldNotFound = 381;
constexpr int SqlError = 425;
} // namespace VbErr
