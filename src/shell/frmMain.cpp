#include "shell/frmMain.h"

#include "manage/frmManage.h"

#include "common/Common.h"
#include "common/ErrorHandler.h"
#include "common/FileDialogs.h"
#include "common/FlexGrid.h"
#include "common/Icons.h"
#include "common/Settings.h"
#include "common/VariableDump.h"
#include "shell/CrashReport.h"
#include "shell/UndoHistory.h"
#include "store/ModMain.h"
#include "store/Project.h"
#include "timetable/TimetableGrid.h"
#include "timetable/TimetableRecords.h"
#include "timetable/TimetableState.h"

#include <QAction>
#include <QCloseEvent>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QSplitter>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

using Common::MsgBox;
using Common::MsgButtons;
using Common::MsgIcon;
using Common::MsgResult;

namespace {
// The toolbar: its button, key, caption, tooltip and the menu command it runs.
struct ToolbarButton {
    QAction* frmMain::*button;
    const char* key;
    const char* caption;
    const char* tooltip;
    QAction* frmMain::*command;
};
const ToolbarButton kToolbarButtons[] = {
    {&frmMain::tbNew, "New", "New Table", "Create a new timetable", &frmMain::mnuFileNew},
    {&frmMain::tbView, "View", "View Table", "View an existing timetable",
     &frmMain::mnuViewTimetable},
    {&frmMain::tbAutoFill, "AutoFill", "Auto Fill", "Automatically populate a timetable",
     &frmMain::mnuToolsAutoFill},
    {&frmMain::tbBlank, "Blank", "Clear", "Clear period", &frmMain::mnuPeriodClear},
    {&frmMain::tbLunch, "Lunch", "Lunch", "Set period as a lunch break", &frmMain::mnuPeriodLunch},
    {&frmMain::tbBreak, "Break", "Break", "Set period as a break", &frmMain::mnuPeriodBreak},
    {&frmMain::tbUnavailable, "Unavailable", "Unavailable", "Set period as unavailable",
     &frmMain::mnuPeriodUnavailable},
    {&frmMain::tbManage, "Manage", "Manage", "Manage tutors, rooms, classes and subjects",
     &frmMain::mnuToolsManageTutors},
    {&frmMain::tbUndo, "Undo", "Undo", "Undo the last change", &frmMain::mnuEditUndo},
    {&frmMain::tbRedo, "Redo", "Redo", "Redo the change last undone", &frmMain::mnuEditRedo},
};

FlexGrid* makeResourceList(const QString& name, const QString& word, QWidget* parent) {
    auto* list = new FlexGrid(parent);
    list->setObjectName(name);
    list->setCols(3);
    list->setRows(1);
    list->setTextMatrix(0, 1, QStringLiteral("Sel"));
    list->setTextMatrix(0, 0, QStringLiteral("Status"));
    list->setTextMatrix(0, 2, word);
    list->setColWidthTwips(0, 900);
    list->setColWidthTwips(1, 480);
    list->horizontalHeader()->setStretchLastSection(true);
    list->setSelectionMode(QAbstractItemView::SingleSelection);
    list->setSelectionBehavior(QAbstractItemView::SelectRows);
    list->verticalHeader()->setDefaultSectionSize(22);
    // Tab leaves the list for the next control rather than walking its cells.
    list->setTabKeyNavigation(false);
    return list;
}

// What every error report should say about where the user was.
void writeGlobalVariables(VariableDump& dump) {
    const Timetable::State& shown = Timetable::current();
    dump.global(QStringLiteral("ProjectFile"), ModMain::DB().GetDBFilename())
        .global(QStringLiteral("TimetableID"), int(shown.ID))
        .global(QStringLiteral("TimetableTitle"), shown.Title);
}
} // namespace

frmMain::frmMain(QWidget* parent) : QMainWindow(parent) {
    setObjectName(QStringLiteral("frmMain"));
    SetGlobalVariablesWriter(writeGlobalVariables);
    m_history = new UndoHistory(this);
    connect(m_history, &UndoHistory::stateChanged, this, &frmMain::updateHistoryCommands);
    connect(m_history, &UndoHistory::projectChanged, this, &frmMain::ProjectChangedByHistory);
    setWindowTitle(Common::AppTitle());
    setWindowIcon(Icons::App());
    buildMenus();
    buildToolbar();
    buildTimetableList();
    buildCentral();
    wireCommands();
    resize(1180, 760);
    restoreWindowPlace();
}

