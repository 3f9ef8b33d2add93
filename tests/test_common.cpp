// Array, text and date helpers, the list helpers, the file-dialog wrapper and
// the grid's basic interface.

#include "common/Arrays.h"
#include "common/Common.h"
#include "common/DateText.h"
#include "common/FileDialogs.h"
#include "common/FlexGrid.h"
#include "common/ListHelpers.h"
#include "store/ModMain.h"
#include "support/TestSupport.h"

#include <QComboBox>
#include <QListWidget>
#include <QtTest>

using namespace TestSupport;

class TestCommon : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void randomizeArrayFollowsTheSwapOrder_data();
    void randomizeArrayFollowsTheSwapOrder();
    void randomizeArrayLeavesNonListsAlone();
    void arraySearchAndCount_data();
    void arraySearchAndCount();
    void dayOfWeekIndex_data();
    void dayOfWeekIndex();
    void monthArithmetic_data();
    void monthArithmetic();
    void strZToStr_data();
    void strZToStr();
    void sqlReplace_data();
    void sqlReplace();
    void comboAndListHelpers();
    void flexGridList();
    void fileDialogFlags_data();
    void fileDialogFlags();
    void fileDialogFilters_data();
    void fileDialogFilters();
    void fileDialogChosenName_data();
    void fileDialogChosenName();
    void fileDialogCancelKeepsName();
    void flexGridTwipsAndData();
    void flexGridSelectionCorners_data();
    void flexGridSelectionCorners();
    void flexGridChecksAndHeadings();
};

void TestCommon::randomizeArrayFollowsTheSwapOrder_data() {
    QTest::addColumn<int>("size");
    QTest::addColumn<quint32>("seed");
    QTest::newRow("empty") << 0 << 1u;
    QTest::newRow("one") << 1 << 2u;
    QTest::newRow("two") << 2 << 3u;
    QTest::newRow("seven") << 7 << 4u;
    QTest::newRow("forty") << 40 << 5u;
}

void TestCommon::randomizeArrayFollowsTheSwapOrder() {
    QFETCH(int, size);
    QFETCH(quint32, seed);
    QList<int> original;
    for (int i = 0; i < size; ++i)
        original << 100 + i;

    // The same draws, applied by hand: from the top down, i swaps with int(r * (i + 1)).
    Common::Randomize(seed);
    QList<int> expected = original;
    for (int i = size - 1; i >= 0; --i) {
        const double r = Common::Rnd();
        QVERIFY(r >= 0.0 && r < 1.0);
        std::swap(expected[i], expected[static_cast<int>(r * (i + 1))]);
    }

    Common::Randomize(seed);
    QList<int> shuffled = original;
    Common::RandomizeArray(shuffled);
    QCOMPARE(shuffled, expected);

    QList<int> sorted = shuffled;
    std::sort(sorted.begin(), sorted.end());
    QCOMPARE(sorted, original);
}

void TestCommon::randomizeArrayLeavesNonListsAlone() {
    Common::Randomize(7);
    QVariant text(QStringLiteral("not an array"));
    Common::RandomizeArray(text);
    QCOMPARE(text, QVariant(QStringLiteral("not an array")));

    QVariant list(QVariantList{1, 2, 3, 4, 5, 6, 7, 8});
    Common::RandomizeArray(list);
    QVariantList values = list.toList();
    QCOMPARE(values.size(), 8);
    std::sort(values.begin(), values.end(),
              [](const QVariant& a, const QVariant& b) { return a.toInt() < b.toInt(); });
    QCOMPARE(values, (QVariantList{1, 2, 3, 4, 5, 6, 7, 8}));
}

void TestCommon::arraySearchAndCount_data() {
    QTest::addColumn<QStringList>("array");
    QTest::addColumn<QString>("value");
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("count");
    const QStringList a = {"Maths", "English", "Maths", "Art", "Maths"};
    QTest::newRow("first of several") << a << "Maths" << 0 << 3;
    QTest::newRow("middle") << a << "Art" << 3 << 1;
    QTest::newRow("missing") << a << "Music" << int(Common::kNotFound) << 0;
    QTest::newRow("case matters") << a << "maths" << int(Common::kNotFound) << 0;
    QTest::newRow("empty array") << QStringList() << "Maths" << int(Common::kNotFound) << 0;
}

void TestCommon::arraySearchAndCount() {
    QFETCH(QStringList, array);
    QFETCH(QString, value);
    QFETCH(int, index);
    QFETCH(int, count);
    QCOMPARE(Common::ArraySearch(array, value), qsizetype(index));
    QCOMPARE(Common::ArrayCountOccurances(array, value), qsizetype(count));
}

