// Timetables on paper: the layout of one timetable, the HTML page, the PDF's
// text read back, and the command-line export with its errors.

#include "print/CommandLineExport.h"
#include "print/PrintLayout.h"
#include "print/TimetablePrinting.h"
#include "print/frmPrintPreview.h"
#include "store/Records.h"
#include "support/Fixtures.h"

#include <QtTest>
#include <QtWidgets>

using namespace Fixtures;

namespace {
// Two days of three periods from 11:00, the second period lunch; class
// <7A & "B"> with Maths by Ms Świątek in Lab on Monday 11:00, and a room
// timetable for Lab.
struct School : OpenProject {
    qint32 klass = 0, room = 0;
    School() : OpenProject({"Monday", "Tuesday"}, {"11:00", "12:00", "13:00", "14:00"}) {
        const qint32 lab = ModMain::CreateRoomRecord("Lab", 1);
        klass = ModMain::CreateTimetable("Class", insertClass("7A & \"B\" <x>"), 1);
        room = ModMain::CreateTimetable("Room", lab, 1);
        value("UPDATE TimeTitle SET SpecialID = 3 WHERE Pos = 2");
        const qint32 slot = slotAt(klass, 1, 1);
        ModMain::CreateTutorSlotRecord(slot,
                                       ModMain::CreateTutorRecord("Świątek", "Ms Świątek", "", ""));
        ModMain::CreateSubjectSlotRecord(slot, ModMain::CreateSubjectRecord("Maths", 1));
        ModMain::CreateRoomSlotRecord(slot, lab);
    }
    ~School() { QVERIFY(messages.messages().isEmpty()); } // printing asks nothing
};

struct Run {
    int status = -1;
    QString out, err;
};

// The program itself, with no display of any kind.
Run program(const TestEnv& env, const QStringList& args) {
    QProcess p;
    QProcessEnvironment e = QProcessEnvironment::systemEnvironment();
    e.remove(QStringLiteral("QT_QPA_PLATFORM"));
    e.remove(QStringLiteral("DISPLAY"));
    e.remove(QStringLiteral("WAYLAND_DISPLAY"));
    e.insert(QStringLiteral("XDG_CONFIG_HOME"), env.path(QStringLiteral("config")));
    p.setProcessEnvironment(e);
    p.start(QStringLiteral(VANTOR_TEST_APP_DIR "/vantor-planner"), args);
    if (!p.waitForFinished(60000))
        return {};
    return {p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1,
            QString::fromUtf8(p.readAllStandardOutput()),
            QString::fromUtf8(p.readAllStandardError())};
}

QString pdfText(const QString& pdf) {
    QProcess p;
    p.start(QStringLiteral("pdftotext"), {pdf, QStringLiteral("-")});
    p.waitForFinished(60000);
    return QString::fromUtf8(p.readAllStandardOutput());
}
} // namespace

