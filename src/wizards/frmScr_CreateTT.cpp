#include "wizards/frmScr_CreateTT.h"

#include "common/Common.h"
#include "common/ListHelpers.h"
#include "timetable/TimetableChoices.h"
#include "wizards/WizardState.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>

using Common::MsgBox;
using Common::MsgButtons;
using Common::MsgIcon;

namespace {
const QString kTitle = QStringLiteral("New Timetable Wizard");
const QString kCreateNew = QStringLiteral("Create new...");
constexpr int kNameRole = Qt::UserRole + 1;

QLabel* labelNamed(QWidget* screen, const char* name) {
    return screen->findChild<QLabel*>(QString::fromLatin1(name));
}

// What the Who screen says and reads for each kind of timetable.
struct WhoTexts {
    const char* type;
    const char* heading; // nullptr: the screen's own heading stays
    const char* instruction;
    const char* label;
    const char* exists;
};
constexpr WhoTexts kWho[] = {
    {"Class", "Select or create a Class for this timetable",
     "Please select the Class for this timetable.", "Select a Class:",
     "A timetable already exists for this Class. To view and change the timetable select it "
     "from the View Table button on the main window."},
    {"Tutor", "Select or create a Tutor for this timetable",
     "Please select the Tutor for this timetable.", "Select a Tutor:",
     "A timetable already exists for this Tutor. To view and change the timetable select it "
     "from the View Table button on the main window."},
    {"Room", nullptr, "Please select the Room for this timetable.", "Select a Room:",
     "A timetable already exists for this Room. To view and change the timetable select it "
     "from the View Table button on the main window."},
};

const WhoTexts* whoTexts(const QString& type) {
    for (const WhoTexts& t : kWho)
        if (type == QLatin1String(t.type))
            return &t;
    return nullptr;
}
} // namespace

frmScr_CreateTT_Welcome::frmScr_CreateTT_Welcome(QWidget* parent)
    : WizardPage(Wizard::flow(), QStringLiteral("frmScr_CreateTT_Welcome"), kTitle,
                 QStringLiteral("Welcome to the New Timetable Wizard"),
                 QStringLiteral("This wizard creates a timetable for one class, tutor or room. "
                                "The timetable takes the days and periods of your project; you "
                                "choose whose timetable it is and how it looks."),
                 parent) {
    cmdBack->hide();
    auto* steps = new QLabel(QStringLiteral("You will:\n\n"
                                            "  1.  choose whose timetable it is: a class, a "
                                            "tutor or a room\n"
                                            "  2.  choose a style for its fonts and colours\n\n"
                                            "Click Next to begin."),
                             this);
    steps->setObjectName(QStringLiteral("lblSteps"));
    body()->addWidget(steps);
    body()->addStretch(1);
    chkDisplayNext = new QCheckBox(QStringLiteral("Show this welcome screen next time"), this);
    chkDisplayNext->setObjectName(QStringLiteral("chkDisplayNext"));
    chkDisplayNext->setChecked(Wizard::state().WizardShowWelcome);
    body()->addWidget(chkDisplayNext);
}

void frmScr_CreateTT_Welcome::cmdNext_Click() {
    if (!chkDisplayNext->isChecked())
        Wizard::state().WizardShowWelcome = false;
    WizardPage::cmdNext_Click();
}