void TestCommon::dayOfWeekIndex_data() {
    QTest::addColumn<QString>("day");
    QTest::addColumn<int>("index");
    QTest::newRow("Monday first") << "Monday" << 0;
    QTest::newRow("Wednesday") << "Wednesday" << 2;
    QTest::newRow("Sunday last") << "Sunday" << 6;
    QTest::newRow("any case, blanks") << "  friday " << 4;
    QTest::newRow("abbreviation") << "Mon" << -1;
    QTest::newRow("week A day") << "Monday A" << -1;
    QTest::newRow("empty") << "" << -1;
}

void TestCommon::dayOfWeekIndex() {
    QFETCH(QString, day);
    QFETCH(int, index);
    QCOMPARE(Common::GetDayOfWeekIndex(day), index);
}

void TestCommon::monthArithmetic_data() {
    QTest::addColumn<QDate>("date");
    QTest::addColumn<QDate>("next");
    QTest::addColumn<QDate>("end");
    QTest::addColumn<int>("days");
    QTest::newRow("mid month") << QDate(2023, 3, 15) << QDate(2023, 4, 15) << QDate(2023, 3, 31) << 31;
    QTest::newRow("into short February") << QDate(2023, 1, 31) << QDate(2023, 2, 28)
                                         << QDate(2023, 1, 31) << 31;
    QTest::newRow("leap February") << QDate(2024, 2, 10) << QDate(2024, 3, 10)
                                   << QDate(2024, 2, 29) << 29;
    QTest::newRow("into leap February") << QDate(2024, 1, 30) << QDate(2024, 2, 29)
                                        << QDate(2024, 1, 31) << 31;
    QTest::newRow("year end") << QDate(2023, 12, 31) << QDate(2024, 1, 31) << QDate(2023, 12, 31)
                              << 31;
    QTest::newRow("thirty days") << QDate(2023, 4, 1) << QDate(2023, 5, 1) << QDate(2023, 4, 30)
                                 << 30;
    QTest::newRow("century, no leap") << QDate(2100, 2, 1) << QDate(2100, 3, 1)
                                      << QDate(2100, 2, 28) << 28;
}

void TestCommon::monthArithmetic() {
    QFETCH(QDate, date);
    QFETCH(QDate, next);
    QFETCH(QDate, end);
    QFETCH(int, days);
    QCOMPARE(Common::NextMonth(date), next);
    QCOMPARE(Common::EndOfMonth(date), end);
    QCOMPARE(Common::DaysInMonth(date), days);
}

void TestCommon::strZToStr_data() {
    QTest::addColumn<QString>("buffer");
    QTest::addColumn<QString>("text");
    QTest::newRow("no zero") << "school.VNPL" << "school.VNPL";
    QTest::newRow("padded") << QStringLiteral("school.VNPL") + QString(5, QChar(u'\0'))
                            << "school.VNPL";
    QTest::newRow("stops at first zero")
        << QStringLiteral("a") + QChar(u'\0') + QStringLiteral("b") << "a";
    QTest::newRow("leading zero") << QString(QChar(u'\0')) + QStringLiteral("x") << "";
}

void TestCommon::strZToStr() {
    QFETCH(QString, buffer);
    QFETCH(QString, text);
    QCOMPARE(Common::StrZToStr(buffer), text);
}

void TestCommon::sqlReplace_data() {
    QTest::addColumn<QString>("in");
    QTest::addColumn<QString>("out");
    QTest::newRow("name") << "O'Brien" << "O''Brien";
    QTest::newRow("two quotes") << "''" << "''''";
    QTest::newRow("at both ends") << "'x'" << "''x''";
    QTest::newRow("none") << "Room 4" << "Room 4";
    QTest::newRow("double quote untouched") << "say \"hi\"" << "say \"hi\"";
    QTest::newRow("empty") << "" << "";
}

void TestCommon::sqlReplace() {
    QFETCH(QString, in);
    QFETCH(QString, out);
    QCOMPARE(Common::SQLReplace(in), out);
}