class TestPrint : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void layout_data() {
        QTest::addColumn<bool>("timeOnTop");
        QTest::addColumn<bool>("twelveHour");
        QTest::addColumn<QString>("format");
        const QString lesson = "Ms Świątek\nMaths\nLab";
        QTest::newRow("periods across, 24-hour")
            << true << false
            << "^|11:00 - 12:00|Lunch|13:00 - 14:00;Monday|" + lesson + "||;Tuesday|||";
        QTest::newRow("days across, 12-hour")
            << false << true
            << "^|Monday|Tuesday;11:00 - 12:00|" + lesson + "|;Lunch||;1:00 - 2:00||";
    }
    void layout() {
        QFETCH(bool, timeOnTop);
        QFETCH(bool, twelveHour);
        QFETCH(QString, format);
        School s;
        ModMain::SaveTimetableFormat(s.klass, twelveHour, timeOnTop);
        const ModMain::PrintedTimetable t = ModMain::PrintTimetable(s.klass);
        QCOMPARE(t.title, QString("Class 7A & \"B\" <x>"));
        QCOMPARE(t.FormatString(), format);
        QCOMPARE(t.cells.size(), t.rowHeadings.size());
        QCOMPARE(ModMain::PrintTimetable(9999).id, 0);
    }
    void html() {
        School s;
        const QString html = Print::TimetablesHtml(
            {ModMain::PrintTimetable(s.klass), ModMain::PrintTimetable(s.room)});
        QVERIFY(html.contains("<meta charset=\"utf-8\">"));
        QVERIFY(html.contains("<h1>Class 7A &amp; &quot;B&quot; &lt;x&gt;</h1>"));
        QVERIFY(html.contains("<td>Ms Świątek<br>Maths<br>Lab</td>"));
        QVERIFY(!html.contains("<x>"));
        QCOMPARE(html.count("<section>"), 2);
        // Escaped text comes back intact.
        QTextDocument doc;
        doc.setHtml(html);
        QVERIFY(doc.toPlainText().contains("Class 7A & \"B\" <x>"));
    }
    void htmlEscapesEveryName() {
        // Names with markup in them, in a cell, a day heading, a period heading
        // and a title: each must come back as typed, none taken as markup.
        School s;
        value("UPDATE Tutor SET DisplayName = 'Ms <i>O''Neil</i> & \"Co\"' WHERE name = "
              "'Świątek'");
        value("UPDATE DayTitle SET DOW = 'Mon <b>1</b> & 2' WHERE Pos = 1");
        value("UPDATE Subject SET name = 'A<B & C>D' WHERE name = 'Maths'");
        ModMain::LessonIndex::invalidate();
        ModMain::SaveTimetableFormat(s.room, false, false); // its days across the top
        const QString html = Print::TimetablesHtml(
            {ModMain::PrintTimetable(s.klass), ModMain::PrintTimetable(s.room)});
        for (const char* raw : {"<i>", "<b>", "<B & C>", "& \"Co\"", "& 2"})
            QVERIFY2(!html.contains(QString::fromUtf8(raw)), raw);
        QTextDocument doc;
        doc.setHtml(html);
        const QString text = doc.toPlainText();
        for (const char* typed : {"Ms <i>O'Neil</i> & \"Co\"", "Mon <b>1</b> & 2", "A<B & C>D"})
            QVERIFY2(text.count(QString::fromUtf8(typed)) == 2, typed);
    }
    void columnsStayInsideThePage_data() {
        QTest::addColumn<int>("columns");
        QTest::addColumn<int>("orientation");
        for (const int columns : {1, 2, 3, 4}) // 1: a page each, sized to fit
            for (const auto o : {QPageLayout::Portrait, QPageLayout::Landscape})
                QTest::addRow("%d columns, %s", columns,
                              o == QPageLayout::Portrait ? "portrait" : "landscape")
                    << columns << int(o);
    }
    void columnsStayInsideThePage() {
        // Every word of every timetable lies inside the half-inch margins, and
        // the timetables use as many columns as asked.
        QFETCH(int, columns);
        QFETCH(int, orientation);
        School s;
        QVector<ModMain::PrintedTimetable> tables;
        for (int i = 0; i < 80; ++i) // enough to fill every column
            tables << ModMain::PrintTimetable(i % 2 ? s.room : s.klass);
        Print::PageOptions options;
        options.layout = Print::Layout(columns);
        options.orientation = QPageLayout::Orientation(orientation);
        options.columnWidth = 3000; // wide on purpose: each must be scaled to its column
        const QString pdf = s.env.path("columns.pdf");
        QCOMPARE(Print::WritePdf(pdf, tables, options), QString());
        QProcess p;
        p.start(QStringLiteral("pdftotext"), {"-bbox", pdf, "-"});
        QVERIFY(p.waitForFinished(60000));
        const QString xml = QString::fromUtf8(p.readAllStandardOutput());
        const QRegularExpression page(R"re(<page width="([\d.]+)" height="([\d.]+)">)re");
        const QRegularExpression word(
            R"re(<word xMin="([\d.]+)" yMin="([\d.]+)" xMax="([\d.]+)" yMax="([\d.]+)">([^<]*)</word>)re");
        const QRegularExpressionMatch size = page.match(xml);
        QVERIFY(size.hasMatch());
        const double margin = 36, slack = 1; // half an inch in points
        const QRectF inside(margin - slack, margin - slack,
                            size.captured(1).toDouble() - 2 * (margin - slack),
                            size.captured(2).toDouble() - 2 * (margin - slack));
        QSet<int> titleColumns;
        int words = 0;
        for (auto m = word.globalMatch(xml); m.hasNext(); ++words) {
            const QRegularExpressionMatch w = m.next();
            const QRectF box(QPointF(w.captured(1).toDouble(), w.captured(2).toDouble()),
                             QPointF(w.captured(3).toDouble(), w.captured(4).toDouble()));
            QVERIFY2(inside.contains(box), qPrintable(w.captured(5)));
            if (w.captured(5) == "Room" || w.captured(5) == "Class")
                titleColumns << int((box.left() - margin) / (inside.width() / columns));
        }
        QVERIFY(words > 0);
        QCOMPARE(titleColumns.size(), columns);
    }
    void pdfHoldsTheText() {
        School s;
        for (const auto layout : {Print::Layout::SizeToFit, Print::Layout::Columns3}) {
            Print::PageOptions options;
            options.layout = layout;
            const QString pdf = s.env.path("out.pdf");
            QCOMPARE(Print::WritePdf(
                         pdf, {ModMain::PrintTimetable(s.klass), ModMain::PrintTimetable(s.room)},
                         options),
                     QString());
            const QString text = pdfText(pdf);
            for (const char* expected : {"Class 7A & \"B\" <x>", "Room Lab", "Monday", "Tuesday",
                                         "11:00 - 12:00", "Lunch", "Ms Świątek", "Maths"})
                QVERIFY2(text.contains(QString::fromUtf8(expected)), expected);
        }
    }
    void commandLine() {
        School s;
        ModMain::DB().DBClose();
        const QString before = dump(s.file);
        const QString out = s.env.path("all.html");
        // Every timetable once, in the project's order; nothing in it changed.
        Run r = program(s.env, {"--export-html", out, "--all", s.file});
        QCOMPARE(r.status, 0);
        const QString html = QString::fromUtf8(readFile(out));
        QRegularExpression h1("<h1>(.*?)</h1>");
        QStringList titles;
        for (auto m = h1.globalMatch(html); m.hasNext();)
            titles << m.next().captured(1);
        QCOMPARE(titles, (QStringList{"Class 7A &amp; &quot;B&quot; &lt;x&gt;", "Room Lab"}));
        QCOMPARE(dump(s.file), before);
        r = program(s.env,
                    {"--export-pdf", s.env.path("lab.pdf"), "--timetable", "Room Lab", s.file});
        QCOMPARE(r.status, 0);
        QVERIFY(pdfText(s.env.path("lab.pdf")).contains("Room Lab"));
        // Only the lab's timetable, showing the lesson held in the lab.
        QVERIFY(!pdfText(s.env.path("lab.pdf")).contains("Class 7A"));
        QVERIFY(pdfText(s.env.path("lab.pdf")).contains("Maths"));
        const QString empty = s.env.newProject("empty.VNPL");
        const QString text = writeFile(s.env.path("notes.VNPL"), "not a project");
        const struct {
            QStringList args;
            int status;
            const char* says;
        } bad[] = {
            {{"--export-pdf", out, s.env.path("missing.VNPL")}, 1, "There is no project file"},
            {{"--export-pdf", out, text}, 1, "Unable to open project file"},
            {{"--export-pdf", out, empty}, 1, "has no timetables to export"},
            {{"--export-pdf", out, "--timetable", "Class 9Z", s.file},
             1,
             "has no timetable called \"Class 9Z\". Its timetables are: Class 7A"},
            {{"--export-html", s.env.path("no/such/dir/x.html"), s.file}, 1, "cannot be written"},
            {{"--export-pdf"}, 2, "--export-pdf needs a value"},
            {{"--all", s.file}, 2, "go with an export"},
            {{"--export-pdf", out}, 2, "name the project"},
        };
        for (const auto& b : bad) {
            r = program(s.env, b.args);
            QVERIFY2(
                r.status == b.status && r.err.contains(b.says),
                qPrintable(b.args.join(' ') + " -> " + QString::number(r.status) + " " + r.err));
        }
        QCOMPARE(dump(s.file), before);
        r = program(s.env, {"--help"});
        QVERIFY(r.out.contains("--export-pdf OUT") && r.out.contains("--timetable NAME"));
    }
    void exportThatMeetsAnErrorWritesNothing() {
        // A read that fails half way (a damaged page, say) is one report, a
        // non-zero status, and the file that was there before left alone.
        School s;
        ModMain::DB().DBClose();
        const QString out = s.env.path("week.pdf");
        const Print::ExportRequest request{out, false, true, QString(), s.file};
        int statements = 0;
        clsSQLite::SetStatementHook([&] { ++statements; });
        QString error;
        QCOMPARE(Print::RunExport(request, error), 0);
        const int whole = statements;
        writeFile(out, "last week's timetables");
        ErrorRecorder errors;
        for (const int failAt : {whole - 1, whole - 3}) { // reads, not the COMMIT
            statements = 0;
            clsSQLite::SetStatementHook([&] {
                if (++statements == failAt)
                    throw VbError(11, QStringLiteral("clsSQLite"),
                                  QStringLiteral("database disk image is malformed"));
            });
            error.clear();
            const int status = Print::RunExport(request, error);
            clsSQLite::SetStatementHook({});
            QCOMPARE(status, 1);
            QVERIFY2(error.contains("could not be read whole, so") &&
                         error.contains("week.pdf was not written"),
                     qPrintable(error));
            QCOMPARE(readFile(out), QByteArray("last week's timetables"));
        }
        QCOMPARE(errors.reports().size(), 2); // one for each export, not one a statement
    }
    void previewDialog() {
        School s;
        FileDialogRecorder files;
        frmPrintPreview d(s.klass);
        QCOMPARE(texts(d.cboPrintTo), (QStringList{"Printer", "HTML", "PDF"}));
        QCOMPARE(d.tables().size(), 1);
        // Laid out again for each change of what or how, not for the guides.
        int layouts = d.layouts();
        const auto relaidOut = [&] {
            const bool again = d.layouts() == layouts + 1;
            layouts = d.layouts();
            return again;
        };
        d.cboOrientation->setCurrentIndex(1);
        QVERIFY(relaidOut());
        QCOMPARE(d.options().orientation, QPageLayout::Landscape);
        d.cboToPrint->setCurrentIndex(1);
        QVERIFY(relaidOut());
        QCOMPARE(d.tables().size(), 2);
        d.updownColumnWidthUp->click();
        QVERIFY(relaidOut());
        QCOMPARE(d.txtColumnWidth->text(), QString("1500"));
        d.updownRowHeightDown->click();
        QVERIFY(relaidOut());
        QCOMPARE(d.options().rowHeight, 800);
        d.chkShowGuides->toggle();
        QCOMPARE(d.layouts(), layouts);
        // Three columns of two days give each timetable a wider column.
        d.cboLayout->setCurrentIndex(2);
        QVERIFY(relaidOut());
        QCOMPARE(d.txtColumnWidth->text(), QString("1500"));
        // Print to HTML and to PDF write what the preview shows.
        d.cboPrintTo->setCurrentIndex(frmPrintPreview::ToHtml);
        files.choose(s.env.path("week.html"));
        d.cmdPrint->click();
        QCOMPARE(QString::fromUtf8(readFile(s.env.path("week.html"))).count("<section>"), 2);
        d.cboPrintTo->setCurrentIndex(frmPrintPreview::ToPdf);
        files.choose(s.env.path("week.pdf"));
        d.cmdPrint->click();
        QVERIFY(pdfText(s.env.path("week.pdf")).contains("Room Lab"));
        files.cancel();
        d.cmdPrint->click();
        // Each file written is named; a cancelled one says nothing.
        QCOMPARE(s.messages.texts(),
                 (QStringList{"The timetables were saved as " + s.env.path("week.html") + ".",
                              "The timetables were saved as " + s.env.path("week.pdf") + "."}));
        s.messages.clear();
        // The next preview starts on landscape and all timetables again.
        frmPrintPreview again(s.klass);
        QCOMPARE(again.options().orientation, QPageLayout::Landscape);
        QCOMPARE(again.tables().size(), 2);
    }
};

QTEST_MAIN(TestPrint)
#include "test_print.moc"
