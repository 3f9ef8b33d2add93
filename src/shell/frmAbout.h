#pragma once
// "About Vantor Planner": the program's name and version, the versions of
// the libraries it runs on, and the system information a support person
// asks for.

#include <QDialog>

class frmAbout : public QDialog {
    Q_OBJECT
public:
    explicit frmAbout(QWidget* parent = nullptr);

    // The operating system, the display, the program's folders and files and
    // the open project, as text to copy; empty when none can be gathered.
    static QString SystemInformation();
    // Shows the system information, or says it is unavailable.
    void StartSysInfo();
};

// The window shown while the program starts: closed by a key, a click or
// its timer.
class frmSplash : public QDialog {
    Q_OBJECT
public:
    explicit frmSplash(QWidget* parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
};
