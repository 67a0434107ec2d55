#include "shell/problems/ProblemDialogs.h"

#include "shell/Shell.h"
#include "shell/problems/OverageForm.h"
#include "support/Paths.h"
#include "support/TextPlan.h"

namespace vortan {
namespace {

/// The project House with the task 99, on which nothing waits, and a resource 7.
class ProblemDialogsTest : public ::testing::Test {
  protected:
    ProblemDialogsTest() {
        workspace.BroadcastNewThisTemplate();
        workspace.BroadcastNewThisProject();
    }
    void Make(const std::string& words) { MakePlan(workspace, words); }
    Vproject* Project(const char* name) { return workspace.FindOrCreateProject(name); }
    static Vdependency& LastOf(Vtask* task) { return *task->DependencyList().back(); }
    /// Solves, which must halt, and clicks on the text about it.
    void HaltAndClick(const char* status) {
        Halt(status);
        shell.Click("SolvePanel");
        EXPECT_TRUE(shell.platform.AllBoxesCame()) << status;
    }
    void Halt(const char* status) {
        workspace.RestartSolve();
        shell.Solve();
        EXPECT_EQ(shell.desktop.solver.SolveMessage(), status);
    }
    void ExpectComplete() {
        shell.Solve();
        EXPECT_EQ(shell.desktop.solver.SolveMessage(), "Solve complete");
    }
    std::string Text() { return shell.platform.boxTexts.back(); }
    std::string Selected() {
        const Node* node = shell.main.TheTrees().DragNode();
        return node ? node->Text : "";
    }

