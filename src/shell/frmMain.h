#pragma once
// The main window: menus, toolbar, the timetable grid g, the four resource
// lists beside it, and the status bar. The work behind each command lives in
// its subsystem; this class is the frame and the wiring.

#include "scheduling/ListSelect.h"
#include "timetable/TimetableRecords.h"
#include "wizards/NewProject.h"

#include <QColor>
#include <QHash>
#include <QMainWindow>
#include <QPoint>
#include <QSet>
#include <functional>

class FlexGrid;
class UndoHistory;
class QLabel;
class QMimeData;
class QSplitter;
class QVBoxLayout;
class QLineEdit;
class QMenu;
class QToolBar;
class QToolButton;
class QWidget;

class frmMain : public QMainWindow, public ModMain::ProjectHost {
    Q_OBJECT
public:
    explicit frmMain(QWidget* parent = nullptr);
    ~frmMain() override;

    // Opens the project named on the command line, else the last one.
    void Form_Load(const QString& projectFile = QString());

    // Window states.
    void NoProject();
    void YesProject();
    void NoTimetable();
    // A tick or a typed name in a project open for reading only: says why
    // nothing happened.
    void readOnlyRefused();

    // After a successful open: project state, path, lists, first timetable;
    // a read-only project says so once, one without days and periods offers
    // to set them up.
    void ProjectOpened() override;
    void ShowProjectPath(const QString& path);

    // File menu.
    void mnuFileOpenProject_Click();
    void mnuFileSaveAs_Click();
    void mnuFileExit_Click();
    // New Project, and the help window.
    void mnuFileNewProject_Click();
    void mnuFileSetUpCalendar_Click();
    void mnuHelpContents_Click();
    void mnuHelpTips_Click();
    // Opens a fresh copy of the sample school (in the documents folder).
    void mnuHelpOpenSample_Click();
    // Closes the open project and opens the file; false, the user told why,
    // when it cannot be opened.
    bool OpenProjectFile(const QString& file);
    void mnuHelpAbout_Click();
    void mnuHelpGettingStarted_Click();

    // Edit menu: undo and redo the project's last steps, then show the
    // project as they left it.
    void mnuEditUndo_Click();
    void mnuEditRedo_Click();
    void ProjectChangedByHistory();
    UndoHistory& history() const { return *m_history; }

    // Dragging a lesson: tints the periods where the lesson in (row, col)
    // would clash and returns the drag's data (none for an empty cell);
    // EndLessonDrag takes the tints away and, when the grid took a drop,
    // moves the lesson there.
    QMimeData* BeginLessonDrag(int row, int col);
    void EndLessonDrag();

    // Runs the command of a toolbar button by its key.
    void ToolBar_ButtonClick(const QString& key);

    // Timetables: creating, deleting, showing and formatting them.
    // With askKind the wizard asks for the kind of timetable first.
    void DoNewTimeTableWizard(bool askKind = false);
    void mnuFileNew_Click();
    void mnuFileDelete_Click();
    void mnuFormatTimetable_Click();
    void mnuFormatSameSizeColumns_Click();
    void mnuFormatSameSizeRows_Click();
    void mnuFormatDefineLunchColumn_Click();
    // The period commands: confirm, then mark the selected cells.
    void mnuPeriodClear_Click();
    void mnuPeriodUnavailable_Click();
    void mnuPeriodLunch_Click();
    void mnuPeriodBreak_Click();
    void mnuToolsAskClashes_Click();
    // Auto Fill: the wizard (offering preferredTimetable first, -1: the
    // current class timetable) and the fill methods.
    void mnuToolsAutoFill_Click();
    void StartAutoFill(qint32 preferredTimetable);
    void mnuToolsFillMethods_Click();
    // Resources, the timetable list and the capacity report.
    void ShowManage(int page);
    void mnuViewTimetable_Click();
    void mnuToolsCapacityReport_Click();
    void mnuToolsConflicts_Click();
    void mnuFileImportResources_Click();
    void mnuFileExportResources_Click();
    // Print Preview, or the same on PDF from File > Export as PDF.
    void mnuFilePrintPreview_Click();
    void mnuFileExportPdf_Click();
    void ShowPrintPreview(int printTo);
    // After resources changed: the lists, the grid and the timetable names.
    void ResourcesChanged();
    // A list's context menu: edit the resource, or add one of its kind.
    void extendListMenu(QMenu& menu, ModMain::ResourceKind kind, qint32 id);
    // A click or a move in the timetable grid: the four lists for that cell.
    void FireGridClickEvent();
    void LoadTimetable(qint32 TimetableID);
    void RefreshTable();
    // Writes the row heights and column widths the user changed.
    void SaveTimetable() override;
    void RefreshToolbarTimetables();

    // A command by its control name ("mnuFileOpenProject", "tbNew"), for
    // tests that drive the window as a user would.
    QAction* command(const QString& name) const;

