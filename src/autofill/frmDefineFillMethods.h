#pragma once
// "Fill Methods": the list of fill methods the user keeps, with Add, Edit and
// Remove. The built-in method is never listed.

#include <QDialog>
#include <memory>

namespace Ui {
class frmDefineFillMethods;
}

class frmDefineFillMethods : public QDialog {
    Q_OBJECT
public:
    explicit frmDefineFillMethods(QWidget* parent = nullptr);
    ~frmDefineFillMethods() override;

private:
    // Lists the methods, selecting SelectID unless it is -1.
    void RefreshList(qint32 SelectID);
    // The selected method's id, or -1 after telling the user to pick one.
    qint32 selectedMethod();
    void cmdAdd_Click();
    void cmdEdit_Click();
    void cmdRemove_Click();

    std::unique_ptr<Ui::frmDefineFillMethods> ui;
};
