#include "shell/frmMain.h"

#include "manage/frmManage.h"

#include "common/Common.h"
#include "common/ErrorHandler.h"
#include "common/FileDialogs.h"
#include "common/FlexGrid.h"
#include "common/Icons.h"
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
// The toolbar: key, caption, tooltip and the menu command it runs.
struct ToolbarButton {
    const char* key;
    const char* caption;
    const char* tooltip;
    const char* command;
};
constexpr ToolbarButton kToolbarButtons[] = {
    {"New", "New Table", "Create a new timetable", "mnuFileNew"},
    {"View", "View Table", "View an existing timetable", "mnuViewTimetable"},
    {"AutoFill", "Auto Fill", "Automatically populate a timetable", "mnuToolsAutoFill"},
    {"Blank", "Clear", "Clear period", "mnuPeriodClear"},
    {"Lunch", "Lunch", "Set period as a lunch break", "mnuPeriodLunch"},
    {"Break", "Break", "Set period as a break", "mnuPeriodBreak"},
    {"Unavailable", "Unavailable", "Set period as unavailable", "mnuPeriodUnavailable"},
    {"Manage", "Manage", "Manage tutors, rooms, classes and subjects", "mnuToolsManageTutors"},
    {"Undo", "Undo", "Undo the last change", "mnuEditUndo"},
    {"Redo", "Redo", "Redo the change last undone", "mnuEditRedo"},
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
}

frmMain::~frmMain() {
    // The history goes with the window's children, after its commands.
    disconnect(m_history, nullptr, this, nullptr);
}

QAction* frmMain::addCommand(QMenu* menu, const QString& name, const QString& caption,
                             const QKeySequence& shortcut) {
    auto* action = new QAction(caption, this);
    action->setObjectName(name);
    if (!shortcut.isEmpty())
        action->setShortcut(shortcut);
    // A command without its handler yet stays disabled.
    action->setEnabled(false);
    menu->addAction(action);
    m_commands.insert(name, action);
    return action;
}

