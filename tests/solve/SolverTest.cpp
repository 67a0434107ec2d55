#include "model/Vassignment.h"
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
#include "solve/IterativePlan.h"

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
    void Solve() {
        solver().RestartSolve();
        Fire();
    }
    /// One calendar task of an hour on 9/3/2001.
    Vtask* MakePlan() {
        plan.Project();
        return plan.AddTask(1, 60, {60});
    }
    /// An event loop below a solve. `act` is what the user does when the solve serves events for the
    /// `moment`th time, from 0, and shows `status`, if that is told.
    void AtMoment(int moment, std::function<void()> act, const std::string& status = "") {
        came = false;
        platform().onServeEvents = [this, moment, act = std::move(act), status]() mutable {
            FireBelow();
            if ((!status.empty() && solver().SolveMessage() != status) || moment-- != 0) return;
            came = true;
            act();
            if (timer == Timer::AtOnce) FireBelow();
        };
    }
    void FireBelow() {
        if (!platform().solveTimerArmed || timer == Timer::Late) return;
        solver().SolveTimerTick();
        EXPECT_NE(solver().Mode(), Mode::Idle) << "it waits for the solve on the stack";
    }
    std::string Bookings() {
        std::string text;
        for (const Vslot& slot : solver().HeldSlots(*plan.Resource("Crew", 1)))
            text += slot.BuildNodeText() + "\n";
        return text;
    }

    IterativePlan plan;
    SolutionCounter heard;
    bool came = false;
    enum class Timer { AtOnce, AtNextPoll, Late } timer = Timer::AtOnce;  ///< when it fires if it is armed
};

TEST_F(SolverTest, WhateverIsAskedForMakesOneSolve) {
    const auto suspend = [&] { solver().SuspendSolve(); };
    const auto change = [&] { solver().RestartSolve(); };
    const auto resume = [&] { solver().ResumeSolve(); };
    const std::vector<std::function<void()>> orders[] = {
        {suspend, resume}, {change, change}, {suspend, change, resume}, {change, suspend, resume}};
    for (const bool loaded : {false, true}) {
        if (loaded) MakePlan();
        for (const auto& order : orders) {
            heard.count = 0;
            for (const auto& act : order) {
                act();
                EXPECT_EQ(platform().solveTimerArmed, solver().Mode() == Mode::Restart);
            }
            Fire();
            EXPECT_EQ(solver().Mode(), Mode::Idle);
            EXPECT_EQ(solver().SolveMessage(), loaded ? "Solve complete" : "No projects loaded");
            EXPECT_EQ(heard.count, 1);
            EXPECT_FALSE(platform().solveTimerArmed);
        }
    }
    EXPECT_DOUBLE_EQ(plan.Task("P", 1)->EarlyFinish().Days(), 37137 + 1.0 / 24);
}

/// Files are opened, tasks edited and deleted while a solve lies on the stack at any of its polls. The slices
/// take more days than a solve passes between two polls.
TEST_F(SolverTest, AnythingMayHappenAtEveryPoll) {
    Vtask* task = nullptr;
    const auto edit = [&] {
        task->SetMostLikely(task->MostLikely() * 2);
        task->Project()->SetDirty(true);
    };
    const auto pause = [&] {
        solver().SuspendSolve();
        solver().ResumeSolve();
    };
    const std::pair<const char*, std::function<void()>> acts[] = {
        {"cleared", [&] { workspace().FreeAllMemory(); }},
        {"deleted",
         [&] {
             workspace().ThisProject()->FindTask(3)->Delete();
             solver().RestartSolve();
         }},
        {"edited", edit},
        {"edited, and another file merged",
         [&] {
             edit();
             pause();
         }},
        {"paused and edited",
         [&] {
             pause();
             edit();
         }},
    };
    for (const auto& [name, act] : acts) {
        int moment = 0;
        for (came = true; came; ++moment) {
            SCOPED_TRACE(name + (" at " + std::to_string(moment)));
            workspace().FreeAllMemory();
            task = MakePlan();
            plan.Assign(plan.AddTask(2, -60, {600 * 240}, {1}), 1);
            plan.Task("P", 2)->AssignmentList().front()->SetHours(4);
            plan.AddTask(3, 60, {0}, {2});
            solver().Watch(plan.Task("P", 2));
            heard.count = 0;
            timer = static_cast<Timer>(moment % 3);
            AtMoment(moment, act);
            Solve();
            EXPECT_EQ(solver().Mode(), Mode::Idle);
            EXPECT_EQ(heard.count, 1);
            EXPECT_FALSE(platform().solveTimerArmed);
            const bool cleared = workspace().ProjectList().empty();
            EXPECT_EQ(solver().SolveMessage(), cleared ? "No projects loaded" : "Solve complete");
            if (cleared) continue;
            EXPECT_EQ(task->EarlyFinish(), AddMinutes(DateTime(37137), task->MostLikely()));
        }
        EXPECT_GT(moment, 20) << name;
    }
}

