#pragma once
// "Open Timetable": every timetable, and every class, tutor and room still
// without one. Open shows the chosen timetable, or offers to create the
// missing one with the new-timetable wizard.

#include <QDialog>
#include <functional>

class FlexGrid;
class QPushButton;

class frmTableOpen : public QDialog {
    Q_OBJECT
public:
    struct Host {
        std::function<void(qint32)> loadTimetable;
        // Runs the new-timetable wizard for the owner of the type.
        std::function<void(const QString& type, qint32 ownerID)> createTimetable;
    };
    // currentTimetable's row is selected at the start.
    frmTableOpen(Host host, qint32 currentTimetable, QWidget* parent = nullptr);

    FlexGrid* grdTimetables = nullptr;
    QPushButton* cmdOk = nullptr;
    QPushButton* cmdCancel = nullptr;

private:
    void cmdOk_Click();
    Host m_host;
};
