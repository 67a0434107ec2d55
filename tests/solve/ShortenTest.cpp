#include <map>
#include <numeric>

#include "model/Fault.h"
#include "solve/IterativePlan.h"
#include "support/SoundSchedule.h"

namespace vortan {
namespace {

std::vector<Vtask*> TasksOf(const LoadedPlan& plan) {
    std::vector<Vtask*> tasks;
    for (const Vproject* project : plan.workspace.ProjectList())
        tasks.insert(tasks.end(), project->TaskList().begin(), project->TaskList().end());
    return tasks;
}

/// The ranks of all tasks in the journal in force.
std::string RankText(const LoadedPlan& plan) {
    std::string text;
    for (const Vtask* task : TasksOf(plan)) text += std::to_string(task->SolveRank()) + " ";
    return text;
}

double FinishOf(const LoadedPlan& plan) {
    return plan.workspace.ThisProject()->EarlyFinish().Days();
}

/// The earliest finish of the active project in all orders; of a plan that never halts.
double BestOfAllOrders(LoadedPlan& plan) {
    const std::vector<Vtask*> tasks = TasksOf(plan);
    std::vector<std::int32_t> ranks(tasks.size());
    std::iota(ranks.begin(), ranks.end(), 1);
    double best = 1e300;
    do {
        for (std::size_t i = 0; i < tasks.size(); ++i) tasks[i]->SetSolveRank(ranks[i]);
        plan.Solve();
        best = std::min(best, FinishOf(plan));
    } while (std::next_permutation(ranks.begin(), ranks.end()));
    return best;
}

/// Tasks that two people of the same hours hand on to each other, closed by a task without work.
std::string SharedHours(std::uint64_t seed, int tasks) {
    FixedRandom random(seed);
    std::string text = kCrew, ends;
    std::vector<int> by = {random.Between(1, 2)};
    for (int id = 1; id <= tasks; ++id) {
        const int before = random.Between(-1, id - 1);
        by.push_back(before > 0 ? 3 - by[static_cast<std::size_t>(before)] : random.Between(1, 2));
        text += "task " + std::to_string(id) + " work " + std::to_string(60 * random.Between(1, 30)) +
                (before > 0 ? " after " + std::to_string(before) : " start") + " by " +
                std::to_string(by.back()) + ";";
        ends += " after " + std::to_string(id);
    }
    return text + "task " + std::to_string(tasks + 1) + " work 0" + ends;
}

/// The second person waits for the short job of the first, whose long one comes first as told.
const std::string kWaiting = kCrew +
                             "task 1 work 4800 start by 1; task 2 work 480 start by 1;"
                             "task 3 work 4800 after 2 by 2; task 4 work 0 after 1 after 3";

ShortenOptions Moves(double moves) {
    ShortenOptions options;
    options.moves = moves;
    return options;
}

TEST(ShortenTest, FindsTheBestOfAllOrdersWherePeopleShareTheirHours) {
    int gained = 0;
    for (std::uint64_t seed = 0; seed < 25; ++seed) {
        IterativePlan plan;
        plan.Make(SharedHours(seed, 5));
        const double best = BestOfAllOrders(plan);
        plan.iterative.SolveInToldOrder();
        plan.Solve();
        gained += FinishOf(plan) > best ? 1 : 0;
        ASSERT_TRUE(plan.iterative.ShortenSolve(Moves(500), nullptr).done);
        plan.Solve();
        EXPECT_EQ(FinishOf(plan), best) << seed;
        EXPECT_EQ(plan.Results().shorten.finish.Days(), best) << seed;
        EXPECT_LE(plan.Results().shorten.bound.Days(), best) << seed;
    }
    EXPECT_GE(gained, 5);
}

TEST(ShortenTest, IsBoundedByTheBestOfAllOrdersOfRichPlans) {
    int equal = 0, all = 0;
    for (std::uint64_t seed = 0; seed < 30; ++seed) {
        PlanKnobs knobs = MixedKnobs(seed);
        knobs.tasks = 4;
        knobs.masters = 1;
        knobs.subprojects = 0;
        IterativePlan plan(GeneratePlan(seed, knobs));
        if (!plan.Complete()) continue;
        // The told order may cut in between the parts of tasks, which ranks cannot.
        const double told = FinishOf(plan), best = std::min(told, BestOfAllOrders(plan));
        plan.iterative.SolveInToldOrder();
        plan.Solve();
        ASSERT_EQ(FinishOf(plan), told);
        ASSERT_TRUE(plan.iterative.ShortenSolve(Moves(150), nullptr).done);
        EXPECT_LE(plan.Results().shorten.bound.Days(), best + 1e-6) << seed;
        plan.Solve();
        EXPECT_GE(FinishOf(plan), best) << seed;
        equal += FinishOf(plan) == best ? 1 : 0;
        ++all;
    }
    EXPECT_GE(equal, all - 1) << all;
}

std::vector<double> Finishes(const LoadedPlan& plan) {
    std::vector<double> finishes;
    for (const Vproject* project : plan.workspace.ProjectList())
        finishes.push_back(project->EarlyFinish().Days());
    return finishes;
}

// Mixed shifts, rules, percentages, offsets, subprojects and several projects over the same people; the later
// journal is the one in force.
TEST(ShortenTest, RichPlansEndNoLaterAndTheSameSearchFindsTheSame) {
    int better = 0;
    for (std::uint64_t seed = 100; seed < 160; ++seed) {
        SCOPED_TRACE(seed);
        PlanKnobs knobs = seed % 2 == 0 ? MixedKnobs(seed) : CrowdedKnobs(seed, static_cast<int>(seed % 7));
        knobs.journals = 2;
        IterativePlan plan(GeneratePlan(seed, knobs));
        if (!plan.Complete()) continue;
        const std::string told = ResultText(plan);
        const std::vector<double> before = Finishes(plan);
        ASSERT_TRUE(plan.iterative.ShortenSolve(Moves(60), nullptr).done);
        plan.Solve();
        ASSERT_TRUE(plan.Complete());
        ExpectSound(plan);
        const std::string ranks = RankText(plan);
        const std::vector<double> after = Finishes(plan);
        for (std::size_t i = 0; i < after.size(); ++i) EXPECT_LE(after[i], before[i] + 1e-6) << i;
        EXPECT_EQ(FinishOf(plan), plan.Results().shorten.finish.Days());
        better += plan.Results().shorten.better ? 1 : 0;
        // From the same start, the second search of the same object.
        EXPECT_EQ(plan.iterative.SolveInToldOrder(), plan.Results().shorten.better);
        plan.Solve();
        EXPECT_EQ(FirstDifference(ResultText(plan), told), "");
        plan.iterative.SetWorkers(3);
        ASSERT_TRUE(plan.iterative.ShortenSolve(Moves(60), nullptr).done);
        EXPECT_EQ(RankText(plan), ranks);
    }
    EXPECT_GE(better, 10);
}

/// On as many threads as there are, none of which may touch what the others read.
TEST(ShortenTest, SeveralSearchesEndAsSoundAsOne) {
    for (std::uint64_t seed = 100; seed < 106; ++seed) {
        SCOPED_TRACE(seed);
        IterativePlan plan(GeneratePlan(seed, MixedKnobs(seed)));
        if (!plan.Complete()) continue;
        const double before = FinishOf(plan);
        plan.iterative.SetWorkers(4);
        ShortenOptions options;
        options.seconds = 0.02;
        ASSERT_TRUE(plan.iterative.ShortenSolve(options, nullptr).done);
        const ShortenResult& result = plan.Results().shorten;
        EXPECT_LE(result.finish.Days(), before + 1e-6);
        EXPECT_LE(result.bound.Days(), result.finish.Days() + 1e-6);
        plan.Solve();
        ExpectSound(plan);
        EXPECT_EQ(FinishOf(plan), result.finish.Days());
    }
}

TEST(ShortenTest, RanksOfAJournalAreItsOwn) {
    IterativePlan plan;
    plan.Make("journals 9/3/2001 9/6/2001;" + kWaiting + "; at 9/6/2001");
    plan.Solve();
    ASSERT_TRUE(plan.iterative.ShortenSolve(Moves(300), nullptr).done);
    ASSERT_TRUE(plan.Results().shorten.better);
    const Vtask* task = plan.Task("P", 1);
    EXPECT_EQ(task->SolveRankAt(0), 0);
    EXPECT_GT(task->SolveRankAt(1), 0);
}

TEST(ShortenTest, ACancelledSearchChangesNothingUntilItIsKept) {
    IterativePlan plan;
    plan.Make(kWaiting);
    plan.Solve();
    plan.iterative.SetProgressInterval(std::chrono::milliseconds(0));
    TestProgress stop([](int) { return true; });
    ShortenOptions endless = Moves(1e12);
    endless.forCost = true;  // no bound to meet
    EXPECT_FALSE(plan.iterative.ShortenSolve(endless, &stop).done);
    EXPECT_FALSE(plan.iterative.IsShortened());
    const double before = FinishOf(plan);
    ASSERT_TRUE(plan.iterative.KeepShortened());
    plan.Solve();
    EXPECT_LT(FinishOf(plan), before);
    EXPECT_FALSE(plan.iterative.KeepShortened());
}

// The next slice is always the one of the lowest rank whose predecessors are placed; equal ranks are as told.
TEST(ShortenTest, SlicesFollowTheirRanks) {
    for (std::uint64_t seed = 0; seed < 20; ++seed) {
        IterativePlan plan(GeneratePlan(seed, MixedKnobs(seed)));
        std::map<std::pair<const Vtask*, int>, std::int32_t> told;
        for (std::int32_t i = 0; i < plan.solver.SliceCount(); ++i) {
            const Vslice slice = plan.solver.Slice(i);
            told[{slice.task, slice.fromPercent * 200 + slice.toPercent}] = i;
        }
        FixedRandom random(seed);
        for (Vtask* task : TasksOf(plan)) task->SetSolveRank(random.Between(0, 4));
        plan.Solve();
        const SliceArrows arrows = plan.solver.Arrows();
        const auto keyOf = [&](std::int32_t i) {
            const Vslice slice = plan.solver.Slice(i);
            return std::pair(slice.task->SolveRank(),
                             told[{slice.task, slice.fromPercent * 200 + slice.toPercent}]);
        };
        for (std::int32_t i = 0; i < plan.solver.SliceCount(); ++i) {
            std::int32_t ready = 0;  // the last that a slice waits for
            for (const auto& arrow : arrows.BackwardList(i)) ready = std::max(ready, arrow.slice + 1);
            EXPECT_LE(ready, i);
            for (std::int32_t k = ready; k < i; ++k) EXPECT_LT(keyOf(k), keyOf(i)) << seed;
        }
    }
}

TEST(ShortenTest, FilesKeepRanksAndRefuseThoseThatAreNone) {
    LoadedPlan plan;
    plan.Make("journals 9/3/2001 9/6/2001; at 9/6/2001;" + SharedHours(1, 2));
    const std::string without = SaveRecords(plan.workspace);
    EXPECT_EQ(without.find("SolveRank"), std::string::npos);
    plan.workspace.ThisProject()->SetJournal(plan.workspace.ThisProject()->JournalDates()[1]);
    plan.Task("P", 2)->SetSolveRank(7);
    std::string text = SaveRecords(plan.workspace);
    const auto at = text.find("  SolveRank,0,7\r\n");
    ASSERT_NE(at, std::string::npos);
    LoadedPlan again;
    again.Load(text);
    EXPECT_EQ(again.Task("P", 2)->SolveRankAt(1), 7);
    EXPECT_EQ(SaveRecords(again.workspace), text);
    for (const char* bad : {"-1", "1000000000", "1e99"}) {
        LoadedPlan damaged;
        std::string refusal;
        try {
            LoadText(damaged.workspace, std::string(text).replace(at + 14, 1, bad));
        } catch (const Fault& fault) {
            refusal = fault.Description();
        }
        EXPECT_NE(refusal.find("a rank from 0 to 999999999"), std::string::npos) << bad << refusal;
        const auto line = std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(at), '\n') + 1;
        EXPECT_NE(refusal.find("Line " + std::to_string(line)), std::string::npos) << refusal;
    }
}

}  // namespace
}  // namespace vortan
