#include "autofill/frmAutoFillMethod.h"

#include "autofill/AutoFillState.h"
#include "autofill/FillChoices.h"
#include "common/ErrorHandler.h"
#include "common/Icons.h"
#include "store/Transaction.h"
#include "ui_frmAutoFillMethod.h"

frmAutoFillMethod::frmAutoFillMethod(QWidget* parent)
    : QDialog(parent), ui(std::make_unique<Ui::frmAutoFillMethod>()) {
    ui->setupUi(this);
    setWindowIcon(Icons::App());
    connect(ui->cmdOK, &QPushButton::clicked, this, &frmAutoFillMethod::cmdOK_Click);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    Guard("frmAutoFillMethod", "Form_Load", [&] {
        const qint32 id = AutoFill::state().giMethodEditID;
        if (id == -1)
            return;
        if (const auto method = ModMain::ReadMethod(id)) {
            ui->txtName->setText(method->name);
            ui->sTutor->setValue(method->TutorSet);
            ui->sRoom->setValue(method->RoomSet);
            ui->sSubject->setValue(method->SubjectSet);
            ui->sClass->setValue(method->ClassSet);
        }
    });
}

frmAutoFillMethod::~frmAutoFillMethod() = default;

void frmAutoFillMethod::cmdOK_Click() {
    Guard("frmAutoFillMethod", "cmdOK_Click", [&] {
        const ModMain::MethodRow method{ui->txtName->text(), ui->sTutor->value(),
                                        ui->sRoom->value(), ui->sSubject->value(),
                                        ui->sClass->value()};
        qint32& id = AutoFill::state().giMethodEditID;
        const ActionName name(
            (id == -1 ? QStringLiteral("New Fill Method ") : QStringLiteral("Edit Fill Method ")) +
            method.name);
        const qint32 saved = ModMain::SaveMethod(id, method);
        if (saved == -1)
            return;
        id = saved;
        accept();
    });
}