void TestCommon::comboAndListHelpers() {
    TestEnv env;
    QVERIFY(env.open(env.newProject()));
    auto& db = ModMain::DB();
    for (const char* name : {"Physics", "Art", "O'Neill Hall"})
        db.Execute(QStringLiteral("INSERT INTO Room (name, Capacity) VALUES ('%1', 20);")
                       .arg(Common::SQLReplace(QString::fromUtf8(name))));
    const QString sql = QStringLiteral("SELECT id, name FROM Room WHERE id<>1 ORDER BY name;");

    QComboBox combo;
    combo.addItem(QStringLiteral("stale"), 99);
    Common::GetComboItemData_List(combo, db.Execute(sql));
    QCOMPARE(combo.count(), 3);
    QCOMPARE(combo.itemText(0), QStringLiteral("Art"));
    QCOMPARE(combo.itemText(2), QStringLiteral("Physics"));
    const qint32 artID = combo.itemData(0, Qt::UserRole).toInt();
    QVERIFY(artID > 1);
    QCOMPARE(Common::GetComboText_ItemData(combo, artID), QStringLiteral("Art"));
    QCOMPARE(Common::GetComboText_ItemData(combo, 99), QString());
    QCOMPARE(Common::GetComboText_List(combo, 1), QStringLiteral("O'Neill Hall"));
    QCOMPARE(Common::GetComboText_List(combo, 3), QString());
    QCOMPARE(Common::GetComboText_List(combo, -1), QString());

    QListWidget list;
    Common::GetListBoxItemData_List(list, db.Execute(sql));
    QCOMPARE(list.count(), 3);
    list.setSelectionMode(QAbstractItemView::MultiSelection);
    list.item(1)->setSelected(true);
    const qint32 physicsID = Common::ListBoxItemData(list, 2);
    Common::SelectListBox_ItemData(list, {artID, physicsID, 12345});
    QVERIFY(list.item(0)->isSelected());
    QVERIFY(!list.item(1)->isSelected());
    QVERIFY(list.item(2)->isSelected());
    QCOMPARE(Common::ListBoxItemData(list, 7), -1);
}

void TestCommon::flexGridList() {
    TestEnv env;
    QVERIFY(env.open(env.newProject()));
    auto& db = ModMain::DB();
    db.Execute(QStringLiteral("INSERT INTO Room (name, Capacity) VALUES ('Lab', 30);"));
    db.Execute(QStringLiteral("INSERT INTO Room (name, Capacity) VALUES ('Hall', 200);"));

    FlexGrid grid;
    grid.setCols(2);
    grid.setRows(6);
    grid.setTextMatrix(0, 1, QStringLiteral("Room"));
    Common::GetFlexGrid_List(
        grid, db.Execute(QStringLiteral("SELECT id, name, Capacity FROM Room WHERE id<>1 ORDER BY name;")));
    QCOMPARE(grid.rows(), 3);
    QCOMPARE(grid.cols(), 3);
    QCOMPARE(grid.textMatrix(0, 1), QStringLiteral("Room"));
    QCOMPARE(grid.textMatrix(1, 1), QStringLiteral("Hall"));
    QCOMPARE(grid.textMatrix(1, 2), QStringLiteral("200"));
    QCOMPARE(grid.textMatrix(2, 1), QStringLiteral("Lab"));
    auto rs = db.Execute(QStringLiteral("SELECT id FROM Room WHERE name = 'Lab';"));
    QCOMPARE(grid.rowData(2), rs.Field("id").toInt());

    Common::GetFlexGrid_List(grid, db.Execute(QStringLiteral("SELECT id, name FROM Room WHERE id<>1 AND name = 'x';")));
    QCOMPARE(grid.rows(), 1);
}

void TestCommon::fileDialogFlags_data() {
    QTest::addColumn<bool>("save");
    QTest::addColumn<bool>("first"); // FileMustExist, or OverWritePrompt for save
    QTest::addColumn<bool>("multi");
    QTest::addColumn<bool>("readOnly");
    QTest::addColumn<bool>("hideReadOnly");
    QTest::addColumn<int>("extra");
    QTest::addColumn<int>("flags");
    QTest::newRow("open, none") << false << false << false << false << false << 0 << 0;
    QTest::newRow("open, must exist") << false << true << false << false << false << 0 << 0x1000;
    QTest::newRow("open, all") << false << true << true << true << true << 0 << 0x1205;
    QTest::newRow("open, hook and template refused")
        << false << false << false << false << true << (0x20 | 0x40 | 0x8) << 0xC;
    QTest::newRow("save, overwrite prompt") << true << true << false << false << true << 0 << 0x6;
    QTest::newRow("save, no prompt") << true << false << false << true << false << 0 << 0x1;
    QTest::newRow("save, extra kept") << true << true << false << false << false << 0x80000 << 0x80002;
}

