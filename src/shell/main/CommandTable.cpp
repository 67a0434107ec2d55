// Every command of the main window: a row of the table, and what it does.

#include <charconv>

#include "model/Characters.h"
#include "model/JournalCommands.h"
#include "model/Vproject.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"
#include "shell/desk/CommonDialogs.h"
#include "shell/desk/Removal.h"
#include "shell/entry/ProjectEntryForm.h"
#include "shell/entry/ResourceEntryForm.h"
#include "shell/entry/ShiftEntryForm.h"
#include "shell/entry/SubprojectEntryForm.h"
#include "shell/entry/TaskEntryForm.h"
#include "shell/entry/TemplateEntryForm.h"
#include "shell/main/ChartCommands.h"
#include "shell/main/Command.h"
#include "shell/main/MainForm.h"
#include "shell/main/OutputCommands.h"
#include "shell/main/PreferencesForm.h"
#include "shell/main/ReportCommands.h"
#include "shell/main/WelcomeForm.h"
#include "shell/pages/CalendarForm.h"
#include "shell/pages/StatusReportForm.h"
#include "shell/pages/WhyPane.h"
#include "shell/trees/FindBar.h"
#include "shell/trees/NodeCommands.h"
#include "shell/trees/ProjectTreeForm.h"
#include "shell/trees/Trees.h"