void frmMain::buildMenus() {
    mnuFile = menuBar()->addMenu(QStringLiteral("&File"));
    mnuFile->setObjectName(QStringLiteral("mnuFile"));
    addCommand(mnuFile, QStringLiteral("mnuFileNewProject"), QStringLiteral("New &Project..."),
               QKeySequence(QStringLiteral("Ctrl+Shift+N")));
    addCommand(mnuFile, QStringLiteral("mnuFileOpenProject"), QStringLiteral("&Open Project..."),
               QKeySequence::Open);
    addCommand(mnuFile, QStringLiteral("mnuFileSaveAs"), QStringLiteral("Save Project &As..."),
               QKeySequence::SaveAs);
    addCommand(mnuFile, QStringLiteral("mnuFileSetUpCalendar"),
               QStringLiteral("Set Up &Days and Periods..."));
    mnuFile->addSeparator();
    addCommand(mnuFile, QStringLiteral("mnuFileNew"), QStringLiteral("&New Timetable..."),
               QKeySequence::New);
    addCommand(mnuFile, QStringLiteral("mnuFileOpen"), QStringLiteral("Open &Timetable..."));
    addCommand(mnuFile, QStringLiteral("mnuFileDelete"), QStringLiteral("&Delete Timetable"));
    mnuFile->addSeparator();
    addCommand(mnuFile, QStringLiteral("mnuFilePrintPreview"), QStringLiteral("Print Pre&view..."),
               QKeySequence::Print);
    addCommand(mnuFile, QStringLiteral("mnuFileExportPdf"), QStringLiteral("Export as PD&F..."));
    mnuFile->addSeparator();
    addCommand(mnuFile, QStringLiteral("mnuFileImportResources"),
               QStringLiteral("&Import Resources..."));
    addCommand(mnuFile, QStringLiteral("mnuFileExportResources"),
               QStringLiteral("Export &Resources..."));
    mnuFile->addSeparator();
    addCommand(mnuFile, QStringLiteral("mnuFileExit"), QStringLiteral("E&xit"),
               QKeySequence(QStringLiteral("Ctrl+Q")));

    mnuEdit = menuBar()->addMenu(QStringLiteral("&Edit"));
    mnuEdit->setObjectName(QStringLiteral("mnuEdit"));
    addCommand(mnuEdit, QStringLiteral("mnuEditUndo"), QStringLiteral("Undo"), QKeySequence::Undo);
    addCommand(mnuEdit, QStringLiteral("mnuEditRedo"), QStringLiteral("Redo"))
        ->setShortcuts(
            {QKeySequence(QStringLiteral("Ctrl+Shift+Z")), QKeySequence(QStringLiteral("Ctrl+Y"))});

    mnuView = menuBar()->addMenu(QStringLiteral("&View"));
    mnuView->setObjectName(QStringLiteral("mnuView"));
    addCommand(mnuView, QStringLiteral("mnuViewTimetable"), QStringLiteral("&Timetables..."));

    mnuFormat = menuBar()->addMenu(QStringLiteral("F&ormat"));
    mnuFormat->setObjectName(QStringLiteral("mnuFormat"));
    addCommand(mnuFormat, QStringLiteral("mnuFormatTimetable"),
               QStringLiteral("&Timetable Format..."));
    mnuFormat->addSeparator();
    addCommand(mnuFormat, QStringLiteral("mnuFormatSameSizeColumns"),
               QStringLiteral("Same Size &Columns"));
    addCommand(mnuFormat, QStringLiteral("mnuFormatSameSizeRows"),
               QStringLiteral("Same Size &Rows"));
    mnuFormat->addSeparator();
    addCommand(mnuFormat, QStringLiteral("mnuFormatDefineLunchColumn"),
               QStringLiteral("Define/Remove  &Lunch..."));

    mnuTools = menuBar()->addMenu(QStringLiteral("&Tools"));
    mnuTools->setObjectName(QStringLiteral("mnuTools"));
    addCommand(mnuTools, QStringLiteral("mnuToolsAutoFill"), QStringLiteral("&Auto Fill..."));
    addCommand(mnuTools, QStringLiteral("mnuToolsFillMethods"), QStringLiteral("Fill &Methods..."));
    addCommand(mnuTools, QStringLiteral("mnuToolsAskClashes"),
               QStringLiteral("Ask Before Allowing &Clashes"))
        ->setCheckable(true);
    mnuTools->addSeparator();
    addCommand(mnuTools, QStringLiteral("mnuToolsManageTutors"),
               QStringLiteral("Manage &Tutors..."));
    addCommand(mnuTools, QStringLiteral("mnuToolsManageSubjects"),
               QStringLiteral("Manage &Subjects..."));
    addCommand(mnuTools, QStringLiteral("mnuToolsManageRooms"), QStringLiteral("Manage &Rooms..."));
    addCommand(mnuTools, QStringLiteral("mnuToolsManageClasses"),
               QStringLiteral("Manage &Classes..."));
    mnuTools->addSeparator();
    addCommand(mnuTools, QStringLiteral("mnuToolsCapacityReport"),
               QStringLiteral("Tutor Ca&pacity Report..."));
    addCommand(mnuTools, QStringLiteral("mnuToolsConflicts"), QStringLiteral("Con&flicts..."));

    mnuPeriod = menuBar()->addMenu(QStringLiteral("&Period"));
    mnuPeriod->setObjectName(QStringLiteral("mnuPeriod"));
    addCommand(mnuPeriod, QStringLiteral("mnuPeriodClear"), QStringLiteral("&Clear"));
    addCommand(mnuPeriod, QStringLiteral("mnuPeriodUnavailable"), QStringLiteral("&Unavailable"));
    addCommand(mnuPeriod, QStringLiteral("mnuPeriodLunch"), QStringLiteral("&Lunch"));
    addCommand(mnuPeriod, QStringLiteral("mnuPeriodBreak"), QStringLiteral("&Break"));

    mnuHelp = menuBar()->addMenu(QStringLiteral("&Help"));
    mnuHelp->setObjectName(QStringLiteral("mnuHelp"));
    addCommand(mnuHelp, QStringLiteral("mnuHelpContents"), QStringLiteral("&Contents"),
               QKeySequence::HelpContents);
    addCommand(mnuHelp, QStringLiteral("mnuHelpGettingStarted"),
               QStringLiteral("&Getting Started Tutorial"));
    addCommand(mnuHelp, QStringLiteral("mnuHelpTips"), QStringLiteral("&Tip of the Day..."));
    addCommand(mnuHelp, QStringLiteral("mnuHelpOpenSample"), QStringLiteral("Open &Sample School"));
    mnuHelp->addSeparator();
    addCommand(mnuHelp, QStringLiteral("mnuHelpAbout"), QStringLiteral("&About Vantor Planner..."));
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
        m_commands.insert(action->objectName(), action);
        m_toolbarTargets.insert(key, QString::fromLatin1(b.command));
    }
}