namespace {
QString windowSetting(const char* key) {
    return Common::GetSetting(QString::fromLatin1(Common::kConfigApp), QStringLiteral("Window"),
                              QString::fromLatin1(key));
}
void saveWindowSetting(const char* key, const QByteArray& state) {
    Common::SaveSetting(QString::fromLatin1(Common::kConfigApp), QStringLiteral("Window"),
                        QString::fromLatin1(key), QString::fromLatin1(state.toBase64()));
}
} // namespace

void frmMain::restoreWindowPlace() {
    // Where the window was, maximised or not, and where the lists began.
    restoreGeometry(QByteArray::fromBase64(windowSetting("Geometry").toLatin1()));
    m_splitter->restoreState(QByteArray::fromBase64(windowSetting("Splitter").toLatin1()));
}

void frmMain::saveWindowPlace() const {
    saveWindowSetting("Geometry", saveGeometry());
    saveWindowSetting("Splitter", m_splitter->saveState());
}

frmMain::~frmMain() {
    // The history goes with the window's children, after its commands.
    disconnect(m_history, nullptr, this, nullptr);
}

QAction* frmMain::addCommand(QMenu* menu, const char* name, const QString& caption, Writes writes,
                             const QKeySequence& shortcut) {
    auto* action = new QAction(caption, this);
    action->setObjectName(QString::fromLatin1(name));
    if (!shortcut.isEmpty())
        action->setShortcut(shortcut);
    menu->addAction(action);
    if (writes == Writes::Yes)
        m_writing.insert(action);
    return action;
}

