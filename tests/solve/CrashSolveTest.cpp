#include "solve/CrashSolve.h"

#include <cmath>

#include "solve/IterativePlan.h"

namespace vortan {
namespace {

/// One task of 100 hours of elapsed time, for the figures that follow from an efficiency of 0.8.
struct WorkedExample : testing::Test {
    WorkedExample() {
        plan.MakeSolved("task 1 work 6000 start by 1");
        task = plan.Task("P", 1);
        task->SetEfficiency(0.8);
        plan.Solve();
    }
    IterativePlan plan;
    Vtask* task;
};

TEST_F(WorkedExample, AQuickCrashStopsAtTheBestTeam) {
    const double days = plan.solver.Slice(0).earlyFinish.Days() - plan.solver.Slice(0).earlyStart.Days();
    ASSERT_TRUE(plan.iterative.CrashSolve(true, 0.5, nullptr).done);
    const auto& steps = plan.Results().crashList;
    ASSERT_EQ(steps.size(), 8U);
    EXPECT_FALSE(steps[0].task);
    // Percent of the elapsed time for teams of 1, 1.5 ... 4.5; a team of 5 would take 48.8.
    const double percents[] = {100, 74.5, 62.5, 55.9, 52.1, 49.9, 48.8, 48.5};
    for (std::size_t i = 0; i < steps.size(); ++i) {
        EXPECT_NEAR((steps[i].endDate.Days() - IterativePlan::kStart) / days, percents[i] / 100, 0.0006) << i;
        EXPECT_NEAR(steps[i].totalCost.ToDouble() / 5000, std::pow(0.8, -0.5 * static_cast<double>(i)), 1e-7);
        if (i == 0) continue;
        EXPECT_EQ(steps[i].task.Get(), task);
        EXPECT_EQ(steps[i].multiplier, 1 + 0.5F * static_cast<float>(i));
        EXPECT_EQ(steps[i].toPercent, 100);
    }
    EXPECT_NEAR(steps[7].totalCost.ToDouble() / steps[0].totalCost.ToDouble(), 2.18366, 5e-6);
}

TEST_F(WorkedExample, ADetailedCrashPaysForTheLargerTeam) {
    ASSERT_TRUE(plan.iterative.CrashSolve(false, 0.5, nullptr).done);
    const auto& steps = plan.Results().crashList;
    ASSERT_GE(steps.size(), 8U);
    // 6000 / 0.8^0.5 / 1.5 = 4472 minutes: nine days of eight hours, and 152 minutes of the tenth.
    EXPECT_EQ(DateText(steps[1].endDate), "2001-09-14 10:32");
    EXPECT_NEAR(steps[1].totalCost.ToDouble(), 4472 / 60.0 * 50 * 1.5, 0.001);
}

TEST_F(WorkedExample, SomeSlicesAreNeverCrashed) {
    const std::pair<const char*, std::function<void()>> cases[] = {
        {"efficient at any size", [&] { task->SetEfficiency(1); }},
        {"hopeless at once", [&] { task->SetEfficiency(0.001); }},
        {"no output at all", [&] { task->SetEfficiency(0); }},
        {"beyond the calendar", [&] { task->SetEfficiency(1e-300); }},
        {"calendar time", [&] { task->SetEffortUnits(1440); }},
        {"no work", [&] { task->SetMostLikely(0); }},
    };
    for (const auto& [name, change] : cases) {
        for (const bool quick : {false, true}) {
            task->SetEfficiency(0.8);
            change();
            plan.Solve();
            ASSERT_TRUE(plan.iterative.CrashSolve(quick, 0.5, nullptr).done);
            EXPECT_EQ(plan.Results().crashList.size(), 1U) << name;
        }
    }
}

/// Two equal chains side by side: each step helps one of them only, the earlier first.
TEST(CrashSolveTest, ParallelPathsTakeTurns) {
    IterativePlan plan;
    plan.MakeSolved(
        "task 1 work 4800 start by 1; task 2 work 4800 start by 2; task 3 clock 0 after 1 after 2");
    ASSERT_TRUE(plan.iterative.CrashSolve(true, 0.5, nullptr).done);
    const auto& steps = plan.Results().crashList;
    ASSERT_GE(steps.size(), 5U);
    for (std::size_t i = 1; i < 5; ++i) {
        EXPECT_EQ(steps[i].task->TaskID(), i % 2 == 1 ? 1 : 2);
        EXPECT_EQ(steps[i].endDate == steps[i - 1].endDate, i % 2 == 1);
        EXPECT_GT(steps[i].totalCost, steps[i - 1].totalCost);
    }
}

TEST(CrashSolveTest, ARuleThatHaltsIsRefusedInAnyProject) {
    const std::string refusal =
        "The project Other: <stub> has a solve rule that halts on an error.  Crash requires";
    IterativePlan plan;
    for (int rule = 0; rule < kSolveRules; ++rule) {
        plan.MakeSolved("task 1 clock 60 start; project Other rule " + std::to_string(rule));
        const auto outcome = plan.iterative.CrashSolve(true, 0.25, nullptr);
        const bool halts = rule == 0 || rule == 2 || rule == 4;
        EXPECT_EQ(outcome.done, !halts) << rule;
        EXPECT_EQ(outcome.message.starts_with(refusal), halts) << outcome.message;
        plan.workspace.FreeAllMemory();
    }
}

}  // namespace
}  // namespace vortan
