#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <numeric>

#include "model/Vassignment.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vshift.h"
#include "model/Vtask.h"
#include "support/LoadedPlan.h"
#include "support/Paths.h"
#include "support/PlanGenerator.h"
#include "support/ScheduleChecker.h"

namespace vortan {
namespace {

/// The first few violations, one a line.
std::string Violations(const LoadedPlan& plan) {
    const ScheduleChecker checker(plan.workspace, plan.solver);
    std::string text;
    for (std::size_t i = 0; i < std::min<std::size_t>(checker.Violations().size(), 8); ++i) {
        text += checker.Violations()[i] + "\n";
    }
    return text;
}

TEST(CheckerTest, FilesThatSolveKeepAllRules) {
    int checked = 0;
    for (const std::string& directory : {TestFile("golden/solve"), ExampleFile("")}) {
        for (const std::string& path : FilesIn(directory, ".vta")) {
            const LoadedPlan plan(ReadTextFile(path));
            if (!plan.Complete()) continue;
            EXPECT_EQ(Violations(plan), "") << path;
            ++checked;
        }
    }
    EXPECT_GE(checked, 34);
}

TEST(CheckerTest, GeneratedPlansKeepAllRules) {
    for (std::uint64_t seed = 2000; seed < 2300; ++seed) {
        const LoadedPlan plan(GeneratePlan(seed, MixedKnobs(seed)));
        ASSERT_TRUE(plan.Complete()) << plan.solver.SolveMessage() << ", seed " << seed;
        EXPECT_EQ(Violations(plan), "") << "seed " << seed;
    }
}

TEST(CheckerTest, CrowdedPlansKeepAllRulesOrHalt) {
    for (std::uint64_t seed = 3000; seed < 3070; ++seed) {
        const auto rule = static_cast<int>(seed % 7);
        const LoadedPlan plan(GeneratePlan(seed, CrowdedKnobs(seed, rule)));
        if (plan.Complete()) {
            EXPECT_EQ(Violations(plan), "") << "seed " << seed;
            continue;
        }
        EXPECT_EQ(plan.solver.Mode(), SolveMode::Halted);
        const char* texts[] = {"Overtime needed", "", "Overload detected", "", "Overload > 24 hours", "", ""};
        EXPECT_EQ(plan.solver.SolveMessage(), texts[rule]) << "seed " << seed;
    }
}

/// A change made behind the solver's back, which the checker must notice.
struct Damage {
    const char* name;
    const char* sentence;  ///< how the violation begins
    std::function<void(LoadedPlan&, Vtask*, Vresource*)> change;
};

void PrintTo(const Damage& damage, std::ostream* out) {
    *out << damage.name;
}

struct DamageTest : testing::TestWithParam<Damage> {
    /// A task that waits for another one, and has bookings of a resource in normal time on several days.
    Vtask* FindTask(const LoadedPlan& plan) {
        for (Vtask* task : plan.workspace.ProjectList()[0]->TaskList()) {
            const auto& dependencies = task->DependencyList();
            if (task->EffortUnits() >= 0 || dependencies.empty() || !dependencies[0]->TaskRequired())
                continue;
            resource = task->AssignmentList().at(0)->ResourceRequired();
            const auto slots = plan.solver.HeldSlots(*resource);
            if (std::count_if(slots.begin(), slots.end(), [&](const Vslot& slot) {
                    return slot.taskRequired == task && slot.slotType == 3;
                }) > 4) {
                return task;
            }
        }
        return nullptr;
    }

