#pragma once
// The detail dialogs of one tutor, subject, room or class. Each edits the
// record its kind's edit id names (Manage::state()), or adds one for -1.

#include "scheduling/Availability.h"

#include <QDialog>
#include <memory>

namespace Ui {
class frmTutor;
class frmResourceName;
} // namespace Ui

class frmTutor : public QDialog {
    Q_OBJECT
public:
    explicit frmTutor(QWidget* parent = nullptr);
    ~frmTutor() override;

private:
    void cmdOk_Click();
    std::unique_ptr<Ui::frmTutor> ui;
};

// "Subject Details", "Room Details" or "Class Details": a name alone. The
// dialog is named frmSubject, frmRoom or frmClass after its kind.
class frmResourceName : public QDialog {
    Q_OBJECT
public:
    frmResourceName(ModMain::ResourceKind kind, QWidget* parent = nullptr);
    ~frmResourceName() override;

private:
    void cmdOk_Click();
    ModMain::ResourceKind m_kind;
    std::unique_ptr<Ui::frmResourceName> ui;
};

namespace Manage {

// Shows the kind's detail dialog for id (-1 adds one); true when it saved.
bool EditResource(ModMain::ResourceKind kind, qint32 id, QWidget* parent);

} // namespace Manage
