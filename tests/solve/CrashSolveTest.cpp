#include "model/Vassignment.h"
#include "model/Vproject.h"
#include "model/Vtask.h"
#include "solve/CrashSolve.h"

#include <gtest/gtest.h>

#include <cmath>

#include "solve/IterativePlan.h"

namespace vortan {
namespace {

/// The detailed crash solve without any short way: every trial is a pass of its own, from the first slice on.
class ReferenceCrash {
  public:
    ReferenceCrash(const LoadedPlan& plan, float increment)
        : solver_(plan.solver), network_(solver_.TheNetwork()), active_(plan.workspace.ThisProject()) {
        multipliers_.assign(network_.Slices().size(), 1);
        Pass(-1, 0);
        Record(-1);
        for (std::int32_t best; (best = FindBest(increment)) >= 0;) {
            multipliers_[static_cast<std::size_t>(best)] += increment;
            Pass(-1, 0);
            Record(best);
        }
    }
    std::string Text() const { return TextOf(results_); }

  private:
    const Vtask& TaskOf(std::size_t slice) const {
        return *network_.Tasks()[static_cast<std::size_t>(network_.Slices()[slice].task)].object.Get();
    }
    /// Places the slices up to `last` (all for -1), that one with another team.
    bool Pass(std::int32_t last, float lastMultiplier) {
        bookings_ = Bookings();
        run_ = ForwardRun();
        bookings_.Reset(network_);
        run_.Prepare(network_, bookings_);
        const auto count = last < 0 ? solver_.SliceCount() : last + 1;
        for (std::int32_t i = 0; i < count; ++i) {
            const auto at = static_cast<std::size_t>(i);
            const float m = i == last ? lastMultiplier : multipliers_[at];
            const double factor = std::pow(TaskOf(at).Efficiency(), static_cast<double>(m) - 1);
            const int share =
                TaskOf(at).MostLikely() * (network_.Slices()[at].to - network_.Slices()[at].from);
            if (m != 1) run_.SetUseMinutes(i, RoundToInt32(share / factor / 100 / static_cast<double>(m)));
            run_.SetMultiplier(i, m);
            if (run_.SolveOneSlice(i) != ForwardRun::Outcome::Done) return false;
        }
        return true;
    }
    Money TaskCost(std::int32_t slice) const {
        return run_
            .Clocks()[static_cast<std::size_t>(network_.Slices()[static_cast<std::size_t>(slice)].task)]
            .laborCost;
    }
    std::int32_t FindBest(float increment) {
        Pass(-1, 0);
        std::vector<double> planFinish;
        solver_.PlanFinishes(run_.Clocks(), planFinish);
        ReverseRun reverse;
        reverse.Run(network_, run_, planFinish);
        std::vector<double> slack;
        double least = 1e99;
        for (std::size_t i = 0; i < multipliers_.size(); ++i) {
            slack.push_back(reverse.Slices()[i].finish - run_.SliceFinish()[i]);
            if (TaskOf(i).Project()->Master() == active_) least = std::min(least, slack[i]);
        }
        std::int32_t best = -1;
        double bestDelta = 0;
        for (std::size_t i = 0; i < slack.size(); ++i) {
            const Vtask& task = TaskOf(i);
            const auto& slice = network_.Slices()[i];
            if (slack[i] > least || task.Project()->Master() != active_ || task.AssignmentList().empty() ||
                slice.from == slice.to || task.EffortUnits() >= 0 || task.MostLikely() == 0)
                continue;
            const auto index = static_cast<std::int32_t>(i);
            Pass(index, multipliers_[i]);
            const double finish = run_.SliceFinish()[i];
            const Money cost = TaskCost(index);
            if (!Pass(index, multipliers_[i] + increment) || run_.SliceFinish()[i] >= finish) continue;
            const double delta = (TaskCost(index) - cost).ToDouble() / (finish - run_.SliceFinish()[i]);
            if (best >= 0 && delta >= bestDelta) continue;
            best = index;
            bestDelta = delta;
        }
        return best;
    }
    void Record(std::int32_t slice) {
        Vcrash step;
        for (const auto& project : network_.Projects()) {
            if (project.object.Get() != active_) continue;
            const auto totals = ForwardRun::Totals(project, run_.Clocks());
            step.endDate = DateTime(totals.finish);
            step.totalCost = totals.laborCost + totals.materialCost;
        }
        if (slice >= 0) {
            const auto at = static_cast<std::size_t>(slice);
            step.task = network_.Tasks()[static_cast<std::size_t>(network_.Slices()[at].task)].object;
            step.fromPercent = network_.Slices()[at].from;
            step.toPercent = network_.Slices()[at].to;
            step.multiplier = multipliers_[at];
        }
        results_.crashList.push_back(step);
    }