    Shell shell;
    Workspace& workspace = MakePlan(shell.desktop.workspace,
                                    R"(template Plant; resource 7; project House ""; task 99 "" start)");
    Vproject* house = workspace.ThisProject();
};

TEST_F(ProblemDialogsTest, ADummyTiesDanglingTasksTogether) {
    for (const std::string id : {"1", "2", "3", "4", "5", "6", "7", "8", "9"})
        Make("task " + id + " \"\" start");
    shell.platform.ExpectBox("Okay to Create Dummy Task?", BoxAnswer::No,
                             "The project House has 10:\r\n  (House) 1\r\n  (House) 2\r\n");
    HaltAndClick("Dangling tasks");
    EXPECT_EQ(Text().substr(Text().rfind("  (House)")),
              "  (House) 99\r\n\r\nDo you want to create a dummy task to tie all of the all of the dangling "
              "tasks together?");
    EXPECT_EQ(house->TaskList().size(), 10u);
    EXPECT_EQ(shell.desktop.solver.Mode(), SolveMode::Halted);

    Make("task 10 \"\" start");
    shell.desktop.settings.WriteSettings("EfficiencyText", "0.7");
    shell.platform.ExpectBox("Okay to Create Dummy Task?", BoxAnswer::Yes,
                             "The project House has 11 (only the first 10 are listed):\r\n  (House) 1\r\n");
    HaltAndClick("Dangling tasks");
    EXPECT_EQ(Text().find("  (House) 99"), std::string::npos);
    const Vtask* dummy = house->FindTask(100);
    ASSERT_TRUE(dummy);
    EXPECT_EQ(dummy->DependencyList().size(), 11u);
    EXPECT_EQ(dummy->DependencyList().front()->FromPercent(), 100);
    EXPECT_EQ(dummy->Efficiency(), 0.7);
    EXPECT_TRUE(house->Dirty());
    ExpectComplete();
}

TEST_F(ProblemDialogsTest, JournalsAreBroughtTogether) {
    const struct {
        std::string journals;  // of the other project; the last is the current one
        const char *title, *has, *advice;
        std::size_t count;
    } cases[] = {
        {"9/3/2001 9/10/2001", "Confirm Change Journal",
         "The project Shed has a journal for 9/3/2001, but its current journal set to 9/10/2001.",
         "create a journal of 9/10/2001 for project House.", 2},
        {"8/27/2001", "Confirm Add Journal",
         "The project Shed does not have a journal for 9/3/2001, and its current journal set to 8/27/2001.",
         "VORTAN will add a journal of 9/3/2001 to project Shed and set it as the current journal.", 2},
        {"8/27/2001 9/4/2001", "Confirm Add Journal", "current journal set to 9/4/2001.",
         "You may wish to change the active project from House to Shed.", 3},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.has);
        Make("journals " + one.journals + "; project Shed \"\"");
        Vproject* shed = Project("Shed");
        shed->SetCurrentIndex(shed->NumJournals() - 1);
        shell.platform.ExpectBox(one.title, BoxAnswer::No, one.has);
        HaltAndClick("Journal sync error");
        EXPECT_NE(Text().find(one.advice), std::string::npos) << Text();
        EXPECT_EQ(Text().find("You may wish") != std::string::npos, shed->Journal() > house->Journal());
        EXPECT_EQ(shell.desktop.solver.Mode(), SolveMode::Halted);
        shell.platform.ExpectBox(one.title, BoxAnswer::Yes, one.has);
        shell.Click("SolvePanel");
        ExpectComplete();
        EXPECT_EQ(shed->Journal(), house->Journal());
        EXPECT_EQ(shed->JournalDates().size(), one.count);
        shed->Delete();
        workspace.FreeVobject(shed);
    }
}

TEST_F(ProblemDialogsTest, AStartToStartDependencyIsAdded) {
    Make(R"(task 1 ""; task 99 after 1)");
    Vtask* task = house->FindTask(1);
    shell.platform.ExpectBox("No Dependencies", BoxAnswer::Ok, "The task 1 has no to-start dependencies.");
    HaltAndClick("Missing to-start dependency");
    EXPECT_EQ(Selected(), "1");

    Make(R"(task 2 "" start; task 1 after 2>50)");
    for (const BoxAnswer answer : {BoxAnswer::No, BoxAnswer::Yes}) {
        EXPECT_EQ(task->DependencyList().size(), 1u);
        shell.platform.ExpectBox("Confirm Add Start-To-Start", answer,
                                 "\r\n\r\nDo you want to add a start-to-start dependency from 2?");
        HaltAndClick("Missing to-start dependency");
    }
    ASSERT_EQ(task->DependencyList().size(), 2u);
    EXPECT_EQ(task->DependencyList().back()->BuildNodeText(), "2: SS");
    ExpectComplete();
}

TEST_F(ProblemDialogsTest, AProjectThatItsParentDoesNotShowIsShown) {
    Make("project Yard; project Shed; task 5");
    Vproject* shed = Project("Shed");
    shed->SetParent(Project("Yard"));
    shell.platform.ExpectBox("No Dependencies", BoxAnswer::Ok);
    HaltAndClick("Missing to-start dependency");
    EXPECT_EQ(Selected(), "5: <stub>");
    EXPECT_EQ(workspace.ThisProject(), shed);
}

TEST_F(ProblemDialogsTest, OfOthersTheObjectIsShown) {
    house->AddJournal(DateTime(37144));
    Make("journals 9/10/2001; project Yard; project Shed \"\"; project House; task 1 \"\"; task 2 \"\"");
    const auto shown = [&](const char* status, const char* selected) {
        workspace.SetThisProject(Project("Yard"));
        workspace.BroadcastNewThisProject();
        HaltAndClick(status);
        EXPECT_EQ(Selected(), selected);
        EXPECT_EQ(workspace.ThisProject(), house);
        EXPECT_EQ(shell.main.focusWidget(), &shell.main.TheTrees().ProjectTree().View());
        EXPECT_THROW(shell.Dialog(), std::runtime_error);
    };
    Vtask *task = house->FindTask(1), *other = house->FindTask(2), *end = house->FindTask(99);
    workspace.SetThisProject(house);
    Make("task 1 work 480 start; task 2 start; task 99 after 1 after 2");
    shown("Effort without resources", "1");
    workspace.SetThisProject(house);
    Make("task 1 by 7@.005");
    shown("No working time", "1");
    task->AssignmentList().front()->SetHours(8);
    workspace.SetThisProject(house);
    Make("task 1 after 2; task 2 after 1");
    HaltAndClick("Circular dependency");
    EXPECT_TRUE(Selected() == "1" || Selected() == "2") << Selected();
    LastOf(other).Delete();
    other->SetInclude(false);
    LastOf(end).Delete();
    shown("Missing prerequisite", "2");
    LastOf(task).Delete();
    Make("task 3 is Shed; task 1 after 3:50");
    shown("must be either 0% or 100%", "3: Shed: SP");
    LastOf(task).SetFromPercent(100);
    Make("project Yard; task 1 is Shed");
    shown("Subproject is claimed by project Yard", "3: Shed");
}

TEST_F(ProblemDialogsTest, WhatIsGoneSinceTheSolveIsSolvedAnew) {
    Make("project Shed; project House; task 2 is Shed; task 1 start after 2:50; task 99 after 1");
    Halt("must be either 0% or 100%");
    workspace.FreeVobject(&LastOf(house->FindTask(1)));
    shell.Click("SolvePanel");
    ExpectComplete();
    // There is nothing to click on now.
    shell.Click("SolvePanel");
    EXPECT_EQ(shell.desktop.solver.Mode(), SolveMode::Idle);
}

/// A plan that halts because a plumber is wanted twice.
class OverageFormTest : public ::testing::Test {
  protected:
    OverageFormTest() {
        shell.desktop.files.LoadFile(ExampleFile("overtime.vta"));
        shell.Solve();
        shell.Click("SolvePanel");
    }
    std::string OpenForm() { return S(shell.Dialog().objectName()); }