void frmMain::buildMenus() {
    mnuFile = menuBar()->addMenu(QStringLiteral("&File"));
    mnuFile->setObjectName(QStringLiteral("mnuFile"));
    mnuFileNewProject = addCommand(mnuFile, "mnuFileNewProject", QStringLiteral("New &Project..."),
                                   Writes::No, QKeySequence(QStringLiteral("Ctrl+Shift+N")));
    mnuFileOpenProject =
        addCommand(mnuFile, "mnuFileOpenProject", QStringLiteral("&Open Project..."), Writes::No,
                   QKeySequence::Open);
    // Spelt out: the standard Save As key is empty on some desktops.
    mnuFileSaveAs = addCommand(mnuFile, "mnuFileSaveAs", QStringLiteral("Save Project &As..."),
                               Writes::No, QKeySequence(QStringLiteral("Ctrl+Shift+S")));
    mnuFileSetUpCalendar = addCommand(mnuFile, "mnuFileSetUpCalendar",
                                      QStringLiteral("Set Up &Days and Periods..."), Writes::Yes);
    mnuFile->addSeparator();
    mnuFileNew = addCommand(mnuFile, "mnuFileNew", QStringLiteral("&New Timetable..."), Writes::Yes,
                            QKeySequence::New);
    mnuFileOpen =
        addCommand(mnuFile, "mnuFileOpen", QStringLiteral("Open &Timetable..."), Writes::No);
    mnuFileDelete =
        addCommand(mnuFile, "mnuFileDelete", QStringLiteral("&Delete Timetable"), Writes::Yes);
    mnuFile->addSeparator();
    mnuFilePrintPreview =
        addCommand(mnuFile, "mnuFilePrintPreview", QStringLiteral("Print Pre&view..."), Writes::No,
                   QKeySequence::Print);
    mnuFileExportPdf =
        addCommand(mnuFile, "mnuFileExportPdf", QStringLiteral("Export as PD&F..."), Writes::No);
    mnuFile->addSeparator();
    mnuFileImportResources = addCommand(mnuFile, "mnuFileImportResources",
                                        QStringLiteral("&Import Resources..."), Writes::Yes);
    mnuFileExportResources = addCommand(mnuFile, "mnuFileExportResources",
                                        QStringLiteral("Export &Resources..."), Writes::No);
    mnuFile->addSeparator();
    mnuFileExit = addCommand(mnuFile, "mnuFileExit", QStringLiteral("E&xit"), Writes::No,
                             QKeySequence(QStringLiteral("Ctrl+Q")));

    mnuEdit = menuBar()->addMenu(QStringLiteral("&Edit"));
    mnuEdit->setObjectName(QStringLiteral("mnuEdit"));
    mnuEditUndo =
        addCommand(mnuEdit, "mnuEditUndo", QStringLiteral("Undo"), Writes::Yes, QKeySequence::Undo);
    mnuEditRedo = addCommand(mnuEdit, "mnuEditRedo", QStringLiteral("Redo"), Writes::Yes);
    mnuEditRedo->setShortcuts(
        {QKeySequence(QStringLiteral("Ctrl+Shift+Z")), QKeySequence(QStringLiteral("Ctrl+Y"))});

    mnuView = menuBar()->addMenu(QStringLiteral("&View"));
    mnuView->setObjectName(QStringLiteral("mnuView"));
    mnuViewTimetable =
        addCommand(mnuView, "mnuViewTimetable", QStringLiteral("&Timetables..."), Writes::No);

    mnuFormat = menuBar()->addMenu(QStringLiteral("F&ormat"));
    mnuFormat->setObjectName(QStringLiteral("mnuFormat"));
    mnuFormatTimetable = addCommand(mnuFormat, "mnuFormatTimetable",
                                    QStringLiteral("&Timetable Format..."), Writes::Yes);
    mnuFormat->addSeparator();
    mnuFormatSameSizeColumns = addCommand(mnuFormat, "mnuFormatSameSizeColumns",
                                          QStringLiteral("Same Size &Columns"), Writes::Yes);
    mnuFormatSameSizeRows = addCommand(mnuFormat, "mnuFormatSameSizeRows",
                                       QStringLiteral("Same Size &Rows"), Writes::Yes);
    mnuFormat->addSeparator();
    mnuFormatDefineLunchColumn =
        addCommand(mnuFormat, "mnuFormatDefineLunchColumn",
                   QStringLiteral("Define/Remove  &Lunch..."), Writes::Yes);

    mnuTools = menuBar()->addMenu(QStringLiteral("&Tools"));
    mnuTools->setObjectName(QStringLiteral("mnuTools"));
    mnuToolsAutoFill =
        addCommand(mnuTools, "mnuToolsAutoFill", QStringLiteral("&Auto Fill..."), Writes::Yes);
    mnuToolsFillMethods = addCommand(mnuTools, "mnuToolsFillMethods",
                                     QStringLiteral("Fill &Methods..."), Writes::Yes);
    mnuToolsAskClashes = addCommand(mnuTools, "mnuToolsAskClashes",
                                    QStringLiteral("Ask Before Allowing &Clashes"), Writes::No);
    mnuToolsAskClashes->setCheckable(true);
    mnuTools->addSeparator();
    mnuToolsManageTutors = addCommand(mnuTools, "mnuToolsManageTutors",
                                      QStringLiteral("Manage &Tutors..."), Writes::Yes);
    mnuToolsManageSubjects = addCommand(mnuTools, "mnuToolsManageSubjects",
                                        QStringLiteral("Manage &Subjects..."), Writes::Yes);
    mnuToolsManageRooms = addCommand(mnuTools, "mnuToolsManageRooms",
                                     QStringLiteral("Manage &Rooms..."), Writes::Yes);
    mnuToolsManageClasses = addCommand(mnuTools, "mnuToolsManageClasses",
                                       QStringLiteral("Manage &Classes..."), Writes::Yes);
    mnuTools->addSeparator();
    mnuToolsCapacityReport = addCommand(mnuTools, "mnuToolsCapacityReport",
                                        QStringLiteral("Tutor Ca&pacity Report..."), Writes::No);
    mnuToolsConflicts =
        addCommand(mnuTools, "mnuToolsConflicts", QStringLiteral("Con&flicts..."), Writes::No);

    mnuPeriod = menuBar()->addMenu(QStringLiteral("&Period"));
    mnuPeriod->setObjectName(QStringLiteral("mnuPeriod"));
    mnuPeriodClear = addCommand(mnuPeriod, "mnuPeriodClear", QStringLiteral("&Clear"), Writes::Yes);
    mnuPeriodUnavailable =
        addCommand(mnuPeriod, "mnuPeriodUnavailable", QStringLiteral("&Unavailable"), Writes::Yes);
    mnuPeriodLunch = addCommand(mnuPeriod, "mnuPeriodLunch", QStringLiteral("&Lunch"), Writes::Yes);
    mnuPeriodBreak = addCommand(mnuPeriod, "mnuPeriodBreak", QStringLiteral("&Break"), Writes::Yes);

    mnuHelp = menuBar()->addMenu(QStringLiteral("&Help"));
    mnuHelp->setObjectName(QStringLiteral("mnuHelp"));
    mnuHelpContents = addCommand(mnuHelp, "mnuHelpContents", QStringLiteral("&Contents"),
                                 Writes::No, QKeySequence::HelpContents);
    mnuHelpGettingStarted = addCommand(mnuHelp, "mnuHelpGettingStarted",
                                       QStringLiteral("&Getting Started Tutorial"), Writes::No);
    mnuHelpTips =
        addCommand(mnuHelp, "mnuHelpTips", QStringLiteral("&Tip of the Day..."), Writes::No);
    mnuHelpOpenSample =
        addCommand(mnuHelp, "mnuHelpOpenSample", QStringLiteral("Open &Sample School"), Writes::No);
    mnuHelp->addSeparator();
    mnuHelpAbout =
        addCommand(mnuHelp, "mnuHelpAbout", QStringLiteral("&About Vantor Planner..."), Writes::No);
}

