#include "shell/problems/ProblemDialogs.h"

#include "shell/Shell.h"
#include "shell/trees/NodeView.h"
#include "shell/trees/ProjectTreeForm.h"

namespace vortan {
namespace {

constexpr double kMonday = 37137;  // 2001-09-03

/// The project House with the task 99, on which nothing waits.
class ProblemDialogsTest : public ::testing::Test {
  protected:
    ProblemDialogsTest() {
        workspace.SetThisTemplate(plant);
        workspace.SetThisProject(house);
        workspace.BroadcastNewThisTemplate();
        workspace.BroadcastNewThisProject();
    }
    Vtemplate* Template() {
        Vtemplate* made = workspace.FindOrCreateTemplate("Plant");
        made->AddJournal(DateTime(kMonday));
        made->FindOrCreateShift("Standard");
        return made;
    }
    Vproject* Project(const char* name, double journal = kMonday) {
        Vproject* made = workspace.FindOrCreateProject(name);
        made->SetDescription("");
        made->AddJournal(DateTime(journal));
        return made;
    }
    /// Starts on the Monday and is required by the last task.
    Vtask* Task(int id, int hours = 0) {
        Vtask* task = house->FindOrCreateTask(id);
        task->SetDescription("");
        task->SetMostLikely(hours * 60);
        Depend(task, nullptr);
        if (last) Depend(last, task);
        return task;
    }
    Vdependency* Depend(Vtask* task, Vtask* required) {
        auto* dependency = workspace.NewVObject<Vdependency>();
        dependency->SetTask(task);
        dependency->SetTaskRequired(required);
        dependency->SetDepDate(DateTime(kMonday));
        return dependency;
    }
    Vassignment* Assign(Vtask* task) {
        auto* assignment = workspace.NewVObject<Vassignment>();
        assignment->SetTask(task);
        assignment->SetResourceRequired(miller);
        return assignment;
    }
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
    Workspace& workspace = shell.desktop.workspace;
    Vtemplate* plant = Template();
    Vresource* miller = plant->FindOrCreateResource(7);
    Vproject* house = Project("House");
    Vtask* last = nullptr;
    Vtask* end = last = Task(99);
};

TEST_F(ProblemDialogsTest, ADummyTiesDanglingTasksTogether) {
    last = nullptr;
    for (int id = 1; id < 10; ++id) Task(id);
    shell.platform.ExpectBox("Okay to Create Dummy Task?", BoxAnswer::No,
                             "The project House has 10:\r\n  (House) 1\r\n  (House) 2\r\n");
    HaltAndClick("Dangling tasks");
    EXPECT_EQ(Text().substr(Text().rfind("  (House)")),
              "  (House) 99\r\n\r\nDo you want to create a dummy task to tie all of the all of the dangling "
              "tasks together?");
    EXPECT_EQ(house->TaskList().size(), 10u);
    EXPECT_EQ(shell.desktop.solver.Mode(), SolveMode::Halted);

    Task(10);
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
        double first,
            second;  // journals of the other project; the second is the current one, if there is one
        const char *title, *has, *advice;
        std::size_t journals;
    } cases[] = {
        {kMonday, kMonday + 7, "Confirm Change Journal",
         "The project Shed has a journal for 9/3/2001, but its current journal set to 9/10/2001.",
         "create a journal of 9/10/2001 for project House.", 2},
        {kMonday - 7, 0, "Confirm Add Journal",
         "The project Shed does not have a journal for 9/3/2001, and its current journal set to 8/27/2001.",
         "VORTAN will add a journal of 9/3/2001 to project Shed and set it as the current journal.", 2},
        {kMonday - 7, kMonday + 1, "Confirm Add Journal", "current journal set to 9/4/2001.",
         "You may wish to change the active project from House to Shed.", 3},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.has);
        Vproject* shed = Project("Shed", one.first);
        if (one.second != 0) shed->AddJournal(DateTime(one.second));
        shell.platform.ExpectBox(one.title, BoxAnswer::No, one.has);
        HaltAndClick("Journal sync error");
        EXPECT_NE(Text().find(one.advice), std::string::npos) << Text();
        EXPECT_EQ(Text().find("You may wish") != std::string::npos, shed->Journal() > house->Journal());
        EXPECT_EQ(shell.desktop.solver.Mode(), SolveMode::Halted);
        shell.platform.ExpectBox(one.title, BoxAnswer::Yes, one.has);
        shell.Click("SolvePanel");
        ExpectComplete();
        EXPECT_EQ(shed->Journal(), house->Journal());
        EXPECT_EQ(shed->JournalDates().size(), one.journals);
        shed->Delete();
        workspace.FreeVobject(shed);
    }
}

