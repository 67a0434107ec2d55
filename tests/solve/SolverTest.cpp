#include "solve/Solver.h"

#include "model/Fault.h"
#include "support/LoadedPlan.h"

namespace vortan {
namespace {

using Mode = SolveMode;
/// One calendar task of an hour on Monday 9/3/2001.
const std::string kHour = "template Crew; resource 1; resource 2; project P rule 1; task 1 clock 60 start;";

class SolverTest : public testing::Test, protected LoadedPlan, protected Listener {
  protected:
    SolverTest() {
        workspace.AddListener(this);
        solver.SetServiceInterval(std::chrono::microseconds(0));
    }
    void NewSolution() override { ++heard; }
    /// Lets the armed timer fire.
    void Fire() {
        ASSERT_TRUE(platform.solveTimerArmed);
        solver.SolveTimerTick();
    }
    void Solve() {
        solver.RestartSolve();
        Fire();
    }
    /// An event loop below a solve. `act` is what the user does, `times` times, from when the solve serves
    /// events for the `moment`th time, from 0, and shows `status`, if that is told.
    void AtMoment(int moment, std::function<void()> act, const std::string& status = "", int times = 1) {
        came = false;
        platform.onServeEvents = [this, moment, act = std::move(act), status, times]() mutable {
            FireBelow();
            if ((!status.empty() && solver.SolveMessage() != status) || moment-- > 0 || times-- <= 0) return;
            came = true;
            act();
            if (timer == Timer::AtOnce) FireBelow();
        };
    }
    void FireBelow() {
        if (!platform.solveTimerArmed || timer == Timer::Late) return;
        solver.SolveTimerTick();
        EXPECT_NE(solver.Mode(), Mode::Idle) << "it waits for the solve on the stack";
    }
    Vdependency& LastOf(int task) { return *Task("P", task)->DependencyList().back(); }

