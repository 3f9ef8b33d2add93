#include "wizards/ProjectScreens.h"

#include "common/Common.h"
#include "common/ListHelpers.h"
#include "store/TimeText.h"
#include "wizards/ProjectCalendar.h"
#include "wizards/WizardState.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

using Common::MsgBox;
using Common::MsgButtons;
using Common::MsgIcon;

namespace {
const QString kTitle = QStringLiteral("New Project Wizard");
// The hours screen lists the fixed ranges first, then the saved templates.
constexpr int kFixedRanges = 4;

void warn(const QString& text) {
    MsgBox(text, MsgButtons::Ok, MsgIcon::Exclamation);
}

QLabel* caption(const QString& text, QWidget* buddy, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setBuddy(buddy);
    return label;
}

QListWidget* makeList(const QString& name, QWidget* parent) {
    auto* list = new QListWidget(parent);
    list->setObjectName(name);
    list->setSelectionMode(QAbstractItemView::SingleSelection);
    list->setMinimumHeight(120);
    return list;
}

QPushButton* makeButton(const QString& name, const QString& text, QWidget* parent) {
    auto* button = new QPushButton(text, parent);
    button->setObjectName(name);
    button->setAutoDefault(false);
    return button;
}

void selectRow(QListWidget* list, int row) {
    if (list->count() == 0)
        return;
    list->setCurrentRow(row >= 0 && row < list->count() ? row : 0);
}

// Next stays off while nothing is chosen, so the wizard never goes on empty-handed.
void needSelection(QListWidget* list, QPushButton* next) {
    auto update = [list, next] { next->setEnabled(!list->selectedItems().isEmpty()); };
    QObject::connect(list, &QListWidget::itemSelectionChanged, next, update);
    update();
}

// The button under a screen's list that opens its custom screen.
QPushButton* addCustomButton(QVBoxLayout* body, const QString& text, QWidget* parent) {
    auto* button = makeButton(QStringLiteral("cmdCustom"), text, parent);
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    row->addWidget(button);
    body->addLayout(row);
    return button;
}

// The custom screens are shown from inside the screen they refine; when they
// close, the driving loop shows the screen for whatever number they set.
template <class Custom> void openCustom(QDialog* from) {
    Wizard::State& s = Wizard::state();
    s.tempWizardScreen = s.WizardScreen;
    from->hide();
    Custom custom(from->parentWidget());
    custom.setWindowModality(from->windowModality());
    custom.exec();
}

int selectedRow(const QListWidget* list) {
    const QList<QListWidgetItem*> chosen = list->selectedItems();
    return chosen.isEmpty() ? -1 : list->row(chosen.first());
}

// Where a template stands in the list its screen shows: the screen comes
// back with the new template chosen.
qint16 listPosition(const TableArray& templates, qint32 id) {
    for (qsizetype r = 1; r < templates.size(); ++r)
        if (templates.at(r).value(0).toInt() == id)
            return static_cast<qint16>(r - 1);
    return 0;
}
} // namespace

// ---------------------------------------------------------------- welcome

frmScr_Project_Welcome::frmScr_Project_Welcome(QWidget* parent)
    : WizardPage(Wizard::flow(), QStringLiteral("frmScr_Project_Welcome"), kTitle,
                 QStringLiteral("Welcome to the New Project Wizard"),
                 QStringLiteral("A project holds everything about one school: its tutors, "
                                "subjects, rooms and classes, the days and periods of its week, "
                                "and all of its timetables."),
                 parent) {
    auto* steps = new QLabel(QStringLiteral("This wizard will:<ul>"
                                            "<li>ask where to save the new project file,</li>"
                                            "<li>let you choose the days of the school week,</li>"
                                            "<li>let you choose the times of the periods.</li>"
                                            "</ul>You can make your own lists of days and times "
                                            "on the way. Click Next to begin."),
                             this);
    steps->setObjectName(QStringLiteral("lblSteps"));
    steps->setWordWrap(true);
    body()->addWidget(steps);
    body()->addStretch(1);
    chkDisplayNext = new QCheckBox(
        QStringLiteral("&Show this welcome page the next time I create a project"), this);
    chkDisplayNext->setObjectName(QStringLiteral("chkDisplayNext"));
    chkDisplayNext->setChecked(Wizard::state().WizardProjectWelcome);
    body()->addWidget(chkDisplayNext);
    // There is nothing before the first screen.
    cmdBack->setEnabled(false);
}

void frmScr_Project_Welcome::done(int result) {
    Wizard::state().WizardProjectWelcome = chkDisplayNext->isChecked();
    WizardPage::done(result);
}