void frmMain::buildCentral() {
    auto* splitter = new QSplitter(Qt::Horizontal, this);
    splitter->setObjectName(QStringLiteral("splitMain"));
    splitter->setChildrenCollapsible(false);

    g = new FlexGrid(splitter);
    g->setObjectName(QStringLiteral("g"));
    g->setMinimumWidth(320);
    ModMain::UseCentredCellText(*g);
    splitter->addWidget(g);

    auto* side = new QWidget(splitter);
    side->setObjectName(QStringLiteral("picLists"));
    side->setMinimumWidth(220);
    auto* layout = new QVBoxLayout(side);
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
    on(QStringLiteral("mnuFileOpenProject"), &frmMain::mnuFileOpenProject_Click);
    on(QStringLiteral("mnuFileExit"), &frmMain::mnuFileExit_Click);
    on(QStringLiteral("mnuFileSaveAs"), &frmMain::mnuFileSaveAs_Click);
    on(QStringLiteral("mnuEditUndo"), &frmMain::mnuEditUndo_Click);
    on(QStringLiteral("mnuEditRedo"), &frmMain::mnuEditRedo_Click);
    on(QStringLiteral("mnuFileNewProject"), &frmMain::mnuFileNewProject_Click);
    on(QStringLiteral("mnuFileSetUpCalendar"), &frmMain::mnuFileSetUpCalendar_Click);
    on(QStringLiteral("mnuHelpContents"), &frmMain::mnuHelpContents_Click);
    on(QStringLiteral("mnuHelpGettingStarted"), &frmMain::mnuHelpGettingStarted_Click);
    on(QStringLiteral("mnuHelpTips"), &frmMain::mnuHelpTips_Click);
    on(QStringLiteral("mnuHelpOpenSample"), &frmMain::mnuHelpOpenSample_Click);
    on(QStringLiteral("mnuHelpAbout"), &frmMain::mnuHelpAbout_Click);
    on(QStringLiteral("mnuFileNew"), &frmMain::mnuFileNew_Click);
    on(QStringLiteral("mnuFileDelete"), &frmMain::mnuFileDelete_Click);
    on(QStringLiteral("mnuFormatTimetable"), &frmMain::mnuFormatTimetable_Click);
    on(QStringLiteral("mnuFormatSameSizeColumns"), &frmMain::mnuFormatSameSizeColumns_Click);
    on(QStringLiteral("mnuFormatSameSizeRows"), &frmMain::mnuFormatSameSizeRows_Click);
    on(QStringLiteral("mnuFormatDefineLunchColumn"), &frmMain::mnuFormatDefineLunchColumn_Click);
    on(QStringLiteral("mnuPeriodClear"), &frmMain::mnuPeriodClear_Click);
    on(QStringLiteral("mnuPeriodUnavailable"), &frmMain::mnuPeriodUnavailable_Click);
    on(QStringLiteral("mnuPeriodLunch"), &frmMain::mnuPeriodLunch_Click);
    on(QStringLiteral("mnuPeriodBreak"), &frmMain::mnuPeriodBreak_Click);
    on(QStringLiteral("mnuToolsAskClashes"), &frmMain::mnuToolsAskClashes_Click);
    on(QStringLiteral("mnuToolsAutoFill"), &frmMain::mnuToolsAutoFill_Click);
    on(QStringLiteral("mnuToolsFillMethods"), &frmMain::mnuToolsFillMethods_Click);
    on(QStringLiteral("mnuToolsManageTutors"), [this] { ShowManage(frmManage::Tutors); });
    on(QStringLiteral("mnuToolsManageClasses"), [this] { ShowManage(frmManage::Classes); });
    on(QStringLiteral("mnuToolsManageRooms"), [this] { ShowManage(frmManage::Rooms); });
    on(QStringLiteral("mnuToolsManageSubjects"), [this] { ShowManage(frmManage::Subjects); });
    on(QStringLiteral("mnuViewTimetable"), &frmMain::mnuViewTimetable_Click);
    on(QStringLiteral("mnuFileOpen"), &frmMain::mnuViewTimetable_Click);
    on(QStringLiteral("mnuToolsCapacityReport"), &frmMain::mnuToolsCapacityReport_Click);
    on(QStringLiteral("mnuToolsConflicts"), &frmMain::mnuToolsConflicts_Click);
    on(QStringLiteral("mnuFileImportResources"), &frmMain::mnuFileImportResources_Click);
    on(QStringLiteral("mnuFilePrintPreview"), &frmMain::mnuFilePrintPreview_Click);
    on(QStringLiteral("mnuFileExportPdf"), &frmMain::mnuFileExportPdf_Click);
    on(QStringLiteral("mnuFileExportResources"), &frmMain::mnuFileExportResources_Click);
    wireScheduling();
}

void frmMain::on(const QString& name, void (frmMain::*handler)()) {
    on(name, [this, handler] { (this->*handler)(); });
}

