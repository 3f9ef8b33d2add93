#pragma once
// "Capacity Report": how many periods each tutor teaches, over every
// timetable of the project.

#include <QDialog>

class FlexGrid;

class frmCapacityReport : public QDialog {
    Q_OBJECT
public:
    explicit frmCapacityReport(QWidget* parent = nullptr);
    FlexGrid* grdCapacity = nullptr;
};
