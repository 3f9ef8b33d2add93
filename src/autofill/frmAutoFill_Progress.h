#pragma once
// "Auto Fill Progress": runs one fill while an animation plays and a bar
// counts the passes. Cancel stops the fill at its next pause and takes back
// all it wrote; the window stays open until the fill has stopped writing.

#include "autofill/AutoFillEngine.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QTimer>
#include <functional>

class FillAnimation;
class QLabel;
class QProgressBar;
class QPushButton;

class frmAutoFill_Progress : public QDialog, public ModMain::FillProgress {
    Q_OBJECT
public:
    // loadTimetable shows the filled timetable when the fill has run.
    explicit frmAutoFill_Progress(std::function<void(qint32)> loadTimetable,
                                  QWidget* parent = nullptr);

    QTimer* tmrStart = nullptr;
    QProgressBar* ProgressBar1 = nullptr;
    FillAnimation* Animation1 = nullptr;
    QPushButton* cmdCancel = nullptr;
    QLabel* Label2 = nullptr;
    QLabel* Picture1 = nullptr;

    // How the last run ended.
    ModMain::FillOutcome outcome() const { return m_outcome; }

    void setMaximum(int maximum) override;
    void setValue(int value) override;
    bool yield() override;

protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void reject() override;

private:
    void PlayAnimation();
    void tmrStart_Timer();
    void cmdCancel_Click();

    std::function<void(qint32)> m_loadTimetable;
    bool m_running = false;
    bool m_cancelRequested = false;
    ModMain::FillOutcome m_outcome = ModMain::FillOutcome::Failed;
    QElapsedTimer m_sinceYield;
};
