#pragma once
// The screens of the new-timetable wizard. They only fill the shared wizard
// state; NewTimetableWizard drives them and the timetable is written after.

#include "wizards/WizardPage.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;

class frmScr_CreateTT_Welcome : public WizardPage {
    Q_OBJECT
public:
    explicit frmScr_CreateTT_Welcome(QWidget* parent = nullptr);
    QCheckBox* chkDisplayNext = nullptr;

protected:
    void cmdNext_Click() override;
};

// Not shown: the caller chooses the type before the wizard starts.
class frmScr_CreateTT_Type : public WizardPage {
    Q_OBJECT
public:
    explicit frmScr_CreateTT_Type(QWidget* parent = nullptr);
    QComboBox* cboType = nullptr;

protected:
    void cmdNext_Click() override;
};

class frmScr_CreateTT_Who : public WizardPage {
    Q_OBJECT
public:
    explicit frmScr_CreateTT_Who(QWidget* parent = nullptr);
    QComboBox* cboWho = nullptr;
    QLineEdit* txtWho = nullptr;

protected:
    void cmdNext_Click() override;

private:
    void cboWho_Click();
    // The id of the chosen or typed resource; 0 when the screen must stay.
    qint32 chosenID();
    QLabel* lblWho = nullptr;
};

class frmScr_CreateTT_Style : public WizardPage {
    Q_OBJECT
public:
    explicit frmScr_CreateTT_Style(QWidget* parent = nullptr);
    QListWidget* lstStyle = nullptr;

protected:
    void cmdNext_Click() override;
};

class frmScr_CreateTT_Complete : public WizardPage {
    Q_OBJECT
public:
    explicit frmScr_CreateTT_Complete(QWidget* parent = nullptr);
};

// A timetable always takes the project's days and periods, so these screens
// are never reached; they exist as the empty dialogs the wizard's design names.
class frmScr_CreateTT_Hours : public QDialog {
    Q_OBJECT
public:
    explicit frmScr_CreateTT_Hours(QWidget* parent = nullptr);
};
class frmScr_CreateTT_DOW : public QDialog {
    Q_OBJECT
public:
    explicit frmScr_CreateTT_DOW(QWidget* parent = nullptr);
};
class frmScr_CreateTT_CustomHours : public QDialog {
    Q_OBJECT
public:
    explicit frmScr_CreateTT_CustomHours(QWidget* parent = nullptr);
};
class frmScr_CreateTT_CustomDOW : public QDialog {
    Q_OBJECT
public:
    explicit frmScr_CreateTT_CustomDOW(QWidget* parent = nullptr);
};
