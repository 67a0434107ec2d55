#include "solve/Solution.h"
#include "support/LoadedPlan.h"
#include "support/Paths.h"
#include "support/PlanGenerator.h"
#include "support/SoundSchedule.h"

namespace vortan {
namespace {

TEST(RepeatTest, SchedulesAreSound) {
    int checked = 0;
    const auto check = [&](const std::string& text, const std::string& name) {
        SCOPED_TRACE(name);
        const LoadedPlan plan(text);
        if (plan.Complete()) ++checked, ExpectSound(plan);
    };
    for (const std::string& directory : {TestFile("golden/solve"), ExampleFile("")}) {
        for (const std::string& path : FilesIn(directory, ".vta")) check(FileBytes(path), path);
    }
    for (std::uint64_t seed = 2000; seed < 2150; ++seed)
        check(GeneratePlan(seed, MixedKnobs(seed)), std::to_string(seed));
    for (std::uint64_t seed = 3000; seed < 3070; ++seed)
        check(GeneratePlan(seed, CrowdedKnobs(seed, static_cast<int>(seed % 7))), std::to_string(seed));
    EXPECT_GE(checked, 220);
}

TEST(RepeatTest, WhatWasSolvedBeforeLeavesNoTrace) {
    LoadedPlan used;
    for (std::uint64_t seed = 5000; seed < 5060; ++seed) {
        const std::string text = GeneratePlan(seed, MixedKnobs(seed));
        used.workspace.FreeAllMemory();
        used.Load(text);
        const std::string fresh = ResultText(LoadedPlan(text));
        for (const char* run : {"other plans before", "itself before"}) {
            used.Solve();
            EXPECT_EQ(ResultText(used), fresh) << "seed " << seed << ", " << run;
        }
    }
}

/// The records of a file's projects in another order, each whole.
std::string WithProjectsReversed(const std::string& text) {
    const std::string mark = "PROJECT\r\n";
    std::vector<std::size_t> starts;
    for (std::size_t at = text.find(mark); at != text.npos; at = text.find(mark, at + 1))
        starts.push_back(at);
    std::string result = text.substr(0, starts.at(0));
    for (std::size_t i = starts.size(); i-- > 0;) {
        const std::size_t end = i + 1 < starts.size() ? starts[i + 1] : text.size();
        result += text.substr(starts[i], end - starts[i]);
    }
    return result;
}

TEST(RepeatTest, OrderOfProjectsInTheFileDoesNotMatter) {
    int reordered = 0;
    for (std::uint64_t seed = 6000; seed < 6040; ++seed) {
        const std::string text = GeneratePlan(seed, MixedKnobs(seed));
        const std::string other = WithProjectsReversed(text);
        reordered += text == other ? 0 : 1;
        LoadedPlan first(text), second(other);
        EXPECT_EQ(ResultText(first), ResultText(second)) << "seed " << seed;
    }
    EXPECT_GE(reordered, 20);
}

/// All that bookings hold of one resource: slots with their cuts, and marks of empty days.
std::string TextOf(Bookings& bookings, std::int32_t resource, std::int32_t first, std::int32_t last) {
    std::string text;
    for (std::int32_t day = first; day < last; ++day) {
        bookings.ForEachSlot(resource, day, [&](const SlotView& slot) {
            text += FactLine("slot", {slot.startTime.Days(), slot.endTime.Days(), double(slot.task)});
        });
        for (const Reach reach : Bookings::kReaches)
            text += FactLine("next", {double(bookings.NextDay(resource, day, reach))});
    }
    return text;
}

/// Places all slices, after trials of each with other minutes and teams; must end as a pass without them.
void ExpectTrialsLeaveNoTrace(const LoadedPlan& plan, std::uint64_t seed) {
    const Network& network = plan.solver.Standing().network;
    FixedRandom random(seed);
    Bookings plainDays, days;
    ForwardRun plain, run;
    plainDays.Reset(network);
    plain.Prepare(network, plainDays);
    const auto plainOutcome = plain.SolveAllSlices(nullptr);
    days.Reset(network);
    run.Prepare(network, days);
    run.Begin(nullptr);
    auto outcome = ForwardRun::Outcome::Done;
    for (std::int32_t i = 0; i < plan.solver.SliceCount() && outcome == ForwardRun::Outcome::Done; ++i) {
        const std::int32_t minutes = network.Slices()[static_cast<std::size_t>(i)].useMinutes;
        for (int trial = 0; trial < 3; ++trial) {
            run.SetUseMinutes(i, minutes * random.Between(0, 300) / 100);
            run.SetMultiplier(i, static_cast<float>(random.Between(2, 6)) / 2);
            double finish;
            Money cost;
            run.TrySlice(i, finish, cost);
        }
        run.SetUseMinutes(i, minutes);
        run.SetMultiplier(i, 1);
        outcome = run.SolveOneSlice(i);
    }
    EXPECT_EQ(outcome, plainOutcome);
    EXPECT_EQ(run.SliceStart(), plain.SliceStart());
    EXPECT_EQ(run.SliceFinish(), plain.SliceFinish());
    EXPECT_EQ(run.SliceCost(), plain.SliceCost());
    for (std::size_t r = 0; r < network.Resources().size(); ++r) {
        const auto resource = static_cast<std::int32_t>(r);
        std::int32_t first, last;  // trials may have touched more
        days.DayRange(resource, first, last);
        ASSERT_EQ(TextOf(days, resource, first, last), TextOf(plainDays, resource, first, last));
    }
}

TEST(TrialTest, WhatATrialBookedIsTakenBackToTheLastBit) {
    for (std::uint64_t seed = 0; seed < 12; ++seed) {
        SCOPED_TRACE(seed);
        ExpectTrialsLeaveNoTrace(LoadedPlan(GeneratePlan(seed, MixedKnobs(seed))), seed);
        for (int rule = 0; rule < kSolveRules; ++rule) {
            SCOPED_TRACE(rule);
            ExpectTrialsLeaveNoTrace(LoadedPlan(GeneratePlan(seed, CrowdedKnobs(seed, rule))), seed);
        }
        if (HasFailure()) break;
    }
}

}  // namespace
}  // namespace vortan
