#pragma once
// The frame every wizard screen shares: a banner, a heading, a line that
// explains the step, the screen's own controls, and Back, Next and Cancel.
// The buttons move the wizard's shared screen number or set its cancel flag
// and close the screen; the loop that drives the wizard shows whatever comes
// next.

#include <QDialog>

class QLabel;
class QPushButton;
class QVBoxLayout;

class WizardPage : public QDialog {
    Q_OBJECT
public:
    // The state of the wizard a screen belongs to.
    struct Flow {
        qint16& screen;
        bool& cancel;
    };

    WizardPage(Flow flow, const QString& name, const QString& title, const QString& heading,
               const QString& intro, QWidget* parent = nullptr);

    QPushButton* cmdBack = nullptr;
    QPushButton* cmdNext = nullptr;
    QPushButton* cmdCancel = nullptr;

protected:
    // Where a screen puts its controls.
    QVBoxLayout* body() const { return m_body; }

    // Next, Back and Cancel; a screen overrides Next to check and store its input.
    virtual void cmdNext_Click();
    virtual void cmdBack_Click();
    void cmdCancel_Click();

    // Closes the screen after a button has set where the wizard goes.
    void finish();
    // Escape and the title bar's close button cancel the wizard like Cancel.
    void reject() override;

    Flow flow() const { return m_flow; }

private:
    Flow m_flow;
    QVBoxLayout* m_body = nullptr;
    bool m_finished = false;
};
