#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"
#include "solve/Solver.h"

#include <gtest/gtest.h>

#include <deque>
#include <functional>

#include "model/Fault.h"
#include "persist/Records.h"
#include "support/LoadedPlan.h"
#include "support/PlanGenerator.h"

namespace vortan {
namespace {

using Mode = SolveMode;

/// Counts what screens would hear.
struct SolutionCounter : Listener {
    void NewSolution() override { ++count; }
    int count = 0;
};

class SolverTest : public testing::Test {
  protected:
    SolverTest() {
        workspace().AddListener(&heard);
        solver().SetServiceInterval(std::chrono::microseconds(0));
    }
    Workspace& workspace() { return plan.workspace; }
    Solver& solver() { return plan.solver; }
    ScriptedPlatform& platform() { return plan.platform; }

    /// Lets the armed timer fire.
    void Fire() {
        ASSERT_TRUE(platform().solveTimerArmed);
        solver().SolveTimerTick();
    }
    /// One calendar task of an hour on 9/3/2001.
    Vtask* MakePlan() {
        Vproject* project = workspace().FindOrCreateProject("P");
        project->AddJournal(DateTime(37137));
        workspace().SetThisProject(project);
        Vtask* task = project->FindOrCreateTask(1);
        task->SetEffortUnits(60);
        task->SetMostLikely(60);
        auto* date = workspace().NewVObject<Vdependency>();
        date->SetTask(task);
        date->SetDepDate(DateTime(37137));
        return task;
    }
    /// Runs `act` once, when the solve shows `status` and serves events the next time.
    void When(const std::string& status, std::function<void()> act) {
        platform().onServeEvents = [this, status, act = std::move(act), done = false]() mutable {
            if (done || solver().SolveMessage() != status) return;
            done = true;
            act();
        };
    }

    LoadedPlan plan;
    SolutionCounter heard;
};

TEST_F(SolverTest, StartUpWithNothingLoadedEndsIdle) {
    solver().SuspendSolve();
    EXPECT_EQ(solver().Mode(), Mode::Suspended);
    solver().ResumeSolve();
    Fire();
    EXPECT_EQ(solver().Mode(), Mode::Idle);
    EXPECT_EQ(solver().SolveMessage(), "No projects loaded");
    EXPECT_EQ(heard.count, 1);
    EXPECT_FALSE(platform().solveTimerArmed);
}

TEST_F(SolverTest, ATemplateAloneIsNothingToSolve) {
    Vtemplate* alone = workspace().FindOrCreateTemplate("T");
    workspace().SetThisTemplate(alone);
    alone->SetDirty(true);
    Fire();
    EXPECT_EQ(solver().SolveMessage(), "No projects loaded");
    EXPECT_EQ(alone->NumJournals(), 0);
}

TEST_F(SolverTest, ChangesBeforeTheTimerFiresMakeOneSolve) {
    Vtask* task = MakePlan();
    task->Project()->SetDirty(true);
    task->Project()->SetDirty(true);
    Fire();
    EXPECT_EQ(solver().SolveMessage(), "Solve complete");
    EXPECT_EQ(heard.count, 1);
    EXPECT_DOUBLE_EQ(task->EarlyFinish().Days(), 37137 + 1.0 / 24);
}

TEST_F(SolverTest, AChangeDuringASolveStartsItOver) {
    Vtask* task = MakePlan();
    for (const char* status :
         {"Preparing for solve ...", "Clearing previous solution ...", "Computing slack ..."}) {
        SCOPED_TRACE(status);
        heard.count = 0;
        task->SetMostLikely(60);
        When(status, [&] {
            task->SetMostLikely(180);
            task->Project()->SetDirty(true);
            EXPECT_EQ(solver().Mode(), Mode::Restart);
            EXPECT_FALSE(platform().solveTimerArmed) << "the same event goes on";
        });
        solver().RestartSolve();
        Fire();
        EXPECT_EQ(solver().Mode(), Mode::Idle);
        EXPECT_EQ(heard.count, 1);
        EXPECT_DOUBLE_EQ(task->EarlyFinish().Days(), 37137 + 3.0 / 24);
    }
}

TEST_F(SolverTest, SuspendAndResumeDuringASolveStartItOver) {
    MakePlan();
    When("Preparing for solve ...", [&] {
        solver().SuspendSolve();
        EXPECT_EQ(solver().Mode(), Mode::SuspendedRunning);
        solver().RestartSolve();
        EXPECT_EQ(solver().Mode(), Mode::SuspendedRunning) << "the resume will see to it";
        solver().ResumeSolve();
        EXPECT_EQ(solver().Mode(), Mode::Restart);
        EXPECT_FALSE(platform().solveTimerArmed);
    });
    solver().RestartSolve();
    Fire();
    EXPECT_EQ(solver().SolveMessage(), "Solve complete");
    EXPECT_EQ(heard.count, 1);
}

TEST_F(SolverTest, ASuspendedSolveGivesUpAndLeavesNoTrace) {
    Vtask* task = MakePlan();
    When("Computing slack ...", [&] { solver().SuspendSolve(); });
    solver().RestartSolve();
    Fire();
    EXPECT_EQ(solver().Mode(), Mode::SuspendedRunning);
    EXPECT_EQ(heard.count, 0);
    EXPECT_FALSE(task->LateFinish().IsSet() && !task->EarlyFinish().IsSet());
    EXPECT_THROW(solver().SolveTimerTick(), Fault) << "no timer may fire now";
}

TEST_F(SolverTest, ARestartWhileSuspendedIsCoveredByTheResume) {
    MakePlan();
    solver().SuspendSolve();
    solver().RestartSolve();
    EXPECT_FALSE(platform().solveTimerArmed);
    solver().ResumeSolve();
    Fire();
    EXPECT_EQ(heard.count, 1);
}

TEST_F(SolverTest, ProjectsAtDifferentJournalsHaltBeforeAnythingIsTouched) {
    MakePlan();
    Vproject* other = workspace().FindOrCreateProject("Other");
    other->AddJournal(DateTime(37140));
    Vtemplate* pool = workspace().FindOrCreateTemplate("T");
    solver().RestartSolve();
    Fire();
    EXPECT_EQ(solver().Mode(), Mode::Halted);
    EXPECT_EQ(solver().SolveMessage(), "Journal sync error");
    EXPECT_EQ(pool->NumJournals(), 0);
    EXPECT_EQ(heard.count, 0);

    other->ChangeJournal(DateTime(37137));
    solver().RestartSolve();
    Fire();
    EXPECT_EQ(solver().SolveMessage(), "Solve complete");
    EXPECT_EQ(pool->Journal(), DateTime(37137)) << "templates follow the projects";
}

TEST_F(SolverTest, AFaultInsideASolveHaltsAndTheNextChangeSolvesAgain) {
    Vtask* task = MakePlan();
    When("Clearing previous solution ...", [] { Refuse("out of luck"); });
    solver().RestartSolve();
    EXPECT_THROW(Fire(), Fault);
    EXPECT_EQ(solver().Mode(), Mode::Halted);
    EXPECT_EQ(solver().SolveMessage(), "Internal error");
    task->Project()->SetDirty(true);
    Fire();
    EXPECT_EQ(solver().SolveMessage(), "Solve complete");
}

TEST_F(SolverTest, AClockThatPassesTheLastYearHalts) {
    Vtask* task = MakePlan();
    task->SetMostLikely(INT32_MAX);  // minutes: more than 4,000 years
    task->DependencyList()[0]->SetOffset(2500000);
    solver().RestartSolve();
    Fire();
    EXPECT_EQ(solver().SolveMessage(), "No working time");
    ASSERT_TRUE(solver().Problem());
    EXPECT_EQ(solver().Problem()->task.Get(), task);
}

TEST_F(SolverTest, ALaterJournalKeepsTheResultsOfTheEarlierOne) {
    Vtask* task = MakePlan();
    solver().RestartSolve();
    Fire();
    Vproject* project = task->Project();
    project->AddJournal(DateTime(37200));
    task->SetMostLikely(240);
    solver().RestartSolve();
    Fire();
    EXPECT_DOUBLE_EQ(task->EarlyFinishAt(0).Days(), 37137 + 1.0 / 24);
    EXPECT_DOUBLE_EQ(task->EarlyFinishAt(1).Days(), 37137 + 4.0 / 24);
    // Measured against the plan journal, the task is three hours late.
    EXPECT_NEAR(DaysBetween(task->EarlyFinish(), task->LateFinish()), -3.0 / 24, 1e-9);
}

/// An event loop as a desktop has it: a queue of user events, and the solve timer, which fires when the queue
/// is empty. A running solve takes events from the same queue.
class EventLoop : public ScriptedPlatform {
  public:
    explicit EventLoop() {
        onServeEvents = [this] {
            while (!events.empty()) Next();
        };
    }
    void Run(Solver& solver) {
        while (!events.empty() || solveTimerArmed) {
            if (!events.empty()) {
                Next();
            } else {
                solver.SolveTimerTick();
            }
        }
    }
    std::deque<std::function<void()>> events;

