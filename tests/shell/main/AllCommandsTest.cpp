#include <map>

#include "shell/Shell.h"
#include "shell/main/Command.h"
#include "support/PlanFiles.h"

namespace vortan {
namespace {

/// What a user does to go through with a command, and what comes of it for the plan. A command that is in no
/// row fails the test.
struct Tried {
    enum Effect { Step, None, Anew } effect = None;  ///< Anew: memory is emptied, which nothing takes back
    const char* steps = "";                          ///< once the command has begun, as Driver::Do
    const char* box = nullptr;                       ///< that comes first
    const char* input = nullptr;                     ///< empty: it is cancelled
};

/// Commands that need nothing else and change nothing.
const std::string kPlain =
    "FileOpenMenu FileSaveMenu EditUndoMenu EditRedoMenu EditWhyMenu EditTreeColumnsMenu ProjectSelectMenu "
    "TemplateSelectMenu "
    "JournalSelectMenu SpreadsheetTypeMenu(1) SpreadsheetTypeMenu(2) SpreadsheetTypeMenu(3) "
    "SpreadsheetTypeMenu(4) SpreadsheetTypeMenu(5) SpreadsheetTypeMenu(6) SpreadsheetTypeMenu(7) "
    "SpreadsheetTypeMenu(8) SpreadsheetTypeMenu(10) SpreadsheetTypeMenu(11) CalendarMenu GraphicsGanttMenu "
    "GraphicsHistogramMenu GraphicsBudgetMenu GraphicsWorkBreakdownMenu GraphicsPrecedenceMenu "
    "SetupFontMenu SetupPrinterMenu SetupPreferencesMenu HelpWelcomeMenu HelpUsingHelpMenu "
    "HelpMenuMenu HelpToolbarMenu HelpGuideMeMenu HelpIndexMenu HelpTechnicalSupportMenu "
    "HelpAboutMenu ContextHelp ";

const std::map<std::string, Tried>& Rows() {
    using enum Tried::Effect;
    static const std::map<std::string, Tried> rows = {
        {"FileNewMenu", {Anew}},
        {"FileExitMenu", {Anew}},
        {"EditFindMenu", {None, "FindText=billing"}},
        {"EditGoToMenu", {None, "", nullptr, "3"}},
        {"ProjectNewMenu", {Step, "ProjectNameText=Fresh;OkCommand!"}},
        {"ProjectModifyMenu", {Step, "DescriptionText=Other;OkCommand!"}},
        {"ProjectDeleteMenu", {Step}},
        {"TemplateNewMenu", {Step, "TemplateNameText=Fresh;OkCommand!"}},
        {"TemplateModifyMenu", {Step, "DescriptionText=Other;OkCommand!"}},
        {"TemplateDeleteMenu", {Step}},
        {"JournalNewMenu", {Step, "", nullptr, "1/5/2099"}},
        {"JournalModifyMenu", {None, "", "Not Ready Yet"}},
        {"JournalDeleteMenu", {None, "", "Not Ready Yet"}},
        {"JournalSetAsPlanMenu", {Step}},
        {"SpreadsheetTypeMenu(9)", {None, "", "Spreadsheet Empty"}},
        {"IterativeQuickRiskSolveMenu", {None, "", nullptr, "2"}},
        {"IterativeDetailedRiskSolveMenu", {None, "", nullptr, "2"}},
        {"IterativeQuickCrashSolveMenu", {None, "", nullptr, ""}},
        {"IterativeDetailedCrashSolveMenu", {None, "", nullptr, ""}},
        {"IterativeShortenMenu", {None, "", nullptr, ""}},
        {"IterativeToldOrderMenu", {None, "", "Solve in Told Order"}},
        {"GraphicsRiskAnalysisMenu", {None, "", "No Risk Data"}},
        {"GraphicsCrashAnalysisMenu", {None, "", "Crash Data Unavailable"}},
        {"GraphicsStatusReportMenu", {None, "", "File Copy Error"}},
        {"OutputPrintMenu", {None, "", "Print Not Supported"}},
        {"OutputExportMenu", {None, "", "Not Applicable"}},
        {"OutputCopyMenu", {None, "", "Copy Not Supported"}},
        {"OutputPublishMenu", {None, "", "Publish As Web Page"}},
        {"SubprojectNew", {Step, "ProjectCombo#0;OkCommand!"}},
        {"TaskNew", {Step, "OkCommand!"}},
        {"DependencyNew", {Step, "DateOption!;OkCommand!"}},
        {"AssignmentNew", {Step, "ResourceIdCombo#1;OkCommand!"}},
        {"ShiftNew", {Step, "ShiftNameText=Late;OkCommand!"}},
        {"DepartmentNew", {None, "", "Can't Create Department"}},
        {"ResourceNew", {Step, "OkCommand!"}},
    };
    return rows;
}

/// On a plan of two journals that has its first task selected.
void Try(const std::string& id, const Tried& tried) {
    SCOPED_TRACE(id);
    Shell shell;
    Workspace& workspace = shell.desktop.workspace;
    shell.desktop.Run("Test", [&] { shell.OpenExample("programme.vta"); });
    shell.Solve();
    const auto bytes = [&] {
        shell.Solve();
        return SaveRecords(workspace);
    };
    if (id == "SubprojectNew") {
        Vproject& active = *workspace.ThisProject();
        shell.Choose("ProjectNewMenu");
        shell.Do("ProjectNameText=Spare;OkCommand!");
        workspace.TheHistory().Clear();
        workspace.SetThisProject(&active);
        workspace.BroadcastNewThisProject();
        shell.Solve();
        workspace.TheHistory().Clear();
    }
    shell.Select(*workspace.ThisProject()->TaskList().begin());
    const std::string before = bytes();
    // Dialogs of the system are left again.
    QTimer leave;
    QObject::connect(&leave, &QTimer::timeout, [] {
        if (auto* box = qobject_cast<QDialog*>(QApplication::activeModalWidget())) box->reject();
    });
    leave.start(20);
    if (tried.box) shell.platform.ExpectBox(tried.box, BoxAnswer::Cancel);
    if (id == "FileSaveMenu") shell.platform.ExpectSaveFileDialog({});
    if (tried.input) shell.platform.ExpectInput({*tried.input != '\0', tried.input});
    shell.Choose(id.c_str());
    shell.Do(tried.steps);
    EXPECT_TRUE(shell.platform.AllBoxesCame());
    const std::string after = bytes();
    EXPECT_EQ(after == before, tried.effect == Tried::None);
    const std::string name = workspace.TheHistory().UndoName();
    EXPECT_EQ(name.empty(), tried.effect != Tried::Step) << name;
    if (tried.effect != Tried::Step) return;
    shell.Choose("EditUndoMenu");
    EXPECT_TRUE(bytes() == before) << name;
    shell.Choose("EditRedoMenu");
    EXPECT_TRUE(bytes() == after) << name;
}

TEST(AllCommands, AreUndoneOrChangeNothing) {
    for (const CommandMenu& menu : AllMenus()) {
        for (const Command& command : menu.commands) {
            const auto tried = Rows().find(command.id);
            const bool plain = (" " + kPlain).find(std::string(" ") + command.id + " ") != std::string::npos;
            EXPECT_TRUE(plain || tried != Rows().end()) << command.id << " is not tried";
            if (plain || tried != Rows().end()) Try(command.id, plain ? Tried() : tried->second);
        }
    }
}

}  // namespace
}  // namespace vortan