TEST_F(ProblemDialogsTest, AStartToStartDependencyIsAdded) {
    Vtask* task = Task(1);
    task->DependencyList().front()->Delete();
    shell.platform.ExpectBox("No Dependencies", BoxAnswer::Ok, "The task 1 has no to-start dependencies.");
    HaltAndClick("Missing to-start dependency");
    EXPECT_EQ(Selected(), "1");

    Depend(task, Task(2))->SetToPercent(50);
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
    Vproject* shed = Project("Shed");
    shed->SetParent(Project("Yard"));
    shed->FindOrCreateTask(5);
    shell.platform.ExpectBox("No Dependencies", BoxAnswer::Ok);
    HaltAndClick("Missing to-start dependency");
    EXPECT_EQ(Selected(), "5: <stub>");
    EXPECT_EQ(workspace.ThisProject(), shed);
}

TEST_F(ProblemDialogsTest, OfOthersTheObjectIsShown) {
    Vproject* yard = Project("Yard");
    for (Vproject* project : {house, yard}) project->AddJournal(DateTime(kMonday + 7));
    const auto shown = [&](const char* status, const char* selected) {
        workspace.SetThisProject(yard);
        workspace.BroadcastNewThisProject();
        HaltAndClick(status);
        EXPECT_EQ(Selected(), selected);
        EXPECT_EQ(workspace.ThisProject(), house);
        EXPECT_EQ(shell.main.focusWidget(), &shell.main.TheTrees().ProjectTree().View());
        EXPECT_THROW(shell.Dialog(), std::runtime_error);
    };
    Vtask *task = Task(1, 8), *other = Task(2);
    shown("Effort without resources", "1");
    Vassignment* assignment = Assign(task);
    assignment->SetHours(0.005);
    shown("No working time", "1");
    assignment->SetHours(8);

    Vdependency* circle[] = {Depend(task, other), Depend(other, task)};
    HaltAndClick("Circular dependency");
    EXPECT_TRUE(Selected() == "1" || Selected() == "2") << Selected();
    circle[1]->Delete();
    other->SetInclude(false);
    last->DependencyList().back()->Delete();
    shown("Missing prerequisite", "2");
    circle[0]->Delete();

    Vtask* link = house->FindOrCreateTask(3);
    Vproject* shed = Project("Shed", kMonday + 7);
    link->SetSubproject(shed);
    Vdependency* partial = Depend(task, link);
    partial->SetFromPercent(50);
    shown("must be either 0% or 100%", "3: Shed: SP");
    partial->SetFromPercent(100);
    yard->FindOrCreateTask(1)->SetSubproject(shed);
    shown("Subproject is claimed by project Yard", "3: Shed");
}

TEST_F(ProblemDialogsTest, WhatIsGoneSinceTheSolveIsSolvedAnew) {
    Vtask* link = house->FindOrCreateTask(2);
    link->SetSubproject(Project("Shed"));
    Vdependency* wrong = Depend(Task(1), link);
    wrong->SetFromPercent(50);
    Halt("must be either 0% or 100%");
    workspace.FreeVobject(wrong);
    shell.Click("SolvePanel");
    ExpectComplete();
    // There is nothing to click on now.
    shell.Click("SolvePanel");
    EXPECT_EQ(shell.desktop.solver.Mode(), SolveMode::Idle);
}

}  // namespace
}  // namespace vortan