frmScr_CreateTT_Type::frmScr_CreateTT_Type(QWidget* parent)
    : WizardPage(Wizard::flow(), QStringLiteral("frmScr_CreateTT_Type"), kTitle,
                 QStringLiteral("Choose the kind of timetable"),
                 QStringLiteral("Whose week is this timetable: a class's, a tutor's or a room's?"),
                 parent) {
    lstType = new QListWidget(this);
    lstType->setObjectName(QStringLiteral("lstType"));
    const struct {
        const char* type;
        const char* text;
    } kinds[] = {{"Class", "Class: the lessons of one class or form"},
                 {"Tutor", "Tutor: the lessons one tutor teaches"},
                 {"Room", "Room: the lessons held in one room"}};
    for (const auto& k : kinds) {
        auto* item = new QListWidgetItem(QString::fromLatin1(k.text), lstType);
        item->setData(Qt::UserRole, QString::fromLatin1(k.type));
        if (Wizard::state().WizardType == QLatin1String(k.type))
            lstType->setCurrentItem(item);
    }
    if (!lstType->currentItem())
        lstType->setCurrentRow(0);
    body()->addWidget(lstType, 1);
    connect(lstType, &QListWidget::itemDoubleClicked, this, [this] { cmdNext_Click(); });
}

void frmScr_CreateTT_Type::cmdNext_Click() {
    Wizard::State& w = Wizard::state();
    const QString type = lstType->currentItem()->data(Qt::UserRole).toString();
    // An owner chosen for another kind means nothing for this one.
    if (type != w.WizardType)
        w.WizardWhoID = -1;
    w.WizardType = type;
    WizardPage::cmdNext_Click();
}

frmScr_CreateTT_Who::frmScr_CreateTT_Who(QWidget* parent)
    : WizardPage(Wizard::flow(), QStringLiteral("frmScr_CreateTT_Who"), kTitle,
                 QStringLiteral("Select or create the owner of this timetable"),
                 QStringLiteral("Please select the owner of this timetable."), parent) {
    auto* form = new QFormLayout;
    lblWho = new QLabel(this);
    lblWho->setObjectName(QStringLiteral("lblWho"));
    cboWho = new QComboBox(this);
    cboWho->setObjectName(QStringLiteral("cboWho"));
    cboWho->setMinimumWidth(260);
    lblWho->setBuddy(cboWho);
    form->addRow(lblWho, cboWho);
    txtWho = new QLineEdit(this);
    txtWho->setObjectName(QStringLiteral("txtWho"));
    txtWho->setPlaceholderText(QStringLiteral("Name of the new one"));
    auto* lblNew = new QLabel(QStringLiteral("New name:"), this);
    lblNew->setObjectName(QStringLiteral("lblNew"));
    lblNew->setBuddy(txtWho);
    form->addRow(lblNew, txtWho);
    body()->addLayout(form);
    auto* hint = new QLabel(QStringLiteral("Entries marked \" - Already created\" have a "
                                           "timetable already; choose \"Create new...\" to add "
                                           "a new one to the project."),
                            this);
    hint->setObjectName(QStringLiteral("lblHint"));
    hint->setWordWrap(true);
    body()->addWidget(hint);
    body()->addStretch(1);

    const Wizard::State& w = Wizard::state();
    if (const WhoTexts* t = whoTexts(w.WizardType)) {
        if (t->heading)
            labelNamed(this, "lblHeading")->setText(QString::fromLatin1(t->heading));
        labelNamed(this, "lblIntro")->setText(QString::fromLatin1(t->instruction));
        lblWho->setText(QString::fromLatin1(t->label));
        for (const ModMain::OwnerChoice& c : ModMain::OwnerChoices(w.WizardType)) {
            cboWho->addItem(c.created ? c.name + QStringLiteral(" - Already created") : c.name,
                            c.id);
            cboWho->setItemData(cboWho->count() - 1, c.name, kNameRole);
        }
    }
    cboWho->addItem(kCreateNew, -1);
    if (w.WizardWhoID != -1)
        cboWho->setCurrentIndex(std::max(cboWho->findData(w.WizardWhoID), 0));
    connect(cboWho, &QComboBox::currentIndexChanged, this, &frmScr_CreateTT_Who::cboWho_Click);
    cboWho_Click();
}

void frmScr_CreateTT_Who::cboWho_Click() {
    const bool createNew = cboWho->currentData().toInt() == -1;
    txtWho->setEnabled(createNew);
    if (createNew)
        txtWho->setFocus();
}

