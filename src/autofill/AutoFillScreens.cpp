#include "autofill/AutoFillScreens.h"

#include "autofill/AutoFillEngine.h"
#include "autofill/AutoFillState.h"
#include "autofill/FillChoices.h"
#include "common/Common.h"
#include "common/ErrorHandler.h"
#include "common/ListHelpers.h"
#include "scheduling/ResourceLists.h"
#include "timetable/TimetableRecords.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

using Common::MsgBox;
using Common::MsgButtons;
using Common::MsgIcon;

namespace {
const QString kTitle = QStringLiteral("Auto Fill Wizard");

AutoFill::State& fill() {
    return AutoFill::state();
}

QLabel* addLabel(QWidget* parent, const char* name, const QString& text) {
    auto* label = new QLabel(text, parent);
    label->setObjectName(QString::fromLatin1(name));
    label->setWordWrap(true);
    return label;
}

QListWidget* addList(QWidget* parent, const char* name) {
    auto* list = new QListWidget(parent);
    list->setObjectName(QString::fromLatin1(name));
    list->setSelectionMode(QAbstractItemView::MultiSelection);
    return list;
}

// The ids of the selected entries, in list order.
QVector<qint32> selectedIDs(const QListWidget& list) {
    QVector<qint32> ids;
    for (int i = 0; i < list.count(); ++i)
        if (list.item(i)->isSelected())
            ids.append(list.item(i)->data(Qt::UserRole).toInt());
    return ids;
}

QPushButton* addButton(QWidget* parent, const char* name, const QString& text) {
    auto* button = new QPushButton(text, parent);
    button->setObjectName(QString::fromLatin1(name));
    button->setAutoDefault(false);
    return button;
}
} // namespace

AutoFillPage::AutoFillPage(const QString& name, const QString& heading, const QString& intro,
                           QWidget* parent)
    : WizardPage({fill().AutoFill_Screen, fill().AutoFill_Cancel}, name, kTitle, heading, intro,
                 parent) {}

frmScr_AutoFill_Welcome::frmScr_AutoFill_Welcome(QWidget* parent)
    : AutoFillPage(QStringLiteral("frmScr_AutoFill_Welcome"), QStringLiteral("Auto Fill Wizard"),
                   QStringLiteral("This wizard fills the free periods of a class timetable for "
                                  "you. Periods that already have a subject are left as they "
                                  "are."),
                   parent) {
    cmdBack->hide();
    body()->addWidget(addLabel(this, "lblSteps",
                               QStringLiteral("You will choose:\n\n"
                                              "  1.  the class timetable to fill\n"
                                              "  2.  the subjects, and how many periods of each\n"
                                              "  3.  the tutors who may teach them\n"
                                              "  4.  the rooms they may use\n"
                                              "  5.  a fill method: keep things together or "
                                              "spread them apart\n\n"
                                              "A tutor or room already booked elsewhere at a "
                                              "period is never given it. Click Next to begin.")));
    body()->addStretch(1);
    chkDisplayNext = new QCheckBox(QStringLiteral("Show this page again if I go back"), this);
    chkDisplayNext->setObjectName(QStringLiteral("chkDisplayNext"));
    chkDisplayNext->setChecked(fill().AutoFill_ShowWelcome);
    body()->addWidget(chkDisplayNext);
}

void frmScr_AutoFill_Welcome::cmdNext_Click() {
    if (!chkDisplayNext->isChecked())
        fill().AutoFill_ShowWelcome = false;
    WizardPage::cmdNext_Click();
}

frmScr_AutoFill_Timetable::frmScr_AutoFill_Timetable(QWidget* parent)
    : AutoFillPage(QStringLiteral("frmScr_AutoFill_Timetable"),
                   QStringLiteral("Select the class Timetable to Auto Fill"),
                   QStringLiteral("Only the free periods of the timetable are filled."), parent) {
    auto* form = new QFormLayout;
    cboWho = new QComboBox(this);
    cboWho->setObjectName(QStringLiteral("cboWho"));
    cboWho->setMinimumWidth(260);
    auto* lblWho = addLabel(this, "lblWho", QStringLiteral("&Class timetable:"));
    lblWho->setBuddy(cboWho);
    form->addRow(lblWho, cboWho);
    body()->addLayout(form);
    body()->addStretch(1);
    cmdBack->setEnabled(fill().AutoFill_ShowWelcome);
    Guard("frmScr_AutoFill_Timetable", "Form_Load", [&] {
        Common::GetComboItemData_List(*cboWho, ModMain::ClassTimetableList());
        const qint32 chosen =
            fill().AutoFill_WhoID != -1 ? fill().AutoFill_WhoID : fill().PreferredWhoID;
        if (const int index = cboWho->findData(chosen); index >= 0)
            cboWho->setCurrentIndex(index);
    });
}