// ---------------------------------------------------------------- days

frmScr_Project_DOW::frmScr_Project_DOW(QWidget* parent)
    : WizardPage(Wizard::flow(), QStringLiteral("frmScr_Project_DOW"), kTitle,
                 QStringLiteral("School Days"),
                 QStringLiteral("Choose the days your timetables cover. If none of these lists "
                                "fits your school, click Custom Days to make your own."),
                 parent) {
    lstDOW = makeList(QStringLiteral("lstDOW"), this);
    body()->addWidget(caption(QStringLiteral("&Days of the week:"), lstDOW, this));
    body()->addWidget(lstDOW, 1);
    cmdCustom = addCustomButton(body(), QStringLiteral("&Custom Days..."), this);

    Common::GetListBoxItemData_List(*lstDOW, Wizard::DayTemplateList());
    selectRow(lstDOW, Wizard::state().WizardDOWIndex);
    cmdBack->setEnabled(!Wizard::state().WizardCalendarOnly);
    needSelection(lstDOW, cmdNext);
    connect(cmdCustom, &QPushButton::clicked, this, [this] {
        openCustom<frmScr_Project_CustomDOW>(this);
        finish();
    });
}

void frmScr_Project_DOW::cmdNext_Click() {
    const int row = selectedRow(lstDOW);
    if (row < 0)
        return;
    Wizard::State& s = Wizard::state();
    s.WizardDOWIndex = static_cast<qint16>(row);
    s.WizardDOW = Wizard::DayTemplateDays(Common::ListBoxItemData(*lstDOW, row));
    WizardPage::cmdNext_Click();
}

// ---------------------------------------------------------------- custom screens

CustomTemplatePage::CustomTemplatePage(const Texts& texts, QWidget* parent)
    : WizardPage(Wizard::flow(), texts.name, kTitle, texts.heading, texts.intro, parent),
      m_minimum(texts.minimum), m_tooFew(texts.tooFew), m_noneSelected(texts.noneSelected) {
    m_grid = new QGridLayout;
    txtTitle = new QLineEdit(this);
    txtTitle->setObjectName(QStringLiteral("txtTitle"));
    txtTitle->setMaxLength(100);
    m_grid->addWidget(caption(QStringLiteral("&Title:"), txtTitle, this), 0, 0);
    m_grid->addWidget(txtTitle, 0, 1, 1, 2);
    cmdAdd = makeButton(QStringLiteral("cmdAdd"), QStringLiteral("&Add"), this);
    m_grid->addWidget(cmdAdd, 1, 2);
    m_list = makeList(texts.listName, this);
    cmdRemove = makeButton(QStringLiteral("cmdRemove"), QStringLiteral("&Remove"), this);
    m_grid->addWidget(caption(texts.listCaption, m_list, this), 2, 0, Qt::AlignTop);
    m_grid->addWidget(m_list, 2, 1);
    m_grid->addWidget(cmdRemove, 2, 2, Qt::AlignTop);
    m_grid->setColumnStretch(1, 1);
    m_grid->setRowStretch(2, 1);
    body()->addLayout(m_grid, 1);
    txtTitle->setFocus();
    connect(cmdRemove, &QPushButton::clicked, this, &CustomTemplatePage::cmdRemove_Click);
}

void CustomTemplatePage::setEntry(QWidget* entry, const QString& text) {
    m_grid->addWidget(caption(text, entry, this), 1, 0);
    m_grid->addWidget(entry, 1, 1);
}

void CustomTemplatePage::cmdRemove_Click() {
    const int row = selectedRow(m_list);
    if (row < 0) {
        warn(m_noneSelected);
        return;
    }
    delete m_list->takeItem(row);
}

void CustomTemplatePage::cmdNext_Click() {
    if (txtTitle->text().trimmed().isEmpty()) {
        warn(QStringLiteral("No title has have been entered. Please enter a title to continue."));
        return;
    }
    if (m_list->count() < m_minimum) {
        warn(m_tooFew);
        return;
    }
    store(txtTitle->text().trimmed());
    cmdBack_Click();
}

void CustomTemplatePage::cmdBack_Click() {
    Wizard::state().WizardScreen = Wizard::state().tempWizardScreen;
    finish();
}

