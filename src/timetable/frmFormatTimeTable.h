#pragma once
// "Timetable Format": which axis carries the periods and which clock the
// period headings use, for the current timetable.

#include <QDialog>
#include <functional>

class QComboBox;
class QPushButton;

class frmFormatTimeTable : public QDialog {
    Q_OBJECT
public:
    // reload redraws the current timetable after OK has written the choice.
    explicit frmFormatTimeTable(std::function<void()> reload, QWidget* parent = nullptr);

    QComboBox* cboAxis = nullptr;
    QComboBox* cboTimeFormat = nullptr;
    QPushButton* cmdOk = nullptr;
    QPushButton* cmdCancel = nullptr;

private:
    void Form_Load();
    void cmdOk_Click();

    std::function<void()> m_reload;
};
