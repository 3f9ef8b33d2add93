#pragma once
// "Print Preview": the chosen timetables laid out on pages, previewed, and
// sent to the printer, to one HTML page or to a PDF file.

#include "print/TimetablePrinting.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QPrintPreviewWidget;
class QPrinter;
class QPushButton;
class QToolButton;

class frmPrintPreview : public QDialog {
    Q_OBJECT
public:
    // currentTimetable is the one "Current timetable" prints.
    frmPrintPreview(qint32 currentTimetable, QWidget* parent = nullptr);

    QComboBox* cboLayout = nullptr;
    QComboBox* cboOrientation = nullptr;
    QComboBox* cboToPrint = nullptr;
    QComboBox* cboPrintTo = nullptr;
    QCheckBox* chkShowGuides = nullptr;
    QLineEdit* txtColumnWidth = nullptr;
    QLineEdit* txtRowHeight = nullptr;
    QToolButton* updownColumnWidthUp = nullptr;
    QToolButton* updownColumnWidthDown = nullptr;
    QToolButton* updownRowHeightUp = nullptr;
    QToolButton* updownRowHeightDown = nullptr;
    QPushButton* cmdPrint = nullptr;
    QPushButton* cmdCancel = nullptr;
    QPrintPreviewWidget* preview = nullptr;

    // The "Print to:" entries.
    enum Target { ToPrinter = 0, ToHtml = 1, ToPdf = 2 };

    // Lays out the chosen timetables again and refreshes the preview.
    void DoPrintPreview();
    // How many times the layout was made (the preview's own repaints aside).
    int layouts() const { return m_layouts; }
    const QVector<ModMain::PrintedTimetable>& tables() const { return m_tables; }
    Print::PageOptions options() const;

private:
    void cboLayout_Click();
    void cmdPrint_Click();
    void paintPreview(QPrinter* printer);
    void step(QLineEdit* box, int by);

    qint32 m_current;
    int m_days = 5;
    int m_layouts = 0;
    QVector<ModMain::PrintedTimetable> m_tables;
};