void frmScr_AutoFill_Timetable::cmdNext_Click() {
    Guard("frmScr_AutoFill_Timetable", "cmdNext_Click", [&] {
        if (cboWho->currentIndex() < 0)
            return;
        fill().AutoFill_WhoID = cboWho->currentData().toInt();
        if (const auto onTop = ModMain::TimetableTimeOnTop(fill().AutoFill_WhoID))
            fill().AutoFill_TimeOnTop = *onTop;
        WizardPage::cmdNext_Click();
    });
}

QString SubjectEntryText(const QString& name, qint32 periods) {
    return name + QStringLiteral(" (fill ") + QString::number(periods) + QStringLiteral(" period") +
           (periods != 1 ? QStringLiteral("s") : QString()) + QStringLiteral(")");
}

qint32 SubjectEntryPeriods(const QString& text) {
    // The last one: a subject's own name may hold the marker too.
    const qsizetype at = text.lastIndexOf(QStringLiteral(" (fill "));
    if (at < 0)
        return 0;
    qint32 periods = 0;
    for (qsizetype i = at + 7; i < text.size() && text.at(i).isDigit(); ++i)
        periods = periods * 10 + text.at(i).digitValue();
    return periods;
}

frmScr_AutoFill_Subjects::frmScr_AutoFill_Subjects(QWidget* parent)
    : AutoFillPage(QStringLiteral("frmScr_AutoFill_Subjects"),
                   QStringLiteral("Choose the subjects to include in the timetable"),
                   QStringLiteral("Choose a subject and how many periods of it the week needs, "
                                  "then click Add. Add All adds every subject with that many "
                                  "periods."),
                   parent) {
    cboSubjects = new QComboBox(this);
    cboSubjects->setObjectName(QStringLiteral("cboSubjects"));
    cboSubjects->setMinimumWidth(220);
    cboPeriods = new QComboBox(this);
    cboPeriods->setObjectName(QStringLiteral("cboPeriods"));
    for (int n = 1; n <= 20; ++n)
        cboPeriods->addItem(QString::number(n));
    auto* cmdAdd = addButton(this, "cmdAdd", QStringLiteral("A&dd"));
    auto* cmdAddAll = addButton(this, "cmdAddAll", QStringLiteral("&Add All"));
    auto* cmdRemove = addButton(this, "cmdRemove", QStringLiteral("&Remove"));

    auto* choose = new QHBoxLayout;
    auto* lblSubject = addLabel(this, "lblSubject", QStringLiteral("&Subject:"));
    lblSubject->setBuddy(cboSubjects);
    choose->addWidget(lblSubject);
    choose->addWidget(cboSubjects, 1);
    auto* lblPeriods = addLabel(this, "lblPeriods", QStringLiteral("&Periods:"));
    lblPeriods->setBuddy(cboPeriods);
    choose->addWidget(lblPeriods);
    choose->addWidget(cboPeriods);
    body()->addLayout(choose);

    lstIncludeSubjects = new QListWidget(this);
    lstIncludeSubjects->setObjectName(QStringLiteral("lstIncludeSubjects"));
    auto* buttons = new QVBoxLayout;
    buttons->addWidget(cmdAdd);
    buttons->addWidget(cmdAddAll);
    buttons->addWidget(cmdRemove);
    buttons->addStretch(1);
    auto* listRow = new QHBoxLayout;
    listRow->addWidget(lstIncludeSubjects, 1);
    listRow->addLayout(buttons);
    body()->addLayout(listRow, 1);

    lblPeriodsAvailable = addLabel(this, "lblPeriodsAvailable", QStringLiteral("0"));
    lblPeriodsFilled = addLabel(this, "lblPeriodsFilled", QStringLiteral("0"));
    auto* counts = new QHBoxLayout;
    counts->addWidget(addLabel(this, "lblAvailableCaption", QStringLiteral("Periods available:")));
    counts->addWidget(lblPeriodsAvailable);
    counts->addSpacing(24);
    counts->addWidget(addLabel(this, "lblFilledCaption", QStringLiteral("Periods filled:")));
    counts->addWidget(lblPeriodsFilled);
    counts->addStretch(1);
    body()->addLayout(counts);

    connect(cmdAdd, &QPushButton::clicked, this,
            [this] { Guard("frmScr_AutoFill_Subjects", "cmdAdd_Click", [&] { cmdAdd_Click(); }); });
    connect(cmdAddAll, &QPushButton::clicked, this, &frmScr_AutoFill_Subjects::cmdAddAll_Click);
    connect(cmdRemove, &QPushButton::clicked, this, &frmScr_AutoFill_Subjects::cmdRemove_Click);

    Guard("frmScr_AutoFill_Subjects", "Form_Load", [&] {
        Common::GetComboItemData_List(*cboSubjects,
                                      ModMain::ResourceNames(ModMain::ResourceKind::Subject));
        setCounts(0, 0);
        const qint32 who = fill().AutoFill_WhoID;
        // Marked periods are neither free nor filled: they take no lesson.
        qint32 free = ModMain::GetTotalSlotsForTimetable(who) -
                      ModMain::GetTotalAllocatedSlotsForTimetable(who);
        qint32 taken = ModMain::GetTotalLessonSlotsForTimetable(who);
        // Subjects chosen on an earlier visit come back with their periods
        // already counted out of the free ones.
        const AutoFill::State& a = fill();
        for (qint32 i = 0; i < a.AutoFill_IncludeSubjectsCount(); ++i) {
            const qint32 id = a.AutoFill_IncludeSubjects.at(i);
            const qint32 periods = a.AutoFill_IncludeSubjectPeriods.value(i);
            auto* item = new QListWidgetItem(
                SubjectEntryText(Common::GetComboText_ItemData(*cboSubjects, id), periods),
                lstIncludeSubjects);
            item->setData(Qt::UserRole, id);
            free -= periods;
            taken += periods;
        }
        setCounts(free, taken);
    });
}

