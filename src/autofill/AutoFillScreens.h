#pragma once
// The seven screens of the Auto Fill wizard. Each fills AutoFill::state()
// and moves its screen number; AutoFillWizard drives them.

#include "common/WizardPage.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QListWidget;

// The frame of every Auto Fill screen.
class AutoFillPage : public WizardPage {
    Q_OBJECT
public:
    AutoFillPage(const QString& name, const QString& heading, const QString& intro,
                 QWidget* parent);
};

class frmScr_AutoFill_Welcome : public AutoFillPage {
    Q_OBJECT
public:
    explicit frmScr_AutoFill_Welcome(QWidget* parent = nullptr);
    QCheckBox* chkDisplayNext = nullptr;

protected:
    void cmdNext_Click() override;
};

class frmScr_AutoFill_Timetable : public AutoFillPage {
    Q_OBJECT
public:
    explicit frmScr_AutoFill_Timetable(QWidget* parent = nullptr);
    QComboBox* cboWho = nullptr;

protected:
    void cmdNext_Click() override;
};

// " (fill 3 periods)" after the subject's name.
QString SubjectEntryText(const QString& name, qint32 periods);
// The number after " (fill " in an entry's text; 0 when there is none.
qint32 SubjectEntryPeriods(const QString& text);

class frmScr_AutoFill_Subjects : public AutoFillPage {
    Q_OBJECT
public:
    explicit frmScr_AutoFill_Subjects(QWidget* parent = nullptr);
    QComboBox* cboSubjects = nullptr;
    QComboBox* cboPeriods = nullptr;
    QListWidget* lstIncludeSubjects = nullptr;
    QLabel* lblPeriodsAvailable = nullptr;
    QLabel* lblPeriodsFilled = nullptr;

protected:
    void cmdNext_Click() override;

private:
    // Adds the chosen subject's periods; false when it was refused.
    bool cmdAdd_Click();
    void cmdAddAll_Click();
    void cmdRemove_Click();
    void setCounts(qint32 available, qint32 filled);
    qint32 available() const { return m_available; }
    qint32 filled() const { return m_filled; }
    // The counts shown, kept as numbers rather than read back from the labels.
    qint32 m_available = 0;
    qint32 m_filled = 0;
};

class frmScr_AutoFill_Tutors : public AutoFillPage {
    Q_OBJECT
public:
    explicit frmScr_AutoFill_Tutors(QWidget* parent = nullptr);
    QListWidget* lstTutors = nullptr;

protected:
    void cmdNext_Click() override;
};

class frmScr_AutoFill_Rooms : public AutoFillPage {
    Q_OBJECT
public:
    explicit frmScr_AutoFill_Rooms(QWidget* parent = nullptr);
    QListWidget* lstRooms = nullptr;

protected:
    void cmdNext_Click() override;
};

class frmScr_AutoFill_Method : public AutoFillPage {
    Q_OBJECT
public:
    explicit frmScr_AutoFill_Method(QWidget* parent = nullptr);
    QComboBox* cboMethod = nullptr;

protected:
    void cmdNext_Click() override;
};

class frmScr_AutoFill_Complete : public AutoFillPage {
    Q_OBJECT
public:
    explicit frmScr_AutoFill_Complete(QWidget* parent = nullptr);

protected:
    void cmdNext_Click() override;
};
