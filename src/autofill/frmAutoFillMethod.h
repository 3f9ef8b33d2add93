#pragma once
// "Method Details": the name of one fill method and its four sliders, each
// between keeping its kind together and spreading it apart.

#include <QDialog>
#include <memory>

namespace Ui {
class frmAutoFillMethod;
}

class frmAutoFillMethod : public QDialog {
    Q_OBJECT
public:
    // Edits the method AutoFill::state().giMethodEditID names; -1 adds one.
    explicit frmAutoFillMethod(QWidget* parent = nullptr);
    ~frmAutoFillMethod() override;

private:
    void cmdOK_Click();

    std::unique_ptr<Ui::frmAutoFillMethod> ui;
};