void frmScr_AutoFill_Subjects::setCounts(qint32 available, qint32 filled) {
    m_available = available;
    m_filled = filled;
    lblPeriodsAvailable->setText(QString::number(available));
    lblPeriodsFilled->setText(QString::number(filled));
}

bool frmScr_AutoFill_Subjects::cmdAdd_Click() {
    if (cboSubjects->currentIndex() < 0)
        return false;
    const qint32 id = cboSubjects->currentData().toInt();
    const qint32 N = cboPeriods->currentText().toInt();
    QListWidgetItem* entry = nullptr;
    for (int i = 0; i < lstIncludeSubjects->count() && !entry; ++i)
        if (lstIncludeSubjects->item(i)->data(Qt::UserRole).toInt() == id)
            entry = lstIncludeSubjects->item(i);
    if (!entry) {
        if (available() - N < 0) {
            MsgBox(QStringLiteral("Their is not enough room to add this Subject. To add this "
                                  "Subject, first remove some existing entries."),
                   MsgButtons::Ok, MsgIcon::Critical);
            return false;
        }
        entry = new QListWidgetItem(SubjectEntryText(cboSubjects->currentText(), N),
                                    lstIncludeSubjects);
        entry->setData(Qt::UserRole, id);
    } else {
        const qint32 periods = SubjectEntryPeriods(entry->text());
        if (available() - N < 0) {
            MsgBox(QStringLiteral("Their is not enough space to add this Subject. To add this "
                                  "Subject, first remove some existing Subjects."),
                   MsgButtons::Ok, MsgIcon::Critical);
            return false;
        }
        // The entry grows by N, as the counts below do.
        entry->setText(SubjectEntryText(cboSubjects->currentText(), periods + N));
    }
    setCounts(available() - N, N + filled());
    return true;
}

