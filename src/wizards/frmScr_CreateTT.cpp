#include "wizards/frmScr_CreateTT.h"

#include "common/Common.h"
#include "common/ListHelpers.h"
#include "store/ModMain.h"
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

void setEmptyDialog(QDialog* dialog, const char* name) {
    dialog->setObjectName(QString::fromLatin1(name));
    dialog->setWindowTitle(kTitle);
}

QLabel* labelNamed(QWidget* screen, const char* name) {
    return screen->findChild<QLabel*>(QString::fromLatin1(name));
}

// What the Who screen says and reads for each kind of timetable.
struct WhoTexts {
    const char* type;
    const char* heading; // nullptr: the screen's own heading stays
    const char* instruction;
    const char* label;
    const char* listSql;
    const char* countSql;
    const char* ownerColumn;
    const char* exists;
};
constexpr WhoTexts kWho[] = {
    {"Class", "Select or create a Class for this timetable",
     "Please select the Class for this timetable.", "Select a Class:",
     "SELECT id, name FROM class WHERE id<>1 ORDER BY name",
     "SELECT COUNT(*) AS tot FROM timetable WHERE classid = ", " AND ClassID=",
     "A timetable already exists for this Class. To view and change the timetable select it "
     "from the View Table button on the main window."},
    {"Tutor", "Select or create a Tutor for this timetable",
     "Please select the Tutor for this timetable.", "Select a Tutor:",
     "SELECT id, name FROM tutor WHERE id<>1 ORDER BY name",
     "SELECT COUNT(*) AS tot FROM timetable WHERE tutorid = ", " AND tutorid=",
     "A timetable already exists for this Tutor. To view and change the timetable select it "
     "from the View Table button on the main window."},
    {"Room", nullptr, "Please select the Room for this timetable.", "Select a Room:",
     "SELECT id, name FROM room WHERE id<>1 ORDER BY name",
     "SELECT COUNT(*) AS tot FROM timetable WHERE roomid = ", " AND roomid=",
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
    : WizardPage(QStringLiteral("frmScr_CreateTT_Welcome"), kTitle,
                 QStringLiteral("Welcome to the New Timetable Wizard"),
                 QStringLiteral("This wizard creates a timetable for one class, tutor or room. "
                                "The timetable takes the days and periods of your project; you "
                                "choose whose timetable it is and how it looks."),
                 parent) {
    cmdBack->hide();
    auto* steps = new QLabel(QStringLiteral("You will:\n\n"
                                            "  1.  select or create the owner of the timetable\n"
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
    : WizardPage(QStringLiteral("frmScr_CreateTT_Type"), kTitle, QStringLiteral("Type of timetable"),
                 QStringLiteral("Please select whose timetable you would like to create."),
                 parent) {
    cboType = new QComboBox(this);
    cboType->setObjectName(QStringLiteral("cboType"));
    cboType->addItems({QStringLiteral("Class"), QStringLiteral("Tutor"), QStringLiteral("Room")});
    cboType->setCurrentText(Wizard::state().WizardType);
    body()->addWidget(cboType);
    body()->addStretch(1);
}

void frmScr_CreateTT_Type::cmdNext_Click() {
    Wizard::state().WizardType = cboType->currentText();
    WizardPage::cmdNext_Click();
}

frmScr_CreateTT_Who::frmScr_CreateTT_Who(QWidget* parent)
    : WizardPage(QStringLiteral("frmScr_CreateTT_Who"), kTitle,
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
        for (auto rs = ModMain::DB().Execute(QString::fromLatin1(t->listSql)); !rs.eof();
             rs.MoveNext()) {
            const QString id = rs.Field("id").toString();
            const QString name = Common::NullToString(rs.Field("name"));
            const bool created =
                ModMain::DB().Execute(QString::fromLatin1(t->countSql) + id).Field("tot").toInt() >
                0;
            cboWho->addItem(created ? name + QStringLiteral(" - Already created") : name,
                            id.toInt());
            cboWho->setItemData(cboWho->count() - 1, name, kNameRole);
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
    const QString name = txtWho->text();
    if (name.isEmpty()) {
        MsgBox(QStringLiteral("You have not entered a name. Please enter a name to continue."),
               MsgButtons::Ok, MsgIcon::Critical);
        txtWho->setFocus();
        return 0;
    }
    // A typed name that is already listed means that entry, not a duplicate.
    for (int i = 0; i < cboWho->count(); ++i) {
        if (cboWho->itemData(i).toInt() != -1 && cboWho->itemData(i, kNameRole).toString() == name) {
            cboWho->setCurrentIndex(i);
            return cboWho->itemData(i).toInt();
        }
    }
    ModMain::DB().Execute(QStringLiteral("INSERT INTO ") + Wizard::state().WizardType +
                          QStringLiteral(" (name) VALUES ('") + Common::SQLReplace(name) +
                          QStringLiteral("')"));
    return ModMain::DB().GetInsertID();
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
    auto existing = ModMain::DB().Execute(QStringLiteral("SELECT id FROM Timetable WHERE Type='") +
                                          w.WizardType + QLatin1Char('\'') +
                                          QString::fromLatin1(t->ownerColumn) + QString::number(id));
    if (!existing.eof()) {
        MsgBox(QString::fromLatin1(t->exists), MsgButtons::Ok, MsgIcon::Exclamation);
        return;
    }
    WizardPage::cmdNext_Click();
}

frmScr_CreateTT_Style::frmScr_CreateTT_Style(QWidget* parent)
    : WizardPage(QStringLiteral("frmScr_CreateTT_Style"), kTitle, QStringLiteral("Choose a style"),
                 QStringLiteral("The style sets the fonts and colours of the timetable's "
                                "headings and periods. Please select a style."),
                 parent) {
    lstStyle = new QListWidget(this);
    lstStyle->setObjectName(QStringLiteral("lstStyle"));
    body()->addWidget(lstStyle, 1);
    Common::GetListBoxItemData_List(
        *lstStyle, ModMain::DB().Execute(QStringLiteral("SELECT id, name FROM style")));
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
    : WizardPage(QStringLiteral("frmScr_CreateTT_Complete"), kTitle,
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
    const QString who =
        ModMain::DB()
            .Execute(QStringLiteral("SELECT name FROM %1 WHERE id = %2").arg(w.WizardType).arg(w.WizardWhoID))
            .Field("name")
            .toString();
    const QString style =
        ModMain::DB()
            .Execute(QStringLiteral("SELECT name FROM style WHERE id = %1").arg(w.WizardStyleID))
            .Field("name")
            .toString();
    summary->setText(QStringLiteral("Timetable for:\t%1 %2\nStyle:\t\t%3")
                         .arg(w.WizardType, who, style));
    summary->setTextFormat(Qt::PlainText);
    body()->addWidget(summary);
    body()->addStretch(1);
}

frmScr_CreateTT_Hours::frmScr_CreateTT_Hours(QWidget* parent) : QDialog(parent) {
    setEmptyDialog(this, "frmScr_CreateTT_Hours");
}
frmScr_CreateTT_DOW::frmScr_CreateTT_DOW(QWidget* parent) : QDialog(parent) {
    setEmptyDialog(this, "frmScr_CreateTT_DOW");
}
frmScr_CreateTT_CustomHours::frmScr_CreateTT_CustomHours(QWidget* parent) : QDialog(parent) {
    setEmptyDialog(this, "frmScr_CreateTT_CustomHours");
}
frmScr_CreateTT_CustomDOW::frmScr_CreateTT_CustomDOW(QWidget* parent) : QDialog(parent) {
    setEmptyDialog(this, "frmScr_CreateTT_CustomDOW");
}