    int heard = 0;  ///< solutions, as screens hear of them
    bool came = false;
    enum class Timer { AtOnce, AtNextPoll, Late } timer = Timer::AtOnce;  ///< when it fires if it is armed
};

TEST_F(SolverTest, WhateverIsAskedForMakesOneSolve) {
    // s: suspend, c: change, r: resume
    for (const bool loaded : {false, true}) {
        if (loaded) Make(kHour);
        for (const std::string order : {"sr", "cc", "scr", "csr"}) {
            heard = 0;
            for (const char act : order) {
                act == 's'   ? solver.SuspendSolve()
                : act == 'c' ? solver.RestartSolve()
                             : solver.ResumeSolve();
                EXPECT_EQ(platform.solveTimerArmed, solver.Mode() == Mode::Restart);
            }
            Fire();
            EXPECT_EQ(solver.Mode(), Mode::Idle);
            EXPECT_EQ(solver.SolveMessage(), loaded ? "Solve complete" : "No projects loaded");
            EXPECT_EQ(heard, 1);
            EXPECT_FALSE(platform.solveTimerArmed);
        }
    }
    EXPECT_DOUBLE_EQ(Task("P", 1)->EarlyFinish().Days(), 37137 + 1.0 / 24);
}

/// Files are opened, tasks edited and deleted while a solve lies on the stack at any of its polls. The slices
/// take more days than a solve passes between two polls.
TEST_F(SolverTest, AnythingMayHappenAtEveryPoll) {
    Vtask* task = nullptr;
    const auto edit = [&] { task->SetMostLikely(task->MostLikely() + 60); };
    const auto pause = [&] { solver.SuspendSolve(), solver.ResumeSolve(); };
    const std::tuple<const char*, int, std::function<void()>> acts[] = {
        {"cleared", 1, [&] { workspace.FreeAllMemory(); }},
        {"deleted", 1, [&] { workspace.ThisProject()->FindTask(3)->Delete(); }},
        {"edited", 1, edit},
        {"edited again and again", 25, edit},
        {"edited, and another file merged", 1, [&] { edit(), pause(); }},
        {"paused and edited", 1, [&] { pause(), edit(); }},
    };
    for (const auto& [name, times, act] : acts) {
        int moment = 0;
        for (came = true; came; ++moment) {
            SCOPED_TRACE(name + (" at " + std::to_string(moment)));
            workspace.FreeAllMemory();
            Make(kHour + "task 2 work 144000 after 1 by 1@4; task 3 clock 0 after 2");
            task = Task("P", 1);
            solver.Watch(Task("P", 2));
            heard = 0;
            timer = static_cast<Timer>(moment % 3);
            AtMoment(moment, act, "", times);
            Solve();
            EXPECT_EQ(solver.Mode(), Mode::Idle);
            EXPECT_EQ(heard, 1);
            EXPECT_FALSE(platform.solveTimerArmed);
            const bool cleared = workspace.ProjectList().empty();
            EXPECT_EQ(solver.SolveMessage(), cleared ? "No projects loaded" : "Solve complete");
            if (cleared) continue;
            EXPECT_EQ(task->EarlyFinish(), AddMinutes(DateTime(37137), task->MostLikely()));
        }
        EXPECT_GT(moment, 20) << name;
    }
}

TEST_F(SolverTest, AnEditBehindAProblemIsSolvedWhenTheHaltedSolveIsOffTheStack) {
    Make(kHour + "journals 9/6/2001; project Other");
    Vproject* other = workspace.ProjectList().Find("Other");
    Vtemplate* pool = workspace.FindOrCreateTemplate("T");
    Solve();
    EXPECT_EQ(solver.Mode(), Mode::Halted);
    EXPECT_EQ(solver.SolveMessage(), "Journal sync error");
    EXPECT_EQ(pool->NumJournals() + heard, 0);
    for (const Timer when : {Timer::AtOnce, Timer::AtNextPoll, Timer::Late}) {
        timer = when;
        heard = 0;
        other->ChangeJournal(DateTime(37140));
        const auto edit = [&] {
            EXPECT_EQ(solver.Mode(), Mode::Halted);
            other->ChangeJournal(DateTime(37137));
            solver.RestartSolve();
            EXPECT_TRUE(platform.solveTimerArmed);
        };
        AtMoment(0, edit, "Journal sync error");
        Solve();
        EXPECT_TRUE(came);
        EXPECT_EQ(solver.SolveMessage(), "Solve complete");
        EXPECT_EQ(heard, 1);
        EXPECT_FALSE(platform.solveTimerArmed);
        EXPECT_EQ(pool->Journal(), DateTime(37137)) << "templates follow the projects";
    }
}

TEST_F(SolverTest, ASuspendedSolveGivesUpAndIsResumedLater) {
    Make(kHour);
    const auto suspend = [&] {
        solver.SuspendSolve();
        EXPECT_EQ(solver.Mode(), Mode::SuspendedRunning);
    };
    AtMoment(0, suspend, "Computing slack ...");
    Solve();
    EXPECT_EQ(solver.Mode(), Mode::Suspended);
    EXPECT_EQ(heard, 0);
    EXPECT_FALSE(Task("P", 1)->EarlyFinish().IsSet());
    EXPECT_THROW(solver.SolveTimerTick(), Fault) << "no timer may fire now";
    solver.ResumeSolve();
    Fire();
    EXPECT_EQ(solver.SolveMessage(), "Solve complete");
}

/// What halts before the last solution is cleared leaves its bookings standing.
TEST_F(SolverTest, BookingsStandUntilANewPassBegins) {
    Make(kHour + "task 5 work 960 after 1 by 1");
    Vtask* work = Task("P", 5);
    const auto bookings = [&] {
        std::string text;
        for (const Vslot& slot : solver.HeldSlots(*Resource("Crew", 1))) text += slot.BuildNodeText() + "\n";
        return text + std::to_string(
                          solver.CountMinutes(*Resource("Crew", 1), *work, DateTime(37137), DateTime(37150)));
    };
    Solve();
    const std::string before = bookings();
    ASSERT_TRUE(before.ends_with("\n960"));
    // A task ahead of it, so that all have other numbers, and on a resource that would come first.
    Make("task 3 work 60 after 1 by 2");
    const std::pair<const char*, std::function<void()>> problems[] = {
        {"Dangling tasks", [] {}},
        {"Missing to-start dependency", [&] { LastOf(3).SetToPercent(50); }},
        {"Circular dependency", [&] { LastOf(3).SetToPercent(0), Make("task 1 after 3"); }},
        {"Journal sync error", [&] { Make("journals 9/6/2001; project Q"); }},
    };
    for (const auto& [message, change] : problems) {
        SCOPED_TRACE(message);
        change();
        Solve();
        EXPECT_EQ(solver.SolveMessage(), message);
        EXPECT_EQ(bookings(), before);
        EXPECT_EQ(solver.HeldSlots(*Resource("Crew", 2)).size(), 0u);
        EXPECT_EQ(work->EarlyFinish(), DateTime(37138 + 17 / 24.0));
        if (solver.DanglingList().empty()) continue;
        ASSERT_EQ(solver.SliceCount(), 3);
        EXPECT_FALSE(solver.Slice(2).earlyStart.IsSet()) << "no pass was made on this order";
        EXPECT_EQ(solver.Slice(solver.DanglingList()[0]).task, Task("P", 3));
    }
}

TEST_F(SolverTest, SlotsFillTheDaysThatWereLookedAt) {
    Make(kHour + "task 2 work 600 after 1 by 2");
    Solve();
    Vresource* crew = Resource("Crew", 2);
    EXPECT_EQ(solver.WantedResources(), std::vector{crew});
    double at = 37137, held = 0;
    for (const Vslot& slot : solver.Slots(*crew, {37137, 37139})) {
        EXPECT_EQ(slot.startTime, DateTime(at));
        at = slot.endTime.Days();
        held += slot.taskRequired ? DaysBetween(slot.startTime, slot.endTime) : 0;
    }
    EXPECT_EQ(at, 37139);
    EXPECT_NEAR(held, 600.0 / kMinutesPerDay, 1e-9);
    EXPECT_EQ(solver.HeldSlots(*crew, {37137, 37138}).size(), 2U);
    EXPECT_EQ(solver.HeldSlots(*crew, {37138, 37139}).size(), solver.HeldSlots(*crew).size() - 2);
    EXPECT_TRUE(solver.Slots(*crew, {37136, 37137}).empty());
}

TEST_F(SolverTest, AFaultInsideASolveHaltsAndTheNextChangeSolvesAgain) {
    Make(kHour);
    AtMoment(
        0, [] { Refuse("out of luck"); }, "Clearing previous solution ...");
    solver.RestartSolve();
    EXPECT_THROW(Fire(), Fault);
    EXPECT_EQ(solver.Mode(), Mode::Halted);
    EXPECT_EQ(solver.SolveMessage(), "Internal error");
    workspace.ThisProject()->SetDirty(true);
    Fire();
    EXPECT_EQ(solver.SolveMessage(), "Solve complete");
}

TEST_F(SolverTest, AClockThatPassesTheLastYearHalts) {
    Make(kHour + "task 1 clock 2147483647 start+2500000");  // minutes: more than 4,000 years
    Solve();
    EXPECT_EQ(solver.SolveMessage(), "No working time");
    ASSERT_TRUE(solver.Problem());
    EXPECT_EQ(solver.Problem()->task.Get(), Task("P", 1));
}

/// Task 9 cannot have what task 2 holds. A dependency has the date of the last look at it, if there was one:
/// the slice of task 3 that waits, and task 7, have not begun; task 5 looked before task 8 was placed.
TEST_F(SolverTest, AHaltLeavesDatesOfDependenciesAsTheyWereAtTheLastLook) {
    Make(R"(journals 9/3/2001 9/6/2001; template Crew; resource 1; project P rule 0
            task 1 clock 60 start; task 3 days 600 start after 1>50; task 4 dates start after 1>50
            task 5 dates start after 8>50; task 7 clock 60 after 1; task 8 clock 60 start
            task 2 work 4800 start by 1; task 9 work 4800 start by 1
            task 10 clock 0 after 2 after 3 after 4 after 5 after 7 after 9)");
    for (const int id : {3, 4, 5, 7}) LastOf(id).SetDepDate(DateTime(37137));
    Make("at 9/6/2001");
    const std::pair<int, double> dates[] = {{3, 37137}, {4, 37137 + 1.0 / 24}, {5, 0}, {7, 37137}};
    for (int run = 0; run < 2; ++run) {
        Solve();
        ASSERT_EQ(solver.SolveMessage(), "Overtime needed");
        for (const auto& [id, date] : dates) {
            EXPECT_DOUBLE_EQ(LastOf(id).DepDate().Days(), date) << id;
            workspace.ThisProject()->SetCurrentIndex(0);
            EXPECT_EQ(LastOf(id).DepDate(), DateTime(37137)) << id << " in the journal before";
            workspace.ThisProject()->SetCurrentIndex(1);
        }
    }
}

TEST_F(SolverTest, AnAssignmentOfAnotherJournalIsNoResource) {
    Make("journals 9/3/2001 9/6/2001;" + kHour + "task 1 work 60 by 1; at 9/6/2001");
    Task("P", 1)->AssignmentList().front()->SetInclude(false);
    Solve();
    EXPECT_EQ(solver.SolveMessage(), "Effort without resources");
}

TEST_F(SolverTest, ALaterJournalKeepsTheResultsOfTheEarlierOne) {
    Make(kHour);
    Solve();
    workspace.ThisProject()->AddJournal(DateTime(37200));
    Make("task 1 clock 240");
    Solve();
    const Vtask& task = *Task("P", 1);
    EXPECT_DOUBLE_EQ(task.EarlyFinishAt(0).Days(), 37137 + 1.0 / 24);
    EXPECT_DOUBLE_EQ(task.EarlyFinishAt(1).Days(), 37137 + 4.0 / 24);
    // Measured against the plan journal, the task is three hours late.
    EXPECT_NEAR(DaysBetween(task.EarlyFinish(), task.LateFinish()), -3.0 / 24, 1e-9);
}

}  // namespace
}  // namespace vortan
