#pragma once
// The screens of the new-timetable wizard. They only fill the shared wizard
// state; NewTimetableWizard drives them and the timetable is written after.

#include "common/WizardPage.h"

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

// The kind of timetable: a class's, a tutor's or a room's.
class frmScr_CreateTT_Type : public WizardPage {
    Q_OBJECT
public:
    explicit frmScr_CreateTT_Type(QWidget* parent = nullptr);
    QListWidget* lstType = nullptr;

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
