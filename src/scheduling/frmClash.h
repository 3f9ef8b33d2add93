#pragma once
// "Period Clash": asks whether a tutor or room that is elsewhere at this
// time may be booked here anyway. It answers through the clash flags.

#include <QDialog>
#include <memory>

namespace Ui {
class frmClash;
}

class frmClash : public QDialog {
    Q_OBJECT
public:
    explicit frmClash(QWidget* parent = nullptr);
    ~frmClash() override;

    void setMessage(const QString& text);
    void setAllowFutureClashes(bool allow);

private:
    void cmdYes_Click();
    void cmdNo_Click();
    void cmdDetails_Click();
    // Escape and the title bar's close answer No.
    void reject() override;

    std::unique_ptr<Ui::frmClash> ui;
};