    const Solver& solver_;
    const Network& network_;
    const Vproject* active_;
    std::vector<float> multipliers_;
    Bookings bookings_;
    ForwardRun run_;
    IterativeResults results_;
};

TEST(CrashSolveTest, ADetailedCrashAgreesWithOneThatStartsOverForEveryTrial) {
    std::size_t steps = 0;
    for (std::uint64_t seed = 0; seed < 25; ++seed) {
        for (const bool crowded : {false, true}) {
            const int rule = std::array<int, 4>{1, 3, 5, 6}[seed % 4];
            IterativePlan plan(GeneratePlan(seed, crowded ? CrowdedKnobs(seed, rule) : MixedKnobs(seed)));
            // Not the usual 0.85 everywhere, so that the order of the steps is not by chance that of the
            // costs.
            FixedRandom random(seed);
            for (Vproject* project : plan.workspace.ProjectList()) {
                for (Vtask* task : project->TaskList()) task->SetEfficiency(random.Between(30, 95) / 100.0);
            }
            ASSERT_TRUE(plan.iterative.CrashSolve(false, 0.5, nullptr).done);
            EXPECT_EQ(TextOf(plan.Results()), ReferenceCrash(plan, 0.5F).Text()) << seed << crowded;
            steps += plan.Results().crashList.size() - 1;
        }
    }
    EXPECT_GT(steps, 200U);
}

/// One task of 100 hours of elapsed time, for the figures that follow from an efficiency of 0.8.
struct WorkedExample : testing::Test {
    WorkedExample() {
        plan.Project();
        task = plan.AddTask(1, -60, {6000});
        task->SetEfficiency(0.8);
        plan.Assign(task, 1);
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
    plan.Project();
    for (const int id : {1, 2}) plan.Assign(plan.AddTask(id, -60, {4800}), id);
    plan.AddTask(3, 60, {0}, {1, 2});
    plan.Solve();
    ASSERT_TRUE(plan.iterative.CrashSolve(true, 0.5, nullptr).done);
    const auto& steps = plan.Results().crashList;
    ASSERT_GE(steps.size(), 5U);
    for (std::size_t i = 1; i < 5; ++i) {
        EXPECT_EQ(steps[i].task->TaskID(), i % 2 == 1 ? 1 : 2);
        EXPECT_EQ(steps[i].endDate == steps[i - 1].endDate, i % 2 == 1);
        EXPECT_GT(steps[i].totalCost, steps[i - 1].totalCost);
    }
}

TEST(CrashSolveTest, SlicesOfATaskAreRaisedOneByOne) {
    IterativePlan plan;
    plan.Project();
    Vtask* task = plan.AddTask(1, -60, {9600});
    plan.Assign(task, 1);
    plan.Depend(plan.AddTask(2, 60, {60}), 1, 25, 50);
    plan.Depend(plan.AddTask(3, 60, {60}, {1, 2}), 1, 60, 0);
    plan.Solve();
    ASSERT_TRUE(plan.iterative.CrashSolve(false, 1, nullptr).done);
    std::set<std::pair<int, int>> raised;
    for (const Vcrash& step : plan.Results().crashList) {
        if (step.task) raised.insert({step.fromPercent, step.toPercent});
    }
    EXPECT_EQ(raised, (std::set<std::pair<int, int>>{{0, 25}, {25, 60}, {60, 100}}));
}

TEST(CrashSolveTest, ARuleThatHaltsIsRefusedInAnyProject) {
    IterativePlan plan;
    plan.Project();
    plan.AddTask(1, 60, {60});
    Vproject* other = plan.workspace.FindOrCreateProject("Other");
    other->AddJournal(DateTime(IterativePlan::kStart));
    for (int rule = kNormalHalt; rule <= kUnlimited; ++rule) {
        other->SetSolveRules(rule);
        plan.Solve();
        const auto outcome = plan.iterative.CrashSolve(true, 0.25, nullptr);
        const bool halts = rule == 0 || rule == 2 || rule == 4;
        EXPECT_EQ(outcome.done, !halts) << rule;
        EXPECT_EQ(outcome.message.find("The project Other: <stub> has a solve rule that halts on an error.  "
                                       "Crash requires") == 0,
                  halts)
            << outcome.message;
    }
}

}  // namespace
}  // namespace vortan