void frmMain::buildToolbar() {
    m_toolbar = addToolBar(QStringLiteral("Toolbar"));
    m_toolbar->setObjectName(QStringLiteral("ToolBar"));
    m_toolbar->setMovable(false);
    m_toolbar->setIconSize(QSize(32, 32));
    m_toolbar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    for (const ToolbarButton& b : kToolbarButtons) {
        const QString key = QString::fromLatin1(b.key);
        auto* action = new QAction(Icons::Toolbar(key), QString::fromLatin1(b.caption), this);
        action->setObjectName(QStringLiteral("tb") + key);
        action->setToolTip(QString::fromLatin1(b.tooltip));
        action->setData(key);
        action->setEnabled(false);
        connect(action, &QAction::triggered, this, [this, key] { ToolBar_ButtonClick(key); });
        m_toolbar->addAction(action);
        if (key == QLatin1String("View") || key == QLatin1String("Unavailable") ||
            key == QLatin1String("Manage"))
            m_toolbar->addSeparator();
        this->*b.button = action;
        m_buttonTargets.insert(action, this->*b.command);
    }
}

void frmMain::buildCentral() {
    auto* splitter = m_splitter = new QSplitter(Qt::Horizontal, this);
    splitter->setObjectName(QStringLiteral("splitMain"));
    splitter->setChildrenCollapsible(false);

    g = new FlexGrid(splitter);
    g->setObjectName(QStringLiteral("g"));
    g->setMinimumWidth(320);
    g->setShareSpareRoom(true);
    ModMain::UseCentredCellText(*g);
    splitter->addWidget(g);

    auto* side = new QWidget(splitter);
    side->setObjectName(QStringLiteral("picLists"));
    side->setMinimumWidth(220);
    auto* layout = m_listLayout = new QVBoxLayout(side);
    layout->setContentsMargins(4, 0, 0, 0);
    layout->setSpacing(2);
    const struct {
        FlexGrid** list;
        const char* name;
        const char* word;
        const char* heading;
    } lists[] = {{&gTutor, "gTutor", "Tutor", "Tutors"},
                 {&gSubject, "gSubject", "Subject", "Subjects"},
                 {&gRoom, "gRoom", "Room", "Rooms"},
                 {&gClass, "gClass", "Class", "Classes"}};
    for (const auto& l : lists) {
        auto* label =
            new QLabel(QStringLiteral("<b>%1</b>").arg(QString::fromLatin1(l.heading)), side);
        label->setObjectName(QStringLiteral("lbl") + QString::fromLatin1(l.name).mid(1));
        *l.list = makeResourceList(QString::fromLatin1(l.name), QString::fromLatin1(l.word), side);
        label->setBuddy(*l.list);
        auto* head = new QHBoxLayout;
        head->setSpacing(6);
        head->addWidget(label);
        // Classes have no name box: a class is made with its timetable.
        if (QLatin1String(l.word) != QLatin1String("Class")) {
            auto* box = new QLineEdit(side);
            box->setObjectName(QStringLiteral("txt%1Name").arg(QString::fromLatin1(l.word)));
            box->setPlaceholderText(
                QStringLiteral("Type a %1 to add...").arg(QString::fromLatin1(l.word).toLower()));
            box->setClearButtonEnabled(true);
            head->addWidget(box, 1);
        }
        layout->addLayout(head);
        layout->addWidget(*l.list, 1);
    }
    splitter->addWidget(side);
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({860, 300});
    setCentralWidget(splitter);

    m_statusPath = new QLabel(this);
    m_statusPath->setObjectName(QStringLiteral("sbPath"));
    m_statusPath->setTextInteractionFlags(Qt::TextSelectableByMouse);
    statusBar()->addWidget(m_statusPath, 1);
}