void frmScr_AutoFill_Subjects::cmdAddAll_Click() {
    Guard("frmScr_AutoFill_Subjects", "cmdAddAll_Click", [&] {
        for (int i = 0; i < cboSubjects->count(); ++i) {
            cboSubjects->setCurrentIndex(i);
            if (!cmdAdd_Click())
                return;
        }
    });
}

void frmScr_AutoFill_Subjects::cmdRemove_Click() {
    QListWidgetItem* entry = lstIncludeSubjects->currentItem();
    if (!entry || !entry->isSelected()) {
        MsgBox(QStringLiteral("Please select an item to remove."), MsgButtons::Ok,
               MsgIcon::Exclamation);
        return;
    }
    const qint32 periods = SubjectEntryPeriods(entry->text());
    delete entry;
    setCounts(available() + periods, filled() - periods);
}

void frmScr_AutoFill_Subjects::cmdNext_Click() {
    if (lstIncludeSubjects->count() == 0) {
        MsgBox(QStringLiteral("Please select some Subjects to fill the timetable with."),
               MsgButtons::Ok, MsgIcon::Critical);
        return;
    }
    AutoFill::State& a = fill();
    a.AutoFill_IncludeSubjects.clear();
    a.AutoFill_IncludeSubjectPeriods.clear();
    for (int i = 0; i < lstIncludeSubjects->count(); ++i) {
        const QListWidgetItem* entry = lstIncludeSubjects->item(i);
        a.AutoFill_IncludeSubjects.append(entry->data(Qt::UserRole).toInt());
        a.AutoFill_IncludeSubjectPeriods.append(SubjectEntryPeriods(entry->text()));
    }
    WizardPage::cmdNext_Click();
}

frmScr_AutoFill_Tutors::frmScr_AutoFill_Tutors(QWidget* parent)
    : AutoFillPage(QStringLiteral("frmScr_AutoFill_Tutors"),
                   QStringLiteral("Choose the Tutors to include in the timetable"),
                   QStringLiteral("Each filled period gets the best free tutor of those "
                                  "selected. Click a name to select or unselect it."),
                   parent) {
    lstTutors = addList(this, "lstTutors");
    body()->addWidget(lstTutors, 1);
    Guard("frmScr_AutoFill_Tutors", "Form_Load", [&] {
        const AutoFill::State& a = fill();
        // The teachers of the first chosen subject that has any recorded.
        bool bIncludeAllTutors = true;
        QVector<qint32> teaching;
        for (const qint32 subject : a.AutoFill_IncludeSubjects) {
            teaching = ModMain::TutorsTeaching(subject);
            if (!teaching.isEmpty()) {
                bIncludeAllTutors = false;
                break;
            }
        }
        Common::GetListBoxItemData_List(*lstTutors,
                                        ModMain::ResourceNames(ModMain::ResourceKind::Tutor));
        bool anySelected = false;
        for (int i = 0; i < lstTutors->count(); ++i) {
            QListWidgetItem* item = lstTutors->item(i);
            const qint32 id = item->data(Qt::UserRole).toInt();
            bool found = a.AutoFill_Tutors.contains(id);
            if (!found || !bIncludeAllTutors)
                found = !bIncludeAllTutors && teaching.contains(id);
            item->setSelected(found);
            anySelected = anySelected || found;
        }
        if (!anySelected)
            lstTutors->selectAll();
        lstTutors->setCurrentItem(nullptr, QItemSelectionModel::NoUpdate);
    });
}

void frmScr_AutoFill_Tutors::cmdNext_Click() {
    fill().AutoFill_Tutors = selectedIDs(*lstTutors);
    WizardPage::cmdNext_Click();
}

frmScr_AutoFill_Rooms::frmScr_AutoFill_Rooms(QWidget* parent)
    : AutoFillPage(QStringLiteral("frmScr_AutoFill_Rooms"),
                   QStringLiteral("Choose the rooms to use in the timetable"),
                   QStringLiteral("Each filled period gets the best free room of those "
                                  "selected. Click a name to select or unselect it."),
                   parent) {
    lstRooms = addList(this, "lstRooms");
    body()->addWidget(lstRooms, 1);
    Guard("frmScr_AutoFill_Rooms", "Form_Load", [&] {
        const AutoFill::State& a = fill();
        Common::GetListBoxItemData_List(*lstRooms,
                                        ModMain::ResourceNames(ModMain::ResourceKind::Room));
        for (int i = 0; i < lstRooms->count(); ++i) {
            QListWidgetItem* item = lstRooms->item(i);
            item->setSelected(a.AutoFill_RoomsCount() == 0 ||
                              a.AutoFill_Rooms.contains(item->data(Qt::UserRole).toInt()));
        }
        lstRooms->setCurrentItem(nullptr, QItemSelectionModel::NoUpdate);
    });
}