void TestCommon::fileDialogFlags() {
    QFETCH(bool, save);
    QFETCH(bool, first);
    QFETCH(bool, multi);
    QFETCH(bool, readOnly);
    QFETCH(bool, hideReadOnly);
    QFETCH(int, extra);
    QFETCH(int, flags);
    TestEnv env;
    FileDialogRecorder dialogs;
    dialogs.cancel();
    QString name;
    const QString filter = QStringLiteral("All(*.*)|*.*");
    if (save)
        Common::VBGetSaveFileName(name, nullptr, first, multi, readOnly, hideReadOnly, filter,
                                  nullptr, QString(), QString(), QString(), nullptr, extra);
    else
        Common::VBGetOpenFileName(name, nullptr, first, multi, readOnly, hideReadOnly, filter,
                                  nullptr, QString(), QString(), QString(), nullptr, extra);
    QCOMPARE(dialogs.requests().size(), 1);
    QCOMPARE(dialogs.requests().first().flags, flags);
    QCOMPARE(dialogs.requests().first().save, save);
}

void TestCommon::fileDialogFilters_data() {
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QStringList>("nameFilters");
    QTest::newRow("project")
        << "Vantor Timetable Project (*.VNPL)|*.VNPL"
        << QStringList{"Vantor Timetable Project (*.VNPL *.vnpl)"};
    QTest::newRow("project and all")
        << "Vantor Planner Project (*.VNPL)|*.VNPL|All(*.*)|*.*"
        << QStringList{"Vantor Planner Project (*.VNPL *.vnpl)", "All (*)"};
    QTest::newRow("several patterns") << "Pictures|*.bmp;*.GIF"
                                      << QStringList{"Pictures (*.bmp *.GIF *.gif)"};
    QTest::newRow("dangling description") << "Text (*.txt)|*.txt|Orphan"
                                          << QStringList{"Text (*.txt)"};
}

void TestCommon::fileDialogFilters() {
    QFETCH(QString, filter);
    QFETCH(QStringList, nameFilters);
    QCOMPARE(Common::FilterToNameFilters(filter), nameFilters);
}

void TestCommon::fileDialogChosenName_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("defaultExt");
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QString>("fileTitle");
    QTest::newRow("extension added") << "/tmp/school" << "VNPL" << "/tmp/school.VNPL"
                                     << "school.VNPL";
    QTest::newRow("own extension kept") << "/tmp/school.db" << "VNPL" << "/tmp/school.db"
                                        << "school.db";
    QTest::newRow("trailing dot") << "/tmp/school." << "VNPL" << "/tmp/school.VNPL"
                                  << "school.VNPL";
    QTest::newRow("no default") << "/tmp/school" << "" << "/tmp/school" << "school";
    QTest::newRow("cut at zero") << QStringLiteral("/tmp/a.VNPL") + QChar(u'\0') + "junk"
                                 << "VNPL" << "/tmp/a.VNPL" << "a.VNPL";
}

void TestCommon::fileDialogChosenName() {
    QFETCH(QString, typed);
    QFETCH(QString, defaultExt);
    QFETCH(QString, fileName);
    QFETCH(QString, fileTitle);
    TestEnv env;
    FileDialogRecorder dialogs;
    dialogs.choose(typed);
    QString name = QStringLiteral("suggested.VNPL");
    QString title;
    int filterIndex = 2;
    QVERIFY(Common::VBGetSaveFileName(name, &title, true, false, false, true,
                                      QStringLiteral("A|*.a|B|*.b"), &filterIndex,
                                      QStringLiteral("/tmp"), QStringLiteral("Save Project As"),
                                      defaultExt));
    QCOMPARE(name, fileName);
    QCOMPARE(title, fileTitle);
    const Common::FileDialogRequest& req = dialogs.requests().first();
    QCOMPARE(req.fileName, QStringLiteral("suggested.VNPL"));
    QCOMPARE(req.title, QStringLiteral("Save Project As"));
    QCOMPARE(req.initDir, QStringLiteral("/tmp"));
    QCOMPARE(req.filterIndex, 2);
    QCOMPARE(req.defaultExt, defaultExt);
}

void TestCommon::fileDialogCancelKeepsName() {
    TestEnv env;
    FileDialogRecorder dialogs;
    dialogs.cancel();
    dialogs.cancel();
    QString name = QStringLiteral("keep.VNPL");
    QString title = QStringLiteral("title");
    int filterIndex = 1;
    QVERIFY(!Common::VBGetOpenFileName(name, &title, true, false, false, true,
                                       QStringLiteral("P|*.VNPL|All|*.*"), &filterIndex));
    QVERIFY(!Common::VBGetSaveFileName(name, &title));
    QCOMPARE(name, QStringLiteral("keep.VNPL"));
    QCOMPARE(title, QStringLiteral("title"));
    QCOMPARE(filterIndex, 1);
}