namespace vortan {
namespace {

Workspace& Memory(MainForm& main) {
    return main.TheDesktop().workspace;
}

/// The solve follows by itself; all screens show what is there now.
void TakeBack(MainForm& main, bool undo) {
    Workspace& workspace = Memory(main);
    History& history = workspace.TheHistory();
    const std::string name = undo ? history.UndoName() : history.RedoName();
    if (!(undo ? history.Undo() : history.Redo()))
        return main.Note(undo ? "There is nothing to undo." : "There is nothing to do again.");
    workspace.BroadcastNewThisTemplate();
    workspace.BroadcastNewThisProject();
    workspace.BroadcastNewJournal();
    main.Note((undo ? "Undone: " : "Done again: ") + name);
}

void GoToTask(MainForm& main) {
    Vproject& project = *Memory(main).ThisProject();
    Platform& platform = main.TheDesktop().platform;
    const InputAnswer answer =
        platform.InputBox("Number of the task in " + project.ProjectName() + ":", "Go To Task", "");
    const std::string text(Trim(answer.text));
    if (!answer.given || text.empty()) return;
    std::int32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool whole = error == std::errc() && end == text.data() + text.size();
    Vtask* task = whole ? project.FindTask(number) : nullptr;
    if (!task || !task->Include()) {
        platform.MessageBox("There is no task \"" + text + "\" in " + project.ProjectName() + ".",
                            "Task Not Found", BoxIcon::Warning, BoxButtons::Ok);
        return;
    }
    main.Finding().Close();
    main.TheTrees().ShowInProjectTree(task, project);
}

void FileOpen(MainForm& main) {
    const std::string name = ShowOpen(main.TheDesktop());
    if (!name.empty()) main.TheDesktop().files.OpenFile(name);
}

void ProjectDelete(MainForm& main) {
    Workspace& workspace = Memory(main);
    const Vproject& active = *workspace.ThisProject();
    if (!MayLose(main.TheDesktop(), active)) return;
    const Vproject* master = active.Master();
    std::vector<Vproject*> relatives;
    for (Vproject* relative : workspace.ProjectList()) {
        if (relative->Master() == master) relatives.push_back(relative);
    }
    RemoveProjects(workspace, relatives);
}

/// As a double click on the node of the active template does.
void TemplateModify(MainForm& main) {
    Vtemplate& active = *Memory(main).ThisTemplate();
    main.TheTrees().SetDragNode(&main.TheTrees().FindNodeFromObject(&active));
    TemplateEntryForm::StartModify(main.TheDesktop(), active);
}

void TemplateDelete(MainForm& main) {
    Vtemplate& active = *Memory(main).ThisTemplate();
    if (!MayLose(main.TheDesktop(), active)) return;
    RemoveTemplate(Memory(main), active);
    main.TheTrees().ProjectTree().RefreshReferences();
}

void JournalSelect(MainForm& main) {
    QComboBox& box = main.Status().Boxes().JournalCombo();
    if (!box.isEnabled()) return Memory(main).WarnNotInMemory(false);
    box.setFocus();
    box.showPopup();
}

void JournalSetAsPlan(MainForm& main) {
    SetAsPlan(Memory(main));
    main.Status().Boxes().UpdateJournalCombo();
}

void CantCreateDepartment(MainForm& main) {
    main.TheDesktop().platform.MessageBox(
        "Departments do not need to be explicitly created.  If you use a department name for a resource that "
        "hasn't been used before, the department will be created automatically.",
        "Can't Create Department", BoxIcon::Information, BoxButtons::Ok);
}

// ---- screens that are yet to come

void NotReady(MainForm& main) {
    Memory(main).NotReadyYet();
}

// ---- the tables

using enum Needs;
using enum Offered;
constexpr auto kOn = WhileEntering::On, kPrintable = WhileEntering::Printable;

constexpr Command kFile[] = {
    {"FileNewMenu", "&New", [](MainForm& m) { m.TheDesktop().files.FileNew(); }},
    {"FileOpenMenu", "&Open", FileOpen, {.button = 1, .toolTip = "Open"}},
    {"FileSaveMenu",
     "&Save",
     [](MainForm& m) { m.TheDesktop().files.RequestSave(); },
     {.button = 2, .toolTip = "Save", .offered = WithEither}},
    {"FileExitMenu", "E&xit", [](MainForm& m) { m.close(); }, {.whileEntering = kOn}},
};

constexpr Command kEdit[] = {
    {"EditUndoMenu",
     "&Undo",
     [](MainForm& m) { TakeBack(m, true); },
     {.keys = "Ctrl+Z", .what = [](MainForm& m) { return Memory(m).TheHistory().UndoName(); }}},
    {"EditRedoMenu",
     "&Redo",
     [](MainForm& m) { TakeBack(m, false); },
     {.keys = "Ctrl+Shift+Z; Ctrl+Y", .what = [](MainForm& m) { return Memory(m).TheHistory().RedoName(); }}},
    {"EditFindMenu",
     "&Find",
     [](MainForm& m) { m.Finding().Open(); },
     {.separator = "EditSeparatorMenu", .keys = "Ctrl+F"}},
    {"EditGoToMenu", "&Go to task", GoToTask, {.needs = Project, .offered = WithProject, .keys = "Ctrl+G"}},
    {"EditWhyMenu",
     "&Why",
     [](MainForm& m) { m.Why().SetShown(!m.Why().IsShown()); },
     {.separator = "EditWhySeparatorMenu"}},
    {"EditTreeColumnsMenu", "&Columns in the tree",
     [](MainForm& m) {
         ProjectTreeForm& tree = m.TheTrees().ProjectTree();
         tree.SetColumnsShown(!tree.ColumnsShown());
     }},
};

constexpr Command kProject[] = {
    {"ProjectNewMenu",
     "&New",
     [](MainForm& m) { ProjectEntryForm::StartAdd(m.TheDesktop()); },
     {.button = 3, .toolTip = "Project"}},
    {"ProjectSelectMenu",
     "&Select",
     [](MainForm& m) { m.DisplayHelpPage("Project Select"); },
     {.offered = WithProject}},
    {"ProjectModifyMenu",
     "&Modify",
     [](MainForm& m) { ProjectEntryForm::StartModify(m.TheDesktop(), *Memory(m).ThisProject()); },
     {.needs = Project, .offered = WithProject}},
    {"ProjectDeleteMenu", "&Delete", ProjectDelete, {.needs = Project, .offered = WithProject}},
};

constexpr Command kTemplate[] = {
    {"TemplateNewMenu",
     "&New",
     [](MainForm& m) { TemplateEntryForm::StartAdd(m.TheDesktop()); },
     {.button = 8, .toolTip = "Template"}},
    {"TemplateSelectMenu",
     "&Select",
     [](MainForm& m) { m.DisplayHelpPage("Template Select"); },
     {.offered = WithTemplate}},
    {"TemplateModifyMenu", "&Modify", TemplateModify, {.needs = Template, .offered = WithTemplate}},
    {"TemplateDeleteMenu", "&Delete", TemplateDelete, {.needs = Template, .offered = WithTemplate}},
};

constexpr Command kJournal[] = {
    {"JournalNewMenu",
     "&New",
     [](MainForm& m) { NewJournal(Memory(m)); },
     {.button = 12, .toolTip = "Journal"}},
    {"JournalSelectMenu", "&Select", JournalSelect},
    {"JournalModifyMenu", "&Modify", NotReady},
    {"JournalDeleteMenu", "&Delete", NotReady},
    {"JournalSetAsPlanMenu", "Set as &plan", JournalSetAsPlan, {.needs = Project}},
};

constexpr Command kSpreadsheet[] = {
    {"SpreadsheetTypeMenu(1)",
     "Resource entry",
     StartReport<1>,
     {.needs = Template, .page = "SpreadsheetTypeMenu(1)"}},
    {"SpreadsheetTypeMenu(2)",
     "Task entry",
     StartReport<2>,
     {.needs = Project, .page = "SpreadsheetTypeMenu(2)"}},
    {"SpreadsheetTypeMenu(3)",
     "Project summary",
     StartReport<3>,
     {.needs = Solved, .page = "SpreadsheetTypeMenu(3)"}},
    {"SpreadsheetTypeMenu(4)",
     "Project update",
     StartReport<4>,
     {.needs = Solved, .page = "SpreadsheetTypeMenu(4)"}},
    {"SpreadsheetTypeMenu(5)",
     "Loading by resource",
     StartReport<5>,
     {.needs = Template, .page = "SpreadsheetTypeMenu(5)"}},
    {"SpreadsheetTypeMenu(6)",
     "Loading by project",
     StartReport<6>,
     {.needs = Template, .page = "SpreadsheetTypeMenu(6)"}},
    {"SpreadsheetTypeMenu(7)",
     "Loading by day",
     StartReport<7>,
     {.needs = Template, .page = "SpreadsheetTypeMenu(7)"}},
    {"SpreadsheetTypeMenu(8)",
     "Overtime and overload",
     StartReport<8>,
     {.needs = Solved, .page = "SpreadsheetTypeMenu(8)"}},
    {"SpreadsheetTypeMenu(9)",
     "Overload",
     StartReport<9>,
     {.needs = Solved, .page = "SpreadsheetTypeMenu(9)"}},
    {"SpreadsheetTypeMenu(10)",
     "Date dependency",
     StartReport<10>,
     {.needs = Project, .page = "SpreadsheetTypeMenu(10)"}},
    {"SpreadsheetTypeMenu(11)",
     "Changes",
     StartReport<11>,
     {.needs = Solved, .page = "SpreadsheetTypeMenu(11)"}},
};

constexpr Command kCalendar[] = {
    {"CalendarMenu",
     nullptr,
     [](MainForm& m) { CalendarForm::Start(m.TheDesktop()); },
     {.button = 16, .toolTip = "Calendar", .needs = Template, .page = "CalendarForm"}},
};

constexpr Command kIterative[] = {
    {"IterativeQuickRiskSolveMenu",
     "Quick risk solve",
     [](MainForm& m) { RiskSolve(m, true); },
     {.needs = Solved}},
    {"IterativeDetailedRiskSolveMenu",
     "Detailed risk solve",
     [](MainForm& m) { RiskSolve(m, false); },
     {.needs = Solved}},
    {"IterativeQuickCrashSolveMenu",
     "Quick crash solve",
     [](MainForm& m) { CrashSolve(m, true); },
     {.needs = Solved}},
    {"IterativeDetailedCrashSolveMenu",
     "Detailed crash solve",
     [](MainForm& m) { CrashSolve(m, false); },
     {.needs = Solved}},
    {"IterativeShortenMenu",
     "Shorten",
     ShortenPlan,
     {.needs = Solved, .separator = "IterativeSeparatorMenu"}},
    {"IterativeToldOrderMenu", "Solve in told order", SolveInToldOrder, {.needs = Project}},
};

constexpr Command kGraphics[] = {
    {"GraphicsGanttMenu",
     "&Mechanized Gantt",
     StartGanttForm,
     {.button = 17, .toolTip = "Mechanized Gantt", .needs = Solved, .page = "GanttForm"}},
    {"GraphicsHistogramMenu",
     "&Histogram",
     StartHistogramForm,
     {.button = 18, .toolTip = "Histogram", .needs = Solved, .page = "HistogramForm"}},
    {"GraphicsBudgetMenu",
     "&Budget",
     [](MainForm& m) { StartChart(m, "budget"); },
     {.button = 19, .toolTip = "Budget", .needs = Solved, .page = "BudgetForm"}},
    {"GraphicsRiskAnalysisMenu", "&Risk analysis", StartRiskForm, {.needs = Project, .page = "RiskForm"}},
    {"GraphicsCrashAnalysisMenu", "&Crash analysis", StartCrashForm, {.page = "CrashForm"}},
    {"GraphicsWorkBreakdownMenu",
     "&Work breakdown structure",
     [](MainForm& m) { StartChart(m, "wbs"); },
     {.button = 20, .toolTip = "Work breakdown structure", .needs = Solved, .page = "WorkBreakdownForm"}},
    {"GraphicsPrecedenceMenu",
     "&Precedence diagram",
     [](MainForm& m) { StartChart(m, "precedence"); },
     {.button = 21, .toolTip = "Precedence diagram", .needs = Solved, .page = "PrecedenceForm"}},
    {"GraphicsStatusReportMenu",
     "&Status report",
     [](MainForm& m) { StatusReportForm::Start(m.TheDesktop()); },
     {.needs = Solved}},
};

constexpr Command kOutput[] = {
    {"OutputPrintMenu",
     "&Print",
     OutputPrint,
     {.button = 14, .toolTip = "Print", .whileEntering = kPrintable}},
    {"OutputExportMenu", "&Export table...", OutputExport, {.whileEntering = kPrintable}},
    {"OutputCopyMenu", "&Copy", OutputCopy, {.button = 13, .toolTip = "Copy", .whileEntering = kPrintable}},
    {"OutputPublishMenu",
     "Publish as &web page...",
     OutputPublish,
     {.needs = Project, .separator = "OutputSeparatorMenu"}},
};

constexpr Command kSetup[] = {
    {"SetupFontMenu", "&Font", SetupFont, {.button = 15, .toolTip = "Font", .whileEntering = kPrintable}},
    {"SetupPrinterMenu", "&Printer", [](MainForm& m) { m.SetupPrinter(); }, {.whileEntering = kPrintable}},
    {"SetupPreferencesMenu", "P&references", [](MainForm& m) { PreferencesForm::Start(m.TheDesktop()); }},
};

constexpr Command kHelp[] = {
    {"HelpWelcomeMenu",
     "&Welcome",
     [](MainForm& m) { m.DisplayHelpPage("Welcome"); },
     {.whileEntering = kOn}},
    {"HelpUsingHelpMenu",
     "&Using help",
     [](MainForm& m) { m.DisplayHelpPage("Using Help"); },
     {.whileEntering = kOn}},
    {"HelpMenuMenu", "&Menu", [](MainForm& m) { m.DisplayHelpPage("Menu"); }, {.whileEntering = kOn}},
    {"HelpToolbarMenu",
     "&Toolbar",
     [](MainForm& m) { m.DisplayHelpPage("Toolbar"); },
     {.whileEntering = kOn}},
    {"HelpGuideMeMenu",
     "&Guide me",
     [](MainForm& m) { m.DisplayHelpPage("Guide me"); },
     {.whileEntering = kOn}},
    {"HelpIndexMenu", "&Index", [](MainForm& m) { m.DisplayHelpPage("Index"); }, {.whileEntering = kOn}},
    {"HelpTechnicalSupportMenu",
     "Te&chnical support",
     [](MainForm& m) { m.DisplayHelpPage("Technical Support"); },
     {.whileEntering = kOn}},
    {"HelpAboutMenu",
     "&About",
     [](MainForm& m) { WelcomeForm::Start(m.TheDesktop()); },
     {.separator = "HelpSeparatorMenu"}},
};

constexpr Command kToolbarOnly[] = {
    {"SubprojectNew",
     nullptr,
     [](MainForm& m) { SubprojectEntryForm::StartAdd(m.TheDesktop(), *Memory(m).ThisProject()); },
     {.button = 4, .toolTip = "Subproject", .needs = Project}},
    {"TaskNew",
     nullptr,
     [](MainForm& m) { TaskEntryForm::StartAdd(m.TheDesktop(), *Memory(m).ThisProject()); },
     {.button = 5, .toolTip = "Task", .needs = Project}},
    {"DependencyNew",
     nullptr,
     [](MainForm& m) { m.TheTrees().Commands().AddDependency(); },
     {.button = 6, .toolTip = "Dependency"}},
    {"AssignmentNew",
     nullptr,
     [](MainForm& m) { m.TheTrees().Commands().AddAssignment(); },
     {.button = 7, .toolTip = "Assignment", .needs = ProjectAndTemplate}},
    {"ShiftNew",
     nullptr,
     [](MainForm& m) { ShiftEntryForm::StartAdd(m.TheDesktop(), *Memory(m).ThisTemplate()); },
     {.button = 9, .toolTip = "Shift", .needs = Template}},
    {"DepartmentNew", nullptr, CantCreateDepartment, {.button = 10, .toolTip = "Department"}},
    {"ResourceNew",
     nullptr,
     [](MainForm& m) { ResourceEntryForm::StartAdd(m.TheDesktop(), *Memory(m).ThisTemplate()); },
     {.button = 11, .toolTip = "Resource", .needs = Template}},
    {"ContextHelp",
     nullptr,
     [](MainForm& m) { m.ContextHelp(); },
     {.button = 22, .toolTip = "Help", .whileEntering = kOn}},
};

constexpr CommandMenu kMenus[] = {
    {"FileMenu", "&File", kFile, kOn},
    {"EditMenu", "&Edit", kEdit},
    {"ProjectMenu", "&Project", kProject},
    {"TemplateMenu", "&Template", kTemplate},
    {"JournalMenu", "&Journal", kJournal},
    {"SpreadsheetMenu", "&Spreadsheet", kSpreadsheet},
    {"CalendarMenu", "&Calendar", kCalendar},
    {"IterativeMenu", "&Iterative", kIterative},
    {"GraphicsMenu", "&Graphics", kGraphics},
    {"OutputMenu", "&Output", kOutput, kPrintable},
    {"SetupMenu", "Set&up", kSetup, kPrintable},
    {"HelpMenu", "&Help", kHelp, kOn},
    {nullptr, nullptr, kToolbarOnly},
};

}  // namespace

std::span<const CommandMenu> AllMenus() {
    return kMenus;
}

}  // namespace vortan
