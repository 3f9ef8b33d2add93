// Managing resources: the deletion cascade, the management and detail
// dialogs through their controls, the timetable list, the capacity report,
// and resources brought in from and written out to spreadsheet files.

#include "manage/ResourceCsv.h"
#include "manage/ResourceRecords.h"
#include "manage/frmCapacityReport.h"
#include "manage/frmManage.h"
#include "manage/frmTableOpen.h"
#include "store/Records.h"
#include "support/Fixtures.h"

#include <QtTest>
#include <QtWidgets>

using namespace Fixtures;
using Common::MsgResult;
using ModMain::ResourceKind;

namespace {
// A project with a calendar, open, with its message boxes recorded.
struct Project : OpenProject {
    ModalDriver driver;
    Project() : OpenProject({"Monday", "Tuesday"}, {"9:00", "10:00", "11:00"}) {}
};

// Every resource of the project, as a school would list them.
QStringList resources() {
    QStringList out;
    for (const char* kind : {"Subject", "Room", "Class"})
        for (const QString& name :
             rows("SELECT name FROM %1 WHERE id <> 1 ORDER BY name", QLatin1String(kind)))
            out << QLatin1String(kind) + QLatin1Char(' ') + name;
    out << rows(
        "SELECT 'Tutor ' || Tutor.name || '|' || DisplayName || '|' || IFNULL((SELECT "
        "group_concat(Subject.name, '+') FROM (SELECT Subject.name FROM SubjectsTaughtByTutor, "
        "Subject WHERE Subject.id = SubjectID AND TutorID = Tutor.id ORDER BY Subject.name) AS "
        "Subject), '') FROM Tutor WHERE id <> 1 ORDER BY name");
    return out;
}

} // namespace

