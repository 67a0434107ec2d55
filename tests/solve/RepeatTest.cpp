#include <map>

#include "support/LoadedPlan.h"
#include "support/Paths.h"
#include "support/PlanGenerator.h"

namespace vortan {
namespace {

/// Nothing is booked twice, all of it lies in a slice of its task, which costs what was booked for it, and no
/// slice begins before what it waits for. Says nothing of how a schedule is to be found.
void ExpectSound(const LoadedPlan& plan) {
    constexpr double kTolerance = 1e-6;  // days
    std::map<const Vtask*, std::vector<Vslice>> slices;
    std::map<const Vtask*, Money> booked;
    for (std::int32_t i = 0; i < plan.solver.SliceCount(); ++i) {
        const Vslice slice = plan.solver.Slice(i);
        slices[slice.task].push_back(slice);
    }
    for (const Vtemplate* pool : plan.workspace.TemplateList()) {
        for (const Vresource* resource : pool->ResourceList()) {
            DateTime end;
            for (const Vslot& slot : plan.solver.HeldSlots(*resource)) {
                EXPECT_GE(slot.startTime, end);
                end = slot.endTime;
                booked[slot.taskRequired] += slot.laborCost;
                const auto& own = slices[slot.taskRequired];
                EXPECT_TRUE(std::any_of(own.begin(), own.end(), [&](const Vslice& slice) {
                    return slot.startTime >= AddDays(slice.earlyStart, -kTolerance) &&
                           slot.endTime <= AddDays(slice.earlyFinish, kTolerance);
                })) << NameOf(slot.taskRequired);
            }
        }
    }
    for (const auto& [task, own] : slices) {
        EXPECT_EQ(task->EarlyFinish(), own.back().earlyFinish) << NameOf(task);
        if (task->Subproject()) continue;
        EXPECT_EQ(task->LaborCost(), booked[task]) << NameOf(task);
        for (const Vdependency* each : task->DependencyList()) {
            if (!each->Include()) continue;
            for (const Vslice& slice : own)
                EXPECT_TRUE(slice.fromPercent < each->ToPercent() ||
                            slice.earlyStart >= AddDays(each->DepDate(), each->Offset() - kTolerance))
                    << NameOf(task);
        }
    }
}

TEST(RepeatTest, SchedulesAreSound) {
    int checked = 0;
    const auto check = [&](const std::string& text, const std::string& name) {
        SCOPED_TRACE(name);
        const LoadedPlan plan(text);
        if (plan.Complete()) ++checked, ExpectSound(plan);
    };
    for (const std::string& directory : {TestFile("golden/solve"), ExampleFile("")}) {
        for (const std::string& path : FilesIn(directory, ".vta")) check(ReadTextFile(path), path);
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

}  // namespace
}  // namespace vortan