    Shell shell;
    Workspace& workspace = shell.desktop.workspace;
};

TEST_F(OverageFormTest, ShowsTheShortage) {
    EXPECT_EQ(S(shell.Dialog().windowTitle()), "Overtime needed");
    const std::pair<const char*, const char*> boxes[] = {
        {"TemplateText", "Bath crew"},
        {"ResourceText", "2: Ben Carter"},
        {"ProjectText", "Bathroom: Renew the bathroom, 12 Mill Road"},
        {"TaskText", "3: Move the radiator"},
        {"BeginningText", "5/12/2027"},
        {"RequestedHoursText", "6"},
        {"AssignedHoursText", "0"}};
    for (const auto& [box, value] : boxes) EXPECT_EQ(shell.Value(box), value) << box;
    const Vwindow& table =
        static_cast<TableView*>(shell.Find<QWidget>("Vwindow").parentWidget())->TheVwindow();
    ASSERT_EQ(table.Rows(), 3);
    EXPECT_EQ(std::string(table.Cell(1, 0)) + " " + std::string(table.Cell(2, 1)) + " " +
                  std::string(table.Cell(1, 3)),
              "8:00:00 AM 5:00:00 PM 2: New water and waste pipes");
    shell.Press(Qt::Key_Escape);
    EXPECT_FALSE(shell.IsOpen("OverageForm"));
    EXPECT_EQ(shell.desktop.solver.Mode(), SolveMode::Halted);
}

TEST_F(OverageFormTest, LeadsToTheAssignmentOrTheSolveRule) {
    shell.Click("OkCommand");
    ASSERT_EQ(OpenForm(), "AssignmentEntryForm");
    EXPECT_EQ(shell.main.TheTrees().DragNode()->Image(), NodeKind::Assignment);
    EXPECT_EQ(shell.Value("HoursText"), "6");
    shell.Press(Qt::Key_Escape);
    shell.Click("SolvePanel");
    shell.Do("ChangeSolveRulesOption!;OkCommand!");
    ASSERT_EQ(OpenForm(), "ProjectEntryForm");
    EXPECT_EQ(shell.Focus(), "SolveRulesCombo");
    EXPECT_EQ(shell.main.TheTrees().DragNode(), nullptr);
    shell.Do("SolveRulesCombo#1;OkCommand!");
    shell.Solve();
    EXPECT_EQ(shell.desktop.solver.SolveMessage(), "Solve complete");
}

TEST_F(OverageFormTest, AnAssignmentThatIsGoneLeadsNowhere) {
    const Link<Vassignment> assignment = shell.desktop.solver.Problem()->assignment;
    workspace.FreeVobject(assignment.Get());
    shell.Click("OkCommand");
    EXPECT_THROW(shell.Dialog(), std::runtime_error);
    shell.Click("SolvePanel");
    shell.Solve();
    EXPECT_NE(shell.desktop.solver.SolveMessage(), "Overtime needed");
}

}  // namespace
}  // namespace vortan
