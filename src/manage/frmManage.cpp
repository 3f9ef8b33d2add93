#include "manage/frmManage.h"

#include "common/Common.h"
#include "common/ErrorHandler.h"
#include "common/Icons.h"
#include "common/ListHelpers.h"
#include "manage/ManageState.h"
#include "manage/ResourceDialogs.h"
#include "manage/ResourceRecords.h"
#include "scheduling/Availability.h"
#include "scheduling/ResourceLists.h"
#include "store/Transaction.h"
#include "ui_frmManage.h"

using ModMain::ResourceKind;

frmManage::frmManage(std::function<void()> changed, QWidget* parent)
    : QDialog(parent), ui(std::make_unique<Ui::frmManage>()), m_changed(std::move(changed)) {
    ui->setupUi(this);
    setWindowIcon(Icons::App());
    // The capital letters of the questions differ, as users have always seen them.
    m_kinds = {{ResourceKind::Tutor, ui->lstTutors, "Delete selected tutor?"},
               {ResourceKind::Class, ui->lstClasses, "Delete selected Class?"},
               {ResourceKind::Room, ui->lstRooms, "Delete selected Room?"},
               {ResourceKind::Subject, ui->lstSubjects, "Delete selected Subject?"}};
    QPushButton* const buttons[][3] = {
        {ui->cmdAddTutor, ui->cmdEditTutor, ui->cmdDeleteTutor},
        {ui->cmdAddClass, ui->cmdEditClass, ui->cmdDeleteClass},
        {ui->cmdAddRoom, ui->cmdEditRoom, ui->cmdDeleteRoom},
        {ui->cmdAddSubject, ui->cmdEditSubject, ui->cmdDeleteSubject}};
    // One width for every page's buttons, so they stay put between tabs.
    for (const auto& row : buttons)
        for (QPushButton* button : row)
            button->setMinimumWidth(150);
    for (int page = 0; page < m_kinds.size(); ++page) {
        connect(buttons[page][0], &QPushButton::clicked, this,
                [this, page] { cmdAdd_Click(m_kinds[page]); });
        connect(buttons[page][1], &QPushButton::clicked, this,
                [this, page] { cmdEdit_Click(m_kinds[page]); });
        connect(buttons[page][2], &QPushButton::clicked, this,
                [this, page] { cmdDelete_Click(m_kinds[page]); });
        connect(m_kinds[page].list, &QListWidget::itemDoubleClicked, this,
                [this, page] { cmdEdit_Click(m_kinds[page]); });
        connect(m_kinds[page].list, &QListWidget::itemSelectionChanged, this,
                &frmManage::updateButtons);
    }
    connect(ui->tsMain, &QTabWidget::currentChanged, this, [this](int page) {
        mintCurFrame = page;
        updateButtons();
    });
    connect(ui->cmdClose, &QPushButton::clicked, this, &QDialog::accept);
    Guard("frmManage", "Form_Load", [&] {
        for (const Kind& k : std::as_const(m_kinds))
            RefreshList(k);
    });
    updateButtons();
}

frmManage::~frmManage() = default;

void frmManage::SelectTab(int page) {
    if (page >= 0 && page < ui->tsMain->count())
        ui->tsMain->setCurrentIndex(page);
}

void frmManage::RefreshList(const Kind& k, qint32 selectID) {
    Common::GetListBoxItemData_List(*k.list, ModMain::ResourceNames(k.kind));
    if (selectID != -1) {
        Common::SelectListBox_ItemData(*k.list, {selectID});
        if (const auto selected = k.list->selectedItems(); !selected.isEmpty())
            k.list->setCurrentItem(selected.first());
    }
    updateButtons();
}

void frmManage::updateButtons() {
    QPushButton* const edits[] = {ui->cmdEditTutor, ui->cmdEditClass, ui->cmdEditRoom,
                                  ui->cmdEditSubject};
    QPushButton* const deletes[] = {ui->cmdDeleteTutor, ui->cmdDeleteClass, ui->cmdDeleteRoom,
                                    ui->cmdDeleteSubject};
    for (int page = 0; page < m_kinds.size(); ++page) {
        const bool chosen = !m_kinds[page].list->selectedItems().isEmpty();
        edits[page]->setEnabled(chosen);
        deletes[page]->setEnabled(chosen);
    }
}

void frmManage::cmdAdd_Click(const Kind& k) {
    Guard("frmManage", "cmdAdd_Click", [&] {
        if (!Manage::EditResource(k.kind, -1, this))
            return;
        RefreshList(k, Manage::state().editID(k.kind));
        if (m_changed)
            m_changed();
    });
}

void frmManage::cmdEdit_Click(const Kind& k) {
    Guard("frmManage", "cmdEdit_Click", [&] {
        const auto selected = k.list->selectedItems();
        if (selected.isEmpty())
            return;
        const qint32 id = selected.first()->data(Qt::UserRole).toInt();
        if (!Manage::EditResource(k.kind, id, this))
            return;
        RefreshList(k, id);
        if (m_changed)
            m_changed();
    });
}

void frmManage::cmdDelete_Click(const Kind& k) {
    Guard("frmManage", "cmdDelete_Click", [&] {
        const auto selected = k.list->selectedItems();
        if (selected.isEmpty())
            return;
        if (Common::MsgBox(QString::fromLatin1(k.question), Common::MsgButtons::YesNo,
                           Common::MsgIcon::Question) != Common::MsgResult::Yes)
            return;
        {
            const ActionName name(QStringLiteral("Delete ") + ModMain::KindWord(k.kind) +
                                  QLatin1Char(' ') + selected.first()->text());
            ModMain::DeleteResource(k.kind, selected.first()->data(Qt::UserRole).toInt());
        }
        RefreshList(k);
        if (m_changed)
            m_changed();
    });
}