frmScr_Project_CustomDOW::frmScr_Project_CustomDOW(QWidget* parent)
    : CustomTemplatePage(
          {QStringLiteral("frmScr_Project_CustomDOW"), QStringLiteral("Custom Days"),
           QStringLiteral("Give your list of days a title, then add the days in the order they "
                          "should appear on your timetables. The list is kept in the project, so "
                          "you can choose it again later."),
           QStringLiteral("lstDays"), QStringLiteral("Days:"), 1,
           QStringLiteral(
               "No days have been entered. Please enter some days to include and try again."),
           QStringLiteral("No day has been selected to remove. Please select a day to remove and "
                          "then try again.")},
          parent) {
    txtDay = new QLineEdit(this);
    txtDay->setObjectName(QStringLiteral("txtDay"));
    txtDay->setMaxLength(50);
    setEntry(txtDay, QStringLiteral("Da&y:"));
    lstDays = list();
    txtDay->installEventFilter(this);
    connect(cmdAdd, &QPushButton::clicked, this, &frmScr_Project_CustomDOW::cmdAdd_Click);
}

bool frmScr_Project_CustomDOW::eventFilter(QObject* watched, QEvent* event) {
    if (watched == txtDay && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            cmdAdd_Click();
            return true;
        }
    }
    return CustomTemplatePage::eventFilter(watched, event);
}

void frmScr_Project_CustomDOW::cmdAdd_Click() {
    const QString day = txtDay->text().trimmed();
    if (day.isEmpty()) {
        warn(
            QStringLiteral("No day has been entered. Please enter a day name and then try again."));
        return;
    }
    lstDays->addItem(day);
    txtDay->clear();
    txtDay->setFocus();
}

void frmScr_Project_CustomDOW::store(const QString& title) {
    QStringList days;
    for (int i = 0; i < lstDays->count(); ++i)
        days << lstDays->item(i)->text();
    const qint32 id = Wizard::StoreDayTemplate(title, days);
    Wizard::state().WizardDOWIndex = listPosition(Wizard::DayTemplateList(), id);
}

// ---------------------------------------------------------------- hours

frmScr_Project_Hours::frmScr_Project_Hours(QWidget* parent)
    : WizardPage(Wizard::flow(), QStringLiteral("frmScr_Project_Hours"), kTitle,
                 QStringLiteral("School Hours"),
                 QStringLiteral("Choose when the school day starts and ends and how long each "
                                "period lasts, or choose a saved set of times, which is used "
                                "exactly as saved. Click Custom Hours to make your own set."),
                 parent) {
    lstHours = makeList(QStringLiteral("lstHours"), this);
    lstInc = makeList(QStringLiteral("lstInc"), this);
    auto* grid = new QGridLayout;
    grid->addWidget(caption(QStringLiteral("School &hours:"), lstHours, this), 0, 0);
    grid->addWidget(caption(QStringLiteral("&Period length:"), lstInc, this), 0, 1);
    grid->addWidget(lstHours, 1, 0);
    grid->addWidget(lstInc, 1, 1);
    grid->setColumnStretch(0, 3);
    grid->setColumnStretch(1, 1);
    body()->addLayout(grid, 1);
    cmdCustom = addCustomButton(body(), QStringLiteral("&Custom Hours..."), this);

    Common::GetListBoxItemData_List(*lstHours, Wizard::HourTemplateList());
    lstHours->insertItems(0, Wizard::FixedRangeNames());
    lstInc->addItems(Wizard::IncrementNames());

    const Wizard::State& s = Wizard::state();
    selectRow(lstHours, s.WizardHoursIndex);
    selectRow(lstInc, s.WizardHourIncIndex);
    // A saved set of times has its own period lengths.
    auto update = [this] { lstInc->setEnabled(!templateChosen()); };
    connect(lstHours, &QListWidget::itemSelectionChanged, this, update);
    update();
    needSelection(lstHours, cmdNext);
    connect(cmdCustom, &QPushButton::clicked, this, [this] {
        openCustom<frmScr_Project_CustomHours>(this);
        finish();
    });
}

bool frmScr_Project_Hours::templateChosen() const {
    return selectedRow(lstHours) >= kFixedRanges;
}

void frmScr_Project_Hours::cmdNext_Click() {
    const int hours = selectedRow(lstHours);
    if (hours < 0)
        return;
    Wizard::State& s = Wizard::state();
    const int inc = std::max(0, selectedRow(lstInc));
    s.WizardHoursIndex = static_cast<qint16>(hours);
    s.WizardHourIncIndex = static_cast<qint16>(inc);
    s.WizardHours = templateChosen()
                        ? Wizard::HourTemplateTimes(Common::ListBoxItemData(*lstHours, hours))
                        : Wizard::RangeTimes(hours, Wizard::IncrementMinutes(inc));
    WizardPage::cmdNext_Click();
}