void frmMain::wireCommands() {
    on(mnuFileOpenProject, &frmMain::mnuFileOpenProject_Click);
    on(mnuFileExit, &frmMain::mnuFileExit_Click);
    on(mnuFileSaveAs, &frmMain::mnuFileSaveAs_Click);
    on(mnuEditUndo, &frmMain::mnuEditUndo_Click);
    on(mnuEditRedo, &frmMain::mnuEditRedo_Click);
    on(mnuFileNewProject, &frmMain::mnuFileNewProject_Click);
    on(mnuFileSetUpCalendar, &frmMain::mnuFileSetUpCalendar_Click);
    on(mnuHelpContents, &frmMain::mnuHelpContents_Click);
    on(mnuHelpGettingStarted, &frmMain::mnuHelpGettingStarted_Click);
    on(mnuHelpTips, &frmMain::mnuHelpTips_Click);
    on(mnuHelpOpenSample, &frmMain::mnuHelpOpenSample_Click);
    on(mnuHelpAbout, &frmMain::mnuHelpAbout_Click);
    on(mnuFileNew, &frmMain::mnuFileNew_Click);
    on(mnuFileDelete, &frmMain::mnuFileDelete_Click);
    on(mnuFormatTimetable, &frmMain::mnuFormatTimetable_Click);
    on(mnuFormatSameSizeColumns, &frmMain::mnuFormatSameSizeColumns_Click);
    on(mnuFormatSameSizeRows, &frmMain::mnuFormatSameSizeRows_Click);
    on(mnuFormatDefineLunchColumn, &frmMain::mnuFormatDefineLunchColumn_Click);
    on(mnuPeriodClear, &frmMain::mnuPeriodClear_Click);
    on(mnuPeriodUnavailable, &frmMain::mnuPeriodUnavailable_Click);
    on(mnuPeriodLunch, &frmMain::mnuPeriodLunch_Click);
    on(mnuPeriodBreak, &frmMain::mnuPeriodBreak_Click);
    on(mnuToolsAskClashes, &frmMain::mnuToolsAskClashes_Click);
    on(mnuToolsAutoFill, &frmMain::mnuToolsAutoFill_Click);
    on(mnuToolsFillMethods, &frmMain::mnuToolsFillMethods_Click);
    on(mnuToolsManageTutors, [this] { ShowManage(frmManage::Tutors); });
    on(mnuToolsManageClasses, [this] { ShowManage(frmManage::Classes); });
    on(mnuToolsManageRooms, [this] { ShowManage(frmManage::Rooms); });
    on(mnuToolsManageSubjects, [this] { ShowManage(frmManage::Subjects); });
    on(mnuViewTimetable, &frmMain::mnuViewTimetable_Click);
    on(mnuFileOpen, &frmMain::mnuViewTimetable_Click);
    on(mnuToolsCapacityReport, &frmMain::mnuToolsCapacityReport_Click);
    on(mnuToolsConflicts, &frmMain::mnuToolsConflicts_Click);
    on(mnuFileImportResources, &frmMain::mnuFileImportResources_Click);
    on(mnuFilePrintPreview, &frmMain::mnuFilePrintPreview_Click);
    on(mnuFileExportPdf, &frmMain::mnuFileExportPdf_Click);
    on(mnuFileExportResources, &frmMain::mnuFileExportResources_Click);
    wireScheduling();
}