class TestManage : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void detailDialogs() {
        Project p;
        for (const char* s : {"Maths", "Art", "Science"})
            ModMain::CreateSubjectRecord(s, 1);
        int changes = 0;
        frmManage manage([&] { ++changes; });
        manage.SelectTab(frmManage::Tutors);
        // A tutor: the empty name refused, then saved with two subjects.
        p.driver.expect("frmTutor", [&](QDialog* d) {
            clickButton(d, "cmdOk");
            QCOMPARE(
                p.messages.texts(),
                QStringList{
                    "A Tutor name has not been entered. Please enter a tutor name to continue."});
            control<QLineEdit>(d, "txtName")->setText("Mr O'Neil");
            control<QLineEdit>(d, "txtDisplayName")->setText("Ó'N");
            auto* subjects = control<QListWidget>(d, "lstSubjects");
            QCOMPARE(subjects->count(), 3);
            subjects->item(0)->setSelected(true); // Art
            subjects->item(2)->setSelected(true); // Science
            clickButton(d, "cmdOk");
        });
        QCOMPARE(p.driver.run([&] { clickButton(&manage, "cmdAddTutor"); }), QString());
        auto* tutors = control<QListWidget>(&manage, "lstTutors");
        QCOMPARE(tutors->currentItem()->text(), QString("Mr O'Neil"));
        QCOMPARE(resources().last(), QString("Tutor Mr O'Neil|Ó'N|Art+Science"));
        // Editing shows what was saved; Cancel keeps it; double-click edits too.
        p.driver.expect("frmTutor", [](QDialog* d) {
            QCOMPARE(control<QLineEdit>(d, "txtDisplayName")->text(), QString("Ó'N"));
            QCOMPARE(control<QListWidget>(d, "lstSubjects")->selectedItems().size(), 2);
            control<QLineEdit>(d, "txtName")->setText("changed");
            clickButton(d, "cmdCancel");
        });
        p.driver.expect("frmTutor", [](QDialog* d) {
            control<QListWidget>(d, "lstSubjects")->clearSelection();
            clickButton(d, "cmdOk");
        });
        QCOMPARE(p.driver.run([&] {
            clickButton(&manage, "cmdEditTutor");
            Q_EMIT tutors->itemDoubleClicked(tutors->currentItem());
        }),
                 QString());
        QCOMPARE(resources().last(), QString("Tutor Mr O'Neil|Ó'N|"));
        // Subjects, rooms and classes: their own captions and messages.
        const struct {
            int page;
            const char *add, *dialog, *caption, *word;
        } kinds[] = {
            {frmManage::Subjects, "cmdAddSubject", "frmSubject", "Subject Details", "Subject"},
            {frmManage::Rooms, "cmdAddRoom", "frmRoom", "Room Details", "Room"},
            {frmManage::Classes, "cmdAddClass", "frmClass", "Class Details", "Class"}};
        for (const auto& k : kinds) {
            manage.SelectTab(k.page);
            p.messages.clear();
            p.driver.expect(k.dialog, [&](QDialog* d) {
                QCOMPARE(d->windowTitle(), QString(k.caption));
                control<QLineEdit>(d, "txtName")->setText("   ");
                clickButton(d, "cmdOk");
                control<QLineEdit>(d, "txtName")->setText("Room \"B\", l'été");
                clickButton(d, "cmdOk");
            });
            QCOMPARE(p.driver.run([&] { clickButton(&manage, k.add); }), QString());
            QCOMPARE(
                p.messages.texts(),
                QStringList{
                    QString("A %1 name has not been entered. Please enter a %1 name to continue.")
                        .arg(k.word)});
            QVERIFY(resources().contains(QString("%1 Room \"B\", l'été").arg(k.word)));
        }
        QCOMPARE(changes, 5);
    }
    void addingANameTwiceIsAsked() {
        Project p;
        ModMain::CreateTutorRecord("Mr O'Neil", "", "", "");
        ModMain::CreateRoomRecord("Lab", 1);
        frmManage manage([] {});
        const auto add = [&](int page, const char* button, const char* dialog, QString name) {
            manage.SelectTab(page);
            p.driver.expect(dialog, [name](QDialog* d) {
                control<QLineEdit>(d, "txtName")->setText(name);
                clickButton(d, "cmdOk");
                if (d->isVisible()) // kept open after a No
                    clickButton(d, "cmdCancel");
            });
            QCOMPARE(p.driver.run([&] { clickButton(&manage, button); }), QString());
        };
        // No keeps the dialog open and adds nothing; Yes adds the second one.
        p.messages.answer(MsgResult::No);
        add(frmManage::Tutors, "cmdAddTutor", "frmTutor", " mr o'neil ");
        QCOMPARE(p.messages.texts(),
                 QStringList{"A tutor named mr o'neil already exists. Add another?"});
        QCOMPARE(value("SELECT COUNT(*) FROM Tutor WHERE id <> 1"), "1");
        p.messages.clear();
        p.messages.answer(MsgResult::Yes);
        add(frmManage::Rooms, "cmdAddRoom", "frmRoom", "Lab");
        QCOMPARE(p.messages.texts(), QStringList{"A room named Lab already exists. Add another?"});
        QCOMPARE(value("SELECT COUNT(*) FROM Room WHERE name = 'Lab'"), "2");
        // A new name, or the placeholder's, is not asked about.
        p.messages.clear();
        add(frmManage::Rooms, "cmdAddRoom", "frmRoom", "(none)");
        add(frmManage::Subjects, "cmdAddSubject", "frmSubject", "Lab");
        QVERIFY(p.messages.texts().isEmpty());
    }
    void deleting() {
        // Each kind is deleted after a question; only a tutor's subjects taught
        // go with it, and every link and timetable stays.
        Project p;
        const qint32 art = ModMain::CreateSubjectRecord("Art", 1);
        const qint32 ann = ModMain::SaveTutor(-1, {"Ann", "", {art}});
        const qint32 lab = ModMain::CreateRoomRecord("Lab", 1);
        const qint32 slot = slotAt(ModMain::CreateTimetable("Class", insertClass("7A"), 1), 1, 1);
        for (const auto& [table, id] : {std::pair{"Tutor", ann}, {"Subject", art}, {"Room", lab}})
            link(table, slot, id);
        const auto links = [] {
            return rows(
                "SELECT (SELECT COUNT(*) FROM TutorSlot), (SELECT COUNT(*) FROM SubjectSlot), "
                "(SELECT COUNT(*) FROM RoomSlot), (SELECT COUNT(*) FROM Timetable)");
        };
        const QStringList before = links();
        frmManage manage({});
        const struct {
            int page;
            const char *list, *button, *question, *taught;
        } kinds[] = {
            {frmManage::Subjects, "lstSubjects", "cmdDeleteSubject", "Delete selected Subject?",
             "1"},
            {frmManage::Tutors, "lstTutors", "cmdDeleteTutor", "Delete selected tutor?", "0"},
            {frmManage::Classes, "lstClasses", "cmdDeleteClass", "Delete selected Class?", "0"},
            {frmManage::Rooms, "lstRooms", "cmdDeleteRoom", "Delete selected Room?", "0"}};
        for (const auto& k : kinds) {
            manage.SelectTab(k.page);
            auto* list = control<QListWidget>(&manage, k.list);
            auto* button = control<QPushButton>(&manage, k.button);
            QVERIFY(!button->isEnabled()); // nothing chosen yet
            list->item(0)->setSelected(true);
            p.messages.clear();
            p.messages.answer(MsgResult::No);
            button->click();
            QCOMPARE(list->count(), 1);
            p.messages.answer(MsgResult::Yes);
            button->click();
            QCOMPARE(p.messages.texts(), QStringList(2, k.question));
            QCOMPARE(list->count(), 0);
            QCOMPARE(value("SELECT COUNT(*) FROM SubjectsTaughtByTutor"), QString(k.taught));
        }
        QCOMPARE(resources(), QStringList());
        QCOMPARE(links(), before);
    }
    void timetableList() {
        Project p;
        QList<qint32> loaded;
        QStringList created;
        frmTableOpen::Host host{
            [&](qint32 id) { loaded << id; },
            [&](const QString& type, qint32 id) { created << type + QString::number(id); }};
        {
            frmTableOpen empty(host, 0);
            QCOMPARE(texts(*empty.grdTimetables), QStringList{"|Timetable|Type|Status"});
        }
        const qint32 zed = ModMain::CreateTutorRecord("Zed", "", "", "");
        ModMain::CreateTutorRecord("Amy", "", "", "");
        const qint32 c8 = insertClass("8B");
        const qint32 t7 = ModMain::CreateTimetable("Class", insertClass("7A"), 1);
        const qint32 lab = ModMain::CreateRoomRecord("Lab", 1);
        const qint32 tLab = ModMain::CreateTimetable("Room", lab, 1);
        const qint32 tZed = ModMain::CreateTimetable("Tutor", zed, 1);
        frmTableOpen list(host, tLab);
        FlexGrid& g = *list.grdTimetables;
        // The names are ordinary cells; the heading column is out of sight.
        QVERIFY(g.verticalHeader()->isHidden());
        QCOMPARE(texts(g), (QStringList{"|Timetable|Type|Status", "|7A|Class|Created",
                                        "|Lab|Room|Created", "|Zed|Tutor|Created",
                                        "|8B|Class|Not Created", "|Amy|Tutor|Not Created"}));
        QCOMPARE(g.row(), 2); // the timetable on show
        QCOMPARE(g.rowData(1), t7);
        QCOMPARE(g.rowData(4), c8);
        // A missing one is offered; No creates nothing; a double-click opens.
        g.setRowCol(4, 1);
        p.messages.answer(MsgResult::No);
        clickButton(&list, "cmdOk");
        QCOMPARE(p.messages.texts(), QStringList{"Create timetable for 8B?"});
        QVERIFY(created.isEmpty() && list.result() == 0);
        p.messages.answer(MsgResult::Yes);
        clickButton(&list, "cmdOk");
        QCOMPARE(created, QStringList{"Class" + QString::number(c8)});
        g.setRowCol(3, 1);
        Q_EMIT g.cellDoubleClicked(2, 0);
        QCOMPARE(loaded, QList<qint32>{tZed});
    }
    void capacityReport() {
        Project p;
        const qint32 ann = ModMain::CreateTutorRecord("Ann", "", "", "");
        ModMain::CreateTutorRecord("Bob", "", "", "");
        const qint32 t7 = ModMain::CreateTimetable("Class", insertClass("7A"), 1);
        const qint32 t8 = ModMain::CreateTimetable("Class", insertClass("8A"), 1);
        // Counted in lessons: Ann in two classes' lessons at once is two,
        // however often a cell links her.
        for (const qint32 tt : {t7, t8, t8})
            link("Tutor", slotAt(tt, 1, 1), ann);
        frmCapacityReport report;
        QVERIFY(report.grdCapacity->verticalHeader()->isHidden());
        QCOMPARE(texts(*report.grdCapacity),
                 (QStringList{"|Tutor Name|Periods Teaching", "|Ann|2", "|Bob|0"}));
    }
    void importRefusesMalformed_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("reason");
        QTest::newRow("no heading")
            << QByteArray("Tutor,Ann\n") << "Line 1: the first line must name";
        QTest::newRow("unknown kind")
            << QByteArray("Kind,Name\nSubject,Art\n\nTeacher,Bob\n")
            << "Line 4: the kind \"Teacher\" is not Tutor, Subject, Room or Class.";
        QTest::newRow("no name") << QByteArray("kind;name\r\nRoom;Lab\r\nclass;  \r\n")
                                 << "Line 3: the class has no name.";
        QTest::newRow("open quote") << QByteArray("Kind,Name\nSubject,\"Art\nRoom,Lab\n")
                                    << "Line 2: a quoted field is not closed";
        QTest::newRow("text after quote")
            << QByteArray("Kind,Name\nRoom,\"Lab\"x\n") << "Line 2: a quoted field is not closed";
        QTest::newRow("not UTF-8")
            << QByteArray("Kind,Name\nRoom,Caf\xe9\n") << "is not UTF-8 text";
        QTest::newRow("empty") << QByteArray() << "The file is empty.";
    }
    void importRefusesMalformed() {
        QFETCH(QByteArray, text);
        QFETCH(QString, reason);
        Project p;
        ModMain::CreateSubjectRecord("Maths", 1);
        ModMain::DB().DBClose();
        const QString before = dump(p.file);
        QVERIFY(p.env.open(p.file));
        const auto result = ModMain::ImportResources(writeFile(p.env.path("bad.csv"), text));
        QVERIFY(!result.ok);
        QVERIFY2(result.message.contains(reason), qPrintable(result.message));
        ModMain::DB().DBClose();
        QCOMPARE(dump(p.file), before);
    }
    void importAddsAndSkips() {
        // A spreadsheet's CSV: byte-order mark, semicolons, quotes, a separator
        // and line breaks inside fields, columns in its own order.
        Project p;
        ModMain::CreateRoomRecord("Lab", 1);
        const QByteArray text =
            "\xEF\xBB\xBFSubjects Taught;Name;KIND;Display "
            "Name;Notes\r\n;Maths;subject;;\r\n;\"Art; Design\";Subject;;\r\n\"Maths\nArt; "
            "Design\nLatin\";\"Mrs \"\"Mac\"\" O'Neil\";Tutor;\"Mac, "
            "M\";x\r\n;Lab;Room;;\r\n;;;;\r\n;Ωmega 7;Class;;\r\n;Lab;Room;;\r\n;\" ART; DESIGN "
            "\";Subject;;\r\n";
        const auto result = ModMain::ImportResources(writeFile(p.env.path("school.csv"), text));
        QVERIFY2(result.ok, qPrintable(result.message));
        QCOMPARE(result.message,
                 QString("Imported from school.csv.\n\nAdded 2 subjects, 0 rooms, 1 class, 1 "
                         "tutor.\nSkipped 3 already in the project or earlier in the file: ART; "
                         "DESIGN, Lab, Lab.\n\nLine 4: Mrs \"Mac\" O'Neil teaches \"Latin\", which "
                         "is no subject; left out."));
        QCOMPARE(resources(),
                 (QStringList{"Subject Art; Design", "Subject Maths", "Room Lab", "Class Ωmega 7",
                              "Tutor Mrs \"Mac\" O'Neil|Mac, M|Art; Design+Maths"}));
    }
    void exportImportsBackTheSame() {
        Project p;
        const qint32 a = ModMain::CreateSubjectRecord("Art, \"fine\"", 1);
        const qint32 b = ModMain::CreateSubjectRecord("Biologie – été", 1);
        ModMain::CreateSubjectRecord("Chemistry", 1);
        ModMain::CreateRoomRecord("Room; 1", 1);
        insertClass("7'A");
        ModMain::SaveTutor(-1, {"Ann", "A \"N\"", {b, a}});
        ModMain::SaveTutor(-1, {"Bob", "", {}});
        const QStringList school = resources();
        const QString csv = p.env.path("out.csv");
        QCOMPARE(ModMain::ExportResources(csv), QString());
        QCOMPARE(ModMain::ExportResources(p.env.path("no/such/folder/out.csv")).left(9),
                 QString("The file "));
        QVERIFY(
            p.env.open(p.env.newProjectWithCalendar({"Monday"}, {"9:00", "10:00"}, "new.VNPL")));
        QVERIFY(ModMain::ImportResources(csv).ok);
        QCOMPARE(resources(), school);
        // Importing it again adds nothing.
        QVERIFY(ModMain::ImportResources(csv).message.contains(
            "Added 0 subjects, 0 rooms, 0 classes, 0 tutors.\nSkipped 7"));
    }
};

QTEST_MAIN(TestManage)
#include "test_manage.moc"
