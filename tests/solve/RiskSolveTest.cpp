#include "solve/RiskSolve.h"

#include <array>
#include <random>
#include <set>

#include "solve/CriticalCount.h"
#include "solve/IterativePlan.h"
#include "solve/ReverseRun.h"
#include "solve/Solution.h"

namespace vortan {
namespace {

TEST(RiskSolveTest, ScoresFollowTheNormalDistribution) {
    const std::pair<float, double> table[] = {{0.0001F, -3.71902}, {0.00135F, -2.99998}, {0.005F, -2.57583},
                                              {0.025F, -1.95996},  {0.125F, -1.15035},   {0.375F, -0.31864},
                                              {0.5F, 0},           {0.625F, 0.31864},    {0.8F, 0.84162},
                                              {0.9F, 1.28155},     {0.99F, 2.32635},     {0.995F, 2.57583}};
    for (const auto& [p, z] : table) EXPECT_NEAR(PtoZ(p), z, 4.5e-4) << p;
}

TEST(RiskSolveTest, EveryRowHoldsEachScoreOnce) {
    for (const std::int32_t n : {1, 2, 4, 100, 1000}) {
        Rnd rnd;
        const auto size = static_cast<std::size_t>(n);
        const auto table = BuildPermuteTable(50, n, rnd);
        ASSERT_EQ(table.size(), 50 * size);
        const std::vector<float> first(table.begin(), table.begin() + n);
        EXPECT_TRUE(std::is_sorted(first.begin(), first.end()));
        EXPECT_FLOAT_EQ(first[0], PtoZ(0.5F / static_cast<float>(n)));
        std::set<std::vector<float>> rows;
        for (std::size_t row = 0; row < 50; ++row) {
            std::vector<float> scores(table.begin() + static_cast<std::ptrdiff_t>(row * size),
                                      table.begin() + static_cast<std::ptrdiff_t>((row + 1) * size));
            rows.insert(scores);
            std::sort(scores.begin(), scores.end());
            EXPECT_EQ(scores, first);
        }
        EXPECT_EQ(rows.size() == 50, n >= 100);
    }
}

TEST(RiskSolveTest, WithoutSpreadEveryRunIsTheMostLikelyOne) {
    for (std::uint64_t seed = 0; seed < 40; ++seed) {
        IterativePlan plan(GeneratePlan(seed, MixedKnobs(seed)));
        plan.Spread(0, 0);
        ASSERT_TRUE(plan.iterative.RiskSolve(false, 7, nullptr).done);
        const IterativeResults& results = plan.Results();
        const Vproject& project = *plan.workspace.ThisProject();
        ASSERT_EQ(results.riskDates.size(), 8U);
        for (std::size_t i = 0; i <= 7; ++i) {
            EXPECT_EQ(results.riskDates[i], project.EarlyFinish()) << seed;
            EXPECT_EQ(results.riskCosts[i], project.LaborCost() + project.MaterialCost()) << seed;
        }
    }
}

TEST(RiskSolveTest, AnyNumberOfWorkersFindsTheSame) {
    for (std::uint64_t seed = 0; seed < 10; ++seed) {
        for (const bool quick : {false, true}) {
            std::string expected;
            for (const int workers : {1, 2, 5}) {
                IterativePlan plan(GeneratePlan(seed, MixedKnobs(seed)));
                plan.Spread(40, 90);
                plan.iterative.SetWorkers(workers);
                ASSERT_TRUE(plan.iterative.RiskSolve(quick, 60, nullptr).done);
                const auto& dates = plan.Results().riskDates;
                EXPECT_TRUE(std::is_sorted(dates.begin() + 1, dates.end()));
                if (expected.empty()) expected = TextOf(plan.Results());
                EXPECT_EQ(TextOf(plan.Results()), expected) << seed << quick << workers;
            }
        }
    }
}

const RiskDriver& DriverOf(const IterativePlan& plan, std::int32_t id) {
    for (const RiskDriver& driver : plan.Results().drivers)
        if (driver.task->TaskID() == id) return driver;
    throw std::runtime_error("no driver " + std::to_string(id));
}

/// Of a chain, all is critical, and the finish is that of the one task that spreads; its twin beside the
/// chain is much shorter. What it gains is what the plan gains with its optimistic estimate.
TEST(RiskSolveTest, DriversOfAChainAreKnown) {
    for (const bool quick : {true, false}) {
        IterativePlan plan;
        plan.MakeSolved(
            "task 1 work 2400/4800/9600 start by 1; task 2 work 960 after 1 by 1; "
            "task 3 work 240/480/960 start by 2; task 4 clock 0 after 2 after 3");
        ASSERT_TRUE(plan.iterative.RiskSolve(quick, 400, nullptr, true).done);
        const RiskDriver &long1 = DriverOf(plan, 1), &fixed = DriverOf(plan, 2), &beside = DriverOf(plan, 3);
        EXPECT_EQ(plan.Results().drivers.front().task->TaskID(), 1);
        EXPECT_EQ(long1.criticality, 1);
        EXPECT_EQ(fixed.criticality, 1);
        EXPECT_EQ(beside.criticality, 0);
        EXPECT_GT(long1.finishCorrelation, 0.99);
        EXPECT_EQ(fixed.finishCorrelation, 0);
        EXPECT_NEAR(beside.finishCorrelation, 0, 0.15);
        EXPECT_GT(long1.costCorrelation, 0.9);
        EXPECT_GT(beside.costCorrelation, -0.1);
        EXPECT_TRUE(fixed.gainKnown && fixed.gainDays == 0 && !beside.gainKnown);
        const auto& dates = plan.Results().riskDates;
        const double median = (dates[200].Days() + dates[201].Days()) / 2, gain = long1.gainDays;
        Vtask& first = *plan.workspace.ThisProject()->FindTask(1);
        if (quick) continue;  // which scales the calendar along
        first.SetMostLikely(2400);
        first.SetPessimistic(2400);
        plan.Solve();
        EXPECT_NEAR(gain, median - plan.workspace.ThisProject()->EarlyFinish().Days(), 0.1);
    }
}

TEST(RiskSolveTest, NoSlackIsWhatTheReversePassSays) {
    std::size_t links = 0;
    for (std::uint64_t seed = 0; seed < 60; ++seed) {
        IterativePlan plan(GeneratePlan(seed, seed % 3 == 0 ? CrowdedKnobs(seed, 1) : MixedKnobs(seed)));
        plan.Solve();
        ASSERT_EQ(plan.solver.Mode(), SolveMode::Idle);
        const Solution& solution = plan.solver.Standing();
        const auto& clocks = solution.run.Clocks();
        std::vector<double> ends;
        for (const auto& project : solution.network.Projects())
            ends.push_back(
                ForwardRun::Totals(solution.network.Projects()[Index(project.master)], clocks).finish);
        ReverseRun reverse;
        reverse.Run(solution.network, solution.run, ends, [] { return false; });
        CriticalCount count(solution.network);
        count.Add(solution.run);
        count.Add(solution.run);
        for (std::size_t t = 0; t < clocks.size(); ++t) {
            const bool none = reverse.Tasks()[t].finish - clocks[t].finish < 0.5 / kMinutesPerDay;
            EXPECT_EQ(count.Counts()[t], none ? 2 : 0) << seed << " " << t;
            links += solution.network.Tasks()[t].subproject >= 0 ? 1 : 0;
        }
    }
    EXPECT_GT(links, 20U);
}

TEST(RiskSolveTest, EqualPathsAreCriticalByTurns) {
    IterativePlan plan;
    plan.MakeSolved(
        "task 1 work 2400/4800/9600 start by 1; task 2 work 2400/4800/9600 start by 2; "
        "task 3 clock 0 after 1 after 2");
    ASSERT_TRUE(plan.iterative.RiskSolve(true, 1000, nullptr, true).done);
    const RiskDriver &one = DriverOf(plan, 1), &two = DriverOf(plan, 2);
    EXPECT_NEAR(one.criticality, 0.5, 0.05);
    EXPECT_NEAR(two.criticality, 0.5, 0.05);
    EXPECT_GE(one.criticality + two.criticality, 1);
    EXPECT_NEAR(one.finishCorrelation, two.finishCorrelation, 0.1);
    // The chance to meet two things is no better than that of either.
    const IterativeResults& results = plan.Results();
    const DateTime by = results.riskDates[500];
    EXPECT_NEAR(results.ChanceOfBoth(by, {}), 0.5, 0.002);  // two runs may end together
    EXPECT_LE(results.ChanceOfBoth(by, results.riskCosts[1]), results.ChanceOfBoth(by, {}));
    EXPECT_EQ(results.ChanceOfBoth(results.riskDates[1000], Money::FromDouble(1e9)), 1);
}

/// What is asked for beside changes nothing of the runs, and is the same for any number of workers.
TEST(RiskSolveTest, DriversLeaveTheRunsAsTheyAre) {
    for (std::uint64_t seed = 0; seed < 6; ++seed) {
        std::string runs, told;
        for (const int workers : {0, 1, 3}) {
            IterativePlan plan(GeneratePlan(seed, MixedKnobs(seed)));
            plan.Spread(40, 90);
            plan.iterative.SetWorkers(std::max(workers, 1));
            ASSERT_TRUE(plan.iterative.RiskSolve(seed % 2 == 0, 60, nullptr, workers > 0).done);
            EXPECT_EQ(plan.Results().drivers.empty(), workers == 0);
            if (workers == 0) runs = TextOf(plan.Results());
            EXPECT_EQ(TextOf(plan.Results()), runs) << seed;
            std::string drivers;
            for (const RiskDriver& driver : plan.Results().drivers) {
                EXPECT_TRUE(driver.criticality <= 1 && std::abs(driver.finishCorrelation) <= 1.0001);
                drivers += driver.task->BuildNodeText() + std::to_string(driver.criticality) +
                           std::to_string(driver.finishCorrelation) + std::to_string(driver.gainDays);
            }
            if (workers == 1) told = drivers;
            if (workers > 1) {
                EXPECT_EQ(drivers, told) << seed;
            }
        }
    }
}

/// A long task fixes the finish of every run, so the costs must stand in the order of the iterations, each
/// that of the sample of the short task.
TEST(RiskSolveTest, EqualDatesStandInTheOrderOfIterations) {
    IterativePlan plan;
    plan.MakeSolved(
        "task 1 days 432000 start; task 2 work 3000/6000/12000 start by 1; task 3 clock 0 after 1 after 2");
    for (const bool quick : {false, true}) {
        plan.Solve();
        plan.iterative.SetSeed(99);
        Rnd rnd(99);
        ASSERT_TRUE(plan.iterative.RiskSolve(quick, 200, nullptr).done);
        const auto table = BuildPermuteTable(3, 200, rnd);
        for (std::size_t i = 0; i < 200; ++i) {
            const double z = table[200 + i];
            const double minutes = std::nearbyint(6000 + z * (z > 0 ? 6000 : 3000) / 3);
            EXPECT_NEAR(plan.Results().riskCosts[i + 1].ToDouble(), minutes / 60 * 50, 0.01) << i;
        }
    }
}

/// The finish of small plans by plain sampling, far more often than the risk solve does.
TEST(RiskSolveTest, QuantilesAgreeWithPlainSampling) {
    struct Case {
        std::vector<std::array<int, 3>> estimates;  ///< of tasks 1, 2 ..., minutes
        bool parallel;
        const char* plan;
    };
    const Case cases[] = {
        {{{9480, 12480, 15480}}, true, "task 1 clock 9480/12480/15480 start; task 9 clock 0 after 1"},
        {{{4000, 10000, 30000}, {9000, 10000, 12000}},
         false,
         "task 1 clock 4000/10000/30000 start; task 2 clock 9000/10000/12000 after 1; task 9 clock 0 after "
         "2"},
        {{{4000, 10000, 16000}, {8000, 10000, 20000}, {7000, 9000, 40000}},
         true,
         "task 1 clock 4000/10000/16000 start; task 2 clock 8000/10000/20000 start;"
         "task 3 clock 7000/9000/40000 start; task 9 clock 0 after 1 after 2 after 3"},
    };
    for (const Case& each : cases) {
        std::mt19937 random(5);
        std::normal_distribution<double> normal;
        std::vector<double> finishes(200'000);
        for (double& finish : finishes) {
            for (const auto& task : each.estimates) {
                const double z = normal(random);
                const double minutes = task[1] + z / 3 * (z > 0 ? task[2] - task[1] : task[1] - task[0]);
                finish = each.parallel ? std::max(finish, minutes) : finish + minutes;
            }
        }
        std::sort(finishes.begin(), finishes.end());
        IterativePlan plan;
        plan.Make(kCrew + each.plan);
        for (const bool quick : {false, true}) {
            plan.Solve();
            ASSERT_TRUE(plan.iterative.RiskSolve(quick, 4000, nullptr).done);
            const auto& dates = plan.Results().riskDates;
            for (const double p : {0.05, 0.2, 0.5, 0.8, 0.95}) {
                const double wanted = finishes[static_cast<std::size_t>(p * 200'000)] / kMinutesPerDay;
                const double found = dates[static_cast<std::size_t>(p * 4000)].Days() - IterativePlan::kStart;
                EXPECT_NEAR(found / wanted, 1, 0.01) << each.plan << " at " << p << (quick ? ", quick" : "");
            }
            EXPECT_EQ(dates[2000] > AddDays(dates[0], 0.1), each.estimates.size() > 1) << each.plan;
        }
    }
}

/// Without work in the plan or in the sample a slice has no duration, whatever dates drive its task; where
/// only the plan has none there is nothing to scale by. A sample of 0 costs nothing.
TEST(RiskSolveTest, ASliceWithoutMinutesEndsWhereItStarts) {
    const struct {
        const char* task;          // without units, to the end of the start date
        std::vector<double> days;  // from the start, of each run
    } cases[] = {
        {"clock 0/0/0 dates start", {0, 0, 0, 0}},    {"clock 600 dates start", {1, 1, 1, 1}},
        {"clock 0/0/6000 dates start", {0, 0, 1, 1}}, {"clock -6000/600/600 dates start", {0, 0, 1, 1}},
        {"clock 0/0/6000 start", {0, 0, 0, 0}},
    };
    for (const auto& each : cases) {
        IterativePlan plan;
        plan.MakeSolved(std::string("task 1 ") + each.task);
        ASSERT_TRUE(plan.iterative.RiskSolve(true, 4, nullptr).done);
        for (std::size_t i = 0; i < 4; ++i)
            EXPECT_EQ(plan.Results().riskDates[i + 1].Days() - 37137, each.days[i]) << each.task << i;
    }
    IterativePlan plan;
    plan.MakeSolved("task 1 work -6000/600/600 start by 1");
    ASSERT_TRUE(plan.iterative.RiskSolve(true, 2, nullptr).done);
    EXPECT_EQ(plan.Results().riskCosts[1], Money());
    EXPECT_EQ(plan.Results().riskDates[1], DateTime(IterativePlan::kStart));
    EXPECT_EQ(plan.Results().riskCosts[2], plan.Results().riskCosts[0]);
}

struct IterativeSolveTest : testing::Test {
    IterativeSolveTest() : plan(GeneratePlan(3, MixedKnobs(3))) {
        plan.Spread(40, 90);
        plan.iterative.SetWorkers(1);  // others might be done before this one has its turn to report
        plan.iterative.SetProgressInterval(std::chrono::milliseconds(0));
    }
    IterativeSolve::Outcome Run(int kind, IterativeProgress* progress) {
        return kind < 2 ? plan.iterative.RiskSolve(kind == 0, 40, progress)
                        : plan.iterative.CrashSolve(kind == 2, 0.5, progress);
    }
    std::string Everything() {
        return ResultText(plan) + TextOf(plan.Results()) + plan.solver.SolveMessage() +
               std::to_string(static_cast<int>(plan.solver.Mode()));
    }
    IterativePlan plan;
};

TEST_F(IterativeSolveTest, CancelAtAnyReportChangesNothing) {
    for (const int round : {0, 1, 2, 3, 4, 5}) {
        const int kind = round % 4;
        plan.iterative.SetWorkers(round < 4 ? 1 : 3);
        ASSERT_TRUE(Run(3, nullptr).done);
        plan.Solve();
        plan.iterative.SetSeed(1);
        ASSERT_TRUE(Run(1, nullptr).done);
        plan.Solve();
        const std::string before = Everything();
        int reports = 0;
        for (bool cancelled = true; cancelled; ++reports) {
            int left = reports;
            TestProgress progress([&](int) { return left-- == 0; });
            const auto outcome = Run(kind, &progress);
            cancelled = !outcome.done;
            if (!cancelled) break;
            EXPECT_EQ(outcome.message, "");
            EXPECT_EQ(Everything(), before) << "kind " << kind << ", report " << reports;
            EXPECT_FALSE(plan.platform.solveTimerArmed);
            ASSERT_LT(reports, 100'000);
        }
        EXPECT_GT(reports, round < 4 ? 2 : 0) << round;
        // Nor has the sequence of random numbers moved on.
        const std::string after = TextOf(plan.Results());
        plan.Solve();
        plan.iterative.SetSeed(1);
        ASSERT_TRUE(Run(1, nullptr).done);
        plan.Solve();
        ASSERT_TRUE(Run(kind, nullptr).done);
        EXPECT_EQ(TextOf(plan.Results()), after) << kind;
        plan.Solve();
    }
}

TEST_F(IterativeSolveTest, TheModeAndTheTextsTellWhatGoesOn) {
    for (const int kind : {1, 3}) {
        plan.platform.solveStatuses.clear();
        int last = 0;
        TestProgress progress([&](int percent) {
            EXPECT_EQ(plan.solver.Mode(), SolveMode::Iterating);
            EXPECT_FALSE(plan.solver.AbortSolve());
            EXPECT_GE(percent, last);
            EXPECT_LE(last = percent, 99);
            return false;
        });
        ASSERT_TRUE(Run(kind, &progress).done);
        EXPECT_GT(last, 0);
        const std::string verb = kind == 1 ? "Risk " : "Crashing ";
        EXPECT_EQ(plan.platform.statusMessages.back(), "");
        EXPECT_EQ(plan.platform.solveStatuses.front(), verb + "0% ...");
        EXPECT_EQ(plan.platform.solveStatuses.back(), verb + std::to_string(last) + "% ...");
        EXPECT_EQ(plan.solver.Mode(), SolveMode::Restart);
        plan.Solve();
        EXPECT_TRUE(plan.Complete());
    }
    EXPECT_FALSE(plan.Results().crashList.empty());
    plan.iterative.NewThisProject();
    EXPECT_TRUE(plan.Results().crashList.empty());
    EXPECT_EQ(plan.Results().riskDates.size(), 41U);
}

TEST_F(IterativeSolveTest, AFaultInTheProgressEndsTheSolve) {
    for (int kind = 0; kind < 4; ++kind) {
        const std::string before = Everything();
        TestProgress progress([](int) -> bool { throw std::runtime_error("gone"); });
        EXPECT_THROW(Run(kind, &progress), std::runtime_error);
        EXPECT_EQ(Everything(), before);
    }
}

/// A task that waits for a resource until its estimate is exceeded: the iteration at fault is known in
/// advance.
TEST(RiskSolveTest, ATrialThatHaltsBreaksTheSolveOff) {
    for (const int workers : {1, 2, 5}) {
        IterativePlan plan;
        plan.MakeSolved(
            "project P rule 0; task 1 work 480/960/1920 start by 1;"
            "task 2 work 960 start=9/5/2001 by 1; task 3 clock 0 after 1 after 2");
        ASSERT_TRUE(plan.Complete());
        plan.iterative.SetWorkers(workers);
        // The first row of scores rises; 960 + z * 320 goes beyond the second day from z = 0 on.
        const auto outcome = plan.iterative.RiskSolve(false, 1000, nullptr);
        EXPECT_FALSE(outcome.done);
        EXPECT_EQ(outcome.message.find("The risk solve was broken off in iteration 50"), 0U)
            << outcome.message;
        for (const char* part : {"\"Overtime needed\"", "task 2", "project P a solve rule that extends"})
            EXPECT_NE(outcome.message.find(part), std::string::npos) << outcome.message;
        EXPECT_TRUE(plan.Results().riskDates.empty());
        EXPECT_EQ(plan.solver.Mode(), SolveMode::Idle);
        EXPECT_EQ(plan.solver.SolveMessage(), "Solve complete");
    }
}

TEST(RiskSolveTest, NumbersOutOfRangeAreRefusedInWords) {
    PlanKnobs knobs;
    knobs.tasks = 700;
    const IterativePlan small(GeneratePlan(1, MixedKnobs(1))), large(GeneratePlan(1, knobs));
    for (const double iterations : {0.0, -3.0, 1'000'001.0, std::nan("")})
        EXPECT_TRUE(small.iterative.CheckRisk(iterations).value_or("").ends_with("from 1 to 1,000,000."));
    for (const double iterations : {1.0, 1'000'000.0}) EXPECT_FALSE(small.iterative.CheckRisk(iterations));
    EXPECT_FALSE(large.iterative.CheckRisk(100'000));
    // What is offered instead is accepted.
    const std::string text = large.iterative.CheckRisk(1'000'000).value_or("");
    std::string offer = text.substr(text.find("Enter ") + 6);
    std::erase(offer, ',');
    EXPECT_GT(std::stod(offer), 100'000);
    EXPECT_FALSE(large.iterative.CheckRisk(std::stod(offer)));
    for (const double increment : {0.0, 0.05, 1.5, -0.25, std::nan("")})
        EXPECT_TRUE(IterativeSolve::CheckIncrement(increment)) << increment;
    for (const double increment : {0.1, 0.25, 1.0}) EXPECT_FALSE(IterativeSolve::CheckIncrement(increment));
}

}  // namespace
}  // namespace vortan
