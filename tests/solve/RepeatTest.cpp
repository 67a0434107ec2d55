#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "model/Vassignment.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"
#include "support/LoadedPlan.h"
#include "support/Paths.h"
#include "support/PlanGenerator.h"
#include "support/ScheduleChecker.h"

namespace vortan {
namespace {

std::string Violations(const LoadedPlan& plan) {
    const auto violations = ScheduleViolations(plan.workspace, plan.solver);
    return violations.empty() ? "" : violations.front();
}

TEST(CheckerTest, SchedulesKeepAllRules) {
    int checked = 0;
    const auto check = [&](const std::string& text, const std::string& name) {
        const LoadedPlan plan(text);
        if (!plan.Complete()) return;
        EXPECT_EQ(Violations(plan), "") << name;
        ++checked;
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

/// Changes made behind the solver's back, which the checker must notice.
TEST(CheckerTest, DamageIsReported) {
    PlanKnobs knobs;
    knobs.tasks = 10;
    knobs.spread = 3;
    knobs.partials = 0;
    knobs.rule = kDayExtend;
    const std::string text = GeneratePlan(1, knobs);
    const std::pair<const char*, std::function<void(Vtask&)>> cases[] = {
        {"Labor cost of the task", [](Vtask& t) { t.SetLaborCost(t.LaborCost() + Money::FromUnits(1)); }},
        {"Early start", [](Vtask& t) { t.SetEarlyStart(AddDays(t.EarlyStart(), 1)); }},
        {"Early finish", [](Vtask& t) { t.SetEarlyFinish(AddMinutes(t.EarlyFinish(), 1)); }},
        {"Starts before", [](Vtask& t) { t.DependencyList()[0]->SetOffset(40); }},
        {"Date of a dependency", [](Vtask& t) { t.DependencyList()[0]->SetDepDate(DateTime(37000)); }},
        {"Not cut where", [](Vtask& t) { t.DependencyList()[0]->SetFromPercent(41); }},
        {"In order ahead", [](Vtask& t) { t.DependencyList()[0]->SetTaskRequired(&t); }},
        {"Cost of a booking",
         [](Vtask& t) {
             for (Vresource* each : t.AssignmentList()[0]->ResourceRequired()->Template()->ResourceList())
                 each->SetBurdenedRate(Money::FromUnits(77777777));
         }},
        {"Kind of time", [](Vtask& t) { t.Project()->SetSolveRules(kNormalExtend); }},
    };
    for (const auto& [sentence, damage] : cases) {
        const LoadedPlan plan(text);
        ASSERT_EQ(Violations(plan), "");
        for (Vtask* task : plan.workspace.ProjectList()[0]->TaskList()) {
            const auto& dependencies = task->DependencyList();
            if (dependencies.empty() || !dependencies[0]->TaskRequired() || task->AssignmentList().empty())
                continue;
            damage(*task);
            break;
        }
        const auto found = ScheduleViolations(plan.workspace, plan.solver);
        EXPECT_TRUE(std::any_of(found.begin(), found.end(), [&](const std::string& each) {
            return each.starts_with(sentence);
        })) << sentence;
    }
}

TEST(RepeatTest, SolvingAgainGivesTheSame) {
    for (std::uint64_t seed = 4000; seed < 4040; ++seed) {
        LoadedPlan plan(GeneratePlan(seed, MixedKnobs(seed)));
        const std::string first = ResultText(plan);
        plan.Solve();
        EXPECT_EQ(ResultText(plan), first) << "seed " << seed;
    }
}

TEST(RepeatTest, WhatWasSolvedBeforeLeavesNoTrace) {
    LoadedPlan used;
    for (std::uint64_t seed = 5000; seed < 5040; ++seed) {
        const std::string text = GeneratePlan(seed, MixedKnobs(seed));
        used.workspace.FreeAllMemory();
        used.Load(text);
        used.Solve();
        LoadedPlan fresh(text);
        EXPECT_EQ(ResultText(used), ResultText(fresh)) << "seed " << seed;
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
