#include <QFontDialog>

#include "shell/Shell.h"
#include "support/Paths.h"
#include "support/PlanFiles.h"

namespace vortan {
namespace {

/// The main window with an example in memory, solved.
class MainFormTest : public ::testing::Test {
  protected:
    void Open(const char* name) {
        shell.desktop.files.LoadFile(ExampleFile(name));
        shell.Solve();
    }
    QComboBox& Box(const char* name) { return shell.Find<QComboBox>(name); }
    bool Enabled(const char* action) { return shell.main.Action(action).isEnabled(); }

    Shell shell;
    Workspace& workspace = shell.desktop.workspace;
};

TEST_F(MainFormTest, CommandsWithoutWhatTheyNeedWarnAndStop) {
    const auto warned = [this](const char* title, const std::vector<const char*>& actions) {
        for (const char* action : actions) {
            shell.platform.ExpectBox(title, BoxAnswer::Ok);
            shell.Choose(action);
            EXPECT_TRUE(shell.platform.AllBoxesCame()) << action;
        }
    };
    warned("No Templates in Memory", {"CalendarMenu", "SpreadsheetTypeMenu(1)", "SpreadsheetTypeMenu(7)"});
    warned("No Projects in Memory",
           {"GraphicsGanttMenu", "GraphicsRiskAnalysisMenu", "GraphicsStatusReportMenu",
            "SpreadsheetTypeMenu(2)", "SpreadsheetTypeMenu(4)", "IterativeQuickRiskSolveMenu",
            "JournalNewMenu", "JournalSelectMenu", "JournalSetAsPlanMenu"});
    warned("Crash Data Unavailable", {"GraphicsCrashAnalysisMenu"});
    warned("Not Ready Yet", {"JournalModifyMenu"});
    warned("Memory Already Empty", {"FileNewMenu"});
    for (const char* action : {"FileSaveMenu", "ProjectDeleteMenu", "TemplateModifyMenu"})
        EXPECT_FALSE(Enabled(action)) << action;
    EXPECT_FALSE(shell.Find<QToolButton>("Toolbar.Save").isEnabled());
    Open("house.vta");
    warned("Plan Equals Current", {"SpreadsheetTypeMenu(4)", "SpreadsheetTypeMenu(11)"});
}

TEST_F(MainFormTest, PublishesAPageOfASolvedOrHaltedPlan) {
    const std::string folder = shell.platform.Directory() + "/";
    const auto publish = [&](const std::string& name, BoxAnswer costs) {
        shell.platform.ExpectBox("Publish As Web Page", costs);
        if (costs != BoxAnswer::Cancel) shell.platform.ExpectSaveFileDialog({!name.empty(), folder + name});
        shell.Choose("OutputPublishMenu");
    };
    Open("house.vta");
    publish("house.html", BoxAnswer::Yes);
    publish("plan.vta", BoxAnswer::No);  // a plan is never written over
    publish("", BoxAnswer::No);
    publish("never.html", BoxAnswer::Cancel);
    EXPECT_EQ(NamesIn(folder), (std::vector<std::string>{"house.html", "plan.vta.html"}));
    EXPECT_NE(FileBytes(folder + "house.html").find("Total cost"), std::string::npos);
    EXPECT_EQ(FileBytes(folder + "plan.vta.html").find("Total cost"), std::string::npos);
    Open("overtime.vta");
    publish("halted.html", BoxAnswer::No);
    EXPECT_NE(FileBytes(folder + "halted.html").find("<p>Journal sync error: "), std::string::npos);
    shell.platform.ExpectBox("Publish As Web Page", BoxAnswer::No);
    shell.platform.ExpectSaveFileDialog({true, folder + "no/x.html"});
    shell.platform.ExpectBox("Publish As Web Page", BoxAnswer::Ok, "x.html");
    shell.Choose("OutputPublishMenu");
}

TEST_F(MainFormTest, AHaltedSolveIsExplained) {
    Open("overtime.vta");
    shell.platform.ExpectBox("Solve Error", BoxAnswer::Ok);
    shell.Choose("GraphicsGanttMenu");
    auto& panel = shell.Find<QToolButton>("SolvePanel");
    for (const char* text : {"Overtime needed", "Solving"}) {
        shell.main.Status().SolveStatus(text);
        const bool halted = shell.desktop.solver.Mode() == SolveMode::Halted;
        EXPECT_EQ(panel.icon().isNull(), !halted);
        EXPECT_EQ(panel.palette() == shell.main.palette(), !halted);
        EXPECT_EQ(panel.toolTip().contains("Click to see what is wrong and to repair it"), halted);
        EXPECT_EQ(S(panel.accessibleDescription()), text);
        if (halted) shell.Click("SolvePanel");
        if (halted) workspace.RestartSolve();
    }
    EXPECT_TRUE(shell.IsOpen("OverageForm"));
}

TEST_F(MainFormTest, BoxesShowAndChooseWhatIsActive) {
    EXPECT_EQ(Box("ProjectCombo").currentText(), "<no projects>");
    EXPECT_EQ(Box("TemplateCombo").currentText(), "<no templates>");
    EXPECT_EQ(Box("JournalCombo").currentText(), "<journal n/a>");
    EXPECT_FALSE(Box("ProjectCombo").isEnabled());

    Open("launch.vta");
    Open("house.vta");
    QComboBox& projects = Box("ProjectCombo");
    const Vproject* before = workspace.ThisProject();
    EXPECT_EQ(S(projects.currentText()), before->ProjectName());
    for (int i = 0; i < projects.count(); ++i) {
        const Vproject* listed = workspace.ProjectList().Find(S(projects.itemText(i)));
        EXPECT_TRUE(listed && (!listed->Parent() || listed == before));
    }
    projects.setFocus();
    const int other = projects.currentIndex() == 0 ? 1 : 0;
    QTest::keyClick(&projects, other == 0 ? Qt::Key_Up : Qt::Key_Down);
    EXPECT_NE(workspace.ThisProject(), before);
    EXPECT_EQ(S(projects.currentText()), workspace.ThisProject()->ProjectName());

    // A subproject that is active is in the list as well, as long as it is.
    Vproject* sub = nullptr;
    for (Vproject* project : workspace.ProjectList()) sub = project->Parent() ? project : sub;
    ASSERT_TRUE(sub);
    workspace.SetThisProject(sub);
    workspace.BroadcastNewThisProject();
    EXPECT_EQ(S(projects.currentText()), sub->ProjectName());
}

TEST_F(MainFormTest, JournalCommandsMoveTheBox) {
    Open("house.vta");
    const DateTime first = workspace.ThisProject()->Journal();
    shell.platform.ExpectInput({true, "1/5/2099"});
    shell.Choose("JournalNewMenu");
    EXPECT_EQ(FormatDate(workspace.ThisProject()->Journal()), "1/5/2099");
    EXPECT_EQ(Box("JournalCombo").count(), 2);
    EXPECT_EQ(Box("JournalCombo").accessibleName(), "active journal");
    EXPECT_TRUE(Box("JournalCombo").toolTip().endsWith("\n" + Box("JournalCombo").currentText()));
    shell.main.resize(300, 300);
    EXPECT_GT(Box("JournalCombo").width(),
              Box("JournalCombo").fontMetrics().horizontalAdvance(Box("JournalCombo").currentText()));
    EXPECT_TRUE(Box("JournalCombo").currentText().startsWith("1/5/2099"));
    EXPECT_EQ(shell.desktop.solver.Mode(), SolveMode::Restart);

    shell.Choose("JournalSetAsPlanMenu");
    EXPECT_EQ(workspace.ThisProject()->PlanIndex(), 1);
    EXPECT_EQ(S(Box("JournalCombo").currentText()), workspace.ThisProject()->JournalNodeText(1));

    Box("JournalCombo").setFocus();
    QTest::keyClick(&Box("JournalCombo"), Qt::Key_Up);
    EXPECT_EQ(workspace.ThisProject()->Journal(), first);
}

TEST_F(MainFormTest, AnEntryFormShutsTheRestOff) {
    Open("house.vta");
    const auto states = [this] {
        std::string all;
        for (const char* action :
             {"FileMenu", "FileExitMenu", "HelpIndexMenu", "ContextHelp", "FileOpenMenu", "ProjectMenu",
              "HelpAboutMenu", "OutputPrintMenu", "SetupPreferencesMenu", "JournalSetAsPlanMenu",
              "CalendarMenu", "FileRecentMenu(1)", "FileSaveMenu"})
            all += Enabled(action) ? '1' : '0';
        for (const char* control : {"ProjectCombo", "ProjectTreeForm", "Toolbar.Open", "Toolbar.Help"})
            all += shell.Find<QWidget>(control).isEnabled() ? '1' : '0';
        return all;
    };
    for (int time = 0; time < 2; ++time) {
        shell.Choose("SetupPreferencesMenu");
        // A message that updates the menu meanwhile does not open it.
        workspace.BroadcastNewThisTemplate();
        EXPECT_EQ(states(), "11110000000000001");
        shell.Press(Qt::Key_Escape);
        EXPECT_EQ(states(), "11111111111111111");
    }
}

TEST_F(MainFormTest, OnePageAtATimeAndTheFirstCloseTakesItAway) {
    Open("house.vta");
    shell.Choose("GraphicsGanttMenu");
    EXPECT_FALSE(shell.Find<QWidget>("ProjectTreeForm").isVisible());
    shell.Choose("CalendarMenu");
    EXPECT_FALSE(shell.IsOpen("GanttForm"));
    ASSERT_EQ(S(shell.main.FullPage()->FormName()), "CalendarForm");
    InBox([&] { shell.Choose("SetupFontMenu"); },
          [](QWidget& box) { dynamic_cast<QFontDialog&>(box).reject(); });
    shell.platform.ExpectBox("Print Not Supported", BoxAnswer::Ok,
                             "The print function is not supported for Calendar.");
    shell.Choose("OutputPrintMenu");

    shell.main.close();
    EXPECT_EQ(shell.main.FullPage(), nullptr);
    EXPECT_TRUE(shell.main.isVisible());
    EXPECT_TRUE(shell.Find<QWidget>("ProjectTreeForm").isVisible());
    // With a dialog in front there is no page to take away.
    shell.Choose("CalendarMenu");
    shell.Choose("SetupPreferencesMenu");
    shell.main.close();
    EXPECT_FALSE(shell.main.isVisible());
    EXPECT_FALSE(shell.IsOpen("CalendarForm") || shell.IsOpen("PreferencesForm"));
}

TEST_F(MainFormTest, DeletingTheActiveProjectTakesItsWholeMaster) {
    Open("launch.vta");
    Open("house.vta");
    Vproject* sub = nullptr;
    for (Vproject* project : workspace.ProjectList()) sub = project->Parent() ? project : sub;
    workspace.SetThisProject(sub);
    workspace.BroadcastNewThisProject();
    sub->SetDirty(true);
    shell.platform.ExpectBox("Save All Changes To Disk", BoxAnswer::Cancel,
                             "Changes have been made to project " + sub->ProjectName() + ".  These");
    shell.Choose("ProjectDeleteMenu");
    EXPECT_EQ(workspace.ThisProject(), sub);
    shell.platform.ExpectBox("Save All Changes To Disk", BoxAnswer::No);
    shell.Choose("ProjectDeleteMenu");
    ASSERT_EQ(workspace.ProjectList().size(), 1U);
    EXPECT_EQ(Box("ProjectCombo").count(), 1);
    shell.Solve();
    EXPECT_EQ(shell.desktop.solver.Mode(), SolveMode::Idle);

    while (workspace.ThisTemplate()) {
        workspace.ThisTemplate()->SetDirty(false);
        shell.Choose("TemplateDeleteMenu");
    }
    EXPECT_EQ(Box("TemplateCombo").currentText(), "<no templates>");
}

TEST_F(MainFormTest, RecentFilesAreListedAndOpen) {
    const std::string file = ExampleFile("house.vta");
    shell.desktop.settings.AddRecentFile("/gone/R&D.vtb");
    shell.desktop.settings.AddRecentFile(file);
    shell.main.RedoRecentMenu();
    EXPECT_EQ(S(shell.main.Action("FileRecentMenu(1)").text()), "&1 " + file);
    EXPECT_EQ(S(shell.main.Action("FileRecentMenu(2)").text()), "&2 /gone/R&&D.vtb");
    EXPECT_FALSE(shell.main.Action("FileRecentMenu(3)").isVisible());
    shell.platform.ExpectBox("File Open Error", BoxAnswer::Ok, "/gone/R&D.vtb");
    shell.Choose("FileRecentMenu(2)");
    shell.main.RedoRecentMenu();
    EXPECT_FALSE(shell.main.Action("FileRecentMenu(2)").isVisible());  // what is gone is dropped
    shell.Choose("FileRecentMenu(1)");
    EXPECT_TRUE(Enabled("FileSaveMenu"));
}

TEST_F(MainFormTest, ALongStepShowsTheHourglassOnce) {
    shell.main.Status().StatusMessage("Loading");
    shell.main.Status().StatusMessage("Loading more");
    EXPECT_NE(QApplication::overrideCursor(), nullptr);
    shell.main.Status().StatusMessage("");
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

// ---- preferences

TEST_F(MainFormTest, PreferencesAreTheSettings) {
    Settings& settings = shell.desktop.settings;
    const auto stored = [&] {
        std::string all;
        for (const char* name : {"MilestoneOption", "BarOption", "ShowMarkersCheck", "EfficiencyText"})
            all += settings.ReadSettings(name) + " ";
        return all + std::to_string(workspace.BackupMinutes);
    };
    const std::string before = stored();
    for (const bool ok : {false, true}) {
        shell.Choose("SetupPreferencesMenu");
        EXPECT_TRUE(shell.Find<QAbstractButton>("BarOption").isChecked());
        EXPECT_TRUE(shell.Find<QAbstractButton>("ShowMarkersCheck").isChecked());
        EXPECT_EQ(Box("DependencyArrowsCombo").currentText(), "Control");
        shell.Do("MilestoneOption!;ShowMarkersCheck!;EfficiencyText=0.7");
        Box("AutomaticBackupCombo").setFocus();
        QTest::keyClicks(&Box("AutomaticBackupCombo"), "10");
        shell.Press(ok ? Qt::Key_Return : Qt::Key_Escape);
        EXPECT_FALSE(shell.IsOpen("PreferencesForm"));
        EXPECT_EQ(stored(), ok ? "X - - 0.7 10" : before);
    }
    settings.WriteSettings("AutomaticBackupCombo", "15");  // not listed
    shell.Choose("SetupPreferencesMenu");
    EXPECT_EQ(S(Box("AutomaticBackupCombo").currentText()), "15");
    shell.Click("OkCommand");
    EXPECT_EQ(workspace.BackupMinutes, 15);
}

}  // namespace
}  // namespace vortan