  private:
    void Next() {
        const auto event = std::move(events.front());
        events.pop_front();
        event();
    }
};

TEST(SolverLoopTest, EditsOfARunningProgramEndInTheirSolution) {
    EventLoop loop;
    Workspace workspace(loop);
    Solver solver(workspace);
    solver.SetServiceInterval(std::chrono::microseconds(0));
    SolutionCounter heard;
    workspace.AddListener(&heard);

    LoadedPlan expected(GeneratePlan(5, MixedKnobs(5)));
    ASSERT_TRUE(expected.Complete());
    LoadReport report;
    const std::string text = GeneratePlan(5, MixedKnobs(5));
    TokenReader reader(text, "plan.vta");
    LoadRecords(workspace, reader, report);
    workspace.SetThisProject(workspace.ProjectList()[0]);
    workspace.SetThisTemplate(workspace.TemplateList()[0]);

    // A user who changes an estimate again and again, each time while the last solve runs, and at last takes
    // everything back.
    Vtask* edited = nullptr;
    for (Vtask* task : workspace.ThisProject()->TaskList()) {
        if (!edited && task->Include() && !task->Subproject() && task->MostLikely() > 0) edited = task;
    }
    ASSERT_TRUE(edited);
    const std::int32_t before = edited->MostLikely();
    int left = 25;
    std::function<void()> edit = [&] {
        edited->SetMostLikely(--left > 0 ? before + 60 * left : before);
        edited->Project()->SetDirty(true);
        if (left > 0) loop.events.push_back([&] { loop.events.push_back(edit); });
    };
    loop.events.push_back(edit);
    loop.Run(solver);
    EXPECT_EQ(left, 0);
    EXPECT_EQ(solver.SolveMessage(), "Solve complete");
    EXPECT_EQ(heard.count, 1) << "every solve but the last gave up";
    EXPECT_EQ(edited->EarlyFinish(),
              expected.Task(edited->Project()->ProjectName(), edited->TaskID())->EarlyFinish());
}

}  // namespace
}  // namespace vortan