void frmMain::on(QAction* action, void (frmMain::*handler)()) {
    connect(action, &QAction::triggered, this, handler);
}

void frmMain::on(QAction* action, const std::function<void()>& handler) {
    connect(action, &QAction::triggered, this, handler);
}

QAction* frmMain::command(const QString& name) const {
    return findChild<QAction*>(name, Qt::FindDirectChildrenOnly);
}

void frmMain::setEnabled(QAction* action, bool enabled) {
    if (!action)
        return;
    // A button writes when the menu command it runs does.
    const bool writes = m_writing.contains(m_buttonTargets.value(action, action));
    const bool readOnly = ModMain::ProjectIsOpen() && ModMain::DB().IsReadOnly();
    action->setEnabled(enabled && !(readOnly && writes));
}

void frmMain::setCaption(const QString& shown) {
    QString caption = Common::AppTitle();
    if (!shown.isEmpty())
        caption += QStringLiteral(" - ") + shown;
    if (ModMain::ProjectIsOpen() && ModMain::DB().IsReadOnly())
        caption += QStringLiteral(" (read only)");
    setWindowTitle(caption);
}

void frmMain::setMenuEnabled(QMenu* menu, bool enabled) {
    menu->menuAction()->setEnabled(enabled);
    for (QAction* action : menu->actions())
        if (!action->isSeparator())
            setEnabled(action, enabled);
}

void frmMain::setToolbarEnabled(bool enabled) {
    for (const ToolbarButton& b : kToolbarButtons)
        setEnabled(this->*b.button, enabled);
    updateHistoryCommands();
}

void frmMain::updateHistoryCommands() {
    const bool open = ModMain::ProjectIsOpen();
    const struct {
        QAction* menu;
        QAction* button;
        bool can;
        QString text;
        const char* nothing;
    } commands[] = {{mnuEditUndo, tbUndo, m_history->stack().canUndo(), m_history->undoText(),
                     "Nothing to undo"},
                    {mnuEditRedo, tbRedo, m_history->stack().canRedo(), m_history->redoText(),
                     "Nothing to redo"}};
    for (const auto& c : commands) {
        QAction* menu = c.menu;
        menu->setText(c.text);
        setEnabled(menu, open && c.can);
        QAction* button = c.button;
        button->setToolTip(c.can ? c.text : QString::fromLatin1(c.nothing));
        setEnabled(button, open && c.can);
    }
}

void frmMain::mnuEditUndo_Click() {
    Guard("frmMain", "mnuEditUndo_Click", [&] { m_history->undo(); });
}

void frmMain::mnuEditRedo_Click() {
    Guard("frmMain", "mnuEditRedo_Click", [&] { m_history->redo(); });
}

void frmMain::ProjectChangedByHistory() {
    // A step may have added or removed the days and periods, the timetable
    // shown, or resources: show the project as it now is.
    YesProject();
    const qint32 shown = Timetable::current().ID;
    if (shown != 0 && ModMain::ReadTimetable(shown).found) {
        LoadTimetable(shown);
    } else {
        NoTimetable();
        RefreshToolbarTimetables();
        showFirstTimetable();
    }
}

void frmMain::NoTimetable() {
    setCaption();
    clearTimetable();
    showResourceLists(QString());
    setMenuEnabled(mnuView, false);
    setMenuEnabled(mnuFormat, false);
    setMenuEnabled(mnuTools, false);
    setMenuEnabled(mnuPeriod, false);
    for (QAction* needsTimetable : {mnuFileDelete, mnuFilePrintPreview, mnuFileExportPdf})
        setEnabled(needsTimetable, false);
    // Marking periods needs a timetable's cells; what was typed belongs to
    // the timetable that is gone.
    for (QAction* mark : {tbBlank, tbLunch, tbBreak, tbUnavailable})
        setEnabled(mark, false);
    for (QLineEdit* box : {txtTutorName, txtSubjectName, txtRoomName}) {
        box->clear();
        box->setEnabled(false);
    }
}

