// The menus, the toolbar and the status bar of the main window.

#include <QHBoxLayout>
#include <QMenuBar>
#include <QScreen>
#include <QStatusBar>
#include <QToolButton>

#include "model/JournalCommands.h"
#include "paint/Text.h"
#include "shell/desk/Icons.h"
#include "shell/entry/AssignmentEntryForm.h"
#include "shell/entry/DependencyEntryForm.h"
#include "shell/entry/ProjectEntryForm.h"
#include "shell/entry/ResourceEntryForm.h"
#include "shell/entry/ShiftEntryForm.h"
#include "shell/entry/SubprojectEntryForm.h"
#include "shell/entry/TaskEntryForm.h"
#include "shell/entry/TemplateEntryForm.h"
#include "shell/main/MainForm.h"
#include "shell/main/PreferencesForm.h"
#include "shell/main/WelcomeForm.h"
#include "shell/widgets/ElidedLabel.h"

namespace vortan {
namespace {

/// Pictures of the toolbar, by the width of the screen.
int ToolbarImageSize(int screenWidth) {
    if (screenWidth <= 640) return 16;
    return screenWidth <= 800 ? 24 : 32;
}

}  // namespace

QAction* MainForm::AddAction(QMenu& menu, const char* name, const QString& caption, const char* section,
                             std::function<void()> command) {
    QAction* action = menu.addAction(caption);
    action->setObjectName(name);
    action->setMenuRole(QAction::NoRole);
    connect(action, &QAction::triggered, this,
            [this, section, command = std::move(command)] { desktop_.Run(section, command); });
    actions_[name] = action;
    return action;
}

void MainForm::BuildMenus() {
    Workspace& workspace = desktop_.workspace;
    const auto newMenu = [this](const char* name, const QString& caption) -> QMenu& {
        QMenu* menu = menuBar()->addMenu(caption);
        menu->setObjectName(name);
        actions_[name] = menu->menuAction();
        return *menu;
    };

    QMenu& file = newMenu("FileMenu", "&File");
    AddAction(file, "FileNewMenu", "&New", "Main:FileNewMenu_Click", [this] { desktop_.files.FileNew(); });
    AddAction(file, "FileOpenMenu", "&Open", "Main:FileOpenMenu_Click", [this] { FileOpen(); });
    AddAction(file, "FileSaveMenu", "&Save", "Main:FileSaveMenu_Click",
              [this] { desktop_.files.RequestSave(); });
    AddAction(file, "FileExitMenu", "E&xit", "Main:FileExitMenu_Click", [this] { close(); });
    QAction* separator = file.addSeparator();
    separator->setObjectName("FileSeparatorMenu");
    recent_ = {separator};
    for (int i = 1; i <= Settings::kRecentFiles; ++i) {
        const std::string name = "FileRecentMenu(" + std::to_string(i) + ")";
        recent_.push_back(
            AddAction(file, name.c_str(), QString::number(i), "Main:FileRecentMenu_Click", [this, i] {
                const auto files = desktop_.settings.RecentFiles();
                if (static_cast<std::size_t>(i) <= files.size()) {
                    desktop_.files.OpenFile(files[static_cast<std::size_t>(i - 1)]);
                }
            }));
    }
    connect(&file, &QMenu::aboutToShow, this,
            [this] { desktop_.Run("Main:RedoRecentMenu", [this] { RedoRecentMenu(); }); });

    QMenu& project = newMenu("ProjectMenu", "&Project");
    AddAction(project, "ProjectNewMenu", "&New", "Main:ProjectNewMenu_Click",
              [this] { ProjectEntryForm::StartAdd(desktop_); });
    AddAction(project, "ProjectSelectMenu", "&Select", "Main:ProjectSelectMenu_Click",
              [this] { DisplayHelpPage("Project Select"); });
    AddAction(project, "ProjectModifyMenu", "&Modify", "Main:ProjectModifyMenu_Click", [this] {
        if (desktop_.workspace.ThisProjectSet()) ProjectEntryForm::StartModify(desktop_);
    });
    AddAction(project, "ProjectDeleteMenu", "&Delete", "Main:ProjectDeleteMenu_Click",
              [this] { ProjectDelete(); });

    QMenu& templates = newMenu("TemplateMenu", "&Template");
    AddAction(templates, "TemplateNewMenu", "&New", "Main:TemplateNewMenu_Click",
              [this] { TemplateEntryForm::StartAdd(desktop_); });
    AddAction(templates, "TemplateSelectMenu", "&Select", "Main:TemplateSelectMenu_Click",
              [this] { DisplayHelpPage("Template Select"); });
    AddAction(templates, "TemplateModifyMenu", "&Modify", "Main:TemplateModifyMenu_Click",
              [this] { TemplateModify(); });
    AddAction(templates, "TemplateDeleteMenu", "&Delete", "Main:TemplateDeleteMenu_Click",
              [this] { TemplateDelete(); });

    QMenu& journal = newMenu("JournalMenu", "&Journal");
    AddAction(journal, "JournalNewMenu", "&New", "Main:JournalNewMenu_Click",
              [&workspace] { vortan::NewJournal(workspace); });
    AddAction(journal, "JournalSelectMenu", "&Select", "Main:JournalSelectMenu_Click",
              [this] { JournalSelect(); });
    AddAction(journal, "JournalModifyMenu", "&Modify", "Main:JournalModifyMenu_Click",
              [&workspace] { workspace.NotReadyYet(); });
    AddAction(journal, "JournalDeleteMenu", "&Delete", "Main:JournalDeleteMenu_Click",
              [&workspace] { workspace.NotReadyYet(); });
    AddAction(journal, "JournalSetAsPlanMenu", "Set as &plan", "Main:JournalSetAsPlanMenu_Click",
              [this] { JournalSetAsPlan(); });

    QMenu& spreadsheet = newMenu("SpreadsheetMenu", "&Spreadsheet");
    static constexpr const char* kSpreadsheets[] = {"Resource entry",
                                                    "Task entry",
                                                    "Project summary",
                                                    "Project update",
                                                    "Loading by resource",
                                                    "Loading by project",
                                                    "Loading by day",
                                                    "Overtime and overload",
                                                    "Overload",
                                                    "Date dependency"};
    int kind = 0;
    for (const char* caption : kSpreadsheets) {
        ++kind;
        const std::string name = "SpreadsheetTypeMenu(" + std::to_string(kind) + ")";
        AddAction(spreadsheet, name.c_str(), caption, "Main:SpreadsheetTypeMenu_Click",
                  [this, kind] { SpreadsheetType(kind); });
    }

    QAction* calendar = menuBar()->addAction("&Calendar");
    calendar->setObjectName("CalendarMenu");
    actions_["CalendarMenu"] = calendar;
    connect(calendar, &QAction::triggered, this,
            [this] { desktop_.Run("Main:CalendarMenu_Click", [this] { Calendar(); }); });

    QMenu& iterative = newMenu("IterativeMenu", "&Iterative");
    AddAction(iterative, "IterativeQuickRiskSolveMenu", "Quick risk solve",
              "Main:IterativeQuickRiskSolveMenu_Click", [this] { RiskSolve(true); });
    AddAction(iterative, "IterativeDetailedRiskSolveMenu", "Detailed risk solve",
              "Main:IterativeDetailedRiskSolveMenu_Click", [this] { RiskSolve(false); });
    AddAction(iterative, "IterativeQuickCrashSolveMenu", "Quick crash solve",
              "Main:IterativeQuickCrashSolveMenu_Click", [this] { CrashSolve(true); });
    AddAction(iterative, "IterativeDetailedCrashSolveMenu", "Detailed crash solve",
              "Main:IterativeDetailedCrashSolveMenu_Click", [this] { CrashSolve(false); });

    QMenu& graphics = newMenu("GraphicsMenu", "&Graphics");
    const auto addChart = [&](const char* name, const char* caption, void (MainForm::*click)()) {
        AddAction(graphics, name, caption, "Main:GraphicsMenu_Click", [this, click] { (this->*click)(); });
    };
    addChart("GraphicsGanttMenu", "&Mechanized Gantt", &MainForm::GraphicsGantt);
    addChart("GraphicsHistogramMenu", "&Histogram", &MainForm::Chart);
    addChart("GraphicsBudgetMenu", "&Budget", &MainForm::Chart);
    addChart("GraphicsRiskAnalysisMenu", "&Risk analysis", &MainForm::GraphicsRiskAnalysis);
    addChart("GraphicsCrashAnalysisMenu", "&Crash analysis", &MainForm::GraphicsCrashAnalysis);
    addChart("GraphicsWorkBreakdownMenu", "&Work breakdown structure", &MainForm::Chart);
    addChart("GraphicsPrecedenceMenu", "&Precedence diagram", &MainForm::Chart);
    addChart("GraphicsStatusReportMenu", "&Status report", &MainForm::Chart);

    QMenu& output = newMenu("OutputMenu", "&Output");
    AddAction(output, "OutputPrintMenu", "&Print", "Main:OutputPrintMenu_Click", [this] { OutputPrint(); });
    AddAction(output, "OutputCopyMenu", "&Copy", "Main:OutputCopyMenu_Click", [this] { OutputCopy(); });

    QMenu& setup = newMenu("SetupMenu", "Set&up");
    AddAction(setup, "SetupFontMenu", "&Font", "Main:SetupFontMenu_Click", [this] { SetupFont(); });
    AddAction(setup, "SetupPrinterMenu", "&Printer", "Main:SetupPrinterMenu_Click",
              [this] { SetupPrinter(); });
    AddAction(setup, "SetupPreferencesMenu", "P&references", "Main:SetupPreferencesMenu_Click",
              [this] { PreferencesForm::Start(desktop_); });

    QMenu& help = newMenu("HelpMenu", "&Help");
    static constexpr struct {
        const char *name, *caption, *page;
    } kHelp[] = {{"HelpWelcomeMenu", "&Welcome", "Welcome"},
                 {"HelpUsingHelpMenu", "&Using help", "Using Help"},
                 {"HelpMenuMenu", "&Menu", "Menu"},
                 {"HelpToolbarMenu", "&Toolbar", "Toolbar"},
                 {"HelpGuideMeMenu", "&Guide me", "Guide me"},
                 {"HelpIndexMenu", "&Index", "Index"},
                 {"HelpTechnicalSupportMenu", "Te&chnical support", "Technical Support"}};
    for (const auto& item : kHelp) {
        AddAction(help, item.name, item.caption, "Main:HelpMenu_Click",
                  [this, page = item.page] { DisplayHelpPage(page); });
    }
    help.addSeparator()->setObjectName("HelpSeparatorMenu");
    AddAction(help, "HelpAboutMenu", "&About", "Main:HelpAboutMenu_Click",
              [this] { WelcomeForm::Start(desktop_); });
}

void MainForm::RedoRecentMenu() {
    const auto files = desktop_.settings.RecentFiles();
    recent_[0]->setVisible(!files.empty());
    for (std::size_t i = 1; i < recent_.size(); ++i) {
        recent_[i]->setVisible(i <= files.size());
        if (i > files.size()) continue;
        QString name = Q(files[i - 1]);
        recent_[i]->setText(QString("&%1 %2").arg(i).arg(name.replace("&", "&&")));
    }
}

void MainForm::BuildToolbar() {
    toolbar_ = addToolBar("Toolbar");
    toolbar_->setObjectName("Toolbar");
    toolbar_->setMovable(false);
    toolbar_->setContextMenuPolicy(Qt::PreventContextMenu);
    const int size = ToolbarImageSize(screen()->geometry().width());
    toolbar_->setIconSize({size, size});

    Workspace& workspace = desktop_.workspace;
    const auto chart = [this] { Chart(); };
    const struct {
        const char *toolTip, *section;
        std::function<void()> click;
    } buttons[] = {
        {"Open", "Toolbar:Open", [this] { FileOpen(); }},
        {"Save", "Toolbar:Save", [this] { desktop_.files.RequestSave(); }},
        {"Project", "Toolbar:Project", [this] { ProjectEntryForm::StartAdd(desktop_); }},
        {"Subproject", "Toolbar:Subproject", [this] { SubprojectEntryForm::StartAdd(desktop_); }},
        {"Task", "Toolbar:Task", [this] { TaskEntryForm::StartAdd(desktop_); }},
        {"Dependency", "Toolbar:Dependency", [this] { DependencyEntryForm::StartAdd(desktop_); }},
        {"Assignment", "Toolbar:Assignment", [this] { AssignmentEntryForm::StartAdd(desktop_); }},
        {"Template", "Toolbar:Template", [this] { TemplateEntryForm::StartAdd(desktop_); }},
        {"Shift", "Toolbar:Shift", [this] { ShiftEntryForm::StartAdd(desktop_); }},
        {"Department", "Toolbar:Department", [this] { CantCreateDepartment(); }},
        {"Resource", "Toolbar:Resource", [this] { ResourceEntryForm::StartAdd(desktop_); }},
        {"Journal", "Toolbar:Journal", [&workspace] { vortan::NewJournal(workspace); }},
        {"Copy", "Toolbar:Copy", [this] { OutputCopy(); }},
        {"Print", "Toolbar:Print", [this] { OutputPrint(); }},
        {"Font", "Toolbar:Font", [this] { SetupFont(); }},
        {"Calendar", "Toolbar:Calendar", [this] { Calendar(); }},
        {"Mechanized Gantt", "Toolbar:Mechanized", [this] { GraphicsGantt(); }},
        {"Histogram", "Toolbar:Histogram", chart},
        {"Budget", "Toolbar:Budget", chart},
        {"Work breakdown structure", "Toolbar:Work", chart},
        {"Precedence diagram", "Toolbar:Precedence", chart},
        {"Help", "Toolbar:Help", [this] { ContextHelp(); }},
    };
    for (const auto& button : buttons) {
        QAction* action =
            toolbar_->addAction(GetResIcon(std::string(button.toolTip) + ".ico"), button.toolTip);
        action->setToolTip(button.toolTip);
        connect(action, &QAction::triggered, this,
                [this, section = button.section, click = button.click] { desktop_.Run(section, click); });
        toolbar_->widgetForAction(action)->setObjectName(QString("Toolbar.") + button.toolTip);
    }
}

void MainForm::BuildStatusBar() {
    boxes_ = std::make_unique<SelectorBoxes>(desktop_);
    solvePanel_ = new QToolButton;
    solvePanel_->setObjectName("SolvePanel");
    solvePanel_->setAccessibleName("Solve");
    solvePanel_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    solvePanel_->setAutoRaise(true);
    solvePanel_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    connect(solvePanel_, &QToolButton::clicked, this,
            [this] { desktop_.Run("Main:SolvePanelClick", [this] { SolvePanelClick(); }); });
    messagePanel_ = new ElidedLabel("MessagePanel");
    messagePanel_->setAccessibleName("Operation");
    messagePanel_->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);

    // The boxes and the solve take a sixth of the width each, the message what is left.
    auto* panels = new QWidget;
    auto* row = new QHBoxLayout(panels);
    row->setContentsMargins(2, 2, 2, 2);
    row->addWidget(&boxes_->ProjectCombo(), 1);
    row->addWidget(&boxes_->TemplateCombo(), 1);
    row->addWidget(&boxes_->JournalCombo(), 1);
    row->addWidget(solvePanel_, 1);
    row->addWidget(messagePanel_, 2);
    statusBar()->setObjectName("StatusBar");
    statusBar()->setContentsMargins(0, 0, 0, 0);
    statusBar()->addWidget(panels, 1);
}

}  // namespace vortan
