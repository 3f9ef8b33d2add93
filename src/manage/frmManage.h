#pragma once
// "Manage": the project's tutors, classes, rooms and subjects, a page each,
// with Add, Edit and Delete. Tells its owner after every change, so the
// window's lists and grid show it at once.

#include "scheduling/Availability.h"

#include <QDialog>
#include <functional>
#include <memory>

class QListWidget;

namespace Ui {
class frmManage;
}

class frmManage : public QDialog {
    Q_OBJECT
public:
    // The pages, in the order of the tab strip.
    enum Page { Tutors = 0, Classes = 1, Rooms = 2, Subjects = 3 };

    explicit frmManage(std::function<void()> changed, QWidget* parent = nullptr);
    ~frmManage() override;

    void SelectTab(int page);

private:
    struct Kind {
        ModMain::ResourceKind kind;
        QListWidget* list;
        const char* question;
    };
    void RefreshList(const Kind& k, qint32 selectID = -1);
    void cmdAdd_Click(const Kind& k);
    void cmdEdit_Click(const Kind& k);
    void cmdDelete_Click(const Kind& k);
    void updateButtons();

    std::unique_ptr<Ui::frmManage> ui;
    std::function<void()> m_changed;
    QVector<Kind> m_kinds;
    int mintCurFrame = Tutors;
};
