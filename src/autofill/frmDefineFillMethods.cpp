#include "autofill/frmDefineFillMethods.h"

#include "autofill/AutoFillState.h"
#include "autofill/FillChoices.h"
#include "autofill/frmAutoFillMethod.h"
#include "common/Common.h"
#include "common/ErrorHandler.h"
#include "common/Icons.h"
#include "common/ListHelpers.h"
#include "store/Transaction.h"
#include "ui_frmDefineFillMethods.h"

#include <QListWidget>

using Common::MsgBox;
using Common::MsgButtons;
using Common::MsgIcon;
using Common::MsgResult;

frmDefineFillMethods::frmDefineFillMethods(QWidget* parent)
    : QDialog(parent), ui(std::make_unique<Ui::frmDefineFillMethods>()) {
    ui->setupUi(this);
    setWindowIcon(Icons::App());
    connect(ui->cmdAdd, &QPushButton::clicked, this, &frmDefineFillMethods::cmdAdd_Click);
    connect(ui->cmdEdit, &QPushButton::clicked, this, &frmDefineFillMethods::cmdEdit_Click);
    connect(ui->cmdRemove, &QPushButton::clicked, this, &frmDefineFillMethods::cmdRemove_Click);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(ui->lstItems, &QListWidget::itemDoubleClicked, this,
            &frmDefineFillMethods::cmdEdit_Click);
    Guard("frmDefineFillMethods", "Form_Load", [&] { RefreshList(-1); });
}

frmDefineFillMethods::~frmDefineFillMethods() = default;

void frmDefineFillMethods::RefreshList(qint32 SelectID) {
    Common::GetListBoxItemData_List(*ui->lstItems, ModMain::MethodList());
    if (SelectID != -1)
        Common::SelectListBox_ItemData(*ui->lstItems, {SelectID});
    // No row looks chosen unless one is: Edit and Remove act on the selection.
    if (const auto selected = ui->lstItems->selectedItems(); !selected.isEmpty())
        ui->lstItems->setCurrentItem(selected.first());
    else
        ui->lstItems->setCurrentItem(nullptr, QItemSelectionModel::NoUpdate);
}

qint32 frmDefineFillMethods::selectedMethod() {
    const int row = ui->lstItems->currentRow();
    if (row < 0 || !ui->lstItems->item(row)->isSelected()) {
        MsgBox(QStringLiteral("No method has been selected. Please select a method to continue."),
               MsgButtons::Ok, MsgIcon::Critical);
        return -1;
    }
    return Common::ListBoxItemData(*ui->lstItems, row);
}

void frmDefineFillMethods::cmdAdd_Click() {
    Guard("frmDefineFillMethods", "cmdAdd_Click", [&] {
        AutoFill::state().giMethodEditID = -1;
        frmAutoFillMethod details(this);
        details.exec();
        RefreshList(AutoFill::state().giMethodEditID);
    });
}

void frmDefineFillMethods::cmdEdit_Click() {
    Guard("frmDefineFillMethods", "cmdEdit_Click", [&] {
        const qint32 id = selectedMethod();
        if (id == -1)
            return;
        AutoFill::state().giMethodEditID = id;
        frmAutoFillMethod details(this);
        details.exec();
        RefreshList(id);
    });
}

void frmDefineFillMethods::cmdRemove_Click() {
    Guard("frmDefineFillMethods", "cmdRemove_Click", [&] {
        const qint32 id = selectedMethod();
        if (id == -1)
            return;
        if (MsgBox(QStringLiteral("Are you sure you want to delete the selected method?"),
                   MsgButtons::YesNo, MsgIcon::Question) != MsgResult::Yes)
            return;
        {
            const ActionName name(QStringLiteral("Delete Fill Method"));
            ModMain::DeleteMethod(id);
        }
        RefreshList(-1);
    });
}