void TestCommon::flexGridTwipsAndData() {
    FlexGrid grid;
    grid.setCols(4);
    grid.setRows(5);
    QCOMPARE(grid.rows(), 5);
    QCOMPARE(grid.cols(), 4);
    for (int twips : {600, 1200, 1600, 1607}) {
        grid.setColWidthTwips(2, twips);
        grid.setRowHeightTwips(3, twips);
        QCOMPARE(grid.colWidthTwips(2), twips);
        QCOMPARE(grid.rowHeightTwips(3), twips);
    }
    QCOMPARE(grid.pixelsToTwips(grid.twipsToPixels(1500)), 1500);

    grid.setRowData(4, 77);
    grid.setColData(3, -5);
    grid.setCellData(2, 3, 123456);
    QCOMPARE(grid.rowData(4), 77);
    QCOMPARE(grid.colData(3), -5);
    QCOMPARE(grid.cellData(2, 3), 123456);
    QCOMPARE(grid.cellData(2, 2), 0);
    // Growing keeps what was there.
    grid.setRows(8);
    QCOMPARE(grid.rowData(4), 77);
    QCOMPARE(grid.cellData(2, 3), 123456);
}

void TestCommon::flexGridSelectionCorners_data() {
    QTest::addColumn<int>("r1");
    QTest::addColumn<int>("c1");
    QTest::addColumn<int>("r2");
    QTest::addColumn<int>("c2");
    QTest::newRow("down right") << 1 << 1 << 3 << 4;
    QTest::newRow("up left") << 4 << 3 << 2 << 1;
    QTest::newRow("one cell") << 2 << 2 << 2 << 2;
    QTest::newRow("one row") << 3 << 1 << 3 << 4;
}

void TestCommon::flexGridSelectionCorners() {
    QFETCH(int, r1);
    QFETCH(int, c1);
    QFETCH(int, r2);
    QFETCH(int, c2);
    FlexGrid grid;
    grid.setCols(5);
    grid.setRows(5);
    grid.selectRange(r1, c1, r2, c2);
    QCOMPARE(grid.row(), r1);
    QCOMPARE(grid.col(), c1);
    QCOMPARE(grid.rowSel(), r2);
    QCOMPARE(grid.colSel(), c2);
    grid.setRowCol(2, 3);
    QCOMPARE(grid.rowSel(), 2);
    QCOMPARE(grid.colSel(), 3);
}

void TestCommon::flexGridChecksAndHeadings() {
    FlexGrid grid;
    grid.setCols(3);
    grid.setRows(3);
    QCOMPARE(grid.cellCheck(1, 1), int(FlexGrid::NoCheck));
    grid.setCellCheck(1, 1, FlexGrid::Checked);
    grid.setCellCheck(2, 1, FlexGrid::Unchecked);
    QCOMPARE(grid.cellCheck(1, 1), 1);
    QCOMPARE(grid.cellCheck(2, 1), 2);
    grid.setCellCheck(1, 1, FlexGrid::NoCheck);
    QCOMPARE(grid.cellCheck(1, 1), 0);

    grid.setTextMatrix(0, 0, QStringLiteral("Status"));
    grid.setTextMatrix(0, 2, QStringLiteral("Tutor"));
    grid.setTextMatrix(2, 0, QStringLiteral("Tuesday"));
    grid.setTextMatrix(1, 2, QStringLiteral("Maths\r\nRoom 4"));
    QCOMPARE(grid.textMatrix(0, 0), QStringLiteral("Status"));
    QCOMPARE(grid.textMatrix(0, 2), QStringLiteral("Tutor"));
    QCOMPARE(grid.horizontalHeaderItem(1)->text(), QStringLiteral("Tutor"));
    QCOMPARE(grid.textMatrix(2, 0), QStringLiteral("Tuesday"));
    QCOMPARE(grid.verticalHeaderItem(1)->text(), QStringLiteral("Tuesday"));
    QCOMPARE(grid.textMatrix(1, 2), QStringLiteral("Maths\r\nRoom 4"));
    // Headings survive clearing the body.
    grid.clearGrid();
    QCOMPARE(grid.textMatrix(0, 2), QStringLiteral("Tutor"));
}

QTEST_MAIN(TestCommon)
#include "test_common.moc"