qint32 frmScr_CreateTT_Who::chosenID() {
    if (cboWho->currentData().toInt() != -1)
        return cboWho->currentData().toInt();
    // Blanks around a name are no part of it; a name of blanks is no name.
    const QString name = txtWho->text().trimmed();
    if (name.isEmpty()) {
        MsgBox(QStringLiteral("You have not entered a name. Please enter a name to continue."),
               MsgButtons::Ok, MsgIcon::Critical);
        txtWho->setFocus();
        return 0;
    }
    // A typed name that is already listed means that entry, not a duplicate.
    for (int i = 0; i < cboWho->count(); ++i) {
        if (cboWho->itemData(i).toInt() != -1 &&
            cboWho->itemData(i, kNameRole).toString() == name) {
            cboWho->setCurrentIndex(i);
            return cboWho->itemData(i).toInt();
        }
    }
    return ModMain::CreateOwner(Wizard::state().WizardType, name);
}

void frmScr_CreateTT_Who::cmdNext_Click() {
    Wizard::State& w = Wizard::state();
    const WhoTexts* t = whoTexts(w.WizardType);
    if (!t)
        return;
    const qint32 id = chosenID();
    if (id == 0)
        return;
    w.WizardWhoID = id;
    if (ModMain::TimetableExistsFor(w.WizardType, id)) {
        MsgBox(QString::fromLatin1(t->exists), MsgButtons::Ok, MsgIcon::Exclamation);
        return;
    }
    WizardPage::cmdNext_Click();
}

frmScr_CreateTT_Style::frmScr_CreateTT_Style(QWidget* parent)
    : WizardPage(Wizard::flow(), QStringLiteral("frmScr_CreateTT_Style"), kTitle,
                 QStringLiteral("Choose a style"),
                 QStringLiteral("The style sets the fonts and colours of the timetable's "
                                "headings and periods. Please select a style."),
                 parent) {
    lstStyle = new QListWidget(this);
    lstStyle->setObjectName(QStringLiteral("lstStyle"));
    body()->addWidget(lstStyle, 1);
    Common::GetListBoxItemData_List(*lstStyle, ModMain::StyleList());
    for (int i = 0; i < lstStyle->count(); ++i)
        if (Common::ListBoxItemData(*lstStyle, i) == Wizard::state().WizardStyleID)
            lstStyle->setCurrentRow(i);
}

void frmScr_CreateTT_Style::cmdNext_Click() {
    if (const qint32 id = Common::ListBoxItemData(*lstStyle, lstStyle->currentRow()); id != -1)
        Wizard::state().WizardStyleID = static_cast<qint16>(id);
    WizardPage::cmdNext_Click();
}

frmScr_CreateTT_Complete::frmScr_CreateTT_Complete(QWidget* parent)
    : WizardPage(Wizard::flow(), QStringLiteral("frmScr_CreateTT_Complete"), kTitle,
                 QStringLiteral("Ready to create your timetable"),
                 QStringLiteral("The wizard has everything it needs. Click Finish to create the "
                                "timetable and show it in the main window."),
                 parent) {
    // Going back from here would leave the wizard on a screen it never shows.
    cmdBack->setEnabled(false);
    cmdNext->setText(QStringLiteral("&Finish"));
    auto* summary = new QLabel(this);
    summary->setObjectName(QStringLiteral("lblSummary"));
    summary->setWordWrap(true);
    const Wizard::State& w = Wizard::state();
    const QString who = ModMain::OwnerName(w.WizardType, w.WizardWhoID);
    const QString style = ModMain::StyleName(w.WizardStyleID);
    summary->setText(
        QStringLiteral("Timetable for:\t%1 %2\nStyle:\t\t%3").arg(w.WizardType, who, style));
    summary->setTextFormat(Qt::PlainText);
    body()->addWidget(summary);
    body()->addStretch(1);
}