void frmScr_AutoFill_Rooms::cmdNext_Click() {
    fill().AutoFill_Rooms = selectedIDs(*lstRooms);
    WizardPage::cmdNext_Click();
}

frmScr_AutoFill_Method::frmScr_AutoFill_Method(QWidget* parent)
    : AutoFillPage(QStringLiteral("frmScr_AutoFill_Method"),
                   QStringLiteral("Choose your fill method"),
                   QStringLiteral("A method says whether repeats of a subject, a tutor or a room "
                                  "are kept together or spread apart. Tools > Fill Methods... "
                                  "adds and changes methods."),
                   parent) {
    auto* form = new QFormLayout;
    cboMethod = new QComboBox(this);
    cboMethod->setObjectName(QStringLiteral("cboMethod"));
    cboMethod->setMinimumWidth(260);
    auto* lblMethod = addLabel(this, "lblMethod", QStringLiteral("&Method:"));
    lblMethod->setBuddy(cboMethod);
    form->addRow(lblMethod, cboMethod);
    body()->addLayout(form);
    body()->addStretch(1);
    Guard("frmScr_AutoFill_Method", "Form_Load", [&] {
        Common::GetComboItemData_List(*cboMethod, ModMain::FillMethodChoices());
        int index = cboMethod->findData(fill().AutoFill_MethodID);
        // None chosen yet: the project's first method, not the first by name.
        if (index < 0)
            for (int i = 0; i < cboMethod->count(); ++i)
                if (index < 0 ||
                    cboMethod->itemData(i).toInt() < cboMethod->itemData(index).toInt())
                    index = i;
        cboMethod->setCurrentIndex(index);
    });
}

void frmScr_AutoFill_Method::cmdNext_Click() {
    if (cboMethod->currentIndex() < 0) {
        MsgBox(QStringLiteral("There are no fill methods to choose from. Please add one with "
                              "Tools > Fill Methods... to continue."),
               MsgButtons::Ok, MsgIcon::Critical);
        return;
    }
    fill().AutoFill_MethodID = static_cast<qint16>(cboMethod->currentData().toInt());
    WizardPage::cmdNext_Click();
}

frmScr_AutoFill_Complete::frmScr_AutoFill_Complete(QWidget* parent)
    : AutoFillPage(QStringLiteral("frmScr_AutoFill_Complete"), QStringLiteral("Ready to fill"),
                   QString(), parent) {
    auto* summary = addLabel(this, "lblSummary", QString());
    body()->addWidget(summary);
    body()->addStretch(1);
    Guard("frmScr_AutoFill_Complete", "Form_Load", [&] {
        const AutoFill::State& a = fill();
        qint32 periods = 0;
        for (const qint32 n : a.AutoFill_IncludeSubjectPeriods)
            periods += n;
        const auto method = ModMain::ReadMethod(a.AutoFill_MethodID);
        summary->setText(
            QStringLiteral("Auto Fill will fill %1 period(s) of the timetable %2 with %3 "
                           "subject(s), choosing from %4 tutor(s) and %5 room(s), using the "
                           "method \"%6\".\n\nThe fill is one step: if you cancel it while it "
                           "runs, the timetable stays as it is now.\n\nClick Next to start.")
                .arg(QString::number(periods), ModMain::GetTimetableName(a.AutoFill_WhoID),
                     QString::number(a.AutoFill_IncludeSubjectsCount()),
                     QString::number(a.AutoFill_TutorsCount()),
                     QString::number(a.AutoFill_RoomsCount()), method ? method->name : QString()));
    });
}

void frmScr_AutoFill_Complete::cmdNext_Click() {
    fill().AutoFill_Screen = AutoFill::Screen::Finished;
    finish();
}
