#pragma once
// The screens of the project wizard. Each is shown modally by New Project's
// loop and, when it closes, has moved the shared screen number or set the
// cancel flag.

#include "wizards/WizardPage.h"

#include <QTime>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;

class frmScr_Project_Welcome : public WizardPage {
    Q_OBJECT
public:
    explicit frmScr_Project_Welcome(QWidget* parent = nullptr);
    QCheckBox* chkDisplayNext = nullptr;

protected:
    void done(int result) override;
};

class frmScr_Project_DOW : public WizardPage {
    Q_OBJECT
public:
    explicit frmScr_Project_DOW(QWidget* parent = nullptr);
    QListWidget* lstDOW = nullptr;
    QPushButton* cmdCustom = nullptr;

protected:
    void cmdNext_Click() override;

private:
    void cmdCustom_Click();
};

class frmScr_Project_CustomDOW : public WizardPage {
    Q_OBJECT
public:
    explicit frmScr_Project_CustomDOW(QWidget* parent = nullptr);
    QLineEdit* txtTitle = nullptr;
    QLineEdit* txtDay = nullptr;
    QListWidget* lstDays = nullptr;
    QPushButton* cmdAdd = nullptr;
    QPushButton* cmdRemove = nullptr;

protected:
    void cmdNext_Click() override;
    void cmdBack_Click() override;
    // Enter in the day box adds the day rather than pressing Next.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void cmdAdd_Click();
    void cmdRemove_Click();
};

class frmScr_Project_Hours : public WizardPage {
    Q_OBJECT
public:
    explicit frmScr_Project_Hours(QWidget* parent = nullptr);
    QListWidget* lstHours = nullptr;
    QListWidget* lstInc = nullptr;
    QPushButton* cmdCustom = nullptr;

protected:
    void cmdNext_Click() override;

private:
    void cmdCustom_Click();
    bool templateChosen() const;
};

class frmScr_Project_CustomHours : public WizardPage {
    Q_OBJECT
public:
    explicit frmScr_Project_CustomHours(QWidget* parent = nullptr);
    QLineEdit* txtTitle = nullptr;
    QComboBox* cboHour = nullptr;
    QListWidget* lstHour = nullptr;
    QPushButton* cmdAdd = nullptr;
    QPushButton* cmdRemove = nullptr;

protected:
    void cmdNext_Click() override;
    void cmdBack_Click() override;

private:
    void cmdAdd_Click();
    void cmdRemove_Click();
};

class frmScr_Project_Complete : public WizardPage {
    Q_OBJECT
public:
    explicit frmScr_Project_Complete(QWidget* parent = nullptr);
    QLabel* lblSummary = nullptr;

protected:
    void cmdNext_Click() override;
};
