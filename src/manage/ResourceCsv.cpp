#include "manage/ResourceCsv.h"

#include "common/Common.h"
#include "manage/ResourceRecords.h"
#include "scheduling/ResourceLists.h"
#include "store/ModMain.h"
#include "store/Records.h"
#include "store/Transaction.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSaveFile>
#include <QStringDecoder>
#include <QStringList>
#include <csv.h>

#include <array>
#include <optional>

namespace ModMain {

namespace {
constexpr std::array<ResourceKind, 4> kOrder = {ResourceKind::Subject, ResourceKind::Room,
                                                ResourceKind::Class, ResourceKind::Tutor};
const char* const kHeadings[] = {"Kind", "Name", "Display Name", "Subjects Taught"};

struct Record {
    int line = 0; // where the record starts in the file
    QStringList fields;
};

// What libcsv hands back, record by record, with the line each began on.
struct Reader {
    QVector<Record> records;
    Record current;
    int line = 1;
    bool inRecord = false;

    static void field(void* data, size_t size, void* self) {
        auto* r = static_cast<Reader*>(self);
        r->begin();
        r->current.fields << QString::fromUtf8(static_cast<const char*>(data),
                                               static_cast<qsizetype>(size));
    }
    static void endOfRecord(int, void* self) {
        auto* r = static_cast<Reader*>(self);
        r->begin();
        r->records << std::move(r->current);
        r->current = Record();
        r->inRecord = false;
    }
    void begin() {
        if (!inRecord)
            current.line = line;
        inRecord = true;
    }
};

QString lineError(int line, const QString& text) {
    return QStringLiteral("Line %1: %2").arg(line).arg(text);
}

// Splits the text into records; an error names the line.
std::optional<QVector<Record>> parse(const QByteArray& text, QString& error) {
    // The separator is the one the heading line uses.
    const QByteArray first = text.left(text.indexOf('\n'));
    const unsigned char delimiter = first.count(';') > first.count(',') ? ';' : ',';
    csv_parser parser;
    if (csv_init(&parser, CSV_STRICT | CSV_STRICT_FINI | CSV_APPEND_NULL) != 0) {
        error = QStringLiteral("There is not enough memory to read the file.");
        return std::nullopt;
    }
    csv_set_delim(&parser, delimiter);
    Reader reader;
    qsizetype at = 0;
    bool ok = true;
    // Line by line, so an error can say where it is.
    while (ok && at < text.size()) {
        qsizetype end = text.indexOf('\n', at);
        end = end < 0 ? text.size() : end + 1;
        const size_t size = static_cast<size_t>(end - at);
        // A record starts on the first line that holds anything, though
        // libcsv only hands over its fields once they end.
        if (!text.mid(at, end - at).trimmed().isEmpty())
            reader.begin();
        ok = csv_parse(&parser, text.constData() + at, size, &Reader::field, &Reader::endOfRecord,
                       &reader) == size;
        if (ok)
            ++reader.line;
        at = end;
    }
    if (ok)
        ok = csv_fini(&parser, &Reader::field, &Reader::endOfRecord, &reader) == 0;
    if (!ok) {
        const int line = reader.inRecord ? reader.current.line : reader.line;
        error = lineError(qMin(line, reader.line),
                          QStringLiteral("a quoted field is not closed, or has text after its "
                                         "closing quote."));
    }
    csv_free(&parser);
    if (!ok)
        return std::nullopt;
    return reader.records;
}

std::optional<ResourceKind> kindNamed(const QString& text) {
    for (const ResourceKind kind : kOrder)
        if (text.compare(KindWord(kind), Qt::CaseInsensitive) == 0)
            return kind;
    return std::nullopt;
}

struct Entry {
    int line = 0;
    ResourceKind kind = ResourceKind::Subject;
    QString name;
    QString displayName;
    QStringList subjects;
};

// The entries of the records, or the first fault with its line.
std::optional<QVector<Entry>> entriesOf(const QVector<Record>& records, QString& error) {
    if (records.isEmpty()) {
        error = QStringLiteral("The file is empty.");
        return std::nullopt;
    }
    std::array<int, 4> column = {-1, -1, -1, -1};
    const QStringList& headings = records.first().fields;
    for (int i = 0; i < headings.size(); ++i)
        for (int c = 0; c < 4; ++c)
            if (headings[i].trimmed().compare(QLatin1String(kHeadings[c]), Qt::CaseInsensitive) ==
                0)
                column[c] = i;
    if (column[0] < 0 || column[1] < 0) {
        error = lineError(records.first().line,
                          QStringLiteral("the first line must name the columns: Kind, Name, "
                                         "Display Name, Subjects Taught."));
        return std::nullopt;
    }
    QVector<Entry> entries;
    for (const Record& r : records.mid(1)) {
        const auto field = [&](int c) {
            return column[c] < 0 ? QString() : r.fields.value(column[c]).trimmed();
        };
        if (r.fields.join(QString()).trimmed().isEmpty())
            continue;
        const auto kind = kindNamed(field(0));
        if (!kind) {
            error = lineError(r.line, QStringLiteral("the kind \"%1\" is not Tutor, Subject, Room "
                                                     "or Class.")
                                          .arg(field(0)));
            return std::nullopt;
        }
        Entry e{r.line, *kind, field(1), field(2), {}};
        if (e.name.isEmpty()) {
            error = lineError(r.line,
                              QStringLiteral("the %1 has no name.").arg(KindWord(*kind).toLower()));
            return std::nullopt;
        }
        for (const QString& subject : field(3).split(QLatin1Char('\n')))
            if (!subject.trimmed().isEmpty())
                e.subjects << subject.trimmed();
        entries << e;
    }
    return entries;
}

// "3 tutors", "1 class".
QString counted(int n, ResourceKind kind) {
    QString word = KindWord(kind).toLower();
    if (n != 1)
        word += kind == ResourceKind::Class ? QStringLiteral("es") : QStringLiteral("s");
    return QStringLiteral("%1 %2").arg(n).arg(word);
}

// How names are matched: "HALL" and " Hall" are the Hall already there.
QString key(const QString& name) {
    return name.trimmed().toCaseFolded();
}

// The names of a kind already in the project, by key, with their ids.
QHash<QString, qint32> namesOf(ResourceKind kind) {
    QHash<QString, qint32> names;
    const TableArray rows = ResourceNames(kind);
    for (const auto& row : rows.mid(1))
        names.insert(key(row.value(1).toString()), row.value(0).toInt());
    return names;
}

qint32 add(const Entry& e, const QHash<QString, qint32>& subjects, QStringList& notes) {
    if (e.kind != ResourceKind::Tutor)
        return SaveResourceName(e.kind, -1, e.name);
    TutorRow tutor{e.name, e.displayName, {}};
    for (const QString& subject : e.subjects) {
        if (const auto it = subjects.constFind(key(subject)); it != subjects.cend())
            tutor.subjects << it.value();
        else
            notes << lineError(e.line, QStringLiteral("%1 teaches \"%2\", which is no subject; "
                                                      "left out.")
                                           .arg(e.name, subject));
    }
    return SaveTutor(-1, tutor);
}
} // namespace

ImportResult ImportResources(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {false, QStringLiteral("The file %1 cannot be read: %2.")
                           .arg(QDir::toNativeSeparators(path), file.errorString())};
    QByteArray bytes = file.readAll();
    if (bytes.startsWith("\xEF\xBB\xBF"))
        bytes.remove(0, 3);
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString check = decoder(bytes);
    if (decoder.hasError())
        return {false, QStringLiteral("The file %1 is not UTF-8 text. Save it from the spreadsheet "
                                      "as \"CSV UTF-8\" and try again.")
                           .arg(QDir::toNativeSeparators(path))};
    QString error;
    const auto records = parse(bytes, error);
    const auto entries = records ? entriesOf(*records, error) : std::nullopt;
    if (!entries)
        return {false, QStringLiteral("Nothing was imported from %1.\n\n%2")
                           .arg(QDir::toNativeSeparators(path), error)};

    Transaction tx;
    if (!tx.ok())
        return {false, QString()};
    std::array<int, 4> added{}, skipped{};
    QStringList skippedNames, notes;
    for (int k = 0; k < int(kOrder.size()); ++k) {
        QHash<QString, qint32> names = namesOf(kOrder[k]);
        const QHash<QString, qint32> subjects = namesOf(ResourceKind::Subject);
        for (const Entry& e : *entries) {
            if (e.kind != kOrder[k])
                continue;
            if (names.contains(key(e.name))) {
                ++skipped[k];
                skippedNames << e.name;
                continue;
            }
            names.insert(key(e.name), add(e, subjects, notes));
            ++added[k];
        }
    }
    QStringList addedTexts;
    for (int k = 0; k < int(kOrder.size()); ++k)
        addedTexts << counted(added[k], kOrder[k]);
    QString message = QStringLiteral("Imported from %1.\n\nAdded %2.")
                          .arg(QFileInfo(path).fileName(), addedTexts.join(QStringLiteral(", ")));
    int skippedTotal = 0;
    for (const int n : skipped)
        skippedTotal += n;
    if (skippedTotal > 0) {
        // A long list would make a box taller than the screen.
        constexpr int kNamed = 10;
        QString named = skippedNames.mid(0, kNamed).join(QStringLiteral(", "));
        if (skippedNames.size() > kNamed)
            named += QStringLiteral(" and %1 more").arg(skippedNames.size() - kNamed);
        message += QStringLiteral("\nSkipped %1 already in the project or earlier in the file: %2.")
                       .arg(skippedTotal)
                       .arg(named);
    }
    if (!notes.isEmpty())
        message += QStringLiteral("\n\n") + notes.join(QLatin1Char('\n'));
    return {true, message};
}

namespace {
// One field, quoted as libcsv quotes it.
QByteArray quoted(const QString& text) {
    const QByteArray utf8 = text.toUtf8();
    QByteArray out(static_cast<qsizetype>(
                       csv_write(nullptr, 0, utf8.constData(), static_cast<size_t>(utf8.size()))),
                   Qt::Uninitialized);
    csv_write(out.data(), static_cast<size_t>(out.size()), utf8.constData(),
              static_cast<size_t>(utf8.size()));
    return out;
}

QByteArray line(const QStringList& fields) {
    QByteArrayList quotedFields;
    for (const QString& f : fields)
        quotedFields << quoted(f);
    return quotedFields.join(',') + "\r\n";
}
} // namespace

QString ExportResources(const QString& path) {
    Transaction read(Transaction::Read);
    // A byte-order mark, so spreadsheets read the names as UTF-8.
    QByteArray out = "\xEF\xBB\xBF";
    QStringList headings;
    for (const char* h : kHeadings)
        headings << QString::fromLatin1(h);
    out += line(headings);
    QHash<qint32, QString> subjectNames;
    for (const ResourceKind kind : kOrder) {
        const TableArray rows = ResourceNames(kind);
        for (const auto& row : rows.mid(1)) {
            const qint32 id = row.value(0).toInt();
            const QString name = row.value(1).toString();
            if (kind == ResourceKind::Subject)
                subjectNames.insert(id, name);
            QStringList fields = {KindWord(kind), name};
            if (kind == ResourceKind::Tutor) {
                const auto tutor = ReadTutor(id);
                QStringList taught;
                for (const qint32 subject : tutor ? tutor->subjects : QVector<qint32>())
                    if (subjectNames.contains(subject))
                        taught << subjectNames.value(subject);
                fields << (tutor ? tutor->displayName : QString())
                       << taught.join(QLatin1Char('\n'));
            }
            out += line(fields);
        }
    }
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(out) != out.size() || !file.commit())
        return QStringLiteral("The file %1 cannot be written: %2.")
            .arg(QDir::toNativeSeparators(path), file.errorString());
    return QString();
}

} // namespace ModMain
