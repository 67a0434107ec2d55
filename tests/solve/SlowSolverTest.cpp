#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "model/Vassignment.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"
#include "support/LoadedPlan.h"
#include "support/Paths.h"
#include "support/PlanGenerator.h"
#include "support/SlowSolver.h"

namespace vortan {
namespace {

/// Compares what the real solver left with what the slow one finds, up to the first few differences.
class Comparison {
  public:
    explicit Comparison(LoadedPlan& plan) : plan_(plan), slow_(plan.workspace) {
        slow_.Solve();
        CompareProblem();
        CompareSlices();
        CompareTasks();
        CompareSlots();
    }

    const std::string& Report() const { return report_; }
    const SlowSolver& Slow() const { return slow_; }

  private:
    static constexpr double kDays = 1e-9, kMoney = 0.0001 + 1e-9;

    void Text(const std::string& where, const std::string& real, const std::string& slow) {
        if (real == slow || report_.size() > 1500) return;
        report_ += where + ": " + real + ", but should be " + slow + "\n";
    }
    void Number(const std::string& where, double real, double slow, double tolerance) {
        if (std::abs(real - slow) <= tolerance) return;
        char text[80];
        std::snprintf(text, sizeof text, "%.12g", real);
        const std::string realText = text;
        std::snprintf(text, sizeof text, "%.12g", slow);
        Text(where, realText, realText == text ? std::string(text) + " (nearly)" : text);
    }
    static std::string NameOf(const Vtask* task) {
        return task ? task->Project()->ProjectName() + "/" + task->Key() : "-";
    }
    static std::string Place(const Vresource* resource) {
        return resource->Template()->TemplateName() + "/" + resource->Key();
    }

    void CompareProblem() {
        const auto& real = plan_.solver.Problem();
        const auto& slow = slow_.TheProblem();
        Text("problem", real ? real->message : "", slow.message);
        if (!real || slow.message.empty()) return;
        Text("problem task", NameOf(real->task.Get()), NameOf(slow.task));
        Text("problem dependency",
             real->dependency ? NameOf(real->dependency->Task()) + real->dependency->Key() : "",
             slow.dependency ? NameOf(slow.dependency->Task()) + slow.dependency->Key() : "");
        Text("problem assignment",
             real->assignment ? NameOf(real->assignment->Task()) + real->assignment->Key() : "",
             slow.assignment ? NameOf(slow.assignment->Task()) + slow.assignment->Key() : "");
        Number("problem date", real->problemDate.Days(), slow.date, kDays);
        Number("requested hours", real->requestedHours, slow.requestedHours, 1e-9);
        Number("assigned hours", real->assignedHours, slow.assignedHours, 1e-9);
    }

    void CompareSlices() {
        const auto& order = slow_.OrderList();
        Number("slices", plan_.solver.SliceCount(), static_cast<double>(order.size()), 0);
        if (!report_.empty()) return;
        for (std::size_t i = 0; i < order.size(); ++i) {
            const Vslice real = plan_.solver.Slice(static_cast<std::int32_t>(i));
            const auto& slow = *order[i];
            const std::string where = "slice " + std::to_string(i) + " of " + NameOf(slow.task) + " ";
            Text(where + "task", NameOf(real.task), NameOf(slow.task));
            Number(where + "from", real.fromPercent, slow.fromPercent, 0);
            Number(where + "to", real.toPercent, slow.toPercent, 0);
            Number(where + "early start", real.earlyStart.Days(), slow.earlyStart, kDays);
            Number(where + "early finish", real.earlyFinish.Days(), slow.earlyFinish, kDays);
            Number(where + "cost", real.laborCost.ToDouble(), slow.laborCost.ToDouble(), kMoney);
            if (!slow_.Reversed()) continue;
            Number(where + "late start", real.lateStart.Days(), slow.lateStart, kDays);
            Number(where + "late finish", real.lateFinish.Days(), slow.lateFinish, kDays);
        }
    }

    void CompareTasks() {
        std::set<const Vtask*> tasks;
        if (!Ran()) return;
        for (const auto* slice : slow_.OrderList()) tasks.insert(slice->task);
        for (const Vtask* task : tasks) {
            const auto& slow = slow_.ResultOf(task);
            const std::string where = "task " + NameOf(task) + " ";
            Number(where + "early start", task->EarlyStart().Days(), slow.earlyStart, kDays);
            Number(where + "early finish", task->EarlyFinish().Days(), slow.earlyFinish, kDays);
            Number(where + "labor", task->LaborCost().ToDouble(), slow.laborCost.ToDouble(), kMoney);
            Number(where + "material", task->MaterialCost().ToDouble(), slow.materialCost.ToDouble(), kMoney);
            if (!slow_.Reversed()) continue;
            Number(where + "late start", task->LateStart().Days(), slow.lateStart, kDays);
            Number(where + "late finish", task->LateFinish().Days(), slow.lateFinish, kDays);
        }
    }

    /// Whether the forward pass ran, so that dates, costs and slots are those of this solve.
    bool Ran() const {
        return slow_.TheProblem().message.empty() || slow_.TheProblem().assignment != nullptr;
    }

    void CompareSlots() {
        if (!Ran()) return;
        for (const Vtemplate* pool : plan_.workspace.TemplateList()) {
            for (const Vresource* resource : pool->ResourceList()) CompareSlots(resource);
        }
    }

