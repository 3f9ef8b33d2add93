#include "manage/ResourceDialogs.h"

#include "common/Common.h"
#include "common/ErrorHandler.h"
#include "common/Icons.h"
#include "common/ListHelpers.h"
#include "manage/ManageState.h"
#include "manage/ResourceRecords.h"
#include "scheduling/Availability.h"
#include "scheduling/ResourceLists.h"
#include "store/Transaction.h"
#include "timetable/Lessons.h"
#include "ui_frmResourceName.h"
#include "ui_frmTutor.h"

using ModMain::ResourceKind;

namespace {
void missingName(const QString& kind, const QString& lower) {
    Common::MsgBox(QStringLiteral("A %1 name has not been entered. Please enter a %2 name to "
                                  "continue.")
                       .arg(kind, lower),
                   Common::MsgButtons::Ok, Common::MsgIcon::Exclamation);
}

// Adding a name that is already there is asked about: two tutors may share a
// name, but more often the first was forgotten.
bool addAnyway(ResourceKind kind, qint32 editing, const QString& name) {
    if (editing != -1 || !ModMain::NameTaken(kind, name))
        return true;
    return Common::MsgBox(QStringLiteral("A %1 named %2 already exists. Add another?")
                              .arg(ModMain::KindWord(kind).toLower(), name.trimmed()),
                          Common::MsgButtons::YesNo,
                          Common::MsgIcon::Question) == Common::MsgResult::Yes;
}
} // namespace

frmTutor::frmTutor(QWidget* parent) : QDialog(parent), ui(std::make_unique<Ui::frmTutor>()) {
    ui->setupUi(this);
    setWindowIcon(Icons::App());
    connect(ui->cmdOk, &QPushButton::clicked, this, &frmTutor::cmdOk_Click);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    Guard("frmTutor", "Form_Load", [&] {
        Common::GetListBoxItemData_List(*ui->lstSubjects,
                                        ModMain::ResourceNames(ResourceKind::Subject));
        const qint32 id = Manage::state().giTutorEditID;
        if (id == -1)
            return;
        if (const auto tutor = ModMain::ReadTutor(id)) {
            ui->txtName->setText(tutor->name);
            ui->txtDisplayName->setText(tutor->displayName);
            Common::SelectListBox_ItemData(*ui->lstSubjects, tutor->subjects);
        }
    });
}

frmTutor::~frmTutor() = default;

void frmTutor::cmdOk_Click() {
    Guard("frmTutor", "cmdOk_Click", [&] {
        if (ui->txtName->text().trimmed().isEmpty()) {
            missingName(QStringLiteral("Tutor"), QStringLiteral("tutor"));
            return;
        }
        if (!addAnyway(ResourceKind::Tutor, Manage::state().giTutorEditID, ui->txtName->text()))
            return;
        ModMain::TutorRow tutor{ui->txtName->text(), ui->txtDisplayName->text(), {}};
        for (int i = 0; i < ui->lstSubjects->count(); ++i)
            if (ui->lstSubjects->item(i)->isSelected())
                tutor.subjects.append(Common::ListBoxItemData(*ui->lstSubjects, i));
        const ActionName name((Manage::state().giTutorEditID == -1
                                   ? QStringLiteral("New Tutor ")
                                   : QStringLiteral("Edit Tutor ")) +
                              tutor.name);
        const qint32 saved = ModMain::SaveTutor(Manage::state().giTutorEditID, tutor);
        if (saved == -1)
            return;
        Manage::state().giTutorEditID = saved;
        accept();
    });
}

namespace {
struct NameTexts {
    const char* objectName;
    const char* caption;
    const char* word;
};

NameTexts textsOf(ResourceKind kind) {
    switch (kind) {
    case ResourceKind::Subject:
        return {"frmSubject", "Subject Details", "Subject"};
    case ResourceKind::Room:
        return {"frmRoom", "Room Details", "Room"};
    default:
        return {"frmClass", "Class Details", "Class"};
    }
}
} // namespace

frmResourceName::frmResourceName(ResourceKind kind, QWidget* parent)
    : QDialog(parent), m_kind(kind), ui(std::make_unique<Ui::frmResourceName>()) {
    ui->setupUi(this);
    const NameTexts texts = textsOf(kind);
    setObjectName(QString::fromLatin1(texts.objectName));
    setWindowTitle(QString::fromLatin1(texts.caption));
    setWindowIcon(Icons::App());
    connect(ui->cmdOk, &QPushButton::clicked, this, &frmResourceName::cmdOk_Click);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    Guard(texts.objectName, "Form_Load", [&] {
        const qint32 id = Manage::state().editID(kind);
        if (id == -1)
            return;
        if (const auto name = ModMain::ReadResourceName(kind, id))
            ui->txtName->setText(*name);
    });
}

frmResourceName::~frmResourceName() = default;

void frmResourceName::cmdOk_Click() {
    const NameTexts texts = textsOf(m_kind);
    Guard(texts.objectName, "cmdOk_Click", [&] {
        const QString word = QString::fromLatin1(texts.word);
        // A name of blanks alone is no name either.
        if (ui->txtName->text().trimmed().isEmpty()) {
            missingName(word, word);
            return;
        }
        qint32& id = Manage::state().editID(m_kind);
        if (!addAnyway(m_kind, id, ui->txtName->text()))
            return;
        const ActionName name((id == -1 ? QStringLiteral("New ") : QStringLiteral("Edit ")) +
                              ModMain::KindWord(m_kind) + QLatin1Char(' ') + ui->txtName->text());
        const qint32 saved = ModMain::SaveResourceName(m_kind, id, ui->txtName->text());
        if (saved == -1)
            return;
        id = saved;
        accept();
    });
}

namespace Manage {

bool EditResource(ResourceKind kind, qint32 id, QWidget* parent) {
    state().editID(kind) = id;
    if (kind == ResourceKind::Tutor) {
        frmTutor dialog(parent);
        return dialog.exec() == QDialog::Accepted;
    }
    frmResourceName dialog(kind, parent);
    return dialog.exec() == QDialog::Accepted;
}

} // namespace Manage