void frmMain::NoProject() {
    m_history->clear();
    NoTimetable();
    g->setEmptyText(QStringLiteral("No project is open.\n\nChoose File > New Project to set up a "
                                   "school, or File > Open Project to open one."));
    setToolbarEnabled(false);
    for (QAction* needsProject : {mnuFileNew, mnuFileOpen, mnuFileSaveAs, mnuFileSetUpCalendar})
        setEnabled(needsProject, false);
    ShowProjectPath(QString());
    setCaption();
}

void frmMain::YesProject() {
    setCaption();
    if (needsCalendar())
        g->setEmptyText(QStringLiteral("This project has no days or periods yet, so it cannot "
                                       "hold timetables.\n\nChoose File > Set Up Days and "
                                       "Periods to choose them."));
    else
        g->setEmptyText(QStringLiteral("No timetable is shown.\n\nClick New Table on the "
                                       "toolbar to create a timetable for a class, tutor or "
                                       "room."));
    setMenuEnabled(mnuView, true);
    setMenuEnabled(mnuFormat, true);
    setMenuEnabled(mnuTools, true);
    setMenuEnabled(mnuPeriod, true);
    setToolbarEnabled(true);
    for (QAction* action : {mnuFileNew, mnuFileOpen, mnuFileSaveAs, mnuFileDelete,
                            mnuFilePrintPreview, mnuFileExportPdf})
        setEnabled(action, true);
    setEnabled(mnuFileSetUpCalendar, needsCalendar());
}

bool frmMain::needsCalendar() const {
    return ModMain::ProjectIsOpen() && !ModMain::HasCalendar();
}

void frmMain::ShowProjectPath(const QString& path) {
    CrashReport::SetProject(path);
    m_statusPath->setText(path.isEmpty() ? QStringLiteral("No project open") : path);
    m_statusPath->setToolTip(path);
}

void frmMain::Form_Load(const QString& projectFile) {
    Guard("frmMain", "Form_Load",
          VariableDump().parameter(QStringLiteral("projectFile"), projectFile), [&] {
              NoProject();
              const QString path = projectFile.isEmpty() ? ModMain::LastDB() : projectFile;
              if (path.isEmpty())
                  return;
              // Checked first, as File > Open Project does, so the reason is
              // given in the same plain words.
              if (!ModMain::CanOpenProject(path) || !ModMain::OpenProject(path)) {
                  const MsgResult answer =
                      MsgBox(QStringLiteral("Unable to open project file ") + path +
                                 QStringLiteral(". Would you like to create a new project?") +
                                 QStringLiteral("\r\n\r\n") + ModMain::OpenFailureReason(path),
                             MsgButtons::YesNo, MsgIcon::Question);
                  if (answer == MsgResult::Yes) {
                      NoProject();
                      mnuFileNewProject->trigger();
                  }
                  return;
              }
              ProjectOpened();
          });
}

void frmMain::ProjectOpened() {
    m_history->clear();
    // Remembered now, not only at exit: after a crash the next start reopens it.
    ModMain::SetLastDB(ModMain::DB().GetDBFilename());
    YesProject();
    ShowProjectPath(ModMain::DB().GetDBFilename());
    NoTimetable();
    showFirstTimetable();
    // One box an action: when showing the timetable failed, that box said so.
    if (ModMain::DB().IsReadOnly() && !ActionScope::Failed())
        MsgBox(QStringLiteral("You cannot change %1, so it is open for reading only: you can "
                              "look at and print its timetables, but not change them. To work "
                              "on it, choose File > Save Project As... to save a copy where you "
                              "can write, or ask for write permission.")
                   .arg(QDir::toNativeSeparators(ModMain::DB().GetDBFilename())),
               MsgButtons::Ok, MsgIcon::Information);
}