    Vresource* resource = nullptr;
};

TEST_P(DamageTest, IsReported) {
    PlanKnobs knobs;
    knobs.tasks = 10;
    knobs.spread = 3;
    knobs.rule = kNormalExtend;
    for (std::uint64_t seed = 0;; ++seed) {
        ASSERT_LT(seed, 100u) << "No plan has a task to damage";
        LoadedPlan plan(GeneratePlan(seed, knobs));
        Vtask* task = FindTask(plan);
        if (!task) continue;
        ASSERT_EQ(Violations(plan), "");
        GetParam().change(plan, task, resource);
        const std::string found = Violations(plan);
        EXPECT_NE(found.find(GetParam().sentence), std::string::npos) << found;
        return;
    }
}

void Stretch(Vtask* task, double factor) {
    task->SetMostLikely(static_cast<std::int32_t>(task->MostLikely() * factor));
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, DamageTest,
    testing::Values(
        Damage{"LaborCost", "Labor cost of the task",
               [](LoadedPlan&, Vtask* task, Vresource*) {
                   task->SetLaborCost(task->LaborCost() + Money::FromUnits(1));
               }},
        Damage{"EarlyStart", "Early start of the task",
               [](LoadedPlan&, Vtask* task, Vresource*) {
                   task->SetEarlyStart(AddDays(task->EarlyStart(), 1));
               }},
        Damage{"EarlyFinish", "Early finish of the task",
               [](LoadedPlan&, Vtask* task, Vresource*) {
                   task->SetEarlyFinish(AddMinutes(task->EarlyFinish(), 1));
               }},
        Damage{"LateFinish", "Late finish of the task",
               [](LoadedPlan&, Vtask* task, Vresource*) {
                   task->SetLateFinish(AddMinutes(task->LateFinish(), 1));
               }},
        Damage{"Offset", "Early start",
               [](LoadedPlan&, Vtask* task, Vresource*) {
                   for (Vdependency* dependency : task->DependencyList()) dependency->SetOffset(40);
               }},
        Damage{"DependencyDate", "Date of a dependency",
               [](LoadedPlan&, Vtask* task, Vresource*) {
                   task->DependencyList()[0]->SetDepDate(DateTime(37000));
               }},
        Damage{"Percentage", "Cut into the wrong slices",
               [](LoadedPlan&, Vtask* task, Vresource*) { task->DependencyList()[0]->SetToPercent(41); }},
        Damage{"MoreWork", "Works", [](LoadedPlan&, Vtask* task, Vresource*) { Stretch(task, 1.5); }},
        Damage{"LessWork", "Works", [](LoadedPlan&, Vtask* task, Vresource*) { Stretch(task, 0.5); }},
        Damage{"FewerHours", "Books more of a day",
               [](LoadedPlan&, Vtask* task, Vresource*) {
                   for (Vassignment* assignment : task->AssignmentList()) assignment->SetHours(0.25);
               }},
        Damage{"MoreHours", "Normal time left unused",
               [](LoadedPlan& plan, Vtask*, Vresource*) {
                   // More hours than any booking, so that somebody could have worked more.
                   for (Vtask* task : plan.workspace.ProjectList()[0]->TaskList()) {
                       for (Vassignment* assignment : task->AssignmentList()) {
                           for (int day = 1; day <= 7; ++day) assignment->SetWorkDay(day, true);
                       }
                   }
               }},
        Damage{"Rate", "Cost of a booking",
               [](LoadedPlan&, Vtask*, Vresource* resource) {
                   resource->SetBurdenedRate(Money::FromUnits(77777777));
                   resource->SetOffDayRate(Money::FromUnits(77777777));
               }},
        Damage{"Shift", "Not the shift's kind of time",
               [](LoadedPlan&, Vtask*, Vresource* resource) {
                   for (int hour = 0; hour < 24; ++hour) {
                       resource->Shift()->SetMatrix(hour, "NONONONONONO");
                   }
               }},
        Damage{"Priority", "Not in the order of priority",
               [](LoadedPlan& plan, Vtask*, Vresource*) {
                   // Two tasks of one wave change places.
                   Vproject* project = plan.workspace.ProjectList()[0];
                   const std::int32_t highest = project->HighestTaskID();
                   std::vector<Vtask*> tasks(project->TaskList().begin(), project->TaskList().end());
                   for (Vtask* task : tasks) task->SetTaskID(2 * highest + 1 - task->TaskID());
               }}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(CheckerTest, TimeThatTheRuleForbidsIsReported) {
    LoadedPlan plan(GeneratePlan(3, CrowdedKnobs(3, kDayExtend)));
    ASSERT_EQ(Violations(plan), "");
    for (Vproject* project : plan.workspace.ProjectList()) project->SetSolveRules(kNormalExtend);
    EXPECT_NE(Violations(plan).find("Kind of time that the solve rule does not allow"), std::string::npos);
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
