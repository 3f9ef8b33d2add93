#pragma once
// The screens of the project wizard. Each is shown modally by New Project's
// loop and, when it closes, has moved the shared screen number or set the
// cancel flag.

#include "common/WizardPage.h"

#include <QTime>

class QCheckBox;
class QGridLayout;
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
};

// What the custom-days and custom-hours screens share: a title, an entry with
// Add, the list with Remove, and a Next that saves the list as a template in
// the project and returns to the screen that opened it.
class CustomTemplatePage : public WizardPage {
    Q_OBJECT
public:
    QLineEdit* txtTitle = nullptr;
    QPushButton* cmdAdd = nullptr;
    QPushButton* cmdRemove = nullptr;

protected:
    struct Texts {
        QString name, heading, intro;
        QString listName, listCaption;
        int minimum;          // entries Next asks for
        QString tooFew;       // when there are fewer
        QString noneSelected; // Remove with nothing selected
    };
    CustomTemplatePage(const Texts& texts, QWidget* parent);

    // Places the screen's own entry control beside Add.
    void setEntry(QWidget* entry, const QString& caption);
    QListWidget* list() const { return m_list; }
    // Saves the listed entries under the title.
    virtual void store(const QString& title) = 0;

    void cmdNext_Click() override;
    void cmdBack_Click() override;

private:
    void cmdRemove_Click();

    QListWidget* m_list = nullptr;
    QGridLayout* m_grid = nullptr;
    int m_minimum = 1;
    QString m_tooFew;
    QString m_noneSelected;
};

class frmScr_Project_CustomDOW : public CustomTemplatePage {
    Q_OBJECT
public:
    explicit frmScr_Project_CustomDOW(QWidget* parent = nullptr);
    QLineEdit* txtDay = nullptr;
    QListWidget* lstDays = nullptr;

protected:
    void store(const QString& title) override;
    // Enter in the day box adds the day rather than pressing Next.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void cmdAdd_Click();
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
    bool templateChosen() const;
};

class frmScr_Project_CustomHours : public CustomTemplatePage {
    Q_OBJECT
public:
    explicit frmScr_Project_CustomHours(QWidget* parent = nullptr);
    QComboBox* cboHour = nullptr;
    QListWidget* lstHour = nullptr;

protected:
    void store(const QString& title) override;

private:
    void cmdAdd_Click();
};

class frmScr_Project_Complete : public WizardPage {
    Q_OBJECT
public:
    explicit frmScr_Project_Complete(QWidget* parent = nullptr);
    QLabel* lblSummary = nullptr;

protected:
    void cmdNext_Click() override;
};
