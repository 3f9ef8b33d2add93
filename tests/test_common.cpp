// Array, text and date helpers, the list helpers, the file-dialog wrapper and
// the grid.

#include "common/Arrays.h"
#include "common/DateText.h"
#include "common/ErrorReportPlugin.h"
#include "common/FlexGrid.h"
#include "common/ListHelpers.h"
#include "common/VariableDump.h"
#include "support/TestSupport.h"

#include <QtTest>
#include <QtWidgets>

using namespace TestSupport;

class TestCommon : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void arrays() {
        QList<int> original;
        for (int i = 0; i < 40; ++i)
            original << 100 + i;
        // A shuffle keeps every entry, repeats itself for the same seed, and
        // over many runs puts each entry in each place about equally often.
        const auto shuffled = [&](int seed) {
            Common::Randomize(seed);
            QList<int> list = original;
            Common::RandomizeArray(list);
            return list;
        };
        QCOMPARE(shuffled(5), shuffled(5));
        QVERIFY(shuffled(5) != shuffled(6));
        QList<int> sorted = shuffled(7);
        std::sort(sorted.begin(), sorted.end());
        QCOMPARE(sorted, original);
        QVector<int> firstPlace(40), lastPlace(40);
        Common::Randomize(11);
        for (int run = 0; run < 4000; ++run) {
            QList<int> list = original;
            Common::RandomizeArray(list);
            ++firstPlace[list.first() - 100];
            ++lastPlace[list.last() - 100];
        }
        // 100 expected each; a biased shuffle (one that never moves the
        // last entry, or swaps only downwards) falls far outside.
        for (int i = 0; i < 40; ++i)
            QVERIFY2(firstPlace[i] > 50 && firstPlace[i] < 160 && lastPlace[i] > 50 &&
                         lastPlace[i] < 160,
                     qPrintable(QString("entry %1: first %2, last %3")
                                    .arg(i)
                                    .arg(firstPlace[i])
                                    .arg(lastPlace[i])));
        QVariant text(QStringLiteral("not an array"));
        Common::RandomizeArray(text);
        QCOMPARE(text, QVariant(QStringLiteral("not an array")));
        const QStringList a = {"Maths", "English", "Maths", "Art", "Maths"};
        QCOMPARE(Common::ArraySearch(a, QStringLiteral("Art")), qsizetype(3));
        QCOMPARE(Common::ArrayCountOccurances(a, QStringLiteral("Maths")), qsizetype(3));
        QCOMPARE(Common::ArraySearch(a, QStringLiteral("maths")), Common::kNotFound);
        QCOMPARE(Common::ArrayCountOccurances(a, QStringLiteral("Music")), qsizetype(0));
    }
    void dates_data() {
        QTest::addColumn<QDate>("date");
        QTest::addColumn<QDate>("next");
        QTest::addColumn<QDate>("end");
        QTest::addColumn<int>("days");
        QTest::newRow("into short February")
            << QDate(2023, 1, 31) << QDate(2023, 2, 28) << QDate(2023, 1, 31) << 31;
        QTest::newRow("leap February")
            << QDate(2024, 2, 10) << QDate(2024, 3, 10) << QDate(2024, 2, 29) << 29;
        QTest::newRow("century, no leap")
            << QDate(2100, 2, 1) << QDate(2100, 3, 1) << QDate(2100, 2, 28) << 28;
    }
    void dates() {
        QFETCH(QDate, date);
        QFETCH(QDate, next);
        QFETCH(QDate, end);
        QFETCH(int, days);
        QCOMPARE(Common::NextMonth(date), next);
        QCOMPARE(Common::EndOfMonth(date), end);
        QCOMPARE(Common::DaysInMonth(date), days);
        QCOMPARE(Common::GetDayOfWeekIndex(QStringLiteral("Monday")), 0);
        QCOMPARE(Common::GetDayOfWeekIndex(QStringLiteral("  sunday ")), 6);
        QCOMPARE(Common::GetDayOfWeekIndex(QStringLiteral("Monday A")), -1);
    }
    void sqlReplace() {
        for (const auto& [in, out] :
             {std::pair{"O'Brien", "O''Brien"}, {"''", "''''"}, {"say \"hi\"", "say \"hi\""}})
            QCOMPARE(Common::SQLReplace(in), QString(out));
    }
    void listHelpers() {
        TestEnv env;
        QVERIFY(env.open(env.newProject()));
        auto& db = ModMain::DB();
        for (const char* name : {"Physics", "Art", "O''Neill Hall"})
            db.Execute(QStringLiteral("INSERT INTO Room (name, Capacity) VALUES ('%1', 20);")
                           .arg(QString::fromUtf8(name)));
        const QString sql =
            QStringLiteral("SELECT id, name, Capacity FROM Room WHERE id<>1 ORDER BY name;");
        QComboBox combo;
        combo.addItem(QStringLiteral("stale"), 99);
        Common::GetComboItemData_List(combo, db.Execute(sql).vTableArray());
        QCOMPARE(combo.count(), 3);
        const qint32 artID = combo.itemData(0).toInt();
        QCOMPARE(Common::GetComboText_ItemData(combo, artID), QStringLiteral("Art"));
        QCOMPARE(Common::GetComboText_ItemData(combo, 99), QString());
        QCOMPARE(Common::GetComboText_List(combo, 1), QStringLiteral("O'Neill Hall"));
        QCOMPARE(Common::GetComboText_List(combo, 3), QString());
        QListWidget list;
        list.setSelectionMode(QAbstractItemView::MultiSelection);
        Common::GetListBoxItemData_List(list, db.Execute(sql).vTableArray());
        list.item(1)->setSelected(true);
        Common::SelectListBox_ItemData(list, {artID, Common::ListBoxItemData(list, 2), 12345});
        QCOMPARE((QList<bool>{list.item(0)->isSelected(), list.item(1)->isSelected(),
                              list.item(2)->isSelected()}),
                 (QList<bool>{true, false, true}));
        FlexGrid grid;
        grid.setCols(2);
        grid.setRows(6);
        Common::GetFlexGrid_List(grid, db.Execute(sql).vTableArray());
        QCOMPARE(grid.rows(), 4);
        QCOMPARE(grid.textMatrix(1, 1), QStringLiteral("Art"));
        QCOMPARE(grid.textMatrix(3, 2), QStringLiteral("20"));
        QCOMPARE(grid.rowData(1), artID);
    }
    void fileDialogFlags_data() {
        QTest::addColumn<bool>("save");
        QTest::addColumn<bool>("first"); // FileMustExist, or OverWritePrompt for save
        QTest::addColumn<bool>("multi");
        QTest::addColumn<int>("extra");
        QTest::addColumn<int>("flags");
        QTest::newRow("open, must exist, multi") << false << true << true << 0 << 0x1204;
        QTest::newRow("open, hook and template refused") << false << false << false << 0x68 << 0xC;
        QTest::newRow("save, overwrite prompt") << true << true << false << 0x80000 << 0x80006;
    }
    void fileDialogFlags() {
        QFETCH(bool, save);
        QFETCH(bool, first);
        QFETCH(bool, multi);
        QFETCH(int, extra);
        QFETCH(int, flags);
        FileDialogRecorder dialogs;
        dialogs.cancel();
        QString name;
        const QString filter = QStringLiteral("All(*.*)|*.*");
        if (save)
            Common::VBGetSaveFileName(name, nullptr, first, multi, false, true, filter, nullptr,
                                      QString(), QString(), QString(), nullptr, extra);
        else
            Common::VBGetOpenFileName(name, nullptr, first, multi, false, true, filter, nullptr,
                                      QString(), QString(), QString(), nullptr, extra);
        QCOMPARE(dialogs.requests().first().flags, flags);
        QCOMPARE(dialogs.requests().first().save, save);
        QCOMPARE(Common::FilterToNameFilters(
                     QStringLiteral("Vantor Planner Project (*.VNPL)|*.VNPL|All(*.*)|*.*|Orphan")),
                 (QStringList{"Vantor Planner Project (*.VNPL *.vnpl)", "All (*)"}));
    }
    void fileDialogNames() {
        // typed (empty: the user cancels), then the name and title that come back
        const QString zero = QStringLiteral("/tmp/a.VNPL") + QChar(u'\0') + "junk";
        for (const auto& [typed, fileName, fileTitle] :
             {std::tuple<QString, QString, QString>{"/tmp/school", "/tmp/school.VNPL",
                                                    "school.VNPL"},
              {"/tmp/school.db", "/tmp/school.db", "school.db"},
              {zero, "/tmp/a.VNPL", "a.VNPL"},
              {"", "suggested.VNPL", "title"}}) {
            FileDialogRecorder dialogs;
            dialogs.choose(typed);
            QString name = QStringLiteral("suggested.VNPL");
            QString title = QStringLiteral("title");
            int filterIndex = 2;
            const bool chosen = Common::VBGetSaveFileName(
                name, &title, true, false, false, true, QStringLiteral("A|*.a|B|*.b"), &filterIndex,
                QStringLiteral("/tmp"), QStringLiteral("Save Project As"), QStringLiteral("VNPL"));
            QCOMPARE(chosen, !typed.isEmpty());
            QCOMPARE((QStringList{name, title}), (QStringList{fileName, fileTitle}));
            QCOMPARE(filterIndex, 2);
            QCOMPARE(dialogs.requests().first().fileName, QStringLiteral("suggested.VNPL"));
        }
    }
    void flexGrid() {
        FlexGrid grid;
        grid.setCols(4);
        grid.setRows(5);
        // Twips come back exactly as written, with no drift from rounding to pixels.
        for (int twips : {600, 1607}) {
            grid.setColWidthTwips(2, twips);
            grid.setRowHeightTwips(3, twips);
            QCOMPARE(grid.colWidthTwips(2), twips);
            QCOMPARE(grid.rowHeightTwips(3), twips);
        }
        grid.setRowData(4, 77);
        grid.setCellData(2, 3, 123456);
        grid.setRows(8); // growing keeps what was there
        QCOMPARE(grid.rowData(4), 77);
        QCOMPARE(grid.cellData(2, 3), 123456);
        QCOMPARE(grid.cellData(2, 2), 0);
        grid.setCellCheck(1, 1, FlexGrid::Checked);
        grid.setCellCheck(2, 1, FlexGrid::Unchecked);
        QCOMPARE((QList<int>{grid.cellCheck(1, 1), grid.cellCheck(2, 1), grid.cellCheck(3, 1)}),
                 (QList<int>{1, 2, 0}));
        grid.setTextMatrix(0, 0, QStringLiteral("Status"));
        grid.setTextMatrix(0, 2, QStringLiteral("Tutor"));
        grid.setTextMatrix(2, 0, QStringLiteral("Tuesday"));
        grid.setTextMatrix(1, 2, QStringLiteral("Maths\r\nRoom 4"));
        QCOMPARE((QStringList{grid.textMatrix(0, 0), grid.horizontalHeaderItem(1)->text(),
                              grid.verticalHeaderItem(1)->text(), grid.textMatrix(1, 2)}),
                 (QStringList{"Status", "Tutor", "Tuesday", "Maths\r\nRoom 4"}));
        grid.clearGrid();
        QCOMPARE(grid.textMatrix(0, 2), QStringLiteral("Tutor"));
        // A range dragged up and left keeps the cell it started from; a single
        // cell is a range of one.
        FlexGrid sel;
        sel.setCols(5);
        sel.setRows(5);
        sel.selectRange(4, 3, 2, 1);
        QCOMPARE((QList<int>{sel.row(), sel.col(), sel.rowSel(), sel.colSel()}),
                 (QList<int>{4, 3, 2, 1}));
        sel.setRowCol(2, 3);
        QCOMPARE((QList<int>{sel.rowSel(), sel.colSel()}), (QList<int>{2, 3}));
    }
    void variableDump() {
        const auto failing = [](int number) {
            return DumpValue::Deferred([number]() -> DumpValue {
                if (number)
                    throw VbError(number, QStringLiteral("Test"), QStringLiteral("Type mismatch"));
                throw std::runtime_error("not a VbError");
            });
        };
        const int set = 1;
        const std::vector<std::pair<DumpValue, QString>> cases = {
            {QStringLiteral("7A <Maths> & \"Art\""),
             "<v>7A &lt;Maths&gt; &amp; &quot;Art&quot;</v>"},
            {42, "<v>42</v>"},
            {true, "<v>True</v>"},
            {QVariant(), "<v>{Empty}</v>"},
            {QVariant(QMetaType::fromType<QString>()), "<v>{Null}</v>"},
            {QVariant(QStringList{"a"}), "<v>{Cannot dump variant arrays}</v>"},
            {DumpValue::Null(), "<v>{Null}</v>"},
            {DumpValue::Empty(), "<v>{Empty}</v>"},
            {DumpValue::Object(nullptr), "<v>{Nothing}</v>"},
            {DumpValue::Object(&set, QStringLiteral("frmTip")), "<v>frmTip</v>"},
            {DumpValue::DataObject(), "<v>{DataObject}</v>"},
            {DumpValue::ExternalRecord(), "<v>{Cannot dump external UDTs}</v>"},
            {DumpValue::RecordArray(), "<v>{Cannot dump UDT arrays}</v>"},
            {DumpValue::RecordParameter(), "<v>{Can't dump UDT parameters}</v>"},
            {DumpValue::VariantArray(), "<v>{Cannot dump variant arrays}</v>"},
            {DumpValue::Record(QStringLiteral("SlotInfo")), "<v>{UDT - SlotInfo}</v>"},
            {DumpValue::OpenFileName(), "<v>{OPENFILENAME}</v>"},
            {DumpValue::Rect(), "<v>{RECT}</v>"},
            {DumpValue::UninitialisedArray(), "<v>{UnInitialised Array}</v>"},
            {DumpValue::UninitialisedDimension(2), "<v>{UnInitialised Array Dimension 2}</v>"},
            {DumpValue::UninitialisedDimension(3), "<v>{UnInitialised Array Dimension 3}</v>"},
            {DumpValue::TruncatedArray(4), "<v>{Dump truncated at 4 dimensions}</v>"},
            {DumpValue::Array({QStringLiteral("Mon"), DumpValue::Null(), failing(13)}, 1),
             "<v Index=\"1\">Mon</v><v Index=\"2\">{Null}</v><v Index=\"3\">{Error 13 formatting "
             "for output}</v>"},
            {failing(94), "<v>{Error 94 formatting for output}</v>"},
            {failing(0), "<v>{Error 51 formatting for output}</v>"},
        };
        for (const auto& [value, expected] : cases)
            QCOMPARE(value.element(QStringLiteral("v")), expected);
        // Sections keep their fixed order whatever order they were filled in.
        VariableDump dump;
        dump.parameter("SQL", "SELECT 1").global("ProjectFile", "a.VNPL").module("DB_Handle", -1);
        dump.local("i", 3);
        QCOMPARE(dump.text(),
                 QStringLiteral(
                     "<Variables><LocalVariables><i>3</i></"
                     "LocalVariables><ModuleVariables><DB_Handle>-1</DB_Handle></"
                     "ModuleVariables><GlobalVariables><ProjectFile>a.VNPL</ProjectFile></"
                     "GlobalVariables></Variables><Parameters><SQL>SELECT 1</SQL></Parameters>"));
    }
    void errorReportPlugin() {
        TestEnv env;
        const QString folder = QStringLiteral(VANTOR_TEST_BIN_DIR "/plugin");
        // Not there, or not a report component: none, and the fixed box is used.
        QVERIFY(!CreateReportObject(env.dir()));
        writeFile(env.path("libVantorErrorLibrary.Error.so"), "not a library");
        QVERIFY(!CreateReportObject(env.dir()));
        // Found in the application folder, it gets the report and its Action
        // is what the failing procedure is told.
        std::optional<ScopedEnv> appDir(std::in_place, "VANTOR_APP_DIR", folder.toLocal8Bit());
        SetGlobalVariablesWriter([](VariableDump& d) { d.global("ProjectFile", "s.VNPL"); });
        auto component = CreateReportObject(folder);
        QVERIFY(component);
        QPluginLoader loader(folder + QStringLiteral("/VantorErrorLibrary.Error"));
        QObject* root = loader.instance();
        QVERIFY(root);
        root->setProperty("Action", 3);
        MessageRecorder boxes;
        VariableDump params;
        params.parameter("ID", 7);
        const int action =
            ErrorHandler("frmMain", "LoadTimetable", 88,
                         VbError(1, QStringLiteral("ModMain"), QStringLiteral("No slot")), params);
        appDir.reset();
        SetGlobalVariablesWriter({});
        QCOMPARE(action, 3);
        QVERIFY(boxes.messages().isEmpty());
        QCOMPARE(root->property("Received").toStringList(),
                 QStringList({"frmMain", "LoadTimetable", "88", "1", "No slot", "ModMain",
                              "<Variables><LocalVariables></LocalVariables><ModuleVariables></"
                              "ModuleVariables><GlobalVariables><ProjectFile>s.VNPL</ProjectFile></"
                              "GlobalVariables></Variables><Parameters><ID>7</ID></Parameters>",
                              "Timetable", QStringLiteral(VANTOR_VERSION)}));
    }
};

QTEST_MAIN(TestCommon)
#include "test_common.moc"