TEST_F(SolverTest, AnEditBehindAProblemIsSolvedWhenTheHaltedSolveIsOffTheStack) {
    MakePlan();
    Vproject* other = workspace().FindOrCreateProject("Other");
    other->AddJournal(DateTime(37140));
    for (const Timer when : {Timer::AtOnce, Timer::AtNextPoll, Timer::Late}) {
        timer = when;
        heard.count = 0;
        other->ChangeJournal(DateTime(37140));
        const auto edit = [&] {
            EXPECT_EQ(solver().Mode(), Mode::Halted);
            other->ChangeJournal(DateTime(37137));
            solver().RestartSolve();
            EXPECT_TRUE(platform().solveTimerArmed);
        };
        AtMoment(0, edit, "Journal sync error");
        Solve();
        EXPECT_TRUE(came);
        EXPECT_EQ(solver().SolveMessage(), "Solve complete");
        EXPECT_EQ(heard.count, 1);
        EXPECT_FALSE(platform().solveTimerArmed);
    }
}

TEST_F(SolverTest, ASuspendedSolveGivesUpAndIsResumedLater) {
    Vtask* task = MakePlan();
    AtMoment(
        0,
        [&] {
            solver().SuspendSolve();
            EXPECT_EQ(solver().Mode(), Mode::SuspendedRunning);
        },
        "Computing slack ...");
    Solve();
    EXPECT_EQ(solver().Mode(), Mode::Suspended);
    EXPECT_EQ(heard.count, 0);
    EXPECT_FALSE(task->EarlyFinish().IsSet());
    EXPECT_THROW(solver().SolveTimerTick(), Fault) << "no timer may fire now";
    solver().ResumeSolve();
    Fire();
    EXPECT_EQ(solver().SolveMessage(), "Solve complete");
}

/// What halts before the last solution is cleared leaves its bookings standing.
TEST_F(SolverTest, BookingsStandUntilANewPassBegins) {
    MakePlan();
    Vtask* work = plan.AddTask(5, -60, {960}, {1});
    plan.Assign(work, 1);
    Solve();
    const std::string before = Bookings();
    const auto minutes = [&] {
        return solver().CountMinutes(*plan.Resource("Crew", 1), *work, DateTime(37137), DateTime(37150));
    };
    ASSERT_EQ(minutes(), 960);
    // A task ahead of it, so that all have other numbers, and on a resource that would come first.
    Vtask* added = plan.AddTask(3, -60, {60}, {1});
    plan.Assign(added, 2);
    const std::pair<const char*, std::function<void()>> problems[] = {
        {"Dangling tasks", [] {}},
        {"Missing to-start dependency", [&] { added->DependencyList().front()->SetToPercent(50); }},
        {"Circular dependency",
         [&] {
             added->DependencyList().front()->SetToPercent(0);
             plan.Depend(plan.Task("P", 1), 3);
         }},
        {"Journal sync error", [&] { workspace().FindOrCreateProject("Q")->AddJournal(DateTime(37140)); }},
    };
    for (const auto& [message, change] : problems) {
        SCOPED_TRACE(message);
        change();
        Solve();
        EXPECT_EQ(solver().SolveMessage(), message);
        EXPECT_EQ(Bookings(), before);
        EXPECT_EQ(minutes(), 960);
        EXPECT_EQ(solver().HeldSlots(*plan.Resource("Crew", 2)).size(), 0u);
        EXPECT_EQ(work->EarlyFinish(), DateTime(37138 + 17 / 24.0));
        if (solver().DanglingList().empty()) continue;
        ASSERT_EQ(solver().SliceCount(), 3);
        EXPECT_FALSE(solver().Slice(2).earlyStart.IsSet()) << "no pass was made on this order";
        EXPECT_EQ(solver().Slice(solver().DanglingList()[0]).task, added);
    }
}