    // The menu commands and toolbar buttons.
    QAction* mnuFileNewProject = nullptr;
    QAction* mnuFileOpenProject = nullptr;
    QAction* mnuFileSaveAs = nullptr;
    QAction* mnuFileSetUpCalendar = nullptr;
    QAction* mnuFileNew = nullptr;
    QAction* mnuFileOpen = nullptr;
    QAction* mnuFileDelete = nullptr;
    QAction* mnuFilePrintPreview = nullptr;
    QAction* mnuFileExportPdf = nullptr;
    QAction* mnuFileImportResources = nullptr;
    QAction* mnuFileExportResources = nullptr;
    QAction* mnuFileExit = nullptr;
    QAction* mnuEditUndo = nullptr;
    QAction* mnuEditRedo = nullptr;
    QAction* mnuViewTimetable = nullptr;
    QAction* mnuFormatTimetable = nullptr;
    QAction* mnuFormatSameSizeColumns = nullptr;
    QAction* mnuFormatSameSizeRows = nullptr;
    QAction* mnuFormatDefineLunchColumn = nullptr;
    QAction* mnuToolsAutoFill = nullptr;
    QAction* mnuToolsFillMethods = nullptr;
    QAction* mnuToolsAskClashes = nullptr;
    QAction* mnuToolsManageTutors = nullptr;
    QAction* mnuToolsManageSubjects = nullptr;
    QAction* mnuToolsManageRooms = nullptr;
    QAction* mnuToolsManageClasses = nullptr;
    QAction* mnuToolsCapacityReport = nullptr;
    QAction* mnuToolsConflicts = nullptr;
    QAction* mnuPeriodClear = nullptr;
    QAction* mnuPeriodUnavailable = nullptr;
    QAction* mnuPeriodLunch = nullptr;
    QAction* mnuPeriodBreak = nullptr;
    QAction* mnuHelpContents = nullptr;
    QAction* mnuHelpGettingStarted = nullptr;
    QAction* mnuHelpTips = nullptr;
    QAction* mnuHelpOpenSample = nullptr;
    QAction* mnuHelpAbout = nullptr;
    QAction* tbNew = nullptr;
    QAction* tbView = nullptr;
    QAction* tbAutoFill = nullptr;
    QAction* tbBlank = nullptr;
    QAction* tbLunch = nullptr;
    QAction* tbBreak = nullptr;
    QAction* tbUnavailable = nullptr;
    QAction* tbManage = nullptr;
    QAction* tbUndo = nullptr;
    QAction* tbRedo = nullptr;

    FlexGrid* g = nullptr;
    FlexGrid* gTutor = nullptr;
    FlexGrid* gSubject = nullptr;
    FlexGrid* gRoom = nullptr;
    FlexGrid* gClass = nullptr;
    QLineEdit* txtTutorName = nullptr;
    QLineEdit* txtSubjectName = nullptr;
    QLineEdit* txtRoomName = nullptr;

protected:
    void closeEvent(QCloseEvent* event) override;

    // What New Project tells the window.
    QWidget* HostWindow() override { return this; }
    void ProjectClosed() override { NoProject(); }
    void StartNewTimetable() override;

private:
    void buildMenus();
    void buildToolbar();
    void buildCentral();
    void wireCommands();
    void Form_Unload();
    // The window's size and place and the splitter, kept between runs.
    void restoreWindowPlace();
    void saveWindowPlace() const;

    // Whether a command changes the project, and so is off while it is read-only.
    enum class Writes { No, Yes };
    QAction* addCommand(QMenu* menu, const char* name, const QString& caption, Writes writes,
                        const QKeySequence& shortcut = QKeySequence());
    void on(QAction* action, void (frmMain::*handler)());
    void on(QAction* action, const std::function<void()>& handler);
    void setEnabled(QAction* action, bool enabled);
    void setMenuEnabled(QMenu* menu, bool enabled);
    void setToolbarEnabled(bool enabled);
    // The toolbar's drop-down of timetables.
    void buildTimetableList();
    // The empty grid and no current timetable.
    void clearTimetable();
    // Refreshes the timetable list and shows the project's first timetable.
    void showFirstTimetable();
    void showResourceLists(const QString& type);
    // The lists, name boxes and grid events of hand scheduling.
    void wireScheduling();
    // step names it in the Edit menu ("Mark Lunch").
    void markPeriods(const QString& question, qint16 code, const QString& step);
    ModMain::SchedulingView schedulingView() const;
    bool eventFilter(QObject* watched, QEvent* event) override;
    // Above zero while the program moves the grid's current cell itself, so
    // the lists are not refreshed for every cell it passes.
    int m_quietGrid = 0;
    struct QuietGrid {
        explicit QuietGrid(frmMain& w) : n(w.m_quietGrid) { ++n; }
        ~QuietGrid() { --n; }
        int& n;
    };
    // The title bar: the program's name, what is shown, and a read-only mark.
    void setCaption(const QString& shown = QString());
    // Whether the open project lacks days and periods (and so timetables).
    bool needsCalendar() const;

    QSet<QAction*> m_writing;
    QHash<QAction*, QAction*> m_buttonTargets; // toolbar button -> menu command
    void updateHistoryCommands();
    // The grid's mouse and drag-and-drop events of a lesson drag.
    bool lessonDragEvent(QEvent* event);
    void startLessonDrag(int row, int col);
    struct LessonDrag {
        int row = -1, col = -1;
        int dropRow = -1, dropCol = -1; // where it was dropped, moved when the drag ends
        qint32 timetable = 0;
        QHash<QPair<int, int>, QColor> tinted; // cell -> its colour before
    };
    LessonDrag m_drag;
    QPoint m_pressed{-1, -1}; // where a press on the selected cell began

    UndoHistory* m_history = nullptr;
    QMenu* mnuFile = nullptr;
    QMenu* mnuEdit = nullptr;
    QMenu* mnuView = nullptr;
    QMenu* mnuFormat = nullptr;
    QMenu* mnuTools = nullptr;
    QMenu* mnuPeriod = nullptr;
    QMenu* mnuHelp = nullptr;
    QToolBar* m_toolbar = nullptr;
    QToolButton* tbTimetables = nullptr;
    QVector<ModMain::TimetableEntry> m_menuTimetables; // what the list's menu holds
    QLabel* m_statusPath = nullptr;
    QSplitter* m_splitter = nullptr;
    QVBoxLayout* m_listLayout = nullptr;
    bool m_unloaded = false;
};