    void CompareSlots(const Vresource* resource) {
        const auto real = plan_.solver.HeldSlots(*resource);
        const auto slow = slow_.HeldSlots(resource);
        for (std::size_t i = 0; i < std::min(real.size(), slow.size()); ++i) {
            const std::string where =
                "resource " + Place(resource) + " slot at " + DateText(DateTime(slow[i].start)) + " ";
            Text(where + "task", NameOf(real[i].taskRequired), NameOf(slow[i].task));
            Number(where + "start", real[i].startTime.Days(), slow[i].start, kDays);
            Number(where + "end", real[i].endTime.Days(), slow[i].end, kDays);
            Number(where + "type", real[i].slotType, slow[i].type, 0);
            Number(where + "cost", real[i].laborCost.ToDouble(), slow[i].laborCost.ToDouble(), kMoney);
        }
        Number("resource " + Place(resource) + " slots", static_cast<double>(real.size()),
               static_cast<double>(slow.size()), 0);
    }

    LoadedPlan& plan_;
    SlowSolver slow_;
    std::string report_;
};

/// Problems that the slow solver does not look for.
bool KnownToBothSolvers(const std::string& message) {
    return message != "Circular dependency" && message != "Missing prerequisite" &&
           message != "No working time";
}

TEST(SlowSolverTest, AgreesOnPlansWithKnownAnswers) {
    int compared = 0;
    for (const std::string& path : FilesIn(TestFile("golden/solve"), ".vta")) {
        LoadedPlan plan(ReadTextFile(path));
        if (!KnownToBothSolvers(plan.solver.SolveMessage())) continue;
        EXPECT_EQ(Comparison(plan).Report(), "") << path;
        ++compared;
    }
    EXPECT_GE(compared, 40);
}

TEST(SlowSolverTest, AgreesOnPlansOfAllKinds) {
    for (std::uint64_t seed = 0; seed < 300; ++seed) {
        LoadedPlan plan(GeneratePlan(seed, MixedKnobs(seed)));
        EXPECT_EQ(plan.solver.SolveMessage(), "Solve complete") << "seed " << seed;
        EXPECT_EQ(Comparison(plan).Report(), "") << "seed " << seed;
    }
}

TEST(SlowSolverTest, AgreesOnHaltsAndOnTasksWithoutADate) {
    int halted = 0;
    for (std::uint64_t seed = 500; seed < 650; ++seed) {
        PlanKnobs knobs = MixedKnobs(seed);
        knobs.rule = static_cast<int>(seed % 7);
        knobs.unset = 15;
        LoadedPlan plan(GeneratePlan(seed, knobs));
        halted += plan.Complete() ? 0 : 1;
        EXPECT_EQ(Comparison(plan).Report(), "") << "seed " << seed;
    }
    EXPECT_GE(halted, 10);
}

TEST(SlowSolverTest, ADifferenceIsReported) {
    LoadedPlan plan(GeneratePlan(1, MixedKnobs(1)));
    ASSERT_EQ(Comparison(plan).Report(), "");
    for (const Vtemplate* pool : plan.workspace.TemplateList()) {
        for (Vresource* resource : pool->ResourceList()) {
            resource->SetBurdenedRate(resource->BurdenedRate() + Money::FromUnits(100));
        }
    }
    EXPECT_NE(Comparison(plan).Report().find("cost"), std::string::npos);
}

/// Where many tasks wait for one resource the real solver passes over days on which nothing can happen.
TEST(SlowSolverTest, AgreesWhereTasksWaitForYears) {
    for (int rule = kNormalHalt; rule <= kUnlimited; ++rule) {
        for (std::uint64_t seed = 1500; seed < 1503; ++seed) {
            PlanKnobs knobs = CrowdedKnobs(seed, rule);
            knobs.longest = 100'000;
            LoadedPlan plan(GeneratePlan(seed, knobs));
            EXPECT_EQ(Comparison(plan).Report(), "") << "rule " << rule << ", seed " << seed;
        }
    }
}

TEST(SlowSolverTest, AgreesWhereManyTasksWait) {
    for (int rule = kNormalHalt; rule <= kUnlimited; ++rule) {
        int complete = 0;
        for (std::uint64_t seed = 1000; seed < 1060; ++seed) {
            LoadedPlan plan(GeneratePlan(seed, CrowdedKnobs(seed, rule)));
            complete += plan.Complete() ? 1 : 0;
            EXPECT_EQ(Comparison(plan).Report(), "") << "rule " << rule << ", seed " << seed;
        }
        // Rules that extend never halt, the others do so in such a crowd.
        const bool halting = rule % 2 == 0 && rule != kUnlimited;
        EXPECT_TRUE(halting ? complete < 60 : complete == 60) << "rule " << rule << ": " << complete;
    }
}

/// An assignment that is not included still settles which resource of a task is looked at first.
TEST(SlowSolverTest, AgreesOnTheResourceAtFaultBehindAnExcludedAssignment) {
    LoadedPlan plan(ReadTextFile(TestFile("plans/ExcludedAssignmentFirst.vta")));
    EXPECT_EQ(plan.solver.SolveMessage(), "Overtime needed");
    EXPECT_EQ(Comparison(plan).Report(), "");
}

}  // namespace
}  // namespace vortan