TEST_F(SolverTest, SlotsFillTheDaysThatWereLookedAt) {
    MakePlan();
    plan.Assign(plan.AddTask(2, -60, {600}, {1}), 3);
    Solve();
    Vresource* crew = plan.Resource("Crew", 3);
    EXPECT_EQ(solver().WantedResources(), std::vector{crew});
    const auto slots = solver().Slots(*crew, {37137, 37139});
    double at = 37137, held = 0;
    for (const Vslot& slot : slots) {
        EXPECT_EQ(slot.startTime, DateTime(at));
        at = slot.endTime.Days();
        held += slot.taskRequired ? DaysBetween(slot.startTime, slot.endTime) : 0;
    }
    EXPECT_EQ(at, 37139);
    EXPECT_NEAR(held, 600.0 / kMinutesPerDay, 1e-9);
    EXPECT_EQ(solver().HeldSlots(*crew, {37137, 37138}).size(), 2U);
    EXPECT_EQ(solver().HeldSlots(*crew, {37138, 37139}).size(), solver().HeldSlots(*crew).size() - 2);
    EXPECT_TRUE(solver().Slots(*crew, {37136, 37137}).empty());
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
    AtMoment(
        0, [] { Refuse("out of luck"); }, "Clearing previous solution ...");
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

/// Task 9 cannot have what task 2 holds. A dependency has the date of the last look at it, if there was one:
/// the slice of task 3 that waits, and task 7, have not begun; task 5 looked before task 8 was placed.
TEST_F(SolverTest, AHaltLeavesDatesOfDependenciesAsTheyWereAtTheLastLook) {
    Vproject* project = plan.Project(SolveRule::NormalHalt);
    plan.AddTask(1, 60, {60});
    for (const int id : {3, 4, 5}) plan.AddTask(id, id == 3 ? 1440 : 0, {600});
    plan.AddTask(8, 60, {60});
    for (const auto& [id, from] : {std::pair{3, 1}, {4, 1}, {5, 8}})
        plan.Depend(plan.Task("P", id), from, 100, 50);
    plan.AddTask(7, 60, {60}, {1});
    for (const int id : {2, 9}) plan.Assign(plan.AddTask(id, -60, {4800}), 1);
    plan.AddTask(10, 60, {0}, {2, 3, 4, 5, 7, 9});
    project->AddJournal(DateTime(37140));
    const std::pair<int, double> dates[] = {{3, 37137}, {4, 37137 + 1.0 / 24}, {5, 0}, {7, 37137}};
    for (int run = 0; run < 2; ++run) {
        Solve();
        ASSERT_EQ(solver().SolveMessage(), "Overtime needed");
        for (const auto& [id, date] : dates) {
            const Vdependency& last = *plan.Task("P", id)->DependencyList().back();
            EXPECT_DOUBLE_EQ(last.DepDate().Days(), date) << id;
            project->SetCurrentIndex(0);
            EXPECT_EQ(last.DepDate(), DateTime(37137)) << id << " in the journal before";
            project->SetCurrentIndex(1);
        }
    }
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