void frmMain::mnuFileOpenProject_Click() {
    Guard("frmMain", "mnuFileOpenProject_Click", [&] {
        QString file;
        if (!Common::VBGetOpenFileName(
                file, nullptr, true, false, false, true,
                QStringLiteral("Vantor Planner Project (*.VNPL)|*.VNPL|All(*.*)|*.*"), nullptr,
                QString(), QStringLiteral("Open Vantor Timetable Project"), QStringLiteral("VNPL"),
                this))
            return;
        OpenProjectFile(file);
    });
}

bool frmMain::OpenProjectFile(const QString& file) {
    // A file that is no project is refused before the open one is closed.
    if (!ModMain::CanOpenProject(file)) {
        MsgBox(ModMain::OpenFailureText(file), MsgButtons::Ok, MsgIcon::Critical);
        return false;
    }
    SaveTimetable();
    ModMain::DB().DBClose();
    // Nothing of the closed project stays on screen, whatever comes next.
    NoProject();
    if (ModMain::OpenProject(file)) {
        ProjectOpened();
        return true;
    }
    MsgBox(ModMain::OpenFailureText(file), MsgButtons::Ok, MsgIcon::Critical);
    NoProject();
    return false;
}

void frmMain::mnuFileSaveAs_Click() {
    Guard("frmMain", "mnuFileSaveAs_Click", [&] {
        if (!ModMain::ProjectIsOpen())
            return;
        const QFileInfo open(ModMain::DB().GetDBFilename());
        QString file = open.dir().filePath(open.completeBaseName() + QStringLiteral(" copy.VNPL"));
        if (!Common::VBGetSaveFileName(file, nullptr, true, false, false, true,
                                       QStringLiteral("Vantor Planner Project (*.VNPL)|*.VNPL"),
                                       nullptr, QString(), QStringLiteral("Save Project As"),
                                       QStringLiteral("VNPL"), this))
            return;
        if (QFileInfo(file).absoluteFilePath() == open.absoluteFilePath()) {
            MsgBox(QStringLiteral("%1 is the project open now. Choose another name for the copy.")
                       .arg(QDir::toNativeSeparators(file)),
                   MsgButtons::Ok, MsgIcon::Exclamation);
            return;
        }
        SaveTimetable();
        const QString error = ModMain::DB().BackupTo(file);
        if (!error.isEmpty()) {
            MsgBox(error, MsgButtons::Ok, MsgIcon::Exclamation);
            return;
        }
        // Work goes on in the copy; the original stays as it was.
        const qint32 shown = Timetable::current().ID;
        if (OpenProjectFile(file) && shown != 0 && ModMain::ReadTimetable(shown).found)
            LoadTimetable(shown);
    });
}

void frmMain::mnuHelpOpenSample_Click() {
    Guard("frmMain", "mnuHelpOpenSample_Click", [&] {
        QString error;
        const QString copy = ModMain::CopySampleSchool(error);
        if (copy.isEmpty()) {
            MsgBox(error, MsgButtons::Ok, MsgIcon::Exclamation);
            return;
        }
        // The status bar then shows where the copy is.
        OpenProjectFile(copy);
    });
}

void frmMain::mnuFileExit_Click() {
    close();
}

void frmMain::ToolBar_ButtonClick(const QString& key) {
    const auto button = std::find_if(std::begin(kToolbarButtons), std::end(kToolbarButtons),
                                     [&](const ToolbarButton& b) { return key == b.key; });
    if (button == std::end(kToolbarButtons))
        return;
    QAction* action = this->*button->command;
    // These need only the project (Auto Fill offers to create a class
    // timetable), so their buttons work while the menus wait for a timetable.
    static const QSet<QString> projectWide = {"AutoFill", "View", "Manage"};
    if (projectWide.contains(key))
        Q_EMIT action->triggered(false);
    else
        action->trigger();
}

void frmMain::Form_Unload() {
    if (m_unloaded)
        return;
    m_unloaded = true;
    Guard("frmMain", "Form_Unload", [&] {
        saveWindowPlace();
        SaveTimetable();
        const QString path = ModMain::DB().GetDBFilename();
        if (!path.isEmpty())
            ModMain::SetLastDB(path);
        ModMain::DB().DBClose();
    });
}

void frmMain::closeEvent(QCloseEvent* event) {
    Form_Unload();
    event->accept();
}