void frmMain::on(const QString& name, const std::function<void()>& handler) {
    QAction* action = m_commands.value(name);
    Q_ASSERT(action);
    if (!action)
        return;
    connect(action, &QAction::triggered, this, handler);
    m_built.insert(action);
    action->setEnabled(true);
    // The toolbar button of the same command is built along with it.
    for (auto it = m_toolbarTargets.cbegin(); it != m_toolbarTargets.cend(); ++it)
        if (it.value() == name)
            m_built.insert(m_commands.value(QStringLiteral("tb") + it.key()));
}

QAction* frmMain::command(const QString& name) const {
    return m_commands.value(name);
}

namespace {
// The commands that change the project, kept off while it is read-only.
bool writes(const QString& command) {
    static const QSet<QString> writing = {"mnuFileNew",
                                          "mnuEditUndo",
                                          "mnuEditRedo",
                                          "mnuFileDelete",
                                          "mnuFileSetUpCalendar",
                                          "mnuFormatTimetable",
                                          "mnuFormatSameSizeColumns",
                                          "mnuFormatSameSizeRows",
                                          "mnuFormatDefineLunchColumn",
                                          "mnuToolsAutoFill",
                                          "mnuToolsFillMethods",
                                          "mnuToolsManageTutors",
                                          "mnuToolsManageSubjects",
                                          "mnuToolsManageRooms",
                                          "mnuToolsManageClasses",
                                          "mnuFileImportResources",
                                          "mnuPeriodClear",
                                          "mnuPeriodUnavailable",
                                          "mnuPeriodLunch",
                                          "mnuPeriodBreak"};
    return writing.contains(command);
}
} // namespace

void frmMain::setEnabled(QAction* action, bool enabled) {
    if (!action)
        return;
    QString name = action->objectName();
    if (name.startsWith(QLatin1String("tb")))
        name = m_toolbarTargets.value(name.mid(2));
    const bool readOnly = ModMain::ProjectIsOpen() && ModMain::DB().IsReadOnly();
    action->setEnabled(enabled && m_built.contains(action) && !(readOnly && writes(name)));
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
        setEnabled(m_commands.value(QStringLiteral("tb") + QString::fromLatin1(b.key)), enabled);
    updateHistoryCommands();
}

void frmMain::updateHistoryCommands() {
    const bool open = ModMain::ProjectIsOpen();
    const struct {
        const char* menu;
        const char* button;
        bool can;
        QString text;
        const char* nothing;
    } commands[] = {{"mnuEditUndo", "tbUndo", m_history->stack().canUndo(), m_history->undoText(),
                     "Nothing to undo"},
                    {"mnuEditRedo", "tbRedo", m_history->stack().canRedo(), m_history->redoText(),
                     "Nothing to redo"}};
    for (const auto& c : commands) {
        QAction* menu = command(QString::fromLatin1(c.menu));
        menu->setText(c.text);
        setEnabled(menu, open && c.can);
        QAction* button = command(QString::fromLatin1(c.button));
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
    setEnabled(command(QStringLiteral("mnuFileDelete")), false);
    setEnabled(command(QStringLiteral("mnuFilePrintPreview")), false);
    setEnabled(command(QStringLiteral("mnuFileExportPdf")), false);
    // Marking periods needs a timetable's cells; what was typed belongs to
    // the timetable that is gone.
    for (const char* mark : {"tbBlank", "tbLunch", "tbBreak", "tbUnavailable"})
        setEnabled(command(QString::fromLatin1(mark)), false);
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
    setEnabled(command(QStringLiteral("mnuFileNew")), false);
    setEnabled(command(QStringLiteral("mnuFileOpen")), false);
    setEnabled(command(QStringLiteral("mnuFileSaveAs")), false);
    setEnabled(command(QStringLiteral("mnuFileSetUpCalendar")), false);
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
    for (const char* name : {"mnuFileNew", "mnuFileOpen", "mnuFileSaveAs", "mnuFileDelete",
                             "mnuFilePrintPreview", "mnuFileExportPdf"})
        setEnabled(command(QString::fromLatin1(name)), true);
    setEnabled(command(QStringLiteral("mnuFileSetUpCalendar")), needsCalendar());
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
              if (!ModMain::OpenProject(path)) {
                  const MsgResult answer =
                      MsgBox(QStringLiteral("Unable to open project file ") + path +
                                 QStringLiteral(". Would you like to create a new project?"),
                             MsgButtons::YesNo, MsgIcon::Question);
                  if (answer == MsgResult::Yes) {
                      NoProject();
                      if (QAction* newProject = command(QStringLiteral("mnuFileNewProject"));
                          isBuilt(newProject))
                          newProject->trigger();
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
    const QString target = m_toolbarTargets.value(key);
    if (target.isEmpty())
        return;
    QAction* action = command(target);
    if (!isBuilt(action))
        return;
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