// ---------------------------------------------------------------- custom hours

frmScr_Project_CustomHours::frmScr_Project_CustomHours(QWidget* parent)
    : CustomTemplatePage(
          {QStringLiteral("frmScr_Project_CustomHours"), QStringLiteral("Custom Hours"),
           QStringLiteral("Give your set of times a title, then add the time each period starts "
                          "and the time the last period ends. The times are kept in order; you "
                          "need at least two."),
           QStringLiteral("lstHour"), QStringLiteral("Times:"), 2,
           QStringLiteral(
               "No hours have been entered. Please enter at least two times and try again."),
           QStringLiteral("No hour has been selected to remove. Please select an hour to remove "
                          "and then try again.")},
          parent) {
    cboHour = new QComboBox(this);
    cboHour->setObjectName(QStringLiteral("cboHour"));
    for (int minutes = 0; minutes < 24 * 60; minutes += 5) {
        const QTime t = QTime(0, 0).addSecs(minutes * 60);
        cboHour->addItem(TimeText::To12Hour(t), t);
    }
    cboHour->setCurrentIndex(cboHour->findData(QTime(8, 0)));
    cboHour->setMaxVisibleItems(16);
    setEntry(cboHour, QStringLiteral("Ti&me:"));
    lstHour = list();
    connect(cmdAdd, &QPushButton::clicked, this, &frmScr_Project_CustomHours::cmdAdd_Click);
}

void frmScr_Project_CustomHours::cmdAdd_Click() {
    const QTime t = cboHour->currentData().toTime();
    int at = 0;
    while (at < lstHour->count() && lstHour->item(at)->data(Qt::UserRole).toTime() < t)
        ++at;
    // A time already listed would make a period of no length.
    if (at < lstHour->count() && lstHour->item(at)->data(Qt::UserRole).toTime() == t) {
        lstHour->setCurrentRow(at);
        return;
    }
    auto* item = new QListWidgetItem(TimeText::To12Hour(t));
    item->setData(Qt::UserRole, t);
    lstHour->insertItem(at, item);
    // Offer the next time along, as times are usually added in order.
    cboHour->setCurrentIndex(std::min(cboHour->currentIndex() + 1, cboHour->count() - 1));
}

void frmScr_Project_CustomHours::store(const QString& title) {
    QVector<QTime> times;
    for (int i = 0; i < lstHour->count(); ++i)
        times << lstHour->item(i)->data(Qt::UserRole).toTime();
    const qint32 id = Wizard::StoreHourTemplate(title, times);
    Wizard::state().WizardHoursIndex =
        static_cast<qint16>(kFixedRanges + listPosition(Wizard::HourTemplateList(), id));
}

// ---------------------------------------------------------------- completion

frmScr_Project_Complete::frmScr_Project_Complete(QWidget* parent)
    : WizardPage(Wizard::flow(), QStringLiteral("frmScr_Project_Complete"), kTitle,
                 QStringLiteral("Ready to Create Your Project"),
                 QStringLiteral("The wizard has everything it needs. Click Finish to set up the "
                                "project with these days and periods."),
                 parent) {
    const Wizard::State& s = Wizard::state();
    QString periods = QStringLiteral("none");
    if (s.WizardHours.size() >= 2)
        periods = QStringLiteral("%1, from %2 to %3")
                      .arg(s.WizardHours.size() - 1)
                      .arg(TimeText::To12Hour(s.WizardHours.first()),
                           TimeText::To12Hour(s.WizardHours.last()));
    lblSummary = new QLabel(this);
    lblSummary->setObjectName(QStringLiteral("lblSummary"));
    lblSummary->setWordWrap(true);
    lblSummary->setTextFormat(Qt::RichText);
    lblSummary->setText(
        QStringLiteral("<table cellspacing=6><tr><td><b>Project file:</b></td><td>%1</td></tr>"
                       "<tr><td><b>Days:</b></td><td>%2</td></tr>"
                       "<tr><td><b>Periods:</b></td><td>%3</td></tr></table>")
            .arg(s.WizardFileName.toHtmlEscaped(),
                 s.WizardDOW.join(QStringLiteral(", ")).toHtmlEscaped(), periods));
    body()->addWidget(lblSummary);
    body()->addStretch(1);
    cmdNext->setText(QStringLiteral("&Finish"));
}

void frmScr_Project_Complete::cmdNext_Click() {
    Wizard::state().WizardScreen = Wizard::ProjectScreen::Finished;
    finish();
}
